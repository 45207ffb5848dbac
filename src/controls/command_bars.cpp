#include "controls/command_bars.h"

#include <algorithm>
#include <utility>

namespace brimley::controls {

void CommandBars::add(Command command) { commands_.push_back(std::move(command)); }

const Command* CommandBars::find(int id) const {
    const auto found = std::find_if(commands_.begin(), commands_.end(),
                                    [id](const Command& command) { return command.id == id; });
    return found == commands_.end() ? nullptr : &*found;
}

Command* CommandBars::find(int id) { return const_cast<Command*>(std::as_const(*this).find(id)); }

void CommandBars::set_pressed(int id, bool pressed) {
    Command* command = find(id);
    if (command == nullptr || command->pressed == pressed) return;
    command->pressed = pressed;
    if (on_shown_change) on_shown_change();
}

bool CommandBars::pressed(int id) const {
    const Command* command = find(id);
    return command != nullptr && command->pressed;
}

void CommandBars::show_font_bar(bool visible) {
    font_bar_visible = visible;
    if (on_font_bar) on_font_bar(visible);
    if (on_shown_change) on_shown_change();
}

void CommandBars::set_enabled(int id, bool enabled) {
    Command* command = find(id);
    if (command == nullptr || command->enabled == enabled) return;
    command->enabled = enabled;
    if (on_shown_change) on_shown_change();
}

}  // namespace brimley::controls
