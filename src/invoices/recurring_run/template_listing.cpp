#include "invoices/recurring_run/template_listing.h"

#include <fmt/format.h>

#include <array>

#include "kernel/user_dates.h"

namespace brimley::invoices {

using frame::LineColumn;
using frame::Shown;
using store::quoted;
using store::Recordset;

namespace {

constexpr std::array kTemplateColumns{
    LineColumn{kVendorNoColumn, "vendor_no", Shown::text},
    LineColumn{kRecurNoColumn, "recurno", Shown::text},
    LineColumn{"recurring name", "recur_name", Shown::text},
    LineColumn{"recurring date", "recur_date", Shown::text},
    LineColumn{"created date", "date_created", Shown::date},
    LineColumn{"no of invoice", "no_invoice", Shown::text},
    LineColumn{"no of issue", "no_issue", Shown::text},
    LineColumn{"frequency", "Frequency", Shown::text},
};

constexpr const char* kAnyVendor = "0";

}  // namespace

TemplateListing::TemplateListing(frame::Form& form, controls::Grid& grid, const Recordset& templates,
                                 const DueRule* rule)
    : FormPart(form),
      grid_(grid),
      columns_(form, grid, kTemplateColumns),
      rule_(rule),
      vendor_name_column_(grid.get_column("vendor name")),
      begin_column_(grid.get_column("begin date")),
      end_column_(grid.get_column("expiration date")),
      due_date_column_(grid.get_column(kDueDateColumn)),
      due_column_(grid.get_column(kDueColumn)) {
    columns_.begin(templates);
}

int TemplateListing::show(const Recordset& row, int at) {
    if (rule_ != nullptr && !is_due(row)) return at;
    std::string due_date;
    if (rule_ != nullptr)
        if (const auto date = rule_->due_date(row.field("recur_date"))) due_date = date_text(*date);
    assign2_row(row, at, due_date);
    return at + 1;
}

void TemplateListing::end(int at) {
    for (int rows = grid_.array.rows(); rows > frame::rows_for(at); --rows)
        grid_.array.delete_row(rows - 1);
}

bool TemplateListing::is_due(const Recordset& row) const {
    const auto months = rule_->months_of(row.text("Frequency"));
    if (!months) return false;
    const auto issued = kernel().read(fmt::format(
        "SELECT recurno FROM AP_header_table WHERE recurno = {} AND [year] = {} AND [month] >= {} "
        "AND [month] <= {}",
        quoted(row.text("recurno")), quoted(months->year), quoted(months->first), quoted(months->last)));
    return issued.at_eof();
}

void TemplateListing::assign2_row(const Recordset& row, int at, const std::string& due_date) {
    const auto date = [&](const char* field) {
        return kernel::yyyymmdd_to_user_date(row.text(field), {context().BRIMLEY_DATE_FORMAT}, desk());
    };
    const std::string begin_date = date("begin_date");
    const std::string end_date = date("end_date");
    const std::string key = row.text("fkey");
    const std::array<controls::TextArray::CellText, 6> cells{{
        {vendor_name_column_, vendor_name(row.text("vendor_no"))},
        {begin_column_, begin_date},
        {end_column_, end_date},
        {due_date_column_, due_date},
        {due_column_, rule_ != nullptr ? "True" : "False"},
        {key_column(grid_), key},
    }};
    columns_.read(row);
    columns_.put(at, cells);
}

const std::string& TemplateListing::vendor_name(const std::string& vendor_no) {
    const auto [name, is_new] = vendor_names_.try_emplace(vendor_no);
    if (is_new && vendor_no == kAnyVendor)
        name->second = "*";
    else if (is_new)
        step("find the vendor's name", [&, found = name] {
            found->second = kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME");
        });
    return name->second;
}

}  // namespace brimley::invoices
