// The format of a report as it is read from the company.
#include "printing/report_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/kernel_test.h"

namespace brimley::testing {

using printing::page_size_of;
using printing::PageSize;
using printing::read_report_format;
using printing::ReportFormat;

TEST(PaperSize, NamedPapersAreWholePoints) {
    EXPECT_EQ(page_size_of({"A4 (210x297 mm)", {}, {}, ""}), (PageSize{595, 842}));
    EXPECT_EQ(page_size_of({"A5 (148x210 mm)", {}, {}, ""}), (PageSize{420, 595}));
    EXPECT_EQ(page_size_of({"LETTER (8.5x11 in.)", {}, {}, ""}), (PageSize{612, 792}));
    EXPECT_EQ(page_size_of({"LEGAL (8.5x14 in.)", {}, {}, ""}), (PageSize{612, 1008}));
    EXPECT_EQ(page_size_of({"B5 (182x257 mm)", {}, {}, ""}), (PageSize{516, 729}));
}

TEST(PaperSize, TheirNamesCountInAnyCaseUpToTheFirstBlank) {
    EXPECT_EQ(page_size_of({"Legal (8.5x14 in.)", {}, {}, ""}), (PageSize{612, 1008}));
    EXPECT_EQ(page_size_of({"a4", {}, {}, ""}), (PageSize{595, 842}));
}

TEST(PaperSize, NamedPaperIgnoresTheTypedSize) {
    EXPECT_EQ(page_size_of({"A4 (210x297 mm)", 100, 100, "mm"}), (PageSize{595, 842}));
}

TEST(PaperSize, UnknownNameIsTheDefaultPage) {
    EXPECT_EQ(page_size_of({"A3 (297x420 mm)", 297, 420, "mm"}), (PageSize{612, 792}));
    EXPECT_EQ(page_size_of({" A4", {}, {}, ""}), (PageSize{612, 792}));
}

TEST(PaperSize, UserDefinedInMillimetresIsAsTyped) {
    EXPECT_EQ(page_size_of({"User defined paper size", 100, 200, "mm"}), (PageSize{283, 567}));
    EXPECT_EQ(page_size_of({"", 210, 297, "mm"}), (PageSize{595, 842}));
    EXPECT_EQ(page_size_of({"", 210, 297, "cm"}), (PageSize{595, 842}));  // any unit but inches
}

TEST(PaperSize, UserDefinedInInchesKeepsTheDefaultWidth) {
    EXPECT_EQ(page_size_of({"User defined paper size", 4, 6, "inch"}), (PageSize{612, 432}));
}

TEST(PaperSize, SizeThatIsNotWholeIsTheDefaultPage) {
    EXPECT_EQ(page_size_of({"User defined paper size", {}, 200, "mm"}), (PageSize{612, 792}));
    EXPECT_EQ(page_size_of({"User defined paper size", 100, {}, "mm"}), (PageSize{612, 792}));
    EXPECT_EQ(page_size_of({"User defined paper size", 100, 200, ""}), (PageSize{612, 792}));
}

TEST(PaperSize, SizeThatNoPageCanHaveKeepsThatOfTheDefaultPage) {
    EXPECT_EQ(page_size_of({"", 0, 200, "mm"}), (PageSize{612, 567}));
    EXPECT_EQ(page_size_of({"", 100, -5, "mm"}), (PageSize{283, 792}));
    EXPECT_EQ(page_size_of({"", 1e300, 1e300, "mm"}), (PageSize{612, 792}));
}

TEST(PaperSize, PageMayMeasureFromThreeToFourteenThousandFourHundredPoints) {
    EXPECT_EQ(page_size_of({"", 1.06, 5080, "mm"}), (PageSize{3, 14400}));
    EXPECT_EQ(page_size_of({"", 0.8, 5080.3, "mm"}), (PageSize{612, 792}));
    EXPECT_EQ(page_size_of({"", 5080, 1.06, "mm"}), (PageSize{14400, 3}));
}

class StoredFormat : public KernelTest {
  protected:
    void store(FieldValues fields) { company.add("Report_format_table", fields); }
    [[nodiscard]] ReportFormat read() {
        const auto format = read_report_format(kernel, "anna", "APreport_aging");
        EXPECT_TRUE(format);
        return format.value_or(ReportFormat{});
    }
};

TEST_F(StoredFormat, NoRowOfUserAndFormIsNone) {
    EXPECT_FALSE(read_report_format(kernel, "anna", "APreport_aging"));
    store({{"user", "anna"}, {"form_name", "APreport_inquiry"}});
    store({{"user", "bert"}, {"form_name", "APreport_aging"}});
    EXPECT_FALSE(read_report_format(kernel, "anna", "APreport_aging"));
}

TEST_F(StoredFormat, EachFieldIsRead) {
    store({{"user", "anna"},
           {"form_name", "APreport_aging"},
           {"Orientation", "1"},
           {"font_name", "Loma"},
           {"font_size", 10.5},
           {"row_height", 18},
           {"top_margin", 25.4},
           {"bottom_margin", 12.7},
           {"left_margin", 50.8},
           {"right_margin", 2.54},
           {"font_color", 255},
           {"evenrow_color", 0xf0e0d0},
           {"Bold", true},
           {"disabled_evenrow_color", true},
           {"use_grid_font", true},
           {"column_divider", true},
           {"PaperSize", "A5 (148x210 mm)"}});
    const ReportFormat format = read();
    EXPECT_TRUE(format.portrait);
    EXPECT_EQ(format.font_name, "Loma");
    EXPECT_EQ(format.font_size, 10.5);
    EXPECT_EQ(format.row_height, 18);
    EXPECT_DOUBLE_EQ(format.top_margin, 72);
    EXPECT_DOUBLE_EQ(format.bottom_margin, 36);
    EXPECT_DOUBLE_EQ(format.left_margin, 144);
    EXPECT_DOUBLE_EQ(format.right_margin, 7.2);
    EXPECT_EQ(format.font_colour, controls::rgb(255, 0, 0));
    EXPECT_EQ(format.even_row_colour, controls::rgb(0xd0, 0xe0, 0xf0));
    EXPECT_TRUE(format.bold);
    EXPECT_TRUE(format.disabled_evenrow_color);
    EXPECT_TRUE(format.use_grid_font);
    EXPECT_TRUE(format.column_divider);
    EXPECT_EQ(format.page, (PageSize{420, 595}));
}

TEST_F(StoredFormat, NullIsFilledFieldByField) {
    store({{"user", "anna"}, {"form_name", "APreport_aging"}});
    const ReportFormat format = read();
    EXPECT_FALSE(format.portrait);
    EXPECT_EQ(format.font_name, "");
    EXPECT_EQ(format.font_size, 10);
    EXPECT_EQ(format.row_height, 20);
    EXPECT_EQ(format.top_margin, 0);
    EXPECT_EQ(format.right_margin, 0);
    EXPECT_EQ(format.font_colour, 0U);
    EXPECT_EQ(format.even_row_colour, 0U);
    EXPECT_FALSE(format.bold || format.disabled_evenrow_color || format.use_grid_font ||
                 format.column_divider);
    EXPECT_EQ(format.page, (PageSize{612, 792}));
}

TEST_F(StoredFormat, AnyOrientationButOneIsLandscape) {
    store({{"user", "anna"}, {"form_name", "APreport_aging"}, {"Orientation", "2"}});
    EXPECT_FALSE(read().portrait);
}

TEST_F(StoredFormat, SplitPageChangesNothing) {
    store({{"user", "anna"}, {"form_name", "APreport_aging"}, {"split_page", "4"}});
    store({{"user", "anna"}, {"form_name", "APreport_inquiry"}});
    EXPECT_EQ(read(), read_report_format(kernel, "anna", "APreport_inquiry"));
}

TEST_F(StoredFormat, TypedSizeIsRead) {
    store({{"user", "anna"},
           {"form_name", "APreport_aging"},
           {"PaperSize", "User defined paper size"},
           {"Width", 4},
           {"Height", 6},
           {"unit", "inch"}});
    EXPECT_EQ(read().page, (PageSize{612, 432}));
}

TEST_F(StoredFormat, SizesThatNoPaperHasCountAsNull) {
    store({{"user", "anna"},
           {"form_name", "APreport_aging"},
           {"font_size", -1},
           {"row_height", 0},
           {"top_margin", 1e300},
           {"font_color", 1e300}});
    const ReportFormat format = read();
    EXPECT_EQ(format.font_size, 10);
    EXPECT_EQ(format.row_height, 20);
    EXPECT_EQ(format.top_margin, 0);
    EXPECT_EQ(format.font_colour, 0U);
}

TEST_F(StoredFormat, LettersAndRowsHaveAtLeastAPoint) {
    store({{"user", "anna"}, {"form_name", "APreport_aging"}, {"font_size", 1}, {"row_height", 1}});
    EXPECT_EQ(read().font_size, 1);
    EXPECT_EQ(read().row_height, 1);
    company.db().Execute("UPDATE Report_format_table SET font_size = 0.9, row_height = 0.9");
    EXPECT_EQ(read().font_size, 10);
    EXPECT_EQ(read().row_height, 20);
}

TEST_F(StoredFormat, ColoursKeepTheirLowTwentyFourBits) {
    store({{"user", "anna"},
           {"form_name", "APreport_aging"},
           {"font_color", -2147483640.0},
           {"evenrow_color", 16777216 + 255}});
    EXPECT_EQ(read().font_colour, 8U);
    EXPECT_EQ(read().even_row_colour, controls::rgb(255, 0, 0));
}

TEST_F(StoredFormat, OneThatCannotBeReadIsNoneAndIsNoted) {
    EXPECT_FALSE(read_report_format(kernel, "an'na", "APreport_aging"));
    EXPECT_EQ(kernel.reasons().failures(), 1);
    EXPECT_TRUE(messages().empty());
}

}  // namespace brimley::testing
