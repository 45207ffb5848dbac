// Where the rows of a recordset come from and which of them is current. A snapshot keeps them in memory, a
// keyset keeps their keys.
#pragma once

#include <cstdint>
#include <string_view>

#include "kernel/store/row.h"

namespace brimley::store {

class RecordSource {
  public:
    virtual ~RecordSource() = default;

    [[nodiscard]] virtual bool at_eof() = 0;
    [[nodiscard]] virtual std::int64_t count() = 0;
    virtual void move_first() = 0;
    virtual void move_last() = 0;
    virtual void move_next() = 0;
    // Makes the first row that meets the criteria current; onward: the first after the current one. False
    // and nothing changed when there is none.
    [[nodiscard]] virtual bool find(std::string_view criteria, bool onward) = 0;
    // The first row in which each field holds its value.
    [[nodiscard]] virtual bool find_equal(FieldValues fields) = 0;
    // Null when no row is current.
    [[nodiscard]] virtual const Row* current() = 0;
    // What a Bookmark holds: -1 when no row is current.
    [[nodiscard]] virtual std::int64_t place() = 0;
    // Throws ErrorKind::state when there is no such place any more.
    virtual void go_to(std::int64_t place) = 0;
};

}  // namespace brimley::store
