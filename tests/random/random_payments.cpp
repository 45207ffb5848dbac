// The acts of a random session on the payment form.
#include <fmt/format.h>

#include "frame/document_form.h"
#include "kernel/money.h"
#include "random_session.h"

namespace brimley::testing {

namespace {

using frame::command::kEditMode;
using frame::command::kNew;
using kernel::format_money;
using kernel::money_value;
using store::RecordsetKind;

constexpr const char* kOpenItems =
    "SELECT vendor_no,docno,pay_item,Currency FROM AP_transaction_table WHERE paid = FALSE AND void = FALSE "
    "AND hold = FALSE AND vendor_no <> '' ORDER BY fkey,pay_item";

}  // namespace

controls::Grid& RandomSession::lines_on_screen() {
    return dynamic_cast<frame::GridForm&>(*console_->desk().current_form()).dbgrid1;
}

double RandomSession::money_in(int row, const char* caption) {
    return money_value(lines_on_screen().cell(row, caption));
}

void RandomSession::choose_way_of_paying() {
    static const std::vector<std::string> kWays{"Cash", "Cash", "Check", "VISA", "DINERS"};
    const std::string& way = chance_.one_of(kWays);
    set("cmbpayby", way);
    if (way == "Check" || chance_.percent(20)) set("cmbbank", "MAIN");
    if (way == "Check") set("txtcheck", std::to_string(chance_.below(9000)));
    if (way == "Check" && chance_.percent(90)) set("txtcheckdate", date());
    if (way == "Cash" && chance_.percent(90)) set("cmbcash", "1000");
}

void RandomSession::pay_row(int row) {
    if (chance_.percent(40)) {
        run(fmt::format("visit dbgrid1 {} \"pay amount\"", row));
    } else {
        cell(row, "pay amount", chance_.percent(5) ? "all" : amount());
    }
    if (chance_.percent(15)) cell(row, "discount taken", fmt::format("{}.05", chance_.below(4)));
    if (chance_.percent(15)) cell(row, "write-off", fmt::format("{}.15", chance_.below(4)));
    if (chance_.percent(10)) cell(row, "payment exch rate", fmt::format("1.{:03}", chance_.below(1000)));
}

// Whatever the vendor has, at whatever rate.
void RandomSession::pay_blindly() {
    static const std::vector<std::string> kCurrencies{"USD", "USD", "USD", "EUR", "THB"};
    set("cmbcurrency", chance_.one_of(kCurrencies));
    if (chance_.percent(60)) set("cmbexrate", fmt::format("{}.{:03}", chance_.below(3), chance_.below(1000)));
    set("cmbvendor", chance_.one_of(used_vendors_));
    choose_way_of_paying();
    const int rows = chance_.between(1, 4);
    for (int i = 0; i < rows; ++i)
        pay_row(chance_.below(5));
    if (chance_.percent(5)) press(111);
}

// One item that is open, as somebody would pay it who knows what it is.
void RandomSession::pay_open_item() {
    auto items = reader_.database->OpenRecordset(kOpenItems, RecordsetKind::snapshot);
    for (int skip = chance_.below(static_cast<int>(items.RecordCount())); skip > 0; --skip)
        items.MoveNext();
    const std::string currency = items.text("Currency");
    set("cmbcurrency", currency);
    set("cmbvendor", items.text("vendor_no"));
    choose_way_of_paying();
    controls::Grid& grid = lines_on_screen();
    for (int row = 0; row < grid.array.rows(); ++row) {
        const bool is_item = grid.cell(row, "AP document no") == items.text("docno") &&
                             grid.cell(row, "pay item") == items.text("pay_item");
        // Credits of the vendor are taken along at times.
        const bool is_credit = money_in(row, "gross amount") < 0 && chance_.percent(50);
        if (is_item) settle_row(row);
        if (!is_item && is_credit) run(fmt::format("visit dbgrid1 {} \"pay amount\"", row));
    }
    if (currency != "USD") set("cmbexrate", "1.250");
}

// In full, in part, with a discount or with a write-off of the rest, at the rate of the invoice or a higher
// one.
void RandomSession::settle_row(int row) {
    const double open = money_in(row, "open amount");
    const std::string rate = lines_on_screen().cell(row, "invoice exch rate");
    const std::string part = format_money(open * chance_.between(10, 90) / 100);
    switch (chance_.below(5)) {
        case 0:
            run(fmt::format("visit dbgrid1 {} \"pay amount\"", row));
            break;
        case 1:
        case 2:
            cell(row, "pay amount", part);
            break;
        case 3:
            cell(row, "pay amount", part);
            cell(row, "discount taken", format_money(open * chance_.between(1, 5) / 100));
            break;
        default:
            cell(row, "pay amount", part);
            cell(row, "write-off", format_money(money_in(row, "net balance")));
    }
    if (!rate.empty())
        cell(row, "payment exch rate",
             chance_.percent(60) ? rate : fmt::format("{:.3f}", money_value(rate) + 0.05));
}

void RandomSession::pay_items() {
    if (used_vendors_.empty()) return;
    run("form APform_payment");
    press(kNew);
    if (pressed(kNew)) {
        set("txtpaydate", date());
        const bool any_open = !reader_.database->OpenRecordset(kOpenItems, RecordsetKind::snapshot).at_eof();
        if (any_open && chance_.percent(60)) {
            pay_open_item();
        } else {
            pay_blindly();
        }
        const std::string total = shown("txttotal");
        set("txtpayment", total.empty() || chance_.percent(10) ? amount() : total);
        save_payment();
        leave_without_saving(kNew);
    }
    back_to_invoices();
}

void RandomSession::save_payment() {
    press(101);
    if (pressed(kNew)) return;
    count_ways_of_paying(shown("txtfkey"));
}

void RandomSession::count_ways_of_paying(const std::string& fkey) {
    const auto rows = [&](const char* table, const char* condition) {
        return reader_.database
            ->OpenRecordset(fmt::format("SELECT fkey FROM {} WHERE fkey = '{}'{}", table, fkey, condition),
                            RecordsetKind::snapshot)
            .RecordCount();
    };
    const auto count = [&](const char* way, const char* condition) {
        if (rows("Payment_transaction_table", condition) > 0) ++tally_.ways_of_paying[way];
    };
    count("in full", " AND balance = 0 AND pay_amount <> 0");
    count("in part", " AND balance <> 0 AND pay_amount <> 0");
    count("with a discount", " AND discount_taken > 0");
    count("with a write-off", " AND writeoff > 0");
    count("in a foreign currency", " AND Currency <> 'USD'");
    if (rows("Payment_transaction_table", " AND gross_amount > 0 AND pay_amount <> 0") > 0)
        count("with a credit", " AND gross_amount < 0");
    if (rows("Payment_header_table", " AND payby <> 'Cash' AND payby <> 'Check'") > 0)
        ++tally_.ways_of_paying["by card"];
    if (rows("Payment_transaction_table", "") == 0) ++tally_.ways_of_paying["without lines"];
}

bool RandomSession::go_to_some_payment(const char* form, const std::vector<std::string>& docnos) {
    if (docnos.empty()) return false;
    run(std::string("form ") + form);
    run("enter txtdocno " + chance_.one_of(docnos));
    return true;
}

void RandomSession::void_payment() { void_some_payment("APform_payment", payment_docnos_); }

void RandomSession::void_some_payment(const char* form, const std::vector<std::string>& docnos) {
    if (!go_to_some_payment(form, docnos)) return;
    const auto void_now = [&] {
        return !reader_.database
                    ->OpenRecordset("SELECT fkey FROM Payment_header_table WHERE void = TRUE AND fkey = '" +
                                        shown("txtfkey") + "'",
                                    RecordsetKind::snapshot)
                    .at_eof();
    };
    const bool was_void = void_now();
    press(133);
    if (!was_void && void_now()) {
        const auto gl_document = reader_.database->OpenRecordset(
            "SELECT remark FROM GL_header_table WHERE fkey = '" + shown("txtglfkey") + "'",
            RecordsetKind::snapshot);
        if (gl_document.text("remark").starts_with("Reversed by")) ++tally_.voids_in_a_later_period;
    }
    back_to_invoices();
}

// Any row of the list; a check that cannot be picked leaves nothing to void.
void RandomSession::void_check() {
    run("form APform_void_check");
    press(104);
    const int rows = lines_on_screen().array.used_rows();
    if (rows > 0) run(fmt::format("dblclick dbgrid1 {}", chance_.below(rows)));
    press(101);
    press(115);
    back_to_invoices();
}

void RandomSession::edit_payment() { edit_some_payment("APform_payment", payment_docnos_); }

void RandomSession::edit_some_payment(const char* form, const std::vector<std::string>& docnos) {
    if (!go_to_some_payment(form, docnos)) return;
    press(kEditMode);
    if (pressed(kEditMode)) {
        set("txtremark", "Sent " + std::to_string(chance_.below(100)));
        const std::string remark = shown("txtremark");
        const std::string fkey = shown("txtfkey");
        if (chance_.percent(80)) press(101);
        if (!pressed(kEditMode)) {
            ++tally_.payments_edited;
            remarks_[fkey] = remark;
        }
        leave_without_saving(kEditMode);
    }
    back_to_invoices();
}

}  // namespace brimley::testing
