// Companies for tests: files in a folder of their own, or databases of the tests' server, with helpers to
// look into them and to change them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "company/create.h"
#include "company/table_writer.h"
#include "kernel/store/database.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

namespace brimley::testing {

// A path of lines joined to the text of a file.
[[nodiscard]] std::string lines(std::initializer_list<std::string_view> all);
[[nodiscard]] std::string text_of_file(const std::string& path);
void write_file(const std::string& path, std::string_view text);

// Everything that a company holds, as exported files joined.
[[nodiscard]] std::string dump_of(const store::OpenCompany& open);

class CompanyTest : public ::testing::Test {
  protected:
    // Opens a company of this content: a copy of one that the process has made before.
    void make(const company::CompanyContent& content);
    // Makes the company itself and opens it.
    void make_anew(const company::CompanyContent& content);
    void reopen();
    [[nodiscard]] store::Database& db() { return *open_.database; }
    [[nodiscard]] const store::OpenCompany& open() const { return open_; }
    [[nodiscard]] std::string path() const {
        if (!tests_run_on_server()) return folder_.file("books.company");
        if (!database_) database_ = std::make_unique<ServerDatabase>();
        return database_->uri();
    }

    // The rows of a query, columns joined by "|", null as "-".
    [[nodiscard]] std::vector<std::string> rows(const std::string& query);
    // Changes the first row of the query; fails the test when there is none.
    void change(const std::string& query, company::FieldValues values);
    // Adds to a number field of the first row of the query.
    void raise(const std::string& query, std::string_view field, double amount);
    void add(const std::string& table, company::FieldValues values);

    // In one transaction, kept when the work does not throw.
    void in_transaction(const std::function<void(store::Database&)>& work);
    [[nodiscard]] std::string dump() const { return dump_of(open_); }

    TemporaryFolder folder_;

  private:
    mutable std::unique_ptr<ServerDatabase> database_;
    store::OpenCompany open_;
};

}  // namespace brimley::testing
