// What a journal entry must be like, how it is posted, and how it is taken back.
#include <fmt/format.h>

#include "frame/working_period.h"
#include "kernel/gl_posting.h"
#include "kernel/gl_reversal.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "ledger/ledger_entry.h"

namespace brimley::ledger {

using kernel::FiscalPeriod;
using kernel::GlForm;
using store::DateTime;

namespace {

constexpr const char* kCompany = "1";

}  // namespace

// --- what is entered ---

std::optional<double> Ledger_entry::amount_in(int row, const char* column) {
    const std::string typed = dbgrid1.cell(row, column);
    if (typed.empty()) return 0;
    const double amount = kernel::is_numeric(typed) ? kernel::money_value(typed) : 0;
    if (amount > 0 && amount == kernel::Round(amount)) return amount;
    tell(fmt::format("{} {} in line {} is no amount of money above 0.", column, typed, row + 1));
    return std::nullopt;
}

std::optional<Ledger_entry::Line> Ledger_entry::entered_line(int row) {
    const std::string accno = dbgrid1.cell(row, "Account");
    const auto refused = [&](const std::string& why) {
        (void)refuse(why);
        return std::nullopt;
    };
    if (accno.empty()) return refused(fmt::format("Line {} has no account.", row + 1));
    const LedgerAccount* const account = accounts().find(accno);
    if (account == nullptr) return refused(fmt::format("There is no account {}.", accno));
    if (account->inactive) return refused(fmt::format("The account {} is inactive.", accno));
    const auto debit = amount_in(row, "Debit");
    if (!debit) return std::nullopt;
    const auto credit = amount_in(row, "Credit");
    if (!credit) return std::nullopt;
    if ((*debit == 0) == (*credit == 0))
        return refused(fmt::format("Line {} needs an amount on one side.", row + 1));
    return Line{accno, *debit - *credit};
}

std::optional<std::vector<Ledger_entry::Line>> Ledger_entry::entered_lines() {
    std::vector<Line> lines;
    for (int row = 0; row < dbgrid1.array.used_rows(); ++row) {
        if (!dbgrid1.array.row_has_text(row)) continue;
        const auto line = entered_line(row);
        if (!line) return std::nullopt;
        lines.push_back(*line);
    }
    if (!balances(lines)) return std::nullopt;
    return lines;
}

bool Ledger_entry::balances(const std::vector<Line>& lines) {
    if (lines.size() < 2) return refuse("An entry has two lines at least.");
    double debit = 0;
    double credit = 0;
    for (const Line& line : lines)
        (line.debit > 0 ? debit : credit) += line.debit;
    if (kernel::Round(debit + credit) == 0) return true;
    return refuse(fmt::format("The entry does not balance: debit {}, credit {}.", kernel::format_money(debit),
                              kernel::format_money(-credit)));
}

std::optional<DateTime> Ledger_entry::entered_day() {
    const auto day = kernel::try_user_date(txtdate.text(), context().BRIMLEY_DATE_FORMAT);
    if (!day)
        tell(fmt::format("{} is not a date ({}).", txtdate.empty() ? "Nothing" : txtdate.text(),
                         context().BRIMLEY_DATE_FORMAT));
    return day;
}

std::optional<FiscalPeriod> Ledger_entry::open_period_of(DateTime day) {
    std::optional<FiscalPeriod> period;
    const bool read = step("period of an entry", [&] {
        period = kernel().get_fiscal_period(day);
        if (!period || !frame::period_is_open(kernel(), period->fyear, period->period)) {
            period.reset();
            return;
        }
        const auto closed = kernel().look_up("Fiscalyear_table", {{"fyear", period->fyear}}, "history");
        if (!closed || !closed->flag()) return;
        tell(fmt::format("Fiscal year {} is closed.", period->fyear));
        period.reset();
    });
    if (!read) return std::nullopt;
    return period;
}

// --- what is stored ---

bool Ledger_entry::save() {
    read_accounts();
    const auto day = entered_day();
    if (!day) return false;
    if (txtremark.empty()) return refuse("Text is missing.");
    const auto lines = entered_lines();
    if (!lines) return false;
    const auto period = open_period_of(*day);
    if (!period) return false;
    std::string fkey;
    if (!in_transaction("save a journal entry", [&] { return post(*day, *period, *lines, fkey); })) {
        tell_failure("The journal entry was not saved.");
        return false;
    }
    set_mode(frame::Mode::read);
    show_key(fkey);
    tell(fmt::format("The journal entry {} is saved.", txtdocno.text()));
    return true;
}

bool Ledger_entry::post(DateTime day, const FiscalPeriod& period, const std::vector<Line>& lines,
                        std::string& fkey) {
    const kernel::GlRules rules = gl_rules(GlForm::journal_entry);
    kernel::GlDocument document;
    document.number = draw_gl_number(kernel(), kCompany, period.fyear, rules.ways.too_long);
    if (!document.number) return false;
    document.company = kCompany;
    document.gldate = day;
    document.source_docno = document.number->docno;
    document.Currency = document.base_currency = context().BASE_CURRENCY;
    document.period = std::to_string(period.period);
    document.fyear = period.fyear;
    document.user = context().BRIMLEY_USER;
    document.more_header_fields = {{"remark", txtremark.text()}};
    kernel::GlPosting posting(kernel(), rules, std::move(document));
    if (!posting.open()) return false;
    for (const Line& line : lines) {
        const double amount = accounts().debit_of(line.accno, line.debit);
        posting.add(line.accno, amount, amount);
    }
    fkey = posting.fkey();
    return posting.write_lines() && posting.finish();
}

void Ledger_entry::reverse() {
    const std::string docno = txtdocno.text();
    if (!ask(fmt::format("Are you sure you want to reverse the journal entry {}?", docno))) return;
    const auto period = open_period_of(desk().now().date_only());
    if (!period) return;
    if (!in_transaction("reverse a journal entry", [&] { return post_reverse(*period); }))
        return tell_failure(fmt::format("The journal entry {} was not reversed.", docno));
    show_key(std::string(shown_));
    tell(fmt::format("The journal entry {} is reversed.", docno));
}

bool Ledger_entry::post_reverse(const FiscalPeriod& period) {
    auto header = kernel().find_to_change("GL_header_table", {{"fkey", shown_}});
    if (header.at_eof()) return refuse("The journal entry no longer exists.");
    header.Edit();
    if (header.flag("Reverse")) return refuse("The journal entry is reversed already.");
    kernel::GlReversal reversal;
    reversal.fkey = shown_;
    reversal.company = kCompany;
    reversal.Currency = header.text("Currency");
    reversal.period = header.text("period");
    reversal.fyear = header.text("fyear");
    reversal.source_docno = header.text("docno");
    reversal.user = context().BRIMLEY_USER;
    reversal.into = period;
    if (!reverse_gl_document(kernel(), gl_reversal_rules(GlForm::journal_entry), reversal)) return false;
    // The reverse is the newest entry that names this one.
    const auto taken_by = kernel().read(
        fmt::format("SELECT docno FROM GL_header_table WHERE Source = 'GL-ENTRY' AND source_docno = {} AND "
                    "docno <> {} ORDER BY docno DESC",
                    store::quoted(reversal.source_docno), store::quoted(reversal.source_docno)));
    header.set("Reverse", true);
    header.set("Description", "Reversed by " + taken_by.text("docno"));
    header.Update();
    return true;
}

}  // namespace brimley::ledger
