// Balance_period_table: the totals by fiscal year and period, in two families of columns.

#include <fmt/format.h>

#include <array>

#include "kernel/module_g3.h"
#include "kernel/money.h"

namespace brimley::kernel {

namespace {

using store::quoted;
using store::Recordset;

constexpr int kPeriods = 13;

// The names of one family's columns: the plain one, or its base-currency twin with "e_" before each name.
struct PeriodFamily {
    explicit PeriodFamily(const std::string& prefix)
        : opening(prefix + "opening_balance"),
          adjust(prefix + "adjust"),
          closing(prefix + "closing"),
          ytd(prefix + "ytd_balance") {
        for (int i = 0; i < kPeriods; ++i) {
            period[i] = fmt::format("{}period{}", prefix, i + 1);
            balance[i] = fmt::format("{}balperiod{}", prefix, i + 1);
        }
    }
    // The column of a period key; null for an unknown key.
    [[nodiscard]] const std::string* column(std::string_view key) const {
        if (key == "AD") return &adjust;
        if (key == "CL") return &closing;
        for (int i = 0; i < kPeriods; ++i) {
            if (key == std::to_string(i + 1)) return &period[i];
        }
        return nullptr;
    }

    std::array<std::string, kPeriods> period;
    std::array<std::string, kPeriods> balance;
    std::string opening, adjust, closing, ytd;
};

const PeriodFamily& plain_family() {
    static const PeriodFamily family("");
    return family;
}

const PeriodFamily& base_family() {
    static const PeriodFamily family("e_");
    return family;
}

double null_to_zero(Recordset& row, const std::string& field) {
    const store::Value value = row.field(field);
    if (!value.is_null()) return value.number();
    row.set(field, 0.0);
    return 0;
}

void recompute(Recordset& row, const PeriodFamily& family) {
    double balance = null_to_zero(row, family.opening);
    for (int i = 0; i < kPeriods; ++i) {
        balance += null_to_zero(row, family.period[i]);
        row.set(family.balance[i], balance);
    }
    balance += null_to_zero(row, family.adjust);
    row.set(family.ytd, balance + null_to_zero(row, family.closing));
}

void add_to_family(Recordset& row, const PeriodFamily& family, std::string_view key, double amount) {
    if (const std::string* column = family.column(key)) row.set(*column, row.number(*column) + amount);
    recompute(row, family);
}

}  // namespace

void add_to_period(Recordset& period_row, std::string_view key, double amount) {
    add_to_family(period_row, plain_family(), key, amount);
}

void add_to_base_period(Recordset& period_row, std::string_view key, double amount) {
    add_to_family(period_row, base_family(), key, amount);
}

void recompute_balances(Recordset& period_row) { recompute(period_row, plain_family()); }
void recompute_base_balances(Recordset& period_row) { recompute(period_row, base_family()); }

bool ModuleG3::post_period_earnings(Recordset& period_rows, const GlLine& line, bool debit) {
    if (!resolve_current_earnings()) return false;
    period_rows.FindFirst(fmt::format("[fyear] = {} and [company] = {} and [accno] = {}", quoted(line.fyear),
                                      quoted(line.company), quoted(Current_Earnings_accno_)));
    if (period_rows.NoMatch()) {
        tell(fmt::format("Error : No Retained Earning account {} in Account Balance Period.",
                         Current_Earnings_accno_));
        return false;
    }
    period_rows.Edit();
    add_to_period(period_rows, line.period, -side_of(debit) * line.amount);
    add_to_base_period(period_rows, line.period, -side_of(debit) * line.base_amount);
    period_rows.Update();
    return true;
}

bool ModuleG3::post_balance_period(Recordset& period_rows, const GlLine& line, Recordset& account_row) {
    bool posted = false;
    carry_on(passed_over_, "post_balance_period", [&] {
        const std::string& accno = line.account.accno;
        period_rows.FindFirst(fmt::format(
            "[fyear] = {} and [company] = {} and [ledgertype] = {} and [accno] = {} and [currency] = {}",
            quoted(line.fyear), quoted(line.company), quoted(line.ledgertype), quoted(accno),
            quoted(line.Currency)));
        if (period_rows.NoMatch()) {
            tell(fmt::format("No account {} in fiscal year {}", accno, line.fyear));
            return;
        }
        period_rows.Edit();
        add_to_period(period_rows, line.period, line.amount);
        add_to_base_period(period_rows, line.period, line.base_amount);
        period_rows.Update();
        if (line.ledgertype == "F") {
            period_rows.FindFirst(
                fmt::format("[fyear] = {} and [company] = {} and [ledgertype] = 'A' and [accno] = {}",
                            quoted(line.fyear), quoted(line.company), quoted(accno)));
            if (!period_rows.NoMatch()) {
                period_rows.Edit();
                add_to_period(period_rows, line.period, line.base_amount);
                period_rows.Update();
            }
        }
        posted = account_row.text("acctype") != "Income Statement" || line.ledgertype != "A" ||
                 post_period_earnings(period_rows, line, account_row.flag("debit"));
    });
    return posted;
}

void ModuleG3::add_period_rows(const AccountSegments& account, std::string_view currency, int first_year,
                               int last_year) {
    auto rows =
        change(fmt::format("SELECT * FROM Balance_period_table WHERE company = 1 AND ledgertype = 'F' AND "
                           "accno = {} AND Currency = {}",
                           quoted(account.accno), quoted(currency)));
    if (!rows.at_eof()) return;
    for (int year = first_year; year <= last_year; ++year) {
        for (const char* ledgertype : {"F", "E"}) {
            rows.AddNew();
            rows.set("ledgertype", ledgertype);
            rows.set("fyear", std::to_string(year));
            rows.set("company", 1);
            rows.set("Currency", currency);
            rows.set("accno", account.accno);
            rows.set("acccode", account.acccode);
            for (std::size_t i = 0; i < kSubaccFields.size(); ++i)
                rows.set(kSubaccFields[i], account.subacc[i]);
            rows.Update();
        }
    }
}

bool ModuleG3::create_foreign_balance_rows(std::string_view accno, std::string_view currency) {
    const auto open_years = read("SELECT * FROM Fiscalyear_table WHERE history = FALSE ORDER BY fyear");
    if (open_years.at_eof()) return false;
    const auto newest =
        read("SELECT MAX(fyear) as maxfyear FROM Balance_period_table WHERE ledgertype = 'A'");
    if (newest.at_eof()) {
        // A MAX query always has its one row; the test stands as it always has.
        tell("Error : no account balance");
        return false;
    }
    const store::Value first_year = open_years.field("fyear");
    const store::Value last_year = newest.field("maxfyear");
    const auto account_row =
        read(fmt::format("SELECT * FROM Account_master_table WHERE accno = {}", quoted(accno)));
    AccountSegments account;
    account.accno = accno;
    if (!account_row.at_eof()) account = segments_of(account_row);
    if (!last_year.is_null()) {
        const auto year_number = [](const store::Value& year) {
            return static_cast<int>(money_value(year.text()));
        };
        const int last = year_number(last_year);
        add_period_rows(account, currency, first_year.is_null() ? last : year_number(first_year), last);
    }
    return add_balance_row(account, currency);
}

}  // namespace brimley::kernel
