// The invoice form where a host or the company gives it less than it might expect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "presentation/colours.h"
#include "support/sample_host.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FormEdges : public ::testing::Test {
  protected:
    invoices::APform_invoice& show() {
        user.ap.showform_APform_invoice();
        return *user.ap.frm_invoice;
    }

    // Invoices of 10 each.
    void save_invoices(DeskOfUser& saver, int count) {
        for (int i = 0; i < count; ++i) {
            auto& form = *saver.ap.frm_invoice;
            enter(form, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "10"}}});
            EXPECT_EQ(form.press(101), Refusal::none);
            EXPECT_THAT(saver.messages(), ElementsAre("Add new Invoice complete"));
        }
    }
    // "Open Invoice Only" with the last of three invoices on screen; the first is paid.
    invoices::APform_invoice& show_open_invoices() {
        auto& form = show();
        save_invoices(user, 3);
        company.db().Execute("UPDATE AP_header_table SET fully_paid = TRUE WHERE docno = 'IP-26-00001'");
        EXPECT_EQ(form.press(1013), Refusal::none);
        EXPECT_EQ(form.txtdocno.text(), "IP-26-00003");
        return form;
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(FormEdges, EvenRowsArePaintedAsTheCompanyLastChose) {
    company.db().Execute("UPDATE Recent_value_table SET [Value] = '1' WHERE control_name = 'evenrow_color'");
    EXPECT_EQ(show().dbgrid1.even_row_colour, presentation::brimley_palette()[presentation::kEvenRowSlot]);
    company.db().Execute("UPDATE Recent_value_table SET [Value] = '0' WHERE control_name = 'evenrow_color'");
    EXPECT_EQ(show().dbgrid1.even_row_colour, controls::kWhite);
    company.db().Execute("DELETE * FROM Recent_value_table");
    EXPECT_EQ(show().dbgrid1.even_row_colour, controls::kWhite);
}

TEST_F(FormEdges, HostWithoutAWorkspaceIsToldThatTheSaveFailed) {
    user.ap.dbe = nullptr;
    auto& form = show();
    enter(form, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "10"}}});
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Invoice failed"));
    EXPECT_EQ(form.mode(), frame::Mode::new_entry);
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

TEST_F(FormEdges, TaxAuthorityThatIsGoneFailsTheSaveSilently) {
    auto& form = show();
    enter(form, {"Invoice", "V1001", "USD", "", {{"5000", "GST5", "gross amount", "105"}}});
    company.db().Execute("DELETE * FROM Tax_authority_table WHERE tax_authority = 'GST'");
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Invoice failed"));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

TEST_F(FormEdges, TaxAuthorityWithoutARecoverableAccountFailsTheSaveSilently) {
    auto authority = company.dynaset("SELECT * FROM Tax_authority_table WHERE tax_authority = 'GST'");
    authority.Edit();
    authority.set("acc_recoverable", store::Value());
    authority.Update();
    auto& form = show();
    enter(form, {"Invoice", "V1001", "USD", "", {{"5000", "GST5", "gross amount", "105"}}});
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Invoice failed"));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

TEST_F(FormEdges, ControlsOfAClosedFormAreOutOfReach) {
    auto& form = show();
    EXPECT_EQ(form.txtdocno.type("IP-26-00001"), Refusal::none);
    form.unload_form();
    EXPECT_EQ(form.txtdocno.type("IP-26-00002"), Refusal::hidden);
    EXPECT_EQ(form.txtdocno.press_enter(), Refusal::hidden);
    EXPECT_EQ(form.dbgrid1.visit_cell(0, 0), Refusal::hidden);
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00001");
    EXPECT_THAT(user.messages(), IsEmpty());
}

TEST_F(FormEdges, HiddenColumnIsNotReached) {
    auto& form = show();
    form.dbgrid1.columns[3].visible = false;
    EXPECT_EQ(form.dbgrid1.visit_cell(0, 3), Refusal::hidden);
    EXPECT_EQ(form.dbgrid1.column(), 0);
}

// "Last" of the open invoices is the oldest of them.
TEST_F(FormEdges, UnknownNumberInNewAmongOpenInvoicesLeadsToTheLastOfTheirList) {
    auto& form = show_open_invoices();
    EXPECT_EQ(form.press(105), Refusal::none);
    user.ap.APform_invoice_goto_docno("IP-26-00009");
    EXPECT_THAT(user.messages(), ElementsAre("IP-26-00009 not found."));
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00002");
    EXPECT_EQ(form.txtfkey.text(), "1ip-2");
    EXPECT_EQ(form.cmbopendoc.text(), "IP-26-00002");
}

// All documents are gone, and another desk has saved new ones since.
TEST_F(FormEdges, UnknownNumberWithNothingShownAmongOpenInvoicesLeadsToTheLastOfTheirList) {
    auto& form = show_open_invoices();
    company.db().Execute("DELETE * FROM AP_header_table");
    EXPECT_EQ(form.press(109), Refusal::none);
    EXPECT_EQ(form.txtdocno.text(), frame::kNewDocno);
    DeskOfUser carl{company.open()};
    carl.ap.showform_APform_invoice();
    save_invoices(carl, 2);
    user.ap.APform_invoice_goto_docno("IP-26-00009");
    EXPECT_THAT(user.messages(), ElementsAre("IP-26-00009 not found."));
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00004");
    EXPECT_EQ(form.cmbopendoc.text(), "IP-26-00004");
}

}  // namespace brimley::testing
