#include "kernel/store/row_digest.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace brimley::store {

static_assert(std::endian::native == std::endian::little);

namespace {

// Stands for a place that takes two more bytes.
constexpr std::size_t kLongPlace = 0xff;

}  // namespace

void RowBytes::grow(std::size_t size) { bytes_.resize((used_ + size) * 2); }

void RowBytes::add_bytes(std::string_view bytes) {
    std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
}

void RowBytes::begin(const Table& table) {
    add_bytes(table.name);
    *room(1) = '\0';
}

// Which field and what kind of value follows. Most places take a byte.
inline void RowBytes::add_place(std::size_t place, Kind kind) {
    if (place < kLongPlace) {
        char* const at = room(2);
        at[0] = static_cast<char>(place);
        at[1] = kind;
        return;
    }
    const auto wide = static_cast<std::uint16_t>(place);
    char* const at = room(2 + sizeof wide);
    at[0] = static_cast<char>(kLongPlace);
    std::memcpy(at + 1, &wide, sizeof wide);
    at[1 + sizeof wide] = kind;
}

template <class Number>
inline void RowBytes::add_number(const Number& number) {
    std::memcpy(room(sizeof number), &number, sizeof number);
}

inline void RowBytes::add_text(std::size_t field, std::string_view text) {
    const bool is_short = text.size() <= 0xff;
    add_place(field, is_short ? kShortText : kLongText);
    if (is_short)
        add_number(static_cast<std::uint8_t>(text.size()));
    else
        add_number(static_cast<std::uint32_t>(text.size()));
    add_bytes(text);
}

void RowBytes::add(std::size_t field, const Value& value) {
    if (value.is_null()) return;
    if (value.is_text()) {
        add_text(field, value.text_ref());
    } else if (value.is_number()) {
        const double number = value.number_ref();
        add_place(field, number == 0 ? kZero : kNumber);
        if (number != 0) add_number(number);
    } else if (value.is_flag()) {
        if (value.flag()) add_place(field, kTrue);
    } else {
        add_place(field, kDate);
        add_number(*value.date());
    }
}

void RowBytes::add_row(const Table& table, const PlaceSet& fields, const Row& row) {
    begin(table);
    fields.each([&](std::size_t field) { add(field, row.value(static_cast<int>(field))); });
}

void RowBytes::add_stored_row(const Table& table, const PlaceSet& fields, const EngineRow& stored, Row& row) {
    stored.read(row);
    add_row(table, fields, row);
    if (!stored.has_whole_seconds()) add_bytes("parts of a second");
}

RowDigest digest_of(Sha256& sha256, std::string_view row_bytes) {
    const Sha256Digest whole = sha256.of(row_bytes);
    RowDigest half{};
    std::copy_n(whole.begin(), half.size(), half.begin());
    return half;
}

std::string chained_hash(Sha256& sha256, std::string_view hash_before, const Table& trail,
                         std::span<const Value> entry) {
    RowBytes bytes;
    bytes.begin(trail);
    bytes.add_bytes(hash_before);
    for (std::size_t field = 0; field + 1 < trail.fields.size(); ++field)
        bytes.add(field, entry[field]);
    return hexadecimal(sha256.of(bytes.all()));
}

std::string entry_start(std::string_view trail) { return std::string(trail) + '\0'; }

std::string entry_number_start() { return {'\0', RowBytes::kNumber}; }

std::string entry_rest(const Table& trail, std::span<const Value> entry) {
    RowBytes bytes;
    for (std::size_t field = 1; field + 1 < trail.fields.size(); ++field)
        bytes.add(field, entry[field]);
    return std::string(bytes.all());
}

}  // namespace brimley::store
