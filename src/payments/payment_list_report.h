// The report of the forms that print a list of payments.
#pragma once

#include "frame/report_printing.h"

namespace brimley::payments {

// Title and file are those of another report: the forms have carried them from the beginning.
inline constexpr frame::ReportNames kPaymentListReport{"COMPARATIVE INCOME STATEMENT", "comparative_income"};

}  // namespace brimley::payments
