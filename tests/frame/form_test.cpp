// What every form has: commands by difference, leaving, transactions, fields, lists.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/fields/vendor_fields.h"
#include "frame/line_columns.h"
#include "plain_form.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class FrameForm : public ::testing::Test {
  protected:
    PlainHost host;
    std::shared_ptr<PlainForm> form = host.show({1}, 1);
};

// A list: a grid and its font bar, and no modes.
class PlainList : public frame::GridForm {
  public:
    using GridForm::GridForm;

  protected:
    void Form_Load() override {
        init_toolbar();
        font_bar.fill();
        step("init_grid", [&] { build_grids(); });
    }
    void init_toolbar() override {
        add_commands({{104, "&Find", "", "", {"Run"}}},
                     {frame::command::kNew, frame::command::kEditMode, frame::command::kSave});
    }
    void CommandBars1_Execute(int id) override { static_cast<void>(execute_of_grid_form(id)); }
};

TEST_F(FrameForm, CommandsThatAFormHasNotAreAbsent) {
    EXPECT_EQ(form->CommandBars1().find(204), nullptr);
    EXPECT_EQ(form->CommandBars1().find(202), nullptr);
    EXPECT_NE(form->CommandBars1().find(201), nullptr);
}

TEST_F(FrameForm, ListHasAGridWithItsFontBarAndNoModes) {
    const auto list = std::make_shared<PlainList>(
        kPlainIdentity, host.context(), std::make_shared<kernel::ModuleG3>(host.context().abcdb, host.desk),
        host.desk);
    list->show();
    EXPECT_EQ(list->CommandBars1().find(105), nullptr);
    EXPECT_NE(list->CommandBars1().find(104), nullptr);
    ASSERT_FALSE(list->dbgrid1.columns.empty());
    EXPECT_FALSE(list->dbgrid1.columns[0].font.bold);
    EXPECT_EQ(list->press(403), controls::Refusal::none);
    EXPECT_TRUE(list->dbgrid1.columns[0].font.bold);
    EXPECT_EQ(list->mode(), frame::Mode::read);
}

// Half of it would have no columns, and nothing would read them later.
TEST_F(FrameForm, FormWhoseLayoutIsLostOnTheWayIsNotShown) {
    const auto faults = std::make_shared<Faults>();
    const store::OpenCompany company = host.company.second_user(faulty(faults));
    frame::HostContext context = host.context();
    context.dbe = company.workspace;
    context.abcdb = company.database;
    faults->kind = store::ErrorKind::lost;
    faults->only_statements_with = "Grid_property";
    faults->arm(1, false);
    const auto list = std::make_shared<PlainList>(
        kPlainIdentity, context, std::make_shared<kernel::ModuleG3>(context.abcdb, host.desk), host.desk);
    static_cast<void>(host.messages());
    list->show();
    EXPECT_FALSE(list->is_whole());
    EXPECT_FALSE(list->is_open());
    EXPECT_THAT(host.messages(), ElementsAre(lost_message(false)));
    EXPECT_EQ(list->press(104), controls::Refusal::disabled);
    EXPECT_EQ(list->dbgrid1.edit_cell(0, list->dbgrid1.get_column("rate"), "1"), controls::Refusal::hidden);
}

TEST_F(FrameForm, ExitKeepsRecentValuesBeforeTheGridAndUnloadKeepsNothing) {
    form->unload_form();
    EXPECT_TRUE(form->kept.empty());
    form->show();
    EXPECT_EQ(form->press(100), controls::Refusal::none);
    EXPECT_THAT(form->kept, ElementsAre("recent values", "grid"));
}

TEST_F(FrameForm, RecentValueIsWrittenWhereItsRowExists) {
    form->save_recent_value("cmbfyear", "2027");
    form->save_recent_value("no such control", "1");
    EXPECT_EQ(form->recent_value("cmbfyear"), "2027");
    EXPECT_EQ(form->recent_value("no such control"), "");
    EXPECT_EQ(host.company.list("SELECT Value FROM Recent_value_table WHERE form_name = 'APform_revalue' AND "
                                "control_name = 'cmbfyear'"),
              "2027");
    EXPECT_EQ(
        host.company.list("SELECT Value FROM Recent_value_table WHERE control_name = 'no such control'"), "");
}

TEST_F(FrameForm, UserWithoutARowOfPropertiesKeepsNone) {
    host.company.db().Execute("DELETE * FROM Form_property_table");
    EXPECT_EQ(form->press(209), controls::Refusal::none);
    EXPECT_EQ(form->press(100), controls::Refusal::none);
    EXPECT_EQ(host.company.list("SELECT form FROM Form_property_table"), "");
}

TEST_F(FrameForm, ChildFormGoesWithItsForm) {
    const auto child = host.make();
    form->show_child(child);
    EXPECT_TRUE(child->is_open());
    EXPECT_EQ(form->child(), child.get());
    form->unload_form();
    EXPECT_FALSE(child->is_open());
}

TEST_F(FrameForm, ChildFormIsClosedAloneAndOnce) {
    const auto child = host.make();
    form->show_child(child);
    EXPECT_EQ(form->close_child(), controls::Refusal::none);
    EXPECT_FALSE(child->is_open());
    EXPECT_TRUE(form->is_open());
    EXPECT_EQ(form->child(), nullptr);
    EXPECT_EQ(form->close_child(), controls::Refusal::hidden);
}

TEST_F(FrameForm, FailedTransactionGivesTheWordsOfTheStore) {
    std::string failure;
    EXPECT_FALSE(form->in_transaction(
        "test", [&]() -> bool { throw store::Error(store::ErrorKind::io, "the disk is full"); }, &failure));
    EXPECT_EQ(failure, "the disk is full");
    std::string none;
    EXPECT_FALSE(form->in_transaction(
        "test", [] { return false; }, &none));
    EXPECT_EQ(none, "");
}

TEST_F(FrameForm, OpenOnlyLeavesTheFieldsNamedAndTheNumbersColour) {
    EXPECT_EQ(form->press(106), controls::Refusal::none);
    const auto colour = form->txtdocno.back_colour();
    form->open_only({&form->txtremark});
    EXPECT_FALSE(form->txtremark.locked());
    EXPECT_TRUE(form->txtratedate.locked());
    EXPECT_EQ(form->txtdocno.back_colour(), colour);
    EXPECT_FALSE(form->dbgrid1.allow_update);
}

// --- the two fields of a vendor ---

class VendorFields : public FrameForm {
  protected:
    controls::ComboBox number{form->controls(), "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox name{form->controls(), "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
};

TEST_F(VendorFields, EachFollowsTheOther) {
    int chosen = 0;
    frame::VendorFields fields(*form, number, name, frame::VendorFields::Unknown::leaves_the_other);
    fields.on_chosen = [&] { ++chosen; };
    fields.fill();
    EXPECT_EQ(number.type("V1001"), controls::Refusal::none);
    EXPECT_EQ(name.text(), fields.name_of("V1001"));
    EXPECT_EQ(name.type(fields.name_of("V1002").value_or("?")), controls::Refusal::none);
    EXPECT_EQ(number.text(), "V1002");
    EXPECT_EQ(chosen, 2);
    EXPECT_EQ(fields.name_of("V9999"), std::nullopt);
}

TEST_F(VendorFields, VendorWithoutANameEmptiesTheNameOnlyWhereItIsToldTo) {
    host.company.db().Execute("UPDATE Vendor_table SET VENDOR_NAME = '' WHERE vendor_no = 'V1002'");
    for (const auto unknown :
         {frame::VendorFields::Unknown::leaves_the_other, frame::VendorFields::Unknown::empties_the_other}) {
        frame::VendorFields fields(*form, number, name, unknown);
        fields.fill();
        EXPECT_EQ(number.type("V1001"), controls::Refusal::none);
        const std::string before = name.text();
        EXPECT_NE(before, "");
        EXPECT_EQ(number.type("V1002"), controls::Refusal::none);
        EXPECT_EQ(name.text(), unknown == frame::VendorFields::Unknown::leaves_the_other ? before : "");
    }
}

// --- columns of stored lines ---

TEST_F(FrameForm, LineColumnsShowEachValueInItsWay) {
    static constexpr frame::LineColumn kColumns[] = {
        {"one", "pay_item", frame::Shown::text},
        {"two", "gross_amount", frame::Shown::money},
        {"three", "gross_amount", frame::Shown::money_without_sign},
        {"four", "invoice_date", frame::Shown::date},
        {"five", "paid", frame::Shown::flag},
        {"six", "no_such_field", frame::Shown::money},
        {"seven", "discount_taken", frame::Shown::money}};
    controls::Grid grid(form->controls(), "grid");
    for (const frame::LineColumn& column : kColumns)
        grid.columns.emplace_back().caption = column.caption;
    host.company.add("AP_transaction_table",
                     {{"pay_item", "3"},
                      {"gross_amount", -1234.5},
                      {"invoice_date", store::DateTime::from_iso("2026-03-05").value()},
                      {"paid", true}});
    auto lines = host.company.snapshot("SELECT * FROM AP_transaction_table");
    frame::LineColumns columns(*form, grid, kColumns);
    columns.begin(lines);
    columns.show(lines, 2);
    std::vector<std::string> shown;
    for (const frame::LineColumn& column : kColumns)
        shown.push_back(grid.cell(2, column.caption));
    EXPECT_THAT(shown, ElementsAre("3", "-1,234.50", "1,234.50", "05/03/2026", "True", "", ""));
}

}  // namespace brimley::testing
