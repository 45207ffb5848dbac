#include "invoices/recurring_run/generated_posting.h"

#include <fmt/format.h>

#include <algorithm>

namespace brimley::invoices {

namespace {

constexpr const char* kCashTerm = "00";

}  // namespace

std::optional<kernel::GlNumber> draw_older_number(kernel::ModuleG3& kernel, const std::string& company,
                                                  const std::string& doctype, const std::string& fyear) {
    const auto number = kernel.next_docno(company, doctype, fyear);
    if (!number) return std::nullopt;
    const std::string docno = doctype + std::to_string(*number);
    return kernel::GlNumber{docno, company + docno};
}

bool GeneratedPosting::insert_GL_record(const GeneratedInvoice& invoice,
                                        const std::vector<GeneratedLine>& lines) {
    kernel::GlDocument document = gl_document(invoice);
    document.number = draw_older_number(kernel(), invoice.company, "gl", invoice.period.fyear);
    if (!document.number) return false;
    kernel::GlPosting posting(kernel(), kernel::gl_rules(kernel::GlForm::recurring_run), std::move(document));
    if (!posting.open()) return false;
    const std::string ap_accno = account_of(invoice);
    if (ap_accno.empty()) return false;
    return std::ranges::all_of(lines,
                               [&](const GeneratedLine& line) { return gather(posting, line, ap_accno); }) &&
           posting.write_lines() && posting.finish();
}

kernel::GlDocument GeneratedPosting::gl_document(const GeneratedInvoice& invoice) const {
    kernel::GlDocument document;
    document.company = invoice.company;
    document.gldate = invoice.gldate;
    document.source_docno = invoice.docno;
    document.Currency = invoice.Currency;
    document.base_currency = context().BASE_CURRENCY;
    document.rate_doc_to_base.reset();
    document.period = invoice.period.period;
    document.fyear = invoice.period.fyear;
    document.user = context().BRIMLEY_USER;
    document.more_line_fields = {{"Month", invoice.period.month}, {"Year", invoice.period.year}};
    return document;
}

std::string GeneratedPosting::account_of(const GeneratedInvoice& invoice) const {
    // Paid at once, it would be charged to a cash account, which nothing here supplies.
    if (invoice.payment_term == kCashTerm) {
        (void)fail(fmt::format("Payment term {} is paid at once, and no cash account is known", kCashTerm));
        return {};
    }
    const std::string ap_accno =
        kernel().look_up_text("Vendor_table", {{"vendor_no", invoice.vendor_no}}, "ap_accno");
    // A payable is meant; the words are the product's.
    if (ap_accno.empty()) tell("Error : Acccount Receivable account for " + invoice.vendor_no + " is empty");
    return ap_accno;
}

// Base amounts are not written, and count as 0 in the balances.
bool GeneratedPosting::gather(kernel::GlPosting& posting, const GeneratedLine& line,
                              const std::string& ap_accno) {
    posting.add(ap_accno, line.gross_amount, 0);
    posting.add(line.po_accno, line.taxable_amount, 0);
    if (line.tax_amount == 0) return true;
    const auto shares = taxes_.shares_of(line);
    if (!shares) return false;
    for (const TaxShare& share : *shares)
        posting.add(share.accno, share.amount, 0);
    return true;
}

}  // namespace brimley::invoices
