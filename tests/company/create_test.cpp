// New companies: what stands in them, and that nothing is left of one that failed.
#include "company/create.h"
#include "company/countries.h"

#include <cstdlib>
#include <filesystem>
#include <set>

#include "company/check.h"
#include "company/company_fixture.h"
#include "company/csv_reader.h"
#include "company/forms.h"
#include "company/refusal.h"
#include "kernel/tables/company_tables.h"
#include "presentation/grid_defaults.h"

namespace brimley {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::SizeIs;

class Create : public testing::CompanyTest {
  protected:
    std::vector<std::string> findings() {
        std::vector<std::string> found;
        in_transaction([&](store::Database& database) { found = company::check_company(database); });
        return found;
    }
};

TEST_F(Create, EmptyCompanyHoldsTheGridLayoutsAndNothingElse) {
    make_anew(company::EmptyCompany{});
    for (const store::Table& table : db().catalog().tables()) {
        if (table.name == "Grid_property") continue;
        EXPECT_THAT(rows("SELECT * FROM [" + table.name + "]"), IsEmpty()) << table.name;
    }
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(Create, EveryGridOfEveryFormHasItsColumnsInOrder) {
    make_anew(company::EmptyCompany{});
    const std::set<std::string> grids = [&] {
        const auto found = rows("SELECT form_name,grid_name FROM Grid_property");
        return std::set<std::string>(found.begin(), found.end());
    }();
    EXPECT_THAT(
        grids, ElementsAre("APform_creditcard_payment|dbgrid1", "APform_invoice|dbgrid1",
                           "APform_invoice|grid_tax", "APform_invoice|grid_tax_summary",
                           "APform_misc_payment|dbgrid1", "APform_misc_payment|grid_tax",
                           "APform_misc_payment|grid_tax_summary", "APform_payment|dbgrid1",
                           "APform_prepayment|dbgrid1", "APform_revalue|dbgrid1", "APform_revalue|dbgrid2",
                           "APform_revalue|dbgridcmd", "APform_void_check|dbgrid1", "APreport_aging|dbgrid1",
                           "APreport_aging|grid_sel", "APreport_inquiry|dbgrid1", "APreport_inquiry|grid_sel",
                           "APreport_payhistory|dbgrid1", "APreport_recur_inquiry|dbgrid1",
                           "APreport_recur_inquiry|grid_sel", "ARreport_inquiry|grid_sel"));
    for (const presentation::GridDefault& grid : presentation::grid_defaults()) {
        const auto found =
            rows(std::string("SELECT col_order,Caption FROM Grid_property WHERE form_name = '") +
                 grid.form_name + "' AND grid_name = '" + grid.grid_name + "' ORDER BY col_order");
        std::vector<std::string> expected;
        for (const auto& column : grid.columns) {
            expected.push_back(std::to_string(expected.size()) + "|" + column.caption);
        }
        EXPECT_EQ(found, expected) << grid.form_name << " " << grid.grid_name;
    }
}

TEST_F(Create, InvoiceLinesOpenTheEnteredColumnsOnly) {
    make_anew(company::EmptyCompany{});
    EXPECT_THAT(
        rows("SELECT Caption FROM Grid_property WHERE form_name = 'APform_invoice' AND grid_name = 'dbgrid1' "
             "AND Locked = FALSE ORDER BY col_order"),
        ElementsAre("description", "gross amount", "taxable amount", "tax code", "purchase account"));
    EXPECT_THAT(
        rows("SELECT Caption FROM Grid_property WHERE form_name = 'APform_invoice' AND Visible = FALSE"),
        ElementsAre("pay item", "include tax", "amount"));
    EXPECT_THAT(rows("SELECT form_name,Caption FROM Grid_property WHERE cell_type = 'dbgCheckBox' AND "
                     "form_name = 'APform_payment'"),
                ElementsAre("APform_payment|on due"));
    EXPECT_THAT(rows("SELECT row_height,Print FROM Grid_property"), Each("370|TRUE"));
}

TEST_F(Create, ExistingPathIsRefusedAndLeftAsItIs) {
    testing::write_file(path(), "precious");
    try {
        company::create_company_file(path(), company::EmptyCompany{});
        FAIL() << "was created";
    } catch (const store::Error& error) {
        EXPECT_EQ(error.kind(), store::ErrorKind::state);
    }
    EXPECT_EQ(testing::text_of_file(path()), "precious");
}

TEST_F(Create, FailedSampleLeavesNothingBehind) {
    testing::write_file(folder_.file("data/sample_company/Vendor_table.csv"),
                        "vendor_no,owing_balance\nV1,much\n");
    ::setenv("BRIMLEY_DATA", folder_.file("data").c_str(), 1);
    EXPECT_THROW(company::create_company_file(path(), company::SampleCompany{"zoe"}), company::CsvError);
    ::unsetenv("BRIMLEY_DATA");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        EXPECT_EQ(entry.path().filename(), "data");
    }
}

TEST_F(Create, SampleAgreesWithItself) {
    make_anew(company::SampleCompany{"zoe"});
    EXPECT_THAT(findings(), IsEmpty());
    // Opening balances are a trial balance.
    double sum = 0;
    store::Recordset balances = db().OpenRecordset(
        "SELECT Account_master_table.debit,Balance_table.amount FROM (Balance_table INNER JOIN "
        "Account_master_table ON "
        "Balance_table.accno = Account_master_table.accno) WHERE Balance_table.ledgertype = 'A'",
        store::RecordsetKind::snapshot);
    for (; !balances.at_eof(); balances.MoveNext()) {
        sum += balances.number("amount") * (balances.flag("debit") ? 1 : -1);
    }
    EXPECT_NEAR(sum, 0, 0.001);
}

// What somebody sees who opens the program for the first time.
TEST_F(Create, HalfYearHoldsDocumentsOfEveryKindAndAgrees) {
    make_anew(company::HalfYearCompany{"zoe"});
    EXPECT_THAT(findings(), IsEmpty());
    const auto count = [&](const std::string& condition) {
        return rows("SELECT fkey FROM " + condition).size();
    };
    EXPECT_THAT(rows("SELECT doctype FROM AP_header_table"), IsSupersetOf({"ip", "vcn", "vdn"}));
    EXPECT_THAT(rows("SELECT Currency FROM AP_header_table"), IsSupersetOf({"USD", "EUR", "THB"}));
    EXPECT_THAT(rows("SELECT doctype FROM Payment_header_table"), IsSupersetOf({"py", "pp", "pc", "mpy"}));
    EXPECT_GE(count("AP_header_table") + count("Payment_header_table"), 60U);
    EXPECT_EQ(count("AP_header_table WHERE void = TRUE"), 1U);
    EXPECT_EQ(count("AP_header_table WHERE hold = TRUE"), 1U);
    EXPECT_EQ(count("AP_header_table WHERE paid = TRUE AND fully_paid = FALSE"), 1U);
    EXPECT_GE(count("AP_header_table WHERE fully_paid = TRUE"), 10U);
    EXPECT_EQ(count("AP_recur_header_table"), 3U);
    EXPECT_EQ(count("AP_Revalue_header_table"), 1U);
    EXPECT_THAT(rows("SELECT form FROM User_right_table WHERE userid = 'zoe'"),
                SizeIs(std::size(company::kForms)));
    const auto columns = rows("SELECT form_name,grid_name,Caption FROM Grid_property");
    EXPECT_THAT(columns, Not(IsEmpty()));
    EXPECT_THAT(std::set<std::string>(columns.begin(), columns.end()), SizeIs(columns.size()));
}

TEST_F(Create, SampleGivesItsCallerFullRightsAndKeepsThoseOfOthers) {
    make_anew(company::SampleCompany{"ben"});
    EXPECT_THAT(rows("SELECT Update,Print,form_design FROM User_right_table WHERE userid = 'ben'"),
                AllOf(SizeIs(11), Each("FALSE|TRUE|FALSE")));
    reopen();
    in_transaction([](store::Database& database) { company::add_full_rights(database, "zoe"); });
    EXPECT_THAT(rows("SELECT Update,Print,form_design FROM User_right_table WHERE userid = 'zoe'"),
                AllOf(SizeIs(11), Each("TRUE|TRUE|TRUE")));
    EXPECT_THAT(rows("SELECT toolbar_text,Fontbar FROM Form_property_table WHERE userid = 'zoe'"),
                AllOf(SizeIs(11), Each("-|-")));
}

TEST_F(Create, SampleHoldsWhatTheFormsNeed) {
    make_anew(company::SampleCompany{"zoe"});
    EXPECT_THAT(
        rows("SELECT tax_code FROM Tax_code_table WHERE transaction_type = 'purchase' AND default = TRUE"),
        ElementsAre("NOTAX"));
    EXPECT_THAT(rows("SELECT term_name,Description FROM Payment_term_table WHERE default = TRUE"),
                ElementsAre("Net 30 days|Net 30 days"));
    EXPECT_THAT(rows("SELECT term_no FROM Payment_term_table WHERE payment_term = '00' AND term_no <> '00'"),
                SizeIs(1));
    EXPECT_THAT(rows("SELECT accno FROM Account_master_table WHERE type = 'X'"), ElementsAre("3900"));
    EXPECT_THAT(
        rows("SELECT accno,debit FROM Account_master_table WHERE inactive = FALSE AND accno = '1300'"),
        ElementsAre("1300|TRUE"));
    EXPECT_THAT(rows("SELECT accno,Percent FROM Allocation_Account_table WHERE allocate_accno = '5900' ORDER "
                     "BY accno"),
                ElementsAre("5100|60", "5200|40"));
    EXPECT_THAT(rows("SELECT item_no,tax_authority,taxable,percent_refund,include_itemcost FROM "
                     "Tax_code_details_table "
                     "WHERE tax_code = 'STACK' ORDER BY item_no"),
                ElementsAre("1|TAXA|TRUE|100|FALSE", "2|TAXB|FALSE|0|TRUE"));
}

TEST_F(Create, StarterHasWhatANewCompanyNeeds) {
    make_anew(company::StarterCompany{"EUR", "2026", "zoe"});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(rows("SELECT Currency,activate_working_period FROM COA_config_table"),
                ElementsAre("EUR|FALSE"));
    EXPECT_THAT(rows("SELECT Currency FROM Working_currency_table"), ElementsAre("EUR"));
    EXPECT_THAT(rows("SELECT fyear,StartDate,EndDate,history FROM Fiscalyear_table"),
                ElementsAre("2026|2026-01-01|2026-12-31|FALSE"));
    const auto periods = rows("SELECT period,StartDate,EndDate FROM Period_table");
    EXPECT_THAT(periods, SizeIs(12));
    EXPECT_THAT(periods, Contains("2|20260201|20260228"));
    EXPECT_THAT(rows("SELECT nextdocno FROM Docno_master_table WHERE fiscalyear = '2026' AND company = 1"),
                AllOf(SizeIs(10), Each("1")));
    EXPECT_THAT(rows("SELECT fkeyno FROM Next_number_fkey_table WHERE company = 1"),
                AllOf(SizeIs(10), Each("1")));
    EXPECT_THAT(rows("SELECT doctype FROM Next_number_format_table"), SizeIs(10));
    EXPECT_THAT(rows("SELECT structure FROM Next_number_config_table"), SizeIs(1));
    EXPECT_THAT(
        rows("SELECT form FROM User_right_table WHERE userid = 'zoe' AND Update = TRUE AND Print = TRUE"),
        SizeIs(11));
    EXPECT_THAT(rows("SELECT accno FROM Account_master_table WHERE type = 'X'"), SizeIs(1));
}

TEST_F(Create, StarterAccountsExistAndHaveTheirBalanceRows) {
    make_anew(company::StarterCompany{"EUR", "2026", "zoe"});
    const auto accounts = rows("SELECT accno FROM Account_master_table");
    const auto parameters = rows("SELECT accno FROM Account_Parameters_table WHERE default = TRUE");
    EXPECT_THAT(parameters, SizeIs(10));
    for (const std::string& accno : parameters) {
        EXPECT_THAT(accounts, Contains(accno));
    }
    for (const std::string& accno : accounts) {
        EXPECT_THAT(
            rows("SELECT Currency FROM Balance_table WHERE company = 1 AND ledgertype = 'A' AND accno = '" +
                 accno + "'"),
            ElementsAre("EUR"));
        EXPECT_THAT(rows("SELECT Currency,ytd_balance,e_ytd_balance FROM Balance_period_table WHERE fyear = "
                         "'2026' AND "
                         "company = 1 AND ledgertype = 'A' AND accno = '" +
                         accno + "'"),
                    ElementsAre("EUR|0|0"));
    }
}

TEST_F(Create, StarterHasADefaultTaxCodeWithAnAuthority) {
    make_anew(company::StarterCompany{"EUR", "2026", "zoe"});
    EXPECT_THAT(
        rows("SELECT Tax_authority_table.Rate FROM Tax_code_table,Tax_code_details_table,Tax_authority_table "
             "WHERE Tax_code_table.default = TRUE AND Tax_code_table.transaction_type = 'purchase' AND "
             "Tax_code_details_table.tax_code = Tax_code_table.tax_code AND "
             "Tax_authority_table.tax_authority = Tax_code_details_table.tax_authority"),
        ElementsAre("0"));
}

class CreateOfCountry : public testing::CompanyTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(CreateOfCountry, AgreesAndHasOneDefaultTaxCode) {
    company::StarterCompany starter{"EUR", "2026", "zoe"};
    starter.country = GetParam();
    make_anew(starter);
    EXPECT_THAT(company::check_books(db()), IsEmpty());
    EXPECT_THAT(rows("SELECT tax_code FROM Tax_code_table WHERE default = TRUE"), SizeIs(1));
    EXPECT_THAT(rows("SELECT accno FROM Account_master_table WHERE type = 'X'"), SizeIs(1));
    const auto accounts = rows("SELECT accno FROM Account_master_table");
    EXPECT_THAT(rows("SELECT accno FROM Balance_table WHERE ledgertype = 'A'"), SizeIs(accounts.size()));
    EXPECT_THAT(rows("SELECT accno FROM Account_Parameters_table WHERE default = TRUE"),
                AllOf(SizeIs(10), Each(::testing::AnyOfArray(accounts))));
    for (const std::string& code : rows("SELECT tax_code FROM Tax_code_table"))
        EXPECT_THAT(rows("SELECT item_no FROM Tax_code_details_table WHERE tax_code = '" + code + "'"),
                    Not(IsEmpty()))
            << code;
}
INSTANTIATE_TEST_SUITE_P(Each, CreateOfCountry,
                         ::testing::Values("at", "au", "ca", "de", "fr", "gb", "th", "us"),
                         [](const auto& country) { return std::string(country.param); });

TEST_F(Create, CountriesAreThoseThatAreTried) {
    std::vector<std::string> folders;
    for (const company::Country& country : company::countries())
        folders.push_back(country.folder);
    EXPECT_THAT(folders, ::testing::UnorderedElementsAre("at", "au", "ca", "de", "fr", "gb", "th", "us"));
}

TEST_F(Create, StarterBeginsItsYearInAnyMonthAndHasItsFirstBankAndVendor) {
    company::StarterCompany starter{"GBP", "2026", "zoe"};
    starter.country = "gb";
    starter.first_month = 4;
    starter.bank = {"MAIN", "Harbour Bank", "Quay Street"};
    starter.vendor = {"V1", "Baywater Coffee Traders", "14 Quay Road"};
    make_anew(starter);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(rows("SELECT StartDate,EndDate FROM Fiscalyear_table"), ElementsAre("2026-04-01|2027-03-31"));
    EXPECT_THAT(rows("SELECT StartDate FROM Period_table WHERE period = '10'"), ElementsAre("20270101"));
    EXPECT_THAT(rows("SELECT bank_code,bank_branch,account_no FROM Bank_master_table"),
                ElementsAre("MAIN|Quay Street|1050"));
    EXPECT_THAT(rows("SELECT vendor_no,Currency,ap_accno,owing_balance,address FROM Vendor_table"),
                ElementsAre("V1|GBP|2000|0|14 Quay Road"));
}

TEST_F(Create, StarterOfAnUnknownCountryNamesTheKnownOnes) {
    company::StarterCompany starter{"EUR", "2026", "zoe"};
    starter.country = "atlantis";
    try {
        make_anew(starter);
        FAIL() << "it was made";
    } catch (const company::UnusableValue& refusal) {
        EXPECT_STREQ(refusal.what(),
                     "there are no taxes of the country atlantis, only of au, at, ca, fr, de, th, gb, us");
    }
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(Create, StarterRefusesWhatIsNoYearOrCurrency) {
    EXPECT_THROW(make_anew(company::StarterCompany{"euro", "2026", "zoe"}), company::UnusableValue);
    EXPECT_THROW(make_anew(company::StarterCompany{"EUR", "26", "zoe"}), company::UnusableValue);
    EXPECT_THROW(make_anew(company::StarterCompany{"EUR", "2031", "zoe"}), company::UnusableValue);
    EXPECT_FALSE(std::filesystem::exists(path()));
}

}  // namespace
}  // namespace brimley
