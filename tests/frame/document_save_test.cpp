// The save of a new document and its one landing place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plain_form.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class DocumentSave : public ::testing::Test {
  protected:
    DocumentSave() {
        EXPECT_EQ(form->press(105), controls::Refusal::none);
        form->cmbcompany.set("1");
        form->cmbfyear.set("2026");
    }
    void expect_nothing_stored() {
        EXPECT_EQ(host.company.list("SELECT fkey FROM Payment_header_table"), "");
        EXPECT_EQ(host.company.list("SELECT fkey FROM Payment_transaction_table"), "");
        EXPECT_EQ(host.company.list("SELECT fkeyno FROM Next_number_fkey_table WHERE doctype = 'py'"), "1");
        EXPECT_EQ(form->txtdocno.text(), frame::kNewDocno);
        EXPECT_EQ(form->txtfkey.text() + form->txtglfkey.text(), "");
        EXPECT_EQ(form->mode(), frame::Mode::new_entry);
    }

    PlainHost host;
    std::shared_ptr<PlainForm> form = host.show({}, 0);
};

TEST_F(DocumentSave, StoresHeaderLinesAndTheKeyOfTheLedger) {
    EXPECT_EQ(form->press(101), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("saved"));
    EXPECT_EQ(host.company.list("SELECT docno, fkey, GLFKEY, user_created FROM Payment_header_table"),
              "PY-26-00001 1py-1 1gl-7 anna");
    EXPECT_EQ(host.company.list("SELECT fkey FROM Payment_transaction_table"), "1py-1");
    EXPECT_EQ(form->mode(), frame::Mode::read);
}

TEST_F(DocumentSave, RefusedEntryHasItsMessageAndNoOther) {
    form->save.valid = false;
    EXPECT_EQ(form->press(101), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("not valid"));
    expect_nothing_stored();
}

TEST_F(DocumentSave, ValidationThatBreaksOffIsReportedAsAFailedSave) {
    form->save.validation_fails = true;
    EXPECT_EQ(form->press(101), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("not saved"));
    expect_nothing_stored();
}

TEST_F(DocumentSave, FailureAfterTheHeaderLeavesNothingTheNumberIncluded) {
    form->save.posts = false;
    EXPECT_EQ(form->press(101), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("not saved"));
    expect_nothing_stored();
}

// As Save of a form that was opened without the right, which says nothing; the toolbar shows it as refused.
TEST_F(DocumentSave, RightTakenBackMeanwhileRefusesTheSaveUntilItIsGivenAgain) {
    host.company.db().Execute("UPDATE User_right_table SET Update = FALSE WHERE userid = 'anna'");
    EXPECT_EQ(form->press(101), controls::Refusal::disabled);
    EXPECT_THAT(host.messages(), ElementsAre());
    expect_nothing_stored();
    EXPECT_EQ(form->press(401), controls::Refusal::disabled);
    EXPECT_THAT(host.messages(), ElementsAre());

    host.company.db().Execute("UPDATE User_right_table SET Update = TRUE WHERE userid = 'anna'");
    EXPECT_EQ(form->press(101), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("saved"));
}

TEST_F(DocumentSave, RowOfRightsThatIsGoneRefusesTheSave) {
    host.company.db().Execute("DELETE * FROM User_right_table WHERE form = 'APform_revalue'");
    EXPECT_EQ(form->press(101), controls::Refusal::disabled);
    expect_nothing_stored();
}

}  // namespace brimley::testing
