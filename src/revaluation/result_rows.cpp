#include "revaluation/result_rows.h"

#include "kernel/money.h"

namespace brimley::revaluation {

using kernel::format_money;

namespace {

constexpr std::array kSumCaptions{"invoice amount", "original base-currency amount", "unrealized Gain/Loss",
                                  "new base-currency amount"};

std::array<int, kSumCaptions.size()> find_sum_columns(const controls::Grid& grid) {
    std::array<int, kSumCaptions.size()> columns{};
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i] = grid.get_column(kSumCaptions[i]);
    return columns;
}

std::array<double, kSumCaptions.size()> in_order(const ItemAmounts& amounts) {
    return {amounts.invoice, amounts.original_base, amounts.gain, amounts.new_base};
}

ItemAmounts as_shown(const ItemAmounts& amounts) {
    using kernel::shown_amount;
    return {shown_amount(amounts.invoice), shown_amount(amounts.original_base), shown_amount(amounts.gain),
            shown_amount(amounts.new_base)};
}

}  // namespace

void ItemAmounts::add(const ItemAmounts& item) {
    invoice += item.invoice;
    original_base += item.original_base;
    gain += item.gain;
    new_base += item.new_base;
}

ResultRows::ResultRows(frame::Form& form, controls::Grid& grid, std::span<const frame::LineColumn> columns,
                       const store::Recordset& items, int first_row, std::string currency,
                       ItemAmounts& totals)
    : FormPart(form),
      grid_(grid),
      columns_(form, grid, columns),
      vendor_no_column_(grid.get_column("vendor no")),
      vendor_name_column_(grid.get_column("vendor name")),
      currency_column_(grid.get_column("currency")),
      sum_columns_(find_sum_columns(grid)),
      row_(first_row),
      currency_(std::move(currency)),
      totals_(totals) {
    columns_.begin(items);
}

void ResultRows::begin_vendor(const std::string& vendor_no, const std::string& vendor_name) {
    if (!vendor_no_.empty()) {
        show_sums();
        sums_ = {};
        ++row_;
    }
    vendor_no_ = vendor_no;
    vendor_name_ = vendor_name;
    first_of_vendor_ = true;
    set(vendor_no_column_, vendor_no);
    set(vendor_name_column_, vendor_name);
}

void ResultRows::add(const store::Recordset& item, const ItemAmounts& amounts) {
    std::array<controls::TextArray::CellText, kSums + 2> more{};
    std::size_t cells = 0;
    const auto values = in_order(amounts);
    for (; cells < kSums; ++cells) {
        texts_[cells] = format_money(values[cells]);
        more[cells] = {sum_columns_[cells], texts_[cells]};
    }
    if (first_of_vendor_) {
        more[cells++] = {vendor_no_column_, vendor_no_};
        more[cells++] = {vendor_name_column_, vendor_name_};
        first_of_vendor_ = false;
    }
    columns_.read(item);
    if (columns_.text(kCurrencyColumn) == currency_) totals_.add(as_shown(amounts));
    columns_.put(row_++, std::span(more).first(cells));
    sums_.add(amounts);
}

void ResultRows::show_sums() {
    const auto values = in_order(sums_);
    for (std::size_t i = 0; i < kSums; ++i)
        set(sum_columns_[i], format_money(values[i]));
}

// Label and rate stand in the two columns after "vendor name", whichever these are.
void ResultRows::end(const std::string& rate) {
    const std::string currency(grid_.array.get(row_ - 1, currency_column_));
    set(vendor_name_column_, "Total");
    set(vendor_name_column_ + 1, "Revalue " + currency + " at rate");
    set(vendor_name_column_ + 2, rate);
    show_sums();
    ++row_;
}

void show_summary(controls::Grid& grid, int row, std::string_view currency, const ItemAmounts& totals) {
    const int heading = row + 1;
    grid.set_cell(heading, "date", "SUMMARY");
    if (currency.empty()) return;
    grid.set_cell(heading + 1, "date", currency);
    const auto sum_columns = find_sum_columns(grid);
    const auto values = in_order(totals);
    for (std::size_t i = 0; i < values.size(); ++i)
        grid.array.set(heading + 1, sum_columns[i], format_money(values[i]));
}

}  // namespace brimley::revaluation
