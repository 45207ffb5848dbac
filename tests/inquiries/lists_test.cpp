// The three lists as a host has them: what there is to press, and what a Find shows.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inquiries/apreport_aging.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"
#include "support/command_lines.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class InquiryLists : public ::testing::Test {
  protected:
    inquiries::APreport_aging& aging() {
        if (!user.ap.frm_aging) user.ap.showform_APform_aging();
        return *user.ap.frm_aging;
    }
    void owe(const std::string& vendor_no, const std::string& docno, const char* due_date = "2026-03-01") {
        company.add("AP_transaction_table", {{"vendor_no", vendor_no},
                                             {"docno", docno},
                                             {"pay_item", 1},
                                             {"due_date", store::DateTime::from_iso(due_date).value()},
                                             {"open_amount", 10},
                                             {"paid", false},
                                             {"void", false}});
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(InquiryLists, CommandsOfTheAgingHaveTheirCaptionsAndKeys) {
    EXPECT_STREQ(aging().identity().caption, "Vendor Aging");
    EXPECT_THAT(command_lines(aging().CommandBars1()),
                ElementsAre("100 &Exit Ctrl+X [File Standard]", "102 Page Set&up Ctrl+U [File Standard]",
                            "103 &Preview Ctrl+P [File Standard]", "104 &Find [Run Standard]",
                            "124 Print &Column [Option Standard]", "209 &Show Text below Icon [Option]"));
}

TEST_F(InquiryLists, CommandsOfTheInvoiceInquiryHaveTheirCaptionsAndKeys) {
    user.ap.showform_APform_inquiry();
    EXPECT_STREQ(user.ap.frm_inquiry->identity().caption, "Invoice Inquiry");
    EXPECT_THAT(command_lines(user.ap.frm_inquiry->CommandBars1()),
                ElementsAre("100 &Exit Ctrl+X [File Standard]", "102 Page Set&up Ctrl+U [File Standard]",
                            "103 &Preview Ctrl+P [File Standard]", "104 &Find [Run Standard]",
                            "115 &Clear [Run Standard]", "124 Print &Column [Option Standard]",
                            "209 &Show Text below Icon [Option]", "1001 &A/P Bill Record [Link Standard]"));
}

TEST_F(InquiryLists, CommandsOfThePaymentHistoryHaveTheirCaptionsAndKeys) {
    user.ap.showform_APform_payhistory();
    EXPECT_STREQ(user.ap.frm_payhistory->identity().caption, "Payment History");
    EXPECT_THAT(command_lines(user.ap.frm_payhistory->CommandBars1()),
                ElementsAre("100 &Exit Ctrl+X [File Standard]", "102 Page Set&up Ctrl+U [File Standard]",
                            "103 &Preview Ctrl+P [File Standard]", "104 &Find [Run Standard]",
                            "114 Origin Document [Link Standard]", "115 &Clear [Run Standard]",
                            "124 Print &Column [Option Standard]", "209 &Show Text below Icon [Option]",
                            "1001 &A/P Bill Record [Link Standard]"));
}

TEST_F(InquiryLists, FieldsAreSetInArial) {
    for (const controls::Control* field : {static_cast<controls::Control*>(&aging().txtdate),
                                           static_cast<controls::Control*>(&aging().cmbvendor),
                                           static_cast<controls::Control*>(&aging().chkoverdue)})
        EXPECT_EQ(field->font_name(), "Arial") << field->name();
}

// The form has stood open over night.
TEST_F(InquiryLists, OverdueIsMeasuredAgainstTheDayOnWhichItIsAskedFor) {
    owe("V1001", "IP-26-00001", "2026-03-16");
    EXPECT_EQ(aging().txtdate.text(), "16/03/2026");
    aging().show_overdue();
    EXPECT_EQ(aging().dbgrid1.array.used_rows(), 0);
    user.desk.clock = store::DateTime::from_iso("2026-03-17 08:00:00").value();
    aging().show_overdue();
    EXPECT_EQ(aging().txtdate.text(), "17/03/2026");
    EXPECT_EQ(aging().dbgrid1.cell(0, "1 - 30"), "10.00");
}

TEST_F(InquiryLists, EachOfManyVendorsHasItsItemAndItsTotal) {
    std::vector<std::string> vendors;
    for (int vendor = 10; vendor < 50; ++vendor) {
        owe(fmt::format("W{}", vendor), "IP-26-00001");
        vendors.insert(vendors.end(), {fmt::format("W{}", vendor), ""});
    }
    ASSERT_EQ(aging().press(104), controls::Refusal::none);
    EXPECT_EQ(aging().dbgrid1.array.used_rows(), 80);
    std::vector<std::string> shown;
    for (int row = 0; row < 80; ++row)
        shown.push_back(aging().dbgrid1.cell(row, "vendor no"));
    EXPECT_THAT(shown, ElementsAreArray(vendors));
    EXPECT_EQ(aging().dbgrid1.cell(79, "open amount"), "10.00");
    // More rows than items, and yet no more than all of them.
    EXPECT_EQ(aging().Progress1.value(), 100);
}

TEST_F(InquiryLists, VendorIsCalledWhatItIsCalledWhenTheListIsFilled) {
    owe("V1001", "IP-26-00001");
    ASSERT_EQ(aging().press(104), controls::Refusal::none);
    EXPECT_EQ(aging().dbgrid1.cell(0, "vendor name"), "Baywater Coffee Traders");
    company.db().Execute("UPDATE Vendor_table SET VENDOR_NAME = 'Baywater Tea' WHERE vendor_no = 'V1001'");
    ASSERT_EQ(aging().press(104), controls::Refusal::none);
    EXPECT_EQ(aging().dbgrid1.cell(0, "vendor name"), "Baywater Tea");
}

TEST_F(InquiryLists, ColumnsToPrintEndAtTheFirstWithoutACaption) {
    const std::string of_the_grid = " WHERE form_name = 'APreport_aging' AND grid_name = 'dbgrid1'";
    company.db().Execute("UPDATE Grid_property SET caption = ''" + of_the_grid + " AND col_order = 3");
    EXPECT_THAT(aging().print_columns.ticked(), ElementsAre("vendor no", "vendor name", "AP document no"));
    for (int row = 0; row < 6; ++row)
        aging().print_columns.grid_sel.set_cell(row, "print", "False");
    aging().print_columns.save();
    EXPECT_EQ(company.list("SELECT caption FROM Grid_property" + of_the_grid +
                           " AND Print = FALSE ORDER BY col_order"),
              "vendor no | vendor name | AP document no");
}

}  // namespace brimley::testing
