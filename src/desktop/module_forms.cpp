#include "desktop/module_forms.h"

namespace brimley::desktop {

namespace {

constexpr ModuleForm kForms[] = {
    {"APform_invoice", "&Invoices", [](host::APclass& ap) { ap.showform_APform_invoice(); }},
    {"APform_payment", "&Payments", [](host::APclass& ap) { ap.showform_APform_payment(); }},
    {"APform_prepayment", "P&repayments", [](host::APclass& ap) { ap.showform_APform_prepayment(); }},
    {"APform_misc_payment", "&Miscellaneous payments", [](host::APclass& ap) { ap.showform_APform_misc(); }},
    {"APform_creditcard_payment", "&Credit card payments",
     [](host::APclass& ap) { ap.showform_APform_creditcard_payment(); }},
    {"APform_void_check", "&Void check", [](host::APclass& ap) { ap.showform_APform_void_check(); }},
    {"APreport_recur_inquiry", "Recurring invoices &due",
     [](host::APclass& ap) { ap.showform_APreport_recur_inquiry(); }},
    {"APform_revalue", "Reva&luation", [](host::APclass& ap) { ap.showform_APform_revalue(); }},
    {"APreport_aging", "Vendor &aging", [](host::APclass& ap) { ap.showform_APform_aging(); }},
    {"APreport_inquiry", "Invoice in&quiry", [](host::APclass& ap) { ap.showform_APform_inquiry(); }},
    {"APreport_payhistory", "Payment &history", [](host::APclass& ap) { ap.showform_APform_payhistory(); }},
};

}  // namespace

std::span<const ModuleForm> module_forms() { return kForms; }

}  // namespace brimley::desktop
