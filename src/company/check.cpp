#include "company/check.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace brimley::company {

namespace {

using Check = void (*)(const Books& books, Findings& findings);

void run(std::initializer_list<Check> checks, const Books& books, Findings& findings) {
    for (const Check check : checks)
        check(books, findings);
}

void add_sums(const Books& books, Findings& findings) {
    run({check_documents_balance,  check_line_numbers,         check_ledger_headers,
         check_balances,           check_period_balances,      check_running_balances,
         check_account_currencies, check_invoice_documents,    check_open_amounts,
         check_paid_flags,         check_invoice_amounts,      check_reversals,
         check_ledger_owners,      check_void_invoices,        check_tax_slots,
         check_payment_documents,  check_payment_postings,     check_payment_amounts,
         check_misc_payments,      check_misc_postings,        check_named_items,
         check_paid_items,         check_payable_postings,     check_owing_balances,
         check_one_line_payments,  check_generated_invoices,   check_generated_postings,
         check_revaluations,       check_revaluation_postings, check_document_keys,
         check_key_counters,       check_number_counters},
        books, findings);
}

void add_rows(const Books& books, Findings& findings) {
    run({check_fields, check_references, check_masters, check_calendar, check_tax_elements, check_item_copies,
         check_numbered_items, check_balance_rows, check_ledger_documents, check_journal_entries,
         check_stamps, check_gaps, check_marks_of_payments, check_templates, check_numbers_of_items,
         check_payment_fields},
        books, findings);
}

}  // namespace

Findings check_sums(store::Database& database) {
    const Books books(database);
    Findings findings;
    add_sums(books, findings);
    return findings;
}

Findings check_books(store::Database& database) {
    const Books books(database);
    Findings findings;
    add_sums(books, findings);
    add_rows(books, findings);
    return findings;
}

Findings check_company(store::Database& database, const store::TrailEntry& sealed) {
    Findings findings = database.faults_of_trail(sealed);
    std::ranges::move(check_books(database), std::back_inserter(findings));
    return findings;
}

Findings books_notes(store::Database& database) {
    const Books books(database);
    Findings notes;
    run({note_voided_checks, note_void_prepayments, note_edited_prepayments, note_generated_invoices,
         note_owing_balances, note_unstored_rows, note_invoice_amounts, note_revaluations},
        books, notes);
    return notes;
}

}  // namespace brimley::company
