#include "controls/fields.h"

namespace brimley::controls {

Refusal TextField::type(const std::string& text) {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    set(text);
    if (on_change) on_change();
    acted({.kind = Act::Kind::type, .text = text});
    return Refusal::none;
}

Refusal TextField::press_enter() {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (on_enter) on_enter();
    acted({.kind = Act::Kind::enter});
    return Refusal::none;
}

void TextField::leave() {
    if (on_leave) on_leave();
    acted({.kind = Act::Kind::leave});
}

Refusal CheckBox::click(bool ticked) {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (value_ == (ticked ? 1 : 0)) return Refusal::none;
    set(ticked);
    if (on_click) on_click();
    acted({.kind = ticked ? Act::Kind::tick : Act::Kind::untick});
    return Refusal::none;
}

void OptionButton::group(const std::vector<OptionButton*>& buttons) {
    for (OptionButton* button : buttons)
        button->group_ = buttons;
}

void OptionButton::choose() {
    for (OptionButton* other : group_)
        other->change(other->set_, other == this);
    change(set_, true);
}

Refusal OptionButton::click() {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (set_) return Refusal::none;
    choose();
    if (on_click) on_click();
    acted({.kind = Act::Kind::click});
    return Refusal::none;
}

Refusal PushButton::click() {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (on_click) on_click();
    acted({.kind = Act::Kind::click});
    return Refusal::none;
}

Refusal TabControl::choose(int page) {
    if (!reachable()) return Refusal::hidden;
    if (!enabled()) return Refusal::disabled;
    change(page_, page);
    acted({.kind = Act::Kind::choose_page, .row = page});
    return Refusal::none;
}

Refusal Frame::close() {
    if (!reachable()) return Refusal::hidden;
    if (!enabled()) return Refusal::disabled;
    if (!is_pane()) return Refusal::locked;
    set_visible(false);
    if (on_close) on_close();
    acted({.kind = Act::Kind::close_pane});
    return Refusal::none;
}

}  // namespace brimley::controls
