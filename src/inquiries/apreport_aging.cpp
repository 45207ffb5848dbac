#include "inquiries/apreport_aging.h"

#include "inquiries/aging_listing.h"
#include "kernel/user_dates.h"

namespace brimley::inquiries {

namespace {

constexpr frame::FormIdentity kAgingIdentity{"APreport_aging", "Vendor Aging", ""};
constexpr frame::ReportNames kAgingReport{"VENDOR AGING REPORT", "vendor_aging", "Preview Vendor Aging"};

}  // namespace

APreport_aging::APreport_aging(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : ListForm(kAgingIdentity, kAgingReport, std::move(context), std::move(kernel), desk) {}

void APreport_aging::show_first_values() { txtdate.set(date_text(desk().now())); }

void APreport_aging::initform_control() { vendor_fields.fill(); }

// It is stored, and never read back.
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
        fill.clear();
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
    fill.run(query, [&](const store::Recordset& items) { return AgingListing(*this, dbgrid1, items); });
}

}  // namespace brimley::inquiries
