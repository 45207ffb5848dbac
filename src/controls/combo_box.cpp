#include "controls/combo_box.h"

#include <algorithm>
#include <charconv>

namespace brimley::controls {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t at = text.find(separator);
        parts.push_back(text.substr(0, at));
        if (at == std::string_view::npos) return parts;
        text.remove_prefix(at + 1);
    }
}

int to_int(std::string_view text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::vector<ComboColumn> parse_columns(std::string_view description) {
    std::vector<ComboColumn> columns;
    if (description.empty()) return columns;
    for (const std::string_view part : split(description, '|')) {
        const auto fields = split(part, ';');
        if (fields.size() < 4) continue;
        columns.push_back({to_int(fields[0]), to_int(fields[1]), fields[2].empty() ? '<' : fields[2][0],
                           std::string(fields[3])});
    }
    return columns;
}

}  // namespace

ComboBox::ComboBox(ControlSet& controls, std::string name, std::string_view columns)
    : Control(controls, std::move(name)), columns_(parse_columns(columns)) {}

void ComboBox::set_row(Row row) {
    set(row.empty() ? std::string{} : row[0]);
    known_row_ = std::move(row);
}

void ComboBox::set(std::string text) {
    picked_ = -1;
    known_row_.reset();
    change(text_, std::move(text));
}

void ComboBox::set_source(Source source) {
    source_ = std::move(source);
    refresh_items();
}

void ComboBox::refresh_items() {
    fetched_ = !source_;
    items_.clear();
    picked_ = -1;
    tell();
}

void ComboBox::set_items(std::vector<Row> rows) {
    source_ = nullptr;
    fetched_ = true;
    items_ = std::move(rows);
    picked_ = -1;
    tell();
}

const std::vector<ComboBox::Row>& ComboBox::items() const {
    if (!fetched_) {
        fetched_ = true;
        items_ = source_();
    }
    return items_;
}

int ComboBox::find_item(std::string_view text, bool ignoring_case) const {
    const auto& rows = items();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].empty()) continue;
        if (ignoring_case ? same_ignoring_case(rows[i][0], text) : rows[i][0] == text)
            return static_cast<int>(i);
    }
    return -1;
}

int ComboBox::list_index() const {
    if (picked_ >= 0) return picked_;
    if (known_row_) {
        const auto& rows = items();
        const auto same = std::find(rows.begin(), rows.end(), *known_row_);
        return same == rows.end() ? -1 : static_cast<int>(same - rows.begin());
    }
    return text_.empty() ? -1 : find_item(text_, false);
}

std::optional<std::string> ComboBox::chosen(std::size_t column) const {
    if (known_row_) return column < known_row_->size() ? (*known_row_)[column] : std::string{};
    const int index = list_index();
    if (index < 0) return std::nullopt;
    const Row& row = items()[static_cast<std::size_t>(index)];
    return column < row.size() ? row[column] : std::string{};
}

void ComboBox::select(int index) {
    const auto& rows = items();
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < rows.size();
    set(exists && !rows[static_cast<std::size_t>(index)].empty() ? rows[static_cast<std::size_t>(index)][0]
                                                                 : "");
    picked_ = exists ? index : -1;
}

Refusal ComboBox::pick(int index) {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    select(index);
    std::string picked = text_;
    if (on_item_select) on_item_select();
    acted({.kind = Act::Kind::pick, .row = index, .text = std::move(picked)});
    return Refusal::none;
}

Refusal ComboBox::type(const std::string& text) {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    int index = text.empty() ? -1 : find_item(text, false);
    if (index < 0 && !text.empty()) index = find_item(text, true);
    if (index >= 0) return pick(index);
    set(text);
    if (on_change) on_change();
    acted({.kind = Act::Kind::type, .text = text});
    return Refusal::none;
}

Refusal ComboBox::press_enter() {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (on_enter) on_enter();
    acted({.kind = Act::Kind::enter});
    return Refusal::none;
}

void ComboBox::leave() {
    if (on_leave) on_leave();
    acted({.kind = Act::Kind::leave});
}

}  // namespace brimley::controls
