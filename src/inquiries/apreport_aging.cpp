#include "inquiries/apreport_aging.h"

#include <array>

#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::inquiries {

using controls::TextArray;
using frame::LineColumn;
using frame::Shown;

namespace {

constexpr frame::FormIdentity kAgingIdentity{"APreport_aging", "Vendor Aging", ""};
constexpr frame::ReportNames kAgingReport{"VENDOR AGING REPORT", "vendor_aging"};

constexpr const char* kTotal = "total       ";

// "open amount" is the last one: it is shown a second time, in an age column.
constexpr std::array kAgingColumns{
    LineColumn{"AP document no", "docno", Shown::text},
    LineColumn{"invoice no", "invoice_no", Shown::text},
    LineColumn{"invoice date", "invoice_date", Shown::date},
    LineColumn{"due date", "due_date", Shown::date},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{"open amount", "open_amount", Shown::money},
};
constexpr std::size_t kOpenAmount = kAgingColumns.size() - 1;

// Up to which age, in months of thirty days past due, an amount stands in the column.
struct AgeColumn {
    const char* caption;
    double up_to;
};
constexpr std::array kAgeColumns{
    AgeColumn{"current", 0},
    AgeColumn{"1 - 30", 1},
    AgeColumn{"31 - 60", 2},
    AgeColumn{"61 - 90", 3},
};
constexpr const char* kOldest = "> 90";

}  // namespace

APreport_aging::APreport_aging(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : ListForm(kAgingIdentity, std::move(context), std::move(kernel), desk),
      columns_(*this, dbgrid1, kAgingColumns) {}

const frame::ReportNames& APreport_aging::report_names() const { return kAgingReport; }

void APreport_aging::show_first_values() { txtdate.set(date_text(desk().now())); }

void APreport_aging::initform_control() { vendor_fields.fill(frame::VendorFields::BlankEntry::first); }

// Nothing reads it back.
void APreport_aging::save_recent_values() {
    const auto as_of = kernel::try_user_date(txtdate.text(), context().BRIMLEY_DATE_FORMAT);
    if (as_of) save_recent_value("asof_date", as_of->yyyymmdd());
}

void APreport_aging::show_overdue() {
    txtdate.set(date_text(desk().now()));
    chkoverdue.set(1);
    SEL_record();
}

void APreport_aging::SEL_record() {
    if (txtdate.empty()) return tell("please specify as of date");
    const auto as_of = kernel::try_user_date(txtdate.text(), context().BRIMLEY_DATE_FORMAT);
    if (as_of)
        assign2_dbgrid1(query_of_items(*as_of));
    else
        clear_list();
}

// The age is computed where the items are stored. An item that is never due has none.
std::string APreport_aging::query_of_items(store::DateTime as_of) const {
    std::string items =
        "SELECT vendor_no, docno, invoice_no, invoice_date, due_date, pay_item, gross_amount, open_amount, "
        "(" +
        store::date_value(as_of) +
        " - [due_date]) / 30 AS age_range FROM AP_transaction_table WHERE paid = FALSE AND void = FALSE";
    if (!cmbvendor.empty()) items += " AND vendor_no = " + store::quoted(cmbvendor.text());
    if (chkoverdue.is_set()) items = "SELECT * FROM (" + items + ") WHERE age_range > 0";
    return items + " ORDER BY vendor_no, docno, pay_item";
}

void APreport_aging::assign2_dbgrid1(const std::string& query) {
    fill.run(
        query, [&](const store::Recordset& items) { begin_items(items); },
        [&](const store::Recordset& item, int row) { return show_item(item, row); },
        [&](int row) { show_total(row); });
}

void APreport_aging::begin_items(const store::Recordset& items) {
    vendor_no_.clear();
    vendor_total_ = 0;
    columns_.begin(items);
    vendor_no_field_ = items.column_of("vendor_no");
    open_amount_field_ = items.column_of("open_amount");
    age_field_ = items.column_of("age_range");
    vendor_no_column_ = dbgrid1.get_column("vendor no");
    vendor_name_column_ = dbgrid1.get_column("vendor name");
    age_columns_.clear();
    for (const AgeColumn& age : kAgeColumns)
        age_columns_.push_back(dbgrid1.get_column(age.caption));
    age_columns_.push_back(dbgrid1.get_column(kOldest));
}

int APreport_aging::age_column_of(const store::Value& age) const {
    std::size_t column = 0;
    while (!age.is_null() && column < kAgeColumns.size() && age.number() > kAgeColumns[column].up_to)
        ++column;
    return age_columns_[column];
}

int APreport_aging::show_item(const store::Recordset& item, int row) {
    columns_.read(item);
    item.read_text(vendor_no_field_, vendor_read_);
    const bool is_first = vendor_read_ != vendor_no_;
    if (is_first) {
        if (!vendor_no_.empty()) row = show_total(row);
        vendor_no_ = vendor_read_;
        vendor_total_ = 0;
    }
    vendor_total_ += item.column(open_amount_field_).number();
    std::array<TextArray::CellText, 3> more{
        {{age_column_of(item.column(age_field_)), columns_.text(kOpenAmount)}}};
    if (is_first) {
        more[1] = {vendor_no_column_, vendor_no_};
        more[2] = {vendor_name_column_, fill.vendor_name(vendor_no_)};
    }
    columns_.put(row, std::span(more).first(is_first ? 3 : 1));
    return row + 1;
}

int APreport_aging::show_total(int row) {
    const int open_amount = dbgrid1.get_column("open amount");
    dbgrid1.array.set(row, open_amount - 1, kTotal);
    dbgrid1.array.set(row, open_amount, kernel::format_money(vendor_total_));
    return row + 1;
}

}  // namespace brimley::inquiries
