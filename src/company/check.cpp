#include "company/check.h"

namespace brimley::company {

Findings check_books(store::Database& database) {
    const Books books(database);
    Findings findings;
    for (const auto check : {check_documents_balance,  check_line_numbers,
                             check_ledger_headers,     check_balances,
                             check_period_balances,    check_running_balances,
                             check_account_currencies, check_invoice_documents,
                             check_open_amounts,       check_paid_flags,
                             check_reversals,          check_ledger_owners,
                             check_void_invoices,      check_tax_slots,
                             check_payment_documents,  check_payment_postings,
                             check_payment_amounts,    check_misc_payments,
                             check_misc_postings,      check_named_items,
                             check_paid_items,         check_payable_postings,
                             check_owing_balances,     check_one_line_payments,
                             check_generated_invoices, check_generated_postings,
                             check_revaluations,       check_revaluation_postings,
                             check_document_keys,      check_key_counters,
                             check_number_counters}) {
        check(books, findings);
    }
    return findings;
}

Findings books_notes(store::Database& database) {
    const Books books(database);
    Findings notes;
    note_voided_checks(books, notes);
    note_void_prepayments(books, notes);
    note_edited_prepayments(books, notes);
    note_generated_invoices(books, notes);
    note_revaluations(books, notes);
    return notes;
}

}  // namespace brimley::company
