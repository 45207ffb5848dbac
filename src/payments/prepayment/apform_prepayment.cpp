// Loading the form, a new prepayment, showing a stored one, its checks, GL document and void, and its
// requests to the host.
#include "payments/prepayment/apform_prepayment.h"

#include <fmt/format.h>

#include <array>

#include "kernel/money.h"
#include "kernel/owing_balance.h"
#include "payments/payment_void.h"

namespace brimley::payments {

using controls::Command;
using store::quoted;
using store::Recordset;
namespace command = frame::command;

namespace {

constexpr PaymentKind kPrepaymentKind{
    .identity = {.class_name = "APform_prepayment",
                 .caption = "A/P Prepayment",
                 .help_file = "\\Help\\AP Prepayment Help.pdf"},
    .doctype = "pp",
    .tables = {.header = "Payment_header_table",
               .lines = "Payment_transaction_table",
               .number_field = "docno",
               .line_order = "pay_item",
               .own_kind = " AND doctype = 'pp'"},
    .gl_form = kernel::GlForm::prepayment,
    .header_names_form = true,
    .report = "A/P Prepayment",
    .saved_prefix = "Add new Prepayment ",
    .save_failed = "Add new prepayment failed",
    .void_question = "Are you sure to void this prepayment?",
    .void_done_prefix = "Prepayment ",
    .void_failed = "Void Prepayment failed",
};

constexpr int kPaymentRecord = 1001;

// The payments that applied the prepayment.
constexpr std::array kAppliedBy{
    frame::LineColumn{"AP document no", "docno", frame::Shown::text},
    frame::LineColumn{"date", "payment_date", frame::Shown::date},
    frame::LineColumn{"pay amount", "pay_amount", frame::Shown::money},
    frame::LineColumn{"currency", "Currency", frame::Shown::text},
};

}  // namespace

APform_prepayment::APform_prepayment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                     frame::Desk& desk)
    : PaymentForm(kPrepaymentKind, std::move(context), std::move(kernel), desk),
      applied_by_(*this, dbgrid1, kAppliedBy) {
    vendor_fields.on_chosen = [this] { vendor_chosen(); };
    // A vendor that was typed and is none has no orders.
    cmbvendor.on_change = [this] { list_open_po(); };
    // Whether the prepayment was applied is shown, not chosen.
    chkinvoiced.on_click = [this] { chkinvoiced.set(!chkinvoiced.is_set()); };
}

void APform_prepayment::Form_Load() {
    clear_list();
    step("prepayment account",
         [&] { default_prepayment_accno_ = kernel().parameter_account("AP", "AP Prepayment account"); });
    load_document_form();
}

void APform_prepayment::initform_control() {
    PaymentForm::initform_control();
    vendor_fields.fill();
}

void APform_prepayment::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_commands(
        {
            {command::kVoidPayment, "&Void Prepayment", "", "", Bars{"Payment"}},
            {command::kOrigin, "&Origin Document", "Origin", "Origin Document", Bars{"Link", "Standard"}},
            {command::kFormHelp, "AP Prepayment Help", "Help", "AP Prepayment Help",
             Bars{"Help", "Standard"}},
            {kPaymentRecord, "&A/P Record", "", "", Bars{"Link"}},
        },
        {command::kInsertLine, command::kDeleteLine, command::kAccountMaster, command::kItemMaster,
         command::kVendorMaster, command::kSaveFont, command::kRestoreFont, command::kBold, command::kItalic,
         command::kUnderline, command::kAlignLeft, command::kAlignCentre, command::kAlignRight});
}

void APform_prepayment::execute_own(int id) {
    PaymentForm::execute_own(id);
    if (id == command::kOrigin) origin_doc();
    if (id == kPaymentRecord) findAP();
}

// The lines are the payments that applied it: nobody types them.
void APform_prepayment::grid_newmode() {
    PaymentForm::grid_newmode();
    set_lines_editable(false);
}

void APform_prepayment::grid_editmode() {
    PaymentForm::grid_editmode();
    open_only({&txtremit, &txtprepay, &cmbpayby, &cmbcash, &cmbbank, &txtcheck, &txtcheckdate, &cmbpono,
               &txtremark});
    if (!pay_by.is_check()) pay_by.lock_check();
}

void APform_prepayment::vendor_chosen() {
    if (mode() != frame::Mode::new_entry) return;
    txtremit.set(cmbvendor_name.text());
    cmbpono.set("");
    list_open_po();
}

void APform_prepayment::list_open_po() {
    if (cmbvendor.empty()) {
        cmbpono.set_items({{" "}});
        return;
    }
    auto orders = rows_of(fmt::format(
        "SELECT docno FROM (SELECT docno,received,void FROM PO_header_table WHERE vendor_no = {}) WHERE "
        "received = FALSE AND void = FALSE ORDER BY docno DESC",
        quoted(cmbvendor.text())));
    cmbpono.set_source([orders = std::move(orders)] {
        auto rows = orders();
        rows.insert(rows.begin(), {" "});
        return rows;
    });
}

std::string APform_prepayment::purchase_order() const { return cmbpono.text() == " " ? "" : cmbpono.text(); }

double APform_prepayment::amount() const { return kernel::Round(kernel::money_value(txtprepay.text())); }

void APform_prepayment::begin_entry() {
    txtprepay.set("0.00");
    vendor_fields.show_name_and_currency(cmbcurrency);
    txtremit.set(cmbvendor_name.text());
    list_open_po();
}

void APform_prepayment::clear_box() {
    clear_header();
    for (controls::ComboBox* combo : {&cmbvendor, &cmbvendor_name, &cmbpono})
        combo->clear_choice();
    txtprepay.set("");
    chkinvoiced.set(0);
    clear_list();
}

void APform_prepayment::assign2control(Recordset& header) {
    assign_header(header);
    cmbvendor.set(header.text("vendor_no"));
    cmbvendor_name.set(vendor_fields.name_of(cmbvendor.text()).value_or(""));
    txtremit.set(header.text("remit_to"));
    txtprepay.set(kernel::format_money(header.number("payment_amount")));
    list_open_po();
    cmbpono.set(header.text("po_no"));
    chkinvoiced.set(header.flag("invoiced"));
}

// The payments that applied it, by its number alone, which has an index of its own; another year's prepayment
// may have the same.
std::optional<Recordset> APform_prepayment::other_lines() {
    return kernel().read(fmt::format(
        "SELECT docno,payment_date,pay_amount,Currency,vendor_no FROM Payment_transaction_table WHERE "
        "ap_docno = {} AND ap_doctype = 'pp' AND void = FALSE ORDER BY docno",
        quoted(txtdocno.text())));
}

void APform_prepayment::assign2_dbgrid1(Recordset& payments) {
    dbgrid1.array.dimension(frame::rows_for(static_cast<int>(payments.RecordCount())));
    applied_by_.begin(payments);
    for (int row = 0; !payments.at_eof(); payments.MoveNext())
        if (payments.text("vendor_no") == cmbvendor.text()) applied_by_.show(payments, row++);
    dbgrid1.rebind();
}

std::string APform_prepayment::edit_refusal() {
    if (chkvoid.is_set()) return PaymentForm::edit_refusal();
    bool applied = chkinvoiced.is_set();
    step("open item", [&] { applied = applied || is_applied_in_part(txtfkey.text()); });
    return applied ? kPrepaymentWasApplied : PaymentForm::edit_refusal();
}

// The header may not say so: the void of another part's payment has taken the mark off.
bool APform_prepayment::is_applied_in_part(const std::string& fkey) {
    const auto item = kernel().find("AP_transaction_table", {{"fkey", fkey}});
    return !item.at_eof() && kernel::Round(item.number("open_amount") - item.number("gross_amount")) != 0;
}

bool APform_prepayment::may_still_be_edited(const Recordset& header) {
    return (!header.flag("invoiced") && !is_applied_in_part(header.text("fkey"))) ||
           refuse(kPrepaymentWasApplied);
}

bool APform_prepayment::check_entry(PaymentChecks& checks, const WayOfPayingRules& rules) {
    checks.begin();
    if (cmbvendor.empty()) return refuse("please specify vendor");
    const auto accno = get_prepayment_accno(cmbvendor.text());
    if (!accno) return refuse("Vendor " + cmbvendor.text() + " not found.");
    prepayment_accno_ = *accno;
    if (txtprepay.empty()) return refuse("please specify prepayment amount");
    if (!kernel::is_numeric(txtprepay.text())) return refuse("Prepayment is invalid");
    if (kernel::money_value(txtprepay.text()) < 0) return refuse("prepayment is invalid.");
    return checks.payment_date() && checks.currency_is_in_use() &&
           checks.exchange_rate(PaymentChecks::NoRate::is_refused) && checks.way_of_paying(rules) &&
           checks.period_is_open();
}

std::optional<std::string> APform_prepayment::get_prepayment_accno(const std::string& vendor_no) {
    const auto own = kernel().look_up("Vendor_table", {{"vendor_no", vendor_no}}, "prepayment_accno");
    if (!own) return std::nullopt;
    return own->text().empty() ? default_prepayment_accno_ : own->text();
}

// The payable account is not touched: the item of a prepayment has nothing in the ledger until it is applied.
bool APform_prepayment::insert_GL_record(const std::string& vendor_no, const std::string& cash_accno) {
    return ledger.insert_GL_record(vendor_no, [&](kernel::GlPosting& posting) {
        ledger.add_paid_from(posting, cash_accno, amount());
        ledger.add(posting, prepayment_accno_, amount());
        return true;
    });
}

void APform_prepayment::insert_Prepayment_waiting_PO(const std::string& po_no, double amount) {
    kernel().database().Execute("DELETE * FROM Prepayment_waiting_PO_table WHERE prepayment_no = " +
                                quoted(txtdocno.text()));
    if (po_no.empty()) return;
    auto waiting = kernel().change("SELECT * FROM Prepayment_waiting_PO_table WHERE 1 = 2");
    waiting.AddNew();
    waiting.set("po_no", po_no);
    waiting.set("prepayment_no", txtdocno.text());
    waiting.set("prepayment_fkey", txtfkey.text());
    waiting.set("amount", amount);
    waiting.Update();
}

void APform_prepayment::update_vendor_owing_balance(const std::string& vendor_no, double change) {
    kernel::change_owing_balance(kernel(), vendor_no, {change}, kernel::kOwingOfPrepayment);
}

// --- void ---

bool APform_prepayment::may_be_voided() { return !chkinvoiced.is_set() || refuse(kPrepaymentWasApplied); }

bool APform_prepayment::may_still_be_voided(const Recordset& header) {
    return !header.flag("invoiced") || refuse(kPrepaymentWasApplied);
}

// Its open item stays as it is.
void APform_prepayment::give_back_balances(const Recordset& header) {
    give_up_order(kernel(), header.text("fkey"));
    update_vendor_owing_balance(header.text("vendor_no"), header.number("payment_amount"));
}

// --- requests to the host ---

void APform_prepayment::findAP() {
    const std::string docno = dbgrid1.cell(dbgrid1.row(), "AP document no");
    if (!docno.empty()) notify("A/P Payment Entry", docno);
}

}  // namespace brimley::payments
