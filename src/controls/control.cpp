#include "controls/control.h"

#include <algorithm>

namespace brimley::controls {

namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::string upper_case(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

bool same_ignoring_case(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upper(x) == upper(y); });
}

Control::Control(ControlSet& set, std::string name) : set_(set), name_(std::move(name)) {
    set.controls_.push_back(this);
}

ActListener* Control::listener() const { return set_.listener(); }

void Control::acted(Act act) const {
    if (listener() == nullptr) return;
    act.control = name_;
    listener()->acted(act);
}

bool Control::reachable() const {
    return visible_ && !set_.closed() && (container_ == nullptr || container_->reachable());
}

Refusal Control::refusal() const {
    if (!reachable()) return Refusal::hidden;
    if (!enabled_) return Refusal::disabled;
    return locked_ ? Refusal::locked : Refusal::none;
}

Control* ControlSet::find(std::string_view name) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control* control) {
        return same_ignoring_case(control->name(), name);
    });
    return found == controls_.end() ? nullptr : *found;
}

}  // namespace brimley::controls
