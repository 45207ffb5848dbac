// Two windows on one document: what one has done is not undone by what the other still shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_tables.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StaleScreens : public ::testing::Test {
  protected:
    // Anna saves an invoice of 100.00; bert looks at it too.
    void SetUp() override {
        EnteredInvoice invoice;
        invoice.lines = {{"5000", "GST5", "taxable amount", "100.00"}};
        anna.ap.showform_APform_invoice();
        enter(form_of(anna), invoice);
        press(anna, 101);
        bert.ap.showform_APform_invoice();
        EXPECT_EQ(form_of(bert).txtdocno.text(), "IP-26-00001");
        static_cast<void>(anna.messages());
    }
    static invoices::APform_invoice& form_of(DeskOfUser& user) { return *user.ap.frm_invoice; }
    static void press(DeskOfUser& user, int id) {
        EXPECT_EQ(form_of(user).press(id), controls::Refusal::none);
    }
    static void press_and_agree(DeskOfUser& user, int id) {
        user.desk.answers = {true};
        press(user, id);
    }
    void edit_to(DeskOfUser& user, const char* amount) {
        press(user, 106);
        edit_line_cell(form_of(user), 0, "taxable amount", amount);
        press(user, 101);
    }
    void pay(const char* flags) { company.db().Execute(std::string("UPDATE AP_header_table SET ") + flags); }
    std::string payable() {
        return company.list("SELECT amount FROM Balance_table WHERE accno = '2000' AND ledgertype = 'A'");
    }

    CompanyCopy company{sample_original()};
    store::OpenCompany others_company = company.second_user();
    DeskOfUser anna{company.open()};
    DeskOfUser bert{others_company};
};

TEST_F(StaleScreens, DocumentIsVoidedOnce) {
    press_and_agree(anna, 1008);
    const AllTables voided = all_tables(company.db());
    press_and_agree(bert, 1008);
    EXPECT_THAT(bert.messages(), ElementsAre("Invoice was void."));
    EXPECT_EQ(form_of(bert).chkvoid.value(), 0);
    EXPECT_EQ(difference(voided, all_tables(company.db())), "");
    EXPECT_EQ(payable(), "0");
}

TEST_F(StaleScreens, DocumentThatWasEditedElsewhereIsNotVoided) {
    edit_to(anna, "120.00");
    const AllTables edited = all_tables(company.db());
    press_and_agree(bert, 1008);
    EXPECT_THAT(bert.messages(), IsEmpty());
    EXPECT_EQ(difference(edited, all_tables(company.db())), "");
    press(bert, 136);
    press_and_agree(bert, 1008);
    EXPECT_THAT(bert.messages(), ElementsAre("Invoice IP-26-00001 is void."));
    EXPECT_EQ(payable(), "0");
}

TEST_F(StaleScreens, DocumentThatWasPaidMeanwhileIsNotVoided) {
    pay("paid = TRUE");
    press_and_agree(bert, 1008);
    EXPECT_THAT(bert.messages(), ElementsAre("Invoice was partially paid."));
    pay("fully_paid = TRUE");
    press_and_agree(bert, 1008);
    EXPECT_THAT(bert.messages(), ElementsAre("Invoice was paid."));
    EXPECT_EQ(company.list("SELECT void FROM AP_header_table"), "FALSE");
}

TEST_F(StaleScreens, EditBeginsWithWhatIsStored) {
    edit_to(anna, "120.00");
    edit_to(bert, "130.00");
    EXPECT_THAT(bert.messages(), ElementsAre("Update complete"));
    EXPECT_EQ(company.list("SELECT owing_balance FROM Vendor_table WHERE vendor_no = 'V1001'"), "136.5");
    EXPECT_EQ(payable(), "136.5");
}

TEST_F(StaleScreens, DocumentThatWasVoidedMeanwhileIsNotOpenedForEditing) {
    press_and_agree(anna, 1008);
    press(bert, 106);
    EXPECT_THAT(bert.messages(), ElementsAre("IP-26-00001 was void."));
    EXPECT_EQ(form_of(bert).mode(), frame::Mode::read);
    EXPECT_EQ(form_of(bert).chkvoid.value(), 1);
}

TEST_F(StaleScreens, EditOfADocumentThatWasVoidedSinceItBeganFails) {
    press(bert, 106);
    press_and_agree(anna, 1008);
    const AllTables voided = all_tables(company.db());
    press(bert, 101);
    EXPECT_THAT(bert.messages(), ElementsAre("Update failed."));
    EXPECT_EQ(difference(voided, all_tables(company.db())), "");
}

TEST_F(StaleScreens, EditOfADocumentThatWasPaidSinceItBeganFails) {
    press(bert, 106);
    pay("paid = TRUE");
    press(bert, 101);
    EXPECT_THAT(bert.messages(), ElementsAre("Update failed."));
    EXPECT_EQ(form_of(bert).mode(), frame::Mode::edit);
}

TEST_F(StaleScreens, EditOfADocumentThatIsGoneIsToldAtTheStartAndAtTheEnd) {
    press(bert, 106);
    company.db().Execute("DELETE * FROM AP_header_table");
    press(bert, 101);
    EXPECT_THAT(bert.messages(), ElementsAre("No Header record", "Update failed."));
    press(anna, 106);
    EXPECT_THAT(anna.messages(), ElementsAre("Document no. IP-26-00001 not found"));
    EXPECT_EQ(form_of(anna).mode(), frame::Mode::read);
}

TEST_F(StaleScreens, DocumentThatIsGoneCanBeNeitherVoidedNorHeld) {
    company.db().Execute("DELETE * FROM AP_header_table");
    press_and_agree(bert, 1008);
    press_and_agree(bert, 1009);
    EXPECT_THAT(bert.messages(), ElementsAre("No Header record", "IP-26-00001 not exist."));
    EXPECT_EQ(payable(), "105");
}

}  // namespace brimley::testing
