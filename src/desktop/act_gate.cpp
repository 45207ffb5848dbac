#include "desktop/act_gate.h"

namespace brimley::desktop {

using controls::Refusal;

bool ActGate::run(const Act& act) {
    if (closed_) return false;
    Refusal refusal = Refusal::none;
    std::exception_ptr failure;
    static int begun = 0;
    if (depth_ == 0) order_ = ++begun;
    if (depth_ == 0 && on_begin) on_begin();
    ++depth_;
    try {
        refusal = act();
    } catch (...) {
        failure = std::current_exception();
    }
    --depth_;
    if (refusal_ == Refusal::none) refusal_ = refusal;
    if (failure && !failure_) failure_ = failure;
    if (on_acted) on_acted();
    if (failure && on_failure) on_failure(failure);
    if (depth_ == 0 && on_idle) on_idle();
    return refusal == Refusal::none && !failure;
}

void ActGate::reset() {
    refusal_ = Refusal::none;
    failure_ = nullptr;
}

std::string failure_text(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& known) {
        return known.what();
    } catch (...) {
        return "unknown failure";
    }
}

}  // namespace brimley::desktop
