// Administrators, and passwords as they are stored.
#include <fmt/format.h>

#include "company/backup.h"
#include "company/check.h"
#include "company/company_fixture.h"
#include "company/import.h"
#include "company/password_hash.h"
#include "company/people.h"
#include "company/refusal.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using company::Secret;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

TEST(PasswordHash, IsItsPasswordsAndNoOther) {
    const std::string hash = company::hash_of_password(Secret("correct horse"));
    EXPECT_THAT(hash, MatchesRegex("scrypt\\$32768\\$8\\$1\\$[0-9a-f]{32}\\$[0-9a-f]{64}"));
    EXPECT_TRUE(company::is_password_of(hash, Secret("correct horse")));
    EXPECT_FALSE(company::is_password_of(hash, Secret("correct Horse")));
    EXPECT_FALSE(company::is_password_of(hash, Secret()));
    EXPECT_NE(hash, company::hash_of_password(Secret("correct horse")));
}

// Computed by another implementation of scrypt.
TEST(PasswordHash, ParametersAreThoseStoredWithIt) {
    const std::string salt = "000102030405060708090a0b0c0d0e0f";
    const std::string hash = "6997353b083a516bc58b5e23ae57c4b770bc021d4bd1b66c2e3a2b6cd08a1ce3";
    EXPECT_TRUE(company::is_password_of("scrypt$1024$8$2$" + salt + "$" + hash, Secret("pleaseletmein")));
    EXPECT_FALSE(company::is_password_of("scrypt$1024$8$1$" + salt + "$" + hash, Secret("pleaseletmein")));
}

// Whoever can write the file could make a desk compute for hours.
TEST(PasswordHash, WhatIsNoHashOrTooDearIsNobodysPassword) {
    const std::string tail = "$" + std::string(32, '0') + "$" + std::string(64, '0');
    for (const std::string& stored :
         {std::string(), std::string("scrypt"), "md5$1024$8$1" + tail, "scrypt$1048576$1024$1" + tail,
          "scrypt$18446744073709551615$8$1" + tail, "scrypt$1000$8$1" + tail, "scrypt$1024$0$1" + tail,
          "scrypt$1024$8$99$" + tail, "scrypt$-2$8$1" + tail, "scrypt$1024$8$1" + tail + "$",
          "scrypt$1024$8$1$zz" + tail})
        EXPECT_FALSE(company::is_password_of(stored, Secret("x"))) << stored;
}

class People : public testing::CompanyTest {
  protected:
    [[nodiscard]] bool administers(const std::string& user) { return company::is_administrator(db(), user); }
    void set(const std::string& user, const std::string& password) {
        in_transaction([&](store::Database& database) {
            company::set_password(database, user, Secret(std::string(password)));
        });
    }
};

TEST_F(People, AdministratorHasAllRightsOnAllForms) {
    make(company::SampleCompany{"zoe"});
    EXPECT_TRUE(administers("zoe"));
    if (testing::tests_run_on_server()) return;  // there it is the role
    EXPECT_FALSE(administers("nobody"));
    change("SELECT * FROM User_right_table WHERE userid = 'zoe' AND form = 'APform_revalue'",
           {{"form_design", false}});
    EXPECT_FALSE(administers("zoe"));
}

TEST_F(People, WhereNobodyIsAdministratorEverybodyIs) {
    make(company::EmptyCompany{});
    EXPECT_TRUE(administers("zoe"));
    add("User_right_table", {{"form", "APform_invoice"}, {"userid", "ben"}, {"Update", true}});
    EXPECT_TRUE(administers("zoe"));
}

TEST_F(People, RowsAboutPeopleAreImportedByAdministratorsOnly) {
    make(company::SampleCompany{"zoe"});
    std::filesystem::create_directory(folder_.file("in"));
    const auto import = [&](bool by_administrator) {
        in_transaction([&](store::Database& database) {
            company::import_folder(database, folder_.file("in"), {true, by_administrator});
        });
    };
    testing::write_file(folder_.file("in/Recent_value_table.csv"), "form_name\nx\n");
    EXPECT_NO_THROW(import(false));
    for (const char* const table : {"User_right_table", "Password_table"}) {
        testing::write_file(folder_.file(fmt::format("in/{}.csv", table)), "userid\nmallory\n");
        const std::string before = dump();
        EXPECT_THROW(import(false), company::Refusal) << table;
        EXPECT_EQ(dump(), before);
        EXPECT_NO_THROW(import(true)) << table;
        std::filesystem::remove(folder_.file(fmt::format("in/{}.csv", table)));
    }
}

TEST_F(People, PasswordIsSetChangedAndTakenAway) {
    make(company::SampleCompany{"zoe"});
    if (testing::tests_run_on_server()) {
        EXPECT_THROW(set("ben", "secret"), company::Refusal);
        return;
    }
    EXPECT_FALSE(company::has_password(db(), "ben"));
    EXPECT_FALSE(company::is_password_of_person(db(), "ben", Secret("")));
    set("ben", "secret");
    EXPECT_TRUE(company::has_password(db(), "ben"));
    EXPECT_FALSE(company::has_password(db(), "Ben"));
    EXPECT_TRUE(company::is_password_of_person(db(), "ben", Secret("secret")));
    set("ben", "other");
    EXPECT_FALSE(company::is_password_of_person(db(), "ben", Secret("secret")));
    EXPECT_TRUE(company::is_password_of_person(db(), "ben", Secret("other")));
    EXPECT_THAT(rows("SELECT userid FROM Password_table"), ElementsAre("ben"));
    EXPECT_THAT(company::check_company(db()), IsEmpty());
    set("o'brien", "quoted");
    EXPECT_TRUE(company::is_password_of_person(db(), "o'brien", Secret("quoted")));
    set("o'brien", "");
    EXPECT_FALSE(company::has_password(db(), "o'brien"));
    EXPECT_THAT(company::check_company(db()), IsEmpty());
}

// Whoever can write the file can take the row away; that shows.
TEST_F(People, PasswordThatWasTakenOutOfTheFileIsFoundByTheTrail) {
    if (testing::tests_run_on_server()) return;
    make(company::SampleCompany{"zoe"});
    set("ben", "secret");
    std::vector<store::Table> tables = kernel::company_tables().tables();
    for (store::Table& table : tables)
        table.watched.reset();
    const store::Catalog unwatched(tables);
    store::open_company(path(), unwatched).database->Execute("DELETE * FROM Password_table");
    EXPECT_THAT(company::check_company(db()), ElementsAre(HasSubstr("password ben")));
}

TEST_F(People, BackupHasThePasswordsAndAnOlderCompanyHasNoPlaceForThem) {
    if (testing::tests_run_on_server()) return;
    make(company::SampleCompany{"zoe"});
    set("ben", "secret");
    EXPECT_THAT(company::back_up(path(), folder_.file("copy")), IsEmpty());
    const auto copy = store::open_company(folder_.file("copy"), kernel::company_tables());
    EXPECT_TRUE(company::is_password_of_person(*copy.database, "ben", Secret("secret")));

    company::create_company_file(folder_.file("old"), company::SampleCompany{"zoe"},
                                 kernel::company_tables().of_layout(1));
    const auto old = store::open_company(folder_.file("old"), kernel::company_tables());
    EXPECT_FALSE(company::has_password(*old.database, "ben"));
    EXPECT_THROW(company::require_place_for_passwords(*old.database), company::Refusal);
}

}  // namespace
}  // namespace brimley
