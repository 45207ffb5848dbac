// A user who works at the forms of a company until told to stop, and says what was stored.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "kernel/store/database.h"
#include "payments/payment_form.h"
#include "support/sample_host.h"

namespace brimley::testing {

// Waits as a program does, for the harnesses that run several of them.
class WaitingDesk : public RecordingDesk {
  public:
    void wait(std::chrono::milliseconds duration) override;
};

// What a saver ends with that could not open its company, since its server was away.
inline constexpr int kCannotOpen = 3;

class Saver {
  public:
    // `tell` gets a line for each thing stored ("invoice IP-26-00001", "void-invoice IP-26-00001") as soon as
    // the form has said that it is, and one for each thing refused ("refused TEXT").
    Saver(const store::OpenCompany& company, const std::string& user, std::uint64_t seed,
          std::function<void(const std::string& line)> tell);

    // One act on one document. Named: this one and no other.
    void act(const std::string& name = {});
    // Whether the text of a "refused" line is one that a saver may get to hear because another one was there
    // before it, or holds what it wants.
    [[nodiscard]] static bool may_be_told(const std::string& refusal);

  private:
    // What a user does, by its name in what is told, and how it may be refused (a regular expression). A
    // later form adds its acts here.
    struct Act {
        const char* name;
        int weight;
        void (Saver::*run)();
        const char* refusals;
    };
    [[nodiscard]] static const std::vector<Act>& acts();

    void enter_invoice();
    void pay_invoices();
    void void_invoice();
    void void_payment();
    void void_check();
    void pay_expenses();
    void void_expenses();
    void prepay();
    void edit_prepayment();
    void void_prepayment();
    // What is on screen, if it is stored. `prefix` stands before the number in what the form says then.
    void void_shown(payments::PaymentForm& form, const char* what, const char* prefix);
    void pay_card();
    void enter_foreign_invoice();
    void revalue();
    // Issues what is due; while nothing is, a template is entered for the next time.
    void issue_templates();
    void enter_new_template();

    // Forms whose opening met the loss of the connection are opened once the server is back.
    [[nodiscard]] bool opens_what_is_missing();

    [[nodiscard]] int below(int count) {
        return static_cast<int>(chance_() % static_cast<std::uint64_t>(count));
    }
    // In cash, or by check.
    void choose_way_of_paying(payments::PaymentForm& form);
    // Answers Yes to what the command asks.
    void press(frame::Form& form, int id);
    // Tells the document as stored when the form has said the message; else what it has said.
    void tell_outcome(const char* what, const std::string& docno, const std::string& message);

    WaitingDesk desk_;
    host::APclass ap_{desk_};
    std::shared_ptr<invoices::APform_invoice> templates_;  // a form of its own: the box stays ticked
    std::mt19937_64 chance_;
    std::function<void(const std::string& line)> tell_;
};

}  // namespace brimley::testing
