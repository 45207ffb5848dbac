#include "kernel/gl_posting.h"

#include <algorithm>
#include <cmath>

#include "kernel/exchange_rate.h"
#include "kernel/money.h"

namespace brimley::kernel {

namespace {

constexpr double kRoundingDifferenceBelow =
    1.0;  // a larger difference is no rounding, and the document is refused

}  // namespace

GlPosting::GlPosting(ModuleG3& kernel, GlHeader header)
    : kernel_(kernel),
      header_(std::move(header)),
      lines_(kernel, {header_.Source, header_.source_docno,
                      header_.line_source_form.empty() ? header_.source_form : header_.line_source_form,
                      header_.user, header_.Currency}) {}

bool GlPosting::open() {
    header_row_ = kernel_.change("SELECT * FROM GL_header_table WHERE 1 = 2");
    const auto number = draw_gl_number(kernel_, header_.company, header_.fyear, header_.too_long);
    if (!number) return false;
    docno_ = number->docno;
    fkey_ = number->fkey;
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
    lines_.open();
    allocation_rows_ = kernel_.change("SELECT * FROM Allocation_Account_table");
    return true;
}

void GlPosting::add(std::string_view accno, double amount, double base_amount, std::string_view currency) {
    add_to_currency_summary(summary_, accno, amount, base_amount, currency);
}

bool GlPosting::write_lines() {
    // The base currency stands before all others of an account.
    const auto key = [&](const CurrencySum& entry) {
        const std::string_view currency = entry.currency;
        return std::pair(std::string_view(entry.accno), currency == header_.base_currency ? "1" : currency);
    };
    std::vector<CurrencySum> sorted = summary_;
    std::ranges::stable_sort(sorted, {}, key);
    for (const CurrencySum& entry : sorted)
        prefetch(entry);
    return std::ranges::all_of(sorted, [&](const CurrencySum& entry) { return write_entry(entry); });
}

void GlPosting::prefetch(const CurrencySum& entry) {
    if (entry.amount == 0) return;
    lines_.prefetch(
        {header_.company, header_.fyear, ledgertype_of(entry.currency), entry.accno, entry.currency});
    allocation_rows_.PrefetchFirst({{"allocate_accno", entry.accno}});
}

std::vector<GlPosting::Share> GlPosting::shares_of(std::string_view accno) {
    std::vector<Share> shares;
    allocation_rows_.FindFirst({{"allocate_accno", accno}});
    while (!allocation_rows_.NoMatch()) {
        shares.push_back({allocation_rows_.text("accno"), allocation_rows_.number("Percent")});
        allocation_rows_.FindNext(store::all_equal({{"allocate_accno", accno}}));
    }
    return shares;
}

// An allocated account shows the amount going in and out again, and the receiving accounts follow.
bool GlPosting::write_entry(const CurrencySum& entry) {
    if (entry.amount == 0) return true;
    if (!write_line(entry.accno, entry)) return false;
    const std::vector<Share> shares = shares_of(entry.accno);
    if (shares.empty()) return true;
    if (!write_line(entry.accno, {entry.accno, entry.currency, -entry.amount, -entry.base_amount}))
        return false;
    return std::ranges::all_of(shares, [&](const Share& share) {
        return write_line(share.accno,
                          {share.accno, entry.currency, Round(entry.amount * share.percent / 100),
                           Round(entry.base_amount * share.percent / 100)});
    });
}

GlLine GlPosting::new_line(const CurrencySum& amounts) const {
    GlLine line;
    line.company = header_.company;
    line.fkey = fkey_;
    line.docno = docno_;
    line.gldate = header_.gldate;
    line.period = header_.period;
    line.fyear = header_.fyear;
    line.lineno = next_lineno_;
    line.account = segments_of(lines_.account());
    line.amount = amounts.amount;
    line.base_amount = amounts.base_amount;
    line.Currency = amounts.currency;
    line.ledgertype = ledgertype_of(amounts.currency);
    if (line.ledgertype == "F") {
        line.exchange_rate = header_.rates_from_amounts
                                 ? get_exchange_rate(amounts.amount, amounts.base_amount)
                                 : header_.rate_doc_to_base;
    }
    return line;
}

bool GlPosting::write_line(std::string_view accno, const CurrencySum& amounts) {
    if (!lines_.find_account(accno) || !lines_.write(new_line(amounts))) return false;
    ++next_lineno_;
    return true;
}

bool GlPosting::write_rounding() {
    const double difference = lines_.base_difference();
    if (!header_.foreign() || difference == 0 || std::fabs(difference) >= kRoundingDifferenceBelow)
        return true;
    const std::string& accno = difference > 0 ? header_.gain_account : header_.loss_account;
    if (!lines_.find_account(accno)) {
        kernel_.tell("No account " + accno);
        return false;
    }
    GlLine line = new_line({accno, header_.base_currency, -difference, -difference});
    line.vendor_no = header_.vendor_no;
    if (header_.rounding_line_has_rate) line.exchange_rate = header_.rate_doc_to_base;
    return lines_.write(line);
}

bool GlPosting::finish() {
    if (!lines_.check()) return false;
    return with_retry(kernel_.outside(), [&] { header_row_.Update(); });
}

}  // namespace brimley::kernel
