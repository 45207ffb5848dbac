// The right to write, taken back by another desk while a form stands open: every act that writes documents
// asks for it again, and refuses as a form does for those who never had it (decision 0021).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "invoices/commands.h"
#include "payments/kinds_of_payments.h"
#include "payments/payment_entry.h"
#include "payments/void_check/apform_void_check.h"
#include "revaluation/revaluation_entry.h"
#include "support/all_tables.h"
#include "support/recurring_templates.h"
#include "support/template_entry.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::IsEmpty;

namespace {

struct WritingAct {
    std::string name;
    // All that comes before the act; the form that it is carried out on.
    std::function<frame::Form&(CompanyCopy& company, DeskOfUser& user)> prepare;
    int command;
};

void press(frame::Form& form, int command) { EXPECT_EQ(form.press(command), Refusal::none); }

// --- invoices ---
invoices::APform_invoice& enter_invoice(CompanyCopy& /*company*/, DeskOfUser& user) {
    user.ap.showform_APform_invoice();
    enter(*user.ap.frm_invoice, {.lines = {{"5000", "GST5", "taxable amount", "100.00"}}});
    return *user.ap.frm_invoice;
}

invoices::APform_invoice& save_invoice_of(CompanyCopy& company, DeskOfUser& user) {
    auto& form = enter_invoice(company, user);
    press(form, 101);
    return form;
}

frame::Form& edit_invoice(CompanyCopy& company, DeskOfUser& user) {
    auto& form = save_invoice_of(company, user);
    press(form, 106);
    edit_line_cell(form, 0, "taxable amount", "200.00");
    return form;
}

frame::Form& hold_invoice(CompanyCopy& company, DeskOfUser& user) {
    auto& form = save_invoice_of(company, user);
    user.desk.answers = {true};
    press(form, invoices::kHoldInvoice);
    return form;
}

frame::Form& enter_template_of(CompanyCopy& /*company*/, DeskOfUser& user) {
    user.ap.showform_APform_invoice();
    enter_template(*user.ap.frm_invoice);
    return *user.ap.frm_invoice;
}

frame::Form& change_font(CompanyCopy& company, DeskOfUser& user) {
    auto& form = save_invoice_of(company, user);
    press(form, 403);
    return form;
}

frame::Form& list_due_template(CompanyCopy& company, DeskOfUser& user) {
    add_template(company, {});
    return list_due(user);
}

// --- payments ---
payments::APform_payment& enter_invoice_payment(CompanyCopy& company, DeskOfUser& user) {
    save_invoice_of(company, user);
    user.ap.showform_APform_payment();
    auto& form = *user.ap.frm_payment;
    begin_payment(form, "V1001");
    edit_item_cell(form, 0, "pay amount", "70.00");
    pay_total(form);
    EXPECT_EQ(form.cmbpayby.type("Check"), Refusal::none);
    EXPECT_EQ(form.cmbbank.type("MAIN"), Refusal::none);
    EXPECT_EQ(form.txtcheck.type("901"), Refusal::none);
    EXPECT_EQ(form.txtcheckdate.type("16/03/2026"), Refusal::none);
    return form;
}

payments::APform_payment& save_invoice_payment(CompanyCopy& company, DeskOfUser& user) {
    auto& form = enter_invoice_payment(company, user);
    press(form, 101);
    return form;
}

frame::Form& edit_invoice_payment(CompanyCopy& company, DeskOfUser& user) {
    auto& form = save_invoice_payment(company, user);
    press(form, 106);
    EXPECT_EQ(form.txtcheck.type("902"), Refusal::none);
    return form;
}

frame::Form& pick_check(CompanyCopy& company, DeskOfUser& user) {
    save_invoice_payment(company, user);
    user.ap.showform_APform_void_check();
    auto& form = *user.ap.frm_void_check;
    press(form, 104);
    EXPECT_EQ(form.dbgrid1.double_click(0), Refusal::none);
    return form;
}

frame::Form& find_items_to_revalue(CompanyCopy& company, DeskOfUser& user) {
    add_three_items(company);
    return enter_revaluation(user);
}

void add_acts_of_kind(std::vector<WritingAct>& acts, const KindOfPayment& kind) {
    const auto save = [kind](CompanyCopy& /*company*/, DeskOfUser& user) -> frame::Form& {
        auto& form = kind.enter(user);
        press(form, 101);
        return form;
    };
    acts.push_back(
        {kind.name + std::string("Save"),
         [kind](CompanyCopy& /*company*/, DeskOfUser& user) -> frame::Form& { return kind.enter(user); },
         101});
    acts.push_back({kind.name + std::string("Void"), save, frame::command::kVoidPayment});
    if (kind.change == nullptr) return;
    acts.push_back({kind.name + std::string("Edit"),
                    [kind, save](CompanyCopy& company, DeskOfUser& user) -> frame::Form& {
                        auto& form = save(company, user);
                        press(form, 106);
                        kind.change(user);
                        return form;
                    },
                    101});
}

std::vector<WritingAct> writing_acts() {
    std::vector<WritingAct> acts{
        {"InvoiceSave", enter_invoice, 101},
        {"InvoiceEdit", edit_invoice, 101},
        {"InvoiceVoid", save_invoice_of, invoices::kVoidInvoice},
        {"InvoiceHold", save_invoice_of, invoices::kHoldInvoice},
        {"InvoiceRelease", hold_invoice, invoices::kReleaseHold},
        {"TemplateSave", enter_template_of, 101},
        {"FontSave", change_font, frame::command::kSaveFont},
        {"RecurringRun", list_due_template, invoices::kGenerate},
        {"PaymentSave", enter_invoice_payment, 101},
        {"PaymentEdit", edit_invoice_payment, 101},
        {"PaymentVoid", save_invoice_payment, frame::command::kVoidPayment},
        {"CheckVoid", pick_check, 101},
        {"RevaluationSave", find_items_to_revalue, 101},
    };
    for (const KindOfPayment& kind : kinds_of_payments())
        add_acts_of_kind(acts, kind);
    return acts;
}

}  // namespace

class TakenRight : public ::testing::TestWithParam<WritingAct> {
  protected:
    // By the other desk, which has it stored before the act begins.
    void set_right(const frame::Form& form, bool may_update) {
        others_company.database->Execute(
            fmt::format("UPDATE User_right_table SET Update = {} WHERE form = '{}' AND userid = 'anna'",
                        may_update ? "TRUE" : "FALSE", form.identity().class_name));
    }
    // Every question is answered with Yes.
    Refusal carry_out(frame::Form& form) {
        anna.desk.answers = {true};
        return form.press(GetParam().command);
    }

    CompanyCopy company{sample_original()};
    store::OpenCompany others_company = company.second_user();
    DeskOfUser anna{company.open()};
};

TEST_P(TakenRight, RefusesTheActWithoutAMessageUntilItIsGivenAgain) {
    frame::Form& form = GetParam().prepare(company, anna);
    const frame::Mode mode = form.mode();
    static_cast<void>(anna.messages());

    set_right(form, false);
    const AllTables before = all_tables(company.db());
    EXPECT_EQ(carry_out(form), Refusal::disabled);
    EXPECT_THAT(anna.messages(), IsEmpty());
    EXPECT_EQ(difference(before, all_tables(company.db())), "");
    EXPECT_EQ(form.mode(), mode);

    // What was typed stands there still.
    set_right(form, true);
    const AllTables given_again = all_tables(company.db());
    EXPECT_EQ(carry_out(form), Refusal::none);
    EXPECT_NE(difference(given_again, all_tables(company.db())), "");
}

INSTANTIATE_TEST_SUITE_P(EachAct, TakenRight, ::testing::ValuesIn(writing_acts()),
                         [](const auto& act) { return act.param.name; });

}  // namespace brimley::testing
