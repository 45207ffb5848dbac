// Journal entries: what no document of the module posts, such as opening balances, bank fees, the owner's
// money. In base currency, debit equal to credit, or refused.
//
// An entry is posted as every document is, and never changed or deleted. Reverse makes another one that takes
// it back, in today's period. What stands on one account is stored as one line.
#pragma once

#include <optional>

#include "ledger/ledger_form.h"

namespace brimley::ledger {

inline constexpr int kReverse = 140;
inline constexpr int kEntryLinesMax = 200;

class Ledger_entry : public LedgerForm {
  public:
    Ledger_entry(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    controls::TextField txtdocno{controls_, "txtdocno"};
    controls::DateField txtdate{controls_, "txtdate"};
    controls::TextField txtremark{controls_, "txtremark"};
    controls::TextField txtperiod{controls_, "txtperiod"};
    controls::TextField txtuser{controls_, "txtuser"};
    controls::TextField txtdescription{controls_, "txtdescription"};
    controls::TextField txtdebit{controls_, "txtdebit"};
    controls::TextField txtcredit{controls_, "txtcredit"};
    controls::Grid dbgrid1{controls_, "dbgrid1"};

    // Shows the entry of this number. False, after its message, when there is none.
    bool show_number(const std::string& docno);

    [[nodiscard]] bool can_do(int id) const override;
    [[nodiscard]] std::string document_shown() const override { return txtdocno.text(); }
    [[nodiscard]] std::string document_key() const override { return shown_; }

  protected:
    [[nodiscard]] std::vector<controls::Command> own_commands() const override;
    void show_first_values() override;
    void execute_own(int id) override;
    // Who has every right on every form enters them, or who has a right of their own on this form.
    void read_rights_of(kernel::UserRights& rights) override;
    [[nodiscard]] std::string document_at_hand() override { return txtdocno.text(); }

  private:
    struct Line {
        std::string accno;
        double debit = 0;  // below 0: credit
    };

    // --- what is shown ---
    void set_mode(frame::Mode mode);
    void clear();
    void begin_new();
    void leave_entry();
    [[nodiscard]] bool anything_entered() const;
    void show_key(const std::string& fkey);
    void show_lines(const std::string& fkey);
    void show_sums();
    enum class Way { back, on, last };
    void walk(Way way);
    // Numbers and keys of all entries, by number; read when somebody first walks or looks for one.
    struct Known {
        std::string docno, fkey;
    };
    [[nodiscard]] const std::vector<Known>& known();

    // --- what is entered (ledger_entry_save.cpp) ---
    [[nodiscard]] std::optional<double> amount_in(int row, const char* column);
    // Empty after its message.
    [[nodiscard]] std::optional<std::vector<Line>> entered_lines();
    [[nodiscard]] std::optional<Line> entered_line(int row);
    [[nodiscard]] bool balances(const std::vector<Line>& lines);
    [[nodiscard]] std::optional<store::DateTime> entered_day();
    // The period of the day, when documents may be entered in it. Empty after its message.
    [[nodiscard]] std::optional<kernel::FiscalPeriod> open_period_of(store::DateTime day);
    [[nodiscard]] bool save();
    [[nodiscard]] bool post(store::DateTime day, const kernel::FiscalPeriod& period,
                            const std::vector<Line>& lines, std::string& fkey);
    void reverse();
    [[nodiscard]] bool post_reverse(const kernel::FiscalPeriod& period);

    controls::DropDown accounts_list_;
    std::string shown_;  // key of the entry on the screen; empty: none
    bool can_be_reversed_ = false;
    std::optional<std::vector<Known>> known_;
};

}  // namespace brimley::ledger
