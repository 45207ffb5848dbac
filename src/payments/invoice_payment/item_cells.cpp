// The cells of the list: what is paid of an item, and what the cells of its row do to each other.
#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using controls::CellEdit;
using kernel::format_money;
using kernel::is_numeric;
using kernel::money_value;
using kernel::Round;

double ItemList::cell_money(int row, const char* caption) const {
    return money_value(dbgrid1_.array.get(row, dbgrid1_.get_column(caption)));
}

void ItemList::set_cell_money(int row, const char* caption, double amount) {
    dbgrid1_.set_cell(row, caption, format_money(amount));
}

bool ItemList::row_is_foreign(int row) const {
    return dbgrid1_.cell(row, "currency") != context().BASE_CURRENCY;
}

void ItemList::touch(int row) {
    if (row >= static_cast<int>(touched_rows_.size()))
        touched_rows_.resize(static_cast<std::size_t>(row) + 1);
    touched_rows_[static_cast<std::size_t>(row)] = true;
}

ItemAmounts ItemList::amounts_of(int row) const {
    if (!touched(row)) return {};
    return {cell_money(row, "pay amount"), cell_money(row, "discount taken"), cell_money(row, "write-off")};
}

bool ItemList::check_ifany_pay() const {
    for (int row = 0; row <= last_row_; ++row) {
        if (amounts_of(row).any()) return true;
    }
    return false;
}

ListedItem ItemList::read_row(int row, const ItemAmounts& amounts) const {
    const auto text = [&](const char* caption) { return dbgrid1_.cell(row, caption); };
    const auto money = [&](const char* caption) { return cell_money(row, caption); };
    ListedItem item;
    item.docno = text("AP document no");
    item.pay_item = text("pay item");
    item.doctype = text("document type");
    item.invoice_no = text("invoice no");
    item.invoice_date = kernel::try_user_date(text("invoice date"), context().BRIMLEY_DATE_FORMAT);
    item.gross = money("gross amount");
    item.open = money("open amount");
    item.amounts = amounts;
    item.discount_available = money("discount available");
    item.net_balance = money("net balance");
    item.discount_accno = text("discount account");
    item.writeoff_accno = text("write-off account");
    item.prepay_accno = text("prepay account");
    item.currency = text("currency");
    item.in_base = !row_is_foreign(row);
    if (!item.in_base) item.invoice_rate = money("invoice exch rate");
    item.payment_rate_text = text("payment exch rate");
    item.pay_base = item.in_base ? amounts.pay : money("base-currency amount");
    return item;
}

std::vector<ListedItem> ItemList::paid() const {
    std::vector<ListedItem> items;
    for (int row = 0; row <= last_row_; ++row) {
        const ItemAmounts amounts = amounts_of(row);
        if (amounts.any()) items.push_back(read_row(row, amounts));
    }
    return items;
}

double ItemList::sum_paid() const {
    double sum = 0;
    for (int row = 0; row <= last_row_; ++row)
        sum += amounts_of(row).sum();
    return sum;
}

std::string ItemList::current(const char* caption) const { return dbgrid1_.cell(dbgrid1_.row(), caption); }

void ItemList::dbgrid1_BeforeColUpdate(CellEdit& edit) {
    const bool pays = edit.caption == "pay amount";
    const bool takes = edit.caption == "discount taken";
    const bool writes_off = edit.caption == "write-off";
    if (!pays && !takes && !writes_off) return;
    const auto refuse_edit = [&](const char* text) {
        tell(text);
        edit.cancel = true;
    };
    const int row = edit.row;
    touch(row);
    if (!edit.new_text.empty() && !is_numeric(edit.new_text)) {
        // A word in place of an amount means the whole item.
        if (!pays) return refuse_edit(takes ? "discount taken is invalid" : "write-off is invalid");
        edit.new_text = dbgrid1_.cell(row, "gross amount");
    }
    if (!edit.new_text.empty()) {
        edit.new_text = format_money(money_value(edit.new_text));  // what is paid is paid to the cent
    } else if (!pays) {
        edit.new_text.assign(1, '0');
    }
    const double gross = cell_money(row, "gross amount");
    ItemAmounts amounts = amounts_of(row);
    (pays ? amounts.pay : takes ? amounts.discount : amounts.writeoff) = money_value(edit.new_text);
    if (pays && gross * amounts.pay < 0) {
        empty_pay_amount(row);
        return refuse_edit("pay amount is invalid.");
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
            dbgrid1_.set_cell(row, "pay amount", pay);
        }
    }
    set_cell_money(row, "net balance", net);
}

// Nothing of the item is paid then, and the cells of its row that depend on it show that, or the item would
// be closed for less. The totals follow with the next accepted amount.
void ItemList::empty_pay_amount(int row) {
    dbgrid1_.set_cell(row, "pay amount", "");
    const ItemAmounts amounts = amounts_of(row);
    set_cell_money(row, "net balance", cell_money(row, "open amount") - amounts.discount - amounts.writeoff);
    update_base_amount(row, Ties::to_even);
}

void ItemList::dbgrid1_AfterColUpdate(int column) {
    const std::string& caption = dbgrid1_.columns.at(static_cast<std::size_t>(column)).caption;
    const bool moves_base = caption == "pay amount" || caption == "payment exch rate";
    touch(dbgrid1_.row());
    if (moves_base) update_base_amount(dbgrid1_.row(), Ties::to_even);
    if (moves_base || caption == "discount taken" || caption == "write-off") update_total_payment();
}

void ItemList::dbgrid1_RowColChange(int old_column) {
    form_.font_bar.follow_column(old_column);
    const bool pay = dbgrid1_.column() == dbgrid1_.get_column("pay amount") && dbgrid1_.column() >= 0;
    if (dbgrid1_.allow_update && pay) enter_pay_amount(dbgrid1_.row());
}

// A foreign row without a rate keeps the value that it had. A tie goes to the even cent where the amount is
// typed, and up where the item is paid in full.
void ItemList::update_base_amount(int row, Ties ties) {
    if (!row_is_foreign(row)) {
        dbgrid1_.set_cell(row, "base-currency amount", dbgrid1_.cell(row, "pay amount"));
    } else if (!dbgrid1_.cell(row, "payment exch rate").empty()) {
        const double base = cell_money(row, "pay amount") * cell_money(row, "payment exch rate");
        set_cell_money(row, "base-currency amount", ties == Ties::to_even ? Round(base) : base);
    }
}

// Stepping into an empty cell pays the item in full, with the discount taken.
void ItemList::enter_pay_amount(int row) {
    if (!dbgrid1_.cell(row, "pay amount").empty() || dbgrid1_.cell(row, "open amount").empty()) return;
    touch(row);
    if (!(cell_money(row, "discount taken") > 0))
        dbgrid1_.set_cell(row, "discount taken", dbgrid1_.cell(row, "discount available"));
    const ItemAmounts amounts = amounts_of(row);
    set_cell_money(row, "pay amount", cell_money(row, "open amount") - amounts.discount - amounts.writeoff);
    set_cell_money(row, "net balance", 0);
    take_payment_rate(row);
    update_base_amount(row, Ties::as_shown);
    update_total_payment();
}

void ItemList::take_payment_rate(int row) {
    const bool takes = row_is_foreign(row) && dbgrid1_.cell(row, "payment exch rate").empty() &&
                       dbgrid1_.cell(row, "currency") == form_.cmbcurrency.text();
    if (takes) dbgrid1_.set_cell(row, "payment exch rate", form_.cmbexrate.text());
}

void ItemList::update_total_payment() {
    double total = 0;
    double total_base = 0;
    std::string currency;
    bool mixed = false;
    for (int row = 0; row <= last_row_; ++row) {
        if (!touched(row)) continue;
        total += cell_money(row, "pay amount");
        const double base = cell_money(row, "base-currency amount");
        total_base += base;
        const std::string own = dbgrid1_.cell(row, "currency");
        if (base == 0 || own == currency) continue;
        if (!currency.empty()) mixed = true;
        currency = own;
    }
    form_.txttotal.set(mixed ? "" : format_money(total));
    const bool in_base = !mixed && currency == context().BASE_CURRENCY;
    form_.txttotal_base.set(in_base ? form_.txttotal.text() : format_money(total_base));
    form_.label_total_currency.set_caption(mixed ? "" : currency);
    dbgrid1_.rebind();
}

std::optional<controls::Colour> ItemList::dbgrid1_FetchRowStyle(int row) const {
    const std::string doctype = dbgrid1_.cell(row, "document type");
    if (doctype == "pp" || doctype == "vcn") return form_.Deposit_style;
    return std::nullopt;
}

}  // namespace brimley::payments
