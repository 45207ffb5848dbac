#include "kernel/store/catalog.h"

#include <gtest/gtest.h>

#include "store/small_company.h"

namespace brimley {
namespace {

TEST(Catalog, TablesAndFieldsAreFoundWithoutRegardToCase) {
    const store::Catalog& catalog = testing::small_catalog();
    const store::Table* const table = catalog.find("HEADER_TABLE");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table, catalog.find("header_table"));
    EXPECT_EQ(table->name, "Header_table");
    EXPECT_EQ(table->field_index("DocNo"), 2);
    EXPECT_EQ(table->field_index("fkey"), 0);
}

TEST(Catalog, WhatItLacksIsNothing) {
    EXPECT_EQ(testing::small_catalog().find("Header"), nullptr);
    EXPECT_EQ(testing::small_catalog().find(""), nullptr);
    EXPECT_EQ(testing::small_catalog().find("Header_table")->field_index("docn"), -1);
    EXPECT_EQ(testing::small_catalog().find("Header_table")->field_index(""), -1);
}

}  // namespace
}  // namespace brimley
