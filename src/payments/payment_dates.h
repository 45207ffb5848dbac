// The dates of a payment, as its checks have read them.
#pragma once

#include <optional>

#include "kernel/store/value.h"

namespace brimley::payments {

struct PaymentDates {
    store::DateTime payment;
    std::optional<store::DateTime> check;  // of a check only
    std::optional<store::DateTime> rate;
};

}  // namespace brimley::payments
