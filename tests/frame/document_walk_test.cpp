// Walking documents by the number in their keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plain_form.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DocumentWalk : public ::testing::Test {
  protected:
    PlainHost host;
};

TEST_F(DocumentWalk, FormOpensOnTheNewestStoredDocument) {
    const auto form = host.show({1, 3}, 5);
    EXPECT_EQ(form->txtdocno.text(), "N3");
    EXPECT_EQ(form->documents.fkey_last_no, 5);
}

TEST_F(DocumentWalk, CounterThatHasGivenNothingLeavesTheFormBlank) {
    const auto form = host.show({}, 0);
    EXPECT_EQ(form->txtdocno.text(), "");
    EXPECT_EQ(form->entries_begun, 0);
}

TEST_F(DocumentWalk, NumbersGivenAndNoneStoredBeginsAnEntryInRead) {
    const auto form = host.show({}, 4);
    EXPECT_EQ(form->txtdocno.text(), frame::kNewDocno);
    EXPECT_EQ(form->mode(), frame::Mode::read);
}

TEST_F(DocumentWalk, GapsAreGoneOverInBothDirections) {
    const auto form = host.show({1, 4, 5}, 5);
    form->previous_record();
    form->previous_record();
    EXPECT_EQ(form->txtdocno.text(), "N1");
    form->next_record();
    EXPECT_EQ(form->txtdocno.text(), "N4");
}

TEST_F(DocumentWalk, LinesComeInTheirOrderHoweverTheyAreStored) {
    frame::WalkTables tables = kPlainTables;
    tables.lines = "Payment_transaction_table";
    tables.line_order = "pay_item";
    const auto form = host.show({1}, 1, tables);
    const store::Value none;
    const std::vector<std::vector<store::Value>> stored = {{1, 2, 3},    {2, 10, 1}, {none, none, 4},
                                                           {4, none, 5}, {2, 2, 1},  {}};
    int document = 0;
    for (const std::vector<store::Value>& items : stored) {
        const std::string fkey = "1py-" + std::to_string(++document);
        int added = 0;
        for (const store::Value& item : items)
            host.company.add("Payment_transaction_table",
                             {{"fkey", fkey}, {"pay_item", item}, {"item_no", ++added}});
        auto lines = form->documents.lines_of(fkey);
        auto sorted = host.company.snapshot("SELECT * FROM Payment_transaction_table WHERE fkey = '" + fkey +
                                            "' ORDER BY pay_item");
        EXPECT_EQ(lines.RecordCount(), static_cast<std::int64_t>(items.size()));
        for (; !sorted.at_eof(); sorted.MoveNext(), lines.MoveNext())
            EXPECT_EQ(lines.text("item_no"), sorted.text("item_no")) << fkey;
        EXPECT_TRUE(lines.at_eof());
    }
}

TEST_F(DocumentWalk, EndsAreStayedAtWithoutAMessage) {
    const auto form = host.show({1, 2}, 3);
    form->next_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
    form->previous_record();
    form->previous_record();
    EXPECT_EQ(form->txtdocno.text(), "N1");
    EXPECT_THAT(host.messages(), IsEmpty());
}

TEST_F(DocumentWalk, GapEndsTheWayUpWhereTheTablesSaySoAndNotTheWayDown) {
    frame::WalkTables tables = kPlainTables;
    tables.gap_upwards = frame::WalkTables::GapUpwards::ends_the_way;
    const auto form = host.show({1, 2, 4}, 4, tables);
    form->previous_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
    form->next_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
    form->previous_record();
    form->next_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
}

TEST_F(DocumentWalk, LongRunOfMissingNumbersIsJumpedOverInATableWithoutKinds) {
    const auto form = host.show({2, 5000}, 90000, kTablesOfOneKind, "apre");
    EXPECT_EQ(form->txtdocno.text(), "N5000");
    form->previous_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
    form->next_record();
    EXPECT_EQ(form->txtdocno.text(), "N5000");
}

TEST_F(DocumentWalk, UnknownNumberIsReportedAndTheDocumentOnScreenComesBack) {
    const auto form = host.show({1, 2}, 2);
    form->previous_record();
    EXPECT_EQ(form->txtdocno.type("N9"), controls::Refusal::none);
    EXPECT_EQ(form->txtdocno.press_enter(), controls::Refusal::none);
    EXPECT_THAT(host.messages(), ElementsAre("N9 not found."));
    EXPECT_EQ(form->txtdocno.text(), "N1");
}

// Nothing is on screen: the empty key leads to the last document, stored by another desk meanwhile.
TEST_F(DocumentWalk, UnknownNumberWithNothingOnScreenLeadsToTheLastDocument) {
    const auto form = host.show({}, 0);
    host.company.add("Payment_header_table",
                     {{"docno", "N1"}, {"fkey", "1py-1"}, {"company", "1"}, {"doctype", "py"}});
    host.company.db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 2 WHERE doctype = 'py'");
    form->txtdocno.set("N9");
    form->Recordx();
    EXPECT_THAT(host.messages(), ElementsAre("N9 not found."));
    EXPECT_EQ(form->txtdocno.text(), "N1");
}

// In New nothing stored is on screen.
TEST_F(DocumentWalk, UnknownNumberInNewLeadsToTheLastDocument) {
    const auto form = host.show({1, 2}, 2);
    form->previous_record();
    EXPECT_EQ(form->press(105), controls::Refusal::none);
    form->txtdocno.set("N9");
    form->Recordx();
    EXPECT_THAT(host.messages(), ElementsAre("N9 not found."));
    EXPECT_EQ(form->txtdocno.text(), "N2");
}

TEST_F(DocumentWalk, KeyWithoutANumberLeadsToTheLastDocument) {
    const auto form = host.show({1, 2}, 2);
    host.company.add("Payment_header_table",
                     {{"docno", "OLD"}, {"fkey", "1py5"}, {"company", "1"}, {"doctype", "py"}});
    form->txtdocno.set("OLD");
    form->Recordx();
    EXPECT_EQ(form->txtdocno.text(), "OLD");
    form->previous_record();
    EXPECT_EQ(form->txtdocno.text(), "N2");
}

}  // namespace brimley::testing
