// What the forms of the ledger have in common: a list, fields with captions, and a few commands.
//
// Everybody may look. Who may write is said by each form.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/combo_box.h"
#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form.h"
#include "ledger/ledger_accounts.h"

namespace brimley::ledger {

// Shows the document of the ledger that the cursor is on, as the host does.
inline constexpr const char* kLedgerReview = "G/L Ledger Review";

class LedgerForm : public frame::Form {
  public:
    LedgerForm(const frame::FormIdentity& identity, frame::HostContext context,
               std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    [[nodiscard]] frame::FieldHint hint_of(const controls::Control& control) const final;

  protected:
    // --- variable points ---
    [[nodiscard]] virtual std::vector<controls::Command> own_commands() const = 0;
    virtual void show_first_values() = 0;
    virtual void execute_own(int id) = 0;

    // --- shared procedures ---
    void set_caption(const controls::Control& control, std::string caption, int width = 0);
    enum class Look { text, wide_text, money };
    static void add_column(controls::Grid& grid, const char* caption, Look look);
    // A result: shown, and never typed.
    static void lock(controls::Control& control);
    [[nodiscard]] const LedgerAccounts& accounts() const { return accounts_; }
    // As the chart is now.
    void read_accounts();
    // The query for the list of accounts, with their names.
    static constexpr const char* kAccountList =
        "SELECT accno, accname FROM Account_master_table ORDER BY accno";

    void Form_Load() final;
    void init_toolbar() final;
    void CommandBars1_Execute(int id) final;
    void save_grid() final {}  // the company keeps no layout of it

  private:
    LedgerAccounts accounts_;
    std::map<const controls::Control*, frame::FieldHint> hints_;
};

}  // namespace brimley::ledger
