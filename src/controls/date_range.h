// A range of dates: a first and a last day. It holds two dates at all times, so whoever reads it needs no
// check; a typed text that is no date leaves the day that stood there.
#pragma once

#include <cstdint>
#include <optional>

#include "controls/control.h"

namespace brimley::controls {

// Days since 1970-01-01, as the store counts them.
using Day = std::int32_t;

struct DaySpan {
    Day from = 0;
    Day to = 0;
    bool operator==(const DaySpan&) const = default;
};

// How the user writes a day and how a typed text is read; a form knows its user's format.
struct DayTexts {
    std::function<std::string(Day)> written;
    std::function<std::optional<Day>(const std::string& typed)> read;
};

class DateRange : public Control {
  public:
    DateRange(ControlSet& controls, std::string name, DayTexts texts, DaySpan span)
        : Control(controls, std::move(name)), texts_(std::move(texts)), span_(span) {}

    [[nodiscard]] Day from() const { return span_.from; }
    [[nodiscard]] Day to() const { return span_.to; }
    [[nodiscard]] std::string from_text() const { return texts_.written(span_.from); }
    [[nodiscard]] std::string to_text() const { return texts_.written(span_.to); }
    [[nodiscard]] std::string shown() const override { return from_text() + " - " + to_text(); }
    void set(DaySpan span) { change(span_, span); }

    // The user types both dates. Fires on_change when the range is another one then.
    [[nodiscard]] Refusal type(const std::string& from, const std::string& to);

    std::function<void()> on_change;

  private:
    DayTexts texts_;
    DaySpan span_;
};

}  // namespace brimley::controls
