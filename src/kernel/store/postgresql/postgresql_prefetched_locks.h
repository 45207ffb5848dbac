// The rows that are locked by a prefetch: all of them are held, or none.
//
// A transaction that holds some rows and waits for others could deadlock with one that locks them one by one.
// So the locks of prefetches that follow each other are taken under a savepoint, which the next other call of
// the engine ends.
#pragma once

#include "kernel/store/postgresql/postgresql_prefetch.h"
#include "kernel/store/postgresql/postgresql_savepoint.h"
#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

class PostgresqlPrefetchedLocks {
  public:
    // The session must outlive it.
    explicit PostgresqlPrefetchedLocks(PostgresqlSession& session)
        : session_(session), savepoint_(session, "brimley_ahead") {}

    // Before a lock is prefetched.
    void begin();
    // Before any call but a prefetch. When a lock was refused the others are given up, and their answers
    // forgotten.
    void end(PostgresqlPrefetch& prefetch);
    // The transaction is over.
    void clear() { open_ = false; }

  private:
    PostgresqlSession& session_;
    PostgresqlSavepoint savepoint_;
    bool open_ = false;  // the savepoint is set, and nothing was written since
};

}  // namespace brimley::store
