// What the translator hands to an engine: SQL in the engine's own spelling, and what is to be bound to it.
#pragma once

#include <string>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/dialect/flavour.h"

namespace brimley::store {

// What running a statement does.
enum class StatementEffect {
    reads,
    inserts_row,
    updates_row,  // the one of a key
    changes_rows,
};

struct StatementText {
    std::string sql{};
    std::vector<dialect::ParameterKind> parameters{};
    bool keyed = false;  // the first result column is the row key; of an INSERT: its key is wanted
    std::vector<FieldType> columns{};  // the others, in order
    StatementEffect effect = StatementEffect::reads;
    // Of a statement that reads: the row is held until the transaction ends, and skipped when somebody
    // else holds it.
    bool holds_row = false;
    // A rule of the table, or a row that somebody else holds, may be in the way. Of a statement that reads:
    // it holds its rows, and waits for those of somebody else for a moment.
    bool may_be_refused = false;
};

}  // namespace brimley::store
