// The acts of a random session that make documents by the dozen: due templates are generated, and what is
// open in foreign currency is revalued.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "controls/grid.h"
#include "frame/form.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "random_session.h"
#include "revaluation/apform_revalue.h"

namespace brimley::testing {

namespace {

using frame::command::kNew;
using store::RecordsetKind;

constexpr int kListDue = 1001;
constexpr int kGenerate = 1002;
constexpr int kFind = 104;
constexpr int kSave = 101;

}  // namespace

// --- templates that are due ---

// One that cannot be generated takes all others of its run with it, and is due again and again: mostly few
// are marked, and after a refusal half of them.
void RandomSession::generate_due() {
    run("call showform_APreport_recur_inquiry");
    if (chance_.percent(10)) press(kFind);
    press(kListDue);
    expect_due(lines_on_screen().array.used_rows());
    std::vector<int> marked(static_cast<std::size_t>(lines_on_screen().array.used_rows()));
    std::iota(marked.begin(), marked.end(), 0);
    for (const auto few = static_cast<std::size_t>(chance_.percent(20) ? 100 : 3); marked.size() > few;)
        leave_half_out(marked);
    for (int tries = chance_.between(1, 3); tries > 0 && !generate(static_cast<int>(marked.size())); --tries)
        leave_half_out(marked);
    press(100);
    back_to_invoices();
}

// Monthly ones that were not issued this month, and quarterly ones that were not in the three months of their
// quarter, which begins with March.
void RandomSession::expect_due(int listed) {
    struct Issued {
        std::string recurno;
        int month = 0;
    };
    std::vector<Issued> issued;
    auto invoices = reader_.database->OpenRecordset(
        fmt::format("SELECT recurno, Month FROM AP_header_table WHERE [Year] = '{}'", today_.year()),
        RecordsetKind::snapshot);
    for (; !invoices.at_eof(); invoices.MoveNext())
        issued.push_back({invoices.column(0).text(), std::stoi(invoices.column(1).text())});
    int due = 0;
    const std::string today = today_.yyyymmdd();
    auto templates = reader_.database->OpenRecordset(
        "SELECT recurno, Frequency, begin_date, end_date FROM AP_recur_header_table",
        RecordsetKind::snapshot);
    for (; !templates.at_eof(); templates.MoveNext()) {
        if (templates.text("begin_date") > today || templates.text("end_date") < today) continue;
        const bool monthly = templates.text("Frequency") == "monthly";
        const int first = monthly ? today_.month() : today_.month() / 3 * 3 + 1;
        const int last = monthly ? first : first + 2;
        const std::string recurno = templates.text("recurno");
        if (std::ranges::none_of(issued, [&](const Issued& invoice) {
                return invoice.recurno == recurno && invoice.month >= first && invoice.month <= last;
            }))
            ++due;
    }
    if (due != listed)
        list_findings_.push_back(fmt::format("{} templates are listed, {} are due", listed, due));
}

void RandomSession::leave_half_out(std::vector<int>& marked) {
    std::erase_if(marked, [&](int row) {
        const bool left_out = chance_.percent(50);
        if (left_out) run(fmt::format("cell dbgrid1 {} due False", row));
        return left_out;
    });
}

// Whether the form has said that it is done.
bool RandomSession::generate(int marked) {
    const auto& messages = console_->desk().happenings().messages;
    const auto before = static_cast<std::ptrdiff_t>(messages.size());
    press(kGenerate);
    if (std::find(messages.begin() + before, messages.end(), "Generate invoices complete") ==
        messages.end()) {
        ++tally_.generations_refused;
        return false;
    }
    if (marked > 0) ++tally_.generations;
    tally_.generated += marked;
    for (const std::string& docno : column("SELECT docno FROM AP_header_table WHERE Source = 'AP'")) {
        if (std::ranges::find(docnos_, docno) == docnos_.end()) docnos_.push_back(docno);
    }
    for (const std::string& vendor : column("SELECT vendor_no FROM AP_header_table WHERE Source = 'AP'")) {
        if (std::ranges::find(used_vendors_, vendor) == used_vendors_.end()) used_vendors_.push_back(vendor);
    }
    return true;
}

// --- revaluations ---

void RandomSession::revalue() {
    run("form APform_revalue");
    // Every row that was ever used in a form counts in all its later runs.
    if (chance_.percent(60)) {
        press(100);
        run("call showform_APform_revalue");
    }
    press(kNew);
    if (pressed(kNew)) {
        enter_revaluation();
        if (chance_.percent(90)) press(kSave);
        leave_without_saving(kNew);
    }
    if (chance_.percent(30)) browse_revaluations();
    back_to_invoices();
}

void RandomSession::enter_revaluation() {
    set("txtdesc", "Rates of the month");
    // Invoices are of any day of the year.
    if (chance_.percent(70)) set("txtlastdate", chance_.percent(60) ? "31/12/2027" : day_of_an_item());
    if (chance_.percent(15)) set("cmbperiod", std::to_string(chance_.between(1, 12)));
    const int rows = chance_.percent(75) ? 1 : 2;
    for (int row = 0; row < rows; ++row)
        select_items(row);
    find_items(rows);
    // What is changed after the run is stored beside what the run came to.
    if (chance_.percent(10)) select_items(chance_.below(rows));
    if (chance_.percent(10)) press(kFind);
}

std::string RandomSession::day_of_an_item() {
    const auto days = column("SELECT invoice_date FROM AP_transaction_table WHERE exchange_rate <> 0");
    if (days.empty() || chance_.percent(20)) return date();
    return kernel::user_date_text(store::DateTime::from_iso(chance_.one_of(days)).value(), "dd/mm/yyyy");
}

// Of one row, when nothing was wrong with it, the items are those that are open.
void RandomSession::find_items(int rows) {
    const auto& messages = console_->desk().happenings().messages;
    const std::size_t before = messages.size();
    press(kFind);
    const auto& form = dynamic_cast<revaluation::APform_revalue&>(*console_->desk().current_form());
    const bool whole = rows == 1 && messages.size() == before && form.run.highest_selection_row == 0;
    const auto last_date = kernel::try_user_date(form.txtlastdate.text(), "dd/mm/yyyy");
    if (whole && last_date) expect_valued(form.run.selection_row(0), *last_date);
}

void RandomSession::expect_valued(const revaluation::SelectionRow& selected, store::DateTime last_date) {
    int items = 0;
    double gain = 0;
    for (int row = 0; row < lines_on_screen().array.used_rows(); ++row) {
        if (lines_on_screen().cell(row, "document no").empty()) continue;
        if (lines_on_screen().cell(row, "pay item").empty()) continue;
        ++items;
        gain += money_in(row, "unrealized Gain/Loss");
    }
    int open = 0;
    double expected = 0;
    const double rate = kernel::money_value(selected.rate);
    auto stored = reader_.database->OpenRecordset(
        "SELECT vendor_no, currency, invoice_date, open_amount, exchange_rate FROM AP_transaction_table "
        "WHERE paid = FALSE",
        RecordsetKind::snapshot);
    for (; !stored.at_eof(); stored.MoveNext()) {
        const auto date = stored.field("invoice_date").date();
        if (!date || *date > last_date || stored.text("currency") != selected.currency) continue;
        if (selected.names_vendor() && stored.text("vendor_no") != selected.vendor_no) continue;
        ++open;
        const double amount = stored.number("open_amount");
        const store::Value was = stored.field("exchange_rate");
        expected += kernel::Round(amount * (was.is_null() ? 1 : was.number())) - kernel::Round(amount * rate);
    }
    if (open != items) list_findings_.push_back(fmt::format("{} items are valued, {} are open", items, open));
    if (std::abs(expected - gain) > 0.005)
        list_findings_.push_back(fmt::format("items gain {:.2f}, expected {:.2f}", gain, expected));
}

void RandomSession::select_items(int row) {
    static const std::vector<std::string> kCurrencies{"EUR", "EUR", "THB", "THB", "USD"};
    const auto choose = [&](const char* caption, const std::string& value) {
        run(fmt::format("cell dbgridcmd {} \"{}\" \"{}\"", row, caption, value));
    };
    choose("currency", chance_.one_of(kCurrencies));
    choose("rate",
           chance_.percent(95) ? fmt::format("{}.{:04}", chance_.below(2), chance_.below(10000)) : "x");
    const int whose = chance_.below(10);
    choose("every vendor", whose < 6 ? "True" : "False");
    // Of several the first counts: every vendor, a group, one vendor.
    if (whose == 5 || whose == 6 || whose == 7) choose("vendor group", "COFFEE");
    if (whose > 6 && whose < 9) choose("vendor no", chance_.one_of(vendors_));
}

void RandomSession::browse_revaluations() {
    static const std::vector<int> kWays{107, 107, 108, 109, 136, 115};
    const int steps = chance_.between(1, 4);
    for (int i = 0; i < steps; ++i)
        press(chance_.one_of(kWays));
}

// True for a message about a revaluation, which has been counted then.
bool RandomSession::count_revaluation_message(const std::string& message) {
    if (message == "Add new revaluation complete") {
        ++tally_.revaluations;
    } else if (message == "Add new revaluation failed") {
        ++tally_.revaluations_refused;
    } else {
        return false;
    }
    return true;
}

}  // namespace brimley::testing
