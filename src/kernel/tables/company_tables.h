// The one catalog of the product: every table, field, key and index of a company database.
//
// Whoever opens or creates a company hands this catalog to the store. The tables are shared with the sister
// modules of the suite, so names and types are fixed: the case of a name is the one shown in exports, and
// spellings that look wrong (`seperator1`) are the fields' own.
//
// What the types leave open:
// - The dates of Period_table are texts "yyyymmdd", compared as text; those of Fiscalyear_table are dates.
// - `company` and `pay_item` are text in the invoice tables and numbers everywhere else; queries compare them
// by value.
// - `period` is a number on invoices and a text ("1" to "13", "AD", "CL") in the ledger and on payments.
// - Nothing is unique on `docno` or `fkey`: counters that restart each fiscal year may make the same text
// again.
#pragma once

#include "kernel/store/catalog.h"

namespace brimley::kernel {

// Built once, at the first call; lives as long as the process.
[[nodiscard]] const store::Catalog& company_tables();

}  // namespace brimley::kernel
