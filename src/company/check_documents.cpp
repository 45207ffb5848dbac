// GL documents by themselves: balance, numbering, headers.
#include <fmt/format.h>

#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

void check_documents_balance(const Books& books, Findings& findings) {
    books.each_gl_document([&](std::span<const GlLine> lines) {
        double debit_less_credit = 0;
        for (const GlLine& line : lines) {
            const ChartAccount* account = books.account(line.accno);
            if (!account) {
                findings.push_back(fmt::format("GL document {}: account {} is not in the chart",
                                               shown_text(line.fkey), shown_text(line.accno)));
                return;
            }
            debit_less_credit += account->debit ? line.base_amount : -line.base_amount;
        }
        if (differ(debit_less_credit, 0)) {
            findings.push_back(fmt::format("GL document {} does not balance: debit less credit is {:.2f}",
                                           shown_text(lines.front().fkey), debit_less_credit));
        }
    });
}

void check_line_numbers(const Books& books, Findings& findings) {
    books.each_gl_document([&](std::span<const GlLine> lines) {
        double expected = 1;
        for (const GlLine& line : lines) {
            if (line.line_number != expected) {
                findings.push_back(fmt::format("GL document {}: line {} is in the place of line {}",
                                               shown_text(line.fkey), line.line_number, expected));
                return;
            }
            ++expected;
        }
    });
}

namespace {

// The gross totals of invoices by the GL document that they name, each as posting adds it up: rounding after
// each line, so that two lines of half a cent come to nothing.
std::unordered_map<std::string, double> gross_by_gl_document(const Books& books) {
    std::unordered_map<std::string, double> gross_by_invoice;
    books.each_ap_line([&](const ApLine& line) {
        double& sum = gross_by_invoice[line.fkey];
        sum = kernel::Round(sum + line.gross);
    });
    std::unordered_map<std::string, double> gross;
    books.each_ap_header([&](const ApHeader& header) {
        const auto invoice = gross_by_invoice.find(header.fkey);
        if (invoice != gross_by_invoice.end()) gross[header.gl_fkey] += invoice->second;
    });
    return gross;
}

}  // namespace

void check_ledger_headers(const Books& books, Findings& findings) {
    const std::unordered_set<std::string> with_lines = books.posted_documents();
    std::unordered_set<std::string> headers;
    const auto gross = gross_by_gl_document(books);
    store::Recordset rows = books.read("SELECT fkey FROM GL_header_table ORDER BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string fkey = rows.text("fkey");
        headers.insert(fkey);
        const auto invoiced = gross.find(fkey);
        if (!with_lines.contains(fkey) && invoiced != gross.end() && differ(invoiced->second, 0)) {
            findings.push_back(fmt::format("GL document {} has no lines, but its invoice comes to {:.2f}",
                                           shown_text(fkey), invoiced->second));
        }
    }
    books.each_gl_document([&](std::span<const GlLine> lines) {
        if (!headers.contains(lines.front().fkey)) {
            findings.push_back(fmt::format("GL document {} has no header", shown_text(lines.front().fkey)));
        }
    });
}

}  // namespace brimley::company
