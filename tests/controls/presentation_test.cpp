#include <map>

#include "presentation/colours.h"
#include "presentation/grid_defaults.h"
#include "presentation/grid_layout.h"
#include "support/kernel_test.h"

namespace brimley::testing {

using controls::Alignment;
using controls::Grid;
using presentation::GridPlace;
using presentation::Hex2Int;
using presentation::HTMLToRGB;
using presentation::named_colours;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Colours, TableHasItsRowsInTwoAscendingBlocks) {
    const auto& colours = named_colours();
    ASSERT_EQ(colours.size(), 510U);
    for (std::size_t i = 1; i < colours.size(); ++i) {
        EXPECT_EQ(colours[i].code.size(), 6U);
        if (i != 255) {
            EXPECT_LE(colours[i - 1].code, colours[i].code) << colours[i].name;
        }
    }
    EXPECT_EQ(colours[254].name, "almostwhite");
    EXPECT_EQ(colours[254].code, "fffffe");
    EXPECT_EQ(colours[255].name, "navy");
}

TEST(Colours, ThreeNamesStandTwice) {
    std::map<std::string_view, int> names;
    for (const auto& colour : named_colours())
        ++names[colour.name];
    EXPECT_EQ(names.size(), 507U);
    for (const char* name : {"slateblue", "darkseagreen", "deeppink"})
        EXPECT_EQ(names[name], 2) << name;
}

TEST(Colours, TellingRowsHaveTheirCodes) {
    const auto& colours = named_colours();
    EXPECT_EQ(colours[0].code, "000000");
    EXPECT_EQ(colours[0].name, "black");
    EXPECT_EQ(colours[1].name, "blue4");
    EXPECT_EQ(colours[2].name, "blue2");
    EXPECT_EQ(colours[3].name, "darkgreen");
    EXPECT_EQ(colours[509].name, "white");
    EXPECT_EQ(presentation::colour_named("blue4"), HTMLToRGB("00008b"));
    EXPECT_EQ(presentation::colour_named("wheat4"), HTMLToRGB("8b7e66"));
    EXPECT_EQ(presentation::colour_named("grey33"), HTMLToRGB("545454"));
    EXPECT_EQ(presentation::colour_named("white"), controls::kWhite);
    EXPECT_EQ(presentation::colour_named("no such colour"), std::nullopt);
}

TEST(Colours, CodesAreLowerCaseHexadecimal) {
    for (const auto& colour : named_colours())
        EXPECT_EQ(colour.code.find_first_not_of("0123456789abcdef"), std::string_view::npos) << colour.name;
}

TEST(Colours, TwoDigitsAreANumberInEitherCase) {
    EXPECT_EQ(Hex2Int("00"), 0);
    EXPECT_EQ(Hex2Int("ff"), 255);
    EXPECT_EQ(Hex2Int("FF"), 255);
    EXPECT_EQ(Hex2Int("1a"), 26);
    EXPECT_EQ(Hex2Int("A1"), 161);
}

TEST(Colours, BadDigitsCountZero) {
    EXPECT_EQ(Hex2Int("g5"), 5);
    EXPECT_EQ(Hex2Int("5g"), 80);
    EXPECT_EQ(Hex2Int("-1"), 1);
    EXPECT_EQ(Hex2Int(""), 0);
    EXPECT_EQ(HTMLToRGB("zzzzzz"), 0U);
    EXPECT_EQ(HTMLToRGB(""), 0U);
}

TEST(Colours, EveryCodeIsReadBackFromItsNumber) {
    for (const auto& colour : named_colours())
        EXPECT_EQ(presentation::colour_code(HTMLToRGB(colour.code)), colour.code);
}

TEST(Colours, CodeBecomesANumberWithRedInTheLowByte) {
    EXPECT_EQ(HTMLToRGB("ff0000"), 0x0000ffU);
    EXPECT_EQ(HTMLToRGB("FF0000"), 0x0000ffU);
    EXPECT_EQ(HTMLToRGB("00ff00"), 0x00ff00U);
    EXPECT_EQ(HTMLToRGB("123456"), 0x563412U);
}

TEST(Colours, PaletteIsFilledInItsOrder) {
    const presentation::Palette expected{0xffc0c0,             // a number, not a code: blue is its high byte
                                         HTMLToRGB("e6e6fa"),  // lavender
                                         controls::rgb(220, 220, 255),
                                         HTMLToRGB("f0f0f0"),  // gray94
                                         controls::rgb(230, 230, 245),
                                         HTMLToRGB("bfbfbf"),  // gray75
                                         HTMLToRGB("b4cdcd"),  // lightcyan3
                                         HTMLToRGB("000080"),  // navy
                                         controls::rgb(235, 220, 255),
                                         controls::rgb(215, 210, 235)};
    EXPECT_EQ(presentation::brimley_palette(), expected);
}

TEST(Colours, NumbersHaveRedInTheLowByte) {
    EXPECT_EQ(controls::rgb(1, 2, 3), 0x030201U);
    EXPECT_EQ(presentation::brimley_palette()[presentation::kEvenRowSlot], 0xffdcdcU);
    EXPECT_EQ(presentation::brimley_palette()[presentation::kHeaderSlot], 0x800000U);
}

// --- grids from the company's layouts

class GridLayouts : public KernelTest {
  protected:
    // A column of the grid dbgrid1 of the form "F", with further fields of its row.
    void add_column(int order, const char* caption, FieldValues more = {}) {
        auto rows = company.dynaset("SELECT * FROM Grid_property WHERE 1 = 2");
        rows.AddNew();
        rows.set("form_name", "F");
        rows.set("grid_name", "dbgrid1");
        rows.set("col_order", order);
        rows.set("Caption", caption == nullptr ? store::Value() : store::Value(caption));
        rows.set("Visible", true);
        for (const auto& [name, value] : more)
            rows.set(name, value);
        rows.Update();
    }
    void build(GridPlace place = GridPlace::first) {
        presentation::build_grid(grid, kernel, "F", "dbgrid1", place);
    }
    int height_of(const store::Value& stored, GridPlace place = GridPlace::first) {
        company.db().Execute("DELETE * FROM Grid_property");
        add_column(0, "a", {{"row_height", stored}});
        build(place);
        return grid.row_height;
    }
    std::vector<std::string> captions() {
        std::vector<std::string> seen;
        for (const int index : grid.column_order())
            seen.push_back(grid.columns[static_cast<std::size_t>(index)].caption);
        return seen;
    }

    controls::ControlSet set;
    Grid grid{set, "dbgrid1"};
};

TEST_F(GridLayouts, ColumnsStandInTheOrderOfTheirRows) {
    add_column(2, "third");
    add_column(0, "first");
    add_column(1, "second");
    build();
    EXPECT_THAT(captions(), ElementsAre("first", "second", "third"));
    EXPECT_EQ(grid.get_column("second"), 1);
}

TEST_F(GridLayouts, RowsOfOtherGridsAndFormsAreLeftOut) {
    add_column(0, "own");
    add_column(0, "other grid", {{"grid_name", "grid_tax"}});
    add_column(0, "other form", {{"form_name", "G"}});
    build();
    EXPECT_THAT(captions(), ElementsAre("own"));
}

TEST_F(GridLayouts, GridWithoutRowsHasNoColumns) {
    grid.columns.resize(3);
    grid.row_height = 500;
    build();
    EXPECT_THAT(grid.columns, IsEmpty());
    EXPECT_EQ(grid.get_column("a"), -1);
    EXPECT_EQ(grid.row_height, 370);
}

TEST_F(GridLayouts, RowHeightIsTakenFrom200To600) {
    EXPECT_EQ(height_of(199), 370);
    EXPECT_EQ(height_of(200), 200);
    EXPECT_EQ(height_of(450), 450);
    EXPECT_EQ(height_of(600), 600);
    EXPECT_EQ(height_of(601), 370);
    EXPECT_EQ(height_of({}), 370);
}

TEST_F(GridLayouts, FurtherGridsOfAFormHaveTheStandardHeight) {
    EXPECT_EQ(height_of(450, GridPlace::further), 370);
}

TEST_F(GridLayouts, NullCaptionIsOneBlank) {
    add_column(0, nullptr);
    build();
    EXPECT_THAT(captions(), ElementsAre(" "));
}

TEST_F(GridLayouts, BlankFontFieldsLeaveTheGridsOwn) {
    add_column(0, "a", {{"font_name", ""}});
    build();
    const auto& font = grid.columns[0].font;
    EXPECT_EQ(font.name, "Arial");
    EXPECT_EQ(font.size, 9);
    EXPECT_FALSE(font.bold || font.italic || font.underline);
    EXPECT_EQ(grid.columns[0].font_colour, 0U);
    EXPECT_EQ(grid.columns[0].alignment, Alignment::left);
}

TEST_F(GridLayouts, FilledFontFieldsAreTaken) {
    add_column(0, "a",
               {{"font_name", "Courier"},
                {"font_size", 10.5},
                {"font_bold", true},
                {"font_italic", true},
                {"font_underline", true},
                {"font_color", 255}});
    build();
    const auto& font = grid.columns[0].font;
    EXPECT_EQ(font.name, "Courier");
    EXPECT_EQ(font.size, 10.5);
    EXPECT_TRUE(font.bold && font.italic && font.underline);
    EXPECT_EQ(grid.columns[0].font_colour, 255U);
}

TEST_F(GridLayouts, CheckBoxColumnIsCentredUnlessItsAlignmentSaysOtherwise) {
    add_column(0, "box", {{"cell_type", "dbgCheckBox"}});
    add_column(1, "right box", {{"cell_type", "dbgCheckBox"}, {"Alignment", 1}});
    add_column(2, "right", {{"Alignment", 1}});
    add_column(3, "centre", {{"Alignment", 2}});
    build();
    EXPECT_TRUE(grid.columns[0].check_box && grid.columns[1].check_box);
    EXPECT_FALSE(grid.columns[2].check_box);
    EXPECT_EQ(grid.columns[0].alignment, Alignment::centre);
    EXPECT_EQ(grid.columns[1].alignment, Alignment::right);
    EXPECT_EQ(grid.columns[2].alignment, Alignment::right);
    EXPECT_EQ(grid.columns[3].alignment, Alignment::centre);
}

TEST_F(GridLayouts, YesNoFieldsShapeTheColumn) {
    add_column(0, "all",
               {{"Locked", true},
                {"AutoCompletion", true},
                {"no_coldivider", true},
                {"no_headerdivider", true},
                {"col_fetchstyle", true},
                {"row_merge", true},
                {"Visible", false},
                {"col_width", 1234}});
    add_column(1, "none");
    build();
    const auto& all = grid.columns[0];
    EXPECT_TRUE(all.locked && all.auto_completion && all.fetch_style && all.merge);
    EXPECT_FALSE(all.divider || all.header_divider || all.visible);
    EXPECT_EQ(all.width, 1234);
    const auto& none = grid.columns[1];
    EXPECT_FALSE(none.locked || none.auto_completion || none.fetch_style || none.merge);
    EXPECT_TRUE(none.divider && none.header_divider && none.visible);
}

TEST_F(GridLayouts, MovedColumnStandsThereAtTheNextLoad) {
    add_column(0, "first");
    add_column(1, "second");
    add_column(2, "third");
    build();
    ASSERT_EQ(grid.move_column(2, 0), controls::Refusal::none);
    ASSERT_EQ(grid.resize_column(0, 4321), controls::Refusal::none);
    ASSERT_EQ(grid.resize_rows(555), controls::Refusal::none);
    presentation::save_grid_layout(grid, kernel, "F", "dbgrid1");
    build();
    EXPECT_THAT(captions(), ElementsAre("third", "first", "second"));
    EXPECT_EQ(grid.columns[1].width, 4321);
    EXPECT_EQ(grid.row_height, 555);
    EXPECT_EQ(company.list("SELECT Caption, col_order, row_height FROM Grid_property ORDER BY Caption"),
              "first 1 555 | second 2 555 | third 0 555");
}

TEST_F(GridLayouts, ColumnThatItsFormGivesAnotherCaptionIsSavedWithItsRow) {
    add_column(0, "debit");
    add_column(1, "account");
    build();
    grid.columns[0].caption = "debit (USD)";
    ASSERT_EQ(grid.move_column(0, 1), controls::Refusal::none);
    ASSERT_EQ(grid.resize_column(0, 4321), controls::Refusal::none);
    grid.columns[0].font.name = "Courier";
    presentation::save_grid_layout(grid, kernel, "F", "dbgrid1");
    // Since then the rows stand in another order than the columns.
    presentation::save_grid_fonts(grid, kernel, "F", "dbgrid1");
    EXPECT_EQ(company.list("SELECT Caption, col_order, col_width, font_name FROM Grid_property "
                           "WHERE Caption = 'debit'"),
              "debit 1 4321 Courier");
    build();
    EXPECT_THAT(captions(), ElementsAre("account", "debit"));
}

TEST_F(GridLayouts, FontsAreNotSavedWithTheLayout) {
    add_column(0, "first", {{"font_name", "Courier"}});
    build();
    grid.columns[0].font.name = "Times";
    presentation::save_grid_layout(grid, kernel, "F", "dbgrid1");
    EXPECT_EQ(company.list("SELECT font_name FROM Grid_property"), "Courier");
}

TEST_F(GridLayouts, SavedFontsComeBackWithTheNextLoad) {
    add_column(0, "first");
    add_column(1, "second", {{"cell_type", "dbgCheckBox"}});
    build();
    controls::GridColumn& first = grid.columns[0];
    first.font = {"Courier", 10.5, true, true, false};
    first.font_colour = HTMLToRGB("8b0000");
    first.alignment = Alignment::right;
    presentation::save_grid_fonts(grid, kernel, "F", "dbgrid1");
    build();
    EXPECT_EQ(grid.columns[0].font.name, "Courier");
    EXPECT_EQ(grid.columns[0].font.size, 10.5);
    EXPECT_TRUE(grid.columns[0].font.bold && grid.columns[0].font.italic);
    EXPECT_FALSE(grid.columns[0].font.underline);
    EXPECT_EQ(grid.columns[0].font_colour, HTMLToRGB("8b0000"));
    EXPECT_EQ(grid.columns[0].alignment, Alignment::right);
    EXPECT_EQ(grid.columns[1].alignment, Alignment::centre);
    EXPECT_EQ(
        company.list("SELECT Caption, font_name, font_size, font_underline, Alignment FROM Grid_property "
                     "ORDER BY col_order"),
        "first Courier 10.5 FALSE 1 | second Arial 9 FALSE 2");
}

TEST_F(GridLayouts, RestoreGivesTheLookLastSaved) {
    add_column(0, "saved",
               {{"font_name", "Courier"}, {"font_size", 12}, {"Alignment", 1}, {"row_height", 300}});
    add_column(1, "never saved");
    build();
    for (controls::GridColumn& column : grid.columns) {
        column.font = {"Times", 24, true, true, true};
        column.font_colour = 77;
        column.alignment = Alignment::centre;
    }
    grid.row_height = 600;
    presentation::restore_grid_fonts(grid, kernel, "F", "dbgrid1");
    EXPECT_EQ(grid.columns[0].font.name, "Courier");
    EXPECT_EQ(grid.columns[0].font.size, 12);
    EXPECT_FALSE(grid.columns[0].font.bold || grid.columns[0].font.italic || grid.columns[0].font.underline);
    EXPECT_EQ(grid.columns[0].alignment, Alignment::right);
    EXPECT_EQ(grid.columns[1].font.name, "Arial");
    EXPECT_EQ(grid.columns[1].font.size, 9);
    EXPECT_EQ(grid.columns[1].font_colour, 0U);
    EXPECT_EQ(grid.columns[1].alignment, Alignment::left);
    EXPECT_EQ(grid.row_height, 300);
}

TEST_F(GridLayouts, FontsThatCannotBeSavedAreIgnored) {
    add_column(0, "first");
    build();
    auto other = company.second_user();
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE Grid_property SET col_width = 1");
    presentation::save_grid_fonts(grid, kernel, "F", "dbgrid1");
    EXPECT_EQ(kernel.reasons().failures(), 1);
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GridLayouts, LayoutThatCannotBeSavedIsIgnored) {
    add_column(0, "first");
    add_column(1, "second");
    build();
    auto other = company.second_user();
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE Grid_property SET col_width = 1");
    presentation::save_grid_layout(grid, kernel, "F", "dbgrid1");
    EXPECT_EQ(kernel.reasons().failures(), 2);  // one a column: each row is tried
    EXPECT_THAT(messages(), IsEmpty());
}

TEST(GridDefaults, CaptionsAreKeysWithinTheirGrid) {
    for (const auto& grid : presentation::grid_defaults()) {
        std::map<std::string, int> captions;
        for (const auto& column : grid.columns)
            ++captions[column.caption];
        EXPECT_EQ(captions.size(), grid.columns.size()) << grid.form_name << ' ' << grid.grid_name;
    }
}

}  // namespace brimley::testing
