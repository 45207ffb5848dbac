#include "company/year_balances.h"

#include <fmt/format.h>

#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "company/fiscal_year.h"
#include "company/period_balances.h"

namespace brimley::company {

namespace {

using store::Recordset;
using store::RecordsetKind;
using store::Value;

constexpr const char* kSegments[] = {"acccode", "subacc", "subacc2", "subacc3", "subacc4", "subacc5"};

// One balance: whose it is, and what the year nearest to the new one says about it.
struct Balance {
    std::string fyear;
    double company = kCompany;
    std::string ledgertype = "A";
    std::string accno;
    std::string currency;
    std::vector<Value> segments;
    double opening = 0;
    double opening_base = 0;
};

class YearBalances {
  public:
    YearBalances(store::Database& database, std::string fyear)
        : database_(database), fyear_(std::move(fyear)) {}

    void gather();
    void write();

  private:
    void gather_accounts();
    void gather_balances();
    void note(const Recordset& row);
    [[nodiscard]] bool is_nearer(const std::string& candidate, const std::string& known) const;
    [[nodiscard]] double carried(const FamilyBalances& family, const Balance& balance) const;
    static void set_family(Recordset& rows, const BalanceColumns& columns, double opening);

    store::Database& database_;
    std::string fyear_;
    std::unordered_set<std::string> income_accounts_;
    std::map<std::string, Balance> balances_;   // by company, ledger, account and currency
    std::unordered_set<std::string> existing_;  // keys of rows that the year has already
    std::unordered_set<std::string>
        base_known_;  // accounts of this company with a balance of the base ledger
};

// An earlier year is nearer than any later one: its closing balances are what the new year opens with.
bool YearBalances::is_nearer(const std::string& candidate, const std::string& known) const {
    const bool candidate_earlier = candidate < fyear_;
    if (candidate_earlier != (known < fyear_)) return candidate_earlier;
    return candidate_earlier ? candidate > known : candidate < known;
}

double YearBalances::carried(const FamilyBalances& family, const Balance& balance) const {
    if (balance.fyear > fyear_) return family.opening;
    return income_accounts_.contains(balance.accno) ? 0 : family.year_total();
}

void YearBalances::note(const Recordset& row) {
    Balance balance{row.text("fyear"), row.number("company"), row.text("ledgertype"),
                    row.text("accno"), row.text("Currency"),  {}};
    const std::string key =
        fmt::format("{}|{}|{}|{}", balance.company, balance.ledgertype, balance.accno, balance.currency);
    if (balance.company == kCompany && balance.ledgertype == "A") base_known_.insert(balance.accno);
    if (balance.fyear == fyear_) {
        existing_.insert(key);
        return;
    }
    const auto known = balances_.find(key);
    if (known != balances_.end() && !is_nearer(balance.fyear, known->second.fyear)) return;
    for (const char* segment : kSegments) {
        balance.segments.push_back(row.field(segment));
    }
    balance.opening = carried(read_family(row, plain_columns()), balance);
    balance.opening_base = carried(read_family(row, base_columns()), balance);
    balances_.insert_or_assign(key, std::move(balance));
}

void YearBalances::gather_balances() {
    Recordset rows = database_.OpenRecordset("SELECT * FROM Balance_period_table", RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        note(rows);
    }
}

// Accounts that have been added to the chart since the last year was opened.
void YearBalances::gather_accounts() {
    Recordset config =
        database_.OpenRecordset("SELECT Currency FROM COA_config_table", RecordsetKind::snapshot);
    const std::string base_currency = config.at_eof() ? std::string() : config.text("Currency");
    Recordset accounts =
        database_.OpenRecordset("SELECT * FROM Account_master_table", RecordsetKind::snapshot);
    for (; !accounts.at_eof(); accounts.MoveNext()) {
        Balance balance;
        balance.accno = accounts.text("accno");
        if (base_known_.contains(balance.accno)) continue;
        balance.currency = base_currency;
        for (const char* segment : kSegments) {
            balance.segments.push_back(accounts.field(segment));
        }
        balances_.emplace("account " + balance.accno, balance);
    }
}

void YearBalances::gather() {
    Recordset accounts = database_.OpenRecordset(
        "SELECT accno,type FROM Account_master_table WHERE acctype = 'Income Statement'",
        RecordsetKind::snapshot);
    for (; !accounts.at_eof(); accounts.MoveNext()) {
        // Current Earnings is carried, whatever statement the chart puts it on.
        if (accounts.text("type") != "X") income_accounts_.insert(accounts.text("accno"));
    }
    gather_balances();
    gather_accounts();
}

void YearBalances::set_family(Recordset& rows, const BalanceColumns& columns, double opening) {
    rows.set(columns.opening, opening);
    for (const std::string& movement : columns.movements) {
        rows.set(movement, 0.0);
    }
    for (const std::string& balance : columns.running) {
        rows.set(balance, opening);
    }
    rows.set(columns.year_total, opening);
}

void YearBalances::write() {
    Recordset rows =
        database_.OpenRecordset("SELECT * FROM Balance_period_table WHERE 1 = 2", RecordsetKind::dynaset);
    for (const auto& [key, balance] : balances_) {
        if (existing_.contains(key)) continue;
        rows.AddNew();
        rows.set("fyear", fyear_);
        rows.set("company", balance.company);
        rows.set("ledgertype", balance.ledgertype);
        rows.set("accno", balance.accno);
        rows.set("Currency", balance.currency);
        for (std::size_t segment = 0; segment < balance.segments.size(); ++segment) {
            rows.set(kSegments[segment], balance.segments[segment]);
        }
        set_family(rows, plain_columns(), balance.opening);
        set_family(rows, base_columns(), balance.opening_base);
        rows.Update();
    }
}

}  // namespace

void add_year_balances(store::Database& database, const std::string& fyear) {
    YearBalances balances(database, fyear);
    balances.gather();
    balances.write();
}

}  // namespace brimley::company
