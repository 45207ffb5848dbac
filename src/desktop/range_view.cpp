#include "desktop/range_view.h"

#include <QApplication>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>

namespace brimley::desktop {

using controls::DateRange;
using controls::Refusal;

RangeView::RangeView(DateRange& model, ActGate& gate, const Calendar& calendar)
    : model_(model),
      gate_(gate),
      from_(make_line("from", typed_from_, &DateRange::from_text, calendar)),
      to_(make_line("to", typed_to_, &DateRange::to_text, calendar)) {
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(4);
    line->addWidget(from_);
    line->addWidget(new QLabel("-"));
    line->addWidget(to_);
    setFocusProxy(from_);
}

DateView* RangeView::make_line(const char* end, std::optional<std::string>& typed,
                               std::string (DateRange::*stored)() const, const Calendar& calendar) {
    const Entry entry{[this, &typed, stored] { return typed ? *typed : (model_.*stored)(); },
                      [&typed](const std::string& text) {
                          typed = text;
                          return Refusal::none;
                      },
                      [] { return Refusal::none; }, [] {}};
    auto* const line = new DateView(model_, entry, gate_, calendar);
    line->setObjectName(shown(model_.name()) + "." + end);
    line->installEventFilter(this);
    return line;
}

void RangeView::refresh() {
    typed_from_.reset();
    typed_to_.reset();
    show_state(*this, model_);
    show_whether_open(*this, !model_.locked());
    from_->refresh();
    to_->refresh();
}

bool RangeView::commit() {
    from_->commit();
    to_->commit();
    if (!typed_from_ && !typed_to_) return true;
    const std::string from = typed_from_.value_or(model_.from_text());
    const std::string to = typed_to_.value_or(model_.to_text());
    gate_.run([&] { return model_.type(from, to); });
    refresh();  // a text that is no date gives way to the day that stands
    return true;
}

bool RangeView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut && moved_on(static_cast<QFocusEvent&>(*event))) {
        const QWidget* const next = QApplication::focusWidget();
        if (next != from_ && next != to_) commit();
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace brimley::desktop
