// Loading the form, a new payment, showing a stored one, and what its void gives back.
#include "payments/invoice_payment/apform_payment.h"

#include "kernel/money.h"
#include "kernel/owing_balance.h"

namespace brimley::payments {

using kernel::format_money;
using store::Recordset;

namespace {

// Payments of every kind share the table of headers; a number may repeat in another kind.
constexpr PaymentKind kKind{
    .identity = {.class_name = "APform_payment",
                 .caption = "A/P Payment",
                 .help_file = "\\Help\\Payment Entry Help.pdf"},
    .doctype = "py",
    .tables = {.header = "Payment_header_table",
               .lines = "Payment_transaction_table",
               .number_field = "docno",
               .line_order = "item_no",
               .own_kind = " AND doctype = 'py'"},
    .gl_form = kernel::GlForm::payment,
    .header_names_form = true,
    .report = "A/P Payment",
    .saved_prefix = "Add new Payment ",
    .save_failed = "Add new payment failed",
    .void_question = "Are you sure to void this payment?",
    .void_done_prefix = "",
    .void_failed = "Void Payment failed",
};

constexpr controls::Colour kDepositColour = controls::rgb(0, 0, 200);

}  // namespace

APform_payment::APform_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : PaymentForm(kKind, std::move(context), std::move(kernel), desk) {
    txtid.set_visible(false);
    vendor_fields.on_chosen = [this] { vendor_chosen(); };
}

void APform_payment::Form_Load() {
    items.clear();
    Deposit_style = kDepositColour;
    load_document_form();
    step("default accounts", [&] {
        default_discount_accno = kernel().parameter_account("AP", "AP discount account");
        default_writeoff_accno = kernel().parameter_account("AP", "AP write-off account");
    });
}

void APform_payment::initform_control() {
    PaymentForm::initform_control();
    vendor_fields.fill();
}

void APform_payment::init_grid() {
    build_grids();
    items.connect_drop_downs();
}

void APform_payment::vendor_chosen() {
    if (mode() == frame::Mode::new_entry) list_vendor_invoice(cmbvendor.text());
}

void APform_payment::list_vendor_invoice(const std::string& vendor_no) {
    for (controls::TextField* amount : {&txtpayment, &txttotal, &txttotal_base})
        amount->set("0.00");
    label_total_currency.set_caption("");
    items.list_vendor_invoice(vendor_no);
}

void APform_payment::gencode_new() {
    PaymentForm::gencode_new();
    if (!cmbvendor.empty()) list_vendor_invoice(cmbvendor.text());
}

void APform_payment::begin_entry() {
    for (controls::TextField* amount : {&txtpayment, &txtpayment_base, &txttotal, &txttotal_base})
        amount->set("0.00");
    vendor_fields.show_name_and_currency(cmbcurrency);
}

void APform_payment::clear_box() {
    clear_header();
    cmbvendor.clear_choice();
    cmbvendor_name.clear_choice();
    for (controls::TextField* field : {&txtid, &txtpayment, &txtpayment_base, &txttotal, &txttotal_base})
        field->set("");
    label_total_currency.set_caption("");
    items.clear();
}

void APform_payment::assign2control(Recordset& header) {
    assign_header(header);
    const auto money = [&](const char* field) {
        const store::Value value = header.field(field);
        return value.is_null() ? std::string{} : format_money(value.number());
    };
    cmbvendor.set(header.text("vendor_no"));
    txtpayment.set(money("payment_amount"));
    txtpayment_base.set(money("payment_base_amount"));
    txttotal.set(money("total_amount"));
    txttotal_base.set(money("total_base_amount"));
    label_total_currency.set_caption(header.text("total_currency"));
    const auto name = vendor_fields.name_of(cmbvendor.text());
    if (!name) return;
    cmbvendor_name.set(*name);
    txtremit.set(*name);  // payments of invoices store no payee of their own
}

std::string APform_payment::get_apaccno(const std::string& vendor_no) {
    return kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "ap_accno");
}

void APform_payment::give_back(const Recordset& header) { paid_items.give_back(header.text("fkey")); }

void APform_payment::give_back_balances(const Recordset& header) {
    update_vendor_owing_balance(true);
    paid_items.update_prepayment_status(header.text("fkey"), true);
}

void APform_payment::update_vendor_owing_balance(bool is_void) {
    const double sum = items.sum_paid();
    kernel::change_owing_balance(kernel(), cmbvendor.text(), {is_void ? sum : 0 - sum},
                                 kernel::kOwingOfPayment);
}

}  // namespace brimley::payments
