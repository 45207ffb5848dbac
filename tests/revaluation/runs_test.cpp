// Runs: the lists of the selection, the sixteen bits that rows are counted in, the layout that decides where
// labels stand.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kernel/store/catalog.h"
#include "kernel/tables/company_tables.h"
#include "revaluation_entry.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class Revaluations : public ::testing::Test {
  protected:
    [[nodiscard]] const controls::DropDown& list_of(revaluation::APform_revalue& form,
                                                    const char* caption) const {
        return *form.dbgridcmd.columns.at(static_cast<std::size_t>(form.dbgridcmd.get_column(caption)))
                    .drop_down;
    }
    [[nodiscard]] int count(const std::string& table) {
        return static_cast<int>(company.snapshot("SELECT * FROM " + table).RecordCount());
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Revaluations, SelectionListsCurrenciesWithTheirNamesAndVendorsByName) {
    user.ap.showform_APform_revalue();
    auto& form = *user.ap.frm_revalue;
    const controls::DropDown& currencies = list_of(form, "currency");
    EXPECT_FALSE(currencies.fetched.has_value());
    EXPECT_THAT(currencies.captions, ElementsAre("currency", "description"));
    EXPECT_THAT(currencies.rows().at(0), ElementsAre("USD", "US dollar"));
    EXPECT_EQ(currencies.taken, 0U);
    const controls::DropDown& vendors = list_of(form, "vendor no");
    EXPECT_FALSE(vendors.fetched.has_value());
    EXPECT_THAT(vendors.captions, ElementsAre("vendor name", "vendor no"));
    EXPECT_THAT(vendors.rows().at(0), ElementsAre("Acciaio Brera S.p.A.", "V2007"));
    EXPECT_EQ(vendors.taken, 1U);
}

// Rows count on from one selection row to the next, so that 110 of them reach beyond sixteen bits.
TEST_F(Revaluations, MoreRowsThanSixteenBitsCountLeaveTheItemsOfTheSaveWhereTheyWere) {
    constexpr int kItems = 300;
    constexpr int kSelections = 110;
    add_three_items(company);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.run.last_result_row, 4);
    for (int i = 0; i < kItems; ++i)
        add_open_item(company, "V3001", fmt::format("T{:04}", i), 1000, 0.03, "THB");
    for (int row = 0; row < kSelections; ++row)
        select_items(form, row, "THB", "0.031");
    EXPECT_EQ(form.press(104), controls::Refusal::none);
    const int first_row = (kSelections - 1) * (kItems + 1);
    EXPECT_EQ(form.dbgrid1.cell(first_row, "document no"), "T0000");
    EXPECT_EQ(form.dbgrid1.cell(first_row + kItems - 1, "document no"), "T0299");
    EXPECT_GT(first_row + kItems, 32'767);
    EXPECT_EQ(form.run.last_result_row, 4);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new revaluation complete"));
    EXPECT_EQ(count("AP_Revalue_Result_table"), 0);
    EXPECT_EQ(count("AP_Revalue_transaction_table"), kSelections);
    EXPECT_EQ(count("AP_Revalue_GL_summary_table"), 2);
}

// The label and the rate go where the layout has the two columns after the name.
TEST_F(Revaluations, LabelOfTheTotalStandsInTheColumnsAfterTheName) {
    add_three_items(company);
    user.ap.showform_APform_revalue();
    {
        auto& first = *user.ap.frm_revalue;
        EXPECT_EQ(first.dbgrid1.move_column(first.dbgrid1.get_column("vendor name"), 5),
                  controls::Refusal::none);
        EXPECT_EQ(first.press(100), controls::Refusal::none);
    }
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgrid1.columns.at(5).caption, "vendor name");
    EXPECT_EQ(form.dbgrid1.cell(3, "vendor name"), "Total");
    EXPECT_EQ(form.dbgrid1.array.get(3, 6), "Revalue EUR at rate");
    // The rate has given way to a sum.
    EXPECT_EQ(form.dbgrid1.columns.at(7).caption, "invoice amount");
    EXPECT_EQ(form.dbgrid1.array.get(3, 7), "1,100.00");
}

// Of the selection the name alone is locked, whatever the layout says.
TEST_F(Revaluations, NameOfTheVendorIsTheOneLockedColumnOfTheSelection) {
    company.db().Execute(
        "UPDATE Grid_property SET Locked = FALSE WHERE form_name = 'APform_revalue' AND Caption = 'vendor "
        "name'");
    company.db().Execute(
        "UPDATE Grid_property SET Locked = TRUE WHERE form_name = 'APform_revalue' AND Caption = 'rate'");
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgridcmd.cell(0, "rate"), "1.25");
    EXPECT_EQ(form.dbgridcmd.edit_cell(0, form.dbgridcmd.get_column("vendor name"), "Anybody"),
              controls::Refusal::locked);
}

// A date that can be stored and not typed is reported for each item, and the item is stored without it.
TEST_F(Revaluations, ItemOfAYearThatNobodyCanTypeIsStoredWithoutItsDate) {
    company.add("AP_transaction_table", {{"vendor_no", "V2001"},
                                         {"docno", "OLD"},
                                         {"pay_item", 1},
                                         {"invoice_date", store::DateTime::from_ymd(1985, 6, 1).value()},
                                         {"Currency", "EUR"},
                                         {"open_amount", 100.0},
                                         {"exchange_rate", 1.2},
                                         {"paid", false},
                                         {"void", false}});
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("year is invalid (1985)", "Add new revaluation complete"));
    EXPECT_EQ(company.list("SELECT document_no, document_date FROM AP_Revalue_Result_table"), "OLD -");
}

TEST(RevaluationQueries, OpenItemsOfACurrencyAndStoredRunsAreLookedUp) {
    const auto has_index = [](const char* table, const std::vector<std::string>& fields) {
        return std::ranges::any_of(kernel::company_tables().find(table)->indexes,
                                   [&](const store::Index& index) { return index.fields == fields; });
    };
    EXPECT_TRUE(has_index("AP_transaction_table", {"Currency", "paid"}));
    for (const char* const table : {"AP_Revalue_header_table", "AP_Revalue_transaction_table",
                                    "AP_Revalue_Result_table", "AP_Revalue_GL_summary_table"})
        EXPECT_TRUE(has_index(table, {"fkey"})) << table;
}

}  // namespace brimley::testing
