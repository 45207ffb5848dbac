// A company database of its own for each test: copied from one that the process makes once, a file or a
// database of the tests' server.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "kernel/store/database.h"
#include "kernel/tables/company_tables.h"
#include "support/company_original.h"

namespace brimley::testing {

using FieldValues = std::initializer_list<std::pair<const char*, store::Value>>;

enum class CompanyPlace { file, server };
// Where the tests are told to have their companies.
[[nodiscard]] inline CompanyPlace place_of_tests() {
    return tests_run_on_server() ? CompanyPlace::server : CompanyPlace::file;
}

// A copy that nobody has open, for programs and processes that open it themselves.
class ClosedCopy {
  public:
    explicit ClosedCopy(CompanyOriginal& original, CompanyPlace place = place_of_tests())
        : database_(place == CompanyPlace::server ? original.database() : nullptr),
          path_(database_ ? database_->uri() : folder_.file("company.brimley")) {
        if (!database_) original.copy_to(path_);
    }

    // Or its URI.
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
    [[nodiscard]] store::OpenCompany open(const store::EngineDecorator& decorate = {}) const {
        return store::open_company(path_, kernel::company_tables(), decorate);
    }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<ServerDatabase> database_;
    std::string path_;
};

class CompanyCopy {
  public:
    // A company with all tables and no rows.
    CompanyCopy() : CompanyCopy(empty_original()) {}
    explicit CompanyCopy(CompanyOriginal& original) : copy_(original), open_(copy_.open()) {}

    [[nodiscard]] store::Database& db() { return *open_.database; }
    [[nodiscard]] store::Workspace& workspace() { return *open_.workspace; }
    [[nodiscard]] const store::OpenCompany& open() const { return open_; }
    [[nodiscard]] const std::string& path() const { return copy_.path(); }
    [[nodiscard]] const TemporaryFolder& folder() const { return copy_.folder(); }
    // Another user of the same company.
    [[nodiscard]] store::OpenCompany second_user(const store::EngineDecorator& decorate = {}) const {
        return copy_.open(decorate);
    }

    void add(const std::string& table, FieldValues values) {
        auto rows = dynaset("SELECT * FROM " + table + " WHERE 1 = 2");
        rows.AddNew();
        for (const auto& [name, value] : values)
            rows.set(name, value);
        rows.Update();
    }
    [[nodiscard]] store::Recordset snapshot(const std::string& query) {
        return db().OpenRecordset(query, store::RecordsetKind::snapshot);
    }
    [[nodiscard]] store::Recordset dynaset(const std::string& query) {
        return db().OpenRecordset(query, store::RecordsetKind::dynaset);
    }
    // The rows of a query: fields parted by blanks, rows by " | ", null as "-".
    [[nodiscard]] std::string list(const std::string& query) {
        auto rows = snapshot(query);
        std::string listed;
        for (; !rows.at_eof(); rows.MoveNext()) {
            if (!listed.empty()) listed += " | ";
            for (int column = 0; column < rows.column_count(); ++column) {
                const store::Value value = rows.column(column);
                listed += (column > 0 ? " " : "") + (value.is_null() ? std::string("-") : value.text());
            }
        }
        return listed;
    }

  private:
    static CompanyOriginal& empty_original() {
        static CompanyOriginal original([](const std::string& company) {
            static_cast<void>(store::create_company(company, kernel::company_tables()));
        });
        return original;
    }

    ClosedCopy copy_;
    store::OpenCompany open_;
};

}  // namespace brimley::testing
