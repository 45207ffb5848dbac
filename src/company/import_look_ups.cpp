#include "company/import_look_ups.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "company/csv_reader.h"
#include "company/references.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

std::unordered_set<std::string> values_of(store::Database& database, const std::string& query) {
    std::unordered_set<std::string> values;
    auto rows = database.OpenRecordset(query, store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext())
        values.insert(rows.column(0).text());
    return values;
}

// The rows that a column of the file must name.
struct LookUp {
    std::size_t column;
    const Reference* reference;
    std::unordered_set<std::string> known;
};

std::vector<LookUp> look_ups_of(store::Database& database, const store::Table& table,
                                const std::vector<CsvCell>& header) {
    std::vector<LookUp> look_ups;
    for (const Reference& reference : references_of_masters()) {
        if (table.name != reference.table) continue;
        for (const std::string& field : words_of(reference.fields)) {
            const auto column = std::ranges::find_if(header, [&](const CsvCell& cell) {
                return store::lower_case(cell.text) == store::lower_case(field);
            });
            if (column == header.end()) continue;
            auto known = values_of(
                database, fmt::format("SELECT {} FROM {}", reference.master_field, reference.master));
            if (reference.names_currency())
                known.merge(values_of(database, "SELECT Currency FROM COA_config_table"));
            look_ups.push_back(
                {static_cast<std::size_t>(column - header.begin()), &reference, std::move(known)});
        }
    }
    return look_ups;
}

}  // namespace

void require_named_rows(store::Database& database, const store::Table& table, const std::string& path) {
    CsvReader reader(path);
    std::vector<CsvCell> cells;
    if (!reader.next(cells)) return;
    const std::vector<CsvCell> header = cells;
    const std::vector<LookUp> look_ups = look_ups_of(database, table, header);
    while (!look_ups.empty() && reader.next(cells))
        for (const LookUp& look_up : look_ups) {
            const std::string& value = cells.at(look_up.column).text;
            if (!value.empty() && !look_up.known.contains(value))
                reader.fail(fmt::format("{} \"{}\" is not in {}", header[look_up.column].text,
                                        shown_text(value), look_up.reference->master));
        }
}

}  // namespace brimley::company
