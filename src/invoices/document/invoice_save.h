// The save of a new invoice, debit note or credit note (frame/document_save.h): header, lines, GL document,
// balances and what the vendor is owed, in one transaction or not at all.
#pragma once

#include <string>

#include "frame/document_save.h"
#include "invoices/document/entry_checks.h"

namespace brimley::invoices {

class APform_invoice;

class InvoiceSave : public frame::DocumentSave {
  public:
    explicit InvoiceSave(APform_invoice& form);

  protected:
    [[nodiscard]] bool validate() override;
    void set_doctype() override;
    [[nodiscard]] kernel::ModuleG3::TooLongMessage too_long_message() const override {
        return kernel::ModuleG3::TooLongMessage::text_first;
    }
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;
    void report_success() override;
    [[nodiscard]] std::string failure_message() const override;

  private:
    // What the validation has read, for the writing that follows.
    struct Term {
        std::string term_no;
        store::Value duedays, early_days, early_discount;
    };
    struct Checked {
        Term term;
        store::DateTime invoice_date;
        CheckedEntry entry;
    };
    [[nodiscard]] bool validate_term();
    [[nodiscard]] bool validate_rate() const;
    void fill_terms(store::Recordset& header) const;

    APform_invoice& form_;
    Checked checked_;
};

}  // namespace brimley::invoices
