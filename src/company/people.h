// Who may work in a company as whom (decision 0021): administrators, and passwords of persons in a company
// file. On a server the person is the role that is connected, and passwords are the server's.
#pragma once

#include <string>

#include "company/secret.h"
#include "kernel/store/database.h"

namespace brimley::company {

// Whether the table says who may do what, so that only an administrator brings rows of it.
[[nodiscard]] bool is_about_people(const store::Table& table);

// Whether its rows are for nobody's eyes: hashes of passwords, at which anybody could guess.
[[nodiscard]] bool keeps_secrets(const store::Table& table);

// A person with every right on every form. Where nobody has them, everybody has, or nobody could ever give
// them.
[[nodiscard]] bool has_every_right(store::Database& database, const std::string& user);
// Whether whoever is connected may give rights: a person with every right; so is, on a server, a role that
// owns the company's tables, since it can write them anyway.
[[nodiscard]] bool is_administrator(store::Database& database, const std::string& user);
// Whether anybody has every right on every form.
[[nodiscard]] bool has_administrator(store::Database& database);

// Whether the person has any row of rights.
[[nodiscard]] bool has_rights(store::Database& database, const std::string& user);
[[nodiscard]] bool has_password(store::Database& database, const std::string& user);
// False as well for who has none.
[[nodiscard]] bool is_password_of_person(store::Database& database, const std::string& user,
                                         const Secret& password);
// An empty one takes the password away. Throws Refusal for a company on a server, and for one of an older
// layout, which keeps none. Runs inside the caller's transaction.
void set_password(store::Database& database, const std::string& user, const Secret& password);
void require_place_for_passwords(const store::Database& database);

}  // namespace brimley::company
