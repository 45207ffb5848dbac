#include "invoices/document/owing_balance.h"

#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/owing_balance.h"

namespace brimley::invoices {

using kernel::money_value;

OwingBalance::OwingBalance(APform_invoice& form) : DocumentPart(form), form_(form) {}

double OwingBalance::side() const { return form_.is_credit_note() ? -1 : 1; }

void OwingBalance::document_shown() { old_total = money_value(form_.txttotal.text()); }

void OwingBalance::update_vendor_owing_balance() {
    kernel::change_owing_balance(kernel(), form_.cmbvendor.text(),
                                 {side() * money_value(form_.txttotal.text()), side() * old_total},
                                 kernel::kOwingOfSavedInvoice);
}

void OwingBalance::give_back() {
    kernel::change_owing_balance(kernel(), form_.cmbvendor.text(),
                                 {0 - side() * money_value(form_.txttotal.text())},
                                 kernel::kOwingOfVoidedInvoice);
}

}  // namespace brimley::invoices
