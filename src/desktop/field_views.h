// The plain fields on the screen: text, notes of several lines, boxes, labels, progress bars.
//
// What is typed reaches the model when the user leaves the field, presses Enter or gives a command; a field
// that nobody typed in is left without a word.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>

#include "controls/fields.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

// A line that takes text. What it hands over to, and what it shows, its heirs tell.
class EntryView : public QLineEdit, public ModelView {
  public:
    EntryView(controls::Control& control, ActGate& gate);

    void refresh() override;
    void commit() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;
    // Selects all of it whichever way the user comes in.
    void select_on_focus() { selects_on_focus_ = true; }

  protected:
    [[nodiscard]] virtual const std::string& model_text() const = 0;
    [[nodiscard]] virtual controls::Refusal type_into_model(const std::string& text) = 0;
    [[nodiscard]] virtual controls::Refusal enter_model() = 0;
    virtual void leave_model() = 0;

    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    // Puts the text in as if the user had typed it.
    void put_typed(const QString& text);
    // What stands there now counts as typed.
    void put_completed();
    [[nodiscard]] ActGate& gate() { return gate_; }

  private:
    void press_enter();

    controls::Control& control_;
    ActGate& gate_;
    bool typed_since_entered_ = false;
    bool selects_on_focus_ = false;
    bool just_focused_ = false;
};

class TextView : public EntryView {
  public:
    TextView(controls::TextField& model, ActGate& gate) : EntryView(model, gate), model_(model) {}

  protected:
    [[nodiscard]] const std::string& model_text() const override { return model_.text(); }
    [[nodiscard]] controls::Refusal type_into_model(const std::string& text) override {
        return model_.type(text);
    }
    [[nodiscard]] controls::Refusal enter_model() override { return model_.press_enter(); }
    void leave_model() override { model_.leave(); }

  private:
    controls::TextField& model_;
};

// A text of several lines. Enter begins a new one; Tab moves on.
class NoteView : public QPlainTextEdit, public ModelView {
  public:
    NoteView(controls::TextField& model, ActGate& gate);

    void refresh() override;
    void commit() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;

  protected:
    void focusOutEvent(QFocusEvent* event) override;

  private:
    controls::TextField& model_;
    ActGate& gate_;
};

class CheckView : public QCheckBox, public ModelView {
  public:
    CheckView(controls::CheckBox& model, ActGate& gate);
    void refresh() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;

  protected:
    void nextCheckState() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    controls::CheckBox& model_;
    ActGate& gate_;
};

class OptionView : public QRadioButton, public ModelView {
  public:
    OptionView(controls::OptionButton& model, ActGate& gate);
    void refresh() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;

  protected:
    void nextCheckState() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    controls::OptionButton& model_;
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
