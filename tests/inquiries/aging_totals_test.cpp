// The totals of the vendor aging where no session can look.
#include <gmock/gmock.h>

#include "inquiries/apreport_aging.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class AgingTotals : public ::testing::Test {
  protected:
    AgingTotals() {
        user.ap.dbe->BeginTrans();
        auto items = user.ap.abcdb->OpenRecordset("SELECT * FROM AP_transaction_table WHERE 1 = 2",
                                                  store::RecordsetKind::dynaset);
        for (int i = 0; i < 1'600; ++i) {
            items.AddNew();
            items.set("vendor_no", i < 800 ? "V1001" : "V1002");
            items.set("docno", std::to_string(10'000 + i));
            items.set("open_amount", 1.0);
            items.Update();
        }
        user.ap.dbe->CommitTrans();
        user.ap.showform_APform_aging();
    }
    inquiries::APreport_aging& form() { return *user.ap.frm_aging; }
    void find() { EXPECT_EQ(form().press(104), controls::Refusal::none); }
    std::vector<std::string> totals() {
        std::vector<std::string> found;
        for (int row = 0; row < form().dbgrid1.array.used_rows(); ++row)
            if (form().dbgrid1.cell(row, "gross amount") == "total       ")
                found.push_back(std::to_string(row) + ": " + form().dbgrid1.cell(row, "open amount"));
        return found;
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(AgingTotals, FindWithinAFillGivesTheTotalsOfThatOne) {
    find();
    EXPECT_THAT(totals(), ElementsAre("800: 800.00", "1601: 800.00"));
    // At each moment at which the host may go on.
    for (int moment = 1; moment <= 4; ++moment) {
        SCOPED_TRACE(moment);
        int pumps = 0;
        user.desk.on_pump = [&] {
            if (++pumps == moment) find();
        };
        find();
        EXPECT_GT(pumps, moment);
        EXPECT_THAT(totals(), ElementsAre("800: 800.00", "1601: 800.00"));
    }
}

TEST_F(AgingTotals, FindOfOneVendorWithinAFillOfAllIsOfThatVendor) {
    int pumps = 0;
    user.desk.on_pump = [&] {
        if (++pumps != 2) return;
        EXPECT_EQ(form().cmbvendor.type("V1002"), controls::Refusal::none);
        find();
    };
    find();
    EXPECT_THAT(totals(), ElementsAre("800: 800.00"));
    EXPECT_EQ(form().dbgrid1.cell(0, "vendor no"), "V1002");
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 801);
}

TEST_F(AgingTotals, FindOfAnInvalidDateWithinAFillEndsIt) {
    for (int moment = 1; moment <= 4; ++moment) {
        SCOPED_TRACE(moment);
        EXPECT_EQ(form().txtdate.type("16/03/2026"), controls::Refusal::none);
        int pumps = 0;
        user.desk.on_pump = [&] {
            if (++pumps != moment) return;
            EXPECT_EQ(form().txtdate.type("31/02/2026"), controls::Refusal::none);
            find();
        };
        find();
        EXPECT_EQ(form().dbgrid1.array.used_rows(), 0);
        EXPECT_FALSE(form().Progress1.visible());
    }
}

TEST_F(AgingTotals, ItemsOfNoVendorHaveATotalWhenTheyAreAlone) {
    company.db().Execute("UPDATE AP_transaction_table SET vendor_no = NULL WHERE vendor_no = 'V1001'");
    find();
    EXPECT_THAT(totals(), ElementsAre("1600: 800.00"));
    company.db().Execute("UPDATE AP_transaction_table SET vendor_no = ''");
    find();
    EXPECT_THAT(totals(), ElementsAre("1600: 1,600.00"));
}

}  // namespace brimley::testing
