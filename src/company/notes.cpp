// What looks wrong in the books and is intended: what voids and edits leave.
#include <fmt/format.h>

#include <unordered_map>

#include "company/check.h"
#include "company/one_line_payments.h"
#include "company/shown_text.h"
#include "company/voided_checks.h"

namespace brimley::company {

namespace {

using Sums = std::unordered_map<std::string, double>;

Sums paid_by_payments(const Books& books) {
    Sums sums;
    books.each_payment_line([&](const PaymentLine& line) { sums[line.fkey] += line.sum(); });
    return sums;
}

// The payments that apply prepayments, by the numbers of those.
std::unordered_map<std::string, std::string> applying_payments(const Books& books) {
    std::unordered_map<std::string, std::string> payments;
    books.each_payment_line([&](const PaymentLine& line) {
        if (line.ap_doctype == "pp" && !line.is_void) payments.try_emplace(line.ap_docno, line.fkey);
    });
    return payments;
}

// What is open of the items of prepayments, by their keys.
Sums open_prepayments(const Books& books) {
    Sums open;
    books.each_ap_line([&](const ApLine& line) {
        if (line.doctype == "pp") open[line.fkey] += line.open;
    });
    return open;
}

}  // namespace

void note_voided_checks(const Books& books, Findings& notes) {
    const VoidedChecks voided(books);
    const Sums sums = paid_by_payments(books);
    books.each_payment([&](const PaymentHeader& payment) {
        const bool prepayment = payment.doctype == "pp";
        if ((!prepayment && payment.doctype != "py") || !voided.contains(payment)) return;
        const auto lines = sums.find(payment.fkey);
        const double sum = lines == sums.end() ? 0 : lines->second;
        notes.push_back(
            fmt::format("{} {} was voided in the list of checks, which {} what vendor {} is owed {} {:.2f}",
                        prepayment ? "Prepayment" : "Payment", shown_text(payment.fkey),
                        prepayment ? "left" : "lowered", shown_text(payment.vendor_no),
                        prepayment ? "lower by" : "by another", prepayment ? payment.payment_amount : sum));
    });
}

void note_void_prepayments(const Books& books, Findings& notes) {
    const auto payments = applying_payments(books);
    const Sums open = open_prepayments(books);
    books.each_payment([&](const PaymentHeader& prepayment) {
        if (prepayment.doctype != "pp") return;
        const std::string name = "Prepayment " + shown_text(prepayment.fkey);
        const auto payment = payments.find(prepayment.docno);
        const auto item = open.find(prepayment.fkey);
        if (prepayment.invoiced && payment == payments.end()) {
            notes.push_back(name + " counts as applied, though no payment applies it");
        } else if (!prepayment.invoiced && payment != payments.end()) {
            notes.push_back(fmt::format("{} does not count as applied, though payment {} applies it", name,
                                        shown_text(payment->second)));
        } else if (prepayment.invoiced && prepayment.is_void) {
            notes.push_back(
                fmt::format("{} is void, though payment {} applies it", name, shown_text(payment->second)));
        }
        if (prepayment.is_void && item != open.end() && differ(item->second, 0))
            notes.push_back(
                fmt::format("{} is void, though its item is open with {:.2f}", name, item->second));
    });
}

void note_edited_prepayments(const Books& books, Findings& notes) {
    for (const OneLinePayment& payment : one_line_payments(books)) {
        if (!payment.is_prepayment() || !differ(payment.saved_amount(), payment.amount)) continue;
        notes.push_back(fmt::format(
            "Prepayment {} was edited to {:.2f}; its line and what vendor {} is owed know of {:.2f}",
            shown_text(payment.fkey), payment.amount, shown_text(payment.vendor_no), payment.saved_amount()));
    }
}

}  // namespace brimley::company
