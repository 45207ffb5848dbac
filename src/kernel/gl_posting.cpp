#include "kernel/gl_posting.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "kernel/money.h"

namespace brimley::kernel {

namespace {

using store::quoted;

constexpr int kUpdateRetries = 5;
constexpr double kRoundingDifferenceBelow =
    1.0;  // a larger difference is no rounding, and the document is refused

}  // namespace

GlPosting::GlPosting(ModuleG3& kernel, GlHeader header) : kernel_(kernel), header_(std::move(header)) {}

bool GlPosting::open() {
    header_row_ = kernel_.change("SELECT * FROM GL_header_table WHERE 1 = 2");
    const auto numbers = kernel_.get_next_number(header_.company, "gl", header_.fyear);
    if (!numbers) return false;
    docno_ = kernel_.format_docno("gl", numbers->nextdocno, header_.fyear);
    if (!kernel_.docno_fits(docno_)) return false;
    fkey_ = ModuleG3::make_fkey(header_.company, "gl", numbers->fkeyno);
    const store::DateTime now = kernel_.outside().now();
    header_row_.AddNew();
    header_row_.set("company", header_.company);
    header_row_.set("doctype", "gl");
    header_row_.set("docno", docno_);
    header_row_.set("gldate", header_.gldate);
    header_row_.set("fkey", fkey_);
    header_row_.set("remark", header_.remark);
    header_row_.set("Source", header_.Source);
    header_row_.set("source_docno", header_.source_docno);
    header_row_.set("source_form", header_.source_form);
    header_row_.set("Currency", header_.Currency);
    if (header_.foreign()) header_row_.set("exchange_rate", header_.rate_doc_to_base);
    header_row_.set("period", header_.period);
    header_row_.set("fyear", header_.fyear);
    header_row_.set("user_created", header_.user);
    header_row_.set("date_created", now.date_only());
    header_row_.set("time_created", now.time_text());
    open_balances();
    account_rows_ = kernel_.change("SELECT * FROM Account_master_table");
    line_rows_ = kernel_.change("SELECT * FROM GL_transaction_table WHERE 1 = 2");
    return true;
}

void GlPosting::open_balances() {
    balance_rows_ = kernel_.change("SELECT * FROM Balance_table");
    period_rows_ = kernel_.change("SELECT * FROM Balance_period_table");
}

void GlPosting::add(std::string_view accno, double amount, double base_amount) {
    add_to_currency_summary(summary_, accno, amount, base_amount, header_.Currency);
}

bool GlPosting::write_lines() {
    std::vector<CurrencySum> sorted = summary_;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const CurrencySum& a, const CurrencySum& b) { return a.accno < b.accno; });
    return std::all_of(sorted.begin(), sorted.end(),
                       [&](const CurrencySum& entry) { return write_entry(entry); });
}

// An allocated account shows the amount going in and out again, and the receiving accounts follow.
bool GlPosting::write_entry(const CurrencySum& entry) {
    if (entry.amount == 0) return true;
    if (!write_line(entry.accno, entry)) return false;
    auto shares = kernel_.read(
        fmt::format("SELECT * FROM Allocation_Account_table WHERE allocate_accno = {}", quoted(entry.accno)));
    if (shares.at_eof()) return true;
    if (!write_line(entry.accno, {entry.accno, entry.currency, -entry.amount, -entry.base_amount}))
        return false;
    for (; !shares.at_eof(); shares.MoveNext()) {
        const double percent = shares.number("Percent");
        const CurrencySum share{shares.text("accno"), entry.currency, Round(entry.amount * percent / 100),
                                Round(entry.base_amount * percent / 100)};
        if (!write_line(share.accno, share)) return false;
    }
    return true;
}

bool GlPosting::find_account(std::string_view accno) {
    account_rows_.FindFirst(fmt::format("[accno] = {}", quoted(accno)));
    return !account_rows_.NoMatch();
}

GlLine GlPosting::new_line(const CurrencySum& amounts) {
    GlLine line;
    line.company = header_.company;
    line.fkey = fkey_;
    line.docno = docno_;
    line.gldate = header_.gldate;
    line.period = header_.period;
    line.fyear = header_.fyear;
    line.lineno = next_lineno_;
    line.account = segments_of(account_rows_);
    line.amount = amounts.amount;
    line.base_amount = amounts.base_amount;
    line.Currency = amounts.currency;
    const bool base = amounts.currency == header_.base_currency;
    line.ledgertype = base ? "A" : "F";
    if (!base) line.exchange_rate = header_.rate_doc_to_base;
    return line;
}

bool GlPosting::write_line(std::string_view accno, const CurrencySum& amounts) {
    if (!find_account(accno)) return false;
    const GlLine line = new_line(amounts);
    if (!store_line(line)) return false;
    if (line.ledgertype == "F" && !open_account_for_currency(line)) return false;
    if (!post(line)) return false;
    ++next_lineno_;
    return true;
}

bool GlPosting::store_line(const GlLine& line) {
    fill_line_row(line);
    if (!update_with_retry(line_rows_)) return false;
    const bool debit = account_rows_.flag("debit");
    base_difference_ = Round(base_difference_ + side_of(debit) * line.base_amount);
    written_.push_back({line.account.accno, line.base_amount, debit, account_rows_.flag("inactive")});
    return true;
}

void GlPosting::fill_line_row(const GlLine& line) {
    const store::DateTime now = kernel_.outside().now();
    line_rows_.AddNew();
    line_rows_.set("lineno", line.lineno);
    line_rows_.set("accno", line.account.accno);
    line_rows_.set("acccode", line.account.acccode);
    for (std::size_t i = 0; i < kSubaccFields.size(); ++i)
        line_rows_.set(kSubaccFields[i], line.account.subacc[i]);
    line_rows_.set("amount", line.amount);
    line_rows_.set("base_amount", line.base_amount);
    line_rows_.set("Currency", line.Currency);
    if (line.exchange_rate) line_rows_.set("exchange_rate", *line.exchange_rate);
    line_rows_.set("ledgertype", line.ledgertype);
    line_rows_.set("Source", header_.Source);
    line_rows_.set("date_created", now.date_only());
    line_rows_.set("time_created", now.time_text());
    line_rows_.set("user_created", header_.user);
    line_rows_.set("source_form", header_.source_form);
    line_rows_.set("source_docno", header_.source_docno);
    line_rows_.set("docno", line.docno);
    line_rows_.set("company", line.company);
    line_rows_.set("gldate", line.gldate);
    line_rows_.set("fkey", line.fkey);
    line_rows_.set("period", line.period);
    line_rows_.set("fyear", line.fyear);
    if (!line.vendor_no.empty()) line_rows_.set("vendor_no", line.vendor_no);
}

bool GlPosting::update_with_retry(store::Recordset& rows) {
    for (int tries = 0;; ++tries) {
        try {
            rows.Update();
            return true;
        } catch (const store::Error& failure) {
            if (failure.spoils_connection()) throw;
            if (tries == kUpdateRetries) return false;
            kernel_.outside().wait(kLockRetryWait);
        }
    }
}

bool GlPosting::open_account_for_currency(const GlLine& line) {
    if (kernel_.account_currency_exists(line.account.accno, line.Currency)) return true;
    if (!kernel_.add_account_currency(line.account.accno, line.Currency)) {
        kernel_.tell(
            fmt::format("Account {} has not been set for currency {}", line.account.accno, line.Currency));
        return false;
    }
    open_balances();  // the recordsets opened before do not show the new rows
    return true;
}

bool GlPosting::post(const GlLine& line) {
    return kernel_.post_balance(balance_rows_, line, account_rows_) &&
           kernel_.post_balance_period(period_rows_, line, account_rows_);
}

bool GlPosting::write_rounding() {
    const double difference = base_difference_;
    if (!header_.foreign() || difference == 0 || std::fabs(difference) >= kRoundingDifferenceBelow)
        return true;
    const std::string& accno = difference > 0 ? header_.gain_account : header_.loss_account;
    if (!find_account(accno)) {
        kernel_.tell("No account " + accno);
        return false;
    }
    GlLine line = new_line({accno, header_.base_currency, -difference, -difference});
    line.vendor_no = header_.vendor_no;
    return store_line(line) && post(line);
}

bool GlPosting::finish() {
    if (!kernel_.check_gl_document(written_)) return false;
    header_row_.Update();
    return true;
}

}  // namespace brimley::kernel
