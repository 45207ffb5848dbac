// A company with a trail: a table of documents and one that goes along, both watched, and one that is not.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "store/small_company.h"
#include "support/faulty_engine.h"

namespace brimley::testing {

// Layout 1 is the same without the trail.
[[nodiscard]] const store::Catalog& trailed_catalog();
// The same tables, to somebody who writes what he likes.
[[nodiscard]] const store::Catalog& unwatched_catalog();

class Trail : public ::testing::Test {
  protected:
    Trail();

    void sign(const std::string& user) { sign(company_.workspace(), user); }
    static void sign(store::Workspace& workspace, const std::string& user);
    // Opened again on an engine that can be made to fail.
    [[nodiscard]] std::shared_ptr<Faults> reopen_with_faults(store::ErrorKind kind,
                                                             const std::string& only_statements_with);
    [[nodiscard]] store::Database& db() { return company_.db(); }
    void add_invoice(const std::string& docno, double amount = 10) { add_invoice(db(), docno, amount); }
    static void add_invoice(store::Database& db, const std::string& docno, double amount = 10);
    template <class Act>
    void in_transaction(const Act& act) {
        company_.workspace().BeginTrans();
        act();
        company_.workspace().CommitTrans();
    }
    // Past the trail.
    void tamper(const std::string& statement);
    // The first column.
    [[nodiscard]] std::vector<std::string> column(const std::string& query);
    // What the entries name.
    [[nodiscard]] std::vector<std::string> documents() {
        return column("SELECT document FROM Trail_table ORDER BY entry_no");
    }
    [[nodiscard]] std::vector<std::string> faults() { return db().faults_of_trail(); }

    StoreCompany company_;
};

}  // namespace brimley::testing
