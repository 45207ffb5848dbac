#include "company/one_line_payments.h"

#include <unordered_map>
#include <unordered_set>

#include "company/voided_checks.h"

namespace brimley::company {

namespace {

using store::Recordset;

// The keys of payments that were voided in the list of checks.
std::unordered_set<std::string> voided_as_checks(const Books& books) {
    const VoidedChecks voided(books);
    std::unordered_set<std::string> keys;
    books.each_payment([&](const PaymentHeader& payment) {
        if (voided.contains(payment)) keys.insert(payment.fkey);
    });
    return keys;
}

using PaymentsByKey = std::unordered_map<std::string, std::size_t>;  // places in the list

std::vector<OneLinePayment> headers(const Books& books) {
    std::vector<OneLinePayment> payments;
    // A card payment does not name its form.
    Recordset rows = books.read(
        "SELECT fkey,doctype,docno,vendor_no,Currency,GLFKEY,cash_accno,prepayment_accno,expense_accno,po_no,"
        "payment_amount,card_balance,fee_amount,invoiced,void FROM Payment_header_table WHERE doctype = 'pc' "
        "OR source_form = 'APform_prepayment' ORDER BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (rows.column(1).text() == "pc" && rows.column(5).is_null()) continue;
        const auto text = [&](int column) { return rows.column(column).text(); };
        OneLinePayment payment{text(0), text(1), text(2), text(3), text(4),
                               text(5), text(6), text(7), text(8), text(9)};
        payment.amount = rows.column(10).number();
        payment.card_balance = rows.column(11).number();
        payment.fee = rows.column(12).number();
        payment.invoiced = rows.column(13).flag();
        payment.is_void = rows.column(14).flag();
        payments.push_back(std::move(payment));
    }
    return payments;
}

void add_lines(const Books& books, std::vector<OneLinePayment>& payments, const PaymentsByKey& by_fkey,
               const PaymentsByKey& by_docno) {
    books.each_payment_line([&](const PaymentLine& line) {
        if (const auto own = by_fkey.find(line.fkey); own != by_fkey.end())
            payments[own->second].lines.push_back(line);
        if (line.ap_doctype != "pp") return;
        const auto applied = by_docno.find(line.ap_docno);
        if (applied == by_docno.end()) return;
        OneLinePayment& prepayment = payments[applied->second];
        ++(line.is_void ? prepayment.applied_void : prepayment.applied);
    });
}

void add_items(const Books& books, std::vector<OneLinePayment>& payments, const PaymentsByKey& by_fkey) {
    Recordset rows = books.read(
        "SELECT fkey,docno,vendor_no,Currency,gross_amount,open_amount,void,date_lastmodified FROM "
        "AP_transaction_table WHERE doctype = 'pp'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const auto own = by_fkey.find(rows.column(0).text());
        if (own == by_fkey.end()) continue;
        payments[own->second].items.push_back(
            {rows.column(1).text(), rows.column(2).text(), rows.column(3).text(), rows.column(4).number(),
             rows.column(5).number(), rows.column(6).flag(), !rows.column(7).is_null()});
    }
}

std::vector<WaitingOrder> waiting_orders(const Books& books) {
    std::vector<WaitingOrder> orders;
    Recordset rows =
        books.read("SELECT po_no,prepayment_no,prepayment_fkey,amount FROM Prepayment_waiting_PO_table");
    for (; !rows.at_eof(); rows.MoveNext())
        orders.push_back(
            {rows.column(0).text(), rows.column(1).text(), rows.column(2).text(), rows.column(3).number()});
    return orders;
}

}  // namespace

std::vector<OneLinePayment> one_line_payments(const Books& books) {
    std::vector<OneLinePayment> payments = headers(books);
    const auto as_checks = voided_as_checks(books);
    PaymentsByKey by_fkey;
    PaymentsByKey by_docno;  // of prepayments
    for (std::size_t i = 0; i < payments.size(); ++i) {
        by_fkey[payments[i].fkey] = i;
        payments[i].voided_as_check = as_checks.contains(payments[i].fkey);
        if (!payments[i].is_prepayment()) continue;
        const auto [first, is_new] = by_docno.try_emplace(payments[i].docno, i);
        if (!is_new) payments[i].number_repeats = payments[first->second].number_repeats = true;
    }
    add_lines(books, payments, by_fkey, by_docno);
    add_items(books, payments, by_fkey);
    for (const WaitingOrder& order : waiting_orders(books)) {
        const auto own = by_fkey.find(order.prepayment_fkey);
        if (own != by_fkey.end()) payments[own->second].waiting.push_back(order);
    }
    return payments;
}

std::vector<WaitingOrder> waiting_for_nobody(const Books& books) {
    std::unordered_set<std::string> keys;
    books.each_payment([&](const PaymentHeader& payment) {
        if (payment.doctype == "pp") keys.insert(payment.fkey);
    });
    std::vector<WaitingOrder> orders = waiting_orders(books);
    std::erase_if(orders, [&](const WaitingOrder& order) { return keys.contains(order.prepayment_fkey); });
    return orders;
}

}  // namespace brimley::company
