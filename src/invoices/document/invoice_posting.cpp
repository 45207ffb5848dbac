#include "invoices/document/invoice_posting.h"

#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/tax_accounts.h"

namespace brimley::invoices {

using kernel::money_value;
using kernel::Round;

// The document that is being posted.
struct InvoicePosting::Entry {
    kernel::GlPosting posting;
    std::string ap_accno;
    bool foreign;
    double rate_doc_to_base;
    kernel::AuthorityAccounts authorities;

    void add(const std::string& accno, double amount) {
        posting.add(accno, amount, foreign ? Round(amount * rate_doc_to_base) : amount);
    }
    void add_tax(const std::string& accno, double amount) {
        posting.add(accno, amount, Round(amount * rate_doc_to_base));
    }
};

InvoicePosting::InvoicePosting(APform_invoice& form) : DocumentPart(form), form_(form) {}

bool InvoicePosting::insert_GL_record(const std::string& ap_accno, const std::vector<InvoiceLine>& lines) {
    // The date of a new document has been checked; an edited one may have been stored without one.
    const auto invoice_date = date_in(form_.txtinvdate);
    if (!invoice_date) return fail(no_date(form_.txtinvdate));
    kernel::GlDocument document = gl_document(*invoice_date);
    const double rate = document.rate_doc_to_base.value_or(0);
    Entry entry{{kernel(), kernel::gl_rules(kernel::GlForm::invoice), std::move(document)},
                ap_accno,
                foreign(),
                rate,
                kernel::AuthorityAccounts(kernel())};
    if (!entry.posting.open()) return false;
    for (const InvoiceLine& line : lines) {
        if (!line.pay_item.empty() && !gather_line(entry, line)) return false;
    }
    if (!entry.posting.write_lines() || !entry.posting.write_rounding() || !entry.posting.finish())
        return false;
    form_.txtglfkey.set(entry.posting.fkey());
    return true;
}

bool InvoicePosting::insert_GL_reverse() {
    kernel::GlReversal reversal = gl_reversal();
    reversal.edited = mode() == frame::Mode::edit;
    return kernel::reverse_gl_document(kernel(), kernel::gl_reversal_rules(kernel::GlForm::invoice),
                                       reversal);
}

bool InvoicePosting::gather_line(Entry& entry, const InvoiceLine& line) {
    if (!line.taxable) return refuse("No taxable amount");
    if (!line.gross) return refuse("No gross amount");
    if (line.po_accno.empty()) return refuse("Please specify purchase account");
    // An older word for credit notes; the stored kind is "vcn", so the test never holds and credit notes post
    // like invoices.
    const double side = form_.txtdoctype.text() == "cn" ? -1 : 1;
    entry.add(entry.ap_accno, *line.gross * side);
    entry.add(line.po_accno, *line.taxable * side);
    return line.tax == 0 || gather_taxes(entry, line);
}

bool InvoicePosting::gather_taxes(Entry& entry, const InvoiceLine& line) {
    for (const kernel::TaxRow* row : form_.taxes.tax_rows.of_item(line.pay_item)) {
        if (!gather_tax(entry, *row, line)) return false;
    }
    return true;
}

bool InvoicePosting::gather_tax(Entry& entry, const kernel::TaxRow& row, const InvoiceLine& line) {
    const auto* const accounts = entry.authorities.find(row.authority);
    if (accounts == nullptr) return false;
    const double side = form_.is_credit_note() ? -1 : 1;
    const double tax = money_value(row.tax_amount) * side;
    const double recoverable = money_value(row.recoverable) * side;
    const double expensed = money_value(row.expensed) * side;
    if (recoverable != 0) entry.add_tax(accounts->recoverable.text(), recoverable);
    if (expensed != 0) {
        if (accounts->expense.is_null()) return refuse("No Expensed Tax Account for " + row.authority);
        entry.add_tax(accounts->expense.text(), expensed);
    }
    // What is neither refunded nor expensed goes into the item's cost.
    if (recoverable < tax && expensed == 0) entry.add_tax(line.po_accno, tax - recoverable);
    return true;
}

}  // namespace brimley::invoices
