// The save of an edit: the GL document is reversed and posted again, the lines are written again, and header
// and vendor follow, in one transaction or not at all.
//
// A document of another module keeps its lines and its GL document; only what does not touch amounts changes.
#pragma once

#include <optional>

#include "frame/document_part.h"
#include "invoices/document/entry_checks.h"

namespace brimley::invoices {

class APform_invoice;

class InvoiceUpdate : public frame::DocumentPart {
  public:
    explicit InvoiceUpdate(APform_invoice& form);

    // True when the edit was saved. Every failure has had its message, except a template's, which cannot be
    // saved this way.
    [[nodiscard]] bool Update_record();

  private:
    [[nodiscard]] std::optional<CheckedEntry> validate();
    [[nodiscard]] bool write(const CheckedEntry& entry);
    [[nodiscard]] bool made_here() const;
    void fill_header(store::Recordset& header, const CheckedEntry& entry) const;
    [[nodiscard]] bool write_lines_anew(store::Recordset& header, const CheckedEntry& entry);
    void pass_terms_to_lines(const store::Recordset& header);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
