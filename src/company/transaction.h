// One transaction over a whole company: everything inside it is kept, or nothing.
//
// Unlike the forms, which begin to write only when they must, this takes the company for itself at once: what
// is read inside it stays true until its end, so that an import sees the keys it must not repeat, and an
// export or a check sees the books as they were at one moment. Other users can read meanwhile, and save as
// soon as it ends.
#pragma once

#include "kernel/store/database.h"

namespace brimley::company {

class Transaction {
  public:
    // Waits up to five seconds for another user's save to end, then throws ErrorKind::locked.
    explicit Transaction(const store::OpenCompany& company);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    // Rolls back what was not committed.
    ~Transaction();

    void commit();

  private:
    std::shared_ptr<store::Workspace> workspace_;
};

}  // namespace brimley::company
