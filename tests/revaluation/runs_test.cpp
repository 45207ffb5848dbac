// Runs: the lists of the selection, the sixteen bits that rows are counted in, the layout that decides where
// labels stand.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kernel/store/catalog.h"
#include "kernel/tables/company_tables.h"
#include "revaluation_entry.h"
#include "support/command_lines.h"

namespace brimley::testing {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class Revaluations : public ::testing::Test {
  protected:
    [[nodiscard]] const controls::DropDown& list_of(revaluation::APform_revalue& form,
                                                    const char* caption) const {
        return *form.dbgridcmd.columns.at(static_cast<std::size_t>(form.dbgridcmd.get_column(caption)))
                    .drop_down;
    }
    // "2010 -45.00 7600 -15.00": debits are positive.
    [[nodiscard]] static std::string ledger_rows(const revaluation::APform_revalue& form) {
        std::string rows;
        for (const revaluation::SummaryRow& row : form.ledger_summary.read())
            rows += fmt::format("{}{} {:.2f}", rows.empty() ? "" : " ", row.accno, row.amount());
        return rows;
    }
    [[nodiscard]] int count(const std::string& table) {
        return static_cast<int>(company.snapshot("SELECT * FROM " + table).RecordCount());
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Revaluations, CommandsAndGridsHaveTheirCaptions) {
    user.ap.showform_APform_revalue();
    auto& form = *user.ap.frm_revalue;
    EXPECT_THAT(command_lines(form.CommandBars1()),
                UnorderedElementsAre(
                    "100 &Exit Ctrl+X [File Standard]", "101 &Save Ctrl+S [File Standard Popup]",
                    "102 Page Set&up Ctrl+U [File Standard]", "103 &Preview Ctrl+P [File Standard Popup]",
                    "104 Find result [Run Standard]", "105 &New [Edit Standard Popup]",
                    "107 &Previous record [Record Standard]", "108 &Next record [Record Standard]",
                    "109 Last record [Record Standard]", "110 &Insert Line [Edit Popup]",
                    "111 &Delete Line [Edit Popup]", "113 &G/L Record [Link Standard]", "115  []",
                    "136 &Refresh record [Record Standard]", "206 A/P Revalue Help [Help Standard]",
                    "207 Account Payable System Help [Help]", "208 About Brimley Works [Help]",
                    "209 &Show Text below Icon [Option]"));
    EXPECT_EQ(form.CommandBars1().find(104)->tool_text, "Find");
    EXPECT_EQ(form.dbgridcmd.title, "NEW RATE");
    EXPECT_EQ(form.dbgrid1.title, "REVALUATION RESULT");
    EXPECT_EQ(form.dbgrid2.title, "G/L SUMMARY");
}

TEST_F(Revaluations, SelectionListsCurrenciesWithTheirNamesAndVendorsByName) {
    user.ap.showform_APform_revalue();
    auto& form = *user.ap.frm_revalue;
    const controls::DropDown& currencies = list_of(form, "currency");
    EXPECT_FALSE(currencies.fetched.has_value());
    EXPECT_THAT(currencies.captions, ElementsAre("currency", "description"));
    EXPECT_THAT(currencies.rows().at(0), ElementsAre("USD", "US dollar"));
    EXPECT_EQ(currencies.taken, 0U);
    const controls::DropDown& vendors = list_of(form, "vendor no");
    EXPECT_FALSE(vendors.fetched.has_value());
    EXPECT_THAT(vendors.captions, ElementsAre("vendor name", "vendor no"));
    EXPECT_THAT(vendors.rows().at(0), ElementsAre("Acciaio Brera S.p.A.", "V2007"));
    EXPECT_EQ(vendors.taken, 1U);
}

TEST_F(Revaluations, ItemsOfADocumentStandInTheOrderOfTheirPayments) {
    for (const int pay_item : {2, 1}) {
        add_open_item(company, "V2001", "A", pay_item * 100, 1.2);
        company.db().Execute(fmt::format(
            "UPDATE AP_transaction_table SET pay_item = '{0}' WHERE open_amount = {0}00", pay_item));
    }
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgrid1.cell(0, "pay item"), "1");
    EXPECT_EQ(form.dbgrid1.cell(1, "pay item"), "2");
}

// 0.125 is 0.12, and 0.375 is 0.38: the difference of the two, not 0.25.
TEST_F(Revaluations, DifferenceIsThatOfTheRoundedAmounts) {
    add_open_item(company, "V2001", "A", 0.3, 0.4166666666666667);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgrid1.cell(0, "original base-currency amount"), "0.12");
    EXPECT_EQ(form.dbgrid1.cell(0, "new base-currency amount"), "0.38");
    EXPECT_EQ(form.dbgrid1.cell(0, "unrealized Gain/Loss"), "-0.26");
}

TEST_F(Revaluations, ItemThatIsWorthWhatItWasHasNoPartInGainsAndLosses) {
    add_open_item(company, "V2001", "A", 100, 1.25);
    EXPECT_EQ(ledger_rows(enter_revaluation(user)), "2010 0.00");
}

// A payable account may have accounts of its own for gains and losses; the next vendor's has the company's.
TEST_F(Revaluations, GainsAndLossesGoToTheAccountsOfThePayableAccount) {
    company.db().Execute(
        "UPDATE Account_currency_table SET unrealised_gain_accno = '4000', unrealised_loss_accno = '5000' "
        "WHERE accno = '2010' AND Currency = 'EUR'");
    company.add("Account_currency_table", {{"accno", "2000"}, {"Currency", "EUR"}});
    company.db().Execute("UPDATE Vendor_table SET ap_accno = '2000' WHERE vendor_no = 'V2002'");
    for (const char* const vendor_no : {"V2001", "V2002"}) {
        add_open_item(company, vendor_no, "A", 100, 1.35);
        add_open_item(company, vendor_no, "B", 100, 1.05);
    }
    EXPECT_EQ(ledger_rows(enter_revaluation(user)),
              "2010 -10.00 2000 -10.00 4000 -10.00 7600 -10.00 5000 20.00 7610 20.00");
}

// The summary adds up what is shown, the total what is owed.
TEST_F(Revaluations, SummaryAddsUpAmountsAsTheyAreShown) {
    add_open_item(company, "V2001", "A", 0.004, 1.2);
    add_open_item(company, "V2001", "B", 0.004, 1.2);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgrid1.cell(2, "vendor name"), "Total");
    EXPECT_EQ(form.dbgrid1.cell(2, "invoice amount"), "0.01");
    EXPECT_EQ(form.dbgrid1.cell(5, "invoice amount"), "0.00");
}

// As another program may have stored it: the summary is that of the last selection row's currency alone.
TEST_F(Revaluations, SummaryOfAStoredRunHasTheItemsOfItsLastCurrency) {
    company.db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 2 WHERE doctype = 'apre'");
    company.add("AP_Revalue_header_table",
                {{"fkey", "1apre-1"}, {"docno", "R1"}, {"company", 1}, {"Description", "by hand"}});
    for (const char* const currency : {"EUR", "THB"}) {
        company.add("AP_Revalue_transaction_table", {{"fkey", "1apre-1"}, {"Currency", currency}});
        company.add("AP_Revalue_Result_table", {{"fkey", "1apre-1"},
                                                {"vendor_no", "V2001"},
                                                {"document_no", currency},
                                                {"pay_item", 1},
                                                {"Currency", currency},
                                                {"invoice_amount", currency[0] == 'E' ? 100.0 : 7.0}});
    }
    user.ap.showform_APform_revalue();
    const auto& form = *user.ap.frm_revalue;
    EXPECT_EQ(form.txtdesc.text(), "by hand");
    EXPECT_EQ(form.dbgrid1.cell(2, "invoice amount"), "107.00");
    EXPECT_EQ(form.dbgrid1.cell(5, "date"), "THB");
    EXPECT_EQ(form.dbgrid1.cell(5, "invoice amount"), "7.00");
}

// The selection has a second row without a currency, so that the second run ends early.
TEST_F(Revaluations, RunThatEndsEarlyIsSavedDownToTheLastRowOfTheRunBefore) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.run.last_result_row, 4);
    for (const char* const docno : {"D", "E", "F", "G"})
        add_open_item(company, "V2001", docno, 100, 1.2);
    EXPECT_EQ(form.dbgridcmd.edit_cell(1, form.dbgridcmd.get_column("rate"), "1.3"), controls::Refusal::none);
    EXPECT_EQ(form.press(104), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.cell(6, "document no"), "G");
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new revaluation complete"));
    EXPECT_EQ(company.list("SELECT document_no FROM AP_Revalue_Result_table ORDER BY document_no"),
              "A | B | C | D | E");
}

// A row that has lost its currency since the run is none, and those below it are stored.
TEST_F(Revaluations, SelectionRowsBelowAnEmptyOneAreStored) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    select_items(form, 1, "EUR", "1.26");
    select_items(form, 2, "EUR", "1.27");
    EXPECT_EQ(form.press(104), controls::Refusal::none);
    EXPECT_EQ(form.dbgridcmd.edit_cell(1, form.dbgridcmd.get_column("currency"), ""),
              controls::Refusal::none);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new revaluation complete"));
    EXPECT_EQ(company.list("SELECT Rate FROM AP_Revalue_transaction_table"), "1.25 | 1.27");
}

TEST_F(Revaluations, NewEntryHasNoDescription) {
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.press(105), controls::Refusal::none);
    EXPECT_EQ(form.press(105), controls::Refusal::none);
    EXPECT_EQ(form.txtdesc.text(), "");
}

TEST_F(Revaluations, EmptyDescriptionIsNotWritten) {
    add_three_items(company);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.txtdesc.type(""), controls::Refusal::none);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_EQ(company.list("SELECT Description FROM GL_header_table"), "- | -");
}

// Lines stand by account number, whatever the order of the summary.
TEST_F(Revaluations, LedgerLinesStandInTheOrderOfTheirAccounts) {
    company.add("Account_currency_table", {{"accno", "2000"}, {"Currency", "EUR"}});
    company.db().Execute("UPDATE Vendor_table SET ap_accno = '2000' WHERE vendor_no = 'V2002'");
    for (const char* const vendor_no : {"V2001", "V2002"})
        add_open_item(company, vendor_no, "A", 100, 1.2);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(ledger_rows(form), "2010 -5.00 2000 -5.00 7610 10.00");
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_EQ(company.list("SELECT lineno, accno, amount FROM GL_transaction_table WHERE fkey = '1gl-1' "
                           "ORDER BY lineno"),
              "1 2000 5 | 2 2010 5 | 3 7610 10");
}

// A ledger document has room for fifty accounts. Those of this one have no balances, which is found only when
// all of them have found room.
TEST_F(Revaluations, FiftyFirstAccountOfALedgerDocumentIsRefused) {
    constexpr int kVendors = 25;  // with a payable account and one for gains each; losses have one together
    for (int i = 0; i < kVendors; ++i) {
        const std::string number = fmt::format("{:02}", i);
        for (const char* const kind : {"A", "B"})
            company.add("Account_master_table",
                        {{"accno", kind + number}, {"debit", kind[0] == 'B'}, {"inactive", false}});
        company.add("Account_currency_table",
                    {{"accno", "A" + number}, {"Currency", "EUR"}, {"unrealised_gain_accno", "B" + number}});
        company.add("Vendor_table", {{"vendor_no", "W" + number}, {"ap_accno", "A" + number}});
        add_open_item(company, ("W" + number).c_str(), "A", 100, 1.35);
    }
    auto& fifty = enter_revaluation(user);
    EXPECT_EQ(fifty.ledger_summary.read().size(), 50U);
    EXPECT_EQ(fifty.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre(_, "Add new revaluation failed"));
    add_open_item(company, "W00", "B", 100, 1.2);
    EXPECT_EQ(fifty.press(104), controls::Refusal::none);
    EXPECT_EQ(fifty.ledger_summary.read().size(), 51U);
    EXPECT_EQ(fifty.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new revaluation failed"));
}

// Rows count on from one selection row to the next, so that 110 of them reach beyond sixteen bits.
TEST_F(Revaluations, MoreRowsThanSixteenBitsCountLeaveTheItemsOfTheSaveWhereTheyWere) {
    constexpr int kItems = 300;
    constexpr int kSelections = 110;
    add_three_items(company);
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.run.last_result_row, 4);
    for (int i = 0; i < kItems; ++i)
        add_open_item(company, "V3001", fmt::format("T{:04}", i), 1000, 0.03, "THB");
    for (int row = 0; row < kSelections; ++row)
        select_items(form, row, "THB", "0.031");
    EXPECT_EQ(form.press(104), controls::Refusal::none);
    const int first_row = (kSelections - 1) * (kItems + 1);
    EXPECT_EQ(form.dbgrid1.cell(first_row, "document no"), "T0000");
    EXPECT_EQ(form.dbgrid1.cell(first_row + kItems - 1, "document no"), "T0299");
    EXPECT_GT(first_row + kItems, 32'767);
    EXPECT_EQ(form.run.last_result_row, 4);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("Add new revaluation complete"));
    EXPECT_EQ(count("AP_Revalue_Result_table"), 0);
    EXPECT_EQ(count("AP_Revalue_transaction_table"), kSelections);
    EXPECT_EQ(count("AP_Revalue_GL_summary_table"), 2);
}

// The label and the rate go where the layout has the two columns after the name.
TEST_F(Revaluations, LabelOfTheTotalStandsInTheColumnsAfterTheName) {
    add_three_items(company);
    user.ap.showform_APform_revalue();
    {
        auto& first = *user.ap.frm_revalue;
        EXPECT_EQ(first.dbgrid1.move_column(first.dbgrid1.get_column("vendor name"), 5),
                  controls::Refusal::none);
        EXPECT_EQ(first.press(100), controls::Refusal::none);
    }
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgrid1.columns.at(5).caption, "vendor name");
    EXPECT_EQ(form.dbgrid1.cell(3, "vendor name"), "Total");
    EXPECT_EQ(form.dbgrid1.array.get(3, 6), "Revalue EUR at rate");
    // The rate has given way to a sum.
    EXPECT_EQ(form.dbgrid1.cell(3, "date"), "");
    EXPECT_EQ(form.dbgrid1.columns.at(7).caption, "invoice amount");
    EXPECT_EQ(form.dbgrid1.array.get(3, 7), "1,100.00");
}

// Of the selection the name alone is locked, whatever the layout says.
TEST_F(Revaluations, NameOfTheVendorIsTheOneLockedColumnOfTheSelection) {
    company.db().Execute(
        "UPDATE Grid_property SET Locked = FALSE WHERE form_name = 'APform_revalue' AND Caption = 'vendor "
        "name'");
    company.db().Execute(
        "UPDATE Grid_property SET Locked = TRUE WHERE form_name = 'APform_revalue' AND Caption = 'rate'");
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.dbgridcmd.cell(0, "rate"), "1.25");
    EXPECT_EQ(form.dbgridcmd.edit_cell(0, form.dbgridcmd.get_column("vendor name"), "Anybody"),
              controls::Refusal::locked);
}

// A date that can be stored and not typed is reported for each item, and the item is stored without it.
TEST_F(Revaluations, ItemOfAYearThatNobodyCanTypeIsStoredWithoutItsDate) {
    add_open_item(company, "V2001", "OLD", 100, 1.2, "EUR", store::DateTime::from_ymd(1985, 6, 1).value());
    auto& form = enter_revaluation(user);
    EXPECT_EQ(form.press(101), controls::Refusal::none);
    EXPECT_THAT(user.messages(), ElementsAre("year is invalid (1985)", "Add new revaluation complete"));
    EXPECT_EQ(company.list("SELECT document_no, document_date FROM AP_Revalue_Result_table"), "OLD -");
}

TEST(RevaluationQueries, OpenItemsOfACurrencyAndStoredRunsAreLookedUp) {
    const auto has_index = [](const char* table, const std::vector<std::string>& fields) {
        return std::ranges::any_of(kernel::company_tables().find(table)->indexes,
                                   [&](const store::Index& index) { return index.fields == fields; });
    };
    EXPECT_TRUE(has_index("AP_transaction_table", {"Currency", "paid"}));
    for (const char* const table : {"AP_Revalue_header_table", "AP_Revalue_transaction_table",
                                    "AP_Revalue_Result_table", "AP_Revalue_GL_summary_table"})
        EXPECT_TRUE(has_index(table, {"fkey"})) << table;
}

}  // namespace brimley::testing
