// Who may work as whom, as the programs are called.
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "company/company_fixture.h"
#include "company/login_name.h"
#include "company/program_run.h"
#include "support/test_server.h"

namespace brimley {
namespace {

using ::testing::HasSubstr;
using testing::Outcome;
using testing::text_of_file;
using testing::write_file;

class PeopleOfPrograms : public ::testing::Test {
  protected:
    PeopleOfPrograms() { EXPECT_EQ(company("create --sample a.company").status, 0); }
    Outcome company(const std::string& arguments, const std::string& input = "") {
        write_file(folder_.file("input"), input);
        return run_program(folder_, {.arguments = arguments, .redirection = "< input > out"});
    }
    Outcome console(const std::string& arguments, const std::string& script = "show txtdocno\n") {
        write_file(folder_.file("acts"), "call showform_APform_invoice\n" + script);
        return run_program(
            folder_,
            {.arguments = arguments, .program = "brimley-console", .redirection = "< /dev/null > out"});
    }
    void expect_refused(const Outcome& outcome, int status, const std::string& line) {
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.errors, line + "\n");
    }
    // The login is no administrator any more.
    void rule_by(const std::string& user) {
        const std::string login = company::login_name();
        EXPECT_EQ(company("export a.company rights --table User_right_table").status, 0);
        std::string text = text_of_file(folder_.file("rights/User_right_table.csv"));
        for (std::size_t at = 0; (at = text.find("," + login + ",", at)) != std::string::npos;)
            text.replace(at + 1, login.size(), user);
        write_file(folder_.file("rights/User_right_table.csv"), text);
        EXPECT_EQ(company("create b.company").status, 0);
        EXPECT_EQ(company("import b.company rights").status, 0);
        std::filesystem::rename(folder_.file("b.company"), folder_.file("a.company"));
    }
    // Readable by nobody else.
    void write_passwords(const std::string& text) {
        write_file(folder_.file("passwords"), text);
        std::filesystem::permissions(folder_.file("passwords"), std::filesystem::perms::owner_read);
    }

    testing::TemporaryFolder folder_;
};

TEST_F(PeopleOfPrograms, AnotherPersonIsWorkedAsWithTheirPasswordOnceTheyHaveOne) {
    EXPECT_EQ(console("a.company acts --user ben").status, 0);
    EXPECT_EQ(company("password a.company ben", "s e:cret\n").status, 0);
    expect_refused(console("a.company acts --user ben"), 3,
                   "brimley-console: ben has a password, which is needed to work as ben");
    EXPECT_EQ(console("a.company acts").status, 0);
    EXPECT_EQ(console("a.company acts --user anna").status, 0);

    write_passwords("anna:x\nben:s e:cret\n");
    EXPECT_EQ(console("a.company acts --user ben --password-file passwords").status, 0);
    std::filesystem::permissions(folder_.file("passwords"), std::filesystem::perms::owner_all);
    write_passwords("ben:secret\n");
    expect_refused(console("a.company acts --user ben --password-file passwords"), 3,
                   "brimley-console: that is not the password of ben");
    std::filesystem::permissions(folder_.file("passwords"), std::filesystem::perms::others_read,
                                 std::filesystem::perm_options::add);
    expect_refused(console("a.company acts --user ben --password-file passwords"), 3,
                   "brimley-console: passwords holds passwords, and is open to others: chmod 600 closes it");

    EXPECT_EQ(company("password a.company ben", "\n").status, 0);
    EXPECT_EQ(console("a.company acts --user ben").status, 0);
}

TEST_F(PeopleOfPrograms, ContextOfAnotherPersonNeedsThePasswordAsWell) {
    EXPECT_EQ(company("password a.company ben", "secret\n").status, 0);
    const std::string script = "context BRIMLEY_USER anna\ncontext BRIMLEY_USER ben\n";
    expect_refused(console("a.company acts", script), 2,
                   "acts:3: ben has a password, which is needed to work as ben");
    write_passwords("ben:secret\n");
    EXPECT_EQ(console("a.company acts --password-file passwords", script).status, 0);
}

TEST_F(PeopleOfPrograms, PasswordIsChangedByWhoKnowsItOrByAnAdministrator) {
    EXPECT_EQ(company("password a.company ben", "first\n").status, 0);
    EXPECT_EQ(company("password a.company ben", "second\n").status, 0);
    expect_refused(company("password a.company ''", "x\n"), 2,
                   "brimley-company: the name of the person is empty");
    rule_by("zoe");
    expect_refused(company("password a.company ben", "x\n"), 1,
                   "brimley-company: ben has no password yet: only ben or an administrator sets the first");
    const std::string login = company::login_name();
    EXPECT_EQ(company("password a.company " + login, "mine\n").status, 0);
    expect_refused(company("password a.company " + login, "other\nnew\n"), 1,
                   "brimley-company: that is not the password of " + login);
    EXPECT_EQ(company("password a.company " + login, "mine\nnew\n").status, 0);
    EXPECT_EQ(company("password a.company " + login, "new\n\n").status, 0);
    expect_refused(company("password a.company " + login, ""), 3, "brimley-company: a password is missing");
}

TEST_F(PeopleOfPrograms, PasswordOfSomebodyUnknownIsSetAndSaidSo) {
    const auto printed = [&](const std::string& person) {
        EXPECT_EQ(company("password a.company " + person, "secret\n").status, 0);
        return text_of_file(folder_.file("out"));
    };
    EXPECT_EQ(printed("nobody"), "note: nobody has no rights in the company yet\n");
    EXPECT_EQ(printed(company::login_name()), "");
}

TEST_F(PeopleOfPrograms, RightsAreImportedByAnAdministrator) {
    rule_by("zoe");
    const Outcome refused = company("import a.company rights --replace");
    expect_refused(refused, 1,
                   "brimley-company: rights/User_right_table.csv says who may do what: only an administrator "
                   "imports it, who has all rights on all forms");
}

TEST_F(PeopleOfPrograms, ExportedHashesAreTheOwnersAlone) {
    EXPECT_EQ(company("password a.company ben", "secret\n").status, 0);
    EXPECT_EQ(company("export a.company all").status, 0);
    EXPECT_THAT(text_of_file(folder_.file("all/Password_table.csv")), HasSubstr("\nben,scrypt$"));
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder_.file("all/Password_table.csv")).permissions(),
              perms::owner_read | perms::owner_write);
}

// Only the role that owns a company on a server may say as whom it works.
TEST_F(PeopleOfPrograms, OnAServerThePersonIsTheRole) {
    if (!testing::tests_run_on_server()) return;
    const testing::ServerDatabase books;
    const std::string owner = books.uri();
    EXPECT_EQ(company("create --sample '" + owner + "'").status, 0);
    const std::string role = "clerk_" + std::to_string(::getpid());
    const auto as_owner = [&](const std::string& sql) { testing::on_server(owner, sql); };
    as_owner("CREATE ROLE " + role + " LOGIN");
    as_owner("GRANT USAGE ON SCHEMA brimley TO " + role);
    as_owner("GRANT SELECT ON ALL TABLES IN SCHEMA brimley TO " + role);
    as_owner("GRANT SELECT, USAGE ON ALL SEQUENCES IN SCHEMA brimley TO " + role);
    const std::string uri = owner + "&user=" + role;

    EXPECT_EQ(console("'" + owner + "' acts --user ben").status, 0);
    expect_refused(console("'" + uri + "' acts --user ben"), 3,
                   "brimley-console: the server knows you as " + role + ", who may not work as ben");
    expect_refused(console("'" + uri + "' acts", "context BRIMLEY_USER ben\n"), 2,
                   "acts:2: the server knows you as " + role + ", who may not work as ben");
    EXPECT_EQ(console("'" + uri + "' acts --user " + role).status, 0);
    expect_refused(company("password '" + owner + "' ben", "x\n"), 1,
                   "brimley-company: a person of a company on a server is a role of the server, which keeps "
                   "its password");
    as_owner("DROP OWNED BY " + role);
    as_owner("DROP ROLE " + role);
}

}  // namespace
}  // namespace brimley
