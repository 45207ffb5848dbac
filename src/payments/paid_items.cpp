#include "payments/paid_items.h"

#include <fmt/format.h>

#include "kernel/money.h"

namespace brimley::payments {

using kernel::Round;
using store::quoted;
using store::Recordset;

namespace {

bool is_as_listed(const Recordset& item, const PaidItem& paid) {
    return item.text("vendor_no") == paid.vendor_no && !item.flag("paid") && !item.flag("void") &&
           !item.flag("hold") && Round(item.number("open_amount") - paid.open) == 0;
}

void add(Recordset& item, const char* field, double amount) {
    item.set(field, Round(item.number(field) + amount));
}

}  // namespace

std::string PaidItems::has_changed(const std::string& docno, const std::string& pay_item) {
    return fmt::format("{}, pay item {}, has changed since it was listed.", docno, pay_item);
}

bool PaidItems::pay(const PaidItem& paid) {
    auto item = kernel().change(fmt::format(
        "SELECT open_amount,paid_amount,discount_taken,writeoff,paid,void,hold,fkey,company,vendor_no,Source,"
        "source_docno FROM AP_transaction_table WHERE company = 1 AND docno = {} AND pay_item = {}",
        quoted(paid.docno), quoted(paid.pay_item)));
    // Numbers may repeat: the item that was listed is meant, this vendor's and as it was then. It is compared
    // again once its row is locked, for another desk may have paid, voided or held it meanwhile.
    while (!item.at_eof() && !is_as_listed(item, paid))
        item.MoveNext();
    if (!item.at_eof()) item.Edit();
    if (item.at_eof() || !is_as_listed(item, paid)) return refuse(has_changed(paid.docno, paid.pay_item));
    const ItemAmounts& amounts = paid.amounts;
    item.set("open_amount", paid.net_balance);
    add(item, "paid_amount", amounts.sum());
    if (amounts.discount > 0) add(item, "discount_taken", amounts.discount);
    if (amounts.writeoff > 0) add(item, "writeoff", amounts.writeoff);
    if (paid.net_balance == 0) item.set("paid", true);
    item.Update();
    mark_paid_document(item);
    return true;
}

void PaidItems::set_flags(const PaidDocument& document, const std::string& company, Flags flags) {
    const auto write = [&](std::string_view set) {
        kernel().database().Execute(
            fmt::format("UPDATE AP_header_table SET {} WHERE fkey = {}", set, quoted(document.fkey)));
        if (document.source_docno.empty()) return;
        kernel().database().Execute(
            fmt::format("UPDATE PO_invoice_header_table SET {} WHERE company = {} AND docno = {}", set,
                        company, quoted(document.source_docno)));
    };
    write_flags(
        kernel(), [&] { return flags(kernel(), document.fkey); }, write);
}

// A document of purchasing follows only when it is one of its bills; a void asks for no source.
void PaidItems::mark_paid_document(const Recordset& item) {
    const PaidDocument document{item.text("fkey"),
                                item.text("Source") == "PO-BILL" ? item.text("source_docno") : std::string{}};
    set_flags(document, quoted(item.text("company")), flags_when_paid);
}

// Each document is closed when the lines go on to another one.
void PaidItems::give_back(const std::string& payment_fkey) {
    auto lines = kernel().read(fmt::format(
        "SELECT * FROM Payment_transaction_table WHERE fkey = {} ORDER BY item_no", quoted(payment_fkey)));
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

void PaidItems::give_back_line(const Recordset& line, PaidDocument& document) {
    auto item =
        kernel().find_to_change("AP_transaction_table", {{"company", "1"}, {"docno", line.text("ap_docno")}});
    // Numbers may repeat: the vendor's own item is meant, first of all one that is as the payment left it.
    const std::string own = "[pay_item] = " + store::shortest_number(line.number("pay_item")) +
                            " AND [vendor_no] = " + quoted(line.text("vendor_no"));
    item.FindFirst(fmt::format("{} AND [gross_amount] = {} AND [open_amount] = {}", own,
                               store::shortest_number(line.number("gross_amount")),
                               store::shortest_number(line.number("balance"))));
    if (item.NoMatch()) item.FindFirst(own);
    if (item.NoMatch()) return;
    document = {item.text("fkey"), item.text("source_docno")};
    const double back =
        Round(line.number("pay_amount") + line.number("discount_taken") + line.number("writeoff"));
    item.Edit();
    add(item, "open_amount", back);
    add(item, "paid_amount", 0 - line.number("pay_amount"));
    add(item, "discount_taken", 0 - line.number("discount_taken"));
    add(item, "writeoff", 0 - line.number("writeoff"));
    item.set("paid", false);
    item.Update();
}

void PaidItems::reopen_document(const PaidDocument& document) {
    if (document.fkey.empty()) return;
    set_flags(document, "1", flags_when_given_back);
}

// What waited for a purchase order waits no longer. A void does not bring the order back.
void PaidItems::update_prepayment_status(const std::string& payment_fkey, bool is_void) {
    auto lines =
        kernel().read(fmt::format("SELECT ap_docno FROM Payment_transaction_table WHERE fkey = {} AND "
                                  "ap_doctype = 'pp' ORDER BY item_no",
                                  quoted(payment_fkey)));
    for (; !lines.at_eof(); lines.MoveNext()) {
        const std::string docno = lines.text("ap_docno");
        auto prepayment = kernel().find_to_change("Payment_header_table",
                                                  {{"company", "1"}, {"docno", docno}, {"doctype", "pp"}});
        if (prepayment.at_eof()) continue;
        const bool waited = !is_void && !prepayment.text("po_no").empty();
        prepayment.Edit();
        if (waited) prepayment.set("po_no", "");
        prepayment.set("invoiced", !is_void);
        prepayment.Update();
        if (!waited) continue;
        kernel().database().Execute("DELETE * FROM Prepayment_waiting_PO_table WHERE prepayment_no = " +
                                    quoted(docno));
    }
}

}  // namespace brimley::payments
