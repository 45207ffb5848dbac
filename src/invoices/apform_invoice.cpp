// Loading the form, its modes, a new document, and showing a stored one.
#include "invoices/apform_invoice.h"

#include "invoices/commands.h"

namespace brimley::invoices {

using controls::ComboBox;
using store::quoted;
using store::Recordset;

namespace {

constexpr frame::FormIdentity kIdentity{"APform_invoice", "A/P Invoice", "\\Help\\AP Invoice Entry Help.pdf"};

constexpr frame::TaxedLines kTaxedLines{.pay_item = "pay item",
                                        .tax_code = "tax code",
                                        .tax_amount = "tax amount",
                                        .amount = "gross amount",
                                        .net_amount = "taxable amount",
                                        .open_amount = "open amount",
                                        .stored_amount = "gross_amount",
                                        .stored_net_amount = "taxable_amount",
                                        .no_element = "cannot find tax element for pay item "};

using Controls = std::initializer_list<controls::Control*>;

}  // namespace

APform_invoice::APform_invoice(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : DocumentForm(kIdentity, std::move(context), std::move(kernel), desk),
      taxes(*this, dbgrid1, kTaxedLines) {
    for (controls::Control* control :
         Controls{&cmbfreq, &txtrecurdate, &txtnoinvoice, &txteffectdate, &txtexpiredate})
        control->lies_in(frame_recur);
    txtvendor_address.lies_in(frame_address);
    for (controls::Control* hidden : Controls{&frame_address, &frame_recur, &cmbopendoc, &txtrecurname})
        hidden->set_visible(false);
    // These boxes show the state of a document; nobody ticks them.
    for (controls::CheckBox* box : {&chkpaid, &chkhold})
        box->set_locked(true);
    txtinvdate.on_change = [this] { txtinvdate_change(); };
}

void APform_invoice::Form_Load() {
    lines.clear();
    load_document_form();
    accounts.read_defaults();
    read_gain_and_loss();
    bars_.set_pressed(kViewAll, true);
}

void APform_invoice::initform_control() {
    fill_common_combos();
    payment_term.fill();
    vendor_fields.fill();
    cmbdoctype.set_items({{kInvoice.caption}, {kDebitNote.caption}, {kCreditNote.caption}});
    cmbfreq.set_items({{"monthly"}, {"quarterly"}});
}

void APform_invoice::init_grid() {
    build_grids();
    lines.connect_drop_downs();
}

// --- what is walked ---

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

frame::DocumentWalk& APform_invoice::walk() { return recurring.pressed() ? recurring.templates : documents; }

void APform_invoice::last_record() {
    if (recurring.pressed()) {
        recurring.last_recurring();
    } else {
        DocumentForm::last_record();
    }
}

void APform_invoice::step_from_new_entry() {
    if (chkrecur.is_set()) {
        recurring.last_recurring();
    } else {
        last_record();
    }
}

void APform_invoice::Recordx_byinvno() {
    show_named(txtinvno.text(), "invoice_no = " + quoted(txtinvno.text()), txtfkey.text());
}

// --- modes ---

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

// A document made here is unlocked except for what identifies it and what its amounts depend on; of one that
// another module made, only what does not touch amounts is.
void APform_invoice::grid_editmode() {
    DocumentForm::grid_editmode();
    const std::string& source = txtsource.text();
    const bool own = source == kSource || source == kSourceRecurring;
    if (own) {
        for (controls::Control* control :
             Controls{&cmbcompany, &txtinvdate, &cmbcurrency, &cmbdoctype, &txtapplydoc, &txtprepayment,
                      &txtsource, &txtsource_docno, &txtgross, &txttax, &txttotal})
            set_field(*control, FieldState::read_only);
    } else {
        open_only({&txtinvno, &cmbterm, &txtduedate, &txtdiscdate, &txtremark});
    }
    // Only a template may go to another vendor.
    for (controls::Control* control : Controls{&cmbvendor, &cmbvendor_name})
        set_field(*control, chkrecur.is_set() ? FieldState::open : FieldState::read_only);
    set_lines_editable(own);
    taxes.set_editable(own);
}

std::string APform_invoice::edit_refusal() {
    if (chkvoid.is_set()) return txtdocno.text() + " was void.";
    if (chkpaid.is_set()) return txtdocno.text() + " was PAID.";
    return {};
}

bool APform_invoice::insert_new_record() {
    return chkrecur.is_set() ? template_save.insert_new_recurring() : save.insert_new_record();
}

// --- a new document ---

void APform_invoice::gencode_new() {
    owing.document_begun();
    payment_term.take_default();
    txtinvdate.set(date_text(desk().now()));
    txtinvdate_change();
    payment_term.cmbterm_ItemSelect();
    txtdocno.set(frame::kNewDocno);
    for (controls::TextField* field : {&txtdoctype, &txtfkey, &txtsource_docno, &txtinvno, &txtremark})
        field->set("");
    txtsource.set(kSource);
    for (controls::TextField* total : {&txtgross, &txttax, &txttotal})
        total->set("0.00");
    for (controls::CheckBox* box : {&chkprint, &chkvoid, &chkpaid, &chkhold})
        box->set(0);
    take_vendor_currency();
    if (!foreign()) rate_fields.close();
    lines.clear();
}

void APform_invoice::take_vendor_currency() {
    cmbcurrency.set(context().BASE_CURRENCY);
    if (cmbvendor.empty()) return;
    step("take the vendor's currency", [&] {
        const auto currency = kernel().look_up("Vendor_table", {{"vendor_no", cmbvendor.text()}}, "Currency");
        if (currency && !currency->is_null()) cmbcurrency.set(currency->text());
    });
}

void APform_invoice::clear_box() {
    for (ComboBox* combo : {&cmbdoctype, &cmbvendor, &cmbvendor_name, &cmbterm, &cmbcurrency, &cmbperiod,
                            &cmbfyear, &cmbexrate})
        combo->clear_choice();
    for (controls::DateField* field : {&txtratedate, &txtinvdate, &txtdiscdate, &txtduedate})
        field->set("");
    for (controls::TextField* field : {&txtinvno, &txtsource_docno, &txtremark, &txtsource, &txtgross,
                                       &txttax, &txttotal, &txtdocno, &txtdoctype, &txtfkey})
        field->set("");
    lines.clear();
}

// --- a stored document ---

void APform_invoice::assign2control(Recordset& header) {
    const std::string doctype = header.field_or_null("doctype").text();
    for (const Kind& kind : kKinds) {
        if (doctype == kind.doctype) cmbdoctype.set(kind.caption);
    }
    txtdoctype.set(doctype);
    show_fields(header);
    show_state(header);
    recurring.assign_template(header);
    // By its key: the list of vendors is not fetched for that.
    if (const auto name = vendor_fields.name_of(cmbvendor.text())) cmbvendor_name.set(*name);
    address.refresh();
    payment_term.show(header.field_or_null("payment_term").text());
    open_documents.document_on_screen(doctype);
    open_documents.get_list_open_doc();
}

// A template has fewer fields than a document.
void APform_invoice::show_fields(const Recordset& header) {
    const auto text = [&](const char* field) { return header.field_or_null(field).text(); };
    const auto date = [&](const char* field) { return date_text(header.field_or_null(field)); };
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
}

void APform_invoice::show_state(const Recordset& header) {
    const auto flag = [&](const char* field) { return header.field_or_null(field).flag(); };
    chkprint.set(flag("printed"));
    chkvoid.set(flag("void"));
    chkhold.set(flag("hold"));
    const int partly = flag("paid") ? 2 : 0;
    chkpaid.set(flag("fully_paid") ? 1 : partly);
}

void APform_invoice::assign2_dbgrid1(Recordset& rows) {
    lines.show(rows);
    owing.document_shown();
}

}  // namespace brimley::invoices
