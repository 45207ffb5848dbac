// The rows of a payment's lines, and what they do to the items paid, to prepayments and to the vendor.
#include <fmt/format.h>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "payments/apform_payment.h"

namespace brimley::payments {

using kernel::money_value;
using kernel::Round;
using store::quoted;
using store::Recordset;

bool APform_payment::write_lines(const Recordset& header) {
    auto lines = kernel().change("SELECT * FROM Payment_transaction_table WHERE 1 = 2");
    int item_no = 0;
    for (const PaidRow& paid : paid_rows()) {
        lines.AddNew();
        lines.set("item_no", ++item_no);
        fill_line(lines, header, paid);
        lines.Update();
        if (!pay_item(paid)) return false;
    }
    return true;
}

void APform_payment::fill_line(Recordset& lines, const Recordset& header, const PaidRow& paid) {
    const auto& [row, amounts] = paid;
    const auto text = [this, row = row](const char* caption) { return dbgrid1.cell(row, caption); };
    for (const char* field : {"fkey", "docno", "company", "vendor_no", "payment_date"})
        lines.set(field, header.field(field));
    lines.set("ap_docno", text("AP document no"));
    lines.set("pay_item", text("pay item"));
    lines.set("ap_doctype", text("document type"));
    lines.set("invoice_no", text("invoice no"));
    if (const auto date = kernel::try_user_date(text("invoice date"), context().BRIMLEY_DATE_FORMAT))
        lines.set("invoice_date", *date);
    lines.set("gross_amount", cell_money(row, "gross amount"));
    lines.set("open_amount", cell_money(row, "open amount"));
    lines.set("pay_amount", amounts.pay);
    lines.set("discount_available", cell_money(row, "discount available"));
    lines.set("discount_taken", amounts.discount);
    lines.set("writeoff", amounts.writeoff);
    lines.set("balance", cell_money(row, "net balance"));
    if (amounts.discount > 0) lines.set("discount_accno", text("discount account"));
    if (amounts.writeoff > 0) lines.set("writeoff_accno", text("write-off account"));
    if (text("document type") == "pp") lines.set("prepay_accno", text("prepay account"));
    lines.set("Currency", text("currency"));
    if (row_is_foreign(row)) {
        lines.set("invoice_exchange_rate", cell_money(row, "invoice exch rate"));
        lines.set("payment_exchange_rate", cell_money(row, "payment exch rate"));
        lines.set("pay_base_amount", cell_money(row, "base-currency amount"));
    } else {
        lines.set("pay_base_amount", amounts.pay);
    }
    const store::DateTime now = desk().now();
    lines.set("date_created", now.date_only());
    lines.set("time_created", now.time_text());
    lines.set("user_created", context().BRIMLEY_USER);
    lines.set("computer_id", kernel().get_computer_name());
}

bool APform_payment::is_as_listed(const Recordset& item, int row) const {
    return item.text("vendor_no") == cmbvendor.text() && !item.flag("paid") && !item.flag("void") &&
           !item.flag("hold") && Round(item.number("open_amount") - cell_money(row, "open amount")) == 0;
}

bool APform_payment::pay_item(const PaidRow& paid) {
    const auto& [row, amounts] = paid;
    auto item = kernel().change(fmt::format(
        "SELECT open_amount,paid_amount,discount_taken,writeoff,paid,void,hold,fkey,company,vendor_no,Source,"
        "source_docno FROM AP_transaction_table WHERE company = 1 AND docno = {} AND pay_item = {}",
        quoted(dbgrid1.cell(row, "AP document no")), quoted(dbgrid1.cell(row, "pay item"))));
    // Numbers may come again: the item that was listed is meant, this vendor's and as it was then. It is
    // looked at again once it is held, for another desk may have paid, voided or held it meanwhile.
    while (!item.at_eof() && !is_as_listed(item, row))
        item.MoveNext();
    if (!item.at_eof()) item.Edit();
    if (item.at_eof() || !is_as_listed(item, row)) {
        return refuse(fmt::format("{}, pay item {}, has changed since it was listed.",
                                  dbgrid1.cell(row, "AP document no"), dbgrid1.cell(row, "pay item")));
    }
    const auto add = [&](const char* field, double amount) {
        item.set(field, Round(item.number(field) + amount));
    };
    const double balance = cell_money(row, "net balance");
    item.set("open_amount", balance);
    add("paid_amount", amounts.sum());
    if (amounts.discount > 0) add("discount_taken", amounts.discount);
    if (amounts.writeoff > 0) add("writeoff", amounts.writeoff);
    if (balance == 0) item.set("paid", true);
    item.Update();
    mark_paid_document(item);
    return true;
}

void APform_payment::mark_paid_document(const Recordset& item) {
    const std::string fkey = item.text("fkey");
    const bool left =
        !kernel()
             .read(fmt::format(
                 "SELECT fkey FROM (SELECT * FROM AP_transaction_table WHERE fkey = {}) WHERE paid = FALSE",
                 quoted(fkey)))
             .at_eof();
    const char* flags = left ? "paid = TRUE, fully_paid = FALSE" : "paid = TRUE, fully_paid = TRUE";
    kernel().database().Execute(
        fmt::format("UPDATE AP_header_table SET {} WHERE fkey = {}", flags, quoted(fkey)));
    if (item.text("Source") != "PO-BILL") return;
    kernel().database().Execute(
        fmt::format("UPDATE PO_invoice_header_table SET {} WHERE company = {} AND docno = {}", flags,
                    quoted(item.text("company")), quoted(item.text("source_docno"))));
}

// What waited for a purchase order waits no longer. A void does not bring the order back.
void APform_payment::update_prepayment_status(bool is_void) {
    auto lines =
        kernel().read(fmt::format("SELECT ap_docno FROM Payment_transaction_table WHERE fkey = {} AND "
                                  "ap_doctype = 'pp' ORDER BY item_no",
                                  quoted(txtfkey.text())));
    for (; !lines.at_eof(); lines.MoveNext()) {
        const std::string docno = quoted(lines.text("ap_docno"));
        auto prepayment = kernel().change(fmt::format(
            "SELECT * FROM Payment_header_table WHERE company = 1 AND docno = {} AND doctype = 'pp'", docno));
        if (prepayment.at_eof()) continue;
        const bool waited = !is_void && !prepayment.text("po_no").empty();
        prepayment.Edit();
        if (waited) prepayment.set("po_no", "");
        prepayment.set("invoiced", !is_void);
        prepayment.Update();
        if (!waited) continue;
        kernel().database().Execute("DELETE * FROM Prepayment_waiting_PO_table WHERE prepayment_no = " +
                                    docno);
    }
}

// In the currencies of the rows, added up as they are. A vendor without a balance gets one with the wrong
// sign.
void APform_payment::update_vendor_owing_balance(bool is_void) {
    double sum = 0;
    for (int row = 0; row <= last_row; ++row)
        sum += amounts_of(row).sum();
    if (is_void) sum = 0 - sum;
    auto vendor = kernel().change(
        fmt::format("SELECT * FROM Vendor_table WHERE vendor_no = {}", quoted(cmbvendor.text())));
    if (vendor.at_eof()) return;
    vendor.Edit();
    vendor.set("owing_balance", vendor.field("owing_balance").is_null()
                                    ? Round(sum)
                                    : Round(vendor.number("owing_balance") - sum));
    vendor.Update();
}

void APform_payment::update_discount_taken(const std::string& ap_docno, const std::string& pay_item_no,
                                           double discount) {
    auto item = kernel().change(
        fmt::format("SELECT * FROM AP_transaction_table WHERE company = 1 AND docno = {} AND pay_item = {}",
                    quoted(ap_docno), quoted(pay_item_no)));
    if (item.at_eof()) return;
    item.Edit();
    item.set("discount_taken", Round(item.number("discount_taken") + discount));
    item.Update();
}

}  // namespace brimley::payments
