// The GL document of a payment, and its reversal: what the kinds have in common. What each kind posts is
// gathered by the kind itself.
#pragma once

#include <functional>
#include <string>

#include "frame/document_part.h"

namespace brimley::payments {

class PaymentForm;

class PaymentLedger : public frame::DocumentPart {
  public:
    explicit PaymentLedger(PaymentForm& form);

    // Adds the amounts of a payment to its GL document; false after its message.
    using Gather = std::function<bool(kernel::GlPosting& posting)>;

    // Writes the GL document of the payment on screen; afterwards txtglfkey is its key. `vendor_no` goes on
    // the line for what conversion lost. Inside the caller's transaction; false after its message, if there
    // is one.
    [[nodiscard]] bool insert_GL_record(const std::string& vendor_no, const Gather& gather);
    // Adds an amount in the payment's own currency, at its own rate.
    void add(kernel::GlPosting& posting, const std::string& accno, double amount) const;
    // The amount on the account that it is paid from: cash and bank have less, a card's account more to pay.
    void add_paid_from(kernel::GlPosting& posting, const std::string& accno, double amount) const;
    // Reverses the GL document in txtglfkey. Inside the caller's transaction, with the same result.
    [[nodiscard]] bool insert_GL_reverse();

  private:
    PaymentForm& form_;
};

}  // namespace brimley::payments
