// The rows of a document's lines in AP_transaction_table: written for a new document, and again for an edited
// one. Inside the transaction of its save; false after a message, if there is one.
#pragma once

#include <string>
#include <vector>

#include "frame/document_part.h"
#include "invoices/document/lines.h"

namespace brimley::invoices {

class APform_invoice;

class LineWriter : public frame::DocumentPart {
  public:
    explicit LineWriter(APform_invoice& form);

    // A row that has only a description belongs to the line before it.
    [[nodiscard]] bool insert_new_record_transaction(store::Recordset& header,
                                                     const std::vector<InvoiceLine>& lines,
                                                     const std::string& ap_accno);

  private:
    [[nodiscard]] bool write_line(store::Recordset& rows, store::Recordset& header, const InvoiceLine& line,
                                  const std::string& ap_accno);
    static void append_description(store::Recordset& rows, const std::string& description);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
