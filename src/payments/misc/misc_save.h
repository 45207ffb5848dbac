// The save of a new miscellaneous payment: its checks, header, lines and GL document.
#pragma once

#include <string>
#include <vector>

#include "payments/misc/misc_lines.h"
#include "payments/new_payment.h"

namespace brimley::payments {

class APform_misc_payment;

class MiscSave : public NewPayment {
  public:
    explicit MiscSave(APform_misc_payment& form);

  protected:
    [[nodiscard]] bool validate() override;
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;

  private:
    [[nodiscard]] bool validate_total();
    [[nodiscard]] bool validate_lines();
    [[nodiscard]] bool validate_way_of_paying();
    [[nodiscard]] std::string card_account(const std::string& card) const;
    [[nodiscard]] bool fill_line(store::Recordset& row, const store::Recordset& header, const MiscLine& line);

    APform_misc_payment& form_;
    std::vector<MiscLine> lines_;
};

}  // namespace brimley::payments
