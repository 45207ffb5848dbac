// The way of paying of a payment: cash, check or card, the fields that each of them needs, and the account
// behind it. Which of the fields must be filled, and the message when they are not, is each form's own.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/document_part.h"

namespace brimley::payments {

class PaymentForm;

class PayBy : public frame::DocumentPart {
  public:
    explicit PayBy(PaymentForm& form);

    // The lists of ways, cash accounts and banks; fetched when somebody looks at them.
    void fill();
    void cmbpayby_ItemSelect();
    // A card names its account itself and hides the bank.
    void show_bank();
    // The fields of a check are read only.
    void lock_check();
    // A new payment by check: its fields are open, its date is today.
    void begin_check();

    [[nodiscard]] bool is_cash() const;
    [[nodiscard]] bool is_check() const;
    // The money leaves a bank: by check, or in cash when no cash account was chosen.
    [[nodiscard]] bool is_by_bank() const;
    // Everything that is neither cash nor a check is the name of a card.
    [[nodiscard]] bool is_by_card() const { return !is_cash() && !is_check(); }
    // The name of the card that the payment is by; empty for every other way.
    [[nodiscard]] std::optional<std::string> card() const;

    // The account of the bank code on screen; empty when there is no such bank.
    [[nodiscard]] std::optional<std::string> bank_account() const;
    // The message for a card that has none.
    [[nodiscard]] static std::string no_card_account(const std::string& card);
    // The account that collects what is paid by the card; empty, after its message, when there is none.
    [[nodiscard]] std::string card_account(const std::string& card) const;

  private:
    [[nodiscard]] std::vector<std::vector<std::string>> ways() const;

    PaymentForm& form_;
};

}  // namespace brimley::payments
