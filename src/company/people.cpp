#include "company/people.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "company/forms.h"
#include "company/password_hash.h"
#include "company/refusal.h"
#include "company/table_writer.h"

namespace brimley::company {

namespace {

constexpr const char* kRights = "User_right_table";
constexpr const char* kPasswords = "Password_table";

// The forms on which each person has all rights.
std::map<std::string, std::set<std::string>> forms_of_persons(store::Database& database) {
    std::map<std::string, std::set<std::string>> forms;
    auto rows = database.OpenRecordset(
        "SELECT userid, form FROM User_right_table WHERE Update = TRUE AND [Print] = TRUE AND form_design = "
        "TRUE",
        store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext())
        forms[rows.text("userid")].insert(rows.text("form"));
    return forms;
}

bool are_all(const std::set<std::string>& forms) {
    for (const char* const form : kForms)
        if (!forms.contains(form)) return false;
    return true;
}

// Empty: there is none. A name that no query text can hold names nobody.
std::string hash_of_person(store::Database& database, const std::string& user) {
    if (database.catalog().find(kPasswords) == nullptr) return {};
    auto rows = database.OpenRecordset("SELECT * FROM Password_table", store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext())
        if (rows.text("userid") == user) return rows.text("password_hash");
    return {};
}

}  // namespace

bool is_about_people(const store::Table& table) { return table.name == kRights || table.name == kPasswords; }

bool keeps_secrets(const store::Table& table) { return table.name == kPasswords; }

bool has_every_right(store::Database& database, const std::string& user) {
    bool there_is_one = false;
    for (const auto& [known, forms] : forms_of_persons(database)) {
        if (!are_all(forms)) continue;
        if (known == user) return true;
        there_is_one = true;
    }
    return !there_is_one;
}

bool is_administrator(store::Database& database, const std::string& user) {
    const auto role = database.role();
    return role ? role->owns_company || has_every_right(database, role->name)
                : has_every_right(database, user);
}

bool has_administrator(store::Database& database) {
    return std::ranges::any_of(forms_of_persons(database),
                               [](const auto& person) { return are_all(person.second); });
}

bool has_rights(store::Database& database, const std::string& user) {
    auto rows = database.OpenRecordset("SELECT userid FROM User_right_table", store::RecordsetKind::snapshot);
    while (!rows.at_eof() && rows.text("userid") != user)
        rows.MoveNext();
    return !rows.at_eof();
}

bool has_password(store::Database& database, const std::string& user) {
    return !hash_of_person(database, user).empty();
}

bool is_password_of_person(store::Database& database, const std::string& user, const Secret& password) {
    return is_password_of(hash_of_person(database, user), password);
}

void require_place_for_passwords(const store::Database& database) {
    if (database.role())
        throw Refusal("a person of a company on a server is a role of the server, which keeps its password");
    if (database.catalog().find(kPasswords) == nullptr)
        throw Refusal(database.name() + " has no place for passwords: upgrade makes one");
}

void set_password(store::Database& database, const std::string& user, const Secret& password) {
    require_place_for_passwords(database);
    auto rows = database.OpenRecordset("SELECT * FROM Password_table", store::RecordsetKind::dynaset);
    while (!rows.at_eof() && rows.text("userid") != user)
        rows.MoveNext();
    const bool is_there = !rows.at_eof();
    if (!is_there && password.empty()) return;
    is_there ? rows.Edit() : rows.AddNew();
    rows.set("userid", user);
    rows.set("password_hash", password.empty() ? store::Value() : hash_of_password(password));
    rows.Update();
}

}  // namespace brimley::company
