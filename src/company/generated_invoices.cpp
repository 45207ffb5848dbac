#include "company/generated_invoices.h"

#include <fmt/format.h>

#include <charconv>
#include <unordered_map>

#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

bool is_generated_key(const std::string& fkey) { return fkey.find('-') == std::string::npos; }

// Places in a list by two texts, such as key and day.
using Places = std::unordered_map<std::string, std::size_t>;

std::string pair_of(const std::string& first, const std::string& second) { return first + "|" + second; }

}  // namespace

double GeneratedInvoice::gross() const {
    double sum = 0;
    for (const GeneratedLine& line : lines)
        sum = kernel::Round(sum + line.gross);
    return sum;
}

std::string name_of(const GeneratedInvoice& invoice) { return "Invoice " + shown_text(invoice.fkey); }

std::string payable_account(const GeneratedInvoice& invoice, const GeneratedPosting& posting) {
    if (posting.lines.empty() || !differ(invoice.gross(), 0)) return {};
    return posting.lines.front().accno;
}

std::optional<double> generated_number(const std::string& docno, const std::string& doctype) {
    if (!docno.starts_with(doctype)) return std::nullopt;
    double number = 0;
    const char* const end = docno.data() + docno.size();
    const auto [stopped, error] = std::from_chars(docno.data() + doctype.size(), end, number);
    return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

GeneratedInvoices::GeneratedInvoices(const Books& books) {
    read_headers(books);
    read_postings(books);
    if (invoices_.empty() && postings_.empty()) return;
    read_lines(books);
    read_posted_lines(books);
    connect_postings();
}

// Other modules have documents from "AP" too; these three fields are those of generated invoices alone.
void GeneratedInvoices::read_headers(const Books& books) {
    Recordset rows = books.read(
        "SELECT fkey,docno,company,doctype,vendor_no,Currency,recurno,[Month],[Year],gldate,"
        "date_lastmodified,time_lastmodified,void FROM AP_header_table WHERE Source = 'AP' ORDER BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        GeneratedInvoice invoice;
        invoice.fkey = rows.text("fkey");
        invoice.month = rows.text("Month");
        invoice.year = rows.text("Year");
        invoice.day = day_of(rows, "gldate");
        const bool generated = !invoice.month.empty() || !invoice.year.empty() || !invoice.day.empty();
        if (!generated || !is_generated_key(invoice.fkey)) continue;
        invoice.docno = rows.text("docno");
        invoice.company = rows.text("company");
        invoice.doctype = rows.text("doctype");
        invoice.vendor_no = rows.text("vendor_no");
        invoice.currency = rows.text("Currency");
        invoice.recurno = rows.text("recurno");
        invoice.last_modified = day_of(rows, "date_lastmodified") + " " + rows.text("time_lastmodified");
        invoice.is_void = rows.flag("void");
        if (!keys_.insert(invoice.fkey).second) shared_keys_.insert(invoice.fkey);
        invoices_.push_back(invoice);
    }
    for (GeneratedInvoice& invoice : invoices_)
        invoice.shares_key = shared_key(invoice.fkey);
}

void GeneratedInvoices::read_lines(const Books& books) {
    Places by_key_and_day;
    for (std::size_t at = 0; at < invoices_.size(); ++at)
        by_key_and_day.emplace(pair_of(invoices_[at].fkey, invoices_[at].day), at);
    std::unordered_set<std::string> reported;
    Recordset rows = books.read(
        "SELECT fkey,gldate,pay_item,docno,vendor_no,Currency,[Month],[Year],ap_accno,po_accno,gross_amount,"
        "taxable_amount,tax_amount,void FROM AP_transaction_table ORDER BY fkey,pay_item");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string fkey = rows.column(0).text();
        if (!keys_.contains(fkey)) continue;
        const std::string day = day_of(rows, "gldate");
        const auto found = by_key_and_day.find(pair_of(fkey, day));
        if (found != by_key_and_day.end()) {
            invoices_[found->second].lines.push_back(
                {rows.text("pay_item"), rows.text("docno"), rows.text("vendor_no"), rows.text("Currency"),
                 rows.text("Month"), rows.text("Year"), rows.text("ap_accno"), rows.text("po_accno"),
                 rows.number("gross_amount"), rows.number("taxable_amount"), rows.number("tax_amount"),
                 rows.flag("void")});
        } else if (reported.insert(pair_of(fkey, day)).second) {
            strays_.push_back(fmt::format("Invoice {} has lines of {}, but no header of that day",
                                          shown_text(fkey), day.empty() ? "no day" : day));
        }
    }
}

void GeneratedInvoices::read_postings(const Books& books) {
    Recordset rows = books.read(
        "SELECT fkey,docno,source_docno,gldate,fyear,period FROM GL_header_table WHERE Source = 'AP' ORDER "
        "BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (!is_generated_key(rows.text("fkey"))) continue;
        postings_.push_back({rows.text("fkey"),
                             rows.text("docno"),
                             rows.text("source_docno"),
                             day_of(rows, "gldate"),
                             rows.text("fyear"),
                             rows.text("period"),
                             {}});
    }
}

void GeneratedInvoices::read_posted_lines(const Books& books) {
    Places by_key_and_year;
    std::unordered_set<std::string> keys;
    for (std::size_t at = 0; at < postings_.size(); ++at) {
        by_key_and_year.emplace(pair_of(postings_[at].fkey, postings_[at].fyear), at);
        keys.insert(postings_[at].fkey);
    }
    books.each_gl_document([&](std::span<const GlLine> lines) {
        const GlLine& first = lines.front();
        if (!keys.contains(first.fkey)) return;
        const auto found = by_key_and_year.find(pair_of(first.fkey, first.fyear));
        if (found != by_key_and_year.end()) {
            postings_[found->second].lines.assign(lines.begin(), lines.end());
        } else {
            strays_.push_back(
                fmt::format("GL document {} has lines of fiscal year {}, but no header of that year",
                            shown_text(first.fkey), shown_text(first.fyear)));
        }
    });
}

void GeneratedInvoices::connect_postings() {
    Places by_number_and_day;
    for (std::size_t at = 0; at < invoices_.size(); ++at)
        by_number_and_day.emplace(pair_of(invoices_[at].docno, invoices_[at].day), at);
    for (const GeneratedPosting& posting : postings_) {
        const auto found = by_number_and_day.find(pair_of(posting.source_docno, posting.day));
        if (found != by_number_and_day.end()) invoices_[found->second].postings.push_back(&posting);
    }
}

}  // namespace brimley::company
