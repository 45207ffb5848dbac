// The report of a run, read back from its file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "printing/pdf_file.h"
#include "revaluation_entry.h"
#include "support/page_setups.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class RevaluationReport : public ::testing::Test {
  protected:
    void SetUp() override {
        user.ap.BRIMLEY_PATH = reports.path();
        user.ap.BRIMLEY_COMPANY_NAME = "Pier";
        std::filesystem::create_directories(folder());
    }
    [[nodiscard]] std::string folder() const { return reports.file("User report/anna/"); }
    [[nodiscard]] PdfFile report() const { return PdfFile(folder() + "ap_revaluation093000.pdf"); }
    void set_up_page(revaluation::APform_revalue& form, const char* orientation = "Portrait") {
        EXPECT_EQ(form.press(102), controls::Refusal::none);
        auto& page_setup = dynamic_cast<frame::Form_report_format&>(*form.child());
        page_setup.cmbfont_size_print.set("6");
        page_setup.cmbrow_hi.set("20");
        save_page_setup(page_setup, orientation);
        EXPECT_EQ(form.close_child(), controls::Refusal::none);
    }
    // Wide enough for all that stands in the column.
    static void widen_dates(revaluation::APform_revalue& form) {
        const int column = form.dbgrid1.get_column("date");
        EXPECT_EQ(form.dbgrid1.resize_column(column, 3000), controls::Refusal::none);
    }
    void print(revaluation::APform_revalue& form) { EXPECT_EQ(form.press(103), controls::Refusal::none); }

    TemporaryFolder reports;
    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(RevaluationReport, IsPrintedUnderTheNameOfASiblingsForm) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    print(form);
    EXPECT_TRUE(user.notifications.empty());
    set_up_page(form);
    EXPECT_EQ(company.list("SELECT user, form_name FROM Report_format_table"), "anna ARform_revalue");
    print(form);
    ASSERT_EQ(user.notifications.size(), 1U);
    EXPECT_THAT(user.notifications[0], HasSubstr("ap_revaluation093000.pdf|Preview ** New **"));
}

TEST_F(RevaluationReport, HasThreeLinesAboveTheItemsAndTheLedgerBelowThem) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    widen_dates(form);
    set_up_page(form);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    print(form);
    EXPECT_THAT(user.notifications.back(), HasSubstr("Preview APR-26-00001"));
    ASSERT_EQ(report().pages(), 1);
    const std::string text = report().text();
    EXPECT_THAT(text, HasSubstr("A/P REVALUATION REPORT"));
    EXPECT_THAT(text, HasSubstr("print : 16/03/2026"));
    EXPECT_THAT(text, HasSubstr("Fiscal year : 2026"));
    EXPECT_THAT(text, HasSubstr("Period : 3"));
    EXPECT_THAT(text, HasSubstr("1/1"));
    // From top to bottom, each below the one before it; rows lie one row height apart.
    const PdfFile file = report();
    const double line_3 = file.word("Fiscal").top;
    EXPECT_GT(line_3, file.word("REVALUATION").top + 15);
    EXPECT_NEAR(file.word("Period").top, line_3, 0.5);
    const double captions = file.word("original").top;
    EXPECT_GT(captions, file.word("Fiscal").bottom);
    EXPECT_NEAR(file.word("A").top, captions + 20, 0.5);
    EXPECT_NEAR(file.word("C").top, captions + 60, 0.5);
    EXPECT_NEAR(file.word("SUMMARY").top, captions + 120, 0.5);
    const double ledger = file.word("debit").top;
    EXPECT_GT(ledger, file.word("SUMMARY").top + 40);
    EXPECT_NEAR(file.word("2010").top, ledger + 20, 0.5);
    EXPECT_NEAR(file.word("7610").top, ledger + 60, 0.5);
}

TEST_F(RevaluationReport, LedgerThatDoesNotFitBeginsOnAPageThatCounts) {
    add_three_items(company);
    for (int i = 0; i < 22; ++i)
        add_open_item(company, "V2001", "D" + std::to_string(i), 10, 1.2);
    auto& form = enter_revaluation(user);
    widen_dates(form);
    set_up_page(form);
    print(form);
    const PdfFile file = report();
    ASSERT_EQ(file.pages(), 2);
    EXPECT_THAT(file.text(0), HasSubstr("SUMMARY"));
    EXPECT_THAT(file.text(0), Not(HasSubstr("debit")));
    EXPECT_THAT(file.text(0), HasSubstr("1/2"));
    EXPECT_THAT(file.text(1), HasSubstr("debit"));
    EXPECT_THAT(file.text(1), HasSubstr("Fiscal year"));
    EXPECT_THAT(file.text(1), HasSubstr("2/2"));
}

TEST_F(RevaluationReport, ColumnsThatTheUserHidesAreNotPrinted) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    for (controls::GridColumn& column : form.dbgrid1.columns)
        column.visible = column.caption == "document no" || column.caption == "date";
    for (controls::GridColumn& column : form.dbgrid2.columns)
        column.visible = column.caption == "currency";
    set_up_page(form);
    print(form);
    EXPECT_THAT(report().text(), Not(HasSubstr("1,250.00")));
    EXPECT_THAT(report().text(), Not(HasSubstr("7600")));
    EXPECT_THAT(report().text(), HasSubstr("EUR"));
}

TEST_F(RevaluationReport, LandscapeIsTwoFiles) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    set_up_page(form, "Landscape");
    print(form);
    EXPECT_THAT(user.notifications.back(), HasSubstr("pdf viewer landscape|"));
    EXPECT_EQ(report().rotation(), 90);
    EXPECT_EQ(PdfFile(folder() + "ap_revaluation093000_L.pdf").rotation(), 270);
}

TEST_F(RevaluationReport, WithoutTheRightToPrintNothingIsPrinted) {
    add_three_items(company);
    company.db().Execute("UPDATE User_right_table SET [Print] = FALSE WHERE form = 'APform_revalue'");
    auto& form = enter_revaluation(user);
    set_up_page(form);
    print(form);
    EXPECT_TRUE(user.notifications.empty());
}

}  // namespace brimley::testing
