// The header of the payment form: what a new payment starts with, and what each field does to the others.
#include <fmt/format.h>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "payments/apform_payment.h"

namespace brimley::payments {

using controls::ComboBox;
using store::quoted;

// Lists may be long; each is fetched when somebody looks at it.
ComboBox::Source APform_payment::rows_of(const char* query, const char* first, const char* second) {
    return [this, query, first, second] {
        std::vector<ComboBox::Row> items;
        step(query, [&] {
            for (auto rows = kernel().read(query); !rows.at_eof(); rows.MoveNext())
                items.push_back({rows.text(first), rows.text(second)});
        });
        return items;
    };
}

std::vector<ComboBox::Row> APform_payment::ways_of_paying() {
    std::vector<ComboBox::Row> ways{{"Cash"}, {"Check"}};
    step("list cards", [&] {
        auto cards = kernel().read("SELECT card_name FROM Credit_card_master_table WHERE used = TRUE");
        for (; !cards.at_eof(); cards.MoveNext())
            ways.push_back({cards.text("card_name")});
    });
    return ways;
}

void APform_payment::initform_control() {
    fill_common_combos();
    cmbvendor.set_source(rows_of("SELECT vendor_no, VENDOR_NAME FROM Vendor_table ORDER BY vendor_no DESC",
                                 "vendor_no", "VENDOR_NAME"));
    cmbvendor_name.set_source(
        rows_of("SELECT vendor_no, VENDOR_NAME FROM Vendor_table ORDER BY VENDOR_NAME DESC", "VENDOR_NAME",
                "vendor_no"));
    cmbpayby.set_source([this] { return ways_of_paying(); });
    cmbcash.set_source(
        rows_of("SELECT accno, accname FROM Account_master_table WHERE accclass = 'Cash' AND type = 'A' "
                "ORDER BY accno DESC",
                "accno", "accname"));
    cmbbank.set_source(rows_of("SELECT bank_code, bank_name FROM Bank_master_table ORDER BY bank_code DESC",
                               "bank_code", "bank_name"));
}

void APform_payment::connect_handlers() {
    cmbvendor.on_item_select = [this] { cmbvendor_ItemSelect(); };
    cmbvendor_name.on_item_select = [this] { cmbvendor_name_ItemSelect(); };
    txtpaydate.on_change = [this] { txtpaydate_change(); };
    cmbpayby.on_item_select = [this] { cmbpayby_ItemSelect(); };
    cmbcurrency.on_item_select = [this] { cmbcurrency_itemselect(); };
    cmbexrate.on_item_select = [this] { cmbexrate_itemselect(); };
    txtratedate.on_change = [this] { cmbcurrency_itemselect(); };
    dbgrid1.on_before_update = [this](controls::CellEdit& edit) { dbgrid1_BeforeColUpdate(edit); };
    dbgrid1.on_after_update = [this](int column) { dbgrid1_AfterColUpdate(column); };
    dbgrid1.on_row_col_change = [this](int, int old_column) {
        font_bar.follow_column(old_column);
        const bool pay = dbgrid1.column() == dbgrid1.get_column("pay amount") && dbgrid1.column() >= 0;
        if (dbgrid1.allow_update && pay) enter_pay_amount(dbgrid1.row());
    };
    dbgrid1.on_fetch_row_style = [this](int row) { return dbgrid1_FetchRowStyle(row); };
}

void APform_payment::cmbvendor_ItemSelect() {
    cmbvendor_name.set(cmbvendor.chosen(1).value_or(""));
    vendor_chosen();
}

void APform_payment::cmbvendor_name_ItemSelect() {
    cmbvendor.set(cmbvendor_name.chosen(1).value_or(""));
    vendor_chosen();
}

void APform_payment::vendor_chosen() {
    if (mode() == frame::Mode::new_entry) list_vendor_invoice(cmbvendor.text());
}

// A card names its account itself.
void APform_payment::show_bank_for_payby() {
    const std::string way = controls::upper_case(cmbpayby.text());
    cmbbank.set_visible(way.empty() || way == "CASH" || way == "CHECK");
}

// A bank that a card has put away comes back for a check; for cash it is open again and stays out of sight.
void APform_payment::cmbpayby_ItemSelect() {
    const std::string way = controls::upper_case(cmbpayby.text());
    const bool check = way == "CHECK";
    const bool card = !check && way != "CASH";
    for (controls::TextField* field : std::initializer_list<controls::TextField*>{&txtcheck, &txtcheckdate}) {
        field->set_locked(!check);
        if (!check) field->set("");
    }
    if (check || card) cmbbank.set_visible(check);
    cmbbank.set_locked(card);
}

// Every rate up to the rate date; one of that very day is taken. Else the rate that stands there stays, even
// when the currency has changed.
void APform_payment::cmbcurrency_itemselect() {
    if (!entering() || cmbcurrency.empty()) return;
    if (!foreign()) {
        cmbexrate.clear_items();
        cmbexrate.set("");
        txtratedate.set("");
        return;
    }
    step("list rates", [&] {
        const auto until = date_in(txtratedate);
        auto rates = rates_of_currency(until);
        std::vector<ComboBox::Row> items;
        for (; !rates.at_eof(); rates.MoveNext())
            items.push_back({rates.text("Rate"), date_text(rates.field("rate_date"))});
        cmbexrate.set_items(items);
        if (until && !items.empty() && items.back()[1] == date_text(*until)) cmbexrate.set(items.back()[0]);
    });
}

void APform_payment::cmbexrate_itemselect() {
    if (!foreign() || cmbexrate.empty()) return;
    if (const auto date = cmbexrate.chosen(1)) txtratedate.set(*date);
}

void APform_payment::take_vendor_name_and_currency() {
    cmbcurrency.set(context().BASE_CURRENCY);
    if (cmbvendor.empty()) return;
    step("take the vendor's name and currency", [&] {
        const auto vendor = kernel().read(
            fmt::format("SELECT * FROM Vendor_table WHERE vendor_no = {}", quoted(cmbvendor.text())));
        cmbvendor_name.set(vendor.at_eof() ? std::string{} : vendor.text("VENDOR_NAME"));
        if (vendor.at_eof()) return;
        if (!vendor.text("Currency").empty()) cmbcurrency.set(vendor.text("Currency"));
    });
}

// Everything is emptied but the vendor and the way of paying.
void APform_payment::gencode_new() {
    const std::string vendor_no = cmbvendor.text();
    const std::string vendor_name = cmbvendor_name.text();
    const std::string payby = cmbpayby.text();
    clear_box();
    cmbvendor.set(vendor_no);
    cmbvendor_name.set(vendor_name);
    cmbpayby.set(payby);
    txtdocno.set(frame::kNewDocno);
    cmbcompany.set("1");
    txtpaydate.set(date_text(desk().now()));
    txtpaydate_change();
    for (controls::TextField* amount : {&txtpayment, &txtpayment_base, &txttotal, &txttotal_base})
        amount->set("0.00");
    take_vendor_name_and_currency();
    cmbcurrency_itemselect();
    show_bank_for_payby();
    if (payby == "Check") {
        txtcheck.set_locked(false);
        txtcheckdate.set_locked(false);
        txtcheckdate.set(date_text(desk().now()));
    }
    if (!vendor_no.empty()) list_vendor_invoice(vendor_no);
}

void APform_payment::clear_box() {
    for (ComboBox* combo : {&cmbvendor, &cmbvendor_name, &cmbcurrency, &cmbperiod, &cmbfyear, &cmbexrate,
                            &cmbpayby, &cmbcash, &cmbbank})
        combo->clear_choice();
    cmbexrate.clear_items();
    for (controls::DateField* field : {&txtpaydate, &txtratedate, &txtcheckdate})
        field->set("");
    for (controls::TextField* field :
         {&txtdocno, &txtfkey, &txtglfkey, &txtdoctype, &txtid, &txtremit, &txtcheck, &txtremark, &txtsource,
          &txtsource_docno, &txtpayment, &txtpayment_base, &txttotal, &txttotal_base})
        field->set("");
    label_total_currency.set_caption("");
    chkprint.set(0);
    chkvoid.set(0);
    clear_lines();
}

}  // namespace brimley::payments
