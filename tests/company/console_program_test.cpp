// brimley-console as it is called: what it refuses before it opens anything, and acts that no hand could do.
#include <gmock/gmock.h>

#include <filesystem>

#include "company/program_run.h"

namespace brimley {
namespace {

using ::testing::HasSubstr;
using testing::Outcome;
using testing::run_program;
using testing::write_file;

class ConsoleProgram : public ::testing::Test {
  protected:
    ConsoleProgram() {
        EXPECT_EQ(run_program(folder_, {.arguments = "create --sample a.company"}).status, 0);
    }
    Outcome console(const std::string& arguments) {
        return run_program(folder_, {.arguments = arguments, .program = "brimley-console"});
    }
    Outcome console_with(const std::string& script) {
        write_file(folder_.file("acts"), "call showform_APform_invoice\n" + script);
        return console("a.company acts --user anna");
    }
    // Nothing happens but one line, told with this status.
    void expect_refusal(const std::string& arguments, int status, const std::string& reason) {
        const Outcome outcome = console(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.output, "") << arguments;
        EXPECT_EQ(outcome.errors, "brimley-console: " + reason + "\n") << arguments;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(ConsoleProgram, PeriodsAreAWholeNumberFromOneToNinetyNine) {
    write_file(folder_.file("acts"), "call showform_APform_invoice\nlist cmbperiod\n");
    for (const char* periods :
         {"abc", "-3", "2x", "0", "100", "100000000", "99999999999999999999", "1.5", "''"}) {
        const std::string shown = std::string(periods) == "''" ? "" : periods;
        expect_refusal("a.company acts --periods " + std::string(periods), 2,
                       "--periods: \"" + shown + "\" is no number from 1 to 99");
    }
    EXPECT_EQ(console("a.company acts --periods 3").output, "1\n2\n3\n");
    EXPECT_EQ(console("a.company acts --periods 1").output, "1\n");
    EXPECT_THAT(console("a.company acts --periods 99").output, ::testing::EndsWith("98\n99\n"));
}

TEST_F(ConsoleProgram, OtherDeskIsOnlyThereForWhoeverAskedForIt) {
    write_file(folder_.file("acts"),
               "otherdesk hold \"SELECT * FROM COA_config_table\"\notherdesk release\n");
    const Outcome refused = console("a.company acts");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.errors, "acts:1: otherdesk works only in a console started with --other-desk\n");
    EXPECT_EQ(console("a.company acts --other-desk").status, 0);
}

TEST_F(ConsoleProgram, DateFormatThatCouldNotReadItsOwnDatesIsRefused) {
    write_file(folder_.file("acts"),
               "today 2026-01-15\ncall showform_APform_invoice\npress 105\nshow txtinvdate\n");
    for (const char* format :
         {"zz", "dd.mm.yyyy", "dd/yyyy/mm", "dd/mm", "dd/mm/yy", "xx/mm/yyyy", "dd/mm/yyyy/", "''"}) {
        const std::string shown = std::string(format) == "''" ? "" : format;
        expect_refusal("a.company acts --date-format " + std::string(format), 2,
                       "--date-format: \"" + shown +
                           "\" is no order of dd, mm and yyyy parted by /, such as dd/mm/yyyy");
    }
    EXPECT_EQ(console("a.company acts --user anna --date-format yyyy/mm/dd").output,
              "txtinvdate = 2026/01/15\n");
    for (const char* format : {"dd/mm/yyyy", "mm/dd/yyyy", "mm/yyyy/dd", "yyyy/dd/mm", "DD/MM/YYYY"})
        EXPECT_EQ(console("a.company acts --date-format " + std::string(format)).status, 0) << format;
}

TEST_F(ConsoleProgram, EmptyCompanyIsToldInASentence) { expect_refusal("''", 3, "\"\" is no file name"); }

TEST_F(ConsoleProgram, DamagedCompanyIsToldAndNeverWrittenTo) {
    const std::string path = folder_.file("a.company");
    std::filesystem::resize_file(path, std::filesystem::file_size(path) + 1);
    const std::string before = testing::text_of_file(path);
    const Outcome outcome = console_with(
        "today 2026-03-16\n"
        "press 105\n"
        "set cmbdoctype Invoice\n"
        "set cmbvendor V1001\n"
        "cell dbgrid1 0 \"purchase account\" 5000\n"
        "cell dbgrid1 0 \"gross amount\" 30.00\n"
        "press 101\n"
        "expect message \"Add new Invoice failed\"\n"
        "expect txtdocno = \"** New **\"\n");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(outcome.errors,
              "brimley-console: a.company is damaged, and can only be read: its last page is not whole\n");
    EXPECT_TRUE(testing::text_of_file(path) == before);
}

TEST_F(ConsoleProgram, HelpListsTheCommandsOrShowsOne) {
    write_file(folder_.file("acts"), "help\n");
    const std::string all = console("a.company acts").output;
    EXPECT_THAT(
        all, HasSubstr("\nset CONTROL VALUE                       types the value and leaves the field\n"));
    EXPECT_THAT(all, HasSubstr("\nquit "));
    EXPECT_THAT(all, ::testing::Not(HasSubstr("\nexpect rows")));
    write_file(folder_.file("acts"), "help rowheight\nhelp expect\n");
    EXPECT_THAT(
        console("a.company acts").output,
        ::testing::AllOf(
            ::testing::StartsWith("rowheight GRID N                        resizes the rows\nexpect ..."),
            HasSubstr("\nexpect rows GRID N                      N rows down to the last")));
    write_file(folder_.file("acts"), "help me\n");
    const Outcome unknown = console("a.company acts");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "acts:1: unknown command: me\n");
}

TEST_F(ConsoleProgram, QuitEndsAllScripts) {
    write_file(folder_.file("acts"), "help rowheight\nquit\nnonsense\n");
    const Outcome outcome = console("a.company acts nowhere");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "rowheight GRID N                        resizes the rows\n");
    EXPECT_EQ(console_with("expect rows dbgrid1 7\nquit\n").status, 1);
    write_file(folder_.file("acts"), "quit now\n");
    EXPECT_EQ(console("a.company acts").status, 2);
}

TEST_F(ConsoleProgram, HelpOfTheProgramNamesItsStatuses) {
    for (const char* const program : {"brimley-console", "brimley-company"})
        EXPECT_THAT(run_program(folder_, {.arguments = "--help", .program = program}).output,
                    HasSubstr("Status: 0 "));
}

TEST_F(ConsoleProgram, RowsHaveAHeightAboveNothing) {
    for (const char* height : {"-5", "0"}) {
        const Outcome outcome = console_with("rowheight dbgrid1 " + std::string(height) + "\n");
        EXPECT_EQ(outcome.status, 2) << height;
        EXPECT_EQ(outcome.errors, "acts:2: a row's height is more than 0\n") << height;
    }
    EXPECT_EQ(console_with("rowheight dbgrid1 1\nexpect nothing\n").status, 0);
}

}  // namespace
}  // namespace brimley
