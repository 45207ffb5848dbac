// What is drawn for a report, looked at on a canvas that only records.
#include "printing/grid_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording_canvas.h"
#include "small_report.h"

namespace brimley::testing {

using printing::draw_report;
using printing::printed_rows;
using printing::Rectangle;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

std::vector<DrawnPage> drawn(const printing::Report& report) {
    RecordingCanvas canvas;
    draw_report(report, canvas);
    return canvas.pages;
}

std::vector<std::string> page_numbers(const std::vector<DrawnPage>& pages) {
    std::vector<std::string> numbers;
    for (const DrawnPage& page : pages)
        numbers.push_back(page.texts.back().text);
    return numbers;
}

// Of the fills of a page, each row once.
std::vector<double> filled_rows(const DrawnPage& page) {
    std::vector<double> rows;
    for (const DrawnFill& fill : page.fills)
        if (rows.empty() || rows.back() != fill.rectangle.y) rows.push_back(fill.rectangle.y);
    return rows;
}

// Lower edges of the upright lines of a page and where they stand.
std::vector<DrawnLine> dividers(const DrawnPage& page) {
    std::vector<DrawnLine> dividers;
    for (const DrawnLine& line : page.lines)
        if (line.x1 == line.x2) dividers.push_back(line);
    return dividers;
}

}  // namespace

TEST(ReportHead, HasTheCompanyInTheMiddleOfLineOneAboveTheTopMargin) {
    const SmallReport small(1);
    const DrawnText company = drawn(small.report)[0].find("Brimley Trading");
    EXPECT_EQ(company.rectangle, (Rectangle{217, 742, 167, 20}));
    EXPECT_EQ(company.hpos, 0.5);
}

TEST(ReportHead, HasTitleAndDateInLineTwo) {
    const SmallReport small(1);
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_EQ(page.find("VENDOR AGING REPORT").rectangle, (Rectangle{217, 722, 167, 20}));
    EXPECT_EQ(page.find("VENDOR AGING REPORT").hpos, 0.5);
    EXPECT_EQ(page.find("print : 16/03/2026").rectangle, (Rectangle{383, 722, 167, 20}));
    EXPECT_EQ(page.find("print : 16/03/2026").hpos, 1);
}

TEST(ReportHead, HasTheFormsOwnLinesBelow) {
    SmallReport small(1);
    small.report.head_lines = {{"Fiscal year : 2026", "", "Period : 3"}};
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_EQ(page.find("Fiscal year : 2026").rectangle, (Rectangle{50, 702, 167, 20}));
    EXPECT_EQ(page.find("Fiscal year : 2026").hpos, 0);
    EXPECT_EQ(page.find("Period : 3").rectangle.y, 702);
    EXPECT_THAT(page.words(), Not(Contains("")));
}

TEST(ReportHead, IsClosedByARuleWhereTheFormWantsOne) {
    SmallReport small(1);
    EXPECT_EQ(drawn(small.report)[0].lines.size(), 2U);
    small.report.rule_below_head = true;
    const DrawnLine rule = drawn(small.report)[0].lines.front();
    EXPECT_EQ(rule.y1, 722);
    EXPECT_EQ(rule.y2, 722);
    EXPECT_EQ(rule.x1, 50);
    EXPECT_EQ(rule.x2, 550);
}

TEST(ColumnHeader, StandsBetweenTwoRulesAcrossThePageAboveTheFirstRow) {
    const SmallReport small(1);
    const DrawnPage page = drawn(small.report)[0];
    ASSERT_EQ(page.lines.size(), 2U);
    EXPECT_EQ(page.lines[0].y1, 672);
    EXPECT_EQ(page.lines[1].y1, 652);
    for (const DrawnLine& rule : page.lines) {
        EXPECT_EQ(rule.width, 1);
        EXPECT_EQ(rule.x1, 50);
        EXPECT_EQ(rule.x2, 550);
        EXPECT_EQ(rule.y1, rule.y2);
        EXPECT_EQ(rule.colour, small.report.format.font_colour);
    }
    EXPECT_EQ(page.find("r0c0").rectangle.inset(-5).top(), 652);
}

TEST(ColumnHeader, HasItsCaptionsWithinTheTextInset) {
    const SmallReport small(1);
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_EQ(page.find("no").rectangle, (Rectangle{55, 657, 40, 10}));
    EXPECT_EQ(page.find("amount").rectangle, (Rectangle{355, 657, 190, 10}));
    EXPECT_EQ(page.find("name").hpos, 0);
    EXPECT_EQ(page.find("doc no").hpos, 0.5);  // amounts, at the right, follow
    EXPECT_EQ(page.find("amount").hpos, 1);
}

TEST(ReportRows, StandBelowEachOtherFromSixAndAHalfRowsBelowTheTop) {
    const SmallReport small(3);
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_EQ(page.find("r0c1").rectangle, (Rectangle{105, 637, 90, 10}));
    EXPECT_EQ(page.find("r1c1").rectangle.y, 617);
    EXPECT_EQ(page.find("r2c1").rectangle.y, 597);
    EXPECT_EQ(page.find("r0c1").hpos, 0);
    EXPECT_EQ(page.find("r0c3").hpos, 1);
}

TEST(ReportRows, AShorterHeadLiftsThem) {
    SmallReport small(1);
    small.report.head_row_heights = 3.5;
    EXPECT_EQ(drawn(small.report)[0].find("r0c0").rectangle.y, 697);
}

TEST(ReportRows, AreDrawnInTheFormatsFont) {
    SmallReport small(1);
    small.report.format.bold = true;
    small.report.format.font_size = 12;
    small.columns()[0].font.name = "Loma";
    const DrawnText cell = drawn(small.report)[0].find("r0c0");
    EXPECT_EQ(cell.font.name, "Arial");
    EXPECT_EQ(cell.font.size, 12);
    EXPECT_TRUE(cell.font.bold);
    EXPECT_EQ(cell.colour, small.report.format.font_colour);
}

TEST(ReportRows, ABlankFontNameIsArial) {
    SmallReport small(1);
    small.report.format.font_name = "";
    EXPECT_EQ(drawn(small.report)[0].find("r0c0").font.name, "Arial");
}

TEST(ReportRows, BlankCellsAreLeftOut) {
    SmallReport small(1);
    small.list.set(0, 0, "");
    small.list.set(0, 1, "  ");
    EXPECT_THAT(drawn(small.report)[0].words(),
                ElementsAre("Brimley Trading", "VENDOR AGING REPORT", "print : 16/03/2026", "no", "name",
                            "doc no", "amount", "r0c2", "r0c3", "1/1"));
}

TEST(GridFont, GivesEachCellTheFontAndColourOfItsColumn) {
    SmallReport small(1);
    small.report.format.use_grid_font = true;
    small.columns()[1].font = {"Loma", 8, true, true, true};
    small.columns()[1].font_colour = controls::rgb(255, 0, 0);
    const DrawnPage page = drawn(small.report)[0];
    const DrawnText cell = page.find("r0c1");
    EXPECT_EQ(cell.font.name, "Loma");
    EXPECT_EQ(cell.font.size, 8);
    EXPECT_TRUE(cell.font.bold && cell.font.italic && cell.font.underline);
    EXPECT_EQ(cell.colour, controls::rgb(255, 0, 0));
    EXPECT_EQ(page.find("r0c2").font.size, 9);
}

TEST(GridFont, KeepsTheInsetOfTheFormatsFont) {
    SmallReport small(1);
    small.report.format.use_grid_font = true;
    small.columns()[1].font.size = 16;
    EXPECT_EQ(drawn(small.report)[0].find("r0c1").rectangle, (Rectangle{105, 637, 90, 10}));
}

TEST(GridFont, DoesNotReachHeadAndPageNumber) {
    SmallReport small(26);
    small.report.format.use_grid_font = true;
    small.columns()[3].font = {"Loma", 8, true, true, true};
    small.columns()[3].font_colour = controls::rgb(255, 0, 0);
    const auto pages = drawn(small.report);
    for (const DrawnText& text :
         {pages[0].find("1/2"), pages[1].find("Brimley Trading"), pages[1].find("no")}) {
        EXPECT_EQ(text.font.name, "Arial") << text.text;
        EXPECT_EQ(text.font.size, 10);
        EXPECT_FALSE(text.font.bold || text.font.italic || text.font.underline);
        EXPECT_EQ(text.colour, small.report.format.font_colour);
    }
}

TEST(EvenRows, AreFilledCellByCellALittleInsideTheCell) {
    const SmallReport small(2);
    const DrawnPage page = drawn(small.report)[0];
    ASSERT_EQ(page.fills.size(), 4U);
    EXPECT_EQ(page.fills[0].rectangle, (Rectangle{50.5, 612.5, 49, 19}));
    EXPECT_EQ(page.fills[3].rectangle, (Rectangle{350.5, 612.5, 199, 19}));
    EXPECT_EQ(page.fills[0].colour, small.report.format.even_row_colour);
    EXPECT_EQ(page.find("r1c0").colour, small.report.format.font_colour);
}

TEST(EvenRows, AreCountedAnewOnEachPage) {
    const SmallReport small(28);  // 25 on the first page
    const auto pages = drawn(small.report);
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_EQ(filled_rows(pages[0]).size(), 12U);
    EXPECT_EQ(filled_rows(pages[0]).front(), 612.5);
    EXPECT_THAT(filled_rows(pages[1]), ElementsAre(612.5));
    EXPECT_EQ(pages[1].find("r26c0").rectangle.y, 617);  // the second of its page
}

TEST(EvenRows, AreNotFilledWhenThatIsDisabled) {
    SmallReport small(4);
    small.report.format.disabled_evenrow_color = true;
    EXPECT_THAT(drawn(small.report)[0].fills, IsEmpty());
}

TEST(EvenRows, WithoutAColourAreBlack) {
    SmallReport small(2);
    small.report.format.even_row_colour = printing::ReportFormat{}.even_row_colour;
    EXPECT_EQ(drawn(small.report)[0].fills.at(0).colour, controls::rgb(0, 0, 0));
}

TEST(ColumnDividers, StandAtEachColumnAndAfterTheLastFromTheHeaderToTheLastRow) {
    SmallReport small(2);
    EXPECT_THAT(dividers(drawn(small.report)[0]), IsEmpty());
    small.report.format.column_divider = true;
    std::vector<double> places;
    for (const DrawnLine& divider : dividers(drawn(small.report)[0])) {
        places.push_back(divider.x1);
        EXPECT_EQ(divider.y1, 672);
        EXPECT_EQ(divider.y2, 612);
    }
    EXPECT_THAT(places, ElementsAre(50, 100, 200, 350, 550));
}

TEST(ColumnDividers, HaveTheFormatsColourWhateverTheColumnsHave) {
    SmallReport small(1);
    small.report.format.column_divider = small.report.format.use_grid_font = true;
    small.columns()[3].font_colour = controls::rgb(255, 0, 0);
    for (const DrawnLine& divider : dividers(drawn(small.report)[0]))
        EXPECT_EQ(divider.colour, small.report.format.font_colour);
}

TEST(ColumnDividers, StandOnEveryPage) {
    SmallReport small(26);
    small.report.format.column_divider = true;
    const auto pages = drawn(small.report);
    EXPECT_EQ(dividers(pages[0])[0].y2, 152);
    EXPECT_EQ(dividers(pages[1])[0].y2, 632);
}

TEST(PageNumber, StandsBelowTheBottomMarginAtTheRight) {
    const SmallReport small(1);
    const DrawnText number = drawn(small.report)[0].find("1/1");
    EXPECT_EQ(number.rectangle, (Rectangle{450, 102, 100, 20}));
    EXPECT_EQ(number.hpos, 1);
}

TEST(PageNumber, MayFallOffThePaper) {
    SmallReport small(1);
    small.report.format.bottom_margin = 10;
    EXPECT_EQ(drawn(small.report)[0].find("1/1").rectangle.top(), -10);
}

TEST(PageNumber, CountsThePagesAndTheirTotal) {
    EXPECT_THAT(page_numbers(drawn(SmallReport(0).report)), ElementsAre("1/1"));
    EXPECT_THAT(page_numbers(drawn(SmallReport(25).report)), ElementsAre("1/1"));
    EXPECT_THAT(page_numbers(drawn(SmallReport(26).report)), ElementsAre("1/2", "2/2"));
    EXPECT_THAT(page_numbers(drawn(SmallReport(50).report)), ElementsAre("1/2", "2/2"));
    EXPECT_THAT(page_numbers(drawn(SmallReport(51).report)), ElementsAre("1/3", "2/3", "3/3"));
    EXPECT_EQ(drawn(SmallReport(1000).report).size(), 40U);
}

// One and the index of the last row by the rows of page one, in whole numbers.
TEST(PageNumber, TotalFollowsFromTheRowsOfPageOne) {
    for (int rows = 1; rows <= 130; ++rows) {
        const auto pages = drawn(SmallReport(rows).report);
        const int total = rows <= 25 ? 1 : 1 + (rows - 1) / 25;
        EXPECT_EQ(pages[0].texts.back().text, fmt::format("1/{}", total)) << rows;
        EXPECT_EQ(pages.size(), static_cast<std::size_t>(total)) << rows;
    }
}

TEST(ReportPages, RepeatTheHeadAndGoOnWithTheNextRowAtItsPlace) {
    const SmallReport small(26);
    const auto pages = drawn(small.report);
    EXPECT_THAT(pages[0].words(), Contains("r24c0"));
    EXPECT_THAT(pages[0].words(), Not(Contains("r25c0")));
    EXPECT_THAT(pages[1].words(),
                ElementsAre("Brimley Trading", "VENDOR AGING REPORT", "print : 16/03/2026", "no", "name",
                            "doc no", "amount", "r25c0", "r25c1", "r25c2", "r25c3", "2/2"));
    EXPECT_EQ(pages[1].find("r25c0").rectangle, pages[0].find("r0c0").rectangle);
}

TEST(ReportPages, HaveARowEachWhenThereIsRoomForNoneAndPageOneHasNone) {
    SmallReport small(3);
    small.report.format.bottom_margin = 700;
    const auto pages = drawn(small.report);
    ASSERT_EQ(pages.size(), 4U);
    EXPECT_THAT(pages[0].words(), Not(Contains("r0c0")));
    EXPECT_THAT(pages[1].words(), Contains("r0c0"));
    EXPECT_THAT(pages[3].words(), Contains("r2c0"));
    EXPECT_THAT(page_numbers(pages), ElementsAre("1/4", "2/4", "3/4", "4/4"));
}

TEST(LastRow, IsTheLastWithATextInColumnTwoOrThree) {
    SmallReport small(5);
    for (const int column : {2, 3})
        small.list.set(4, column, "");
    EXPECT_EQ(printed_rows(small.report.grids[0]), 4);
    small.list.set(3, 2, " ");
    EXPECT_EQ(printed_rows(small.report.grids[0]), 4);
    small.list.set(3, 3, "");
    EXPECT_EQ(printed_rows(small.report.grids[0]), 3);
}

TEST(LastRow, LeavesBlankRowsBetweenOthers) {
    SmallReport small(5);
    for (int column = 0; column < 4; ++column)
        small.list.set(2, column, "");
    EXPECT_EQ(drawn(small.report)[0].find("r3c0").rectangle.y, 577);
}

// The last vendor's totals stand in the columns of amounts alone.
TEST(LastRow, TotalOfTheLastVendorIsNotPrinted) {
    SmallReport small(3);
    small.add_column("total");
    small.list.clear_row(1);
    small.list.set(1, 4, "100.00");
    small.list.clear_row(2);
    small.list.set(2, 4, "200.00");
    small.list.insert_row(2);
    small.list.set(2, 2, "IP-26-0007");
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_THAT(page.words(), Contains("100.00"));
    EXPECT_THAT(page.words(), Not(Contains("200.00")));
}

TEST(LastRow, CountsTheColumnsOfTheArrayWhateverIsPrinted) {
    SmallReport small(2);
    small.columns().resize(1);
    EXPECT_EQ(printed_rows(small.report.grids[0]), 2);
    small.list.set(1, 2, "");
    small.list.set(1, 3, "");
    EXPECT_EQ(printed_rows(small.report.grids[0]), 1);
}

TEST(LastRow, NoneWhenAllRowsAreBlankThere) {
    SmallReport small(30);
    for (int row = 0; row < 30; ++row)
        for (const int column : {2, 3})
            small.list.set(row, column, "");
    const auto pages = drawn(small.report);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_THAT(pages[0].words(), ElementsAre("Brimley Trading", "VENDOR AGING REPORT", "print : 16/03/2026",
                                              "no", "name", "doc no", "amount", "1/1"));
}

TEST(ReportColumns, TwoFillTheWholeWidth) {
    SmallReport small(1);
    small.columns().erase(small.columns().begin() + 1, small.columns().begin() + 3);
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_EQ(page.find("r0c0").rectangle, (Rectangle{55, 637, 90, 10}));
    EXPECT_EQ(page.find("r0c3").rectangle, (Rectangle{155, 637, 390, 10}));
}

TEST(ReportColumns, NoneGivesTheHeadAlone) {
    SmallReport small(100);
    small.report.format.column_divider = true;
    small.columns().clear();
    const auto pages = drawn(small.report);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_THAT(pages[0].words(),
                ElementsAre("Brimley Trading", "VENDOR AGING REPORT", "print : 16/03/2026", "1/1"));
    EXPECT_THAT(dividers(pages[0]), IsEmpty());
}

TEST(ReportColumns, OnlyTheFirstTwentyArePrinted) {
    SmallReport small(1);
    while (small.columns().size() < 22)
        small.add_column(fmt::format("c{}", small.columns().size()).c_str());
    const DrawnPage page = drawn(small.report)[0];
    EXPECT_THAT(page.words(), Contains("c19"));
    EXPECT_THAT(page.words(), Not(Contains("c20")));
    EXPECT_NEAR(page.find("c19").rectangle.inset(-5).right(), 550, 10);
}

TEST(ReportColumns, AreTakenFromTheGridAsItShowsThem) {
    controls::ControlSet controls;
    controls::Grid grid(controls, "dbgrid1");
    grid.columns.resize(2);
    grid.columns[1].caption = "amount";
    grid.columns[1].width = 1234;
    grid.columns[1].alignment = controls::Alignment::right;
    grid.columns[1].font.name = "Loma";
    grid.columns[1].font_colour = 7;
    const printing::PrintedColumn column = printing::printed_column(grid, 1);
    EXPECT_EQ(column.column, 1);
    EXPECT_EQ(column.caption, "amount");
    EXPECT_EQ(column.width, 1234);
    EXPECT_EQ(column.alignment, controls::Alignment::right);
    EXPECT_EQ(column.font.name, "Loma");
    EXPECT_EQ(column.font_colour, 7U);
}

class SecondGrid : public ::testing::Test {
  protected:
    double bottom_margin = 142;

    std::vector<DrawnPage> pages(int first_rows, int second_rows) {
        SmallReport small(first_rows);
        small.report.format.bottom_margin = bottom_margin;
        SmallReport::fill(small.second_list, second_rows, "s");
        small.report.grids.push_back({small.columns(), &small.second_list});
        small.report.grids[1].columns[0].caption = "second";
        return drawn(small.report);
    }
};

TEST_F(SecondGrid, FollowsTwoRowHeightsBelowWithItsOwnHeader) {
    const auto drawn_pages = pages(2, 2);
    ASSERT_EQ(drawn_pages.size(), 1U);
    EXPECT_EQ(drawn_pages[0].lines[2].y1, 572);  // the last row ends at 612
    EXPECT_EQ(drawn_pages[0].lines[3].y1, 552);
    EXPECT_EQ(drawn_pages[0].find("second").rectangle.y, 557);
    EXPECT_EQ(drawn_pages[0].find("sr0c0").rectangle.y, 537);
    EXPECT_EQ(drawn_pages[0].find("sr1c0").rectangle.y, 517);
    EXPECT_THAT(page_numbers(drawn_pages), ElementsAre("1/1"));
}

TEST_F(SecondGrid, TakesANewPageWhenNotEvenItsFirstRowHasRoom) {
    EXPECT_EQ(pages(21, 1).size(), 1U);  // four rows less than the page holds
    const auto drawn_pages = pages(22, 1);
    ASSERT_EQ(drawn_pages.size(), 2U);
    EXPECT_EQ(drawn_pages[1].find("sr0c0").rectangle.y, 637);
    EXPECT_THAT(drawn_pages[1].words(), Contains("Brimley Trading"));
}

TEST_F(SecondGrid, FirstRowMayStandOnTheBottom) {
    bottom_margin = 152;
    EXPECT_EQ(pages(21, 1).size(), 1U);
    bottom_margin = 152.1;
    EXPECT_EQ(pages(21, 1).size(), 2U);
}

TEST_F(SecondGrid, GoesOnOverPagesThatCountInTheTotal) {
    const auto drawn_pages = pages(30, 40);
    EXPECT_THAT(page_numbers(drawn_pages), ElementsAre("1/3", "2/3", "3/3"));
    EXPECT_THAT(drawn_pages[1].words(), Contains("sr0c0"));
    EXPECT_THAT(drawn_pages[2].words(), Contains("second"));
    EXPECT_THAT(drawn_pages[2].words(), Contains("sr39c0"));
}

TEST_F(SecondGrid, CountsItsEvenRowsFromItsOwnFirst) {
    const auto drawn_pages = pages(3, 3);
    EXPECT_THAT(filled_rows(drawn_pages[0]), ElementsAre(612.5, 492.5));
}

}  // namespace brimley::testing
