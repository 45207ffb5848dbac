// The runs that value open foreign-currency items at a new rate.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

std::vector<store::Table> revaluation_tables() {
    return {
        TableBuilder("AP_Revalue_header_table")
            .text({"docno"})
            .number({"company"})
            .text({"fkey"})
            .date({"last_transaction_date", "Date"})
            .text({"period", "fyear", "GLFKEY", "Description"})
            .document("revaluation", "docno")
            .unwatched({"GLFKEY"})
            .ordered_by({"fkey"})
            .index({"fkey"})
            .index({"docno"}),

        // Rate is the text of the cell, as typed.
        TableBuilder("AP_Revalue_transaction_table")
            .text({"docno", "fkey", "Currency", "Rate"})
            .yes_no({"every_vendor"})
            .text({"vendor_group", "vendor_no"})
            .document("revaluation", "docno")
            .ordered_by({"fkey"})
            .index({"fkey"}),

        TableBuilder("AP_Revalue_Result_table")
            .text({"docno", "fkey", "vendor_no", "document_no"})
            .date({"document_date"})
            .text({"Currency"})
            .number({"pay_item", "invoice_amount", "original_rate", "original_base_amount",
                     "unrealized_gain_loss"})
            .number({"new_base_amount", "new_rate"})
            .document("revaluation", "docno")
            .ordered_by({"fkey", "document_no", "pay_item"})
            .index({"fkey"}),

        // Debit is positive here, unlike in GL lines.
        TableBuilder("AP_Revalue_GL_summary_table")
            .text({"docno", "fkey", "accno", "Currency"})
            .number({"amount"})
            .document("revaluation", "docno")
            .ordered_by({"fkey", "accno", "Currency"})
            .index({"fkey"}),
    };
}

}  // namespace brimley::kernel
