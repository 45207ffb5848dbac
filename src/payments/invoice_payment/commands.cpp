// Toolbar of the payment form, and its requests to the host.
#include <fmt/format.h>

#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using controls::Command;
namespace command = frame::command;

namespace {

constexpr int kVoidPayment = 133;
constexpr int kBillRecord = 1001;
constexpr int kPaymentHistory = 1002;

std::vector<Command> own_commands() {
    using Bars = std::vector<std::string>;
    return {
        {kVoidPayment, "&Void Payment", "", "", Bars{"Payment"}},
        {command::kFormHelp, "Payment Entry Help", "Help", "Payment Entry Help", Bars{"Help", "Standard"}},
        {kBillRecord, "&A/P Bill Record", "Bill", "Bill", Bars{"Link", "Standard"}},
        {kPaymentHistory, "&Payment History", "", "", Bars{"Link"}},
    };
}

}  // namespace

void APform_payment::init_toolbar() { add_commands(own_commands()); }

void APform_payment::execute_own(int id) {
    if (id == kVoidPayment && rights().Update) void_payment();
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

void APform_payment::preview() {
    std::string fields = "Payment_header_table.*, Payment_transaction_table.*";
    std::string tables =
        "(Payment_header_table INNER JOIN Payment_transaction_table ON Payment_header_table.fkey = "
        "Payment_transaction_table.fkey)";
    if (!cmbvendor_name.empty()) {  // an unknown vendor must not keep the payment from being printed
        fields += ", Vendor_table.VENDOR_NAME";
        tables = fmt::format(
            "({} INNER JOIN Vendor_table ON Payment_header_table.vendor_no = Vendor_table.vendor_no)",
            tables);
    }
    const std::string query =
        fmt::format("SELECT {} FROM {} WHERE Payment_header_table.fkey = {} ORDER BY {}", fields, tables,
                    store::quoted(txtfkey.text()), documents.tables().line_order);
    notify("ActiveReport", query,
           fmt::format("A/P Payment,{},{}", txtdocno.text(), rights().form_design ? "1" : "0"));
}

}  // namespace brimley::payments
