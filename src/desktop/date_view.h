// A date field: separators come by themselves, a calendar opens beside it, T is today, + and - move a day.
//
// Nobody is kept from typing something else: whether a text is a date is the form's question.
#pragma once

#include "desktop/field_views.h"
#include "kernel/store/value.h"

namespace brimley::desktop {

// What date fields need to know of the world.
struct Calendar {
    std::string date_format;  // the user's, such as dd/mm/yyyy
    std::function<store::DateTime()> now;
};

class DateView : public EntryView {
  public:
    DateView(controls::Control& control, Entry entry, ActGate& gate, const Calendar& calendar);

    void refresh() override;
    void open_calendar();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] bool take_key(const QKeyEvent& event);
    [[nodiscard]] bool move_by(int days);
    void put_date(store::DateTime date);
    void put_digit(QChar digit);
    [[nodiscard]] std::optional<store::DateTime> date_shown() const;

    Calendar calendar_;
    QAction* opener_;
    QList<int> part_lengths_;  // digits of day, month and year in the order of the format
};

}  // namespace brimley::desktop
