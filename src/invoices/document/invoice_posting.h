// The GL document of an invoice, from its lines and tax rows, and its reversal.
//
// Amounts are as on the document, signed on each account's own side: gross on the payable account, taxable on
// the purchase account, taxes on the accounts of their authorities. Both run inside the transaction of the
// save, the edit or the void; false after their message, if there is one.
#pragma once

#include <string>
#include <vector>

#include "frame/document_part.h"
#include "invoices/document/lines.h"
#include "kernel/tax_engine.h"

namespace brimley::invoices {

class APform_invoice;

class InvoicePosting : public frame::DocumentPart {
  public:
    explicit InvoicePosting(APform_invoice& form);

    // Afterwards txtglfkey is the key of the GL document.
    [[nodiscard]] bool insert_GL_record(const std::string& ap_accno, const std::vector<InvoiceLine>& lines);
    // Of the GL document in txtglfkey, if there is one.
    [[nodiscard]] bool insert_GL_reverse();

  private:
    struct Entry;
    [[nodiscard]] bool gather_line(Entry& entry, const InvoiceLine& line);
    [[nodiscard]] bool gather_taxes(Entry& entry, const InvoiceLine& line);
    [[nodiscard]] bool gather_tax(Entry& entry, const kernel::TaxRow& row, const InvoiceLine& line);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
