// What a session of one desk cannot show of the masters: who may write, and what another desk does meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace brimley::testing
