// What all eleven forms share: host context, rights, commands, load, exit.
//
//   host  -> show(), unload_form(), the form's own public members
//   user  -> press(id), and the user acts of the controls (controls/control.h)
//   form  -> NotifyClients, Desk
//
// Load: Form_Load runs once, at the first touch of a control from outside (ensure_loaded) or at show(),
// whichever comes first. It runs with errors ignored: a step that fails is noted and ignored, so a form
// without a database opens without data.
//
// Life: owned by the desk while it is on screen and by the host class while it is the newest of its kind. A
// form that has unloaded refuses every act of a user.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "controls/combo_box.h"
#include "controls/command_bars.h"
#include "controls/fields.h"
#include "frame/desk.h"
#include "frame/host_context.h"
#include "frame/transaction.h"
#include "kernel/module_g3.h"
#include "presentation/colours.h"

namespace brimley::frame {

enum class Mode { read, new_entry, edit };

// The names of a form; one constant per form.
struct FieldHint {
    std::string caption;  // empty: its name
    int width = 0;        // characters; 0: the host's usual width
    int lines = 1;
};

struct FormIdentity {
    const char* class_name;  // "APform_invoice": key of rights, properties and grid layouts
    const char* caption;     // the window's title
    const char* help_file;   // "\Help\AP Invoice Entry Help.pdf"
};

// Shown at the end of every command while the connection to the company is lost and cannot be made again.
// What was being saved is not tried again.
inline constexpr const char* kLostMessage = "The connection to the company is lost. Open the company again.";
inline constexpr const char* kInDoubtMessage =
    "The connection to the company was lost during a save, and it is not known whether that was stored. "
    "Open the company again and check before you enter it again.";
// The same for a company on a server, which the next command connects to again.
inline constexpr const char* kLostForNowMessage =
    "The connection to the company is lost. What you typed is still here; the next command connects again.";
inline constexpr const char* kInDoubtForNowMessage =
    "The connection to the company was lost during a save, and it is not known whether that was stored. "
    "The next command connects again and finds out; nothing is saved twice.";
// What was found out about it, in place of that command.
inline constexpr const char* kWasStoredMessage = "The connection is back. The last save was stored";
inline constexpr const char* kWasNotStoredMessage =
    "The connection is back. The last save was not stored; what you typed is still here.";
inline constexpr const char* kUndecidedMessage =
    "The connection is back, but the server has not finished the last save. It is not known yet whether it "
    "will be stored: try again in a while, and do not enter it again.";
// In place of a save, while something that belongs on the form could not be read.
inline constexpr const char* kHalfReadMessage =
    "Something that belongs to this entry could not be read while the connection was lost. It cannot be "
    "saved like this: begin a new one.";
inline constexpr const char* kUnknownMessage =
    "The connection is back. It cannot be found out whether the last save was stored: check before you "
    "enter it again.";

class Form : public std::enable_shared_from_this<Form> {
  public:
    Form(const FormIdentity& identity, HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
         Desk& desk);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    [[nodiscard]] const FormIdentity& identity() const { return identity_; }
    [[nodiscard]] const HostContext& context() const { return context_; }
    [[nodiscard]] controls::ControlSet& controls() { return controls_; }
    [[nodiscard]] controls::CommandBars& CommandBars1() { return bars_; }
    [[nodiscard]] bool is_open() const { return shown_; }
    // Whether the user had the right to write when the form was opened.
    [[nodiscard]] bool may_update() const { return rights_.Update; }

    void ensure_loaded();
    // A form that was loaded while the connection was lost is not shown: the user is told of the connection.
    void show();
    [[nodiscard]] bool is_whole() const { return !half_loaded_; }
    // Takes the form down without saving anything: its child form first, then itself.
    void unload_form();
    // The dialog that stands in a pane of this form; null when none does.
    [[nodiscard]] Form* child() const { return child_ && child_->shown_ ? child_.get() : nullptr; }
    // The last one, whether or not it is still open; null when there was none.
    [[nodiscard]] Form* last_child() const { return child_.get(); }
    // The user closes the child's pane: the child unloads. Refused (hidden) when none is open.
    [[nodiscard]] controls::Refusal close_child();

    // The user presses a toolbar or menu command. Refused (disabled) for a disabled command; absent ones are
    // the host's to notice (CommandBars1().find).
    [[nodiscard]] controls::Refusal press(int id);

    // False when the command would do nothing as the form stands, and say nothing: a host may show it grey.
    // Asks nothing of the company; in doubt true.
    [[nodiscard]] virtual bool can_do(int /*id*/) const { return true; }

    // What is on the screen, as a person names it, and what identifies it for good; empty: nothing, or this
    // form shows no documents.
    [[nodiscard]] virtual std::string document_shown() const { return {}; }
    [[nodiscard]] virtual std::string document_key() const { return {}; }
    // Shows what was named like this, in the read mode. Afterwards document_key() tells whether it is there.
    virtual controls::Refusal bring_document(const std::string& /*name*/, const std::string& /*key*/) {
        return controls::Refusal::disabled;
    }

    // How a host may show the control where nothing else says it.
    [[nodiscard]] virtual FieldHint hint_of(const controls::Control& /*control*/) const { return {}; }

    std::function<void(const std::string& formx, const std::string& docnox, const std::string& arg2)>
        NotifyClients;

    // The font bar is there when the user has switched it on, or while the form's font pane is open.
    [[nodiscard]] virtual bool font_bar_shown() const { return bars_.font_bar_visible; }

    // The mode is the pressed state of two commands and nothing else.
    [[nodiscard]] Mode mode() const;

  protected:
    // --- the variable points of a form ---
    virtual void Form_Load() = 0;
    virtual void init_toolbar() = 0;
    virtual void CommandBars1_Execute(int id) = 0;
    virtual void save_grid() = 0;
    // Remembers values of the form for the next time, with save_recent_value; called on Exit.
    virtual void save_recent_values() {}

    // --- shared procedures ---
    void save_before_exit();
    void init_form_property();
    void save_form_property();
    void set_BRIMLEY_COLOR();
    void init_fontcolor();
    // The remembered value of a control of this form; empty when there is none.
    [[nodiscard]] std::string recent_value(std::string_view control_name);
    // Writes it; a row that does not exist is not made.
    void save_recent_value(std::string_view control_name, std::string_view value);
    // Commands that are the same on every form: Exit, help, About, masters, toolbar text. False when the id
    // is none of them.
    bool execute_common(int id);
    // Shows the form in a pane of this one; it closes with this one.
    void show_child(std::shared_ptr<Form> child);

    // Without a database there is no kernel either, and a step does nothing.
    [[nodiscard]] bool has_database() const { return kernel_ != nullptr; }
    [[nodiscard]] kernel::ModuleG3& kernel() { return *kernel_; }
    [[nodiscard]] const std::shared_ptr<kernel::ModuleG3>& shared_kernel() const { return kernel_; }
    [[nodiscard]] Desk& desk() { return desk_; }
    [[nodiscard]] const kernel::UserRights& rights() const { return rights_; }
    void read_rights() { read_rights_of(rights_); }
    // The user's rights on this form, as the company says now.
    virtual void read_rights_of(kernel::UserRights& rights) {
        kernel().get_user_rights(identity_.class_name, context_.BRIMLEY_USER, rights);
    }
    void notify(const std::string& formx, const std::string& docnox = {}, const std::string& arg2 = {});
    void tell(const std::string& text) { desk_.message(text); }
    // Shows the message and returns false, as a check that has failed does.
    [[nodiscard]] bool refuse(const std::string& text) {
        if (kernel_) (void)kernel_->refuse(text);
        tell(text);
        return false;
    }
    // Notes why an act is not stored, for whoever asks for more than its message, and returns false.
    [[nodiscard]] bool fail(const std::string& why) { return kernel().refuse(why); }
    // For an act that was not stored, with the reasons noted since the command began; empty: it has no
    // message. When it is not known whether it was stored, the command's end reports that instead; and an act
    // without the right to it is refused without a message, as a disabled command is.
    void tell_failure(const std::string& text = {});
    [[nodiscard]] bool ask(const std::string& text, const std::string& title = {}) {
        return desk_.question(text, title);
    }

    // One step of a routine that runs with errors ignored.
    template <class Step>
    bool step(const char* name, Step&& action) {
        return kernel_ && kernel::carry_on(kernel_->reasons(), name, std::forward<Step>(action));
    }

    // How many steps have failed so far, including those within the kernel's routines, and the last one's
    // message.
    [[nodiscard]] std::int64_t failed_steps() const { return kernel_ ? kernel_->reasons().failures() : 0; }
    [[nodiscard]] std::string last_failure() const {
        return kernel_ ? kernel_->reasons().last_failure() : std::string{};
    }
    // Whether the right to write that the user had when the form was opened is still theirs, as the company
    // says now. A form that does not ask for the right lets everybody write as before. False: the act is
    // over, and the command that began it is refused as disabled.
    [[nodiscard]] bool still_may_update();
    // Whatever is written from now on was written by the user of this form: for those who write documents
    // without in_transaction(), which calls it.
    void sign_writes() { context_.dbe->sign({context_.BRIMLEY_USER, desk_.computer_name(), desk_.now()}); }
    // Runs the action in one transaction on the host's workspace. True when it returned true and is stored;
    // otherwise nothing of it is left, and what it threw is noted under the name and is the `failure`.
    template <class Action>
    bool in_transaction(const char* name, Action&& action, std::string* failure = nullptr) {
        if (half_read_) return refuse(kHalfReadMessage);
        bool done = false;
        refused_for_rights_ = false;
        const bool whole = step(name, [&] {
            Transaction transaction(context_.dbe);
            if (!still_may_update()) return;
            sign_writes();
            done = std::forward<Action>(action)();
            if (done) transaction.commit();
        });
        if (!whole) note_doubt(document_at_hand());
        if (!whole && failure != nullptr) *failure = last_failure();
        return whole && done;
    }

    // A list for a combo box or a drop-down: the rows of a query, in the order of its columns. It may be
    // long, and is fetched when somebody looks at it; after a failure it is empty.
    using ListSource = std::function<kernel::TextRows()>;
    [[nodiscard]] ListSource rows_of(std::string query);

    // Dates of fields and cells, in the user's format.
    [[nodiscard]] std::string date_text(const store::Value& value) const;
    [[nodiscard]] std::string date_text(store::DateTime date) const;

    // What commands 201 and 204 send; empty where the form has no such cell or field.
    [[nodiscard]] virtual std::string account_of_current_line() { return {}; }
    [[nodiscard]] virtual std::string current_vendor() { return {}; }
    // The number of the document that is being saved; empty where there is none.
    [[nodiscard]] virtual std::string document_at_hand() { return {}; }

    controls::ControlSet controls_;
    controls::CommandBars bars_;
    presentation::Palette palette_{};

  private:
    friend class FormPart;  // the pieces that forms are made of have the services above

    [[nodiscard]] store::ConnectionState connection_state() const;
    // Connects again when the connection was lost. False when the command is over, because it was told
    // instead what became of the last one.
    [[nodiscard]] bool connected_for(int id);
    // Notes whether something that stands on the form is missing, because calls outside of commands were
    // lost.
    void note_lost_calls();
    // Runs the command and notes what it could not read, if it is one that reads for the screen.
    void execute(int id);
    void note_doubt(const std::string& document);
    void tell_of_doubt();
    void tell_of_connection();
    void about();

    const FormIdentity& identity_;
    const HostContext context_;
    std::shared_ptr<kernel::ModuleG3> kernel_;
    Desk& desk_;
    kernel::UserRights rights_;
    std::shared_ptr<Form> child_;
    bool refused_for_rights_ = false;  // the last act that writes
    std::int64_t reasons_before_ = 0;  // the command that is being carried out, or was last
    bool loaded_ = false;
    bool shown_ = false;
    // Calls that were lost outside of commands, as far as this form has looked at them.
    std::int64_t lost_calls_seen_ = 0;
    bool half_read_ = false;
    bool half_loaded_ = false;  // nothing mends that, so it is not shown
    // While a save of this form is in doubt: the number of the doubt, and its document, which may have none.
    struct InDoubt {
        int number;
        std::string document;
    };
    std::optional<InDoubt> in_doubt_;
};

// Command ids that code refers to by name; the rest stand in the forms' command tables only.
namespace command {
inline constexpr int kExit = 100;
inline constexpr int kSave = 101;
inline constexpr int kPageSetup = 102;
inline constexpr int kPreview = 103;
inline constexpr int kFind = 104;
inline constexpr int kNew = 105;
inline constexpr int kEditMode = 106;
inline constexpr int kPrevious = 107;
inline constexpr int kNext = 108;
inline constexpr int kLast = 109;
inline constexpr int kInsertLine = 110;
inline constexpr int kDeleteLine = 111;
inline constexpr int kGlRecord = 113;
inline constexpr int kOrigin = 114;
inline constexpr int kClear = 115;
inline constexpr int kFont = 116;
inline constexpr int kPrintColumn = 124;
inline constexpr int kVoidPayment = 133;
inline constexpr int kRefresh = 136;
inline constexpr int kAccountMaster = 201;
inline constexpr int kItemMaster = 202;
inline constexpr int kVendorMaster = 204;
inline constexpr int kFormHelp = 206;
inline constexpr int kSystemHelp = 207;
inline constexpr int kAbout = 208;
inline constexpr int kShowText = 209;
inline constexpr int kSaveFont = 401;
inline constexpr int kRestoreFont = 402;
inline constexpr int kBold = 403;
inline constexpr int kItalic = 404;
inline constexpr int kUnderline = 405;
inline constexpr int kAlignLeft = 406;
inline constexpr int kAlignCentre = 407;
inline constexpr int kAlignRight = 408;
}  // namespace command

}  // namespace brimley::frame
