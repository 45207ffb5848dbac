// Commands about the program and the host: context, clock, calls, answers, the other desk.
#include <map>
#include <ostream>
#include <stdexcept>

#include "console/arguments.h"

namespace brimley::console {

void Console::do_context(Arguments& arguments) {
    using Text = std::string frame::HostContext::*;
    static const std::map<std::string, Text> kTexts{
        {"OPEN_DATABASE", &frame::HostContext::OPEN_DATABASE},
        {"BASE_CURRENCY", &frame::HostContext::BASE_CURRENCY},
        {"BRIMLEY_COMPANY_NAME", &frame::HostContext::BRIMLEY_COMPANY_NAME},
        {"BRIMLEY_PATH", &frame::HostContext::BRIMLEY_PATH},
        {"BRIMLEY_USER", &frame::HostContext::BRIMLEY_USER},
        {"BRIMLEY_DATE_FORMAT", &frame::HostContext::BRIMLEY_DATE_FORMAT},
        {"BRIMLEY_NO_PERIODS", &frame::HostContext::BRIMLEY_NO_PERIODS},
        {"BRIMLEY_FONT_NAME", &frame::HostContext::BRIMLEY_FONT_NAME},
    };
    const std::string member = arguments.take("MEMBER");
    const std::string value = arguments.take_text("VALUE");
    if (member == "BRIMLEY_USER") admit(value);
    if (const auto text = kTexts.find(member); text != kTexts.end()) {
        ap_.*(text->second) = value;
    } else if (member == "BRIMLEY_THEME") {
        ap_.BRIMLEY_THEME = value;
    } else if (member == "BRIMLEY_FONT_SIZE") {
        ap_.BRIMLEY_FONT_SIZE = value;
    } else {
        throw ScriptFault("unknown member: " + member);
    }
}

void Console::admit(const std::string& user) const {
    if (!admit_ || user == ap_.BRIMLEY_USER) return;
    try {
        admit_(user);
    } catch (const std::runtime_error& refusal) {
        throw ScriptFault(refusal.what());
    }
}

void Console::do_today(Arguments& arguments) {
    constexpr int kNoon = 12 * 60 * 60;
    std::string text = arguments.take("DATE");
    const bool has_time = arguments.more();
    if (has_time) text += " " + arguments.take("TIME");
    auto moment = store::DateTime::from_iso(text);
    if (!moment) throw ScriptFault("no date: " + text);
    if (!has_time && text.size() <= 10) moment->second_of_day = kNoon;
    desk_.stopped_clock = moment;
}

void Console::do_computer(Arguments& arguments) { desk_.computer = arguments.take_text("NAME"); }

void Console::do_call(Arguments& arguments) {
    const std::string method = arguments.take("METHOD");
    switch (host::call_by_name(ap_, method, arguments.take_rest())) {
        case host::CallOutcome::done:
            return;
        case host::CallOutcome::no_such_method:
            throw ScriptFault("unknown method: " + method);
        case host::CallOutcome::wrong_arguments:
            throw ScriptFault("wrong number of arguments for " + method);
    }
}

void Console::do_form(Arguments& arguments) {
    const std::string class_name = arguments.take("CLASS");
    if (!desk_.make_current(class_name)) throw ScriptFault("no open form of class " + class_name);
}

void Console::do_answer(Arguments& arguments) {
    const std::string word = arguments.take("yes, no or none");
    if (word == "none") {
        desk_.answers.clear();
    } else if (word == "yes" || word == "no") {
        desk_.answers.push_back(word == "yes");
    } else {
        throw ScriptFault("an answer is yes, no or none, not " + word);
    }
}

// otherdesk hold "SELECT ..." [WAITS]: a second user takes the first row of the query, as one in the middle
// of a save does, and holds it until `otherdesk release`, or until somebody has waited for it WAITS times.
// otherdesk forbid|allow FORM: the second user takes the right to update on that form from the user, or gives
// it to them.
void Console::do_otherdesk(Arguments& arguments) {
    if (!other_desk_allowed_)
        throw ScriptFault("otherdesk works only in a console started with --other-desk");
    const std::string act = arguments.take("hold, release, forbid or allow");
    if (act == "release") {
        if (!held_row_) throw ScriptFault("the other desk holds nothing");
        held_row_.reset();
        other_desk_.workspace->Rollback();
        waits_until_release_ = 0;
        return;
    }
    const bool is_about_rights = act == "forbid" || act == "allow";
    if (act != "hold" && !is_about_rights)
        throw ScriptFault("the other desk can hold, release, forbid or allow, not " + act);
    if (!ap_.abcdb) throw ScriptFault("no company is open");
    const std::string text = arguments.take(is_about_rights ? "FORM" : "QUERY");
    if (!is_about_rights) waits_until_release_ = arguments.more() ? arguments.take_number("WAITS") : 0;
    try {
        if (!other_desk_.workspace)
            other_desk_ = store::open_company(ap_.abcdb->name(), ap_.abcdb->catalog());
        is_about_rights ? set_right_to_update(text, act == "allow") : hold_row(text);
    } catch (const store::Error& failure) {
        throw ScriptFault(failure.what());
    }
}

void Console::hold_row(const std::string& query_text) {
    other_desk_.workspace->BeginTrans();
    held_row_ = std::make_unique<store::Recordset>(
        other_desk_.database->OpenRecordset(query_text, store::RecordsetKind::dynaset));
    held_row_->LockEdits(true);
    held_row_->Edit();
}

// Stored when it returns, as the next save asks.
void Console::set_right_to_update(const std::string& form_class, bool may_update) {
    if (held_row_) throw ScriptFault("the other desk holds a row");
    auto rights =
        other_desk_.database->OpenRecordset("SELECT * FROM User_right_table", store::RecordsetKind::dynaset);
    while (!rights.at_eof() &&
           (rights.text("form") != form_class || rights.text("userid") != ap_.BRIMLEY_USER))
        rights.MoveNext();
    if (rights.at_eof()) throw ScriptFault(ap_.BRIMLEY_USER + " has no rights on " + form_class);
    rights.Edit();
    rights.set("Update", may_update);
    rights.Update();
}

}  // namespace brimley::console
