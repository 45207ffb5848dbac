// Writing CSV files, and the way there and back.
#include "company/export.h"

#include <filesystem>

#include "company/company_fixture.h"
#include "company/import.h"
#include "company/transaction.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::lines;
using testing::text_of_file;
using testing::write_file;

class Export : public testing::CompanyTest {
  protected:
    void save(const std::string& folder, const std::vector<std::string>& tables = {}) {
        in_transaction([&](store::Database& database) { company::export_tables(database, folder, tables); });
    }

    // Every kind of value at its edges, in documents, keyed tables and a single row.
    void add_awkward_rows() {
        add("Vendor_table", {{"vendor_no", "Z,1"},
                             {"VENDOR_NAME", "say \"hi\""},
                             {"address", "a\nb\r\nc,d"},
                             {"ap_accno", ""}});
        add("Vendor_table", {{"vendor_no", "Z'2"}, {"VENDOR_NAME", " blank "}, {"owing_balance", 0.1 + 0.2}});
        add("GL_header_table",
            {{"fkey", "1gl-10"}, {"gldate", *store::DateTime::from_iso("2026-01-15 23:59:59")}});
        add("GL_header_table", {{"fkey", "1gl-9"}, {"exchange_rate", 1e-7}, {"Reverse", true}});
        add("GL_header_table", {});
        add("Form_property_table", {{"userid", "zoe"}, {"form", "APform_invoice"}, {"toolbar_text", false}});
        add("AP_matching_table",
            {{"matching_date", *store::DateTime::from_iso("1999-12-31 00:00:01")}, {"lineno", -0.0}});
    }
};

TEST_F(Export, ImportOfAnExportGivesAnEqualCompany) {
    make(company::SampleCompany{"zoe"});
    change("SELECT * FROM Form_property_table WHERE userid = 'zoe' AND form = 'APform_invoice'",
           {{"userid", "yan"}});
    add_awkward_rows();
    const std::string before = dump();
    save(folder_.file("out"));

    const std::string copy_path = folder_.file("copy.company");
    company::create_company_file(copy_path, company::EmptyCompany{});
    const store::OpenCompany copy = store::open_company(copy_path, kernel::company_tables());
    {
        company::Transaction transaction(copy);
        company::import_folder(*copy.database, folder_.file("out"), {true});
        company::export_tables(*copy.database, folder_.file("again"));
        transaction.commit();
    }
    for (const store::Table& table : db().catalog().tables()) {
        const std::string name = table.name + ".csv";
        EXPECT_EQ(text_of_file(folder_.file("again/" + name)), text_of_file(folder_.file("out/" + name)))
            << name;
    }
    EXPECT_EQ(dump(), before);
}

TEST_F(Export, RowsStandInKeyOrderWhateverOrderTheyCameIn) {
    make(company::EmptyCompany{});
    for (const char* vendor_no : {"V2", "V10", "V1"}) {
        add("Vendor_table", {{"vendor_no", vendor_no}});
    }
    for (const char* fkey : {"1gl-2", "1gl-1"}) {
        for (const int number : {2, 10, 1}) {
            add("GL_transaction_table", {{"fkey", fkey}, {"lineno", number}});
        }
    }
    save(folder_.file("out"), {"vendor_TABLE", "GL_transaction_table"});
    EXPECT_EQ(text_of_file(folder_.file("out/Vendor_table.csv")),
              lines({"vendor_no,VENDOR_NAME,Currency,ap_accno,Payment_accno,prepayment_accno,owing_balance,"
                     "vendor_group,address",
                     "V1,,,,,,,,", "V10,,,,,,,,", "V2,,,,,,,,"}));
    EXPECT_THAT(text_of_file(folder_.file("out/GL_transaction_table.csv")),
                ::testing::ContainsRegex("1gl-1,,,,,1,.*\n,1gl-1,,,,,2,.*\n,1gl-1,,,,,10,.*\n,1gl-2,"));
}

TEST_F(Export, OnlyTheNamedTablesAreWritten) {
    make(company::EmptyCompany{});
    save(folder_.file("out"), {"Vendor_table", "Fiscalyear_table", "Vendor_table"});
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.file("out"))) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, 2);
}

TEST_F(Export, UnknownTableIsRefusedBeforeAnythingIsWritten) {
    make(company::EmptyCompany{});
    EXPECT_THROW(save(folder_.file("out"), {"Vendor_table", "Nonsense"}), store::Error);
    EXPECT_FALSE(std::filesystem::exists(folder_.file("out")));
}

TEST_F(Export, EarlierExportIsOverwrittenAndOtherFilesStay) {
    make(company::EmptyCompany{});
    write_file(folder_.file("out/Vendor_table.csv"), "old");
    write_file(folder_.file("out/notes.txt"), "mine");
    save(folder_.file("out"));
    EXPECT_THAT(text_of_file(folder_.file("out/Vendor_table.csv")), HasSubstr("vendor_no,"));
    EXPECT_EQ(text_of_file(folder_.file("out/notes.txt")), "mine");
}

TEST_F(Export, FailedExportLeavesTheEarlierOneWhole) {
    make(company::EmptyCompany{});
    save(folder_.file("out"));
    add("Vendor_table", {{"vendor_no", "V1"}});
    const std::string before = text_of_file(folder_.file("out/Vendor_table.csv"));
    // A folder in the way of the last file's draft makes its opening fail, after all others have been
    // written.
    const std::string last = ".Report_format_table.csv." + std::to_string(::getpid()) + ".part";
    std::filesystem::create_directories(folder_.file("out/" + last));
    EXPECT_THROW(save(folder_.file("out")), std::system_error);
    std::filesystem::remove(folder_.file("out/" + last));
    EXPECT_EQ(text_of_file(folder_.file("out/Vendor_table.csv")), before);
    for (const auto& entry : std::filesystem::directory_iterator(folder_.file("out"))) {
        EXPECT_EQ(entry.path().extension(), ".csv") << entry.path();
    }
}

}  // namespace
}  // namespace brimley
