// The commands that only the invoice form has; the common ones are in frame/form.h.
#pragma once

namespace brimley::invoices {

inline constexpr int kTaxDetails = 131;
inline constexpr int kTaxSummary = 132;
inline constexpr int kViewInvoice = 1002;
inline constexpr int kViewCreditNote = 1003;
inline constexpr int kViewDebitNote = 1004;
inline constexpr int kViewRecurring = 1005;
inline constexpr int kPayThisInvoice = 1006;
inline constexpr int kPaymentHistory = 1007;
inline constexpr int kVoidInvoice = 1008;
inline constexpr int kHoldInvoice = 1009;
inline constexpr int kReleaseHold = 1010;
inline constexpr int kRecurringConfiguration = 1011;
inline constexpr int kViewAll = 1012;
inline constexpr int kOpenInvoiceOnly = 1013;
inline constexpr int kVendorAddress = 1014;

}  // namespace brimley::invoices
