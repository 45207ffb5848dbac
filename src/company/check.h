// Proves what a company file can prove: recomputes the books from the documents and compares with what is
// stored.
//
// Each check is a routine of its own that adds one line per finding. All amounts are compared rounded to two
// places; null counts as 0. Every check is linear in the number of rows.
//
// What posting does not keep by design is not a finding: Current Earnings against the income
// statement, `amount` against `base_amount` of the base ledger, movements under a period that names no
// column, the period and the hold of an invoice after an edit, the tax of a line against its slots when an
// authority found no slot. docs/oddities.md lists what is accepted, and what is reported although a form has
// done it.
#pragma once

#include <string>
#include <vector>

#include "company/books.h"
#include "kernel/store/database.h"

namespace brimley::company {

// All checks. Empty when the books agree. Reads inside the caller's ReadingMoment or transaction; throws
// store::Error.
[[nodiscard]] Findings check_books(store::Database& database);
// The same, and before it what the company's trail says, which goes on from what was sealed (number 0:
// nothing was).
[[nodiscard]] Findings check_company(store::Database& database, const store::TrailEntry& sealed = {});
// The first part of check_books: what adds up, belongs together and follows from amounts. The second looks at
// each row for what must stand in it, and asks for documents as whole as the forms store them.
[[nodiscard]] Findings check_sums(store::Database& database);
// Writes what the GL lines come to, and the opening balances, into each balance that differs by a hundredth
// or more, and says what it was: one line a field. Rows that are missing stay missing. Inside the caller's
// transaction, which should take the whole company; throws store::Error.
[[nodiscard]] std::vector<std::string> repair_balances(store::Database& database);
// What looks wrong in the books and is intended: the forms do it. It does not count.
[[nodiscard]] Findings books_notes(store::Database& database);

// Accounts, currencies, terms, taxes, banks and years that other rows name are there; and a master names none
// of them twice.
void check_references(const Books& books, Findings& findings);
void check_masters(const Books& books, Findings& findings);
// Fiscal years and periods follow one another day by day, and a year is as long as its periods.
void check_calendar(const Books& books, Findings& findings);
// The elements of a line's tax are those of its code, tax an amount of the line, and add up to its tax.
void check_tax_elements(const Books& books, Findings& findings);
// A line of a payment repeats what the item that it pays says. Its lines are numbered, and name the accounts
// that they need and no others.
void check_item_copies(const Books& books, Findings& findings);
void check_numbered_items(const Books& books, Findings& findings);
// A GL document of a form says where it comes from and what has become of it; its lines were made with it, or
// with its reverse; rates and vendors of lines follow from the document.
void check_ledger_documents(const Books& books, Findings& findings);
// A journal entry is one of the base currency, and it and what reversed it name each other and cancel out.
void check_journal_entries(const Books& books, Findings& findings);
// A document was made with its first GL document, its lines with the one that it names; lines are on hold
// with their invoice, unless an edit has written them anew.
void check_stamps(const Books& books, Findings& findings);
// An item that no payment names is open in full; an invoice is marked as paid when a payment has named it.
void check_marks_of_payments(const Books& books, Findings& findings);
// Templates have lines, which say who made them; what was issued has the lines of its template.
void check_templates(const Books& books, Findings& findings);
// The items of a document have numbers of their own.
void check_numbers_of_items(const Books& books, Findings& findings);
// A payment has what its way of paying and its currency need, and nothing else.
void check_payment_fields(const Books& books, Findings& findings);
// The rows of Balance_period_table: of this company and one of the ledgers, each once, and a foreign one with
// its empty twin.
void check_balance_rows(const Books& books, Findings& findings);
// What stands in the fields of documents: repeated from their headers and GL documents, never written, always
// written (field_rules.h).
void check_fields(const Books& books, Findings& findings);
// GL documents: base amounts on the debit side equal those on the credit side, and every account is in the
// chart.
void check_documents_balance(const Books& books, Findings& findings);
// Lines of a GL document are numbered 1 to n.
void check_line_numbers(const Books& books, Findings& findings);
// Every GL line belongs to a header. A header may stand alone, unless an invoice names it whose lines do not
// cancel out: a document of amounts that cancel out posts no line.
void check_ledger_headers(const Books& books, Findings& findings);

// Balance_table is the opening balance of an account's first fiscal year plus everything posted since.
void check_balances(const Books& books, Findings& findings);
// Each period column of Balance_period_table is the sum of what was posted to it. Opening balances are taken
// as they stand.
void check_period_balances(const Books& books, Findings& findings);
// The running balances and the year's total of a Balance_period_table row follow from its own columns.
void check_running_balances(const Books& books, Findings& findings);
// Each pair of Account_currency_table has the foreign rows without which nothing can be posted to it.
void check_account_currencies(const Books& books, Findings& findings);

// Invoices and their lines belong together, are void together, and have the GL document that they name. An
// invoice may have no lines when that document has none either: lines that come to 0.00 are not stored.
void check_invoice_documents(const Books& books, Findings& findings);
// An untouched line is open in full, a paid one not at all. Any other one that no payment names lies between.
void check_open_amounts(const Books& books, Findings& findings);
// The lines of an invoice in base currency come to what is taxed and the taxes, or it would not have
// balanced.
void check_invoice_amounts(const Books& books, Findings& findings);
// An invoice is fully paid exactly when all its lines are, and paid when any is.
void check_paid_flags(const Books& books, Findings& findings);
// What a tax slot allocates, recovers and expenses adds up to its tax.
void check_tax_slots(const Books& books, Findings& findings);

// What a reversed GL document of an invoice or a payment has posted is taken back account by account: by
// lines of its own, or by those of the document that says so.
void check_reversals(const Books& books, Findings& findings);
// A GL document of an invoice or a payment is named by it, or reversed, or reverses another.
void check_ledger_owners(const Books& books, Findings& findings);
// A void invoice names a GL document that is reversed, any other one that is not.
void check_void_invoices(const Books& books, Findings& findings);

// Payments and their lines belong together and are void together.
void check_payment_documents(const Books& books, Findings& findings);
// A payment of invoices names a GL document, which is there, and is reversed exactly when the payment is
// void.
void check_payment_postings(const Books& books, Findings& findings);
// Totals follow from the lines, base amounts from rates, balances from what a line takes off its item.
void check_payment_amounts(const Books& books, Findings& findings);
// Miscellaneous payments have lines and are void with them; the header is the sum of the lines, and the tax
// of a line that of its elements.
void check_misc_payments(const Books& books, Findings& findings);
// They have posted to the accounts of their lines and to the cash account what they say.
void check_misc_postings(const Books& books, Findings& findings);
// A line of a payment names an item that is there, unless a later edit has taken it out.
void check_named_items(const Books& books, Findings& findings);
// Open and paid amounts, discounts and write-offs of an item are what its payments say. A void leaves
// discounts and write-offs in the amount paid; an item that an edit has written anew knows nothing of earlier
// payments, but gets back what a later void of them gives.
void check_paid_items(const Books& books, Findings& findings);
// Invoices and payments have posted to payable accounts what their lines come to in base currency.
void check_payable_postings(const Books& books, Findings& findings);
// What is owed to a vendor is what its documents say.
void check_owing_balances(const Books& books, Findings& findings);
// A prepayment has one line, one open item and, while it waits for an order, one row that says so; it counts
// as applied while a payment applies it. A card payment has one line, with what is left of the card's
// balance. What either has posted to the accounts that it names is what its header says.
void check_one_line_payments(const Books& books, Findings& findings);

// A generated invoice has lines that are its own, its template, and a number that makes its key.
void check_generated_invoices(const Books& books, Findings& findings);
// It has one GL document, which has posted to the payable account and to the purchase accounts what its lines
// say, as far as taxes are not mixed in; and a generated GL document has its invoice.
void check_generated_postings(const Books& books, Findings& findings);

// A revaluation has a number of its own, selection rows that say whose items, and items whose gain is what
// they are worth less now; every row has its header.
void check_revaluations(const Books& books, Findings& findings);
// It has posted its summary, which balances, and another GL document takes that back in the next period.
void check_revaluation_postings(const Books& books, Findings& findings);

// What the void of a check in the list of checks has done to what is owed.
void note_voided_checks(const Books& books, Findings& notes);
// Void prepayments that are applied or open, and those that count as applied after the payment was voided.
void note_void_prepayments(const Books& books, Findings& notes);
// Prepayments whose line and vendor know of another amount since an edit.
void note_edited_prepayments(const Books& books, Findings& notes);
// Generated invoices: GL documents that do not balance, lines with another payable account, voids that the
// ledger does not know, keys that repeat; and what balances and vendors leave out.
void note_generated_invoices(const Books& books, Findings& notes);
// What is owed to a vendor where an edit, or rows too small to be stored, may have left a difference.
void note_owing_balances(const Books& books, Findings& notes);
// Invoices of which a row that came to 0.00 was posted to a payable account, and is not stored.
void note_unstored_rows(const Books& books, Findings& notes);
// Invoices with a line below nothing that were edited.
void note_invoice_amounts(const Books& books, Findings& notes);
// Revaluations that have stored other items or selection rows than they have posted.
void note_revaluations(const Books& books, Findings& notes);

// No two documents share a key made from the counter that never restarts.
void check_document_keys(const Books& books, Findings& findings);
// Both counters stand ahead of every number used, and have given no generated document the number of another.
void check_key_counters(const Books& books, Findings& findings);
void check_number_counters(const Books& books, Findings& findings);
// No number is left out between the first and the last one used, and a counter stands right after the last.
void check_gaps(const Books& books, Findings& findings);

}  // namespace brimley::company
