// Boxes and buttons on the screen: check boxes, option buttons, push buttons.
//
// A click asks the model and shows the result, so a refused click leaves the box as it was.
#pragma once

#include <QCheckBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>

#include "controls/fields.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

// What they share; Button is the toolkit's kind of button.
template <class Button>
class ButtonView : public Button, public ModelView {
  public:
    ButtonView(controls::Control& control, const std::string& caption, ActGate& gate)
        : Button(shown(caption)), control_(control), gate_(gate) {}

    void refresh() override {
        show_state(*this, control_);
        show_face(*this, control_);
        show_whether_open(*this, !control_.locked());
    }
    [[nodiscard]] controls::Refusal found_by_user() const override {
        const controls::Refusal found = state_found(*this);
        return found == controls::Refusal::none && !looks_open(*this) ? controls::Refusal::locked : found;
    }

  protected:
    void act(const ActGate::Act& act) {
        gate_.run(act);
        refresh();
    }
    virtual void press_enter() { this->focusNextPrevChild(true); }
    void keyPressEvent(QKeyEvent* event) override {
        if (is_enter(*event)) {
            press_enter();
        } else {
            Button::keyPressEvent(event);
        }
    }

  private:
    controls::Control& control_;
    ActGate& gate_;
};

class CheckView : public ButtonView<QCheckBox> {
  public:
    CheckView(controls::CheckBox& model, ActGate& gate)
        : ButtonView(model, model.caption(), gate), model_(model) {}
    void refresh() override;

  protected:
    void nextCheckState() override;

  private:
    controls::CheckBox& model_;
};

class OptionView : public ButtonView<QRadioButton> {
  public:
    OptionView(controls::OptionButton& model, ActGate& gate);
    void refresh() override;

  protected:
    void nextCheckState() override;

  private:
    controls::OptionButton& model_;
};

// Enter clicks it, as Space does.
class PushView : public ButtonView<QPushButton> {
  public:
    PushView(controls::PushButton& model, ActGate& gate)
        : ButtonView(model, model.caption(), gate), model_(model) {}

  protected:
    void nextCheckState() override;
    void press_enter() override { click(); }

  private:
    controls::PushButton& model_;
};

}  // namespace brimley::desktop
