// The commands of a form: one set of ids behind menus, toolbars, popup and keys.
//
// A command's pressed state is part of the model: New and Edit mode are nothing but the pressed state of
// their commands.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/control.h"

namespace brimley::controls {

struct Command {
    int id = 0;
    std::string caption;    // with "&" before its access key, in menus
    std::string tool_text;  // on the toolbar; empty: the caption without "&"
    std::string tool_tip;   // empty: the tool text
    std::vector<std::string>
        bars;  // "File", "Edit" ... are menus; "Standard" and "Font" toolbars; "Popup" the grid's menu
    char ctrl_key = 0;  // with Ctrl
    bool pressed = false;
    bool enabled = true;
};

class CommandBars {
  public:
    void add(Command command);
    // Null when the form has no such command.
    [[nodiscard]] Command* find(int id);
    [[nodiscard]] const Command* find(int id) const;
    [[nodiscard]] const std::vector<Command>& commands() const { return commands_; }

    // From code; commands that the form does not have are ignored, and are never pressed.
    void set_pressed(int id, bool pressed);
    [[nodiscard]] bool pressed(int id) const;
    void set_enabled(int id, bool enabled);

    // Text below the toolbar's icons, and whether the font bar is shown. Both exist before the commands do.
    bool show_text = false;
    bool font_bar_visible = false;
    // The user shows or hides the font bar.
    void show_font_bar(bool visible);
    // After the font bar was shown or hidden.
    std::function<void(bool visible)> on_font_bar;

    std::function<void()> on_shown_change;

  private:
    std::vector<Command> commands_;
};

}  // namespace brimley::controls
