#include "console/console.h"

#include <algorithm>
#include <ostream>

#include "console/arguments.h"
#include "frame/form.h"

namespace brimley::console {

Console::Console(const frame::HostContext& context, std::ostream& out)
    : out_(out), actor_(model_actor_), desk_(out), ap_(desk_) {
    static_cast<frame::HostContext&>(ap_) = context;
    listen();
}

Console::Console(const frame::HostContext& context, std::ostream& out, Actor& actor, frame::Desk& screen)
    : out_(out), actor_(actor), desk_(out), ap_(desk_) {
    static_cast<frame::HostContext&>(ap_) = context;
    desk_.show_on(screen);
    listen();
}

void Console::listen() {
    ap_.NotifyClients = [this](const std::string& formx, const std::string& docnox, const std::string& arg2) {
        desk_.notified(formx, docnox, arg2);
    };
    desk_.on_wait = [this] {
        if (waits_until_release_ > 0 && --waits_until_release_ == 0) {
            held_row_.reset();
            other_desk_.workspace->Rollback();
        }
    };
}

Console::~Console() = default;

void Console::run(const std::string& line, const std::string& place) {
    std::vector<std::string> words = split_line(line);
    if (words.empty()) return;
    place_ = place;
    const std::string name = words.front();
    const auto& table = command_table();
    const auto entry = std::find_if(table.begin(), table.end(),
                                    [&](const CommandEntry& known) { return known.name == name; });
    if (entry == table.end()) throw ScriptFault("unknown command: " + name);
    words.erase(words.begin());
    Arguments arguments(std::move(words));
    if (ap_.dbe) ap_.dbe->reconnect();
    (this->*entry->handler)(arguments);
    arguments.expect_end();
}

frame::Form& Console::form() {
    frame::Form* current = desk_.current_form();
    if (current == nullptr) throw ScriptFault("there is no current form");
    return *current;
}

controls::Control& Console::control(const std::string& name) {
    controls::Control* found = form().controls().find(name);
    if (found == nullptr) throw ScriptFault("unknown control: " + name);
    return *found;
}

controls::Grid& Console::grid(const std::string& name) {
    auto* found = dynamic_cast<controls::Grid*>(form().controls().find(name));
    if (found == nullptr) throw ScriptFault("unknown grid: " + name);
    return *found;
}

int Console::column_of(const controls::Grid& grid, const std::string& caption) {
    const int column = grid.get_column(caption);
    if (column < 0) throw ScriptFault("grid " + grid.name() + " has no column " + caption);
    return column;
}

std::string Console::cell_shown(const controls::Grid& grid, int row, int column) {
    const std::string text(grid.array.get(row, column));
    if (!grid.columns[static_cast<std::size_t>(column)].check_box || row >= grid.array.used_rows())
        return text;
    return store::Value(text).flag() ? "TRUE" : "FALSE";
}

void Console::tidy() {
    if (ap_.dbe) ap_.dbe->tidy();
}

std::vector<std::string> Console::words() const {
    std::vector<std::string> known;
    for (const CommandEntry& entry : command_table())
        known.emplace_back(entry.name);
    for (std::string& name : host::method_names())
        known.push_back(std::move(name));
    for (const auto& form : desk_.open_forms())
        known.emplace_back(form->identity().class_name);
    if (frame::Form* current = desk_.current_form()) {
        for (const controls::Control* control : current->controls().all())
            known.push_back(control->name());
    }
    return known;
}

}  // namespace brimley::console
