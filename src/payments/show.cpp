// Loading the form, its modes, and showing a stored payment on it.
#include <fmt/format.h>

#include "kernel/money.h"
#include "payments/apform_payment.h"
#include "presentation/colours.h"

namespace brimley::payments {

using kernel::format_money;
using store::quoted;
using store::Recordset;

namespace {

constexpr frame::FormIdentity kIdentity{"APform_payment", "A/P Payment", "\\Help\\Payment Entry Help.pdf"};

// Four kinds of payments share the tables; a number may come again in another kind.
constexpr frame::WalkTables kTables{"Payment_header_table", "Payment_transaction_table", "docno", "item_no",
                                    " AND doctype = 'py'"};
constexpr controls::Colour kDepositColour = controls::rgb(0, 0, 200);

}  // namespace

APform_payment::APform_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : DocumentForm(kIdentity, std::move(context), std::move(kernel), desk, kTables) {
    txtid.set_visible(false);
    connect_handlers();
}

void APform_payment::Form_Load() {
    clear_lines();
    Deposit_style = kDepositColour;
    load_document_form();
    step("default accounts", [&] {
        default_discount_accno = kernel().parameter_account("AP", "AP discount account");
        default_writeoff_accno = kernel().parameter_account("AP", "AP write-off account");
    });
}

std::string APform_payment::doctype_of_walk() {
    txtdoctype.set("py");
    return "py";
}

void APform_payment::grid_newmode() {
    DocumentForm::grid_newmode();
    for (controls::TextField* computed : {&txtpayment_base, &txttotal, &txttotal_base})
        set_field(*computed, FieldState::read_only);
    for (controls::TextField* check : std::initializer_list<controls::TextField*>{&txtcheck, &txtcheckdate})
        check->set_locked(true);  // until the payment is by check
}

// Amounts, lines and ledger of a saved payment stand; only what is written on paper may change.
void APform_payment::grid_editmode() {
    DocumentForm::grid_editmode();
    open_only({&txtcheck, &txtcheckdate, &txtremark});
}

void APform_payment::assign2control(Recordset& header) {
    const auto text = [&](const char* field) { return header.text(field); };
    const auto date = [&](const char* field) { return date_text(header.field(field)); };
    const auto money = [&](const char* field) {
        const store::Value value = header.field(field);
        return value.is_null() ? std::string{} : format_money(value.number());
    };
    txtdocno.set(text("docno"));
    txtfkey.set(text("fkey"));
    txtglfkey.set(text("GLFKEY"));
    txtdoctype.set(text("doctype"));
    cmbcompany.set(text("company"));
    cmbvendor.set(text("vendor_no"));
    txtpaydate.set(date("payment_date"));
    cmbperiod.set(text("period"));
    cmbfyear.set(text("fyear"));
    cmbcurrency.set(text("Currency"));
    cmbexrate.set(text("exchange_rate"));
    txtratedate.set(date("rate_date"));
    cmbpayby.set(text("payby"));
    cmbcash.set(text("cash_accno"));
    cmbbank.set(text("bank_code"));
    txtcheck.set(text("check_no"));
    txtcheckdate.set(date("check_date"));
    txtpayment.set(money("payment_amount"));
    txtpayment_base.set(money("payment_base_amount"));
    txttotal.set(money("total_amount"));
    txttotal_base.set(money("total_base_amount"));
    label_total_currency.set_caption(text("total_currency"));
    txtremark.set(text("remark"));
    txtsource.set(text("Source"));
    txtsource_docno.set(text("source_docno"));
    chkprint.set(header.flag("printed"));
    chkvoid.set(header.flag("void"));
    show_bank_for_payby();
    const auto vendor = kernel().read(
        fmt::format("SELECT VENDOR_NAME FROM Vendor_table WHERE vendor_no = {}", quoted(cmbvendor.text())));
    if (vendor.at_eof()) return;
    cmbvendor_name.set(vendor.text("VENDOR_NAME"));
    txtremit.set(vendor.text("VENDOR_NAME"));  // payments of invoices store no payee of their own
}

std::string APform_payment::edit_refusal() {
    return chkvoid.is_set() ? txtdocno.text() + " was void" : std::string{};
}

}  // namespace brimley::payments
