// GL documents, the two balance tables, and the few tables of sister modules that this module touches.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

// One family of Balance_period_table: opening balance, thirteen periods, adjustment, closing, thirteen
// running balances and the year's total. The prefix "e_" makes the base-currency family.
void add_balance_family(TableBuilder& table, const std::string& prefix) {
    using store::FieldType;
    table.number({(prefix + "opening_balance").c_str()});
    if (prefix.empty()) {
        // Two of the plain columns have a capital letter.
        table.number({"period1", "Period2", "Period3"});
        for (int period = 4; period <= 13; ++period) {
            table.number({("period" + std::to_string(period)).c_str()});
        }
    } else {
        table.numbered(prefix + "period", 13, FieldType::number);
    }
    table.number({(prefix + "adjust").c_str(), (prefix + "closing").c_str()});
    table.numbered(prefix + "balperiod", 13, FieldType::number);
    table.number({(prefix + "ytd_balance").c_str()});
}

store::Table balance_period_table() {
    TableBuilder table("Balance_period_table");
    table.text({"fyear"}).number({"company"}).text({"ledgertype", "accno", "Currency"}).account_segments();
    add_balance_family(table, "");
    add_balance_family(table, "e_");
    return table.key({"fyear", "company", "ledgertype", "accno", "Currency"})
        .index({"fyear", "company", "accno", "ledgertype", "Currency"})
        .index({"fyear", "company", "accno"})  // Current Earnings: the row made first, without a sort
        .index({"company", "accno", "ledgertype", "Currency"});
}

}  // namespace

std::vector<store::Table> ledger_tables() {
    return {
        TableBuilder("GL_header_table")
            .number({"company"})
            .text({"doctype", "docno", "fkey"})
            .datetime({"gldate"})
            .text({"remark", "Source", "source_docno", "source_form", "Currency"})
            .number({"exchange_rate"})
            .text({"period", "fyear"})
            .yes_no({"Reverse"})
            .text({"Description", "user_created"})
            .date({"date_created"})
            .text({"time_created", "ledgertype"})
            .along("GL document", "docno")
            .ordered_by({"fkey"})
            .index({"fkey"}),

        TableBuilder("GL_transaction_table")
            .number({"company"})
            .text({"fkey", "docno"})
            .datetime({"gldate"})
            .text({"period", "fyear"})
            .integer({"lineno"})
            .text({"accno"})
            .account_segments()
            .number({"amount", "base_amount"})
            .text({"Currency", "ledgertype"})
            .number({"exchange_rate"})
            .text({"vendor_no", "Source", "source_form", "source_docno"})
            .date({"date_created"})
            .text({"time_created", "user_created", "userid", "fiscalyear", "Month", "Year"})
            .along("GL document", "docno")
            .ordered_by({"fkey", "lineno"})
            .index({"fkey", "lineno"}),

        TableBuilder("Balance_table")
            .number({"company"})
            .text({"ledgertype", "accno", "Currency"})
            .account_segments()
            .number({"amount", "base_amount"})
            .key({"company", "ledgertype", "accno", "Currency"})
            .index({"company", "accno", "ledgertype", "Currency"})
            .index({"company", "accno"}),  // Current Earnings: the row made first, without a sort

        balance_period_table(),
    };
}

std::vector<store::Table> sister_module_tables() {
    return {
        TableBuilder("PO_header_table")
            .text({"docno"})
            .yes_no({"received", "void"})
            .text({"vendor_no"})
            .ordered_by({"docno"})
            .index({"vendor_no"}),

        TableBuilder("PO_invoice_header_table")
            .number({"company"})
            .text({"docno"})
            .yes_no({"paid", "fully_paid"})
            .ordered_by({"company", "docno"})
            .index({"company", "docno"}),

        TableBuilder("AR_transaction_table")
            .text({"docno"})
            .number({"open_amount"})
            .yes_no({"paid"})
            .ordered_by({"docno"})
            .index({"docno"}),
    };
}

}  // namespace brimley::kernel
