#include "kernel/store/row_digest.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace brimley::store {

static_assert(std::endian::native == std::endian::little);

char* RowBytes::room(std::size_t size) {
    if (used_ + size > bytes_.size()) bytes_.resize((used_ + size) * 2);
    used_ += size;
    return bytes_.data() + used_ - size;
}

void RowBytes::add_bytes(std::string_view bytes) {
    std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
}

void RowBytes::begin(const Table& table) {
    add_bytes(table.name);
    *room(1) = '\0';
}

// Which field, what kind of value follows, and the value, whose length its kind or its first bytes say.
template <class Number>
void RowBytes::add_placed(std::uint16_t place, char kind, const Number& number) {
    char* const at = room(sizeof place + 1 + sizeof number);
    std::memcpy(at, &place, sizeof place);
    at[sizeof place] = kind;
    std::memcpy(at + sizeof place + 1, &number, sizeof number);
}

void RowBytes::add(std::size_t field, const Value& value) {
    if (value.is_null()) return;
    const auto place = static_cast<std::uint16_t>(field);
    if (value.is_text()) {
        const std::string& text = value.text_ref();
        add_placed(place, 't', static_cast<std::uint32_t>(text.size()));
        add_bytes(text);
    } else if (value.is_number()) {
        const double number = value.number_ref();
        add_placed(place, 'n', number == 0 ? 0.0 : number);  // no negative zero
    } else if (value.is_flag()) {
        if (value.flag()) add_placed(place, 'f', true);
    } else {
        add_placed(place, 'd', *value.date());
    }
}

void RowBytes::add_row(const Table& table, const PlaceSet& fields, const Row& row) {
    begin(table);
    fields.each([&](std::size_t field) { add(field, row.value(static_cast<int>(field))); });
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

}  // namespace brimley::store
