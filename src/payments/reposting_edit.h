// The edit of a payment whose amount or way of paying may change: the header is rewritten, and when the money
// has moved the GL document is reversed and posted anew, all in one transaction.
#pragma once

#include <string>

#include "frame/document_part.h"
#include "payments/payment_checks.h"

namespace brimley::payments {

class PaymentForm;

class RepostingEdit : public frame::DocumentPart {
  public:
    virtual ~RepostingEdit() = default;

    // True when the edit was saved; it is shown as it was stored then. Every failure has had its message, and
    // nothing of it is left.
    [[nodiscard]] bool Update_record();

  protected:
    explicit RepostingEdit(PaymentForm& form);

    // False after its message.
    [[nodiscard]] virtual bool validate() = 0;
    [[nodiscard]] virtual double payment_amount() const = 0;
    // Inside the transaction, like all that follow.
    // Whether another way of paying or amount has to be posted.
    [[nodiscard]] virtual bool moves_money(const store::Recordset& header) const;
    // Before anything is rewritten.
    virtual void follow_change(const store::Recordset& /*header*/) {}
    // The fields of the header that this kind rewrites; those of a check and the bank's account are done.
    // `moves`: the payment is posted anew.
    virtual void fill_header(store::Recordset& header, bool moves) = 0;
    // What else is stored of the payment, after its header.
    virtual void write_items() {}
    // The new GL document; txtglfkey is its key afterwards.
    [[nodiscard]] virtual bool post() = 0;

    PaymentChecks checks;

  private:
    [[nodiscard]] bool write();
    void fill_common_fields(store::Recordset& header) const;
    [[nodiscard]] bool repost(store::Recordset& header);
    // The account of the bank that the money leaves; empty when it leaves none.
    [[nodiscard]] std::string bank_accno() const;

    PaymentForm& form_;
};

}  // namespace brimley::payments
