#include "kernel/owing_balance.h"

#include "support/kernel_test.h"

namespace brimley::testing {

using kernel::change_owing_balance;
using kernel::OwingChange;
using kernel::OwingRule;

class OwingBalance : public KernelTest {
  protected:
    void SetUp() override {
        company.workspace().BeginTrans();
        company.add("Vendor_table", {{"vendor_no", "NULL"}});
        company.add("Vendor_table", {{"vendor_no", "OWED"}, {"owing_balance", 100}});
        company.add("Vendor_table", {{"vendor_no", "ODD"}, {"owing_balance", 0.125}});
        company.workspace().CommitTrans();
    }
    // The balance of the vendor afterwards, "-" for null.
    std::string after(const char* vendor_no, OwingChange change, OwingRule rule) {
        change_owing_balance(kernel, vendor_no, change, rule);
        return company.list(std::string("SELECT owing_balance FROM Vendor_table WHERE vendor_no = ") +
                            store::quoted(vendor_no));
    }
};

TEST_F(OwingBalance, GrowsByWhatADocumentAddsLessWhatItHadAddedBefore) {
    EXPECT_EQ(after("OWED", {10.25}, kernel::kOwingOfSavedInvoice), "110.25");
    EXPECT_EQ(after("OWED", {20, 10.25}, kernel::kOwingOfSavedInvoice), "120");
    EXPECT_EQ(after("OWED", {-20}, kernel::kOwingOfVoidedInvoice), "100");
    EXPECT_EQ(after("OWED", {-30}, kernel::kOwingOfPayment), "70");
    EXPECT_EQ(after("OWED", {30}, kernel::kOwingOfPrepayment), "100");
    EXPECT_EQ(after("OWED", {-30}, kernel::kOwingOfVoidedCheck), "70");
}

TEST_F(OwingBalance, OfNullIsTheChangeOfASavedInvoice) {
    EXPECT_EQ(after("NULL", {-30, -10}, kernel::kOwingOfSavedInvoice), "-20");
}

TEST_F(OwingBalance, OfNullStaysNullInAVoidOfAnInvoice) {
    EXPECT_EQ(after("NULL", {-30}, kernel::kOwingOfVoidedInvoice), "-");
}

TEST_F(OwingBalance, OfNullHasTheWrongSignAfterAPayment) {
    EXPECT_EQ(after("NULL", {-30}, kernel::kOwingOfPayment), "30");
}

TEST_F(OwingBalance, OfNullIsTheChangeOfAVoidedPrepayment) {
    EXPECT_EQ(after("NULL", {30}, kernel::kOwingOfPrepayment), "30");
}

TEST_F(OwingBalance, OfNullStaysNullInAVoidOfACheck) {
    EXPECT_EQ(after("NULL", {-30}, kernel::kOwingOfVoidedCheck), "-");
}

TEST_F(OwingBalance, IsRoundedToTheEvenCentByAllButTheVoidOfACheck) {
    EXPECT_EQ(after("ODD", {1}, kernel::kOwingOfVoidedCheck), "1.125");
    EXPECT_EQ(after("ODD", {0}, kernel::kOwingOfSavedInvoice), "1.12");
}

TEST_F(OwingBalance, OfAVendorWhoIsNotInTheTableIsNoMatter) {
    for (const OwingRule& rule : {kernel::kOwingOfSavedInvoice, kernel::kOwingOfVoidedInvoice}) {
        change_owing_balance(kernel, "NOBODY", {10}, rule);
    }
    EXPECT_EQ(company.list("SELECT owing_balance FROM Vendor_table"), "- | 100 | 0.125");
}

TEST_F(OwingBalance, HeldByAnotherUserIsLockedUnlessItStaysNull) {
    const auto other = company.second_user();
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE Vendor_table SET vendor_group = 'held'");
    change_owing_balance(kernel, "NULL", {-30}, kernel::kOwingOfVoidedInvoice);
    try {
        change_owing_balance(kernel, "OWED", {-30}, kernel::kOwingOfVoidedInvoice);
        FAIL() << "the row was changed";
    } catch (const store::Error& error) {
        EXPECT_EQ(error.kind(), store::ErrorKind::locked);
    }
}

}  // namespace brimley::testing
