#include "kernel/store/postgresql/postgresql_values.h"

#include <bit>
#include <cmath>

#include "kernel/store/error.h"

namespace brimley::store {

namespace {

using dialect::ParameterKind;

// Numbers of types in PostgreSQL's catalog, which never change.
constexpr Oid kBool = 16;
constexpr Oid kInt8 = 20;
constexpr Oid kInt4 = 23;
constexpr Oid kText = 25;
constexpr Oid kFloat8 = 701;
constexpr Oid kDate = 1082;
constexpr Oid kTimestamp = 1114;

// The server counts days and microseconds from 2000 on.
constexpr std::int32_t kDayOf2000 = 10957;
constexpr std::int64_t kMicroseconds = 1'000'000;
constexpr std::int64_t kSecondsOfDay = 86400;

// The server speaks in network order.
template <class Bits>
std::array<char, sizeof(Bits)> network_bytes(Bits bits) {
    std::array<char, sizeof(Bits)> bytes;
    for (std::size_t i = 0; i < sizeof(Bits); ++i)
        bytes[i] = static_cast<char>(bits >> (8 * (sizeof(Bits) - 1 - i)) & 0xff);
    return bytes;
}

template <class Bits>
Bits from_network(const char* bytes) {
    Bits bits = 0;
    for (std::size_t i = 0; i < sizeof(Bits); ++i)
        bits = static_cast<Bits>(bits << 8 | static_cast<unsigned char>(bytes[i]));
    return bits;
}

double number_of(const Parameter& parameter) {
    if (const auto* const whole = std::get_if<std::int64_t>(&parameter)) return static_cast<double>(*whole);
    return std::get<double>(parameter);
}

std::int64_t whole_number_of(const Parameter& parameter) {
    if (const auto* const whole = std::get_if<std::int64_t>(&parameter)) return *whole;
    return static_cast<std::int64_t>(std::get<double>(parameter));
}

std::int64_t microseconds(DateTime date) {
    return ((date.day - kDayOf2000) * kSecondsOfDay + date.second_of_day) * kMicroseconds;
}

DateTime from_microseconds(std::int64_t since_2000) {
    const auto seconds =
        static_cast<std::int64_t>(std::llround(static_cast<long double>(since_2000) / kMicroseconds));
    const std::int64_t of_day = ((seconds % kSecondsOfDay) + kSecondsOfDay) % kSecondsOfDay;
    return {static_cast<std::int32_t>((seconds - of_day) / kSecondsOfDay) + kDayOf2000,
            static_cast<std::int32_t>(of_day)};
}

double number_cell(const char* bytes, Oid type) {
    switch (type) {
        case kInt4:
            return std::bit_cast<std::int32_t>(from_network<std::uint32_t>(bytes));
        case kInt8:
            return static_cast<double>(std::bit_cast<std::int64_t>(from_network<std::uint64_t>(bytes)));
        case kFloat8:
            return std::bit_cast<double>(from_network<std::uint64_t>(bytes));
        default:
            throw Error(ErrorKind::io, "the server sent a number of another type");
    }
}

DateTime date_cell(const char* bytes, Oid type) {
    if (type == kDate)
        return {std::bit_cast<std::int32_t>(from_network<std::uint32_t>(bytes)) + kDayOf2000, 0};
    return from_microseconds(std::bit_cast<std::int64_t>(from_network<std::uint64_t>(bytes)));
}

Oid type_of(ParameterKind kind) {
    switch (kind) {
        case ParameterKind::text:
            return kText;
        case ParameterKind::number:
            return kFloat8;
        case ParameterKind::integer:
        case ParameterKind::row_key:
            return kInt8;
        case ParameterKind::flag:
            return kBool;
        case ParameterKind::date:
            break;
    }
    return kTimestamp;
}

// How many bytes the character takes that begins here; 0 when none does. Forms longer than they need be, and
// halves of pairs, are no characters.
std::size_t character_size(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return first == 0 ? 0 : 1;
    const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < size) return 0;
    for (std::size_t at = 1; at < size; ++at)
        if ((byte(at) & 0xc0) != 0x80) return 0;
    const unsigned char second = byte(1);
    if ((first == 0xe0 && second < 0xa0) || (first == 0xed && second > 0x9f)) return 0;
    if ((first == 0xf0 && second < 0x90) || (first == 0xf4 && second > 0x8f)) return 0;
    return size;
}

}  // namespace

bool is_storable_text(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = character_size(text);
        if (size == 0) return false;
        text.remove_prefix(size);
    }
    return true;
}

std::vector<Oid> parameter_types(std::span<const ParameterKind> kinds) {
    std::vector<Oid> types;
    for (const ParameterKind kind : kinds)
        types.push_back(type_of(kind));
    return types;
}

EncodedParameters::EncodedParameters(std::span<const ParameterKind> kinds,
                                     std::span<const Parameter> parameters) {
    bytes_.reserve(kinds.size());
    values_.reserve(kinds.size());
    lengths_.reserve(kinds.size());
    for (std::size_t i = 0; i < kinds.size(); ++i)
        add(parameters[i], kinds[i]);
    formats_.assign(kinds.size(), 1);
}

template <class Bits>
void EncodedParameters::add_bits(Bits bits) {
    const auto encoded = network_bytes(bits);
    auto& kept = bytes_.emplace_back();
    std::copy(encoded.begin(), encoded.end(), kept.begin());
    values_.push_back(kept.data());
    lengths_.push_back(sizeof(Bits));
}

void EncodedParameters::add_text(std::string_view text) {
    if (!is_storable_text(text)) {
        throw Error(ErrorKind::conversion,
                    "a text is no UTF-8 or holds a character of code zero, which the server cannot keep");
    }
    values_.push_back(text.data() ? text.data() : "");
    lengths_.push_back(static_cast<int>(text.size()));
}

void EncodedParameters::add(const Parameter& parameter, ParameterKind kind) {
    if (std::holds_alternative<std::monostate>(parameter)) {
        values_.push_back(nullptr);
        lengths_.push_back(0);
        return;
    }
    switch (kind) {
        case ParameterKind::text:
            return add_text(std::get<std::string_view>(parameter));
        case ParameterKind::number:
            return add_bits(std::bit_cast<std::uint64_t>(number_of(parameter)));
        case ParameterKind::integer:
        case ParameterKind::row_key:
            return add_bits(std::bit_cast<std::uint64_t>(whole_number_of(parameter)));
        case ParameterKind::flag:
            return add_bits(static_cast<std::uint8_t>(std::get<bool>(parameter)));
        case ParameterKind::date:
            return add_bits(std::bit_cast<std::uint64_t>(microseconds(std::get<DateTime>(parameter))));
    }
}

std::int64_t whole_number_cell(const PGresult* result, int row, int column) {
    return std::bit_cast<std::int64_t>(from_network<std::uint64_t>(PQgetvalue(result, row, column)));
}

bool is_whole_second(const PGresult* result, int row, int column) {
    if (PQgetisnull(result, row, column) || PQftype(result, column) == kDate) return true;
    return whole_number_cell(result, row, column) % kMicroseconds == 0;
}

void read_cell(const PGresult* result, int row, int column, FieldType type, Row& into) {
    if (PQgetisnull(result, row, column)) return into.add_null();
    const char* const bytes = PQgetvalue(result, row, column);
    switch (type) {
        case FieldType::text:
            return into.add_text({bytes, static_cast<std::size_t>(PQgetlength(result, row, column))});
        case FieldType::number:
        case FieldType::integer:
            return into.add_number(number_cell(bytes, PQftype(result, column)));
        case FieldType::yes_no:
            return into.add_flag(*bytes != 0);
        default:
            return into.add_date(date_cell(bytes, PQftype(result, column)));
    }
}

}  // namespace brimley::store
