#include "desktop/tabs_view.h"

namespace brimley::desktop {

TabsView::TabsView(controls::TabControl& model, ActGate& gate) : model_(model) {
    setDocumentMode(true);
    // By mouse, by the keys of the bar, by Ctrl+Tab.
    connect(this, &QTabWidget::currentChanged, this, [this, &gate](int page) {
        if (page >= 0 && page != model_.page()) gate.run([&] { return model_.choose(page); });
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
