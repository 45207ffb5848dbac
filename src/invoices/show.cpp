// Loading the form, and showing a stored document on it.
#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "invoices/commands.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using store::quoted;
using store::Recordset;

namespace {

constexpr frame::TaxedLines kTaxedLines{.pay_item = "pay item",
                                        .tax_code = "tax code",
                                        .tax_amount = "tax amount",
                                        .amount = "gross amount",
                                        .net_amount = "taxable amount",
                                        .open_amount = "open amount",
                                        .stored_amount = "gross_amount",
                                        .stored_net_amount = "taxable_amount",
                                        .no_element = "cannot find tax element for pay item "};

constexpr frame::FormIdentity kIdentity{"APform_invoice", "A/P Invoice", "\\Help\\AP Invoice Entry Help.pdf"};

store::Value field_or_null(const Recordset& row, const char* field) {
    return row.has_field(field) ? row.field(field) : store::Value();
}

}  // namespace

APform_invoice::APform_invoice(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : DocumentForm(kIdentity, std::move(context), std::move(kernel), desk),
      taxes(*this, dbgrid1, kTaxedLines) {
    using Controls = std::initializer_list<controls::Control*>;
    for (controls::Control* control :
         Controls{&cmbfreq, &txtrecurdate, &txtnoinvoice, &txteffectdate, &txtexpiredate}) {
        control->lies_in(frame_recur);
    }
    txtvendor_address.lies_in(frame_address);
    for (controls::Control* hidden : Controls{&frame_address, &frame_recur, &cmbopendoc, &txtrecurname}) {
        hidden->set_visible(false);
    }
    // These boxes show the state of a document; nobody ticks them.
    for (controls::CheckBox* box : {&chkpaid, &chkhold})
        box->set_locked(true);
    connect_handlers();
}

void APform_invoice::Form_Load() {
    clear_arrays();
    load_document_form();
    step("default accounts", [&] {
        default_cash_accno = kernel().parameter_account("GL", "Default Cash account");
        default_ap_accno = kernel().parameter_account("AP", "Default account payable account");
    });
    read_gain_and_loss();
    bars_.set_pressed(kViewAll, true);
}

void APform_invoice::set_doctype_of_kind() {
    if (txtdoctype.text() == kTemplateDoctype) txtdoctype.set("");  // no kind of document
    for (const Kind& kind : kKinds) {
        if (cmbdoctype.text() == kind.caption) txtdoctype.set(kind.doctype);
    }
}

std::string APform_invoice::doctype_of_walk() {
    if (cmbdoctype.empty()) cmbdoctype.set(kInvoice.caption);
    set_doctype_of_kind();
    return txtdoctype.text();
}

void APform_invoice::grid_readmode() {
    if (is_open() && mode() == frame::Mode::read) return;
    DocumentForm::grid_readmode();
    taxes.set_editable(false);
    chkrecur.set_enabled(true);
    set_field(cmbopendoc, FieldState::open);
}

void APform_invoice::grid_newmode() {
    DocumentForm::grid_newmode();
    taxes.set_editable(true);  // rates and taxes of a line are changed there
    for (controls::TextField* total : {&txtgross, &txttax, &txttotal})
        set_field(*total, FieldState::read_only);
    chkrecur.set_visible(true);
    recurring.catch_up_with_chkrecur();
}

// A document made here opens but for what it is known by and what its amounts hang on; of one that another
// module made, only what does not touch amounts.
void APform_invoice::grid_editmode() {
    DocumentForm::grid_editmode();
    const std::string& source = txtsource.text();
    const bool own = source == kSource || source == kSourceRecurring;
    using Controls = std::vector<controls::Control*>;
    if (own) {
        for (controls::Control* control :
             Controls{&cmbcompany, &txtinvdate, &cmbcurrency, &cmbdoctype, &txtapplydoc, &txtprepayment,
                      &txtsource, &txtsource_docno, &txtgross, &txttax, &txttotal})
            set_field(*control, FieldState::read_only);
    } else {
        const auto docno_colour = txtdocno.back_colour();
        set_all_fields(FieldState::read_only);
        txtdocno.set_back_colour(docno_colour);
        for (controls::Control* control :
             Controls{&txtinvno, &cmbterm, &txtduedate, &txtdiscdate, &txtremark})
            set_field(*control, FieldState::open);
    }
    // Only a template may change hands.
    for (controls::Control* control : Controls{&cmbvendor, &cmbvendor_name})
        set_field(*control, chkrecur.is_set() ? FieldState::open : FieldState::read_only);
    set_lines_editable(own);
    taxes.set_editable(own);
}

void APform_invoice::assign2control(Recordset& header) {
    const auto text = [&](const char* field) { return field_or_null(header, field).text(); };
    const auto date = [&](const char* field) { return date_text(field_or_null(header, field)); };
    for (const Kind& kind : kKinds) {
        if (text("doctype") == kind.doctype) cmbdoctype.set(kind.caption);
    }
    txtdoctype.set(text("doctype"));
    txtdocno.set(text("docno"));
    txtfkey.set(text("fkey"));
    txtglfkey.set(text("GLFKEY"));
    cmbcompany.set(text("company"));
    cmbvendor.set(text("vendor_no"));
    txtinvno.set(text("invoice_no"));
    txtinvdate.set(date("invoice_date"));
    txtduedate.set(date("due_date"));
    txtdiscdate.set(date("discount_date"));
    cmbcurrency.set(text("Currency"));
    cmbexrate.set(text("exchange_rate"));
    txtratedate.set(date("rate_date"));
    cmbperiod.set(text("period"));
    cmbfyear.set(text("fyear"));
    txtremark.set(text("remark"));
    txtsource.set(text("Source"));
    txtsource_docno.set(text("source_docno"));
    txtterm.set(text("duedays"));
    txtearlyterm.set(text("early_days"));
    chkprint.set(field_or_null(header, "printed").flag());
    chkvoid.set(field_or_null(header, "void").flag());
    chkhold.set(field_or_null(header, "hold").flag());
    const bool partly = field_or_null(header, "paid").flag();
    chkpaid.set(field_or_null(header, "fully_paid").flag() ? 1 : partly ? 2 : 0);
    recurring.assign_template(header);
    show_vendor_and_term(text("vendor_no"), text("payment_term"));
    open_documents.document_on_screen(text("doctype"));
    open_documents.get_list_open_doc();
}

// By their keys: the lists of vendors and terms are not fetched for that.
void APform_invoice::show_vendor_and_term(const std::string& vendor_no, const std::string& term_no) {
    if (const auto name = vendor_fields.name_of(vendor_no)) cmbvendor_name.set(*name);
    refresh_vendor_address();
    // The term list leaves "00" out, so a document with that term shows none.
    const auto term = kernel().read(fmt::format(
        "SELECT term_name FROM Payment_term_table WHERE term_no = {} AND term_no <> '00'", quoted(term_no)));
    if (!term.at_eof()) cmbterm.set_row({term.text("term_name"), term_no});
}

frame::DocumentWalk& APform_invoice::walk() { return recurring.pressed() ? recurring.templates : documents; }

void APform_invoice::last_record() {
    if (recurring.pressed()) {
        last_recurring();
    } else {
        DocumentForm::last_record();
    }
}

void APform_invoice::step_from_new_entry() {
    if (chkrecur.is_set()) {
        last_recurring();
    } else {
        last_record();
    }
}

}  // namespace brimley::invoices
