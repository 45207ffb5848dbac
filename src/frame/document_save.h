// The save of a new document: checks, then header, lines, GL document and what follows from them in one
// transaction, with one landing place.
//
//   validate        one message at a time; nothing is written before it ends
//   draw number     txtdocno and txtfkey are the new document's from here on
//   fill_header     into the row that is being added
//   write_lines     before the header row is written, which they may copy from, or after it (header_row)
//   post            the GL document, balances, the vendor
//   GLFKEY          into the header
//
// A failure leaves nothing behind, counters included, and the form is on "** New **" again.
#pragma once

#include "frame/document_part.h"

namespace brimley::frame {

class DocumentSave : public DocumentPart {
  public:
    virtual ~DocumentSave() = default;

    // True when the document was saved. Every failure has had its message.
    [[nodiscard]] bool insert_new_record();

  protected:
    explicit DocumentSave(DocumentForm& form) : DocumentPart(form), form_(form) {}

    // False after its message. It keeps what it has read for the steps after it.
    [[nodiscard]] virtual bool validate() = 0;
    // Sets txtdoctype.
    virtual void set_doctype() = 0;
    [[nodiscard]] virtual kernel::ModuleG3::TooLongMessage too_long_message() const = 0;
    virtual void fill_header(store::Recordset& header) = 0;
    // When the header row is written. Lines that copy from it are written before it is.
    enum class HeaderRow { after_lines, before_lines };
    [[nodiscard]] virtual HeaderRow header_row() const { return HeaderRow::after_lines; }
    [[nodiscard]] virtual bool write_lines(store::Recordset& header) = 0;
    // txtglfkey is the key of the GL document afterwards. Inside the transaction, like the three before it.
    [[nodiscard]] virtual bool post() = 0;
    virtual void report_success() = 0;
    [[nodiscard]] virtual std::string failure_message() const = 0;

  private:
    [[nodiscard]] bool write();
    void return_to_new();

    DocumentForm& form_;
};

}  // namespace brimley::frame
