// A combo on the screen: a line with type-ahead and a list of several columns below it.
//
// The list is fetched when somebody opens it or begins to type; a combo that is only shown fetches nothing.
#pragma once

#include "controls/combo_box.h"
#include "desktop/field_views.h"
#include "desktop/list_popup.h"

namespace brimley::desktop {

class ComboView : public EntryView {
  public:
    ComboView(controls::ComboBox& model, ActGate& gate);

    void refresh() override;
    // Null when the combo is locked.
    ListPopup* open_list();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] ListContent content() const;
    void complete();

    controls::ComboBox& model_;
    QAction* arrow_;
    QAction* swatch_ = nullptr;
};

}  // namespace brimley::desktop
