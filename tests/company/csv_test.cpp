// What a CSV file may hold and what is refused, with the line that a fault is told at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <system_error>

#include "company/company_fixture.h"
#include "company/csv_reader.h"
#include "company/csv_values.h"

namespace brimley {
namespace {

using company::CsvCell;
using company::CsvReader;
using store::Field;
using store::FieldType;
using store::Value;
using testing::write_file;

class CsvFile : public ::testing::Test {
  protected:
    // All records, each cell in brackets, quoted ones with a star.
    std::string records(std::string_view text) {
        write_file(path_, text);
        CsvReader reader(path_);
        std::vector<CsvCell> record;
        std::string shown;
        while (reader.next(record)) {
            shown += std::to_string(reader.line());
            for (const CsvCell& cell : record) {
                shown += (cell.quoted ? "*[" : "[") + cell.text + "]";
            }
            shown += ' ';
        }
        return shown;
    }

    // The error without its folder.
    std::string error(std::string_view text) {
        try {
            records(text);
        } catch (const company::CsvError& error) {
            return std::string(error.what()).substr(folder_.path().string().size() + 1);
        }
        return "none";
    }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_.file("T.csv");
};

TEST_F(CsvFile, CellsArePartedByCommasAndRecordsByLineEnds) {
    EXPECT_EQ(records("a,b\n1,2\n3,\n"), "1[a][b] 2[1][2] 3[3][] ");
}

TEST_F(CsvFile, LastLineNeedsNoEnd) { EXPECT_EQ(records("a,b\n1,2"), "1[a][b] 2[1][2] "); }

TEST_F(CsvFile, CarriageReturnBeforeLineFeedBelongsToTheLineEnd) {
    EXPECT_EQ(records("a,b\r\n1,\"x\"\r\n"), "1[a][b] 2[1]*[x] ");
}

TEST_F(CsvFile, ByteOrderMarkIsSkipped) {
    EXPECT_EQ(records("\xEF\xBB\xBF"
                      "a,b\n"),
              "1[a][b] ");
}

TEST_F(CsvFile, QuotedCellKeepsCommasQuotesAndLineEnds) {
    EXPECT_EQ(records("a,b\n\"x,y\",\"say \"\"hi\"\"\"\n\"1\n2\r\n3\",z\nend,\n"),
              "1[a][b] 2*[x,y]*[say \"hi\"] 3*[1\n2\r\n3][z] 6[end][] ");
}

TEST_F(CsvFile, EmptyQuotedCellIsToldFromNothing) { EXPECT_EQ(records("a,b\n\"\",\n"), "1[a][b] 2*[][] "); }

TEST_F(CsvFile, BlanksAreKept) { EXPECT_EQ(records("a,b\n x , y\n"), "1[a][b] 2[ x ][ y] "); }

TEST_F(CsvFile, BlankLinesAreSkippedInWideFiles) {
    EXPECT_EQ(records("a,b\n\n1,2\n\r\n\n"), "1[a][b] 3[1][2] ");
}

TEST_F(CsvFile, BlankLineIsAnEmptyCellInAFileOfOneColumn) {
    EXPECT_EQ(records("a\n\nx\n"), "1[a] 2[] 3[x] ");
}

TEST_F(CsvFile, FaultIsToldAtTheLineWhereItsRecordStarts) {
    EXPECT_EQ(error("a,b\n\"x\ny\nz\",1,2\n"), "T.csv:2: 3 cells where the first line names 2 fields");
    EXPECT_EQ(error("a,b\n\"x\ny\",1\n1\n"), "T.csv:4: 1 cells where the first line names 2 fields");
}

TEST_F(CsvFile, QuotedCellWithoutAnEndIsRefused) {
    EXPECT_EQ(error("a,b\n1,2\n\"x,3\n4,5\n"), "T.csv:3: a quoted cell has no closing quote");
}

TEST_F(CsvFile, TextBehindAClosingQuoteIsRefused) {
    EXPECT_EQ(error("a,b\n\"x\"y,2\n"), "T.csv:2: text follows a closing quote");
}

TEST_F(CsvFile, QuoteInsideAnUnquotedCellIsRefused) {
    EXPECT_EQ(error("a,b\nx\"y\",2\n"), "T.csv:2: a quote inside an unquoted cell");
}

TEST_F(CsvFile, LoneCarriageReturnIsRefused) {
    EXPECT_EQ(error("a,b\n1\r2,3\n"), "T.csv:2: a carriage return without a line feed");
}

TEST_F(CsvFile, InvalidUtf8IsRefused) {
    for (const char* bad : {"\xFF", "\xC3", "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\x80", "\xF8\x88\x80\x80\x80", "\xE2\x82"}) {
        EXPECT_EQ(error("a,b\n1,2\n3," + std::string(bad) + "\n"), "T.csv:3: the text is not valid UTF-8");
    }
    EXPECT_EQ(error(std::string_view("a,b\n1,x\0y\n", 10)), "T.csv:2: the text is not valid UTF-8");
}

TEST_F(CsvFile, EveryLengthOfUtf8IsTaken) {
    EXPECT_EQ(records("a,b\n\x7F\xC2\x80\xE0\xA0\x80\xED\x9F\xBF,\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\n"),
              "1[a][b] 2[\x7F\xC2\x80\xE0\xA0\x80\xED\x9F\xBF][\xF0\x90\x80\x80\xF4\x8F\xBF\xBF] ");
}

TEST_F(CsvFile, FileWithoutAFirstLineIsRefused) {
    EXPECT_EQ(error(""), "T.csv:1: the first line must name the fields");
    EXPECT_EQ(error("\na,b\n"), "T.csv:1: the first line must name the fields");
}

TEST_F(CsvFile, AbsentFileIsASystemError) {
    EXPECT_THROW(CsvReader(folder_.file("none.csv")), std::system_error);
}

Value value_of(const std::string& text, FieldType type, bool quoted = false) {
    return company::cell_value({text, quoted}, {"f", type, false});
}

std::string refusal(const std::string& text, FieldType type, bool quoted = false) {
    try {
        (void)value_of(text, type, quoted);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "taken";
}

TEST(CsvValue, NothingIsNullInEveryTypeButYesNo) {
    for (const FieldType type : {FieldType::text, FieldType::number, FieldType::integer, FieldType::date}) {
        EXPECT_TRUE(value_of("", type).is_null());
    }
    EXPECT_EQ(value_of("", FieldType::yes_no), Value(false));
    EXPECT_TRUE(company::cell_value({"", false}, {"f", FieldType::yes_no, true}).is_null());
}

TEST(CsvValue, EmptyQuotesAreTheEmptyTextAndNothingElse) {
    EXPECT_EQ(value_of("", FieldType::text, true), Value(""));
    EXPECT_EQ(refusal("", FieldType::number, true), "f is not a number: \"\"");
    EXPECT_EQ(refusal("", FieldType::date, true), "f is not a date: \"\"");
}

TEST(CsvValue, NumbersHaveAPointAndNoGrouping) {
    EXPECT_EQ(value_of("-12.5", FieldType::number), Value(-12.5));
    EXPECT_EQ(value_of("1e3", FieldType::number), Value(1000));
    for (const char* bad :
         {"1,234.50", "12,5", " 1", "1 ", "+1", "1.2.3", "abc", "nan", "inf", "0x10", "1e999"}) {
        EXPECT_EQ(refusal(bad, FieldType::number), "f is not a number: \"" + std::string(bad) + "\"");
    }
}

TEST(CsvValue, WholeNumbersHaveNoFraction) {
    EXPECT_EQ(value_of("7", FieldType::integer), Value(7));
    EXPECT_EQ(refusal("7.5", FieldType::integer), "f is not a whole number: \"7.5\"");
}

TEST(CsvValue, DatesAreYearMonthDayWithOrWithoutATime) {
    EXPECT_EQ(value_of("2026-01-15", FieldType::date).text(), "2026-01-15");
    EXPECT_EQ(value_of("2026-01-15 09:30:00", FieldType::datetime).text(), "2026-01-15 09:30:00");
    for (const char* bad : {"2026-02-30", "15/01/2026", "20260115", "2026-1-5", "2026-01-15T09:30:00"}) {
        EXPECT_EQ(refusal(bad, FieldType::date), "f is not a date: \"" + std::string(bad) + "\"");
    }
}

TEST(CsvValue, YesNoIsTrueOrFalseInAnyCase) {
    EXPECT_EQ(value_of("TRUE", FieldType::yes_no), Value(true));
    EXPECT_EQ(value_of("False", FieldType::yes_no), Value(false));
    EXPECT_EQ(refusal("yes", FieldType::yes_no), "f is not TRUE or FALSE: \"yes\"");
    EXPECT_EQ(refusal("1", FieldType::yes_no), "f is not TRUE or FALSE: \"1\"");
}

TEST(CsvValue, AMessageStaysOnOneLine) {
    EXPECT_EQ(refusal("1\n2\t\x01", FieldType::number), "f is not a number: \"1\\n2\\t\\x01\"");
    const std::string shown = refusal(std::string(1000, 'x'), FieldType::number);
    EXPECT_EQ(shown, "f is not a number: \"" + std::string(60, 'x') + "...\"");
}

std::string cell_of(const Value& value) {
    std::string line;
    company::append_cell(line, value);
    return line;
}

TEST(CsvValue, WrittenCellsAreQuotedWhereTheyMust) {
    EXPECT_EQ(cell_of({}), "");
    EXPECT_EQ(cell_of(""), "\"\"");
    EXPECT_EQ(cell_of("plain text"), "plain text");
    EXPECT_EQ(cell_of("a,b"), "\"a,b\"");
    EXPECT_EQ(cell_of("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(cell_of("two\nlines"), "\"two\nlines\"");
    EXPECT_EQ(cell_of("two\rparts"), "\"two\rparts\"");
    EXPECT_EQ(cell_of(12.35), "12.35");
    EXPECT_EQ(cell_of(true), "TRUE");
    EXPECT_EQ(cell_of(*store::DateTime::from_ymd(2026, 1, 15)), "2026-01-15");
}

TEST(CsvValue, NumbersReadBackExactly) {
    for (const double number :
         {0.1, 1.0 / 3, 1e-300, -2.5e-7, 123456789.01, 1e15, 1.7976931348623157e308, 5e-324}) {
        EXPECT_EQ(value_of(cell_of(number), FieldType::number), Value(number)) << cell_of(number);
    }
}

}  // namespace
}  // namespace brimley
