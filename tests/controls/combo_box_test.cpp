#include "controls/combo_box.h"

#include <gtest/gtest.h>

namespace brimley::testing {

using controls::ComboBox;
using controls::Refusal;

class Combos : public ::testing::Test {
  protected:
    void SetUp() override {
        combo.on_item_select = [&] { ++selects; };
        combo.on_change = [&] { ++changes; };
    }
    void use_source() {
        combo.set_source([&] {
            ++fetches;
            return std::vector<ComboBox::Row>{{"Net 30 days", "30"}, {"Due on receipt", "01"}};
        });
    }
    void use_items() { combo.set_items({{"Net 30 days", "30"}, {"Due on receipt", "01"}}); }

    controls::ControlSet set;
    ComboBox combo{set, "cmbterm", "0;1700;<;Term|1;700;^;Code"};
    int selects = 0;
    int changes = 0;
    int fetches = 0;
};

TEST_F(Combos, DescriptionTellsTheColumns) {
    ASSERT_EQ(combo.columns().size(), 2U);
    EXPECT_EQ(combo.columns()[0].index, 0);
    EXPECT_EQ(combo.columns()[0].width, 1700);
    EXPECT_EQ(combo.columns()[0].alignment, '<');
    EXPECT_EQ(combo.columns()[0].caption, "Term");
    EXPECT_EQ(combo.columns()[1].index, 1);
    EXPECT_EQ(combo.columns()[1].alignment, '^');
    EXPECT_EQ(combo.columns()[1].caption, "Code");
}

TEST_F(Combos, NoDescriptionMeansNoColumns) { EXPECT_TRUE(ComboBox(set, "cmbperiod").columns().empty()); }

TEST_F(Combos, ListIsFetchedWhenItIsFirstLookedAtAndOnlyThen) {
    use_source();
    combo.set("Net 30 days");
    EXPECT_EQ(combo.text(), "Net 30 days");
    EXPECT_EQ(combo.shown(), "Net 30 days");
    combo.set_locked(true);
    EXPECT_EQ(combo.pick(0), Refusal::locked);
    EXPECT_EQ(combo.type("x"), Refusal::locked);
    EXPECT_EQ(fetches, 0);
    EXPECT_EQ(combo.items().size(), 2U);
    EXPECT_EQ(combo.chosen(1), "30");
    EXPECT_EQ(fetches, 1);
}

TEST_F(Combos, EmptyTextHasNoChosenRowAndNeedsNoList) {
    use_source();
    EXPECT_EQ(combo.list_index(), -1);
    EXPECT_EQ(combo.chosen(0), std::nullopt);
    EXPECT_EQ(combo.type(""), Refusal::none);
    EXPECT_EQ(fetches, 0);
}

TEST_F(Combos, RefreshedListIsFetchedAgainAndTheTextStays) {
    use_source();
    combo.set("Due on receipt");
    EXPECT_EQ(combo.list_index(), 1);
    combo.refresh_items();
    EXPECT_EQ(fetches, 1);
    EXPECT_EQ(combo.text(), "Due on receipt");
    EXPECT_EQ(combo.list_index(), 1);
    EXPECT_EQ(fetches, 2);
}

TEST_F(Combos, AssignmentFromCodeFiresNothingAndChoosesTheRowByItsText) {
    use_items();
    combo.set("Due on receipt");
    EXPECT_EQ(combo.list_index(), 1);
    EXPECT_EQ(combo.chosen(1), "01");
    combo.select(0);
    EXPECT_EQ(combo.text(), "Net 30 days");
    combo.select(-1);
    EXPECT_EQ(combo.text(), "");
    EXPECT_EQ(selects + changes, 0);
}

TEST_F(Combos, TextFromCodeChoosesARowOnlyInItsOwnCase) {
    use_items();
    combo.set("due on receipt");
    EXPECT_EQ(combo.list_index(), -1);
    EXPECT_EQ(combo.chosen(1), std::nullopt);
}

TEST_F(Combos, TypedItemIsPickedInAnyCase) {
    use_items();
    EXPECT_EQ(combo.type("due ON receipt"), Refusal::none);
    EXPECT_EQ(combo.text(), "Due on receipt");
    EXPECT_EQ(combo.chosen(1), "01");
    EXPECT_EQ(selects, 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(Combos, TypedItemInItsOwnCaseGoesBeforeOneInAnother) {
    combo.set_items({{"eur", "1"}, {"EUR", "2"}});
    EXPECT_EQ(combo.type("EUR"), Refusal::none);
    EXPECT_EQ(combo.chosen(1), "2");
}

TEST_F(Combos, AnyOtherTypedTextStaysAsTyped) {
    use_items();
    EXPECT_EQ(combo.type("Net 31"), Refusal::none);
    EXPECT_EQ(combo.text(), "Net 31");
    EXPECT_EQ(combo.list_index(), -1);
    EXPECT_EQ(selects, 0);
    EXPECT_EQ(changes, 1);
}

TEST_F(Combos, OneOfTwoEqualItemsKeepsItsOwnRowWhenPicked) {
    combo.set_items({{"ACME", "V1"}, {"ACME", "V2"}});
    EXPECT_EQ(combo.pick(1), Refusal::none);
    EXPECT_EQ(combo.chosen(1), "V2");
    EXPECT_EQ(combo.list_index(), 1);
    combo.set("ACME");
    EXPECT_EQ(combo.chosen(1), "V1");
}

TEST_F(Combos, ColumnThatARowLacksIsEmpty) {
    combo.set_items({{"only"}});
    combo.set("only");
    EXPECT_EQ(combo.chosen(1), "");
}

TEST_F(Combos, NewListLeavesTheTextAndForgetsTheRow) {
    use_items();
    EXPECT_EQ(combo.pick(1), Refusal::none);
    combo.set_items({{"other", "9"}});
    EXPECT_EQ(combo.text(), "Due on receipt");
    EXPECT_EQ(combo.list_index(), -1);
    combo.clear_items();
    EXPECT_TRUE(combo.items().empty());
}

TEST_F(Combos, SelectionBeyondTheListChoosesNone) {
    use_items();
    combo.select(7);
    EXPECT_EQ(combo.text(), "");
    EXPECT_EQ(combo.list_index(), -1);
}

}  // namespace brimley::testing
