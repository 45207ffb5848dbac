#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_tables.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;

class TwoUsers : public ::testing::Test {
  protected:
    static EnteredInvoice invoice(const char* kind = "Invoice") {
        EnteredInvoice entered;
        entered.kind = kind;
        entered.lines = {{"5000", "GST5", "taxable amount", "100.00"}};
        return entered;
    }
    // Enters a document at this desk; its number when it was saved, else "".
    static std::string save(DeskOfUser& user, const EnteredInvoice& entered = invoice()) {
        if (!user.ap.frm_invoice) user.ap.showform_APform_invoice();
        invoices::APform_invoice& form = *user.ap.frm_invoice;
        if (form.mode() == frame::Mode::read) enter(form, entered);
        EXPECT_EQ(form.press(101), controls::Refusal::none);
        return form.mode() == frame::Mode::read ? form.txtdocno.text() : "";
    }

    CompanyCopy company{sample_original()};
    store::OpenCompany others_company = company.second_user();
    DeskOfUser anna{company.open()};
    DeskOfUser bert{others_company};
};

TEST_F(TwoUsers, AlternatingSavesGetDistinctConsecutiveNumbers) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(save(anna), fmt::format("IP-26-{:05}", 2 * i + 1));
        EXPECT_EQ(save(bert), fmt::format("IP-26-{:05}", 2 * i + 2));
    }
    EXPECT_EQ(company.list("SELECT fkey, GLFKEY FROM AP_header_table"),
              "1ip-1 1gl-1 | 1ip-2 1gl-2 | 1ip-3 1gl-3 | 1ip-4 1gl-4 | 1ip-5 1gl-5 | 1ip-6 1gl-6");
    EXPECT_EQ(company.list("SELECT amount FROM Balance_table WHERE accno = '5000' AND ledgertype = 'A'"),
              "600");
}

TEST_F(TwoUsers, KindsCountForThemselvesAndShareTheLedgersNumbers) {
    EXPECT_EQ(save(anna), "IP-26-00001");
    EXPECT_EQ(save(bert, invoice("Debit Note")), "VDN-26-00001");
    EXPECT_EQ(company.list("SELECT fkey, GLFKEY FROM AP_header_table"), "1ip-1 1gl-1 | 1vdn-1 1gl-2");
}

TEST_F(TwoUsers, SaveWaitsForTheOtherUsersAndTakesTheNextNumber) {
    company.workspace().BeginTrans();
    company.db().Execute("UPDATE Docno_master_table SET nextdocno = 8 WHERE doctype = 'ip'");
    bert.desk.on_wait = [&](int wait) {
        if (wait == 3) company.workspace().CommitTrans();
    };
    EXPECT_EQ(save(bert), "IP-26-00008");
    EXPECT_EQ(bert.desk.waits.size(), 3U);
}

TEST_F(TwoUsers, SaveWaitsForWhoWritesAloneAndIsStored) {
    company.workspace().begin_alone();
    company.db().Execute("UPDATE Docno_master_table SET nextdocno = 8 WHERE doctype = 'ip'");
    bert.desk.on_wait = [&](int wait) {
        if (wait == 3) company.workspace().CommitTrans();
    };
    EXPECT_EQ(save(bert), "IP-26-00008");
    EXPECT_EQ(bert.desk.waits.size(), 3U);
}

TEST_F(TwoUsers, SaveThatWaitsInVainFailsAndSucceedsLater) {
    const AllTables before = all_tables(company.db());
    company.workspace().BeginTrans();
    company.db().Execute("UPDATE Docno_master_table SET nextdocno = 8 WHERE doctype = 'ip'");
    EXPECT_EQ(save(bert), "");
    EXPECT_THAT(bert.messages(), ElementsAre("Add new Invoice failed"));
    EXPECT_EQ(bert.desk.waits.size(), 10U);
    company.workspace().Rollback();
    EXPECT_EQ(difference(before, all_tables(company.db())), "");
    EXPECT_EQ(save(bert), "IP-26-00001");
    EXPECT_THAT(bert.messages(), Contains("Add new Invoice complete"));
}

// What only reads goes on, and the entry can be dropped (the acts that write:
// tests/host/taken_right_test.cpp).
TEST_F(TwoUsers, EntryWhoseRightWasTakenBackCanBeDroppedAndReadingGoesOn) {
    EXPECT_EQ(save(anna), "IP-26-00001");
    invoices::APform_invoice& form = *anna.ap.frm_invoice;
    EXPECT_EQ(form.press(106), controls::Refusal::none);
    others_company.database->Execute(
        "UPDATE User_right_table SET Update = FALSE WHERE form = 'APform_invoice'");
    static_cast<void>(anna.messages());
    EXPECT_EQ(form.press(101), controls::Refusal::disabled);
    EXPECT_EQ(form.mode(), frame::Mode::edit);
    anna.desk.answers = {false};
    EXPECT_EQ(form.press(106), controls::Refusal::none);
    EXPECT_EQ(form.mode(), frame::Mode::read);
    EXPECT_EQ(form.press(136), controls::Refusal::none);
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00001");
    EXPECT_THAT(anna.messages(), ::testing::IsEmpty());
}

}  // namespace brimley::testing
