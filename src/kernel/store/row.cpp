#include "kernel/store/row.h"

#include <cstring>

namespace brimley::store {

namespace {

constexpr char kNull = 0;
constexpr char kFalse = 1;
constexpr char kTrue = 2;
constexpr char kNumber = 3;
constexpr char kDate = 4;
constexpr char kShortText = 5;  // one byte of length
constexpr char kLongText = 6;   // four bytes of length

template <class T>
T get(const char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

std::string_view text_at(const char* cell) {
    if (*cell == kShortText) return {cell + 2, static_cast<unsigned char>(cell[1])};
    return {cell + 1 + sizeof(std::uint32_t), get<std::uint32_t>(cell + 1)};
}

std::size_t cell_size(const char* cell) {
    switch (*cell) {
        case kNumber:
            return 1 + sizeof(double);
        case kDate:
            return 1 + sizeof(DateTime);
        case kShortText:
            return 2 + text_at(cell).size();
        case kLongText:
            return 1 + sizeof(std::uint32_t) + text_at(cell).size();
        default:
            return 1;
    }
}

}  // namespace

void Row::clear() {
    bytes_.clear();
    starts_.clear();
}

template <class T>
void Row::put(const T& value) {
    const std::size_t at = bytes_.size();
    bytes_.resize(at + sizeof value);
    std::memcpy(bytes_.data() + at, &value, sizeof value);
}

void Row::add_null() { begin_cell(kNull); }
void Row::add_flag(bool flag) { begin_cell(flag ? kTrue : kFalse); }

void Row::add_number(double number) {
    begin_cell(kNumber);
    put(number);
}

void Row::add_date(DateTime date) {
    begin_cell(kDate);
    put(date);
}

void Row::add_text(std::string_view text) {
    if (text.size() < 256) {
        begin_cell(kShortText);
        bytes_.push_back(static_cast<char>(text.size()));
    } else {
        begin_cell(kLongText);
        put(static_cast<std::uint32_t>(text.size()));
    }
    bytes_.insert(bytes_.end(), text.begin(), text.end());
}

void Row::add(const Value& value) {
    if (value.is_text()) return add_text(value.text_ref());
    if (value.is_number()) return add_number(value.number_ref());
    if (value.is_flag()) return add_flag(value.flag());
    if (const auto date = value.date()) return add_date(*date);
    add_null();
}

std::size_t Row::cell_end(int column) const {
    const auto next = static_cast<std::size_t>(column) + 1;
    return next < starts_.size() ? starts_[next] : bytes_.size();
}

void Row::add_cell(const Row& from, int column) {
    const char* const bytes = from.bytes_.data();
    starts_.push_back(static_cast<std::uint32_t>(bytes_.size()));
    bytes_.insert(bytes_.end(), bytes + from.starts_[static_cast<std::size_t>(column)],
                  bytes + from.cell_end(column));
}

Value Row::value(int column) const {
    const char* const cell = bytes_.data() + starts_[static_cast<std::size_t>(column)];
    switch (*cell) {
        case kNull:
            return {};
        case kFalse:
            return false;
        case kTrue:
            return true;
        case kNumber:
            return get<double>(cell + 1);
        case kDate:
            return get<DateTime>(cell + 1);
        default:
            return text_at(cell);
    }
}

bool Row::holds(int column, const Value& value) const {
    const char* const cell = bytes_.data() + starts_[static_cast<std::size_t>(column)];
    switch (*cell) {
        case kNull:
            return value.is_null();
        case kFalse:
        case kTrue:
            return value.is_flag() && value.flag() == (*cell == kTrue);
        case kNumber:
            return value.is_number() && value.number_ref() == get<double>(cell + 1);
        case kDate:
            return value.date() == get<DateTime>(cell + 1);
        default:
            return value.is_text() && value.text_ref() == text_at(cell);
    }
}

void PackedRows::append(const Row& row) {
    starts_.push_back(bytes_.size());
    bytes_.insert(bytes_.end(), row.bytes_.begin(), row.bytes_.end());
}

void PackedRows::load(std::int64_t row, Row& into) const {
    const auto at = static_cast<std::size_t>(row);
    const std::size_t first = starts_[at];
    const std::size_t end = at + 1 < starts_.size() ? starts_[at + 1] : bytes_.size();
    into.bytes_.assign(bytes_.data() + first, bytes_.data() + end);
    into.starts_.clear();
    for (std::size_t cell = 0; cell < into.bytes_.size(); cell += cell_size(into.bytes_.data() + cell))
        into.starts_.push_back(static_cast<std::uint32_t>(cell));
}

}  // namespace brimley::store
