#include "kernel/tables/company_tables.h"

#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

std::vector<store::Table> all_tables() {
    std::vector<store::Table> all;
    for (auto subject : {user_tables, master_tables, calendar_tables, tax_tables, counter_tables,
                         ledger_tables, sister_module_tables, invoice_tables, payment_tables,
                         revaluation_tables, presentation_tables, trust_tables}) {
        for (store::Table& table : subject()) {
            all.push_back(std::move(table));
        }
    }
    return all;
}

}  // namespace

const store::Catalog& company_tables() {
    static const store::Catalog catalog(all_tables());
    return catalog;
}

}  // namespace brimley::kernel
