// Revaluations, on books with one of them that is then broken in one place.
#include "company/books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The books of BooksTest, and a revaluation of two items in euro at 1.30, in period 12 of 2026:
//   100.00 at 1.25, a loss of 5.00, and 40.00 at 1.50, a gain of 8.00
// It is posted by GL document 1gl-4 and taken back by 1gl-5, in period 1 of 2027.
class CheckRevaluations : public testing::BooksTest {
  protected:
    CheckRevaluations() {
        in_transaction([&](store::Database&) {
            add_run("1apre-1", "APR-26-00001");
            add_item("IP-26-00002", 100, 1.25, 125, 130);
            add_item("VCN-26-00003", 40, 1.5, 60, 52);
            add_sum("2010", 3);
            add_sum("7600", -8);
            add_sum("7610", 5);
            add_gl_document("1gl-4", "GL-26-00004", "A/P Revaluation", "12", "2026");
            post("1gl-4", 1, "2010", -3, "2026", 12);
            post("1gl-4", 2, "7600", 8, "2026", 12);
            post("1gl-4", 3, "7610", 5, "2026", 12);
            add_gl_document("1gl-5", "GL-27-00001", "Reverse A/P Revaluation GL-26-00004", "1", "2027");
            post("1gl-5", 1, "2010", 3, "2027", 1);
            post("1gl-5", 2, "7600", -8, "2027", 1);
            post("1gl-5", 3, "7610", -5, "2027", 1);
            set_counters("apre", 2, "2026", 2);
            set_counters("gl", 6, "2026", 5);
            set_counters("gl", 6, "2027", 2);
        });
    }

    static std::string run() { return "SELECT * FROM AP_Revalue_header_table WHERE fkey = '1apre-1'"; }
    static std::string selection() {
        return "SELECT * FROM AP_Revalue_transaction_table WHERE fkey = '1apre-1'";
    }
    static std::string item(const std::string& document_no) {
        return "SELECT * FROM AP_Revalue_Result_table WHERE document_no = '" + document_no + "'";
    }
    static std::string sum(const std::string& accno) {
        return "SELECT * FROM AP_Revalue_GL_summary_table WHERE accno = '" + accno + "'";
    }
    // Without those of other checks, which see the same in the balances.
    company::Findings posting_findings() {
        company::Findings found;
        in_transaction([&](store::Database& database) {
            company::check_revaluation_postings(company::Books(database), found);
        });
        return found;
    }

    void add_run(const std::string& fkey, const std::string& docno) {
        add("AP_Revalue_header_table", {{"fkey", fkey},
                                        {"docno", docno},
                                        {"company", 1},
                                        {"last_transaction_date", *store::DateTime::from_ymd(2026, 12, 31)},
                                        {"Date", *store::DateTime::from_ymd(2026, 12, 31)},
                                        {"period", "12"},
                                        {"fyear", "2026"},
                                        {"GLFKEY", "1gl-4"}});
        add("AP_Revalue_transaction_table", {{"fkey", fkey},
                                             {"docno", docno},
                                             {"Currency", "EUR"},
                                             {"Rate", "1.30"},
                                             {"every_vendor", true}});
    }
    void add_item(const std::string& document_no, double amount, double rate, double base, double new_base) {
        add("AP_Revalue_Result_table", {{"fkey", "1apre-1"},
                                        {"docno", "APR-26-00001"},
                                        {"vendor_no", "V1001"},
                                        {"document_no", document_no},
                                        {"Currency", "EUR"},
                                        {"pay_item", 1},
                                        {"invoice_amount", amount},
                                        {"original_rate", rate},
                                        {"original_base_amount", base},
                                        {"unrealized_gain_loss", base - new_base},
                                        {"new_base_amount", new_base}});
    }
    void add_sum(const std::string& accno, double amount, const std::string& currency = "EUR") {
        add("AP_Revalue_GL_summary_table", {{"fkey", "1apre-1"},
                                            {"docno", "APR-26-00001"},
                                            {"accno", accno},
                                            {"Currency", currency},
                                            {"amount", amount}});
    }
    // The revaluation is of the last day of the year, its reversal of the day on which both were made.
    void add_gl_document(const std::string& fkey, const std::string& docno, const std::string& remark,
                         const std::string& period, const std::string& fyear) {
        const store::DateTime made_on = *store::DateTime::from_ymd(2027, 1, 4);
        const store::DateTime last_day = *store::DateTime::from_ymd(2026, 12, 31);
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", fkey},
                                {"docno", docno},
                                {"Source", "AP-REVALUE"},
                                {"remark", remark},
                                {"source_docno", "APR-26-00001"},
                                {"gldate", fyear == "2026" ? last_day : made_on},
                                {"date_created", made_on},
                                {"period", period},
                                {"fyear", fyear}});
    }
    // A line with the balances that it moves.
    void post(const std::string& fkey, int number, const std::string& accno, double amount,
              const std::string& fyear, int period) {
        add("GL_transaction_table", {{"company", 1},
                                     {"fkey", fkey},
                                     {"lineno", number},
                                     {"accno", accno},
                                     {"amount", amount},
                                     {"base_amount", amount},
                                     {"period", std::to_string(period)},
                                     {"fyear", fyear},
                                     {"Currency", "USD"},
                                     {"ledgertype", "A"}});
        move(accno, amount, fyear, period, true);
        if (accno == "2010") return;
        move("3900", accno == "7610" ? -amount : amount, fyear, period, false);
    }
    void move(const std::string& accno, double amount, const std::string& fyear, int period, bool base) {
        raise(balance(accno), "amount", amount);
        if (base) raise(balance(accno), "base_amount", amount);
        const std::string row = "SELECT * FROM Balance_period_table WHERE fyear = '" + fyear +
                                "' AND ledgertype = 'A' AND accno = '" + accno + "'";
        move_period(row, "", period, amount);
        move_period(row, "e_", period, amount);
    }
    void set_counters(const std::string& doctype, int fkeyno, const std::string& fyear, int nextdocno) {
        const std::string kind = " WHERE doctype = '" + doctype + "'";
        change("SELECT * FROM Next_number_fkey_table" + kind, {{"fkeyno", fkeyno}});
        change("SELECT * FROM Docno_master_table" + kind + " AND fiscalyear = '" + fyear + "'",
               {{"nextdocno", nextdocno}});
    }
};

TEST_F(CheckRevaluations, RevaluationAgrees) {
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), IsEmpty());
}

// --- rows ---

TEST_F(CheckRevaluations, RowsHaveAHeader) {
    for (const char* table :
         {"AP_Revalue_transaction_table", "AP_Revalue_Result_table", "AP_Revalue_GL_summary_table"})
        add(table, {{"fkey", "1apre-9"}, {"docno", "APR-26-00009"}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-9 has selection rows but no header",
                                        "Revaluation 1apre-9 has items but no header",
                                        "Revaluation 1apre-9 has sums but no header"));
}

TEST_F(CheckRevaluations, RowsHaveTheNumberOfTheirHeader) {
    for (const std::string& row : {selection(), item("IP-26-00002"), sum("7600")})
        change(row, {{"docno", "APR-26-00002"}});
    EXPECT_THAT(
        findings(),
        ElementsAre("Revaluation 1apre-1: one of its selection rows is of APR-26-00002, not of APR-26-00001",
                    "Revaluation 1apre-1: one of its items is of APR-26-00002, not of APR-26-00001",
                    "Revaluation 1apre-1: one of its sums is of APR-26-00002, not of APR-26-00001"));
}

TEST_F(CheckRevaluations, NumberIsTheOnlyOneOfItsYear) {
    add_run("1apre-2", "APR-26-00001");
    set_counters("apre", 3, "2026", 2);
    EXPECT_THAT(findings(), Contains("Two revaluations of fiscal year 2026 have the number APR-26-00001"));
    change("SELECT * FROM AP_Revalue_header_table WHERE fkey = '1apre-2'", {{"fyear", "2027"}});
    EXPECT_THAT(findings(), ::testing::Not(Contains(::testing::StartsWith("Two revaluations"))));
}

TEST_F(CheckRevaluations, CountersStandAheadOfIt) {
    set_counters("apre", 1, "2026", 1);
    EXPECT_THAT(findings(), ElementsAre("Next_number_fkey_table 1apre is at 1, but 1apre-1 is used",
                                        "Docno_master_table 1 apre 2026 is at 1, but APR-26-00001 is used"));
}

TEST_F(CheckRevaluations, SelectionRowSaysWhoseItems) {
    const auto findings_with = [&](bool every_vendor, Value group, Value vendor_no) {
        change(selection(),
               {{"every_vendor", every_vendor}, {"vendor_group", group}, {"vendor_no", vendor_no}});
        return findings();
    };
    EXPECT_THAT(findings_with(false, "COFFEE", Value()), IsEmpty());
    EXPECT_THAT(findings_with(false, Value(), "V1001"), IsEmpty());
    EXPECT_THAT(findings_with(false, Value(), Value()),
                ElementsAre("Revaluation 1apre-1: a selection row in EUR names none of every vendor, a group "
                            "and one vendor"));
    EXPECT_THAT(
        findings_with(true, Value(), "V1001"),
        ElementsAre("Revaluation 1apre-1: a selection row in EUR names several of every vendor, a group "
                    "and one vendor"));
    EXPECT_THAT(
        findings_with(false, "COFFEE", "V1001"),
        ElementsAre("Revaluation 1apre-1: a selection row in EUR names several of every vendor, a group "
                    "and one vendor"));
}

TEST_F(CheckRevaluations, SelectionRowHasACurrency) {
    change(selection(), {{"Currency", Value()}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1 has a selection row without a currency"));
}

TEST_F(CheckRevaluations, ItemIsOfADocument) {
    change(item("IP-26-00002"), {{"document_no", "IP-26-00099"}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1, document IP-26-00099, pay item 1: there is no "
                                        "such document"));
}

TEST_F(CheckRevaluations, ItemIsWorthItsAmountAtItsRate) {
    change(item("IP-26-00002"), {{"original_rate", 1.26}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1, document IP-26-00002, pay item 1: "
                                        "original_base_amount is 125.00, expected 126.00"));
}

TEST_F(CheckRevaluations, ItemWithoutARateCountsWithOne) {
    change(item("IP-26-00002"), {{"original_rate", Value()}, {"invoice_amount", 125}});
    EXPECT_THAT(findings(), IsEmpty());
    change(item("IP-26-00002"), {{"invoice_amount", 124}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1, document IP-26-00002, pay item 1: "
                                        "original_base_amount is 125.00, expected 124.00"));
}

TEST_F(CheckRevaluations, ItemOfPartsOfACentWasValuedBeforeItWasShown) {
    const std::string line = "SELECT * FROM AP_transaction_table WHERE fkey = '1ip-2'";
    const auto base_findings = Contains(::testing::HasSubstr("original_base_amount"));
    change(line, {{"docno", "IP-26-00002"}, {"date_created", *store::DateTime::from_ymd(2027, 1, 3)}});
    change(item("IP-26-00002"), {{"original_base_amount", 124.99}, {"unrealized_gain_loss", -5.01}});
    EXPECT_THAT(findings(), Contains("Revaluation 1apre-1, document IP-26-00002, pay item 1: "
                                     "original_base_amount is 124.99, expected 125.00"));
    change(line, {{"gross_amount", 99.995}, {"open_amount", 99.995}});
    EXPECT_THAT(findings(), ::testing::Not(base_findings));
    change(item("IP-26-00002"), {{"original_base_amount", 124.98}, {"unrealized_gain_loss", -5.02}});
    EXPECT_THAT(findings(), base_findings);
}

// What an edit has written anew says nothing of what was valued.
TEST_F(CheckRevaluations, ItemThatWasEditedSinceMayHaveHadPartsOfACent) {
    const std::string line = "SELECT * FROM AP_transaction_table WHERE fkey = '1ip-2'";
    const auto base_findings = Contains(::testing::HasSubstr("original_base_amount"));
    change(item("IP-26-00002"), {{"original_base_amount", 124.99}, {"unrealized_gain_loss", -5.01}});
    change(line, {{"docno", "IP-26-00002"}, {"date_created", *store::DateTime::from_ymd(2027, 1, 4)}});
    EXPECT_THAT(findings(), ::testing::Not(base_findings));
    change(line, {{"date_created", *store::DateTime::from_ymd(2027, 1, 3)}});
    EXPECT_THAT(findings(), base_findings);
    db().Execute("UPDATE AP_transaction_table SET pay_item = 2 WHERE fkey = '1ip-2'");
    EXPECT_THAT(findings(), ::testing::Not(base_findings));
}

TEST_F(CheckRevaluations, GainIsWhatTheItemIsWorthLess) {
    change(item("VCN-26-00003"), {{"unrealized_gain_loss", -8}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1, document VCN-26-00003, pay item 1: "
                                        "unrealized_gain_loss is -8.00, expected 8.00"));
}

// --- what is posted ---

TEST_F(CheckRevaluations, SummaryIsThereAndBalances) {
    change(sum("7610"), {{"amount", 6}});
    EXPECT_THAT(findings(),
                ElementsAre("Revaluation 1apre-1: debit less credit of its G/L summary is 1.00",
                            "Revaluation 1apre-1: 5.00 was posted to account 7610, by its summary 6.00"));
    db().Execute("DELETE * FROM AP_Revalue_GL_summary_table WHERE fkey = '1apre-1'");
    EXPECT_THAT(
        findings(),
        ElementsAre("Revaluation 1apre-1 has no G/L summary",
                    "Revaluation 1apre-1: -3.00 was posted to account 2010, which its summary does not have",
                    "Revaluation 1apre-1: 8.00 was posted to account 7600, which its summary does not have",
                    "Revaluation 1apre-1: 5.00 was posted to account 7610, which its summary does not have"));
}

TEST_F(CheckRevaluations, AmountsOfOneAccountArePostedTogether) {
    change(sum("7600"), {{"amount", -6}});
    add_sum("7600", -2, "THB");
    add_sum("7500", 4, "EUR");
    add_sum("7500", -4, "THB");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckRevaluations, AccountThatIsSpreadOverOthersIsNotJudged) {
    change(sum("7610"), {{"amount", 6}});
    add("Allocation_Account_table", {{"allocate_accno", "7610"}, {"accno", "7600"}, {"Percent", 10}});
    EXPECT_THAT(posting_findings(),
                ElementsAre("Revaluation 1apre-1: debit less credit of its G/L summary is 1.00"));
}

TEST_F(CheckRevaluations, GlDocumentIsThere) {
    change(run(), {{"GLFKEY", Value()}});
    EXPECT_THAT(findings(), ElementsAre("Revaluation 1apre-1 names no GL document",
                                        "GL document 1gl-4 is of a revaluation, but none has it",
                                        "GL document 1gl-5 is of a revaluation, but none has it"));
    change(run(), {{"GLFKEY", "1gl-9"}});
    EXPECT_THAT(findings(), Contains("Revaluation 1apre-1: its GL document 1gl-9 does not exist"));
}

TEST_F(CheckRevaluations, GlDocumentHasNumberDateAndPeriodOfItsRun) {
    const auto expect_found = [&](const char* field, Value value, Value right) {
        change(gl_header("1gl-4"), {{field, value}});
        EXPECT_THAT(findings(),
                    Contains("Revaluation 1apre-1: its GL document 1gl-4 has another number, date or period"))
            << field;
        change(gl_header("1gl-4"), {{field, right}});
    };
    expect_found("source_docno", "APR-26-00002", "APR-26-00001");
    expect_found("gldate", *store::DateTime::from_ymd(2026, 12, 30),
                 *store::DateTime::from_ymd(2026, 12, 31));
    expect_found("period", "11", "12");
    expect_found("fyear", "2025", "2026");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckRevaluations, LinesAreOfTheBaseLedgerAndOfTheirDocumentsPeriod) {
    const auto finding_with = [&](const char* field, Value value, Value right) {
        change(gl_line("1gl-5", "7600"), {{field, value}});
        const company::Findings found = posting_findings();
        change(gl_line("1gl-5", "7600"), {{field, right}});
        return found;
    };
    EXPECT_THAT(finding_with("amount", -9, -8),
                Contains("GL document 1gl-5, line 2: amount is -9.00, base_amount -8.00"));
    EXPECT_THAT(finding_with("ledgertype", "F", "A"),
                ElementsAre("GL document 1gl-5, line 2 is of ledger F in USD"));
    EXPECT_THAT(finding_with("Currency", "EUR", "USD"),
                ElementsAre("GL document 1gl-5, line 2 is of ledger A in EUR"));
    EXPECT_THAT(
        finding_with("period", "2", "1"),
        ElementsAre("GL document 1gl-5, line 2 is of period 2 of 2027, its document of period 1 of 2027"));
    EXPECT_THAT(
        finding_with("fyear", "2026", "2027"),
        ElementsAre("GL document 1gl-5, line 2 is of period 1 of 2026, its document of period 1 of 2027"));
}

TEST_F(CheckRevaluations, PostedLinesAreThere) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-4'");
    EXPECT_THAT(posting_findings(), Contains("Revaluation 1apre-1: its GL document 1gl-4 has no lines"));
}

// --- what takes it back ---

TEST_F(CheckRevaluations, ReversalIsThere) {
    for (const auto& [field, value] : {std::pair("remark", "Reverse A/P Revaluation GL-26-00003"),
                                       std::pair("source_docno", "APR-26-00002")}) {
        const std::string right =
            rows("SELECT " + std::string(field) + " FROM GL_header_table WHERE fkey = '1gl-5'")[0];
        change(gl_header("1gl-5"), {{field, value}});
        EXPECT_THAT(findings(),
                    ElementsAre("Revaluation 1apre-1: its GL document 1gl-4 is not taken back by another",
                                "GL document 1gl-5 is of a revaluation, but none has it"));
        change(gl_header("1gl-5"), {{field, right}});
    }
}

TEST_F(CheckRevaluations, ReversalIsTheExactOpposite) {
    const std::string expected =
        "GL document 1gl-5 does not take back line by line what GL document 1gl-4 has posted";
    const auto expect_found = [&](const char* field, Value value, Value right) {
        change(gl_line("1gl-5", "7610"), {{field, value}});
        EXPECT_THAT(posting_findings(), Contains(expected)) << field;
        change(gl_line("1gl-5", "7610"), {{field, right}});
    };
    expect_found("amount", -5.01, -5);
    expect_found("base_amount", -5.01, -5);
    expect_found("lineno", 4, 3);
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-5' AND accno = '7610'");
    EXPECT_THAT(posting_findings(), ElementsAre(expected));
}

TEST_F(CheckRevaluations, ReversalIsOfTheDayOnWhichItWasMade) {
    change(gl_header("1gl-5"), {{"gldate", *store::DateTime::from_ymd(2027, 1, 1)}});
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-5 is dated 2027-01-01, but was made on 2027-01-04"));
}

class CheckRevaluationPeriods : public CheckRevaluations {
  protected:
    company::Findings moved(const std::string& period, const std::string& next_period,
                            const std::string& next_fyear) {
        change(run(), {{"period", period}});
        change(gl_header("1gl-4"), {{"period", period}});
        change(gl_header("1gl-5"), {{"period", next_period}, {"fyear", next_fyear}});
        db().Execute("UPDATE GL_transaction_table SET period = '" + period + "' WHERE fkey = '1gl-4'");
        db().Execute("UPDATE GL_transaction_table SET period = '" + next_period + "', fyear = '" +
                     next_fyear + "' WHERE fkey = '1gl-5'");
        return posting_findings();
    }
};

TEST_F(CheckRevaluationPeriods, ReversalIsInTheNextPeriod) {
    EXPECT_THAT(moved("3", "4", "2026"), IsEmpty());
    EXPECT_THAT(moved("3", "5", "2026"),
                ElementsAre("GL document 1gl-5 takes back period 3 of 2026 in period 5 of 2026"));
    EXPECT_THAT(moved("3", "3", "2026"),
                ElementsAre("GL document 1gl-5 takes back period 3 of 2026 in period 3 of 2026"));
    EXPECT_THAT(moved("3", "4", "2027"),
                ElementsAre("GL document 1gl-5 takes back period 3 of 2026 in period 4 of 2027"));
    EXPECT_THAT(moved("3", "1", "2027"),
                ElementsAre("GL document 1gl-5 takes back period 3 of 2026 in period 1 of 2027"));
}

TEST_F(CheckRevaluationPeriods, TwelfthPeriodMayBeTheLastOrNot) {
    EXPECT_THAT(moved("12", "1", "2027"), IsEmpty());
    EXPECT_THAT(moved("12", "13", "2026"), IsEmpty());
    EXPECT_THAT(moved("12", "1", "2026"),
                ElementsAre("GL document 1gl-5 takes back period 12 of 2026 in period 1 of 2026"));
}

TEST_F(CheckRevaluationPeriods, ThirteenthPeriodIsTheLast) {
    EXPECT_THAT(moved("13", "1", "2027"), IsEmpty());
    EXPECT_THAT(moved("13", "14", "2026"),
                ElementsAre("GL document 1gl-5 takes back period 13 of 2026 in period 14 of 2026"));
}

TEST_F(CheckRevaluationPeriods, ShortYearEndsWithTheLastPeriodOfItsCalendar) {
    db().Execute("DELETE * FROM Period_table WHERE fyear = '2026' AND period > '3'");
    EXPECT_THAT(rows("SELECT period FROM Period_table WHERE fyear = '2026'").size(), 6u);
    EXPECT_THAT(moved("6", "1", "2027"), IsEmpty());
    EXPECT_THAT(moved("5", "1", "2027"),
                ElementsAre("GL document 1gl-5 takes back period 5 of 2026 in period 1 of 2027"));
}

// --- notes ---

TEST_F(CheckRevaluations, SeveralSelectionRowsAreNoted) {
    add("AP_Revalue_transaction_table", {{"fkey", "1apre-1"},
                                         {"docno", "APR-26-00001"},
                                         {"Currency", "EUR"},
                                         {"Rate", "1.35"},
                                         {"every_vendor", true}});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ElementsAre("Revaluation 1apre-1 has 2 selection rows, and the items of the last one alone"));
}

TEST_F(CheckRevaluations, SeveralCurrenciesAreNoted) {
    change(sum("7600"), {{"Currency", "THB"}});
    EXPECT_THAT(notes(), Contains("Revaluation 1apre-1 posted what 2 currencies came to together"));
}

TEST_F(CheckRevaluations, SummaryThatItsItemsCannotComeToIsNoted) {
    db().Execute("DELETE * FROM AP_Revalue_Result_table WHERE document_no = 'VCN-26-00003'");
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Revaluation 1apre-1: its G/L summary is not what its items come to"));
}

TEST_F(CheckRevaluations, ItemsAtAnotherRateAreNoted) {
    change(selection(), {{"Rate", "1.31"}});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ElementsAre("Revaluation 1apre-1: 2 of its items are not valued at a rate of its selection"));
}

}  // namespace
}  // namespace brimley
