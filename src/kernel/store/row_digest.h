// What the trail knows of a row: a hash of its table's name and of the fields in it, by their places, that
// hold something. The same row has the same digest in every engine, after an export and its import, and in
// later layouts, whose fields are added at a table's end. Null and FALSE are left out: a flag that may hold
// null is in no watched table. Numbers are hashed as they lie in memory, on a machine that puts the lowest
// byte first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/engine.h"
#include "kernel/store/place_set.h"
#include "kernel/store/row.h"
#include "kernel/store/sha256.h"
#include "kernel/store/value.h"

namespace brimley::store {

// The first half of a SHA-256: nobody finds another row for a given one.
using RowDigest = std::array<unsigned char, 16>;

// What is hashed: rows, one after the other in the same memory.
class RowBytes {
  public:
    // Forgets all of them.
    void clear() { used_ = 0; }
    // Forgets what comes after that many bytes.
    void cut(std::size_t size) { used_ = size; }
    // The next one, which is of this table.
    void begin(const Table& table);
    // The field at that place of the table, in their order.
    void add(std::size_t field, const Value& value);
    void add_bytes(std::string_view bytes);
    [[nodiscard]] std::string_view all() const { return {bytes_.data(), used_}; }
    [[nodiscard]] std::string_view range(std::size_t begin, std::size_t end) const {
        return {bytes_.data() + begin, end - begin};
    }
    [[nodiscard]] std::size_t size() const { return used_; }

    // These fields of a row that holds every field of the table.
    void add_row(const Table& table, const PlaceSet& fields, const Row& row);
    // The same of a row as it is stored, which is read into `row`: one with parts of a second in its dates is
    // another than the one that it looks like.
    void add_stored_row(const Table& table, const PlaceSet& fields, const EngineRow& stored, Row& row);

    // The length of what follows a place is known by its kind, and that of a text by its first bytes.
    enum Kind : char {
        kTrue = 'f',
        kZero = 'z',
        kNumber = 'n',
        kDate = 'd',
        kShortText = 's',
        kLongText = 't'
    };

  private:
    [[nodiscard]] char* room(std::size_t size) {
        if (used_ + size > bytes_.size()) grow(size);
        used_ += size;
        return bytes_.data() + used_ - size;
    }
    void grow(std::size_t size);
    void add_place(std::size_t place, Kind kind);
    void add_text(std::size_t field, std::string_view text);
    template <class Number>
    void add_number(const Number& number);

    // Only ever grows; used_ is how much of it counts.
    std::vector<char> bytes_;
    std::size_t used_ = 0;
};

[[nodiscard]] RowDigest digest_of(Sha256& sha256, std::string_view row_bytes);

// The hash of an entry of the trail, whose last field it is: over the trail's name, the hash of the entry
// before it, its number, which is its first field, and its other fields.
[[nodiscard]] std::string chained_hash(Sha256& sha256, std::string_view hash_before, const Table& trail,
                                       std::span<const Value> entry);
// The same in pieces, for a server that knows hash_before and the number: the bytes before the hash, those
// between it and the eight of the number, and those after these.
[[nodiscard]] std::string entry_start(std::string_view trail);
[[nodiscard]] std::string entry_number_start();
[[nodiscard]] std::string entry_rest(const Table& trail, std::span<const Value> entry);

}  // namespace brimley::store
