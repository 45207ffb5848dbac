#include "controls/grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimley::testing {

using controls::CellEdit;
using controls::Grid;
using controls::Refusal;
using ::testing::ElementsAre;

class Grids : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* caption : {"pay item", "gross amount", "tax code"}) {
            controls::GridColumn column;
            column.caption = caption;
            column.order = static_cast<int>(grid.columns.size());
            grid.columns.push_back(column);
        }
        grid.columns[0].locked = true;
        grid.allow_update = true;
        grid.array.dimension(3);
        grid.on_before_edit = [&](CellEdit&) { events += "edit "; };
        grid.on_before_update = [&](CellEdit&) { events += "before "; };
        grid.on_after_update = [&](int column) { events += "after" + std::to_string(column) + " "; };
        grid.on_row_col_change = [&](int row, int column) {
            events += fmt::format("from{},{} ", row, column);
        };
        grid.on_double_click = [&](int row) { events += "double" + std::to_string(row) + " "; };
    }

    controls::ControlSet set;
    Grid grid{set, "dbgrid1"};
    std::string events;
};

TEST_F(Grids, ColumnIsFoundByItsCaption) {
    EXPECT_EQ(grid.get_column("tax code"), 2);
    EXPECT_EQ(grid.get_column("Tax Code"), -1);
    EXPECT_EQ(grid.get_column("absent"), -1);
}

TEST_F(Grids, CellOfAColumnThatTheGridLacksIsEmptyAndCannotBeSet) {
    grid.set_cell(0, "absent", "text");
    EXPECT_EQ(grid.cell(0, "absent"), "");
    EXPECT_EQ(grid.array.used_rows(), 0);
}

TEST_F(Grids, AssignmentFromCodeFiresNothing) {
    grid.set_cell(1, "gross amount", "5.00");
    grid.go_to(1, 2);
    grid.rebind();
    EXPECT_EQ(events, "");
    EXPECT_EQ(grid.cell(1, "gross amount"), "5.00");
    EXPECT_EQ(grid.row(), 1);
    EXPECT_EQ(grid.column(), 2);
}

TEST_F(Grids, EditedCellGoesThroughItsHandlersInOrder) {
    EXPECT_EQ(grid.edit_cell(1, 1, "7.00"), Refusal::none);
    EXPECT_EQ(events, "from0,0 edit before after1 ");
    EXPECT_EQ(grid.cell(1, "gross amount"), "7.00");
}

TEST_F(Grids, HandlerSeesOldAndNewTextAndMayChangeTheNewOne) {
    grid.set_cell(1, "gross amount", "5.00");
    grid.on_before_update = [&](CellEdit& edit) {
        EXPECT_EQ(edit.row, 1);
        EXPECT_EQ(edit.caption, "gross amount");
        EXPECT_EQ(edit.old_text, "5.00");
        EXPECT_EQ(edit.new_text, "7");
        edit.new_text = "7.00";
    };
    EXPECT_EQ(grid.edit_cell(1, 1, "7"), Refusal::none);
    EXPECT_EQ(grid.cell(1, "gross amount"), "7.00");
}

TEST_F(Grids, CancelledEditKeepsTheOldText) {
    grid.set_cell(1, "gross amount", "5.00");
    grid.on_before_update = [&](CellEdit& edit) { edit.cancel = true; };
    EXPECT_EQ(grid.edit_cell(1, 1, "7"), Refusal::none);
    EXPECT_EQ(grid.cell(1, "gross amount"), "5.00");
    EXPECT_EQ(events, "from0,0 edit ");
}

TEST_F(Grids, EditorTellsTheFormWhenItOpensAndWhenItIsLeft) {
    EXPECT_EQ(grid.open_editor(1, 1), Refusal::none);
    EXPECT_EQ(events, "from0,0 edit ");
    EXPECT_TRUE(grid.editor_is_open());
    EXPECT_EQ(grid.leave_editor("7.00"), Refusal::none);
    EXPECT_EQ(events, "from0,0 edit before after1 ");
    EXPECT_EQ(grid.cell(1, "gross amount"), "7.00");
    EXPECT_FALSE(grid.editor_is_open());
}

TEST_F(Grids, EditorThatTheFormKeepsClosedTakesNoText) {
    grid.on_before_edit = [&](CellEdit& edit) { edit.cancel = true; };
    EXPECT_EQ(grid.open_editor(1, 1), Refusal::none);
    EXPECT_FALSE(grid.editor_is_open());
    EXPECT_EQ(grid.edit_cell(1, 1, "7.00"), Refusal::none);
    EXPECT_EQ(grid.cell(1, "gross amount"), "");
    EXPECT_EQ(events, "from0,0 ");
}

TEST_F(Grids, HostLearnsThatTheFormHasCancelledAnEdit) {
    grid.on_before_update = [&](CellEdit& edit) { edit.cancel = edit.new_text == "bad"; };
    EXPECT_EQ(grid.edit_cell(1, 1, "bad"), Refusal::none);
    EXPECT_TRUE(grid.edit_was_cancelled());
    EXPECT_EQ(grid.row(), 1);
    EXPECT_EQ(grid.column(), 1);
    EXPECT_EQ(grid.edit_cell(1, 1, "7.00"), Refusal::none);
    EXPECT_FALSE(grid.edit_was_cancelled());
}

TEST_F(Grids, CancelledEditIsForgottenWhenAnotherEditorOpens) {
    grid.on_before_update = [&](CellEdit& edit) { edit.cancel = true; };
    EXPECT_EQ(grid.edit_cell(1, 1, "bad"), Refusal::none);
    EXPECT_EQ(grid.open_editor(1, 1), Refusal::none);
    EXPECT_FALSE(grid.edit_was_cancelled());
    EXPECT_EQ(grid.edit_cell(0, 0, "x"), Refusal::locked);
    EXPECT_FALSE(grid.edit_was_cancelled());
}

TEST_F(Grids, AbandonedEditorChangesNothing) {
    EXPECT_EQ(grid.open_editor(1, 1), Refusal::none);
    grid.abandon_editor();
    EXPECT_EQ(grid.leave_editor("7.00"), Refusal::none);
    EXPECT_EQ(grid.cell(1, "gross amount"), "");
    EXPECT_EQ(events, "from0,0 edit ");
}

TEST_F(Grids, CellLockedWhileItsEditorStandsOpenKeepsItsText) {
    EXPECT_EQ(grid.open_editor(1, 1), Refusal::none);
    grid.allow_update = false;
    EXPECT_EQ(grid.leave_editor("7.00"), Refusal::locked);
    EXPECT_EQ(grid.cell(1, "gross amount"), "");
}

TEST_F(Grids, ListOfAColumnIsFetchedOnceWhenItIsLookedAt) {
    int fetches = 0;
    const controls::DropDown list{{"tax"}, {}, [&] {
                                      ++fetches;
                                      return controls::DropDown::Rows{{"NOTAX"}};
                                  }};
    EXPECT_EQ(fetches, 0);
    EXPECT_EQ(list.rows().at(0).at(0), "NOTAX");
    EXPECT_EQ(list.rows().size(), 1U);
    EXPECT_EQ(fetches, 1);
}

TEST_F(Grids, LockedColumnGridOrControlRefusesAnEdit) {
    EXPECT_EQ(grid.edit_cell(0, 0, "x"), Refusal::locked);
    grid.allow_update = false;
    EXPECT_EQ(grid.edit_cell(0, 1, "x"), Refusal::locked);
    grid.allow_update = true;
    grid.set_locked(true);
    EXPECT_EQ(grid.edit_cell(0, 1, "x"), Refusal::locked);
    grid.set_enabled(false);
    EXPECT_EQ(grid.edit_cell(0, 1, "x"), Refusal::disabled);
    EXPECT_EQ(events, "");
    EXPECT_EQ(grid.array.used_rows(), 0);
}

TEST_F(Grids, HiddenColumnRefusesAnEdit) {
    grid.columns[1].visible = false;
    EXPECT_EQ(grid.edit_cell(0, 1, "x"), Refusal::hidden);
    EXPECT_EQ(events, "");
}

// A stored layout may lack it, or there may be none.
TEST_F(Grids, ColumnThatIsNotThereRefusesEveryAct) {
    for (const int column : {grid.get_column("no such caption"), static_cast<int>(grid.columns.size())}) {
        EXPECT_EQ(grid.visit_cell(0, column), Refusal::hidden);
        EXPECT_EQ(grid.edit_cell(0, column, "x"), Refusal::hidden);
        EXPECT_EQ(grid.open_editor(0, column), Refusal::hidden);
        EXPECT_EQ(grid.resize_column(column, 2000), Refusal::hidden);
        EXPECT_EQ(grid.move_column(column, 0), Refusal::hidden);
    }
    EXPECT_EQ(events, "");
}

TEST_F(Grids, NewRowNeedsAGridThatTakesNewRows) {
    EXPECT_EQ(grid.edit_cell(3, 1, "x"), Refusal::locked);
    grid.allow_add_new = true;
    EXPECT_EQ(grid.edit_cell(3, 1, "x"), Refusal::none);
    EXPECT_EQ(grid.array.rows(), 4);
}

TEST_F(Grids, VisitTellsTheCellThatWasLeftAndStayingTellsNothing) {
    EXPECT_EQ(grid.visit_cell(2, 1), Refusal::none);
    EXPECT_EQ(grid.visit_cell(2, 1), Refusal::none);
    EXPECT_EQ(grid.visit_cell(2, 2), Refusal::none);
    EXPECT_EQ(events, "from0,0 from2,1 ");
}

TEST_F(Grids, LockedGridCanStillBeVisitedClickedAndReshaped) {
    grid.set_locked(true);
    EXPECT_EQ(grid.visit_cell(1, 0), Refusal::none);
    EXPECT_EQ(grid.double_click(2), Refusal::none);
    EXPECT_EQ(grid.resize_column(1, 2000), Refusal::none);
    EXPECT_EQ(grid.resize_rows(400), Refusal::none);
    EXPECT_EQ(events, "from0,0 double2 ");
    EXPECT_EQ(grid.columns[1].width, 2000);
    EXPECT_EQ(grid.row_height, 400);
    EXPECT_EQ(grid.row(), 2);
}

TEST_F(Grids, HiddenGridRefusesEveryAct) {
    grid.set_visible(false);
    EXPECT_EQ(grid.visit_cell(1, 0), Refusal::hidden);
    EXPECT_EQ(grid.edit_cell(1, 1, "x"), Refusal::hidden);
    EXPECT_EQ(grid.double_click(1), Refusal::hidden);
    EXPECT_EQ(grid.resize_column(1, 2000), Refusal::hidden);
    EXPECT_EQ(grid.move_column(1, 0), Refusal::hidden);
    EXPECT_EQ(grid.resize_rows(400), Refusal::hidden);
    EXPECT_EQ(events, "");
}

TEST_F(Grids, MovedColumnKeepsItsIndexAndTheOthersCloseUp) {
    EXPECT_EQ(grid.move_column(2, 0), Refusal::none);
    EXPECT_THAT(grid.column_order(), ElementsAre(2, 0, 1));
    EXPECT_EQ(grid.get_column("tax code"), 2);
    EXPECT_EQ(grid.move_column(2, 99), Refusal::none);
    EXPECT_THAT(grid.column_order(), ElementsAre(0, 1, 2));
    EXPECT_EQ(grid.move_column(0, -5), Refusal::none);
    EXPECT_THAT(grid.column_order(), ElementsAre(0, 1, 2));
}

}  // namespace brimley::testing
