#include "desktop/tabs_view.h"

namespace brimley::desktop {

TabsView::TabsView(controls::TabControl& model, ActGate& gate) : model_(model) {
    setDocumentMode(true);
    connect(this, &QTabWidget::tabBarClicked, this, [this, &gate](int page) {
        if (page >= 0) gate.run([&] { return model_.choose(page); });
    });
}

void TabsView::add_page(QWidget& page) {
    const auto& titles = model_.titles();
    const auto place = static_cast<std::size_t>(count());
    addTab(&page, place < titles.size() ? shown(titles[place]) : QString());
}

void TabsView::refresh() {
    show_state(*this, model_);
    setCurrentIndex(model_.page());
}

}  // namespace brimley::desktop
