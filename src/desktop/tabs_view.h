// Pages that share one place of the window; the look says what stands on them.
#pragma once

#include <QTabWidget>

#include "controls/fields.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

class TabsView : public QTabWidget, public ModelView {
  public:
    TabsView(controls::TabControl& model, ActGate& gate);

    // A further page, with the next of the model's titles.
    void add_page(QWidget& page);

    void refresh() override;
    [[nodiscard]] controls::Refusal found_by_user() const override { return state_found(*this); }

  private:
    controls::TabControl& model_;
};

}  // namespace brimley::desktop
