// The ledger accounts of tax authorities.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "kernel/module_g3.h"

namespace brimley::kernel {

// Each authority is looked up once, so one of these serves one document.
class AuthorityAccounts {
  public:
    struct Accounts {
        store::Value recoverable;
        store::Value expense;
    };
    explicit AuthorityAccounts(ModuleG3& kernel) : kernel_(kernel) {}

    // Null, with a reason noted, for an authority that is not known.
    [[nodiscard]] const Accounts* find(const std::string& authority);

  private:
    [[nodiscard]] std::optional<Accounts> look_up(const std::string& authority) const;

    ModuleG3& kernel_;
    std::map<std::string, std::optional<Accounts>> known_;
};

}  // namespace brimley::kernel
