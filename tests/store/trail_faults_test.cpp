// What shows when somebody writes past the trail, or changes it.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "store/other_program.h"
#include "store/trailed_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::add_row;
using ::testing::ElementsAre;
using testing::expect_error;
using ::testing::IsEmpty;
using testing::Trail;
using testing::unwatched_catalog;

TEST_F(Trail, FieldsThatFollowFromOtherDocumentsMayChange) {
    add_invoice("IP-1");
    db().Execute("UPDATE Invoice_table SET open_amount = 0");
    tamper("UPDATE Invoice_table SET open_amount = 3");
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(Trail, ChangedRowNamesItsDocumentAndWhoWroteIt) {
    add_invoice("IP-1");
    sign("ben");
    add_invoice("IP-2");
    for (const char* const change : {"amount = 10.01", "docno = 'IP-9'", "void = TRUE", "lineno = 2",
                                     "created = Datevalue('Jan 16, 2026')", "amount = NULL"}) {
        SCOPED_TRACE(change);
        company_.workspace().BeginTrans();
        company_.workspace().Rollback();
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
    auto intruder = store::open_company(company_.path(), unwatched_catalog());
    add_row(*intruder.database, "Invoice_table", {{"docno", "IP-7"}});
    add_row(*intruder.database, "Posting_table", {{"entry", "p7"}});
    add_row(*intruder.database, "Posting_table", {{"entry", "p7"}});
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
        company_.workspace().begin_alone();
        db().Execute(fmt::format("UPDATE Trail_table SET {} WHERE entry_no = 2", change));
        EXPECT_THAT(faults(), ElementsAre("entry 2 of the trail is not as it was written"));
        company_.workspace().Rollback();
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

TEST_F(Trail, EachChangedEntryIsNamed) {
    for (const char* const docno : {"IP-1", "IP-2", "IP-3", "IP-4"})
        add_invoice(docno);
    tamper("UPDATE Trail_table SET user_created = 'x' WHERE entry_no = 1 OR entry_no = 3");
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is not as it was written",
                                      "entry 3 of the trail is not as it was written"));
    tamper("UPDATE Trail_table SET user_created = 'x' WHERE entry_no = 2");
    // Nothing is left that the one after it could follow from.
    tamper("UPDATE Trail_table SET hash = 'x' WHERE entry_no = 3");
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is not as it was written",
                                      "entry 2 of the trail is not as it was written",
                                      "entry 3 of the trail is not as it was written",
                                      "entry 4 of the trail is not as it was written"));
}

TEST_F(Trail, EntryThatFollowsFromAnotherIsNamed) {
    add_invoice("IP-1");
    const auto entry = company_.snapshot("SELECT * FROM Trail_table");
    std::vector<store::Value> values;
    for (int place = 0; place < entry.column_count(); ++place)
        values.push_back(entry.column(place));
    tamper("DELETE * FROM Trail_table");
    sign("ben");
    add_invoice("IP-1");
    add_invoice("IP-2");
    tamper("DELETE * FROM Trail_table WHERE entry_no = 1");
    const auto intruder = store::open_company(company_.path(), unwatched_catalog());
    auto rows = intruder.database->OpenRecordset("SELECT * FROM Trail_table", store::RecordsetKind::dynaset);
    rows.AddNew();
    for (int place = 0; place < entry.column_count(); ++place)
        rows.set_column(place, values[static_cast<std::size_t>(place)]);
    rows.Update();
    EXPECT_THAT(faults(), ElementsAre("entry 2 of the trail is not as it was written",
                                      "invoice IP-1 has a row that the trail does not know"));
}

TEST_F(Trail, EntriesThatAreMissingAreNamedAndTheOthersReadOn) {
    for (const char* const docno : {"IP-1", "IP-2", "IP-3", "IP-4", "IP-5"})
        add_invoice(docno);
    tamper("DELETE * FROM Trail_table WHERE entry_no = 2 OR entry_no = 3");
    tamper("UPDATE Trail_table SET user_created = 'x' WHERE entry_no = 5");
    EXPECT_THAT(faults(), ElementsAre("entries 2 to 3 of the trail are missing",
                                      "entry 5 of the trail is not as it was written",
                                      "invoice IP-2 has a row that the trail does not know",
                                      "invoice IP-3 has a row that the trail does not know"));
}

TEST_F(Trail, SecondEntryOfANumberIsNamed) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    if (testing::tests_run_on_server()) {
        expect_error(ErrorKind::constraint, [&] { tamper("UPDATE Trail_table SET entry_no = 1"); });
        return;
    }
    tamper("UPDATE Trail_table SET entry_no = 1 WHERE entry_no = 2");
    EXPECT_THAT(faults(), ElementsAre("there are two entries 1 of the trail"));
}

TEST_F(Trail, EntryThatTakesBackWhatNoneHasWrittenIsNamed) {
    add_invoice("IP-1");
    db().Execute("UPDATE Invoice_table SET amount = 3");
    tamper("DELETE * FROM Trail_table WHERE entry_no = 1");
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is missing",
                                      "invoice IP-1 is not as anna wrote it on 2026-01-15 09:30:00 (entry "
                                      "2 of the trail)"));
}

TEST_F(Trail, OfEqualRowsTheLastIsTheOneThatIsMissing) {
    add_invoice("IP-1");
    sign("ben");
    add_invoice("IP-1");
    add_invoice("IP-2");
    tamper("DELETE * FROM Invoice_table WHERE docno = 'IP-1'");
    sign("anna");
    company_.workspace().BeginTrans();
    company_.workspace().Rollback();
    const auto intruder = store::open_company(company_.path(), unwatched_catalog());
    add_invoice(*intruder.database, "IP-1");
    EXPECT_THAT(faults(), ElementsAre("invoice IP-1 is not as ben wrote it on 2026-01-15 09:30:00 (entry 2 "
                                      "of the trail)"));
}

TEST_F(Trail, RowOfAnotherTableIsAnother) {
    company_.add("Posting_table", {{"entry", "p1"}, {"amount", 10}});
    tamper("DELETE * FROM Posting_table");
    const auto intruder = store::open_company(company_.path(), unwatched_catalog());
    add_row(*intruder.database, "Invoice_table", {{"docno", "p1"}, {"amount", 10}});
    EXPECT_THAT(faults(), ElementsAre("posting p1 is not as anna wrote it on 2026-01-15 09:30:00 (entry 1 "
                                      "of the trail)",
                                      "invoice p1 has a row that the trail does not know"));
}

TEST_F(Trail, DocumentIsNamedOnceWithWhoWroteIt) {
    add_invoice("IP-1");
    tamper("UPDATE Invoice_table SET amount = 11");
    EXPECT_THAT(faults(), ElementsAre("invoice IP-1 is not as anna wrote it on 2026-01-15 09:30:00 (entry 1 "
                                      "of the trail)"));
}

TEST_F(Trail, PartOfASecondInADateIsNoticed) {
    add_invoice("IP-1");
    const auto add_a_tenth = [&](const std::string& table, const std::string& field) {
        if (testing::tests_run_on_server())
            testing::on_server(
                company_.path(),
                fmt::format("UPDATE brimley.{0} SET {1} = {1} + '0.1 s'::interval", table, field));
        else
            testing::OtherProgram(company_.path())
                .run(fmt::format("UPDATE {0} SET {1} = {1} + 0.1 / 86400", table, field));
    };
    add_a_tenth("Invoice_table", "created");
    EXPECT_THAT(column("SELECT created FROM Invoice_table"), ElementsAre("2026-01-15 09:29:59"));
    EXPECT_THAT(faults(), ElementsAre("invoice IP-1 is not as anna wrote it on 2026-01-15 09:30:00 (entry 1 "
                                      "of the trail)"));
    add_a_tenth("Trail_table", "entry_date");
    EXPECT_THAT(faults()[0], "entry 1 of the trail is not as it was written");
}

TEST_F(Trail, EntryIsHeldByAllThatItSays) {
    add_invoice("IP-1");
    tamper("DELETE * FROM Invoice_table");
    tamper("UPDATE Trail_table SET rows_written = NULL");
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is not as it was written"));
}

TEST_F(Trail, TimeOfDayIsPartOfADate) {
    add_invoice("IP-1");
    tamper("UPDATE Invoice_table SET created = Datevalue('Jan 15, 2026')");
    EXPECT_THAT(faults(),
                ElementsAre("invoice IP-1 is not as anna wrote it on 2026-01-15 09:30:00 (entry 1 of "
                            "the trail)"));
    tamper("UPDATE Trail_table SET entry_date = Datevalue('Jan 15, 2026')");
    EXPECT_THAT(faults(), ::testing::Contains("entry 1 of the trail is not as it was written"));
}

TEST_F(Trail, TableThatIsNoneHidesNothingAfterIt) {
    add_invoice("IP-1");
    const std::string list = column("SELECT rows_written FROM Trail_table")[0];
    const auto intruder = store::open_company(company_.path(), unwatched_catalog());
    auto entries =
        intruder.database->OpenRecordset("SELECT * FROM Trail_table", store::RecordsetKind::dynaset);
    entries.Edit();
    entries.set("rows_written", "Nothing +GS/pR7DNHVv0pKjZroEZXw==\n" + list);
    entries.Update();
    EXPECT_THAT(faults(), ElementsAre("entry 1 of the trail is not as it was written"));
}

}  // namespace
}  // namespace brimley
