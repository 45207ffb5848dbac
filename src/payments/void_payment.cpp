// What happens to a saved payment: the void, and the small edit of what is written on paper.
#include <fmt/format.h>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "payments/apform_payment.h"

namespace brimley::payments {

using kernel::Round;
using store::quoted;
using store::Recordset;

Recordset APform_payment::stored_header() {
    return kernel().change(
        fmt::format("SELECT * FROM Payment_header_table WHERE fkey = {}", quoted(txtfkey.text())));
}

// --- void ---

bool APform_payment::may_void() {
    if (mode() != frame::Mode::read || dbgrid1.allow_update || txtfkey.empty() || !shown_whole())
        return false;
    if (!has_its_number()) return false;
    if (chkvoid.is_set()) return refuse(txtdocno.text() + " was void.");
    return ask("Are you sure to void this payment?");
}

void APform_payment::void_payment() {
    if (!may_void()) return;
    if (!in_transaction("void_payment", [this] { return write_void(); })) {
        tell_failure("Void Payment failed");
        return;
    }
    tell(txtdocno.text() + " is void.");
    Recordx();
}

bool APform_payment::write_void() {
    auto header = stored_header();
    if (header.at_eof()) return false;
    header.Edit();
    // The box on screen may be older than what another desk has done.
    if (header.flag("void")) return refuse(txtdocno.text() + " was void.");
    header.CancelUpdate();
    give_back_lines();
    kernel().database().Execute(fmt::format(
        "UPDATE Payment_transaction_table SET void = TRUE WHERE fkey = {}", quoted(txtfkey.text())));
    kernel().database().Execute(
        fmt::format("UPDATE Payment_header_table SET void = TRUE,void_date = {} WHERE fkey = {}",
                    store::date_value(desk().now().date_only()), quoted(txtfkey.text())));
    if (!insert_GL_reverse()) return false;
    update_vendor_owing_balance(true);
    update_prepayment_status(true);
    return true;
}

// Each document is closed when the lines go on to another one.
void APform_payment::give_back_lines() {
    auto lines = kernel().read(fmt::format(
        "SELECT * FROM Payment_transaction_table WHERE fkey = {} ORDER BY item_no", quoted(txtfkey.text())));
    std::string last_docno;
    PaidDocument document;
    for (; !lines.at_eof(); lines.MoveNext()) {
        const std::string docno = lines.text("ap_docno");
        if (docno != last_docno && !last_docno.empty()) {
            reopen_document(document);
            document = {};
        }
        give_back_line(lines, document);
        last_docno = docno;
    }
    reopen_document(document);
}

// paid_amount gives back the payment alone; what was discounted and written off stays in it.
void APform_payment::give_back_line(const Recordset& line, PaidDocument& document) {
    auto item =
        kernel().change(fmt::format("SELECT * FROM AP_transaction_table WHERE company = 1 AND docno = {}",
                                    quoted(line.text("ap_docno"))));
    // Numbers may come again: the vendor's own item is meant, first of all one that is as the payment left
    // it.
    const std::string own = "[pay_item] = " + store::shortest_number(line.number("pay_item")) +
                            " AND [vendor_no] = " + quoted(line.text("vendor_no"));
    item.FindFirst(fmt::format("{} AND [gross_amount] = {} AND [open_amount] = {}", own,
                               store::shortest_number(line.number("gross_amount")),
                               store::shortest_number(line.number("balance"))));
    if (item.NoMatch()) item.FindFirst(own);
    if (item.NoMatch()) return;
    document = {item.text("fkey"), item.text("source_docno")};
    const auto add = [&](const char* field, double amount) {
        item.set(field, Round(item.number(field) + amount));
    };
    const double back =
        Round(line.number("pay_amount") + line.number("discount_taken") + line.number("writeoff"));
    item.Edit();
    add("open_amount", back);
    add("paid_amount", 0 - line.number("pay_amount"));
    add("discount_taken", 0 - line.number("discount_taken"));
    add("writeoff", 0 - line.number("writeoff"));
    item.set("paid", false);
    item.Update();
}

void APform_payment::reopen_document(const PaidDocument& document) {
    if (document.fkey.empty()) return;
    const bool some_paid =
        !kernel()
             .read(fmt::format(
                 "SELECT fkey FROM (SELECT * FROM AP_transaction_table WHERE fkey = {}) WHERE paid = TRUE",
                 quoted(document.fkey)))
             .at_eof();
    const char* flags = some_paid ? "fully_paid = FALSE ,paid = TRUE" : "fully_paid = FALSE ,paid = FALSE";
    kernel().database().Execute(
        fmt::format("UPDATE AP_header_table SET {} WHERE fkey = {}", flags, quoted(document.fkey)));
    if (document.source_docno.empty()) return;
    kernel().database().Execute(
        fmt::format("UPDATE PO_invoice_header_table SET {} WHERE company = 1 AND docno = {}", flags,
                    quoted(document.source_docno)));
}

// --- edit ---

bool APform_payment::Update_record() {
    std::optional<store::DateTime> check_date;
    if (cmbpayby.text() == "Check" && !txtcheckdate.empty()) {
        check_date = required_date(txtcheckdate, "please specify check date");
        if (!check_date) return false;
    }
    const bool saved = in_transaction("Update_record", [&] { return write_edit(check_date); });
    if (!saved) tell_failure("Update failed.");
    return saved;
}

bool APform_payment::write_edit(const std::optional<store::DateTime>& check_date) {
    auto header = stored_header();
    if (header.at_eof()) return false;
    header.Edit();
    // It may have been voided since the edit began, or leafed to in Edit.
    if (header.flag("void")) return refuse(header.text("docno") + " was void");
    if (cmbpayby.text() == "Check") {
        header.set("check_no", txtcheck.text());
        header.set("check_date", check_date ? store::Value(*check_date) : store::Value());
    }
    header.set("remark", txtremark.text());
    header.Update();
    return true;
}

}  // namespace brimley::payments
