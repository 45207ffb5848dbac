// A company database of its own for each test, copied from one that the process makes once.
#pragma once

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include "kernel/store/database.h"
#include "kernel/tables/company_tables.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

using FieldValues = std::initializer_list<std::pair<const char*, store::Value>>;

class CompanyCopy {
  public:
    using Maker = std::function<void(const std::string& path)>;

    // A company with all tables and no rows.
    CompanyCopy() : CompanyCopy(empty_original()) {}
    // A copy of a closed company file.
    explicit CompanyCopy(const std::string& original)
        : path_(folder_.file("company.brimley")), open_(copied(original)) {}

    [[nodiscard]] store::Database& db() { return *open_.database; }
    [[nodiscard]] store::Workspace& workspace() { return *open_.workspace; }
    [[nodiscard]] const store::OpenCompany& open() const { return open_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
    // Another user of the same file.
    [[nodiscard]] store::OpenCompany second_user(const store::EngineDecorator& decorate = {}) const {
        return store::open_company(path_, kernel::company_tables(), decorate);
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
    static std::string empty_original() {
        static const TemporaryFolder folder;
        static const std::string path = [] {
            std::string made = folder.file("empty.brimley");
            static_cast<void>(store::create_company(made, kernel::company_tables()));
            return made;
        }();
        return path;
    }
    store::OpenCompany copied(const std::string& original) const {
        std::filesystem::copy_file(original, path_);
        return store::open_company(path_, kernel::company_tables());
    }

    TemporaryFolder folder_;
    std::string path_;
    store::OpenCompany open_;
};

}  // namespace brimley::testing
