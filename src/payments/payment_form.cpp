#include "payments/payment_form.h"

#include <fmt/format.h>

#include "kernel/money.h"
#include "payments/payment_void.h"

namespace brimley::payments {

using controls::ComboBox;
using store::quoted;
using store::Recordset;

namespace {

std::string state_of(const Recordset& header) {
    std::string state;
    for (const char* field : {"fkey", "GLFKEY", "payment_amount", "payby", "cash_accno", "bank_code",
                              "bank_accno", "check_no", "check_date", "po_no", "remit_to", "remark"})
        state += header.text(field) + '\n';
    return state;
}

}  // namespace

PaymentForm::PaymentForm(const PaymentKind& kind, frame::HostContext context,
                         std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
    : DocumentForm(kind.identity, std::move(context), std::move(kernel), desk, kind.tables), kind_(kind) {
    txtpaydate.on_change = [this] { take_period_of(txtpaydate); };
    cmbpayby.on_item_select = [this] { pay_by.cmbpayby_ItemSelect(); };
    cmbcurrency.on_item_select = [this] { cmbcurrency_itemselect(); };
    cmbexrate.on_item_select = [this] { cmbexrate_itemselect(); };
    txtratedate.on_change = [this] { cmbcurrency_itemselect(); };
}

void PaymentForm::initform_control() {
    fill_common_combos();
    pay_by.fill();
}

std::string PaymentForm::doctype_of_walk() {
    txtdoctype.set(kind_.doctype);
    return kind_.doctype;
}

void PaymentForm::grid_newmode() {
    DocumentForm::grid_newmode();
    for (controls::Control* computed : computed_fields())
        set_field(*computed, FieldState::read_only);
    pay_by.lock_check();  // until the payment is by check
}

// Only what is written on paper may change.
void PaymentForm::grid_editmode() {
    DocumentForm::grid_editmode();
    open_only({&txtcheck, &txtcheckdate, &txtremark});
}

void PaymentForm::gencode_new() {
    std::vector<ComboBox*> kept = kept_fields();
    kept.push_back(&cmbpayby);
    std::vector<std::string> texts;
    for (const ComboBox* field : kept)
        texts.push_back(field->text());
    clear_box();
    for (std::size_t i = 0; i < kept.size(); ++i)
        kept[i]->set(texts[i]);
    txtdocno.set(frame::kNewDocno);
    cmbcompany.set("1");
    txtpaydate.set(date_text(desk().now()));
    take_period_of(txtpaydate);
    cmbcurrency.set(context().BASE_CURRENCY);
    begin_entry();
    cmbcurrency_itemselect();
    pay_by.show_bank();
    if (pay_by.is_check()) pay_by.begin_check();
}

// A rate of the rate date is taken. Without one the rate stays as it is, even when the currency has changed.
void PaymentForm::cmbcurrency_itemselect() {
    if (!entering() || cmbcurrency.empty()) return;
    if (!foreign()) {
        cmbexrate.clear_items();
        cmbexrate.set("");
        txtratedate.set("");
        return;
    }
    step("list rates", [&] {
        const auto until = date_in(txtratedate);
        auto rates = rates_of_currency(until);
        std::vector<ComboBox::Row> items;
        for (; !rates.at_eof(); rates.MoveNext())
            items.push_back({rates.text("Rate"), date_text(rates.field("rate_date"))});
        cmbexrate.set_items(items);
        if (until && !items.empty() && items.back()[1] == date_text(*until)) cmbexrate.set(items.back()[0]);
    });
}

void PaymentForm::cmbexrate_itemselect() {
    if (!foreign() || cmbexrate.empty()) return;
    if (const auto date = cmbexrate.chosen(1)) txtratedate.set(*date);
}

void PaymentForm::assign_header(Recordset& header) {
    const auto text = [&](const char* field) { return header.text(field); };
    const auto date = [&](const char* field) { return date_text(header.field(field)); };
    txtdocno.set(text("docno"));
    txtfkey.set(text("fkey"));
    txtglfkey.set(text("GLFKEY"));
    txtdoctype.set(text("doctype"));
    cmbcompany.set(text("company"));
    txtpaydate.set(date("payment_date"));
    cmbperiod.set(text("period"));
    cmbfyear.set(text("fyear"));
    cmbcurrency.set(text("Currency"));
    cmbexrate.set(text("exchange_rate"));
    txtratedate.set(date("rate_date"));
    cmbpayby.set(text("payby"));
    cmbcash.set(text("cash_accno"));
    cmbbank.set(text("bank_code"));
    txtcheck.set(text("check_no"));
    txtcheckdate.set(date("check_date"));
    txtremark.set(text("remark"));
    txtsource.set(text("Source"));
    txtsource_docno.set(text("source_docno"));
    chkprint.set(header.flag("printed"));
    chkvoid.set(header.flag("void"));
    shown_state_ = state_of(header);
    pay_by.show_bank();
}

void PaymentForm::fill_header(Recordset& header, const PaymentDates& dates) {
    header.set("company", cmbcompany.text());
    header.set("docno", txtdocno.text());
    header.set("fkey", txtfkey.text());
    header.set("doctype", txtdoctype.text());
    header.set("payment_date", dates.payment);
    header.set("Currency", cmbcurrency.text());
    if (foreign() && !cmbexrate.empty()) {
        header.set("exchange_rate", kernel::money_value(cmbexrate.text()));
        if (dates.rate) header.set("rate_date", *dates.rate);
    }
    header.set("payby", cmbpayby.text());
    if (pay_by.is_cash() && !cmbcash.empty()) header.set("cash_accno", cmbcash.text());
    if (pay_by.is_by_bank()) header.set("bank_code", cmbbank.text());
    if (pay_by.is_check()) {
        header.set("check_no", txtcheck.text());
        if (dates.check) header.set("check_date", *dates.check);
    }
    header.set("remark", txtremark.text());
    header.set("period", cmbperiod.text());
    header.set("fyear", cmbfyear.text());
    if (kind_.header_names_form) header.set("source_form", identity().class_name);
}

void PaymentForm::clear_header() {
    for (ComboBox* combo : {&cmbcurrency, &cmbperiod, &cmbfyear, &cmbexrate, &cmbpayby, &cmbcash, &cmbbank})
        combo->clear_choice();
    cmbexrate.clear_items();
    for (controls::TextField* field : std::initializer_list<controls::TextField*>{
             &txtpaydate, &txtratedate, &txtcheckdate, &txtdocno, &txtfkey, &txtglfkey, &txtdoctype,
             &txtremit, &txtcheck, &txtremark, &txtsource, &txtsource_docno})
        field->set("");
    chkprint.set(0);
    chkvoid.set(0);
}

Recordset PaymentForm::stored_header() {
    return kernel().find_to_change(kind_.tables.header, {{"fkey", txtfkey.text()}});
}

bool PaymentForm::can_do(int id) const {
    if (id == frame::command::kVoidPayment) return rights().Update && shows_what_to_void();
    return DocumentForm::can_do(id);
}

void PaymentForm::execute_own(int id) {
    if (id == frame::command::kVoidPayment && rights().Update) void_payment();
}

void PaymentForm::preview() {
    const std::string lines = kind_.tables.lines;
    std::string fields = "Payment_header_table.*, " + lines + ".*";
    std::string tables =
        fmt::format("(Payment_header_table INNER JOIN {0} ON Payment_header_table.fkey = {0}.fkey)", lines);
    if (prints_vendor()) {
        fields += ", Vendor_table.VENDOR_NAME";
        tables = fmt::format(
            "({} INNER JOIN Vendor_table ON Payment_header_table.vendor_no = Vendor_table.vendor_no)",
            tables);
    }
    const std::string query =
        fmt::format("SELECT {} FROM {} WHERE Payment_header_table.fkey = {} ORDER BY {}", fields, tables,
                    quoted(txtfkey.text()), kind_.tables.line_order);
    notify("ActiveReport", query,
           fmt::format("{},{},{}", kind_.report, txtdocno.text(), rights().form_design ? "1" : "0"));
}

bool PaymentForm::as_shown(const Recordset& header) {
    return state_of(header) == shown_state_ || refuse(changed_since_shown(header));
}

bool PaymentForm::posted_as_shown(const Recordset& header) {
    return header.text("GLFKEY") == txtglfkey.text() || refuse(changed_since_shown(header));
}

// --- void ---

bool PaymentForm::shows_what_to_void() const {
    return mode() == frame::Mode::read && !dbgrid1.allow_update && !txtfkey.empty() && shown_whole();
}

bool PaymentForm::may_void() {
    if (!shows_what_to_void() || !has_its_number()) return false;
    if (chkvoid.is_set()) return refuse(txtdocno.text() + " was void.");
    return may_be_voided() && ask(kind_.void_question);
}

void PaymentForm::void_payment() {
    if (!may_void()) return;
    if (!in_transaction("void_payment", [this] { return write_void(); })) {
        tell_failure(kind_.void_failed);
        return;
    }
    tell(kind_.void_done_prefix + txtdocno.text() + " is void.");
    Recordx();
}

bool PaymentForm::write_void() {
    auto header = stored_header();
    if (header.at_eof()) return fail(txtdocno.text() + " is not there any more");
    header.Edit();
    // The box on screen may be older than what another desk has done.
    if (header.flag("void")) return refuse(txtdocno.text() + " was void.");
    if (!may_still_be_voided(header) || !posted_as_shown(header)) return false;
    header.CancelUpdate();
    give_back(header);
    mark_void(kernel(), kind_.tables.lines, txtfkey.text(), store::date_value(desk().now().date_only()));
    if (!insert_GL_reverse()) return false;
    give_back_balances(header);
    return true;
}

// --- edit ---

std::string PaymentForm::edit_refusal() {
    return chkvoid.is_set() ? txtdocno.text() + " was void" : std::string{};
}

bool PaymentForm::Update_record() {
    std::optional<store::DateTime> check_date;
    if (pay_by.is_check() && !txtcheckdate.empty()) {
        check_date = required_date(txtcheckdate, "please specify check date");
        if (!check_date) return false;
    }
    const bool saved = in_transaction("Update_record", [&] { return write_edit(check_date); });
    if (!saved) {
        tell_failure("Update failed.");
        return false;
    }
    Recordx_fkey();  // shows what is stored: without a check no number and date of one are
    return true;
}

std::optional<Recordset> PaymentForm::header_to_edit() {
    auto header = stored_header();
    if (header.at_eof()) {
        (void)fail(txtdocno.text() + " is not there any more");
        return std::nullopt;
    }
    header.Edit();
    // It may have been voided since the edit began, or reached by Next or Previous in Edit.
    const bool may_be_edited = (!header.flag("void") || refuse(header.text("docno") + " was void")) &&
                               may_still_be_edited(header) && as_shown(header);
    return may_be_edited ? std::optional(std::move(header)) : std::nullopt;
}

bool PaymentForm::write_edit(const std::optional<store::DateTime>& check_date) {
    auto header = header_to_edit();
    if (!header) return false;
    if (pay_by.is_check()) {
        header->set("check_no", txtcheck.text());
        header->set("check_date", check_date ? store::Value(*check_date) : store::Value());
    }
    header->set("remark", txtremark.text());
    header->Update();
    return true;
}

}  // namespace brimley::payments
