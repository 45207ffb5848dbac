// Invoices, debit and credit notes, and the templates of recurring invoices.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

store::Table ap_header_table() {
    return TableBuilder("AP_header_table")
        .text({"fkey", "docno", "company", "doctype", "invoice_no"})
        .date({"invoice_date"})
        .text({"vendor_no", "Currency"})
        .number({"exchange_rate"})
        .date({"rate_date"})
        .text({"remark", "payment_term"})
        .number({"duedays", "early_days", "early_discount"})
        .date({"due_date", "discount_date"})
        .text({"Source", "source_docno", "source_form"})
        .number({"period"})
        .text({"fyear", "GLFKEY", "recurno", "user_created"})
        .date({"date_created"})
        .text({"time_created"})
        .date({"date_lastmodified"})
        .text({"time_lastmodified"})
        .yes_no({"fully_paid", "paid", "printed", "void", "hold"})
        // Only generated invoices have these three.
        .date({"gldate"})
        .text({"Month", "Year"})
        .document("invoice", "docno")
        .unwatched({"GLFKEY", "fully_paid", "paid"})
        .ordered_by({"fkey"})
        .index({"fkey"})
        .index({"docno"})
        .index({"doctype", "fully_paid", "void", "docno"})
        .index({"recurno", "Year", "Month"})
        .index({"invoice_no"})
        .index({"vendor_no"});
}

store::Table ap_transaction_table() {
    TableBuilder table("AP_transaction_table");
    table.text({"fkey", "docno", "doctype", "company", "vendor_no", "invoice_no"})
        .date({"invoice_date"})
        .text({"Currency"})
        .number({"exchange_rate"})
        .text({"payment_term"})
        .number({"duedays", "early_days", "early_discount"})
        .date({"due_date", "discount_date"})
        .text({"Source", "source_docno", "source_form"})
        .number({"period"})
        .text({"fyear", "pay_item", "Description"})
        .number({"gross_amount", "open_amount", "taxable_amount", "tax_amount"})
        .text({"tax_code", "po_accno", "ap_accno"})
        .yes_no({"include_tax"})
        .number({"discount_available", "discount_taken", "writeoff", "paid_amount"})
        .yes_no({"paid", "void", "hold"})
        .text({"computer_id", "user_created"})
        .date({"date_created"})
        .text({"time_created", "user_updated"})
        .date({"date_lastmodified"})
        .text({"time_lastmodified"});
    add_tax_slots(table);
    // Only generated invoices have these; userid and form_name stand for user_created and source_form there.
    table.date({"gldate"}).text({"Month", "Year", "userid", "form_name"});
    return table.document("invoice", "docno")
        .unwatched({"open_amount", "discount_taken", "writeoff", "paid_amount", "paid"})
        .ordered_by({"fkey", "pay_item"})
        .index({"fkey"})
        .index({"docno"})
        .index({"vendor_no", "paid", "void", "hold"})
        .index_where_false({"paid", "void"}, {"vendor_no", "docno", "pay_item"})
        .index({"Currency", "paid"})
        .index({"invoice_no"});
}

store::Table ap_recur_header_table() {
    return TableBuilder("AP_recur_header_table")
        .text({"recurno", "recur_name", "fkey", "company", "doctype", "vendor_no", "Currency", "payment_term",
               "remark"})
        .number({"recur_date"})
        // Texts "yyyymmdd", compared as text.
        .text({"Frequency", "begin_date", "end_date"})
        .number({"no_invoice", "no_issue"})
        .yes_no({"inactive"})
        .date({"date_created"})
        .document("recurring invoice", "recurno")
        .ordered_by({"fkey"})
        .index({"fkey"})
        .index({"recurno", "company"})
        .index({"vendor_no"})
        .index({"end_date"});
}

store::Table ap_recur_transaction_table() {
    return TableBuilder("AP_recur_transaction_table")
        .text({"fkey", "company", "vendor_no", "Currency", "payment_term", "pay_item"})
        .number({"gross_amount", "open_amount", "taxable_amount", "tax_amount"})
        .text({"tax_code", "po_accno"})
        .date({"date_created"})
        .text({"time_created", "user_created", "Description"})
        .yes_no({"include_tax"})
        .along("recurring invoice", "fkey")
        .ordered_by({"fkey", "pay_item"})
        .index({"fkey"});
}

}  // namespace

std::vector<store::Table> invoice_tables() {
    return {ap_header_table(), ap_transaction_table(), ap_recur_header_table(), ap_recur_transaction_table()};
}

}  // namespace brimley::kernel
