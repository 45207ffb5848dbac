// Items of invoices, and what the lines of payments say of each.
//
// An edit of an invoice writes its items anew, open in full and as if nothing had been paid. The key of the
// invoice's GL document shows when that was: payments with a lower GL key were saved before it. They do not
// count in the item, except for those that are void: a void after the edit gives the new item back what never
// came off it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "company/books.h"

namespace brimley::company {

// The amounts of an item, or what changes them.
struct ItemAmounts {
    double open = 0;
    double paid_amount = 0;
    double discount_taken = 0;
    double writeoff = 0;
};

[[nodiscard]] ItemAmounts operator+(const ItemAmounts& a, const ItemAmounts& b);

// What the payments say of one item.
struct PaidItem {
    bool named = false;         // by a payment that counts in it
    bool stands_twice = false;  // a repeated number: which of them was paid is not known
    double gross = 0;
    double gl_number = 0;  // of the invoice as it is now; 0 for an item of another module
    bool made_here = false;
    std::optional<store::DateTime> written;
    double first_payment = 0;  // of an item from elsewhere: the lowest key, and what it found settled
    double settled_before = 0;
    ItemAmounts taken;                    // by payments and later voids; open is what has come off
    std::vector<ItemAmounts> given_back;  // by voids on the day of the edit, before or after it
};

class PaidItems {
  public:
    explicit PaidItems(const Books& books);

    // Null for an item that no table holds.
    [[nodiscard]] const PaidItem* find(const std::string& docno, const std::string& pay_item) const;
    // Whether the key is that of a payment of items. A card's payment names none, a prepayment itself.
    [[nodiscard]] bool pays_items(const std::string& payment_fkey) const {
        return payments_.contains(payment_fkey);
    }
    // Whether an edit after this payment may have taken items out of the document.
    [[nodiscard]] bool edited_after(const std::string& docno, const std::string& payment_fkey) const;

  private:
    void read_items(const Books& books);
    void read_payment_keys(const Books& books);
    void count(const PaymentLine& line);
    void count_earlier(PaidItem& item, const PaymentLine& line);

    struct PaymentKey {
        double gl_number = 0;
        std::optional<store::DateTime> void_date;
    };
    std::unordered_map<std::string, PaidItem> items_;  // by document and pay item
    std::unordered_map<std::string, double> edits_;    // the highest GL key of each document
    std::unordered_map<std::string, PaymentKey> payments_;
};

}  // namespace brimley::company
