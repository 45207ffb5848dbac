#include "payments/void_check/check_list.h"

#include <algorithm>
#include <array>
#include <vector>

#include "payments/void_check/check_kinds.h"

namespace brimley::payments {

using frame::LineColumn;
using frame::Shown;
using store::Recordset;

namespace {

constexpr std::array kCheckColumns{
    LineColumn{"remit to", "remit_to", Shown::text},
    LineColumn{"check no", "check_no", Shown::text},
    LineColumn{"check date", "check_date", Shown::date},
    LineColumn{"payment no", "docno", Shown::text},
    LineColumn{"AP document no", "ap_docno", Shown::text},
    LineColumn{"invoice no", "invoice_no", Shown::text},
    LineColumn{"invoice date", "invoice_date", Shown::date},
    LineColumn{"check amount", "payment_amount", Shown::money},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"pay amount", "pay_amount", Shown::money},
    LineColumn{"currency", "Currency", Shown::text},
    LineColumn{"bank account", "bank_accno", Shown::text},
    LineColumn{"period", "period", Shown::text},
    LineColumn{"fiscal year", "fyear", Shown::text},
};

// A field that both tables have is the header's, which comes first; so do the payment's key and the fields
// that all lines have.
constexpr const char* kPaymentsQuery = "SELECT fkey, doctype FROM Payment_header_table";
constexpr const char* kNamesQuery =
    "SELECT fkey, VENDOR_NAME FROM Payment_header_table INNER JOIN Vendor_table ON "
    "Payment_header_table.vendor_no = Vendor_table.vendor_no";
constexpr const char* kWithoutPayee = " AND (remit_to IS NULL OR remit_to = '')";
constexpr const char* kLineFields =
    "SELECT fkey, remit_to, check_no, check_date, docno, payment_amount, Currency, bank_accno, period, "
    "fyear, pay_item, pay_amount";
constexpr const char* kOfItems =
    ", ap_docno, invoice_no, invoice_date FROM Payment_header_table INNER JOIN Payment_transaction_table ON "
    "Payment_header_table.fkey = Payment_transaction_table.fkey";
constexpr const char* kOfExpenses =
    " FROM Payment_header_table INNER JOIN Payment_misc_transaction_table ON Payment_header_table.fkey = "
    "Payment_misc_transaction_table.fkey";
constexpr const char* kMisc = " AND doctype = 'mpy'";

// Feb 29 becomes Feb 28.
store::DateTime a_year_before(store::DateTime date) {
    const auto same_day = store::DateTime::from_ymd(date.year() - 1, date.month(), date.day_of_month());
    return same_day ? *same_day : date.date_only().plus_days(-366);
}

std::vector<std::string> keys_of(Recordset& payments) {
    std::vector<std::string> keys;
    for (; !payments.at_eof(); payments.MoveNext())
        keys.push_back(payments.column(0).text());
    payments.MoveFirst();
    return keys;
}

// Rows that belong to the payments, in the order of the payments.
class RowsOfPayments {
  public:
    // `keys` are those of the payments.
    RowsOfPayments(Recordset rows, const std::vector<std::string>& keys) : row(std::move(rows)), keys_(keys) {
        find();
    }

    Recordset row;

    [[nodiscard]] int count() const { return static_cast<int>(row.RecordCount()); }
    void next() {
        row.MoveNext();
        find();
    }
    // Goes on to the next row of the payment at this place; false when it has none left.
    [[nodiscard]] bool is_at(std::size_t place) {
        while (!row.at_eof() && place_ < place)
            next();
        return !row.at_eof() && place_ == place;
    }

  private:
    // From the place of the row before it. A payment that another desk has saved meanwhile has none.
    void find() {
        for (; !row.at_eof(); row.MoveNext()) {
            const auto from = keys_.begin() + static_cast<std::ptrdiff_t>(place_);
            const auto found = std::find(from, keys_.end(), row.column(0).text());
            if (found == keys_.end()) continue;
            place_ = static_cast<std::size_t>(found - keys_.begin());
            return;
        }
    }

    const std::vector<std::string>& keys_;
    std::size_t place_ = 0;
};

}  // namespace

CheckList::CheckList(frame::Form& form, controls::Grid& grid)
    : FormPart(form),
      grid_(grid),
      columns_(form, grid, kCheckColumns),
      misc_columns_(form, grid, kCheckColumns) {}

void CheckList::clear() {
    grid_.array.dimension(frame::kRowsMin);
    grid_.go_to(0, 0);
}

void CheckList::list_vendor_check(const std::string& vendor_no) {
    clear();
    step("list_vendor_check", [&] { fill(checks_of(vendor_no)); });
    grid_.rebind();
}

std::string CheckList::checks_of(const std::string& vendor_no) const {
    const std::string checks =
        " WHERE Payment_header_table.company = 1 AND payby = 'Check' AND void = FALSE AND "
        "check_date >= " +
        store::date_value(a_year_before(desk().now()));
    return vendor_no.empty() ? checks : checks + " AND vendor_no = " + store::quoted(vendor_no);
}

void CheckList::fill(const std::string& checks) {
    auto payments = kernel().read(kPaymentsQuery + checks);
    const std::vector<std::string> keys = keys_of(payments);
    RowsOfPayments names(kernel().read(kNamesQuery + checks + kWithoutPayee), keys);
    RowsOfPayments lines(kernel().read(std::string(kLineFields) + kOfItems + checks), keys);
    RowsOfPayments misc_lines(kernel().read(std::string(kLineFields) + kOfExpenses + checks + kMisc), keys);
    columns_.begin(lines.row);
    misc_columns_.begin(misc_lines.row);
    const int remit_to = grid_.get_column("remit to");
    const int payment_type = grid_.get_column("payment type");
    grid_.array.dimension(frame::rows_for(lines.count() + misc_lines.count()));
    int row = 0;
    for (std::size_t place = 0; !payments.at_eof(); payments.MoveNext(), ++place) {
        const std::string doctype = payments.column(1).text();
        const bool misc = doctype == "mpy";
        const bool by_name = names.is_at(place);
        const std::string name = by_name ? names.row.column(1).text() : std::string{};
        for (RowsOfPayments& of = misc ? misc_lines : lines; of.is_at(place); of.next(), ++row) {
            (misc ? misc_columns_ : columns_).show(of.row, row);
            grid_.array.set(row, payment_type, check_kind_of(doctype).payment_type);
            if (by_name) grid_.array.set(row, remit_to, name);
        }
    }
}

}  // namespace brimley::payments
