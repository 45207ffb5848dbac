// An invoice that is being generated, for those who write it and post it.
#pragma once

#include <string>

#include "kernel/module_g3.h"

namespace brimley::invoices {

struct GeneratedInvoice {
    std::string company;
    std::string docno;
    std::string fkey;
    store::DateTime gldate;
    kernel::PeriodOfDate period;
    std::string vendor_no;
    std::string Currency;
    std::string payment_term;  // a term_no
};

// A line of the template, read once.
struct GeneratedLine {
    double gross_amount = 0;
    double taxable_amount = 0;
    double tax_amount = 0;
    std::string tax_code;
    bool include_tax = false;
    std::string po_accno;
};

}  // namespace brimley::invoices
