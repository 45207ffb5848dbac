// brimley-company as it is called: status, one line on standard error, and nothing lost.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "company/company_fixture.h"
#include "company/login_name.h"
#include "company/program_run.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing::Outcome;
using ::testing::StartsWith;
using testing::text_of_file;
using testing::write_file;

class Program : public ::testing::Test {
  protected:
    Outcome run(const std::string& arguments, const std::string& redirection = "> out") {
        return testing::run_program(folder_, {.arguments = arguments, .redirection = redirection});
    }

    // One line, from the program, with this status.
    void expect_refusal(const std::string& arguments, int status, const std::string& reason) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.output, "") << arguments;
        EXPECT_EQ(outcome.errors, "brimley-company: " + reason + "\n") << arguments;
    }

    void expect_done(const std::string& arguments, const std::string& output = "") {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments;
        EXPECT_EQ(outcome.output, output) << arguments;
        EXPECT_EQ(outcome.errors, "") << arguments;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(Program, OptionsMayStandBeforeOrAfterTheCompany) {
    expect_done("create --sample a.company");
    expect_done("create b.company --sample");
    expect_done("export --table Vendor_table a.company one --table Period_table");
    expect_done("check a.company", "books agree\n");
    EXPECT_TRUE(std::filesystem::exists(folder_.file("one/Period_table.csv")));
}

TEST_F(Program, SampleGivesTheCallerFullRights) {
    expect_done("create --sample a.company");
    expect_done("export a.company out.d --table User_right_table");
    EXPECT_THAT(text_of_file(folder_.file("out.d/User_right_table.csv")),
                HasSubstr("APform_invoice," + company::login_name() + ",TRUE,TRUE,TRUE\n"));
}

TEST_F(Program, ExportAndImportGiveEqualCompanies) {
    expect_done("create --starter --base-currency THB --year 2569 a.company");
    expect_done("export a.company one");
    expect_done("create b.company");
    expect_done("import --replace b.company one");
    expect_done("export b.company two");
    EXPECT_EQ(std::system(("diff -r " + folder_.file("one") + " " + folder_.file("two")).c_str()), 0);
}

TEST_F(Program, NotesArePrintedFirstAndDoNotCount) {
    expect_done("create --sample a.company");
    write_file(folder_.file("csv/Payment_header_table.csv"),
               "fkey,docno,company,doctype,vendor_no,payment_amount,fyear,void\n"
               "1pp-1,PP-26-00001,1,pp,V1001,20,2026,TRUE\n");
    write_file(folder_.file("csv/AP_transaction_table.csv"),
               "fkey,docno,company,doctype,vendor_no,Source,pay_item,gross_amount,open_amount\n"
               "1pp-1,PP-26-00001,1,pp,V1001,AP-PREPAY,1,-20,-20\n");
    write_file(folder_.file("csv/Next_number_fkey_table.csv"), "company,doctype,fkeyno\n1,pp,2\n");
    write_file(folder_.file("csv/Docno_master_table.csv"),
               "company,doctype,fiscalyear,nextdocno\n1,pp,2026,2\n");
    expect_done("import a.company csv --replace");
    expect_done("check a.company",
                "note: Prepayment 1pp-1 is void, though its item is open with -20.00\nbooks agree\n");
}

TEST_F(Program, FindingsArePrintedWithStatusOne) {
    expect_done("create --sample a.company");
    write_file(folder_.file("csv/Balance_table.csv"),
               "company,ledgertype,accno,Currency,acccode,amount,base_amount\n1,A,1300,USD,1300,5,0\n");
    expect_done("import a.company csv --replace");
    const Outcome outcome = run("check a.company");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "Balance_table A 1300 USD: amount is 5.00, expected 0.00\n");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Program, BadCsvIsToldByFileAndLineWithStatusOne) {
    expect_done("create a.company");
    write_file(folder_.file("csv/Vendor_table.csv"), "vendor_no,owing_balance\nV1,1\nV2,x\n");
    const Outcome outcome = run("import a.company csv");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "csv/Vendor_table.csv:3: owing_balance is not a number: \"x\"\n");
    expect_done("export a.company one --table Vendor_table");
    EXPECT_EQ(text_of_file(folder_.file("one/Vendor_table.csv")).find("V1"), std::string::npos);
}

TEST_F(Program, WhatStandsInTheWayHasStatusOne) {
    expect_done("create --sample a.company");
    expect_refusal("add-year a.company 2027", 1, "fiscal year 2027 exists already");
    std::filesystem::create_directories(folder_.file("empty"));
    expect_refusal("import a.company empty", 1, "there is no CSV file in empty");
}

TEST_F(Program, WrongUsageHasStatusTwo) {
    expect_refusal("check", 2, "COMPANY is required");
    expect_refusal("import a.company", 2, "DIR is required");
    expect_refusal("create --starter a.company", 2, "--starter requires --base-currency");
    expect_refusal("create --year 2026 a.company", 2, "--year requires --starter");
    expect_refusal("create --starter --sample --base-currency USD --year 2026 a.company", 2,
                   "--sample excludes --starter");
    expect_refusal("create --half-year --sample a.company", 2, "--sample excludes --half-year");
    expect_refusal("create --starter --base-currency usd --year 2026 a.company", 2,
                   "usd is no currency code of three capital letters");
    expect_refusal("create --starter --base-currency USD --year 26 a.company", 2,
                   "\"26\" is no fiscal year: years are 1990 to 2030 and 2530 to 9998");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("a.company")));
    expect_done("create a.company");
    expect_refusal("add-year a.company 2031", 2,
                   "\"2031\" is no fiscal year: years are 1990 to 2030 and 2530 to 9998");
    expect_refusal("add-year a.company soon", 2,
                   "\"soon\" is no fiscal year: years are 1990 to 2030 and 2530 to 9998");
    expect_refusal("export a.company one --table Nonsense", 2, "there is no table Nonsense");
    expect_refusal("import a.company nowhere", 2, "nowhere is not a folder");
    expect_refusal("import a.company ''", 2, "the name of the folder is empty");
    EXPECT_THAT(run("check a.company --loudly").status, 2);
}

TEST_F(Program, WrongCommandIsToldByItsWord) {
    const std::string commands =
        "; there are create, import, export, check, seal, backup, restore, upgrade, grant, add-year and "
        "password";
    expect_refusal("", 2, "a command is missing" + commands);
    expect_refusal("bogus x", 2, "there is no command bogus" + commands);
    expect_refusal("chek --sample a.company", 2, "there is no command chek" + commands);
    expect_refusal("Check a.company", 2, "there is no command Check" + commands);
    expect_refusal("''", 2, "there is no command \"\"" + commands);
    expect_refusal("--loudly", 2, "there is no option --loudly");
    expect_refusal("--loudly bogus", 2, "there is no command bogus" + commands);
    EXPECT_THAT(run("check a.company --loudly").errors, HasSubstr("--loudly"));
}

TEST_F(Program, EmptyCompanyIsToldInASentence) {
    for (const char* arguments : {"check ''", "create ''", "export '' one", "add-year '' 2026"})
        expect_refusal(arguments, 3, "\"\" is no file name");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("one")));
}

TEST_F(Program, CompanyThatCannotBeOpenedHasStatusThree) {
    expect_refusal("check none.company", 3, "none.company does not exist");
    write_file(folder_.file("notes.txt"), "dear diary");
    expect_refusal("check notes.txt", 3, "notes.txt is not a company file");
    EXPECT_EQ(text_of_file(folder_.file("notes.txt")), "dear diary");
    for (const std::string command : {"check", "create"}) {
        const Outcome told = run(command + " 'postgresql:///books?host=/nowhere'");
        EXPECT_EQ(told.status, 3);
        EXPECT_TRUE(
            told.errors.starts_with("brimley-company: postgresql:///nowhere/books cannot be opened: "));
        EXPECT_EQ(std::count(told.errors.begin(), told.errors.end(), '\n'), 1);
    }
    expect_refusal("create notes.txt", 3, "notes.txt already exists");
    EXPECT_EQ(run("create nowhere/a.company").status, 3);
    EXPECT_EQ(run("check .").status, 3);
}

TEST_F(Program, CompanyHeldByAnotherWriterHasStatusThree) {
    expect_done("create a.company");
    const store::OpenCompany other = store::open_company(folder_.file("a.company"), kernel::company_tables());
    other.workspace->BeginTrans();
    other.database->Execute("DELETE * FROM Vendor_table");
    const Outcome outcome = run("add-year a.company 2026");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, StartsWith("brimley-company: "));
    other.workspace->Rollback();
    expect_done("add-year a.company 2026");
}

TEST_F(Program, CheckAndExportDoNotWaitForAWriterAndSeeNothingOfIt) {
    expect_done("create --sample a.company");
    const store::OpenCompany other = store::open_company(folder_.file("a.company"), kernel::company_tables());
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE Balance_table SET amount = 1");
    other.database->Execute("DELETE * FROM Vendor_table");
    expect_done("check a.company", "books agree\n");
    expect_done("export a.company one --table Vendor_table");
    EXPECT_THAT(text_of_file(folder_.file("one/Vendor_table.csv")), HasSubstr("V1001"));
    other.workspace->CommitTrans();
    EXPECT_EQ(run("check a.company").status, 1);
}

TEST_F(Program, ExportThatCannotBeWrittenHasStatusThree) {
    expect_done("create a.company");
    write_file(folder_.file("taken"), "a file");
    expect_refusal("export a.company taken", 3, "the folder taken cannot be made: Not a directory");
    expect_refusal("export a.company taken/deeper", 3,
                   "the folder taken/deeper cannot be made: Not a directory");
    expect_refusal("export a.company /dev/null/x", 3,
                   "the folder /dev/null/x cannot be made: Not a directory");
    expect_refusal("export a.company ''", 2, "the name of the folder is empty");
    EXPECT_EQ(text_of_file(folder_.file("taken")), "a file");
}

TEST_F(Program, OutputThatCannotBeWrittenIsNoticed) {
    expect_done("create a.company");
    EXPECT_EQ(run("check a.company", "> /dev/full").status, 3);
    EXPECT_EQ(text_of_file(folder_.file("err")),
              "brimley-company: standard output: No space left on device\n");
    // A pipe whose reader has gone.
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    ASSERT_EQ(::dup2(ends[1], 9), 9);
    ::close(ends[1]);
    EXPECT_EQ(run("check a.company", ">&9").status, 3);
    ::close(9);
    EXPECT_EQ(text_of_file(folder_.file("err")), "brimley-company: standard output: Broken pipe\n");
}

TEST_F(Program, HelpAndVersionWorkEverywhere) {
    for (const char* command : {"", "create", "import", "export", "check", "add-year"}) {
        const Outcome help = run(std::string(command) + " --help");
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_THAT(help.output, HasSubstr("Usage:")) << command;
        const Outcome version = run(std::string(command) + " --version");
        EXPECT_EQ(version.status, 0) << command;
        EXPECT_EQ(version.output, "brimley-company " BRIMLEY_VERSION "\n") << command;
    }
}

TEST_F(Program, NewCompanyIsReadableByItsOwnerAlone) {
    expect_done("create a.company");
    const auto permissions = std::filesystem::status(folder_.file("a.company")).permissions();
    EXPECT_EQ(permissions, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

}  // namespace
}  // namespace brimley
