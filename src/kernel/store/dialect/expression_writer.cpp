#include "kernel/store/dialect/expression_writer.h"

#include <fmt/format.h>

namespace brimley::store::dialect {

OperandType operand_type(FieldType type) {
    switch (type) {
        case FieldType::text:
            return OperandType::text;
        case FieldType::number:
        case FieldType::integer:
            return OperandType::number;
        case FieldType::yes_no:
            return OperandType::flag;
        default:
            return OperandType::date;
    }
}

FieldType result_type(OperandType type) {
    switch (type) {
        case OperandType::number:
            return FieldType::number;
        case OperandType::flag:
            return FieldType::yes_no;
        case OperandType::date:
            return FieldType::datetime;
        default:
            return FieldType::text;
    }
}

void ExpressionWriter::refuse(const Expression& expression, std::string_view why) const {
    refuse_syntax_at(scope_.query(), expression.position, why);
}

Operand ExpressionWriter::operand(const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::text_literal:
            return {{}, OperandType::text, &expression};
        case ExpressionKind::number_literal:
            return {{}, OperandType::number, &expression};
        case ExpressionKind::date_literal:
            return {parameters_.add({expression.literal, LiteralUse::date_of_query}), OperandType::date};
        case ExpressionKind::flag_literal:
            return {flavour_.flag(expression.flag), OperandType::flag};
        case ExpressionKind::null_literal:
            return {"NULL", OperandType::null};
        case ExpressionKind::column:
            return column(expression);
        case ExpressionKind::negation:
            return negation(expression);
        case ExpressionKind::arithmetic:
            return arithmetic(expression);
        case ExpressionKind::comparison:
            return comparison(expression);
        case ExpressionKind::conjunction:
            return chain(expression, " AND ");
        case ExpressionKind::disjunction:
            return chain(expression, " OR ");
        case ExpressionKind::inversion:
            return {fmt::format("(NOT {})", condition(*expression.operands[0])), OperandType::flag};
        case ExpressionKind::null_test:
            return null_test(expression);
        case ExpressionKind::call:
            return call(expression);
    }
    refuse(expression, "unknown expression");
}

Operand ExpressionWriter::settle(Operand operand) {
    if (!operand.open_literal) return operand;
    const bool text = operand.type == OperandType::text;
    return {literal(operand, text ? LiteralUse::text : LiteralUse::number), operand.type};
}

Operand ExpressionWriter::settled(const Expression& expression) { return settle(operand(expression)); }

std::string ExpressionWriter::literal(const Operand& open, LiteralUse use) {
    return parameters_.add({open.open_literal->literal, use});
}

std::string ExpressionWriter::condition(const Expression& expression) {
    const Operand written = operand(expression);
    if (written.type != OperandType::flag) refuse(expression, "a condition expected");
    // A bare yes/no field as a comparison, for the sake of its index.
    return written.column ? fmt::format("({} = {})", written.sql, flavour_.flag(true)) : written.sql;
}

Operand ExpressionWriter::column(const Expression& expression) {
    const ScopeColumn& column = scope_.resolve(expression);
    if (aggregate_depth_ == 0) ++single_fields_written_;
    return {column.sql, operand_type(column.type), nullptr, &column};
}

Operand ExpressionWriter::chain(const Expression& expression, std::string_view word) {
    std::string sql = "(";
    for (const ExpressionPtr& part : expression.operands) {
        if (part != expression.operands.front()) sql += word;
        sql += condition(*part);
    }
    return {sql + ")", OperandType::flag};
}

Operand ExpressionWriter::null_test(const Expression& expression) {
    const Operand tested = settled(*expression.operands[0]);
    return {fmt::format("({} IS {}NULL)", tested.sql, expression.flag ? "NOT " : ""), OperandType::flag};
}

std::string ExpressionWriter::as_number(const Operand& operand, const Expression& where) {
    if (operand.open_literal)
        return literal(operand,
                       operand.type == OperandType::text ? LiteralUse::number_of_text : LiteralUse::number);
    if (operand.type == OperandType::text) return flavour_.number_of_text(operand.sql);
    // A bare null would leave an operator without any type to go by.
    if (operand.type == OperandType::null) return "CAST(NULL AS double precision)";
    if (operand.type != OperandType::number) refuse(where, "a number expected");
    return operand.sql;
}

std::string ExpressionWriter::as_flag(const Operand& operand, const Expression& where) {
    if (operand.open_literal)
        return literal(operand, operand.type == OperandType::text ? LiteralUse::flag_of_text
                                                                  : LiteralUse::flag_of_number);
    if (operand.type == OperandType::number) return fmt::format("({} <> 0)", operand.sql);
    if (operand.type != OperandType::flag && operand.type != OperandType::null)
        refuse(where, "a yes or no expected");
    return operand.sql;
}

std::string ExpressionWriter::as_date(const Operand& operand, const Expression& where) {
    if (operand.open_literal && operand.type == OperandType::text)
        return literal(operand, LiteralUse::date_of_digits);
    if (operand.type != OperandType::date && operand.type != OperandType::null)
        refuse(where, "a date expected");
    return operand.sql;
}

Operand ExpressionWriter::comparison(const Expression& expression) {
    Operand left = operand(*expression.operands[0]);
    Operand right = operand(*expression.operands[1]);
    const auto either = [&](OperandType type) { return left.type == type || right.type == type; };
    const bool text_with_number = either(OperandType::text) && either(OperandType::number);
    if (either(OperandType::date)) {
        left.sql = as_date(left, expression);
        right.sql = as_date(right, expression);
    } else if (either(OperandType::flag)) {
        left.sql = as_flag(left, expression);
        right.sql = as_flag(right, expression);
    } else if (either(OperandType::number)) {
        if (text_with_number && expression.name == "<>") return differs_by_value(left, right, expression);
        left.sql = as_number(left, expression);
        right.sql = as_number(right, expression);
    } else {
        left = settle(left);
        right = settle(right);
    }
    return {fmt::format("({} {} {})", left.sql, expression.name, right.sql), OperandType::flag};
}

// A text that is no number differs from every number, although its number is null. Only a side that is null
// itself leaves it open.
Operand ExpressionWriter::differs_by_value(const Operand& left, const Operand& right,
                                           const Expression& where) {
    std::string known;
    for (const Operand* side : {&left, &right})
        if (!side->open_literal)
            known += fmt::format("{}{} IS NOT NULL", known.empty() ? "" : " AND ", side->sql);
    std::string differs =
        fmt::format("{} IS DISTINCT FROM {}", as_number(left, where), as_number(right, where));
    if (known.empty()) return {"(" + differs + ")", OperandType::flag};
    return {fmt::format("(CASE WHEN {} THEN {} END)", known, differs), OperandType::flag};
}

Operand ExpressionWriter::negation(const Expression& expression) {
    const Expression& inner = *expression.operands[0];
    return {fmt::format("(-{})", as_number(operand(inner), inner)), OperandType::number};
}

std::string ExpressionWriter::summand(const Operand& operand, const Expression& where) {
    std::string sql = as_number(operand, where);
    // Null is 0 in a sum.
    return operand.open_literal ? sql : fmt::format("COALESCE({}, 0)", sql);
}

Operand ExpressionWriter::arithmetic(const Expression& expression) {
    const Operand left = operand(*expression.operands[0]);
    const Operand right = operand(*expression.operands[1]);
    const char sign = expression.name[0];
    const bool sum = sign == '+' || sign == '-';
    if (sum && (left.type == OperandType::date || right.type == OperandType::date))
        return date_arithmetic(expression, left, right);
    if (sum) {
        return {fmt::format("({} {} {})", summand(left, expression), sign, summand(right, expression)),
                OperandType::number};
    }
    const std::string first = as_number(left, expression);
    const std::string second = as_number(right, expression);
    if (sign == '/') return {flavour_.quotient(first, second), OperandType::number};
    return {fmt::format("({} * {})", first, second), OperandType::number};
}

Operand ExpressionWriter::date_arithmetic(const Expression& expression, const Operand& left,
                                          const Operand& right) {
    const bool minus = expression.name == "-";
    if (minus && left.type == OperandType::date && right.type == OperandType::date)
        return {flavour_.days_between(left.sql, right.sql), OperandType::number};
    if (left.type != OperandType::date) {
        if (minus) refuse(expression, "a date expected before the sign");
        return {flavour_.plus_days(right.sql, as_number(left, expression)), OperandType::date};
    }
    const std::string days = as_number(right, expression);
    return {flavour_.plus_days(left.sql, minus ? "(-" + days + ")" : days), OperandType::date};
}

Operand ExpressionWriter::call(const Expression& expression) {
    if (expression.name != "UCASE" && expression.name != "VAL") return aggregate(expression);
    const Expression& argument = *expression.operands[0];
    const Operand operand = settled(argument);
    if (expression.name == "UCASE") {
        if (operand.type != OperandType::text && operand.type != OperandType::null)
            refuse(argument, "a text expected");
        return {flavour_.upper_case(operand.sql), OperandType::text};
    }
    if (operand.type == OperandType::text) return {flavour_.leading_number(operand.sql), OperandType::number};
    return {fmt::format("COALESCE({}, 0)", as_number(operand, argument)), OperandType::number};
}

Operand ExpressionWriter::aggregate(const Expression& expression) {
    if (!aggregates_allowed_ || aggregate_depth_ > 0) refuse(expression, "no place for " + expression.name);
    ++aggregates_written_;
    if (expression.operands.empty()) return {"COUNT(*)", OperandType::number};
    ++aggregate_depth_;
    const Expression& argument = *expression.operands[0];
    const Operand operand = settled(argument);
    --aggregate_depth_;
    OperandType type = operand.type;
    if (expression.name == "COUNT") type = OperandType::number;
    if (expression.name == "SUM" && type != OperandType::number) refuse(argument, "a number expected");
    if (type == OperandType::flag || type == OperandType::null)
        refuse(argument, "a text, number or date expected");
    // Whole numbers are summed as floating ones, like everywhere else.
    const bool sum = expression.name == "SUM";
    const std::string summed = fmt::format("CAST({} AS double precision)", operand.sql);
    return {fmt::format("{}({})", expression.name, sum ? summed : operand.sql), type};
}

std::string ExpressionWriter::assigned(const Expression& expression, const Field& field) {
    const Operand value = operand(expression);
    const OperandType wanted = operand_type(field.type);
    if (value.open_literal) return parameters_.add({value.open_literal->literal, LiteralUse::stored, &field});
    if (value.type == OperandType::null && field.type == FieldType::yes_no && !field.nullable_flag)
        refuse(expression, "TRUE or FALSE expected");
    if (value.type != wanted && value.type != OperandType::null)
        refuse(expression, field.name + " cannot hold this");
    // A condition that null leaves open is not true.
    if (field.type == FieldType::yes_no && !field.nullable_flag)
        return fmt::format("COALESCE({}, {})", value.sql, flavour_.flag(false));
    return value.sql;
}

}  // namespace brimley::store::dialect
