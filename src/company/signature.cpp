#include "company/signature.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>

#include "company/login_name.h"

namespace brimley::company {

store::DateTime local_now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    auto moment = store::DateTime::from_ymd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday).value();
    // A leap second counts as the one before it.
    moment.second_of_day = local.tm_hour * 3600 + local.tm_min * 60 + std::min(local.tm_sec, 59);
    return moment;
}

std::string machine_name() {
    std::array<char, 513> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string{};
}

store::Signature signature_of_login() { return {login_name(), machine_name(), local_now()}; }

store::Signature signature_in(const store::Database& company) {
    store::Signature signature = signature_of_login();
    if (const auto role = company.role()) signature.user = role->name;
    return signature;
}

}  // namespace brimley::company
