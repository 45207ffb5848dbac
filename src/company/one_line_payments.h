// Payments that have a single line, prepayments and card payments, as their forms have stored them, with what
// belongs to each: line, open item, ledger, order.
#pragma once

#include <string>
#include <vector>

#include "company/books.h"

namespace brimley::company {

// A row of AP_transaction_table that a prepayment has made.
struct PrepaidItem {
    std::string docno, vendor_no, currency;
    double gross = 0;
    double open = 0;
    bool is_void = false;
    bool edited = false;  // since it was saved
};

// A row of Prepayment_waiting_PO_table.
struct WaitingOrder {
    std::string po_no, prepayment_no, prepayment_fkey;
    double amount = 0;
};

// A payment of either kind. Rows that another module has left are none.
struct OneLinePayment {
    std::string fkey, doctype, docno, vendor_no, currency, gl_fkey;
    std::string cash_accno, prepayment_accno, expense_accno, po_no;
    double amount = 0;
    double card_balance = 0;
    double fee = 0;
    bool invoiced = false;
    bool is_void = false;
    std::vector<PaymentLine> lines = {};
    std::vector<PrepaidItem> items = {};
    std::vector<WaitingOrder> waiting = {};
    // Lines of payments that apply it, which are valid, and which are void.
    int applied = 0;
    int applied_void = 0;
    // Another prepayment has the same number: which of them a payment applies is not known.
    bool number_repeats = false;
    // Voided in the list of checks, not in its own form.
    bool voided_as_check = false;

    [[nodiscard]] bool is_prepayment() const { return doctype == "pp"; }
    // What was paid when it was saved: an edit leaves the line.
    [[nodiscard]] double saved_amount() const { return lines.size() == 1 ? lines.front().pay : amount; }
};

// By key.
[[nodiscard]] std::vector<OneLinePayment> one_line_payments(const Books& books);
// Waiting rows that no prepayment of a form has made.
[[nodiscard]] std::vector<WaitingOrder> waiting_for_nobody(const Books& books);

}  // namespace brimley::company
