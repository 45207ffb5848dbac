#include "invoices/document/accounts.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

Accounts::Accounts(APform_invoice& form) : DocumentPart(form) {}

void Accounts::read_defaults() {
    step("default accounts", [&] {
        default_cash_accno = kernel().parameter_account("GL", "Default Cash account");
        default_ap_accno = kernel().parameter_account("AP", "Default account payable account");
    });
}

std::string Accounts::get_apaccno(const std::string& vendor_no) const {
    const std::string own = kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "ap_accno");
    return own.empty() ? default_ap_accno : own;
}

std::string Accounts::get_accno(const std::string& text) const {
    const std::string accno = text.substr(0, text.find(' '));
    // Not by key: what the store says of a quote in the text is shown to the user, with its place.
    const auto account = kernel().read(fmt::format(
        "SELECT accno FROM Account_master_table WHERE accno = {} AND type = 'A'", store::quoted(accno)));
    return account.at_eof() ? std::string{} : accno;
}

}  // namespace brimley::invoices
