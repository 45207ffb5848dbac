// Fiscal years and periods, currencies and rates, payment terms, taxes, and the document counters.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

std::vector<store::Table> calendar_tables() {
    return {
        TableBuilder("Fiscalyear_table")
            .text({"fyear"})
            .date({"StartDate", "EndDate"})
            .yes_no({"history"})
            .indexed_key({"fyear"}),

        // Exported by date, not by key: rows are scanned in table order, and "10" would stand before "2".
        TableBuilder("Period_table")
            .text({"fyear", "period", "StartDate", "EndDate"})
            .indexed_key({"fyear", "period"})
            .ordered_by({"fyear", "StartDate", "period"}),

        TableBuilder("Working_currency_table").text({"Currency", "description"}).indexed_key({"Currency"}),

        TableBuilder("Exchange_rate_table")
            .text({"currency"})
            .date({"rate_date"})
            .number({"Rate"})
            .indexed_key({"currency", "rate_date"}),

        TableBuilder("Payment_term_table")
            .text({"term_no", "term_name"})
            .number({"duedays", "early_days"})
            .text({"payment_term"})
            .number({"early_discount"})
            .yes_no({"default"})
            .text({"Description"})
            .indexed_key({"term_no"}),
    };
}

std::vector<store::Table> tax_tables() {
    return {
        TableBuilder("Tax_code_table")
            .text({"tax_code", "transaction_type"})
            .yes_no({"default"})
            .text({"Description"})
            .indexed_key({"tax_code", "transaction_type"})
            .index({"tax_code"}),

        TableBuilder("Tax_code_details_table")
            .text({"tax_code", "transaction_type", "item_no", "tax_authority"})
            .yes_no({"taxable"})
            .number({"percent_refund"})
            .yes_no({"include_itemcost"})
            .indexed_key({"tax_code", "transaction_type", "item_no"}),

        // percent_refund and include_itemcost stand here too; the details of a tax code decide.
        TableBuilder("Tax_authority_table")
            .text({"tax_authority"})
            .number({"Rate", "min_charged", "max_charged"})
            .text({"acc_recoverable", "acc_expense"})
            .number({"percent_refund"})
            .yes_no({"include_itemcost"})
            .indexed_key({"tax_authority"}),
    };
}

std::vector<store::Table> counter_tables() {
    return {
        TableBuilder("Docno_master_table")
            .number({"company"})
            .text({"doctype", "fiscalyear"})
            .number({"nextdocno"})
            .unique_key({"company", "doctype", "fiscalyear"})
            .index({"fiscalyear"}),

        TableBuilder("Next_number_fkey_table")
            .number({"company"})
            .text({"doctype"})
            .number({"fkeyno"})
            .unique_key({"company", "doctype"}),

        // The separators have these names in every module of the suite.
        TableBuilder("Next_number_config_table")
            .text({"structure"})
            .number({"fyear_digit"})
            .yes_no({"seperator1", "seperator2"})
            .single_row(),

        TableBuilder("Next_number_format_table")
            .text({"doctype", "prefix", "running_no_digit"})
            .unique_key({"doctype"}),
    };
}

}  // namespace brimley::kernel
