#include "desktop/module_forms.h"

#include "masters/master.h"

namespace brimley::desktop {

namespace {

std::vector<ModuleForm> forms_and_masters() {
    using host::APclass;
    constexpr auto kLedger = ModuleForm::Menu::ledger;
    std::vector<ModuleForm> forms{
        {"APform_invoice", "&Invoices", [](APclass& ap) { ap.showform_APform_invoice(); }},
        {"APform_payment", "&Payments", [](APclass& ap) { ap.showform_APform_payment(); }},
        {"APform_prepayment", "P&repayments", [](APclass& ap) { ap.showform_APform_prepayment(); }},
        {"APform_misc_payment", "&Miscellaneous payments", [](APclass& ap) { ap.showform_APform_misc(); }},
        {"APform_creditcard_payment", "&Credit card payments",
         [](APclass& ap) { ap.showform_APform_creditcard_payment(); }},
        {"APform_void_check", "&Void check", [](APclass& ap) { ap.showform_APform_void_check(); }},
        {"APreport_recur_inquiry", "Recurring invoices &due",
         [](APclass& ap) { ap.showform_APreport_recur_inquiry(); }},
        {"APform_revalue", "Reva&luation", [](APclass& ap) { ap.showform_APform_revalue(); }},
        {"APreport_aging", "Vendor &aging", [](APclass& ap) { ap.showform_APform_aging(); }},
        {"APreport_inquiry", "Invoice in&quiry", [](APclass& ap) { ap.showform_APform_inquiry(); }},
        {"APreport_payhistory", "Payment &history", [](APclass& ap) { ap.showform_APform_payhistory(); }},
        {"Ledger_entry", "Journal &entries", [](APclass& ap) { ap.showform_Ledger_entry(); }, kLedger},
        {"Ledger_journal", "&Journal", [](APclass& ap) { ap.showform_Ledger_journal(); }, kLedger},
        {"Ledger_trial_balance", "&Trial balance", [](APclass& ap) { ap.showform_Ledger_trial_balance(); },
         kLedger},
    };
    for (const masters::Master& master : masters::all_masters()) {
        const std::string class_name = master.identity.class_name;
        forms.push_back({class_name, master.identity.caption,
                         [class_name](APclass& ap) { ap.showform_Master(class_name); },
                         ModuleForm::Menu::masters});
    }
    return forms;
}

}  // namespace

const std::vector<ModuleForm>& module_forms() {
    static const std::vector<ModuleForm> kForms = forms_and_masters();
    return kForms;
}

}  // namespace brimley::desktop
