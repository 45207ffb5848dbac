// One transaction on the host's workspace: begun here, rolled back at the end of the scope unless it was
// committed.
#pragma once

#include <memory>

#include "kernel/store/database.h"
#include "kernel/store/error.h"

namespace brimley::frame {

class Transaction {
  public:
    // Throws ErrorKind::state when the host has given no workspace, as a transaction that cannot begin does.
    explicit Transaction(const std::shared_ptr<store::Workspace>& workspace) : workspace_(workspace) {
        if (!workspace_) throw store::Error(store::ErrorKind::state, "no workspace to save in");
        workspace_->BeginTrans();
    }
    ~Transaction() {
        if (committed_) return;
        try {
            workspace_->Rollback();
        } catch (const store::Error&) {
            // The connection is gone, and the engine has rolled back by itself.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit() {
        workspace_->CommitTrans();
        committed_ = true;
    }

  private:
    std::shared_ptr<store::Workspace> workspace_;
    bool committed_ = false;
};

}  // namespace brimley::frame
