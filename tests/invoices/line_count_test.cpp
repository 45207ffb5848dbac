// How many lines the grid of an invoice has room for, and that each of them is stored and comes back.
#include <gtest/gtest.h>

#include "kernel/money.h"
#include "support/sample_host.h"

namespace brimley::testing {

class LineCount : public ::testing::TestWithParam<int> {
  protected:
    void SetUp() override { user.ap.showform_APform_invoice(); }
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    // Line n has the amount n.
    void save_lines(int count) {
        enter(form(), {});
        ASSERT_EQ(form().dbgrid1.array.rows(), kRowsOfAnEntry);
        for (int row = 0; row < count; ++row) {
            edit_line_cell(form(), row, "purchase account", "5000");
            edit_line_cell(form(), row, "gross amount", std::to_string(row + 1).c_str());
        }
        ASSERT_EQ(form().press(101), controls::Refusal::none);
        ASSERT_EQ(form().mode(), frame::Mode::read);
    }

    static constexpr int kRowsOfAnEntry = 21;

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_P(LineCount, EveryLineIsStoredAndComesBackInItsOrder) {
    const int count = GetParam();
    save_lines(count);
    EXPECT_EQ(company.list("SELECT pay_item FROM AP_transaction_table WHERE gross_amount = " +
                           std::to_string(count)),
              std::to_string(count));
    EXPECT_EQ(company.snapshot("SELECT * FROM AP_transaction_table").RecordCount(), count);
    ASSERT_EQ(form().press(136), controls::Refusal::none);
    ASSERT_EQ(form().dbgrid1.array.used_rows(), count);
    for (int row = 0; row < count; ++row) {
        EXPECT_EQ(form().dbgrid1.cell(row, "pay item"), std::to_string(row + 1));
        EXPECT_EQ(form().dbgrid1.cell(row, "gross amount"), std::to_string(row + 1) + ".00");
    }
    EXPECT_EQ(kernel::money_value(form().txttotal.text()), count * (count + 1) / 2);
}

TEST_P(LineCount, StoredDocumentHasTheRowsOfAnEntryOrFiveToSpareFromTwentyLinesOn) {
    const int count = GetParam();
    save_lines(count);
    ASSERT_EQ(form().press(136), controls::Refusal::none);
    EXPECT_EQ(form().dbgrid1.array.rows(), count < 20 ? kRowsOfAnEntry : count + 5);
    // The next New is an entry like any other.
    ASSERT_EQ(form().press(105), controls::Refusal::none);
    EXPECT_EQ(form().dbgrid1.array.rows(), kRowsOfAnEntry);
}

INSTANTIATE_TEST_SUITE_P(AroundTheRoomOfAnEntry, LineCount, ::testing::Values(19, 20, 21),
                         ::testing::PrintToStringParamName());

}  // namespace brimley::testing
