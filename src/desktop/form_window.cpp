#include "desktop/form_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "controls/combo_box.h"
#include "controls/fields.h"
#include "desktop/button_views.h"
#include "desktop/combo_view.h"
#include "desktop/field_views.h"
#include "desktop/grid_view.h"
#include "desktop/range_view.h"
#include "desktop/tabs_view.h"
#include "frame/form.h"
#include "marks/field_of_message.h"

namespace brimley::desktop {

using controls::Control;
using frame::Mode;

namespace {

constexpr QDockWidget::DockWidgetFeatures kPaneFeatures =
    QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable;
constexpr int kGenericWidth = 18;  // characters

struct ModeLook {
    const char* text;
    QColor colour;
};

ModeLook look_of_mode(Mode mode) {
    switch (mode) {
        case Mode::new_entry:
            return {"New", QColor(46, 125, 50)};
        case Mode::edit:
            return {"Edit", QColor(198, 104, 0)};
        case Mode::read:
            break;
    }
    return {"Read", QColor(84, 110, 122)};
}

// The first that holds counts.
struct Stamp {
    const char* box;
    int value;
    const char* text;
    QRgb colour;
};

constexpr Stamp kStamps[] = {{"chkvoid", 1, "VOID", 0xffb71c1c},
                             {"chkhold", 1, "HOLD", 0xffb45f06},
                             {"chkpaid", 1, "PAID", 0xff1b5e20},
                             {"chkpaid", 2, "PARTLY PAID", 0xff33691e}};

void size_field(QWidget& widget, const LookField& field) {
    const int characters = field.width > 0 ? field.width : kGenericWidth;
    const int frame = 26;  // its border and the arrow of a list
    widget.setFixedWidth(characters * widget.fontMetrics().averageCharWidth() + frame);
    if (field.lines > 1) widget.setFixedHeight(field.lines * widget.fontMetrics().lineSpacing() + 10);
}

}  // namespace

FormWindow::FormWindow(std::shared_ptr<frame::Form> form, frame::Desk& desk)
    : form_(std::move(form)), desk_(desk), marks_(*form_), mode_band_(new QLabel), stamp_(new QLabel) {
    const QString class_name = shown(std::string(form_->identity().class_name));
    const QString caption = shown(std::string(form_->identity().caption));
    const Hints hints = [this](const Control& control) { return form_->hint_of(control); };
    Look look = look_of(class_name).value_or(generic_look(form_->controls(), caption, hints));
    add_what_is_left_out(look, form_->controls(), hints);
    setObjectName(class_name);
    title_ = look.title.isEmpty() ? caption : look.title;
    title_control_ = form_->controls().find(typed(look.title_control));
    gate_.on_begin = [this] {
        if (form_->context().dbe) form_->context().dbe->reconnect();
    };
    gate_.on_acted = [this] { refresh_commands(); };
    gate_.on_idle = [this] {
        if (!form_->is_open()) deleteLater();
    };
    gate_.on_failure = [this](const std::exception_ptr& failure) { desk_.message(failure_text(failure)); };
    build(look);
}

FormWindow::~FormWindow() {
    for (Control* control : form_->controls().all())
        control->on_shown_change = nullptr;
    form_->CommandBars1().on_shown_change = nullptr;
    // The views go while the gate is still there: one that loses the focus uses it.
    gate_.close();
    delete takeCentralWidget();
    for (const auto& [frame, dock] : laid_out_.panes)
        delete dock;
}

void FormWindow::build(const Look& look) {
    actions_ = std::make_unique<CommandActions>(
        *this, form_->CommandBars1(), look.menus, [this](int id) { press(id); },
        [this](int id) { return form_->can_do(id); });
    laid_out_ = lay_out(*this, form_->controls(), look, [this](Control& control, const LookField& field) {
        return make_widget(control, field);
    });
    for (std::size_t i = 1; i < tab_order_.size(); ++i)
        setTabOrder(widget(*tab_order_[i - 1]), widget(*tab_order_[i]));
    mode_band_->setMinimumWidth(90);
    mode_band_->setAlignment(Qt::AlignCenter);
    stamp_->hide();
    statusBar()->addPermanentWidget(stamp_);
    statusBar()->addPermanentWidget(mode_band_);
    statusBar()->setSizeGripEnabled(false);
    const bool has_modes = form_->CommandBars1().find(frame::command::kNew) != nullptr;
    if (!has_modes) statusBar()->hide();
    if (has_modes && !form_->may_update()) {
        auto* const look_only = new QLabel("You may look, not enter.");
        look_only->setObjectName("look_only");
        statusBar()->addWidget(look_only);
    }
    for (Control* control : form_->controls().all())
        control->on_shown_change = [this, control] { control_changed(*control); };
    form_->CommandBars1().on_shown_change = [this] { refresh_commands(); };
    connect_panes();
    refresh_all();
    settle();
}

// --- the views ---
template <class View>
QWidget* FormWindow::registered(Control& control, View* view) {
    register_view(control, *view, *view);
    view->installEventFilter(this);
    return view;
}

QWidget* FormWindow::make_widget(Control& control, const LookField& field) {
    if (auto* const grid = dynamic_cast<controls::Grid*>(&control)) {
        auto* const made = new GridView(*grid, gate_);
        made->on_menu = [this](const QPoint& at) { actions_->popup()->popup(at); };
        made->on_editor = [this](QWidget& editor) { editor.installEventFilter(this); };
        register_view(control, *made, *made);
        return made;
    }
    if (auto* const check = dynamic_cast<controls::CheckBox*>(&control))
        return registered(control, new CheckView(*check, gate_));
    if (auto* const option = dynamic_cast<controls::OptionButton*>(&control))
        return registered(control, new OptionView(*option, gate_));
    if (auto* const button = dynamic_cast<controls::PushButton*>(&control))
        return registered(control, new PushView(*button, gate_));
    if (auto* const label = dynamic_cast<controls::Label*>(&control))
        return registered(control, new LabelView(*label));
    if (auto* const bar = dynamic_cast<controls::ProgressBar*>(&control))
        return registered(control, new ProgressView(*bar));
    if (auto* const tabs = dynamic_cast<controls::TabControl*>(&control))
        return registered(control, new TabsView(*tabs, gate_));
    return make_entry(control, field);  // a frame is a pane, and no widget of its own
}

QWidget* FormWindow::make_entry(Control& control, const LookField& field) {
    if (auto* const range = dynamic_cast<controls::DateRange*>(&control)) return make_range(*range, field);
    QWidget* made = nullptr;
    if (auto* const combo = dynamic_cast<controls::ComboBox*>(&control)) {
        made = registered(control, new ComboView(*combo, gate_));
    } else if (auto* const date = dynamic_cast<controls::DateField*>(&control)) {
        made = registered(control, new DateView(*date, entry_of(*date), gate_, calendar()));
    } else if (auto* const text = dynamic_cast<controls::TextField*>(&control)) {
        made = make_text(*text, field);
    }
    if (made != nullptr) size_field(*made, field);
    return made;
}

QWidget* FormWindow::make_text(controls::TextField& field_model, const LookField& field) {
    if (field.lines > 1) return registered(field_model, new NoteView(field_model, gate_));
    auto* const line = new EntryView(field_model, entry_of(field_model), gate_);
    if (field.amount) {
        line->setAlignment(Qt::AlignRight);
        line->select_on_focus();
    }
    return registered(field_model, line);
}

// The look names the width of one date.
QWidget* FormWindow::make_range(controls::DateRange& range, const LookField& field) {
    auto* const made = new RangeView(range, gate_, calendar());
    for (DateView* const line : {&made->from(), &made->to()}) {
        line->installEventFilter(this);
        size_field(*line, field);
    }
    return registered(range, made);
}

Calendar FormWindow::calendar() {
    return {form_->context().BRIMLEY_DATE_FORMAT, [this] { return desk_.now(); }};
}

void FormWindow::register_view(Control& control, QWidget& widget, ModelView& view) {
    widget.setObjectName(shown(control.name()));
    views_[&control] = {&widget, &view};
    tab_order_.push_back(&control);
}

ModelView* FormWindow::view(const Control& control) const {
    const auto found = views_.find(&control);
    return found == views_.end() ? nullptr : found->second.view;
}

QWidget* FormWindow::widget(const Control& control) const {
    const auto found = views_.find(&control);
    return found == views_.end() ? nullptr : found->second.widget;
}

QDockWidget* FormWindow::pane(const Control& frame) const {
    const auto found = laid_out_.panes.find(&frame);
    return found == laid_out_.panes.end() ? nullptr : found->second;
}

// --- following the models ---
void FormWindow::control_changed(const Control& control) {
    if (ModelView* const changed = view(control)) changed->refresh();
    refresh_pane(control);
    refresh_captions();
    refresh_commands();
    if (&control == title_control_) refresh_title();
}

void FormWindow::refresh_title() {
    const QString more = title_control_ == nullptr ? QString() : shown(title_control_->shown());
    setWindowTitle(more.isEmpty() ? title_ : title_ + " - " + more);
}

void FormWindow::connect_panes() {
    for (const auto& [frame, dock] : laid_out_.panes) {
        dock->setFeatures(kPaneFeatures);
        dock->installEventFilter(this);
        actions_->lend_keys_to(*dock);  // a pane that floats is a window of its own
    }
}

void FormWindow::refresh_pane(const Control& frame) {
    QDockWidget* const dock = pane(frame);
    if (dock == nullptr) return;
    dock->setVisible(frame.visible());
    share_bottom();
    refresh_commands();
}

// Panes below the lines stand beside each other and share the width.
void FormWindow::share_bottom() {
    QList<QDockWidget*> docks;
    for (const auto& [frame, dock] : laid_out_.panes)
        if (frame->visible() && dockWidgetArea(dock) == Qt::BottomDockWidgetArea) docks.append(dock);
    if (docks.size() > 1) resizeDocks(docks, QList<int>(docks.size(), width()), Qt::Horizontal);
}

// A caption goes with its fields.
void FormWindow::refresh_captions() {
    for (const FieldCaption& caption : laid_out_.captions) {
        const bool any = std::any_of(caption.fields.begin(), caption.fields.end(),
                                     [](const QWidget* field) { return !field->isHidden(); });
        caption.label->setVisible(any && (caption.of_form == nullptr || caption.of_form->visible()));
    }
}

// Several changes in a row are shown once.
void FormWindow::refresh_commands() {
    if (commands_wait_) return;
    commands_wait_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            commands_wait_ = false;
            refresh_bars();
        },
        Qt::QueuedConnection);
}

void FormWindow::refresh_bars() {
    actions_->refresh(form_->font_bar_shown());
    refresh_mode();
    refresh_stamp();
    refresh_marks();
}

QString FormWindow::stamp_shown() const { return stamp_->isHidden() ? QString() : stamp_->text(); }

// What a document is, to be seen from a desk's length away; the box that says so is small.
void FormWindow::refresh_stamp() {
    for (const Stamp& stamp : kStamps) {
        const auto* const box = dynamic_cast<const controls::CheckBox*>(form_->controls().find(stamp.box));
        if (box == nullptr || box->value() != stamp.value) continue;
        stamp_->setText(stamp.text);
        stamp_->setStyleSheet(QString("background: %1; color: white; font-size: 22px; font-weight: bold; "
                                      "padding: 2px 28px;")
                                  .arg(QColor(stamp.colour).name()));
        stamp_->show();
        return;
    }
    stamp_->hide();
}

// After the act: a box may be open within it.
void FormWindow::refresh_marks() {
    if (gate_.is_running()) return;
    std::map<const Control*, QString> of_fields;
    std::map<const Control*, GridTable::CellMarks> of_cells;
    for (const marks::Mark& mark : marks_.look()) {
        if (mark.row < 0)
            of_fields[mark.control] = shown(mark.text);
        else
            of_cells[mark.control][{mark.row, mark.column}] = shown(mark.text);
    }
    for (const auto& [control, shown_by] : views_) {
        if (auto* const grid = dynamic_cast<GridView*>(shown_by.widget))
            grid->show_marks(std::move(of_cells[control]));
        else
            shown_by.view->show_mark(of_fields[control]);
    }
}

void FormWindow::refresh_mode() {
    const ModeLook look = look_of_mode(form_->mode());
    if (mode_band_->text() == look.text) return;
    mode_band_->setText(look.text);
    mode_band_->setStyleSheet(QString("background: %1; color: white; font-weight: bold; padding: 2px 12px;")
                                  .arg(look.colour.name()));
    if (form_->mode() == Mode::new_entry || !may_type_where_the_focus_is()) focus_first_field();
}

bool FormWindow::may_type_where_the_focus_is() const {
    const QWidget* const at = focusWidget();
    return at != nullptr && looks_open(*at);
}

QString FormWindow::mode_shown() const { return mode_band_->text(); }

void FormWindow::refresh_all() {
    for (const auto& [control, shown_by] : views_)
        shown_by.view->refresh();
    for (const auto& [frame, dock] : laid_out_.panes)
        dock->setVisible(frame->visible());
    refresh_captions();
    refresh_title();
    refresh_bars();
}

void FormWindow::settle() {
    for (const auto& [control, shown_by] : views_)
        if (auto* const grid = dynamic_cast<GridView*>(shown_by.widget)) grid->follow();
    refresh_bars();
}

// --- acts ---
bool FormWindow::commit_typing() {
    for (QWidget* at = QApplication::focusWidget(); at != nullptr && at != this; at = at->parentWidget())
        if (auto* const typed_in = dynamic_cast<ModelView*>(at); typed_in != nullptr && !typed_in->commit())
            return false;
    return true;
}

void FormWindow::press(int id) {
    const auto alive = form_;
    message_.clear();
    if (commit_typing()) gate_.run([&] { return alive->press(id); });
    go_to_what_was_told();
}

void FormWindow::go_to_what_was_told() {
    if (message_.empty() || !form_->is_open() || form_->mode() == Mode::read) return;
    const marks::Place place = marks::field_of_message(*form_, message_);
    QWidget* const field = place.control == nullptr ? nullptr : widget(*place.control);
    if (field == nullptr) return;
    field->setFocus();
    if (auto* const grid = dynamic_cast<GridView*>(field); grid != nullptr && place.row >= 0) {
        grid->follow();
        grid->setCurrentIndex(grid->table().index(place.row, place.column));
    }
}

QMenu* FormWindow::createPopupMenu() {
    auto* const menu = new QMenu(this);
    QAction* const bar = menu->addAction("Font bar");
    bar->setCheckable(true);
    bar->setChecked(form_->CommandBars1().font_bar_visible);
    connect(bar, &QAction::triggered, this, [this](bool visible) { show_font_bar(visible); });
    return menu;
}

void FormWindow::show_font_bar(bool visible) {
    gate_.run([&] {
        form_->CommandBars1().show_font_bar(visible);
        return controls::Refusal::none;
    });
}

void FormWindow::show_band(QWidget* band) {
    if (band_ != nullptr) {
        removeToolBar(band_);
        band_->setParent(nullptr);
        band_->deleteLater();
        band_ = nullptr;
    }
    if (band == nullptr) return;
    band_ = new QToolBar("Band", this);
    band_->setMovable(false);
    band_->toggleViewAction()->setVisible(false);
    band_->addWidget(band);
    addToolBarBreak();
    addToolBar(band_);
}

QString FormWindow::caption_of(const Control& control) const {
    const QWidget* const field = widget(control);
    for (const FieldCaption& caption : laid_out_.captions)
        if (std::find(caption.fields.begin(), caption.fields.end(), field) != caption.fields.end())
            return caption.label->text().remove('&');
    if (const auto* const grid = dynamic_cast<const controls::Grid*>(&control))
        return grid->title.empty() ? "the lines" : shown(grid->title);
    return shown(control.name());
}

void FormWindow::focus_first_field() {
    for (const Control* control : tab_order_) {
        const Shown& first = views_.at(control);
        if (first.widget->focusPolicy() == Qt::NoFocus ||
            first.view->found_by_user() != controls::Refusal::none)
            continue;
        first.widget->setFocus(Qt::OtherFocusReason);
        return;
    }
}

void FormWindow::add_child(FormWindow& child) {
    auto* const dock = new QDockWidget(child.windowTitle(), this);
    dock->setObjectName(child.objectName());
    dock->setFeatures(kPaneFeatures);
    dock->setWidget(&child);
    actions_->lend_keys_to(*dock);
    dock->installEventFilter(&child);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    child.own_pane_ = dock;
    dock->show();
    child.show();
}

void FormWindow::close_own_pane() {
    const auto alive = form_;
    if (!commit_typing()) return;
    gate_.run([&] {
        alive->unload_form();
        return controls::Refusal::none;
    });
}

// In the middle of an act the window must outlive it, however often control goes to the event loop meanwhile.
void FormWindow::form_has_closed() {
    hide();
    if (own_pane_ != nullptr) {
        setParent(nullptr);  // the pane goes, and the window sees to its own end
        own_pane_->hide();
        own_pane_->deleteLater();
        own_pane_ = nullptr;
    }
    if (!gate_.is_running()) deleteLater();
}

// Whether anything is asked, and what is kept, is the form's own rule.
void FormWindow::closeEvent(QCloseEvent* event) {
    if (form_->is_open()) {
        event->ignore();
        if (!may_be_closed || may_be_closed()) press(frame::command::kExit);
        return;
    }
    event->accept();
}

void FormWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && actions_) refresh_all();
}

// A pane is closed by its model, and the dock follows.
bool FormWindow::close_pane_of(const QObject* dock) {
    for (Control* const control : form_->controls().all()) {
        auto* const frame = dynamic_cast<controls::Frame*>(control);
        if (frame == nullptr || pane(*frame) != dock) continue;
        if (commit_typing()) gate_.run([&] { return frame->close(); });
        return true;
    }
    return false;
}

// In a pane the keys are those of the form that the pane belongs to as well.
bool FormWindow::takes_key(const QKeySequence& key) const {
    if (actions_->takes_key(key)) return true;
    return own_pane_ != nullptr && static_cast<const FormWindow*>(own_pane_->parentWidget())->takes_key(key);
}

// Text that is selected is cut by the key of Exit, too.
bool FormWindow::cuts_text(const QKeySequence& key) {
    if (key != QKeySequence(QKeySequence::Cut)) return false;
    const QWidget* const at = QApplication::focusWidget();
    if (const auto* const line = qobject_cast<const QLineEdit*>(at)) return line->hasSelectedText();
    const auto* const note = qobject_cast<const QPlainTextEdit*>(at);
    return note != nullptr && note->textCursor().hasSelection();
}

// The keys of commands are the form's, also where a field would take them for its own.
bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close && own_pane_ != nullptr && watched == own_pane_) {
        event->ignore();
        close_own_pane();
        return true;
    }
    if (event->type() == QEvent::Close && close_pane_of(watched)) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const QKeySequence pressed(key.keyCombination());
        if (takes_key(pressed) && !cuts_text(pressed)) {
            event->ignore();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace brimley::desktop
