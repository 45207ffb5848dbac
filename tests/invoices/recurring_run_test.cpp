// Issuing recurring templates, as far as the sessions do not show it.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "kernel/tables/company_tables.h"
#include "support/recurring_templates.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecurringRun : public ::testing::Test {
  protected:
    // The GL lines of an invoice of this line, after those of the payable account and the taxable amount.
    std::string tax_lines(const TemplateLine& line) {
        add_template(company, {.number = ++templates_, .lines = {line}});
        generate(list_due(user));
        EXPECT_THAT(user.messages(), ElementsAre("Generate invoices complete"));
        return company.list(
            fmt::format("SELECT accno, amount FROM GL_transaction_table WHERE docno = 'gl{}' AND accno <> "
                        "'2000' ORDER BY lineno",
                        templates_));
    }
    void set_authority(const char* authority, const char* values) {
        company.db().Execute(
            fmt::format("UPDATE Tax_authority_table SET {} WHERE tax_authority = '{}'", values, authority));
    }
    void set_shares(const char* code, const char* values) {
        company.db().Execute(
            fmt::format("UPDATE Tax_code_details_table SET {} WHERE tax_code = '{}'", values, code));
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};

  private:
    int templates_ = 0;
};

TEST_F(RecurringRun, TaxIsComputedAfreshAndRefunded) {
    EXPECT_EQ(tax_lines({105, 100, 4.99, "GST5"}), "6100 100 | 1300 5");
}

TEST_F(RecurringRun, TaxIsTakenOutOfAnAmountThatIncludesIt) {
    EXPECT_EQ(tax_lines({105, 105, 5, "GST5", "6100", true}), "6100 105 | 1300 5");
}

TEST_F(RecurringRun, TaxIncludedTakesTheTaxBeforeItIntoItsBase) {
    // 105 / 1.05 * 5 %, then (105 + 5) / 1.07 * 7 %, which is 7.196...
    EXPECT_EQ(tax_lines({105, 105, 5, "STACK", "6400", true}), "6400 112.2 | 1300 5");
}

TEST_F(RecurringRun, LimitsHoldForTheTaxOfEachLine) {
    EXPECT_EQ(tax_lines({102, 100, 2, "LEVY"}), "6100 102");
    EXPECT_EQ(tax_lines({10050, 10000, 50, "LEVY"}), "6100 10050");
}

TEST_F(RecurringRun, LimitBelow0IsNone) {
    set_authority("GST", "min_charged = -1, max_charged = -1");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100 | 1300 5");
    EXPECT_EQ(tax_lines({-105, -100, -5, "GST5"}), "6100 -100 | 1300 -5");
}

TEST_F(RecurringRun, HalfACentGoesToTheEvenCent) {
    // Half of 0.05, and half of 0.15.
    EXPECT_EQ(tax_lines({0.55, 0.5, 0.05, "HALF10"}), "6100 0.53 | 1300 0.02");
    EXPECT_EQ(tax_lines({1.65, 1.5, 0.15, "HALF10"}), "6100 1.57 | 1300 0.08");
    // 5 % of 0.50 and of 1.50.
    EXPECT_EQ(tax_lines({0.52, 0.5, 0.02, "GST5"}), "6100 0.5 | 1300 0.02");
    EXPECT_EQ(tax_lines({1.58, 1.5, 0.08, "GST5"}), "6100 1.5 | 1300 0.08");
}

TEST_F(RecurringRun, LimitedTaxIsTaxedByTheAuthorityAfterIt) {
    set_authority("TAXA", "min_charged = 20");
    EXPECT_EQ(tax_lines({128.4, 100, 28.4, "STACK", "6400"}), "6400 108.4 | 1300 20");
}

TEST_F(RecurringRun, TaxIncludedIsTakenOutOfTheTaxableAmountAlsoBelowTheGross) {
    // 100 / 1.05 * 5 %, which is 4.761...
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5", "6100", true}), "6100 100 | 1300 4.76");
}

TEST_F(RecurringRun, OnlyATaxableTaxIsTaxedByTheAuthorityAfterIt) {
    set_shares("STACK", "taxable = FALSE");
    EXPECT_EQ(tax_lines({112, 100, 12, "STACK", "6400"}), "6400 107 | 1300 5");
}

// A line that takes something off, in a template of several.
TEST_F(RecurringRun, TaxBelow0IsNotTaxedByTheAuthorityAfterIt) {
    EXPECT_EQ(tax_lines({-112, -100, -12, "STACK", "6400"}), "6400 -107 | 1300 -5");
}

TEST_F(RecurringRun, EachLineOfACodeIsTaxedByAllItsAuthoritiesFromTheStart) {
    add_template(company,
                 {.lines = {{112.35, 100, 12.35, "STACK", "6400"}, {112.35, 100, 12.35, "STACK", "6400"}}});
    generate(list_due(user));
    EXPECT_EQ(company.list("SELECT accno, amount FROM GL_transaction_table ORDER BY lineno"),
              "2000 224.7 | 6400 214.7 | 1300 10");
}

TEST_F(RecurringRun, RefundAbove100PercentTakesTheRestOffTheOtherAccount) {
    set_shares("GST5", "percent_refund = 120");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100 | 1300 6 | 5330 -1");
}

TEST_F(RecurringRun, RestOfAPartialRefundIsChargedOrGoesIntoTheCost) {
    set_shares("HALF10", "percent_refund = 30, include_itemcost = FALSE");
    EXPECT_EQ(tax_lines({11, 10, 1, "HALF10"}), "6100 10 | 1300 0.3 | 5330 0.7");
    set_shares("HALF10", "include_itemcost = TRUE");
    EXPECT_EQ(tax_lines({11, 10, 1, "HALF10"}), "6100 10.7 | 1300 0.3");
}

TEST_F(RecurringRun, AuthorityThatRefundsNothingMayHaveAnAccountForIt) {
    set_shares("GST5", "percent_refund = 0");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100 | 5330 5");
}

TEST_F(RecurringRun, WithoutAnAccountForItNothingIsRefunded) {
    set_authority("GST", "acc_recoverable = NULL");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100 | 5330 5");
    set_shares("GST5", "include_itemcost = TRUE");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 105");
}

TEST_F(RecurringRun, FullRefundAsksForNoOtherAccount) {
    set_authority("GST", "acc_expense = NULL");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100 | 1300 5");
}

TEST_F(RecurringRun, ShareOf0AsksForNoAccount) {
    set_authority("GST", "acc_expense = NULL, acc_recoverable = NULL, Rate = 0");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100");
}

TEST_F(RecurringRun, LineWithoutATaxIsNotTaxedByItsCode) {
    EXPECT_EQ(tax_lines({100, 100, 0, "GST5"}), "6100 100");
}

TEST_F(RecurringRun, CodesOfSalesAreNotAskedFor) {
    set_shares("GST5", "transaction_type = 'sale'");
    EXPECT_EQ(tax_lines({105, 100, 5, "GST5"}), "6100 100");
}

// A template may have been changed since it was listed, or be gone.
TEST_F(RecurringRun, TemplateIsReadWhenItIsIssued) {
    add_template(company, {});
    auto& form = list_due(user);
    company.db().Execute("UPDATE AP_recur_header_table SET remark = 'Bay 9'");
    generate(form);
    EXPECT_EQ(company.list("SELECT remark FROM AP_header_table"), "Bay 9");
}

TEST_F(RecurringRun, TemplateThatIsGoneLeavesNothingOfTheRun) {
    add_template(company, {.number = 1});
    add_template(company, {.number = 2});
    auto& form = list_due(user);
    company.db().Execute("DELETE FROM AP_recur_header_table WHERE fkey = '1recur-2'");
    generate(form);
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoice from on due recurring-invoice failed"));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

// The vendor's account is asked for once the template is there, and it is the vendor of the list that is
// asked.
TEST_F(RecurringRun, TemplateThatIsGoneIsNoticedBeforeAMissingAccount) {
    add_template(company, {});
    auto& form = list_due(user);
    company.db().Execute("UPDATE Vendor_table SET ap_accno = NULL");
    company.db().Execute("DELETE FROM AP_recur_header_table");
    generate(form);
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoice from on due recurring-invoice failed"));
}

TEST_F(RecurringRun, MissingAccountIsToldBeforeAMissingDate) {
    add_template(company, {.recur_date = {}});
    company.db().Execute("UPDATE Vendor_table SET ap_accno = NULL");
    auto& form = list_due(user);
    generate(form);
    EXPECT_THAT(user.messages(), ElementsAre("Error : Payable account for V1001 is empty",
                                             "Generate invoice from on due recurring-invoice failed"));
    EXPECT_FALSE(form.Progress1.visible());
}

TEST_F(RecurringRun, TemplateWithoutANumberIsListedAndNotIssued) {
    add_template(company, {});
    company.db().Execute("UPDATE AP_recur_header_table SET recurno = NULL");
    auto& form = list_due(user);
    EXPECT_EQ(form.dbgrid1.cell(0, "due"), "True");
    generate(form);
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoices complete"));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

TEST_F(RecurringRun, RowsHaveTheAccountOfTheVendorThatWasListed) {
    add_template(company, {.vendor = "V2001"});
    auto& form = list_due(user);
    company.db().Execute("UPDATE AP_recur_header_table SET vendor_no = 'V1001'");
    generate(form);
    EXPECT_EQ(company.list("SELECT vendor_no, ap_accno FROM AP_transaction_table"), "V1001 2010");
    EXPECT_EQ(company.list("SELECT accno FROM GL_transaction_table ORDER BY lineno"), "2000 | 6100");
}

TEST_F(RecurringRun, InvoiceIsOneOfTheFirstCompanyWhateverTheTemplateSays) {
    add_template(company, {});
    company.db().Execute("UPDATE AP_recur_header_table SET company = 2");
    generate(list_due(user));
    EXPECT_EQ(company.list("SELECT company, fkey FROM AP_header_table"), "1 1ip1");
}

// Month and year are those of the calendar; numbers and postings go by the fiscal year.
TEST_F(RecurringRun, FiscalYearMayDifferFromThatOfTheCalendar) {
    add_template(company, {});
    company.db().Execute(
        "UPDATE Period_table SET fyear = '2027', period = '9' WHERE StartDate <= '20260305' AND "
        "EndDate >= '20260305'");
    company.db().Execute("UPDATE Docno_master_table SET nextdocno = 70 WHERE fiscalyear = '2027'");
    generate(list_due(user));
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoices complete"));
    EXPECT_EQ(company.list("SELECT docno, Month, Year FROM AP_header_table"), "ip70 03 2026");
    EXPECT_EQ(company.list("SELECT Month, Year FROM AP_transaction_table"), "03 2026");
    EXPECT_EQ(company.list("SELECT docno, fyear, period FROM GL_header_table"), "gl70 2027 9");
    EXPECT_EQ(
        company.list("SELECT fiscalyear, period, Month, Year FROM GL_transaction_table WHERE lineno = 1"),
        "2027 9 03 2026");
    EXPECT_EQ(company.list("SELECT fyear, period9 FROM Balance_period_table WHERE accno = '2000' AND "
                           "period9 <> 0"),
              "2027 100");
    EXPECT_EQ(list_due(user).dbgrid1.array.used_rows(), 0);
}

TEST_F(RecurringRun, DatesAreShownAndReadInTheFormatOfTheUser) {
    user.ap.BRIMLEY_DATE_FORMAT = "mm/dd/yyyy";
    add_template(company, {});
    auto& form = list_due(user);
    EXPECT_EQ(form.dbgrid1.cell(0, "due date"), "03/05/2026");
    EXPECT_EQ(form.dbgrid1.cell(0, "expiration date"), "12/31/2026");
    generate(form);
    EXPECT_EQ(company.list("SELECT gldate, Month FROM AP_header_table"), "2026-03-05 03");
}

// As when a clock was set back.
TEST_F(RecurringRun, InvoiceOfAnotherYearDoesNotCount) {
    add_template(company, {});
    generate(list_due(user));
    for (const char* year : {"2025", "2027"}) {
        company.db().Execute(fmt::format("UPDATE AP_header_table SET [Year] = '{}'", year));
        EXPECT_EQ(list_due(user).dbgrid1.array.used_rows(), 1) << year;
    }
}

TEST_F(RecurringRun, TemplateWithoutLinesBecomesAnEmptyInvoiceWithAnEmptyLedgerDocument) {
    add_template(company, {.lines = {}});
    generate(list_due(user));
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoices complete"));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "ip1");
    EXPECT_EQ(company.list("SELECT docno FROM GL_header_table"), "gl1");
    EXPECT_EQ(company.list("SELECT docno FROM GL_transaction_table"), "");
}

TEST_F(RecurringRun, InvoiceThatWasVoidedCountsAsIssued) {
    add_template(company, {});
    generate(list_due(user));
    company.db().Execute("UPDATE AP_header_table SET void = TRUE");
    EXPECT_EQ(list_due(user).dbgrid1.array.used_rows(), 0);
}

TEST_F(RecurringRun, InvoiceEnteredByHandDoesNotCount) {
    add_template(company, {});
    user.ap.showform_APform_invoice();
    enter(*user.ap.frm_invoice, {.lines = {{"5000", "NOTAX", "taxable amount", "100.00"}}});
    EXPECT_EQ(user.ap.frm_invoice->press(101), controls::Refusal::none);
    EXPECT_EQ(list_due(user).dbgrid1.array.used_rows(), 1);
}

TEST_F(RecurringRun, TermThatIsNotKnownLeavesItsFieldsEmpty) {
    add_template(company, {});
    company.db().Execute("UPDATE AP_recur_header_table SET payment_term = 'X9'");
    generate(list_due(user));
    EXPECT_EQ(
        company.list("SELECT payment_term, duedays, early_days, early_discount, due_date, discount_date "
                     "FROM AP_transaction_table"),
        "X9 - - - - -");
}

// The answer must not cost more with each year of invoices.
TEST(RecurringRunIndexes, IssuedTemplatesAreLookedUpByTemplateYearAndMonth) {
    const auto& indexes = kernel::company_tables().find("AP_header_table")->indexes;
    EXPECT_TRUE(std::ranges::any_of(indexes, [](const store::Index& index) {
        return index.fields == std::vector<std::string>{"recurno", "Year", "Month"} &&
               index.only_where_false.empty();
    }));
}

// The counter restarts with each year, and so do the keys.
TEST_F(RecurringRun, KeysComeAgainInTheNextYear) {
    add_template(company, {});
    company.db().Execute("UPDATE AP_recur_header_table SET end_date = '20271231'");
    generate(list_due(user));
    user.desk.clock = *store::DateTime::from_iso("2027-01-04 09:30:00");
    generate(list_due(user));
    EXPECT_EQ(company.list("SELECT fkey, gldate FROM AP_header_table"), "1ip1 2026-03-05 | 1ip1 2027-01-05");
}

TEST_F(RecurringRun, OnlyTheMarkIsChangedWhateverTheLayoutUnlocks) {
    add_template(company, {});
    auto& form = list_due(user);
    for (controls::GridColumn& column : form.dbgrid1.columns)
        column.locked = false;
    for (const char* caption : {"due date", "vendor no", "recurring no"}) {
        EXPECT_EQ(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column(caption), "X"), controls::Refusal::none);
        EXPECT_NE(form.dbgrid1.cell(0, caption), "X");
    }
    EXPECT_EQ(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column("due"), "False"), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.cell(0, "due"), "False");
}

// The list is as long as what is in it, not as what was looked at.
TEST_F(RecurringRun, TemplatesThatAreNotDueLeaveNoRows) {
    for (int number = 1; number <= 60; ++number)
        add_template(company, {.number = number, .frequency = number <= 30 ? "monthly" : "yearly"});
    EXPECT_EQ(list_due(user).dbgrid1.array.rows(), 35);
}

// --- turns of the host

class TurnsOfTheHost : public RecurringRun {
  protected:
    void SetUp() override {
        for (int number = 1; number <= 45; ++number)
            add_template(company, {.number = number});
    }
};

TEST_F(TurnsOfTheHost, ComeEveryTwentyInvoices) {
    auto& form = list_due(user);
    std::vector<int> progress;
    user.desk.on_pump = [&] {
        if (form.Progress1.visible()) progress.push_back(form.Progress1.value());
    };
    generate(form);
    EXPECT_THAT(progress, ElementsAre(44, 88));
    EXPECT_FALSE(form.Progress1.visible());
}

// What was marked is issued, whatever becomes of the list meanwhile; a second run does not begin.
TEST_F(TurnsOfTheHost, MayListAndGenerateAgain) {
    auto& form = list_due(user);
    bool first = true;
    user.desk.on_pump = [&] {
        if (!std::exchange(first, false)) return;
        generate(form);
        EXPECT_EQ(form.press(104), controls::Refusal::none);
    };
    generate(form);
    EXPECT_THAT(user.messages(), ElementsAre("Generate invoices complete"));
    EXPECT_EQ(company.snapshot("SELECT * FROM AP_header_table").RecordCount(), 45);
}

TEST_F(TurnsOfTheHost, MayTakeTheFormDown) {
    auto& form = list_due(user);
    user.desk.on_pump = [&] { user.ap.frm_recur_inquiry_Exit(); };
    generate(form);
    EXPECT_EQ(company.snapshot("SELECT * FROM AP_header_table").RecordCount(), 45);
    EXPECT_FALSE(form.is_open());
}

}  // namespace brimley::testing
