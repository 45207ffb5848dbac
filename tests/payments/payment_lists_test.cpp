// The report of a card payment and of the list of checks.
#include <gmock/gmock.h>

#include <filesystem>

#include "kinds_of_payments.h"
#include "payment_entry.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/void_check/apform_void_check.h"
#include "printing/pdf_file.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

class PaymentLists : public ::testing::Test {
  protected:
    PaymentLists() {
        user.ap.BRIMLEY_PATH = reports.path();
        fs::create_directories(fs::path(reports.path()) / "User report" / "anna");
        user.desk.folders.insert(user.ap.BRIMLEY_PATH + "\\User report\\anna");
    }
    void set_up_page(const char* form) {
        auto formats = company.db().OpenRecordset("SELECT * FROM Report_format_table WHERE 1 = 2",
                                                  store::RecordsetKind::dynaset);
        formats.AddNew();
        formats.set("user", "anna");
        formats.set("form_name", form);
        formats.set("Orientation", "1");
        formats.set("font_name", "Arial");
        formats.set("font_size", 6.0);
        formats.set("row_height", 8.0);
        for (const char* const margin : {"top_margin", "bottom_margin", "left_margin", "right_margin"})
            formats.set(margin, 20.0);
        formats.set("disabled_evenrow_color", true);
        formats.Update();
    }
    [[nodiscard]] PdfFile report() const {
        return PdfFile((fs::path(reports.path()) / "User report/anna/comparative_income093000.pdf").string());
    }
    [[nodiscard]] std::vector<std::string> requests() { return std::exchange(user.notifications, {}); }
    [[nodiscard]] std::string request(const std::string& docno) const {
        return "pdf viewer|" + user.ap.BRIMLEY_PATH +
               "\\User report\\anna\\comparative_income093000.pdf|Preview " + docno;
    }

    TemporaryFolder reports;
    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(PaymentLists, PrintUnderTheTitleOfAnotherReport) {
    payments::PaymentForm& entered = enter_card_payment(user);
    auto& card = dynamic_cast<payments::APform_creditcard_payment&>(entered);
    EXPECT_EQ(card.press(101), controls::Refusal::none);
    card.create_acrobat();
    EXPECT_THAT(requests(), IsEmpty());
    set_up_page("APform_creditcard_payment");
    card.create_acrobat();
    EXPECT_THAT(requests(), ElementsAre(request("PC-26-00001")));
    const std::string text = report().text();
    EXPECT_NE(text.find("COMPARATIVE INCOME STATEMENT"), std::string::npos) << text;
    EXPECT_NE(text.find("gross amount"), std::string::npos) << text;
}

TEST_F(PaymentLists, ChecksArePrintedInTheColumnsThatAreSeenInTheirOrder) {
    user.ap.showform_APform_payment();
    save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "100.00"}}});
    begin_payment(*user.ap.frm_payment, "V1001");
    EXPECT_EQ(user.ap.frm_payment->cmbpayby.type("Check"), controls::Refusal::none);
    EXPECT_EQ(user.ap.frm_payment->cmbbank.type("MAIN"), controls::Refusal::none);
    EXPECT_EQ(user.ap.frm_payment->txtcheck.type("901"), controls::Refusal::none);
    EXPECT_EQ(user.ap.frm_payment->txtcheckdate.type("16/03/2026"), controls::Refusal::none);
    edit_item_cell(*user.ap.frm_payment, 0, "pay amount", "100.00");
    pay_total(*user.ap.frm_payment);
    EXPECT_EQ(user.ap.frm_payment->press(101), controls::Refusal::none);
    user.ap.showform_APform_void_check();
    auto& checks = *user.ap.frm_void_check;
    EXPECT_EQ(checks.press(104), controls::Refusal::none);
    EXPECT_EQ(checks.dbgrid1.double_click(0), controls::Refusal::none);
    checks.dbgrid1.columns[static_cast<std::size_t>(checks.dbgrid1.get_column("remit to"))].visible = false;
    EXPECT_EQ(checks.dbgrid1.move_column(checks.dbgrid1.get_column("check no"), 13), controls::Refusal::none);
    set_up_page("APform_void_check");
    static_cast<void>(requests());
    checks.create_acrobat();
    EXPECT_THAT(requests(), ElementsAre(request("PY-26-00001")));
    const PdfFile file = report();
    EXPECT_EQ(file.text().find("remit to"), std::string::npos);
    EXPECT_GT(file.word("901").left, file.word("PY-26-00001").left);
    EXPECT_GT(file.word("901").width(), 0);
}

}  // namespace brimley::testing
