// APform_invoice: vendor invoices, debit notes, credit notes and recurring templates.
//
//   apform_invoice.cpp  loading, modes, a new document, showing a stored one
//   commands.cpp        toolbar and views
//   links.cpp           requests to the host
//   document/           the parts of a document, one per subject: lines, terms, save, posting, void and hold
//   templates/          the view of recurring templates, and their save
//
// Every kind stores its amounts as entered, positive; only what the vendor is owed goes the other way for a
// credit note.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame/document_form.h"
#include "frame/fields/vendor_fields.h"
#include "frame/tax_grid.h"
#include "invoices/document/accounts.h"
#include "invoices/document/entry_checks.h"
#include "invoices/document/invoice_posting.h"
#include "invoices/document/invoice_save.h"
#include "invoices/document/invoice_update.h"
#include "invoices/document/kinds.h"
#include "invoices/document/line_writer.h"
#include "invoices/document/lines.h"
#include "invoices/document/open_documents.h"
#include "invoices/document/owing_balance.h"
#include "invoices/document/payment_term.h"
#include "invoices/document/rate_fields.h"
#include "invoices/document/stored_invoice.h"
#include "invoices/document/vendor_address.h"
#include "invoices/document/void_hold.h"
#include "invoices/templates/recurring_view.h"
#include "invoices/templates/template_save.h"

namespace brimley::invoices {

class APform_invoice : public frame::DocumentForm {
  public:
    APform_invoice(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::Label labeldocno{controls_, "labeldocno", "Document no."};
    controls::Label labelinvdate{controls_, "labelinvdate", "Invoice Date"};
    controls::Label xlabelrecur{controls_, "xlabelrecur", "Open Doc."};
    controls::ComboBox cmbdoctype{controls_, "cmbdoctype"};
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::Frame frame_address{controls_, "frame_address", "Address Window"};
    controls::TextField txtvendor_address{controls_, "txtvendor_address"};
    controls::TextField txtinvno{controls_, "txtinvno"};
    controls::DateField txtinvdate{controls_, "txtinvdate"};
    controls::DateField txtduedate{controls_, "txtduedate"};
    controls::DateField txtdiscdate{controls_, "txtdiscdate"};
    controls::TextField txtterm{controls_, "txtterm"};
    controls::TextField txtearlyterm{controls_, "txtearlyterm"};
    controls::ComboBox cmbterm{controls_, "cmbterm", "0;1700;<;Term|1;700;^;Code"};
    controls::TextField txtgross{controls_, "txtgross"};
    controls::TextField txttax{controls_, "txttax"};
    controls::TextField txttotal{controls_, "txttotal"};
    controls::TextField txtapplydoc{controls_, "txtapplydoc"};
    controls::TextField txtprepayment{controls_, "txtprepayment"};
    controls::CheckBox chkpaid{controls_, "chkpaid", "Paid"};
    controls::CheckBox chkhold{controls_, "chkhold", "Hold"};
    controls::CheckBox chkrecur{controls_, "chkrecur", "Recurring"};
    controls::ComboBox cmbopendoc{controls_, "cmbopendoc"};
    controls::Frame frame_recur{controls_, "frame_recur", "Recurring Configuration"};
    controls::TextField txtrecurname{controls_, "txtrecurname"};
    controls::ComboBox cmbfreq{controls_, "cmbfreq"};
    controls::TextField txtrecurdate{controls_, "txtrecurdate"};
    controls::TextField txtnoinvoice{controls_, "txtnoinvoice"};
    controls::DateField txteffectdate{controls_, "txteffectdate"};
    controls::DateField txtexpiredate{controls_, "txtexpiredate"};

    // --- parts: a document on screen ---
    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::leaves_the_other};
    VendorAddress address{*this};
    PaymentTerm payment_term{*this};
    RateFields rate_fields{*this};
    frame::TaxGrid taxes;
    InvoiceLines lines{*this};
    OpenDocuments open_documents{*this};
    RecurringView recurring{*this};

    // --- parts: what is stored of it ---
    Accounts accounts{*this};
    StoredInvoice stored{*this};
    OwingBalance owing{*this};
    LineWriter line_writer{*this};
    InvoicePosting posting{*this};
    EntryChecks entry_checks{*this};
    InvoiceSave save{*this};
    InvoiceUpdate update{*this};
    TemplateSave template_save{*this};
    VoidAndHold void_hold{*this};

    // --- what hosts steer ---
    void last_record() override;
    void leave_recurring_view() { recurring.leave(); }
    void gencode_new() override;
    void grid_readmode() override;
    void grid_newmode() override;
    void grid_editmode() override;
    // Shows the document that has the vendor's own number in txtinvno.
    void Recordx_byinvno();

    // An entry with chkrecur is saved as a template.
    [[nodiscard]] bool insert_new_record() override;
    [[nodiscard]] bool Update_record() override { return update.Update_record(); }

    // --- requests to the host ---
    void pay_this_invoice();
    void payment_history();

    // --- for the parts ---
    [[nodiscard]] bool is_credit_note() const { return cmbdoctype.text() == kCreditNote.caption; }
    // txtdoctype follows the kind in cmbdoctype; a word that is no kind leaves it as it is.
    void set_doctype_of_kind();
    // Of the four views the one with this command.
    void press_view(int id);

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void init_grid() override;
    [[nodiscard]] std::vector<controls::Grid*> grids() override {
        return {&dbgrid1, &taxes.grid_tax, &taxes.grid_tax_summary};
    }
    [[nodiscard]] bool can_do(int id) const override;
    void execute_own(int id) override;
    [[nodiscard]] std::string doctype_of_walk() override;
    [[nodiscard]] frame::DocumentWalk& walk() override;
    void step_from_new_entry() override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& rows) override;
    [[nodiscard]] std::string edit_refusal() override;
    [[nodiscard]] bool entry_has_data() override { return !dbgrid1.cell(0, "gross amount").empty(); }
    [[nodiscard]] bool walk_open_documents(int direction) override {
        return open_documents.walk_list(direction);
    }
    void record_shown_by_walk() override;
    void record_stepped() override { taxes.document_changed(); }
    void preview() override;
    void insert_line() override { lines.insert_line(); }
    void delete_line() override { lines.delete_line(); }
    [[nodiscard]] std::string account_of_current_line() override;
    [[nodiscard]] std::string current_vendor() override { return cmbvendor.text(); }

  private:
    void txtinvdate_change() { take_period_of(txtinvdate); }
    void take_vendor_currency();
    void show_fields(const store::Recordset& header);
    void show_state(const store::Recordset& header);
    void view_kind(const char* kind, int id);
};

}  // namespace brimley::invoices
