// Reading the current form and the tables.
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <ostream>

#include "console/arguments.h"
#include "console/state_words.h"
#include "frame/form.h"
#include "kernel/visible_text.h"

namespace brimley::console {

using controls::ComboBox;
using controls::Grid;
using controls::GridColumn;
using kernel::visible_text;

std::string item_text(const ComboBox::Row& item) { return fmt::format("{}", fmt::join(item, ";")); }

std::vector<std::string> state_words(const controls::Control& control) {
    const auto* grid = dynamic_cast<const Grid*>(&control);
    const bool locked = control.locked() || (grid != nullptr && !grid->allow_update);
    return {locked ? "locked" : "open", control.reachable() ? "visible" : "hidden",
            control.enabled() ? "enabled" : "disabled",
            fmt::format("{}{:08x}", kBackWord, control.back_colour())};
}

bool is_state_word(const std::string& word) {
    static constexpr std::array kWords{"locked", "open", "visible", "hidden", "enabled", "disabled"};
    static constexpr std::size_t kColourDigits = 8;
    if (word.starts_with(kBackWord)) {
        const std::string_view colour = std::string_view(word).substr(kBackWord.size());
        return colour.size() == kColourDigits &&
               colour.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    }
    return std::find(kWords.begin(), kWords.end(), word) != kWords.end();
}

void Console::do_show(Arguments& arguments) {
    const controls::Control& shown = control(arguments.take("CONTROL"));
    out_ << shown.name() << " = " << visible_text(shown.shown()) << '\n';
}

void Console::do_state(Arguments& arguments) {
    const controls::Control& shown = control(arguments.take("CONTROL"));
    fmt::print(out_, "{}: {}\n", shown.name(), fmt::join(state_words(shown), " "));
}

void Console::do_list(Arguments& arguments) {
    const auto* combo = dynamic_cast<ComboBox*>(&control(arguments.take("CONTROL")));
    if (combo == nullptr) throw ScriptFault("only a combo has a list");
    for (const ComboBox::Row& item : combo->items())
        out_ << visible_text(item_text(item)) << '\n';
}

void Console::do_table(Arguments& arguments) {
    const Grid& shown = grid(arguments.take("GRID"));
    std::vector<int> seen = shown.column_order();
    std::erase_if(seen, [&](int column) { return !shown.columns[static_cast<std::size_t>(column)].visible; });
    const auto print_row = [&](auto&& text_of) {
        const char* separator = "";
        for (const int column : seen) {
            out_ << separator << visible_text(text_of(column));
            separator = "\t";
        }
        out_ << '\n';
    };
    print_row([&](int column) { return shown.columns[static_cast<std::size_t>(column)].caption; });
    for (int row = 0; row < shown.array.used_rows(); ++row) {
        print_row([&](int column) { return cell_shown(shown, row, column); });
    }
}

void Console::do_columns(Arguments& arguments) {
    const Grid& shown = grid(arguments.take("GRID"));
    static constexpr const char* kAlignments[] = {"left", "right", "centre"};
    const auto yes_no = [](bool flag) { return flag ? "TRUE" : "FALSE"; };
    for (const int index : shown.column_order()) {
        const GridColumn& column = shown.columns[static_cast<std::size_t>(index)];
        fmt::print(out_, "{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{:06x}\t{}\n", visible_text(column.caption),
                   yes_no(column.visible), yes_no(column.locked), column.width,
                   visible_text(column.font.name), store::shortest_number(column.font.size),
                   yes_no(column.font.bold), yes_no(column.font.italic), yes_no(column.font.underline),
                   column.font_colour, kAlignments[static_cast<std::size_t>(column.alignment)]);
    }
}

void Console::do_pressed(Arguments& arguments) {
    const int id = arguments.take_number("ID");
    const controls::Command* command = form().CommandBars1().find(id);
    const char* state = command == nullptr ? "absent" : command->pressed ? "pressed" : "released";
    fmt::print(out_, "{} {}\n", id, state);
}

void Console::do_why(Arguments& /*arguments*/) {
    if (desk_.why_failed().empty()) out_ << "why: nothing is known\n";
    for (const kernel::Reason& reason : desk_.why_failed())
        out_ << "why: " << visible_text(kernel::told(reason)) << '\n';
}

store::Recordset Console::query(const std::string& text) {
    if (!ap_.abcdb) throw ScriptFault("no company is open");
    try {
        return ap_.abcdb->OpenRecordset(text, store::RecordsetKind::snapshot);
    } catch (const store::Error& failure) {
        throw ScriptFault(failure.what());
    }
}

void Console::do_sql(Arguments& arguments) {
    auto rows = query(arguments.take_text("QUERY"));
    const auto print_row = [&](auto&& text_of) {
        for (int column = 0; column < rows.column_count(); ++column) {
            out_ << (column == 0 ? "" : "\t") << visible_text(text_of(column));
        }
        out_ << '\n';
    };
    print_row([&](int column) { return rows.column_name(column); });
    for (; !rows.at_eof(); rows.MoveNext()) {
        print_row([&](int column) { return rows.column(column).text(); });
    }
}

}  // namespace brimley::console
