#include "desktop/button_views.h"

namespace brimley::desktop {

namespace {

Qt::CheckState state_of(int value) {
    constexpr int kGrey = 2;
    if (value == kGrey) return Qt::PartiallyChecked;
    return value == 0 ? Qt::Unchecked : Qt::Checked;
}

}  // namespace

void CheckView::refresh() {
    ButtonView::refresh();
    setCheckState(state_of(model_.value()));
}

void CheckView::nextCheckState() {
    const bool ticked = checkState() != Qt::Checked;
    act([&] { return model_.click(ticked); });
}

OptionView::OptionView(controls::OptionButton& model, ActGate& gate)
    : ButtonView(model, model.caption(), gate), model_(model) {
    setAutoExclusive(false);  // the model knows which belong together
}

void OptionView::refresh() {
    ButtonView::refresh();
    setChecked(model_.is_set());
}

void OptionView::nextCheckState() {
    act([&] { return model_.click(); });
}

void PushView::nextCheckState() {
    act([&] { return model_.click(); });
}

}  // namespace brimley::desktop
