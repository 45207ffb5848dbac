// The taxes of a generated line, computed from its code as it is today; what the template says its tax was
// only decides whether there is one.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "frame/form_part.h"

namespace brimley::invoices {

// A line of a template, read once.
struct GeneratedLine {
    double gross_amount = 0;
    double taxable_amount = 0;
    double tax_amount = 0;
    std::string tax_code;
    bool include_tax = false;
    std::string po_accno;
};

// What is charged to an account.
struct TaxShare {
    std::string accno;
    double amount = 0;
};

class LineTaxes : public frame::FormPart {
  public:
    explicit LineTaxes(frame::Form& form) : FormPart(form) {}

    // The shares of all authorities, in the order of their items; a share may be 0. Empty, after its message,
    // when one has no account to go to.
    [[nodiscard]] std::optional<std::vector<TaxShare>> shares_of(const GeneratedLine& line);

  private:
    // Adds the shares of the tax of the current authority.
    [[nodiscard]] bool split(double tax, const store::Recordset& authority, const GeneratedLine& line,
                             std::vector<TaxShare>& shares) const;
    [[nodiscard]] store::Recordset& authorities(const std::string& tax_code);

    std::map<std::string, store::Recordset> known_;  // each code is read once
};

}  // namespace brimley::invoices
