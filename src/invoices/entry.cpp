// The header of the invoice form: what a new document starts with, and what each field does to the others.
#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using controls::ComboBox;
using kernel::money_value;
using store::quoted;

namespace {

constexpr std::size_t kRatesListedMax = 10;
constexpr std::int64_t kTermDaysMax = 36525;  // a century
constexpr const char* kNoDueDate = "00";      // the payment_term of a term without a due date

}  // namespace

void APform_invoice::initform_control() {
    fill_common_combos();
    cmbterm.set_source(rows_of(
        "SELECT term_name, term_no FROM Payment_term_table WHERE term_no <> '00' ORDER BY term_no DESC"));
    vendor_fields.fill();
    cmbdoctype.set_items({{kInvoice.caption}, {kDebitNote.caption}, {kCreditNote.caption}});
    cmbfreq.set_items({{"monthly"}, {"quarterly"}});
}

void APform_invoice::connect_handlers() {
    vendor_fields.on_chosen = [this] { refresh_vendor_address(); };
    cmbterm.on_item_select = [this] { cmbterm_ItemSelect(); };
    txtinvdate.on_change = [this] { txtinvdate_change(); };
    cmbcurrency.on_item_select = [this] { cmbcurrency_itemselect(); };
    cmbcurrency.on_change = [this] {
        if (cmbcurrency.empty()) cmbcurrency_itemselect();
    };
    cmbexrate.on_item_select = [this] { cmbexrate_itemselect(); };
    txtratedate.on_change = [this] { txtratedate_change(); };
    chkrecur.on_click = [this] { recurring.chkrecur_click(); };
    dbgrid1.on_before_edit = [this](controls::CellEdit& edit) { dbgrid1_BeforeColEdit(edit); };
    dbgrid1.on_before_update = [this](controls::CellEdit& edit) { dbgrid1_BeforeColUpdate(edit); };
    dbgrid1.on_after_update = [this](int column) { dbgrid1_AfterColUpdate(column); };
    dbgrid1.on_row_col_change = [this](int old_row, int old_column) {
        if (dbgrid1.row() != old_row) taxes.refresh_panels();
        font_bar.follow_column(old_column);
    };
    taxes.on_computed = [this] { totalamt_calculate(); };
}

void APform_invoice::cmbterm_ItemSelect() {
    if (!entering() || cmbterm.empty()) return;
    step("cmbterm_ItemSelect", [&] {
        const auto term_no = cmbterm.chosen(1);
        if (!term_no) return;
        const auto term = kernel().find("Payment_term_table", {{"term_no", *term_no}});
        if (term.at_eof()) return;
        txtterm.set(term.text("duedays"));
        const auto invoice_date = date_in(txtinvdate);
        const auto days_on = [&](double days) {
            return invoice_date ? date_text(invoice_date->plus_days(static_cast<int>(
                                      kernel::whole_number(days, -kTermDaysMax, kTermDaysMax))))
                                : std::string{};
        };
        const bool no_due_date = term.text("payment_term") == kNoDueDate;
        txtduedate.set(no_due_date ? "" : days_on(money_value(txtterm.text())));
        const double early_days = term.number("early_days");
        txtdiscdate.set(early_days > 0 ? days_on(early_days) : "");
        txtearlyterm.set(early_days > 0 ? term.text("early_days") : "0");
    });
}

void APform_invoice::close_rate() {
    cmbexrate.clear_items();
    cmbexrate.set("");
    set_field(cmbexrate, FieldState::read_only);
    txtratedate.set("");
    set_field(txtratedate, FieldState::read_only);
}

void APform_invoice::cmbcurrency_itemselect() {
    if (!entering()) return;
    if (cmbcurrency.empty() || !foreign()) {
        close_rate();
        return;
    }
    set_field(cmbexrate, FieldState::open);
    set_field(txtratedate, FieldState::open);
    step("cmbcurrency_itemselect", [&] {
        auto rates = rates_of_currency(date_in(txtratedate));
        std::vector<ComboBox::Row> items;
        for (; !rates.at_eof() && items.size() < kRatesListedMax; rates.MoveNext()) {
            items.push_back({rates.text("Rate"), date_text(rates.field("rate_date"))});
        }
        cmbexrate.set_items(items);
        cmbexrate.set("");
        if (rates.RecordCount() == 0) return;
        rates.MoveLast();
        txtratedate.set(date_text(rates.field("rate_date")));
        cmbexrate.set(rates.text("Rate"));
    });
}

void APform_invoice::cmbexrate_itemselect() {
    const auto picked = cmbexrate.chosen(1);
    if (!picked) return;
    const auto date = kernel::parse_user_date(*picked, context().BRIMLEY_DATE_FORMAT, desk());
    if (date) txtratedate.set(date_text(*date));
}

void APform_invoice::select_term() {
    const bool none = cmbterm.empty();
    const auto term =
        kernel().read(none ? std::string("SELECT * FROM Payment_term_table WHERE [default] = TRUE")
                           : fmt::format("SELECT * FROM Payment_term_table WHERE payment_term = {}",
                                         quoted(cmbterm.text())));
    if (!term.at_eof() && none) cmbterm.set(term.text("Description"));
}

void APform_invoice::gencode_new() {
    old_total = 0;
    step("select the term", [&] { select_term(); });
    txtinvdate.set(date_text(desk().now()));
    txtinvdate_change();
    cmbterm_ItemSelect();
    txtdocno.set(frame::kNewDocno);
    for (controls::TextField* field : {&txtdoctype, &txtfkey, &txtsource_docno, &txtinvno, &txtremark})
        field->set("");
    txtsource.set(kSource);
    for (controls::TextField* total : {&txtgross, &txttax, &txttotal})
        total->set("0.00");
    for (controls::CheckBox* box : {&chkprint, &chkvoid, &chkpaid, &chkhold})
        box->set(0);
    cmbcurrency.set(context().BASE_CURRENCY);
    step("take the vendor's currency", [&] {
        if (cmbvendor.empty()) return;
        const auto currency = kernel().look_up("Vendor_table", {{"vendor_no", cmbvendor.text()}}, "Currency");
        if (currency && !currency->is_null()) cmbcurrency.set(currency->text());
    });
    if (!foreign()) close_rate();
    clear_arrays();
}

void APform_invoice::clear_box() {
    for (ComboBox* combo : {&cmbdoctype, &cmbvendor, &cmbvendor_name, &cmbterm, &cmbcurrency, &cmbperiod,
                            &cmbfyear, &cmbexrate}) {
        combo->clear_choice();
    }
    for (controls::DateField* field : {&txtratedate, &txtinvdate, &txtdiscdate, &txtduedate})
        field->set("");
    for (controls::TextField* field : {&txtinvno, &txtsource_docno, &txtremark, &txtsource, &txtgross,
                                       &txttax, &txttotal, &txtdocno, &txtdoctype, &txtfkey}) {
        field->set("");
    }
    clear_arrays();
}

void APform_invoice::Recordx_byinvno() {
    show_named(txtinvno.text(), "invoice_no = " + quoted(txtinvno.text()), txtfkey.text());
}

void APform_invoice::vendor_address() {
    frame_address.set_visible(!frame_address.visible());
    refresh_vendor_address();
}

void APform_invoice::refresh_vendor_address() {
    if (!frame_address.visible()) return;
    txtvendor_address.set("");  // not the last vendor's, should this one not be found
    step("vendor_address", [&] {
        const auto row = kernel().find("Vendor_table", {{"vendor_no", cmbvendor.text()}});
        txtvendor_address.set(row.at_eof() ? std::string{}
                                           : row.text("VENDOR_NAME") + "\n" + row.text("address"));
    });
}

}  // namespace brimley::invoices
