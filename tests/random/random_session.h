// Sessions of random acts on the sample company, and what must hold after every one of them.
//
// The acts are lines of the console's own language, so that a session which went wrong is a script that
// anybody can run again. The same seed gives the same session, on every machine.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "company/check.h"
#include "console/console.h"
#include "controls/grid.h"
#include "kernel/store/database.h"
#include "named_deviations.h"

namespace brimley::revaluation {
struct SelectionRow;
}

namespace brimley::testing {

// Numbers that depend on nothing but the seed.
class Chance {
  public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}
    // From 0 to count - 1.
    [[nodiscard]] int below(int count) {
        return static_cast<int>(engine_() % static_cast<std::uint64_t>(count));
    }
    [[nodiscard]] int between(int first, int last) { return first + below(last - first + 1); }
    [[nodiscard]] bool percent(int chance) { return below(100) < chance; }
    template <class T>
    [[nodiscard]] const T& one_of(const std::vector<T>& items) {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }

  private:
    std::mt19937_64 engine_;
};

class RandomSession {
  public:
    // The company is a fresh sample company, used by nobody else.
    RandomSession(const std::string& company, std::uint64_t seed);

    // What kinds of acts there are, and how often each comes.
    struct Act {
        const char* name;
        int weight;
        void (RandomSession::*run)();
    };
    [[nodiscard]] static const std::vector<Act>& acts();

    // From now on nothing is paid: invoices and templates alone.
    void leave_payments_out() { payments_left_out_ = true; }
    // Takes one act and returns its name.
    const char* act();
    // What does not hold now, apart from what the session's acts explain; empty when all is well.
    [[nodiscard]] std::vector<std::string> findings();

    // What looks wrong in the books and is intended, without numbers and keys, and how often it is there.
    [[nodiscard]] std::map<std::string, int> notes();

    // Every line so far.
    [[nodiscard]] const std::vector<std::string>& script() const { return script_; }
    // What the console printed in the last act.
    [[nodiscard]] std::string printed() const { return out_.str(); }
    // How often each message came.
    struct Tally {
        int saved = 0, refused = 0, templates = 0, updated = 0, update_failed = 0, voided = 0, held = 0,
            released = 0;
        int payments = 0, payments_refused = 0, payments_edited = 0;
        int payments_voided = 0, checks_voided = 0;  // the first count both
        int voids_in_a_later_period = 0, payment_voids_failed = 0;
        int generated = 0, generations = 0, generations_refused = 0;  // invoices; runs
        int revaluations = 0, revaluations_refused = 0;
        std::map<std::string, int> ways_of_paying;  // one payment may go several ways
    };
    [[nodiscard]] const Tally& tally() const { return tally_; }
    [[nodiscard]] const NamedDeviations& named_deviations() const { return named_; }

  private:
    void enter_document();
    void enter_template();
    void edit_document();
    void void_document();
    void hold_document();
    void release_document();
    void walk();
    void look_at_taxes();
    void let_days_pass();
    void close_and_open();
    void pay_items();
    void void_payment();
    void edit_payment();
    void void_check();
    void prepay();
    void edit_prepayment();
    void void_prepayment();
    void pay_card();
    void void_card_payment();
    void pay_expenses();
    void void_expenses();
    void edit_expenses();
    void generate_due();
    void revalue();
    void look_at_aging();
    void look_at_invoices();
    void look_at_payments();

    void run(const std::string& line);
    void press(int id);
    // Types into a control or a cell.
    void set(const char* control, const std::string& value);
    void cell(int row, const char* caption, const std::string& value);
    void enter_line(int row);
    void choose_way_of_paying();
    void pay_blindly();
    void pay_row(int row);
    void pay_open_item();
    void settle_row(int row);
    void save_payment();
    void count_ways_of_paying(const std::string& fkey);
    [[nodiscard]] controls::Grid& lines_on_screen();
    [[nodiscard]] double money_in(int row, const char* caption);
    struct StoredItems {
        int count = 0;
        double amount = 0;
    };
    [[nodiscard]] double sum_of(const char* caption);
    [[nodiscard]] StoredItems items_in_state(const std::string& state);
    [[nodiscard]] StoredItems stored_items(const std::string& due_before);
    void expect_listed(const char* list, int items, double total, const StoredItems& stored);
    [[nodiscard]] double stored_total(const std::string& fkey);
    void note_owed(double beyond_documents);
    [[nodiscard]] bool generate(int marked);
    void leave_half_out(std::vector<int>& marked);
    // As many rows as templates are due by what is stored.
    void expect_due(int listed);
    void enter_revaluation();
    [[nodiscard]] std::string day_of_an_item();
    void find_items(int rows);
    void expect_valued(const revaluation::SelectionRow& selected, store::DateTime last_date);
    // Fills a row of what is to be revalued.
    void select_items(int row);
    void browse_revaluations();
    [[nodiscard]] bool count_revaluation_message(const std::string& message);
    void enter_expense(int row);
    void count_ways_of_paying_expenses(const std::string& fkey);
    // Of the payments that the form has saved, whose numbers these are.
    void void_some_payment(const char* form, const std::vector<std::string>& docnos);
    void edit_some_payment(const char* form, const std::vector<std::string>& docnos);
    // False when there is none yet. The form is the current one then.
    bool go_to_some_payment(const char* form, const std::vector<std::string>& docnos);
    void back_to_invoices() { run("form APform_invoice"); }
    void change_line(int row);
    void leave_without_saving(int mode_command);
    [[nodiscard]] bool pressed(int id);
    [[nodiscard]] std::string shown(const std::string& control);
    // False when no document has been saved yet.
    bool go_to_some_document();
    bool go_to_some_prepayment();
    void count_way_of_paying(const char* way) { ++tally_.ways_of_paying[way]; }
    [[nodiscard]] std::string amount();
    [[nodiscard]] std::string date();
    void count_messages();
    // True for a message about a payment, which has been counted then.
    bool count_payment_message(const std::string& message);
    [[nodiscard]] std::vector<std::string>& docnos_of_kind(const std::string& docno);

    std::vector<std::string> column(const std::string& query);
    void expect_remarks(std::vector<std::string>& findings);
    void expect_count(const char* what, const std::string& query, int expected,
                      std::vector<std::string>& findings);

    store::OpenCompany reader_;
    Chance chance_;
    std::ostringstream out_;
    std::unique_ptr<console::Console> console_;
    std::vector<std::string> script_;

    store::DateTime today_;
    std::vector<std::string> vendors_, accounts_, tax_codes_, terms_;
    std::vector<std::string> docnos_, payment_docnos_, misc_docnos_, prepayment_docnos_, card_docnos_,
        used_vendors_;
    std::set<std::string> on_hold_;
    std::map<std::string, std::string> remarks_;  // of payments that were edited, by key
    std::vector<std::string> list_findings_;      // what lists have shown and should not have
    NamedDeviations named_;
    Tally tally_;
    bool payments_left_out_ = false;
};

}  // namespace brimley::testing
