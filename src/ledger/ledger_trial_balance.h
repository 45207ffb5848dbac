// The trial balance: what every account stands at, at the end of a period, in base currency.
//
// It is read from the balances that posting keeps, so its cost does not grow with the documents. Current
// Earnings is shown without what the accounts of the income statement move it by within the year, since they
// are listed themselves; so both sides are equal.
#pragma once

#include "ledger/ledger_form.h"

namespace brimley::ledger {

class Ledger_trial_balance : public LedgerForm {
  public:
    Ledger_trial_balance(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                         frame::Desk& desk);

    controls::ComboBox cmbfyear{controls_, "cmbfyear"};
    controls::ComboBox cmbperiod{controls_, "cmbperiod"};
    controls::CheckBox chkmoved{controls_, "chkmoved", "Also accounts without a balance"};
    controls::TextField txtdebit{controls_, "txtdebit"};
    controls::TextField txtcredit{controls_, "txtcredit"};
    controls::TextField txtdifference{controls_, "txtdifference"};
    controls::Grid dbgrid1{controls_, "dbgrid1"};

  protected:
    [[nodiscard]] std::vector<controls::Command> own_commands() const override;
    void show_first_values() override;
    void execute_own(int id) override;

  private:
    // Of an account, as they count on the debit side.
    struct Standing {
        double opening = 0;   // of the year
        double movement = 0;  // from there to the end of the period
        double foreign = 0;   // what of that came by the foreign ledger, which moves no Current Earnings
    };
    using Standings = std::map<std::string, Standing>;
    [[nodiscard]] Standings read_standings(int period);
    void take_out_earnings(Standings& standings) const;
    void list_accounts();
    void fill(const Standings& standings);
    void show_journal();
};

}  // namespace brimley::ledger
