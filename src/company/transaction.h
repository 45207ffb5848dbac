// One transaction over a whole company: for changing it, everything or nothing; or for reading it as it is at
// one moment.
#pragma once

#include "kernel/store/database.h"

namespace brimley::company {

// Unlike the forms, which begin to write only when they must, this takes the company for itself at once: what
// is read inside it stays true until its end, so that an import sees the keys it must not repeat. Other users
// can read meanwhile, and save as soon as it ends.
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

// What is read while this exists is the company of one moment. Nobody waits for it, and it waits for nobody.
class ReadingMoment {
  public:
    explicit ReadingMoment(const store::OpenCompany& company);
    ReadingMoment(const ReadingMoment&) = delete;
    ReadingMoment& operator=(const ReadingMoment&) = delete;
    ~ReadingMoment();

  private:
    std::shared_ptr<store::Workspace> workspace_;
};

}  // namespace brimley::company
