// A combo box: a text, and a list of rows of one or more columns to pick it from.
//
// The text is column 0 of the picked row, or whatever was typed. A list may be given as a source, which is
// asked the first time that somebody looks at the list; code that only assigns or reads the text never causes
// it to be fetched.
#pragma once

#include <functional>
#include <optional>

#include "controls/control.h"

namespace brimley::controls {

// One column as a description text such as "0;1700;<;Term|1;700;^;Code" gives it.
struct ComboColumn {
    int index = 0;
    int width = 0;  // twentieths of a point
    char alignment = '<';
    std::string caption;
};

// How a host draws the items: as texts, with a swatch of the colour code in column 0, or with a sample of the
// face named in column 0.
enum class ItemLook { text, colour, font };

class ComboBox : public Control {
  public:
    using Row = std::vector<std::string>;
    using Source = std::function<std::vector<Row>()>;

    ComboBox(ControlSet& controls, std::string name, std::string_view columns = {});

    [[nodiscard]] const std::vector<ComboColumn>& columns() const { return columns_; }
    [[nodiscard]] ItemLook item_look() const { return item_look_; }
    void set_item_look(ItemLook look) { item_look_ = look; }

    // --- text ---
    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] bool empty() const { return text_.empty(); }
    // From code. The row whose column 0 equals the text, if there is one, becomes the chosen row.
    void set(std::string text);
    void clear_choice() { set(""); }
    // From code that knows the whole row, so that the list need not be fetched to find which one is meant.
    void set_row(Row row);
    [[nodiscard]] std::string shown() const override { return text_; }

    // --- list ---
    // The list is fetched from the source when it is next looked at. The text stays.
    void set_source(Source source);
    void set_items(std::vector<Row> rows);
    void refresh_items();  // the source is asked again at the next look
    void clear_items() { set_items({}); }
    [[nodiscard]] const std::vector<Row>& items() const;
    // The chosen row, or -1.
    [[nodiscard]] int list_index() const;
    // A column of the chosen row; empty when no row is chosen.
    [[nodiscard]] std::optional<std::string> chosen(std::size_t column) const;
    void select(int index);  // from code; -1 chooses none and empties the text

    // --- the user ---
    // Picks a row of the list. Fires on_item_select.
    [[nodiscard]] Refusal pick(int index);
    // Types a text: an item whose first column is this text, whatever its case, is picked; any other text
    // stays as typed and fires on_change.
    [[nodiscard]] Refusal type(const std::string& text);
    [[nodiscard]] Refusal press_enter();
    void leave();

    std::function<void()> on_item_select;
    std::function<void()> on_change;
    std::function<void()> on_enter;
    std::function<void()> on_leave;

  private:
    [[nodiscard]] int find_item(std::string_view text, bool ignoring_case) const;

    std::vector<ComboColumn> columns_;
    ItemLook item_look_ = ItemLook::text;
    std::string text_;
    Source source_;
    mutable std::vector<Row> items_;
    mutable bool fetched_ = true;
    std::optional<Row> known_row_;  // the row that set_row gave
    int picked_ = -1;               // the row that was picked by position; -1: found by its text when asked
};

}  // namespace brimley::controls
