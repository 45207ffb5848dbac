#include "mutation.h"

#include <algorithm>

namespace brimley::testing {

namespace {

using store::FieldType;
using store::Value;

constexpr const char* kGarbage = "zz9";

const Value* another_value(const Value& now, const std::vector<Value>& column) {
    const auto found = std::ranges::find_if(
        column, [&](const Value& value) { return !value.text().empty() && value.text() != now.text(); });
    return found == column.end() ? nullptr : &*found;
}

std::vector<Change> texts(const Value& now, const std::vector<Value>& column) {
    std::vector<Change> changes;
    if (const Value* other = another_value(now, column)) changes.push_back({"another value", *other});
    if (!now.text().empty()) changes.push_back({"emptied", Value()});
    changes.push_back({"garbage", Value(kGarbage), true});
    return changes;
}

std::vector<Change> numbers(const store::Field& field, const Value& now) {
    const double number = now.number();
    if (field.type == FieldType::integer) return {{"one more", Value(number + 1)}};
    std::vector<Change> changes{{"a cent more", Value(number + 0.01)}, {"one more", Value(number + 1)}};
    if (number != 0) {
        changes.push_back({"times ten", Value(number * 10)});
        changes.push_back({"sign", Value(-number)});
        changes.push_back({"emptied", Value()});
    }
    return changes;
}

std::vector<Change> dates(const Value& now) {
    const auto date = now.date();
    if (!date) return {{"filled", Value(*store::DateTime::from_ymd(2026, 3, 3))}};
    return {{"a day later", Value(date->plus_days(1))},
            {"a year later", Value(date->plus_days(365))},
            {"emptied", Value()}};
}

}  // namespace

std::vector<Change> changes_of(const store::Field& field, const Value& now,
                               const std::vector<Value>& column) {
    switch (field.type) {
        case FieldType::text:
            return texts(now, column);
        case FieldType::number:
        case FieldType::integer:
            return numbers(field, now);
        case FieldType::date:
        case FieldType::datetime:
            return dates(now);
        case FieldType::yes_no:
            return {{"flipped", Value(!now.flag())}};
    }
    return {};
}

}  // namespace brimley::testing
