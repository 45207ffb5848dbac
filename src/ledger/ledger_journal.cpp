#include "ledger/ledger_journal.h"

#include <fmt/format.h>

#include <utility>

#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::ledger {

namespace command = frame::command;
using store::Recordset;

namespace {

constexpr frame::FormIdentity kJournalIdentity{"Ledger_journal", "Journal", ""};

}  // namespace

Ledger_journal::Ledger_journal(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : LedgerForm(kJournalIdentity, std::move(context), std::move(kernel), desk) {
    set_caption(cmbaccount, "Account");
    set_caption(txtfrom, "From");
    set_caption(txtto, "To");
    set_caption(txtdebit, "Debit");
    set_caption(txtcredit, "Credit");
    for (const char* const caption : {"Date", "Entry no", "Source", "Source no", "Account"})
        add_column(dbgrid1, caption, Look::text);
    add_column(dbgrid1, "Name", Look::wide_text);
    for (const char* const caption : {"Debit", "Credit", "Balance"})
        add_column(dbgrid1, caption, Look::money);
    for (controls::TextField* const sum : {&txtdebit, &txtcredit})
        lock(*sum);
    cmbaccount.set_source(rows_of(kAccountList));
    dbgrid1.on_double_click = [this](int) { review(); };
}

std::vector<controls::Command> Ledger_journal::own_commands() const {
    using Bars = std::vector<std::string>;
    return {{command::kFind, "&Find", "", "List the lines", Bars{"Record", "Standard"}, 'F'},
            {command::kGlRecord, "&G/L record", "", "Show the whole document", Bars{"Record", "Standard"}}};
}

void Ledger_journal::show_first_values() {
    const store::DateTime today = desk().now().date_only();
    txtfrom.set(date_text(*store::DateTime::from_ymd(today.year(), today.month(), 1)));
    txtto.set(date_text(today));
}

void Ledger_journal::execute_own(int id) {
    if (id == command::kFind) list_lines();
    if (id == command::kGlRecord) review();
}

void Ledger_journal::show_account(const std::string& accno) {
    cmbaccount.set(accno);
    txtfrom.set("");
    txtto.set("");
    list_lines();
}

bool Ledger_journal::is_day(const controls::TextField& field, std::optional<store::DateTime>& day) {
    if (field.empty()) return true;
    day = kernel::try_user_date(field.text(), context().BRIMLEY_DATE_FORMAT);
    return day || refuse(fmt::format("{} is not a date ({}).", field.text(), context().BRIMLEY_DATE_FORMAT));
}

std::optional<Ledger_journal::Days> Ledger_journal::days() {
    Days days;
    if (!is_day(txtfrom, days.from) || !is_day(txtto, days.to)) return std::nullopt;
    if (days.from && days.to && *days.to < *days.from) {
        tell("The last day must not be before the first one.");
        return std::nullopt;
    }
    return days;
}

// The balance of an account takes all of its lines; the days choose what is shown of them.
Recordset Ledger_journal::read_lines(const Days& days) {
    std::string criteria = "1 = 1";
    if (!cmbaccount.empty()) {
        criteria = "accno = " + store::quoted(cmbaccount.text());
    } else {
        if (days.from) criteria += " AND gldate >= " + store::date_value(*days.from);
        // A document may carry its time.
        if (days.to) criteria += " AND gldate < " + store::date_value(days.to->plus_days(1));
    }
    return kernel().read_long(
        fmt::format("SELECT gldate, docno, fkey, lineno, accno, amount, base_amount, Source, source_docno "
                    "FROM GL_transaction_table WHERE {} ORDER BY gldate, docno, lineno",
                    criteria));
}

void Ledger_journal::list_lines() {
    const auto wanted = days();
    if (!wanted) return;
    read_accounts();
    if (!cmbaccount.empty() && accounts().find(cmbaccount.text()) == nullptr)
        return tell(fmt::format("There is no account {}.", cmbaccount.text()));
    step("list the lines", [&] {
        auto lines = read_lines(*wanted);
        fill(lines, *wanted);
    });
    dbgrid1.go_to(0, 0);
    dbgrid1.rebind();
}

double Ledger_journal::standing_now() {
    double standing = 0;
    double earned = 0;
    auto rows = kernel().read("SELECT accno, ledgertype, amount, base_amount FROM Balance_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string accno = rows.text("accno");
        const bool base_ledger = rows.text("ledgertype") == "A";
        const double debit = accounts().debit_of(accno, rows.number(base_ledger ? "amount" : "base_amount"));
        if (base_ledger && accno == cmbaccount.text()) standing += debit;
        // What came by the foreign ledger is in the base ledger as well, and has moved no Current Earnings.
        const LedgerAccount* const account = accounts().find(accno);
        if (account != nullptr && account->income_statement && !account->earnings)
            earned += base_ledger ? debit : -debit;
    }
    // Current Earnings without what posting moves it by.
    return accounts().find(cmbaccount.text())->earnings ? standing - earned : standing;
}

double Ledger_journal::brought_in(Recordset& lines) {
    double moved = 0;
    for (; !lines.at_eof(); lines.MoveNext())
        moved += accounts().debit_of(lines.text("accno"), base_amount_of(lines));
    if (lines.RecordCount() > 0) lines.MoveFirst();
    return kernel::Round(standing_now() - moved);
}

void Ledger_journal::fill(Recordset& lines, const Days& days) {
    dbgrid1.array.dimension(static_cast<int>(lines.RecordCount()) + 1);
    keys_.clear();
    const bool of_account = !cmbaccount.empty();
    double balance = of_account ? brought_in(lines) : 0;
    double debit_sum = 0;
    double credit_sum = 0;
    bool is_before = of_account;
    for (; !lines.at_eof(); lines.MoveNext()) {
        const std::string accno = lines.text("accno");
        const double debit = accounts().debit_of(accno, base_amount_of(lines));
        const auto day = lines.field("gldate").date();
        const bool early = of_account && days.from && day && *day < *days.from;
        if (!early && std::exchange(is_before, false)) show_before(days, balance);
        if (of_account && days.to && day && day->date_only() > *days.to) break;
        balance = kernel::Round(balance + debit);
        if (early) continue;
        (debit > 0 ? debit_sum : credit_sum) += debit;
        add_line(lines, debit,
                 of_account ? kernel::format_money(accounts().debit_of(accno, balance)) : std::string{});
    }
    if (is_before) show_before(days, balance);
    txtdebit.set(kernel::format_money(debit_sum));
    txtcredit.set(kernel::format_money(0 - credit_sum));
}

void Ledger_journal::add_line(const Recordset& line, double debit, const std::string& balance) {
    const std::string accno = line.text("accno");
    const std::string texts[] = {date_text(line.field("gldate")),
                                 line.text("docno"),
                                 line.text("Source"),
                                 line.text("source_docno"),
                                 accno,
                                 accounts().name_of(accno),
                                 debit_text(debit),
                                 credit_text(debit),
                                 balance};
    const int row = static_cast<int>(keys_.size());
    for (int column = 0; column < static_cast<int>(std::size(texts)); ++column)
        dbgrid1.array.set(row, column, texts[column]);
    keys_.push_back(line.text("fkey"));
}

void Ledger_journal::show_before(const Days& days, double balance) {
    if (balance == 0 && !days.from) return;
    dbgrid1.array.set(0, dbgrid1.get_column("Name"),
                      days.from ? "Before " + txtfrom.text() : "Brought in without lines");
    dbgrid1.array.set(0, dbgrid1.get_column("Balance"),
                      kernel::format_money(accounts().debit_of(cmbaccount.text(), balance)));
    keys_.emplace_back();
}

void Ledger_journal::review() {
    const auto row = static_cast<std::size_t>(std::max(dbgrid1.row(), 0));
    if (row < keys_.size() && !keys_[row].empty()) notify(kLedgerReview, keys_[row]);
}

}  // namespace brimley::ledger
