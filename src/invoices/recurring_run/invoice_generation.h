// The run that turns marked templates into invoices with their GL documents: all of them in one transaction,
// or none.
//
// It writes the tables under an older set of field names, and its numbers come from Docno_master_table alone.
// What the vendor is owed and how often a template was issued stay as they are.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "invoices/recurring_run/generated_posting.h"

namespace brimley::invoices {

// A row of the list that is marked.
struct MarkedTemplate {
    std::string fkey;
    std::string vendor_no;
    std::string due_date;  // as the user reads it
};

class InvoiceGeneration : public frame::FormPart {
  public:
    InvoiceGeneration(frame::Form& form, controls::ProgressBar& progress)
        : FormPart(form), form_(form), progress_(progress) {}

    // True when all are stored. A failure leaves nothing, counters included; what is wrong with a template
    // has had its message, if it has one.
    [[nodiscard]] bool generate(const std::vector<MarkedTemplate>& marked);
    // The host gets turns during the run.
    [[nodiscard]] bool is_running() const { return running_; }

  private:
    struct Run;
    [[nodiscard]] bool generate_all(const std::vector<MarkedTemplate>& marked);
    [[nodiscard]] bool generate_invoice(Run& run, const MarkedTemplate& row);
    [[nodiscard]] bool find_payable_account(Run& run, const std::string& vendor_no) const;
    [[nodiscard]] std::optional<GeneratedInvoice> begin_invoice(const MarkedTemplate& row,
                                                                const store::Recordset& recurring) const;
    static void add_header(Run& run, const GeneratedInvoice& invoice, const store::Recordset& recurring);
    [[nodiscard]] std::vector<GeneratedLine> add_lines(Run& run, const GeneratedInvoice& invoice,
                                                       const std::string& template_fkey) const;
    void note_progress(std::size_t done, std::size_t of) const;

    frame::Form& form_;
    controls::ProgressBar& progress_;
    bool running_ = false;
};

}  // namespace brimley::invoices
