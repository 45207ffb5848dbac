// The journal: the lines of the ledger by date, all or those of one account with its running balance.
//
// Nothing is read before Find. Amounts are in base currency.
#pragma once

#include "ledger/ledger_form.h"

namespace brimley::ledger {

class Ledger_journal : public LedgerForm {
  public:
    Ledger_journal(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    controls::ComboBox cmbaccount{controls_, "cmbaccount", "0;1500;<;Account|1;3500;<;Name"};
    controls::DateField txtfrom{controls_, "txtfrom"};
    controls::DateField txtto{controls_, "txtto"};
    controls::TextField txtdebit{controls_, "txtdebit"};
    controls::TextField txtcredit{controls_, "txtcredit"};
    controls::Grid dbgrid1{controls_, "dbgrid1"};

    // The whole journal of an account.
    void show_account(const std::string& accno);

  protected:
    [[nodiscard]] std::vector<controls::Command> own_commands() const override;
    void show_first_values() override;
    void execute_own(int id) override;

  private:
    struct Days {
        std::optional<store::DateTime> from, to;
    };
    // Empty after its message.
    [[nodiscard]] std::optional<Days> days();
    [[nodiscard]] bool is_day(const controls::TextField& field, std::optional<store::DateTime>& day);
    void list_lines();
    [[nodiscard]] store::Recordset read_lines(const Days& days);
    void fill(store::Recordset& lines, const Days& days);
    void add_line(const store::Recordset& line, double debit, const std::string& balance);
    // What the account stands at now less its lines: what was brought in without any. On the debit side.
    [[nodiscard]] double brought_in(store::Recordset& lines);
    [[nodiscard]] double standing_now();
    void show_before(const Days& days, double balance);
    void review();

    std::vector<std::string> keys_;  // of the documents, by the rows of the list
};

}  // namespace brimley::ledger
