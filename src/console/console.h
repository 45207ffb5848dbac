// The console: one host object on one company, driven by commands, one per line.
//
// It acts on the forms by the user acts of their controls only, so a script can do exactly what a person can.
// What it prints, and the language it reads, are a contract with people's scripts: they may grow, and never
// change.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "console/actor.h"
#include "console/console_desk.h"
#include "host/apclass.h"

namespace brimley::console {

class Console {
  public:
    // The company is open and the host context filled in `context`; results go to `out`.
    Console(const frame::HostContext& context, std::ostream& out);
    // The same, with acts carried out by `actor` and forms also shown on `screen`; both must outlive this.
    Console(const frame::HostContext& context, std::ostream& out, Actor& actor, frame::Desk& screen);
    ~Console();

    // Runs one line. `place` ("SCRIPT:LINE") is printed with a check that fails. Throws ScriptFault when the
    // line is wrong.
    void run(const std::string& line, const std::string& place);

    // Nothing more is to be run.
    [[nodiscard]] bool has_quit() const { return has_quit_; }
    // Asked before `context BRIMLEY_USER` makes somebody else the user; throws std::runtime_error with the
    // reason why not. Without it anybody may be.
    using Admit = std::function<void(const std::string& user)>;
    void admit_by(Admit admit) { admit_ = std::move(admit); }
    // Whoever started the program lets scripts act as a second user does (otherdesk). Nobody may by default,
    // since a held row, or a right that is taken back, keeps real users from saving.
    void allow_other_desk() { other_desk_allowed_ = true; }

    // The user is about to think: what was saved is brought into the company file itself.
    void tidy();

    [[nodiscard]] int checks_passed() const { return passed_; }
    [[nodiscard]] int checks_failed() const { return failed_; }
    [[nodiscard]] ConsoleDesk& desk() { return desk_; }

    // What Tab may complete: commands, methods, open forms, and the controls of the current one.
    [[nodiscard]] std::vector<std::string> words() const;

  private:
    // The words of a line after its command.
    class Arguments;
    using Handler = void (Console::*)(Arguments&);
    struct CommandEntry {
        const char* name;
        const char* arguments;
        const char* effect;
        Handler handler;
    };
    // command_table.cpp
    [[nodiscard]] static const std::vector<CommandEntry>& command_table();

    // setup_commands.cpp: the program and the host
    void do_context(Arguments& arguments);
    void admit(const std::string& user) const;
    void do_today(Arguments& arguments);
    void do_computer(Arguments& arguments);
    void do_call(Arguments& arguments);
    void do_form(Arguments& arguments);
    void do_answer(Arguments& arguments);
    void do_otherdesk(Arguments& arguments);
    void hold_row(const std::string& query_text);
    void set_right_to_update(const std::string& form_class, bool may_update);
    void do_help(Arguments& arguments);
    void do_quit(Arguments& arguments);

    // act_commands.cpp: the user
    void do_set(Arguments& arguments);
    void do_enter(Arguments& arguments);
    void do_check(Arguments& arguments);
    void do_uncheck(Arguments& arguments);
    void do_click(Arguments& arguments);
    void do_range(Arguments& arguments);
    void do_press(Arguments& arguments);
    void do_close(Arguments& arguments);
    void do_fontbar(Arguments& arguments);
    void do_cell(Arguments& arguments);
    void do_visit(Arguments& arguments);
    void do_dblclick(Arguments& arguments);
    void do_select(Arguments& arguments);
    void do_column(Arguments& arguments);
    void do_rowheight(Arguments& arguments);
    void click_box(Arguments& arguments, bool ticked);
    void report(const std::string& name, controls::Refusal refusal);
    [[nodiscard]] controls::Control& text_target(const std::string& name);

    // show_commands.cpp: reading
    void do_show(Arguments& arguments);
    void do_state(Arguments& arguments);
    void do_list(Arguments& arguments);
    void do_table(Arguments& arguments);
    void do_columns(Arguments& arguments);
    void do_pressed(Arguments& arguments);
    void do_sql(Arguments& arguments);
    void do_why(Arguments& arguments);
    [[nodiscard]] store::Recordset query(const std::string& text);

    // expect_commands.cpp: checks
    void do_expect(Arguments& arguments);
    void expect_text(Arguments& arguments, const std::string& control_name);
    void expect_state(Arguments& arguments);
    void expect_cell(Arguments& arguments);
    void expect_rows(Arguments& arguments);
    void expect_command(Arguments& arguments, const std::string& state);
    void expect_happening(Arguments& arguments, const std::string& kind);
    void expect_list(Arguments& arguments);
    void expect_sql(Arguments& arguments);
    void expect_nothing();
    void check(bool holds, const std::string& expected, const std::string& got);

    [[nodiscard]] frame::Form& form();
    [[nodiscard]] controls::Control& control(const std::string& name);
    [[nodiscard]] controls::Grid& grid(const std::string& name);
    [[nodiscard]] static int column_of(const controls::Grid& grid, const std::string& caption);
    [[nodiscard]] static std::string cell_shown(const controls::Grid& grid, int row, int column);

    void listen();

    std::ostream& out_;
    ModelActor model_actor_;
    Actor& actor_;
    ConsoleDesk desk_;
    host::APclass ap_;
    Admit admit_;
    bool other_desk_allowed_ = false;
    store::OpenCompany other_desk_;  // a second user's connection, once it was needed
    std::unique_ptr<store::Recordset> held_row_;
    int waits_until_release_ = 0;
    std::string place_;
    int passed_ = 0;
    int failed_ = 0;
    bool has_quit_ = false;
};

}  // namespace brimley::console
