#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_tables.h"
#include "support/template_entry.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Templates : public ::testing::Test {
  protected:
    void SetUp() override { user.ap.showform_APform_invoice(); }
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
    void save_template() {
        enter_template(form());
        press(101);
        ASSERT_THAT(user.messages(), ElementsAre("Add Recurring invoice complete"));
    }
    void save_invoice() {
        EnteredInvoice invoice;
        invoice.lines = {{"5000", "NOTAX", "taxable amount", "100.00"}};
        enter(form(), invoice);
        press(101);
        ASSERT_THAT(user.messages(), ElementsAre("Add new Invoice complete"));
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Templates, NamedTemplateIsShownWhateverTheView) {
    save_template();
    user.ap.showform_APform_invoice();
    form().recurring.recur_fkey = "1recur-1";
    form().recurring.get_recur();
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00001");
    EXPECT_EQ(form().txtrecurname.text(), "Warehouse rent");
    EXPECT_EQ(form().txteffectdate.text(), "01/04/2026");
    EXPECT_TRUE(form().chkrecur.is_set());
    EXPECT_EQ(form().dbgrid1.cell(1, "gross amount"), "210.00");
    EXPECT_FALSE(form().CommandBars1().pressed(1005));
    EXPECT_THAT(user.messages(), IsEmpty());
}

TEST_F(Templates, NoNameAndAnUnknownOneLeaveTheScreen) {
    save_invoice();
    for (const char* fkey : {"", "1recur-1", "1ip-1"}) {
        form().recurring.recur_fkey = fkey;
        form().recurring.get_recur();
        EXPECT_EQ(form().txtdocno.text(), "IP-26-00001") << fkey;
        EXPECT_FALSE(form().chkrecur.is_set()) << fkey;
    }
    EXPECT_THAT(user.messages(), IsEmpty());
}

TEST_F(Templates, SaveTouchesNothingButTheTemplatesAndTheirCounters) {
    save_invoice();
    const AllTables before = all_tables(company.db());
    save_template();
    EXPECT_EQ(difference(before, all_tables(company.db())),
              "AP_recur_header_table AP_recur_transaction_table Docno_master_table Next_number_fkey_table "
              "Trail_table ");
    EXPECT_EQ(company.list("SELECT doctype FROM Docno_master_table WHERE nextdocno > 1 ORDER BY doctype"),
              "gl | ip | recur");
    EXPECT_EQ(company.list("SELECT fkeyno FROM Next_number_fkey_table WHERE doctype = 'recur'"), "2");
}

TEST_F(Templates, WhoMayNotUpdateOnlyLooks) {
    save_template();
    DeskOfUser carl{company.open()};
    company.db().Execute("UPDATE User_right_table SET Update = FALSE WHERE userid = 'carl'");
    carl.ap.BRIMLEY_USER = "carl";
    carl.ap.showform_APform_invoice();
    auto& form = *carl.ap.frm_invoice;
    EXPECT_EQ(form.press(1005), controls::Refusal::none);
    EXPECT_EQ(form.txtdocno.text(), "REC-26-00001");
    for (const int id : {105, 101}) {
        EXPECT_EQ(form.press(id), controls::Refusal::none);
    }
    EXPECT_EQ(form.mode(), frame::Mode::read);
    EXPECT_EQ(form.txtdocno.text(), "REC-26-00001");
    // With the templates gone, New would not be theirs to leave again.
    company.db().Execute("DELETE * FROM AP_recur_header_table");
    EXPECT_EQ(form.press(1005), controls::Refusal::none);
    EXPECT_EQ(form.mode(), frame::Mode::read);
    EXPECT_EQ(form.txtdocno.text(), "** New **");
    EXPECT_THAT(carl.messages(), IsEmpty());
}

TEST_F(Templates, StoredDateThatIsNoneIsTold) {
    save_template();
    company.db().Execute("UPDATE AP_recur_header_table SET begin_date = '20261301'");
    press(1005);
    EXPECT_THAT(user.messages(), ElementsAre("Month is invalid (13)"));
    EXPECT_EQ(form().txteffectdate.text(), "");
    EXPECT_EQ(form().txtexpiredate.text(), "31/03/2027");
    EXPECT_EQ(form().dbgrid1.cell(0, "taxable amount"), "100.00");
}

TEST_F(Templates, FormWithoutACompanyShowsNone) {
    RecordingDesk desk;
    host::APclass ap{desk};
    ap.showform_APform_invoice();
    auto& form = *ap.frm_invoice;
    EXPECT_EQ(form.press(1005), controls::Refusal::none);
    EXPECT_FALSE(form.CommandBars1().pressed(1005));
    form.recurring.recur_fkey = "1recur-1";
    form.recurring.get_recur();
    EXPECT_THAT(desk.messages, IsEmpty());
}

TEST_F(Templates, WalkingGoesAsFarAsTheCounterOfItsOwnKind) {
    for (int i = 0; i < 3; ++i)
        save_template();
    EXPECT_EQ(form().chkrecur.click(false), controls::Refusal::none);
    save_invoice();
    press(109);
    press(1005);
    press(107);
    press(107);
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00001");
    press(108);
    press(108);
    press(108);
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00003");
    press(1002);
    press(108);
    EXPECT_EQ(form().txtdocno.text(), "IP-26-00001");
}

TEST_F(Templates, UnknownNumberInNewInTheViewLeadsToTheNewestTemplate) {
    save_template();
    save_template();
    press(1005);
    press(107);
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00001");
    press(105);
    user.ap.APform_invoice_goto_docno("REC-26-00009");
    EXPECT_THAT(user.messages(), ElementsAre("REC-26-00009 not found."));
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00002");
    EXPECT_EQ(form().txtfkey.text(), "1recur-2");
}

// All templates are gone, and another desk has saved a new one since.
TEST_F(Templates, UnknownNumberWithNothingShownInTheViewLeadsToTheNewestTemplate) {
    save_template();
    press(1005);
    company.db().Execute("DELETE * FROM AP_recur_header_table");
    press(109);
    EXPECT_EQ(form().txtdocno.text(), frame::kNewDocno);
    DeskOfUser carl{company.open()};
    carl.ap.showform_APform_invoice();
    enter_template(*carl.ap.frm_invoice);
    EXPECT_EQ(carl.ap.frm_invoice->press(101), controls::Refusal::none);
    user.ap.APform_invoice_goto_docno("REC-26-00009");
    EXPECT_THAT(user.messages(), ElementsAre("REC-26-00009 not found."));
    EXPECT_EQ(form().txtdocno.text(), "REC-26-00002");
    EXPECT_EQ(form().txtfkey.text(), "1recur-2");
    EXPECT_TRUE(form().CommandBars1().pressed(1005));
}

}  // namespace brimley::testing
