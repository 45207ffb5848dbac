#include "kernel/store/row.h"

#include <algorithm>

#include <cstring>

namespace brimley::store {

namespace {

constexpr std::size_t kExpectedCellSize = 12;

template <class T>
T get(const char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
void set(char* at, T value) {
    std::memcpy(at, &value, sizeof value);
}

}  // namespace

// One byte of length after the kind of a short text, four after that of a long one.
std::string_view Row::text_at(const char* cell) {
    if (*cell == kShortText) return {cell + 2, static_cast<unsigned char>(cell[1])};
    return {cell + 1 + sizeof(std::uint32_t), get<std::uint32_t>(cell + 1)};
}

std::size_t Row::cell_size(const char* cell) {
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

void Row::clear() {
    used_ = 0;
    starts_.clear();
}

void Row::expect(std::size_t columns) {
    starts_.reserve(columns);
    if (bytes_.size() < columns * kExpectedCellSize) bytes_.resize(columns * kExpectedCellSize);
}

void Row::add_text(std::string_view text) {
    const bool is_short = text.size() < 256;
    const auto length = static_cast<std::uint32_t>(text.size());
    const std::size_t head = 1 + (is_short ? 1 : sizeof length);
    char* const cell = extend(head + text.size());
    *cell = is_short ? kShortText : kLongText;
    if (is_short)
        cell[1] = static_cast<char>(length);
    else
        std::memcpy(cell + 1, &length, sizeof length);
    if (!text.empty()) std::memcpy(cell + head, text.data(), text.size());
}

void Row::add(const Value& value) {
    if (value.is_text()) return add_text(value.text_ref());
    if (value.is_number()) return add_number(value.number_ref());
    if (value.is_flag()) return add_flag(value.flag());
    if (value.is_date()) return add_date(*value.date());
    add_null();
}

void Row::add_cell(const Row& from, int column) {
    const char* const copied = from.cell(column);
    const std::size_t size = cell_size(copied);
    std::memcpy(extend(size), copied, size);
}

Value Row::value(int column) const {
    const char* const at = cell(column);
    switch (*at) {
        case kNull:
            return {};
        case kFalse:
            return false;
        case kTrue:
            return true;
        case kNumber:
            return get<double>(at + 1);
        case kDate:
            return get<DateTime>(at + 1);
        default:
            return text_at(at);
    }
}

std::optional<std::string_view> Row::text(int column) const {
    const char* const at = cell(column);
    if (*at != kShortText && *at != kLongText) return {};
    return text_at(at);
}

bool Row::put(int column, const Value& value) {
    char* const at = cell(column);
    switch (*at) {
        case kNull:
            return value.is_null();
        case kFalse:
        case kTrue:
            if (!value.is_flag()) return false;
            *at = value.flag() ? kTrue : kFalse;
            return true;
        case kNumber:
            if (!value.is_number()) return false;
            set(at + 1, value.number_ref());
            return true;
        case kDate:
            if (!value.is_date()) return false;
            set(at + 1, *value.date());
            return true;
        default:
            if (!value.is_text() || value.text_ref().size() != text_at(at).size()) return false;
            std::memcpy(at + cell_size(at) - value.text_ref().size(), value.text_ref().data(),
                        value.text_ref().size());
            return true;
    }
}

bool Row::holds(int column, const Value& value) const {
    const char* const at = cell(column);
    switch (*at) {
        case kNull:
            return value.is_null();
        case kFalse:
        case kTrue:
            return value.is_flag() && value.flag() == (*at == kTrue);
        case kNumber:
            return value.is_number() && value.number_ref() == get<double>(at + 1);
        case kDate:
            return value.date() == get<DateTime>(at + 1);
        default:
            return value.is_text() && value.text_ref() == text_at(at);
    }
}

void Row::take(std::span<const char> cells) {
    clear();
    if (cells.size() > bytes_.size()) bytes_.resize(cells.size() * 2);
    used_ = cells.size();
    if (!cells.empty()) std::memcpy(bytes_.data(), cells.data(), cells.size());
    for (std::size_t at = 0; at < used_; at += cell_size(bytes_.data() + at))
        starts_.push_back(static_cast<std::uint32_t>(at));
}

char* PackedRows::room_for(std::size_t size) {
    constexpr std::size_t kFirstBlock = 1024;
    constexpr std::size_t kBlockMax = 65536;
    if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < size) {
        const std::size_t next = blocks_.empty() ? kFirstBlock : 2 * blocks_.back().capacity();
        blocks_.emplace_back().reserve(std::max(std::min(next, kBlockMax), size));
    }
    std::vector<char>& block = blocks_.back();
    block.resize(block.size() + size);  // within what is reserved
    return block.data() + block.size() - size;
}

void PackedRows::append(const Row& row) {
    const auto size = static_cast<RowSize>(row.used_);
    char* const at = room_for(sizeof size + size);
    std::memcpy(at, &size, sizeof size);
    if (size > 0) std::memcpy(at + sizeof size, row.bytes_.data(), size);
    rows_.push_back(at);
}

void PackedRows::load(std::int64_t row, Row& into) const {
    const char* const at = rows_[static_cast<std::size_t>(row)];
    RowSize size = 0;
    std::memcpy(&size, at, sizeof size);
    into.take({at + sizeof size, size});
}

}  // namespace brimley::store
