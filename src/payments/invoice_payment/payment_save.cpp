// Saving a new payment: header, lines, the items paid, GL document, balances and the vendor's owing balance
// in one transaction, or nothing.
#include "payments/invoice_payment/payment_save.h"

#include <fmt/format.h>

#include "kernel/money.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using kernel::format_money;
using kernel::money_value;
using store::Recordset;

PaymentSave::PaymentSave(APform_payment& form) : NewPayment(form), form_(form) {}

// --- validation: one message at a time, and nothing is written before it ends ---

bool PaymentSave::validate_amount() {
    if (form_.cmbvendor.empty()) return refuse("please specify vendor");
    if (form_.txtpayment.empty()) return refuse("No payment");
    if (!kernel::is_numeric(form_.txtpayment.text())) return refuse("payment amount is invalid");
    if (money_value(form_.txtpayment.text()) == 0) return refuse("payment amount is 0.");
    return true;
}

// As the cells of the list show it, so that a payment of all lines is never short of them by a tie.
void PaymentSave::compute_payment_base() {
    form_.txtpayment_base.set(
        foreign() ? format_money(money_value(form_.cmbexrate.text()) * money_value(form_.txtpayment.text()))
                  : form_.txtpayment.text());
}

// Without a total in one currency, or with one of 0 or less, the payment is not compared with its lines. A
// credit whose amount was refused may still be in the totals on screen, and must not hide what the lines come
// to.
bool PaymentSave::validate_lines() {
    compute_payment_base();
    const auto any_total = [this] { return money_value(form_.txttotal.text()) > 0; };
    if (!any_total()) form_.items.update_total_payment();
    if (!any_total()) return true;
    if (form_.dbgrid1.cell(0, "pay item").empty()) return refuse("No invoice records");
    if (!form_.items.check_ifany_pay()) return refuse("Please specify any payment/discount/write-off amount");
    form_.items.update_total_payment();
    if (money_value(form_.txttotal_base.text()) > money_value(form_.txtpayment_base.text()))
        return refuse("Payment amount is less than total amount.");
    return true;
}

bool PaymentSave::validate_check() {
    if (!form_.pay_by.is_check()) return true;
    if (form_.cmbbank.empty()) return refuse("please specify bank code");
    if (form_.txtcheck.empty()) return refuse("please specify check number");
    return checks.check_date("please specify check date");
}

bool PaymentSave::validate_way_of_paying() {
    if (form_.cmbpayby.empty()) return refuse("please specify pay by");
    if (form_.pay_by.is_cash() && form_.cmbcash.empty() && form_.cmbbank.empty())
        return refuse("please specify cash account or bank code");
    return validate_check() && find_account_to_credit();
}

// A cash account that was chosen comes before the bank, and that before the card. A bank that was given must
// exist whatever the way of paying; a card needs none.
bool PaymentSave::find_account_to_credit() {
    const PayBy& pay_by = form_.pay_by;
    const bool cash_or_check = pay_by.is_cash() || pay_by.is_check();
    std::optional<std::string> bank_accno;
    if (!form_.cmbbank.empty() || cash_or_check) {
        bank_accno = pay_by.bank_account();
        if (!bank_accno && form_.cmbcash.empty())
            return refuse("Bank code " + form_.cmbbank.text() + " is invalid.");
    }
    std::string card_accno;
    if (const auto card = pay_by.card()) {
        card_accno = pay_by.card_account(*card);
        if (card_accno.empty()) return false;
    }
    const std::string of_bank = bank_accno.value_or("");
    checks.accno = !form_.cmbcash.empty() ? form_.cmbcash.text() : !of_bank.empty() ? of_bank : card_accno;
    return true;
}

bool PaymentSave::validate() {
    checks.begin();
    return validate_amount() && checks.payment_date() && checks.currency_is_in_use() &&
           checks.exchange_rate(PaymentChecks::NoRate::passes) && validate_lines() &&
           validate_way_of_paying() && checks.period_is_open();
}

// --- writing ---

// The totals that are stored are those of the lines, whatever a refused amount has left of them on screen.
void PaymentSave::fill_header(Recordset& header) {
    form_.items.update_total_payment();
    NewPayment::fill_header(header);
    header.set("vendor_no", form_.cmbvendor.text());
    header.set("payment_amount", money_value(form_.txtpayment.text()));
    header.set("payment_base_amount", money_value(form_.txtpayment_base.text()));
    if (!form_.txttotal.empty()) header.set("total_amount", money_value(form_.txttotal.text()));
    header.set("total_base_amount", money_value(form_.txttotal_base.text()));
    header.set("total_currency", form_.label_total_currency.caption());
}

bool PaymentSave::write_lines(Recordset& header) {
    items_ = form_.items.paid();
    auto lines = kernel().change("SELECT * FROM Payment_transaction_table WHERE 1 = 2");
    int item_no = 0;
    for (const ListedItem& item : items_) {
        lines.AddNew();
        lines.set("item_no", ++item_no);
        fill_line(lines, header, item);
        lines.Update();
        const bool paid = form_.paid_items.pay(
            {item.docno, item.pay_item, form_.items.vendor_no(), item.open, item.net_balance, item.amounts});
        if (!paid) return false;
    }
    return true;
}

void PaymentSave::fill_line(Recordset& lines, const Recordset& header, const ListedItem& item) {
    copy_header(lines, header, {"fkey", "docno", "company", "vendor_no", "payment_date"});
    const ItemAmounts& amounts = item.amounts;
    lines.set("ap_docno", item.docno);
    lines.set("pay_item", item.pay_item);
    lines.set("ap_doctype", item.doctype);
    lines.set("invoice_no", item.invoice_no);
    if (item.invoice_date) lines.set("invoice_date", *item.invoice_date);
    lines.set("gross_amount", item.gross);
    lines.set("open_amount", item.open);
    lines.set("pay_amount", amounts.pay);
    lines.set("discount_available", item.discount_available);
    lines.set("discount_taken", amounts.discount);
    lines.set("writeoff", amounts.writeoff);
    lines.set("balance", item.net_balance);
    if (amounts.discount > 0) lines.set("discount_accno", item.discount_accno);
    if (amounts.writeoff > 0) lines.set("writeoff_accno", item.writeoff_accno);
    if (item.is_prepayment()) lines.set("prepay_accno", item.prepay_accno);
    lines.set("Currency", item.currency);
    if (!item.in_base) {
        lines.set("invoice_exchange_rate", item.invoice_rate);
        lines.set("payment_exchange_rate", money_value(item.payment_rate_text));
    }
    lines.set("pay_base_amount", item.pay_base);
    stamp_line(lines);
}

bool PaymentSave::post() {
    form_.paid_items.update_prepayment_status(form_.txtfkey.text(), false);
    if (!form_.posting.insert_GL_record(form_.cmbvendor.text(), checks.accno, items_)) return false;
    form_.update_vendor_owing_balance(false);
    return true;
}

}  // namespace brimley::payments
