// What the GL documents of the forms do differently. The rows, one per form, stand side by side in
// gl_rules.cpp.
//
// Posting (gl_posting.h) and reversal (gl_reversal.h) are each written once and read a row of these tables. A
// form names its row and gives only what belongs to its document: date, amounts, number. A difference
// that the tables lack becomes a column, with a test of the kernel, and not a second routine.
#pragma once

#include "kernel/module_g3.h"

namespace brimley::kernel {

enum class GlForm {
    invoice,
    payment,
    prepayment,
    misc_payment,
    card_payment,
    recurring_run,  // generates invoices from templates, and reverses none
    revaluation,
    journal_entry,
};

// --- posting ---

// In the texts of both tables "{}" stands for a number; a null pointer is a field that is not written.
struct GlTexts {
    GlForm form;
    const char* header_Source;
    const char* header_source_form;
    const char* remark;  // {}: the document's number
    const char* line_Source;
    const char* line_source_form;
};

enum class GlOrder {
    by_account,   // and currency, the base currency first
    as_gathered,  // as each account was first added to
};

// What becomes of an account that Allocation_Account_table spreads over others.
enum class GlAllocation {
    shares,         // it shows the amount going in and out again; the others take their percentages
    whole_amounts,  // each of these lines has the whole amount, so that the document never balances
    ignored,
};

// The exchange rate of a line in foreign currency.
enum class GlRate { of_document, from_amounts };

// The line that takes up what the conversion to base currency lost.
enum class GlRoundingLine {
    none,
    without_rate,
    with_rate,  // the document's, though the line is in base currency
};

// Under which names a line is stored.
enum class GlLineFields {
    current,
    // Year and user as fiscalyear and userid; no account segments, base amount and rate; and every line is
    // one of the base ledger, whatever its currency.
    older,
};

// What the header says beside the document.
enum class GlHeaderFields {
    stamped,      // who made it, and when
    base_ledger,  // neither, but that it belongs to the base ledger
};

struct GlWays {
    GlForm form;
    GlOrder order;
    GlAllocation allocation;
    GlRate rate;
    GlRoundingLine rounding_line;
    GlLineFields line_fields;
    GlHeaderFields header_fields;
    ModuleG3::TooLongMessage too_long;
    std::size_t accounts_max;  // of one document, each currency of an account counting
};

struct GlRules {
    GlTexts texts;
    GlWays ways;
};

// --- reversal ---

struct GlReversalTexts {
    GlForm form;
    // What the header says in its Description; {}: the document's number.
    const char* voided;  // a void that goes into the document itself
    const char* edited;  // an edit that does
    const char* in_new;  // either, into a new document
    const char* remark;  // of a new document; {}: the GL number that is reversed
};

// The outcome of reversing a document without lines.
enum class GlWithoutLines { succeeds, fails };

// How a new document is dated: today.
enum class GlReversalDate { day, day_and_time };

// When the header of a new document is saved, and whether it says who made it and when.
enum class GlReversalHeader { first, last_and_stamped };

// Whether the header of the old document is marked when a new one takes the reverse.
enum class GlOldHeader { marked, untouched };

struct GlReversalWays {
    GlForm form;
    GlWithoutLines without_lines;
    GlReversalDate date;
    GlReversalHeader header;
    GlOldHeader old_header;
    ModuleG3::TooLongMessage too_long;
};

struct GlReversalRules {
    GlTexts names;  // a reversal has the sources and forms of what it reverses
    GlReversalTexts texts;
    GlReversalWays ways;
};

// The rows of a form. Asking for rows that it does not have is a mistake of ours (std::logic_error).
[[nodiscard]] GlRules gl_rules(GlForm form);
[[nodiscard]] GlReversalRules gl_reversal_rules(GlForm form);
// When a check that this form has paid by is voided in the list of checks: it leaves no description.
[[nodiscard]] GlReversalRules gl_rules_of_voided_check(GlForm form);

}  // namespace brimley::kernel
