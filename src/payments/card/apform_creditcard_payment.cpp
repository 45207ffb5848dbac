// Loading the form, a new payment, showing a stored one, its checks and GL document, and its requests to the
// host.
#include "payments/card/apform_creditcard_payment.h"

#include <fmt/format.h>

#include <array>

#include "kernel/money.h"

namespace brimley::payments {

using controls::Command;
using kernel::format_money;
using kernel::money_value;
using kernel::Round;
using store::Recordset;
namespace command = frame::command;

namespace {

constexpr PaymentKind kCardKind{
    .identity = {.class_name = "APform_creditcard_payment",
                 .caption = "A/P Credit Card Payment",
                 .help_file = "\\Help\\CreditCard Payment Help.pdf"},
    .doctype = "pc",
    .tables = {.header = "Payment_header_table",
               .lines = "Payment_transaction_table",
               .number_field = "docno",
               .line_order = "pay_item",
               .own_kind = " AND doctype = 'pc'"},
    .gl_form = kernel::GlForm::card_payment,
    .header_names_form = false,
    .report = "A/P Credit Card Payment",
    .saved_prefix = "Add new payment ",
    .save_failed = "Add new payment failed",
    .void_question = "Are you sure to void this Payment?",
    .void_done_prefix = "Payment ",
    .void_failed = "Void Payment failed",
};

constexpr int kCardRecord = 1001;

constexpr std::array kCardLines{
    frame::LineColumn{"AP document no", "ap_docno", frame::Shown::text},
    frame::LineColumn{"pay item", "pay_item", frame::Shown::text},
    frame::LineColumn{"gross amount", "gross_amount", frame::Shown::money},
    frame::LineColumn{"open amount", "open_amount", frame::Shown::money},
    frame::LineColumn{"pay amount", "pay_amount", frame::Shown::money},
    frame::LineColumn{"balance", "balance", frame::Shown::money},
    frame::LineColumn{"currency", "Currency", frame::Shown::text},
};

}  // namespace

APform_creditcard_payment::APform_creditcard_payment(frame::HostContext context,
                                                     std::shared_ptr<kernel::ModuleG3> kernel,
                                                     frame::Desk& desk)
    : PaymentForm(kCardKind, std::move(context), std::move(kernel), desk),
      lines_(*this, dbgrid1, kCardLines) {
    txtremit.set_visible(false);  // the card's bank is paid, and nobody else
    cmbcard.on_item_select = [this] { cmbcard_ItemSelect(); };
}

void APform_creditcard_payment::Form_Load() {
    clear_list();
    load_document_form();
}

void APform_creditcard_payment::initform_control() {
    PaymentForm::initform_control();
    cmbcard.set_source(rows_of("SELECT card_name FROM Credit_card_master_table WHERE used = TRUE"));
    cmbexpacc.set_source(
        rows_of("SELECT accno, accname FROM Account_master_table INNER JOIN Account_class_table ON "
                "Account_master_table.accclass = Account_class_table.class_name WHERE parent = 'EXPENSE'"));
}

void APform_creditcard_payment::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_commands(
        {
            {command::kVoidPayment, "&Void Payment", "", "", Bars{"Payment"}},
            {command::kOrigin, "&Origin Document", "Origin", "Origin Document", Bars{"Link", "Standard"}},
            {command::kFormHelp, "CreditCard Payment Help", "Help", "CreditCard Payment Help",
             Bars{"Help", "Standard"}},
            {kCardRecord, "&A/P Record", "", "", Bars{"Link"}},
        },
        {command::kEditMode, command::kInsertLine, command::kDeleteLine, command::kAccountMaster,
         command::kItemMaster, command::kVendorMaster});
}

// A card payment comes from no other document: Origin Document does nothing.
void APform_creditcard_payment::execute_own(int id) {
    PaymentForm::execute_own(id);
    if (id == kCardRecord) findAP();
}

CardAmounts APform_creditcard_payment::amounts() const {
    const auto cents = [](const controls::TextField& field) { return Round(money_value(field.text())); };
    return {cents(txtpayment), cents(txtfee), cents(txtbalance)};
}

void APform_creditcard_payment::cmbcard_ItemSelect() {
    step("balance of the card", [&] {
        txtbalance.set("");
        const std::string accno = kernel().look_up_text("Credit_card_master_table",
                                                        {{"card_name", cmbcard.text()}}, "payable_accno");
        if (accno.empty()) {
            tell(cmbcard.text() + ": No payable account setting");
            return;
        }
        const auto balance = kernel().look_up(
            "Balance_table", {{"company", "1"}, {"accno", accno}, {"currency", cmbcurrency.text()}},
            "amount");
        if (balance) txtbalance.set(format_money(balance->number()));
    });
}

bool APform_creditcard_payment::entry_has_data() { return !cmbcard.empty() || amounts().payment != 0; }

// No fee stands there at first: one that does, even 0, needs its account.
void APform_creditcard_payment::begin_entry() { txtpayment.set("0.00"); }

void APform_creditcard_payment::clear_box() {
    clear_header();
    cmbcard.clear_choice();
    cmbexpacc.clear_choice();
    for (controls::TextField* field : {&txtbalance, &txtfee, &txtpayment})
        field->set("");
    clear_list();
}

void APform_creditcard_payment::assign2control(Recordset& header) {
    assign_header(header);
    cmbcard.set(header.text("vendor_no"));
    txtbalance.set(format_money(header.number("card_balance")));
    txtfee.set(format_money(header.number("fee_amount")));
    cmbexpacc.set(header.text("expense_accno"));
    txtpayment.set(format_money(header.number("payment_amount")));
}

void APform_creditcard_payment::assign2_dbgrid1(Recordset& lines) {
    clear_list();
    lines_.begin(lines);
    for (int row = 0; !lines.at_eof() && row < frame::kRowsMin; lines.MoveNext(), ++row)
        lines_.show(lines, row);
    dbgrid1.rebind();
}

// --- checks ---

bool APform_creditcard_payment::check_amounts() {
    if (amounts().balance == 0) return refuse("Credit card balance = 0");
    if (cmbcard.empty()) return refuse("please specify credit card");
    if (txtpayment.empty()) return refuse("please specify Payment amount");
    if (!kernel::is_numeric(txtpayment.text())) return refuse("Payment is invalid");
    if (money_value(txtpayment.text()) < 0) return refuse("Payment is invalid.");
    if (amounts().payment == 0) return refuse("please specify payment amount");
    return true;
}

bool APform_creditcard_payment::check_fee() {
    if (txtfee.empty()) return true;
    if (!kernel::is_numeric(txtfee.text())) return refuse("fee is invalid");
    if (money_value(txtfee.text()) < 0) return refuse("fee is invalid.");
    return !cmbexpacc.empty() || refuse("please specify expense account for fee");
}

// Another name may have been typed over the card whose balance is on screen.
bool APform_creditcard_payment::card_is_in_use() {
    const auto card = kernel().find("Credit_card_master_table", {{"card_name", cmbcard.text()}});
    return (!card.at_eof() && card.flag("used")) || refuse(PayBy::no_card_account(cmbcard.text()));
}

void APform_creditcard_payment::pay_balance_and_fee() {
    txtpayment.set(format_money(amounts().balance + amounts().fee));
}

bool APform_creditcard_payment::ask_about_fee() {
    const CardAmounts paid = amounts();
    const double all = paid.balance + paid.fee;
    if (paid.fee > 0 && Round(paid.payment - paid.balance) == 0) {
        if (ask(fmt::format("Payment amount does not include fee ({})\nDo you want to change to {} ?",
                            txtfee.text(), format_money(all))))
            pay_balance_and_fee();
        return true;
    }
    if (Round(paid.payment - all) <= 0) return true;
    if (ask("Payment amount cannot >  balance + fee amount\nDo you want to change to edit payment amount?"))
        return false;
    pay_balance_and_fee();
    return true;
}

bool APform_creditcard_payment::check_entry(PaymentChecks& checks) {
    checks.begin();
    return check_amounts() && check_fee() && ask_about_fee() && checks.payment_date() &&
           checks.currency_is_in_use() && checks.exchange_rate(PaymentChecks::NoRate::is_refused) &&
           checks.way_of_paying({"please specify other pay-by"}) && card_is_in_use() &&
           checks.period_is_open();
}

// --- ledger ---

bool APform_creditcard_payment::insert_GL_record(const std::string& card, const std::string& cash_accno) {
    return ledger.insert_GL_record(card, [&](kernel::GlPosting& posting) {
        const std::string card_accno = pay_by.card_account(card);
        if (card_accno.empty()) return false;
        const CardAmounts paid = amounts();
        ledger.add(posting, cash_accno, 0 - paid.payment);  // another card's account, too
        ledger.add(posting, card_accno, paid.on_card());
        if (paid.fee > 0) ledger.add(posting, cmbexpacc.text(), paid.fee);
        return true;
    });
}

// --- requests to the host ---

// The number of a document is asked for and never there; what goes out is the key of the ledger document.
void APform_creditcard_payment::findAP() {
    if (!txtfkey.empty()) notify("Bill Entry", txtglfkey.text());
}

}  // namespace brimley::payments
