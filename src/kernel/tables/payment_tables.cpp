// Payments of every kind, prepayments waiting for a purchase order, and the matching rows.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

store::Table payment_header_table() {
    return TableBuilder("Payment_header_table")
        .number({"company"})
        .text({"docno", "fkey", "doctype", "vendor_no", "remit_to"})
        .date({"payment_date"})
        .text({"Currency"})
        .number({"exchange_rate"})
        .date({"rate_date"})
        .text({"payby", "cash_accno", "bank_code", "check_no"})
        .date({"check_date"})
        .text({"bank_accno", "remark"})
        .number({"payment_amount", "payment_base_amount", "total_amount", "total_base_amount"})
        .text({"total_currency", "po_no", "prepayment_accno"})
        .yes_no({"invoiced"})
        .text({"Source", "source_docno"})
        .number({"card_balance", "fee_amount"})
        .text({"expense_accno", "period", "fyear", "source_form"})
        .date({"date_created"})
        .text({"time_created", "user_created", "GLFKEY"})
        .yes_no({"printed", "void"})
        .date({"void_date"})
        .document("payment", "docno")
        .unwatched({"GLFKEY"})
        .ordered_by({"fkey"})
        .index({"fkey"})
        .index({"company", "docno"})
        .index({"vendor_no", "payby", "void", "check_date"})
        .index({"payby", "void", "check_date"});
}

store::Table payment_transaction_table() {
    return TableBuilder("Payment_transaction_table")
        .text({"fkey", "docno"})
        .number({"company"})
        .text({"vendor_no"})
        .date({"payment_date"})
        .number({"item_no"})
        .text({"ap_docno"})
        .number({"pay_item"})
        .text({"ap_doctype", "invoice_no"})
        .date({"invoice_date"})
        .number({"gross_amount", "open_amount", "pay_amount", "discount_available", "discount_taken",
                 "writeoff", "balance"})
        .text({"discount_accno", "writeoff_accno", "prepay_accno", "Currency"})
        .number({"invoice_exchange_rate", "payment_exchange_rate", "pay_base_amount"})
        .text({"remark"})
        .date({"date_created"})
        .text({"time_created", "user_created", "computer_id"})
        .yes_no({"void"})
        .document("payment", "docno")
        .ordered_by({"fkey", "item_no"})
        .index({"fkey"})
        .index({"invoice_no", "company"})
        .index({"ap_docno"})
        .index({"vendor_no"});
}

store::Table payment_misc_transaction_table() {
    TableBuilder table("Payment_misc_transaction_table");
    table.text({"fkey", "docno"})
        .number({"company"})
        .date({"payment_date"})
        .number({"pay_item", "pay_amount"})
        .text({"account"})
        .yes_no({"include_tax"})
        .text({"tax_code"})
        .number({"tax_amount"})
        .text({"description", "Reference"})
        .date({"date_created"})
        .text({"time_created", "computer_id"});
    add_tax_slots(table);
    return table.yes_no({"void"})
        .document("payment", "docno")
        .ordered_by({"fkey", "pay_item"})
        .index({"fkey"});
}

store::Table ap_matching_table() {
    return TableBuilder("AP_matching_table")
        .text({"matching_no"})
        .datetime({"matching_date"})
        .number({"lineno", "company"})
        // invoice_date is a text "yyyymmdd" here.
        .text({"invoice_no", "invoice_date"})
        .number({"pay_item", "invoice_gross", "invoice_open", "invoice_pay", "invoice_balance", "discount"})
        .text({"discount_account"})
        .number({"writeoff"})
        .text({"writeoff_account", "deposit_no"})
        .number({"deposit_payitem", "deposit_gross", "deposit_open", "deposit_pay", "deposit_balance"})
        .text({"receipt_no"})
        .number({"receipt_open", "receipt_pay", "receipt_balance"})
        .along("matching", "matching_no")
        .ordered_by({"matching_no", "lineno"});
}

}  // namespace

std::vector<store::Table> payment_tables() {
    return {
        payment_header_table(),
        payment_transaction_table(),
        payment_misc_transaction_table(),

        TableBuilder("Prepayment_waiting_PO_table")
            .text({"po_no", "prepayment_no", "prepayment_fkey"})
            .number({"amount"})
            .along("prepayment", "prepayment_no")
            .ordered_by({"prepayment_no"})
            .index({"prepayment_no"})
            .index({"prepayment_fkey"}),

        ap_matching_table(),
    };
}

}  // namespace brimley::kernel
