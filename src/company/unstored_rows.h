// Rows of an invoice whose gross amount comes to 0.00: they are posted and not stored.
//
// Charged to a payable account, such a row leaves a cent there, to which less than a cent is rounded at the
// rate of the invoice. Only the rounding line of a foreign invoice lets that balance.
#pragma once

#include "company/books.h"

namespace brimley::company {

// Whether they may have posted this to payable accounts, in base currency.
[[nodiscard]] bool unstored_rows_make(double posted, const ApHeader& invoice, const Books& books);

}  // namespace brimley::company
