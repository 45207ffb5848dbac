// The catalog against the list of tables that the suite shares, and a new company file against the catalog,
// as the engine itself reports it.
#include "kernel/tables/company_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>

#include "kernel/store/database.h"
#include "kernel/store/dialect/translator.h"
#include "kernel/store/sqlite/sqlite_flavour.h"
#include "support/temporary_folder.h"

namespace brimley {
namespace {

using store::FieldType;
using TableFields = std::map<std::string, std::vector<std::string>>;  // "field:type" in order

std::string listed_type(const store::Field& field) {
    switch (field.type) {
        case FieldType::text:
            return "text";
        case FieldType::number:
            return "number";
        case FieldType::integer:
            return "integer";
        case FieldType::date:
            return "date";
        case FieldType::datetime:
            return "datetime";
        case FieldType::yes_no:
            return field.nullable_flag ? "yes/no/null" : "yes/no";
    }
    return "";
}

TableFields fields_of_catalog() {
    TableFields tables;
    for (const store::Table& table : kernel::company_tables().tables()) {
        std::vector<std::string>& fields = tables[table.name];
        for (const store::Field& field : table.fields) {
            fields.push_back(field.name + ":" + listed_type(field));
        }
    }
    return tables;
}

TableFields fields_of_list() {
    TableFields tables;
    std::ifstream list(std::string(BRIMLEY_SOURCE_DIR) + "/tests/kernel/company_tables.txt");
    std::string table;
    for (std::string line; std::getline(list, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] != ' ') {
            table = line;
            continue;
        }
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            tables[table].push_back(word);
        }
    }
    return tables;
}

TEST(CompanyTables, CatalogHasEveryListedFieldWithItsTypeInOrder) {
    const TableFields listed = fields_of_list();
    ASSERT_EQ(listed.size(), 48u);
    const TableFields catalog = fields_of_catalog();
    for (const auto& [table, fields] : listed) {
        const auto found = catalog.find(table);
        ASSERT_NE(found, catalog.end()) << table;
        EXPECT_EQ(found->second, fields) << table;
    }
    EXPECT_EQ(catalog.size(), listed.size());
}

TEST(CompanyTables, KeysAndIndexesNameFieldsOfTheirTable) {
    for (const store::Table& table : kernel::company_tables().tables()) {
        std::vector<std::string> named = table.natural_key;
        named.insert(named.end(), table.export_order.begin(), table.export_order.end());
        for (const store::Index& index : table.indexes) {
            named.insert(named.end(), index.fields.begin(), index.fields.end());
            for (const std::string& flag : index.only_where_false) {
                ASSERT_GE(table.field_index(flag), 0) << table.name << "." << flag;
                const store::Field& field = table.fields[static_cast<std::size_t>(table.field_index(flag))];
                EXPECT_EQ(field.type, store::FieldType::yes_no) << table.name << "." << flag;
            }
        }
        for (const std::string& field : named) {
            EXPECT_GE(table.field_index(field), 0) << table.name << "." << field;
        }
        // A table either has rows looked up by key, or one row, or documents in some order.
        EXPECT_NE(table.single_row, !table.export_order.empty()) << table.name;
    }
}

TEST(CompanyTables, NothingIsUniqueOnANumberOrKeyOfDocuments) {
    const std::set<std::string> of_documents = {"docno", "fkey"};
    for (const store::Table& table : kernel::company_tables().tables()) {
        for (const store::Index& index : table.indexes) {
            for (const std::string& field : index.fields) {
                EXPECT_FALSE(index.unique && of_documents.contains(field)) << table.name;
            }
        }
    }
}

TEST(CompanyTables, OnlyCountersParametersPasswordsAndEntriesOfTheTrailAreUnique) {
    std::set<std::string> unique;
    for (const store::Table& table : kernel::company_tables().tables()) {
        for (const store::Index& index : table.indexes) {
            if (!index.unique) continue;
            unique.insert(table.name);
            EXPECT_EQ(index.fields, table.natural_key) << table.name;
        }
    }
    EXPECT_EQ(unique, (std::set<std::string>{"Account_Parameters_table", "Docno_master_table",
                                             "Next_number_fkey_table", "Next_number_format_table",
                                             "Password_table", "Trail_table"}));
}

TEST(CompanyTables, EveryKeyHasAnIndexOverItsFields) {
    for (const store::Table& table : kernel::company_tables().tables()) {
        if (table.natural_key.empty()) continue;
        const std::set<std::string> key(table.natural_key.begin(), table.natural_key.end());
        const bool indexed =
            std::any_of(table.indexes.begin(), table.indexes.end(), [&](const store::Index& index) {
                return std::set<std::string>(index.fields.begin(), index.fields.end()) == key;
            });
        EXPECT_TRUE(indexed) << table.name;
    }
}

// What SQLite says about a file, read without the store.
class EngineReport {
  public:
    explicit EngineReport(const std::string& path) {
        sqlite3* opened = nullptr;
        EXPECT_EQ(sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        db_.reset(opened);
    }

    // Every row as the texts of its columns.
    [[nodiscard]] std::vector<std::vector<std::string>> rows(const std::string& sql) const {
        std::vector<std::vector<std::string>> rows;
        const auto collect = [](void* into, int columns, char** texts, char**) {
            auto& row = static_cast<std::vector<std::vector<std::string>>*>(into)->emplace_back();
            for (int column = 0; column < columns; ++column) {
                row.emplace_back(texts[column] ? texts[column] : "");
            }
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(db_.get(), sql.c_str(), collect, &rows, nullptr), SQLITE_OK) << sql;
        return rows;
    }

  private:
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> db_{nullptr, &sqlite3_close};
};

std::string engine_type(const store::Field& field) {
    switch (field.type) {
        case FieldType::text:
            return "TEXT";
        case FieldType::integer:
            return "INTEGER";
        case FieldType::yes_no:
            return field.nullable_flag ? "INTEGER" : "INTEGER NOT NULL";
        default:
            return "REAL";  // numbers and dates
    }
}

class NewCompanyFile : public ::testing::Test {
  protected:
    NewCompanyFile()
        : company_(store::create_company(folder_.file("new.company"), kernel::company_tables())) {}

    testing::TemporaryFolder folder_;
    store::OpenCompany company_;
    EngineReport report_{folder_.file("new.company")};
};

TEST_F(NewCompanyFile, HasExactlyTheTablesOfTheCatalog) {
    std::set<std::string> reported;
    for (const auto& row : report_.rows("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        reported.insert(row[0]);
    }
    std::set<std::string> expected;
    for (const store::Table& table : kernel::company_tables().tables()) {
        expected.insert(table.name);
    }
    EXPECT_EQ(reported, expected);
}

// Accounts of one type are many, those of one number are not.
TEST_F(NewCompanyFile, RowIsLookedUpByItsKeyWhateverElseIsAskedOfIt) {
    const store::SqliteFlavour flavour;
    const store::dialect::Translator translator(kernel::company_tables(), flavour);
    const auto query =
        translator.select("SELECT accname FROM Account_master_table WHERE accno = '5000' AND type = 'A'");
    const auto steps = report_.rows("EXPLAIN QUERY PLAN " + query.rows.sql);
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_THAT(steps[0][3], ::testing::HasSubstr("(accno=?)"));
}

// All at once, or a single vendor's: neither is sorted, and what is paid is not walked through.
TEST_F(NewCompanyFile, OpenItemsAreReadInTheOrderOfTheAgingWithoutSorting) {
    const store::SqliteFlavour flavour;
    const store::dialect::Translator translator(kernel::company_tables(), flavour);
    const std::string items =
        "SELECT vendor_no, docno, pay_item, (Datevalue('Jan 15, 2026') - [due_date]) / 30 AS age_range FROM "
        "AP_transaction_table WHERE paid = FALSE AND void = FALSE";
    const std::string order = " ORDER BY vendor_no, docno, pay_item";
    for (const std::string& query : {items + order, items + " AND vendor_no = 'V1'" + order,
                                     "SELECT * FROM (" + items + ") WHERE age_range > 0" + order}) {
        const auto steps = report_.rows("EXPLAIN QUERY PLAN " + translator.select(query).rows.sql);
        ASSERT_EQ(steps.size(), 1U) << query;
        EXPECT_THAT(steps[0][3], ::testing::HasSubstr("USING INDEX AP_transaction_table_index_4")) << query;
    }
}

TEST_F(NewCompanyFile, HasEveryFieldWithItsTypeInOrder) {
    for (const store::Table& table : kernel::company_tables().tables()) {
        std::vector<std::string> expected;
        for (const store::Field& field : table.fields) {
            expected.push_back(field.name + " " + engine_type(field));
        }
        std::vector<std::string> reported;
        for (const auto& row : report_.rows("PRAGMA table_info([" + table.name + "])")) {
            if (row[5] != "0") continue;  // the store's own row key
            reported.push_back(row[1] + " " + row[2] + (row[3] == "1" ? " NOT NULL" : ""));
        }
        EXPECT_EQ(reported, expected) << table.name;
    }
}

TEST_F(NewCompanyFile, HasEveryIndexWithItsFieldsAndUniqueness) {
    for (const store::Table& table : kernel::company_tables().tables()) {
        std::multiset<std::string> expected;
        for (const store::Index& index : table.indexes) {
            if (index.in_order_of_adding) continue;
            std::string text = index.unique ? "unique" : "plain";
            if (!index.only_where_false.empty()) text += " of some rows";
            for (const std::string& field : index.fields) {
                text += " " + store::lower_case(field);
            }
            expected.insert(text);
        }
        std::multiset<std::string> reported;
        for (const auto& index : report_.rows("PRAGMA index_list([" + table.name + "])")) {
            std::string text = index[2] == "1" ? "unique" : "plain";
            if (index[4] == "1") text += " of some rows";
            for (const auto& column : report_.rows("PRAGMA index_info([" + index[1] + "])")) {
                text += " " + store::lower_case(column[2]);
            }
            reported.insert(text);
        }
        EXPECT_EQ(reported, expected) << table.name;
    }
}

TEST_F(NewCompanyFile, ANewRowIsNullExceptForItsYesNoFields) {
    for (const store::Table& table : kernel::company_tables().tables()) {
        store::Recordset rows = company_.database->OpenRecordset(
            "SELECT * FROM [" + table.name + "] WHERE 1 = 2", store::RecordsetKind::dynaset);
        rows.AddNew();
        rows.Update();
        rows.Bookmark(rows.LastModified());
        for (const store::Field& field : table.fields) {
            const bool is_false = field.type == FieldType::yes_no && !field.nullable_flag;
            EXPECT_EQ(rows.field(field.name), is_false ? store::Value(false) : store::Value())
                << table.name << "." << field.name;
        }
    }
}

}  // namespace
}  // namespace brimley
