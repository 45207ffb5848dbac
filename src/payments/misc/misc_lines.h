// The lines of a miscellaneous payment (frame/account_lines.h): their columns, what is typed into them, the
// total, and the checks before they are saved.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/account_lines.h"

namespace brimley::payments {

class APform_misc_payment;

// A line, read once for the save and the ledger. Amounts are in the payment's currency.
struct MiscLine {
    std::string pay_item, account, tax_code, reference;
    double amount = 0;
    double tax = 0;
    double allocated_tax = 0;
    bool tax_included = false;

    // What is left for the account: the amount without a tax that is in it, and the part of the tax that
    // belongs to its cost.
    [[nodiscard]] double expense() const { return amount - (tax_included ? tax : 0) + allocated_tax; }
};

class MiscLines : public frame::AccountLines {
  public:
    explicit MiscLines(APform_misc_payment& form);

    // Amounts, and the taxes that come on top of them.
    void totalamt_calculate() override;
    // Whether any line has an amount.
    [[nodiscard]] bool check_ifany_pay() const;
    // False, after its message, for a line that cannot be saved.
    [[nodiscard]] bool verify_detail() const;
    // The rows that are lines and have an amount.
    [[nodiscard]] std::vector<MiscLine> read() const;

  private:
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit) override;
    void cell_was_changed(int row, std::string_view caption) override;
    void line_was_shown(int row) override;
    [[nodiscard]] bool accepts_positive_amount(controls::CellEdit& edit);
    void take_default_tax_code(int row);
    [[nodiscard]] bool tax_is_included(int row) const;
    [[nodiscard]] MiscLine read_line(int row) const;
    [[nodiscard]] bool verify_amount(int row, const std::string& pay_item) const;
    [[nodiscard]] bool verify_account(int row, const std::string& pay_item) const;

    APform_misc_payment& form_;
};

}  // namespace brimley::payments
