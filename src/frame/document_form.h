// The frame of the forms that enter and show documents: fields, modes, transitions, walking.
//
// A document form is in exactly one of Read, New and Edit (Form::mode):
//
//            105 New            106 Edit, unless edit_refusal
//     Read ----------> New      Read ----------> Edit
//     Read <---------- New      Read <---------- Edit
//          saved, or not wanted      saved, or not wanted
//
// Documents of a kind are walked by the number in their keys (frame/document_walk.h). A form fills in the
// variable points below and its own commands; what a transition does, and in which order, stands here once.
// What a form saves, posts and voids are parts of it (frame/document_part.h, frame/document_save.h).
#pragma once

#include "frame/document_walk.h"
#include "frame/grid_form.h"
#include "kernel/gl_posting.h"
#include "kernel/gl_reversal.h"

namespace brimley::frame {

inline constexpr const char* kNewDocno = "** New **";

class DocumentForm : public GridForm {
  public:
    DocumentForm(const FormIdentity& identity, HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                 Desk& desk, const WalkTables& tables = {});

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

    // --- what hosts steer ---
    virtual void last_record();
    virtual void next_record();
    virtual void previous_record();
    // Shows the document named in txtdocno: without a name the last one. A name that is not found is
    // reported, and the document that was on screen comes back.
    virtual void Recordx();
    // The same for the document whose key is in txtfkey.
    virtual void Recordx_fkey();
    [[nodiscard]] bool can_do(int id) const override;
    [[nodiscard]] std::string document_shown() const override { return txtdocno.shown(); }
    [[nodiscard]] std::string document_key() const override { return txtfkey.shown(); }
    // Types its number, as a user would.
    controls::Refusal bring_document(const std::string& name, const std::string& key) override;
    virtual void grid_readmode();
    virtual void grid_newmode();
    // Unlocks everything but the number; a form locks what an edit may not touch.
    virtual void grid_editmode();
    virtual void gencode_new() = 0;

  protected:
    // --- variable points ---

    // Lists behind the combos, and the columns of the grid; once, while the form loads.
    virtual void initform_control() = 0;
    virtual void init_grid() { build_grids(); }
    // The doctype that is walked; may set txtdoctype.
    [[nodiscard]] virtual std::string doctype_of_walk() = 0;
    // What is walked and looked up at the moment. A form of one kind of documents has one walk.
    [[nodiscard]] virtual DocumentWalk& walk() { return documents; }
    virtual void clear_box() = 0;
    virtual void assign2control(store::Recordset& header) = 0;
    virtual void assign2_dbgrid1(store::Recordset& lines) = 0;
    // What assign2_dbgrid1 gets for the document on screen in place of its own lines; empty: those.
    [[nodiscard]] virtual std::optional<store::Recordset> other_lines() { return std::nullopt; }
    // Saves the entry on screen; false, after its messages, when nothing was saved.
    [[nodiscard]] virtual bool insert_new_record() = 0;
    // Saves the edit on screen; false, after its messages, when nothing was saved.
    [[nodiscard]] virtual bool Update_record() = 0;
    // Why the document on screen may not be edited, as a message; empty when it may.
    [[nodiscard]] virtual std::string edit_refusal() = 0;
    // Whether the first line of the entry has anything in it.
    [[nodiscard]] virtual bool entry_has_data() = 0;
    // The "Open Invoice Only" view: true when it has taken the step.
    [[nodiscard]] virtual bool walk_open_documents(int /*direction*/) { return false; }
    // After last_record has shown a document.
    virtual void record_shown_by_walk() {}
    // After next_record and previous_record.
    virtual void record_stepped() {}
    // Where next_record and previous_record go while nothing stored is on screen.
    virtual void step_from_new_entry() { last_record(); }
    [[nodiscard]] virtual bool nothing_stored_on_screen() const;
    // When numbers were given out and no document is stored any more: true opens a new entry, false an empty
    // form.
    [[nodiscard]] virtual bool opens_as_new() const { return true; }
    virtual void preview() {}
    virtual void insert_line() {}
    virtual void delete_line() {}
    // A command that only this form has.
    virtual void execute_own(int id) = 0;

    // --- shared procedures ---

    // The part of Form_Load that all document forms share, in its order; each step with errors ignored.
    void load_document_form();
    void read_gain_and_loss();
    void CommandBars1_Execute(int id) override;
    void fill_common_combos();
    void findGL();
    // The document of another module that the one on screen came from.
    void origin_doc();
    // What the host is asked for to show it; null when it came from none.
    [[nodiscard]] const char* request_for_origin() const;

    // Whether the number and key of a stored document are on screen.
    [[nodiscard]] bool on_saved_document() const;
    // The same, of a document that the ledger knows.
    [[nodiscard]] bool on_posted_document() const { return on_saved_document() && !txtglfkey.empty(); }
    [[nodiscard]] std::string document_at_hand() override { return txtdocno.text(); }
    // New or Edit.
    [[nodiscard]] bool entering() const { return mode() != Mode::read; }
    // The document's currency is not the base currency.
    [[nodiscard]] bool foreign() const { return cmbcurrency.text() != context().BASE_CURRENCY; }
    // Period and year of the date in the field. An empty or unfinished date leaves them as they are.
    void take_period_of(const controls::DateField& field);
    // The stored rates of the currency on screen, oldest first, up to a date if one is given.
    [[nodiscard]] store::Recordset rates_of_currency(const std::optional<store::DateTime>& until);
    // The date in a field; empty, without a message, when there is none or it is no date.
    [[nodiscard]] std::optional<store::DateTime> date_in(const controls::TextField& field) const;
    // The same after a message: `missing` when no date was given, the kernel's words when it is no date.
    [[nodiscard]] std::optional<store::DateTime> required_date(const controls::DateField& field,
                                                               const std::string& missing);
    // Reasons why something is not stored.
    [[nodiscard]] static std::string no_date(const controls::TextField& field);
    [[nodiscard]] static std::string changed_since_shown(const store::Recordset& header) {
        return header.text("docno") + " has changed since it was shown.";
    }

    // Every control whose name begins with one of the prefixes of fields, in upper or lower case.
    enum class FieldState { open, read_only };
    void set_all_fields(FieldState state);
    static void set_field(controls::Control& field, FieldState state);
    // Makes everything read only except these; the lines cannot be changed either.
    void open_only(std::initializer_list<controls::Control*> fields);
    void set_lines_editable(bool editable);

    // --- showing documents (document_show.cpp) ---

    // Shows a header row with its lines. The screen is cleared only now, when the row was found.
    void show_document(store::Recordset& header) { show_document(header, walk()); }
    void show_document(store::Recordset& header, const DocumentWalk& its_walk);
    // Shows the first document that the criteria name, for the text that the user or host gave: without a
    // text the last one, and when there is none says so and returns to the document with the key `otherwise`,
    // the one on screen; in New that key is empty and leads to the last document.
    void show_named(const std::string& text, const std::string& criteria, const std::string& otherwise);
    // False when showing a document broke off in the middle: what is on the screen must not be saved or
    // voided then.
    [[nodiscard]] bool shown_whole() const { return shown_whole_; }
    // Opens the document that txtdocno names, unless it is on screen already. False, after its message, when
    // there is none.
    [[nodiscard]] bool validate_docno();
    // False, after its message, when a number was typed over the one of the document on screen and not found:
    // no act on that document may run under the number typed. A document that is gone is reported by the act.
    [[nodiscard]] bool has_its_number();

    // --- what a document on screen means to the ledger (document_posting.cpp) ---

    // Takes the next number and key of txtdoctype: afterwards txtdocno and txtfkey are the new document's.
    // False, after the message of the counters, when there is none. Inside the caller's transaction.
    [[nodiscard]] bool draw_number(kernel::ModuleG3::TooLongMessage too_long);
    // The description of the GL document of what is on screen, and of the reversal of the one in txtglfkey.
    [[nodiscard]] kernel::GlDocument gl_document(store::DateTime gldate);
    [[nodiscard]] kernel::GlReversal gl_reversal();

    DocumentWalk documents;
    std::string gain_accno, loss_accno;  // GL realized gain and loss accounts

  private:
    friend class DocumentPart;

    bool show_where(const std::string& criteria);
    void return_to_document(const std::string& fkey);
    void press_new();
    void press_edit();
    void begin_edit();
    [[nodiscard]] bool refuses_edit();
    void press_save();
    void step_record(int direction);
    void leave_mode(int pressed_command);

    std::string shown_fkey_;  // the document on screen
    bool shown_whole_ = true;
    bool returning_ = false;  // to the last document, after one that was not found
};

}  // namespace brimley::frame
