// Invoices, debit and credit notes: headers, lines, flags and taxes.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/edited_documents.h"
#include "company/generated_invoices.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

using store::Recordset;

// What the lines of one invoice say together.
struct LineSummary {
    int lines = 0;
    int paid = 0;
    int is_void = 0;
};

std::unordered_map<std::string, LineSummary> summaries(const Books& books) {
    std::unordered_map<std::string, LineSummary> by_invoice;
    books.each_ap_line([&](const ApLine& line) {
        LineSummary& summary = by_invoice[line.fkey];
        ++summary.lines;
        summary.paid += line.paid ? 1 : 0;
        summary.is_void += line.is_void ? 1 : 0;
    });
    return by_invoice;
}

std::unordered_set<std::string> keys_of(const Books& books, const char* table) {
    std::unordered_set<std::string> keys;
    for (Recordset rows = books.read(fmt::format("SELECT fkey FROM {}", table)); !rows.at_eof();
         rows.MoveNext()) {
        keys.insert(rows.text("fkey"));
    }
    return keys;
}

// The header of a prepayment's line is that of the payment.
void find_lines_without_header(const Books& books, Findings& findings) {
    const auto invoices = keys_of(books, "AP_header_table");
    const auto payments = keys_of(books, "Payment_header_table");
    std::unordered_set<std::string> reported;
    books.each_ap_line([&](const ApLine& line) {
        const auto& headers = line.doctype == "pp" ? payments : invoices;
        if (!headers.contains(line.fkey) && reported.insert(line.fkey).second) {
            findings.push_back(fmt::format("Invoice {} has lines but no header", shown_text(line.fkey)));
        }
    });
}

}  // namespace

void check_invoice_documents(const Books& books, Findings& findings) {
    find_lines_without_header(books, findings);
    const auto by_invoice = summaries(books);
    const auto gl_documents = keys_of(books, "GL_header_table");
    const auto posted = books.posted_documents();
    const GeneratedInvoices& generated = books.generated();
    books.each_ap_header([&](const ApHeader& header) {
        if (generated.any_of_key(header.fkey)) return;
        const std::string name = "Invoice " + shown_text(header.fkey);
        const bool posts = header.source == "AP-INVOICE";
        if (posts && header.gl_fkey.empty()) findings.push_back(name + " names no GL document");
        if (!header.gl_fkey.empty() && !gl_documents.contains(header.gl_fkey)) {
            findings.push_back(
                fmt::format("{}: its GL document {} does not exist", name, shown_text(header.gl_fkey)));
        }
        const auto summary = by_invoice.find(header.fkey);
        if (summary == by_invoice.end()) {
            // Lines that come to 0.00 are neither stored nor posted.
            const bool came_to_nothing =
                gl_documents.contains(header.gl_fkey) && !posted.contains(header.gl_fkey);
            if (!came_to_nothing) findings.push_back(name + " has no lines");
        } else if (summary->second.is_void != (header.is_void ? summary->second.lines : 0)) {
            findings.push_back(
                fmt::format("{} is {}void, but not all its lines are", name, header.is_void ? "" : "not "));
        }
    });
}

namespace {

// What the lines of an invoice come to. Those of a credit note may have a tax that posts nothing.
struct LineAmounts {
    double gross = 0;
    double taxable_and_tax = 0;
    // What the lines would come to less if what is taxed of some of them were below nothing: of those that
    // only that explains.
    double without_sign = 0;
    int uneven = 0;  // with parts of a cent
    int lines = 0;
    double last_item = 0;

    // Each part of a cent may have been rounded once, and so may those of rows that are not stored.
    [[nodiscard]] double slack() const {
        return uneven == 0 ? 0 : kHalfCent * (uneven + 1 + std::max(0.0, last_item - lines));
    }
};

std::unordered_map<std::string, LineAmounts> line_amounts(const Books& books) {
    std::unordered_map<std::string, LineAmounts> by_invoice;
    Recordset rows = books.read(
        "SELECT fkey,gross_amount,taxable_amount,tax_amount,pay_item FROM AP_transaction_table WHERE Source "
        "= 'AP-INVOICE' AND doctype <> 'vcn'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        LineAmounts& sums = by_invoice[rows.column(0).text()];
        const double gross = rows.column(1).number();
        const double taxable = rows.column(2).number();
        const double tax = rows.column(3).number();
        sums.gross += gross;
        sums.taxable_and_tax += taxable + tax;
        if (taxable > 0 && differ(gross, taxable + tax) && !differ(gross, tax - taxable))
            sums.without_sign += 2 * taxable;
        sums.uneven += has_parts_of_a_cent(gross) || has_parts_of_a_cent(taxable) ? 1 : 0;
        ++sums.lines;
        sums.last_item = std::max(sums.last_item, rows.column(4).number());
    }
    return by_invoice;
}

}  // namespace

namespace {

bool come_to(const LineAmounts& sums, double taxable_and_tax) {
    const double difference = std::abs(sums.gross - taxable_and_tax);
    return !differ(std::max(difference, sums.slack()), sums.slack());
}

// Tells of the invoices whose lines come to something else: of those that an edit explains, or of the others.
// An edit stores what is taxed as the screen shows it, which is without its sign.
void tell_of_invoice_amounts(const Books& books, bool explained_by_edit, Findings& told) {
    const auto by_invoice = line_amounts(books);
    std::optional<std::unordered_set<std::string>> edited;  // read when there is something to explain
    books.each_ap_header([&](const ApHeader& header) {
        const auto found = by_invoice.find(header.fkey);
        if (header.source != "AP-INVOICE" || header.currency != books.base_currency() ||
            found == by_invoice.end())
            return;
        const LineAmounts& sums = found->second;
        if (come_to(sums, sums.taxable_and_tax)) return;
        if (!edited) edited = edited_documents(books);
        const bool by_edit = sums.without_sign != 0 && edited->contains(header.docno) &&
                             come_to(sums, sums.taxable_and_tax - sums.without_sign);
        if (by_edit != explained_by_edit) return;
        told.push_back(
            fmt::format("Invoice {}: its lines come to {:.2f}, what is taxed and the taxes to {:.2f}{}",
                        shown_text(header.fkey), sums.gross, sums.taxable_and_tax,
                        by_edit ? " (an edit stores what is taxed without its sign)" : ""));
    });
}

}  // namespace

void check_invoice_amounts(const Books& books, Findings& findings) {
    tell_of_invoice_amounts(books, false, findings);
}

void note_invoice_amounts(const Books& books, Findings& notes) {
    tell_of_invoice_amounts(books, true, notes);
}

void check_paid_flags(const Books& books, Findings& findings) {
    const auto by_invoice = summaries(books);
    const GeneratedInvoices& generated = books.generated();
    books.each_ap_header([&](const ApHeader& header) {
        const auto found = by_invoice.find(header.fkey);
        // A payment finds headers and lines by the key alone.
        if (found == by_invoice.end() || generated.shared_key(header.fkey)) return;
        const LineSummary& summary = found->second;
        const std::string name = "Invoice " + shown_text(header.fkey);
        if (header.fully_paid != (summary.paid == summary.lines)) {
            findings.push_back(fmt::format("{} is {}fully paid, but {} of its {} lines are paid", name,
                                           header.fully_paid ? "" : "not ", summary.paid, summary.lines));
        } else if (!header.paid && summary.paid > 0) {
            findings.push_back(
                fmt::format("{} is not paid, but {} of its {} lines are", name, summary.paid, summary.lines));
        }
    });
}

namespace {

constexpr int kSlots = 5;

void check_slots_of(const Books& books, const char* table, const char* what, Findings& findings) {
    std::string query = "SELECT fkey,pay_item";
    for (int slot = 1; slot <= kSlots; ++slot) {
        query += fmt::format(",tax_amount{0},tax_allocated{0},tax_recoverable{0},tax_expensed{0}", slot);
    }
    Recordset rows = books.read(fmt::format("{} FROM {} ORDER BY fkey,pay_item", query, table));
    for (; !rows.at_eof(); rows.MoveNext()) {
        for (int slot = 0; slot < kSlots; ++slot) {
            const int first = 2 + 4 * slot;
            const double tax = rows.column(first).number();
            const double split = rows.column(first + 1).number() + rows.column(first + 2).number() +
                                 rows.column(first + 3).number();
            if (!differ(tax, split)) continue;
            findings.push_back(fmt::format("{} {}, pay item {}: tax {} is {:.2f}, but its parts make {:.2f}",
                                           what, shown_text(rows.text("fkey")),
                                           shown_text(rows.text("pay_item")), slot + 1, tax, split));
        }
    }
}

}  // namespace

void check_tax_slots(const Books& books, Findings& findings) {
    check_slots_of(books, "AP_transaction_table", "Invoice", findings);
    check_slots_of(books, "Payment_misc_transaction_table", "Payment", findings);
}

}  // namespace brimley::company
