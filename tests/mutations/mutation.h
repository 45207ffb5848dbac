// One value of one row of a company, changed as a hand that knows the table might.
#pragma once

#include <string>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/database.h"

namespace brimley::testing {

struct Change {
    const char* kind;  // "emptied", "a cent more", "another value" ...
    store::Value value;
    bool names_nothing = false;  // no row of any master has this value
};

// What a value of such a field may be changed to. `column` are the values that other rows have there. Null
// and 0 are one to the books, and so are null and the empty text: such changes are left out.
[[nodiscard]] std::vector<Change> changes_of(const store::Field& field, const store::Value& now,
                                             const std::vector<store::Value>& column);

}  // namespace brimley::testing
