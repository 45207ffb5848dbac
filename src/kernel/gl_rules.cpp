#include "kernel/gl_rules.h"

#include <algorithm>
#include <stdexcept>

namespace brimley::kernel {

namespace {

using enum GlForm;
using enum GlOrder;
using enum GlAllocation;
using enum GlRate;
using enum GlRoundingLine;
using enum GlLineFields;
using enum GlHeaderFields;
using enum GlWithoutLines;
using enum GlReversalDate;
using enum GlReversalHeader;
using enum GlOldHeader;
using enum ModuleG3::TooLongMessage;

// clang-format off

constexpr GlTexts kTexts[]{
//   form           header: Source, source_form            remark              lines: Source, source_form
    {invoice,       "AP-INVOICE", "APform_invoice",        "Invoice no. {}",    "AP-INVOICE", "APform_invoice"},
    {payment,       "AP-PAYMENT", "Payment Entry",         "payment no. {}",    "AP-PAYMENT", "APform_payment"},
    {prepayment,    "AP",         "A/P Prepayment",        "prepayment no. {}", "AP-PREPAY",  "APform_prepayment"},
    {misc_payment,  "AP-MISCPAY", "APform_misc_payment",   "payment no. {}",    "AP-MISCPAY", "APform_misc_payment"},
    {card_payment,  "AP-CARD",    "Credit Card Payment",   "Payment no. {}",    "AP-CARD",    "APform_creditcard_payment"},
    {recurring_run, "AP",         nullptr,                 "Invoice no. {}",    "AP",         "APform_invoice"},
    {revaluation,   "AP-REVALUE", "A/P Revaluation",       "A/P Revaluation",   "AP-REVALUE", "A/P Revaluation"},
    {journal_entry, "GL-ENTRY",   "Ledger_entry",          "{}",                "GL-ENTRY",   "Ledger_entry"},
};

constexpr GlWays kWays[]{
//   form           order        allocation     foreign rate  rounding line line fields header       number too long accounts
    {invoice,       by_account,  shares,        of_document,  without_rate, current,    stamped,     text_first,     50},
    {payment,       by_account,  shares,        from_amounts, with_rate,    current,    stamped,     number_first,   51},
    {prepayment,    by_account,  shares,        from_amounts, with_rate,    current,    stamped,     number_first,   51},
    {misc_payment,  by_account,  shares,        from_amounts, with_rate,    current,    stamped,     number_first,   51},
    {card_payment,  by_account,  shares,        from_amounts, with_rate,    current,    stamped,     number_first,   51},
    {recurring_run, as_gathered, ignored,       of_document,  none,         older,      base_ledger, text_first,     50},
    {revaluation,   by_account,  whole_amounts, of_document,  none,         current,    stamped,     text_first,     50},
    {journal_entry, by_account,  shares,        of_document,  none,         current,    stamped,     text_first,     200},
};

constexpr GlReversalTexts kReversalTexts[]{
//   form          void, in the document   edit, in the document   either, in a new one    remark of a new one
    {invoice,      "Void invoice {}",      "Edit invoice {}",      "void invoice {}",      "Reverse GL {}"},
    {payment,      "{}Void payment ",      "{}Edit payment ",      "{}void payment ",      "Reverse GL {}"},
    {prepayment,   "{}Void payment ",      "{}Edit payment ",      "{}void payment ",      "Reverse GL {}"},
    {misc_payment, "{}Void payment ",      "{}Edit payment ",      "{}void payment ",      "Reverse GL {}"},
    {card_payment, "{}Void payment ",      "{}Edit payment ",      "{}void payment ",      "Reverse GL {}"},
    {revaluation,  nullptr,                nullptr,                nullptr,                "Reverse A/P Revaluation {}"},
    {journal_entry, nullptr,              nullptr,                 "Reverse journal entry {}", "Reverse GL {}"},
};

constexpr GlReversalWays kReversalWays[]{
//   form          without lines  dated by      new header        old header  number too long
    {invoice,      succeeds,      day,          first,            marked,     text_first},
    {payment,      fails,         day_and_time, first,            marked,     number_first},
    {prepayment,   fails,         day_and_time, first,            marked,     number_first},
    {misc_payment, fails,         day_and_time, first,            marked,     number_first},
    {card_payment, fails,         day_and_time, first,            marked,     number_first},
    {revaluation,  fails,         day,          last_and_stamped, untouched,  text_first},
    {journal_entry, fails,        day,          last_and_stamped, untouched,  text_first},
};

// clang-format on

template <class Row, std::size_t kRows>
const Row& row_of(const Row (&table)[kRows], GlForm form) {
    const auto* const row = std::ranges::find(table, form, &Row::form);
    if (row == std::end(table)) throw std::logic_error("no GL rules for this form");
    return *row;
}

}  // namespace

GlRules gl_rules(GlForm form) { return {row_of(kTexts, form), row_of(kWays, form)}; }

GlReversalRules gl_reversal_rules(GlForm form) {
    const GlReversalTexts& texts = row_of(kReversalTexts, form);
    return {row_of(kTexts, form), texts, row_of(kReversalWays, form)};
}

GlReversalRules gl_rules_of_voided_check(GlForm form) {
    GlReversalRules rules = gl_reversal_rules(form);
    rules.names.line_source_form = "APform_void_check";
    rules.texts = {form, nullptr, nullptr, nullptr, rules.texts.remark};
    return rules;
}

}  // namespace brimley::kernel
