#include "company/paid_items.h"

#include <algorithm>
#include <limits>

#include "company/generated_invoices.h"

namespace brimley::company {

namespace {

std::string item_key(const std::string& docno, const std::string& pay_item) { return docno + "|" + pay_item; }

// A negative discount or write-off is taken off by a void and was never added.
double counted(double amount, bool is_void) {
    return is_void ? 0 - std::min(amount, 0.0) : std::max(amount, 0.0);
}

// An item is open with what the line leaves of it, and paid with what the line takes off. A void gives back
// pay, discount and write-off, and leaves the last two in the amount paid.
ItemAmounts taken_by(const PaymentLine& line) {
    const double left = line.discount + line.writeoff;
    const double taken = line.open - line.balance;
    return {line.is_void ? taken - line.sum() : taken, line.is_void ? left : line.sum(),
            counted(line.discount, line.is_void), counted(line.writeoff, line.is_void)};
}

}  // namespace

ItemAmounts operator+(const ItemAmounts& a, const ItemAmounts& b) {
    return {a.open + b.open, a.paid_amount + b.paid_amount, a.discount_taken + b.discount_taken,
            a.writeoff + b.writeoff};
}

PaidItems::PaidItems(const Books& books) {
    read_items(books);
    read_payment_keys(books);
    books.each_payment_line([&](const PaymentLine& line) { count(line); });
}

void PaidItems::read_items(const Books& books) {
    const GeneratedInvoices& generated = books.generated();
    std::unordered_map<std::string, double> invoices;  // made here: the GL key of each
    books.each_ap_header([&](const ApHeader& header) {
        if (header.source != "AP-INVOICE") return;
        const double number = running_number_of(header.gl_fkey).value_or(0);
        invoices[header.fkey] = number;
        double& edited = edits_[header.docno];
        edited = std::max(edited, number);
    });
    books.each_ap_line([&](const ApLine& line) {
        const auto [item, is_new] = items_.try_emplace(item_key(line.docno, line.pay_item));
        item->second.stands_twice = !is_new;
        const auto invoice = invoices.find(line.fkey);
        item->second.gl_number = invoice != invoices.end() ? invoice->second : 0;
        item->second.made_here = invoice != invoices.end() || generated.any_of_key(line.fkey);
        item->second.gross = line.gross;
        item->second.written = line.written;
    });
}

// A payment without a GL document counts as saved last.
void PaidItems::read_payment_keys(const Books& books) {
    books.each_payment([&](const PaymentHeader& payment) {
        if (payment.doctype != "py") return;
        const double number = running_number_of(payment.gl_fkey).value_or(std::numeric_limits<double>::max());
        payments_[payment.fkey] = {number, payment.void_date};
    });
}

void PaidItems::count(const PaymentLine& line) {
    const auto found = items_.find(item_key(line.ap_docno, line.pay_item));
    const auto payment = payments_.find(line.fkey);
    if (found == items_.end() || payment == payments_.end()) return;
    PaidItem& item = found->second;
    if (payment->second.gl_number < item.gl_number) return count_earlier(item, line);
    const double number = running_number_of(line.fkey).value_or(0);
    if (!item.made_here && (!item.named || number < item.first_payment)) {
        item.first_payment = number;
        item.settled_before = line.gross - line.open;
    }
    item.named = true;
    item.taken = item.taken + taken_by(line);
}

// Saved before the item was written anew.
void PaidItems::count_earlier(PaidItem& item, const PaymentLine& line) {
    if (!line.is_void) return;
    const auto& void_date = payments_.at(line.fkey).void_date;
    const bool days_known = void_date && item.written;
    if (days_known && *void_date < *item.written) return;
    const ItemAmounts given{0 - line.sum(), 0 - line.pay, 0 - line.discount, 0 - line.writeoff};
    item.named = true;
    if (days_known && *void_date > *item.written) {
        item.taken = item.taken + given;
    } else {
        item.given_back.push_back(given);
    }
}

const PaidItem* PaidItems::find(const std::string& docno, const std::string& pay_item) const {
    const auto found = items_.find(item_key(docno, pay_item));
    return found == items_.end() ? nullptr : &found->second;
}

bool PaidItems::edited_after(const std::string& docno, const std::string& payment_fkey) const {
    const auto edit = edits_.find(docno);
    const auto payment = payments_.find(payment_fkey);
    return edit != edits_.end() && payment != payments_.end() && payment->second.gl_number < edit->second;
}

}  // namespace brimley::company
