// Numbers that no form would write, in files that are imported: taken and reported, or refused by file and
// line, and in no case the end of the program.
#include "company/books_fixture.h"
#include "company/export.h"
#include "company/import.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::lines;
using testing::write_file;

class OddNumbers : public testing::BooksTest, public ::testing::WithParamInterface<const char*> {
  protected:
    OddNumbers() {
        for (const char* doctype : {"ip", "gl"}) {
            const std::string kind = std::string(" WHERE doctype = '") + doctype + "'";
            change("SELECT * FROM Next_number_fkey_table" + kind, {{"fkeyno", 5}});
            change("SELECT * FROM Docno_master_table" + kind + " AND fiscalyear = '2026'",
                   {{"nextdocno", 5}});
        }
    }
    // The number stands in the first cell of the first row.
    void file(const std::string& table, const std::string& header, const std::string& rest) {
        write_file(folder_.file("csv/" + table + ".csv"), lines({header, number() + rest}));
    }
    // The fault without the folder; "none" when the files were taken.
    std::string fault() {
        try {
            in_transaction([&](store::Database& database) {
                company::import_folder(database, folder_.file("csv"), {true});
            });
        } catch (const company::CsvError& error) {
            return std::string(error.what()).substr(folder_.file("csv/").size());
        }
        return "none";
    }
    static std::string number() { return GetParam(); }
};

class OddPeriod : public OddNumbers {};

TEST_P(OddPeriod, InvoiceWithItIsTakenAndJudgedByEverythingElse) {
    file("AP_header_table", "period,fkey,docno,company,doctype,Source,GLFKEY,fyear",
         ",1ip-4,IP-26-00004,1,ip,AP-INVOICE,1gl-4,2026");
    write_file(folder_.file("csv/GL_header_table.csv"),
               lines({"company,doctype,fkey,docno,fyear", "1,gl,1gl-4,GL-26-00004,2026"}));
    EXPECT_EQ(fault(), "none");
    EXPECT_THAT(findings(), IsEmpty());
    db().Execute("DELETE * FROM GL_header_table WHERE fkey = '1gl-4'");
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip-4: its GL document 1gl-4 does not exist",
                                        "Invoice 1ip-4 has no lines"));
}

TEST_P(OddPeriod, LedgerLineWithItMovesTheRunningBalancesAndNoPeriod) {
    file("GL_header_table", "period,company,doctype,fkey,docno,fyear", ",1,gl,1gl-4,GL-26-00004,2026");
    const std::string rest = ",1gl-4,1,2026,USD,A,";
    write_file(folder_.file("csv/GL_transaction_table.csv"),
               lines({"period,fkey,company,fyear,Currency,ledgertype,lineno,accno,amount,base_amount",
                      number() + rest + "1,1300,5,5", number() + rest + "2,2000,5,5"}));
    EXPECT_EQ(fault(), "none");
    EXPECT_THAT(findings(), ElementsAre("Balance_table A 1300 USD: amount is 5.00, expected 10.00",
                                        "Balance_table A 1300 USD: base_amount is 5.00, expected 10.00",
                                        "Balance_table A 2000 USD: amount is 152.35, expected 157.35",
                                        "Balance_table A 2000 USD: base_amount is 152.35, expected 157.35"));
}

TEST_P(OddPeriod, CompanyWithItComesBackEqualFromItsFiles) {
    file("AP_header_table", "period,fkey", ",1ip-4");
    EXPECT_EQ(fault(), "none");
    const std::string before = dump();
    const testing::TemporaryFolder copy;
    in_transaction([&](store::Database& database) { company::export_tables(database, copy.path()); });
    in_transaction([&](store::Database& database) {
        for (const char* table : {"AP_header_table", "AP_transaction_table", "GL_header_table",
                                  "GL_transaction_table", "Trail_table"})
            database.Execute(std::string("DELETE * FROM ") + table);
        company::import_folder(database, copy.path(), {true});
    });
    EXPECT_TRUE(dump() == before);
}

INSTANTIATE_TEST_SUITE_P(InFiles, OddPeriod, ::testing::Values("3.5", "1e300", "-1e300", "-3", "0", "14"));

class NoNumber : public OddNumbers {};

TEST_P(NoNumber, IsRefusedByFileAndLine) {
    const std::string before = dump();
    file("AP_header_table", "period,fkey", ",1ip-4");
    EXPECT_EQ(fault(), "AP_header_table.csv:2: period is not a number: \"" + number() + "\"");
    EXPECT_TRUE(dump() == before);
}

INSTANTIATE_TEST_SUITE_P(InFiles, NoNumber,
                         ::testing::Values("1e400", "-1e400", "nan", "inf", "0x10", " 3", "+3", "3e", "-"));

class NoWholeNumber : public OddNumbers {};

TEST_P(NoWholeNumber, IsRefusedByFileAndLineWhereLinesAreCounted) {
    file("GL_transaction_table", "lineno,fkey", ",1gl-1");
    EXPECT_EQ(fault(), "GL_transaction_table.csv:2: lineno is not a whole number: \"" + number() + "\"");
}

INSTANTIATE_TEST_SUITE_P(InFiles, NoWholeNumber, ::testing::Values("3.5", "1e300", "-1e300", "1e-300"));

}  // namespace
}  // namespace brimley
