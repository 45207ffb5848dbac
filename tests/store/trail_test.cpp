// The trail: an entry for each transaction that wrote documents, and for nothing else.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "store/trailed_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::add_row;
using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::expect_error;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Trail;
using testing::trailed_catalog;

std::optional<ErrorKind> error_kind_of(const std::function<void()>& act) {
    try {
        act();
        return {};
    } catch (const store::Error& error) {
        return error.kind();
    }
}

TEST_F(Trail, TransactionThatWroteADocumentAppendsOneSignedEntry) {
    EXPECT_EQ(db().end_of_trail(), store::TrailEntry{});
    in_transaction([&] {
        company_.add("Posting_table", {{"entry", "p1"}, {"amount", 10}});
        add_invoice("IP-1");
        company_.add("Posting_table", {{"entry", "p2"}, {"amount", -10}});
    });
    EXPECT_THAT(column("SELECT entry_no FROM Trail_table"), ElementsAre("1"));
    EXPECT_THAT(column("SELECT user_created FROM Trail_table"), ElementsAre("anna"));
    EXPECT_THAT(column("SELECT computer_id FROM Trail_table"), ElementsAre("desk 3"));
    EXPECT_THAT(column("SELECT entry_date FROM Trail_table"), ElementsAre("2026-01-15 09:30:00"));
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    EXPECT_THAT(column("SELECT rows_written FROM Trail_table")[0],
                AllOf(HasSubstr("Invoice_table +"), HasSubstr("\nPosting_table +")));
    EXPECT_THAT(column("SELECT hash FROM Trail_table"), ElementsAre(db().end_of_trail()->hash));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, WritingOutsideATransactionAppendsItsEntryToo) {
    add_invoice("IP-1");
    db().Execute("UPDATE Invoice_table SET void = TRUE WHERE docno = 'IP-1'");
    auto rows = company_.dynaset("SELECT docno, amount FROM Invoice_table");
    rows.Edit();
    rows.set("amount", 12);
    rows.Update();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-1", "invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, NothingIsAppendedForWhatIsNotWatchedOrIsRolledBack) {
    company_.add("Owner_table", {{"vendor_no", "V1"}});
    company_.workspace().BeginTrans();
    add_invoice("IP-1");
    company_.workspace().Rollback();
    EXPECT_THAT(documents(), IsEmpty());
    add_invoice("IP-2");
    EXPECT_THAT(documents(), ElementsAre("invoice IP-2"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, WhatIsWrittenAndTakenBackInOneTransactionLeavesNothing) {
    in_transaction([&] {
        add_invoice("IP-1");
        db().Execute("DELETE * FROM Invoice_table WHERE docno = 'IP-1'");
    });
    EXPECT_THAT(documents(), IsEmpty());
    in_transaction([&] {
        add_invoice("IP-2", 10);
        db().Execute("UPDATE Invoice_table SET amount = 11 WHERE docno = 'IP-2'");
        add_invoice("IP-3");
    });
    EXPECT_THAT(documents(), ElementsAre("invoice IP-2 and others"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, EditsAndDeletesOfDocumentsAreFollowed) {
    add_invoice("IP-1");
    add_invoice("IP-1");  // the same row twice
    add_invoice("IP-2");
    sign("ben");
    in_transaction([&] {
        auto rows = company_.dynaset("SELECT * FROM Invoice_table WHERE docno = 'IP-2'");
        rows.Edit();
        rows.set("docno", "IP-3");
        rows.set("created", store::Value());
        rows.Update();
        rows.Edit();
        rows.set("void", true);
        rows.Update();
    });
    db().Execute("DELETE * FROM Invoice_table WHERE docno = 'IP-1'");
    EXPECT_EQ(column("SELECT docno FROM Invoice_table").size(), 1U);
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, DesksAppendToOneChain) {
    const auto other = company_.second_user();
    other.workspace->sign({"ben", "desk 4", *DateTime::from_iso("2026-01-15 09:30:00")});
    for (const char* const docno : {"IP-1", "IP-2", "IP-3"}) {
        add_invoice(docno);
        add_row(*other.database, "Invoice_table", {{"docno", std::string(docno) + "B"}});
    }
    EXPECT_THAT(column("SELECT user_created FROM Trail_table ORDER BY entry_no"),
                ElementsAre("anna", "ben", "anna", "ben", "anna", "ben"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, FailedWriteIsNotInIt) {
    add_invoice("IP-1");
    const auto engine = reopen_with_faults(ErrorKind::constraint, "UPDATE");
    in_transaction([&] {
        auto rows = company_.dynaset("SELECT * FROM Invoice_table");
        rows.Edit();
        rows.set("amount", 12);
        engine->arm(2, true);  // the first call prepares it
        expect_error(ErrorKind::constraint, [&] { rows.Update(); });
        expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
        engine->disarm();
        rows.CancelUpdate();
        add_invoice("IP-2");
    });
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, WhatItCannotKnowIsNotCommitted) {
    add_invoice("IP-1");
    const auto engine = reopen_with_faults(ErrorKind::constraint, "row_id");
    company_.workspace().BeginTrans();
    engine->arm(4, false);  // the read of the row that was changed
    expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
    engine->disarm();
    expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
    company_.workspace().Rollback();
    // The row again, after one of its fields was written.
    {
        auto rows = company_.dynaset("SELECT amount FROM Invoice_table");
        company_.workspace().BeginTrans();
        rows.Edit();
        rows.set("amount", 4);
        engine->only_statements_with = "open_amount";  // every field is read
        engine->arm(2, false);
        expect_error(ErrorKind::constraint, [&] { rows.Update(); });
        engine->disarm();
        expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
        company_.workspace().Rollback();
    }
    // The second of three entries.
    company_.workspace().BeginTrans();
    for (int number = 1; number <= 2500; ++number)
        add_invoice(fmt::format("IP-{}", number));
    engine->only_statements_with = "user_created";
    engine->arm(3, false);
    expect_error(ErrorKind::constraint, [&] { company_.workspace().CommitTrans(); });
    engine->disarm();
    expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
    company_.workspace().Rollback();
    EXPECT_THAT(column("SELECT amount FROM Invoice_table"), ElementsAre("10"));
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, ManyRowsOfOneTransactionAreSeveralEntries) {
    in_transaction([&] {
        for (int number = 1; number <= 2500; ++number)
            add_invoice(fmt::format("IP-{}", number));
    });
    EXPECT_THAT(column("SELECT entry_no FROM Trail_table ORDER BY entry_no"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, WhoBringsEntriesBringsTheRowsThatTheyKnow) {
    add_invoice("IP-1");
    auto entries = company_.snapshot("SELECT * FROM Trail_table");
    const testing::TemporaryFolder folder;
    const std::string other = folder.file("other.brimley");
    auto copy = store::create_company(other, trailed_catalog());
    copy.workspace->BeginTrans();
    add_row(*copy.database, "Trail_table",
            {{"entry_no", entries.field("entry_no")},
             {"entry_date", entries.field("entry_date")},
             {"user_created", entries.field("user_created")},
             {"computer_id", entries.field("computer_id")},
             {"document", entries.field("document")},
             {"rows_written", entries.field("rows_written")},
             {"hash", entries.field("hash")}});
    add_row(*copy.database, "Invoice_table",
            {{"docno", "IP-1"},
             {"amount", 10.0},
             {"open_amount", 10.0},
             {"created", *DateTime::from_iso("2026-01-15 09:29:59")},
             {"lineno", 1}});
    copy.workspace->CommitTrans();
    EXPECT_EQ(copy.database->end_of_trail(), db().end_of_trail());
    EXPECT_THAT(copy.database->faults_of_trail(), IsEmpty());
}

TEST_F(Trail, CommitThatIsTriedAgainAppendsOnce) {
    const auto engine = reopen_with_faults(ErrorKind::locked, "");
    in_transaction([&] { add_invoice("IP-1"); });
    engine->arm(0, false);
    in_transaction([&] { add_invoice("IP-2"); });
    engine->arm(engine->last_commit, false);
    company_.workspace().BeginTrans();
    add_invoice("IP-3");
    expect_error(ErrorKind::locked, [&] { company_.workspace().CommitTrans(); });
    engine->disarm();
    company_.workspace().CommitTrans();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2", "invoice IP-3"));
    EXPECT_THAT(faults(), IsEmpty());
}

// Outside of transactions:

TEST_F(Trail, RowWhoseCommitWasRefusedIsStillThereToBeUpdated) {
    const auto engine = reopen_with_faults(ErrorKind::locked, "");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    const auto refused_once = [&] {
        // Its commit is the last call: one later each time until it is that.
        for (int call = 1;; ++call) {
            engine->arm(call, false);
            if (error_kind_of([&] { rows.Update(); }) != ErrorKind::locked) return call;
        }
    };
    rows.AddNew();
    rows.set("docno", "IP-1");
    EXPECT_GT(refused_once(), 2);
    engine->disarm();
    EXPECT_EQ(rows.RecordCount(), 1);
    rows.MoveFirst();
    rows.Edit();
    rows.set("amount", 12);
    EXPECT_GT(refused_once(), 2);
    engine->disarm();
    EXPECT_THAT(column("SELECT amount FROM Invoice_table"), ElementsAre("12"));
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowThatIsAddedAgainAfterAFailureIsEntered) {
    const auto engine = reopen_with_faults(ErrorKind::io, "INSERT INTO");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    rows.AddNew();
    rows.set("docno", "IP-1");
    engine->arm(2, true);  // the first call prepares it
    expect_error(ErrorKind::io, [&] { rows.Update(); });
    engine->disarm();
    rows.Update();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, FailedChangeLetsOthersWrite) {
    add_invoice("IP-1");
    const auto engine = reopen_with_faults(ErrorKind::constraint, "UPDATE");
    engine->arm(2, true);
    expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
    const auto other = company_.second_user();
    EXPECT_NO_THROW(other.database->Execute("UPDATE Invoice_table SET amount = 4"));
}

TEST_F(Trail, FailedChangeLeavesTheRowHeldThatIsBeingEdited) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    const auto engine = reopen_with_faults(ErrorKind::constraint, "UPDATE");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table WHERE docno = 'IP-1'");
    rows.Edit();
    engine->arm(2, true);
    expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
    engine->disarm();
    const auto other = company_.second_user();
    expect_error(ErrorKind::locked, [&] {
        other.database->Execute("UPDATE Invoice_table SET amount = 5 WHERE docno = 'IP-1'");
    });
    rows.set("amount", 12);
    rows.Update();
    EXPECT_THAT(column("SELECT amount FROM Invoice_table ORDER BY docno"), ElementsAre("12", "10"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowIsTakenAgainWhenTheTransactionOfItsEditIsOver) {
    add_invoice("IP-1");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    company_.workspace().BeginTrans();
    rows.Edit();
    company_.workspace().Rollback();
    const auto other = company_.second_user();
    other.database->Execute("UPDATE Invoice_table SET lineno = 7");
    rows.set("amount", 12);
    rows.Update();
    EXPECT_THAT(column("SELECT lineno FROM Invoice_table"), ElementsAre("7"));
    EXPECT_THAT(faults(), IsEmpty());
    company_.workspace().BeginTrans();
    rows.Edit();
    company_.workspace().Rollback();
    other.database->Execute("DELETE * FROM Invoice_table");
    rows.set("amount", 13);
    expect_error(ErrorKind::state, [&] { rows.Update(); });
}

TEST_F(Trail, RowThatIsWrittenWhileItIsEditedIsFollowed) {
    add_invoice("IP-1");
    for (const char* const query : {"SELECT * FROM Invoice_table", "SELECT amount FROM Invoice_table"}) {
        auto rows = company_.dynaset(query);
        auto others = company_.dynaset("SELECT * FROM Invoice_table");
        in_transaction([&] {
            rows.Edit();
            others.Edit();
            others.set("lineno", others.number("lineno") + 1);
            others.Update();
            rows.set("amount", rows.number("amount") + 1);
            rows.Update();
            others.Edit();
            db().Execute("UPDATE Invoice_table SET created = NULL");
            others.set("void", !others.flag("void"));
            others.Update();
            rows.Edit();
            rows.set("amount", rows.number("amount") + 1);
            rows.Update();
        });
        EXPECT_THAT(faults(), IsEmpty()) << query;
    }
    EXPECT_THAT(column("SELECT amount FROM Invoice_table"), ElementsAre("14"));
    EXPECT_THAT(column("SELECT lineno FROM Invoice_table"), ElementsAre("3"));
}

TEST_F(Trail, EntryBroughtByItselfKeepsNoLaterOneOut) {
    company_.add("Trail_table", {{"entry_no", 1}, {"hash", "x"}});
    db().Execute("DELETE * FROM Trail_table");
    add_invoice("IP-1");
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    in_transaction([&] { company_.add("Trail_table", {{"entry_no", 2}, {"hash", "x"}}); });
    db().Execute("DELETE * FROM Trail_table WHERE entry_no = 2");
    in_transaction([&] { add_invoice("IP-2"); });
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowsThatACompanyIsMadeWithAreEntered) {
    const testing::TemporaryFolder folder;
    const auto made = store::create_company(folder.file("made.brimley"), trailed_catalog(),
                                            [](store::Database& into) { add_invoice(into, "IP-1"); });
    EXPECT_EQ(made.database->end_of_trail()->number, 1);
    EXPECT_THAT(made.database->faults_of_trail(), IsEmpty());
}

TEST_F(Trail, NegativeZeroIsZero) {
    add_invoice("IP-1", -0.0);
    EXPECT_THAT(faults(), IsEmpty());
    db().Execute("UPDATE Invoice_table SET amount = 0");
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, FailedChangeForgetsOnlyItsOwnRows) {
    add_invoice("IP-1");
    const auto engine = reopen_with_faults(ErrorKind::constraint, " SET ");
    in_transaction([&] {
        add_invoice("IP-2");
        engine->arm(2, true);
        expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
        engine->disarm();
        add_invoice("IP-3");
    });
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowsTooManyToKeepAreHashedInBetween) {
    const auto add_long = [&](int number) {
        company_.add("Posting_table", {{"entry", std::string(300'000, 'x') + std::to_string(number)}});
    };
    for (int number = 0; number < 3; ++number)
        add_long(number);
    const auto engine = reopen_with_faults(ErrorKind::constraint, " SET ");
    in_transaction([&] {
        for (int number = 3; number < 8; ++number)
            add_long(number);
        add_invoice("IP-1");
        engine->arm(2, true);
        expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Posting_table SET amount = 3"); });
        engine->disarm();
        add_invoice("IP-2");
        add_long(8);
    });
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowThatAnotherRecordsetHasWrittenIsReadAgain) {
    add_invoice("IP-1");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    auto others = company_.dynaset("SELECT * FROM Invoice_table");
    in_transaction([&] {
        rows.Edit();
        others.Edit();
        others.set("lineno", 7);
        others.Update();
        rows.set("amount", 12);
        rows.Update();
        rows.Edit();
        EXPECT_EQ(rows.number("lineno"), 7);
        rows.set("lineno", 1);
        rows.Update();
    });
    EXPECT_THAT(column("SELECT lineno FROM Invoice_table"), ElementsAre("1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, RowThatIsRefusedKeepsNobodyFromWriting) {
    const auto engine = reopen_with_faults(ErrorKind::constraint, "INSERT INTO");
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    rows.AddNew();
    rows.set("docno", "IP-1");
    engine->arm(2, true);
    expect_error(ErrorKind::constraint, [&] { rows.Update(); });
    engine->disarm();
    const auto other = company_.second_user();
    EXPECT_NO_THROW(add_invoice(*other.database, "IP-2"));
    rows.Update();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-2", "invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, EntryOfRowsThatGoAlongIsNamedAfterThem) {
    in_transaction([&] {
        company_.add("Posting_table", {{"entry", "p1"}});
        company_.add("Posting_table", {{"entry", "p1"}});
    });
    in_transaction([&] {
        company_.add("Posting_table", {{"entry", "p2"}});
        company_.add("Posting_table", {{"entry", "p3"}});
    });
    EXPECT_THAT(documents(), ElementsAre("posting p1", "posting p2 and others"));
}

// A trail that was begun is read by every later version.
TEST_F(Trail, HashesNeverChange) {
    add_invoice("IP-1");
    add_invoice(std::string(256, 'x'));
    EXPECT_THAT(
        column("SELECT rows_written FROM Trail_table ORDER BY entry_no"),
        ElementsAre("Invoice_table +GS/pR7DNHVv0pKjZroEZXw==", "Invoice_table +9CUdIGw2+z3RDohBVG2Lgg=="));
    EXPECT_THAT(column("SELECT hash FROM Trail_table ORDER BY entry_no"),
                ElementsAre("3a099a193ebec033b943082d19e9ea9613bf669de611762d1c7e625d1050e21c",
                            "e8dcbc5f7b9dea6b65c418dfb995e17934fd72be94dca4cf2e78888607070627"));
}

}  // namespace
}  // namespace brimley
