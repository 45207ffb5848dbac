// Recurring templates put straight into a company, and the list from which they are issued.
#pragma once

#include <string>
#include <vector>

#include "invoices/recurring_run/apreport_recur_inquiry.h"
#include "support/sample_host.h"

namespace brimley::testing {

struct TemplateLine {
    double gross;
    double taxable;
    double tax;
    const char* tax_code;
    const char* account = "6100";
    bool include_tax = false;
};

// One that is due in every month of 2026.
struct StoredTemplate {
    int number = 1;
    const char* vendor = "V1001";
    std::vector<TemplateLine> lines = {{100, 100, 0, ""}};
    store::Value recur_date = 5;
    const char* frequency = "monthly";
};

inline std::string key_of(const StoredTemplate& stored) { return "1recur-" + std::to_string(stored.number); }

inline void add_template(CompanyCopy& company, const StoredTemplate& stored) {
    const std::string number = std::to_string(stored.number);
    company.add("AP_recur_header_table", {{"recurno", "REC-26-" + number},
                                          {"recur_name", "Rent " + number},
                                          {"fkey", key_of(stored)},
                                          {"company", 1},
                                          {"doctype", "recur"},
                                          {"vendor_no", stored.vendor},
                                          {"Currency", "USD"},
                                          {"payment_term", "10"},
                                          {"recur_date", stored.recur_date},
                                          {"Frequency", stored.frequency},
                                          {"begin_date", "20260101"},
                                          {"end_date", "20261231"}});
    int pay_item = 0;
    for (const TemplateLine& line : stored.lines)
        company.add("AP_recur_transaction_table", {{"fkey", key_of(stored)},
                                                   {"pay_item", ++pay_item},
                                                   {"gross_amount", line.gross},
                                                   {"open_amount", line.gross},
                                                   {"taxable_amount", line.taxable},
                                                   {"tax_amount", line.tax},
                                                   {"tax_code", line.tax_code},
                                                   {"po_accno", line.account},
                                                   {"include_tax", line.include_tax}});
}

// Shows the list of templates and lists those that are due.
inline invoices::APreport_recur_inquiry& list_due(DeskOfUser& user) {
    user.ap.showform_APreport_recur_inquiry();
    auto& form = *user.ap.frm_recur_inquiry;
    EXPECT_EQ(form.press(invoices::kListDue), controls::Refusal::none);
    return form;
}

inline void generate(invoices::APreport_recur_inquiry& form) {
    EXPECT_EQ(form.press(invoices::kGenerate), controls::Refusal::none);
}

}  // namespace brimley::testing
