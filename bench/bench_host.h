// A host on a company, with the invoice form open and nobody at the screen.
#pragma once

#include <stdexcept>
#include <string>

#include "host/apclass.h"
#include "invoices/apform_invoice.h"
#include "kernel/tables/company_tables.h"
#include "quiet_desk.h"

namespace brimley::bench {

struct BenchHost {
    explicit BenchHost(const std::string& company) {
        const auto open = store::open_company(company, kernel::company_tables());
        ap.dbe = open.workspace;
        ap.abcdb = open.database;
        ap.BASE_CURRENCY = "USD";
        ap.BRIMLEY_USER = "anna";
        ap.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
        ap.BRIMLEY_NO_PERIODS = "12";
        ap.showform_APform_invoice();
    }
    [[nodiscard]] invoices::APform_invoice& form() { return *ap.frm_invoice; }

    QuietDesk desk;
    host::APclass ap{desk};
};

inline void must(controls::Refusal refusal) {
    if (refusal != controls::Refusal::none) throw std::runtime_error("the form refused an act");
}

}  // namespace brimley::bench
