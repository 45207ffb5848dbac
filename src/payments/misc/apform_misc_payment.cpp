#include "payments/misc/apform_misc_payment.h"

namespace brimley::payments {

namespace command = frame::command;

namespace {

constexpr PaymentKind kKind{
    .identity = {.class_name = "APform_misc_payment",
                 .caption = "A/P Misc Payment",
                 .help_file = "\\Help\\Miscellaneous Payment Help.pdf"},
    .doctype = "mpy",
    .tables = {.header = "Payment_header_table",
               .lines = "Payment_misc_transaction_table",
               .number_field = "docno",
               .line_order = "pay_item",
               .own_kind = " AND doctype = 'mpy'"},
    .gl_form = kernel::GlForm::misc_payment,
    .header_names_form = true,
    .report = "A/P Misc Payment",
    .saved_prefix = "Add new Payment ",
    .save_failed = "Add new payment failed",
    .void_question = "Are you sure to void this Payment?",
    .void_done_prefix = "Payment ",
    .void_failed = "Void Payment failed",
};

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
