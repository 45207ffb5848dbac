// The report of the forms that print a list of payments.
#pragma once

#include "frame/report_printing.h"

namespace brimley::payments {

// Title and file name are those of another report: see docs/oddities.md.
inline constexpr frame::ReportNames kPaymentListReport{"COMPARATIVE INCOME STATEMENT", "comparative_income",
                                                       "Preview "};

}  // namespace brimley::payments
