// What a role of the server needs in the database to do what a person's rights in the company say: which
// tables each form writes. Everybody may look at every form, and so reads every table but the passwords.
#pragma once

#include <string>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::company {

// What looking at forms writes: how they are laid out.
[[nodiscard]] const std::vector<store::TableRights>& writes_of_everybody();

// What the right to update on a form lets somebody write besides, each table once. The forms are named as
// User_right_table names them.
struct FormWrites {
    const char* form;
    std::vector<store::TableRights> tables;
};
[[nodiscard]] const std::vector<FormWrites>& writes_of_forms();

// Table by table, in the order of the catalog. Throws Refusal when the person has no rights in the company.
[[nodiscard]] std::vector<store::TableRights> rights_needed(store::Database& database,
                                                            const std::string& user);

// Lets the role do in the database what the user's rights in the company need, and nothing else, within the
// caller's transaction. Throws Refusal: the company is in a file; the user has no rights in it; the role owns
// it, or may do more by another way, as a member of another role.
void grant_rights(store::Database& database, const std::string& role, const std::string& user);

// Why the role that is connected cannot do in the database what its rights in the company say, as a sentence
// without its full stop; empty when it can, and for a company in a file. Throws store::Error.
[[nodiscard]] std::string lack_of_rights(store::Database& database);

}  // namespace brimley::company
