#include "kernel/gl_reversal.h"

#include <fmt/format.h>

#include "kernel/ledger_test.h"

namespace brimley::testing {

using kernel::gl_reversal_rules;
using kernel::GlForm;
using kernel::GlReversal;
using store::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A document of 100.00 on 5000 and 2100, posted in period 3 as GL-26-00011; today is in period 3 too.
class GlReversals : public LedgerTest {
  protected:
    void SetUp() override {
        LedgerTest::SetUp();
        company.workspace().BeginTrans();
        company.add("Docno_master_table",
                    {{"company", 1}, {"doctype", "gl"}, {"fiscalyear", "2026"}, {"nextdocno", 12}});
        company.add("Next_number_fkey_table", {{"company", 1}, {"doctype", "gl"}, {"fkeyno", 204}});
        company.add("Next_number_config_table",
                    {{"structure", "1"}, {"fyear_digit", 2}, {"seperator1", true}, {"seperator2", true}});
        company.add("Next_number_format_table",
                    {{"doctype", "gl"}, {"prefix", "GL"}, {"running_no_digit", "5"}});
        company.add("GL_header_table", {{"company", 1},
                                        {"doctype", "gl"},
                                        {"docno", "GL-26-00011"},
                                        {"fkey", "1gl-203"},
                                        {"gldate", day("2026-03-02")},
                                        {"remark", "Invoice no. IP-26-00001"},
                                        {"period", "3"},
                                        {"fyear", "2026"}});
        add_posted_line(1, "2100", 100, 100, "USD", "A");
        add_posted_line(2, "5000", 100, 100, "USD", "A");
        company.workspace().CommitTrans();
    }
    void add_posted_line(int lineno, const char* accno, double amount, double base_amount,
                         const char* currency, const char* ledgertype) {
        company.add("GL_transaction_table", {{"company", 1},
                                             {"fkey", "1gl-203"},
                                             {"docno", "GL-26-00011"},
                                             {"gldate", day("2026-03-02")},
                                             {"period", "3"},
                                             {"fyear", "2026"},
                                             {"lineno", lineno},
                                             {"accno", accno},
                                             {"acccode", accno},
                                             {"subacc3", "old"},
                                             {"amount", amount},
                                             {"base_amount", base_amount},
                                             {"Currency", currency},
                                             {"ledgertype", ledgertype},
                                             {"exchange_rate", 1.25},
                                             {"vendor_no", "V1001"},
                                             {"Source", "AP-INVOICE"}});
    }
    static GlReversal reversal() {
        GlReversal reversal;
        reversal.fkey = "1gl-203";
        reversal.company = "1";
        reversal.Currency = "USD";
        reversal.period = "3";
        reversal.fyear = "2026";
        reversal.source_docno = "IP-26-00001";
        reversal.user = "anna";
        return reversal;
    }
    [[nodiscard]] bool reverse(const GlReversal& reversal, GlForm form = GlForm::invoice) {
        return kernel::reverse_gl_document(kernel, gl_reversal_rules(form), reversal);
    }
    [[nodiscard]] bool reverse(GlForm form = GlForm::invoice) { return reverse(reversal(), form); }
    [[nodiscard]] bool reverse_voided_check(GlForm form) {
        return kernel::reverse_gl_document(kernel, kernel::gl_rules_of_voided_check(form), reversal());
    }
    void one_month_later() { outside.clock = day("2026-04-20"); }
    std::string headers() {
        return company.list("SELECT fkey, docno, Reverse, Description, remark FROM GL_header_table");
    }
    std::string lines() {
        return company.list("SELECT fkey, lineno, accno, amount, base_amount FROM GL_transaction_table");
    }
};

TEST_F(GlReversals, SamePeriodGoesIntoTheSameDocumentBehindItsLines) {
    EXPECT_TRUE(reverse());
    EXPECT_EQ(headers(), "1gl-203 GL-26-00011 TRUE Void invoice IP-26-00001 Invoice no. IP-26-00001");
    EXPECT_EQ(lines(),
              "1gl-203 1 2100 100 100 | 1gl-203 2 5000 100 100 | 1gl-203 3 2100 -100 -100 | "
              "1gl-203 4 5000 -100 -100");
    EXPECT_EQ(balance("2100"), "-100 -100");
    EXPECT_EQ(balance("5000"), "-100 -100");
    EXPECT_EQ(period("Period3, e_period3", "5000"), "-100 -100");
    EXPECT_EQ(balance("3900"), "100 -");
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table"), "12");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlReversals, LaterPeriodMakesANewDocumentOfToday) {
    one_month_later();
    EXPECT_TRUE(reverse());
    EXPECT_EQ(headers(),
              "1gl-203 GL-26-00011 TRUE - Reversed by GL-26-00012 | "
              "1gl-204 GL-26-00012 FALSE void invoice IP-26-00001 Reverse GL GL-26-00011");
    EXPECT_EQ(lines(),
              "1gl-203 1 2100 100 100 | 1gl-203 2 5000 100 100 | 1gl-204 1 2100 -100 -100 | "
              "1gl-204 2 5000 -100 -100");
    EXPECT_EQ(company.list("SELECT company, doctype, gldate, period, fyear, Currency, Source, source_docno, "
                           "source_form, exchange_rate, user_created FROM GL_header_table WHERE fkey = "
                           "'1gl-204'"),
              "1 gl 2026-04-20 4 2026 USD AP-INVOICE IP-26-00001 APform_invoice - -");
    EXPECT_EQ(period("Period3, Period4", "5000"), "0 -100");
}

TEST_F(GlReversals, LineCopiesItsAccountAndCurrencyAndTakesTheRestFromTheOpenHeader) {
    one_month_later();
    EXPECT_TRUE(reverse());
    EXPECT_EQ(company.list("SELECT company, docno, gldate, period, fyear, acccode, subacc3, Currency, "
                           "ledgertype, exchange_rate, vendor_no, Source, source_docno, source_form, "
                           "date_created, time_created, user_created FROM GL_transaction_table WHERE fkey = "
                           "'1gl-204' AND lineno = 1"),
              "1 GL-26-00012 2026-04-20 4 2026 2100 old USD A - - AP-INVOICE IP-26-00001 APform_invoice "
              "2026-04-20 00:00:00 anna");
}

TEST_F(GlReversals, LinesInTheSameDocumentKeepItsDateAndPeriod) {
    EXPECT_TRUE(reverse());
    EXPECT_EQ(company.list("SELECT docno, gldate, period, date_created FROM GL_transaction_table WHERE "
                           "lineno = 3"),
              "GL-26-00011 2026-03-02 3 2026-03-16");
}

TEST_F(GlReversals, PeriodAndYearAreComparedAsNumbers) {
    GlReversal written_otherwise = reversal();
    written_otherwise.period = "03";
    written_otherwise.fyear = "2026.0";
    EXPECT_TRUE(reverse(written_otherwise));
    EXPECT_EQ(company.list("SELECT fkey FROM GL_header_table"), "1gl-203");
}

TEST_F(GlReversals, SamePeriodOfAnotherYearIsAnotherPeriod) {
    company.add("Fiscalyear_table",
                {{"fyear", "2027"}, {"StartDate", day("2027-01-01")}, {"EndDate", day("2027-12-31")}});
    company.add("Docno_master_table",
                {{"company", 1}, {"doctype", "gl"}, {"fiscalyear", "2027"}, {"nextdocno", 1}});
    outside.clock = day("2027-03-16");
    EXPECT_FALSE(reverse());  // the accounts have no rows for that year
    EXPECT_THAT(messages(), ElementsAre("No account 2100 in fiscal year 2027"));
}

TEST_F(GlReversals, LastMomentOfTheYearBelongsToIt) {
    outside.clock = store::DateTime::from_iso("2026-12-31 23:59:00").value();
    EXPECT_TRUE(reverse());
    EXPECT_EQ(period("Period12", "5000"), "-100");
}

TEST_F(GlReversals, TodayOutsideEveryFiscalYearIsToldAndRefused) {
    outside.clock = day("2031-01-01");
    EXPECT_FALSE(reverse());
    EXPECT_EQ(messages().size(), 1U);
}

TEST_F(GlReversals, DocumentWithoutLinesGivesWhatItsKindIsToldToGive) {
    GlReversal none = reversal();
    none.fkey = "";
    EXPECT_TRUE(reverse(none, GlForm::invoice));
    EXPECT_FALSE(reverse(none, GlForm::payment));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlReversals, ForeignLineFindsNoBalanceAndIsRefusedSilently) {
    company.db().Execute(
        "UPDATE GL_transaction_table SET Currency = 'EUR', ledgertype = 'F', amount = 80 WHERE accno = "
        "'2100'");
    EXPECT_FALSE(reverse());
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlReversals, ForeignLineOnAnAccountWithoutTheCurrencyIsTold) {
    company.db().Execute("DELETE * FROM Account_currency_table");
    company.db().Execute("UPDATE GL_transaction_table SET Currency = 'EUR', ledgertype = 'F'");
    EXPECT_FALSE(reverse());
    EXPECT_THAT(messages(), ElementsAre("Error! account 2100 has not been set for EUR currency"));
}

TEST_F(GlReversals, InactiveAccountStopsTheReversal) {
    company.db().Execute("UPDATE Account_master_table SET inactive = TRUE WHERE accno = '5000'");
    EXPECT_FALSE(reverse());
    EXPECT_THAT(messages(), ElementsAre("Account 5000 is inactive."));
}

TEST_F(GlReversals, UnbalancedLinesCannotBeReversed) {
    company.db().Execute("UPDATE GL_transaction_table SET base_amount = 99 WHERE accno = '5000'");
    EXPECT_FALSE(reverse());
    EXPECT_THAT(messages(), ElementsAre("Document is not balance (debit <> credit)"));
}

TEST_F(GlReversals, LinesWithoutAHeaderCannotBeReversed) {
    company.db().Execute("DELETE * FROM GL_header_table");
    EXPECT_FALSE(reverse());
    one_month_later();
    EXPECT_FALSE(reverse());
}

TEST_F(GlReversals, LongDocumentNumberIsTold) {
    one_month_later();
    const std::string prefix(25, 'G');
    company.db().Execute("UPDATE Next_number_format_table SET prefix = '" + prefix + "'");
    EXPECT_FALSE(reverse());
    EXPECT_THAT(messages(),
                ElementsAre("Error : document no. is longer than 30 characters. " + prefix + "-26-00012"));
}

TEST_F(GlReversals, HeldHeaderIsTriedFiveTimesMore) {
    const auto other = company.second_user();
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE GL_header_table SET remark = 'held'");
    company.workspace().BeginTrans();
    EXPECT_FALSE(reverse());
    EXPECT_EQ(outside.waits.size(), 5U);
    outside.waits.clear();
    outside.on_wait = [&](int wait) {
        if (wait == 2) other.workspace->Rollback();
    };
    EXPECT_TRUE(reverse());
    EXPECT_EQ(outside.waits.size(), 2U);
    company.workspace().CommitTrans();
}

// --- what the forms do differently ---

TEST_F(GlReversals, EditSaysSoInTheSameDocument) {
    GlReversal edit = reversal();
    edit.edited = true;
    EXPECT_TRUE(reverse(edit));
    EXPECT_EQ(company.list("SELECT Description FROM GL_header_table"), "Edit invoice IP-26-00001");
}

TEST_F(GlReversals, PaymentNamesItsNumberBeforeTheWords) {
    GlReversal edit = reversal();
    edit.edited = true;
    EXPECT_TRUE(reverse(edit, GlForm::payment));
    EXPECT_EQ(company.list("SELECT Description FROM GL_header_table"), "IP-26-00001Edit payment ");
    EXPECT_TRUE(reverse(GlForm::payment));
    EXPECT_EQ(company.list("SELECT Description FROM GL_header_table"), "IP-26-00001Void payment ");
}

TEST_F(GlReversals, NewDocumentOfAPaymentIsDatedWithTheTimeAndNamesTheEntry) {
    outside.clock = store::DateTime::from_iso("2026-04-20 10:15:00").value();
    EXPECT_TRUE(reverse(GlForm::payment));
    EXPECT_EQ(company.list("SELECT gldate, Source, source_form, Description FROM GL_header_table WHERE "
                           "fkey = '1gl-204'"),
              "2026-04-20 10:15:00 AP-PAYMENT Payment Entry IP-26-00001void payment ");
    EXPECT_EQ(company.list("SELECT Source, source_form FROM GL_transaction_table WHERE fkey = '1gl-204' AND "
                           "lineno = 1"),
              "AP-PAYMENT APform_payment");
}

TEST_F(GlReversals, HaveTheSourcesOfTheirKindOfPayment) {
    const auto of = [](GlForm form) {
        const kernel::GlTexts texts = gl_reversal_rules(form).names;
        return fmt::format("{} {} / {} {}", texts.header_Source, texts.header_source_form, texts.line_Source,
                           texts.line_source_form);
    };
    EXPECT_EQ(of(GlForm::prepayment), "AP A/P Prepayment / AP-PREPAY APform_prepayment");
    EXPECT_EQ(of(GlForm::misc_payment), "AP-MISCPAY APform_misc_payment / AP-MISCPAY APform_misc_payment");
    EXPECT_EQ(of(GlForm::card_payment), "AP-CARD Credit Card Payment / AP-CARD APform_creditcard_payment");
}

TEST_F(GlReversals, NewDocumentOfAnInvoiceIsDatedWithoutTheTime) {
    outside.clock = store::DateTime::from_iso("2026-04-20 10:15:00").value();
    EXPECT_TRUE(reverse(GlForm::invoice));
    EXPECT_EQ(company.list("SELECT gldate FROM GL_header_table WHERE fkey = '1gl-204'"), "2026-04-20");
}

TEST_F(GlReversals, VoidCheckWritesNoDescription) {
    EXPECT_TRUE(reverse_voided_check(GlForm::payment));
    EXPECT_EQ(headers(), "1gl-203 GL-26-00011 TRUE - Invoice no. IP-26-00001");
}

TEST_F(GlReversals, VoidCheckHasTheSourcesOfThePaymentAndItsOwnName) {
    one_month_later();
    EXPECT_TRUE(reverse_voided_check(GlForm::prepayment));
    EXPECT_EQ(company.list("SELECT Source, source_form FROM GL_header_table WHERE fkey = '1gl-204'"),
              "AP A/P Prepayment");
    EXPECT_EQ(company.list("SELECT Source, source_form FROM GL_transaction_table WHERE fkey = '1gl-204' AND "
                           "lineno = 1"),
              "AP-PREPAY APform_void_check");
}

TEST_F(GlReversals, VoidCheckWritesNoDescriptionInANewDocument) {
    one_month_later();
    EXPECT_TRUE(reverse_voided_check(GlForm::payment));
    EXPECT_EQ(headers(),
              "1gl-203 GL-26-00011 TRUE - Reversed by GL-26-00012 | "
              "1gl-204 GL-26-00012 FALSE - Reverse GL GL-26-00011");
}

// A revaluation is reversed in the period after its own, on the day that it is saved.
class GlRevaluationReversals : public GlReversals {
  protected:
    [[nodiscard]] bool reverse_into_next_period() {
        GlReversal next = reversal();
        next.into = kernel::FiscalPeriod{4, "2026"};
        return reverse(next, GlForm::revaluation);
    }
};

TEST_F(GlRevaluationReversals, GoIntoTheGivenPeriodDatedToday) {
    EXPECT_TRUE(reverse_into_next_period());
    EXPECT_EQ(company.list("SELECT docno, gldate, period, fyear, Source, source_form, user_created, "
                           "date_created, time_created FROM GL_header_table WHERE fkey = '1gl-204'"),
              "GL-26-00012 2026-03-16 4 2026 AP-REVALUE A/P Revaluation anna 2026-03-16 09:30:00");
    EXPECT_EQ(lines(),
              "1gl-203 1 2100 100 100 | 1gl-203 2 5000 100 100 | 1gl-204 1 2100 -100 -100 | "
              "1gl-204 2 5000 -100 -100");
    EXPECT_EQ(period("Period3, Period4", "5000"), "0 -100");
}

TEST_F(GlRevaluationReversals, GoIntoTheGivenPeriodEvenWhenItIsTheDocumentsOwn) {
    GlReversal own = reversal();
    own.into = kernel::FiscalPeriod{3, "2026"};
    EXPECT_TRUE(reverse(own, GlForm::revaluation));
    EXPECT_EQ(company.list("SELECT fkey, period FROM GL_header_table"), "1gl-203 3 | 1gl-204 3");
}

TEST_F(GlRevaluationReversals, LeaveTheOldHeaderAsItIs) {
    EXPECT_TRUE(reverse_into_next_period());
    EXPECT_EQ(headers(),
              "1gl-203 GL-26-00011 FALSE - Invoice no. IP-26-00001 | "
              "1gl-204 GL-26-00012 FALSE - Reverse A/P Revaluation GL-26-00011");
}

TEST_F(GlRevaluationReversals, SaveTheHeaderAfterTheCheck) {
    company.db().Execute("UPDATE GL_transaction_table SET base_amount = 99 WHERE accno = '5000'");
    EXPECT_FALSE(reverse_into_next_period());
    EXPECT_EQ(company.list("SELECT fkey FROM GL_header_table"), "1gl-203");
}

TEST_F(GlReversals, HeaderOfANewDocumentIsSavedBeforeItsLines) {
    one_month_later();
    company.db().Execute("UPDATE GL_transaction_table SET base_amount = 99 WHERE accno = '5000'");
    EXPECT_FALSE(reverse());
    EXPECT_EQ(company.list("SELECT fkey FROM GL_header_table"), "1gl-203 | 1gl-204");
}

}  // namespace brimley::testing
