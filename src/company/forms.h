// The names of the forms, as User_right_table and Form_property_table know them.
#pragma once

namespace brimley::company {

inline constexpr const char* kForms[] = {
    "APform_invoice",
    "APform_payment",
    "APform_prepayment",
    "APform_misc_payment",
    "APform_creditcard_payment",
    "APform_void_check",
    "APreport_recur_inquiry",
    "APform_revalue",
    "APreport_aging",
    "APreport_inquiry",
    "APreport_payhistory",
};

// Forms that let whoever has every right write, and whoever has a right of their own on them; so do masters.
inline constexpr const char* kFormsOfAdministrators[] = {"Ledger_entry"};

}  // namespace brimley::company
