#include "company/transaction.h"

#include <chrono>
#include <thread>

namespace brimley::company {

namespace {

// A statement that changes no row, but needs the right to write.
constexpr const char* kTouch = "DELETE * FROM Recent_value_table WHERE 1 = 2";
constexpr int kTries = 50;
constexpr std::chrono::milliseconds kWait{100};

void take_company(store::Database& database) {
    for (int tries = 1;; ++tries) {
        try {
            database.Execute(kTouch);
            return;
        } catch (const store::Error& error) {
            if (error.kind() != store::ErrorKind::locked || tries == kTries) throw;
        }
        std::this_thread::sleep_for(kWait);
    }
}

void roll_back_quietly(store::Workspace& workspace) {
    try {
        workspace.Rollback();
    } catch (const store::Error&) {
        // The engine drops an open transaction with its connection; there is nobody left to tell.
    }
}

}  // namespace

Transaction::Transaction(const store::OpenCompany& company) : workspace_(company.workspace) {
    workspace_->BeginTrans();
    try {
        take_company(*company.database);
    } catch (...) {
        workspace_->Rollback();
        throw;
    }
}

Transaction::~Transaction() {
    if (workspace_) roll_back_quietly(*workspace_);
}

void Transaction::commit() {
    workspace_->CommitTrans();
    workspace_.reset();
}

ReadingMoment::ReadingMoment(const store::OpenCompany& company) : workspace_(company.workspace) {
    workspace_->BeginSnapshot();
}

ReadingMoment::~ReadingMoment() { roll_back_quietly(*workspace_); }

}  // namespace brimley::company
