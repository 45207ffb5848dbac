// A company on a PostgreSQL server: the engine for many desks.
#pragma once

#include <memory>
#include <string>

#include "kernel/store/catalog.h"
#include "kernel/store/engine.h"
#include "kernel/store/postgresql/postgresql_company.h"

namespace brimley::store {

// The catalog must outlive it. Throws not_a_company, lost, io.
[[nodiscard]] OpenedEngine open_postgresql_company(const std::string& uri, const Catalog& catalog);

// The engine of a company in the making. Its first transaction is the one that makes the company.
[[nodiscard]] std::unique_ptr<Engine> engine_of(CompanyInTheMaking& company, const Catalog& catalog);

}  // namespace brimley::store
