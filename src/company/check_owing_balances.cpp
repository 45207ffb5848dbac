// What is owed to vendors, against their documents.
//
// An invoice adds its total, a credit note takes it off, a payment takes off pay, discount and write-off, a
// prepayment its amount, in whatever currency each is. A void gives back what the screen shows of the
// document: an invoice's negative lines show as positive ones. The void of a check in the list of checks
// takes a payment off once more, and leaves what a prepayment took off; the void of an edited prepayment
// gives back its new amount. Documents of other modules may have been counted by these or not, and a vendor
// that had no balance yet when it was first paid got the sum of that payment as an amount owed.
//
// Some things leave a difference that the documents do not show any more, which a note names. An edit takes
// off what the screen showed of the former lines, those below nothing like those above it: an invoice is owed
// with less then, a credit note with more. The total of the screen has the cents of rows that are too small
// to be stored, of which a gap in the pay items tells. An invoice that stood on the screen and was saved once
// more is not added again; a credit note whose kind was typed over is added like an invoice; and of a
// document from AP-RECUR an edit stores the difference that was typed, and not the amount.
//
// Generated invoices are never added, but a void takes them off; unless the vendor had no balance yet, which
// is possible up to the day of its first other document.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "company/check.h"
#include "company/edited_documents.h"
#include "company/generated_invoices.h"
#include "company/one_line_payments.h"
#include "company/shown_text.h"
#include "company/voided_checks.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

// An amount as it comes back from the screen.
double shown_money(double amount) { return kernel::money_value(kernel::format_money(amount)); }

// After every day.
constexpr const char* kNever = "9999-99-99";

std::string day_in(const Recordset& rows, int column) {
    const auto date = rows.column(column).date();
    return date ? date->date_only().iso() : kNever;
}

struct Invoice {
    std::string vendor_no;
    std::string docno;
    std::string invoice_no;
    std::string invoice_date;
    bool credit_note = false;
    bool made_here = false;
    bool from_recur = false;
    bool is_void = false;
    int lines = 0;
    double last_item = 0;
    std::string written;          // the day
    double taxable = 0, tax = 0;  // as they were saved
    double shown = 0;             // as they were loaded since
    double gross = 0;

    [[nodiscard]] double total() const { return shown_money(taxable + tax); }
    // What the forms have added for it.
    [[nodiscard]] double owed() const {
        const double left = total() - (is_void ? shown_money(shown) : 0);
        return credit_note ? 0 - left : left;
    }
    // The same for what was saved once more from the screen.
    [[nodiscard]] std::string content() const {
        return fmt::format("{}\n{}\n{}\n{}\n{}\n{:.2f}\n{:.2f}", vendor_no, credit_note, invoice_no,
                           invoice_date, lines, taxable, tax);
    }
    // Each of them was less than a cent, and two of them make one.
    [[nodiscard]] double cents_of_unstored_rows() const {
        return 0.01 * std::ceil(std::max(0.0, last_item - lines) / 2);
    }
};

// What a void has taken off that was never added.
struct GeneratedVoid {
    std::string when;  // day and time
    double amount = 0;

    // Whether a vendor with this first document may have had no balance.
    [[nodiscard]] bool may_not_count(const std::string& first_document) const {
        return when.substr(0, first_document.size()) <= first_document;
    }
};

struct Vendor {
    double by_forms = 0;
    bool any_generated = false;
    std::vector<GeneratedVoid> generated_voids;  // in the order of time
    std::string first_document = kNever;         // the day of the first one that was counted
    bool judged = true;
    // Documents of other modules: what they come to, and what voids here have taken off for them.
    bool any_elsewhere = false;
    double elsewhere = 0;
    double voided_elsewhere = 0;
    bool edited_invoice = false;  // or debit note
    bool edited_credit_note = false;
    bool any_from_recur = false;
    std::vector<double> by_screen;  // what saves may have added more or less than the stored total
    double cents = 0;               // of rows that were not stored, at the most
    bool has_documents = false;
    double first_payment = std::numeric_limits<double>::max();  // its key, and what it came to
    double first_paid = 0;
};

using Vendors = std::map<std::string, Vendor>;

std::unordered_map<std::string, Invoice> invoices(const Books& books) {
    std::unordered_map<std::string, Invoice> by_fkey;
    Recordset rows = books.read(
        "SELECT fkey,vendor_no,docno,doctype,Source,void,taxable_amount,tax_amount,gross_amount,"
        "date_created,pay_item,invoice_no,invoice_date FROM AP_transaction_table ORDER BY fkey,pay_item");
    for (; !rows.at_eof(); rows.MoveNext()) {
        Invoice& invoice = by_fkey[rows.column(0).text()];
        invoice.vendor_no = rows.column(1).text();
        invoice.docno = rows.column(2).text();
        invoice.credit_note = rows.column(3).text() == "vcn";
        invoice.made_here = rows.column(4).text() == "AP-INVOICE";
        invoice.from_recur = rows.column(4).text() == "AP-RECUR";
        invoice.is_void = rows.column(5).flag();
        for (const auto& [column, sum] : {std::pair(6, &invoice.taxable), std::pair(7, &invoice.tax)}) {
            *sum += rows.column(column).number();
            invoice.shown += shown_money(std::abs(rows.column(column).number()));
        }
        invoice.gross += rows.column(8).number();
        ++invoice.lines;
        invoice.last_item = std::max(invoice.last_item, rows.column(10).number());
        invoice.written = day_in(rows, 9);
        invoice.invoice_no = rows.column(11).text();
        invoice.invoice_date = rows.column(12).text();
    }
    return by_fkey;
}

void count_invoices(const Books& books, const std::unordered_set<std::string>& own_prepayments,
                    const GeneratedInvoices& generated, Vendors& vendors) {
    const auto edited = edited_documents(books);
    std::unordered_set<std::string> contents;
    for (const auto& [fkey, invoice] : invoices(books)) {
        const auto found = vendors.find(invoice.vendor_no);
        if (found == vendors.end() || own_prepayments.contains(fkey) || generated.any_of_key(fkey)) continue;
        Vendor& vendor = found->second;
        vendor.has_documents = true;
        if (invoice.made_here) {
            vendor.cents += invoice.cents_of_unstored_rows();
            if (edited.contains(invoice.docno))
                (invoice.credit_note ? vendor.edited_credit_note : vendor.edited_invoice) = true;
            vendor.by_forms += invoice.owed();
            if (!contents.insert(invoice.content()).second)
                vendor.by_screen.push_back(invoice.credit_note ? invoice.total() : 0 - invoice.total());
            if (invoice.credit_note) vendor.by_screen.push_back(2 * invoice.total());
            vendor.first_document = std::min(vendor.first_document, invoice.written);
            continue;
        }
        vendor.any_elsewhere = true;
        vendor.any_from_recur = vendor.any_from_recur || invoice.from_recur;
        vendor.elsewhere += shown_money(invoice.gross);
        if (invoice.is_void) vendor.voided_elsewhere += shown_money(invoice.shown);
    }
}

// A void of one that shares its key takes off both, from the vendor of either.
void count_generated(const GeneratedInvoices& generated, Vendors& vendors) {
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        const auto found = vendors.find(invoice.vendor_no);
        if (found == vendors.end()) continue;
        Vendor& vendor = found->second;
        vendor.has_documents = true;
        vendor.any_generated = true;
        const bool any_void = invoice.is_void || std::any_of(invoice.lines.begin(), invoice.lines.end(),
                                                             [](const auto& line) { return line.is_void; });
        if (!any_void) continue;
        vendor.judged = vendor.judged && !invoice.shares_key;
        double amount = 0;
        for (const GeneratedLine& line : invoice.lines)
            amount += shown_money(std::abs(line.taxable)) + shown_money(std::abs(line.tax));
        vendor.generated_voids.push_back({invoice.last_modified, shown_money(amount)});
    }
    for (auto& [vendor_no, vendor] : vendors)
        std::ranges::stable_sort(vendor.generated_voids, {}, &GeneratedVoid::when);
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

// The sums that the forms may have made of the documents, leaving out generated ones.
std::vector<double> without_generated(const Vendor& vendor) {
    std::vector<double> sums{vendor.by_forms};
    if (vendor.any_elsewhere) {
        sums.push_back(vendor.by_forms + vendor.elsewhere - vendor.voided_elsewhere);
        sums.push_back(vendor.by_forms - vendor.voided_elsewhere);
    }
    if (vendor.any_elsewhere || vendor.any_generated) sums.push_back(vendor.by_forms + 2 * vendor.first_paid);
    return sums;
}

double voided_generated(const Vendor& vendor) {
    double sum = 0;
    for (const GeneratedVoid& each : vendor.generated_voids)
        sum += each.amount;
    return sum;
}

// Of more than these no further ones are tried.
constexpr std::size_t kAmountsMax = 12;

// Whether some of these amounts come to that.
bool some_come_to(double sum, std::span<const double> amounts) {
    if (!differ(sum, 0)) return true;
    if (amounts.empty()) return false;
    const auto rest = amounts.first(std::min(amounts.size(), kAmountsMax)).subspan(1);
    return some_come_to(sum - amounts.front(), rest) || some_come_to(sum, rest);
}

// Whether voids of generated invoices make the difference: all of them, or all but the first ones.
bool agrees_with_voids(const Vendor& vendor, double difference) {
    const std::span<const GeneratedVoid> voids(vendor.generated_voids);
    double left = difference + voided_generated(vendor);
    if (!differ(left, 0)) return true;
    for (std::size_t start = 0; start < voids.size();) {
        if (!voids[start].may_not_count(vendor.first_document)) return false;
        std::size_t end = start + 1;
        while (end < voids.size() && voids[end].when == voids[start].when)
            ++end;
        std::vector<double> of_a_moment;  // in any order
        for (const GeneratedVoid& each : voids.subspan(start, end - start)) {
            left -= each.amount;
            of_a_moment.push_back(0 - each.amount);
        }
        if (some_come_to(left, of_a_moment)) return true;
        start = end;
    }
    return false;
}

// Payments of items and prepayments.
void find_first_payments(const Books& books, Vendors& vendors) {
    Recordset rows = books.read(
        "SELECT vendor_no,date_created FROM Payment_header_table WHERE doctype = 'py' OR doctype = 'pp'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const auto found = vendors.find(rows.column(0).text());
        if (found == vendors.end()) continue;
        std::string& first = found->second.first_document;
        first = std::min(first, day_in(rows, 1));
    }
}

// Of the sums that the documents may have made, the one to be named beside what is stored: what was counted
// in any case, unless it was the first payment that gave the vendor a balance.
double nearest_sum(const Vendor& vendor, double owing_balance) {
    const double voided = voided_generated(vendor);
    const double sum = vendor.by_forms + vendor.elsewhere - vendor.voided_elsewhere - voided;
    if (!vendor.any_generated || vendor.any_elsewhere) return sum;
    const double with_first = vendor.by_forms + 2 * vendor.first_paid - voided;
    return std::abs(owing_balance - with_first) < std::abs(owing_balance - sum) ? with_first : sum;
}

bool agrees(const Vendor& vendor, double owing_balance) {
    const std::vector<double> sums = without_generated(vendor);
    return std::any_of(sums.begin(), sums.end(),
                       [&](double sum) { return agrees_with_voids(vendor, owing_balance - sum); });
}

// Whether some sum of the documents, less the voids that may count, fits.
template <class Fits>
bool any_sum(const Vendor& vendor, const Fits& fits) {
    const std::vector<double> sums = without_generated(vendor);
    double voided = voided_generated(vendor);
    for (std::size_t left_out = 0;; ++left_out) {
        if (std::any_of(sums.begin(), sums.end(), [&](double sum) { return fits(sum - voided); }))
            return true;
        if (left_out == vendor.generated_voids.size()) return false;
        const GeneratedVoid& first = vendor.generated_voids[left_out];
        if (!first.may_not_count(vendor.first_document)) return false;
        voided -= first.amount;
    }
}

// A cent below nothing is taken off as one above it; half a cent is left for what doubles do not hold
// exactly.
constexpr double kLeastOfAnEdit = 0.015;

enum class Verdict {
    agrees,
    may_be_cents,
    may_be_edit,
    may_be_screen,
    may_be_recur,
    may_be_shared_key,
    differs
};

Verdict judge(const Vendor& vendor, double owing_balance) {
    if (!vendor.has_documents || agrees(vendor, owing_balance)) return Verdict::agrees;
    if (!vendor.judged) return Verdict::may_be_shared_key;
    const auto cents = [&](double sum) {
        return !differ(std::max(std::abs(owing_balance - sum), vendor.cents), vendor.cents);
    };
    if (any_sum(vendor, cents)) return Verdict::may_be_cents;
    const auto edit = [&](double sum) {
        return (vendor.edited_invoice && sum - owing_balance > kLeastOfAnEdit) ||
               (vendor.edited_credit_note && owing_balance - sum > kLeastOfAnEdit);
    };
    if (any_sum(vendor, edit)) return Verdict::may_be_edit;
    const auto screen = [&](double sum) { return some_come_to(owing_balance - sum, vendor.by_screen); };
    if (any_sum(vendor, screen)) return Verdict::may_be_screen;
    return vendor.any_from_recur ? Verdict::may_be_recur : Verdict::differs;
}

// What a note says of it.
const char* reason(Verdict verdict) {
    switch (verdict) {
        case Verdict::may_be_cents:
            return " without rows of less than a cent";
        case Verdict::may_be_edit:
            return " (an edit takes lines below nothing off as lines above it)";
        case Verdict::may_be_screen:
            return " (a document that was saved once more is not added again, and a credit note under "
                   "another word like "
                   "an invoice)";
        case Verdict::may_be_recur:
            return " (an edit of a document from AP-RECUR adds what was typed, and does not store it)";
        case Verdict::may_be_shared_key:
            return " (a void takes off every invoice of its key)";
        case Verdict::agrees:
        case Verdict::differs:
            break;
    }
    return "";
}

// Visits each vendor of which what is owed is not what its documents say, with a sentence.
template <class Visit>
void each_difference(const Books& books, const Visit& visit) {
    Vendors vendors;
    Recordset rows = books.read("SELECT vendor_no,owing_balance FROM Vendor_table ORDER BY vendor_no");
    for (; !rows.at_eof(); rows.MoveNext())
        vendors[rows.text("vendor_no")] = {};
    const auto own_prepayments = count_prepayments(books, vendors);
    const GeneratedInvoices& generated = books.generated();
    count_invoices(books, own_prepayments, generated, vendors);
    count_generated(generated, vendors);
    find_first_payments(books, vendors);
    count_payments(books, own_prepayments, vendors);
    for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
        const Vendor& vendor = vendors.at(rows.text("vendor_no"));
        const double owing_balance = rows.number("owing_balance");
        const Verdict verdict = judge(vendor, owing_balance);
        if (verdict == Verdict::agrees) continue;
        visit(verdict, fmt::format("Vendor {}: owing_balance is {:.2f}, by its documents {:.2f}",
                                   shown_text(rows.text("vendor_no")), owing_balance,
                                   nearest_sum(vendor, owing_balance)));
    }
}

}  // namespace

void check_owing_balances(const Books& books, Findings& findings) {
    each_difference(books, [&](Verdict verdict, const std::string& difference) {
        if (verdict == Verdict::differs) findings.push_back(difference);
    });
}

void note_owing_balances(const Books& books, Findings& notes) {
    each_difference(books, [&](Verdict verdict, const std::string& difference) {
        if (verdict != Verdict::differs) notes.push_back(difference + reason(verdict));
    });
}

}  // namespace brimley::company
