// A date range on the screen: two date lines side by side.
//
// What was typed into either reaches the model in one act, when the user leaves the pair or gives a command.
#pragma once

#include "controls/date_range.h"
#include "desktop/date_view.h"

namespace brimley::desktop {

class RangeView : public QWidget, public ModelView {
  public:
    RangeView(controls::DateRange& model, ActGate& gate, const Calendar& calendar);

    void refresh() override;
    bool commit() override;
    [[nodiscard]] controls::Refusal found_by_user() const override { return from_->found_by_user(); }

    [[nodiscard]] DateView& from() { return *from_; }
    [[nodiscard]] DateView& to() { return *to_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // The line of one end; `typed` is what the user has typed there and not yet handed over.
    [[nodiscard]] DateView* make_line(const char* end, std::optional<std::string>& typed,
                                      std::string (controls::DateRange::*stored)() const,
                                      const Calendar& calendar);

    controls::DateRange& model_;
    ActGate& gate_;
    std::optional<std::string> typed_from_;
    std::optional<std::string> typed_to_;
    DateView* from_;
    DateView* to_;
};

}  // namespace brimley::desktop
