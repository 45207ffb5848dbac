#include "company/transaction.h"

#include <chrono>
#include <thread>

namespace brimley::company {

namespace {

constexpr int kTries = 50;
constexpr std::chrono::milliseconds kWait{100};

void take_company(store::Workspace& workspace) {
    for (int tries = 1;; ++tries) {
        try {
            return workspace.begin_alone();
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
        // The engine drops an open transaction with its connection; there is nothing left to report.
    }
}

}  // namespace

Transaction::Transaction(const store::OpenCompany& company) : workspace_(company.workspace) {
    take_company(*workspace_);
}

Transaction::~Transaction() {
    if (workspace_) roll_back_quietly(*workspace_);
}

void Transaction::commit() {
    workspace_->CommitTrans();
    workspace_.reset();
}

ReadingMoment::ReadingMoment(const store::OpenCompany& company) : workspace_(company.workspace) {
    workspace_->begin_snapshot();
}

ReadingMoment::~ReadingMoment() { roll_back_quietly(*workspace_); }

}  // namespace brimley::company
