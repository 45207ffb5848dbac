// Toolbar of the payment form, and its requests to the host.
#include <fmt/format.h>

#include "payments/apform_payment.h"

namespace brimley::payments {

using controls::Command;

namespace {

constexpr int kVoidPayment = 133;
constexpr int kBillRecord = 1001;
constexpr int kPaymentHistory = 1002;

const std::vector<Command>& command_table() {
    using Bars = std::vector<std::string>;
    static const std::vector<Command> kCommands{
        {100, "&Exit", "Exit", "", Bars{"File", "Standard"}, 'X'},
        {101, "&Save", "Save", "Save as", Bars{"File", "Standard", "Popup"}, 'S'},
        {103, "&Preview", "Preview", "", Bars{"File", "Standard", "Popup"}, 'P'},
        {105, "&New", "New", "", Bars{"Edit", "Standard", "Popup"}},
        {106, "&Edit mode", "Edit", "Edit mode", Bars{"Edit", "Standard", "Popup"}},
        {107, "&Previous record", "Previous", "Previous record", Bars{"Record", "Standard"}},
        {108, "&Next record", "Next", "Next record", Bars{"Record", "Standard"}},
        {109, "&Last record", "Last", "Last record", Bars{"Record", "Standard"}},
        {110, "&Insert Line", "", "", Bars{"Popup"}},
        {111, "&Delete Line", "", "", Bars{"Popup"}},
        {113, "&G/L Record", "G/L", "G/L Record", Bars{"Link", "Standard"}},
        {133, "&Void Payment", "", "", Bars{"Payment"}},
        {136, "&Refresh record", "Refresh", "Refresh Order", Bars{"Record", "Standard"}},
        {201, "Account Master", "", "", Bars{"Popup", "Master"}},
        {202, "Item Master", "", "", Bars{"Popup", "Master"}},
        {204, "Vendor Master", "", "", Bars{"Popup", "Master"}},
        {206, "Payment Entry Help", "Help", "Payment Entry Help", Bars{"Help", "Standard"}},
        {207, "Account Payable System Help", "", "", Bars{"Help"}},
        {208, "About Brimley Works", "", "", Bars{"Help"}},
        {209, "&Show Text below Icon", "", "", Bars{"Option"}},
        {401, "Save Font", "", "", Bars{"Font"}},
        {402, "Restore Font", "", "", Bars{"Font"}},
        {403, "Bold", "", "", Bars{"Font"}},
        {404, "Italic", "", "", Bars{"Font"}},
        {405, "Underline", "", "", Bars{"Font"}},
        {406, "Align Left", "", "", Bars{"Font"}},
        {407, "Align Center", "", "", Bars{"Font"}},
        {408, "Align Right", "", "", Bars{"Font"}},
        {1001, "&A/P Bill Record", "Bill", "Bill", Bars{"Link", "Standard"}},
        {1002, "&Payment History", "", "", Bars{"Link"}},
    };
    return kCommands;
}

}  // namespace

void APform_payment::init_toolbar() {
    for (const Command& command : command_table())
        bars_.add(command);
}

void APform_payment::execute_own(int id) {
    if (id == kVoidPayment && rights().Update) void_payment();
    if (id == kBillRecord) findAP();
    if (id == kPaymentHistory) payment_history();
}

void APform_payment::findAP() {
    const std::string docno = dbgrid1.cell(dbgrid1.row(), "AP document no");
    if (docno.empty()) return;
    const bool prepayment = dbgrid1.cell(dbgrid1.row(), "document type") == "pp";
    notify(prepayment ? "A/P Prepayment" : "Bill Entry : Docno", docno);
}

void APform_payment::payment_history() {
    const std::string docno = dbgrid1.cell(dbgrid1.row(), "AP document no");
    if (!docno.empty()) notify("Payment History", docno);
}

// The list has no column "account", so the request always goes out without one.
std::string APform_payment::account_of_current_line() { return dbgrid1.cell(dbgrid1.row(), "account"); }

void APform_payment::preview() {
    std::string fields = "Payment_header_table.*, Payment_transaction_table.*";
    std::string tables =
        "(Payment_header_table INNER JOIN Payment_transaction_table ON Payment_header_table.fkey = "
        "Payment_transaction_table.fkey)";
    if (!cmbvendor_name.empty()) {  // a vendor that nobody knows must not keep the payment from being printed
        fields += ", Vendor_table.VENDOR_NAME";
        tables = fmt::format(
            "({} INNER JOIN Vendor_table ON Payment_header_table.vendor_no = Vendor_table.vendor_no)",
            tables);
    }
    const std::string query =
        fmt::format("SELECT {} FROM {} WHERE Payment_header_table.fkey = {} ORDER BY pay_item", fields,
                    tables, store::quoted(txtfkey.text()));
    notify("ActiveReport", query,
           fmt::format("A/P Payment,{},{}", txtdocno.text(), rights().form_design ? "1" : "0"));
}

}  // namespace brimley::payments
