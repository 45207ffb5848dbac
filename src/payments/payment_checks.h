// The checks that a payment of any kind goes through before it is saved: one message at a time. What they
// read is kept for the save.
#pragma once

#include <functional>
#include <string>

#include "frame/document_part.h"
#include "payments/payment_dates.h"

namespace brimley::payments {

class PaymentForm;

// What the kinds ask differently of the way of paying.
struct WayOfPayingRules {
    const char* no_way;  // the message when none is given
    const char* no_bank = "please specify bank code";
    const char* no_check_number = "please specify check number";
    // Whether the bank is looked for before the number of the check is asked for.
    enum class BankFirst { no, yes } bank_first = BankFirst::no;
    // Whether a check needs a date; one that is given must be a date either way.
    enum class CheckDate { is_required, may_be_missing } check_date = CheckDate::is_required;
};

class PaymentChecks : public frame::DocumentPart {
  public:
    explicit PaymentChecks(PaymentForm& form);

    // --- what was read; valid after the checks have passed ---
    PaymentDates dates;
    std::string accno;  // that the payment is made from: of the cash, of the bank, of the card

    // Forgets what the last save has read.
    void begin();

    // Each false after its message.
    [[nodiscard]] bool payment_date();
    // A foreign payment without a rate has no value in base currency. One that is given must be greater than
    // zero either way.
    enum class NoRate { passes, is_refused };
    [[nodiscard]] bool exchange_rate(NoRate no_rate);
    [[nodiscard]] bool check_date(const char* missing);
    using DocumentPart::currency_is_in_use;
    using DocumentPart::period_is_open;
    // The account of a card; empty after its message.
    using CardAccount = std::function<std::string(const std::string& card)>;
    // Everything that is neither cash nor a check is the name of a card.
    [[nodiscard]] bool way_of_paying(const WayOfPayingRules& rules, const CardAccount& card_account);
    [[nodiscard]] bool way_of_paying(const WayOfPayingRules& rules);

    // A number greater than zero, as a rate must be.
    [[nodiscard]] static bool is_rate(const std::string& text);

  private:
    [[nodiscard]] bool check(const WayOfPayingRules& rules);
    [[nodiscard]] bool check_number(const WayOfPayingRules& rules);
    [[nodiscard]] bool bank();

    PaymentForm& form_;
};

}  // namespace brimley::payments
