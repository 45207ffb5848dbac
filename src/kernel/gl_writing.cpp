#include "kernel/gl_writing.h"

#include <fmt/format.h>

#include "kernel/money.h"

namespace brimley::kernel {

std::string filled_in(const char* text, const std::string& number) {
    return fmt::format(fmt::runtime(text), number);
}

std::optional<GlNumber> draw_gl_number(ModuleG3& kernel, const std::string& company, const std::string& fyear,
                                       ModuleG3::TooLongMessage too_long) {
    const auto numbers = kernel.get_next_number(company, "gl", fyear);
    if (!numbers) return std::nullopt;
    const std::string docno = kernel.format_docno("gl", numbers->nextdocno, fyear);
    if (!kernel.docno_fits(docno, too_long)) return std::nullopt;
    return GlNumber{docno, ModuleG3::make_fkey(company, "gl", numbers->fkeyno)};
}

void GlLineWriter::open() {
    open_balances();
    // What lines, balances and the check of a document want of an account.
    account_rows_ = kernel_.change(
        "SELECT accno, acccode, subacc, subacc2, subacc3, subacc4, subacc5, acctype, debit, inactive FROM "
        "Account_master_table");
    line_rows_ = kernel_.change("SELECT * FROM GL_transaction_table WHERE 1 = 2");
}

void GlLineWriter::open_balances() {
    balance_rows_ = kernel_.change("SELECT amount, base_amount FROM Balance_table");
    period_rows_ = kernel_.change(period_query());
}

void GlLineWriter::prefetch(const LedgerKey& key) {
    account_rows_.prefetch_first({{"accno", key.accno}});
    ModuleG3::prefetch_balance(balance_rows_, key);
    ModuleG3::prefetch_balance_period(period_rows_, key);
}

bool GlLineWriter::find_account(std::string_view accno) {
    account_rows_.FindFirst({{"accno", accno}});
    return !account_rows_.NoMatch();
}

bool GlLineWriter::write(const GlLine& line) {
    fill_row(line);
    if (!with_retry(kernel_, [&] { line_rows_.Update(); })) return false;
    if (line.ledgertype == "F" && !open_account_for_currency(line)) return false;
    if (!kernel_.post_balance(balance_rows_, line, account_rows_, earnings_) ||
        !kernel_.post_balance_period(period_rows_, line, account_rows_, earnings_)) {
        return false;
    }
    const bool debit = account_rows_.flag("debit");
    base_difference_ = Round(base_difference_ + side_of(debit) * line.base_amount);
    written_.push_back({line.account.accno, line.base_amount, debit, account_rows_.flag("inactive")});
    return true;
}

void GlLineWriter::fill_row(const GlLine& line) {
    const store::DateTime now = kernel_.outside().now();
    line_rows_.AddNew();
    line_rows_.set("lineno", line.lineno);
    set_account_and_amounts(line);
    line_rows_.set("Currency", line.Currency);
    line_rows_.set("ledgertype", line.ledgertype);
    line_rows_.set("Source", origin_.Source);
    line_rows_.set("date_created", now.date_only());
    line_rows_.set("time_created", now.time_text());
    line_rows_.set("source_form", origin_.source_form);
    line_rows_.set("source_docno", origin_.source_docno);
    line_rows_.set("docno", line.docno);
    line_rows_.set("company", line.company);
    if (line.gldate) line_rows_.set("gldate", *line.gldate);
    line_rows_.set("fkey", line.fkey);
    line_rows_.set("period", line.period);
    set_year_and_user(line);
    if (!line.vendor_no.empty()) line_rows_.set("vendor_no", line.vendor_no);
    for (const GlField& field : origin_.more_fields)
        line_rows_.set(field.name, field.value);
}

void GlLineWriter::set_account_and_amounts(const GlLine& line) {
    line_rows_.set("accno", line.account.accno);
    line_rows_.set("amount", line.amount);
    if (origin_.fields == GlLineFields::older) return;
    line_rows_.set("acccode", line.account.acccode);
    for (std::size_t i = 0; i < kSubaccFields.size(); ++i)
        line_rows_.set(kSubaccFields[i], line.account.subacc[i]);
    line_rows_.set("base_amount", line.base_amount);
    if (line.exchange_rate) line_rows_.set("exchange_rate", *line.exchange_rate);
}

void GlLineWriter::set_year_and_user(const GlLine& line) {
    const bool older = origin_.fields == GlLineFields::older;
    line_rows_.set(older ? "fiscalyear" : "fyear", line.fyear);
    line_rows_.set(older ? "userid" : "user_created", origin_.user);
}

bool GlLineWriter::open_account_for_currency(const GlLine& line) {
    if (kernel_.account_currency_exists(line.account.accno, line.Currency)) return true;
    if (!kernel_.add_account_currency(line.account.accno, line.Currency)) {
        kernel_.tell(
            fmt::format("Account {} has not been set for currency {}", line.account.accno, origin_.Currency));
        return false;
    }
    open_balances();  // the recordsets opened before do not show the new rows
    return true;
}

}  // namespace brimley::kernel
