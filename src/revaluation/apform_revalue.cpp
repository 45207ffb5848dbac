#include "revaluation/apform_revalue.h"

#include <fmt/format.h>

#include <array>

#include "kernel/user_dates.h"

namespace brimley::revaluation {

using controls::Command;
using store::quoted;
using store::Recordset;
namespace command = frame::command;

namespace {

constexpr frame::FormIdentity kIdentity{"APform_revalue", "A/P Revaluation", "\\Help\\AP Revalue Help.pdf"};

// A missing number ends the way up, and is skipped on the way down.
constexpr frame::WalkTables kTables{.header = "AP_Revalue_header_table",
                                    .lines = "AP_Revalue_Result_table",
                                    .number_field = "docno",
                                    .line_order = "vendor_no, document_no, pay_item",
                                    .has_doctype = false,
                                    .gap_upwards = frame::WalkTables::GapUpwards::ends_the_way};

constexpr frame::ReportNames kReport{"A/P REVALUATION REPORT", "ap_revaluation", "Preview "};
// The page setup is kept under the name of a sibling module's form.
constexpr const char* kReportForm = "ARform_revalue";
// F of the report's pages: three lines stand above the columns.
constexpr double kReportHead = 5.5;

}  // namespace

APform_revalue::APform_revalue(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                               frame::Desk& desk)
    : DocumentForm(kIdentity, std::move(context), std::move(kernel), desk, kTables) {
    // Controls that other documents have and a run does not need.
    for (controls::Control* absent : std::initializer_list<controls::Control*>{
             &cmbcompany, &cmbcurrency, &cmbexrate, &txtratedate, &txtremark, &txtsource, &txtsource_docno,
             &chkprint, &chkvoid})
        absent->set_visible(false);
    for (controls::Grid* const paged : {&dbgrid1, &dbgrid2})
        paged->lies_in(TabControl);
    dbgridcmd.title = "NEW RATE";
    dbgrid1.title = "REVALUATION RESULT";
    dbgrid2.title = "G/L SUMMARY";
    dbgridcmd.on_after_update = [this](int column) { dbgridcmd_AfterColUpdate(column); };
    dbgrid1.on_row_col_change = [this](int, int old_column) { font_bar.follow_column(old_column); };
}

void APform_revalue::Form_Load() {
    clear_box();
    load_document_form();
    run.read_default_accounts();
}

void APform_revalue::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_commands(
        {
            {command::kPageSetup, "Page Set&up", "Setup", "Page Setup", Bars{"File", "Standard"}, 'U'},
            {command::kFind, "Find result", "Find", "Find result", Bars{"Run", "Standard"}},
            {command::kLast, "Last record", "Last", "Last record", Bars{"Record", "Standard"}},
            {command::kInsertLine, "&Insert Line", "", "", Bars{"Edit", "Popup"}},
            {command::kDeleteLine, "&Delete Line", "", "", Bars{"Edit", "Popup"}},
            {command::kClear, "", "", "", Bars{}},
            {command::kFormHelp, "A/P Revalue Help", "Help", "A/P Revalue Help", Bars{"Help", "Standard"}},
        },
        {command::kEditMode, command::kAccountMaster, command::kItemMaster, command::kVendorMaster});
}

void APform_revalue::init_report() {
    build_grids();
    init_dropdown();
}

void APform_revalue::init_dropdown() {
    ddcurrency = {
        {"currency", "description"}, {}, rows_of("SELECT currency, description FROM Working_Currency_table")};
    ddvendor = {{"vendor name", "vendor no"},
                {},
                rows_of("SELECT vendor_name, vendor_no FROM Vendor_table ORDER BY vendor_name"),
                1};
    for (controls::GridColumn& column : dbgridcmd.columns) {
        if (column.caption == "currency") column.drop_down = &ddcurrency;
        if (column.caption == "vendor no") column.drop_down = &ddvendor;
    }
}

// --- modes ---

void APform_revalue::set_selection_editable(bool editable) {
    dbgridcmd.allow_add_new = editable;
    dbgridcmd.allow_update = editable;
    dbgridcmd.allow_delete = editable;
}

void APform_revalue::grid_readmode() {
    DocumentForm::grid_readmode();
    set_selection_editable(false);
}

void APform_revalue::grid_newmode() {
    DocumentForm::grid_newmode();
    set_lines_editable(false);
    set_selection_editable(true);
    for (controls::GridColumn& column : dbgridcmd.columns)
        column.locked = column.caption == "vendor name";  // it follows the number
}

void APform_revalue::gencode_new() {
    clear_box();
    txtdocno.set(frame::kNewDocno);
    txtdate.set(date_text(desk().now()));
    txtlastdate.set(date_text(desk().now()));
    take_period_of(txtdate);
}

// --- what is typed ---

void APform_revalue::dbgridcmd_AfterColUpdate(int column) {
    const int row = dbgridcmd.row();
    run.highest_selection_row.raise_to(row);
    if (dbgridcmd.columns.at(static_cast<std::size_t>(column)).caption == "vendor no") ddvendor_chosen(row);
}

// Typing a vendor's number counts as choosing it.
void APform_revalue::ddvendor_chosen(int row) {
    step("name of a vendor", [&] {
        const std::string vendor_no = dbgridcmd.cell(row, "vendor no");
        dbgridcmd.set_cell(row, "vendor name",
                           kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME"));
    });
}

// --- stored runs ---

std::string APform_revalue::doctype_of_walk() {
    txtdoctype.set("apre");
    return "apre";
}

bool APform_revalue::nothing_stored_on_screen() const {
    return txtdocno.text() == frame::kNewDocno || txtfkey.empty();
}

void APform_revalue::Recordx() {
    if (txtdocno.text() != frame::kNewDocno) DocumentForm::Recordx();
}

void APform_revalue::clear_box() {
    for (controls::TextField* const field : std::initializer_list<controls::TextField*>{
             &txtdocno, &txtfkey, &txtglfkey, &txtdesc, &txtdate, &txtlastdate})
        field->set("");
    cmbperiod.clear_choice();
    cmbfyear.clear_choice();
    for (controls::Grid* const grid : grids()) {
        grid->array.dimension(frame::kRowsMin);
        grid->rebind();
    }
}

void APform_revalue::assign2control(Recordset& header) {
    txtdocno.set(header.text("docno"));
    txtfkey.set(header.text("fkey"));
    txtglfkey.set(header.text("GLFKEY"));
    txtdesc.set(header.text("Description"));
    txtdate.set(date_text(header.field("Date")));
    txtlastdate.set(date_text(header.field("last_transaction_date")));
    cmbperiod.set(header.text("period"));
    cmbfyear.set(header.text("fyear"));
}

void APform_revalue::assign2_dbgrid1(Recordset& items) {
    const std::string last_currency = assign2_dbgridcmd();
    run.show_stored(items, last_currency);
    assign2_dbgrid2();
}

Recordset APform_revalue::rows_of_run(const char* table, const char* order) {
    return kernel().read(
        fmt::format("SELECT * FROM {} WHERE fkey = {}{}", table, quoted(txtfkey.text()), order));
}

std::string APform_revalue::assign2_dbgridcmd() {
    constexpr std::array kSelection{
        frame::LineColumn{"currency", "Currency", frame::Shown::text},
        frame::LineColumn{"rate", "Rate", frame::Shown::text},
        frame::LineColumn{"every vendor", "every_vendor", frame::Shown::flag},
        frame::LineColumn{"vendor group", "vendor_group", frame::Shown::text},
        frame::LineColumn{"vendor no", "vendor_no", frame::Shown::text},
    };
    frame::LineColumns columns(*this, dbgridcmd, kSelection);
    auto rows = rows_of_run("AP_Revalue_transaction_table", "");
    columns.begin(rows);
    std::string last_currency;
    for (int row = 0; !rows.at_eof(); rows.MoveNext(), ++row) {
        columns.show(rows, row);
        ddvendor_chosen(row);
        last_currency = rows.text("Currency");
    }
    dbgridcmd.rebind();
    return last_currency;
}

void APform_revalue::assign2_dbgrid2() {
    auto rows = rows_of_run("AP_Revalue_GL_summary_table", " ORDER BY accno, currency");
    ledger_summary.show(rows);
}

// Anything in the first row of the result.
bool APform_revalue::entry_has_data() { return dbgrid1.array.row_has_text(0); }

// --- commands ---

bool APform_revalue::can_do(int id) const {
    switch (id) {
        case command::kPreview:
            return rights().Print;
        case command::kFind:
            return txtdocno.text() == frame::kNewDocno;
        case command::kLast:
            return false;
        case command::kRefresh:
            return true;
        default:
            return DocumentForm::can_do(id);
    }
}

void APform_revalue::CommandBars1_Execute(int id) {
    switch (id) {
        case command::kPreview:
            if (rights().Print) create_acrobat();
            break;
        case command::kLast:  // a button without an effect
            break;
        case command::kRefresh:
            Recordx();
            break;
        default:
            DocumentForm::CommandBars1_Execute(id);
    }
}

void APform_revalue::execute_own(int id) {
    switch (id) {
        case command::kPageSetup:
            show_page_setup(kReportForm);
            break;
        case command::kFind:
            if (txtdocno.text() == frame::kNewDocno) run.SEL_Result();
            break;
        case command::kClear:
            clear_box();
            break;
        default:
            break;
    }
}

void APform_revalue::create_acrobat() {
    auto report = report_.begin(kReport, kReportForm);
    if (!report) return;
    report->head_lines = {{"", "Fiscal year : " + cmbfyear.text(), "Period : " + cmbperiod.text()}};
    report->head_row_heights = kReportHead;
    for (const controls::Grid* const grid : {&dbgrid1, &dbgrid2})
        report->grids.push_back({frame::ReportPrinting::visible_columns(*grid), &grid->array});
    report_.print(*report, kReport, txtdocno.text());
}

// --- remembered values ---

// "Jan 31,2026".
std::string APform_revalue::remembered_date(const controls::DateField& field) const {
    const auto date = date_in(field);
    if (!date) return field.text();
    std::string text = date->query_text();
    text.erase(text.find(", ") + 1, 1);
    return text;
}

void APform_revalue::save_recent_values() {
    save_recent_value("cmbfyear", cmbfyear.text());
    save_recent_value("cmbperiod", cmbperiod.text());
    save_recent_value("date1", remembered_date(txtlastdate));
    save_recent_value("date2", remembered_date(txtdate));
}

}  // namespace brimley::revaluation
