// Looking at the lists: they change nothing, and what they show is what is stored.
#include <fmt/format.h>

#include <set>

#include "controls/grid.h"
#include "kernel/money.h"
#include "random_session.h"

namespace brimley::testing {

namespace {

constexpr const char* kTotal = "total       ";

// How many of the columns of ages show an amount.
int ages_shown(const controls::Grid& list, int row) {
    int shown = 0;
    for (const char* const age : {"current", "1 - 30", "31 - 60", "61 - 90", "> 90"})
        if (!list.cell(row, age).empty()) ++shown;
    return shown;
}

}  // namespace

void RandomSession::look_at_aging() {
    run("call showform_APform_aging");
    // A day that does not exist lists nothing.
    if (chance_.percent(50))
        set("txtdate", fmt::format("{:02}/{:02}/2026", chance_.between(1, 28), chance_.between(1, 12)));
    const bool overdue = chance_.percent(30);
    if (overdue) run("check chkoverdue");
    const std::string as_of = shown("txtdate");
    press(104);
    const controls::Grid& list = lines_on_screen();
    double total = 0;
    int items = 0;
    for (int row = 0; row < list.array.used_rows(); ++row) {
        const bool is_total = list.cell(row, "gross amount") == kTotal;
        if (is_total) total += kernel::money_value(list.cell(row, "open amount"));
        if (!is_total) ++items;
        if (ages_shown(list, row) != (is_total ? 0 : 1))
            list_findings_.push_back(fmt::format("aging: row {} has {} ages", row, ages_shown(list, row)));
    }
    expect_listed("aging", items, total, stored_items(overdue ? as_of : std::string{}));
    press(100);
    back_to_invoices();
}

// Of the open items that are past due on that day, or of all of them.
RandomSession::StoredItems RandomSession::stored_items(const std::string& due_before) {
    std::string query =
        "SELECT open_amount, due_date FROM AP_transaction_table WHERE paid = FALSE AND void = FALSE";
    if (!due_before.empty()) {
        const auto day = store::DateTime::from_iso(
            fmt::format("{}-{}-{}", due_before.substr(6), due_before.substr(3, 2), due_before.substr(0, 2)));
        query += " AND due_date < " + store::date_value(day.value());
    }
    StoredItems stored;
    auto items = reader_.database->OpenRecordset(query, store::RecordsetKind::snapshot);
    for (; !items.at_eof(); items.MoveNext(), ++stored.count)
        stored.amount += items.column(0).number();
    return stored;
}

void RandomSession::look_at_invoices() {
    static const std::vector<std::string> kStates{"opt_all", "opt_paid", "opt_open", "opt_hold"};
    run("call showform_APform_inquiry");
    run("range cal1 01/01/2000 31/12/2030");
    const std::string& state = chance_.one_of(kStates);
    run("check " + state);
    press(104);
    expect_listed("invoices", lines_on_screen().array.used_rows(), sum_of("open amount"),
                  items_in_state(state));
    press(100);
    back_to_invoices();
}

double RandomSession::sum_of(const char* caption) {
    double sum = 0;
    for (int row = 0; row < lines_on_screen().array.used_rows(); ++row)
        sum += money_in(row, caption);
    return sum;
}

// All but void items; or the items of the documents that are in the state. Without a date nothing is found.
RandomSession::StoredItems RandomSession::items_in_state(const std::string& state) {
    std::set<std::string> documents;
    auto headers = reader_.database->OpenRecordset("SELECT fkey, paid, void, hold FROM AP_header_table",
                                                   store::RecordsetKind::snapshot);
    for (; !headers.at_eof(); headers.MoveNext()) {
        const bool in_state = state == "opt_paid"   ? headers.flag("paid")
                              : state == "opt_open" ? !headers.flag("paid") && !headers.flag("void")
                                                    : headers.flag("hold");
        if (in_state) documents.insert(headers.text("fkey"));
    }
    StoredItems stored;
    auto items = reader_.database->OpenRecordset(
        "SELECT fkey, void, open_amount, invoice_date FROM AP_transaction_table",
        store::RecordsetKind::snapshot);
    for (; !items.at_eof(); items.MoveNext()) {
        const bool listed = state == "opt_all" ? !items.flag("void") : documents.contains(items.text("fkey"));
        if (!listed || items.field("invoice_date").is_null()) continue;
        ++stored.count;
        stored.amount += items.number("open_amount");
    }
    return stored;
}

void RandomSession::look_at_payments() {
    run("call showform_APform_payhistory");
    run("range cal1 01/01/2000 31/12/2030");
    press(104);
    StoredItems stored;
    auto items = reader_.database->OpenRecordset("SELECT pay_amount FROM Payment_transaction_table",
                                                 store::RecordsetKind::snapshot);
    for (; !items.at_eof(); items.MoveNext(), ++stored.count)
        stored.amount += items.column(0).number();
    expect_listed("payments", lines_on_screen().array.used_rows(), sum_of("pay amount"), stored);
    press(100);
    back_to_invoices();
}

void RandomSession::expect_listed(const char* list, int items, double total, const StoredItems& stored) {
    if (items != stored.count)
        list_findings_.push_back(fmt::format("{}: {} items, {} stored", list, items, stored.count));
    // The totals of the vendors are shown to the cent each.
    if (std::abs(total - stored.amount) > 0.005 * (items + 1))
        list_findings_.push_back(fmt::format("{}: {:.2f} in all, {:.2f} stored", list, total, stored.amount));
}

}  // namespace brimley::testing
