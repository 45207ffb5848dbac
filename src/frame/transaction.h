// One transaction on the host's workspace: begun here, rolled back at the end of the scope unless it was
// committed.
#pragma once

#include "kernel/store/database.h"

namespace brimley::frame {

class Transaction {
  public:
    explicit Transaction(store::Workspace& workspace) : workspace_(workspace) { workspace_.BeginTrans(); }
    ~Transaction() {
        if (committed_) return;
        try {
            workspace_.Rollback();
        } catch (const store::Error&) {
            // The connection is gone, and the engine has rolled back by itself.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit() {
        workspace_.CommitTrans();
        committed_ = true;
    }

  private:
    store::Workspace& workspace_;
    bool committed_ = false;
};

}  // namespace brimley::frame
