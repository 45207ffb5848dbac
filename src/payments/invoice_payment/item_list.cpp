// The rows of the list: the vendor's open items, or the lines of a stored payment.
#include "payments/invoice_payment/item_list.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <unordered_map>

#include "kernel/money.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using kernel::format_money;
using kernel::Round;
using store::quoted;
using store::Recordset;

namespace {

// The columns of the query for open items, by place: the list may be long.
enum ItemField : int {
    kDocno,
    kInvoiceNo,
    kPayItem,
    kGross,
    kOpen,
    kInvoiceDate,
    kDueDate,
    kEarlyDiscount,
    kDiscountDate,
    kDiscountTaken,
    kDoctype,
    kCurrency,
    kRate,
    kFkey,
};
constexpr std::array kItemFields{
    "docno",        "invoice_no", "pay_item",       "gross_amount",  "open_amount",
    "invoice_date", "due_date",   "early_discount", "discount_date", "discount_taken",
    "doctype",      "Currency",   "exchange_rate",  "fkey"};

std::string open_items_query(const std::string& vendor_no) {
    return fmt::format(
        "SELECT {} FROM (SELECT * FROM AP_transaction_table WHERE [vendor_no] = {}) WHERE paid = FALSE AND "
        "void = FALSE AND hold = FALSE ORDER BY docno,pay_item",
        fmt::join(kItemFields, ","), quoted(vendor_no));
}

using frame::LineColumn;
using frame::Shown;

// What is stored of a line. Dues and percents are not.
constexpr std::array kLineColumns{
    LineColumn{"AP document no", "ap_docno", Shown::text},
    LineColumn{"invoice no", "invoice_no", Shown::text},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{"open amount", "open_amount", Shown::money},
    LineColumn{"pay amount", "pay_amount", Shown::money},
    LineColumn{"base-currency amount", "pay_base_amount", Shown::money},
    LineColumn{"invoice date", "invoice_date", Shown::date},
    LineColumn{"discount taken", "discount_taken", Shown::money},
    LineColumn{"write-off", "writeoff", Shown::money},
    LineColumn{"net balance", "balance", Shown::money},
    LineColumn{"discount account", "discount_accno", Shown::text},
    LineColumn{"write-off account", "writeoff_accno", Shown::text},
    LineColumn{"discount available", "discount_available", Shown::money},
    LineColumn{"document type", "ap_doctype", Shown::text},
    LineColumn{"prepay account", "prepay_accno", Shown::text},
    LineColumn{"currency", "Currency", Shown::text},
    LineColumn{"invoice exch rate", "invoice_exchange_rate", Shown::text},
    LineColumn{"payment exch rate", "payment_exchange_rate", Shown::text},
};

}  // namespace

// What is the same for all rows of a list: found once, not once per cell.
struct ItemList::Listing {
    struct Places {
        explicit Places(const controls::Grid& grid)
            : on_due(grid.get_column("on due")),
              docno(grid.get_column("AP document no")),
              invoice_no(grid.get_column("invoice no")),
              pay_item(grid.get_column("pay item")),
              gross(grid.get_column("gross amount")),
              open(grid.get_column("open amount")),
              invoice_date(grid.get_column("invoice date")),
              due_date(grid.get_column("due date")),
              taken(grid.get_column("discount taken")),
              writeoff(grid.get_column("write-off")),
              discount_accno(grid.get_column("discount account")),
              writeoff_accno(grid.get_column("write-off account")),
              available(grid.get_column("discount available")),
              percent(grid.get_column("discount percent")),
              doctype(grid.get_column("document type")),
              prepay_accno(grid.get_column("prepay account")),
              currency(grid.get_column("currency")),
              invoice_rate(grid.get_column("invoice exch rate")) {}

        int on_due, docno, invoice_no, pay_item, gross, open, invoice_date, due_date, taken, writeoff,
            discount_accno, writeoff_accno, available, percent, doctype, prepay_accno, currency, invoice_rate;
    };

    explicit Listing(ItemList& list)
        : places(list.dbgrid1_),
          today(list.desk().now().date_only()),
          paid_on(list.date_in(list.form_.txtpaydate)),
          list_(list) {}
    // Many items share their days.
    const std::string& date_text(const std::optional<store::DateTime>& date) {
        static const std::string kNone;
        if (!date) return kNone;
        const auto [text, is_new] = dates_.try_emplace(date->day);
        if (is_new) text->second = list_.date_text(*date);
        return text->second;
    }

    Places places;
    store::DateTime today;
    std::optional<store::DateTime> paid_on;

  private:
    ItemList& list_;
    std::unordered_map<std::int32_t, std::string> dates_;
};

ItemList::ItemList(APform_payment& form)
    : DocumentPart(form),
      form_(form),
      dbgrid1_(form.dbgrid1),
      stored_columns_(form, form.dbgrid1, kLineColumns) {
    dbgrid1_.on_before_update = [this](controls::CellEdit& edit) { dbgrid1_BeforeColUpdate(edit); };
    dbgrid1_.on_after_update = [this](int column) { dbgrid1_AfterColUpdate(column); };
    dbgrid1_.on_row_col_change = [this](int, int old_column) { dbgrid1_RowColChange(old_column); };
    dbgrid1_.on_fetch_row_style = [this](int row) { return dbgrid1_FetchRowStyle(row); };
}

void ItemList::connect_drop_downs() {
    const auto accounts_of = [this](const char* parameter) {
        return rows_of(
            fmt::format("SELECT Account_master_table.accno, accname FROM Account_Parameters_table INNER JOIN "
                        "Account_master_table ON Account_Parameters_table.accno = Account_master_table.accno "
                        "WHERE module = 'AP' AND parameter_name = '{}' AND [default] = TRUE",
                        parameter));
    };
    dd1 = {{"account", "account name"}, {}, accounts_of("AP discount account")};
    dd2 = {{"account", "account name"}, {}, accounts_of("AP write-off account")};
    for (controls::GridColumn& column : dbgrid1_.columns) {
        if (column.caption == "discount account") column.drop_down = &dd1;
        if (column.caption == "write-off account") column.drop_down = &dd2;
    }
}

void ItemList::clear() {
    last_row_ = -1;
    touched_rows_.clear();
    dbgrid1_.array.dimension(frame::kRowsMin);
    dbgrid1_.go_to(0, 0);
    dbgrid1_.rebind();
}

void ItemList::list_vendor_invoice(const std::string& vendor_no) {
    clear();
    vendor_no_ = vendor_no;
    step("list_vendor_invoice", [&] {
        auto items = kernel().read(open_items_query(vendor_no));
        dbgrid1_.array.dimension(frame::rows_for(static_cast<int>(items.RecordCount())));
        add_open_items(items);
    });
    dbgrid1_.rebind();
}

// The document that the user came from stands first, then everything else in its order.
void ItemList::add_open_items(Recordset& items) {
    Listing listing(*this);
    if (!form_.selected_docno.empty()) {
        const std::string criteria = "[docno] = " + quoted(form_.selected_docno);
        for (items.FindFirst(criteria); !items.NoMatch(); items.FindNext(criteria))
            add_open_item(items, listing, true);
    }
    for (items.MoveFirst(); !items.at_eof(); items.MoveNext()) {
        if (form_.selected_docno.empty() || items.column(kDocno).text() != form_.selected_docno)
            add_open_item(items, listing, false);
    }
}

// By today's date, whatever the payment's; of what is still open, not of the gross.
double ItemList::discount_offer(const Recordset& item, bool came_from, store::DateTime today) {
    if (came_from && item.column(kDiscountTaken).number() > 0) return 0;
    const double percent = item.column(kEarlyDiscount).number();
    const auto until = item.column(kDiscountDate).date();
    if (!until || !(percent > 0)) return 0;
    if (today > until->date_only()) return 0;
    return Round(item.column(kOpen).number() * percent / 100);
}

std::string ItemList::prepay_account(const std::string& fkey) {
    return kernel().look_up_text("Payment_header_table", {{"fkey", fkey}}, "prepayment_accno");
}

void ItemList::add_open_item(const Recordset& item, Listing& listing, bool came_from) {
    const Listing::Places& at = listing.places;
    const double gross = item.column(kGross).number();
    const auto due = item.column(kDueDate).date();
    const bool on_due = gross > 0 && due && listing.paid_on && due->date_only() <= *listing.paid_on;
    const std::string docno = item.column(kDocno).text();
    const std::string doctype = item.column(kDoctype).text();
    const std::string currency = item.column(kCurrency).text();
    const bool foreign_item = currency != context().BASE_CURRENCY;
    const std::string invoice_no = item.column(kInvoiceNo).text();
    const std::string pay_item = item.column(kPayItem).text();
    const std::string gross_text = format_money(gross);
    const double open = item.column(kOpen).number();
    const std::string open_text = open == gross ? gross_text : format_money(open);
    const std::string available = format_money(discount_offer(item, came_from, listing.today));
    const std::string percent = item.column(kEarlyDiscount).text();
    const std::string prepay = doctype == "pp" ? prepay_account(item.column(kFkey).text()) : std::string{};
    const std::string rate = foreign_item ? item.column(kRate).text() : std::string{};
    const std::string invoice_date = listing.date_text(item.column(kInvoiceDate).date());
    const std::string due_date = came_from || gross > 0 ? listing.date_text(due) : std::string{};
    const controls::TextArray::CellText cells[] = {
        {at.on_due, on_due ? "True" : "False"},
        {at.docno, docno},
        {at.invoice_no, invoice_no},
        {at.pay_item, pay_item},
        {at.gross, gross_text},
        {at.open, open_text},
        {at.invoice_date, invoice_date},
        {at.due_date, due_date},
        {at.taken, "0"},
        {at.writeoff, "0"},
        {at.discount_accno, form_.default_discount_accno},
        {at.writeoff_accno, form_.default_writeoff_accno},
        {at.available, available},
        {at.percent, percent},
        {at.doctype, doctype},
        {at.prepay_accno, prepay},
        {at.currency, currency},
        {at.invoice_rate, rate},
    };
    dbgrid1_.array.set_row(++last_row_, cells);
}

void ItemList::show_stored(Recordset& lines) {
    clear();
    dbgrid1_.array.dimension(
        std::max(frame::kRowsMin, static_cast<int>(lines.RecordCount()) + frame::kRowsSpare));
    stored_columns_.begin(lines);
    for (; !lines.at_eof(); lines.MoveNext())
        stored_columns_.show(lines, ++last_row_);
    touched_rows_.assign(static_cast<std::size_t>(last_row_ + 1), true);
    dbgrid1_.rebind();
}

void ItemList::insert_line() {
    if (!dbgrid1_.allow_add_new) return;
    const int row = dbgrid1_.row();
    dbgrid1_.array.insert_row(row);
    if (row < static_cast<int>(touched_rows_.size())) touched_rows_.insert(touched_rows_.begin() + row, true);
    ++last_row_;
    update_total_payment();
}

void ItemList::take_out_row(int row) {
    dbgrid1_.array.delete_row(row);
    if (row < static_cast<int>(touched_rows_.size())) touched_rows_.erase(touched_rows_.begin() + row);
    if (row <= last_row_) --last_row_;
}

void ItemList::keep_what_is_on_due() {
    for (int row = last_row_; row >= 0; --row) {
        if (dbgrid1_.cell(row, "on due") != "True") take_out_row(row);
    }
    update_total_payment();
}

void ItemList::delete_line() {
    if (!dbgrid1_.allow_delete) return;
    take_out_row(dbgrid1_.row());
    update_total_payment();
}

}  // namespace brimley::payments
