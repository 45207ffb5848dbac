// The GL document of a miscellaneous payment, from its lines and tax rows.
//
// Amounts are signed on each account's own side: the total leaves the cash or bank account, or is added to
// what is owed to the card; the expenses and taxes are what it was paid for.
#pragma once

#include <string>
#include <vector>

#include "frame/document_part.h"
#include "kernel/tax_accounts.h"
#include "payments/misc/misc_lines.h"

namespace brimley::payments {

class APform_misc_payment;

class MiscPosting : public frame::DocumentPart {
  public:
    explicit MiscPosting(APform_misc_payment& form);

    // The GL document of a payment from `accno`; afterwards txtglfkey is its key. Inside the caller's
    // transaction; false after its message, if there is one.
    [[nodiscard]] bool insert_GL_record(const std::string& accno, const std::vector<MiscLine>& lines);

  private:
    [[nodiscard]] bool gather_line(kernel::GlPosting& posting, const MiscLine& line,
                                   kernel::AuthorityAccounts& authorities);
    [[nodiscard]] bool gather_tax(kernel::GlPosting& posting, const kernel::TaxRow& row,
                                  kernel::AuthorityAccounts& authorities);

    APform_misc_payment& form_;
};

}  // namespace brimley::payments
