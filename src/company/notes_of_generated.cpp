// What looks wrong in generated invoices and is intended.
#include <fmt/format.h>

#include <map>
#include <set>

#include "company/check.h"
#include "company/generated_invoices.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

double debit_less_credit(const Books& books, const GeneratedPosting& posting) {
    double difference = 0;
    for (const GlLine& line : posting.lines) {
        const ChartAccount* const account = books.account(line.accno);
        difference += account && account->debit ? line.amount : -line.amount;
    }
    return difference;
}

void note_posting(const Books& books, const GeneratedInvoice& invoice, const GeneratedPosting& posting,
                  Findings& notes) {
    const std::string name = "GL document " + shown_text(posting.fkey);
    const double difference = debit_less_credit(books, posting);
    if (differ(difference, 0))
        notes.push_back(
            fmt::format("{} does not balance in its amounts, and has no base amounts: debit less "
                        "credit is {:.2f}",
                        name, difference));
    const std::string payable = payable_account(invoice, posting);
    const std::string& of_lines = invoice.lines.front().ap_accno;
    if (!payable.empty() && of_lines != payable)
        notes.push_back(fmt::format("{}: its lines name payable account {}, its GL document posted to {}",
                                    name_of(invoice), shown_text(of_lines), shown_text(payable)));
    if (invoice.is_void)
        notes.push_back(fmt::format("{} is void, but its GL document {} stays as it was posted",
                                    name_of(invoice), shown_text(posting.fkey)));
}

}  // namespace

void note_generated_invoices(const Books& books, Findings& notes) {
    const GeneratedInvoices& generated = books.generated();
    std::map<std::string, double> by_vendor;
    std::set<std::string> shared_keys;
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        if (invoice.shares_key && shared_keys.insert(invoice.fkey).second)
            notes.push_back(
                fmt::format("Invoices of several fiscal years have the key {}: what is done to one of them "
                            "is done to all",
                            shown_text(invoice.fkey)));
        if (invoice.lines.empty()) continue;
        for (const GeneratedPosting* posting : invoice.postings)
            note_posting(books, invoice, *posting, notes);
        by_vendor[invoice.vendor_no] += invoice.gross();
    }
    for (const auto& [vendor_no, gross] : by_vendor)
        notes.push_back(
            fmt::format("What vendor {} is owed was never raised by what was generated, {:.2f} in all",
                        shown_text(vendor_no), gross));
    if (const auto posted = generated.postings().size(); posted > 0)
        notes.push_back(fmt::format(
            "Balances have no base amounts of what was generated: GL documents without them: {}", posted));
}

}  // namespace brimley::company
