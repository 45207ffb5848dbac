// Balance_period_table: the totals by fiscal year and period, in two families of columns.

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>

#include "kernel/module_g3.h"
#include "kernel/money.h"

namespace brimley::kernel {

namespace {

using store::Recordset;

constexpr int kYearMax = 9999;

constexpr int kAdjust = kPeriods + 1;
constexpr int kClosing = kPeriods + 2;

std::vector<std::string> entered_names(const std::string& prefix) {
    std::vector<std::string> names{prefix + "opening_balance"};
    for (int i = 1; i <= kPeriods; ++i)
        names.push_back(fmt::format("{}period{}", prefix, i));
    names.push_back(prefix + "adjust");
    names.push_back(prefix + "closing");
    return names;
}

// The fields that find a row, written once: a prefetch and the look-up after it ask for the same.

template <class Look>
auto at_period(const LedgerKey& key, const Look& look) {
    return look(store::FieldValues{{"fyear", key.fyear},
                                   {"company", key.company},
                                   {"ledgertype", key.ledgertype},
                                   {"accno", key.accno},
                                   {"currency", key.Currency}});
}

template <class Look>
auto at_base_period(const LedgerKey& key, const Look& look) {
    return look(store::FieldValues{
        {"fyear", key.fyear}, {"company", key.company}, {"ledgertype", "A"}, {"accno", key.accno}});
}

// The place of a period key among what is entered, -1 for an unknown one.
int place_of_key(std::string_view key) {
    if (key == "AD") return kAdjust;
    if (key == "CL") return kClosing;
    int period = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), period);
    const bool is_period = error == std::errc{} && end == key.data() + key.size() && key.front() != '0' &&
                           period >= 1 && period <= kPeriods;
    return is_period ? period : -1;
}

}  // namespace

const std::string& period_query() {
    static const std::string query = [] {
        std::vector<std::string> names = entered_names("");
        std::ranges::move(entered_names("e_"), std::back_inserter(names));
        return fmt::format("SELECT {} FROM Balance_period_table", fmt::join(names, ", "));
    }();
    return query;
}

PeriodFamily::PeriodFamily(const Recordset& period_rows, const std::string& prefix) {
    std::ranges::transform(entered_names(prefix), entered_.begin(),
                           [&](const std::string& name) { return period_rows.column_of(name); });
    for (int i = 0; i < kPeriods; ++i)
        following_[i] = period_rows.column_to_set(fmt::format("{}balperiod{}", prefix, i + 1));
    following_[kPeriods] = period_rows.column_to_set(prefix + "ytd_balance");
}

void PeriodFamily::add(Recordset& period_row, std::string_view key, double amount) const {
    std::array<std::optional<double>, kEntered> held;
    period_row.numbers(entered_, held);
    std::array<double, kEntered> entered{};
    std::ranges::transform(held, entered.begin(),
                           [](const std::optional<double>& number) { return number.value_or(0); });
    if (const int place = place_of_key(key); place >= 0) entered[place] += amount;
    for (int i = 0; i < kEntered; ++i)
        if (held[i] != entered[i]) period_row.set_column(entered_[i], entered[i]);

    std::array<double, kFollowing> following{};
    double balance = entered[0];
    for (int i = 0; i < kPeriods; ++i)
        following[i] = balance += entered[i + 1];
    following[kPeriods] = balance + entered[kAdjust] + entered[kClosing];
    period_row.set_numbers(following_, following);
}

const PeriodColumns& ModuleG3::period_columns(const Recordset& period_rows) {
    if (!period_columns_ || !period_columns_->fit(period_rows)) period_columns_.emplace(period_rows);
    return *period_columns_;
}

bool ModuleG3::post_period_earnings(EarningsRow& period, const GlLine& line, bool debit) {
    if (!resolve_current_earnings()) return false;
    Recordset* const row =
        period.take(*this, period_query(),
                    {{"fyear", line.fyear}, {"company", line.company}, {"accno", Current_Earnings_accno_}});
    if (row == nullptr) {
        tell(fmt::format("Error : No Retained Earning account {} in Account Balance Period.",
                         Current_Earnings_accno_));
        return false;
    }
    const PeriodColumns& columns = period_columns(*row);
    columns.plain.add(*row, line.period, -side_of(debit) * line.amount);
    columns.base.add(*row, line.period, -side_of(debit) * line.base_amount);
    return true;
}

bool ModuleG3::post_balance_period(Recordset& period_rows, const GlLine& line, Recordset& account_row,
                                   CurrentEarnings& earnings) {
    bool posted = false;
    carry_on(reasons_, "post_balance_period", [&] {
        const std::string& accno = line.account.accno;
        if (accno == Current_Earnings_accno_) earnings.period.write();
        const auto edit = [&](store::FieldValues fields) { period_rows.edit_first(fields); };
        at_period(line.key(), edit);
        if (period_rows.NoMatch()) {
            tell(fmt::format("No account {} in fiscal year {}", accno, line.fyear));
            return;
        }
        const PeriodColumns& columns = period_columns(period_rows);
        columns.plain.add(period_rows, line.period, line.amount);
        columns.base.add(period_rows, line.period, line.base_amount);
        period_rows.Update();
        if (line.ledgertype == "F") {
            at_base_period(line.key(), edit);
            if (!period_rows.NoMatch()) {
                columns.plain.add(period_rows, line.period, line.base_amount);
                period_rows.Update();
            }
        }
        posted = account_row.text("acctype") != "Income Statement" || line.ledgertype != "A" ||
                 post_period_earnings(earnings.period, line, account_row.flag("debit"));
    });
    return posted;
}

void ModuleG3::prefetch_balance_period(Recordset& period_rows, const LedgerKey& key) {
    const auto prefetch = [&](store::FieldValues fields) { period_rows.prefetch_edit_first(fields); };
    at_period(key, prefetch);
    if (key.ledgertype == "F") at_base_period(key, prefetch);
}

void ModuleG3::add_period_rows(const AccountSegments& account, std::string_view currency, int first_year,
                               int last_year) {
    auto rows = find_to_change(
        "Balance_period_table",
        {{"company", "1"}, {"ledgertype", "F"}, {"accno", account.accno}, {"Currency", currency}});
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
    if (open_years.at_eof()) return refuse("No fiscal year is open");
    const auto newest =
        read("SELECT MAX(fyear) as maxfyear FROM Balance_period_table WHERE ledgertype = 'A'");
    if (newest.at_eof()) {
        // A MAX query always has its one row; the test stands as it always has.
        tell("Error : no account balance");
        return false;
    }
    const store::Value first_year = open_years.field("fyear");
    const store::Value last_year = newest.field("maxfyear");
    const auto account_row = find("Account_master_table", {{"accno", accno}});
    AccountSegments account;
    account.accno = accno;
    if (!account_row.at_eof()) account = segments_of(account_row);
    if (!last_year.is_null()) {
        const auto year_number = [](const store::Value& year) {
            return static_cast<int>(whole_number(money_value(year.text()), 0, kYearMax));
        };
        const int last = year_number(last_year);
        add_period_rows(account, currency, first_year.is_null() ? last : year_number(first_year), last);
    }
    return add_balance_row(account, currency);
}

}  // namespace brimley::kernel
