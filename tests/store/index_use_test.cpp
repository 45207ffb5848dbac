// What forms ask for again and again is looked up, never scanned for.
#include <gtest/gtest.h>

#include "kernel/store/dialect/translator.h"
#include "kernel/store/sqlite/sqlite_file.h"
#include "kernel/store/sqlite/sqlite_flavour.h"
#include "store/small_company.h"

namespace brimley {
namespace {

using testing::SmallCompany;

// How SQLite means to run the statement, its steps in one line.
std::string steps_of(const store::SqliteHandle& connection, const std::string& sql) {
    const auto statement = store::prepare_sql(connection.get(), "EXPLAIN QUERY PLAN " + sql);
    std::string steps;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
        if (!steps.empty()) steps += "; ";
        steps += reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 3));
    }
    return steps;
}

class IndexUse : public ::testing::Test {
  protected:
    std::string plan(const std::string& sql) { return steps_of(connection_, sql); }
    std::string plan_of_query(const std::string& query) { return plan(translator_.select(query).rows.sql); }
    std::string plan_of_find(const std::string& query, const std::string& criteria) {
        return plan(translator_.find(translator_.select(query), criteria).first.sql);
    }

    SmallCompany company_;
    store::SqliteHandle connection_ =
        store::open_sqlite_file(company_.path(), testing::small_catalog()).connection;
    store::SqliteFlavour flavour_;
    store::dialect::Translator translator_{testing::small_catalog(), flavour_};
};

TEST_F(IndexUse, EqualityOnIndexedFieldsSearchesTheIndex) {
    EXPECT_EQ(plan_of_query("SELECT * FROM Header_table WHERE fkey = '1ip-5'"),
              "SEARCH t1 USING INDEX Header_table_index_1 (fkey=?)");
    EXPECT_EQ(plan_of_query("SELECT * FROM Counter_table WHERE company = 1 AND doctype = 'ip'"),
              "SEARCH t1 USING INDEX Counter_table_index_1 (company=? AND doctype=?)");
}

TEST_F(IndexUse, QuotedTextOnANumberFieldKeepsTheIndex) {
    EXPECT_EQ(plan_of_query("SELECT * FROM Counter_table WHERE company = '1' AND doctype = 'ip'"),
              "SEARCH t1 USING INDEX Counter_table_index_1 (company=? AND doctype=?)");
}

TEST_F(IndexUse, BareNumberOnATextFieldLeavesTheIndexToTheOtherField) {
    const std::string by_docno = "SEARCH t1 USING INDEX Header_table_index_2 (docno=?)";
    EXPECT_EQ(plan_of_query("SELECT * FROM Header_table WHERE company = 1 AND docno = 'ip1'").find(by_docno),
              0U);
    EXPECT_EQ(plan_of_find("SELECT * FROM Header_table", "[company] = 1 and [docno] = 'ip1'").find(by_docno),
              0U);
    EXPECT_EQ(
        plan_of_query("SELECT * FROM Line_table WHERE fkey = 'k' AND pay_item = 3 ORDER BY VAL(pay_item)")
            .find("SEARCH t1 USING INDEX Line_table_index_1 (fkey=?)"),
        0U);
}

TEST_F(IndexUse, FindFirstSearchesTheIndexOfAnUnorderedAndAnOrderedTable) {
    EXPECT_EQ(plan_of_find("SELECT * FROM Header_table", "[fkey] = '1ip-5'"),
              "SEARCH t1 USING INDEX Header_table_index_1 (fkey=?)");
    EXPECT_EQ(plan_of_find("SELECT * FROM Header_table ORDER BY docno", "[fkey] = '1ip-5'")
                  .find("SEARCH t1 USING INDEX Header_table_index_1 (fkey=?)"),
              0U);
}

TEST_F(IndexUse, NestedSelectIsSearchedThroughItsTable) {
    EXPECT_NE(plan_of_query("SELECT * FROM (SELECT * FROM Line_table WHERE fkey = 'k') WHERE hold = FALSE")
                  .find("USING INDEX Line_table_index_1 (fkey=?)"),
              std::string::npos);
}

TEST_F(IndexUse, JoinSearchesTheSecondTable) {
    const std::string steps = plan_of_query(
        "SELECT Line_table.* FROM Header_table, Line_table WHERE Header_table.fkey = Line_table.fkey AND "
        "Header_table.docno = 'ip1'");
    EXPECT_NE(steps.find("SEARCH t1 USING INDEX Header_table_index_2 (docno=?)"), std::string::npos) << steps;
    EXPECT_NE(steps.find("SEARCH t2 USING INDEX Line_table_index_1 (fkey=?)"), std::string::npos) << steps;
}

TEST_F(IndexUse, WalkingAWholeTableSortsNothing) {
    EXPECT_EQ(plan_of_query("SELECT * FROM Header_table"), "SCAN t1");
    EXPECT_EQ(plan(translator_.select("SELECT * FROM Header_table").keys.sql).find("SCAN t1"), 0U);
    EXPECT_EQ(plan(translator_.select("SELECT * FROM Header_table").by_key.sql),
              "SEARCH t1 USING INTEGER PRIMARY KEY (rowid=?)");
}

TEST_F(IndexUse, IndexOfSomeRowsServesTheQueryOfJustTheseRowsInItsOrder) {
    using store::FieldType;
    store::Table items;
    items.name = "Item_table";
    items.fields = {{"vendor_no"}, {"docno"}, {"paid", FieldType::yes_no}, {"void", FieldType::yes_no}};
    items.export_order = {"docno"};
    items.indexes = {{{"docno"}}, {{"vendor_no", "docno"}, false, {"paid", "void"}}};
    const store::Catalog catalog({items});
    const testing::TemporaryFolder folder;
    const std::string path = folder.file("items.brimley");
    (void)store::create_company(path, catalog);
    const store::SqliteHandle connection = store::open_sqlite_file(path, catalog).connection;
    const store::SqliteFlavour flavour;
    const store::dialect::Translator translator{catalog, flavour};
    const auto plan = [&](const std::string& query) {
        return steps_of(connection, translator.select(query).rows.sql);
    };
    const std::string open_items = "SELECT * FROM Item_table WHERE paid = FALSE AND void = FALSE";
    EXPECT_EQ(plan(open_items + " ORDER BY vendor_no, docno"), "SCAN t1 USING INDEX Item_table_index_2");
    EXPECT_EQ(plan(open_items + " AND vendor_no = 'V1' ORDER BY vendor_no, docno"),
              "SEARCH t1 USING INDEX Item_table_index_2 (vendor_no=?)");
    // For one document it is no help.
    EXPECT_EQ(plan(open_items + " AND docno = 'a'"), "SEARCH t1 USING INDEX Item_table_index_1 (docno=?)");
}

}  // namespace
}  // namespace brimley
