// What the void of a check does differently for each kind of payment. The rows stand side by side in
// check_kinds.cpp.
#pragma once

#include <string_view>

#include "kernel/gl_rules.h"

namespace brimley::payments {

// How the day of the void is written: as a date, or as the text "yyyymmdd".
enum class VoidDate { as_date, as_digits };

// What is undone of the payment, besides its GL document.
enum class GivesBack {
    nothing,
    items_and_owing,  // the items that it paid; the owing balance goes down once more
    waiting_order,    // a prepayment no longer waits for its purchase order
};

struct CheckKind {
    const char* doctype;
    const char* payment_type;  // in the list
    const char* routine;       // that voids it
    const char* request;       // that opens the payment; null when none does
    kernel::GlForm gl_form;
    const char* lines;  // their table
    const char* question;
    const char* failure;
    VoidDate void_date;
    GivesBack gives_back;
};

// Every other doctype counts as a miscellaneous payment.
[[nodiscard]] const CheckKind& check_kind_of(std::string_view doctype);
// Null when no check is listed under this type.
[[nodiscard]] const CheckKind* check_kind_listed_as(std::string_view payment_type);

}  // namespace brimley::payments
