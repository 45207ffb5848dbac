// The plain fields on the screen: text, notes of several lines, labels, progress bars.
//
// What is typed reaches the model when the user leaves the field, presses Enter or gives a command; leaving a
// field that nobody typed in hands nothing over.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "controls/fields.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

// What a line shows and hands over to: the acts of its model.
struct Entry {
    std::function<std::string()> text;
    std::function<controls::Refusal(const std::string&)> type;
    std::function<controls::Refusal()> press_enter;
    std::function<void()> leave;
};

// The entry of a text field or a combo.
template <class Model>
[[nodiscard]] Entry entry_of(Model& model) {
    return {[&model] { return model.text(); }, [&model](const std::string& text) { return model.type(text); },
            [&model] { return model.press_enter(); }, [&model] { model.leave(); }};
}

// A line that takes text.
class EntryView : public QLineEdit, public ModelView {
  public:
    EntryView(controls::Control& control, Entry entry, ActGate& gate);

    void refresh() override;
    bool commit() override;
    void show_mark(const QString& text) override;
    [[nodiscard]] controls::Refusal found_by_user() const override;
    // Selects all of it whichever way the user comes in.
    void select_on_focus() { selects_on_focus_ = true; }
    // Puts the text in as if the user had typed it.
    void put_typed(const QString& text);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // What stands there now counts as typed.
    void put_completed();
    [[nodiscard]] ActGate& gate() { return gate_; }

  private:
    void press_enter();

    controls::Control& control_;
    Entry entry_;
    ActGate& gate_;
    bool typed_since_entered_ = false;
    bool selects_on_focus_ = false;
    bool just_focused_ = false;
    bool is_marked_ = false;
};

// A text of several lines. Enter begins a new one; Tab moves on.
class NoteView : public QPlainTextEdit, public ModelView {
  public:
    NoteView(controls::TextField& model, ActGate& gate);

    void refresh() override;
    bool commit() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;

  protected:
    void focusOutEvent(QFocusEvent* event) override;

  private:
    controls::TextField& model_;
    ActGate& gate_;
};

class LabelView : public QLabel, public ModelView {
  public:
    explicit LabelView(controls::Label& model);
    void refresh() override;
    [[nodiscard]] controls::Refusal found_by_user() const override { return state_found(*this); }

  private:
    controls::Label& model_;
};

class ProgressView : public QProgressBar, public ModelView {
  public:
    explicit ProgressView(controls::ProgressBar& model);
    void refresh() override;
    [[nodiscard]] controls::Refusal found_by_user() const override { return state_found(*this); }

  private:
    controls::ProgressBar& model_;
};

// Whether focus was lost to another field, and not to a box or another window that the user comes back from.
[[nodiscard]] bool moved_on(const QFocusEvent& event);

}  // namespace brimley::desktop
