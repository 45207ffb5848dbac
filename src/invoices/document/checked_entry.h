// What the checks of an entry or an edit have read, for the writing that follows.
#pragma once

#include <optional>
#include <string>

#include "kernel/store/value.h"

namespace brimley::invoices {

struct CheckedEntry {
    std::optional<store::DateTime> due_date, discount_date;
    double period = 0;  // as typed; a whole number unless the user had other plans
    std::string ap_accno;
};

}  // namespace brimley::invoices
