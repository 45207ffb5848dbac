// The GL document of a generated invoice.
//
// It has an older layout than that of an entered invoice: no "-" in its key, the base ledger whatever its
// currency, no base amounts. The check at the end therefore finds inactive accounts only, and a document that
// does not balance passes.
#pragma once

#include <string>
#include <vector>

#include "invoices/recurring_run/line_taxes.h"
#include "kernel/gl_posting.h"

namespace brimley::invoices {

// An invoice that is being generated, for those who write it and post it.
struct GeneratedInvoice {
    std::string company;
    std::string docno;
    std::string fkey;
    store::DateTime gldate;
    kernel::PeriodOfDate period;
    std::string vendor_no;
    std::string Currency;
    std::string payment_term;  // a term_no
};

// Serves one run.
class GeneratedPosting : public frame::FormPart {
  public:
    explicit GeneratedPosting(frame::Form& form) : FormPart(form), taxes_(form) {}

    // False, after its message if there is one, when the invoice cannot be posted; the caller rolls back.
    [[nodiscard]] bool insert_GL_record(const GeneratedInvoice& invoice,
                                        const std::vector<GeneratedLine>& lines);

  private:
    [[nodiscard]] kernel::GlDocument gl_document(const GeneratedInvoice& invoice) const;
    // The payable account: the vendor's own, whichever the rows of the invoice name. Empty, after its message
    // if there is one, when the vendor has none or the term asks for another account.
    [[nodiscard]] std::string account_of(const GeneratedInvoice& invoice) const;
    [[nodiscard]] bool gather(kernel::GlPosting& posting, const GeneratedLine& line,
                              const std::string& ap_accno);

    LineTaxes taxes_;
};

// The next number of Docno_master_table, after the kind of the document: "ip12". The counter moves on. Empty
// when it could not be taken, or when the year has no such counter.
[[nodiscard]] std::optional<kernel::GlNumber> draw_older_number(kernel::ModuleG3& kernel,
                                                                const std::string& company,
                                                                const std::string& doctype,
                                                                const std::string& fyear);

}  // namespace brimley::invoices
