// An engine that ends its process at the n-th call, as a power cut would: nothing is rolled back, closed or
// flushed by anybody.
#pragma once

#include <csignal>
#include <memory>

#include "support/faulty_engine.h"

namespace brimley::testing {

// For open_company. 0: never.
[[nodiscard]] inline store::EngineDecorator killed_at(int nth_call) {
    const auto faults = std::make_shared<Faults>();
    faults->fail_at = nth_call;
    faults->on_fault = [] { static_cast<void>(std::raise(SIGKILL)); };
    return faulty(faults);
}

}  // namespace brimley::testing
