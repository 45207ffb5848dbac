// Open items in foreign currency, and a run that values them, entered as a user does.
#pragma once

#include "revaluation/apform_revalue.h"
#include "support/sample_host.h"

namespace brimley::testing {

inline const store::DateTime kDayOfItems = store::DateTime::from_ymd(2026, 3, 2).value();

// An item as another program has stored it.
inline void add_open_item(CompanyCopy& company, const char* vendor_no, const std::string& docno,
                          double open_amount, double exchange_rate, const char* currency = "EUR",
                          store::DateTime invoice_date = kDayOfItems) {
    company.add("AP_transaction_table", {{"vendor_no", vendor_no},
                                         {"docno", docno},
                                         {"pay_item", 1},
                                         {"invoice_date", invoice_date},
                                         {"Currency", currency},
                                         {"open_amount", open_amount},
                                         {"exchange_rate", exchange_rate},
                                         {"paid", false},
                                         {"void", false}});
}

// The example of the books: a loss of 50, one of 10 on a negative item, and a gain of 15, at 1.25.
inline void add_three_items(CompanyCopy& company) {
    add_open_item(company, "V2001", "A", 1000, 1.2);
    add_open_item(company, "V2001", "B", -200, 1.3);
    add_open_item(company, "V2001", "C", 300, 1.3);
}

inline void select_items(revaluation::APform_revalue& form, int row, const char* currency, const char* rate) {
    const auto type = [&](const char* caption, const char* text) {
        EXPECT_EQ(form.dbgridcmd.edit_cell(row, form.dbgridcmd.get_column(caption), text),
                  controls::Refusal::none)
            << caption;
    };
    type("currency", currency);
    type("rate", rate);
    type("every vendor", "True");
}

// A run of every vendor's euro, found and not saved.
inline revaluation::APform_revalue& enter_revaluation(DeskOfUser& user) {
    user.ap.showform_APform_revalue();
    auto& form = *user.ap.frm_revalue;
    EXPECT_EQ(form.press(105), controls::Refusal::none);
    select_items(form, 0, "EUR", "1.25");
    EXPECT_EQ(form.txtdesc.type("quarter"), controls::Refusal::none);
    EXPECT_EQ(form.press(104), controls::Refusal::none);
    return form;
}

}  // namespace brimley::testing
