// APform_invoice: vendor invoices, debit notes, credit notes and recurring templates.
//
//   entry.cpp      defaults of a new document, terms and dates, currency and rate, vendor (header logic)
//   lines.cpp      the line grid: cells, numbering, totals, loading
//   show.cpp       showing a stored document
//   save.cpp       saving a new document in one transaction
//   document/      saving an edit; void, hold and release; the list of open documents
//   lines_save.cpp the rows of a document's lines, new or edited
//   posting.cpp    the GL document of an invoice, and its reversal
//   templates/     the view of recurring templates, showing one, and saving a new one
//   commands.cpp   toolbar and views
//   links.cpp      requests to the host
//
// Columns of the line grid are found by caption. Amounts in cells are texts by "#,##0.00" in the document's
// currency. Every kind stores its amounts as entered, positive; only the vendor's owing balance goes the
// other way for a credit note.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/document_form.h"
#include "frame/fields/vendor_fields.h"
#include "frame/tax_grid.h"
#include "invoices/document/checked_entry.h"
#include "invoices/document/invoice_update.h"
#include "invoices/document/kinds.h"
#include "invoices/document/open_documents.h"
#include "invoices/document/stored_invoice.h"
#include "invoices/document/void_hold.h"
#include "invoices/templates/recurring_view.h"
#include "invoices/templates/template_save.h"
#include "kernel/gl_posting.h"

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

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::leaves_the_other};
    frame::TaxGrid taxes;
    OpenDocuments open_documents{*this};
    RecurringView recurring{*this};
    TemplateSave template_save{*this};
    StoredInvoice stored_rows{*this};
    InvoiceUpdate update{*this};
    VoidAndHold void_hold{*this};

    // --- what hosts steer ---
    void gencode_new() override;
    void grid_readmode() override;
    void grid_newmode() override;
    void grid_editmode() override;

    // Shows the document that bears the vendor's own number in txtinvno.
    void Recordx_byinvno();

    // --- the lines ---

    // Numbers the lines that hold an amount from 1, without gaps; their tax rows follow them.
    void get_itemno();
    void totalamt_calculate();
    void mnutax_summary_click() { taxes.display_tax_summary(); }
    [[nodiscard]] int get_column(std::string_view caption) const { return dbgrid1.get_column(caption); }
    void get_columnx(std::string_view caption, int row, std::string_view text) {
        dbgrid1.set_cell(row, caption, text);
    }

    // --- recurring templates (invoices/templates/) ---

    void last_record() override;
    void last_recurring() { recurring.last_recurring(); }
    void recurring_mode(bool on) { recurring.recurring_mode(on); }
    void leave_recurring_view() { recurring.leave(); }
    // Shows the template that recur_fkey names, whatever the view; without a name nothing happens.
    void get_recur() { recurring.get_recur(recur_fkey); }
    std::string recur_fkey;
    [[nodiscard]] bool insert_new_recurring() { return template_save.insert_new_recurring(); }
    // The account that the text starts with, when it is one that can be posted to; else empty.
    [[nodiscard]] std::string get_accno(const std::string& text);

    // --- the save ---

    // True when the document was saved. Every failure has had its message, and nothing of it is left. An
    // entry with chkrecur is saved as a template.
    [[nodiscard]] bool insert_new_record() override;
    [[nodiscard]] bool Update_record() override { return update.Update_record(); }
    // The GL document of what is on screen; txtglfkey is its key then. Inside the caller's transaction.
    [[nodiscard]] bool insert_GL_record(const std::string& ap_accno);
    // Reverses the GL document in txtglfkey, if it has one. Inside the caller's transaction.
    [[nodiscard]] bool insert_GL_reverse();
    // The vendor's payable account, or the default one.
    [[nodiscard]] std::string get_apaccno(const std::string& vendor_no);

    // --- acts on a saved document; each tests, asks, and runs its own transaction ---
    void void_invoice() { void_hold.void_invoice(); }
    void hold_invoice() { void_hold.hold_invoice(); }
    void release_hold() { void_hold.release_hold(); }

    // --- requests to the host ---
    void origin_doc();
    void pay_this_invoice();
    void payment_history();

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void init_grid() override;
    [[nodiscard]] std::vector<controls::Grid*> grids() override {
        return {&dbgrid1, &taxes.grid_tax, &taxes.grid_tax_summary};
    }
    void execute_own(int id) override;
    [[nodiscard]] std::string doctype_of_walk() override;
    [[nodiscard]] frame::DocumentWalk& walk() override;
    void step_from_new_entry() override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& lines) override;
    [[nodiscard]] std::string edit_refusal() override;
    [[nodiscard]] bool entry_has_data() override { return !dbgrid1.cell(0, "gross amount").empty(); }
    [[nodiscard]] bool walk_open_documents(int direction) override {
        return open_documents.walk_list(direction);
    }
    void record_shown_by_walk() override;
    void record_stepped() override { taxes.document_changed(); }
    void preview() override;
    void insert_line() override;
    void delete_line() override;
    [[nodiscard]] std::string account_of_current_line() override;
    [[nodiscard]] std::string current_vendor() override { return cmbvendor.text(); }

  private:
    friend class RecurringView;
    friend class TemplateSave;
    friend class InvoiceUpdate;

    // What the validation of a save has read, for the writing that follows.
    struct Term {
        std::string term_no;
        store::Value duedays, early_days, early_discount;
    };
    struct NewDocument : CheckedEntry {
        Term term;
        store::DateTime invoice_date;
    };

    // show.cpp
    void set_doctype_of_kind();
    void show_vendor_and_term(const std::string& vendor_no, const std::string& term_no);

    // entry.cpp
    void connect_handlers();
    void cmbterm_ItemSelect();
    void txtinvdate_change() { take_period_of(txtinvdate); }
    void cmbcurrency_itemselect();
    void cmbexrate_itemselect();
    void txtratedate_change() { cmbcurrency_itemselect(); }
    void vendor_address();
    void refresh_vendor_address();
    void close_rate();
    void select_term();

    // lines.cpp
    void clear_arrays();
    void dbgrid1_BeforeColEdit(const controls::CellEdit& edit);
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit);
    void dbgrid1_AfterColUpdate(int column);
    void ddacc_rowchange();
    void load_line(int row, const store::Recordset& line);
    [[nodiscard]] double cell_money(int row, const char* caption) const;
    void set_cell_money(int row, const char* caption, double amount);
    [[nodiscard]] bool counts_as_line(int row) const;
    void lines_moved();

    // save.cpp
    [[nodiscard]] std::optional<NewDocument> validate_new();
    [[nodiscard]] bool validate_header(NewDocument& document);
    // The row of the term that is chosen; nothing, after its message, when there is no such term.
    [[nodiscard]] std::optional<store::Recordset> chosen_term();
    [[nodiscard]] bool currency_is_in_use();
    [[nodiscard]] bool validate_rate();
    [[nodiscard]] bool validate_invoice_date(NewDocument& document);
    [[nodiscard]] bool validate_lines_and_period(CheckedEntry& entry);
    [[nodiscard]] bool validate_optional_dates(CheckedEntry& entry);
    [[nodiscard]] bool write_new_document(const NewDocument& document);
    void fill_header(store::Recordset& header, const NewDocument& document);
    void update_vendor_owing_balance();

    // lines_save.cpp
    [[nodiscard]] bool insert_new_record_transaction(store::Recordset& header, const std::string& ap_accno);
    [[nodiscard]] bool write_line(store::Recordset& lines, store::Recordset& header, int row,
                                  const std::string& ap_accno);
    [[nodiscard]] bool append_description(store::Recordset& lines, int row, bool line_stored);

    // posting.cpp
    [[nodiscard]] bool gather_amounts(kernel::GlPosting& posting, const std::string& ap_accno, double rate);
    class AuthorityAccounts;
    [[nodiscard]] bool gather_taxes(kernel::GlPosting& posting, const std::string& pay_item,
                                    const std::string& po_accno, double rate, AuthorityAccounts& authorities);
    [[nodiscard]] double rounded_base(double amount, double rate) const;

    // commands.cpp
    void view_kind(const char* kind, int id);
    void press_view(int id);

    int line_rows = 0;     // the highest grid row that editing has reached
    double old_total = 0;  // txttotal of the document as loaded; 0 for a new one
    controls::DropDown ddacc;
    std::string default_cash_accno, default_ap_accno;
};

}  // namespace brimley::invoices
