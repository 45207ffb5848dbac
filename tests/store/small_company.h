// A company with a few small tables, in a file of its own or on the tests' server, for tests of the store.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "kernel/store/database.h"
#include "kernel/store/engine.h"
#include "support/company_original.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

namespace brimley::testing {

// Documents and their lines as the product has them, in few fields; names that are reserved words elsewhere;
// a yes/no field that may hold null.
[[nodiscard]] const store::Catalog& small_catalog();

using FieldValues = std::initializer_list<std::pair<const char*, store::Value>>;

void add_row(store::Database& db, const std::string& table, FieldValues values);

class StoreCompany {
  public:
    // The company outlives neither.
    StoreCompany(const store::Catalog& catalog, CompanyOriginal& original);

    [[nodiscard]] store::Database& db() { return *open_.database; }
    [[nodiscard]] store::Workspace& workspace() { return *open_.workspace; }
    [[nodiscard]] const std::string& path() const { return path_; }
    // Another user of the same company.
    [[nodiscard]] store::OpenCompany second_user(const store::EngineDecorator& decorate = {}) const;
    void reopen(const store::EngineDecorator& decorate);

    void add(const std::string& table, FieldValues values) { add_row(db(), table, values); }
    [[nodiscard]] store::Recordset snapshot(const std::string& query);
    [[nodiscard]] store::Recordset dynaset(const std::string& query);
    // The first column of all rows, as texts with blanks between; "-" for null.
    [[nodiscard]] std::string list(const std::string& query);
    // The number of rows of "SELECT * FROM " and what follows.
    [[nodiscard]] std::int64_t count(const std::string& from);

  private:
    const store::Catalog& catalog_;
    TemporaryFolder folder_;
    std::unique_ptr<ServerDatabase> database_;
    std::string path_;
    store::OpenCompany open_;
};

// Of small_catalog().
class SmallCompany : public StoreCompany {
  public:
    SmallCompany();
};

// The engine of a company of small_catalog(), without the store around it.
[[nodiscard]] std::unique_ptr<store::Engine> engine_of(const std::string& company);

// The first column of all rows of an open recordset, as SmallCompany::list.
[[nodiscard]] std::string first_column(store::Recordset& rows);

}  // namespace brimley::testing
