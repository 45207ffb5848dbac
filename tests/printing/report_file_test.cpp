// Reports as files, read back by another library.
#include "printing/report_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "pdf_file.h"
#include "small_report.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

using printing::write_report;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

class ReportFiles : public ::testing::Test {
  protected:
    [[nodiscard]] PdfFile written(const SmallReport& small, const std::string& name = "report") {
        const printing::ReportFile file = write_report(small.report, folder.file(name));
        EXPECT_TRUE(file.written) << file.failure;
        return PdfFile(folder.file(name + ".pdf"));
    }
    [[nodiscard]] PdfFile other_way() const { return PdfFile(folder.file("report_L.pdf")); }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename().string());
        return names;
    }
    // A report with one text of interest, its first cell.
    [[nodiscard]] PdfFile with_cell(std::string_view text) {
        SmallReport small(1);
        small.list.set(0, 0, text);
        small.columns()[0].width = 3000;
        return written(small);
    }

    TemporaryFolder folder;
};

// A4 lies 842 points high; y of the paper counts from below, that of a word from above.
TEST_F(ReportFiles, TextsStandWhereTheGeometryPutsThem) {
    const PdfFile file = written(SmallReport(2));
    const PdfWord cell = file.word("r0c0");
    EXPECT_NEAR(cell.left, 55, 0.5);
    EXPECT_NEAR(cell.top, 842 - 647, 0.5);
    EXPECT_NEAR(file.word("r1c0").top, 842 - 627, 0.5);
    EXPECT_NEAR(file.word("r0c3").right, 545, 0.5);
    EXPECT_NEAR(file.word("no").top, 842 - 667, 0.5);
    const PdfWord company = file.word("Brimley");
    EXPECT_NEAR((company.left + file.word("Trading").right) / 2, 300.5, 0.5);
    EXPECT_NEAR(company.top, 842 - 762, 0.5);
    EXPECT_NEAR(file.word("16/03/2026").right, 550, 0.5);
    EXPECT_NEAR(file.word("1/1").right, 550, 0.5);
    EXPECT_NEAR(file.word("1/1").top, 842 - 122, 0.5);
}

TEST_F(ReportFiles, FillsAndRulesAreSeenWhereTheyShouldBe) {
    SmallReport small(2);
    small.report.format.font_colour = controls::rgb(255, 0, 0);
    small.report.format.column_divider = true;
    const PdfFile file = written(small);
    EXPECT_EQ(file.colour_at(90, 842 - 622), (PdfColour{200, 220, 240}));
    EXPECT_EQ(file.colour_at(90, 842 - 642), (PdfColour{255, 255, 255}));
    EXPECT_EQ(file.colour_at(200, 842 - 642), (PdfColour{255, 0, 0}));
    EXPECT_EQ(file.colour_at(90, 842 - 672), (PdfColour{255, 0, 0}));
}

TEST_F(ReportFiles, ArialIsEmbeddedAsASubsetOfLiberationSans) {
    const auto fonts = written(SmallReport(1)).fonts();
    ASSERT_EQ(fonts.size(), 1U);
    EXPECT_THAT(fonts[0].name, HasSubstr("LiberationSans"));
    EXPECT_TRUE(fonts[0].embedded);
    EXPECT_TRUE(fonts[0].subset);
}

TEST_F(ReportFiles, EveryFontOfTheGridIsEmbedded) {
    SmallReport small(1);
    small.report.format.use_grid_font = true;
    small.columns()[0].font = {"Arial", 10, true, false, true};
    small.columns()[1].font = {"Arial", 10, false, true, false};
    small.columns()[2].font = {"Loma", 10, false, false, false};
    small.columns()[3].font = {"No Such Font", 10, false, false, false};
    const PdfFile file = written(small);
    EXPECT_GE(file.fonts().size(), 4U);
    for (const PdfFont& font : file.fonts())
        EXPECT_TRUE(font.embedded && font.subset) << font.name;
    EXPECT_THAT(file.text(), HasSubstr("r0c3"));
    EXPECT_THAT(file.faults(), IsEmpty());
}

TEST_F(ReportFiles, FontsHaveTheirSizeAndStyle) {
    SmallReport small(1);
    small.report.format.use_grid_font = true;
    small.columns()[0].font = {"Arial", 7, true, false, false};
    small.columns()[1].font = {"Arial", 14, false, true, false};
    small.columns()[2].font = {"Loma", 11, true, true, false};
    const PdfFile file = written(small);
    EXPECT_THAT(file.word("r0c0").font, EndsWith("+LiberationSans-Bold"));
    EXPECT_THAT(file.word("r0c1").font, EndsWith("+LiberationSans-Italic"));
    EXPECT_THAT(file.word("r0c2").font, EndsWith("+Loma-BoldOblique"));
    EXPECT_THAT(file.word("r0c3").font, EndsWith("+LiberationSans"));
    EXPECT_NEAR(file.word("r0c0").size, 7, 0.1);
    EXPECT_NEAR(file.word("r0c1").size, 14, 0.1);
}

TEST_F(ReportFiles, FontOfACellComesBackAfterOneThatNeedsAnother) {
    const PdfFile file = with_cell("中文");
    EXPECT_THAT(file.word("中文").font, Not(HasSubstr("Liberation")));
    EXPECT_THAT(file.word("r0c1").font, EndsWith("+LiberationSans"));
}

TEST_F(ReportFiles, LettersAreSetOneByOneInAnyText) {
    for (const std::string end : {"", "É"}) {
        const double kerned = with_cell("AVAVAVAV" + end).word("AVAVAVAV" + end).width();
        const double plain = with_cell("AAAAVVVV" + end).word("AAAAVVVV" + end).width();
        EXPECT_NEAR(kerned, plain, 0.05) << end;
    }
}

TEST_F(ReportFiles, ManyTextsThatNeedShapingAreAllThere) {
    SmallReport small(2525);
    for (int row = 0; row < 2525; ++row)
        small.list.set(row, 1, fmt::format("ไทย{}", row % 2500));
    const PdfFile file = written(small);
    EXPECT_THAT(file.text(0), HasSubstr("ไทย24"));
    EXPECT_THAT(file.text(99), HasSubstr("ไทย2499"));
    EXPECT_THAT(file.text(100), HasSubstr("ไทย24"));
}

TEST_F(ReportFiles, UnderlinedTextHasALineBelow) {
    SmallReport small(1);
    small.report.format.use_grid_font = true;
    small.columns()[0].font = {"Arial", 20, false, false, true};
    small.list.set(0, 0, ",,");
    const PdfFile file = written(small);
    const PdfWord word = file.word(",,");
    int dark = 0;
    for (double y = word.bottom - 8; y < word.bottom; ++y)
        dark += file.colour_at((word.left + word.right) / 2, y).green < 200 ? 1 : 0;
    EXPECT_GT(dark, 0);
    EXPECT_EQ(file.colour_at(word.right + 5, word.bottom - 4), (PdfColour{255, 255, 255}));
}

TEST_F(ReportFiles, HaveAsManyPagesAsTheRowsNeedAndAreSound) {
    for (const auto& [rows, pages] : {std::pair{0, 1}, {1, 1}, {26, 2}, {1000, 40}}) {
        const PdfFile file = written(SmallReport(rows));
        EXPECT_EQ(file.pages(), pages);
        EXPECT_EQ(file.word(fmt::format("{0}/{0}", pages), pages - 1).right > 0, true) << rows;
        EXPECT_THAT(file.faults(), IsEmpty());
        EXPECT_EQ(file.rotation(), 0);
    }
}

TEST_F(ReportFiles, PortraitIsOneFile) {
    const PdfFile file = written(SmallReport(1));
    EXPECT_THAT(files(), UnorderedElementsAre("report.pdf"));
}

TEST_F(ReportFiles, PageHasTheSizeOfThePaper) {
    SmallReport small(1);
    for (const printing::PageSize size : {printing::PageSize{595, 842}, {612, 792}, {283, 567}, {612, 432}}) {
        small.report.format.page = size;
        EXPECT_EQ(written(small).page_size(), std::pair(size.width, size.height));
    }
}

TEST_F(ReportFiles, LandscapeGivesTwoFilesTurnedEitherWay) {
    SmallReport small(60);
    small.report.format.portrait = false;
    const PdfFile file = written(small);
    EXPECT_THAT(files(), UnorderedElementsAre("report.pdf", "report_L.pdf"));
    for (const PdfFile& one : {file, other_way()}) {
        EXPECT_GT(one.pages(), 1);
        EXPECT_THAT(one.faults(), IsEmpty());
    }
    for (int page = 0; page < file.pages(); ++page) {
        EXPECT_EQ(file.rotation(page), 90);
        EXPECT_EQ(other_way().rotation(page), 270);
    }
    EXPECT_THAT(file.bytes(), HasSubstr("/Rotate 90"));
    EXPECT_THAT(other_way().bytes(), HasSubstr("/Rotate -90"));
    EXPECT_THAT(file.bytes(), HasSubstr("/MediaBox [ 0 0 600 842 ]"));
}

// Rows of 20 points on a page 600 high and 842 wide once it is turned.
TEST_F(ReportFiles, LandscapeReadsAsAWidePageOnceTurned) {
    SmallReport small(1);
    small.report.format.portrait = false;
    const PdfFile file = written(small);
    const PdfWord cell = file.word("r0c0");
    const PdfWord last = file.word("r0c3");
    EXPECT_NEAR(cell.left, 55, 0.5);
    EXPECT_NEAR(last.right, 842 - 55, 0.5);
    EXPECT_NEAR(cell.top, 100 + 4.5 * 20 + 5, 0.5);
    EXPECT_NEAR(cell.top, last.top, 0.1);
    EXPECT_NEAR(file.word("1/1").right, 842 - 50, 0.5);
}

TEST_F(ReportFiles, TheOtherFileShowsTheSamePageUpsideDown) {
    SmallReport small(1);
    small.report.format.portrait = false;
    const PdfWord cell = written(small).word("r0c0");
    const PdfWord turned = other_way().word("r0c0");
    EXPECT_NEAR(turned.right, 842 - cell.left, 1);
    EXPECT_NEAR(turned.bottom, 600 - cell.top, 1);
}

TEST_F(ReportFiles, PageNumberOffThePaperIsNotSeen) {
    SmallReport small(1);
    small.report.format.bottom_margin = 5;
    const PdfFile file = written(small);
    EXPECT_THAT(file.faults(), IsEmpty());
    EXPECT_EQ(file.word("1/1").text, "not found");
}

TEST_F(ReportFiles, TextOfManyScriptsIsCopiedOutAgain) {
    for (const char* const text :
         {"บริษัทกรุงเทพการค้า", "ที่อยู่น้ำ", "北京貿易有限公司", "Český", "Ángström", "Ελλάδα", "Москва"}) {
        const PdfFile file = with_cell(text);
        EXPECT_THAT(file.text(), HasSubstr(text));
        EXPECT_THAT(file.faults(), IsEmpty());
        for (const PdfFont& font : file.fonts())
            EXPECT_TRUE(font.embedded && font.subset) << font.name;
    }
}

TEST_F(ReportFiles, CombiningAccentsAreCopiedOutAsOneText) {
    const std::string copied = with_cell("Cafe\u0301 de\u0301ja\u0300").text();
    EXPECT_TRUE(copied.find("Cafe\u0301") != std::string::npos || copied.find("Café") != std::string::npos)
        << copied;
}

TEST_F(ReportFiles, ScriptsOfOneCellStandOnOneLine) {
    const PdfFile file = with_cell("Thai ไทย 中文 Latin");
    const double middle = 842 - 642;
    for (const char* const text : {"Thai", "ไทย", "中文", "Latin"}) {
        const PdfWord word = file.word(text);
        EXPECT_LT(word.top, middle) << text;
        EXPECT_GT(word.bottom, middle) << text;
    }
}

TEST_F(ReportFiles, TextThatDoesNotFitEndsInAnEllipsisWithinItsCell) {
    SmallReport small(2);
    small.list.set(0, 3, "1,234,567,890,123,456,789,012,345,678,901.00");
    small.list.set(1, 3, "北京貿易有限公司北京貿易有限公司北京貿易有限公司");
    const PdfFile file = written(small);
    for (const PdfWord& word : file.words()) {
        if (word.text.find("890") == std::string::npos && word.text.find("貿") == std::string::npos) continue;
        EXPECT_TRUE(word.text.ends_with("…")) << word.text;
        EXPECT_GE(word.left, 354.9);
        EXPECT_LE(word.right, 545.1);
        EXPECT_GT(word.right, 530);
    }
    EXPECT_THAT(file.text(), HasSubstr("1,234,567"));
    EXPECT_THAT(file.text(), HasSubstr("北京"));
    EXPECT_THAT(file.text(), Not(HasSubstr("901.00")));
}

TEST_F(ReportFiles, CellTooNarrowForAnyLetterShowsTheEllipsis) {
    SmallReport small(1);
    small.columns()[0].width = 100;
    small.columns()[1].width = 100;
    small.list.set(0, 0, "42.00");
    small.list.set(0, 1, "中文");
    const std::string text = written(small).text();
    EXPECT_THAT(text, HasSubstr("…"));
    EXPECT_THAT(text, Not(HasSubstr("42.00")));
}

TEST_F(ReportFiles, EllipsisThatHasNoRoomStartsAtTheLeftEdgeOfItsCell) {
    SmallReport small(1);
    small.columns()[0].width = 100;
    small.columns()[0].caption = "";
    small.list.set(0, 1, "");
    for (const auto alignment : {controls::Alignment::left, controls::Alignment::right}) {
        small.columns()[0].alignment = alignment;
        EXPECT_NEAR(written(small).word("…").left, 55, 0.1);
    }
}

TEST_F(ReportFiles, HostileTextsLeaveTheFileSound) {
    SmallReport small(6);
    small.list.set(0, 0, std::string(100'000, 'W'));
    small.list.set(1, 0, std::string("\0\x01\x1B\xFF\xFE\xC0\x80 bytes", 14));
    small.list.set(2, 0, ") Tj ET endstream endobj \\( %%EOF <</Root 1 0 R>>");
    small.list.set(3, 0, std::string(20'000, '\xE4'));
    small.list.set(4, 0,
                   "<b>&amp;\u202Eright to left\u202C \u05D0\u05D1 \u0627\u0644\u0639\u0631 \U0010FFFF 😀");
    std::string accents = "e";
    for (int i = 0; i < 2'000; ++i)
        accents += "\u0301";
    small.list.set(5, 0, accents);
    small.columns()[0].width = 9000;
    small.columns()[0].caption = "two\nlines";
    small.report.company_name = "\xFF\n";
    small.report.format.font_name = "\xFF,\n:weight";
    const PdfFile file = written(small);
    EXPECT_THAT(file.faults(), IsEmpty());
    EXPECT_EQ(file.pages(), 1);
    EXPECT_THAT(file.text(), HasSubstr("bytes"));
    EXPECT_THAT(file.text(), HasSubstr("WWW"));
}

TEST_F(ReportFiles, FormatsBeyondAnyPaperLeaveTheFileSound) {
    SmallReport small(30);
    for (const double margin : {-5000.0, 5000.0}) {
        small.report.format.left_margin = small.report.format.top_margin = margin;
        small.report.format.font_size = margin;
        EXPECT_THAT(written(small).faults(), IsEmpty());
    }
}

TEST_F(ReportFiles, EqualReportsGiveEqualBytes) {
    for (const bool portrait : {true, false}) {
        SmallReport small(100);
        small.report.format.portrait = portrait;
        small.list.set(3, 1, "บริษัท 北京");
        EXPECT_EQ(written(small, "one").bytes(), written(small, "other").bytes());
        EXPECT_THAT(written(small, "one").bytes(), Not(HasSubstr("CreationDate")));
        EXPECT_THAT(written(small, "one").bytes(), Not(HasSubstr("/ID")));
    }
}

TEST_F(ReportFiles, SecondPrintTakesThePlaceOfTheFirst) {
    EXPECT_EQ(written(SmallReport(60)).pages(), 3);
    EXPECT_EQ(written(SmallReport(1)).pages(), 1);
    EXPECT_THAT(files(), UnorderedElementsAre("report.pdf"));
}

TEST_F(ReportFiles, FolderThatIsNotThereGivesNoFile) {
    const printing::ReportFile file = write_report(SmallReport(1).report, folder.file("absent/report"));
    EXPECT_FALSE(file.written);
    EXPECT_THAT(file.failure, HasSubstr("absent"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ReportFiles, PlaceThatIsTakenByAFolderLeavesNothingBeside) {
    SmallReport small(1);
    small.report.format.portrait = false;
    for (const char* const taken : {"report.pdf", "report_L.pdf"}) {
        std::filesystem::create_directories(folder.path() / taken / "within");
        EXPECT_FALSE(write_report(small.report, folder.file("report")).written);
        EXPECT_THAT(files(), UnorderedElementsAre(taken));
        std::filesystem::remove_all(folder.path() / taken);
    }
}

// Files may grow to so many bytes only, as on a disk that is full.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    void (*handler_)(int);
    rlimit before_{};
};

TEST_F(ReportFiles, FullDiskLeavesNothingWhereverItsRoomEnds) {
    SmallReport small(300);
    for (const bool portrait : {true, false}) {
        small.report.format.portrait = portrait;
        const std::size_t size = written(small).bytes().size();
        for (const auto& name : files())
            std::filesystem::remove(folder.file(name));
        std::vector<std::size_t> rooms{size - 1};
        for (std::size_t room = 0; room < size; room += 2500)
            rooms.push_back(room);
        for (const std::size_t room : rooms) {
            const FullDisk disk(room);
            EXPECT_FALSE(write_report(small.report, folder.file("report")).written) << room;
            EXPECT_THAT(files(), IsEmpty());
        }
    }
}

}  // namespace brimley::testing
