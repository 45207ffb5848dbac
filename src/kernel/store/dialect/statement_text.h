// What the translator hands to an engine: SQL in the engine's own spelling, and what is to be bound to it.
#pragma once

#include <string>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/dialect/flavour.h"

namespace brimley::store {

struct StatementText {
    std::string sql{};
    std::vector<dialect::ParameterKind> parameters{};
    bool keyed = false;  // the first result column is the row key; of an INSERT: its key is wanted
    std::vector<FieldType> columns{};  // the others, in order
};

}  // namespace brimley::store
