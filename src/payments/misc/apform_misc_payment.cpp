#include "payments/misc/apform_misc_payment.h"

namespace brimley::payments {

namespace command = frame::command;

namespace {

constexpr PaymentKind kKind{
    {"APform_misc_payment", "A/P Misc Payment", "\\Help\\Miscellaneous Payment Help.pdf"},
    "mpy",
    {"Payment_header_table", "Payment_misc_transaction_table", "docno", "pay_item", " AND doctype = 'mpy'"},
    kernel::GlForm::misc_payment,
    true,
    "A/P Misc Payment",
    "Add new Payment ",
    "Add new payment failed",
    "Are you sure to void this Payment?",
    "Payment ",
    "Void Payment failed"};

constexpr frame::TaxedLines kTaxedLines{.pay_item = "pay item",
                                        .tax_code = "tax code",
                                        .tax_amount = "tax amount",
                                        .amount = "amount",
                                        .net_amount = "net amount",
                                        .allocated_tax = "allocated tax",
                                        .tax_included = "tax included",
                                        .stored_amount = "pay_amount",
                                        .stored_net_amount = "pay_amount",
                                        .no_element = "cannot find tax element for item no "};

}  // namespace

APform_misc_payment::APform_misc_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                         frame::Desk& desk)
    : PaymentForm(kKind, std::move(context), std::move(kernel), desk), taxes(*this, dbgrid1, kTaxedLines) {}

void APform_misc_payment::Form_Load() {
    lines.clear();
    load_document_form();
    step("default account",
         [&] { default_discount_accno = kernel().parameter_account("AP", "AP discount account"); });
}

void APform_misc_payment::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_commands({{command::kVoidPayment, "&Void Payment", "", "", Bars{"Payment"}},
                  {command::kFormHelp, "Miscellaneous Payment Help", "Help", "Miscellaneous Payment Help",
                   Bars{"Help", "Standard"}}},
                 {command::kInsertLine, command::kDeleteLine, command::kAccountMaster, command::kItemMaster,
                  command::kVendorMaster});
}

// Paid in cash is also what comes straight from a bank's account.
void APform_misc_payment::initform_control() {
    PaymentForm::initform_control();
    cmbcash.set_source(
        rows_of("SELECT accno, accname FROM Account_master_table WHERE (accclass = 'Cash' OR accclass = "
                "'Bank') AND type = 'A' ORDER BY accno DESC"));
}

void APform_misc_payment::init_grid() {
    build_grids();
    lines.connect_drop_downs();
}

void APform_misc_payment::clear_box() {
    clear_header();
    txttotal.set("");
    lines.clear();
}

void APform_misc_payment::assign2control(store::Recordset& header) {
    assign_header(header);
    txtremit.set(header.text("remit_to"));
}

}  // namespace brimley::payments
