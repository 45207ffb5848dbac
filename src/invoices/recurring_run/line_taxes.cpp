#include "invoices/recurring_run/line_taxes.h"

#include "kernel/money.h"
#include "kernel/tax_engine.h"

namespace brimley::invoices {

using kernel::Round;
using kernel::TaxMode;

std::optional<std::vector<TaxShare>> LineTaxes::shares_of(const GeneratedLine& line) {
    // Also with the tax included it is the taxable amount that is taxed.
    const TaxMode mode = line.include_tax ? TaxMode::gross_amount : TaxMode::taxable_amount;
    std::vector<TaxShare> shares;
    double tax_on_tax_base = 0;
    store::Recordset& authority = authorities(line.tax_code);
    for (authority.MoveFirst(); !authority.at_eof(); authority.MoveNext()) {
        const double computed =
            kernel::compute_tax(mode, line.taxable_amount, tax_on_tax_base, authority.number("Rate"));
        const double tax = kernel::within_limits(computed, authority);
        if (authority.flag("taxable")) tax_on_tax_base += tax;
        if (!split(tax, authority, line, shares)) return std::nullopt;
    }
    return shares;
}

bool LineTaxes::split(double tax, const store::Recordset& authority, const GeneratedLine& line,
                      std::vector<TaxShare>& shares) const {
    double rest = tax;
    if (const store::Value recoverable = authority.field("acc_recoverable"); !recoverable.is_null()) {
        const double refund = authority.number("percent_refund");
        const double recovered = refund == 100 ? tax : Round(tax * refund / 100);
        shares.push_back({recoverable.text(), recovered});
        rest = Round(tax - recovered);
    }
    if (rest == 0) return true;
    if (authority.flag("include_itemcost")) {
        shares.push_back({line.po_accno, rest});
        return true;
    }
    const store::Value expense = authority.field("acc_expense");
    if (expense.is_null())
        return refuse("No Expense Tax Account specified when tax not fully refund for tax code " +
                      line.tax_code);
    shares.push_back({expense.text(), rest});
    return true;
}

store::Recordset& LineTaxes::authorities(const std::string& tax_code) {
    auto known = known_.find(tax_code);
    if (known == known_.end())
        known = known_.emplace(tax_code, kernel::authorities_of(kernel(), tax_code)).first;
    return known->second;
}

}  // namespace brimley::invoices
