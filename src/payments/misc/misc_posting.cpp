#include "payments/misc/misc_posting.h"

#include <algorithm>

#include "kernel/money.h"
#include "payments/misc/apform_misc_payment.h"

namespace brimley::payments {

using kernel::money_value;

MiscPosting::MiscPosting(APform_misc_payment& form) : DocumentPart(form), form_(form) {}

// The payable account of a card is on the credit side: there the total is added.
bool MiscPosting::insert_GL_record(const std::string& accno, const std::vector<MiscLine>& lines) {
    return form_.ledger.insert_GL_record("", [&](kernel::GlPosting& posting) {
        form_.ledger.add_paid_from(posting, accno, money_value(form_.txttotal.text()));
        kernel::AuthorityAccounts authorities(kernel());
        return std::ranges::all_of(
            lines, [&](const MiscLine& line) { return gather_line(posting, line, authorities); });
    });
}

bool MiscPosting::gather_line(kernel::GlPosting& posting, const MiscLine& line,
                              kernel::AuthorityAccounts& authorities) {
    form_.ledger.add(posting, line.account, line.expense());
    if (line.tax_code.empty() || line.tax <= 0) return true;
    return std::ranges::all_of(form_.taxes.tax_rows.of_item(line.pay_item), [&](const kernel::TaxRow* row) {
        return gather_tax(posting, *row, authorities);
    });
}

bool MiscPosting::gather_tax(kernel::GlPosting& posting, const kernel::TaxRow& row,
                             kernel::AuthorityAccounts& authorities) {
    const auto* const accounts = authorities.find(row.authority);
    const double recoverable = money_value(row.recoverable);
    const double expensed = money_value(row.expensed);
    if (recoverable != 0) {
        if (accounts == nullptr) return false;
        form_.ledger.add(posting, accounts->recoverable.text(), recoverable);
    }
    if (expensed != 0) {
        if (accounts == nullptr || accounts->expense.text().empty())
            return refuse("No Expensed Tax Account for " + row.authority);
        form_.ledger.add(posting, accounts->expense.text(), expensed);
    }
    return true;
}

}  // namespace brimley::payments
