// The form of a master: a list of its rows, and the fields of the one that the cursor is on.
//
// Read shows; New and Edit open the fields; Save stores the row in a transaction of its own. The list is
// sorted by any column; its rows are written to a CSV file, and those of one are added, all or none. Only who
// keeps the company's rights may write, or who has a right of their own on the form.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/combo_box.h"
#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form.h"
#include "masters/master.h"

namespace brimley::company {
class CsvReader;
class OutputFile;
struct CsvCell;
}  // namespace brimley::company

namespace brimley::masters {

namespace command {
inline constexpr int kSort = 511;
inline constexpr int kWriteFile = 512;
inline constexpr int kReadFile = 513;
}  // namespace command

class MasterForm : public frame::Form, private Entered {
  public:
    // master: one of all_masters().
    MasterForm(const Master& master, frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
               frame::Desk& desk);

    controls::TextField txtsearch{controls_, "txtsearch"};
    // The CSV file that is written and read.
    controls::TextField txtfile{controls_, "txtfile"};
    controls::Grid dbgrid1{controls_, "dbgrid1"};

    [[nodiscard]] const Master& master() const { return master_; }
    // Shows the row whose first key this is. False when the list has none.
    bool show_key(const std::string& key);

    [[nodiscard]] bool can_do(int id) const override;
    [[nodiscard]] frame::FieldHint hint_of(const controls::Control& control) const override;
    [[nodiscard]] std::string document_shown() const override { return shown_ ? name_of_row() : ""; }
    // The texts of its key.
    [[nodiscard]] std::string document_key() const override;
    controls::Refusal bring_document(const std::string& name, const std::string& key) override;

    // So many rows are listed; Find looks for the others.
    static constexpr int kRowsMax = 1000;

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void CommandBars1_Execute(int id) override;
    void save_grid() override {}  // the company keeps no layout of it
    void read_rights_of(kernel::UserRights& rights) override;

  private:
    // A field and what it is typed into: of the kinds one.
    struct Place {
        const Field* field;
        std::unique_ptr<controls::Control> control;
    };
    // The key of a row, as its values stand in the table.
    using Key = std::vector<store::Value>;

    [[nodiscard]] std::unique_ptr<controls::Control> control_for(const Field& field);
    [[nodiscard]] std::string shown_text(const Field& field, const store::Value& value);
    void put(const Place& place, const store::Value& value);
    [[nodiscard]] std::string text_in(const Place& place) const;
    // What is typed, as the table keeps it; null for nothing.
    [[nodiscard]] store::Value value_in(const Place& place) const;
    [[nodiscard]] const Place* place_of(std::string_view field) const;

    // --- Entered ---
    [[nodiscard]] std::string text(std::string_view field) const override;
    [[nodiscard]] double number(std::string_view field) const override;
    [[nodiscard]] std::optional<store::DateTime> date(std::string_view field) const override;

    void list_rows();
    // By the column of the list that the cell is in; once more: the other way round.
    void sort_by_column();
    // " ORDER BY ..."
    [[nodiscard]] std::string order_of_keys() const;
    [[nodiscard]] std::string order_of_list() const;
    void show_row(int row);
    // The row of this key, on the screen; false when it is gone.
    bool show_stored(const Key& key);
    void clear_fields();
    void open_fields(frame::Mode mode);
    void set_mode(frame::Mode mode);
    void step_to(int row);

    void begin_new();
    void begin_edit();
    // Asks, when something was entered.
    void leave_entry();
    [[nodiscard]] bool is_changed() const;
    bool save();
    void remove();
    // "vendor V1001": the one on the screen.
    [[nodiscard]] std::string name_of_row() const;

    // --- what is right (master_rules.cpp) ---
    // False after its message.
    [[nodiscard]] bool is_right();
    [[nodiscard]] std::string fault_of(const Place& place);
    [[nodiscard]] std::string fault_of_text(const Place& place, const std::string& text);
    // "invoices"; empty: nobody.
    [[nodiscard]] std::string user_of_row(const std::vector<Use>& uses);
    // False, after its message, when a field was changed that cannot be, or not like this.
    [[nodiscard]] bool keeps_what_lasts();
    [[nodiscard]] bool leaves_company_right();

    // --- CSV files (master_files.cpp) ---
    [[nodiscard]] const store::Table& table();
    // Empty after its message, when none is named.
    [[nodiscard]] std::filesystem::path file_named();
    void write_file();
    // Returns how many.
    int write_rows(company::OutputFile& file);
    // All rows of the file or none.
    void read_file();
    // Throws CsvError. Returns how many.
    int add_rows_of(company::CsvReader& file);
    [[nodiscard]] std::vector<const Place*> columns_of(company::CsvReader& file);
    void show_record(const company::CsvReader& file, const std::vector<const Place*>& columns,
                     const std::vector<company::CsvCell>& record);

    // --- what is stored ---
    [[nodiscard]] std::string criteria_of(const Key& key) const;
    [[nodiscard]] Key key_on_screen() const;
    [[nodiscard]] store::Recordset stored_row(const Key& key);
    [[nodiscard]] store::Recordset made_row();
    [[nodiscard]] bool add_row();
    [[nodiscard]] bool change_row();
    // Held until the transaction ends, so that nobody adds or takes away a row meanwhile.
    void hold_masters();

    const Master& master_;
    std::vector<Place> places_;
    const Field* sorted_by_ = nullptr;      // null: by the keys
    bool downwards_ = false;                // from the last to the first
    std::vector<Key> listed_;               // by the rows of the list
    std::optional<Key> shown_;              // of the row on the screen
    std::vector<std::string> shown_texts_;  // of the places, as they were shown
};

}  // namespace brimley::masters
