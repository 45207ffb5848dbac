// Generated invoices, on books with three of them that are then broken in one place.
#include "company/books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The books of BooksTest, and what template REC-26-00001 was turned into in March:
//   1ip4  80.00 USD of V1001 without tax, GL document 1gl4
//   1ip5  112.35 USD of V1001 with taxes, GL document 1gl5
//   1ip6  50.00 USD of V1004, GL document 1gl6
class CheckGenerated : public testing::BooksTest {
  protected:
    CheckGenerated() {
        in_transaction([&](store::Database&) {
            add_template();
            generate("4", "V1001");
            add_item("4", "1", 60, 60, "5000");
            add_item("4", "2", 20, 20, "1200");
            post("4", 1, "2000", 80);
            post("4", 2, "5000", 60);
            post("4", 3, "1200", 20);
            generate("5", "V1001");
            add_item("5", "1", 112.35, 100, "5000");
            post("5", 1, "2000", 112.35);
            post("5", 2, "5000", 107.35);
            post("5", 3, "1300", 5);
            generate("6", "V1004");
            add_item("6", "1", 50, 50, "1200");
            post("6", 1, "2000", 50);
            post("6", 2, "1200", 50);
            for (const char* doctype : {"ip", "gl"}) {
                change(counter(doctype, "2026"), {{"nextdocno", 7}});
            }
        });
    }

    static std::string counter(const std::string& doctype, const std::string& fyear) {
        return "SELECT * FROM Docno_master_table WHERE doctype = '" + doctype + "' AND fiscalyear = '" +
               fyear + "'";
    }
    static std::string header(const std::string& fkey) {
        return "SELECT * FROM AP_header_table WHERE fkey = '" + fkey + "'";
    }
    static std::string item(const std::string& fkey) {
        return "SELECT * FROM AP_transaction_table WHERE fkey = '" + fkey + "' ORDER BY pay_item";
    }

    void add_template() {
        add("AP_recur_header_table", {{"fkey", "1recur-1"},
                                      {"recurno", "REC-26-00001"},
                                      {"company", "1"},
                                      {"doctype", "recur"},
                                      {"vendor_no", "V1001"}});
        change("SELECT * FROM Next_number_fkey_table WHERE doctype = 'recur'", {{"fkeyno", 2}});
    }

    // The headers of invoice and GL document, which both have this number.
    void generate(const std::string& number, const std::string& vendor_no, int year = 2026) {
        const store::DateTime day = *store::DateTime::from_ymd(year, 3, 1);
        add("AP_header_table", {{"fkey", "1ip" + number},
                                {"docno", "ip" + number},
                                {"company", "1"},
                                {"doctype", "ip"},
                                {"vendor_no", vendor_no},
                                {"Currency", "USD"},
                                {"Source", "AP"},
                                {"recurno", "REC-26-00001"},
                                {"gldate", day},
                                {"Month", "03"},
                                {"Year", std::to_string(year)}});
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", "1gl" + number},
                                {"docno", "gl" + number},
                                {"Source", "AP"},
                                {"ledgertype", "A"},
                                {"source_docno", "ip" + number},
                                {"gldate", day},
                                {"period", "3"},
                                {"fyear", std::to_string(year)}});
    }
    void add_item(const std::string& number, const std::string& pay_item, double gross, double taxable,
                  const std::string& po_accno, int year = 2026) {
        add("AP_transaction_table", {{"fkey", "1ip" + number},
                                     {"docno", "ip" + number},
                                     {"company", "1"},
                                     {"vendor_no", number == "6" ? "V1004" : "V1001"},
                                     {"Currency", "USD"},
                                     {"gldate", *store::DateTime::from_ymd(year, 3, 1)},
                                     {"Month", "03"},
                                     {"Year", std::to_string(year)},
                                     {"pay_item", pay_item},
                                     {"gross_amount", gross},
                                     {"open_amount", gross},
                                     {"taxable_amount", taxable},
                                     {"tax_amount", gross - taxable},
                                     {"po_accno", po_accno},
                                     {"ap_accno", "2000"}});
    }
    // A line with the balances that it moves, which know no base amounts.
    void post(const std::string& number, int line, const std::string& accno, double amount,
              const std::string& fyear = "2026") {
        add("GL_transaction_table", {{"company", 1},
                                     {"fkey", "1gl" + number},
                                     {"lineno", line},
                                     {"accno", accno},
                                     {"amount", amount},
                                     {"period", "3"},
                                     {"fiscalyear", fyear},
                                     {"Currency", "USD"},
                                     {"ledgertype", "A"}});
        move(accno, amount, fyear);
        if (accno == "5000") move("3900", -amount, fyear);
    }
    void move(const std::string& accno, double amount, const std::string& fyear = "2026") {
        raise(balance(accno), "amount", amount);
        move_period("SELECT * FROM Balance_period_table WHERE fyear = '" + fyear +
                        "' AND ledgertype = 'A' AND accno = '" + accno + "'",
                    "", 3, amount);
    }
    // Another invoice with the key of 1ip6, of the next year.
    void generate_same_key() {
        generate("6", "V1004", 2027);
        add_item("6", "1", 30, 30, "1200", 2027);
        post("6", 1, "2000", 30, "2027");
        post("6", 2, "1200", 30, "2027");
        for (const char* doctype : {"ip", "gl"})
            change(counter(doctype, "2027"), {{"nextdocno", 7}});
    }
};

TEST_F(CheckGenerated, GeneratedInvoicesAgree) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(CheckGenerated, NotesSayWhatBalancesAndVendorsLeaveOut) {
    EXPECT_THAT(
        notes(),
        ElementsAre("What vendor V1001 is owed was never raised by what was generated, 192.35 in all",
                    "What vendor V1004 is owed was never raised by what was generated, 50.00 in all",
                    "Balances have no base amounts of what was generated: GL documents without them: 3"));
}

// --- headers and lines ---

TEST_F(CheckGenerated, DateIsThere) {
    change(header("1ip6"), {{"gldate", Value()}});
    EXPECT_THAT(findings(), ::testing::Contains("Invoice 1ip6 was generated without a date"));
}

TEST_F(CheckGenerated, MonthAndYearAreThoseOfTheDate) {
    change(header("1ip6"), {{"Month", "04"}});
    change(item("1ip6"), {{"Month", "04"}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6: month 04 of 2026 is not that of its date 2026-03-01"));
    change(header("1ip6"), {{"Month", "03"}, {"Year", "2027"}});
    change(item("1ip6"), {{"Month", "03"}, {"Year", "2027"}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6: month 03 of 2027 is not that of its date 2026-03-01"));
}

TEST_F(CheckGenerated, NumberMakesTheKey) {
    change(header("1ip6"), {{"fkey", "1ip9"}});
    change(item("1ip6"), {{"fkey", "1ip9"}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip9: its number ip6 does not make its key"));
}

TEST_F(CheckGenerated, TemplateIsThere) {
    change(header("1ip6"), {{"recurno", "REC-26-00009"}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6: there is no template REC-26-00009"));
}

TEST_F(CheckGenerated, LinesAreThere) {
    db().Execute("DELETE * FROM AP_transaction_table WHERE fkey = '1ip6'");
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6 has no lines",
                                        "Invoice 1ip6: 50.00 was posted to account 1200, by its lines 0.00",
                                        "Invoice 1ip6: 50.00 was posted to account 2000, by its lines 0.00"));
}

TEST_F(CheckGenerated, LinesAreThoseOfTheirHeader) {
    const auto finding_with = [&](const char* field, const char* value, const char* right) {
        change(item("1ip6"), {{field, value}});
        const company::Findings found = findings();
        change(item("1ip6"), {{field, right}});
        return found;
    };
    EXPECT_THAT(finding_with("docno", "ip7", "ip6"),
                ElementsAre("Invoice 1ip6, pay item 1: docno is ip7, that of the invoice ip6"));
    EXPECT_THAT(finding_with("vendor_no", "V1001", "V1004"),
                ElementsAre("Invoice 1ip6, pay item 1: vendor_no is V1001, that of the invoice V1004"));
    EXPECT_THAT(finding_with("Currency", "EUR", "USD"),
                ElementsAre("Invoice 1ip6, pay item 1: Currency is EUR, that of the invoice USD"));
    EXPECT_THAT(finding_with("Month", "04", "03"),
                ElementsAre("Invoice 1ip6, pay item 1: Month is 04, that of the invoice 03"));
    EXPECT_THAT(finding_with("Year", "2025", "2026"),
                ElementsAre("Invoice 1ip6, pay item 1: Year is 2025, that of the invoice 2026"));
}

TEST_F(CheckGenerated, LinesOfOneInvoiceNameOnePayableAccount) {
    change(item("1ip4"), {{"ap_accno", "2010"}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip4, pay item 2: ap_accno is 2000, that of the invoice 2010"));
}

TEST_F(CheckGenerated, LinesAreVoidWithTheirHeader) {
    change(header("1ip6"), {{"void", true}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6 is void, but pay item 1 is not void"));
}

TEST_F(CheckGenerated, LinesOfADayWithoutAHeaderAreFound) {
    change(item("1ip4"), {{"gldate", *store::DateTime::from_ymd(2026, 3, 2)}});
    EXPECT_THAT(findings(),
                ::testing::Contains("Invoice 1ip4 has lines of 2026-03-02, but no header of that day"));
}

TEST_F(CheckGenerated, ItemIsOpenInFull) {
    change(item("1ip6"), {{"open_amount", 40.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip6, pay item 1: open amount 40.00 of 50.00, though nothing was paid"));
}

// --- GL documents ---

TEST_F(CheckGenerated, GlDocumentIsThere) {
    change(gl_header("1gl6"), {{"source_docno", "ip7"}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6 has no GL documents",
                                        "GL document 1gl6 belongs to no generated invoice"));
}

TEST_F(CheckGenerated, GlDocumentIsOfTheDayOfItsInvoice) {
    change(gl_header("1gl6"), {{"gldate", *store::DateTime::from_ymd(2026, 3, 2)}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6 has no GL documents",
                                        "GL document 1gl6 belongs to no generated invoice"));
}

TEST_F(CheckGenerated, GlDocumentIsTheOnlyOne) {
    change(gl_header("1gl6"), {{"source_docno", "ip5"}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip5 has 2 GL documents", "Invoice 1ip6 has no GL documents"));
}

TEST_F(CheckGenerated, GlDocumentWithoutLinesIsFound) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl5'");
    move("2000", -112.35);
    move("5000", -107.35);
    move("3900", 107.35);
    move("1300", -5);
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl5 has no lines, but its invoice comes to 112.35"));
}

TEST_F(CheckGenerated, LinesOfHalfACentPostNothing) {
    change(item("1ip6"), {{"gross_amount", 0.005}, {"taxable_amount", 0.0}, {"open_amount", 0.005}});
    in_transaction([&](store::Database&) { add_item("6", "2", 0.005, 0, "1200"); });
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl6'");
    move("2000", -50);
    move("1200", -50);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckGenerated, EachAccountIsPostedByTheLines) {
    change(gl_line("1gl4", "5000"), {{"amount", 61.0}});
    change(gl_line("1gl4", "1200"), {{"amount", 19.0}});
    move("5000", 1);
    move("3900", -1);
    move("1200", -1);
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip4: 19.00 was posted to account 1200, by its lines 20.00",
                            "Invoice 1ip4: 61.00 was posted to account 5000, by its lines 60.00"));
}

TEST_F(CheckGenerated, PayableIsPostedByTheLinesAlsoWhereTaxesAre) {
    change(gl_line("1gl5", "2000"), {{"amount", 112.36}});
    move("2000", 0.01);
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip5: 112.36 was posted to account 2000, by its lines 112.35"));
}

TEST_F(CheckGenerated, SumOfTheLinesIsWhatWasPosted) {
    change(item("1ip6"), {{"gross_amount", 51.0}, {"open_amount", 51.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip6: 50.00 was posted to account 2000, by its lines 51.00"));
}

TEST_F(CheckGenerated, AccountThatNoLineNamesIsFound) {
    change(gl_line("1gl6", "1200"), {{"accno", "1210"}});
    move("1200", -50);
    move("1210", 50);
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip6: 0.00 was posted to account 1200, by its lines 50.00",
                                        "Invoice 1ip6: 50.00 was posted to account 1210, by its lines 0.00"));
}

TEST_F(CheckGenerated, LinesHaveNoBaseAmountAndTheFieldsOfTheirDocument) {
    const auto finding_with = [&](const char* field, Value value, Value right) {
        change(gl_line("1gl6", "1200"), {{field, value}});
        company::Findings found;
        in_transaction([&](store::Database& database) {
            company::check_generated_postings(company::Books(database), found);
        });
        change(gl_line("1gl6", "1200"), {{field, right}});
        return found;
    };
    EXPECT_THAT(
        finding_with("base_amount", 50.0, Value()),
        ElementsAre("GL document 1gl6, line 2: base_amount is 50.00, though generated lines have none"));
    EXPECT_THAT(finding_with("period", "4", "3"),
                ElementsAre("GL document 1gl6, line 2: period is 4, expected 3"));
    EXPECT_THAT(finding_with("Currency", "EUR", "USD"),
                ElementsAre("GL document 1gl6, line 2: Currency is EUR, expected USD"));
    EXPECT_THAT(finding_with("ledgertype", "F", "A"),
                ElementsAre("GL document 1gl6, line 2: ledgertype is F, expected A"));
}

TEST_F(CheckGenerated, BalancesHoldTheAmountsOfTheLines) {
    raise(balance("1200"), "amount", 0.01);
    raise(year("1200"), "e_period3", 50);
    EXPECT_THAT(findings(), ::testing::IsSupersetOf(
                                {"Balance_table A 1200 USD: amount is 52535.81, expected 52535.80",
                                 "Balance_period_table 2026 A 1200 USD: e_period3 is 50.00, expected 0.00"}));
}

TEST_F(CheckGenerated, LineOfAYearWithoutAHeaderIsFound) {
    change(gl_line("1gl6", "1200"), {{"fiscalyear", "2027"}, {"lineno", 1}});
    EXPECT_THAT(
        findings(),
        ::testing::Contains("GL document 1gl6 has lines of fiscal year 2027, but no header of that year"));
}

TEST_F(CheckGenerated, DocumentThatDoesNotBalanceIsNoted) {
    change(gl_line("1gl5", "1300"), {{"amount", 4.6}});
    move("1300", -0.4);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ::testing::Contains("GL document 1gl5 does not balance in its amounts, and has no base "
                                    "amounts: debit less credit is -0.40"));
}

TEST_F(CheckGenerated, PayableAccountOfAnotherVendorIsNoted) {
    change(item("1ip6"), {{"ap_accno", "2010"}});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ::testing::Contains(
                    "Invoice 1ip6: its lines name payable account 2010, its GL document posted to 2000"));
}

// --- numbers ---

TEST_F(CheckGenerated, CountersStandAheadOfGeneratedNumbers) {
    change(counter("ip", "2026"), {{"nextdocno", 6}});
    change(counter("gl", "2026"), {{"nextdocno", 5}});
    EXPECT_THAT(findings(), ElementsAre("Docno_master_table 1 gl 2026 is at 5, but gl6 is used",
                                        "Docno_master_table 1 ip 2026 is at 6, but ip6 is used"));
}

TEST_F(CheckGenerated, NumberIsDrawnOnce) {
    change(header("1ip-2"), {{"docno", "IP-26-00006"}});
    EXPECT_THAT(findings(),
                ElementsAre("Docno_master_table 1 ip 2026 gave the same number to ip6 and to IP-26-00006"));
}

TEST_F(CheckGenerated, NumberThatWasGeneratedTwiceInOneYearIsFound) {
    generate("6", "V1004");
    change(gl_header("1gl6"), {{"fkey", "1gl3"}, {"docno", "gl3"}});
    EXPECT_THAT(
        findings(),
        ::testing::Contains("Docno_master_table 1 gl 2026 gave the same number to gl3 and to GL-26-00003"));
}

TEST_F(CheckGenerated, KeyMayComeAgainInAnotherYear) {
    generate_same_key();
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ::testing::Contains("Invoices of several fiscal years have the key 1ip6: what is done "
                                    "to one of them is done to all"));
}

TEST_F(CheckGenerated, EachOfOneKeyHasItsOwnGlDocument) {
    generate_same_key();
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip6' AND [Year] = '2027'",
           {{"gross_amount", 31.0}, {"open_amount", 31.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip6: 30.00 was posted to account 2000, by its lines 31.00"));
}

TEST_F(CheckGenerated, VoidOfAKeyThatCameAgainReachesAllItsLines) {
    generate_same_key();
    change(header("1ip6"), {{"void", true}});
    db().Execute("UPDATE AP_transaction_table SET void = TRUE WHERE fkey = '1ip6'");
    change(vendor("V1004"), {{"owing_balance", -80.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

// --- what is owed ---

TEST_F(CheckGenerated, GeneratedInvoiceIsNotAddedToWhatIsOwed) {
    change(vendor("V1004"), {{"owing_balance", 50.0}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1004: owing_balance is 50.00, by its documents 0.00"));
}

class CheckVoidGenerated : public CheckGenerated {
  protected:
    void void_invoice(const std::string& fkey, int day) {
        change(header(fkey),
               {{"void", true}, {"date_lastmodified", *store::DateTime::from_ymd(2026, 3, day)}});
        db().Execute("UPDATE AP_transaction_table SET void = TRUE WHERE fkey = '" + fkey + "'");
    }
};

TEST_F(CheckVoidGenerated, VoidTakesOffWhatWasNeverAdded) {
    void_invoice("1ip6", 5);
    change(vendor("V1004"), {{"owing_balance", -50.0}});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ::testing::Contains("Invoice 1ip6 is void, but its GL document 1gl6 stays as it was posted"));
    change(vendor("V1004"), {{"owing_balance", -51.0}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1004: owing_balance is -51.00, by its documents -50.00"));
}

TEST_F(CheckVoidGenerated, VoidLeavesAVendorWithoutABalance) {
    void_invoice("1ip6", 5);
    change(vendor("V1004"), {{"owing_balance", Value()}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckVoidGenerated, VoidAfterAnotherDocumentCounts) {
    void_invoice("1ip6", 5);
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-1'",
           {{"vendor_no", "V1004"},
            {"Source", "AP-INVOICE"},
            {"taxable_amount", 100.0},
            {"date_created", *store::DateTime::from_ymd(2026, 3, 4)}});
    change(vendor("V1004"), {{"owing_balance", 62.35}});
    EXPECT_THAT(findings(), IsEmpty());
    change(vendor("V1004"), {{"owing_balance", 112.35}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1004: owing_balance is 112.35, by its documents 62.35"));
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-1'",
           {{"date_created", *store::DateTime::from_ymd(2026, 3, 5)}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckVoidGenerated, EarlierVoidsOfAVendorWithoutABalanceDoNotCount) {
    void_invoice("1ip4", 5);
    void_invoice("1ip5", 6);
    for (const double owing : {0.0, -112.35, -192.35}) {
        change(vendor("V1001"), {{"owing_balance", owing}});
        EXPECT_THAT(findings(), IsEmpty()) << owing;
    }
    change(vendor("V1001"), {{"owing_balance", -80.0}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is -80.00, by its documents -192.35"));
    void_invoice("1ip5", 5);
    EXPECT_THAT(findings(), IsEmpty());
}

}  // namespace
}  // namespace brimley
