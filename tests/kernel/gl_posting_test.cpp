#include "kernel/gl_posting.h"

#include "kernel/ledger_test.h"
#include "kernel/money.h"
#include "support/faulty_engine.h"
#include "support/test_server.h"

namespace brimley::testing {

using kernel::gl_rules;
using kernel::GlDocument;
using kernel::GlForm;
using kernel::GlPosting;
using kernel::Round;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GlPostings : public LedgerTest {
  protected:
    void SetUp() override {
        LedgerTest::SetUp();
        company.workspace().BeginTrans();
        add_account("1300", "Balance Sheet", true);
        add_account("5100", "Income Statement", true);
        add_account("5200", "Income Statement", true);
        add_account("7500", "Income Statement", true);  // exchange gains
        add_account("7510", "Income Statement", true);  // exchange losses
        add_rows("5000", "F", "EUR");
        company.add("Account_currency_table", {{"accno", "5000"}, {"Currency", "EUR"}});
        company.add("Docno_master_table",
                    {{"company", 1}, {"doctype", "gl"}, {"fiscalyear", "2026"}, {"nextdocno", 12}});
        company.add("Next_number_fkey_table", {{"company", 1}, {"doctype", "gl"}, {"fkeyno", 204}});
        company.add("Next_number_config_table",
                    {{"structure", "1"}, {"fyear_digit", 2}, {"seperator1", true}, {"seperator2", true}});
        company.add("Next_number_format_table",
                    {{"doctype", "gl"}, {"prefix", "GL"}, {"running_no_digit", "5"}});
        company.workspace().CommitTrans();
    }
    void allocate(const char* from, const char* to, double percent) {
        company.add("Allocation_Account_table",
                    {{"allocate_accno", from}, {"accno", to}, {"Percent", percent}});
    }
    static GlDocument base_document() {
        GlDocument document;
        document.company = "1";
        document.gldate = day("2026-03-16");
        document.source_docno = "IP-26-00001";
        document.Currency = "USD";
        document.base_currency = "USD";
        document.period = "3";
        document.fyear = "2026";
        document.user = "anna";
        document.vendor_no = "V1001";
        document.gain_account = "7500";
        document.loss_account = "7510";
        return document;
    }
    static GlDocument foreign_document(double rate) {
        GlDocument document = base_document();
        document.Currency = "EUR";
        document.rate_doc_to_base = rate;
        return document;
    }
    // Posts the entries of a document: account, amount, base amount.
    struct Entry {
        const char* accno;
        double amount;
        double base_amount;
    };
    [[nodiscard]] bool post(const GlDocument& document, std::initializer_list<Entry> entries,
                            GlForm form = GlForm::invoice) {
        GlPosting posting(kernel, gl_rules(form), document);
        if (!posting.open()) return false;
        for (const Entry& entry : entries)
            posting.add(entry.accno, entry.amount, entry.base_amount);
        return posting.write_lines() && posting.write_rounding() && posting.finish();
    }
    [[nodiscard]] bool post(std::initializer_list<std::pair<const char*, double>> entries,
                            GlForm form = GlForm::invoice) {
        GlPosting posting(kernel, gl_rules(form), base_document());
        if (!posting.open()) return false;
        for (const auto& [accno, amount] : entries)
            posting.add(accno, amount, amount);
        return posting.write_lines() && posting.write_rounding() && posting.finish();
    }
    // "lineno accno amount", a line each.
    std::string lines() { return company.list("SELECT lineno, accno, amount FROM GL_transaction_table"); }
    std::string foreign_lines() {
        return company.list(
            "SELECT accno, amount, base_amount, Currency, ledgertype FROM GL_transaction_table");
    }
};

TEST_F(GlPostings, LinesAreSummedByAccountAndSorted) {
    EXPECT_TRUE(post({{"2100", 112.35}, {"5000", 100}, {"1300", 5}, {"5000", 7.35}}));
    EXPECT_EQ(lines(), "1 1300 5 | 2 2100 112.35 | 3 5000 107.35");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlPostings, AllocatedAccountShowsInAndOutAndThenItsShares) {
    allocate("5000", "5100", 60);
    allocate("5000", "5200", 40);
    EXPECT_TRUE(post({{"2100", 112.35}, {"5000", 107.35}, {"1300", 5}}));
    EXPECT_EQ(lines(),
              "1 1300 5 | 2 2100 112.35 | 3 5000 107.35 | 4 5000 -107.35 | 5 5100 64.41 | 6 5200 42.94");
    EXPECT_EQ(balance("5000"), "0 0");
    EXPECT_EQ(balance("5100"), "64.41 64.41");
    EXPECT_EQ(balance("3900"), fmt::format("{} -", -107.35));
}

TEST_F(GlPostings, HeaderTellsTheDocumentAndItsSource) {
    GlPosting posting(kernel, gl_rules(GlForm::invoice), base_document());
    ASSERT_TRUE(posting.open());
    posting.add("5000", 1, 1);
    posting.add("2100", 1, 1);
    ASSERT_TRUE(posting.write_lines() && posting.finish());
    EXPECT_EQ(posting.fkey(), "1gl-204");
    EXPECT_EQ(company.list("SELECT company, doctype, docno, gldate, fkey, remark, Source, source_docno, "
                           "source_form, Currency, exchange_rate, period, fyear, user_created, date_created, "
                           "time_created FROM GL_header_table"),
              "1 gl GL-26-00012 2026-03-16 1gl-204 Invoice no. IP-26-00001 AP-INVOICE IP-26-00001 "
              "APform_invoice USD - 3 2026 anna 2026-03-16 09:30:00");
}

TEST_F(GlPostings, LineTellsItsAccountsSegmentsAndItsDocument) {
    EXPECT_TRUE(post({{"2100", 1}, {"5000", 1}}));
    EXPECT_EQ(company.list("SELECT company, fkey, docno, gldate, period, fyear, acccode, subacc, subacc2, "
                           "subacc5, Currency, ledgertype, exchange_rate, vendor_no, Source, source_form, "
                           "source_docno, date_created, time_created, user_created FROM GL_transaction_table "
                           "WHERE accno = '2100'"),
              "1 1gl-204 GL-26-00012 2026-03-16 3 2026 2100 S1 - S5 USD A - - AP-INVOICE APform_invoice "
              "IP-26-00001 2026-03-16 09:30:00 anna");
}

TEST_F(GlPostings, AccountThatSumsToZeroMakesNoLineEvenWhenItIsAllocated) {
    allocate("5000", "5100", 60);
    allocate("5000", "5200", 40);
    EXPECT_TRUE(post({{"5000", 10}, {"5000", -10}, {"1300", 1}, {"2100", 1}}));
    EXPECT_EQ(lines(), "1 1300 1 | 2 2100 1");
}

TEST_F(GlPostings, AccountOutsideTheMasterFailsSilently) {
    EXPECT_FALSE(post({{"2100", 10}, {"9999", 10}}));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlPostings, ShareOfAnAccountOutsideTheMasterFailsSilently) {
    allocate("5000", "9999", 100);
    EXPECT_FALSE(post({{"2100", 10}, {"5000", 10}}));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlPostings, UnbalancedDocumentIsToldAndHasNoHeader) {
    EXPECT_FALSE(post({{"2100", 10}, {"5000", 9.99}}));
    EXPECT_THAT(messages(), ElementsAre("Document is not balance (debit <> credit)"));
    EXPECT_EQ(company.list("SELECT fkey FROM GL_header_table"), "");
}

TEST_F(GlPostings, MissingCounterEndsThePosting) {
    GlDocument document = base_document();
    document.fyear = "2030";
    EXPECT_FALSE(post(document, {{"2100", 1, 1}}));
    EXPECT_EQ(messages().size(), 1U);
}

TEST_F(GlPostings, LongDocumentNumberIsTold) {
    const std::string prefix(25, 'G');
    company.db().Execute("UPDATE Next_number_format_table SET prefix = '" + prefix + "'");
    EXPECT_FALSE(post({{"2100", 1}, {"5000", 1}}));
    EXPECT_THAT(messages(),
                ElementsAre("Error : document no. is longer than 30 characters. " + prefix + "-26-00012"));
}

TEST_F(GlPostings, FiftyFirstAccountIsAnError) {
    GlPosting posting(kernel, gl_rules(GlForm::invoice), base_document());
    ASSERT_TRUE(posting.open());
    for (int i = 1; i <= 50; ++i)
        posting.add(std::to_string(i), 1, 1);
    EXPECT_THROW(posting.add("51", 1, 1), kernel::SummaryFull);
}

TEST_F(GlPostings, PaymentHasRoomForOneAccountMore) {
    for (const GlForm form :
         {GlForm::payment, GlForm::prepayment, GlForm::misc_payment, GlForm::card_payment}) {
        GlPosting posting(kernel, gl_rules(form), base_document());
        ASSERT_TRUE(posting.open());
        for (int i = 1; i <= 51; ++i)
            posting.add(std::to_string(i), 1, 1);
        EXPECT_THROW(posting.add("52", 1, 1), kernel::SummaryFull);
    }
}

TEST_F(GlPostings, ForeignLinesAreKeptInBothAmounts) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"2100", 100, 125}, {"5000", 100, 125}}));
    EXPECT_EQ(foreign_lines(), "2100 100 125 EUR F | 5000 100 125 EUR F");
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_header_table"), "1.25");
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_transaction_table"), "1.25 | 1.25");
    EXPECT_EQ(balance("2100", "F"), "100 125");
    EXPECT_EQ(balance("2100", "A"), "125 -");
}

TEST_F(GlPostings, BaseDocumentHasNoRate) {
    EXPECT_TRUE(post({{"2100", 1}, {"5000", 1}}));
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_header_table"), "-");
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_transaction_table"), "- | -");
}

TEST_F(GlPostings, ForeignDocumentOpensItsAccountsForTheCurrency) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"2100", 100, 125}, {"1300", 100, 125}}));
    EXPECT_EQ(company.list("SELECT accno, revalue FROM Account_currency_table WHERE accno = '1300'"),
              "1300 TRUE");
    EXPECT_EQ(balance("1300", "F"), "100 125");
    EXPECT_EQ(period("Period3, e_period3", "1300", "F"), "100 125");
    EXPECT_EQ(period("Period3", "1300", "E"), "-");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GlPostings, AccountThatCannotBeOpenedForTheCurrencyIsTold) {
    company.db().Execute("UPDATE Fiscalyear_table SET history = TRUE");
    EXPECT_FALSE(post(foreign_document(1.25), {{"2100", 100, 125}, {"1300", 100, 125}}));
    EXPECT_THAT(messages(), ElementsAre("Account 1300 has not been set for currency EUR"));
}

TEST_F(GlPostings, CentsLostOnTheCreditSideGoToTheLossAccount) {
    // Debits 125.00, credits 125.01: the difference is negative.
    EXPECT_TRUE(post(foreign_document(1.25), {{"5000", 100, 125}, {"2100", 100, 125.01}}));
    EXPECT_EQ(foreign_lines(), "2100 100 125.01 EUR F | 5000 100 125 EUR F | 7510 0.01 0.01 USD A");
    EXPECT_EQ(company.list("SELECT lineno, vendor_no, exchange_rate FROM GL_transaction_table WHERE accno = "
                           "'7510'"),
              "3 V1001 -");
    EXPECT_EQ(balance("7510"), "0.01 0.01");
    EXPECT_EQ(period("Period3", "7510"), "0.01");
}

TEST_F(GlPostings, CentsLostOnTheDebitSideGoToTheGainAccount) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"5000", 100, 125.02}, {"2100", 100, 125}}));
    EXPECT_EQ(foreign_lines(), "2100 100 125 EUR F | 5000 100 125.02 EUR F | 7500 -0.02 -0.02 USD A");
}

TEST_F(GlPostings, DifferenceBelowOneIsRoundedAwayAndOneIsRefused) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"5000", 100, 125.99}, {"2100", 100, 125}}));
    EXPECT_FALSE(post(foreign_document(1.25), {{"5000", 100, 126}, {"2100", 100, 125}}));
    EXPECT_THAT(messages(), ElementsAre("Document is not balance (debit <> credit)"));
}

TEST_F(GlPostings, BaseDocumentHasNoRoundingLine) {
    EXPECT_FALSE(post({{"5000", 10}, {"2100", 10.01}}));
    EXPECT_EQ(lines(), "1 2100 10.01 | 2 5000 10");
}

TEST_F(GlPostings, RoundingAccountOutsideTheMasterIsTold) {
    GlDocument document = foreign_document(1.25);
    document.loss_account = "7999";
    EXPECT_FALSE(post(document, {{"5000", 100, 125}, {"2100", 100, 125.01}}));
    EXPECT_THAT(messages(), ElementsAre("No account 7999"));
}

TEST_F(GlPostings, InactiveAccountStopsTheDocument) {
    company.db().Execute("UPDATE Account_master_table SET inactive = TRUE WHERE accno = '5000'");
    EXPECT_FALSE(post({{"2100", 10}, {"5000", 10}}));
    EXPECT_THAT(messages(), ElementsAre("Account 5000 is inactive."));
}

TEST_F(GlPostings, FailedDocumentLeavesNothingAfterARollback) {
    company.workspace().BeginTrans();
    EXPECT_FALSE(post({{"2100", 10}, {"5000", 9}}));
    company.workspace().Rollback();
    EXPECT_EQ(lines(), "");
    EXPECT_EQ(balance("2100"), "- -");
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table"), "12");
    EXPECT_EQ(company.list("SELECT fkeyno FROM Next_number_fkey_table"), "204");
}

TEST_F(GlPostings, SharesOfAForeignAllocatedAccountAreRoundedInBothCurrencies) {
    allocate("5000", "5100", 33.33);
    allocate("5000", "5200", 66.67);
    EXPECT_TRUE(post(foreign_document(1.237), {{"2100", 99.99, 123.69}, {"5000", 99.99, 123.69}}));
    EXPECT_EQ(foreign_lines(),
              fmt::format("2100 99.99 123.69 EUR F | 5000 99.99 123.69 EUR F | 5000 -99.99 -123.69 EUR F | "
                          "5100 {} {} EUR F | 5200 {} {} EUR F",
                          Round(99.99 * 33.33 / 100), Round(123.69 * 33.33 / 100), Round(99.99 * 66.67 / 100),
                          Round(123.69 * 66.67 / 100)));
}

// On a server: to tell what nobody asks would hold rows for nothing, and to ask what was not told is slow.
TEST_F(GlPostings, WhatIsToldAheadIsAskedLater) {
    allocate("5000", "5100", 40);
    allocate("5000", "5200", 60);
    const auto faults = std::make_shared<Faults>();
    faults->listens_ahead = true;
    const store::OpenCompany listening = company.second_user(faulty(faults));
    kernel::ModuleG3 its_kernel(listening.database, outside);
    for (const GlDocument& document : {base_document(), foreign_document(1.25)}) {
        listening.workspace->BeginTrans();
        GlPosting posting(its_kernel, gl_rules(GlForm::invoice), document);
        ASSERT_TRUE(posting.open());
        const double rate = *document.rate_doc_to_base;
        posting.add("2100", 100, 100 * rate);
        posting.add("5000", 100, 100 * rate);
        ASSERT_TRUE(posting.write_lines() && posting.write_rounding() && posting.finish());
        EXPECT_THAT(faults->told_ahead, IsEmpty());
        listening.workspace->Rollback();
    }
    // Account, allocation, balance and period of two accounts; of the foreign ones the base rows as well.
    EXPECT_EQ(faults->times_told, 8 + 12);
}

// Such as a void: in a file nobody else can be at work meanwhile.
TEST_F(GlPostings, OnAServerItIsNotInTheWayOfWhoTakesTheSameRowsOneByOne) {
    if (!tests_run_on_server()) return;
    const store::OpenCompany other = company.second_user();
    other.workspace->BeginTrans();
    auto balances =
        other.database->OpenRecordset("SELECT * FROM Balance_table", store::RecordsetKind::dynaset);
    ASSERT_TRUE(balances.try_edit_first({{"accno", "2100"}, {"ledgertype", "A"}}));
    outside.on_wait = [&](int) {
        auto periods = other.database->OpenRecordset("SELECT * FROM Balance_period_table",
                                                     store::RecordsetKind::dynaset);
        EXPECT_TRUE(balances.try_edit_first({{"accno", "5000"}, {"ledgertype", "A"}}));
        EXPECT_TRUE(periods.try_edit_first({{"accno", "5000"}, {"ledgertype", "A"}}));
        other.workspace->CommitTrans();
    };
    company.workspace().BeginTrans();
    EXPECT_TRUE(post({{"1000", 50}, {"2100", 150}, {"5000", 100}}));
    EXPECT_EQ(outside.waits.size(), 1U);
    company.workspace().CommitTrans();
}

// --- what the forms do differently ---

// "Source source_form remark / Source source_form" of a document's header and of its lines.
class GlPostingTexts : public GlPostings {
  protected:
    [[nodiscard]] std::string of(GlForm form) {
        EXPECT_TRUE(post({{"2100", 1}, {"5000", 1}}, form));
        return company.list("SELECT Source, source_form, remark FROM GL_header_table") + " / " +
               company.list("SELECT Source, source_form FROM GL_transaction_table WHERE lineno = 1");
    }
};

TEST_F(GlPostingTexts, OfAnInvoice) {
    EXPECT_EQ(of(GlForm::invoice),
              "AP-INVOICE APform_invoice Invoice no. IP-26-00001 / AP-INVOICE APform_invoice");
}

TEST_F(GlPostingTexts, OfAPaymentNameTheEntryOnTheHeaderAndTheFormOnTheLines) {
    EXPECT_EQ(of(GlForm::payment),
              "AP-PAYMENT Payment Entry payment no. IP-26-00001 / AP-PAYMENT APform_payment");
}

TEST_F(GlPostingTexts, OfAPrepaymentHaveTwoSources) {
    EXPECT_EQ(of(GlForm::prepayment),
              "AP A/P Prepayment prepayment no. IP-26-00001 / AP-PREPAY APform_prepayment");
}

TEST_F(GlPostingTexts, OfAMiscPayment) {
    EXPECT_EQ(of(GlForm::misc_payment),
              "AP-MISCPAY APform_misc_payment payment no. IP-26-00001 / AP-MISCPAY APform_misc_payment");
}

TEST_F(GlPostingTexts, OfACardPaymentHaveACapital) {
    EXPECT_EQ(of(GlForm::card_payment),
              "AP-CARD Credit Card Payment Payment no. IP-26-00001 / AP-CARD APform_creditcard_payment");
}

TEST_F(GlPostingTexts, OfARecurringRunHaveNoFormOnTheHeader) {
    EXPECT_EQ(of(GlForm::recurring_run), "AP - Invoice no. IP-26-00001 / AP APform_invoice");
}

TEST_F(GlPostingTexts, OfARevaluationHaveARemarkWithoutANumber) {
    EXPECT_EQ(of(GlForm::revaluation),
              "AP-REVALUE A/P Revaluation A/P Revaluation / AP-REVALUE A/P Revaluation");
}

TEST_F(GlPostings, ForeignLineOfAPaymentHasTheRateOfItsAmounts) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"2100", 100, 130}, {"5000", 100, 130}}, GlForm::payment));
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_transaction_table"), "1.3 | 1.3");
}

TEST_F(GlPostings, RoundingLineOfAPaymentHasTheRateOfTheDocument) {
    EXPECT_TRUE(post(foreign_document(1.25), {{"5000", 100, 125}, {"2100", 100, 125.01}}, GlForm::payment));
    EXPECT_EQ(company.list("SELECT Currency, exchange_rate FROM GL_transaction_table WHERE accno = '7510'"),
              "USD 1.25");
}

TEST_F(GlPostings, ForeignDocumentWithoutARateStoresNone) {
    GlDocument document = foreign_document(1.25);
    document.rate_doc_to_base.reset();
    EXPECT_TRUE(post(document, {{"5000", 100, 125}, {"2100", 100, 125.01}}, GlForm::payment));
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_header_table"), "-");
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_transaction_table WHERE accno = '7510'"), "-");
}

TEST_F(GlPostings, LongNumberOfAPaymentIsNamedFirst) {
    const std::string prefix(25, 'G');
    company.db().Execute("UPDATE Next_number_format_table SET prefix = '" + prefix + "'");
    EXPECT_FALSE(post({{"2100", 1}, {"5000", 1}}, GlForm::payment));
    EXPECT_THAT(messages(),
                ElementsAre(prefix + "-26-00012Error : document no. is longer than 30 characters. "));
}

TEST_F(GlPostings, AllocatedAccountOfARevaluationHasTheWholeAmountOnEachLine) {
    allocate("5000", "5100", 60);
    EXPECT_FALSE(post({{"2100", 10}, {"5000", 10}}, GlForm::revaluation));
    EXPECT_EQ(lines(), "1 2100 10 | 2 5000 10 | 3 5000 10 | 4 5100 10");
    EXPECT_THAT(messages(), ElementsAre("Document is not balance (debit <> credit)"));
}

TEST_F(GlPostings, RecurringRunKeepsTheOrderOfItsAccountsAndIgnoresAllocations) {
    allocate("5000", "5100", 60);
    EXPECT_TRUE(post({{"5000", 10}, {"2100", 10}, {"5000", 1}, {"2100", 1}}, GlForm::recurring_run));
    EXPECT_EQ(lines(), "1 5000 11 | 2 2100 11");
}

TEST_F(GlPostings, RecurringRunHasNoRoundingLine) {
    GlPosting posting(kernel, gl_rules(GlForm::recurring_run), foreign_document(1.25));
    ASSERT_TRUE(posting.open());
    posting.add("5000", 10, 10, "USD");
    posting.add("2100", 10, 10.01, "USD");
    EXPECT_TRUE(posting.write_lines() && posting.write_rounding());
    EXPECT_EQ(lines(), "1 5000 10 | 2 2100 10");
    EXPECT_FALSE(posting.finish());
}

TEST_F(GlPostings, RecurringRunStoresYearAndUserUnderOlderNamesAndLeavesMuchEmpty) {
    EXPECT_TRUE(post({{"2100", 1}, {"5000", 1}}, GlForm::recurring_run));
    EXPECT_EQ(company.list("SELECT fiscalyear, userid, fyear, user_created, acccode, subacc, base_amount, "
                           "exchange_rate FROM GL_transaction_table WHERE accno = '2100'"),
              "2026 anna - - - - - -");
}

TEST_F(GlPostings, HeaderOfARecurringRunNamesTheBaseLedgerAndNobody) {
    const auto header = [&](GlForm form) {
        EXPECT_TRUE(post({{"2100", 1}, {"5000", 1}}, form));
        return company.list(
            "SELECT ledgertype, user_created, date_created, time_created FROM GL_header_table WHERE "
            "remark = 'Invoice no. IP-26-00001'");
    };
    EXPECT_EQ(header(GlForm::recurring_run), "A - - -");
    EXPECT_EQ(header(GlForm::invoice), "A - - - | - anna 2026-03-16 09:30:00");
}

TEST_F(GlPostings, RecurringRunPostsToTheBaseLedgerInAnyCurrency) {
    EXPECT_FALSE(post(foreign_document(1.25), {{"2100", 1, 1}, {"5000", 1, 1}}, GlForm::recurring_run));
    EXPECT_EQ(company.list("SELECT Currency, ledgertype FROM GL_transaction_table"), "EUR A");
}

TEST_F(GlPostings, FormMayWriteFieldsOfItsOwn) {
    GlDocument document = base_document();
    document.more_header_fields = {{"Description", "year end"}};
    document.more_line_fields = {{"Month", "03"}, {"Year", "2026"}};
    EXPECT_TRUE(post(document, {{"2100", 1, 1}, {"5000", 1, 1}}));
    EXPECT_EQ(company.list("SELECT Description FROM GL_header_table"), "year end");
    EXPECT_EQ(company.list("SELECT Month, Year FROM GL_transaction_table"), "03 2026 | 03 2026");
}

TEST_F(GlPostings, FormMayDrawTheNumberItself) {
    GlDocument document = base_document();
    document.number = {"gl7", "1gl7"};
    EXPECT_TRUE(post(document, {{"2100", 1, 1}, {"5000", 1, 1}}));
    EXPECT_EQ(company.list("SELECT docno, fkey FROM GL_header_table"), "gl7 1gl7");
    EXPECT_EQ(company.list("SELECT docno, fkey FROM GL_transaction_table"), "gl7 1gl7 | gl7 1gl7");
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table"), "12");
}

TEST(GlRules, FormThatReversesNothingHasNoRow) {
    EXPECT_THROW((void)kernel::gl_reversal_rules(GlForm::recurring_run), std::logic_error);
}

}  // namespace brimley::testing
