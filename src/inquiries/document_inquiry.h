// What the inquiries into single documents have in common: the fields that say which documents, and a list
// with a row for each item of them.
//
// The rows come in the order in which the documents were stored. A row names its vendor where the vendor is
// another one than in the row above.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "controls/date_range.h"
#include "frame/fields/vendor_fields.h"
#include "frame/line_columns.h"
#include "frame/list_form.h"

namespace brimley::inquiries {

class DocumentInquiry : public frame::ListForm {
  public:
    // --- controls ---
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::TextField txtdocno{controls_, "txtdocno"};
    controls::TextField txtinvno{controls_, "txtinvno"};
    controls::TextField txtgross{controls_, "txtgross"};
    controls::DateRange cal1;
    controls::ComboBox cmbcompany{controls_, "cmbcompany"};

    // Asks the host for the invoice of the current row.
    void findAP();

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other,
                                      frame::VendorFields::BlankEntry::first};

  protected:
    // What an inquiry calls the fields that the filter is about. The number of the invoice is the vendor's.
    struct FilteredFields {
        const char* invoice_no;
        const char* docno;
        const char* vendor_no;
        const char* date;
    };

    // `columns` must outlive this: a table of constants. The invoice of a row is named in the column
    // `invoice_caption`.
    DocumentInquiry(const frame::FormIdentity& identity, const frame::ReportNames& report,
                    frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk,
                    std::span<const frame::LineColumn> columns, const char* invoice_caption);

    void show_first_values() override;
    void initform_control() override;
    void clear_box() override;
    void execute_own(int id) override;
    // The commands that these forms have beside those of all lists, and the form's own.
    void add_inquiry_commands(std::vector<controls::Command> own);

    // The conditions of what is filled in, and of the dates: never empty. Of the two numbers the vendor's
    // wins.
    [[nodiscard]] std::string conditions(const FilteredFields& fields) const;
    // The further condition of an amount that was typed, empty for none. When the text is no filter of an
    // amount it shows the message and returns no value.
    [[nodiscard]] std::optional<std::string> amount_condition(const controls::TextField& typed,
                                                              const char* field, const char* message);
    // Fills the list; the query has vendor_no and the fields of the columns.
    void assign2_dbgrid1(const std::string& query);

  private:
    const char* invoice_caption_;
    std::span<const frame::LineColumn> columns_;
};

}  // namespace brimley::inquiries
