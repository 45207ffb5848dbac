// How a user's toolbar is remembered: text below its icons, and the font bar.
#include <gtest/gtest.h>

#include "support/sample_host.h"

namespace brimley::testing {

class FormProperties : public ::testing::Test {
  protected:
    FormProperties() {
        form->CommandBars1().show_text = true;
        form->CommandBars1().font_bar_visible = true;
    }
    // The row of anna's invoice form; the other forms' and users' rows say the opposite.
    void remember(const store::Value& toolbar_text, const store::Value& font_bar) {
        auto rows = company.dynaset("SELECT * FROM Form_property_table");
        for (; !rows.at_eof(); rows.MoveNext()) {
            const bool own = rows.text("userid") == "anna" && rows.text("form") == "APform_invoice";
            rows.Edit();
            rows.set("toolbar_text", own ? toolbar_text : store::Value(!toolbar_text.flag()));
            rows.set("Fontbar", own ? font_bar : store::Value(!font_bar.flag()));
            rows.Update();
        }
    }
    std::string remembered() {
        return company.list(
            "SELECT toolbar_text, Fontbar FROM Form_property_table WHERE userid = 'anna' AND form = "
            "'APform_invoice'");
    }
    void expect_bars(bool toolbar_text, bool font_bar) {
        form->show();
        EXPECT_EQ(form->CommandBars1().show_text, toolbar_text);
        EXPECT_EQ(form->CommandBars1().font_bar_visible, font_bar);
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
    // Its toolbar shows both by default, so that a default that stands can be told from a value of FALSE.
    std::shared_ptr<invoices::APform_invoice> form = std::make_shared<invoices::APform_invoice>(
        user.ap, std::make_shared<kernel::ModuleG3>(company.open().database, user.desk), user.desk);
};

TEST_F(FormProperties, NullLeavesTheToolbarsOwnDefault) {
    remember({}, {});
    expect_bars(true, true);
}

TEST_F(FormProperties, EachFieldIsTakenByItself) {
    remember({}, false);
    expect_bars(true, false);
}

TEST_F(FormProperties, FalseTakesBothAway) {
    remember(false, false);
    expect_bars(false, false);
    EXPECT_FALSE(form->CommandBars1().pressed(209));
}

TEST_F(FormProperties, TextBelowIconsPressesItsCommand) {
    remember(true, {});
    expect_bars(true, true);
    EXPECT_TRUE(form->CommandBars1().pressed(209));
    EXPECT_EQ(form->press(209), controls::Refusal::none);
    EXPECT_FALSE(form->CommandBars1().show_text);
    EXPECT_FALSE(form->CommandBars1().pressed(209));
}

TEST_F(FormProperties, UserWithoutARowHasDefaultsAndKeepsNothing) {
    company.db().Execute("DELETE * FROM Form_property_table");
    expect_bars(true, true);
    EXPECT_EQ(form->press(209), controls::Refusal::none);
    EXPECT_EQ(form->press(100), controls::Refusal::none);
    EXPECT_EQ(company.list("SELECT * FROM Form_property_table"), "");
}

TEST_F(FormProperties, ExitWritesBothFieldsWhereTheyWereNull) {
    remember({}, {});
    expect_bars(true, true);
    form->CommandBars1().font_bar_visible = false;
    EXPECT_EQ(form->press(100), controls::Refusal::none);
    EXPECT_EQ(remembered(), "TRUE FALSE");
}

TEST_F(FormProperties, ExitByTheHostWritesNothing) {
    remember({}, {});
    expect_bars(true, true);
    form->unload_form();
    EXPECT_EQ(remembered(), "- -");
}

}  // namespace brimley::testing
