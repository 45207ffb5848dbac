// The commands of the language: their names, what follows a name, and what they do in a line of help.
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <ostream>

#include "console/arguments.h"

namespace brimley::console {

const std::vector<Console::CommandEntry>& Console::command_table() {
    static const std::vector<CommandEntry> kCommands{
        {"context", "MEMBER VALUE", "sets a member of the host context", &Console::do_context},
        {"today", "DATE [TIME]", "stops the clock", &Console::do_today},
        {"computer", "NAME", "sets the name of the machine", &Console::do_computer},
        {"call", "METHOD [ARG...]", "calls a method of the host class", &Console::do_call},
        {"form", "CLASS", "makes the newest open form of the class current", &Console::do_form},
        {"answer", "yes|no|none", "queues the answer to a question", &Console::do_answer},
        {"otherdesk", "hold QUERY [WAITS] | release | forbid|allow FORM",
         "a second user holds a row, or changes the right to update (needs --other-desk)",
         &Console::do_otherdesk},
        {"help", "[COMMAND]", "prints the commands", &Console::do_help},
        {"set", "CONTROL VALUE", "types the value and leaves the field", &Console::do_set},
        {"enter", "CONTROL VALUE", "types the value and presses Enter", &Console::do_enter},
        {"check", "CONTROL", "ticks a box, picks an option button", &Console::do_check},
        {"uncheck", "CONTROL", "clears a box", &Console::do_uncheck},
        {"click", "CONTROL", "clicks a button", &Console::do_click},
        {"range", "CONTROL FROM TO", "types both dates of a date range", &Console::do_range},
        {"press", "ID", "presses a toolbar or menu command", &Console::do_press},
        {"close", "PANE", "closes a pane", &Console::do_close},
        {"fontbar", "on|off", "shows or hides the font bar", &Console::do_fontbar},
        {"cell", "GRID ROW CAPTION VALUE", "types into a cell and leaves it", &Console::do_cell},
        {"visit", "GRID ROW CAPTION", "moves into a cell", &Console::do_visit},
        {"dblclick", "GRID ROW", "double-clicks a row", &Console::do_dblclick},
        {"select", "GRID FROM TO | GRID none", "selects columns", &Console::do_select},
        {"column", "GRID CAPTION width|order N", "resizes or moves a column", &Console::do_column},
        {"rowheight", "GRID N", "resizes the rows", &Console::do_rowheight},
        {"show", "CONTROL", "prints what the control shows", &Console::do_show},
        {"state", "CONTROL", "prints whether it is locked, visible, enabled", &Console::do_state},
        {"list", "CONTROL", "prints the items of a combo", &Console::do_list},
        {"table", "GRID", "prints the captions and rows", &Console::do_table},
        {"columns", "GRID", "prints the columns and how they look", &Console::do_columns},
        {"pressed", "ID", "prints whether a command is pressed", &Console::do_pressed},
        {"sql", "QUERY", "prints the rows of a query", &Console::do_sql},
        {"why", "", "prints why the last act that failed was not stored", &Console::do_why},
        {"expect", "...", "checks what is shown or has happened; see help expect", &Console::do_expect},
        {"quit", "", "ends the console; what a script says after it is not read", &Console::do_quit},
    };
    return kCommands;
}

namespace {

struct Check {
    const char* arguments;
    const char* holds_when;
};

constexpr Check kChecks[] = {
    {"CONTROL = VALUE", "the control shows it"},
    {"state CONTROL WORD...", "its state has all these words"},
    {"cell GRID ROW CAPTION = VALUE", "the cell shows it"},
    {"rows GRID N", "N rows down to the last that holds anything"},
    {"pressed|released|absent ID", "the command is"},
    {"message|question [like] TEXT", "the oldest one not yet expected; like: * is any text"},
    {"notify FORMX DOCNOX ARG2", "likewise; notify like PATTERN"},
    {"refused NAME", "likewise: of a control, a grid or a command"},
    {"closed CLASS", "likewise: a form"},
    {"nothing", "nothing of these is left; the queues are emptied"},
    {"list CONTROL N TEXT", "item N of the combo, from 0"},
    {"sql QUERY = VALUE", "the first field of the first row"},
    {"sql QUERY rows N", "the number of rows"},
};

void print_help(std::ostream& out, const char* command, const char* arguments, const char* effect) {
    const std::string call = fmt::format("{} {}", command, arguments);
    fmt::print(out, "{:<40}{}{}\n", call, call.size() < 40 ? "" : " ", effect);
}

}  // namespace

void Console::do_help(Arguments& arguments) {
    const std::string wanted = arguments.more() ? arguments.take("COMMAND") : std::string{};
    const auto is_wanted = [&](const CommandEntry& entry) { return wanted.empty() || entry.name == wanted; };
    const auto& table = command_table();
    if (std::none_of(table.begin(), table.end(), is_wanted)) throw ScriptFault("unknown command: " + wanted);
    for (const CommandEntry& entry : table)
        if (is_wanted(entry)) print_help(out_, entry.name, entry.arguments, entry.effect);
    if (wanted != "expect") return;
    for (const Check& check : kChecks)
        print_help(out_, "expect", check.arguments, check.holds_when);
}

void Console::do_quit(Arguments& /*arguments*/) { has_quit_ = true; }

}  // namespace brimley::console
