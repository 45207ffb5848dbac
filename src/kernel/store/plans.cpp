#include "kernel/store/plans.h"

namespace brimley::store {

namespace {

constexpr std::size_t kFindsMax = 64;

std::vector<std::string> names_of(const dialect::SelectTranslation& translation) {
    std::vector<std::string> names;
    for (const dialect::ResultColumn& column : translation.columns)
        names.push_back(column.name);
    return names;
}

bool has_every_field(const dialect::SelectTranslation& translation) {
    if (!translation.table || translation.columns.size() != translation.table->fields.size()) return false;
    for (std::size_t column = 0; column < translation.columns.size(); ++column)
        if (translation.columns[column].field != static_cast<int>(column)) return false;
    return true;
}

std::vector<int> field_places_of(const dialect::SelectTranslation& translation) {
    std::vector<int> places;
    if (!translation.table) return places;
    for (const dialect::ResultColumn& column : translation.columns)
        places.push_back(column.field);
    for (std::size_t field = 0; field < translation.table->fields.size(); ++field)
        places.push_back(static_cast<int>(field));
    return places;
}

}  // namespace

SelectPlan::SelectPlan(dialect::SelectTranslation made)
    : translation(std::move(made)),
      names(names_of(translation)),
      field_places(field_places_of(translation)),
      is_whole_row(has_every_field(translation)),
      rows{translation.rows},
      first_row{translation.first_row},
      keys{translation.keys},
      head{translation.head},
      by_key{translation.by_key},
      held_row{translation.held_row},
      finds(kFindsMax),
      finds_of_fields(kFindsMax),
      filters(kFindsMax) {}

FindPlan::FindPlan(dialect::FindTranslation made)
    : translation(std::move(made)),
      first{translation.first},
      held_first{translation.held_first},
      first_after{translation.first_after},
      keys{translation.keys},
      at_key{translation.at_key} {}

ChangePlan::ChangePlan(dialect::ChangeTranslation made)
    : literals(std::move(made.literals)),
      statement{std::move(made.text)},
      table(made.table),
      assigned(std::move(made.assigned)),
      literals_of_rows(std::move(made.literals_of_rows)),
      rows{std::move(made.rows)} {}

}  // namespace brimley::store
