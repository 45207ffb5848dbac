// The two balance tables against the GL lines, and the rows that foreign postings need.
#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <set>

#include "company/check.h"
#include "company/ledger_movements.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

std::string balance_key(const Recordset& row) {
    return fmt::format("{}|{}|{}|{}", row.text("company"), row.text("ledgertype"), row.text("accno"),
                       row.text("Currency"));
}

void add_row_of(LedgerMovements& movements, const std::string& fyear, const Recordset& row) {
    movements.add_row(fyear, row.number("company"), row.text("ledgertype"), row.text("accno"),
                      row.text("Currency"));
}

struct Opening {
    std::string fyear;
    double plain = 0;
    double base = 0;
};

// What each balance stood at before the first fiscal year that it has a row for.
std::unordered_map<std::string, Opening> first_openings(const Books& books) {
    std::unordered_map<std::string, Opening> openings;
    Recordset rows = books.read(
        "SELECT fyear,company,ledgertype,accno,Currency,opening_balance,e_opening_balance FROM "
        "Balance_period_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const Opening opening{rows.text("fyear"), rows.number("opening_balance"),
                              rows.number("e_opening_balance")};
        const auto [known, is_new] = openings.emplace(balance_key(rows), opening);
        if (!is_new && opening.fyear < known->second.fyear) known->second = opening;
    }
    return openings;
}

// Hears of each field of the row that `rows` stands on which is a hundredth or more from what it should be.
using Wrong =
    std::function<void(const std::string& row, const std::string& field, double stored, double expected)>;

Wrong finding_in(Findings& findings) {
    return [&findings](const std::string& row, const std::string& field, double stored, double expected) {
        findings.push_back(fmt::format("{}: {} is {:.2f}, expected {:.2f}", row, field, stored, expected));
    };
}

void compare(const std::string& row, const std::string& field, double stored, double expected,
             const Wrong& wrong) {
    if (differ(stored, expected)) wrong(row, field, stored, expected);
}

void compare_family(const Recordset& row, const BalanceColumns& columns,
                    const std::array<double, kMovements>& expected, const std::string& name,
                    const Wrong& wrong) {
    for (std::size_t movement = 0; movement < columns.movements.size(); ++movement) {
        const std::string& field = columns.movements[movement];
        compare(name, field, row.number(field), expected[movement], wrong);
    }
}

void compare_running(const Recordset& row, const BalanceColumns& columns, const Wrong& wrong) {
    const FamilyBalances family = read_family(row, columns);
    const auto running = family.running();
    const std::string name =
        shown_text(fmt::format("{} {} {} {} {}", kPeriodTable.name, row.text("fyear"), row.text("ledgertype"),
                               row.text("accno"), row.text("Currency")));
    const bool moved =
        std::any_of(family.movements.begin(), family.movements.end(), [](double m) { return m != 0; });
    const auto compare_computed = [&](const std::string& field, double expected) {
        // Null until the first posting computes it.
        if (!moved && row.field(field).is_null()) return;
        compare(name, field, row.number(field), expected, wrong);
    };
    for (std::size_t period = 0; period < running.size(); ++period) {
        compare_computed(columns.running[period], running[period]);
    }
    compare_computed(columns.year_total, family.year_total());
}

// Each walks the rows of a table, from the first one; what has no row is among the findings.

void compare_totals(const Books& books, Recordset& rows, Findings& findings, const Wrong& wrong) {
    LedgerMovements movements(books, kBalanceTable, findings);
    for (; !rows.at_eof(); rows.MoveNext()) {
        add_row_of(movements, "", rows);
    }
    movements.post_all();
    const auto openings = first_openings(books);
    rows.MoveFirst();
    for (std::size_t row = 0; !rows.at_eof(); rows.MoveNext(), ++row) {
        const auto found = openings.find(balance_key(rows));
        const Opening opening = found == openings.end() ? Opening() : found->second;
        const std::string& name = movements.name_of_row(row);
        const Movements& moved = movements.of_row(row);
        compare(name, "amount", rows.number("amount"), opening.plain + moved.plain[0], wrong);
        compare(name, "base_amount", rows.number("base_amount"), opening.base + moved.base[0], wrong);
    }
}

void compare_periods(const Books& books, Recordset& rows, Findings& findings, const Wrong& wrong) {
    LedgerMovements movements(books, kPeriodTable, findings);
    for (; !rows.at_eof(); rows.MoveNext()) {
        add_row_of(movements, rows.text("fyear"), rows);
    }
    movements.post_all();
    rows.MoveFirst();
    for (std::size_t row = 0; !rows.at_eof(); rows.MoveNext(), ++row) {
        const std::string& name = movements.name_of_row(row);
        compare_family(rows, plain_columns(), movements.of_row(row).plain, name, wrong);
        compare_family(rows, base_columns(), movements.of_row(row).base, name, wrong);
    }
}

void compare_all_running(Recordset& rows, const Wrong& wrong) {
    for (; !rows.at_eof(); rows.MoveNext()) {
        compare_running(rows, plain_columns(), wrong);
        compare_running(rows, base_columns(), wrong);
    }
}

constexpr const char* kTotals = "SELECT * FROM Balance_table";
constexpr const char* kPeriods = "SELECT * FROM Balance_period_table";

}  // namespace

void check_balances(const Books& books, Findings& findings) {
    Recordset rows = books.read(kTotals);
    compare_totals(books, rows, findings, finding_in(findings));
}

void check_period_balances(const Books& books, Findings& findings) {
    Recordset rows = books.read(kPeriods);
    compare_periods(books, rows, findings, finding_in(findings));
}

void check_running_balances(const Books& books, Findings& findings) {
    Recordset rows = books.read(kPeriods);
    compare_all_running(rows, finding_in(findings));
}

std::vector<std::string> repair_balances(store::Database& database) {
    std::vector<std::string> repaired;
    Findings missing_rows;  // the check tells of them; no row is made here
    const auto repair = [&](Recordset& rows) {
        return [&repaired, &rows](const std::string& row, const std::string& field, double stored,
                                  double expected) {
            rows.Edit();
            rows.set(field, kernel::Round(expected));
            rows.Update();
            repaired.push_back(fmt::format("{}: {} was {:.2f}, is {:.2f} now", row, field, stored, expected));
        };
    };
    const Books books(database);
    Recordset totals = database.OpenRecordset(kTotals, store::RecordsetKind::dynaset);
    compare_totals(books, totals, missing_rows, repair(totals));
    Recordset periods = database.OpenRecordset(kPeriods, store::RecordsetKind::dynaset);
    compare_periods(books, periods, missing_rows, repair(periods));
    // The running balances follow from what stands there now.
    Recordset running = database.OpenRecordset(kPeriods, store::RecordsetKind::dynaset);
    compare_all_running(running, repair(running));
    return repaired;
}

namespace {

std::string pair_key(const Recordset& row) { return row.text("accno") + "|" + row.text("Currency"); }

std::set<std::string> foreign_rows(const Books& books) {
    std::set<std::string> keys;
    Recordset rows =
        books.read("SELECT accno,Currency FROM Balance_table WHERE company = 1 AND ledgertype = 'F'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        keys.insert(pair_key(rows));
    }
    return keys;
}

// Open years for which there are balances of the base ledger at all: later ones are not opened yet.
std::set<std::string> open_years(const Books& books) {
    std::set<std::string> with_balances;
    Recordset balances =
        books.read("SELECT fyear FROM Balance_period_table WHERE company = 1 AND ledgertype = 'A'");
    for (; !balances.at_eof(); balances.MoveNext()) {
        with_balances.insert(balances.text("fyear"));
    }
    std::set<std::string> years;
    Recordset rows = books.read("SELECT fyear FROM Fiscalyear_table WHERE history = FALSE");
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (with_balances.contains(rows.text("fyear"))) years.insert(rows.text("fyear"));
    }
    return years;
}

std::set<std::string> foreign_period_rows(const Books& books) {
    std::set<std::string> keys;
    Recordset rows = books.read(
        "SELECT fyear,accno,Currency FROM Balance_period_table WHERE company = 1 AND ledgertype = 'F'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        keys.insert(rows.text("fyear") + "|" + pair_key(rows));
    }
    return keys;
}

}  // namespace

void check_account_currencies(const Books& books, Findings& findings) {
    Recordset config = books.read("SELECT Currency FROM COA_config_table");
    const std::string base_currency = config.at_eof() ? std::string() : config.text("Currency");
    const auto balances = foreign_rows(books);
    const auto periods = foreign_period_rows(books);
    const auto years = open_years(books);
    Recordset pairs = books.read("SELECT accno,Currency FROM Account_currency_table ORDER BY accno,Currency");
    for (; !pairs.at_eof(); pairs.MoveNext()) {
        if (pairs.text("Currency") == base_currency) continue;
        const std::string pair = shown_text(pairs.text("accno") + " in " + pairs.text("Currency"));
        const std::string key = pair_key(pairs);
        if (!balances.contains(key)) {
            findings.push_back(
                fmt::format("Account {} can never be posted to: it has no F row in Balance_table", pair));
        }
        for (const std::string& year : years) {
            if (periods.contains(year + "|" + key)) continue;
            findings.push_back(fmt::format(
                "Account {} cannot be posted to in fiscal year {}: it has no F row in Balance_period_table",
                pair, shown_text(year)));
        }
    }
}

}  // namespace brimley::company
