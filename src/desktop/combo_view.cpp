#include "desktop/combo_view.h"

#include <QAction>
#include <QKeyEvent>

#include "desktop/picker_painting.h"

namespace brimley::desktop {

using controls::ComboBox;
using controls::ItemLook;
using controls::Refusal;

namespace {

Qt::Alignment alignment_of(char sign) { return sign == '^' ? Qt::AlignHCenter : Qt::AlignLeft; }

}  // namespace

ComboView::ComboView(ComboBox& model, ActGate& gate)
    : EntryView(model, entry_of(model), gate),
      model_(model),
      arrow_(addAction(arrow_icon(palette()), QLineEdit::TrailingPosition)) {
    if (model.item_look() == ItemLook::colour) swatch_ = addAction(QIcon(), QLineEdit::LeadingPosition);
    connect(arrow_, &QAction::triggered, this, [this] { open_list(); });
    connect(this, &QLineEdit::textEdited, this, [this] { complete(); });
    select_on_focus();
}

void ComboView::refresh() {
    EntryView::refresh();
    arrow_->setVisible(!model_.locked());
    arrow_->setIcon(arrow_icon(palette()));
    if (swatch_ != nullptr) {
        swatch_->setIcon(swatch(shown(model_.text())));
        swatch_->setVisible(!model_.empty());
    }
}

ListContent ComboView::content() const {
    ListContent content;
    content.rows = model_.items();
    content.look = model_.item_look();
    for (const controls::ComboColumn& column : model_.columns())
        content.columns.push_back(
            {shown(column.caption), pixels(*this, column.width), false, alignment_of(column.alignment)});
    if (content.columns.empty()) content.columns.emplace_back();
    return content;
}

ListPopup* ComboView::open_list() {
    if (isReadOnly() || !isEnabled()) return nullptr;
    int chosen = -1;
    ListContent list;
    const bool fetched = gate().run([&] {
        list = content();
        chosen = isModified() ? row_for_text(list.rows, text()) : model_.list_index();
        return Refusal::none;
    });
    if (!fetched) return nullptr;
    return ListPopup::open(*this, std::move(list), chosen, [this](int row) {
        setModified(false);  // what was typed before gives way to what was picked
        gate().run([&] { return model_.pick(row); });
        refresh();
        setFocus();
        selectAll();
    });
}

void ComboView::complete() {
    gate().run([&] {
        if (complete_inline(*this, model_.items())) put_completed();
        return Refusal::none;
    });
}

void ComboView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F4 || event->key() == Qt::Key_Down) {
        open_list();
        return;
    }
    const bool takes_away = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
    const QSignalBlocker no_completion(takes_away ? static_cast<QObject*>(this) : nullptr);
    EntryView::keyPressEvent(event);
    if (takes_away && isModified()) put_typed(text());
}

}  // namespace brimley::desktop
