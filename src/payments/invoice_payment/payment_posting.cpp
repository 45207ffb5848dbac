// The GL document of a payment, from the list on screen, inside the transaction of the save.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "kernel/money.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using kernel::money_value;
using kernel::Round;

PaymentPosting::PaymentPosting(APform_payment& form) : DocumentPart(form), form_(form) {}

bool PaymentPosting::insert_GL_record(const std::string& vendor_no, const std::string& cash_accno,
                                      const std::vector<ListedItem>& items) {
    return form_.ledger.insert_GL_record(vendor_no, [&](kernel::GlPosting& posting) {
        const std::string ap_accno = form_.get_apaccno(vendor_no);
        if (ap_accno.empty()) return refuse("Error : Payable account for " + vendor_no + " is invalid.");
        if (!items.empty() && form_.items.vendor_no() != vendor_no)
            return refuse(PaidItems::has_changed(items.front().docno, items.front().pay_item));
        return std::ranges::all_of(
            items, [&](const ListedItem& item) { return gather(posting, item, ap_accno, cash_accno); });
    });
}

bool PaymentPosting::account_given(const std::string& accno, const char* what) {
    if (accno.empty()) return refuse(fmt::format("please specify {} account", what));
    return kernel().exists("Account_master_table", {{"accno", accno}}) ||
           refuse(fmt::format("{} account is invalid", what));
}

// What was paid, discounted and written off has the value of the payment's day, what was owed that of the
// invoice's; gain or loss is what lies between. A prepayment's signs stay as they come.
bool PaymentPosting::gather(kernel::GlPosting& posting, const ListedItem& item, const std::string& ap_accno,
                            const std::string& cash_accno) {
    const ItemAmounts& amounts = item.amounts;
    const bool in_base = item.in_base;
    if (!in_base && item.payment_rate_text.empty()) return refuse("please specify payment exchange rate");
    if (!in_base && !PaymentChecks::is_rate(item.payment_rate_text))
        return refuse("payment exchange rate is invalid");
    const double invoice_rate = item.invoice_rate;
    const double payment_rate = in_base ? 1 : money_value(item.payment_rate_text);
    const auto add = [&](const std::string& accno, double amount, double rate) {
        posting.add(accno, amount, in_base ? amount : Round(amount * rate), item.currency);
    };
    add(cash_accno, 0 - amounts.pay, payment_rate);
    if (amounts.discount > 0) {
        if (!account_given(item.discount_accno, "discount")) return false;
        add(item.discount_accno, amounts.discount, payment_rate);
    }
    if (amounts.writeoff > 0) {
        if (!account_given(item.writeoff_accno, "write-off")) return false;
        add(item.writeoff_accno, amounts.writeoff, payment_rate);
    }
    add(ap_accno, 0 - amounts.sum(), invoice_rate);
    if (payment_rate != invoice_rate) {
        const double difference = Round(std::fabs((payment_rate - invoice_rate) * amounts.sum()));
        posting.add(payment_rate < invoice_rate ? gain_accno() : loss_accno(), difference, difference,
                    context().BASE_CURRENCY);
    }
    if (item.is_prepayment()) {
        add(item.prepay_accno, 0 - amounts.pay, payment_rate);
        add(ap_accno, amounts.pay, payment_rate);
    }
    return true;
}

}  // namespace brimley::payments
