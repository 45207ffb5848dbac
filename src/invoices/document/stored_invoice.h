// The stored rows of the document on screen, for a change: its header and its lines. Inside the transaction
// of whoever changes them.
#pragma once

#include <functional>
#include <optional>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class StoredInvoice : public frame::DocumentPart {
  public:
    explicit StoredInvoice(APform_invoice& form);

    // On its header, or at the end when it is gone.
    [[nodiscard]] store::Recordset header() const;
    // The header, in edit. Empty, after its message, when it is gone.
    [[nodiscard]] std::optional<store::Recordset> take_header() const;
    // False when another desk has posted it again since it was shown here.
    [[nodiscard]] bool posted_as_shown(const store::Recordset& header) const;
    void each_line(const std::function<void(store::Recordset& line)>& change) const;
    void delete_lines() const;

  private:
    APform_invoice& form_;
};

}  // namespace brimley::invoices
