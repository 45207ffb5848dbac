#include "entries/entry.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace brimley::entries {

namespace {

using controls::Act;

constexpr std::string_view kFirstLine = "brimley entry 1";

using Kind = Act::Kind;
constexpr std::array<std::pair<Kind, std::string_view>, 17> kKinds{{
    {Kind::type, "type"},
    {Kind::enter, "enter"},
    {Kind::leave, "leave"},
    {Kind::pick, "pick"},
    {Kind::click, "click"},
    {Kind::tick, "tick"},
    {Kind::untick, "untick"},
    {Kind::choose_page, "page"},
    {Kind::type_range, "range"},
    {Kind::close_pane, "close"},
    {Kind::visit_cell, "visit"},
    {Kind::open_editor, "open"},
    {Kind::leave_editor, "cell"},
    {Kind::abandon_editor, "abandon"},
    {Kind::double_click, "dblclick"},
    {Kind::press, "press"},
    {Kind::host_call, "call"},
}};

std::string_view word_of(Kind kind) {
    return std::ranges::find(kKinds, kind, &decltype(kKinds)::value_type::first)->second;
}

std::optional<Kind> kind_of(std::string_view word) {
    const auto* const found = std::ranges::find(kKinds, word, &decltype(kKinds)::value_type::second);
    return found == kKinds.end() ? std::nullopt : std::optional(found->first);
}

// A tab, a line's end and a backslash within a field.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '\t':
                result += "\\t";
                break;
            case '\n':
                result += "\\n";
                break;
            case '\\':
                result += "\\\\";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        ++i;
        result += text[i] == 't' ? '\t' : text[i] == 'n' ? '\n' : text[i];
    }
    return result;
}

template <class... Fields>
std::string line(const Fields&... fields) {
    std::string result;
    ((result += escaped(fields), result += '\t'), ...);
    result.back() = '\n';
    return result;
}

std::vector<std::string> fields_of(std::string_view text) {
    std::vector<std::string> fields;
    for (std::size_t from = 0;;) {
        const std::size_t tab = std::min(text.find('\t', from), text.size());
        fields.push_back(unescaped(text.substr(from, tab - from)));
        if (tab == text.size()) return fields;
        from = tab + 1;
    }
}

std::optional<int> whole_number(const std::string& text) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

// Reads the lines one after the other; false at the first that is none.
class Reader {
  public:
    bool take(const std::vector<std::string>& fields) {
        const std::string& word = fields.front();
        if (word == "head") return take_head(fields);
        if (word == "act") return take_step(fields);
        if (word == "pending") return take_pending(fields);
        if (word == "stood" && fields.size() == 3) return entry_.stood[fields[1]] = fields[2], true;
        if (word == "saving") return entry_.save_in_doubt = true;
        if (word == "doubt" && fields.size() == 2) return entry_.save_in_doubt = fields[1] == "yes", true;
        if (word == "taken from" && fields.size() == 2) return entry_.taken_from = fields[1], true;
        return false;
    }
    [[nodiscard]] std::optional<Entry> entry() && {
        if (entry_.head.form.empty() || entry_.steps.empty()) return std::nullopt;
        return std::move(entry_);
    }

  private:
    bool take_head(const std::vector<std::string>& fields) {
        if (fields.size() != 8) return false;
        const auto begun = store::DateTime::from_iso(fields[4]);
        if (!begun) return false;
        entry_.head = {fields[1], fields[2], fields[3], *begun, fields[5] == "edit", fields[6], fields[7]};
        return true;
    }
    bool take_step(const std::vector<std::string>& fields) {
        if (fields.size() != 10) return false;
        const auto at = store::DateTime::from_iso(fields[1]);
        const auto kind = kind_of(fields[2]);
        const auto row = whole_number(fields[4]);
        const auto column = whole_number(fields[5]);
        if (!at || !kind || !row || !column) return false;
        Step step{*at, {*kind, fields[3], *row, *column, fields[6], fields[7]}, {}, fields[9]};
        for (const char answer : fields[8])
            step.answers.push_back(answer == 'y');
        entry_.steps.push_back(std::move(step));
        entry_.pending.reset();
        if (*kind == Kind::press) entry_.save_in_doubt = false;  // it came back
        return true;
    }
    bool take_pending(const std::vector<std::string>& fields) {
        if (fields.size() != 5) return false;
        const auto row = whole_number(fields[2]);
        const auto column = whole_number(fields[3]);
        if (!row || !column) return false;
        entry_.pending = Pending{fields[1], *row, *column, fields[4]};
        return true;
    }

    Entry entry_;
};

}  // namespace

bool enters_something(Kind kind) {
    static constexpr std::array kEnter{Kind::type,   Kind::pick,       Kind::click,       Kind::tick,
                                       Kind::untick, Kind::type_range, Kind::leave_editor};
    return std::ranges::find(kEnter, kind) != kEnter.end();
}

bool holds_anything(const Entry& entry) {
    return entry.pending ||
           std::ranges::any_of(entry.steps, [](const Step& step) { return enters_something(step.act.kind); });
}

std::string line_of(const EntryHead& head) {
    return fmt::format("{}\n", kFirstLine) +
           line(std::string_view("head"), head.company, head.user, head.form, head.begun.iso(),
                std::string_view(head.edit ? "edit" : "new"), head.document, head.document_key);
}

std::string line_of(const Step& step) {
    std::string answers;
    for (const bool yes : step.answers)
        answers += yes ? 'y' : 'n';
    const Act& act = step.act;
    return line(std::string_view("act"), step.at.iso(), word_of(act.kind), act.control,
                std::to_string(act.row), std::to_string(act.column), act.text, act.other_text, answers,
                step.row_label);
}

std::string line_of(const Pending& pending) {
    return line(std::string_view("pending"), pending.control, std::to_string(pending.row),
                std::to_string(pending.column), pending.text);
}

std::string line_of_saving() { return line(std::string_view("saving")); }

std::string line_of_stood(std::string_view control, std::string_view shown) {
    return line(std::string_view("stood"), control, shown);
}

std::string line_of_doubt(bool in_doubt) {
    return line(std::string_view("doubt"), std::string_view(in_doubt ? "yes" : "no"));
}

std::string line_of_taken_from(std::string_view name) { return line(std::string_view("taken from"), name); }

std::optional<Entry> read_entry(std::string_view text) {
    Reader reader;
    bool first = true;
    for (std::size_t from = 0;;) {
        const std::size_t end = text.find('\n', from);
        if (end == std::string_view::npos) break;  // cut off
        const std::string_view one = text.substr(from, end - from);
        from = end + 1;
        if (std::exchange(first, false)) {
            if (one != kFirstLine) return std::nullopt;
        } else if (!reader.take(fields_of(one))) {
            break;
        }
    }
    return std::move(reader).entry();
}

}  // namespace brimley::entries
