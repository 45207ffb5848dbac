// Loading CSV files: all or nothing, keys, single rows, and every fault with its file and line.
#include <filesystem>

#include "company/company_fixture.h"
#include "company/export.h"
#include "company/import.h"
#include "company/refusal.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::lines;
using testing::write_file;

class Import : public testing::CompanyTest {
  protected:
    Import() { make(company::EmptyCompany{}); }
    bool looks_up = false;

    void file(const std::string& name, std::string_view text) {
        write_file(folder_.file("csv/" + name), text);
    }

    void load(bool replace = false) {
        in_transaction([&](store::Database& database) {
            company::import_folder(database, folder_.file("csv"), {replace, true, looks_up});
        });
    }

    // The fault without the folder; "none" when the files were taken.
    std::string fault(bool replace = false) {
        try {
            load(replace);
        } catch (const company::CsvError& error) {
            return std::string(error.what()).substr(folder_.file("csv/").size());
        }
        return "none";
    }

    std::vector<std::string> vendors() { return rows("SELECT vendor_no,VENDOR_NAME FROM Vendor_table"); }
};

TEST_F(Import, FieldsMayStandInAnyOrderAndCaseAndBeLeftOut) {
    file("Vendor_table.csv", lines({"vendor_name,OWING_BALANCE,Vendor_No", "Baywater,12.5,V1", ",,V2"}));
    load();
    EXPECT_THAT(rows("SELECT vendor_no,VENDOR_NAME,owing_balance,Currency FROM Vendor_table"),
                ElementsAre("V1|Baywater|12.5|-", "V2|-|-|-"));
}

TEST_F(Import, TableNameIgnoresCaseAndOtherFilesAreLeftAlone) {
    file("VENDOR_TABLE.CSV", lines({"vendor_no", "V1"}));
    file("README.md", "not a table");
    std::filesystem::create_directories(folder_.file("csv/Old_table.csv"));
    load();
    EXPECT_THAT(rows("SELECT vendor_no FROM Vendor_table"), ElementsAre("V1"));
}

TEST_F(Import, AFaultAtTheVeryEndLeavesNothingLoaded) {
    const std::string before = dump();
    file("Account_master_table.csv", lines({"accno,debit", "1000,TRUE"}));
    file("COA_config_table.csv", lines({"Currency", "USD"}));
    file("Report_format_table.csv",
         lines({"user,form_name,Width", "anna,APform_revalue,210", "ben,APform_revalue,wide"}));
    EXPECT_EQ(fault(), "Report_format_table.csv:3: Width is not a number: \"wide\"");
    EXPECT_EQ(dump(), before);
}

TEST_F(Import, UnknownTableIsRefused) {
    file("Nonsense_table.csv", lines({"a", "1"}));
    EXPECT_EQ(fault(), "Nonsense_table.csv:1: there is no table \"Nonsense_table\"");
}

TEST_F(Import, UnknownFieldIsRefused) {
    file("Vendor_table.csv", lines({"vendor_no,colour", "V1,red"}));
    EXPECT_EQ(fault(), "Vendor_table.csv:1: Vendor_table has no field \"colour\"");
}

TEST_F(Import, FieldNamedTwiceIsRefused) {
    file("Vendor_table.csv", lines({"vendor_no,Vendor_NO", "V1,V2"}));
    EXPECT_EQ(fault(), "Vendor_table.csv:1: the field vendor_no is named twice");
}

TEST_F(Import, BadCellIsToldWithItsLine) {
    file("Vendor_table.csv",
         lines({"vendor_no,address,owing_balance", "V1,\"one", "two\",1", "V2,,\"1,5\""}));
    EXPECT_EQ(fault(), "Vendor_table.csv:4: owing_balance is not a number: \"1,5\"");
}

TEST_F(Import, TwoFilesOfOneTableAreRefused) {
    file("Vendor_table.csv", lines({"vendor_no", "V1"}));
    file("vendor_table.csv", lines({"vendor_no", "V2"}));
    EXPECT_EQ(fault(), "vendor_table.csv:1: Vendor_table has another file, Vendor_table.csv");
}

TEST_F(Import, FolderWithoutCsvFilesIsRefused) {
    std::filesystem::create_directories(folder_.file("csv"));
    EXPECT_THROW(load(), company::Refusal);
}

TEST_F(Import, ExistingKeyIsRefused) {
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", "V1,First"}));
    load();
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", "V2,Other", "V1,Second"}));
    EXPECT_EQ(fault(), "Vendor_table.csv:3: vendor_no V1 exists already");
    EXPECT_THAT(vendors(), ElementsAre("V1|First"));
}

TEST_F(Import, KeyOfSeveralFieldsIsToldWhole) {
    file("Docno_master_table.csv",
         lines({"company,doctype,fiscalyear,nextdocno", "1,ip,2026,1", "1,ip,2027,1", "1.0,ip,2026,5"}));
    EXPECT_EQ(fault(),
              "Docno_master_table.csv:4: company 1, doctype ip, fiscalyear 2026 is already in line 2");
}

TEST_F(Import, KeyDiffersByCaseAndByNull) {
    file("Account_currency_table.csv",
         lines({"accno,Currency", "2000,EUR", "2000,eur", "2000,", "2000,\"\""}));
    load();
    EXPECT_EQ(rows("SELECT accno FROM Account_currency_table").size(), 4u);
}

TEST_F(Import, RowsWhoseKeyIsAllNullAreImportedLikeAnyOther) {
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", ",One", ",Two", "\"\",Three"}));
    file("Account_Parameters_table.csv", lines({"accno,default", "2000,TRUE", "2001,TRUE"}));
    load();
    EXPECT_THAT(vendors(), ElementsAre("-|One", "-|Two", "|Three"));
    EXPECT_THAT(rows("SELECT accno FROM Account_Parameters_table"), ElementsAre("2000", "2001"));
    file("Account_Parameters_table.csv", lines({"accno", "2002"}));
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", ",Four", "\"\",Drei"}));
    load(true);
    EXPECT_THAT(rows("SELECT VENDOR_NAME FROM Vendor_table WHERE vendor_no IS NULL"),
                ElementsAre("One", "Two", "Four"));
    EXPECT_THAT(rows("SELECT VENDOR_NAME FROM Vendor_table WHERE vendor_no = ''"), ElementsAre("Drei"));
}

TEST_F(Import, ExportedRowsWithNullKeysComeBackEqual) {
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", ",One", ",Two", "V1,Three"}));
    load();
    const std::string before = dump();
    const testing::TemporaryFolder exported;
    company::export_tables(db(), exported.path());
    std::filesystem::remove(path());
    make_anew(company::EmptyCompany{});
    in_transaction(
        [&](store::Database& database) { company::import_folder(database, exported.path(), {true}); });
    EXPECT_EQ(dump(), before);
}

TEST_F(Import, MasterThatNamesWhatIsNotThereIsRefusedWithItsLine) {
    looks_up = true;
    file("Vendor_table.csv", "vendor_no,Currency,ap_accno\nV1,EUR,2000\nV2,EUR,\nV3,EUR,2001\n");
    file("Working_currency_table.csv", "Currency\nEUR\n");
    file("Account_master_table.csv", "accno\n2000\n");
    EXPECT_EQ(fault(), "Vendor_table.csv:4: ap_accno \"2001\" is not in Account_master_table");
    EXPECT_THAT(rows("SELECT * FROM Vendor_table"), IsEmpty());
    file("Account_master_table.csv", "accno\n2000\n2001\n");
    file("Vendor_table.csv", "vendor_no,currency,ap_accno\nV1,EUR,2000\nV3,USD,2001\n");
    EXPECT_EQ(fault(), "Vendor_table.csv:3: currency \"USD\" is not in Working_currency_table");
    // The base currency needs no row of its own.
    file("COA_config_table.csv", "Currency\nUSD\n");
    EXPECT_EQ(fault(), "none");
    EXPECT_THAT(rows("SELECT vendor_no FROM Vendor_table"), ElementsAre("V1", "V3"));
}

TEST_F(Import, RowsThatAreThereAlreadyMayBeNamed) {
    looks_up = true;
    add("Account_master_table", {{"accno", "1050"}});
    file("Bank_master_table.csv", "bank_code,account_no\nMAIN,1050\n");
    EXPECT_EQ(fault(), "none");
    file("Bank_master_table.csv", "bank_code,account_no\nOTHER,1051\n");
    EXPECT_EQ(fault(), "Bank_master_table.csv:2: account_no \"1051\" is not in Account_master_table");
    looks_up = false;
    EXPECT_EQ(fault(), "none");
}

TEST_F(Import, ParameterKeyHoldsItsDefaultFlag) {
    file("Account_Parameters_table.csv",
         lines({"module,parameter_name,default,accno", "AP,AP discount account,TRUE,7000",
                "AP,AP discount account,FALSE,7001"}));
    load();
    EXPECT_THAT(rows("SELECT accno FROM Account_Parameters_table"), ElementsAre("7000", "7001"));
}

TEST_F(Import, ReplaceTakesTheWholeRowInItsPlace) {
    file("Vendor_table.csv",
         lines({"vendor_no,VENDOR_NAME,Currency", "V1,One,USD", "V2,Two,USD", "V3,Three,USD"}));
    load();
    file("Vendor_table.csv", lines({"vendor_no,VENDOR_NAME", "V4,Four", "V2,Deux"}));
    load(true);
    EXPECT_THAT(rows("SELECT vendor_no,VENDOR_NAME,Currency FROM Vendor_table"),
                ElementsAre("V1|One|USD", "V2|Deux|-", "V3|Three|USD", "V4|Four|-"));
}

TEST_F(Import, ReplaceFindsKeysWithQuotesAndNulls) {
    file("Recent_value_table.csv", lines({"form_name,control_name,Value", "it's,a,1", ",b,2"}));
    load();
    file("Recent_value_table.csv", lines({"form_name,control_name,Value", "it's,a,3", ",b,4"}));
    load(true);
    EXPECT_THAT(rows("SELECT Value FROM Recent_value_table"), ElementsAre("3", "4"));
}

TEST_F(Import, KeyThatStandsTwiceInTheFileIsRefusedEvenWhenReplacing) {
    file("Vendor_table.csv", lines({"vendor_no", "V1", "V2", "V1"}));
    EXPECT_EQ(fault(true), "Vendor_table.csv:4: vendor_no V1 is already in line 2");
}

TEST_F(Import, KeyThatStandsTwiceIsRefusedThoughTheTableWouldTakeIt) {
    file("Grid_property.csv",
         lines({"form_name,grid_name,col_order,Caption", "F,g,0,a", "F,g,1,b", "F,g,1,c"}));
    for (const bool replace : {false, true}) {
        EXPECT_EQ(fault(replace),
                  "Grid_property.csv:4: form_name F, grid_name g, col_order 1 is already in line 3");
    }
    EXPECT_THAT(rows("SELECT Caption FROM Grid_property WHERE form_name = 'F'"), IsEmpty());
}

TEST_F(Import, ReplacedRowStandsInForAllRowsOfItsKey) {
    for (const char* caption : {"a", "b"}) {
        add("Grid_property",
            {{"form_name", "F"}, {"grid_name", "g"}, {"col_order", 1}, {"Caption", caption}});
    }
    add("Grid_property", {{"form_name", "F"}, {"grid_name", "g"}, {"col_order", 2}, {"Caption", "c"}});
    file("Grid_property.csv", lines({"form_name,grid_name,col_order,Caption", "F,g,1,x"}));
    load(true);
    EXPECT_THAT(rows("SELECT Caption FROM Grid_property WHERE form_name = 'F'"), ElementsAre("x", "c"));
}

TEST_F(Import, SingleRowIsReplacedWithoutAsking) {
    file("COA_config_table.csv", lines({"Currency,allow_start_fyear", "USD,2026"}));
    load();
    file("COA_config_table.csv", lines({"Currency", "EUR"}));
    load();
    EXPECT_THAT(rows("SELECT Currency,allow_start_fyear FROM COA_config_table"), ElementsAre("EUR|-"));
}

TEST_F(Import, SecondRowOfASingleRowTableIsRefused) {
    file("COA_config_table.csv", lines({"Currency", "USD", "EUR"}));
    EXPECT_EQ(fault(), "COA_config_table.csv:3: COA_config_table holds a single row");
    EXPECT_THAT(rows("SELECT Currency FROM COA_config_table"), IsEmpty());
}

TEST_F(Import, FileWithoutRowsChangesNothing) {
    file("COA_config_table.csv", lines({"Currency", "USD"}));
    load();
    file("COA_config_table.csv", lines({"Currency"}));
    load();
    EXPECT_THAT(rows("SELECT Currency FROM COA_config_table"), ElementsAre("USD"));
}

TEST_F(Import, DocumentsAreAdded) {
    file("GL_header_table.csv", lines({"company,fkey,docno,gldate,Reverse", "1,1gl1,gl1,2026-01-15,"}));
    load();
    load();
    EXPECT_THAT(rows("SELECT fkey,gldate,Reverse FROM GL_header_table"),
                ElementsAre("1gl1|2026-01-15|FALSE", "1gl1|2026-01-15|FALSE"));
}

}  // namespace
}  // namespace brimley
