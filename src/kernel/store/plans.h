// Translations that a connection keeps, together with their prepared statements.
#pragma once

#include <memory>
#include <string>

#include "kernel/store/column_names.h"
#include "kernel/store/dialect/translator.h"
#include "kernel/store/engine.h"
#include "kernel/store/lru_cache.h"

namespace brimley::store {

// A statement that is prepared when it is first run.
struct PlannedStatement {
    StatementText text{};
    std::shared_ptr<EngineStatement> prepared{};
};

struct FindPlan {
    dialect::FindTranslation translation;
    PlannedStatement first;
    PlannedStatement first_after;
    PlannedStatement keys;
    PlannedStatement at_key;
};

// Criteria for rows in memory, their names looked up among the columns of the query.
struct FilterPlan {
    dialect::ExpressionPtr criteria;
};

struct SelectPlan {
    explicit SelectPlan(dialect::SelectTranslation made);

    dialect::SelectTranslation translation;
    ColumnNames names;
    PlannedStatement rows;
    PlannedStatement first_row;
    PlannedStatement keys;
    PlannedStatement head;
    PlannedStatement by_key;
    PlannedStatement held_row;
    LruCache<FindPlan> finds;
    LruCache<FindPlan> finds_of_fields;  // by the names of the fields that are to hold a value
    LruCache<FilterPlan> filters;
};

struct ChangePlan {
    explicit ChangePlan(dialect::ChangeTranslation made);

    std::vector<dialect::LiteralParameter> literals;
    PlannedStatement statement;
};

// What Update of a recordset runs.
struct TablePlan {
    // By the set of fields written: a bit for each field of the table.
    TextMap<PlannedStatement> inserts;
    TextMap<PlannedStatement> updates;
};

}  // namespace brimley::store
