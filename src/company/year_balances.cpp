#include "company/year_balances.h"

#include <fmt/format.h>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "company/fiscal_year.h"
#include "company/period_balances.h"
#include "company/table_writer.h"

namespace brimley::company {

namespace {

using store::Recordset;
using store::RecordsetKind;

constexpr const char* kIdentity[] = {"company", "ledgertype", "accno",   "Currency", "acccode",
                                     "subacc",  "subacc2",    "subacc3", "subacc4",  "subacc5"};

std::string base_currency(store::Database& database) {
    Recordset config =
        database.OpenRecordset("SELECT Currency FROM COA_config_table", RecordsetKind::snapshot);
    return config.at_eof() ? std::string() : config.text("Currency");
}

class YearBalances {
  public:
    YearBalances(store::Database& database, std::string fyear)
        : database_(database),
          fyear_(std::move(fyear)),
          rows_(database.OpenRecordset("SELECT * FROM Balance_period_table WHERE 1 = 2",
                                       RecordsetKind::dynaset)) {
        Recordset accounts =
            database.OpenRecordset("SELECT accno,acctype FROM Account_master_table", RecordsetKind::snapshot);
        for (; !accounts.at_eof(); accounts.MoveNext()) {
            is_income_.emplace(accounts.text("accno"), accounts.text("acctype") == "Income Statement");
        }
        note_existing();
    }

    void carry(const CarryFrom& from);
    void add_missing_accounts();

  private:
    void note_existing();
    void add_carried(const Recordset& old, bool is_earlier);
    void set_family(const BalanceColumns& columns, double opening);
    [[nodiscard]] double carried(const FamilyBalances& family, const std::string& accno,
                                 bool is_earlier) const;
    static std::string key_of(const Recordset& row) {
        return fmt::format("{}|{}|{}|{}", row.text("company"), row.text("ledgertype"), row.text("accno"),
                           row.text("Currency"));
    }

    store::Database& database_;
    std::string fyear_;
    Recordset rows_;
    std::unordered_map<std::string, bool> is_income_;
    std::unordered_set<std::string> keys_;  // rows of the year that stand already
    std::unordered_set<std::string>
        base_accounts_;  // accounts of company 1 that have a row of the base ledger
};

void YearBalances::note_existing() {
    Recordset rows = database_.OpenRecordset(
        fmt::format("SELECT company,ledgertype,accno,Currency FROM Balance_period_table WHERE fyear = {}",
                    store::quoted(fyear_)),
        RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        keys_.insert(key_of(rows));
        if (rows.number("company") == kCompany && rows.text("ledgertype") == "A") {
            base_accounts_.insert(rows.text("accno"));
        }
    }
}

double YearBalances::carried(const FamilyBalances& family, const std::string& accno, bool is_earlier) const {
    const auto account = is_income_.find(accno);
    if (account != is_income_.end() && account->second) return 0;
    return is_earlier ? family.year_total() : family.opening;
}

void YearBalances::set_family(const BalanceColumns& columns, double opening) {
    rows_.set(columns.opening, opening);
    for (const std::string& movement : columns.movements) {
        rows_.set(movement, 0.0);
    }
    for (const std::string& balance : columns.running) {
        rows_.set(balance, opening);
    }
    rows_.set(columns.year_total, opening);
}

void YearBalances::add_carried(const Recordset& old, bool is_earlier) {
    const std::string accno = old.text("accno");
    rows_.AddNew();
    rows_.set("fyear", fyear_);
    for (const char* field : kIdentity) {
        rows_.set(field, old.field(field));
    }
    for (const BalanceColumns* columns : {&plain_columns(), &base_columns()}) {
        set_family(*columns, carried(read_family(old, *columns), accno, is_earlier));
    }
    rows_.Update();
    if (old.number("company") == kCompany && old.text("ledgertype") == "A") base_accounts_.insert(accno);
}

void YearBalances::carry(const CarryFrom& from) {
    Recordset old = database_.OpenRecordset(
        fmt::format("SELECT * FROM Balance_period_table WHERE fyear = {}", store::quoted(from.fyear)),
        RecordsetKind::snapshot);
    for (; !old.at_eof(); old.MoveNext()) {
        if (keys_.insert(key_of(old)).second) add_carried(old, from.is_earlier);
    }
}

void YearBalances::add_missing_accounts() {
    const std::string currency = base_currency(database_);
    Recordset accounts =
        database_.OpenRecordset("SELECT * FROM Account_master_table ORDER BY accno", RecordsetKind::snapshot);
    for (; !accounts.at_eof(); accounts.MoveNext()) {
        if (base_accounts_.contains(accounts.text("accno"))) continue;
        rows_.AddNew();
        rows_.set("fyear", fyear_);
        rows_.set("company", kCompany);
        rows_.set("ledgertype", "A");
        rows_.set("Currency", currency);
        for (const char* field : {"accno", "acccode", "subacc", "subacc2", "subacc3", "subacc4", "subacc5"}) {
            rows_.set(field, accounts.field(field));
        }
        set_family(plain_columns(), 0);
        set_family(base_columns(), 0);
        rows_.Update();
    }
}

}  // namespace

void add_year_balances(store::Database& database, const std::string& fyear,
                       const std::optional<CarryFrom>& from) {
    YearBalances balances(database, fyear);
    if (from) balances.carry(*from);
    balances.add_missing_accounts();
}

}  // namespace brimley::company
