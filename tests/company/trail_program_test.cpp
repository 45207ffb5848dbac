// The trail and the layouts of companies as brimley-company shows them.
#include <fmt/format.h>

#include <filesystem>

#include "company/backup.h"
#include "company/check.h"
#include "company/company_fixture.h"
#include "company/login_name.h"
#include "company/program_run.h"
#include "company/table_writer.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using testing::Outcome;

class TrailOfCompany : public testing::CompanyTest {
  protected:
    void add_payment(const std::string& docno) {
        add("Prepayment_waiting_PO_table", {{"prepayment_no", docno}});
    }
    Outcome run(const std::string& arguments) {
        return testing::run_program(folder_, {.arguments = arguments, .redirection = "> out"});
    }
    // On a server the company is reached by its URI.
    std::string named() const { return "'" + path() + "'"; }
};

TEST_F(TrailOfCompany, SealIsWhatCheckCanHoldItTo) {
    make(company::SampleCompany{"zoe"});
    EXPECT_EQ(run("seal " + named()).output, "0:\n");
    add_payment("PP-1");
    const std::string seal = run("seal " + named()).output;
    EXPECT_THAT(seal, MatchesRegex("1:[0-9a-f]{64}\n"));
    const std::string line = seal.substr(0, seal.size() - 1);
    add_payment("PP-2");
    const auto trail_findings = [&](const std::string& option) {
        const Outcome outcome = run("check " + named() + option);
        return outcome.output.find("trail") == std::string::npos ? "" : outcome.output;
    };
    EXPECT_EQ(trail_findings(" --seal " + line), "");
    EXPECT_EQ(trail_findings(" --seal 0:"), "");
    EXPECT_THAT(trail_findings(" --seal 3:" + line.substr(2)),
                ::testing::StartsWith("the trail ends at entry 2, before the sealed entry 3\n"));
    EXPECT_THAT(trail_findings(" --seal 2:" + line.substr(2)),
                ::testing::StartsWith("entry 2 of the trail is not the one that was sealed\n"));
    const std::string hash = line.substr(2);
    for (const std::string& wrong : {std::string("1"), std::string("x:"), std::string("1:abc"),
                                     std::string(":"), "-1:" + hash, "0:" + hash, hash})
        EXPECT_EQ(run("check " + named() + " --seal " + wrong).errors,
                  fmt::format("brimley-company: {} is no seal: seal prints one as NUMBER:HASH\n", wrong));
    const Outcome empty = run("check " + named() + " --seal ''");
    EXPECT_EQ(empty.errors, "brimley-company: an empty text is no seal: seal prints one as NUMBER:HASH\n");
    EXPECT_EQ(empty.status, 2);
    EXPECT_NE(run("check " + named() + " --seal 0:").status, 2);
}

TEST_F(TrailOfCompany, OlderCompanyIsUpgradedAfterABackup) {
    company::create_company_file(path(), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    EXPECT_THAT(run("seal " + named()).errors, ::testing::EndsWith(" has no trail: upgrade begins one\n"));
    EXPECT_EQ(run("check " + named()).output,
              "note: the company has no trail: upgrade begins one\nbooks agree\n");
    const Outcome upgraded = run("upgrade " + named());
    EXPECT_EQ(upgraded.status, 0) << upgraded.errors;
    EXPECT_THAT(upgraded.output, MatchesRegex("the company as it was: .*\\.before-layout-2\n"));
    if (testing::tests_run_on_server()) {
        EXPECT_THAT(upgraded.output, ::testing::StartsWith("the company as it was: test_"));
    }
    EXPECT_EQ(run("upgrade " + named()).output, "the company is of this version already\n");
    EXPECT_EQ(run("check " + named()).output, "books agree\n");
    EXPECT_EQ(run("seal " + named()).output, "0:\n");
}

TEST_F(TrailOfCompany, UpgradeThatIsRefusedCanBeTriedAgain) {
    company::create_company_file(path(), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    {
        const auto other = store::open_company(path(), kernel::company_tables());
        other.workspace->BeginTrans();
        other.database->Execute("UPDATE Working_currency_table SET description = 'Other'");
        EXPECT_THAT(run("upgrade " + named()).errors,
                    ::testing::EndsWith("another user is writing to the company\n"));
        other.workspace->Rollback();
        if (testing::tests_run_on_server()) {
            EXPECT_THAT(run("upgrade " + named()).errors,
                        ::testing::EndsWith("others have the company open\n"));
        }
    }
    const Outcome upgraded = run("upgrade " + named());
    EXPECT_EQ(upgraded.status, 0) << upgraded.errors;
    EXPECT_EQ(run("upgrade " + named()).output, "the company is of this version already\n");
}

// The server ends the connection at the commit of whatever makes a table.
TEST_F(TrailOfCompany, OnAServerTheBackupOfAnUpgradeInDoubtIsKeptAndNamed) {
    if (!testing::tests_run_on_server()) return;
    company::create_company_file(path(), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    testing::on_server(
        path(),
        "CREATE TABLE public.made (a int); "
        "CREATE FUNCTION public.note() RETURNS event_trigger LANGUAGE plpgsql AS "
        "$$ BEGIN INSERT INTO public.made VALUES (1); END $$; "
        "CREATE FUNCTION public.leave() RETURNS trigger LANGUAGE plpgsql AS "
        "$$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NULL; END $$; "
        "CREATE CONSTRAINT TRIGGER leaves AFTER INSERT ON public.made DEFERRABLE INITIALLY DEFERRED "
        "FOR EACH ROW EXECUTE FUNCTION public.leave(); "
        "CREATE EVENT TRIGGER notes ON ddl_command_end EXECUTE FUNCTION public.note()");
    const Outcome outcome = run("upgrade " + named());
    EXPECT_EQ(outcome.status, 3);
    const std::string backup = store::database_name(path()) + ".before-layout-2";
    EXPECT_THAT(outcome.errors,
                AllOf(::testing::StartsWith("brimley-company: the outcome of the last change is unknown: "),
                      ::testing::EndsWith("; the company as it was: " + backup + "\n")));
    EXPECT_EQ(run("check " + backup).output,
              "note: the company has no trail: upgrade begins one\nbooks agree\n");
}

TEST_F(TrailOfCompany, UpgradeNeverTakesThePlaceOfAnEarlierBackup) {
    company::create_company_file(path(), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    const std::string backup =
        (testing::tests_run_on_server() ? folder_.file(store::database_name(path())) : path()) +
        ".before-layout-2";
    testing::write_file(backup, "precious");
    testing::write_file(backup + "-2", "precious, too");
    EXPECT_THAT(run("upgrade " + named()).output,
                ::testing::EndsWith(std::filesystem::path(backup).filename().string() + "-3\n"));
    EXPECT_EQ(testing::text_of_file(backup), "precious");
    EXPECT_EQ(testing::text_of_file(backup + "-2"), "precious, too");
    EXPECT_EQ(store::open_company(path(), kernel::company_tables()).database->catalog().layout(), 2);
    EXPECT_EQ(store::open_company(backup + "-3", kernel::company_tables()).database->catalog().layout(), 1);
}

// The second one comes while the first makes its backup.
TEST_F(TrailOfCompany, OfTwoWhoUpgradeItAtTheSameTimeTheSecondIsRefusedAndLeavesNothing) {
    company::create_company_file(path(), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    const auto files = [&] {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            names.push_back(entry.path().filename());
        return names;
    };
    const auto upgrade_meanwhile = [&] {
        const Outcome refused = run("upgrade " + named());
        EXPECT_EQ(refused.status, 3);
        EXPECT_EQ(refused.errors, "brimley-company: another user is writing to the company\n");
        EXPECT_EQ(refused.output, "");
        EXPECT_THAT(files(), Each(Not(::testing::HasSubstr("before-layout"))));
    };
    EXPECT_TRUE(store::upgrade_company(path(), kernel::company_tables(), {}, upgrade_meanwhile));
    EXPECT_EQ(run("check " + named()).output, "books agree\n");
    EXPECT_EQ(run("upgrade " + named()).output, "the company is of this version already\n");
}

TEST_F(TrailOfCompany, BackupAndRestoreKeepItAsItIs) {
    make(company::SampleCompany{"zoe"});
    // The desk that is done last has drawn the keys of its rows first.
    const auto desk = store::open_company(path(), kernel::company_tables());
    desk.workspace->BeginTrans();
    company::TableWriter(*desk.database, "Prepayment_waiting_PO_table").add({{"prepayment_no", "PP-0"}});
    if (testing::tests_run_on_server()) add_payment("PP-1");
    desk.workspace->CommitTrans();
    const std::string seal = run("seal " + named()).output;
    const std::string copy = folder_.file("copy.brimley");
    (void)company::back_up(path(), copy);
    EXPECT_EQ(run("seal " + copy).output, seal);
    const store::OpenCompany opened = store::open_company(copy, kernel::company_tables());
    EXPECT_THAT(opened.database->faults_of_trail(), IsEmpty());
}

TEST_F(TrailOfCompany, BackupOfACompanyWhoseTrailWasEmptiedShowsIt) {
    make(company::SampleCompany{"zoe"});
    add_payment("PP-1");
    db().Execute("DELETE * FROM Trail_table");
    const std::string finding = "prepayment PP-1 has a row that the trail does not know";
    const std::string copy = folder_.file("copy.brimley");
    EXPECT_THAT(company::back_up(path(), copy), ::testing::Contains(finding));
    const store::OpenCompany opened = store::open_company(copy, kernel::company_tables());
    EXPECT_THAT(opened.database->faults_of_trail(), ElementsAre(finding));
}

TEST_F(TrailOfCompany, BalancesAreNotRepairedWhereItDoesNotHoldOrTheCommandLineIsWrong) {
    make(company::SampleCompany{company::login_name()});
    add_payment("PP-1");
    db().Execute("UPDATE Balance_table SET amount = 7 WHERE accno = '2000' AND ledgertype = 'A'");
    const auto amount = [&] {
        return db()
            .OpenRecordset("SELECT amount FROM Balance_table WHERE accno = '2000' AND ledgertype = 'A'",
                           store::RecordsetKind::snapshot)
            .number("amount");
    };
    EXPECT_EQ(run("check " + named() + " --repair-balances --seal nonsense").status, 2);
    EXPECT_EQ(amount(), 7);
    db().Execute("DELETE * FROM Trail_table");
    const Outcome refused = run("check " + named() + " --repair-balances");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(
        refused.errors,
        "brimley-company: the trail does not hold, so nothing is repaired: prepayment PP-1 has a row that "
        "the trail does not know\n");
    EXPECT_EQ(amount(), 7);
}

TEST_F(TrailOfCompany, BalancesAreRepairedWhereItHolds) {
    make(company::SampleCompany{company::login_name()});
    db().Execute("UPDATE Balance_table SET amount = 7 WHERE accno = '2000' AND ledgertype = 'A'");
    const Outcome repaired = run("check " + named() + " --repair-balances");
    EXPECT_EQ(repaired.status, 0) << repaired.errors << repaired.output;
    EXPECT_THAT(repaired.output, AllOf(::testing::HasSubstr("repaired: Balance_table A 2000"),
                                       ::testing::EndsWith("books agree\n")));
}

TEST_F(TrailOfCompany, EntriesOfAnotherCompanyAreNotAddedToIt) {
    make(company::SampleCompany{"zoe"});
    add_payment("PP-1");
    add_payment("PP-2");
    EXPECT_EQ(run("export " + named() + " all --table Trail_table").status, 0);
    const Outcome again = run("import --replace " + named() + " all");
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.errors,
              "all/Trail_table.csv:1: the company has a trail of its own, to which entries of "
              "another cannot be added\n");
    testing::write_file(folder_.file("turned/Trail_table.csv"), "entry_no\n2\n1\n");
    EXPECT_EQ(run("create other.brimley").status, 0);
    EXPECT_EQ(run("import other.brimley turned").errors,
              "turned/Trail_table.csv:3: entry 1 stands after entry 2\n");
    testing::write_file(folder_.file("turned/Trail_table.csv"), "entry_no\n1\n1\n");
    EXPECT_EQ(run("import other.brimley turned").errors,
              "turned/Trail_table.csv:3: entry 1 stands after entry 1\n");
}

TEST_F(TrailOfCompany, ImportOfDocumentsIsEnteredUnlessTheirEntriesComeAlong) {
    make(company::SampleCompany{"zoe"});
    add_payment("PP-1");
    EXPECT_EQ(run("export " + named() + " all").status, 0);
    testing::write_file(folder_.file("some/Prepayment_waiting_PO_table.csv"), "prepayment_no\nPP-7\n");
    EXPECT_EQ(run("import " + named() + " some").status, 0);
    EXPECT_THAT(run("seal " + named()).output, ::testing::StartsWith("2:"));
    const std::string worker = testing::tests_run_on_server()
                                   ? testing::on_server(path(), "SELECT current_user")
                                   : company::login_name();
    EXPECT_THAT(rows("SELECT user_created FROM Trail_table WHERE entry_no = 2"), ElementsAre(worker));
    EXPECT_EQ(run("create other.brimley").status, 0);
    EXPECT_EQ(run("import --replace other.brimley all").status, 0);
    EXPECT_THAT(run("seal other.brimley").output, ::testing::StartsWith("1:"));
    const store::OpenCompany other =
        store::open_company(folder_.file("other.brimley"), kernel::company_tables());
    EXPECT_THAT(other.database->faults_of_trail(), IsEmpty());
}

}  // namespace
}  // namespace brimley
