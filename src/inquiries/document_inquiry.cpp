#include "inquiries/document_inquiry.h"

#include <fmt/format.h>

#include "inquiries/amount_filter.h"
#include "presentation/user_days.h"

namespace brimley::inquiries {

using controls::Command;
using controls::TextArray;

namespace {

constexpr int kBillRecord = 1001;

}  // namespace

DocumentInquiry::DocumentInquiry(const frame::FormIdentity& identity, frame::HostContext context,
                                 std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk,
                                 std::span<const frame::LineColumn> columns, const char* invoice_caption)
    : ListForm(identity, std::move(context), std::move(kernel), desk),
      cal1(controls_, "cal1", presentation::user_day_texts(this->context().BRIMLEY_DATE_FORMAT),
           presentation::year_up_to(desk.now())),
      invoice_caption_(invoice_caption),
      columns_(*this, dbgrid1, columns) {}

void DocumentInquiry::show_first_values() { cmbcompany.set("1"); }

void DocumentInquiry::initform_control() {
    vendor_fields.fill(frame::VendorFields::BlankEntry::first);
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
    fill.run(
        query, [&](const store::Recordset& items) { begin_rows(items); },
        [&](const store::Recordset& item, int row) {
            show_row(item, row);
            return row + 1;
        });
}

void DocumentInquiry::begin_rows(const store::Recordset& rows) {
    vendor_no_.clear();
    columns_.begin(rows);
    vendor_no_field_ = rows.column_of("vendor_no");
    vendor_no_column_ = dbgrid1.get_column("vendor no");
    vendor_name_column_ = dbgrid1.get_column("vendor name");
}

void DocumentInquiry::show_row(const store::Recordset& item, int row) {
    columns_.read(item);
    item.read_text(vendor_no_field_, vendor_read_);
    if (vendor_read_ == vendor_no_) return columns_.put(row);
    vendor_no_ = vendor_read_;
    columns_.put(row, std::array{TextArray::CellText{vendor_no_column_, vendor_no_},
                                 TextArray::CellText{vendor_name_column_, fill.vendor_name(vendor_no_)}});
}

}  // namespace brimley::inquiries
