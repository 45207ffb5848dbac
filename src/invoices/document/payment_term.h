// The payment term of the document on screen: cmbterm, its days, and the dates that follow from it.
#pragma once

#include <optional>
#include <string>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

// The dates that follow from a term and the date of a document.
struct TermDates {
    std::optional<store::DateTime> due;       // empty for a term without a due date
    std::optional<store::DateTime> discount;  // empty for a term without early days
};
// `term` stands on a row of Payment_term_table.
[[nodiscard]] TermDates term_dates(const store::Recordset& term, store::DateTime document_date);

class PaymentTerm : public frame::DocumentPart {
  public:
    explicit PaymentTerm(APform_invoice& form);

    // The list below the field.
    void fill();
    // The default one, when none is chosen.
    void take_default();
    // By its code: the list is not fetched for that.
    void show(const std::string& term_no);
    void cmbterm_ItemSelect();
    // The row of the term that is chosen. Empty, after its message, when there is no such term.
    [[nodiscard]] std::optional<store::Recordset> chosen() const;

  private:
    void compute_dates(const store::Recordset& term);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
