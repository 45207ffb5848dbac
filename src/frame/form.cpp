#include "frame/form.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "kernel/user_dates.h"

namespace brimley::frame {

using controls::Refusal;

Form::Form(const FormIdentity& identity, HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
           Desk& desk)
    : identity_(identity), context_(std::move(context)), kernel_(std::move(kernel)), desk_(desk) {
    bars_.show_text = context_.text_below_icons;
}

Form::~Form() = default;

void Form::ensure_loaded() {
    if (loaded_) return;
    loaded_ = true;
    const std::int64_t lost = context_.dbe ? context_.dbe->lost_calls() : 0;
    Form_Load();
    if (!context_.dbe) return;
    lost_calls_seen_ = lost;
    half_loaded_ = context_.dbe->lost_calls() != lost;
    context_.dbe->forgive_lost_calls(context_.dbe->lost_calls() - lost);
}

void Form::show() {
    ensure_loaded();
    if (half_loaded_) return tell_of_connection();
    if (shown_) {
        desk_.form_raised(*this);
        return;
    }
    shown_ = true;
    desk_.form_shown(shared_from_this());
}

void Form::show_child(std::shared_ptr<Form> child) {
    if (child_) child_->unload_form();
    child->ensure_loaded();
    child_ = child->half_loaded_ ? nullptr : std::move(child);
    if (!child_) return;  // the end of the command tells of the connection
    child_->shown_ = true;
    desk_.child_shown(*this, child_);
}

Refusal Form::close_child() {
    if (child() == nullptr) return Refusal::hidden;
    const auto alive = child_;
    alive->unload_form();
    return Refusal::none;
}

void Form::unload_form() {
    const auto alive = shared_from_this();
    if (child_) {
        child_->unload_form();
        child_.reset();
    }
    if (!shown_) return;
    shown_ = false;
    controls_.close();
    desk_.form_closed(*this);
}

Refusal Form::press(int id) {
    const auto alive = shared_from_this();  // Exit releases the form while this runs
    const controls::Command* pressed = bars_.find(id);
    if (!shown_ || pressed == nullptr || !pressed->enabled) return Refusal::disabled;
    if (!connected_for(id)) return Refusal::none;
    refused_for_rights_ = false;
    if (kernel_) reasons_before_ = kernel_->reasons().count();
    if (controls_.listener() != nullptr) controls_.listener()->before_command(id);
    execute(id);
    tell_of_connection();
    if (controls_.listener() != nullptr)
        controls_.listener()->acted({.kind = controls::Act::Kind::press, .row = id});
    return refused_for_rights_ ? Refusal::disabled : Refusal::none;
}

void Form::tell_failure(const std::string& text) {
    if (refused_for_rights_ || connection_state() == store::ConnectionState::in_doubt) return;
    desk_.failure(text, kernel_ ? kernel_->reasons().since(reasons_before_) : std::vector<kernel::Reason>{});
}

bool Form::still_may_update() {
    if (!rights_.Update) return true;
    kernel::UserRights now;
    read_rights_of(now);
    refused_for_rights_ = !now.Update;
    return now.Update;
}

namespace {

bool reads_anew(int id) {
    static constexpr std::array kReading{command::kNew,     command::kFind,     command::kClear,
                                         command::kRefresh, command::kPrevious, command::kNext,
                                         command::kLast,    command::kOrigin};
    return std::ranges::find(kReading, id) != kReading.end();
}

bool reads_more(int id) {
    return id == command::kEditMode || id == command::kInsertLine || id == command::kDeleteLine;
}

}  // namespace

void Form::execute(int id) {
    if (!context_.dbe) return CommandBars1_Execute(id);
    const std::shared_ptr<store::Workspace> workspace = context_.dbe;  // Exit takes it from the form
    note_lost_calls();
    const Mode before = mode();
    const std::int64_t lost_before = workspace->lost_calls();
    CommandBars1_Execute(id);
    const std::int64_t lost = workspace->lost_calls() - lost_before;
    // An entry may still be the same one, as when New was refused.
    if (lost == 0 && reads_anew(id) && (mode() == Mode::read || mode() != before)) half_read_ = false;
    if (lost > 0 && (reads_anew(id) || reads_more(id))) half_read_ = true;
    workspace->forgive_lost_calls(lost);
}

void Form::note_lost_calls() {
    const std::int64_t lost = context_.dbe->lost_calls();
    if (std::exchange(lost_calls_seen_, lost) != lost) half_read_ = true;
}

bool Form::connected_for(int id) {
    if (!context_.dbe || !context_.dbe->reconnect() || !in_doubt_) return true;
    tell_of_doubt();
    return id == command::kExit;
}

// Once for each doubt: the first to know of it knows its document.
void Form::note_doubt(const std::string& document) {
    if (connection_state() != store::ConnectionState::in_doubt) return;
    const int number = context_.dbe->doubts();
    if (!in_doubt_ || in_doubt_->number != number) in_doubt_ = {number, document};
}

void Form::tell_of_doubt() {
    const store::Doubt doubt = context_.dbe->doubt(in_doubt_->number);
    if (doubt == store::Doubt::undecided) return tell(kUndecidedMessage);
    const std::string document = in_doubt_->document;
    in_doubt_.reset();
    if (doubt == store::Doubt::stored)
        return tell(kWasStoredMessage + (document.empty() ? "." : " as " + document + "."));
    tell(doubt == store::Doubt::not_stored ? kWasNotStoredMessage : kUnknownMessage);
}

store::ConnectionState Form::connection_state() const {
    return context_.dbe ? context_.dbe->connection_state() : store::ConnectionState::good;
}

void Form::tell_of_connection() {
    switch (connection_state()) {
        case store::ConnectionState::good:
            return;
        case store::ConnectionState::lost:
            return tell(context_.dbe->can_reconnect() ? kLostForNowMessage : kLostMessage);
        case store::ConnectionState::in_doubt:
            note_doubt({});
            return tell(context_.dbe->can_reconnect() ? kInDoubtForNowMessage : kInDoubtMessage);
    }
}

Mode Form::mode() const {
    if (bars_.pressed(command::kNew)) return Mode::new_entry;
    return bars_.pressed(command::kEditMode) ? Mode::edit : Mode::read;
}

void Form::notify(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    if (NotifyClients) NotifyClients(formx, docnox, arg2);
}

bool Form::execute_common(int id) {
    switch (id) {
        case command::kExit:
            save_before_exit();
            unload_form();
            notify("Next App");
            return true;
        case command::kAccountMaster:
            notify("Account Master", account_of_current_line());
            return true;
        case command::kItemMaster:
            return true;  // stands in the menus and has never done anything
        case command::kVendorMaster:
            notify("Vendor Master", current_vendor());
            return true;
        case command::kFormHelp:
            notify("pdf viewer", context_.BRIMLEY_PATH + identity_.help_file,
                   std::string(identity_.caption) + " Help");
            return true;
        case command::kSystemHelp:
            notify("pdf viewer", context_.BRIMLEY_PATH + "\\Help\\Account Payable system Help.pdf",
                   "Account Payable Help");
            return true;
        case command::kAbout:
            about();
            return true;
        case command::kShowText:
            bars_.show_text = !bars_.show_text;
            bars_.set_pressed(command::kShowText, bars_.show_text);
            return true;
        default:
            return false;
    }
}

void Form::about() {
    tell(
        "Brimlez Works Version 1.05\nSupport: support@brimley.example\nDownload: "
        "https://brimley.example/download");
}

void Form::save_before_exit() {
    save_form_property();
    save_recent_values();
    save_grid();
}

void Form::init_form_property() {
    bars_.set_pressed(command::kShowText, bars_.show_text);
    const auto row = kernel().find("Form_property_table",
                                   {{"userid", context_.BRIMLEY_USER}, {"form", identity_.class_name}});
    if (row.at_eof()) return;
    if (!row.field("toolbar_text").is_null()) {
        bars_.show_text = row.flag("toolbar_text");
        bars_.set_pressed(command::kShowText, bars_.show_text);
    }
    if (!row.field("Fontbar").is_null()) bars_.font_bar_visible = row.flag("Fontbar");
}

void Form::save_form_property() {
    step("save_form_property", [&] {
        auto row = kernel().find_to_change(
            "Form_property_table", {{"userid", context_.BRIMLEY_USER}, {"form", identity_.class_name}});
        if (row.at_eof()) return;
        row.Edit();
        row.set("toolbar_text", bars_.show_text);
        row.set("Fontbar", bars_.font_bar_visible);
        row.Update();
    });
}

void Form::set_BRIMLEY_COLOR() { palette_ = presentation::brimley_palette(); }

// Labels, boxes and fields, recognised by the prefix of their names, all have one font.
void Form::init_fontcolor() {
    static constexpr std::array<const char*, 6> kStyledPrefixes{"LABEL", "XPLAB", "CHK", "OPT", "TXT", "CMB"};
    for (controls::Control* control : controls_.all()) {
        const std::string name = controls::upper_case(control->name());
        const auto styled = [&](const char* prefix) { return name.starts_with(prefix); };
        if (std::any_of(kStyledPrefixes.begin(), kStyledPrefixes.end(), styled))
            control->set_font_name("Arial");
    }
}

std::string Form::recent_value(std::string_view control_name) {
    return kernel().look_up_text(
        "Recent_value_table", {{"form_name", identity_.class_name}, {"control_name", control_name}}, "Value");
}

void Form::save_recent_value(std::string_view control_name, std::string_view value) {
    step("save_recent_value", [&] {
        auto row = kernel().find_to_change(
            "Recent_value_table", {{"form_name", identity_.class_name}, {"control_name", control_name}});
        if (row.at_eof()) return;
        row.Edit();
        row.set("Value", value);
        row.Update();
    });
}

Form::ListSource Form::rows_of(std::string query) {
    return [this, query = std::move(query)] {
        kernel::TextRows rows;
        step(query.c_str(), [&] { rows = kernel().rows_of(query); });
        return rows;
    };
}

std::string Form::date_text(store::DateTime date) const {
    return kernel::user_date_text(date, context_.BRIMLEY_DATE_FORMAT);
}

std::string Form::date_text(const store::Value& value) const {
    const auto date = value.date();
    return date ? date_text(*date) : std::string{};
}

}  // namespace brimley::frame
