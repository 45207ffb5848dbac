#include "kernel/tax_engine.h"

#include <fmt/format.h>

#include <algorithm>

#include "kernel/money.h"

namespace brimley::kernel {

namespace {

using store::quoted;

// What the rows of one line hand on to each other.
struct LineState {
    double tax_on_tax_base = 0;
    TaxTotals totals;
};

void write_split(TaxRow& row, const TaxSplit& split) {
    row.allocated = format_money(split.allocated);
    row.recoverable = format_money(split.recoverable);
    row.expensed = format_money(split.expensed);
}

void write_amounts(TaxRow& row, double tax, double amount, double base, TaxMode mode) {
    row.taxable_amount = format_money(mode == TaxMode::gross_amount ? base + (amount - tax) : base + amount);
    row.tax_amount = format_money(tax);
    row.line_amount = store::shortest_number(amount);
}

TaxRow row_of_authority(const store::Recordset& authority, std::string_view pay_item,
                        std::string_view tax_code, std::size_t sequence) {
    TaxRow row;
    row.sequence = std::to_string(sequence);
    row.authority = authority.text("tax_authority");
    row.rate = authority.number("Rate");
    row.taxable = authority.flag("taxable");
    row.pay_item = pay_item;
    row.tax_code = tax_code;
    row.percent_refund = authority.number("percent_refund");
    row.include_itemcost = authority.flag("include_itemcost");
    return row;
}

}  // namespace

store::Recordset authorities_of(ModuleG3& kernel, std::string_view tax_code) {
    return kernel.read(fmt::format(
        "SELECT Tax_code_details_table.*, Tax_authority_table.Rate, Tax_authority_table.min_charged, "
        "Tax_authority_table.max_charged, Tax_authority_table.acc_recoverable, "
        "Tax_authority_table.acc_expense FROM (Tax_code_details_table INNER JOIN Tax_authority_table ON "
        "Tax_code_details_table.tax_authority = Tax_authority_table.tax_authority) WHERE tax_code = {} AND "
        "transaction_type = 'purchase' ORDER BY item_no",
        quoted(tax_code)));
}

double within_limits(double tax, const store::Recordset& authority) {
    const double least = authority.number("min_charged");
    const double most = authority.number("max_charged");
    if (least > 0 && tax < least) tax = least;
    if (most > 0 && tax > most) tax = most;
    return tax;
}

TaxSplit split_tax(double tax, double percent_refund, bool include_itemcost) {
    TaxSplit split;
    if (percent_refund > 0) split.recoverable = Round(tax * percent_refund / 100);
    const double rest = tax - split.recoverable;
    (include_itemcost ? split.allocated : split.expensed) = rest;
    return split;
}

double compute_tax(TaxMode mode, double amount, double base, double rate) {
    const double taxed = base > 0 ? amount + base : amount;
    switch (mode) {
        case TaxMode::gross_amount:
            if (rate == -100) return 0;  // no amount has such a tax in it
            return Round((taxed / (1 + rate / 100)) * rate / 100);
        case TaxMode::taxable_amount:
            return Round(taxed * rate / 100);
        case TaxMode::tax_code:
            break;
    }
    return 0;
}

void take_shares_of_code(ModuleG3& kernel, TaxRow& row) {
    const auto details = kernel.find(
        "Tax_code_details_table",
        {{"tax_code", row.tax_code}, {"transaction_type", "purchase"}, {"tax_authority", row.authority}});
    if (details.at_eof()) return;
    row.percent_refund = details.number("percent_refund");
    row.include_itemcost = details.flag("include_itemcost");
}

std::vector<TaxRow*> TaxRows::of_item(std::string_view pay_item) {
    std::vector<TaxRow*> found;
    for (TaxRow& row : rows_) {
        if (row.pay_item == pay_item) found.push_back(&row);
    }
    return found;
}

TaxRow* TaxRows::find(std::string_view pay_item, std::string_view sequence) {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const TaxRow& row) {
        return row.pay_item == pay_item && row.sequence == sequence;
    });
    return found == rows_.end() ? nullptr : &*found;
}

void TaxRows::remove_item(std::string_view pay_item) {
    std::erase_if(rows_, [&](const TaxRow& row) { return row.pay_item == pay_item; });
}

TaxTotals TaxRows::recompute(std::string_view pay_item, double amount, TaxMode mode) {
    LineState line;
    for (TaxRow* row : of_item(pay_item)) {
        const double tax = compute_tax(mode, amount, line.tax_on_tax_base, row->rate);
        const TaxSplit split = split_tax(tax, row->percent_refund, row->include_itemcost);
        write_amounts(*row, tax, amount, line.tax_on_tax_base, mode);
        write_split(*row, split);
        // After the taxable amount: computed this way an authority's own tax does not show in its own base.
        if (row->taxable) line.tax_on_tax_base += tax;
        line.totals.tax += tax;
        line.totals.allocated += split.allocated;
    }
    return line.totals;
}

TaxTotals TaxRows::rebuild(ModuleG3& kernel, std::string_view pay_item, std::string_view tax_code,
                           double amount, TaxMode mode) {
    LineState line;
    std::size_t sequence = 1;
    for (auto authority = authorities_of(kernel, tax_code); !authority.at_eof(); authority.MoveNext()) {
        TaxRow row = row_of_authority(authority, pay_item, tax_code, sequence++);
        const double tax =
            within_limits(compute_tax(mode, amount, line.tax_on_tax_base, row.rate), authority);
        // Before the taxable amount: a newly built row shows its own tax in it when it is taxed further.
        if (row.taxable) line.tax_on_tax_base += tax;
        const TaxSplit split = split_tax(tax, row.percent_refund, row.include_itemcost);
        write_amounts(row, tax, amount, line.tax_on_tax_base, mode);
        write_split(row, split);
        rows_.push_back(std::move(row));
        line.totals.tax += tax;
        line.totals.allocated += split.allocated;
    }
    return line.totals;
}

std::optional<std::string> default_purchase_tax_code(ModuleG3& kernel) {
    const auto row =
        kernel.read("SELECT * FROM Tax_code_table WHERE transaction_type = 'purchase' AND [default] = TRUE");
    if (row.at_eof()) {
        kernel.tell("Default Tax code has not been set");
        return std::nullopt;
    }
    return row.text("tax_code");
}

void store_tax(std::vector<AuthorityTotals>& totals, const TaxRow& row) {
    auto known = std::find_if(totals.begin(), totals.end(),
                              [&](const AuthorityTotals& total) { return total.authority == row.authority; });
    if (known == totals.end()) {
        totals.push_back({row.authority, 0, 0, 0, {}});
        known = std::prev(totals.end());
    }
    const double tax = money_value(row.tax_amount);
    known->tax += tax;
    (row.include_tax.empty() ? known->tax_of_new_rows : known->tax_of_stored_rows) += tax;
    known->split.allocated += money_value(row.allocated);
    known->split.recoverable += money_value(row.recoverable);
    known->split.expensed += money_value(row.expensed);
}

}  // namespace brimley::kernel
