#include "kernel/tax_accounts.h"

namespace brimley::kernel {

const AuthorityAccounts::Accounts* AuthorityAccounts::find(const std::string& authority) {
    auto known = known_.find(authority);
    if (known == known_.end()) known = known_.emplace(authority, look_up(authority)).first;
    return known->second ? &*known->second : nullptr;
}

std::optional<AuthorityAccounts::Accounts> AuthorityAccounts::look_up(const std::string& authority) const {
    const auto row = kernel_.find("Tax_authority_table", {{"tax_authority", authority}});
    if (row.at_eof()) {
        (void)kernel_.refuse("Tax authority " + authority + " does not exist");
        return std::nullopt;
    }
    return Accounts{row.field("acc_recoverable"), row.field("acc_expense")};
}

}  // namespace brimley::kernel
