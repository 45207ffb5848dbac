// Reversing a GL document: the part that voids and edits of all documents share.
//
//   today lies in the document's period   the reverse goes into the same GL document, after its lines
//   today lies in another                 a new GL document of today's period takes it
//   the form names a period               a new GL document of that period takes it
//
// GL lines are never changed or deleted. What differs between the forms stands in GlReversalRules.
//
// Every reversing line goes to the base-currency ledger, those against lines of the foreign ledger too. There
// is no such balance in a foreign currency, so a foreign document cannot be reversed: posting refuses it.
#pragma once

#include <optional>
#include <string>

#include "kernel/gl_rules.h"
#include "kernel/gl_writing.h"

namespace brimley::kernel {

// What a form says of the reversal that it needs.
struct GlReversal {
    std::string fkey;  // of the GL document; empty: there is none
    std::string company;
    std::string Currency;  // of the document, for a new GL document
    // Of the document, as its form shows them: what today is compared with, as numbers.
    std::string period;
    std::string fyear;
    std::string source_docno;  // the number of the form's document
    std::string user;
    bool edited = false;                    // for an edit, not a void
    std::optional<FiscalPeriod> into = {};  // the period of the reverse; empty: today's
};

// Inside the caller's transaction. False, after its message, if there is one, when the document could not be
// reversed; lets store::Error through.
[[nodiscard]] bool reverse_gl_document(ModuleG3& kernel, const GlReversalRules& rules,
                                       const GlReversal& reversal);

}  // namespace brimley::kernel
