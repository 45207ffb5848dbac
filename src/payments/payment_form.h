// PaymentForm: what payments of every kind have in common.
//
//   pay_by         the way of paying: cash, check or card, and the account behind it
//   void_payment   the void, step by step; each kind gives back what it paid
//   Update_record  the small edit of what is written on paper
//
// Payments of all kinds share Payment_header_table; each kind has its doctype and its table of lines.
// Amounts, lines and ledger of a saved payment do not change.
#pragma once

#include "frame/document_form.h"
#include "payments/pay_by.h"
#include "payments/payment_dates.h"

namespace brimley::payments {

// What a kind of payment is called, in its tables and in its messages; one constant a form.
struct PaymentKind {
    frame::FormIdentity identity;
    const char* doctype;
    frame::WalkTables tables;
    // "Are you sure to void this payment?"
    const char* void_question;
    // Before the number in "... is void."
    const char* void_done_prefix;
    const char* void_failed;
};

class PaymentForm : public frame::DocumentForm {
  public:
    // `kind` must outlive the form.
    PaymentForm(const PaymentKind& kind, frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                frame::Desk& desk);

    // --- controls ---
    controls::TextField txtremit{controls_, "txtremit"};
    controls::DateField txtpaydate{controls_, "txtpaydate"};
    controls::ComboBox cmbpayby{controls_, "cmbpayby"};
    controls::ComboBox cmbcash{controls_, "cmbcash", "0;1500;<;Account|1;3000;<;Name"};
    controls::ComboBox cmbbank{controls_, "cmbbank", "0;1500;<;Bank code|1;3000;<;Name"};
    controls::TextField txtcheck{controls_, "txtcheck"};
    controls::DateField txtcheckdate{controls_, "txtcheckdate"};

    // --- what hosts steer ---
    void grid_newmode() override;
    void grid_editmode() override;

    // The fields of a new header that every kind stores. Inside the transaction of the save.
    void fill_header(store::Recordset& header, const PaymentDates& dates);
    // Tests, asks, and runs its own transaction. After a failure the payment is as it was.
    void void_payment();
    // Reverses the GL document in txtglfkey. Inside the caller's transaction.
    [[nodiscard]] virtual bool insert_GL_reverse() = 0;

  protected:
    // --- variable points ---

    // Why the payment on screen may not be voided, apart from being void already: false after its message.
    [[nodiscard]] virtual bool may_be_voided() { return true; }
    // What the payment did is undone: before its flags are set, and after its GL document was reversed.
    virtual void give_back() {}
    virtual void give_back_balances() {}
    // The fields that a new payment computes itself.
    [[nodiscard]] virtual std::vector<controls::Control*> computed_fields() { return {}; }

    // --- shared procedures ---
    void initform_control() override;
    [[nodiscard]] std::string doctype_of_walk() override;
    [[nodiscard]] bool Update_record() override;
    [[nodiscard]] std::string edit_refusal() override;
    // The fields of a stored header that every kind has, on the screen and from the screen.
    void assign_header(store::Recordset& header);
    void clear_header();
    // The rates of the currency on screen are listed, up to the rate date; one of that very day is taken.
    void cmbcurrency_itemselect();
    void cmbexrate_itemselect();

    [[nodiscard]] const PaymentKind& kind() const { return kind_; }
    // For a change, by the key on screen.
    [[nodiscard]] store::Recordset stored_header();

  private:
    friend class PayBy;

    [[nodiscard]] bool may_void();
    [[nodiscard]] bool write_void();
    [[nodiscard]] bool write_edit(const std::optional<store::DateTime>& check_date);

    const PaymentKind& kind_;

  public:
    PayBy pay_by{*this};
};

}  // namespace brimley::payments
