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
    [[nodiscard]] const std::string& model_text() const override { return model_.text(); }
    [[nodiscard]] controls::Refusal type_into_model(const std::string& text) override {
        return model_.type(text);
    }
    [[nodiscard]] controls::Refusal enter_model() override { return model_.press_enter(); }
    void leave_model() override { model_.leave(); }

  private:
    [[nodiscard]] ListContent content() const;
    void complete();

    controls::ComboBox& model_;
    QAction* arrow_;
    QAction* swatch_ = nullptr;
};

}  // namespace brimley::desktop
