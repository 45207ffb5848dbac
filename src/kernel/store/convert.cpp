#include "kernel/store/convert.h"

#include <cmath>

#include "kernel/store/error.h"

namespace brimley::store {

namespace {

// Doubles hold every whole number up to here.
constexpr double kLargestInteger = 9007199254740992.0;

[[noreturn]] void refuse(const Value& value, const Field& field, const char* wanted) {
    throw Error(ErrorKind::conversion, "\"" + value.text() + "\" is no " + wanted + " for " + field.name);
}

Value number_for(const Value& value, const Field& field) {
    if (value.is_text()) {
        if (value.text_ref().empty()) return {};
        const auto number = whole_number_text(value.text_ref());
        if (!number) refuse(value, field, "number");
        return *number;
    }
    if (value.is_date() || !std::isfinite(value.number())) refuse(value, field, "number");
    return value.number();
}

Value integer_for(const Value& value, const Field& field) {
    Value number = number_for(value, field);
    if (number.is_null()) return number;
    const double whole = number.number_ref();
    if (whole != std::trunc(whole) || std::abs(whole) > kLargestInteger) refuse(value, field, "whole number");
    return number;
}

Value text_for(const Value& value, const Field& field) {
    if (value.is_number() && !std::isfinite(value.number_ref())) refuse(value, field, "text");
    return value.text();
}

Value flag_for(const Value& value, const Field& field) {
    if (value.is_null() || (value.is_text() && value.text_ref().empty()))
        return field.nullable_flag ? Value() : Value(false);
    if (value.is_text()) {
        const auto flag = parse_flag_word(value.text_ref());
        if (!flag) refuse(value, field, "yes or no");
        return *flag;
    }
    if (value.is_date() || (value.is_number() && std::isnan(value.number_ref())))
        refuse(value, field, "yes or no");
    return value.flag();
}

Value date_for(const Value& value, const Field& field) {
    if (value.is_date()) return field.type == FieldType::datetime ? value : value.date()->date_only();
    const auto date = value.is_text() ? parse_yyyymmdd(value.text_ref()) : std::nullopt;
    if (!date) refuse(value, field, "date");
    return *date;
}

}  // namespace

Value convert_for_field(const Value& value, const Field& field) {
    if (field.type == FieldType::yes_no) return flag_for(value, field);
    if (value.is_null()) return {};
    switch (field.type) {
        case FieldType::text:
            return value.is_text() ? value : text_for(value, field);
        case FieldType::number:
            return number_for(value, field);
        case FieldType::integer:
            return integer_for(value, field);
        default:
            return date_for(value, field);
    }
}

void convert_for_field(const Value& value, const Field& field, Value& into) {
    const bool fits =
        (field.type == FieldType::text && value.is_text()) ||
        (field.type == FieldType::number && value.is_number() && std::isfinite(value.number_ref())) ||
        (field.type == FieldType::yes_no && value.is_flag());
    if (fits)
        into = value;
    else
        into = convert_for_field(value, field);
}

std::optional<DateTime> parse_yyyymmdd(std::string_view text) {
    if (text.size() != 8 || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
    const auto digit = [&](std::size_t at) { return text[at] - '0'; };
    const int year = digit(0) * 1000 + digit(1) * 100 + digit(2) * 10 + digit(3);
    return DateTime::from_ymd(year, digit(4) * 10 + digit(5), digit(6) * 10 + digit(7));
}

std::optional<bool> parse_flag_word(std::string_view text) {
    const Value word(text);
    if (word.flag()) return true;
    const std::string lower = lower_case(text);
    if (lower == "false" || lower == "no" || lower == "0") return false;
    return {};
}

}  // namespace brimley::store
