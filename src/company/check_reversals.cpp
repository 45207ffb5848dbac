// Reversed GL documents: what a void and an edit leave in the ledger.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

// The remark of a document that reverses another.
constexpr std::string_view kReverseStart = "Reverse GL ";

struct GlHeader {
    std::string docno;
    std::string remark;
    bool by_forms = false;  // that reverse what they have posted
    bool reversed = false;
};

using GlHeaders = std::map<std::string, GlHeader>;  // by fkey
using AccountSums = std::map<std::string, double>;  // in base currency, on the account's own side

// Prepayments share their Source with generated invoices, which no form reverses.
bool is_of_forms(const std::string& source, const std::string& source_form) {
    return source == "AP-INVOICE" || source == "AP-PAYMENT" || source == "AP-MISCPAY" ||
           source == "AP-CARD" || (source == "AP" && source_form == "A/P Prepayment");
}

GlHeaders gl_headers(const Books& books) {
    GlHeaders headers;
    store::Recordset rows =
        books.read("SELECT fkey,docno,remark,Source,source_form,Reverse FROM GL_header_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        headers[rows.text("fkey")] = {rows.text("docno"), rows.text("remark"),
                                      is_of_forms(rows.text("Source"), rows.text("source_form")),
                                      rows.flag("Reverse")};
    }
    return headers;
}

// The documents that say that they reverse another, by that other's number. Numbers may repeat in another
// year.
using Reversing = std::multimap<std::string, std::string>;

Reversing reversing_documents(const GlHeaders& headers) {
    Reversing by_reversed_docno;
    for (const auto& [fkey, header] : headers) {
        if (header.remark.starts_with(kReverseStart))
            by_reversed_docno.emplace(header.remark.substr(kReverseStart.size()), fkey);
    }
    return by_reversed_docno;
}

std::unordered_map<std::string, AccountSums> sums_by_document(const Books& books) {
    std::unordered_map<std::string, AccountSums> sums;
    books.each_gl_line([&](const GlLine& line) { sums[line.fkey][line.accno] += line.base_amount; });
    return sums;
}

bool nothing_left(const AccountSums& sums) {
    return std::none_of(sums.begin(), sums.end(), [](const auto& sum) { return differ(sum.second, 0); });
}

// What a reversed document leaves on its accounts, together with the document that reverses it.
AccountSums left_by(const GlHeaders& headers, const Reversing& reversing,
                    const std::unordered_map<std::string, AccountSums>& sums, const std::string& fkey) {
    const auto own = sums.find(fkey);
    AccountSums left = own == sums.end() ? AccountSums() : own->second;
    const GlHeader& header = headers.at(fkey);
    const auto [from, to] = reversing.equal_range(header.docno);
    for (auto other = from; other != to && !nothing_left(left); ++other) {
        const auto lines = sums.find(other->second);
        if (lines == sums.end() || header.remark != "Reversed by " + headers.at(other->second).docno)
            continue;
        AccountSums together = own == sums.end() ? AccountSums() : own->second;
        for (const auto& [accno, amount] : lines->second)
            together[accno] += amount;
        left = together;
    }
    return left;
}

}  // namespace

void check_reversals(const Books& books, Findings& findings) {
    const GlHeaders headers = gl_headers(books);
    const Reversing reversing = reversing_documents(headers);
    const auto sums = sums_by_document(books);
    for (const auto& [fkey, header] : headers) {
        if (!header.by_forms || !header.reversed) continue;
        for (const auto& [accno, amount] : left_by(headers, reversing, sums, fkey)) {
            if (!differ(amount, 0)) continue;
            findings.push_back(fmt::format("GL document {} is reversed, but {:.2f} is left on account {}",
                                           shown_text(fkey), amount, shown_text(accno)));
        }
    }
}

void check_ledger_owners(const Books& books, Findings& findings) {
    std::unordered_set<std::string> named;
    books.each_ap_header([&](const ApHeader& header) { named.insert(header.gl_fkey); });
    books.each_payment([&](const PaymentHeader& payment) { named.insert(payment.gl_fkey); });
    const auto posted = books.posted_documents();
    for (const auto& [fkey, header] : gl_headers(books)) {
        if (!header.by_forms || header.reversed || header.remark.starts_with(kReverseStart)) continue;
        if (named.contains(fkey) || !posted.contains(fkey)) continue;
        findings.push_back(fmt::format("GL document {} is not reversed, but no invoice or payment names it",
                                       shown_text(fkey)));
    }
}

void check_void_invoices(const Books& books, Findings& findings) {
    const GlHeaders headers = gl_headers(books);
    const auto posted = books.posted_documents();
    books.each_ap_header([&](const ApHeader& invoice) {
        const auto gl_document = headers.find(invoice.gl_fkey);
        if (gl_document == headers.end() || !posted.contains(invoice.gl_fkey)) return;
        if (gl_document->second.reversed == invoice.is_void) return;
        findings.push_back(fmt::format("Invoice {} is {}, but its GL document {} is {}",
                                       shown_text(invoice.fkey), invoice.is_void ? "void" : "not void",
                                       shown_text(invoice.gl_fkey),
                                       invoice.is_void ? "not reversed" : "reversed"));
    });
}

}  // namespace brimley::company
