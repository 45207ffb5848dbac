#include "revaluation/revaluation_save.h"

#include <fmt/format.h>

#include <stdexcept>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "revaluation/apform_revalue.h"

namespace brimley::revaluation {

using kernel::money_value;
using store::Recordset;

RevaluationSave::RevaluationSave(APform_revalue& form) : DocumentSave(form), form_(form) {}

bool RevaluationSave::insert_new_record() {
    return form_.txtfkey.empty() && DocumentSave::insert_new_record();
}

void RevaluationSave::set_doctype() {
    form_.txtdoctype.set("apre");
    form_.cmbcompany.set("1");
}

store::DateTime RevaluationSave::date_of(const controls::TextField& field) const {
    const auto date = date_in(field);
    if (!date) throw std::runtime_error(no_date(field));
    return *date;
}

void RevaluationSave::fill_header(Recordset& header) {
    header.set("docno", form_.txtdocno.text());
    header.set("company", form_.cmbcompany.text());
    header.set("fkey", form_.txtfkey.text());
    header.set("last_transaction_date", date_of(form_.txtlastdate));
    header.set("Date", date_of(form_.txtdate));
    header.set("period", form_.cmbperiod.text());
    header.set("fyear", form_.cmbfyear.text());
}

bool RevaluationSave::write_lines(Recordset& /*header*/) {
    if (!write_selection()) return false;
    write_result();
    write_summary();
    return true;
}

bool RevaluationSave::post() { return form_.posting.insert_GL_record(date_of(form_.txtdate)); }

Recordset RevaluationSave::new_rows(const char* table) const {
    return kernel().change(fmt::format("SELECT * FROM {} WHERE 1 = 2", table));
}

void RevaluationSave::add_row(Recordset& rows) const {
    rows.AddNew();
    rows.set("docno", form_.txtdocno.text());
    rows.set("fkey", form_.txtfkey.text());
}

bool RevaluationSave::write_selection() {
    auto rows = new_rows("AP_Revalue_transaction_table");
    for (int row = 0; row <= form_.run.highest_selection_row; ++row) {
        const SelectionRow selected = form_.run.selection_row(row);
        if (selected.currency.empty()) continue;
        if (selected.names_vendor() && selected.vendor_no.empty()) return fail("A selection names no vendor");
        add_row(rows);
        rows.set("Currency", selected.currency);
        rows.set("Rate", selected.rate);
        rows.set("every_vendor", selected.every_vendor);
        if (selected.names_vendor())
            rows.set("vendor_no", selected.vendor_no);
        else if (!selected.every_vendor)
            rows.set("vendor_group", selected.vendor_group);
        rows.Update();
    }
    return true;
}

// The rows of items alone: sums, totals and the summary have no document number or no pay item.
void RevaluationSave::write_result() {
    auto rows = new_rows("AP_Revalue_Result_table");
    std::string vendor_no;
    for (int row = 0; row <= form_.run.last_result_row; ++row) {
        if (form_.dbgrid1.cell(row, "document no").empty() || form_.dbgrid1.cell(row, "pay item").empty())
            continue;
        const std::string shown = form_.dbgrid1.cell(row, "vendor no");
        if (!shown.empty()) vendor_no = shown;  // it stands in a vendor's first row only
        write_result_row(rows, row, vendor_no);
    }
}

void RevaluationSave::write_result_row(Recordset& rows, int row, const std::string& vendor_no) {
    const auto cell = [&](const char* caption) { return form_.dbgrid1.cell(row, caption); };
    add_row(rows);
    rows.set("vendor_no", vendor_no);
    rows.set("document_no", cell("document no"));
    const auto date = kernel::parse_user_date(cell("date"), context().BRIMLEY_DATE_FORMAT, desk());
    if (date) rows.set("document_date", *date);
    rows.set("Currency", cell("currency"));
    rows.set("pay_item", cell("pay item"));
    rows.set("invoice_amount", money_value(cell("invoice amount")));
    if (const std::string rate = cell("original rate"); !rate.empty()) rows.set("original_rate", rate);
    rows.set("original_base_amount", money_value(cell("original base-currency amount")));
    rows.set("unrealized_gain_loss", money_value(cell("unrealized Gain/Loss")));
    rows.set("new_base_amount", money_value(cell("new base-currency amount")));
    rows.Update();
}

void RevaluationSave::write_summary() {
    auto rows = new_rows("AP_Revalue_GL_summary_table");
    for (const SummaryRow& row : form_.ledger_summary.read()) {
        if (row.accno.empty()) continue;
        add_row(rows);
        rows.set("accno", row.accno);
        rows.set("Currency", row.currency);
        rows.set("amount", row.amount());
        rows.Update();
    }
}

}  // namespace brimley::revaluation
