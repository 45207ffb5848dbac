// What payments do to the items that they pay: the rows of AP_transaction_table, their documents, and the
// prepayments among them. All of it runs inside the caller's transaction and lets store::Error through.
//
// An item takes pay, discount and write-off together. AP_header_table.paid means that a payment exists, and
// fully_paid that no item is left open.
#pragma once

#include <string>
#include <string_view>

#include "frame/form_part.h"
#include "payments/paid_flags.h"

namespace brimley::payments {

// What is paid of an item, in its currency; a credit of the vendor is paid with a negative amount.
struct ItemAmounts {
    double pay = 0, discount = 0, writeoff = 0;

    [[nodiscard]] double sum() const { return pay + discount + writeoff; }
    [[nodiscard]] bool any() const { return pay != 0 || discount != 0 || writeoff != 0; }
};

// An item as it was listed, and what is paid of it.
struct PaidItem {
    std::string docno, pay_item, vendor_no;
    double open = 0;         // before
    double net_balance = 0;  // what is left
    ItemAmounts amounts;
};

class PaidItems : public frame::FormPart {
  public:
    explicit PaidItems(frame::Form& form) : FormPart(form) {}

    // The message for an item that is not as it was listed.
    [[nodiscard]] static std::string has_changed(const std::string& docno, const std::string& pay_item);
    // False, after that message, when the item is not as it was listed.
    [[nodiscard]] bool pay(const PaidItem& paid);
    // Gives back what the lines of the payment took. What was discounted and written off stays in
    // paid_amount.
    void give_back(const std::string& payment_fkey);
    // Marks the prepayments among the payment's lines as applied, or as not applied again.
    void update_prepayment_status(const std::string& payment_fkey, bool is_void);

  private:
    struct PaidDocument {
        std::string fkey, source_docno;
    };
    void mark_paid_document(const store::Recordset& item);
    void give_back_line(const store::Recordset& line, PaidDocument& document);
    void reopen_document(const PaidDocument& document);
    using Flags = std::string_view (*)(kernel::ModuleG3& kernel, const std::string& fkey);
    void set_flags(const PaidDocument& document, const std::string& company, Flags flags);
};

}  // namespace brimley::payments
