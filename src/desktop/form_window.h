// The window of a form, any form: its commands, its fields, its grids and panes, over the models that it has.
//
//   model changes  -> the view of that control shows it
//   user acts      -> a user act of the model, through the gate
//
// There is no rule of a form here; its look (look.h) says which fields stand where. The window keeps
// its form alive, and is closed by the desk when the form has unloaded itself; closing it by hand presses
// Exit.
#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <memory>

#include "desktop/act_gate.h"
#include "desktop/command_actions.h"
#include "desktop/date_view.h"
#include "desktop/look_layout.h"
#include "desktop/model_view.h"
#include "marks/marks.h"

class QToolBar;

namespace brimley::controls {
class DateRange;
class TextField;
}  // namespace brimley::controls
namespace brimley::frame {
class Desk;
class Form;
}  // namespace brimley::frame

namespace brimley::desktop {

class FormWindow : public QMainWindow {
  public:
    FormWindow(std::shared_ptr<frame::Form> form, frame::Desk& desk);
    ~FormWindow() override;

    [[nodiscard]] frame::Form& form() { return *form_; }
    [[nodiscard]] ActGate& gate() { return gate_; }
    [[nodiscard]] const CommandActions& actions() const { return *actions_; }

    // The widget that shows the control; null when none does.
    [[nodiscard]] ModelView* view(const controls::Control& control) const;
    [[nodiscard]] QWidget* widget(const controls::Control& control) const;
    // The dock of a frame; null when the frame is no pane here.
    [[nodiscard]] QDockWidget* pane(const controls::Control& frame) const;

    // Hands over what is being typed, then presses the command, unless the form has cancelled what was typed.
    void press(int id);
    void show_font_bar(bool visible);
    // Shows all changes now that would be shown when control returns to the event loop.
    void settle();
    // The first field that may be typed in gets the focus.
    void focus_first_field();
    // The form has gone: no act reaches it any more, and the window closes.
    void form_has_closed();
    // Puts the window of a child form into a pane of this one. Closing the pane unloads the child.
    void add_child(FormWindow& child);
    // A line above the fields, which the window owns; null takes it away.
    void show_band(QWidget* band);
    // A box has told this during an act of this window. After it the cursor stands where it speaks of.
    void note_message(const std::string& text) { message_ = text; }
    // What the user calls the control: its caption, or its name.
    [[nodiscard]] QString caption_of(const controls::Control& control) const;
    // Asked before the window is closed by hand; false keeps it open.
    std::function<bool()> may_be_closed;
    // The pane that this window stands in; null for a window of its own.
    [[nodiscard]] QDockWidget* pane_of_this() const { return own_pane_; }

    // "VOID", "HOLD", "PAID", "PARTLY PAID", as it stands in large letters beside the band; empty: none.
    [[nodiscard]] QString stamp_shown() const;
    // "Read", "New" or "Edit", as the band at the window's foot shows it.
    [[nodiscard]] QString mode_shown() const;

    // The menu of the toolbars: whether the font bar is shown. The caller owns it.
    [[nodiscard]] QMenu* createPopupMenu() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void build(const Look& look);
    [[nodiscard]] QWidget* make_widget(controls::Control& control, const LookField& field);
    // A line, or a pair of them, as wide as the look says; null for a control that takes no text.
    [[nodiscard]] QWidget* make_entry(controls::Control& control, const LookField& field);
    [[nodiscard]] QWidget* make_text(controls::TextField& field_model, const LookField& field);
    [[nodiscard]] QWidget* make_range(controls::DateRange& range, const LookField& field);
    [[nodiscard]] Calendar calendar();
    template <class View>
    QWidget* registered(controls::Control& control, View* view);
    void register_view(controls::Control& control, QWidget& widget, ModelView& view);
    void connect_panes();
    void control_changed(const controls::Control& control);
    void refresh_pane(const controls::Control& frame);
    void share_bottom();
    void refresh_captions();
    void refresh_title();
    void refresh_commands();
    void refresh_bars();
    void refresh_mode();
    void refresh_marks();
    void refresh_stamp();
    void go_to_what_was_told();
    [[nodiscard]] bool may_type_where_the_focus_is() const;
    void refresh_all();
    // False when the form has cancelled what was typed; then the act that was to follow is not carried out.
    [[nodiscard]] bool commit_typing();
    [[nodiscard]] bool close_pane_of(const QObject* dock);
    void close_own_pane();
    [[nodiscard]] bool takes_key(const QKeySequence& key) const;
    [[nodiscard]] static bool cuts_text(const QKeySequence& key);

    struct Shown {
        QWidget* widget;
        ModelView* view;
    };

    std::shared_ptr<frame::Form> form_;
    frame::Desk& desk_;
    ActGate gate_;
    std::map<const controls::Control*, Shown> views_;
    std::vector<const controls::Control*> tab_order_;
    LaidOut laid_out_;
    marks::Marks marks_;
    std::string message_;  // the last one of the act
    std::unique_ptr<CommandActions> actions_;
    QLabel* mode_band_;
    QLabel* stamp_;
    QDockWidget* own_pane_ = nullptr;
    QToolBar* band_ = nullptr;
    QString title_;
    const controls::Control* title_control_ = nullptr;  // what it shows follows the title
    bool commands_wait_ = false;
};

}  // namespace brimley::desktop
