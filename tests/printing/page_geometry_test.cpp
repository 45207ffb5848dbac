// The arithmetic of a report's page.
#include "printing/page_geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimley::testing {

using controls::Alignment;
using printing::calculate_column_visible_width;
using printing::caption_hpos;
using printing::ColumnPlace;
using printing::line_slots;
using printing::PageGeometry;
using printing::Rectangle;
using printing::ReportFormat;
using printing::RowsOnPage;
using ::testing::ElementsAre;

namespace {

ReportFormat some_format() {
    ReportFormat format;
    format.portrait = true;
    format.page = {595, 842};
    format.top_margin = 42;
    format.bottom_margin = 30;
    format.left_margin = 20;
    format.right_margin = 25;
    return format;
}

std::vector<double> widths(const std::vector<ColumnPlace>& places) {
    std::vector<double> widths;
    for (const ColumnPlace& place : places)
        widths.push_back(place.width);
    return widths;
}

std::vector<ColumnPlace> places_of(std::initializer_list<double> widths) {
    std::vector<ColumnPlace> places;
    for (const double width : widths)
        places.push_back({0, width});
    return places;
}

}  // namespace

TEST(PageGeometry, MarginsAreTakenOffThePage) {
    const PageGeometry page(some_format());
    EXPECT_EQ(page.top, 800);
    EXPECT_EQ(page.bottom, 30);
    EXPECT_EQ(page.left, 20);
    EXPECT_EQ(page.right, 570);
    EXPECT_EQ(page.width, 550);
}

TEST(PageGeometry, LandscapeTakesTheHeightAsWidth) {
    ReportFormat format = some_format();
    format.portrait = false;
    const PageGeometry page(format);
    EXPECT_EQ(page.rect_width, 842);
    EXPECT_EQ(page.rect_height, 595);
    EXPECT_EQ(page.top, 553);
    EXPECT_EQ(page.right, 817);
}

TEST(PageGeometry, TextInsetIsHalfOfWhatTheRowHasAboveTheFont) {
    ReportFormat format = some_format();
    format.row_height = 21;
    format.font_size = 10;
    EXPECT_EQ(PageGeometry(format).text_inset, 5.5);
}

TEST(PageGeometry, InsetTakesFromAllFourSides) {
    EXPECT_EQ((Rectangle{10, 20, 100, 30}.inset(5)), (Rectangle{15, 25, 90, 20}));
}

TEST(PageGeometry, FirstRowLiesOneRowHeightAboveF) {
    const RowsOnPage rows{600, 20};
    EXPECT_EQ(rows.row_y(0), 620);
    EXPECT_EQ(rows.row_y(1), 600);
    EXPECT_EQ(rows.row_y(5), 520);
    EXPECT_EQ(rows.header_top(), 660);
}

TEST(PageGeometry, RowsFitUntilOneHasItsLowerEdgeBelowTheBottom) {
    const RowsOnPage rows{600, 20};
    EXPECT_EQ(rows.that_fit(100, 520), 6);
    EXPECT_EQ(rows.that_fit(100, 520.1), 5);
    EXPECT_EQ(rows.that_fit(4, 520), 4);
    EXPECT_EQ(rows.that_fit(100, 621), 0);
}

TEST(ColumnWidths, KeepTheirProportionsAndFillThePage) {
    const auto places = calculate_column_visible_width(std::vector{500, 1000, 1500, 2000}, 500, 50);
    EXPECT_THAT(widths(places), ElementsAre(50, 100, 150, 200));
    EXPECT_EQ(places[0].x, 50);
    EXPECT_EQ(places[1].x, 100);
    EXPECT_EQ(places[3].x, 350);
}

TEST(ColumnWidths, AreRoundedAndTheirPlacesAddTheRoundedOnes) {
    const auto places = calculate_column_visible_width(std::vector{1, 1, 1}, 500, 10);
    EXPECT_THAT(widths(places), ElementsAre(167, 167, 167));
    EXPECT_EQ(places[2].x, 344);
}

TEST(ColumnWidths, HalfAPointGoesToTheEvenNumber) {
    EXPECT_THAT(widths(calculate_column_visible_width(std::vector{1, 1}, 5, 0)), ElementsAre(2, 2));
    EXPECT_THAT(widths(calculate_column_visible_width(std::vector{1, 1}, 7, 0)), ElementsAre(4, 4));
}

TEST(ColumnWidths, TwoColumnsTakeTheWholeWidth) {
    EXPECT_THAT(widths(calculate_column_visible_width(std::vector{300, 100}, 540, 36)),
                ElementsAre(405, 135));
}

TEST(ColumnWidths, ColumnsWithoutAnyWidthHaveNone) {
    EXPECT_THAT(widths(calculate_column_visible_width(std::vector{0, 0}, 540, 36)), ElementsAre(0, 0));
}

TEST(ColumnAlignment, GivesThePlaceInTheRectangle) {
    EXPECT_EQ(printing::hpos_of(Alignment::left), 0);
    EXPECT_EQ(printing::hpos_of(Alignment::right), 1);
    EXPECT_EQ(printing::hpos_of(Alignment::centre), 0.5);
    EXPECT_EQ(printing::hpos_of(static_cast<Alignment>(3)), 0);
}

TEST(CaptionAlignment, IsThatOfTheColumnAmongItsLike) {
    using enum Alignment;
    EXPECT_THAT(caption_hpos(std::vector{left, left, left}, places_of({50, 50, 50})), ElementsAre(0, 0, 0));
    EXPECT_THAT(caption_hpos(std::vector{centre, right, right}, places_of({50, 50, 50})),
                ElementsAre(0.5, 1, 1));
}

TEST(CaptionAlignment, IsCentredBeforeAColumnOfTheOtherKind) {
    using enum Alignment;
    EXPECT_THAT(caption_hpos(std::vector{left, left, right}, places_of({50, 50, 50})),
                ElementsAre(0, 0.5, 1));
    EXPECT_THAT(caption_hpos(std::vector{left, left, centre}, places_of({50, 50, 50})),
                ElementsAre(0, 0.5, 0.5));
    EXPECT_THAT(caption_hpos(std::vector{right, right, left}, places_of({50, 50, 50})),
                ElementsAre(1, 0.5, 0));
}

TEST(CaptionAlignment, RightAndCentreAreOneKind) {
    using enum Alignment;
    EXPECT_THAT(caption_hpos(std::vector{left, right, centre}, places_of({50, 50, 50})),
                ElementsAre(0, 1, 0.5));
}

TEST(CaptionAlignment, StaysForAColumnTwiceAsWideAsTheOneBefore) {
    using enum Alignment;
    EXPECT_THAT(caption_hpos(std::vector{left, left, right}, places_of({50, 100, 50})), ElementsAre(0, 0, 1));
    EXPECT_THAT(caption_hpos(std::vector{left, left, right}, places_of({50, 99, 50})),
                ElementsAre(0, 0.5, 1));
    // How wide the column after it is does not matter.
    EXPECT_THAT(caption_hpos(std::vector{left, left, right}, places_of({100, 150, 50})),
                ElementsAre(0, 0.5, 1));
    EXPECT_THAT(caption_hpos(std::vector{left, left, right}, places_of({50, 100, 150})),
                ElementsAre(0, 0, 1));
}

TEST(CaptionAlignment, StaysForTheFirstAndTheLastColumn) {
    using enum Alignment;
    EXPECT_THAT(caption_hpos(std::vector{left, right}, places_of({50, 50})), ElementsAre(0, 1));
}

TEST(TextLine, HasThreeSlotsOfAThirdEach) {
    const PageGeometry page(some_format());
    const auto slots = line_slots(page, 1, printing::kCentre);
    EXPECT_EQ(slots[0], (Rectangle{20, 800, 183, 20}));
    EXPECT_EQ(slots[1], (Rectangle{203, 800, 183, 20}));
    EXPECT_EQ(slots[2], (Rectangle{387, 800, 183, 20}));
}

TEST(TextLine, FollowingLinesLieARowHeightLower) {
    const PageGeometry page(some_format());
    EXPECT_EQ(line_slots(page, 2, printing::kCentre)[0].y, 780);
    EXPECT_EQ(line_slots(page, 4, printing::kCentre)[0].y, 740);
}

TEST(TextLine, MiddleTextAtTheRightStartsAtTheMiddleOfThePage) {
    const PageGeometry page(some_format());
    EXPECT_EQ(line_slots(page, 1, printing::kRight)[1], (Rectangle{295, 800, 183, 20}));
}

TEST(TextLine, HalfAPointGoesToTheEvenNumber) {
    ReportFormat format = some_format();
    format.left_margin = format.right_margin = 0;
    format.page.width = 7.5;
    EXPECT_EQ(line_slots(PageGeometry(format), 1, printing::kCentre)[1], (Rectangle{2, 800, 2, 20}));
    format.page.width = 5;
    EXPECT_EQ(line_slots(PageGeometry(format), 1, printing::kRight)[1], (Rectangle{2, 800, 2, 20}));
}

}  // namespace brimley::testing
