#include "invoices/recurring_run/apreport_recur_inquiry.h"

#include <fmt/format.h>

#include "invoices/recurring_run/template_listing.h"

namespace brimley::invoices {

namespace {

constexpr frame::FormIdentity kRecurIdentity{"APreport_recur_inquiry", "Recurring Invoices", ""};
constexpr frame::ReportNames kRecurReport{"A/P RECURRING INVOICES", "ap_recurring_invoice",
                                          "Preview Vendor Recurring Invoices"};

}  // namespace

APreport_recur_inquiry::APreport_recur_inquiry(frame::HostContext context,
                                               std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
    : ListForm(kRecurIdentity, kRecurReport, std::move(context), std::move(kernel), desk) {
    dbgrid1.allow_update = true;
    dbgrid1.on_before_edit = [this](controls::CellEdit& edit) {
        edit.cancel = edit.caption != kDueColumn || dbgrid1.cell(edit.row, kRecurNoColumn).empty();
    };
}

void APreport_recur_inquiry::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_list_commands({{frame::command::kClear, "&Clear", "Clear", "", Bars{"Run", "Standard"}},
                       {kListDue, "&List Due Recur", "Due", "", Bars{"Run", "Standard"}},
                       {kGenerate, "&Generate Invoice", "Generate", "", Bars{"Run", "Standard"}}});
}

void APreport_recur_inquiry::clear_box() {
    cmbvendor.clear_choice();
    cmbvendor_name.clear_choice();
}

void APreport_recur_inquiry::execute_own(int id) {
    if (id == kListDue) listdue_recur();
    if (id == kGenerate) gen_invoice();
}

void APreport_recur_inquiry::listdue_recur() {
    const store::DateTime now = desk().now();
    const std::string today = store::quoted(now.yyyymmdd());
    step("mark_expired", [&] { mark_expired(today); });
    const DueRule rule(now);
    show_due_column(true);
    assign2_dbgrid1(
        fmt::format("SELECT * FROM AP_recur_header_table WHERE (begin_date <= {0} AND end_date >= {0})",
                    today),
        &rule);
}

// The mark decides nothing here. A listing writes only when there is something to mark: no other desk has to
// wait for it then.
void APreport_recur_inquiry::mark_expired(const std::string& today) {
    const std::string expired = fmt::format("end_date < {} AND inactive = False", today);
    if (kernel().read("SELECT fkey FROM AP_recur_header_table WHERE " + expired).at_eof()) return;
    sign_writes();
    kernel().database().Execute("UPDATE AP_recur_header_table SET inactive = True WHERE " + expired);
}

void APreport_recur_inquiry::SEL_record() {
    show_due_column(false);
    std::string query = "SELECT * FROM AP_recur_header_table";
    if (!cmbvendor.empty()) query += " WHERE vendor_no = " + store::quoted(cmbvendor.text());
    assign2_dbgrid1(query, nullptr);
}

void APreport_recur_inquiry::show_due_column(bool shown) {
    const int column = dbgrid1.get_column(kDueColumn);
    if (column >= 0) dbgrid1.columns[static_cast<std::size_t>(column)].visible = shown;
}

void APreport_recur_inquiry::assign2_dbgrid1(const std::string& query, const DueRule* rule) {
    fill.run(query, [&](const store::Recordset& templates) {
        return TemplateListing(*this, dbgrid1, templates, rule);
    });
}

void APreport_recur_inquiry::gen_invoice() {
    if (generation_.is_running()) return;
    if (!generation_.generate(marked_templates()))
        return tell_failure("Generate invoice from on due recurring-invoice failed");
    tell("Generate invoices complete");
    listdue_recur();
}

std::vector<MarkedTemplate> APreport_recur_inquiry::marked_templates() const {
    std::vector<MarkedTemplate> marked;
    for (int row = 0; row < dbgrid1.array.used_rows(); ++row) {
        const bool due = controls::same_ignoring_case(dbgrid1.cell(row, kDueColumn), "True");
        if (!due || dbgrid1.cell(row, kRecurNoColumn).empty()) continue;
        marked.push_back({std::string(dbgrid1.array.get(row, key_column(dbgrid1))),
                          dbgrid1.cell(row, kVendorNoColumn), dbgrid1.cell(row, kDueDateColumn)});
    }
    return marked;
}

}  // namespace brimley::invoices
