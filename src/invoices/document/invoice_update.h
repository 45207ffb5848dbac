// Saving an edit: the GL document is reversed and posted anew, the lines are written again, and header and
// vendor follow, in one transaction, or nothing.
//
// A document of another module keeps its lines and its GL document; only what does not touch amounts changes.
#pragma once

#include <optional>

#include "frame/document_part.h"
#include "invoices/document/checked_entry.h"

namespace brimley::invoices {

class APform_invoice;

class InvoiceUpdate : public frame::DocumentPart {
  public:
    explicit InvoiceUpdate(APform_invoice& form);

    [[nodiscard]] bool Update_record();

  private:
    [[nodiscard]] bool made_here() const;
    [[nodiscard]] std::optional<CheckedEntry> validate();
    [[nodiscard]] bool write(const CheckedEntry& entry);
    void fill_header(store::Recordset& header, const CheckedEntry& entry);
    void pass_terms_to_lines(const store::Recordset& header);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
