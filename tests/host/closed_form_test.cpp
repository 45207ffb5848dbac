// What a host may rely on once a form has been taken down, by itself or by the user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/sample_host.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::Each;
using ::testing::IsEmpty;

class ClosedForm : public ::testing::Test {
  protected:
    ClosedForm() {
        user.ap.showform_APform_invoice();
        enter(form(), {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "taxable amount", "1.00"}}});
        user.ap.frm_invoice_Exit();
    }
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    // Every act that a user has on this control, with what became of it.
    static std::vector<Refusal> acts_on(controls::Control& control) {
        if (auto* field = dynamic_cast<controls::TextField*>(&control))
            return {field->type("1"), field->press_enter()};
        if (auto* combo = dynamic_cast<controls::ComboBox*>(&control))
            return {combo->type("1"), combo->pick(0), combo->press_enter()};
        if (auto* box = dynamic_cast<controls::CheckBox*>(&control))
            return {box->click(true), box->click(false)};
        if (auto* option = dynamic_cast<controls::OptionButton*>(&control)) return {option->click()};
        if (auto* grid = dynamic_cast<controls::Grid*>(&control))
            return {grid->visit_cell(0, 1),
                    grid->edit_cell(0, 1, "1"),
                    grid->double_click(0),
                    grid->resize_column(1, 10),
                    grid->move_column(1, 0),
                    grid->resize_rows(10),
                    grid->user_selects_columns(std::nullopt)};
        return {};
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(ClosedForm, EveryActOnAControlIsOutOfReach) {
    std::size_t acts = 0;
    for (controls::Control* control : form().controls().all()) {
        const auto refusals = acts_on(*control);
        EXPECT_THAT(refusals, Each(Refusal::hidden)) << control->name();
        acts += refusals.size();
    }
    EXPECT_GT(acts, 100U);
    EXPECT_THAT(user.messages(), IsEmpty());
    EXPECT_EQ(form().dbgrid1.cell(0, "taxable amount"), "1.00");
}

TEST_F(ClosedForm, EveryCommandIsDisabledAndSavesNothing) {
    for (int id = 1; id < 2000; ++id)
        EXPECT_EQ(form().press(id), Refusal::disabled) << id;
    EXPECT_THAT(user.messages(), IsEmpty());
    EXPECT_THAT(user.notifications, IsEmpty());
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

}  // namespace brimley::testing
