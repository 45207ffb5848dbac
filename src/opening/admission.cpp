#include "opening/admission.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <fstream>
#include <stdexcept>

#include "company/database_rights.h"
#include "company/login_name.h"
#include "company/people.h"
#include "company/typed_secret.h"

namespace brimley::opening {

namespace {

void require_closed_to_others(const std::string& path) {
    constexpr mode_t kOthers = S_IRWXG | S_IRWXO;
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) throw std::runtime_error(path + " cannot be read");
    if (S_ISREG(found.st_mode) && (found.st_mode & kOthers) != 0)
        throw std::runtime_error(path + " holds passwords, and is open to others: chmod 600 closes it");
}

// Line by line, each wiped when it has been read. Nothing is read ahead, which would stay in the stream; nor
// does a line of a usual length leave copies of itself as it grows.
std::optional<company::Secret> password_in(const std::string& path, const std::string& user) {
    constexpr std::size_t kUsualLine = 1024;
    require_closed_to_others(path);
    std::ifstream file;
    file.rdbuf()->pubsetbuf(nullptr, 0);
    file.open(path);
    if (!file) throw std::runtime_error(path + " cannot be read");
    const std::string start = user + ":";
    for (;;) {
        std::string text;
        text.reserve(kUsualLine);
        if (!std::getline(file, text)) break;
        const company::Secret line(std::move(text));
        if (line.text().starts_with(start))
            return company::Secret(std::string(line.text().substr(start.size())));
    }
    return std::nullopt;
}

}  // namespace

PasswordSource passwords_of_file(const std::string& path, PasswordSource otherwise) {
    return [path, otherwise = std::move(otherwise)](const std::string& user) {
        auto password = password_in(path, user);
        return password || !otherwise ? std::move(password) : otherwise(user);
    };
}

std::optional<company::Secret> ask_at_terminal(const std::string& user) {
    if (!company::somebody_types()) return std::nullopt;
    return company::typed_secret("password of " + user + ": ");
}

std::string limit_of_work(store::Database& database) {
    std::string reason = database.reading_only_because();
    return reason.empty() ? company::lack_of_rights(database) : reason;
}

std::string Admission::default_user() const {
    const auto role = database_->role();
    return role && !role->owns_company ? role->name : company::login_name();
}

void Admission::require(const std::string& user) {
    if (let_in_.contains(user)) return;
    if (const auto role = database_->role())
        require_role(*role, user);
    else
        require_password(user);
    let_in_.insert(user);
}

void Admission::require_role(const store::ServerRole& role, const std::string& user) const {
    if (role.owns_company || role.name == user) return;
    throw std::runtime_error(
        fmt::format("the server knows you as {}, who may not work as {}", role.name, user));
}

void Admission::require_password(const std::string& user) const {
    if (user == company::login_name() || !company::has_password(*database_, user)) return;
    const auto password = passwords_ ? passwords_(user) : std::nullopt;
    if (!password) throw std::runtime_error(user + " has a password, which is needed to work as " + user);
    if (!company::is_password_of_person(*database_, user, *password))
        throw std::runtime_error("that is not the password of " + user);
}

}  // namespace brimley::opening
