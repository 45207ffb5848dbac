// What a session of one desk cannot show of the masters: who may write, and what another desk does meanwhile.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "controls/fields.h"
#include "masters/master_form.h"
#include "support/sample_host.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Masters : public ::testing::Test {
  protected:
    masters::MasterForm& show(const std::string& class_name) {
        user.ap.showform_Master(class_name);
        return *user.ap.frm_master;
    }
    template <class Kind>
    Kind& control(const char* name) {
        return dynamic_cast<Kind&>(*user.ap.frm_master->controls().find(name));
    }
    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Masters, LastOneWithEveryRightKeepsThem) {
    company.db().Execute("DELETE * FROM User_right_table WHERE userid <> 'anna'");
    auto& form = show("Master_right");
    ASSERT_EQ(form.press(106), Refusal::none);
    ASSERT_EQ(control<controls::CheckBox>("chkprint").click(false), Refusal::none);
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Somebody must keep every right on every form.",
                                             "The right anna APform_creditcard_payment was not saved."));
    EXPECT_EQ(form.mode(), frame::Mode::edit);
    EXPECT_EQ(company.list("SELECT * FROM User_right_table WHERE Print = FALSE"), "");
}

TEST_F(Masters, ThatAreUnknownShowNothing) {
    user.ap.showform_Master("Master_nothing");
    EXPECT_EQ(user.ap.frm_master, nullptr);
}

TEST_F(Masters, RightOfOnesOwnOnTheFormLetsAUserWrite) {
    user.ap.BRIMLEY_USER = "carl";
    EXPECT_FALSE(show("Master_bank").may_update());
    user.ap.frm_master->unload_form();
    auto rights = company.dynaset("SELECT * FROM User_right_table WHERE 1 = 2");
    rights.AddNew();
    rights.set("userid", "carl");
    rights.set("form", "Master_bank");
    rights.set("Update", true);
    rights.Update();
    EXPECT_TRUE(show("Master_bank").may_update());
    EXPECT_FALSE(show("Master_right").may_update());
}

TEST_F(Masters, RightThatIsTakenMeanwhileStopsTheSave) {
    auto& form = show("Master_bank");
    ASSERT_EQ(form.press(106), Refusal::none);
    ASSERT_EQ(control<controls::TextField>("txtbank_branch").type("North"), Refusal::none);
    company.db().Execute("UPDATE User_right_table SET Update = FALSE WHERE userid = 'anna'");
    company.db().Execute(
        "UPDATE User_right_table SET Update = TRUE, Print = TRUE, form_design = TRUE WHERE userid = 'ben'");
    EXPECT_EQ(form.press(101), Refusal::disabled);
    EXPECT_THAT(user.messages(), IsEmpty());
    EXPECT_EQ(company.list("SELECT * FROM Bank_master_table WHERE bank_branch = 'North'"), "");
}

TEST_F(Masters, RowThatIsGoneMeanwhileIsSaidSo) {
    auto& form = show("Master_bank");
    company.db().Execute("DELETE * FROM Bank_master_table WHERE bank_code = 'BAHT'");
    EXPECT_EQ(form.press(106), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("The bank BAHT no longer exists."));
    EXPECT_EQ(form.mode(), frame::Mode::read);
    EXPECT_EQ(control<controls::TextField>("txtbank_code").text(), "EURO");
}

// Whatever their descriptions name is there, or no form could read it.
TEST_F(Masters, EachShowsItsRowsAndWhatItNamesIsInTheTables) {
    for (const masters::Master& master : masters::all_masters()) {
        const store::Table* const table = company.db().catalog().find(master.table);
        ASSERT_NE(table, nullptr) << master.table;
        for (const masters::Field& field : master.fields) {
            EXPECT_GE(table->field_index(field.name), 0) << master.table << ": " << field.name;
            if (field.kind != masters::Field::Kind::known) continue;
            const store::Table* const known = company.db().catalog().find(field.of.table);
            ASSERT_NE(known, nullptr) << field.of.table;
            EXPECT_GE(known->field_index(field.of.field), 0) << field.of.field;
        }
        for (const auto* const uses : {&master.used_by, &master.posted_in})
            for (const masters::Use& use : *uses) {
                const store::Table* const user_table = company.db().catalog().find(use.table);
                ASSERT_NE(user_table, nullptr) << use.table;
                EXPECT_GE(user_table->field_index(use.field), 0) << use.table << ": " << use.field;
            }
        const auto& form = show(master.identity.class_name);
        const bool has_rows = !company.list(std::string("SELECT * FROM ") + master.table).empty();
        EXPECT_EQ(form.dbgrid1.array.get(0, 0).empty(), !has_rows) << master.table;
        EXPECT_THAT(user.messages(), IsEmpty());
    }
}

// --- the list, and files ---
TEST_F(Masters, AreSortedByTheColumnOfTheCellAndBackwardsTheSecondTime) {
    auto& form = show("Master_vendor");
    const int name = form.dbgrid1.get_column("Name");
    ASSERT_GE(name, 0);
    const auto first_and_last = [&](const char* direction) {
        const std::string order =
            std::string("SELECT vendor_name FROM Vendor_table ORDER BY vendor_name") + direction;
        auto rows = company.snapshot(order);
        return rows.text("vendor_name");
    };
    form.dbgrid1.go_to(2, name);
    ASSERT_EQ(form.press(masters::command::kSort), Refusal::none);
    EXPECT_EQ(form.dbgrid1.array.get(0, name), first_and_last(""));
    form.dbgrid1.go_to(0, name);
    ASSERT_EQ(form.press(masters::command::kSort), Refusal::none);
    EXPECT_EQ(form.dbgrid1.array.get(0, name), first_and_last(" DESC"));
    EXPECT_NE(first_and_last(""), first_and_last(" DESC"));
}

TEST_F(Masters, WrittenToAFileAndReadFromItAreTheSame) {
    const std::string path = company.folder().file("rows.csv");
    for (const char* const name : {"Master_exchange_rate", "Master_payment_term", "Master_bank"}) {
        auto& form = show(name);
        std::string fields;
        for (const masters::Field& field : form.master().fields)
            fields += (fields.empty() ? "[" : ", [") + std::string(field.name) + "]";
        const std::string query = fmt::format("SELECT {} FROM {}", fields, form.master().table);
        const std::string before = company.list(query);
        ASSERT_EQ(control<controls::TextField>("txtfile").type(path), Refusal::none);
        ASSERT_EQ(form.press(masters::command::kWriteFile), Refusal::none);
        const auto rows = company.db().Execute(fmt::format("DELETE * FROM {}", form.master().table));
        EXPECT_GT(rows, 1);
        ASSERT_EQ(form.press(masters::command::kReadFile), Refusal::none);
        EXPECT_EQ(company.list(query), before) << name;
        EXPECT_THAT(
            user.messages(),
            ElementsAre(fmt::format("{}: {} rows written to {}.", form.identity().caption, rows, path),
                        fmt::format("{}: {} rows added from {}.", form.identity().caption, rows, path)));
        form.unload_form();
    }
}

TEST_F(Masters, FileWithAFaultInOneRowAddsNothing) {
    auto& form = show("Master_bank");
    const std::string path = company.folder().file("banks.csv");
    const std::string before = company.list("SELECT * FROM Bank_master_table");
    const auto read = [&](const std::string& text) {
        std::ofstream(path) << text;
        EXPECT_EQ(form.press(masters::command::kReadFile), Refusal::none);
        EXPECT_EQ(company.list("SELECT * FROM Bank_master_table"), before);
        return user.messages();
    };
    EXPECT_THAT(read(""), ElementsAre("Please specify the CSV file."));
    ASSERT_EQ(control<controls::TextField>("txtfile").type(path), Refusal::none);
    EXPECT_THAT(
        read("bank_code,bank_name,account_no\nNEW,New bank,1050\nODD,Odd bank,9999\n"),
        ElementsAre("There is no account 9999.", path + ":3: this row cannot be added. Nothing was added."));
    EXPECT_THAT(read("bank_code,bank_name,account_no\nNEW,New bank,1050\nNEW,Again,1050\n"),
                ElementsAre("The bank NEW exists already.",
                            path + ":3: this row cannot be added. Nothing was added."));
    EXPECT_THAT(read("bank_code,colour\nNEW,red\n"),
                ElementsAre(path + ":1: a bank has no field \"colour\". Nothing was added."));
    std::filesystem::remove(path);
    EXPECT_EQ(form.press(masters::command::kReadFile), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre(::testing::HasSubstr("Nothing was added.")));
    ASSERT_EQ(control<controls::TextField>("txtfile").type("/nowhere/banks.csv"), Refusal::none);
    EXPECT_EQ(form.press(masters::command::kWriteFile), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("/nowhere/banks.csv was not written."));
}

TEST_F(Masters, FileIsReadByWhoMayEnterAlone) {
    user.ap.BRIMLEY_USER = "carl";
    auto& form = show("Master_bank");
    ASSERT_EQ(control<controls::TextField>("txtfile").type(company.folder().file("banks.csv")),
              Refusal::none);
    EXPECT_FALSE(form.can_do(masters::command::kReadFile));
    EXPECT_FALSE(form.can_do(masters::command::kWriteFile));
    static_cast<void>(form.press(masters::command::kWriteFile));
    EXPECT_THAT(user.messages(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(company.folder().file("banks.csv")));
}

}  // namespace brimley::testing
