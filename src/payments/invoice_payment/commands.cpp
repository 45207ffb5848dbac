// Toolbar of the payment form, and its requests to the host.
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using controls::Command;
namespace command = frame::command;

namespace {

constexpr int kBillRecord = 1001;
constexpr int kPaymentHistory = 1002;

std::vector<Command> own_commands() {
    using Bars = std::vector<std::string>;
    return {
        {command::kVoidPayment, "&Void Payment", "", "", Bars{"Payment"}},
        {command::kFormHelp, "Payment Entry Help", "Help", "Payment Entry Help", Bars{"Help", "Standard"}},
        {kBillRecord, "&A/P Bill Record", "Bill", "Bill", Bars{"Link", "Standard"}},
        {kPaymentHistory, "&Payment History", "", "", Bars{"Link"}},
    };
}

}  // namespace

void APform_payment::init_toolbar() { add_commands(own_commands()); }

void APform_payment::execute_own(int id) {
    PaymentForm::execute_own(id);
    if (id == kBillRecord) findAP();
    if (id == kPaymentHistory) payment_history();
}

void APform_payment::findAP() {
    const std::string docno = items.current("AP document no");
    if (docno.empty()) return;
    const bool prepayment = items.current("document type") == "pp";
    notify(prepayment ? "A/P Prepayment" : "Bill Entry : Docno", docno);
}

void APform_payment::payment_history() {
    const std::string docno = items.current("AP document no");
    if (!docno.empty()) notify("Payment History", docno);
}

// The list has no column "account", so the request always goes out without one.
std::string APform_payment::account_of_current_line() { return items.current("account"); }

}  // namespace brimley::payments
