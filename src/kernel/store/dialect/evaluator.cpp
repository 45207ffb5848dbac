#include "kernel/store/dialect/evaluator.h"

#include <fmt/format.h>

#include <cmath>
#include <compare>

#include "kernel/store/convert.h"
#include "kernel/store/dialect/leading_number.h"
#include "kernel/store/dialect/parameters.h"
#include "kernel/store/error.h"

namespace brimley::store::dialect {

namespace {

constexpr double kSecondsOfDay = 86400;

// A value as a number where a query would take it as one: null for a text that is none.
Value as_number(const Value& value) {
    if (!value.is_text()) return value;
    const auto number = whole_number_text(value.text_ref());
    return number ? Value(*number) : Value();
}

double days(DateTime date) { return date.day + date.second_of_day / kSecondsOfDay; }

Value from_days(double days) {
    const auto seconds = static_cast<std::int64_t>(std::llround(days * kSecondsOfDay));
    const std::int64_t second_of_day = ((seconds % 86400) + 86400) % 86400;
    return DateTime{static_cast<std::int32_t>((seconds - second_of_day) / 86400),
                    static_cast<std::int32_t>(second_of_day)};
}

bool holds(std::partial_ordering order, std::string_view sign) {
    if (sign == "=") return order == 0;
    if (sign == "<>") return order != 0;
    if (sign == "<") return order < 0;
    if (sign == "<=") return order <= 0;
    if (sign == ">") return order > 0;
    return order >= 0;
}

// What the other side of a comparison makes of a value that is not of its kind.
Value fitted(const Value& value, const Value& other) {
    if (other.is_flag() && value.is_number()) return value.flag();
    if (other.is_flag() && value.is_text()) {
        const auto flag = parse_flag_word(value.text_ref());
        return flag ? Value(*flag) : Value();
    }
    if (other.is_date() && value.is_text()) {
        const auto date = parse_yyyymmdd(value.text_ref());
        if (!date) throw Error(ErrorKind::conversion, "\"" + value.text_ref() + "\" is no date");
        return *date;
    }
    return other.is_number() ? as_number(value) : value;
}

class Evaluation {
  public:
    Evaluation(const Row& row, std::span<const Value> literals) : row_(row), literals_(literals) {}

    Value value(const Expression& expression) const {
        switch (expression.kind) {
            case ExpressionKind::text_literal:
            case ExpressionKind::number_literal:
            case ExpressionKind::date_literal:
                return literals_[expression.literal];
            case ExpressionKind::flag_literal:
                return expression.flag;
            case ExpressionKind::null_literal:
                return {};
            case ExpressionKind::column:
                return row_.value(expression.column);
            case ExpressionKind::negation:
                return negated(value(*expression.operands[0]));
            case ExpressionKind::arithmetic:
                return arithmetic(expression);
            case ExpressionKind::call:
                return call(expression);
            default: {
                const auto truth = this->truth(expression);
                return truth ? Value(*truth) : Value();
            }
        }
    }

    std::optional<bool> truth(const Expression& expression) const {
        switch (expression.kind) {
            case ExpressionKind::comparison:
                return compare(value(*expression.operands[0]), expression.name,
                               value(*expression.operands[1]));
            case ExpressionKind::conjunction:
                return chain(expression, false);
            case ExpressionKind::disjunction:
                return chain(expression, true);
            case ExpressionKind::inversion: {
                const auto inner = truth(*expression.operands[0]);
                return inner ? std::optional(!*inner) : inner;
            }
            case ExpressionKind::null_test:
                return value(*expression.operands[0]).is_null() != expression.flag;
            default: {
                const Value held = value(expression);
                return held.is_null() ? std::nullopt : std::optional(held.flag());
            }
        }
    }

  private:
    // The first part that decides does; an unknown one keeps the others from settling it the other way.
    std::optional<bool> chain(const Expression& expression, bool deciding) const {
        std::optional<bool> result = !deciding;
        for (const ExpressionPtr& part : expression.operands) {
            const auto truth = this->truth(*part);
            if (truth == deciding) return deciding;
            if (!truth) result = std::nullopt;
        }
        return result;
    }

    static Value negated(const Value& value) {
        const Value number = as_number(value);
        return number.is_null() ? number : Value(-number.number());
    }

    Value arithmetic(const Expression& expression) const {
        const Value left = value(*expression.operands[0]);
        const Value right = value(*expression.operands[1]);
        const char sign = expression.name[0];
        if (left.is_date() || right.is_date()) return date_arithmetic(left, sign, right);
        const Value first = as_number(left);
        const Value second = as_number(right);
        if (sign == '+') return first.number() + second.number();
        if (sign == '-') return first.number() - second.number();
        if (first.is_null() || second.is_null()) return {};
        if (sign == '*') return first.number() * second.number();
        return second.number() == 0 ? Value() : Value(first.number() / second.number());
    }

    static Value date_arithmetic(const Value& left, char sign, const Value& right) {
        if (left.is_null() || right.is_null()) return {};
        if (left.date() && right.date()) return days(*left.date()) - days(*right.date());
        if (!left.date()) return from_days(days(*right.date()) + left.number());
        const double count = right.number();
        return from_days(days(*left.date()) + (sign == '-' ? -count : count));
    }

    Value call(const Expression& expression) const {
        const Value argument = value(*expression.operands[0]);
        if (expression.name == "VAL")
            return argument.is_text() ? leading_number(argument.text_ref()) : argument.number();
        if (argument.is_null()) return {};
        std::string upper = argument.text();
        for (char& letter : upper)
            if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
        return upper;
    }

    const Row& row_;
    std::span<const Value> literals_;
};

void collect_literals(const Expression& expression, std::span<const Literal> literals,
                      std::vector<Value>& values) {
    for (const ExpressionPtr& part : expression.operands)
        collect_literals(*part, literals, values);
    LiteralUse use = LiteralUse::text;
    if (expression.kind == ExpressionKind::number_literal)
        use = LiteralUse::number;
    else if (expression.kind == ExpressionKind::date_literal)
        use = LiteralUse::date_of_query;
    else if (expression.kind != ExpressionKind::text_literal)
        return;
    values[expression.literal] = value_of({expression.literal, use}, literals[expression.literal]);
}

}  // namespace

std::optional<bool> compare(const Value& left, std::string_view sign, const Value& right) {
    if (left.is_null() || right.is_null()) return {};
    const Value a = fitted(left, right);
    const Value b = fitted(right, left);
    const bool text_with_number =
        (left.is_text() && right.is_number()) || (left.is_number() && right.is_text());
    if (a.is_null() || b.is_null())
        return text_with_number && sign == "<>" ? std::optional(true) : std::nullopt;
    if (a.is_text() && b.is_text()) return holds(a.text_ref() <=> b.text_ref(), sign);
    if (a.is_date() && b.is_date()) return holds(*a.date() <=> *b.date(), sign);
    if (a.is_date() || b.is_date() || a.is_text() || b.is_text()) return {};
    return holds(a.number() <=> b.number(), sign);
}

void look_up_columns(Expression& criteria, const ColumnFinder& column_of, std::string_view text) {
    const bool aggregate =
        criteria.kind == ExpressionKind::call && criteria.name != "UCASE" && criteria.name != "VAL";
    if (aggregate) refuse_syntax_at(text, criteria.position, "no place for an aggregate");
    if (criteria.kind == ExpressionKind::column) {
        criteria.column = column_of(criteria.name);
        if (criteria.column < 0)
            throw Error(ErrorKind::name,
                        fmt::format("no field \"{}\", at position {}", criteria.name, criteria.position + 1),
                        0, std::string(text));
    }
    for (const ExpressionPtr& part : criteria.operands)
        look_up_columns(*part, column_of, text);
}

std::vector<Value> literal_values(const Expression& criteria, std::span<const Literal> literals) {
    std::vector<Value> values(literals.size());
    collect_literals(criteria, literals, values);
    return values;
}

bool meets(const Expression& criteria, const Row& row, std::span<const Value> literals) {
    return Evaluation(row, literals).truth(criteria).value_or(false);
}

}  // namespace brimley::store::dialect
