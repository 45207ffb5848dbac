// What is told of an act that was not stored: the form's own message, and why.
#include <gmock/gmock.h>

#include <QStatusBar>

#include "desktop/host_window.h"
#include "invoices/apform_invoice.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class FailedActs : public Host {
  protected:
    void SetUp() override {
        Host::SetUp();
        window->desk().on_box = [this](QMessageBox& box) {
            boxes.push_back(box.text().toStdString());
            details.push_back(box.detailedText().toStdString());
            answer(box);
        };
    }
    std::string status() { return window->statusBar()->currentMessage().toStdString(); }
    void press(int id) { window->desk().windows().back()->press(id); }
    void save_invoice_on(const char* account) {
        ASSERT_TRUE(window->show_form("APform_invoice"));
        enter(*window->ap()->frm_invoice, {.lines = {{account, "", "gross amount", "75.00"}}});
        press(101);
    }
    void execute(const char* sql) { second_user().database->Execute(sql); }
    store::OpenCompany second_user() { return store::open_company(path, kernel::company_tables()); }

    std::vector<std::string> details;
};

TEST_F(FailedActs, DetailsAndStatusLineTellWhatTheLedgerSaid) {
    save_invoice_on("9999");
    EXPECT_THAT(boxes, ElementsAre("Add new Invoice failed"));
    EXPECT_THAT(details, ElementsAre("Account 9999 does not exist"));
    EXPECT_EQ(status(), "Not stored: Account 9999 does not exist");
}

// The message of the ledger has gone by when the form's own is read.
TEST_F(FailedActs, DetailsRepeatWhatWasTold) {
    execute("DELETE * FROM Balance_period_table WHERE accno = '5000'");
    save_invoice_on("5000");
    EXPECT_THAT(boxes, ElementsAre("No account 5000 in fiscal year 2026", "Add new Invoice failed"));
    EXPECT_THAT(details, ElementsAre("", "No account 5000 in fiscal year 2026"));
}

TEST_F(FailedActs, ActThatHasNoMessageIsToldInTheStatusLine) {
    save_invoice();
    boxes.clear();
    execute("DELETE * FROM GL_header_table");
    wanted_button = "Yes";
    press(1008);
    EXPECT_THAT(boxes, ElementsAre("Are you sure to void the invoice?"));
    EXPECT_THAT(status(), ::testing::StartsWith("Not stored: The GL document \""));
}

TEST_F(FailedActs, ReasonIsGoneWhenTheActHasBeenDone) {
    save_invoice_on("9999");
    ASSERT_NE(status(), "");
    auto& lines = window->ap()->frm_invoice->dbgrid1;
    EXPECT_EQ(lines.edit_cell(0, lines.get_column("purchase account"), "5000"), controls::Refusal::none);
    press(101);
    EXPECT_EQ(boxes.back(), "Add new Invoice complete");
    EXPECT_EQ(status(), "");
}

TEST_F(FailedActs, ReasonsOfAnEarlierActAreNotToldAgain) {
    save_invoice_on("9999");
    press(105);
    save_invoice_on("9998");
    EXPECT_EQ(details.back(), "Account 9998 does not exist");
}

TEST_F(FailedActs, WhatAFormDoesNotAllowIsNoFailure) {
    ASSERT_TRUE(window->show_form("APform_invoice"));
    press(105);
    press(101);
    EXPECT_THAT(boxes, ElementsAre("No data input"));
    EXPECT_THAT(details, ElementsAre(""));
    EXPECT_EQ(status(), "");
}

}  // namespace brimley::testing
