// What a hand that knows the tables would try, on books that the forms have filled: every one shows.
//
// The forger covers the tracks as far as sums go: what the check of the sums expects is written into balances
// and into what vendors are owed.
#include <gmock/gmock.h>

#include <fmt/format.h>

#include <map>
#include <regex>

#include "company/check.h"
#include "random_session.h"
#include "support/company_copy.h"
#include "support/sample_company.h"

namespace brimley::testing {

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

CompanyOriginal& busy_original() {
    static CompanyOriginal original([](const std::string& company) {
        company::create_company_file(company, company::SampleCompany{"anna"});
        constexpr int kActs = 250;
        RandomSession session(company, 20260105);
        for (int act = 0; act < kActs; ++act)
            session.act();
    });
    return original;
}

class Frauds : public ::testing::Test {
  protected:
    void sql(const std::string& statement) { EXPECT_GT(company.db().Execute(statement), 0) << statement; }
    std::string one(const std::string& query) {
        const auto rows = company.snapshot(query);
        EXPECT_FALSE(rows.at_eof()) << query;
        return rows.at_eof() ? "" : rows.column(0).text();
    }
    std::vector<std::string> findings() { return company::check_books(company.db()); }
    // An invoice in base currency that nobody has paid, voided or edited, in the middle of others.
    std::string open_invoice() {
        return one(
            "SELECT fkey FROM AP_header_table WHERE Source = 'AP-INVOICE' AND Currency = 'USD' AND paid = "
            "FALSE AND void = FALSE AND hold = FALSE AND doctype = 'ip' ORDER BY date_created, fkey");
    }
    std::string of_header(const std::string& fkey, const std::string& field) {
        return one(fmt::format("SELECT {} FROM AP_header_table WHERE fkey = '{}'", field, fkey));
    }
    void cover_tracks() {
        for (int round = 0; round < 4; ++round)
            for (const std::string& finding : company::check_sums(company.db()))
                cover(finding);
    }

    CompanyCopy company{busy_original()};

  private:
    // "Balance_period_table 2026 A 2000 USD: period1 is 5.00, expected 0.00".
    void cover(const std::string& finding) {
        static const std::regex kBalance(
            R"((Balance\w*)(?: (\d+))? ([AFE]) (\S+) (\S+): (\w+) is \S+, expected (\S+))");
        static const std::regex kOwing(
            R"(Vendor (\S+): owing_balance is \S+, by its documents ([-0-9.]+).*)");
        std::smatch found;
        if (std::regex_match(finding, found, kBalance)) {
            const std::string year = found[2].matched ? fmt::format(" AND fyear = '{}'", found[2].str()) : "";
            sql(fmt::format(
                "UPDATE {} SET {} = {} WHERE ledgertype = '{}' AND accno = '{}' AND Currency = '{}'{}",
                found[1].str(), found[6].str(), found[7].str(), found[3].str(), found[4].str(),
                found[5].str(), year));
        } else if (std::regex_match(finding, found, kOwing)) {
            sql(fmt::format("UPDATE Vendor_table SET owing_balance = {} WHERE vendor_no = '{}'",
                            found[2].str(), found[1].str()));
        }
    }
};

TEST_F(Frauds, BooksOfTheFormsHaveNoFindings) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(Frauds, InvoiceDeletedWithItsPostingAndItsBalancesLeavesAGap) {
    const std::string fkey = open_invoice();
    const std::string gl_fkey = of_header(fkey, "GLFKEY");
    for (const char* table : {"AP_header_table", "AP_transaction_table"})
        sql(fmt::format("DELETE * FROM {} WHERE fkey = '{}'", table, fkey));
    for (const char* table : {"GL_header_table", "GL_transaction_table"})
        sql(fmt::format("DELETE * FROM {} WHERE fkey = '{}'", table, gl_fkey));
    cover_tracks();
    EXPECT_THAT(company::check_sums(company.db()), IsEmpty());
    EXPECT_THAT(findings(), Contains(HasSubstr("are not used")));
}

TEST_F(Frauds, HeaderMovedToAnotherVendorDiffersFromItsLines) {
    const std::string fkey = open_invoice();
    sql(fmt::format("UPDATE AP_header_table SET vendor_no = 'V1024' WHERE fkey = '{}'", fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("vendor_no"))));
}

TEST_F(Frauds, ForeignLinesUnderABaseHeaderDifferFromIt) {
    const std::string fkey = open_invoice();
    sql(fmt::format("UPDATE AP_transaction_table SET Currency = 'EUR', exchange_rate = 1.1 WHERE fkey = '{}'",
                    fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("Currency"))));
}

TEST_F(Frauds, DatesMovedInHeaderAndLinesDifferFromTheLedger) {
    const std::string fkey = open_invoice();
    for (const char* table : {"AP_header_table", "AP_transaction_table"})
        sql(fmt::format("UPDATE {} SET invoice_date = Datevalue('Mar 3, 2025') WHERE fkey = '{}'", table,
                        fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("invoice_date"))));
}

TEST_F(Frauds, TwoDocumentsOfOneNumberShow) {
    const std::string fkey = open_invoice();
    const std::string other = one(fmt::format(
        "SELECT docno FROM AP_header_table WHERE Source = 'AP-INVOICE' AND fkey <> '{}' AND doctype = 'ip'",
        fkey));
    const std::string gl_fkey = of_header(fkey, "GLFKEY");
    for (const char* table : {"AP_header_table", "AP_transaction_table"})
        sql(fmt::format("UPDATE {} SET docno = '{}' WHERE fkey = '{}'", table, other, fkey));
    for (const char* table : {"GL_header_table", "GL_transaction_table"})
        sql(fmt::format("UPDATE {} SET source_docno = '{}' WHERE fkey = '{}'", table, other, gl_fkey));
    sql(fmt::format("UPDATE GL_header_table SET remark = 'Invoice no. {}' WHERE fkey = '{}'", other,
                    gl_fkey));
    cover_tracks();
    EXPECT_THAT(findings(), Contains(HasSubstr("Two documents have the number")));
}

TEST_F(Frauds, ImpossibleDiscountShows) {
    const std::string fkey = open_invoice();
    for (const char* table : {"AP_header_table", "AP_transaction_table"})
        sql(fmt::format("UPDATE {} SET early_discount = 150 WHERE fkey = '{}'", table, fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("early_discount"))));
}

TEST_F(Frauds, VendorThatIsGoneIsMissedByItsPayments) {
    const std::string vendor =
        one("SELECT vendor_no FROM Payment_header_table WHERE source_form = 'APform_payment' ORDER BY fkey");
    sql(fmt::format("DELETE * FROM Vendor_table WHERE vendor_no = '{}'", vendor));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(vendor), HasSubstr("Vendor_table"))));
}

TEST_F(Frauds, HoldOfALineAloneShows) {
    const std::string fkey = open_invoice();
    sql(fmt::format("UPDATE AP_transaction_table SET hold = TRUE WHERE fkey = '{}'", fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("on hold"))));
}

TEST_F(Frauds, GapOfAThousandNumbersShows) {
    sql("UPDATE Docno_master_table SET nextdocno = nextdocno + 1000 WHERE doctype = 'ip' AND fiscalyear = "
        "'2026'");
    EXPECT_THAT(findings(), Contains(HasSubstr("Docno_master_table 1 ip 2026 is at 10")));
}

TEST_F(Frauds, LedgerHeadersWithoutADateOrAPeriodShow) {
    const std::string gl_fkey = of_header(open_invoice(), "GLFKEY");
    for (const char* field : {"gldate", "period"}) {
        sql(fmt::format("UPDATE GL_header_table SET {} = NULL WHERE fkey = '{}'", field, gl_fkey));
        EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(gl_fkey), HasSubstr(field), HasSubstr("always"))));
    }
}

TEST_F(Frauds, EmptiedPayableAccountShows) {
    const std::string fkey = open_invoice();
    sql(fmt::format("UPDATE AP_transaction_table SET ap_accno = NULL WHERE fkey = '{}'", fkey));
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("ap_accno"))));
}

TEST_F(Frauds, PrepaymentThatCountsAsPaidOffThoughNobodyAppliedItShows) {
    const std::string fkey = one(
        "SELECT fkey FROM AP_transaction_table WHERE doctype = 'pp' AND paid = FALSE AND void = FALSE AND "
        "paid_amount IS NULL");
    for (const char* field : {"paid_amount", "discount_taken", "writeoff"}) {
        sql(fmt::format("UPDATE AP_transaction_table SET {} = 1 WHERE fkey = '{}'", field, fkey));
        EXPECT_THAT(findings(), Contains(AllOf(HasSubstr(fkey), HasSubstr("no payment names it")))) << field;
        sql(fmt::format("UPDATE AP_transaction_table SET {} = NULL WHERE fkey = '{}'", field, fkey));
    }
}

TEST_F(Frauds, MarkAsPaidOfAnInvoiceWhosePaymentsAreAllVoidShows) {
    std::map<std::string, bool> all_void;
    auto lines = company.snapshot("SELECT ap_docno,void FROM Payment_transaction_table");
    for (; !lines.at_eof(); lines.MoveNext()) {
        const auto [of_document, first] = all_void.emplace(lines.column(0).text(), true);
        of_document->second = of_document->second && lines.column(1).flag();
    }
    int marked = 0;
    for (const auto& [docno, is_void] : all_void) {
        if (!is_void || !docno.starts_with("IP-")) continue;
        sql(fmt::format("UPDATE AP_header_table SET paid = TRUE WHERE docno = '{}'", docno));
        EXPECT_THAT(findings(), Contains(HasSubstr("every payment that names it is void"))) << docno;
        sql(fmt::format("UPDATE AP_header_table SET paid = FALSE WHERE docno = '{}'", docno));
        ++marked;
    }
    EXPECT_GT(marked, 0);
}

TEST_F(Frauds, AccountOfAVoidInvoiceShows) {
    const std::string fkey =
        one("SELECT fkey FROM AP_header_table WHERE source_form = 'APform_invoice' AND void = TRUE AND "
            "Currency = 'USD'");
    for (const char* field : {"po_accno", "ap_accno"}) {
        const std::string was =
            one(fmt::format("SELECT {} FROM AP_transaction_table WHERE fkey = '{}'", field, fkey));
        sql(fmt::format("UPDATE AP_transaction_table SET {} = '1000' WHERE fkey = '{}'", field, fkey));
        EXPECT_THAT(findings(), Contains(HasSubstr("was posted to account 1000, by its invoice"))) << field;
        sql(fmt::format("UPDATE AP_transaction_table SET {} = '{}' WHERE fkey = '{}'", field, was, fkey));
    }
}

TEST_F(Frauds, PeriodUnderAnotherNameShows) {
    for (const char* name : {"zz9", "13", ""}) {
        sql(fmt::format(
            "UPDATE Period_table SET period = '{}' WHERE fyear = '2026' AND StartDate = '20261201'", name));
        EXPECT_THAT(findings(), Contains(fmt::format("Period \"{}\" of 2026 is the 12. of its year", name)));
    }
}

TEST_F(Frauds, TaxCodeOfAnotherKindOfTransactionShows) {
    sql("UPDATE Tax_code_table SET transaction_type = 'gift' WHERE tax_code = 'EXP7'");
    EXPECT_THAT(findings(), Contains(HasSubstr("there is no tax code \"EXP7\" of kind \"purchase\"")));
}

TEST_F(Frauds, SumOfARevaluationWithoutACurrencyShows) {
    sql("UPDATE AP_Revalue_GL_summary_table SET Currency = NULL");
    EXPECT_THAT(findings(), Contains(AllOf(HasSubstr("Revaluation 1apre-"), HasSubstr("Currency"))));
}

}  // namespace

}  // namespace brimley::testing
