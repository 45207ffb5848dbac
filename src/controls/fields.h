// The plain controls: text and date fields, check boxes, option and push buttons, labels, frames, pages
// behind tabs, progress bars.
#pragma once

#include <string>
#include <vector>

#include "controls/control.h"

namespace brimley::controls {

class TextField : public Control {
  public:
    using Control::Control;

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] bool empty() const { return text_.empty(); }
    void set(std::string text) { change(text_, std::move(text)); }
    [[nodiscard]] std::string shown() const override { return text_; }

    // The user types the text in place of what stands there, which fires on_change.
    [[nodiscard]] Refusal type(const std::string& text);
    // The user presses Enter in the field, or moves on to another.
    [[nodiscard]] Refusal press_enter();
    void leave();

    std::function<void()> on_change;
    std::function<void()> on_enter;
    std::function<void()> on_leave;

  private:
    std::string text_;
};

// A text field whose text is a date in the user's format. Hosts show it with a mask and a calendar.
class DateField : public TextField {
  public:
    using TextField::TextField;
};

class CheckBox : public Control {
  public:
    CheckBox(ControlSet& controls, std::string name, std::string caption)
        : Control(controls, std::move(name)), caption_(std::move(caption)) {}

    // 0 clear, 1 ticked, 2 grey.
    [[nodiscard]] int value() const { return value_; }
    [[nodiscard]] bool is_set() const { return value_ != 0; }
    void set(int value) { change(value_, value); }
    void set(bool ticked) { set(ticked ? 1 : 0); }
    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] std::string shown() const override { return std::to_string(value_); }

    // The user clicks the box until it is in this state.
    [[nodiscard]] Refusal click(bool ticked);

    std::function<void()> on_click;

  private:
    std::string caption_;
    int value_ = 0;
};

// One of a group of buttons of which one is set; the form says which belong together.
class OptionButton : public Control {
  public:
    OptionButton(ControlSet& controls, std::string name, std::string caption)
        : Control(controls, std::move(name)), caption_(std::move(caption)) {}

    [[nodiscard]] bool is_set() const { return set_; }
    [[nodiscard]] const std::string& caption() const { return caption_; }
    // Sets this one and clears the others of its group.
    void choose();
    static void group(const std::vector<OptionButton*>& buttons);
    [[nodiscard]] std::string shown() const override { return set_ ? "1" : "0"; }
    [[nodiscard]] Refusal click();

    std::function<void()> on_click;

  private:
    std::string caption_;
    bool set_ = false;
    std::vector<OptionButton*> group_;
};

// A button that does something when it is clicked, such as cmdsave.
class PushButton : public Control {
  public:
    PushButton(ControlSet& controls, std::string name, std::string caption)
        : Control(controls, std::move(name)), caption_(std::move(caption)) {}

    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] std::string shown() const override { return caption_; }
    [[nodiscard]] Refusal click();

    std::function<void()> on_click;

  private:
    std::string caption_;
};

class Label : public Control {
  public:
    Label(ControlSet& controls, std::string name, std::string caption)
        : Control(controls, std::move(name)), caption_(std::move(caption)) {}

    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(std::string caption) { change(caption_, std::move(caption)); }
    [[nodiscard]] std::string shown() const override { return caption_; }

  private:
    std::string caption_;
};

// A panel that holds other controls; hosts may show it as a docked pane with the caption as its title.
class Frame : public Control {
  public:
    Frame(ControlSet& controls, std::string name, std::string caption = {})
        : Control(controls, std::move(name)), caption_(std::move(caption)) {}

    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] std::string shown() const override { return caption_; }
    void refresh() const { tell(); }

    // A frame with a caption is a pane, which the user may close. It is hidden then, as if its command had
    // hidden it.
    [[nodiscard]] bool is_pane() const { return !caption_.empty(); }
    [[nodiscard]] Refusal close();

    // After the user has closed the pane.
    std::function<void()> on_close;

  private:
    std::string caption_;
};

// Pages that share one place, one of them in front. Which page is there decides nothing for the controls on
// them: they stay within the user's reach.
class TabControl : public Control {
  public:
    TabControl(ControlSet& controls, std::string name, std::vector<std::string> titles)
        : Control(controls, std::move(name)), titles_(std::move(titles)) {}

    [[nodiscard]] const std::vector<std::string>& titles() const { return titles_; }
    // The page in front, from 0.
    [[nodiscard]] int page() const { return page_; }
    [[nodiscard]] std::string shown() const override { return titles_.at(static_cast<std::size_t>(page_)); }

    // The user brings a page to the front.
    [[nodiscard]] Refusal choose(int page);

  private:
    std::vector<std::string> titles_;
    int page_ = 0;
};

class ProgressBar : public Control {
  public:
    using Control::Control;

    [[nodiscard]] int value() const { return value_; }
    void set(int percent) { change(value_, percent); }
    [[nodiscard]] std::string shown() const override { return std::to_string(value_); }

  private:
    int value_ = 0;
};

}  // namespace brimley::controls
