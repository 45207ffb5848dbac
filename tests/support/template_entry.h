// A recurring template, entered as a user would.
#pragma once

#include "support/sample_host.h"

namespace brimley::testing {

// Presses New, ticks the box and fills everything in; the template is not saved yet.
inline void enter_template(invoices::APform_invoice& form) {
    using controls::Refusal;
    EnteredInvoice entry;
    entry.lines = {{"5000", "STACK", "taxable amount", "100.00"}, {"5900", "GST5", "gross amount", "210.00"}};
    enter(form, entry);
    EXPECT_EQ(form.chkrecur.click(true), Refusal::none);
    if (!form.frame_recur.visible()) {
        EXPECT_EQ(form.press(1011), Refusal::none);
    }
    EXPECT_EQ(form.txtrecurname.type("Warehouse rent"), Refusal::none);
    EXPECT_EQ(form.txtrecurdate.type("5"), Refusal::none);
    EXPECT_EQ(form.txtnoinvoice.type("12"), Refusal::none);
    EXPECT_EQ(form.cmbfreq.type("monthly"), Refusal::none);
    EXPECT_EQ(form.txteffectdate.type("01/04/2026"), Refusal::none);
    EXPECT_EQ(form.txtexpiredate.type("31/03/2027"), Refusal::none);
}

}  // namespace brimley::testing
