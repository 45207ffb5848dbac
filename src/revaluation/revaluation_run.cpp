#include "revaluation/revaluation_run.h"

#include <array>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "revaluation/apform_revalue.h"

namespace brimley::revaluation {

using frame::LineColumn;
using frame::Shown;
using kernel::money_value;
using kernel::Round;
using store::quoted;
using store::Recordset;

namespace {

constexpr std::array kOpenItem{
    LineColumn{"document no", "docno", Shown::text},
    LineColumn{"date", "invoice_date", Shown::date},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"currency", "currency", Shown::text},
    LineColumn{"original rate", "exchange_rate", Shown::text},
};

constexpr std::array kStoredItem{
    LineColumn{"document no", "document_no", Shown::text},
    LineColumn{"date", "document_date", Shown::date},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"currency", "Currency", Shown::text},
    LineColumn{"original rate", "original_rate", Shown::text},
};

// An item without a rate counts as one of the base currency.
double rate_of(const store::Value& exchange_rate) {
    return exchange_rate.is_null() ? 1 : exchange_rate.number();
}

ItemAmounts valued(double open_amount, double original_rate, double rate) {
    ItemAmounts amounts;
    amounts.invoice = open_amount;
    amounts.original_base = Round(open_amount * original_rate);
    amounts.new_base = Round(open_amount * rate);
    amounts.gain = amounts.original_base - amounts.new_base;
    return amounts;
}

ItemAmounts stored_amounts(const Recordset& item) {
    return {item.number("invoice_amount"), item.number("original_base_amount"),
            item.number("unrealized_gain_loss"), item.number("new_base_amount")};
}

}  // namespace

RevaluationRun::RevaluationRun(APform_revalue& form) : FormPart(form), form_(form) {}

void RevaluationRun::read_default_accounts() {
    const auto read = [this](std::string& accno, const char* module, const char* name) {
        step("default account", [&] { accno = kernel().parameter_account(module, name); });
    };
    read(default_accounts_.payable, "AP", "AP account payable account");
    read(default_accounts_.gain, "GL", "GL unrealized gain account");
    read(default_accounts_.loss, "GL", "GL unrealized loss account");
}

SelectionRow RevaluationRun::selection_row(int row) const {
    const auto cell = [&](const char* caption) { return form_.dbgridcmd.cell(row, caption); };
    return {cell("currency"), cell("rate"), controls::same_ignoring_case(cell("every vendor"), "True"),
            cell("vendor group"), cell("vendor no")};
}

// A rate that is not a number counts as 0, at which the items are worth nothing.
void RevaluationRun::SEL_Result() {
    if (form_.txtlastdate.empty()) return tell("please specify Last transaction date");
    const auto last_date = kernel::try_user_date(form_.txtlastdate.text(), context().BRIMLEY_DATE_FORMAT);
    const std::string cut_off = last_date ? store::date_value(*last_date) : std::string{};
    int row = 0;
    for (AccountPairs* const pairs : {&payables_, &gains_, &losses_})
        pairs->clear();
    for (int i = 0; i <= highest_selection_row; ++i)
        if (!value_row(selection_row(i), cut_off, row)) return form_.dbgrid1.rebind();
    last_result_row.assign(row);
    show_summary_block(row, selection_row(highest_selection_row).currency);
    form_.ledger_summary.show(payables_, gains_, losses_);
}

bool RevaluationRun::value_row(const SelectionRow& selected, const std::string& cut_off, int& result_row) {
    if (selected.currency.empty()) return false;
    if (selected.names_vendor() && selected.vendor_no.empty()) return refuse("please specify vendor");
    assign2_dbgrid1_new(items_of(selected, cut_off), result_row, money_value(selected.rate));
    return true;
}

// Empty when the items cannot be read, as when the last date is not a date.
std::optional<Recordset> RevaluationRun::items_of(const SelectionRow& selected,
                                                  const std::string& cut_off) const {
    std::string query =
        "SELECT vendor_no, docno, pay_item, invoice_date, currency, open_amount, exchange_rate FROM "
        "AP_transaction_table WHERE paid = FALSE AND currency = " +
        quoted(selected.currency) + " AND invoice_date <= " + cut_off;
    if (selected.names_vendor()) query += " AND vendor_no = " + quoted(selected.vendor_no);
    std::optional<Recordset> items;
    if (!cut_off.empty())
        step("select items", [&] { items = kernel().read(query + " ORDER BY vendor_no, docno, pay_item"); });
    return items;
}

void RevaluationRun::clear_result() {
    form_.dbgrid1.array.dimension(frame::kRowsMin);
    totals_ = {};
}

// The rows of the selection rows before are gone with the first step; the rows count on below them.
void RevaluationRun::assign2_dbgrid1_new(std::optional<Recordset> rs, int& row, double rate) {
    clear_result();
    if (!rs || rs->at_eof()) {
        form_.dbgrid1.rebind();
        tell("No data");
        return;
    }
    step("assign2_dbgrid1_new", [&] { value_items(*rs, row, rate); });
}

void RevaluationRun::value_items(Recordset& items, int& row, double rate) {
    const int vendor_field = items.column_of("vendor_no");
    const int open_field = items.column_of("open_amount");
    const int rate_field = items.column_of("exchange_rate");
    const std::string currency = items.text("currency");
    form_.dbgrid1.array.dimension(frame::rows_for(row + static_cast<int>(items.RecordCount())));
    accounts_ = {};
    known_accounts_.clear();
    ResultRows result(form_, form_.dbgrid1, kOpenItem, items, row, currency, totals_);
    std::string vendor_no;
    for (; !items.at_eof(); items.MoveNext()) {
        items.read_text(vendor_field, vendor_no);
        const bool begun = vendor_no == result.vendor_no() || begin_vendor(result, vendor_no, currency);
        row = result.row();
        if (!begun) return;
        const ItemAmounts amounts =
            valued(items.column(open_field).number(), rate_of(items.column(rate_field)), rate);
        result.add(items, amounts);
        add_to_summaries(currency, amounts.gain);
    }
    result.end(store::shortest_number(rate));
    row = result.row();
}

// An unknown vendor has no name, and its accounts are not looked for.
bool RevaluationRun::begin_vendor(ResultRows& result, const std::string& vendor_no,
                                  const std::string& currency) {
    accounts_.payable = default_accounts_.payable;
    std::optional<Recordset> vendor;
    step("find a vendor", [&] { vendor = kernel().find("Vendor_table", {{"vendor_no", vendor_no}}); });
    const bool known = vendor && !vendor->at_eof();
    result.begin_vendor(vendor_no, known ? vendor->text("VENDOR_NAME") : std::string{});
    if (!known) return true;
    const std::string payable = vendor->text("ap_accno");
    if (!payable.empty()) accounts_.payable = payable;
    return find_accounts(currency);
}

bool RevaluationRun::find_accounts(const std::string& currency) {
    if (const auto known = known_accounts_.find(accounts_.payable); known != known_accounts_.end()) {
        accounts_ = known->second;
        return true;
    }
    accounts_.gain = default_accounts_.gain;
    accounts_.loss = default_accounts_.loss;
    const auto in_currency =
        kernel().find("Account_currency_table", {{"accno", accounts_.payable}, {"Currency", currency}});
    if (in_currency.at_eof()) return refuse(accounts_.payable + " is not a multicurrency account");
    const std::string gain = in_currency.text("unrealised_gain_accno");
    const std::string loss = in_currency.text("unrealised_loss_accno");
    if (!gain.empty()) accounts_.gain = gain;
    if (!loss.empty()) accounts_.loss = loss;
    known_accounts_.emplace(accounts_.payable, accounts_);
    return true;
}

void RevaluationRun::add_to_summaries(const std::string& currency, double gain) {
    store_account_currency_gainloss(accounts_.payable, currency, gain);
    if (gain > 0) store_account_currency_unrealgain(accounts_.gain, currency, gain);
    if (gain < 0) store_account_currency_unrealloss(accounts_.loss, currency, gain);
}

// Each selection row writes its currency and sums into the same row, so that those of the last one stand.
void RevaluationRun::show_summary_block(int row, const std::string& currency) {
    show_summary(form_.dbgrid1, row, currency, totals_);
    form_.dbgrid1.go_to(0, 0);
    form_.dbgrid1.rebind();
}

void RevaluationRun::show_stored(Recordset& items, const std::string& currency) {
    clear_result();
    ResultRows result(form_, form_.dbgrid1, kStoredItem, items, 0, currency, totals_);
    bool any = false;
    for (; !items.at_eof(); items.MoveNext(), any = true) {
        const std::string vendor_no = items.text("vendor_no");
        if (vendor_no != result.vendor_no()) {
            result.begin_vendor(
                vendor_no, kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME"));
        }
        result.add(items, stored_amounts(items));
    }
    if (any) result.end({});
    last_result_row.assign(result.row());
    show_summary_block(result.row(), currency);
}

}  // namespace brimley::revaluation
