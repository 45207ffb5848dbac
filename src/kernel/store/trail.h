// The trail of a company: who wrote what, in entries that hold each other.
//
// Each transaction that wrote rows of watched tables (Table::watched) appends an entry as its last act: who,
// when, on which computer, which document, and of each row a digest, "+" when the row stands since then and
// "-" when it no longer does. An entry also has a hash over all that and the hash of the entry before it. So
// whoever changes a stored row in any other way leaves a row that no entry knows; whoever changes an entry
// has to change all that follow; and the hash of the last one, kept elsewhere, holds the whole company.
//
// A row's digest leaves out what later acts on other documents change and what follows from these
// (Watched::left_out): an invoice's open amount. The check of the books computes that again.
//
// A transaction that writes rows of the trail itself, as an import or a restore does, appends no entry: the
// rows that come with it are in the entries that come with it.
#pragma once

#include <cstdint>
#include <string>

#include "kernel/store/value.h"

namespace brimley::store {

// Who writes.
struct Signature {
    std::string user;
    std::string computer;
    DateTime moment;
};

// An entry by its number, from 1, and its hash: 64 hexadecimal digits. Entry 0 is the beginning, and has
// none.
struct TrailEntry {
    std::int64_t number = 0;
    std::string hash;

    bool operator==(const TrailEntry&) const = default;
};

}  // namespace brimley::store
