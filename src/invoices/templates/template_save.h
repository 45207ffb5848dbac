// Saving a new recurring template: header and lines in one transaction, or nothing.
//
// A template has no date, makes no entry in the ledger and keeps of its taxes the codes and amounts only.
#pragma once

#include <optional>
#include <string>

#include "frame/document_part.h"
#include "invoices/document/lines.h"

namespace brimley::invoices {

class APform_invoice;

class TemplateSave : public frame::DocumentPart {
  public:
    explicit TemplateSave(APform_invoice& form);

    // True when the template was saved. A failure leaves nothing behind. One that is foreseen has its own
    // message, or none; what the store has refused, such as a quote in an account, is reported in its own
    // words.
    [[nodiscard]] bool insert_new_recurring();

  private:
    struct Checked {
        double recur_date = 0;                            // day of the month; 31: its last; 0: issued by hand
        std::optional<std::string> begin_date, end_date;  // "yyyymmdd"
    };
    [[nodiscard]] std::optional<Checked> validate();
    // Null when there is none.
    [[nodiscard]] const char* fault_of_terms() const;
    [[nodiscard]] const char* fault_of_issue() const;
    [[nodiscard]] bool read_date(const controls::DateField& field, const char* missing, bool required,
                                 std::optional<std::string>& yyyymmdd);
    [[nodiscard]] bool write(const Checked& checked);
    void fill_header(store::Recordset& header, const Checked& checked);
    [[nodiscard]] bool write_line(store::Recordset& lines, const store::Recordset& header,
                                  const InvoiceLine& line);

    APform_invoice& form_;
};

}  // namespace brimley::invoices
