// What a void does to the rows of a payment, whichever form voids it.
#pragma once

#include <string>

#include "kernel/module_g3.h"

namespace brimley::payments {

// Marks the header and the lines, in their table, of the payment with this key as void. `void_date` is an
// expression of the store's dialect. Inside the caller's transaction.
void mark_void(kernel::ModuleG3& kernel, const char* lines, const std::string& fkey,
               const std::string& void_date);

// The prepayment with this key waits for no purchase order any more. Inside the caller's transaction.
void give_up_order(kernel::ModuleG3& kernel, const std::string& prepayment_fkey);

}  // namespace brimley::payments
