#include "company/login_name.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace brimley::company {

std::string login_name() {
    const uid_t user = ::geteuid();
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found) return found->pw_name;
    return std::to_string(user);
}

}  // namespace brimley::company
