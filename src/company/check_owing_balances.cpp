// What is owed to vendors, against their documents.
//
// An invoice adds its total, a credit note takes it off, a payment takes off pay, discount and write-off, a
// prepayment its amount, in whatever currency each is. A void gives back what the screen shows of the
// document: an invoice's negative lines show as positive ones. The void of a check in the list of checks
// takes a payment off once more, and leaves what a prepayment took off; the void of an edited prepayment
// gives back its new amount. Documents of other modules may have been counted by these or not, and a vendor
// that had no balance yet when it was first paid got the sum of that payment as an amount owed.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "company/check.h"
#include "company/one_line_payments.h"
#include "company/shown_text.h"
#include "company/voided_checks.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

// An amount as it comes back from the screen.
double shown_money(double amount) { return kernel::money_value(kernel::format_money(amount)); }

struct Invoice {
    std::string vendor_no;
    std::string docno;
    bool credit_note = false;
    bool made_here = false;
    bool is_void = false;
    double taxable = 0, tax = 0;  // as they were saved
    double shown = 0;             // as they were loaded since
    double gross = 0;

    // What the forms have added for it.
    [[nodiscard]] double owed() const {
        const double total = shown_money(taxable + tax) - (is_void ? shown_money(shown) : 0);
        return credit_note ? 0 - total : total;
    }
};

struct Vendor {
    double by_forms = 0;
    // Documents of other modules: what they come to, and what voids here have taken off for them.
    bool any_elsewhere = false;
    double elsewhere = 0;
    double voided_elsewhere = 0;
    bool edited = false;  // any of its invoices
    bool has_documents = false;
    double first_payment = std::numeric_limits<double>::max();  // its key, and what it came to
    double first_paid = 0;
};

using Vendors = std::map<std::string, Vendor>;

std::unordered_map<std::string, Invoice> invoices(const Books& books) {
    std::unordered_map<std::string, Invoice> by_fkey;
    Recordset rows = books.read(
        "SELECT fkey,vendor_no,docno,doctype,Source,void,taxable_amount,tax_amount,gross_amount FROM "
        "AP_transaction_table ORDER BY fkey,pay_item");
    for (; !rows.at_eof(); rows.MoveNext()) {
        Invoice& invoice = by_fkey[rows.column(0).text()];
        invoice.vendor_no = rows.column(1).text();
        invoice.docno = rows.column(2).text();
        invoice.credit_note = rows.column(3).text() == "vcn";
        invoice.made_here = rows.column(4).text() == "AP-INVOICE";
        invoice.is_void = rows.column(5).flag();
        for (const auto& [column, sum] : {std::pair(6, &invoice.taxable), std::pair(7, &invoice.tax)}) {
            *sum += rows.column(column).number();
            invoice.shown += shown_money(std::abs(rows.column(column).number()));
        }
        invoice.gross += rows.column(8).number();
    }
    return by_fkey;
}

// Numbers of invoices that have reversed a GL document.
std::unordered_set<std::string> edited_documents(const Books& books) {
    std::unordered_set<std::string> numbers;
    Recordset rows =
        books.read("SELECT source_docno FROM GL_header_table WHERE Source = 'AP-INVOICE' AND Reverse = TRUE");
    for (; !rows.at_eof(); rows.MoveNext())
        numbers.insert(rows.text("source_docno"));
    return numbers;
}

void count_invoices(const Books& books, const std::unordered_set<std::string>& own_prepayments,
                    Vendors& vendors) {
    const auto edited = edited_documents(books);
    for (const auto& [fkey, invoice] : invoices(books)) {
        const auto found = vendors.find(invoice.vendor_no);
        if (found == vendors.end() || own_prepayments.contains(fkey)) continue;
        Vendor& vendor = found->second;
        vendor.has_documents = true;
        vendor.edited |= edited.contains(invoice.docno);
        if (invoice.made_here) {
            vendor.by_forms += invoice.owed();
            continue;
        }
        vendor.any_elsewhere = true;
        vendor.elsewhere += shown_money(invoice.gross);
        if (invoice.is_void) vendor.voided_elsewhere += shown_money(invoice.shown);
    }
}

// Returns their keys: their items are theirs, and no documents of other modules.
std::unordered_set<std::string> count_prepayments(const Books& books, Vendors& vendors) {
    std::unordered_set<std::string> keys;
    for (const OneLinePayment& payment : one_line_payments(books)) {
        if (!payment.is_prepayment()) continue;
        keys.insert(payment.fkey);
        const auto found = vendors.find(payment.vendor_no);
        if (found == vendors.end()) continue;
        found->second.has_documents = true;
        found->second.by_forms -= payment.saved_amount();
        if (payment.is_void && !payment.voided_as_check) found->second.by_forms += payment.amount;
    }
    return keys;
}

void count_payments(const Books& books, const std::unordered_set<std::string>& own_prepayments,
                    Vendors& vendors) {
    std::unordered_map<std::string, double> sums;
    books.each_payment_line([&](const PaymentLine& line) { sums[line.fkey] += line.sum(); });
    const VoidedChecks voided_checks(books);
    books.each_payment([&](const PaymentHeader& payment) {
        const auto found = vendors.find(payment.vendor_no);
        if (found == vendors.end()) return;
        Vendor& vendor = found->second;
        // The item of a prepayment from elsewhere is among the documents of other modules, and its void
        // leaves it there.
        const bool as_check = voided_checks.contains(payment);
        if (payment.doctype == "pp" && payment.is_void && !as_check &&
            !own_prepayments.contains(payment.fkey))
            vendor.elsewhere += payment.payment_amount;
        if (payment.doctype != "py") return;
        const auto lines = sums.find(payment.fkey);
        const double sum = lines == sums.end() ? 0 : kernel::Round(lines->second);
        const double key = running_number_of(payment.fkey).value_or(0);
        vendor.has_documents = true;
        if (!payment.is_void) vendor.by_forms -= sum;
        if (as_check) vendor.by_forms -= 2 * sum;
        if (key < vendor.first_payment) {
            vendor.first_payment = key;
            vendor.first_paid = sum;
        }
    });
}

bool agrees(const Vendor& vendor, double owing_balance) {
    if (!differ(owing_balance, vendor.by_forms)) return true;
    if (!vendor.any_elsewhere) return false;
    const double others[] = {vendor.by_forms + vendor.elsewhere - vendor.voided_elsewhere,
                             vendor.by_forms - vendor.voided_elsewhere,
                             vendor.by_forms + 2 * vendor.first_paid};
    return std::any_of(std::begin(others), std::end(others),
                       [&](double other) { return !differ(owing_balance, other); });
}

}  // namespace

void check_owing_balances(const Books& books, Findings& findings) {
    Vendors vendors;
    Recordset rows = books.read("SELECT vendor_no,owing_balance FROM Vendor_table ORDER BY vendor_no");
    for (; !rows.at_eof(); rows.MoveNext())
        vendors[rows.text("vendor_no")] = {};
    const auto own_prepayments = count_prepayments(books, vendors);
    count_invoices(books, own_prepayments, vendors);
    count_payments(books, own_prepayments, vendors);
    for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
        const Vendor& vendor = vendors.at(rows.text("vendor_no"));
        const double owing_balance = rows.number("owing_balance");
        if (!vendor.has_documents || agrees(vendor, owing_balance)) continue;
        findings.push_back(
            fmt::format("Vendor {}: owing_balance is {:.2f}, by its documents {:.2f}{}",
                        shown_text(rows.text("vendor_no")), owing_balance,
                        vendor.by_forms + vendor.elsewhere - vendor.voided_elsewhere,
                        vendor.edited ? " (an edit takes lines below nothing off as lines above it)" : ""));
    }
}

}  // namespace brimley::company
