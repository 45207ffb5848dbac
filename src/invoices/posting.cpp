// The GL document of an invoice, from the grid and the tax rows on screen, and its reversal, inside the
// transaction of the save, the edit or the void.
#include <fmt/format.h>

#include <map>
#include <optional>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using kernel::money_value;
using kernel::Round;
using store::quoted;

// The accounts of tax authorities, each looked up once a document.
class APform_invoice::AuthorityAccounts {
  public:
    struct Accounts {
        store::Value recoverable;
        store::Value expense;
    };
    explicit AuthorityAccounts(kernel::ModuleG3& kernel) : kernel_(kernel) {}

    // Null for an authority that is not known.
    const Accounts* find(const std::string& authority) {
        const auto known = known_.find(authority);
        if (known != known_.end()) return known->second ? &*known->second : nullptr;
        const auto row = kernel_.read(fmt::format(
            "SELECT acc_recoverable, acc_expense FROM Tax_authority_table WHERE tax_authority = {}",
            quoted(authority)));
        std::optional<Accounts> accounts;
        if (!row.at_eof()) accounts = Accounts{row.field("acc_recoverable"), row.field("acc_expense")};
        const auto added = known_.emplace(authority, std::move(accounts)).first;
        return added->second ? &*added->second : nullptr;
    }

  private:
    kernel::ModuleG3& kernel_;
    std::map<std::string, std::optional<Accounts>> known_;
};

double APform_invoice::rounded_base(double amount, double rate) const {
    return foreign() ? Round(amount * rate) : amount;
}

bool APform_invoice::insert_GL_record(const std::string& ap_accno) {
    // A new document has been asked for its date; an edited one may have been stored without.
    const auto invoice_date = kernel::try_user_date(txtinvdate.text(), context().BRIMLEY_DATE_FORMAT);
    if (!invoice_date) return false;
    kernel::GlDocument document = gl_document(*invoice_date);
    const double rate = document.rate_doc_to_base.value_or(0);
    kernel::GlPosting posting(kernel(), kernel::gl_rules(kernel::GlForm::invoice), std::move(document));
    const bool posted = posting.open() && gather_amounts(posting, ap_accno, rate) && posting.write_lines() &&
                        posting.write_rounding() && posting.finish();
    if (posted) txtglfkey.set(posting.fkey());
    return posted;
}

bool APform_invoice::insert_GL_reverse() {
    kernel::GlReversal reversal = gl_reversal();
    reversal.edited = mode() == frame::Mode::edit;
    return kernel::reverse_gl_document(kernel(), kernel::gl_reversal_rules(kernel::GlForm::invoice),
                                       reversal);
}

bool APform_invoice::gather_amounts(kernel::GlPosting& posting, const std::string& ap_accno, double rate) {
    // The word of old for credit notes; the stored kind is "vcn", so it never holds and credit notes post
    // like invoices.
    const double credit_note_side = txtdoctype.text() == "cn" ? -1 : 1;
    AuthorityAccounts authorities(kernel());
    for (int row = 0; row <= line_rows; ++row) {
        const std::string pay_item = dbgrid1.cell(row, "pay item");
        if (pay_item.empty()) continue;
        const std::string po_accno = dbgrid1.cell(row, "purchase account");
        const char* missing = dbgrid1.cell(row, "taxable amount").empty() ? "No taxable amount"
                              : dbgrid1.cell(row, "gross amount").empty() ? "No gross amount"
                              : po_accno.empty()                          ? "Please specify purchase account"
                                                                          : nullptr;
        if (missing != nullptr) {
            tell(missing);
            return false;
        }
        const double gross = cell_money(row, "gross amount") * credit_note_side;
        const double taxable = cell_money(row, "taxable amount") * credit_note_side;
        posting.add(ap_accno, gross, rounded_base(gross, rate));
        posting.add(po_accno, taxable, rounded_base(taxable, rate));
        if (cell_money(row, "tax amount") != 0 &&
            !gather_taxes(posting, pay_item, po_accno, rate, authorities))
            return false;
    }
    return true;
}

bool APform_invoice::gather_taxes(kernel::GlPosting& posting, const std::string& pay_item,
                                  const std::string& po_accno, double rate, AuthorityAccounts& authorities) {
    const double side = cmbdoctype.text() == kCreditNote.caption ? -1 : 1;
    for (const kernel::TaxRow* row : taxes.tax_rows.of_item(pay_item)) {
        const auto* accounts = authorities.find(row->authority);
        if (accounts == nullptr) return false;
        const double tax = money_value(row->tax_amount) * side;
        const double recoverable = money_value(row->recoverable) * side;
        const double expensed = money_value(row->expensed) * side;
        if (recoverable != 0)
            posting.add(accounts->recoverable.text(), recoverable, Round(recoverable * rate));
        if (expensed != 0) {
            if (accounts->expense.is_null()) {
                tell("No Expensed Tax Account for " + row->authority);
                return false;
            }
            posting.add(accounts->expense.text(), expensed, Round(expensed * rate));
        }
        // What is neither refunded nor expensed goes into the item's cost.
        if (recoverable < tax && expensed == 0) {
            posting.add(po_accno, tax - recoverable, Round((tax - recoverable) * rate));
        }
    }
    return true;
}

}  // namespace brimley::invoices
