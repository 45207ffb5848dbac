// Translations that a connection keeps, together with their prepared statements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/column_names.h"
#include "kernel/store/dialect/translator.h"
#include "kernel/store/engine.h"
#include "kernel/store/lru_cache.h"
#include "kernel/store/place_set.h"
#include "kernel/store/recordset_memory.h"
#include "kernel/store/trail_writer.h"

namespace brimley::store {

// A statement that is prepared when it is first run.
struct PlannedStatement {
    StatementText text{};
    std::shared_ptr<EngineStatement> prepared{};
};

// The statements that write a table, by the fields that they write. A statement lasts until the next one is
// asked for.
class WritePlans {
  public:
    // translate: makes its text from the places of the fields, when it is first wanted.
    template <class Translate>
    [[nodiscard]] PlannedStatement& of(const PlaceSet& fields, const Translate& translate) {
        if (last_ && fields == last_fields_) return *last_;
        last_ = nullptr;  // until the other one is made, which may fail
        last_fields_ = fields;
        last_ = &known(fields, translate);
        return *last_;
    }

  private:
    static constexpr std::size_t kPlansMax = 512;

    template <class Translate>
    [[nodiscard]] PlannedStatement& known(const PlaceSet& fields, const Translate& translate) {
        if (const auto found = plans_.find(fields.as_key()); found != plans_.end()) return found->second;
        std::vector<int> places;
        fields.each([&](std::size_t place) { places.push_back(static_cast<int>(place)); });
        PlannedStatement made{translate(places)};
        if (plans_.size() == kPlansMax) plans_.clear();
        return plans_.emplace(fields.as_key(), std::move(made)).first->second;
    }

    TextMap<PlannedStatement> plans_;
    // Row after row mostly has the same fields written.
    PlaceSet last_fields_;
    PlannedStatement* last_ = nullptr;
};

// What Update of a recordset runs.
struct TablePlan {
    WritePlans inserts;
    WritePlans updates;
    const WatchedTable* watched = nullptr;  // by the trail; the connection's
    // Connection::stamp() when this connection last wrote into it.
    std::uint64_t written_at = 0;
};

struct FindPlan {
    explicit FindPlan(dialect::FindTranslation made);

    dialect::FindTranslation translation;
    PlannedStatement first;
    PlannedStatement held_first;
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
    // By column, and after the columns by the fields of the table: the field's place in the table, -1 for a
    // computed column. Empty without a table.
    std::vector<int> field_places;
    bool is_whole_row = false;        // its columns are the fields of the table
    TablePlan* table_plan = nullptr;  // the connection's; null without a table
    PlannedStatement rows;
    PlannedStatement first_row;
    PlannedStatement keys;
    PlannedStatement head;
    PlannedStatement by_key;
    PlannedStatement held_row;
    LruCache<FindPlan> finds;
    LruCache<FindPlan> finds_of_fields;  // by the names of the fields that are to hold a value
    LruCache<FilterPlan> filters;
    SpareMemory spare_memory;
};

struct ChangePlan {
    explicit ChangePlan(dialect::ChangeTranslation made);

    std::vector<dialect::LiteralParameter> literals;
    PlannedStatement statement;
    const Table* table;
    TablePlan* table_plan = nullptr;  // the connection's
    PlaceSet assigned;                // the fields; empty for a DELETE
    // When the trail is to know of it: the rows that are changed.
    const WatchedTable* watched = nullptr;
    std::vector<dialect::LiteralParameter> literals_of_rows;
    PlannedStatement rows;
};

}  // namespace brimley::store
