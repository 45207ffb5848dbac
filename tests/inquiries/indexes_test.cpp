#include <gtest/gtest.h>

#include <algorithm>

#include "kernel/store/catalog.h"
#include "kernel/tables/company_tables.h"

namespace brimley::testing {

namespace {

bool begins_an_index(const std::string& table_name, const std::string& field) {
    const store::Table* table = kernel::company_tables().find(table_name);
    return std::ranges::any_of(table->indexes, [&](const store::Index& index) {
        return index.fields.front() == field && index.only_where_false.empty();
    });
}

}  // namespace

// Long lists are walked in the order of storing only when days alone are asked for.
TEST(InquiryFilters, NumberAndVendorAndTheWayToTheDocumentAreLookedUp) {
    for (const char* field : {"invoice_no", "docno", "vendor_no", "fkey"}) {
        EXPECT_TRUE(begins_an_index("AP_transaction_table", field)) << field;
        EXPECT_TRUE(begins_an_index("AP_header_table", field)) << field;
    }
    for (const char* field : {"invoice_no", "ap_docno", "vendor_no", "fkey"})
        EXPECT_TRUE(begins_an_index("Payment_transaction_table", field)) << field;
    for (const char* field : {"payby", "fkey"})
        EXPECT_TRUE(begins_an_index("Payment_header_table", field)) << field;
}

}  // namespace brimley::testing
