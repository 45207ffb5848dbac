#include "inquiries/document_inquiry.h"

#include <fmt/format.h>

#include "inquiries/amount_filter.h"
#include "inquiries/vendor_cells.h"
#include "presentation/user_days.h"

namespace brimley::inquiries {

using controls::Command;

namespace {

constexpr int kBillRecord = 1001;

// The rows of one fill: the columns of the form, and the vendor.
class DocumentListing {
  public:
    DocumentListing(frame::Form& form, controls::Grid& grid, std::span<const frame::LineColumn> columns,
                    const store::Recordset& rows)
        : columns_(form, grid, columns), vendor_(form, grid, rows) {
        columns_.begin(rows);
    }
    [[nodiscard]] int show(const store::Recordset& item, int row) {
        static_cast<void>(vendor_.changes(item));
        columns_.read(item);
        columns_.put(row, vendor_.cells());
        return row + 1;
    }
    void end(int /*row*/) {}

  private:
    frame::LineColumns columns_;
    VendorCells vendor_;
};

}  // namespace

DocumentInquiry::DocumentInquiry(const frame::FormIdentity& identity, const frame::ReportNames& report,
                                 frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                 frame::Desk& desk, std::span<const frame::LineColumn> columns,
                                 const char* invoice_caption)
    : ListForm(identity, report, std::move(context), std::move(kernel), desk),
      cal1(controls_, "cal1", presentation::user_day_texts(this->context().BRIMLEY_DATE_FORMAT),
           presentation::year_up_to(desk.now())),
      invoice_caption_(invoice_caption),
      columns_(columns) {}

void DocumentInquiry::show_first_values() { cmbcompany.set("1"); }

void DocumentInquiry::initform_control() {
    vendor_fields.fill();
    cmbcompany.set_items({{"1"}});
}

// The dates stay: there are always two of them.
void DocumentInquiry::clear_box() {
    for (controls::TextField* field : {&txtdocno, &txtinvno, &txtgross})
        field->set("");
    cmbvendor.clear_choice();
    cmbvendor_name.clear_choice();
}

void DocumentInquiry::add_inquiry_commands(std::vector<Command> own) {
    using Bars = std::vector<std::string>;
    own.push_back({frame::command::kClear, "&Clear", "Clear", "", Bars{"Run", "Standard"}});
    own.push_back({kBillRecord, "&A/P Bill Record", "Bill", "Bill", Bars{"Link", "Standard"}});
    add_list_commands(std::move(own));
}

void DocumentInquiry::execute_own(int id) {
    if (id == kBillRecord) findAP();
}

void DocumentInquiry::findAP() {
    const std::string docno = dbgrid1.cell(dbgrid1.row(), invoice_caption_);
    if (!docno.empty()) notify("Bill Entry : Docno", docno);
}

std::string DocumentInquiry::conditions(const FilteredFields& fields) const {
    std::string conditions;
    const auto add_equal = [&](const char* field, const std::string& value) {
        conditions += fmt::format("{} = {} AND ", field, store::quoted(value));
    };
    if (!txtinvno.empty())
        add_equal(fields.invoice_no, txtinvno.text());
    else if (!txtdocno.empty())
        add_equal(fields.docno, txtdocno.text());
    if (!cmbvendor.empty()) add_equal(fields.vendor_no, cmbvendor.text());
    return conditions + fmt::format("{0} >= {1} AND {0} <= {2}", fields.date,
                                    store::date_value({cal1.from()}), store::date_value({cal1.to()}));
}

std::optional<std::string> DocumentInquiry::amount_condition(const controls::TextField& typed,
                                                             const char* field, const char* message) {
    const auto filter = parse_amount_filter(typed.text());
    if (filter) return filter->further_condition(field);
    tell(message);
    return std::nullopt;
}

void DocumentInquiry::assign2_dbgrid1(const std::string& query) {
    fill.run(query,
             [&](const store::Recordset& rows) { return DocumentListing(*this, dbgrid1, columns_, rows); });
}

}  // namespace brimley::inquiries
