// Saving a new payment: header, lines, the items paid, GL document, balances and the vendor's owing balance
// in one transaction, or nothing.
#include <fmt/format.h>

#include "frame/working_period.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "payments/apform_payment.h"

namespace brimley::payments {

using kernel::format_money;
using kernel::money_value;
using store::DateTime;
using store::quoted;
using store::Recordset;

// --- validation: one message at a time, and nothing is written before it ends ---

bool APform_payment::validate_amount() {
    if (cmbvendor.empty()) return refuse("please specify vendor");
    if (txtpayment.empty()) return refuse("No payment");
    if (!kernel::is_numeric(txtpayment.text())) return refuse("payment amount is invalid");
    if (money_value(txtpayment.text()) == 0) return refuse("payment amount is 0.");
    return true;
}

bool APform_payment::is_rate(const std::string& text) {
    return kernel::is_numeric(text) && money_value(text) > 0;
}

// Without a rate the payment has no value in base currency.
bool APform_payment::validate_rate(CheckedPayment& payment) {
    if (!foreign() || cmbexrate.empty()) return true;
    if (!is_rate(cmbexrate.text())) return refuse("exchange rate is invalid");
    if (txtratedate.empty()) return true;
    payment.rate_date = required_date(txtratedate, "please specify rate date");
    return payment.rate_date.has_value();
}

// As the cells of the list show it, so that a payment of all lines is never short of them by a tie.
void APform_payment::compute_payment_base() {
    txtpayment_base.set(foreign()
                            ? format_money(money_value(cmbexrate.text()) * money_value(txtpayment.text()))
                            : txtpayment.text());
}

// Without a total in one currency, or with one of nothing or less, the payment is not compared with its
// lines.
bool APform_payment::validate_lines() {
    compute_payment_base();
    if (!(money_value(txttotal.text()) > 0)) return true;
    if (dbgrid1.cell(0, "pay item").empty()) return refuse("No invoice records");
    if (!check_ifany_pay()) return refuse("Please specify any payment/discount/write-off amount");
    if (money_value(txttotal_base.text()) > money_value(txtpayment_base.text()))
        return refuse("Payment amount is less than total amount.");
    return true;
}

bool APform_payment::validate_check(CheckedPayment& payment) {
    if (cmbpayby.text() != "Check") return true;
    if (cmbbank.empty()) return refuse("please specify bank code");
    if (txtcheck.empty()) return refuse("please specify check number");
    payment.check_date = required_date(txtcheckdate, "please specify check date");
    return payment.check_date.has_value();
}

bool APform_payment::validate_way_of_paying(CheckedPayment& payment) {
    if (cmbpayby.empty()) return refuse("please specify pay by");
    if (cmbpayby.text() == "Cash" && cmbcash.empty() && cmbbank.empty())
        return refuse("please specify cash account or bank code");
    return validate_check(payment) && find_account_to_credit(payment);
}

// A cash account that was chosen comes before the bank, and that before the card.
bool APform_payment::find_account_to_credit(CheckedPayment& payment) {
    const std::string& way = cmbpayby.text();
    const bool cash_or_check = way == "Cash" || way == "Check";
    std::string bank_accno;
    if (!cmbbank.empty() || cash_or_check) {
        const auto bank = kernel().read(fmt::format(
            "SELECT account_no FROM Bank_master_table WHERE bank_code = {}", quoted(cmbbank.text())));
        if (bank.at_eof() && cash_or_check && cmbcash.empty())
            return refuse("Bank code " + cmbbank.text() + " is invalid.");
        if (!bank.at_eof()) bank_accno = bank.text("account_no");
    }
    std::string card_accno;
    if (!cash_or_check && way != "Pay Later") {
        const auto card = kernel().read(fmt::format(
            "SELECT payable_accno FROM Credit_card_master_table WHERE card_name = {}", quoted(way)));
        card_accno = card.at_eof() ? std::string{} : card.text("payable_accno");
        if (card_accno.empty())
            return refuse("No Account Payable account for " + way +
                          ".\nCheck its setting in Credit card master.");
    }
    payment.cash_accno = !cmbcash.empty() ? cmbcash.text() : !bank_accno.empty() ? bank_accno : card_accno;
    return true;
}

bool APform_payment::validate_period() {
    if (cmbperiod.empty()) return refuse("please specify period");
    if (cmbfyear.empty()) return refuse("please specify fiscal year");
    return frame::period_is_open(kernel(), cmbfyear.text(), store::Value(cmbperiod.text()).number());
}

std::optional<APform_payment::CheckedPayment> APform_payment::validate_new() {
    CheckedPayment payment;
    if (!validate_amount()) return std::nullopt;
    const auto date = required_date(txtpaydate, "please specify payment date");
    if (!date) return std::nullopt;
    payment.payment_date = *date;
    if (!validate_rate(payment) || !validate_lines() || !validate_way_of_paying(payment) ||
        !validate_period())
        return std::nullopt;
    return payment;
}

// --- writing ---

bool APform_payment::insert_new_record() {
    std::optional<CheckedPayment> payment;
    if (step("validate_new", [&] { payment = validate_new(); }) && !payment) return false;
    const bool saved =
        payment && in_transaction("insert_new_record", [&] { return write_new_payment(*payment); });
    if (!saved) {
        txtdocno.set(frame::kNewDocno);
        txtfkey.set("");
        txtglfkey.set("");
        tell_failure("Add new payment failed");
        return false;
    }
    tell("Add new Payment " + txtdocno.text() + " complete");
    Recordx_fkey();
    return true;
}

bool APform_payment::write_new_payment(const CheckedPayment& payment) {
    txtdoctype.set("py");
    if (!draw_number(kernel::ModuleG3::TooLongMessage::number_first)) return false;
    auto header = kernel().change("SELECT * FROM Payment_header_table WHERE 1 = 2");
    header.AddNew();
    fill_header(header, payment);
    if (!write_lines(header)) return false;
    header.Update();
    update_prepayment_status(false);
    if (!insert_GL_record(cmbvendor.text(), payment.cash_accno)) return false;
    update_vendor_owing_balance(false);
    header.Bookmark(header.LastModified());
    header.Edit();
    header.set("GLFKEY", txtglfkey.text());
    header.Update();
    return true;
}

void APform_payment::fill_header(Recordset& header, const CheckedPayment& payment) {
    const DateTime now = desk().now();
    const std::string& way = cmbpayby.text();
    header.set("company", cmbcompany.text());
    header.set("docno", txtdocno.text());
    header.set("fkey", txtfkey.text());
    header.set("doctype", txtdoctype.text());
    header.set("vendor_no", cmbvendor.text());
    header.set("payment_date", payment.payment_date);
    header.set("Currency", cmbcurrency.text());
    if (foreign() && !cmbexrate.empty()) {
        header.set("exchange_rate", money_value(cmbexrate.text()));
        if (payment.rate_date) header.set("rate_date", *payment.rate_date);
    }
    header.set("payby", way);
    if (way == "Cash" && !cmbcash.empty()) header.set("cash_accno", cmbcash.text());
    if (way == "Check" || (way == "Cash" && cmbcash.empty())) header.set("bank_code", cmbbank.text());
    if (way == "Check") {
        header.set("check_no", txtcheck.text());
        header.set("check_date", *payment.check_date);
    }
    header.set("remark", txtremark.text());
    header.set("payment_amount", money_value(txtpayment.text()));
    header.set("payment_base_amount", money_value(txtpayment_base.text()));
    if (!txttotal.empty()) header.set("total_amount", money_value(txttotal.text()));
    header.set("total_base_amount", money_value(txttotal_base.text()));
    header.set("total_currency", label_total_currency.caption());
    header.set("period", cmbperiod.text());
    header.set("fyear", cmbfyear.text());
    header.set("source_form", identity().class_name);
    header.set("date_created", now.date_only());
    header.set("time_created", now.time_text());
    header.set("user_created", context().BRIMLEY_USER);
}

}  // namespace brimley::payments
