#include "desktop/date_view.h"

#include <QAction>
#include <QCalendarWidget>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QWidgetAction>

#include "kernel/user_dates.h"

namespace brimley::desktop {

namespace {

QIcon calendar_icon(const QPalette& palette) {
    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QPen(palette.color(QPalette::PlaceholderText), 2));
    painter.drawRect(5, 8, 22, 19);
    painter.drawLine(5, 13, 27, 13);
    painter.drawLine(11, 4, 11, 9);
    painter.drawLine(21, 4, 21, 9);
    return picture;
}

}  // namespace

DateView::DateView(controls::Control& control, Entry entry, ActGate& gate, const Calendar& calendar)
    : EntryView(control, std::move(entry), gate),
      calendar_(calendar),
      opener_(addAction(calendar_icon(palette()), QLineEdit::TrailingPosition)) {
    for (const QString& part : shown(calendar.date_format).split('/'))
        part_lengths_.append(static_cast<int>(part.size()));
    select_on_focus();
    connect(opener_, &QAction::triggered, this, [this] { open_calendar(); });
}

void DateView::refresh() {
    EntryView::refresh();
    opener_->setVisible(!isReadOnly());
    opener_->setIcon(calendar_icon(palette()));
    setPlaceholderText(isReadOnly() ? QString() : shown(calendar_.date_format));
}

std::optional<store::DateTime> DateView::date_shown() const {
    return kernel::try_user_date(typed(text()), calendar_.date_format);
}

void DateView::put_date(store::DateTime date) {
    put_typed(shown(kernel::user_date_text(date, calendar_.date_format)));
    selectAll();
}

bool DateView::move_by(int days) {
    const bool replaces_all = text().isEmpty() || selectedText() == text();
    const auto date = date_shown();
    if (!date && !(replaces_all && text().isEmpty())) return false;
    put_date(date ? date->plus_days(days) : calendar_.now());
    return true;
}

// At the end of the text a full part brings its separator along.
void DateView::put_digit(QChar digit) {
    const auto full = [this] {
        const qsizetype part = text().count('/');
        const qsizetype length = text().size() - (text().lastIndexOf('/') + 1);
        return part + 1 < part_lengths_.size() && length >= part_lengths_[part];
    };
    const auto add = [this](const QString& more) { put_typed(text() + more); };
    if (full()) add("/");
    add(digit);
    if (full()) add("/");
}

bool DateView::take_key(const QKeyEvent& event) {
    if (isReadOnly() || event.text().size() != 1) return false;
    const QChar key = event.text().at(0);
    if (key.toUpper() == 'T') {
        put_date(calendar_.now());
        return true;
    }
    if (key == '+' || key == '-') return move_by(key == '+' ? 1 : -1);
    if (key.isLetter()) return true;
    if (hasSelectedText()) {
        if (!key.isDigit() || selectedText() != text()) return false;
        del();
    }
    const bool at_end = cursorPosition() == text().size();
    if (key == '/') return at_end && text().endsWith('/');
    if (!key.isDigit() || !at_end) return false;
    put_digit(key);
    return true;
}

void DateView::keyPressEvent(QKeyEvent* event) {
    const bool opens = event->key() == Qt::Key_F4 ||
                       (event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier));
    if (opens) {
        open_calendar();
    } else if (!take_key(*event)) {
        EntryView::keyPressEvent(event);
    }
}

void DateView::open_calendar() {
    if (isReadOnly() || !isEnabled()) return;
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* const days = new QCalendarWidget(menu);
    const auto date = date_shown().value_or(calendar_.now());
    days->setSelectedDate(QDate(date.year(), date.month(), date.day_of_month()));
    auto* const item = new QWidgetAction(menu);
    item->setDefaultWidget(days);
    menu->addAction(item);
    const auto take = [this, menu](const QDate& day) {
        put_date(store::DateTime::from_ymd(day.year(), day.month(), day.day()).value());
        menu->close();
    };
    connect(days, &QCalendarWidget::clicked, this, take);
    connect(days, &QCalendarWidget::activated, this, take);
    menu->popup(mapToGlobal(rect().bottomLeft()));
    days->setFocus();
}

}  // namespace brimley::desktop
