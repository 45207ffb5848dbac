#include "kernel/store/dialect/parameters.h"

#include <charconv>

#include "kernel/store/convert.h"
#include "kernel/store/error.h"

namespace brimley::store::dialect {

namespace {

ParameterKind kind_of(const LiteralParameter& parameter) {
    switch (parameter.use) {
        case LiteralUse::text:
            return ParameterKind::text;
        case LiteralUse::number:
        case LiteralUse::number_of_text:
            return ParameterKind::number;
        case LiteralUse::date_of_query:
        case LiteralUse::date_of_digits:
            return ParameterKind::date;
        case LiteralUse::flag_of_number:
        case LiteralUse::flag_of_text:
            return ParameterKind::flag;
        case LiteralUse::stored:
            break;
    }
    return kind_of_field(*parameter.field);
}

Value date_of(const Literal& literal, std::optional<DateTime> date) {
    if (!date) throw Error(ErrorKind::conversion, "\"" + std::string(literal.text) + "\" is no date");
    return *date;
}

bool is_bound_as_it_stands(const LiteralParameter& parameter, const Literal& literal) {
    return parameter.use == LiteralUse::text || (parameter.use == LiteralUse::stored && literal.is_text &&
                                                 parameter.field->type == FieldType::text);
}

template <class T>
Value value_or_null(const std::optional<T>& value) {
    return value ? Value(*value) : Value();
}

}  // namespace

ParameterKind kind_of_field(const Field& field) {
    switch (field.type) {
        case FieldType::text:
            return ParameterKind::text;
        case FieldType::number:
            return ParameterKind::number;
        case FieldType::integer:
            return ParameterKind::integer;
        case FieldType::yes_no:
            return ParameterKind::flag;
        default:
            return ParameterKind::date;
    }
}

std::string ParameterList::add(LiteralParameter literal) {
    literals_.push_back(literal);
    kinds_.push_back(kind_of(literal));
    return flavour_.parameter(kinds_.size(), kinds_.back());
}

std::string ParameterList::add_row_key() {
    kinds_.push_back(ParameterKind::row_key);
    return flavour_.parameter(kinds_.size(), kinds_.back());
}

double number_of(const Literal& literal) {
    double number = 0;
    const auto end = std::from_chars(literal.text.data(), literal.text.data() + literal.text.size(), number);
    if (end.ec != std::errc{})
        throw Error(ErrorKind::conversion, "\"" + std::string(literal.text) + "\" is beyond all numbers");
    return number;
}

Value value_of(const LiteralParameter& parameter, const Literal& literal) {
    switch (parameter.use) {
        case LiteralUse::text:
            return literal.text;
        case LiteralUse::number:
            return number_of(literal);
        case LiteralUse::number_of_text:
            return value_or_null(whole_number_text(literal.text));
        case LiteralUse::date_of_query:
            return date_of(literal, parse_query_date(literal.text));
        case LiteralUse::date_of_digits:
            return date_of(literal, parse_yyyymmdd(literal.text));
        case LiteralUse::flag_of_number:
            return number_of(literal) != 0;
        case LiteralUse::flag_of_text:
            return value_or_null(parse_flag_word(literal.text));
        case LiteralUse::stored:
            break;
    }
    const Value value = literal.is_text ? Value(literal.text) : Value(number_of(literal));
    return convert_for_field(value, *parameter.field);
}

void BoundParameters::add(std::span<const LiteralParameter> parameters, std::span<const Literal> literals) {
    for (const LiteralParameter& parameter : parameters) {
        const Literal& literal = literals[parameter.literal];
        if (is_bound_as_it_stands(parameter, literal)) {
            add(Parameter(literal.text));
            continue;
        }
        Value value = value_of(parameter, literal);
        if (!value.is_text()) {
            add(parameter_of(value));
            continue;
        }
        owned_.push_back(std::make_unique<Value>(std::move(value)));
        add(parameter_of(*owned_.back()));
    }
}

void BoundParameters::add(std::span<const Value> values) {
    for (const Value& value : values)
        add(parameter_of(value));
}

}  // namespace brimley::store::dialect
