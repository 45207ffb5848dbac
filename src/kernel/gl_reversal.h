// Reversing a GL document: the part that voids and edits of all documents share.
//
//   today lies in the document's period   the reverse goes into the same GL document, behind its lines
//   today lies in another                 a new GL document of today takes it
//
// GL lines are never changed or deleted. What differs between the kinds of documents stands in GlReversal.
//
// Every reversing line goes to the base-currency ledger, those against lines of the foreign ledger too. There
// is no such balance in a foreign currency, so a foreign document cannot be reversed: posting refuses it.
#pragma once

#include "kernel/gl_writing.h"

namespace brimley::kernel {

// What a form tells of the reversal that it needs.
struct GlReversal {
    std::string fkey;  // of the GL document; empty: there is none
    std::string company;
    std::string Currency;  // of the document, for a new GL document
    // Of the document, as its form shows them: what today is compared with, as numbers.
    std::string period;
    std::string fyear;
    GlOrigin origin;
    // What the header says in its Description: of the document itself, or of a new one.
    std::string description_in_same;
    std::string description_in_new;
    bool result_without_lines = true;  // for a document that has posted nothing

    // --- what payments do differently ---
    std::string source_form_in_new;  // of a new document's header; empty: that of the lines
    bool new_has_time = false;       // a new document is dated with the time of day
};

// Inside the caller's transaction. False, after its message, if there is one, when the document could not be
// reversed; lets store::Error through.
[[nodiscard]] bool reverse_gl_document(ModuleG3& kernel, const GlReversal& reversal);

}  // namespace brimley::kernel
