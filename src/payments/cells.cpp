// The cells of the list: what is paid of an item, and what the cells of its row do to each other.
#include "kernel/money.h"
#include "payments/apform_payment.h"

namespace brimley::payments {

using controls::CellEdit;
using kernel::format_money;
using kernel::is_numeric;
using kernel::money_value;
using kernel::Round;

double APform_payment::cell_money(int row, const char* caption) const {
    return money_value(dbgrid1.array.get(row, dbgrid1.get_column(caption)));
}

void APform_payment::set_cell_money(int row, const char* caption, double amount) {
    dbgrid1.set_cell(row, caption, format_money(amount));
}

bool APform_payment::row_is_foreign(int row) const {
    return dbgrid1.cell(row, "currency") != context().BASE_CURRENCY;
}

void APform_payment::touch(int row) {
    if (row >= static_cast<int>(touched_rows.size())) touched_rows.resize(static_cast<std::size_t>(row) + 1);
    touched_rows[static_cast<std::size_t>(row)] = true;
}

APform_payment::RowAmounts APform_payment::amounts_of(int row) const {
    if (!touched(row)) return {};
    return {cell_money(row, "pay amount"), cell_money(row, "discount taken"), cell_money(row, "write-off")};
}

bool APform_payment::check_ifany_pay() const {
    for (int row = 0; row <= last_row; ++row) {
        if (amounts_of(row).any()) return true;
    }
    return false;
}

std::vector<APform_payment::PaidRow> APform_payment::paid_rows() const {
    std::vector<PaidRow> paid;
    for (int row = 0; row <= last_row; ++row) {
        const RowAmounts amounts = amounts_of(row);
        if (amounts.any()) paid.push_back({row, amounts});
    }
    return paid;
}

void APform_payment::dbgrid1_BeforeColUpdate(CellEdit& edit) {
    const bool pays = edit.caption == "pay amount";
    const bool takes = edit.caption == "discount taken";
    const bool writes_off = edit.caption == "write-off";
    if (!pays && !takes && !writes_off) return;
    const auto refuse = [&](const char* text) {
        tell(text);
        edit.cancel = true;
    };
    const int row = edit.row;
    touch(row);
    if (!edit.new_text.empty() && !is_numeric(edit.new_text)) {
        // A word in place of an amount means the whole item.
        if (!pays) return refuse(takes ? "discount taken is invalid" : "write-off is invalid");
        edit.new_text = dbgrid1.cell(row, "gross amount");
    }
    if (!edit.new_text.empty()) {
        edit.new_text = format_money(money_value(edit.new_text));  // what is paid is paid to the cent
    } else if (!pays) {
        edit.new_text.assign(1, '0');
    }
    const double gross = cell_money(row, "gross amount");
    RowAmounts amounts = amounts_of(row);
    (pays ? amounts.pay : takes ? amounts.discount : amounts.writeoff) = money_value(edit.new_text);
    if (pays && gross * amounts.pay < 0) {
        empty_pay_amount(row);
        return refuse("pay amount is invalid.");
    }
    const double available = cell_money(row, "discount available");
    if (pays && available > 0 && gross > 0) {
        // The discount follows the part that is paid.
        amounts.discount = Round(amounts.pay * cell_money(row, "discount percent") / 100);
        if (amounts.discount > available) amounts.discount = available;
        set_cell_money(row, "discount taken", amounts.discount);
    }
    const double payable = cell_money(row, "open amount") - amounts.discount - amounts.writeoff;
    double net = Round(payable - amounts.pay);
    if ((net < 0 && gross >= 0) || (net > 0 && gross < 0)) {
        net = 0;
        const std::string pay = format_money(payable);
        if (pays) {
            edit.new_text = pay;
        } else {
            dbgrid1.set_cell(row, "pay amount", pay);
        }
    }
    set_cell_money(row, "net balance", net);
}

// Nothing is paid of the item then, and what depends on it says so, or the item would be closed for less.
void APform_payment::empty_pay_amount(int row) {
    dbgrid1.set_cell(row, "pay amount", "");
    const RowAmounts amounts = amounts_of(row);
    set_cell_money(row, "net balance", cell_money(row, "open amount") - amounts.discount - amounts.writeoff);
    update_base_amount(row, Ties::to_even);
    update_total_payment();
}

void APform_payment::dbgrid1_AfterColUpdate(int column) {
    const std::string& caption = dbgrid1.columns.at(static_cast<std::size_t>(column)).caption;
    const bool moves_base = caption == "pay amount" || caption == "payment exch rate";
    touch(dbgrid1.row());
    if (moves_base) update_base_amount(dbgrid1.row(), Ties::to_even);
    if (moves_base || caption == "discount taken" || caption == "write-off") update_total_payment();
}

// A foreign row without a rate keeps the value that it had. A tie goes to the even cent where the amount is
// typed, and up where the item is paid in full.
void APform_payment::update_base_amount(int row, Ties ties) {
    if (!row_is_foreign(row)) {
        dbgrid1.set_cell(row, "base-currency amount", dbgrid1.cell(row, "pay amount"));
    } else if (!dbgrid1.cell(row, "payment exch rate").empty()) {
        const double base = cell_money(row, "pay amount") * cell_money(row, "payment exch rate");
        set_cell_money(row, "base-currency amount", ties == Ties::to_even ? Round(base) : base);
    }
}

// Stepping into an empty cell pays the item in full, with the discount taken.
void APform_payment::enter_pay_amount(int row) {
    if (!dbgrid1.cell(row, "pay amount").empty() || dbgrid1.cell(row, "open amount").empty()) return;
    touch(row);
    if (!(cell_money(row, "discount taken") > 0))
        dbgrid1.set_cell(row, "discount taken", dbgrid1.cell(row, "discount available"));
    const RowAmounts amounts = amounts_of(row);
    set_cell_money(row, "pay amount", cell_money(row, "open amount") - amounts.discount - amounts.writeoff);
    set_cell_money(row, "net balance", 0);
    take_payment_rate(row);
    update_base_amount(row, Ties::as_shown);
    update_total_payment();
}

void APform_payment::take_payment_rate(int row) {
    const bool takes = row_is_foreign(row) && dbgrid1.cell(row, "payment exch rate").empty() &&
                       dbgrid1.cell(row, "currency") == cmbcurrency.text();
    if (takes) dbgrid1.set_cell(row, "payment exch rate", cmbexrate.text());
}

void APform_payment::update_total_payment() {
    double total = 0;
    double total_base = 0;
    std::string currency;
    bool mixed = false;
    for (int row = 0; row <= last_row; ++row) {
        if (!touched(row)) continue;
        total += cell_money(row, "pay amount");
        const double base = cell_money(row, "base-currency amount");
        total_base += base;
        const std::string own = dbgrid1.cell(row, "currency");
        if (base == 0 || own == currency) continue;
        if (!currency.empty()) mixed = true;
        currency = own;
    }
    txttotal.set(mixed ? "" : format_money(total));
    const bool in_base = !mixed && currency == context().BASE_CURRENCY;
    txttotal_base.set(in_base ? txttotal.text() : format_money(total_base));
    label_total_currency.set_caption(mixed ? "" : currency);
    dbgrid1.rebind();
}

std::optional<controls::Colour> APform_payment::dbgrid1_FetchRowStyle(int row) const {
    const std::string doctype = dbgrid1.cell(row, "document type");
    if (doctype == "pp" || doctype == "vcn") return Deposit_style;
    return std::nullopt;
}

}  // namespace brimley::payments
