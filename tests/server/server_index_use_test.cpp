// What forms ask a server for again and again is looked up, never walked to.
#include <gtest/gtest.h>

#include "kernel/store/dialect/translator.h"
#include "kernel/store/postgresql/postgresql_flavour.h"
#include "store/small_company.h"

namespace brimley {
namespace {

using testing::on_server;
using testing::SmallCompany;

class ServerIndexUse : public ::testing::Test {
  protected:
    ServerIndexUse() {
        on_server(company_.path(),
                  "INSERT INTO brimley.header_table (fkey, docno) SELECT '1ip-' || n, 'd' || n FROM "
                  "generate_series(1, 5000) AS n; ANALYZE brimley.header_table");
    }
    // How the server means to run a statement with one text for a parameter.
    std::string plan(const std::string& sql) {
        return on_server(company_.path(), "SET search_path = brimley; PREPARE asked(text) AS " + sql +
                                              "; EXPLAIN (FORMAT JSON) EXECUTE asked('1ip-7')");
    }

    SmallCompany company_;
    store::PostgresqlFlavour flavour_;
    store::dialect::Translator translator_{testing::small_catalog(), flavour_};
};

TEST_F(ServerIndexUse, FindFirstSearchesTheIndexOfItsField) {
    const auto table = translator_.select("SELECT * FROM Header_table");
    const std::string steps = plan(translator_.find(table, "[fkey] = 'x'").first.sql);
    EXPECT_NE(steps.find("header_table_index_1"), std::string::npos) << steps;
    EXPECT_EQ(steps.find("header_table_pkey"), std::string::npos) << steps;
}

TEST_F(ServerIndexUse, HeadOfADynasetSearchesTheIndexOfItsField) {
    const std::string steps =
        plan(translator_.select("SELECT * FROM Header_table WHERE fkey = 'x'").head.sql);
    EXPECT_NE(steps.find("header_table_index_1"), std::string::npos) << steps;
    EXPECT_EQ(steps.find("header_table_pkey"), std::string::npos) << steps;
}

TEST_F(ServerIndexUse, FirstRowOfAWholeTableIsTheFirstOfItsKeys) {
    const std::string steps = plan(translator_.select("SELECT * FROM Header_table").first_row.sql);
    EXPECT_NE(steps.find("header_table_pkey"), std::string::npos) << steps;
    EXPECT_EQ(steps.find("Sort"), std::string::npos) << steps;
}

}  // namespace
}  // namespace brimley
