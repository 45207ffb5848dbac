#include "kernel/ledger_test.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GlChecks : public LedgerTest {
  protected:
    void SetUp() override {
        LedgerTest::SetUp();
        lines = company.dynaset("SELECT * FROM GL_transaction_table WHERE 1 = 2");
    }
    void add_line(const char* accno, double amount, double base_amount) {
        lines.AddNew();
        lines.set("accno", accno);
        lines.set("amount", amount);
        lines.set("base_amount", base_amount);
        lines.Update();
    }
    [[nodiscard]] bool passes() {
        auto accounts = company.dynaset("SELECT * FROM Account_master_table");
        return kernel.check_gl_document(lines, accounts);
    }

    store::Recordset lines;
};

TEST_F(GlChecks, EmptyDocumentPasses) {
    EXPECT_TRUE(passes());
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlChecks, DebitsEqualToCreditsPass) {
    add_line("5000", 100, 100);
    add_line("2100", 100, 100);
    EXPECT_TRUE(passes());
}

TEST_F(GlChecks, DifferenceOfACentIsTold) {
    add_line("5000", 100, 100);
    add_line("2100", 100, 100.01);
    EXPECT_FALSE(passes());
    EXPECT_THAT(messages(), ElementsAre("Document is not balance (debit <> credit)"));
    EXPECT_EQ(outside.pumps_before_message, 1);
}

TEST_F(GlChecks, OnlyBaseAmountsCount) {
    add_line("5000", 100, 125);
    add_line("2100", 90, 125);
    EXPECT_TRUE(passes());
}

TEST_F(GlChecks, SumsThatCancelAfterRoundingPass) {
    add_line("5000", 0.1, 0.1);
    add_line("5000", 0.2, 0.2);
    add_line("2100", 0.3, 0.3);
    add_line("2100", 0.004, 0.004);
    EXPECT_TRUE(passes());
}

TEST_F(GlChecks, EachStepIsRounded) {
    // Three times 0.004 would be a cent at the end; each is rounded away on its own.
    for (int i = 0; i < 3; ++i)
        add_line("5000", 0.004, 0.004);
    EXPECT_TRUE(passes());
}

TEST_F(GlChecks, InactiveAccountIsToldEvenInABalancedDocument) {
    company.db().Execute("UPDATE Account_master_table SET inactive = TRUE WHERE accno = '2100'");
    add_line("5000", 100, 100);
    add_line("2100", 100, 100);
    EXPECT_FALSE(passes());
    EXPECT_THAT(messages(), ElementsAre("Account 2100 is inactive."));
}

TEST_F(GlChecks, AccountOutsideTheMasterFailsSilently) {
    add_line("9999", 0, 0);
    EXPECT_FALSE(passes());
    EXPECT_THAT(messages(), IsEmpty());
}

// --- rights and parameters

class UserStores : public KernelTest {};

TEST_F(UserStores, RightsAreThoseOfFormAndUser) {
    company.add("User_right_table", {{"form", "APform_invoice"},
                                     {"userid", "anna"},
                                     {"Update", true},
                                     {"Print", false},
                                     {"form_design", true}});
    kernel::UserRights rights;
    kernel.get_user_rights("APform_invoice", "anna", rights);
    EXPECT_TRUE(rights.Update);
    EXPECT_FALSE(rights.Print);
    EXPECT_TRUE(rights.form_design);
}

TEST_F(UserStores, NoRowDeniesUpdateAndPrintAndLeavesFormDesign) {
    kernel::UserRights rights{true, true, true};
    kernel.get_user_rights("APform_invoice", "bert", rights);
    EXPECT_FALSE(rights.Update);
    EXPECT_FALSE(rights.Print);
    EXPECT_TRUE(rights.form_design);
}

TEST_F(UserStores, QuoteInAUserNameGivesNoRights) {
    company.add("User_right_table",
                {{"form", "APform_invoice"}, {"userid", "anna"}, {"Update", true}, {"Print", true}});
    kernel::UserRights rights{true, true, false};
    EXPECT_THROW(kernel.get_user_rights("APform_invoice", "x' OR '1' = '1", rights), store::Error);
    EXPECT_FALSE(rights.Update);
    EXPECT_FALSE(rights.Print);
}

TEST_F(UserStores, ParameterAccountIsTheDefaultOne) {
    company.add(
        "Account_Parameters_table",
        {{"module", "AP"}, {"parameter_name", "AP discount account"}, {"default", false}, {"accno", "7001"}});
    EXPECT_EQ(kernel.parameter_account("AP", "AP discount account"), "");
    company.add(
        "Account_Parameters_table",
        {{"module", "AP"}, {"parameter_name", "AP discount account"}, {"default", true}, {"accno", "7000"}});
    EXPECT_EQ(kernel.parameter_account("AP", "AP discount account"), "7000");
    EXPECT_EQ(kernel.parameter_account("GL", "AP discount account"), "");
}

}  // namespace brimley::testing
