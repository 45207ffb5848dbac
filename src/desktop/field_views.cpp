#include "desktop/field_views.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace brimley::desktop {

using controls::Refusal;

namespace {

bool is_enter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

bool moved_on(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

// --- lines of text ---
EntryView::EntryView(controls::Control& control, ActGate& gate) : control_(control), gate_(gate) {
    connect(this, &QLineEdit::textEdited, this, [this] { typed_since_entered_ = true; });
}

void EntryView::refresh() {
    show_state(*this, control_);
    show_face(*this, control_);
    setReadOnly(control_.locked());
    show_whether_open(*this, !control_.locked());
    if (text() != shown(model_text())) {
        setText(shown(model_text()));
        if (!hasFocus()) setCursorPosition(0);
    }
    setModified(false);
}

void EntryView::commit() {
    if (!isModified()) return;
    setModified(false);
    const std::string text_typed = typed(text());
    gate_.run([&] { return type_into_model(text_typed); });
    refresh();  // a refusal leaves the model as it was
}

void EntryView::put_typed(const QString& text) {
    setText(text);
    put_completed();
}

void EntryView::put_completed() {
    setModified(true);
    typed_since_entered_ = true;
}

void EntryView::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (!moved_on(*event)) return;
    typed_since_entered_ = false;
    just_focused_ = selects_on_focus_ && event->reason() == Qt::MouseFocusReason;
    if (selects_on_focus_) selectAll();
}

// The click that brings the focus would take the selection away again.
void EntryView::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (just_focused_ && !hasSelectedText()) selectAll();
    just_focused_ = false;
}

void EntryView::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (!moved_on(*event)) return;
    commit();
    if (!typed_since_entered_) return;
    typed_since_entered_ = false;
    gate_.run([&] {
        leave_model();
        return Refusal::none;
    });
}

void EntryView::press_enter() {
    commit();
    typed_since_entered_ = false;
    if (!isReadOnly()) gate_.run([&] { return enter_model(); });
    focusNextPrevChild(true);
}

void EntryView::keyPressEvent(QKeyEvent* event) {
    if (is_enter(*event)) {
        press_enter();
        return;
    }
    if (event->key() == Qt::Key_Escape && isModified()) {
        refresh();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

Refusal EntryView::found_by_user() const {
    const Refusal found = state_found(*this);
    return found == Refusal::none && isReadOnly() ? Refusal::locked : found;
}

// --- notes ---
NoteView::NoteView(controls::TextField& model, ActGate& gate) : model_(model), gate_(gate) {
    setTabChangesFocus(true);
}

void NoteView::refresh() {
    show_state(*this, model_);
    show_face(*this, model_);
    setReadOnly(model_.locked());
    show_whether_open(*this, !model_.locked());
    if (toPlainText() != shown(model_.text())) setPlainText(shown(model_.text()));
    document()->setModified(false);
}

void NoteView::commit() {
    if (!document()->isModified()) return;
    document()->setModified(false);
    const std::string text_typed = typed(toPlainText());
    gate_.run([&] { return model_.type(text_typed); });
    refresh();
}

void NoteView::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    if (!moved_on(*event) || !document()->isModified()) return;
    commit();
    gate_.run([&] {
        model_.leave();
        return Refusal::none;
    });
}

Refusal NoteView::found_by_user() const {
    const Refusal found = state_found(*this);
    return found == Refusal::none && isReadOnly() ? Refusal::locked : found;
}

// --- boxes ---
CheckView::CheckView(controls::CheckBox& model, ActGate& gate)
    : QCheckBox(shown(model.caption())), model_(model), gate_(gate) {}

void CheckView::refresh() {
    show_state(*this, model_);
    show_face(*this, model_);
    show_whether_open(*this, !model_.locked());
    setCheckState(model_.value() == 0   ? Qt::Unchecked
                  : model_.value() == 2 ? Qt::PartiallyChecked
                                        : Qt::Checked);
}

// The click asks the model for the other state and shows what came of it.
void CheckView::nextCheckState() {
    const bool ticked = checkState() != Qt::Checked;
    gate_.run([&] { return model_.click(ticked); });
    refresh();
}

void CheckView::keyPressEvent(QKeyEvent* event) {
    if (is_enter(*event)) {
        focusNextPrevChild(true);
    } else {
        QCheckBox::keyPressEvent(event);
    }
}

Refusal CheckView::found_by_user() const {
    const Refusal found = state_found(*this);
    return found == Refusal::none && !looks_open(*this) ? Refusal::locked : found;
}

OptionView::OptionView(controls::OptionButton& model, ActGate& gate)
    : QRadioButton(shown(model.caption())), model_(model), gate_(gate) {
    setAutoExclusive(false);  // which belong together is the model's to say
}

void OptionView::refresh() {
    show_state(*this, model_);
    show_whether_open(*this, !model_.locked());
    setChecked(model_.is_set());
}

void OptionView::nextCheckState() {
    gate_.run([&] { return model_.click(); });
    refresh();
}

void OptionView::keyPressEvent(QKeyEvent* event) {
    if (is_enter(*event)) {
        focusNextPrevChild(true);
    } else {
        QRadioButton::keyPressEvent(event);
    }
}

Refusal OptionView::found_by_user() const {
    const Refusal found = state_found(*this);
    return found == Refusal::none && !looks_open(*this) ? Refusal::locked : found;
}

// --- what is only looked at ---
LabelView::LabelView(controls::Label& model) : model_(model) {}

void LabelView::refresh() {
    show_state(*this, model_);
    show_face(*this, model_);
    setText(shown(model_.caption()));
}

ProgressView::ProgressView(controls::ProgressBar& model) : model_(model) { setRange(0, 100); }

void ProgressView::refresh() {
    show_state(*this, model_);
    setValue(model_.value());
}

}  // namespace brimley::desktop
