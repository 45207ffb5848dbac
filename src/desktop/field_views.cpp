#include "desktop/field_views.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

namespace brimley::desktop {

using controls::Refusal;

namespace {

constexpr int kMarkHeight = 3;  // pixels

}  // namespace

bool moved_on(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

// --- lines of text ---
EntryView::EntryView(controls::Control& control, Entry entry, ActGate& gate)
    : control_(control), entry_(std::move(entry)), gate_(gate) {
    connect(this, &QLineEdit::textEdited, this, [this] { typed_since_entered_ = true; });
}

void EntryView::refresh() {
    show_state(*this, control_);
    show_face(*this, control_);
    setReadOnly(control_.locked());
    show_whether_open(*this, !control_.locked());
    if (const QString wanted = shown(entry_.text()); text() != wanted) {
        setText(wanted);
        if (!hasFocus()) setCursorPosition(0);
    }
    setModified(false);
}

bool EntryView::commit() {
    if (!isModified()) return true;
    setModified(false);
    const std::string text_typed = typed(text());
    gate_.run([&] { return entry_.type(text_typed); });
    refresh();  // a refusal leaves the model as it was
    return true;
}

void EntryView::show_mark(const QString& text) {
    if (is_marked_ == text.isEmpty()) update();
    is_marked_ = !text.isEmpty();
    setToolTip(text);
    setAccessibleDescription(text);
}

void EntryView::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!is_marked_) return;
    QPainter painter(this);
    painter.fillRect(QRect(1, height() - kMarkHeight - 1, width() - 2, kMarkHeight), mark_colour(palette()));
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
        entry_.leave();
        return Refusal::none;
    });
}

void EntryView::press_enter() {
    commit();
    typed_since_entered_ = false;
    if (!isReadOnly()) gate_.run([&] { return entry_.press_enter(); });
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

bool NoteView::commit() {
    if (!document()->isModified()) return true;
    document()->setModified(false);
    const std::string text_typed = typed(toPlainText());
    gate_.run([&] { return model_.type(text_typed); });
    refresh();
    return true;
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

// --- what can only be read ---
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
