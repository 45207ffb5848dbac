// The methods of APclass as a table of names.
#include <map>

#include "host/apclass.h"

namespace brimley::host {

namespace {

using Arguments = std::vector<std::string>;
using Optional = std::optional<std::string>;

struct Method {
    std::size_t arguments_min;
    std::size_t arguments_max;
    std::function<void(APclass&, const Arguments&)> run;
};

Method method(void (APclass::*member)()) {
    return {0, 0, [member](APclass& ap, const Arguments&) { (ap.*member)(); }};
}

Method method(void (APclass::*member)(const Optional&)) {
    return {0, 1, [member](APclass& ap, const Arguments& given) {
                (ap.*member)(given.empty() ? Optional{} : Optional{given[0]});
            }};
}

Method method(void (APclass::*member)(const std::string&)) {
    return {1, 1, [member](APclass& ap, const Arguments& given) { (ap.*member)(given[0]); }};
}

Method method(void (APclass::*member)(const std::string&, const Optional&)) {
    return {1, 2, [member](APclass& ap, const Arguments& given) {
                (ap.*member)(given[0], given.size() < 2 ? Optional{} : Optional{given[1]});
            }};
}

Method method(void (APclass::*member)(std::string)) {
    return {1, 1, [member](APclass& ap, const Arguments& given) { (ap.*member)(given[0]); }};
}

Method method(void (APclass::*member)(const std::string&, const std::string&)) {
    return {2, 2, [member](APclass& ap, const Arguments& given) { (ap.*member)(given[0], given[1]); }};
}

Method method(void (APclass::*member)(const std::string&, const std::string&, const std::string&)) {
    return {3, 3,
            [member](APclass& ap, const Arguments& given) { (ap.*member)(given[0], given[1], given[2]); }};
}

#define BRIMLEY_METHOD(name) \
    { #name, method(&APclass::name) }

const std::map<std::string, Method>& methods() {
    static const std::map<std::string, Method> kMethods{
        BRIMLEY_METHOD(OPENdb),
        BRIMLEY_METHOD(basecurrency),
        BRIMLEY_METHOD(BRuser),
        {"BRtheme", {1, 1, [](APclass& ap, const Arguments& given) { ap.BRtheme(given[0]); }}},
        BRIMLEY_METHOD(showform_APform_invoice),
        BRIMLEY_METHOD(showform_APform_payment),
        BRIMLEY_METHOD(showform_APform_prepayment),
        BRIMLEY_METHOD(showform_APform_misc),
        BRIMLEY_METHOD(showform_APform_creditcard_payment),
        BRIMLEY_METHOD(showform_APform_payhistory),
        BRIMLEY_METHOD(showform_APform_inquiry),
        BRIMLEY_METHOD(showform_APform_aging),
        BRIMLEY_METHOD(showform_APform_void_check),
        BRIMLEY_METHOD(showform_APform_revalue),
        BRIMLEY_METHOD(showform_APreport_recur_inquiry),
        BRIMLEY_METHOD(showform_Master),
        BRIMLEY_METHOD(showform_Ledger_journal),
        BRIMLEY_METHOD(showform_Ledger_trial_balance),
        BRIMLEY_METHOD(showform_Ledger_entry),
        BRIMLEY_METHOD(switch_APform_invoice),
        BRIMLEY_METHOD(APform_invoice_goto_fkey),
        BRIMLEY_METHOD(APform_invoice_goto_docno),
        BRIMLEY_METHOD(APform_payment_goto_docno),
        BRIMLEY_METHOD(APform_prepayment_goto_docno),
        BRIMLEY_METHOD(APform_misc_goto_docno),
        BRIMLEY_METHOD(APform_creditcard_goto_docno),
        BRIMLEY_METHOD(APform_revalue_goto_docno),
        BRIMLEY_METHOD(pay_this_invoice),
        BRIMLEY_METHOD(frm_invoice_Exit),
        BRIMLEY_METHOD(frm_payment_Exit),
        BRIMLEY_METHOD(frm_prepayment_Exit),
        BRIMLEY_METHOD(frm_misc_Exit),
        BRIMLEY_METHOD(frm_creditcard_Exit),
        BRIMLEY_METHOD(frm_recur_inquiry_Exit),
        BRIMLEY_METHOD(frm_revalue_Exit),
        BRIMLEY_METHOD(frm_void_check_Exit),
        BRIMLEY_METHOD(frm_aging_Exit),
        BRIMLEY_METHOD(frm_inquiry_Exit),
        BRIMLEY_METHOD(frm_payhistory_Exit),
        BRIMLEY_METHOD(frm_invoice_NotifyClients),
        BRIMLEY_METHOD(frm_payment_NotifyClients),
        BRIMLEY_METHOD(frm_prepayment_NotifyClients),
        BRIMLEY_METHOD(frm_misc_NotifyClients),
        BRIMLEY_METHOD(frm_creditcard_NotifyClients),
        BRIMLEY_METHOD(frm_recur_inquiry_NotifyClients),
        BRIMLEY_METHOD(frm_revalue_NotifyClients),
        BRIMLEY_METHOD(frm_void_check_NotifyClients),
        BRIMLEY_METHOD(frm_aging_NotifyClients),
        BRIMLEY_METHOD(frm_inquiry_NotifyClients),
        BRIMLEY_METHOD(frm_payhistory_NotifyClients),
        BRIMLEY_METHOD(frm_ledger_NotifyClients),
        BRIMLEY_METHOD(class_terminate),
    };
    return kMethods;
}

#undef BRIMLEY_METHOD

}  // namespace

CallOutcome call_by_name(APclass& ap, const std::string& name, const std::vector<std::string>& arguments) {
    const auto found = methods().find(name);
    if (found == methods().end()) return CallOutcome::no_such_method;
    const Method& called = found->second;
    if (arguments.size() < called.arguments_min || arguments.size() > called.arguments_max) {
        return CallOutcome::wrong_arguments;
    }
    called.run(ap, arguments);
    return CallOutcome::done;
}

std::vector<std::string> method_names() {
    std::vector<std::string> names;
    for (const auto& entry : methods())
        names.push_back(entry.first);
    return names;
}

}  // namespace brimley::host
