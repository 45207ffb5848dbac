// Values on their way to the server and back, in PostgreSQL's binary form.
#pragma once

#include <libpq-fe.h>

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kernel/store/engine.h"

namespace brimley::store {

// The types that parameters of these kinds are declared with.
[[nodiscard]] std::vector<Oid> parameter_types(std::span<const dialect::ParameterKind> kinds);

// The parameters of one run. Texts are only looked at.
class EncodedParameters {
  public:
    // Takes as many as there are kinds. Throws ErrorKind::conversion for a text that the server would refuse:
    // refused there, it would spoil the transaction.
    EncodedParameters(std::span<const dialect::ParameterKind> kinds, std::span<const Parameter> parameters);

    [[nodiscard]] int count() const { return static_cast<int>(values_.size()); }
    [[nodiscard]] const char* const* values() const { return values_.data(); }
    [[nodiscard]] const int* lengths() const { return lengths_.data(); }
    // All of them are binary.
    [[nodiscard]] const int* formats() const { return formats_.data(); }

  private:
    void add(const Parameter& parameter, dialect::ParameterKind kind);
    void add_text(std::string_view text);
    template <class Bits>
    void add_bits(Bits bits);

    std::vector<std::array<char, sizeof(std::int64_t)>> bytes_;
    std::vector<const char*> values_;
    std::vector<int> lengths_;
    std::vector<int> formats_;
};

// A cell of a result as the column's type has it.
void read_cell(const PGresult* result, int row, int column, FieldType type, Row& into);
// Of a date, which may be null: it has no part of a second.
[[nodiscard]] bool is_whole_second(const PGresult* result, int row, int column);
[[nodiscard]] std::int64_t whole_number_cell(const PGresult* result, int row, int column);

// Whether a text can be stored: whole characters of UTF-8, none of them zero.
[[nodiscard]] bool is_storable_text(std::string_view text);

}  // namespace brimley::store
