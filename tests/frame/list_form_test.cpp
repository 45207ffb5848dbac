// What every list form has: the fill, the choice of the columns to print, and the report.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "frame/line_columns.h"
#include "frame/list_form.h"
#include "frame/platform_path.h"
#include "plain_form.h"
#include "printing/pdf_file.h"
#include "support/page_setups.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

constexpr frame::FormIdentity kVendorList{"APreport_aging", "Vendors", ""};
constexpr frame::ReportNames kVendorReport{"VENDORS", "vendors", "Preview Vendors"};
constexpr std::array kVendorColumns{
    frame::LineColumn{"vendor no", "vendor_no", frame::Shown::text},
    frame::LineColumn{"AP document no", "VENDOR_NAME", frame::Shown::text},
};

// The smallest list: the vendors, in two columns of the layout of the aging.
class VendorListing {
  public:
    VendorListing(frame::Form& form, controls::Grid& grid, const store::Recordset& rows)
        : columns_(form, grid, kVendorColumns) {
        columns_.begin(rows);
    }
    int show(const store::Recordset& row, int at) {
        columns_.show(row, at);
        return at + 1;
    }
    void end(int) {}

  private:
    frame::LineColumns columns_;
};

class VendorList : public frame::ListForm {
  public:
    VendorList(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
        : ListForm(kVendorList, kVendorReport, std::move(context), std::move(kernel), desk) {}

    void SEL_record() override {
        fill.run(query, [&](const store::Recordset& rows) { return VendorListing(*this, dbgrid1, rows); });
    }

    std::string query = "SELECT vendor_no, VENDOR_NAME FROM Vendor_table ORDER BY vendor_no";

  protected:
    void show_first_values() override {}
    void initform_control() override {}
    void init_toolbar() override { add_list_commands({}); }
};

// Folders are real ones.
class FolderDesk : public RecordingDesk {
  public:
    [[nodiscard]] bool folder_exists(const std::string& path) override {
        return fs::is_directory(frame::platform_path(path));
    }
    bool make_folder(const std::string& path) override {
        std::error_code failure;
        return fs::create_directory(frame::platform_path(path), failure);
    }
};

}  // namespace

class Lists : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::create_directory(reports.path() / fs::path("User report"));
        open_as("anna");
    }
    void open_as(const std::string& user) {
        context = host.context();
        context.BRIMLEY_USER = user;
        context.BRIMLEY_PATH = reports.path();
        context.BRIMLEY_COMPANY_NAME = "Pier Street";
        list = std::make_shared<VendorList>(context, std::make_shared<kernel::ModuleG3>(context.abcdb, desk),
                                            desk);
        list->NotifyClients = [this](const std::string& formx, const std::string& docnox,
                                     const std::string& arg2) {
            requests.push_back(formx + "|" + docnox + "|" + arg2);
        };
        list->show();
    }
    void press(int command) { ASSERT_EQ(list->press(command), controls::Refusal::none); }
    frame::Form_report_format& page_setup() {
        if (list->child() == nullptr) press(102);
        return dynamic_cast<frame::Form_report_format&>(*list->child());
    }
    // The words of the report that a print gives, once a page has been set up.
    std::vector<std::string> printed_words() {
        save_page_setup(page_setup());
        press(103);
        std::vector<std::string> words;
        for (const PdfWord& word : PdfFile(file("vendors093000.pdf")).words())
            words.push_back(word.text);
        return words;
    }
    [[nodiscard]] std::string file(const std::string& name) const {
        return (fs::path(reports.path()) / "User report" / context.BRIMLEY_USER / name).string();
    }
    // Of the fourteen columns of the layout.
    void tick_only(const std::set<int>& rows) {
        for (int row = 0; row < 14; ++row)
            list->print_columns.grid_sel.set_cell(row, "print", rows.contains(row) ? "True" : "False");
    }
    // So many vendors more.
    void add_vendors(int count) {
        context.dbe->BeginTrans();
        auto vendors = context.abcdb->OpenRecordset("SELECT * FROM Vendor_table WHERE 1 = 2",
                                                    store::RecordsetKind::dynaset);
        for (int i = 0; i < count; ++i) {
            vendors.AddNew();
            vendors.set("vendor_no", "W" + std::to_string(10'000 + i));
            vendors.Update();
        }
        context.dbe->CommitTrans();
    }

    PlainHost host;
    TemporaryFolder reports;
    FolderDesk desk;
    frame::HostContext context;
    std::shared_ptr<VendorList> list;
    std::vector<std::string> requests;
};

TEST_F(Lists, NothingIsFetchedBeforeSomebodyAsks) {
    EXPECT_EQ(list->dbgrid1.array.used_rows(), 0);
    press(104);
    EXPECT_GT(list->dbgrid1.array.used_rows(), 10);
    EXPECT_EQ(list->dbgrid1.cell(0, "vendor no"), "V1001");
}

TEST_F(Lists, FillLetsTheHostGoOnAndShowsHowFarItIs) {
    add_vendors(1'500);
    std::vector<std::string> seen;
    desk.on_pump = [&] {
        seen.push_back((list->Progress1.visible() ? "" : "hidden ") + list->Progress1.shown());
    };
    press(104);
    // Once while it is read, and after each five hundred rows that are shown.
    EXPECT_THAT(seen, ElementsAre("0", "32", "64", "97"));
    EXPECT_FALSE(list->Progress1.visible());
}

TEST_F(Lists, FindWithinAFillGivesItsOwnWholeList) {
    add_vendors(1'500);
    const std::string all = list->query;
    // At each moment at which the host may go on: while the rows are read, and while they are shown.
    for (int moment = 1; moment <= 4; ++moment) {
        SCOPED_TRACE(moment);
        list->query = all;
        int pumps = 0;
        desk.on_pump = [&] {
            if (++pumps != moment) return;
            list->query = "SELECT vendor_no, VENDOR_NAME FROM Vendor_table WHERE vendor_no = 'V1002'";
            press(104);
        };
        press(104);
        EXPECT_GE(pumps, moment);
        EXPECT_EQ(list->dbgrid1.array.used_rows(), 1);
        EXPECT_EQ(list->dbgrid1.cell(0, "vendor no"), "V1002");
        EXPECT_FALSE(list->Progress1.visible());
    }
}

TEST_F(Lists, FormTakenDownWithinAFillStaysUntilItsEnd) {
    add_vendors(1'500);
    VendorList* const pressed = list.get();
    const std::weak_ptr<VendorList> watched = list;
    int pumps = 0;
    desk.on_pump = [&] {
        if (list) list->unload_form();
        list.reset();
        ++pumps;
        EXPECT_FALSE(watched.expired());
    };
    EXPECT_EQ(pressed->press(104), controls::Refusal::none);
    EXPECT_GE(pumps, 3);
    EXPECT_TRUE(watched.expired());
}

TEST_F(Lists, PreviewWithinAFillPrintsWhatIsThereAndLetsTheFillGoOn) {
    static_cast<void>(printed_words());
    add_vendors(1'500);
    int pumps = 0;
    desk.on_pump = [&] {
        if (++pumps != 3) return;
        press(103);
        EXPECT_TRUE(list->Progress1.visible());
    };
    press(104);
    EXPECT_EQ(requests.size(), 2U);
    EXPECT_GT(list->dbgrid1.array.used_rows(), 1'500);
    EXPECT_FALSE(list->Progress1.visible());
}

TEST_F(Lists, QueryThatFailsEmptiesTheListWithoutAWord) {
    press(104);
    list->query = "SELECT * FROM Nowhere_table";
    press(104);
    EXPECT_EQ(list->dbgrid1.array.used_rows(), 0);
    EXPECT_FALSE(list->Progress1.visible());
    EXPECT_THAT(desk.messages, IsEmpty());
}

TEST_F(Lists, ReportHasTheTickedColumnsInTheOrderOfThePaneWhetherOrNotTheyAreSeen) {
    press(104);
    press(124);
    tick_only({0, 2});
    list->dbgrid1.columns[0].visible = false;
    ASSERT_EQ(list->dbgrid1.move_column(2, 0), controls::Refusal::none);
    const std::vector<std::string> words = printed_words();
    const auto columns = std::find(words.begin(), words.end(), "vendor");
    ASSERT_GE(words.end() - columns, 9);
    EXPECT_THAT(std::vector(columns, columns + 9), ElementsAre("vendor", "no", "AP", "document", "no",
                                                               "V1001", "Baywater", "Coffee", "Traders"));
    EXPECT_THAT(requests, ElementsAre("pdf viewer|" + context.BRIMLEY_PATH +
                                      "\\User report\\anna\\vendors093000.pdf|Preview Vendors"));
}

TEST_F(Lists, ReportWithoutATickIsItsHeadAlone) {
    press(104);
    press(124);
    tick_only({});
    EXPECT_THAT(printed_words(), ElementsAre("Pier", "Street", "VENDORS", "print", ":", "16/03/2026", "1/1"));
}

TEST_F(Lists, TicksAreReadWhenTheFirstReportIsPrinted) {
    context.abcdb->Execute(
        "UPDATE Grid_property SET Print = FALSE WHERE form_name = 'APreport_aging' AND caption <> 'vendor "
        "no'");
    press(104);
    const std::vector<std::string> words = printed_words();
    EXPECT_THAT(words, ::testing::Contains("V1001"));
    EXPECT_THAT(words, ::testing::Not(::testing::Contains("document")));
}

TEST_F(Lists, ProgressIsSeenWhileAReportIsWritten) {
    std::vector<bool> seen;
    list->Progress1.on_shown_change = [&] { seen.push_back(list->Progress1.visible()); };
    static_cast<void>(printed_words());
    EXPECT_THAT(seen, ElementsAre(true, false));
}

TEST_F(Lists, FrameOfTheFontBarComesAndGoesWithTheBar) {
    EXPECT_FALSE(list->font_bar.frame_font.visible());
    list->CommandBars1().show_font_bar(true);
    EXPECT_EQ(list->font_bar.cmbselcol.type("selected columns"), controls::Refusal::none);
    ASSERT_EQ(list->dbgrid1.user_selects_columns(controls::Grid::Range{1, 2}), controls::Refusal::none);
    press(403);
    EXPECT_FALSE(list->dbgrid1.columns[0].font.bold);
    EXPECT_TRUE(list->dbgrid1.columns[1].font.bold);
    EXPECT_TRUE(list->dbgrid1.columns[2].font.bold);
    list->CommandBars1().show_font_bar(false);
    EXPECT_FALSE(list->font_bar.frame_font.visible());
    list->CommandBars1().show_font_bar(true);
    EXPECT_EQ(list->font_bar.frame_font.close(), controls::Refusal::none);
    EXPECT_FALSE(list->font_bar_shown());
    list->CommandBars1().show_font_bar(true);
    press(100);
    open_as("anna");
    EXPECT_TRUE(list->font_bar.frame_font.visible());  // as it was left
}

TEST_F(Lists, GridOfTheColumnsToPrintHasItsCaption) {
    EXPECT_EQ(list->print_columns.grid_sel.shown(), "PRINT COLUMNS");
    EXPECT_EQ(list->dbgrid1.shown(), "");
}

TEST_F(Lists, NothingIsPrintedBeforeAPageWasSetUp) {
    press(103);
    EXPECT_THAT(requests, IsEmpty());
    EXPECT_FALSE(fs::exists(file("")));
}

TEST_F(Lists, FolderThatCannotBeMadeIsNotReportedAndTheHostIsAskedAllTheSame) {
    fs::remove(fs::path(reports.path()) / "User report");
    page_setup().cmdsave_Click();
    desk.messages.clear();
    press(103);
    EXPECT_THAT(requests, ElementsAre("pdf viewer landscape|" + context.BRIMLEY_PATH +
                                      "\\User report\\anna\\vendors093000.pdf|Preview Vendors"));
    EXPECT_THAT(desk.messages, IsEmpty());
    EXPECT_FALSE(fs::exists(fs::path(reports.path()) / "User report"));
    EXPECT_FALSE(list->Progress1.visible());
}

TEST_F(Lists, UserWhoseNameLeadsElsewhereGetsNoFileThere) {
    context.abcdb->Execute("UPDATE User_right_table SET userid = '..' WHERE userid = 'anna'");
    open_as("..");
    page_setup().cmdsave_Click();
    press(103);
    EXPECT_EQ(requests.size(), 1U);
    // Only the folder of all users is there.
    EXPECT_EQ(std::distance(fs::directory_iterator(reports.path()), fs::directory_iterator{}), 1);
}

TEST_F(Lists, SecondPrintInASecondReplacesTheFirst) {
    press(104);
    press(124);
    tick_only({0, 2});
    static_cast<void>(printed_words());
    list->query = "SELECT vendor_no, VENDOR_NAME FROM Vendor_table WHERE vendor_no = 'V1002'";
    press(104);
    press(103);
    const PdfFile second(file("vendors093000.pdf"));
    EXPECT_EQ(second.word("V1001").width(), 0);
    EXPECT_GT(second.word("V1002").width(), 0);
    EXPECT_EQ(requests.size(), 2U);
    EXPECT_EQ(std::distance(fs::directory_iterator(file("")), fs::directory_iterator{}), 1);
}

}  // namespace brimley::testing
