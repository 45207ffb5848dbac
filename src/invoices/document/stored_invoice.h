// The stored rows of the document on screen, as acts on it change them. All of it runs inside the caller's
// transaction.
#pragma once

#include <functional>
#include <optional>

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class StoredInvoice : public frame::DocumentPart {
  public:
    explicit StoredInvoice(APform_invoice& form);

    // The header, in edit. Nothing, after its message, when it is gone.
    [[nodiscard]] std::optional<store::Recordset> take_header();
    // False when another desk has posted it anew since it was shown here.
    [[nodiscard]] bool posted_as_shown(const store::Recordset& header) const;
    void each_line(const std::function<void(store::Recordset& line)>& change);

  private:
    APform_invoice& form_;
};

}  // namespace brimley::invoices
