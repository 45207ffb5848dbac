// Users, vendors, the chart of accounts and what hangs on it, banks and cards.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

std::vector<store::Table> user_tables() {
    return {
        TableBuilder("User_right_table")
            .text({"form", "userid"})
            .yes_no({"Update", "Print", "form_design"})
            .indexed_key({"form", "userid"}),

        TableBuilder("Form_property_table")
            .text({"userid", "form"})
            .nullable_yes_no({"toolbar_text", "Fontbar"})
            .indexed_key({"userid", "form"}),

        TableBuilder("Recent_value_table")
            .text({"form_name", "control_name", "Value"})
            .indexed_key({"form_name", "control_name"}),
    };
}

std::vector<store::Table> master_tables() {
    return {
        TableBuilder("Vendor_table")
            .text({"vendor_no", "VENDOR_NAME", "Currency", "ap_accno", "Payment_accno", "prepayment_accno"})
            .number({"owing_balance"})
            .text({"vendor_group", "address"})
            .indexed_key({"vendor_no"})
            .index({"VENDOR_NAME"}),

        TableBuilder("Account_master_table")
            .text({"accno", "accname", "type", "accclass", "acctype"})
            .yes_no({"debit", "inactive"})
            .account_segments()
            .indexed_key({"accno"})
            .index({"type"})
            .index({"accclass", "type"}),

        TableBuilder("Account_class_table").text({"class_name", "parent"}).indexed_key({"class_name"}),

        TableBuilder("Account_currency_table")
            .text({"accno", "Currency", "Description"})
            .yes_no({"revalue"})
            .text({"unrealised_gain_accno", "unrealised_loss_accno"})
            .indexed_key({"accno", "Currency"}),

        TableBuilder("Account_Parameters_table")
            .text({"module", "parameter_name"})
            .yes_no({"default"})
            .text({"accno"})
            .unique_key({"module", "parameter_name", "default"}),

        TableBuilder("Allocation_Account_table")
            .text({"allocate_accno", "accno"})
            .number({"Percent"})
            .indexed_key({"allocate_accno", "accno"})
            .index({"allocate_accno"}),

        TableBuilder("COA_config_table")
            .text({"Currency"})
            .yes_no({"activate_working_period"})
            .text({"working_start_fyear", "working_end_fyear", "working_start_period", "working_end_period"})
            .text({"allow_start_fyear", "allow_end_fyear", "allow_start_period", "allow_end_period"})
            .yes_no({"allow_history_update"})
            .single_row(),

        TableBuilder("Bank_master_table")
            .text({"bank_code", "bank_name", "bank_branch", "bank_account_type", "account_no"})
            .indexed_key({"bank_code"}),

        TableBuilder("Credit_card_master_table")
            .text({"card_name", "payable_accno"})
            .yes_no({"used"})
            .text({"account_no"})
            .indexed_key({"card_name"}),
    };
}

}  // namespace brimley::kernel
