#include "company/countries.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/data_folder.h"
#include "company/fiscal_year.h"
#include "company/import.h"
#include "company/refusal.h"
#include "company/shown_text.h"
#include "company/table_writer.h"

namespace brimley::company {

std::vector<Country> countries() {
    CsvReader file((data_folder("countries") / "countries.csv").string());
    std::vector<Country> all;
    std::vector<CsvCell> cells;
    bool is_heading = true;
    while (file.next(cells)) {
        if (cells.size() != 3) file.fail("a country has a folder, a name and a currency");
        if (!std::exchange(is_heading, false)) all.push_back({cells[0].text, cells[1].text, cells[2].text});
    }
    return all;
}

void add_country(store::Database& database, const std::string& folder, const std::string& base_currency) {
    const std::vector<Country> all = countries();
    if (std::ranges::find(all, folder, &Country::folder) == all.end()) {
        std::string known;
        for (const Country& country : all)
            known += (known.empty() ? "" : ", ") + country.folder;
        throw UnusableValue(
            fmt::format("there are no taxes of the country {}, only of {}", shown_text(folder), known));
    }
    import_folder(database, data_folder("countries") / "chart", {});
    import_folder(database, data_folder("countries") / folder, {});
    TableWriter balances(database, "Balance_table");
    auto accounts = database.OpenRecordset("SELECT accno,acccode FROM Account_master_table ORDER BY accno",
                                           store::RecordsetKind::snapshot);
    for (; !accounts.at_eof(); accounts.MoveNext())
        balances.add({{"company", kCompany},
                      {"ledgertype", "A"},
                      {"accno", accounts.text("accno")},
                      {"Currency", base_currency},
                      {"acccode", accounts.text("acccode")},
                      {"amount", 0.0},
                      {"base_amount", 0.0}});
}

}  // namespace brimley::company
