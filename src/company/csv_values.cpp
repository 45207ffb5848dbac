#include "company/csv_values.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "company/shown_text.h"

namespace brimley::company {

namespace {

using store::FieldType;
using store::Value;

// The store takes no whole number beyond the last one that a double distinguishes from its neighbours.
constexpr double kWholeNumberMax = 9007199254740992.0;

// Stricter than the store's own reading: no blanks, no plus sign, no infinity.
std::optional<double> plain_number(std::string_view text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stopped != end || !std::isfinite(number)) return std::nullopt;
    return number;
}

std::optional<Value> number_value(std::string_view text) {
    const std::optional<double> number = plain_number(text);
    return number ? std::optional<Value>(*number) : std::nullopt;
}

std::optional<Value> integer_value(std::string_view text) {
    const std::optional<double> number = plain_number(text);
    const bool whole = number && std::trunc(*number) == *number && std::abs(*number) <= kWholeNumberMax;
    return whole ? std::optional<Value>(*number) : std::nullopt;
}

std::optional<Value> date_value(std::string_view text) {
    const std::optional<store::DateTime> date = store::DateTime::from_iso(text);
    return date ? std::optional<Value>(*date) : std::nullopt;
}

std::optional<Value> yes_no_value(std::string_view text) {
    const std::string lower = store::lower_case(text);
    if (lower == "true") return Value(true);
    if (lower == "false") return Value(false);
    return std::nullopt;
}

std::optional<Value> typed_value(const std::string& text, FieldType type) {
    switch (type) {
        case FieldType::text:
            return Value(text);
        case FieldType::number:
            return number_value(text);
        case FieldType::integer:
            return integer_value(text);
        case FieldType::date:
        case FieldType::datetime:
            return date_value(text);
        case FieldType::yes_no:
            return yes_no_value(text);
    }
    return std::nullopt;
}

const char* kind_of(FieldType type) {
    switch (type) {
        case FieldType::number:
            return "a number";
        case FieldType::integer:
            return "a whole number";
        case FieldType::date:
            return "a date";
        case FieldType::datetime:
            return "a date and time";
        case FieldType::yes_no:
            return "TRUE or FALSE";
        case FieldType::text:
            break;
    }
    return "a text";
}

bool needs_quotes(std::string_view text) {
    return text.empty() || text.find_first_of(",\"\r\n") != std::string_view::npos;
}

void append_quoted(std::string& line, std::string_view text) {
    line += '"';
    for (const char byte : text) {
        if (byte == '"') line += '"';
        line += byte;
    }
    line += '"';
}

}  // namespace

Value cell_value(const CsvCell& cell, const store::Field& field) {
    if (cell.text.empty() && !cell.quoted) {
        const bool never_null = field.type == FieldType::yes_no && !field.nullable_flag;
        return never_null ? Value(false) : Value();
    }
    if (const std::optional<Value> value = typed_value(cell.text, field.type)) return *value;
    throw std::invalid_argument(
        fmt::format("{} is not {}: \"{}\"", field.name, kind_of(field.type), shown_text(cell.text)));
}

void append_cell(std::string& line, const Value& value) {
    if (value.is_null()) return;
    const std::string text = value.text();
    if (value.is_text() && needs_quotes(text)) {
        append_quoted(line, text);
    } else {
        line += text;
    }
}

}  // namespace brimley::company
