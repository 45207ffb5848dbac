// A savepoint of one name. Its commands are sent like any statement, and wait for nothing.
#pragma once

#include <memory>
#include <string>

#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

class PostgresqlSavepoint {
  public:
    // The session must outlive it.
    PostgresqlSavepoint(PostgresqlSession& session, const std::string& name)
        : session_(session),
          set_(session.command("SAVEPOINT " + name)),
          release_(session.command("RELEASE SAVEPOINT " + name)),
          go_back_(session.command("ROLLBACK TO SAVEPOINT " + name)) {}

    void set() { session_.send(*set_); }
    void release() { session_.send(*release_); }
    // The savepoint stays set.
    void go_back() { session_.send(*go_back_); }

  private:
    PostgresqlSession& session_;
    std::unique_ptr<PostgresqlStatement> set_, release_, go_back_;
};

}  // namespace brimley::store
