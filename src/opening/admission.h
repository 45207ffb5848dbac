// Who may work in a company as whom (decision 0021).
//
// In a company file the person who is logged in needs nothing; as another person one works with that person's
// password, once they have one. On a server the person is the role that is connected; a role that owns the
// company's tables may work as anybody, since it can write whatever they could.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "company/secret.h"
#include "kernel/store/database.h"

namespace brimley::opening {

// The password of that person; empty when nobody is there to ask, or they gave up.
using PasswordSource = std::function<std::optional<company::Secret>(const std::string& user)>;

// From a file with a line NAME:PASSWORD for each person, or from the other source for whom it does not name.
// The file must be closed to others. Throws std::runtime_error when it cannot be read.
[[nodiscard]] PasswordSource passwords_of_file(const std::string& path, PasswordSource otherwise);

// Asks at the terminal, when there is one.
[[nodiscard]] std::optional<company::Secret> ask_at_terminal(const std::string& user);

// Why not all can be done here that the user's rights say, as a sentence without its full stop: the company
// can only be read, or the role of the server lacks rights in the database. Empty when all can.
[[nodiscard]] std::string limit_of_work(store::Database& database);

class Admission {
  public:
    Admission(std::shared_ptr<store::Database> database, PasswordSource passwords)
        : database_(std::move(database)), passwords_(std::move(passwords)) {}

    // Whom one works as by default: the login, or on a server a role that does not own the company.
    [[nodiscard]] std::string default_user() const;
    // Throws std::runtime_error, with a sentence for the user, when one may not work as this person. Who has
    // been let in is not asked again.
    void require(const std::string& user);

  private:
    void require_role(const store::ServerRole& role, const std::string& user) const;
    void require_password(const std::string& user) const;

    std::shared_ptr<store::Database> database_;
    PasswordSource passwords_;
    std::set<std::string> let_in_;
};

}  // namespace brimley::opening
