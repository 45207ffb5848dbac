// Invoices that were generated from templates, against their templates and their lines.
#include <fmt/format.h>

#include <unordered_set>

#include "company/check.h"
#include "company/generated_invoices.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

using store::Recordset;

std::unordered_set<std::string> template_numbers(const Books& books) {
    std::unordered_set<std::string> numbers;
    for (Recordset rows = books.read("SELECT recurno FROM AP_recur_header_table"); !rows.at_eof();
         rows.MoveNext())
        numbers.insert(rows.column(0).text());
    return numbers;
}

// The month and the year of a day written as 2026-01-15.
bool same_month(const std::string& day, const std::string& month, const std::string& year) {
    return day.size() >= 7 && day.substr(0, 4) == year && day.substr(5, 2) == month;
}

void judge_header(const GeneratedInvoice& invoice, Findings& findings) {
    const std::string name = name_of(invoice);
    if (invoice.day.empty()) {
        findings.push_back(name + " was generated without a date");
    } else if (!same_month(invoice.day, invoice.month, invoice.year)) {
        findings.push_back(fmt::format("{}: month {} of {} is not that of its date {}", name,
                                       shown_text(invoice.month), shown_text(invoice.year), invoice.day));
    }
    if (!generated_number(invoice.docno, invoice.doctype) || invoice.fkey != invoice.company + invoice.docno)
        findings.push_back(
            fmt::format("{}: its number {} does not make its key", name, shown_text(invoice.docno)));
    if (invoice.lines.empty()) findings.push_back(name + " has no lines");
}

void judge_line(const GeneratedInvoice& invoice, const GeneratedLine& line, Findings& findings) {
    const auto compare = [&](const char* field, const std::string& own, const std::string& expected) {
        if (own == expected) return;
        findings.push_back(fmt::format("{}, pay item {}: {} is {}, that of the invoice {}", name_of(invoice),
                                       shown_text(line.pay_item), field, shown_text(own),
                                       shown_text(expected)));
    };
    compare("docno", line.docno, invoice.docno);
    compare("vendor_no", line.vendor_no, invoice.vendor_no);
    compare("Currency", line.currency, invoice.currency);
    compare("Month", line.month, invoice.month);
    compare("Year", line.year, invoice.year);
    compare("ap_accno", line.ap_accno, invoice.lines.front().ap_accno);
    // A void goes by the key.
    if (!invoice.shares_key && line.is_void != invoice.is_void)
        findings.push_back(fmt::format("{} is {}void, but pay item {} is {}void", name_of(invoice),
                                       invoice.is_void ? "" : "not ", shown_text(line.pay_item),
                                       line.is_void ? "" : "not "));
}

}  // namespace

void check_generated_invoices(const Books& books, Findings& findings) {
    const GeneratedInvoices& generated = books.generated();
    const auto templates = template_numbers(books);
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        judge_header(invoice, findings);
        if (!templates.contains(invoice.recurno))
            findings.push_back(
                fmt::format("{}: there is no template {}", name_of(invoice), shown_text(invoice.recurno)));
        for (const GeneratedLine& line : invoice.lines)
            judge_line(invoice, line, findings);
    }
    findings.insert(findings.end(), generated.strays().begin(), generated.strays().end());
}

}  // namespace brimley::company
