// The reports of the inquiries and of the aging, read back from their files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "inquiries/apreport_aging.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"
#include "printing/pdf_file.h"
#include "support/page_setups.h"
#include "support/recurring_templates.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class InquiryReports : public ::testing::Test {
  protected:
    void SetUp() override {
        user.ap.BRIMLEY_PATH = reports.path();
        user.ap.BRIMLEY_COMPANY_NAME = "Pier";
        std::filesystem::create_directories(folder());
    }
    [[nodiscard]] std::string folder() const { return reports.file("User report/anna/"); }
    // The words of the list's report, with one column ticked.
    std::vector<std::string> words_of(frame::ListForm& list, const char* column, const std::string& file) {
        EXPECT_EQ(list.press(124), controls::Refusal::none);
        controls::Grid& boxes = list.print_columns.grid_sel;
        for (int row = 0; !boxes.cell(row, "column").empty(); ++row)
            boxes.set_cell(row, "print", boxes.cell(row, "column") == column ? "True" : "False");
        EXPECT_EQ(list.press(102), controls::Refusal::none);
        save_page_setup(dynamic_cast<frame::Form_report_format&>(*list.child()));
        EXPECT_EQ(list.press(103), controls::Refusal::none);
        std::vector<std::string> words;
        for (const PdfWord& word : PdfFile(folder() + file).words())
            words.push_back(word.text);
        return words;
    }

    TemporaryFolder reports;
    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(InquiryReports, InvoicesAreVendorInvoices) {
    user.ap.showform_APform_inquiry();
    EXPECT_THAT(words_of(*user.ap.frm_inquiry, "hold", "vendor_invoices093000.pdf"),
                ElementsAre("Pier", "VENDOR", "INVOICES", "print", ":", "16/03/2026", "hold", "1/1"));
}

TEST_F(InquiryReports, PaymentsAreAPaymentHistory) {
    user.ap.showform_APform_payhistory();
    EXPECT_THAT(words_of(*user.ap.frm_payhistory, "balance", "payment_history093000.pdf"),
                ElementsAre("Pier", "PAYMENT", "HISTORY", "print", ":", "16/03/2026", "balance", "1/1"));
}

TEST_F(InquiryReports, TemplatesAreRecurringInvoices) {
    add_template(company, {.number = 1});
    add_template(company, {.number = 2});
    list_due(user);
    EXPECT_THAT(words_of(*user.ap.frm_recur_inquiry, "due date", "ap_recurring_invoice093000.pdf"),
                ElementsAre("Pier", "A/P", "RECURRING", "INVOICES", "print", ":", "16/03/2026", "due", "date",
                            "05/03/2026", "05/03/2026", "1/1"));
}

// The total of the last vendor is in the list and not in the report.
TEST_F(InquiryReports, AgingIsAVendorAgingReportWithoutItsLastTotal) {
    for (const auto& [vendor_no, docno, amount] :
         {std::tuple{"V1001", "IP-1", 70}, {"V1001", "IP-2", 5}, {"V1002", "IP-3", 30}, {"V1002", "IP-4", 6}})
        company.add("AP_transaction_table", {{"vendor_no", vendor_no},
                                             {"docno", docno},
                                             {"pay_item", 1},
                                             {"open_amount", amount},
                                             {"paid", false},
                                             {"void", false}});
    user.ap.showform_APform_aging();
    inquiries::APreport_aging& aging = *user.ap.frm_aging;
    ASSERT_EQ(aging.press(104), controls::Refusal::none);
    EXPECT_EQ(aging.dbgrid1.cell(5, "open amount"), "36.00");
    EXPECT_THAT(words_of(aging, "open amount", "vendor_aging093000.pdf"),
                ElementsAre("Pier", "VENDOR", "AGING", "REPORT", "print", ":", "16/03/2026", "open", "amount",
                            "70.00", "5.00", "75.00", "30.00", "6.00", "1/1"));
}

}  // namespace brimley::testing
