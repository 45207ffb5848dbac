// What a vendor is owed: the running balance in Vendor_table, which each document moves when it is saved or
// voided. It is in the vendor's documents' currencies, added up as they are.
#pragma once

#include <string_view>

#include "kernel/module_g3.h"

namespace brimley::kernel {

// What a balance that is null becomes.
enum class NullOwing {
    stays_null,
    change,           // as from 0
    change_reversed,  // with the wrong sign
};

enum class OwingRounding { to_cents, none };

// What the forms do differently.
struct OwingRule {
    NullOwing null_owing;
    OwingRounding rounding = OwingRounding::to_cents;
};

inline constexpr OwingRule kOwingOfSavedInvoice{NullOwing::change};
inline constexpr OwingRule kOwingOfVoidedInvoice{NullOwing::stays_null};
inline constexpr OwingRule kOwingOfPayment{NullOwing::change_reversed};  // saved or voided
inline constexpr OwingRule kOwingOfPrepayment{NullOwing::change};        // saved or voided
inline constexpr OwingRule kOwingOfVoidedCheck{NullOwing::stays_null, OwingRounding::none};

// What a document adds to its vendor's balance; a payment or a credit note adds a negative amount.
struct OwingChange {
    double added = 0;
    double taken_back = 0;  // what the document had added before an edit
};

// Inside the caller's transaction. Does nothing for a vendor that is not in the table. Throws
// store::ErrorKind::locked when another user holds the vendor's row and it is to be changed.
void change_owing_balance(ModuleG3& kernel, std::string_view vendor_no, OwingChange change, OwingRule rule);

}  // namespace brimley::kernel
