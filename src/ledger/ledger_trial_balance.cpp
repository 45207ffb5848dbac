#include "ledger/ledger_trial_balance.h"

#include <fmt/format.h>

#include <charconv>

#include "company/period_balances.h"
#include "kernel/money.h"

namespace brimley::ledger {

namespace command = frame::command;

namespace {

constexpr frame::FormIdentity kTrialIdentity{"Ledger_trial_balance", "Trial balance", ""};

}  // namespace

Ledger_trial_balance::Ledger_trial_balance(frame::HostContext context,
                                           std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
    : LedgerForm(kTrialIdentity, std::move(context), std::move(kernel), desk) {
    set_caption(cmbfyear, "Fiscal year");
    set_caption(cmbperiod, "Period");
    set_caption(txtdebit, "Debit");
    set_caption(txtcredit, "Credit");
    set_caption(txtdifference, "Difference");
    add_column(dbgrid1, "Account", Look::text);
    add_column(dbgrid1, "Name", Look::wide_text);
    for (const char* const caption : {"Opening", "Movement", "Debit", "Credit"})
        add_column(dbgrid1, caption, Look::money);
    for (controls::TextField* const sum : {&txtdebit, &txtcredit, &txtdifference})
        lock(*sum);
    cmbfyear.set_source(rows_of("SELECT fyear FROM Fiscalyear_table ORDER BY fyear"));
    std::vector<controls::ComboBox::Row> periods;
    for (int period = 1; period <= company::kPeriodColumns; ++period)
        periods.push_back({std::to_string(period)});
    cmbperiod.set_items(std::move(periods));
    dbgrid1.on_double_click = [this](int) { show_journal(); };
}

std::vector<controls::Command> Ledger_trial_balance::own_commands() const {
    using Bars = std::vector<std::string>;
    return {{command::kFind, "&Find", "", "List the accounts", Bars{"Record", "Standard"}, 'F'},
            {command::kGlRecord, "&Journal", "", "The lines of the account", Bars{"Record", "Standard"}}};
}

void Ledger_trial_balance::show_first_values() {
    step("period of today", [&] {
        const auto today = kernel().get_fiscal_period(desk().now().date_only());
        if (!today) return;
        cmbfyear.set(today->fyear);
        cmbperiod.set(std::to_string(today->period));
    });
}

void Ledger_trial_balance::execute_own(int id) {
    if (id == command::kFind) list_accounts();
    if (id == command::kGlRecord) show_journal();
}

Ledger_trial_balance::Standings Ledger_trial_balance::read_standings(int period) {
    Standings standings;
    auto rows = kernel().find("Balance_period_table", {{"fyear", cmbfyear.text()}});
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string ledgertype = rows.text("ledgertype");
        if (ledgertype != "A" && ledgertype != "F") continue;
        const company::FamilyBalances balances = company::read_family(
            rows, ledgertype == "A" ? company::plain_columns() : company::base_columns());
        const std::string accno = rows.text("accno");
        const double movement = accounts().debit_of(
            accno, balances.running()[static_cast<std::size_t>(period - 1)] - balances.opening);
        Standing& standing = standings[accno];
        if (ledgertype == "F") {
            standing.foreign += movement;
            continue;
        }
        standing.opening += accounts().debit_of(accno, balances.opening);
        standing.movement += movement;
    }
    return standings;
}

void Ledger_trial_balance::take_out_earnings(Standings& standings) const {
    double earned = 0;  // on the debit side
    Standing* earnings = nullptr;
    for (auto& [accno, standing] : standings) {
        const LedgerAccount* const account = accounts().find(accno);
        if (account == nullptr) continue;
        if (account->earnings)
            earnings = &standing;
        else if (account->income_statement)
            earned += standing.movement - standing.foreign;
    }
    if (earnings != nullptr) earnings->movement -= earned;
}

void Ledger_trial_balance::list_accounts() {
    int period = 0;
    const std::string& typed = cmbperiod.text();
    const auto read = std::from_chars(typed.data(), typed.data() + typed.size(), period);
    if (read.ptr != typed.data() + typed.size() || period < 1 || period > company::kPeriodColumns)
        return tell(fmt::format("There is no period {}.", typed));
    bool has_year = false;
    step("look up", [&] { has_year = kernel().exists("Fiscalyear_table", {{"fyear", cmbfyear.text()}}); });
    if (!has_year) return tell(fmt::format("There is no fiscal year {}.", cmbfyear.text()));
    read_accounts();
    step("list the accounts", [&] {
        Standings standings = read_standings(period);
        take_out_earnings(standings);
        fill(standings);
    });
    dbgrid1.go_to(0, 0);
    dbgrid1.rebind();
}

void Ledger_trial_balance::fill(const Standings& standings) {
    dbgrid1.array.dimension(static_cast<int>(standings.size()));
    double debit_sum = 0;
    double credit_sum = 0;
    int row = 0;
    for (const auto& [accno, standing] : standings) {
        const double opening = kernel::Round(standing.opening);
        const double movement = kernel::Round(standing.movement);
        const double closing = kernel::Round(standing.opening + standing.movement);
        if (opening == 0 && movement == 0 && closing == 0 && !chkmoved.is_set()) continue;
        (closing > 0 ? debit_sum : credit_sum) += closing;
        const std::string texts[] = {accno,
                                     accounts().name_of(accno),
                                     kernel::format_money(accounts().debit_of(accno, opening)),
                                     kernel::format_money(accounts().debit_of(accno, movement)),
                                     debit_text(closing),
                                     credit_text(closing)};
        for (int column = 0; column < static_cast<int>(std::size(texts)); ++column)
            dbgrid1.array.set(row, column, texts[column]);
        ++row;
    }
    txtdebit.set(kernel::format_money(debit_sum));
    txtcredit.set(kernel::format_money(0 - credit_sum));
    txtdifference.set(kernel::format_money(kernel::Round(debit_sum + credit_sum)));
}

void Ledger_trial_balance::show_journal() {
    const std::string accno = dbgrid1.cell(dbgrid1.row(), "Account");
    if (!accno.empty()) notify("Journal", accno);
}

}  // namespace brimley::ledger
