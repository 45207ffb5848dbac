#include "saver.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <numeric>
#include <regex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "invoices/recurring_run/apreport_recur_inquiry.h"
#include "kernel/money.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/misc/apform_misc_payment.h"
#include "payments/prepayment/apform_prepayment.h"
#include "payments/void_check/apform_void_check.h"
#include "revaluation/apform_revalue.h"
#include "support/template_entry.h"

namespace brimley::testing {

using controls::Refusal;
using frame::command::kEditMode;
using frame::command::kNew;
using frame::command::kSave;

namespace {

constexpr std::chrono::milliseconds kWhileTheServerIsAway{20};
constexpr int kFind = 104;
constexpr int kVoidPayment = 133;
constexpr int kVoidInvoice = 1008;

const std::vector<const char*> kVendors{"V1001", "V1002", "V1003", "V1006"};

}  // namespace

void WaitingDesk::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
    RecordingDesk::wait(duration);
}

Saver::Saver(const store::OpenCompany& company, const std::string& user, std::uint64_t seed,
             std::function<void(const std::string& line)> tell)
    : chance_(seed), tell_(std::move(tell)) {
    ap_.dbe = company.workspace;
    ap_.abcdb = company.database;
    ap_.BASE_CURRENCY = "USD";
    ap_.BRIMLEY_USER = user;
    ap_.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    ap_.BRIMLEY_NO_PERIODS = "12";
}

bool Saver::opens_what_is_missing() {
    if (!templates_) {
        ap_.showform_APform_invoice();
        templates_ = std::exchange(ap_.frm_invoice, nullptr);
    }
    if (!ap_.frm_invoice) ap_.showform_APform_invoice();
    if (!ap_.frm_recur_inquiry) ap_.showform_APreport_recur_inquiry();
    if (!ap_.frm_payment) ap_.showform_APform_payment();
    if (!ap_.frm_misc) ap_.showform_APform_misc();
    if (!ap_.frm_prepayment) ap_.showform_APform_prepayment();
    if (!ap_.frm_creditcard) ap_.showform_APform_creditcard_payment();
    if (!ap_.frm_void_check) ap_.showform_APform_void_check();
    if (!ap_.frm_revalue) ap_.showform_APform_revalue();
    return templates_ && ap_.frm_invoice && ap_.frm_recur_inquiry && ap_.frm_payment && ap_.frm_misc &&
           ap_.frm_prepayment && ap_.frm_creditcard && ap_.frm_void_check && ap_.frm_revalue;
}

const std::vector<Saver::Act>& Saver::acts() {
    static const std::vector<Act> kActs{
        {"invoice", 10, &Saver::enter_invoice, "Add new Invoice failed"},
        {"payment", 6, &Saver::pay_invoices,
         "(.*, pay item .*, has changed since it was listed. )?Add new payment failed"},
        // One that is refused because of what another desk holds is not told of.
        {"void-invoice", 2, &Saver::void_invoice, "|Invoice was (void|paid|partially paid)."},
        {"void-payment", 2, &Saver::void_payment, ".* was void.|(.* was void. )?Void Payment failed"},
        {"void-check", 3, &Saver::void_check, "Void (check|Payment|Prepayment) failed"},
        {"misc-payment", 4, &Saver::pay_expenses, "Add new payment failed"},
        {"void-misc-payment", 1, &Saver::void_expenses, ".* was void.|(.* was void. )?Void Payment failed"},
        {"prepayment", 2, &Saver::prepay, "Add new prepayment failed"},
        {"edit-prepayment", 1, &Saver::edit_prepayment,
         ".* was void|((.* was void|.* has changed since it was shown.) )?Update failed.|"
         "(Prepayment was applied to invoiced.)( Update failed.)?"},
        {"void-prepayment", 1, &Saver::void_prepayment,
         ".* was void.|Prepayment was applied to invoiced.|"
         "((.* was void.|Prepayment was applied to invoiced.|.* has changed since it was shown.) )?"
         "Void Prepayment failed"},
        {"card-payment", 2, &Saver::pay_card, "Add new payment failed"},
        {"foreign-invoice", 2, &Saver::enter_foreign_invoice, "Add new Invoice failed"},
        {"revaluation", 2, &Saver::revalue, "Add new revaluation failed"},
        // A template that is refused because of a held counter is not told of.
        {"generation", 4, &Saver::issue_templates, "|Generate invoice from on due recurring-invoice failed"},
    };
    return kActs;
}

bool Saver::may_be_told(const std::string& refusal) {
    return std::any_of(acts().begin(), acts().end(),
                       [&](const Act& act) { return std::regex_match(refusal, std::regex(act.refusals)); });
}

void Saver::act(const std::string& name) {
    // As a host does before an act.
    if (!ap_.dbe->reconnect() || !opens_what_is_missing()) {
        desk_.messages.clear();
        return desk_.wait(kWhileTheServerIsAway);
    }
    const auto& table = acts();
    if (!name.empty()) {
        const auto named =
            std::find_if(table.begin(), table.end(), [&](const Act& act) { return name == act.name; });
        if (named == table.end()) throw std::invalid_argument("no act " + name);
        (this->*named->run)();
        return;
    }
    int at = below(std::accumulate(table.begin(), table.end(), 0,
                                   [](int sum, const Act& each) { return sum + each.weight; }));
    const Act* chosen = table.data();
    while (at >= chosen->weight)
        at -= (chosen++)->weight;
    (this->*chosen->run)();
}

void Saver::press(frame::Form& form, int id) {
    desk_.answers = {true};
    static_cast<void>(form.press(id));
    desk_.answers.clear();
}

void Saver::tell_outcome(const char* what, const std::string& docno, const std::string& message) {
    const auto messages = desk_.take_messages();
    const bool stored = std::find(messages.begin(), messages.end(), message) != messages.end();
    tell_(stored ? fmt::format("{} {}", what, docno) : fmt::format("refused {}", fmt::join(messages, " ")));
}

void Saver::enter_invoice() {
    auto& form = *ap_.frm_invoice;
    if (form.mode() == frame::Mode::read) {
        EnteredInvoice invoice;
        invoice.vendor = kVendors[static_cast<std::size_t>(below(static_cast<int>(kVendors.size())))];
        const std::string amount = fmt::format("{}.{:02}", 1 + below(900), below(100));
        for (int line = 0; line <= below(3); ++line)
            invoice.lines.push_back({line == 1 ? "5900" : "5000", "STACK", "taxable amount", amount.c_str()});
        enter(form, invoice);
    }
    press(form, kSave);
    tell_outcome("invoice", form.txtdocno.text(), "Add new Invoice complete");
}

// Of a vendor whom nobody pays, so that something is open in its currency.
void Saver::enter_foreign_invoice() {
    auto& form = *ap_.frm_invoice;
    if (form.mode() == frame::Mode::read) {
        EnteredInvoice invoice;
        invoice.vendor = "V2001";
        invoice.currency = "EUR";
        invoice.rate = "1.25";
        const std::string amount = fmt::format("{}.{:02}", 1 + below(900), below(100));
        invoice.lines.push_back({"5000", "NOTAX", "taxable amount", amount.c_str()});
        enter(form, invoice);
    }
    press(form, kSave);
    tell_outcome("invoice", form.txtdocno.text(), "Add new Invoice complete");
}

// Nothing is posted while nothing is open.
void Saver::revalue() {
    auto& form = *ap_.frm_revalue;
    if (form.mode() == frame::Mode::read) static_cast<void>(form.press(kNew));
    const std::string rate = fmt::format("1.{:04}", below(10000));
    for (const auto& [caption, text] :
         {std::pair("currency", "EUR"), std::pair("rate", rate.c_str()), std::pair("every vendor", "True")})
        static_cast<void>(form.dbgridcmd.edit_cell(0, form.dbgridcmd.get_column(caption), text));
    static_cast<void>(form.press(kFind));
    if (form.dbgrid2.array.used_rows() > 0) {
        desk_.messages.clear();
        press(form, kSave);
        tell_outcome("revaluation", form.txtdocno.text(), "Add new revaluation complete");
    }
    desk_.messages.clear();  // where there was nothing
}

void Saver::issue_templates() {
    auto& form = *ap_.frm_recur_inquiry;
    static_cast<void>(form.press(invoices::kListDue));
    const std::string recurno = form.dbgrid1.cell(0, "recurring no");
    if (recurno.empty()) return enter_new_template();
    press(form, invoices::kGenerate);
    tell_outcome("generation", recurno, "Generate invoices complete");
}

void Saver::enter_new_template() {
    if (templates_->mode() == frame::Mode::read) {
        enter_template(*templates_);
        static_cast<void>(templates_->txteffectdate.type("01/01/2026"));
    }
    press(*templates_, kSave);
    tell_outcome("template", templates_->txtdocno.text(), "Add Recurring invoice complete");
}

void Saver::choose_way_of_paying(payments::PaymentForm& form) {
    const bool by_check = below(2) == 0;
    static_cast<void>(form.cmbpayby.type(by_check ? "Check" : "Cash"));
    if (!by_check) {
        static_cast<void>(form.cmbcash.type("1000"));
        return;
    }
    static_cast<void>(form.cmbbank.type("MAIN"));
    static_cast<void>(form.txtcheck.type(std::to_string(1 + below(9999))));
    static_cast<void>(form.txtcheckdate.type(form.txtpaydate.text()));
}

void Saver::pay_invoices() {
    auto& form = *ap_.frm_payment;
    if (form.mode() == frame::Mode::read) static_cast<void>(form.press(kNew));
    // Listed afresh, also after a save that was refused: another desk may have paid the items.
    static_cast<void>(
        form.cmbvendor.type(kVendors[static_cast<std::size_t>(below(static_cast<int>(kVendors.size())))]));
    choose_way_of_paying(form);
    const int items = std::min(form.dbgrid1.array.used_rows(), 1 + below(4));
    // A prepayment in cash never balances when it is applied.
    for (int row = 0; row < items; ++row)
        if (form.dbgrid1.cell(row, "document type") != "pp")
            static_cast<void>(form.dbgrid1.visit_cell(row, form.dbgrid1.get_column("pay amount")));
    if (kernel::money_value(form.txttotal.text()) == 0) return;
    static_cast<void>(form.txtpayment.type(form.txttotal.text()));
    press(form, kSave);
    tell_outcome("payment", form.txtdocno.text(),
                 fmt::format("Add new Payment {} complete", form.txtdocno.text()));
}

void Saver::void_invoice() {
    auto& form = *ap_.frm_invoice;
    if (form.mode() != frame::Mode::read || form.txtfkey.empty()) return;
    const std::string docno = form.txtdocno.text();
    press(form, kVoidInvoice);
    tell_outcome("void-invoice", docno, fmt::format("Invoice {} is void.", docno));
}

void Saver::void_shown(payments::PaymentForm& form, const char* what, const char* prefix) {
    if (form.mode() != frame::Mode::read || form.txtfkey.empty()) return;
    const std::string docno = form.txtdocno.text();
    press(form, kVoidPayment);
    tell_outcome(what, docno, prefix + docno + " is void.");
}

void Saver::void_payment() { void_shown(*ap_.frm_payment, "void-payment", ""); }

// Any of those that this desk lists now; another desk may void it before.
void Saver::void_check() {
    auto& form = *ap_.frm_void_check;
    static_cast<void>(form.press(kFind));
    const int rows = form.dbgrid1.array.used_rows();
    if (rows == 0) return;
    static_cast<void>(form.dbgrid1.double_click(below(rows)));
    const std::string docno = form.txtpaymentno.text();
    const std::string check = form.txtcheck.text();
    press(form, kSave);
    tell_outcome("void-check", docno, fmt::format("Check {} is void.", check));
}

void Saver::pay_expenses() {
    auto& form = *ap_.frm_misc;
    if (form.mode() == frame::Mode::read) {
        static_cast<void>(form.press(kNew));
        static_cast<void>(form.txtremit.type("Harbour Stationers"));
        choose_way_of_paying(form);
        const std::string amount = fmt::format("{}.{:02}", 1 + below(90), below(100));
        for (int row = 0; row <= below(3); ++row)
            for (const auto& [caption, text] :
                 {std::pair("tax code", "STACK"), std::pair("amount", amount.c_str()),
                  std::pair("account", row == 1 ? "5900" : "6300")})
                static_cast<void>(form.dbgrid1.edit_cell(row, form.dbgrid1.get_column(caption), text));
    }
    press(form, kSave);
    tell_outcome("misc-payment", form.txtdocno.text(),
                 fmt::format("Add new Payment {} complete", form.txtdocno.text()));
}

void Saver::void_expenses() { void_shown(*ap_.frm_misc, "void-misc-payment", "Payment "); }

void Saver::prepay() {
    auto& form = *ap_.frm_prepayment;
    if (form.mode() == frame::Mode::read) static_cast<void>(form.press(kNew));
    static_cast<void>(
        form.cmbvendor.type(kVendors[static_cast<std::size_t>(below(static_cast<int>(kVendors.size())))]));
    static_cast<void>(form.txtprepay.type(fmt::format("{}.50", 1 + below(300))));
    static_cast<void>(form.cmbpono.type(below(2) == 0 ? " " : "PO-26-00031"));
    choose_way_of_paying(form);
    press(form, kSave);
    tell_outcome("payment", form.txtdocno.text(),
                 fmt::format("Add new Prepayment {} complete", form.txtdocno.text()));
}

void Saver::edit_prepayment() {
    auto& form = *ap_.frm_prepayment;
    if (form.mode() == frame::Mode::new_entry || form.txtfkey.empty()) return;
    if (form.mode() == frame::Mode::read) press(form, kEditMode);
    static_cast<void>(form.txtprepay.type(fmt::format("{}.75", 1 + below(300))));
    press(form, kSave);
    tell_outcome("edit-prepayment", form.txtdocno.text(), "Update complete.");
    if (form.mode() == frame::Mode::edit) {
        desk_.answers = {false};
        static_cast<void>(form.press(kEditMode));
        desk_.answers.clear();
    }
}

void Saver::void_prepayment() { void_shown(*ap_.frm_prepayment, "void-payment", "Prepayment "); }

// The card has collected nothing, so a balance is typed for it: what is paid is the saver's affair.
void Saver::pay_card() {
    auto& form = *ap_.frm_creditcard;
    if (form.mode() == frame::Mode::read) static_cast<void>(form.press(kNew));
    static_cast<void>(form.cmbcard.type("VISA"));
    form.txtbalance.set("1,000.00");
    static_cast<void>(form.txtpayment.type(fmt::format("{}.00", 1 + below(900))));
    choose_way_of_paying(form);
    press(form, kSave);
    tell_outcome("payment", form.txtdocno.text(),
                 fmt::format("Add new payment {} complete", form.txtdocno.text()));
}

}  // namespace brimley::testing
