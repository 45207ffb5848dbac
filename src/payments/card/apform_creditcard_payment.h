// APform_creditcard_payment: payments of what is owed on a credit card, from cash, a bank or another card.
//
//   apform_creditcard_payment.cpp  loading, showing, the checks of a save, the GL document, requests to the
//   host card_save                      the save in one transaction card_edit                      an edit
//   that no command of the form reaches
//
// What was paid by a card has been collected on its payable account; the balance of that account is what can
// be paid here, with a fee on top that goes to an expense account. No vendor and no open item is touched: the
// card's name stands where other payments have their vendor.
#pragma once

#include <string>

#include "frame/line_columns.h"
#include "payments/card/card_edit.h"
#include "payments/card/card_save.h"
#include "payments/payment_form.h"
#include "payments/payment_list_report.h"

namespace brimley::payments {

// What is paid, in the payment's currency, as it stands on screen, to the cent.
struct CardAmounts {
    double payment = 0;  // the fee in it
    double fee = 0;
    double balance = 0;  // of the card, before

    // What the card is credited with.
    [[nodiscard]] double on_card() const { return payment - fee; }
};

class APform_creditcard_payment : public PaymentForm {
  public:
    APform_creditcard_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                              frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbcard{controls_, "cmbcard"};
    controls::TextField txtbalance{controls_, "txtbalance"};
    controls::TextField txtfee{controls_, "txtfee"};
    controls::ComboBox cmbexpacc{controls_, "cmbexpacc", "0;1500;<;Account|1;3000;<;Name"};
    controls::TextField txtpayment{controls_, "txtpayment"};

    [[nodiscard]] CardAmounts amounts() const;
    // The balance of the card, in the currency on screen. Without an account, or without a balance in that
    // currency, the field stays empty.
    void cmbcard_ItemSelect();

    // --- the save ---

    // True when the payment was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }
    // No command reaches it: this form has no Edit.
    [[nodiscard]] bool Update_record() override { return edit.Update_record(); }
    // The checks of a save; false after their message. Two of them ask, and may change the amount.
    [[nodiscard]] bool check_entry(PaymentChecks& checks);
    // The GL document of what is on screen, from the account of the way of paying; afterwards txtglfkey is
    // its key. Inside the caller's transaction; false after its message, if there is one.
    [[nodiscard]] bool insert_GL_record(const std::string& card, const std::string& cash_accno);

    // --- requests to the host ---
    void findAP();
    // No command reaches it: Preview asks for the host's own report.
    void create_acrobat() { report_.print_lines(kPaymentListReport, dbgrid1, txtdocno.text()); }

    CardSave save{*this};
    CardEdit edit{*this};

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void execute_own(int id) override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& lines) override;
    [[nodiscard]] bool entry_has_data() override;
    [[nodiscard]] std::vector<controls::Control*> computed_fields() override { return {&txtbalance}; }
    void begin_entry() override;

  private:
    [[nodiscard]] bool check_amounts();
    [[nodiscard]] bool check_fee();
    [[nodiscard]] bool card_is_in_use();
    // Whether the fee is in the payment, and whether that is more than there is to pay.
    [[nodiscard]] bool ask_about_fee();
    void pay_balance_and_fee();

    frame::LineColumns lines_;
    frame::ReportPrinting report_{*this};
};

}  // namespace brimley::payments
