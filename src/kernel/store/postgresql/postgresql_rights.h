// What a role of the server may do in the company, as statements: asking for it, and giving it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/connection_watch.h"

namespace brimley::store {

// Has a row when there is such a role.
[[nodiscard]] std::string role_sql(const std::string& role);

// A row for each table, in the order of the catalog: whether the role reads, adds, changes and removes rows
// of it, as "1" or "0".
[[nodiscard]] std::string rights_of_role_sql(const std::string& role, const Catalog& catalog);

// In their order, within one transaction: what the role was given before is taken from it first.
[[nodiscard]] std::vector<std::string> statements_giving(const std::string& role,
                                                         std::span<const TableRights> rights);

}  // namespace brimley::store
