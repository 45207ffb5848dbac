// The save of a new payment: what the kinds have in common of frame::DocumentSave. Numbers, keys and texts
// are the kind's (PaymentKind), the checks those of payment_checks.h.
#pragma once

#include "frame/document_save.h"
#include "payments/payment_checks.h"

namespace brimley::payments {

class NewPayment : public frame::DocumentSave {
  protected:
    explicit NewPayment(PaymentForm& form);

    void set_doctype() override;
    [[nodiscard]] kernel::ModuleG3::TooLongMessage too_long_message() const override {
        return kernel::ModuleG3::TooLongMessage::number_first;
    }
    // The fields that every kind has, and the stamps.
    void fill_header(store::Recordset& header) override;
    void report_success() override;
    [[nodiscard]] std::string failure_message() const override;

    // Fields of a line that is being added: those that it copies from the header, and its stamps.
    static void copy_header(store::Recordset& line, const store::Recordset& header,
                            std::initializer_list<const char*> fields);
    void stamp_line(store::Recordset& line) const;
    // The line of a payment that has one only: what was open, what is paid, what is left. `ap_docno` names
    // the item; empty when there is none.
    struct OnlyLine {
        double open = 0, pay = 0, balance = 0;
        std::string ap_docno = {};
    };
    void write_only_line(const store::Recordset& header, const OnlyLine& amounts);

    PaymentChecks checks;

  private:
    PaymentForm& form_;
};

}  // namespace brimley::payments
