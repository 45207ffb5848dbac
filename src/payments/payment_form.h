// PaymentForm: what payments of every kind have in common.
//
//   pay_by         the way of paying: cash, check or card, and the account behind it
//   ledger         the GL document, and its reversal
//   gencode_new    a new payment: today's, by the way of paying that was on screen
//   void_payment   the void, step by step; each kind gives back what it paid
//   Update_record  the small edit of what is written on paper
//
// What a kind checks, saves and edits is built from the pieces in payment_checks.h, new_payment.h and
// reposting_edit.h. Payments of all kinds share Payment_header_table; each kind has its doctype and its table
// of lines.
#pragma once

#include "frame/document_form.h"
#include "payments/pay_by.h"
#include "payments/payment_dates.h"
#include "payments/payment_ledger.h"

namespace brimley::payments {

// What a kind of payment is called, in its tables and in its messages; one constant a form.
struct PaymentKind {
    frame::FormIdentity identity;
    const char* doctype;
    frame::WalkTables tables;
    kernel::GlForm gl_form;
    // Whether its headers name the form that wrote them.
    bool header_names_form;
    // What the host calls its printed report.
    const char* report;
    // Before the number in "... complete".
    const char* saved_prefix;
    const char* save_failed;
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
    // Everything is emptied but the way of paying and kept_fields.
    void gencode_new() override;

    // The fields of a new header that every kind stores. Inside the transaction of the save.
    void fill_header(store::Recordset& header, const PaymentDates& dates);
    // Tests, asks, and runs its own transaction. After a failure the payment is as it was.
    void void_payment();
    // Reverses the GL document in txtglfkey. Inside the caller's transaction; false after its message, if
    // there is one.
    [[nodiscard]] bool insert_GL_reverse() { return ledger.insert_GL_reverse(); }
    [[nodiscard]] const PaymentKind& kind() const { return kind_; }

  protected:
    // --- variable points ---

    // Why the payment on screen may not be voided, apart from being void already: false after its message.
    [[nodiscard]] virtual bool may_be_voided() { return true; }
    // The same for its stored header, once that is locked: another desk may have been faster.
    [[nodiscard]] virtual bool may_still_be_voided(const store::Recordset& /*header*/) { return true; }
    // Why a payment that is neither void nor changed may not be edited: false after its message. The header
    // is locked.
    [[nodiscard]] virtual bool may_still_be_edited(const store::Recordset& /*header*/) { return true; }
    // What the payment did is undone: before its flags are set, and after its GL document was reversed.
    virtual void give_back(const store::Recordset& /*header*/) {}
    virtual void give_back_balances(const store::Recordset& /*header*/) {}
    // What a new payment keeps of the one on screen.
    [[nodiscard]] virtual std::vector<controls::ComboBox*> kept_fields() { return {}; }
    // The kind's own fields of a new payment; the common ones are filled in, the rates not listed yet.
    virtual void begin_entry() = 0;
    // Whether the report shows the vendor's name.
    [[nodiscard]] virtual bool prints_vendor() { return false; }
    // The fields that a new payment computes itself.
    [[nodiscard]] virtual std::vector<controls::Control*> computed_fields() { return {}; }

    // --- shared procedures ---
    void initform_control() override;
    [[nodiscard]] std::string doctype_of_walk() override;
    [[nodiscard]] bool Update_record() override;
    [[nodiscard]] std::string edit_refusal() override;
    void preview() override;
    // Every kind can be voided.
    [[nodiscard]] bool can_do(int id) const override;
    void execute_own(int id) override;
    // The fields of a stored header that every kind has, on the screen and from the screen.
    void assign_header(store::Recordset& header);
    void clear_header();
    // The rates of the currency on screen are listed, up to the rate date; one of that very day is taken.
    void cmbcurrency_itemselect();
    void cmbexrate_itemselect();

    // For a change, by the key on screen.
    [[nodiscard]] store::Recordset stored_header();
    // The same, locked for an edit; empty, after the message when there is one, when the payment is gone,
    // void, or no longer as it was shown.
    [[nodiscard]] std::optional<store::Recordset> header_to_edit();
    // False after its message when another desk has posted the payment anew since it was shown.
    [[nodiscard]] bool posted_as_shown(const store::Recordset& header);
    // False after its message when another desk has written anything that an edit writes.
    [[nodiscard]] bool as_shown(const store::Recordset& header);

  private:
    friend class PayBy;
    friend class RepostingEdit;

    // Whether there is a payment on screen to void, whatever stands against it.
    [[nodiscard]] bool shows_what_to_void() const;
    [[nodiscard]] bool may_void();
    [[nodiscard]] bool write_void();
    [[nodiscard]] bool write_edit(const std::optional<store::DateTime>& check_date);

    const PaymentKind& kind_;
    std::string shown_state_;  // what an edit may write, as it stood in the table when it was shown

  public:
    PayBy pay_by{*this};
    PaymentLedger ledger{*this};
};

}  // namespace brimley::payments
