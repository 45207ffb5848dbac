// Marks beside what was entered, and where the cursor goes after a message.
#include "marks/marks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "marks/field_of_message.h"
#include "payments/invoice_payment/apform_payment.h"
#include "support/sample_host.h"

namespace brimley::testing {
namespace {

using controls::Refusal;
using marks::Marks;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MarksOfInvoice : public ::testing::Test {
  protected:
    MarksOfInvoice() {
        desk.ap.showform_APform_invoice();
        marks.emplace(form());
        EXPECT_EQ(form().press(105), Refusal::none);
        EXPECT_EQ(form().cmbdoctype.type("Invoice"), Refusal::none);
        EXPECT_EQ(form().cmbvendor.type("V1001"), Refusal::none);
    }
    invoices::APform_invoice& form() { return *desk.ap.frm_invoice; }
    // "cmbvendor: There is no vendor X"; of a cell "dbgrid1 0 purchase account: ...".
    std::vector<std::string> seen() {
        std::vector<std::string> lines;
        for (const marks::Mark& mark : marks->look()) {
            std::string line = mark.control->name();
            if (const auto* grid = dynamic_cast<const controls::Grid*>(mark.control))
                line += " " + std::to_string(mark.row) + " " +
                        grid->columns.at(static_cast<std::size_t>(mark.column)).caption;
            lines.push_back(line + ": " + mark.text);
        }
        return lines;
    }
    void type(controls::TextField& field, const char* text) { EXPECT_EQ(field.type(text), Refusal::none); }
    void save_invoice(const char* number) {
        cell(0, "purchase account", "5000");
        cell(0, "gross amount", "100.00");
        type(form().txtinvno, number);
        EXPECT_EQ(form().cmbterm.type("Net 30 days"), Refusal::none);
        EXPECT_EQ(form().press(101), Refusal::none);
        EXPECT_THAT(desk.messages(), ElementsAre("Add new Invoice complete"));
        EXPECT_EQ(form().mode(), frame::Mode::read);
    }
    void cell(int row, const char* caption, const char* text) { edit_line_cell(form(), row, caption, text); }

    CompanyCopy company{sample_original()};
    DeskOfUser desk{company.open()};
    std::optional<Marks> marks;
};

TEST_F(MarksOfInvoice, WhatIsInOrderIsNotMarked) {
    cell(0, "purchase account", "5000");
    cell(0, "tax code", "GST5");
    cell(0, "gross amount", "105.00");
    type(form().txtinvno, "A-1");
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(MarksOfInvoice, VendorThatDoesNotExist) {
    EXPECT_EQ(form().cmbvendor.type("V9"), Refusal::none);
    EXPECT_THAT(seen(), Contains("cmbvendor: There is no vendor V9"));
    EXPECT_EQ(form().cmbvendor.type("V1001"), Refusal::none);
    EXPECT_THAT(seen(), IsEmpty());
}

// A quote in the text ends the query, so that nothing is known of this vendor.
TEST_F(MarksOfInvoice, VendorThatCannotBeReadIsNotMarked) {
    EXPECT_EQ(form().cmbvendor.type("O'1"), Refusal::none);
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(MarksOfInvoice, NameOfAnotherVendor) {
    form().cmbvendor_name.set("Alder Office Supply");
    EXPECT_THAT(seen(), ElementsAre("cmbvendor_name: This is the name of V1011; V1001 is Baywater Coffee "
                                    "Traders"));
    form().cmbvendor_name.set("Somebody");
    EXPECT_THAT(seen(), ElementsAre("cmbvendor_name: V1001 is Baywater Coffee Traders"));
}

TEST_F(MarksOfInvoice, InvoiceNumberThatThisVendorHasAlready) {
    save_invoice("A-1");
    EXPECT_THAT(seen(), IsEmpty());
    EXPECT_EQ(form().press(105), Refusal::none);
    EXPECT_EQ(form().cmbvendor.type("V1001"), Refusal::none);
    type(form().txtinvno, "A-1");
    EXPECT_THAT(seen(), ElementsAre("txtinvno: This vendor already has A-1: IP-26-00001"));
    EXPECT_EQ(form().cmbvendor.type("V1002"), Refusal::none);
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(MarksOfInvoice, DocumentThatIsEditedHasItsOwnNumber) {
    save_invoice("A-1");
    EXPECT_EQ(form().press(106), Refusal::none);
    EXPECT_EQ(form().mode(), frame::Mode::edit);
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(MarksOfInvoice, AccountThatDoesNotExistOrIsInactive) {
    cell(0, "purchase account", "9999");
    cell(0, "gross amount", "100.00");
    cell(1, "purchase account", "1990");
    cell(1, "gross amount", "10.00");
    EXPECT_THAT(seen(), ElementsAre("dbgrid1 0 purchase account: There is no account 9999",
                                    "dbgrid1 1 purchase account: Account 1990 is inactive"));
}

TEST_F(MarksOfInvoice, NoTaxUnderACodeWithARate) {
    cell(0, "purchase account", "5000");
    cell(0, "gross amount", "100.00");
    cell(0, "tax code", "NOTAX");
    EXPECT_THAT(seen(), IsEmpty());
    form().dbgrid1.set_cell(0, "tax code", "STACK");
    EXPECT_THAT(seen(),
                ElementsAre("dbgrid1 0 tax amount: STACK has a rate of 12 %, but there is no tax: type "
                            "the amount again to compute it"));
}

TEST_F(MarksOfInvoice, DateThatIsNone) {
    type(form().txtduedate, "31/02/2026");
    EXPECT_THAT(seen(), ElementsAre("txtduedate: 31/02/2026 is not a date (dd/mm/yyyy)"));
}

TEST_F(MarksOfInvoice, NothingIsMarkedOnAStoredDocument) {
    save_invoice("A-1");
    form().cmbvendor.set("V9");
    EXPECT_THAT(seen(), IsEmpty());
}

// What was read once is not read after each act.
TEST_F(MarksOfInvoice, EachThingIsReadOnceAnEntry) {
    const char* const inactive = "dbgrid1 1 purchase account: Account 1990 is inactive";
    const auto enter_inactive = [&] {
        cell(1, "purchase account", "1990");
        cell(1, "gross amount", "10.00");
    };
    enter_inactive();
    EXPECT_THAT(seen(), Contains(inactive));
    company.db().Execute("UPDATE Account_master_table SET inactive = FALSE WHERE accno = '1990'");
    EXPECT_THAT(seen(), Contains(inactive));
    save_invoice("A-1");
    EXPECT_THAT(seen(), IsEmpty());
    EXPECT_EQ(form().press(105), Refusal::none);
    enter_inactive();
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(MarksOfInvoice, NothingIsReadWithinATransaction) {
    EXPECT_THAT(seen(), IsEmpty());
    desk.ap.dbe->BeginTrans();
    EXPECT_EQ(form().cmbvendor.type("V9"), Refusal::none);
    EXPECT_THAT(seen(), IsEmpty());
    desk.ap.dbe->Rollback();
    EXPECT_THAT(seen(), Contains("cmbvendor: There is no vendor V9"));
}

// --- where the cursor goes

class FieldOfMessage : public MarksOfInvoice {
  protected:
    // The field that the last message speaks of; "none".
    std::string field() {
        const auto messages = desk.messages();
        EXPECT_FALSE(messages.empty());
        return messages.empty() ? "none" : field_of(form(), messages.back());
    }
    static std::string field_of(frame::Form& form, const std::string& message) {
        const marks::Place place = marks::field_of_message(form, message);
        if (place.control == nullptr) return "none";
        std::string name = place.control->name();
        if (place.row >= 0) name += " " + std::to_string(place.row) + " " + std::to_string(place.column);
        return name;
    }
    std::string line(int row, const char* caption) {
        return "dbgrid1 " + std::to_string(row) + " " + std::to_string(form().dbgrid1.get_column(caption));
    }
};

TEST_F(FieldOfMessage, EachMessageOfTheInvoiceNamesItsField) {
    const auto save = [&] {
        EXPECT_EQ(form().press(101), Refusal::none);
        return field();
    };
    EXPECT_EQ(save(), line(0, "gross amount"));  // "No data input"
    cell(0, "gross amount", "100.00");
    EXPECT_EQ(form().cmbterm.type(""), Refusal::none);
    EXPECT_EQ(save(), "cmbterm");
    EXPECT_EQ(form().cmbterm.type("Net 30 days"), Refusal::none);
    EXPECT_EQ(form().cmbperiod.type(""), Refusal::none);
    EXPECT_EQ(save(), "cmbperiod");
    EXPECT_EQ(form().cmbperiod.type("3"), Refusal::none);
    EXPECT_EQ(form().cmbfyear.type(""), Refusal::none);
    EXPECT_EQ(save(), "cmbfyear");
    EXPECT_EQ(form().cmbfyear.type("2026"), Refusal::none);
    EXPECT_EQ(form().cmbcurrency.type(""), Refusal::none);
    EXPECT_EQ(save(), "cmbcurrency");
    EXPECT_EQ(form().cmbcurrency.type("EUR"), Refusal::none);
    EXPECT_EQ(form().cmbexrate.type("x"), Refusal::none);
    EXPECT_EQ(save(), "cmbexrate");
}

TEST_F(FieldOfMessage, LineWithoutItsAccountIsTheOneThatIsMeant) {
    cell(0, "gross amount", "100.00");
    cell(0, "purchase account", "5000");
    cell(1, "gross amount", "50.00");
    EXPECT_EQ(field_of(form(), "Please specify purchase account"), line(1, "purchase account"));
}

TEST_F(FieldOfMessage, DateThatIsNoneIsTheOneThatIsMeant) {
    type(form().txtdiscdate, "31/02/2026");
    EXPECT_EQ(field_of(form(), "Date is invalid (31/02/2026)"), "txtdiscdate");
}

TEST_F(FieldOfMessage, OtherMessagesSpeakOfNoField) {
    EXPECT_EQ(field_of(form(), "Add new Invoice failed"), "none");
    EXPECT_EQ(field_of(form(), ""), "none");
}

TEST_F(FieldOfMessage, FieldThatIsLockedIsLeftAlone) {
    EXPECT_EQ(field_of(form(), "please specify exchange rate"), "none");  // in dollars there is none
}

TEST_F(FieldOfMessage, PaymentsHaveTheirOwn) {
    desk.ap.showform_APform_payment();
    auto& payment = *desk.ap.frm_payment;
    EXPECT_EQ(payment.press(105), Refusal::none);
    EXPECT_EQ(field_of(payment, "please specify vendor"), "cmbvendor");
    EXPECT_EQ(field_of(payment, "please specify pay by"), "cmbpayby");
    EXPECT_EQ(field_of(payment, "please specify bank code"), "cmbbank");
    EXPECT_EQ(field_of(payment, "payment amount is invalid"), "txtpayment");
}

}  // namespace
}  // namespace brimley::testing
