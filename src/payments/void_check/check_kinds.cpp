#include "payments/void_check/check_kinds.h"

#include <algorithm>
#include <iterator>

namespace brimley::payments {

namespace {

using enum VoidDate;
using enum GivesBack;
using enum kernel::GlForm;

constexpr const char* kLines = "Payment_transaction_table";
constexpr const char* kMiscLines = "Payment_misc_transaction_table";
constexpr const char* kQuestion = "Are you sure to void this payment?";
constexpr const char* kQuestionWithCapital = "Are you sure to void this Payment?";

// clang-format off

constexpr CheckKind kKinds[]{
    {"py",  "payment",      "void_payment",            "Payment Entry",       payment,
     kLines,     kQuestion,        "Void check failed",      as_date,   items_and_owing},
    {"pp",  "prepayment",   "void_prepayment",         "A/P Prepayment",      prepayment,
     kLines,     kQuestion,        "Void Prepayment failed", as_digits, waiting_order},
    {"pc",  "credit card",  "void_creditcard_payment", "Credit Card Payment", card_payment,
     kLines,     kQuestionWithCapital, "Void Payment failed",    as_date,   nothing},
    {"mpy", "misc payment", "void_misc_payment",       nullptr,               misc_payment,
     kMiscLines, kQuestionWithCapital, "Void Payment failed",    as_date,   nothing},
};

// clang-format on

constexpr const CheckKind& kMiscKind = kKinds[3];

}  // namespace

const CheckKind& check_kind_of(std::string_view doctype) {
    const auto* const kind = std::ranges::find(kKinds, doctype, &CheckKind::doctype);
    return kind == std::end(kKinds) ? kMiscKind : *kind;
}

const CheckKind* check_kind_listed_as(std::string_view payment_type) {
    const auto* const kind = std::ranges::find(kKinds, payment_type, &CheckKind::payment_type);
    return kind == std::end(kKinds) ? nullptr : kind;
}

}  // namespace brimley::payments
