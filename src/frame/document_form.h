// The frame of the forms that enter and show documents: fields, modes, transitions, walking.
//
// A document form is in exactly one of Read, New and Edit (Form::mode). Documents of a kind are walked by the
// number in their fkey
// ("1ip-57"), from the counter downwards or step by step over gaps, never by docno and never by a sorted
// query, so that a step costs the same however many documents are stored.
//
// A form fills in the variable points below and its own commands; what a transition does, and in which order,
// stands here once.
#pragma once

#include "frame/form.h"
#include "kernel/gl_posting.h"
#include "kernel/gl_reversal.h"

namespace brimley::frame {

inline constexpr const char* kNewDocno = "** New **";

// The tables and the number field that a form walks at the moment.
struct WalkTables {
    const char* header = "AP_header_table";
    const char* lines = "AP_transaction_table";
    const char* number_field = "docno";
    // Of the lines of a document. By value, so that line 10 stands behind line 9.
    const char* line_order = "VAL(pay_item)";
    // What a document found by its number must meet besides, where a table holds several kinds.
    const char* own_kind = "";
};

class DocumentForm : public Form {
  public:
    using Form::Form;

    // --- fields that every document form has ---
    controls::TextField txtdocno{controls_, "txtdocno"};
    controls::TextField txtfkey{controls_, "txtfkey"};
    controls::TextField txtglfkey{controls_, "txtglfkey"};
    controls::TextField txtdoctype{controls_, "txtdoctype"};
    controls::ComboBox cmbcompany{controls_, "cmbcompany"};
    controls::ComboBox cmbfyear{controls_, "cmbfyear"};
    controls::ComboBox cmbperiod{controls_, "cmbperiod"};
    controls::ComboBox cmbcurrency{controls_, "cmbcurrency"};
    controls::ComboBox cmbexrate{controls_, "cmbexrate", "0;1500;<;Rate|1;1500;^;Rate Date"};
    controls::DateField txtratedate{controls_, "txtratedate"};
    controls::TextField txtremark{controls_, "txtremark"};
    controls::TextField txtsource{controls_, "txtsource"};
    controls::TextField txtsource_docno{controls_, "txtsource_docno"};
    controls::CheckBox chkprint{controls_, "chkprint", "Printed"};
    controls::CheckBox chkvoid{controls_, "chkvoid", "Void"};
    controls::Grid dbgrid1{controls_, "dbgrid1"};
    controls::Frame frame_font{controls_, "frame_font", "Font"};
    controls::ComboBox cmbselcol{controls_, "cmbselcol"};
    controls::ComboBox cmbitfont{controls_, "cmbitfont"};
    controls::ComboBox cmbitcolor{controls_, "cmbitcolor", "0;1000;<;|1;2000;<;"};
    controls::ComboBox cmbfont_size{controls_, "cmbfont_size"};
    controls::Frame frame_status{controls_, "frame_status"};

    // --- what hosts steer ---
    virtual void last_record();
    virtual void next_record();
    virtual void previous_record();
    // Shows the document named in txtdocno.
    void Recordx();
    // Shows the document whose key stands in txtfkey.
    void Recordx_fkey();
    virtual void grid_readmode();
    virtual void grid_newmode();
    // Everything opens but the number; a form closes what an edit may not touch.
    virtual void grid_editmode();
    virtual void gencode_new() = 0;

    // --- the font bar (font_bar.cpp) ---
    [[nodiscard]] bool font_bar_shown() const override {
        return Form::font_bar_shown() || frame_font.visible();
    }
    // Each changes all columns of dbgrid1, or those that the user has selected, or the current one when none
    // is selected: cmbselcol tells.
    void font_bold();
    void font_italic();
    void font_underline();
    void font_align_left() { align(controls::Alignment::left); }
    void font_align_center() { align(controls::Alignment::centre); }
    void font_align_right() { align(controls::Alignment::right); }
    void cmbfont_size_itemchange();
    void cmbitfont_itemchange();
    void cmbitcolor_itemchange();
    // Keeps the fonts of the columns for everybody. Tells that it did, whether or not it could.
    void cmdsave_font_Click();
    // Back to the fonts last saved.
    void cmdrestore_font_click();

  protected:
    // --- variable points ---

    // Lists behind the combos, and the columns of the grid; once, while the form loads.
    virtual void initform_control() = 0;
    virtual void init_grid() = 0;
    // The doctype that the walk is about; may set txtdoctype.
    [[nodiscard]] virtual std::string doctype_of_walk() = 0;
    [[nodiscard]] virtual WalkTables walk_tables() const { return {}; }
    virtual void clear_box() = 0;
    virtual void assign2control(store::Recordset& header) = 0;
    virtual void assign2_dbgrid1(store::Recordset& lines) = 0;
    // Saves the entry on screen; false, after its messages, when nothing was saved.
    [[nodiscard]] virtual bool insert_new_record() = 0;
    // Saves the edit on screen; false, after its messages, when nothing was saved.
    [[nodiscard]] virtual bool Update_record() = 0;
    // Why the document on screen may not be edited, as a message; empty when it may.
    [[nodiscard]] virtual std::string edit_refusal() = 0;
    // Opens the document that txtdocno names, unless it is on screen already. False, after its message, when
    // there is none.
    [[nodiscard]] bool validate_docno();
    // Takes the next number and key of txtdoctype: txtdocno and txtfkey are the new document's then. False,
    // after the message of the counters, when there is none. Inside the caller's transaction.
    [[nodiscard]] bool draw_number(kernel::ModuleG3::TooLongMessage too_long);
    // False, after its message, when a number was typed over the one of the document on screen and not found:
    // what is done to that document must not go under it. A document that is gone is told of by the act.
    [[nodiscard]] bool bears_its_number();
    // The first line of the entry holds something.
    [[nodiscard]] virtual bool entry_has_data() = 0;
    // The "Open Invoice Only" view: true when it has taken the step.
    [[nodiscard]] virtual bool walk_open_documents(int /*direction*/) { return false; }
    // After last_record has shown a document.
    virtual void record_shown_by_walk() {}
    // After next_record and previous_record.
    virtual void record_stepped() {}
    // Where next_record and previous_record go while nothing stored is on screen.
    virtual void step_from_new_entry() { last_record(); }
    virtual void preview() {}
    virtual void insert_line() {}
    virtual void delete_line() {}
    // A command that only this form has.
    virtual void execute_own(int id) = 0;

    // The part of Form_Load that all document forms share, in its order; each step with errors ignored.
    void load_document_form();
    void read_gain_and_loss();
    // What a GL document of what is on screen says of it, and the reversal of the one that txtglfkey names.
    // The form adds its remark, its texts and what it does differently.
    [[nodiscard]] kernel::GlHeader gl_document(const char* source, store::DateTime gldate);
    [[nodiscard]] kernel::GlReversal gl_reversal(const char* source,
                                                 kernel::ModuleG3::TooLongMessage too_long);

    void CommandBars1_Execute(int id) override;
    // The commands of every document form with the form's own, by their ids. One of the form's takes the
    // place of the common one with its id.
    void add_commands(std::vector<controls::Command> own);
    void findGL();
    void fill_common_combos();
    // The font bar shows how the column looks that the user has come to.
    void dbgrid1_RowColChange(int old_column);
    [[nodiscard]] bool on_saved_document() const;

    // Every control whose name begins with one of the prefixes, in upper case.
    enum class FieldState { open, read_only };
    void set_all_fields(FieldState state);
    static void set_field(controls::Control& field, FieldState state);
    void set_lines_editable(bool editable);

    // Shows a header row with its lines. The screen is cleared only now, when the row was found.
    void show_document(store::Recordset& header) { show_document(header, walk_tables()); }
    void show_document(store::Recordset& header, const WalkTables& tables);
    // False when showing a document broke off in the middle: what stands on the screen must not be saved or
    // voided then.
    [[nodiscard]] bool shown_whole() const { return shown_whole_; }
    [[nodiscard]] store::Recordset header_by_fkey(std::string_view fkey, const WalkTables& tables);
    // The number last given to a document of the kind; 0: none was given yet.
    [[nodiscard]] std::int64_t last_number_issued(const std::string& doctype);
    // The newest stored header of a kind, looked for from this number down; from here on next_record goes up
    // to it. Nothing when none of the numbers is stored.
    [[nodiscard]] std::optional<store::Recordset> newest_header(const std::string& doctype,
                                                                std::int64_t last_no,
                                                                const WalkTables& tables);

    std::int64_t fkey_last_no = 0;
    std::string gain_accno, loss_accno;  // GL realized gain and loss accounts

    // Shows the first document that the criteria name, for the text that the user or host gave: without a
    // text the last one, and when there is none says so and returns to the document on screen.
    void show_named(const std::string& text, const std::string& criteria);

  private:
    bool show_where(const std::string& criteria);
    // The first stored header from number n on, up (1) or down (-1), that is not beyond last_no. A long run
    // of missing numbers is jumped over: an import may have moved a counter far ahead.
    [[nodiscard]] std::optional<store::Recordset> nearest_header(const std::string& prefix, std::int64_t n,
                                                                 int direction, std::int64_t last_no,
                                                                 const WalkTables& tables);
    [[nodiscard]] std::optional<std::int64_t> stored_number_beyond(const std::string& prefix, std::int64_t n,
                                                                   int direction, const WalkTables& tables);
    void press_new();
    void press_edit();
    void begin_edit();
    [[nodiscard]] bool refuses_edit();
    void press_save();
    void step_record(int direction);
    void leave_mode(int pressed_command);

    // font_bar.cpp
    void fill_font_bar();
    [[nodiscard]] bool execute_font(int id);
    [[nodiscard]] std::vector<int> columns_to_style() const;
    void style_columns(const std::function<void(controls::GridColumn&)>& change);
    // The new state of the command.
    bool toggle(int command);
    void align(controls::Alignment alignment);
    void show_alignment(controls::Alignment alignment);

    std::string shown_fkey_;  // the document on screen
    bool shown_whole_ = true;
    std::string doctype_of_last_no_;  // the kind that fkey_last_no is about
};

}  // namespace brimley::frame
