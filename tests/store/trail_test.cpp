// The trail: an entry for each transaction, and what shows when somebody writes past it.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/company_original.h"
#include "support/expect_error.h"
#include "support/faulty_engine.h"

namespace brimley {
namespace {

using store::Catalog;
using store::Database;
using store::DateTime;
using store::ErrorKind;
using store::FieldType;
using store::Table;
using store::Watched;
using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::error_of;
using testing::expect_error;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<Table> trailed_tables(bool watched) {
    Table invoices{"Invoice_table",
                   {{"docno", FieldType::text},
                    {"amount", FieldType::number},
                    {"created", FieldType::datetime},
                    {"open_amount", FieldType::number},
                    {"void", FieldType::yes_no},
                    {"lineno", FieldType::integer}},
                   {},
                   false,
                   {"docno"},
                   {{{"docno"}}}};
    Table postings{
        "Posting_table", {{"entry", FieldType::text}, {"amount", FieldType::number}}, {}, false, {}, {}};
    const Table vendors{"Owner_table", {{"vendor_no", FieldType::text}}, {}, false, {}, {}};
    if (watched) {
        invoices.watched = Watched{"invoice", "docno", false, {"open_amount"}};
        postings.watched = Watched{"posting", "entry", true, {}};
    }
    Table trail = store::trail_table("Trail_table");
    trail.since = 2;
    return {invoices, postings, vendors, trail};
}

const Catalog& trailed_catalog() {
    static const Catalog catalog(trailed_tables(true));
    return catalog;
}
// Of somebody who writes what he likes.
const Catalog& unwatched_catalog() {
    static const Catalog catalog(trailed_tables(false));
    return catalog;
}

testing::CompanyOriginal& trailed_original() {
    static testing::CompanyOriginal original(
        [](const std::string& company) { (void)store::create_company(company, trailed_catalog()); });
    return original;
}

class Trail : public ::testing::Test {
  protected:
    Trail()
        : database_(testing::tests_run_on_server() ? trailed_original().database() : nullptr),
          path_(database_ ? database_->uri() : folder_.file("trail.brimley")) {
        if (!database_) trailed_original().copy_to(path_);
        open_ = store::open_company(path_, trailed_catalog());
        sign("anna");
    }

    void sign(const std::string& user) {
        open_.workspace->sign({user, "desk 3", *DateTime::from_iso("2026-01-15 09:30:00")});
    }
    Database& db() { return *open_.database; }
    static void add_to(Database& db, const std::string& table,
                       std::initializer_list<std::pair<const char*, store::Value>> values) {
        auto rows =
            db.OpenRecordset("SELECT * FROM " + table + " WHERE 1 = 2", store::RecordsetKind::dynaset);
        rows.AddNew();
        for (const auto& [field, value] : values)
            rows.set(field, value);
        rows.Update();
    }
    void add_invoice(const std::string& docno, double amount = 10) {
        add_to(db(), "Invoice_table",
               {{"docno", docno},
                {"amount", amount},
                {"open_amount", amount},
                {"created", *DateTime::from_iso("2026-01-15 09:29:59")},
                {"lineno", 1}});
    }
    template <class Act>
    void in_transaction(const Act& act) {
        open_.workspace->BeginTrans();
        act();
        open_.workspace->CommitTrans();
    }
    // Past the trail.
    void tamper(const std::string& statement) {
        (void)store::open_company(path_, unwatched_catalog()).database->Execute(statement);
    }
    std::vector<std::string> column(const std::string& query) {
        std::vector<std::string> texts;
        auto rows = db().OpenRecordset(query, store::RecordsetKind::snapshot);
        for (; !rows.at_eof(); rows.MoveNext())
            texts.push_back(rows.column(0).text());
        return texts;
    }
    std::vector<std::string> documents() {
        return column("SELECT document FROM Trail_table ORDER BY entry_no");
    }
    std::vector<std::string> faults() { return db().faults_of_trail(); }

    testing::TemporaryFolder folder_;
    std::unique_ptr<testing::ServerDatabase> database_;
    std::string path_;
    store::OpenCompany open_;
};

TEST_F(Trail, TransactionThatWroteADocumentAppendsOneSignedEntry) {
    EXPECT_EQ(db().end_of_trail(), store::TrailEntry{});
    in_transaction([&] {
        add_to(db(), "Posting_table", {{"entry", "p1"}, {"amount", 10}});
        add_invoice("IP-1");
        add_to(db(), "Posting_table", {{"entry", "p2"}, {"amount", -10}});
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
    auto rows = db().OpenRecordset("SELECT docno, amount FROM Invoice_table", store::RecordsetKind::dynaset);
    rows.Edit();
    rows.set("amount", 12);
    rows.Update();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-1", "invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, NothingIsAppendedForWhatIsNotWatchedOrIsRolledBack) {
    add_to(db(), "Owner_table", {{"vendor_no", "V1"}});
    open_.workspace->BeginTrans();
    add_invoice("IP-1");
    open_.workspace->Rollback();
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

TEST_F(Trail, FieldsThatFollowFromOtherDocumentsMayChange) {
    add_invoice("IP-1");
    db().Execute("UPDATE Invoice_table SET open_amount = 0");
    tamper("UPDATE Invoice_table SET open_amount = 3");
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, EditsAndDeletesOfDocumentsAreFollowed) {
    add_invoice("IP-1");
    add_invoice("IP-1");  // the same row twice
    add_invoice("IP-2");
    sign("ben");
    in_transaction([&] {
        auto rows = db().OpenRecordset("SELECT * FROM Invoice_table WHERE docno = 'IP-2'",
                                       store::RecordsetKind::dynaset);
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

TEST_F(Trail, ChangedRowNamesItsDocumentAndWhoWroteIt) {
    add_invoice("IP-1");
    sign("ben");
    add_invoice("IP-2");
    for (const char* const change : {"amount = 10.01", "docno = 'IP-9'", "void = TRUE", "lineno = 2",
                                     "created = Datevalue('Jan 16, 2026')", "amount = NULL"}) {
        SCOPED_TRACE(change);
        open_.workspace->BeginTrans();
        open_.workspace->Rollback();
        tamper(fmt::format("UPDATE Invoice_table SET {} WHERE docno = 'IP-2'", change));
        EXPECT_THAT(faults(), ::testing::Contains("invoice IP-2 is not as ben wrote it on 2026-01-15 "
                                                  "09:30:00 (entry 2 of the trail)"));
        tamper("DELETE * FROM Invoice_table WHERE docno <> 'IP-1'");
        add_invoice("IP-2");
        tamper("DELETE * FROM Trail_table WHERE entry_no > 2");
    }
}

TEST_F(Trail, DeletedAndForeignRowsAreNoticed) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    tamper("DELETE * FROM Invoice_table WHERE docno = 'IP-1'");
    auto intruder = store::open_company(path_, unwatched_catalog());
    add_to(*intruder.database, "Invoice_table", {{"docno", "IP-7"}});
    add_to(*intruder.database, "Posting_table", {{"entry", "p7"}});
    add_to(*intruder.database, "Posting_table", {{"entry", "p7"}});
    EXPECT_THAT(faults(),
                ElementsAre("invoice IP-1 is not as anna wrote it on 2026-01-15 09:30:00 (entry 1 of "
                            "the trail)",
                            "invoice IP-7 has a row that the trail does not know",
                            "posting p7 has a row that the trail does not know"));
}

TEST_F(Trail, ChangedEntryBreaksTheChainAtItsPlace) {
    for (const char* const docno : {"IP-1", "IP-2", "IP-3"})
        add_invoice(docno);
    for (const char* const change : {"user_created = 'ben'", "computer_id = 'x'", "document = 'invoice IP-9'",
                                     "entry_date = Datevalue('Jan 1, 2026')"}) {
        SCOPED_TRACE(change);
        const std::string before = column("SELECT user_created FROM Trail_table WHERE entry_no = 2")[0];
        open_.workspace->begin_alone();
        db().Execute(fmt::format("UPDATE Trail_table SET {} WHERE entry_no = 2", change));
        EXPECT_THAT(faults(), ElementsAre("entry 2 of the trail is not as it was written"));
        open_.workspace->Rollback();
    }
    EXPECT_THAT(faults(), IsEmpty());
    tamper("UPDATE Trail_table SET hash = 'abc' WHERE entry_no = 1");
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is not as it was written"));
}

TEST_F(Trail, MissingEntryIsNoticedWithWhatItKnew) {
    for (const char* const docno : {"IP-1", "IP-2", "IP-3"})
        add_invoice(docno);
    tamper("DELETE * FROM Trail_table WHERE entry_no = 2");
    EXPECT_THAT(faults(), ElementsAre("entry 2 of the trail is missing",
                                      "invoice IP-2 has a row that the trail does not know"));
}

TEST_F(Trail, SealHoldsWhatWasThereWhenItWasTaken) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    const store::TrailEntry sealed = *db().end_of_trail();
    EXPECT_EQ(sealed.number, 2);
    add_invoice("IP-3");
    EXPECT_THAT(db().faults_of_trail(sealed), IsEmpty());
    // Whoever takes back the last document with its entry leaves a trail that holds.
    tamper("DELETE * FROM Trail_table WHERE entry_no > 1");
    tamper("DELETE * FROM Invoice_table WHERE docno <> 'IP-1'");
    EXPECT_THAT(faults(), IsEmpty());
    EXPECT_THAT(db().faults_of_trail(sealed),
                ElementsAre("the trail ends at entry 1, before the sealed entry 2"));
    add_invoice("IP-4");
    EXPECT_THAT(db().faults_of_trail(sealed),
                ElementsAre("entry 2 of the trail is not the one that was sealed"));
}

TEST_F(Trail, DesksAppendToOneChain) {
    const auto other = store::open_company(path_, trailed_catalog());
    other.workspace->sign({"ben", "desk 4", *DateTime::from_iso("2026-01-15 09:30:00")});
    for (const char* const docno : {"IP-1", "IP-2", "IP-3"}) {
        add_invoice(docno);
        add_to(*other.database, "Invoice_table", {{"docno", std::string(docno) + "B"}});
    }
    EXPECT_THAT(column("SELECT user_created FROM Trail_table ORDER BY entry_no"),
                ElementsAre("anna", "ben", "anna", "ben", "anna", "ben"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, FailedWriteIsNotInIt) {
    add_invoice("IP-1");
    auto faults_of_engine = std::make_shared<testing::Faults>();
    faults_of_engine->kind = ErrorKind::constraint;
    faults_of_engine->only_statements_with = "UPDATE";
    open_ = {};
    open_ = store::open_company(path_, trailed_catalog(), testing::faulty(faults_of_engine));
    in_transaction([&] {
        auto rows = db().OpenRecordset("SELECT * FROM Invoice_table", store::RecordsetKind::dynaset);
        rows.Edit();
        rows.set("amount", 12);
        faults_of_engine->arm(2, true);  // the first call prepares it
        expect_error(ErrorKind::constraint, [&] { rows.Update(); });
        expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
        faults_of_engine->disarm();
        rows.CancelUpdate();
        add_invoice("IP-2");
    });
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, WhatItCannotKnowIsNotCommitted) {
    add_invoice("IP-1");
    auto faults_of_engine = std::make_shared<testing::Faults>();
    faults_of_engine->kind = ErrorKind::constraint;
    open_ = {};
    open_ = store::open_company(path_, trailed_catalog(), testing::faulty(faults_of_engine));
    open_.workspace->BeginTrans();
    // The rows before the change are prepared and read, those after it prepared.
    faults_of_engine->only_statements_with = "row_id";
    faults_of_engine->arm(3, false);
    expect_error(ErrorKind::constraint, [&] { db().Execute("UPDATE Invoice_table SET amount = 3"); });
    faults_of_engine->disarm();
    expect_error(ErrorKind::state, [&] { open_.workspace->CommitTrans(); });
    open_.workspace->Rollback();
    // The second of three entries.
    open_.workspace->BeginTrans();
    for (int number = 1; number <= 2500; ++number)
        add_invoice(fmt::format("IP-{}", number));
    faults_of_engine->only_statements_with = "user_created";
    faults_of_engine->arm(3, false);
    expect_error(ErrorKind::constraint, [&] { open_.workspace->CommitTrans(); });
    faults_of_engine->disarm();
    expect_error(ErrorKind::state, [&] { open_.workspace->CommitTrans(); });
    open_.workspace->Rollback();
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
    auto entries = db().OpenRecordset("SELECT * FROM Trail_table", store::RecordsetKind::snapshot);
    const testing::TemporaryFolder folder;
    const std::string other = folder.file("other.brimley");
    auto copy = store::create_company(other, trailed_catalog());
    copy.workspace->BeginTrans();
    add_to(*copy.database, "Trail_table",
           {{"entry_no", entries.field("entry_no")},
            {"entry_date", entries.field("entry_date")},
            {"user_created", entries.field("user_created")},
            {"computer_id", entries.field("computer_id")},
            {"document", entries.field("document")},
            {"rows_written", entries.field("rows_written")},
            {"hash", entries.field("hash")}});
    add_to(*copy.database, "Invoice_table",
           {{"docno", "IP-1"},
            {"amount", 10.0},
            {"open_amount", 10.0},
            {"created", *DateTime::from_iso("2026-01-15 09:29:59")},
            {"lineno", 1}});
    copy.workspace->CommitTrans();
    EXPECT_EQ(copy.database->end_of_trail(), db().end_of_trail());
    EXPECT_THAT(copy.database->faults_of_trail(), IsEmpty());
}

class OlderCompany : public ::testing::Test {
  protected:
    OlderCompany()
        : database_(testing::tests_run_on_server() ? std::make_unique<testing::ServerDatabase>() : nullptr),
          path_(database_ ? database_->uri() : folder_.file("older.brimley")) {
        (void)store::create_company(path_, trailed_catalog().of_layout(1), [](Database& db) {
            db.Execute("UPDATE Owner_table SET vendor_no = '1'");
            auto rows = db.OpenRecordset("SELECT * FROM Invoice_table", store::RecordsetKind::dynaset);
            rows.AddNew();
            rows.set("docno", "IP-1");
            rows.Update();
        });
    }
    static store::Signature anna() { return {"anna", "desk 3", *DateTime::from_iso("2026-01-15")}; }

    testing::TemporaryFolder folder_;
    std::unique_ptr<testing::ServerDatabase> database_;
    std::string path_;
};

TEST_F(OlderCompany, IsOpenedAndWrittenWithoutATrail) {
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 1);
    EXPECT_EQ(company.database->catalog().find("Trail_table"), nullptr);
    company.database->Execute("UPDATE Invoice_table SET amount = 3");
    EXPECT_EQ(company.database->end_of_trail(), std::nullopt);
    EXPECT_THAT(company.database->faults_of_trail(), IsEmpty());
    EXPECT_THAT(company.database->faults_of_trail({3, "abc"}),
                ElementsAre("the company has no trail, but the end of one was sealed"));
}

TEST_F(OlderCompany, UpgradeBeginsATrailWithWhatStandsThere) {
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
    EXPECT_FALSE(store::upgrade_company(path_, trailed_catalog(), anna()));
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 2);
    EXPECT_EQ(company.database->end_of_trail()->number, 1);
    EXPECT_THAT(company.database->faults_of_trail(), IsEmpty());
    (void)store::open_company(path_, unwatched_catalog())
        .database->Execute("UPDATE Invoice_table SET amount = 3");
    EXPECT_THAT(
        company.database->faults_of_trail(),
        ElementsAre("what stood here before the trail is not as anna wrote it on 2026-01-15 (entry 1 of "
                    "the trail)",
                    "invoice IP-1 has a row that the trail does not know"));
}

TEST_F(OlderCompany, NobodyWritesOnWithoutATrailAfterAnUpgrade) {
    const auto other = store::open_company(path_, trailed_catalog());
    if (testing::tests_run_on_server()) {
        expect_error(ErrorKind::locked,
                     [&] { (void)store::upgrade_company(path_, trailed_catalog(), anna()); });
        other.database->Execute("UPDATE Invoice_table SET amount = 3");
        return;
    }
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
    const auto refused = error_of([&] {
        other.workspace->BeginTrans();
        other.database->Execute("UPDATE Invoice_table SET amount = 3");
    });
    ASSERT_TRUE(refused);
    EXPECT_STREQ(refused->what(), "the company was upgraded meanwhile: it must be opened again");
    other.workspace->Rollback();
    EXPECT_THAT(store::open_company(path_, trailed_catalog()).database->faults_of_trail(), IsEmpty());
}

TEST_F(OlderCompany, UpgradeThatFailsLeavesItAsItWas) {
    {
        const auto busy = store::open_company(path_, trailed_catalog());
        busy.workspace->BeginTrans();
        busy.database->Execute("UPDATE Invoice_table SET amount = 3");
        expect_error(ErrorKind::locked,
                     [&] { (void)store::upgrade_company(path_, trailed_catalog(), anna()); });
    }
    EXPECT_EQ(store::open_company(path_, trailed_catalog()).database->catalog().layout(), 1);
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
}

}  // namespace
}  // namespace brimley
