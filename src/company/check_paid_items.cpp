// The items that payments name, and what they say was paid, discounted and written off.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "company/check.h"
#include "company/paid_items.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

// Few voids cannot be placed before or after an edit; of more than these the rest counts as before it.
constexpr std::size_t kGivenBackMax = 12;

// What an item holds that these payments have touched.
ItemAmounts expected(const PaidItem& item, const ItemAmounts& taken) {
    ItemAmounts amounts = taken;
    amounts.open = item.gross - item.settled_before - taken.open;
    return amounts;
}

// An item of half a cent is listed, and paid, with the cent that is shown.
bool same_open(const PaidItem& item, double stored, double expected) {
    const double shown = kernel::money_value(kernel::format_money(item.gross));
    return !differ(stored, expected) || !differ(stored, expected - item.gross + shown);
}

// What was paid elsewhere before the first payment was stored there in its own way.
bool same(const PaidItem& item, const ApLine& line, const ItemAmounts& amounts) {
    if (!same_open(item, line.open, amounts.open)) return false;
    if (differ(item.settled_before, 0)) return true;
    return !differ(line.paid_amount, amounts.paid_amount) &&
           !differ(line.discount_taken, amounts.discount_taken) && !differ(line.writeoff, amounts.writeoff);
}

// Whether the item holds what it must when each of these voids came either before the edit or after it.
bool agrees(const PaidItem& item, const ApLine& line, const ItemAmounts& taken,
            std::span<const ItemAmounts> given_back) {
    if (given_back.empty()) return same(item, line, expected(item, taken));
    const auto rest = given_back.subspan(1);
    return agrees(item, line, taken, rest) || agrees(item, line, taken + given_back.front(), rest);
}

void tell_differences(const PaidItem& item, const ApLine& line, Findings& findings) {
    const ItemAmounts amounts = expected(item, item.taken);
    const auto compare = [&](const char* field, double stored, double by_payments) {
        if (!differ(stored, by_payments)) return;
        findings.push_back(fmt::format("Document {}, pay item {}: {} is {:.2f}, by its payments {:.2f}",
                                       shown_text(line.docno), shown_text(line.pay_item), field, stored,
                                       by_payments));
    };
    compare("open_amount", line.open, amounts.open);
    if (differ(item.settled_before, 0)) return;
    compare("paid_amount", line.paid_amount, amounts.paid_amount);
    compare("discount_taken", line.discount_taken, amounts.discount_taken);
    compare("writeoff", line.writeoff, amounts.writeoff);
}

}  // namespace

void check_paid_items(const Books& books, Findings& findings) {
    const PaidItems items(books);
    books.each_ap_line([&](const ApLine& line) {
        const PaidItem& item = *items.find(line.docno, line.pay_item);
        if (!item.named || item.stands_twice) return;
        const std::span<const ItemAmounts> given_back(item.given_back);
        if (agrees(item, line, item.taken, given_back.first(std::min(given_back.size(), kGivenBackMax))))
            return;
        tell_differences(item, line, findings);
    });
}

void check_named_items(const Books& books, Findings& findings) {
    const PaidItems items(books);
    books.each_payment_line([&](const PaymentLine& line) {
        if (!items.pays_items(line.fkey) || items.find(line.ap_docno, line.pay_item)) return;
        if (items.edited_after(line.ap_docno, line.fkey)) return;
        findings.push_back(fmt::format("Payment {}, line {}: there is no pay item {} of document {}",
                                       shown_text(line.fkey), shown_text(line.item_no),
                                       shown_text(line.pay_item), shown_text(line.ap_docno)));
    });
}

void check_open_amounts(const Books& books, Findings& findings) {
    const PaidItems items(books);
    books.each_ap_line([&](const ApLine& line) {
        const std::string name =
            fmt::format("Invoice {}, pay item {}", shown_text(line.fkey), shown_text(line.pay_item));
        // What several payments have paid and taken back may come to nothing; check_paid_items knows better.
        const bool named = items.find(line.docno, line.pay_item)->named;
        if (!named && !line.touched() && differ(line.open, line.gross)) {
            findings.push_back(fmt::format("{}: open amount {:.2f} of {:.2f}, though nothing was paid", name,
                                           line.open, line.gross));
        } else if (line.paid && differ(line.open, 0)) {
            findings.push_back(fmt::format("{}: open amount {:.2f}, though it is paid", name, line.open));
        } else if (!named &&
                   differ(std::abs(line.open) + std::abs(line.gross - line.open), std::abs(line.gross))) {
            findings.push_back(fmt::format("{}: open amount {:.2f} is not between 0 and {:.2f}", name,
                                           line.open, line.gross));
        }
    });
}

}  // namespace brimley::company
