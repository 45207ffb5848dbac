// The kinds of documents that the invoice form enters, and the words by which tables and fields know them.
#pragma once

namespace brimley::invoices {

struct Kind {
    const char* caption;  // in cmbdoctype
    const char* doctype;  // in tables and keys
};

inline constexpr Kind kInvoice{"Invoice", "ip"};
inline constexpr Kind kDebitNote{"Debit Note", "vdn"};
inline constexpr Kind kCreditNote{"Credit Note", "vcn"};
inline constexpr Kind kKinds[] = {kInvoice, kDebitNote, kCreditNote};

// A template is no document of any kind.
inline constexpr const char* kTemplateDoctype = "recur";

// The `Source` of what is entered here; templates that were generated and other modules have theirs.
inline constexpr const char* kSource = "AP-INVOICE";
inline constexpr const char* kSourceRecurring = "AP-RECUR";
inline constexpr const char* kGeneratedSource = "AP";

}  // namespace brimley::invoices
