// Checks: each prints nothing when it holds.
#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "console/arguments.h"
#include "console/state_words.h"
#include "frame/form.h"
#include "kernel/visible_text.h"

namespace brimley::console {

using kernel::visible_text;

namespace {

std::string shown_text(const std::string& text) { return "\"" + visible_text(text) + "\""; }

// The oldest entry of a queue, when it is what was expected, is taken out.
template <class Queue, class Same>
bool take_oldest(Queue& queue, Same same) {
    if (queue.empty() || !same(queue.front())) return false;
    queue.pop_front();
    return true;
}

template <class Queue, class Text>
std::string oldest(const Queue& queue, Text text) {
    return queue.empty() ? "none" : shown_text(text(queue.front()));
}

}  // namespace

void Console::check(bool holds, const std::string& expected, const std::string& got) {
    ++(holds ? passed_ : failed_);
    if (!holds) out_ << visible_text(place_) << ": expected " << expected << ", got " << got << '\n';
}

void Console::do_expect(Arguments& arguments) {
    const std::string what = arguments.take("what is expected");
    if (what == "state") return expect_state(arguments);
    if (what == "cell") return expect_cell(arguments);
    if (what == "rows") return expect_rows(arguments);
    if (what == "pressed" || what == "released" || what == "absent") return expect_command(arguments, what);
    if (what == "message" || what == "question" || what == "notify" || what == "refused" ||
        what == "closed") {
        return expect_happening(arguments, what);
    }
    if (what == "nothing") return expect_nothing();
    if (what == "list") return expect_list(arguments);
    if (what == "sql") return expect_sql(arguments);
    expect_text(arguments, what);
}

void Console::expect_text(Arguments& arguments, const std::string& control_name) {
    const controls::Control& shown = control(control_name);
    if (!arguments.take_if("=")) throw ScriptFault("= is missing");
    const std::string value = arguments.take_text("VALUE");
    check(shown.shown() == value, fmt::format("{} = {}", shown.name(), shown_text(value)),
          shown_text(shown.shown()));
}

void Console::expect_state(Arguments& arguments) {
    const controls::Control& shown = control(arguments.take("CONTROL"));
    std::vector<std::string> state = state_words(shown);
    const std::vector<std::string> wanted = arguments.take_rest();
    if (wanted.empty()) throw ScriptFault("WORD is missing");
    for (const std::string& word : wanted) {
        if (!is_state_word(word)) throw ScriptFault("unknown state: " + word);
    }
    const bool holds = std::all_of(wanted.begin(), wanted.end(), [&](const std::string& word) {
        return std::find(state.begin(), state.end(), word) != state.end();
    });
    // The colour is printed only when it was asked for.
    const bool about_colour = std::any_of(
        wanted.begin(), wanted.end(), [](const std::string& word) { return word.starts_with(kBackWord); });
    if (!about_colour) state.pop_back();
    check(holds, fmt::format("{} {}", shown.name(), fmt::join(wanted, " ")),
          fmt::format("{}", fmt::join(state, " ")));
}

void Console::expect_cell(Arguments& arguments) {
    const controls::Grid& shown = grid(arguments.take("GRID"));
    const int row = arguments.take_row();
    const std::string caption = arguments.take("CAPTION");
    const std::string got = cell_shown(shown, row, column_of(shown, caption));
    if (!arguments.take_if("=")) throw ScriptFault("= is missing");
    const std::string value = arguments.take_text("VALUE");
    check(got == value,
          fmt::format("cell {} {} {} = {}", shown.name(), row, shown_text(caption), shown_text(value)),
          shown_text(got));
}

void Console::expect_rows(Arguments& arguments) {
    const controls::Grid& shown = grid(arguments.take("GRID"));
    const int rows = arguments.take_number("N");
    check(shown.array.used_rows() == rows, fmt::format("{} rows in {}", rows, shown.name()),
          std::to_string(shown.array.used_rows()));
}

void Console::expect_command(Arguments& arguments, const std::string& state) {
    const int id = arguments.take_number("ID");
    const controls::Command* command = form().CommandBars1().find(id);
    const std::string got = command == nullptr ? "absent" : command->pressed ? "pressed" : "released";
    check(got == state, fmt::format("{} {}", id, state), got);
}

void Console::expect_happening(Arguments& arguments, const std::string& kind) {
    Happenings& happened = desk_.happenings();
    const auto same_text = [](const std::string& text) { return text; };
    const auto expect_one = [&](auto& queue, auto text_of, const std::string& wanted, bool pattern) {
        const std::string got = oldest(queue, text_of);
        const bool holds = take_oldest(queue, [&](const auto& entry) {
            return pattern ? matches_pattern(wanted, text_of(entry)) : text_of(entry) == wanted;
        });
        check(holds, fmt::format("{} {}{}", kind, pattern ? "like " : "", shown_text(wanted)), got);
    };
    if (kind == "refused") return expect_one(happened.refusals, same_text, arguments.take("NAME"), false);
    if (kind == "closed") return expect_one(happened.closed, same_text, arguments.take("CLASS"), false);
    const bool pattern = arguments.take_if("like");
    if (kind == "notify") {
        const auto line_of = [](const Happenings::Notification& notification) { return notification.line(); };
        if (pattern) return expect_one(happened.notifications, line_of, arguments.take_text("PATTERN"), true);
        Happenings::Notification wanted;
        wanted.formx = arguments.take("FORMX");
        wanted.docnox = arguments.take("DOCNOX");
        wanted.arg2 = arguments.take("ARG2");
        return expect_one(happened.notifications, line_of, wanted.line(), false);
    }
    auto& queue = kind == "message" ? happened.messages : happened.questions;
    expect_one(queue, same_text, arguments.take_text("TEXT"), pattern);
}

void Console::expect_nothing() {
    Happenings& left = desk_.happenings();
    std::vector<std::string> texts;
    for (const auto& text : left.messages)
        texts.push_back("message " + shown_text(text));
    for (const auto& text : left.questions)
        texts.push_back("question " + shown_text(text));
    for (const auto& name : left.refusals)
        texts.push_back("refused " + name);
    for (const auto& notification : left.notifications)
        texts.push_back("notify " + shown_text(notification.line()));
    check(texts.empty(), "nothing", fmt::format("{}", fmt::join(texts, "; ")));
    left.clear();
}

void Console::expect_list(Arguments& arguments) {
    const auto* combo = dynamic_cast<controls::ComboBox*>(&control(arguments.take("CONTROL")));
    if (combo == nullptr) throw ScriptFault("only a combo has a list");
    const int index = arguments.take_number("N");
    const std::string wanted = arguments.take_text("TEXT");
    const auto& items = combo->items();
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < items.size();
    const std::string got = exists ? item_text(items[static_cast<std::size_t>(index)]) : "no such item";
    check(exists && got == wanted, fmt::format("item {} of {} {}", index, combo->name(), shown_text(wanted)),
          shown_text(got));
}

void Console::expect_sql(Arguments& arguments) {
    const std::string text = arguments.take("QUERY");
    const auto rows = query(text);
    if (arguments.take_if("rows")) {
        const int wanted = arguments.take_number("N");
        check(rows.RecordCount() == wanted, fmt::format("{} rows", wanted),
              std::to_string(rows.RecordCount()));
        return;
    }
    if (!arguments.take_if("=")) throw ScriptFault("= or rows is missing");
    const std::string wanted = arguments.take_text("VALUE");
    if (rows.at_eof()) {
        check(false, shown_text(wanted), "no row");
        return;
    }
    const std::string got = rows.column(0).text();
    check(got == wanted, shown_text(wanted), shown_text(got));
}

}  // namespace brimley::console
