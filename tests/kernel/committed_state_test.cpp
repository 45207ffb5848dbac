// What the sweeps of faults rely on: a look from outside sees every committed change, and none that was
// rolled back.
#include "support/committed_state.h"

#include <gtest/gtest.h>

#include "support/company_copy.h"

namespace brimley::testing {
namespace {

class Committed : public ::testing::Test {
  protected:
    Committed() {
        company_.add("Vendor_table", {{"vendor_no", "V1"}, {"VENDOR_NAME", "One"}});
        company_.add("Vendor_table", {{"vendor_no", "V2"}, {"VENDOR_NAME", "Two"}});
    }
    // Whether a look before and a look after differ.
    bool is_seen(const std::string& statement) {
        const std::string before = state_.now();
        company_.db().Execute(statement);
        return state_.now() != before;
    }

    CompanyCopy company_;
    CommittedState state_{company_.path()};
};

TEST_F(Committed, NothingDoneIsTheSameState) {
    const std::string before = state_.now();
    EXPECT_NE(company_.list("SELECT * FROM Vendor_table"), "");
    EXPECT_EQ(state_.now(), before);
}

TEST_F(Committed, EveryChangeIsSeen) {
    EXPECT_TRUE(is_seen("UPDATE Vendor_table SET VENDOR_NAME = 'Other' WHERE vendor_no = 'V1'"));
    EXPECT_TRUE(is_seen("UPDATE Vendor_table SET VENDOR_NAME = 'One' WHERE vendor_no = 'V1'"));
    EXPECT_TRUE(is_seen("DELETE * FROM Vendor_table WHERE vendor_no = 'V2'"));
    EXPECT_TRUE(is_seen("DELETE * FROM Vendor_table"));
}

TEST_F(Committed, RowThatTakesThePlaceOfAnotherIsSeen) {
    const std::string before = state_.now();
    company_.workspace().BeginTrans();
    company_.db().Execute("DELETE * FROM Vendor_table WHERE vendor_no = 'V2'");
    company_.add("Vendor_table", {{"vendor_no", "V2"}, {"VENDOR_NAME", "Two"}});
    EXPECT_EQ(state_.now(), before);
    company_.workspace().CommitTrans();
    EXPECT_NE(state_.now(), before);
}

TEST_F(Committed, ChangeInAnyTableIsSeen) {
    for (const store::Table& table : company_.db().catalog().tables()) {
        const std::string before = state_.now();
        company_.add(table.name, {{table.fields.front().name.c_str(), {}}});
        EXPECT_NE(state_.now(), before) << table.name;
    }
}

TEST_F(Committed, WhatIsRolledBackIsNotSeen) {
    const std::string before = state_.now();
    company_.workspace().BeginTrans();
    company_.db().Execute("DELETE * FROM Vendor_table");
    company_.workspace().Rollback();
    EXPECT_EQ(state_.now(), before);
}

}  // namespace
}  // namespace brimley::testing
