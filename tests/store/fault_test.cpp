// A save that fails at its n-th call to the engine leaves the company as it was, for every n.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"
#include "support/faulty_engine.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::expect_error;
using testing::Faults;
using testing::SmallCompany;

class Fault : public ::testing::Test {
  protected:
    void SetUp() override {
        company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}, {"nextdocno", 5}});
        company_.add("Header_table", {{"docno", "a"}, {"amount", 10}});
        before_ = contents();
    }

    // Everything in the company, as another user sees it.
    std::string contents() {
        auto other = company_.second_user();
        std::string all;
        for (const auto& table : testing::small_catalog().tables()) {
            Recordset rows =
                other.database->OpenRecordset("SELECT * FROM " + table.name, store::RecordsetKind::snapshot);
            for (; !rows.at_eof(); rows.MoveNext())
                for (int column = 0; column < rows.column_count(); ++column)
                    all += rows.column(column).text() + "|";
        }
        return all;
    }

    // A small document, as a form saves it.
    static void save(store::OpenCompany& company) {
        company.workspace->BeginTrans();
        Recordset counter = company.database->OpenRecordset(
            "SELECT * FROM Counter_table WHERE company = 1 AND doctype = 'ip'",
            store::RecordsetKind::dynaset);
        counter.LockEdits(true);
        counter.Edit();
        const std::string docno = "ip" + counter.text("nextdocno");
        counter.set("nextdocno", counter.number("nextdocno") + 1);
        counter.Update();
        Recordset header =
            company.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::dynaset);
        header.FindFirst("docno = 'a'");
        header.Edit();
        header.set("amount", 11);
        header.Update();
        header.AddNew();
        header.set("docno", docno);
        header.Update();
        header.Bookmark(header.LastModified());
        company.database->Execute("UPDATE Header_table SET paid = TRUE WHERE docno = " +
                                  store::quoted(docno));
        Recordset lines = company.database->OpenRecordset("SELECT * FROM Line_table WHERE 1 = 2",
                                                          store::RecordsetKind::dynaset);
        lines.AddNew();
        lines.set("docno", header.field("docno"));
        lines.Update();
        company.workspace->CommitTrans();
    }

    SmallCompany company_;
    std::string before_;
};

class FaultOfKind : public Fault, public ::testing::WithParamInterface<std::tuple<ErrorKind, bool>> {};

TEST_P(FaultOfKind, AnyCallThatFailsLeavesTheCompanyAsItWas) {
    const auto [kind, for_good] = GetParam();
    bool saved = false;
    for (int nth = 1; !saved; ++nth) {
        ASSERT_LT(nth, 100);
        auto faults = std::make_shared<Faults>();
        faults->kind = kind;
        auto user = company_.second_user(testing::faulty(faults));
        faults->arm(nth, for_good);
        try {
            save(user);
            saved = true;
            EXPECT_EQ(faults->calls, nth - 1);
        } catch (const store::Error& error) {
            const bool in_doubt = kind == ErrorKind::lost && faults->last_commit == nth;
            EXPECT_EQ(error.kind(), in_doubt ? ErrorKind::commit_in_doubt : kind) << error.what();
            user.workspace->Rollback();
            EXPECT_FALSE(user.workspace->in_transaction());
            EXPECT_EQ(contents(), before_) << "call " << nth;
        }
    }
    EXPECT_NE(contents(), before_);
    EXPECT_EQ(company_.list("SELECT nextdocno FROM Counter_table"), "6");
    EXPECT_EQ(company_.list("SELECT docno FROM Line_table"), "ip5");
}

INSTANTIATE_TEST_SUITE_P(, FaultOfKind,
                         ::testing::Combine(::testing::Values(ErrorKind::io, ErrorKind::locked,
                                                              ErrorKind::lost),
                                            ::testing::Bool()));

TEST_F(Fault, AfterAFailureOfTheDiskOnlyRollbackHelps) {
    auto faults = std::make_shared<Faults>();
    auto user = company_.second_user(testing::faulty(faults));
    user.workspace->BeginTrans();
    user.database->Execute("UPDATE Header_table SET amount = 1");
    faults->arm(1, false);
    expect_error(ErrorKind::io, [&] { user.database->Execute("UPDATE Header_table SET amount = 2"); });
    expect_error(ErrorKind::state, [&] { user.database->Execute("UPDATE Header_table SET amount = 3"); });
    expect_error(ErrorKind::state, [&] { user.workspace->CommitTrans(); });
    user.workspace->Rollback();
    EXPECT_EQ(contents(), before_);
    user.database->Execute("UPDATE Header_table SET amount = 4");
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "4");
}

TEST_F(Fault, SnapshotThatCannotBeginLeavesNothingOpen) {
    auto faults = std::make_shared<Faults>();
    auto user = company_.second_user(testing::faulty(faults));
    faults->arm(1, false);
    expect_error(ErrorKind::io, [&] { user.workspace->begin_snapshot(); });
    EXPECT_FALSE(user.workspace->in_transaction());
    user.workspace->begin_snapshot();
    user.workspace->Rollback();
    user.database->Execute("UPDATE Header_table SET amount = 4");
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "4");
}

TEST_F(Fault, LostConnectionAnswersNothingMore) {
    auto faults = std::make_shared<Faults>();
    faults->kind = ErrorKind::lost;
    auto user = company_.second_user(testing::faulty(faults));
    faults->arm(1, false);
    expect_error(ErrorKind::lost, [&] {
        (void)user.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::snapshot);
    });
    expect_error(ErrorKind::lost, [&] {
        (void)user.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::snapshot);
    });
    expect_error(ErrorKind::lost, [&] { user.workspace->BeginTrans(); });
}

TEST_F(Fault, CommitInDoubtIsNeverRepeated) {
    for (const bool done : {false, true}) {
        auto faults = std::make_shared<Faults>();
        faults->kind = ErrorKind::commit_in_doubt;
        faults->commit_done = done;
        auto user = company_.second_user(testing::faulty(faults));
        user.workspace->BeginTrans();
        user.database->Execute("UPDATE Header_table SET amount = 77");
        faults->arm(1, false);
        expect_error(ErrorKind::commit_in_doubt, [&] { user.workspace->CommitTrans(); });
        expect_error(ErrorKind::state, [&] { user.workspace->CommitTrans(); });
        user.workspace->Rollback();
        EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), done ? "77" : "10");
    }
}

TEST_F(Fault, FailedCommitOfALockedEditGivesTheLockBack) {
    auto faults = std::make_shared<Faults>();
    auto user = company_.second_user(testing::faulty(faults));
    Recordset rows = user.database->OpenRecordset("SELECT * FROM Header_table WHERE docno = 'a'",
                                                  store::RecordsetKind::dynaset);
    rows.LockEdits(true);
    rows.Edit();
    rows.set("amount", 12);
    faults->arm(3, false);  // after preparing and writing
    expect_error(ErrorKind::io, [&] { rows.Update(); });
    EXPECT_EQ(contents(), before_);
    company_.db().Execute("UPDATE Header_table SET amount = 13");
}

TEST_F(Fault, FailedWriteUnderALockGivesTheLockBack) {
    auto faults = std::make_shared<Faults>();
    auto user = company_.second_user(testing::faulty(faults));
    Recordset rows = user.database->OpenRecordset("SELECT * FROM Header_table WHERE docno = 'a'",
                                                  store::RecordsetKind::dynaset);
    rows.LockEdits(true);
    rows.Edit();
    rows.set("amount", 12);
    faults->arm(2, false);
    expect_error(ErrorKind::io, [&] { rows.Update(); });
    company_.db().Execute("UPDATE Header_table SET amount = 13");
    rows.CancelUpdate();
    rows.MoveFirst();
    EXPECT_EQ(rows.number("amount"), 13);
}

}  // namespace
}  // namespace brimley
