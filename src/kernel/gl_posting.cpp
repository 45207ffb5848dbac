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

GlPosting::GlPosting(ModuleG3& kernel, const GlRules& rules, GlDocument document)
    : kernel_(kernel),
      rules_(rules),
      document_(std::move(document)),
      lines_(kernel,
             {rules.texts.line_Source, document_.source_docno, rules.texts.line_source_form, document_.user,
              document_.Currency, rules.ways.line_fields, document_.more_line_fields}) {}

bool GlPosting::open() {
    if (!draw_number()) return false;
    add_header_row();
    lines_.open();
    allocation_rows_ = kernel_.change("SELECT * FROM Allocation_Account_table");
    return true;
}

bool GlPosting::draw_number() {
    auto number = document_.number;
    if (!number) number = draw_gl_number(kernel_, document_.company, document_.fyear, rules_.ways.too_long);
    if (!number) return false;
    docno_ = number->docno;
    fkey_ = number->fkey;
    return true;
}

void GlPosting::add_header_row() {
    header_row_ = kernel_.change("SELECT * FROM GL_header_table WHERE 1 = 2");
    header_row_.AddNew();
    header_row_.set("company", document_.company);
    header_row_.set("doctype", "gl");
    header_row_.set("docno", docno_);
    header_row_.set("gldate", document_.gldate);
    header_row_.set("fkey", fkey_);
    header_row_.set("remark", filled_in(rules_.texts.remark, document_.source_docno));
    header_row_.set("Source", rules_.texts.header_Source);
    header_row_.set("source_docno", document_.source_docno);
    if (rules_.texts.header_source_form != nullptr)
        header_row_.set("source_form", rules_.texts.header_source_form);
    header_row_.set("Currency", document_.Currency);
    if (document_.foreign() && document_.rate_doc_to_base)
        header_row_.set("exchange_rate", *document_.rate_doc_to_base);
    header_row_.set("period", document_.period);
    header_row_.set("fyear", document_.fyear);
    if (rules_.ways.header_fields == GlHeaderFields::stamped)
        stamp_header();
    else
        header_row_.set("ledgertype", "A");
    for (const GlField& field : document_.more_header_fields)
        header_row_.set(field.name, field.value);
}

void GlPosting::stamp_header() {
    const store::DateTime now = kernel_.outside().now();
    header_row_.set("user_created", document_.user);
    header_row_.set("date_created", now.date_only());
    header_row_.set("time_created", now.time_text());
}

void GlPosting::add(std::string_view accno, double amount, double base_amount, std::string_view currency) {
    add_to_currency_summary(summary_, accno, amount, base_amount, currency, rules_.ways.accounts_max);
}

std::string_view GlPosting::ledgertype_of(std::string_view currency) const {
    const bool base_ledger =
        currency == document_.base_currency || rules_.ways.line_fields == GlLineFields::older;
    return base_ledger ? "A" : "F";
}

std::vector<CurrencySum> GlPosting::ordered_summary() const {
    // The base currency stands before all others of an account.
    const auto key = [&](const CurrencySum& entry) {
        const std::string_view currency = entry.currency;
        return std::pair(std::string_view(entry.accno), currency == document_.base_currency ? "1" : currency);
    };
    std::vector<CurrencySum> ordered = summary_;
    if (rules_.ways.order == GlOrder::by_account) std::ranges::stable_sort(ordered, {}, key);
    return ordered;
}

bool GlPosting::write_lines() {
    const std::vector<CurrencySum> entries = ordered_summary();
    for (const CurrencySum& entry : entries)
        prefetch(entry);
    return std::ranges::all_of(entries, [&](const CurrencySum& entry) { return write_entry(entry); });
}

void GlPosting::prefetch(const CurrencySum& entry) {
    if (entry.amount == 0) return;
    lines_.prefetch(
        {document_.company, document_.fyear, ledgertype_of(entry.currency), entry.accno, entry.currency});
    if (rules_.ways.allocation != GlAllocation::ignored)
        allocation_rows_.prefetch_first({{"allocate_accno", entry.accno}});
}

std::vector<GlPosting::Share> GlPosting::shares_of(std::string_view accno) {
    std::vector<Share> shares;
    if (rules_.ways.allocation == GlAllocation::ignored) return shares;
    allocation_rows_.FindFirst({{"allocate_accno", accno}});
    while (!allocation_rows_.NoMatch()) {
        shares.push_back({allocation_rows_.text("accno"), allocation_rows_.number("Percent")});
        allocation_rows_.FindNext(store::all_equal({{"allocate_accno", accno}}));
    }
    return shares;
}

bool GlPosting::write_entry(const CurrencySum& entry) {
    if (entry.amount == 0) return true;
    if (!write_line(entry.accno, entry)) return false;
    const std::vector<Share> shares = shares_of(entry.accno);
    return shares.empty() || write_allocated(entry, shares);
}

// What follows the first line of an allocated account.
bool GlPosting::write_allocated(const CurrencySum& entry, const std::vector<Share>& shares) {
    const bool whole = rules_.ways.allocation == GlAllocation::whole_amounts;
    const CurrencySum out{entry.accno, entry.currency, -entry.amount, -entry.base_amount};
    if (!write_line(entry.accno, whole ? entry : out)) return false;
    return std::ranges::all_of(shares, [&](const Share& share) {
        const CurrencySum part{share.accno, entry.currency, Round(entry.amount * share.percent / 100),
                               Round(entry.base_amount * share.percent / 100)};
        return write_line(share.accno, whole ? entry : part);
    });
}

GlLine GlPosting::new_line(const CurrencySum& amounts) const {
    GlLine line;
    line.company = document_.company;
    line.fkey = fkey_;
    line.docno = docno_;
    line.gldate = document_.gldate;
    line.period = document_.period;
    line.fyear = document_.fyear;
    line.lineno = next_lineno_;
    line.account = segments_of(lines_.account());
    line.amount = amounts.amount;
    line.base_amount = amounts.base_amount;
    line.Currency = amounts.currency;
    line.ledgertype = ledgertype_of(amounts.currency);
    if (line.ledgertype == "F") {
        line.exchange_rate = rules_.ways.rate == GlRate::from_amounts
                                 ? get_exchange_rate(amounts.amount, amounts.base_amount)
                                 : document_.rate_doc_to_base;
    }
    return line;
}

bool GlPosting::write_line(std::string_view accno, const CurrencySum& amounts) {
    if (!lines_.find_account(accno)) return kernel_.refuse(no_account(accno));
    if (!lines_.write(new_line(amounts))) return false;
    ++next_lineno_;
    return true;
}

bool GlPosting::write_rounding() {
    const double difference = lines_.base_difference();
    if (rules_.ways.rounding_line == GlRoundingLine::none || !document_.foreign() || difference == 0 ||
        std::fabs(difference) >= kRoundingDifferenceBelow)
        return true;
    const std::string& accno = difference > 0 ? document_.gain_account : document_.loss_account;
    if (!lines_.find_account(accno)) {
        kernel_.tell("No account " + accno);
        return false;
    }
    GlLine line = new_line({accno, document_.base_currency, -difference, -difference});
    line.vendor_no = document_.vendor_no;
    if (rules_.ways.rounding_line == GlRoundingLine::with_rate)
        line.exchange_rate = document_.rate_doc_to_base;
    return lines_.write(line);
}

bool GlPosting::finish() {
    if (!lines_.finish()) return false;
    return with_retry(kernel_, [&] { header_row_.Update(); });
}

}  // namespace brimley::kernel
