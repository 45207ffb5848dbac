// Row keys drawn from the server before they are needed, so that no INSERT waits for its key.
//
// They are drawn some at a time, more and more within one transaction, and those left at its end are dropped:
// so keys grow from one transaction to the next.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>

#include "kernel/store/engine.h"
#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

class PostgresqlKeyPool {
  public:
    // The session must outlive it.
    explicit PostgresqlKeyPool(PostgresqlSession& session) : session_(session) {}

    // One round trip when there is none left.
    [[nodiscard]] RowKey next();
    // Outside a transaction: a key of its own.
    [[nodiscard]] RowKey single();
    void end_transaction();

  private:
    static constexpr std::int64_t kDrawnAtFirst = 16;
    static constexpr std::int64_t kDrawnMax = 1024;

    void draw(std::int64_t wanted);
    [[nodiscard]] RowKey take();

    PostgresqlSession& session_;
    std::deque<RowKey> keys_;
    std::int64_t to_draw_ = kDrawnAtFirst;
    // By how many are drawn: a statement for each count, which the server then plans once.
    std::map<std::int64_t, std::unique_ptr<PostgresqlStatement>> drawing_;
};

}  // namespace brimley::store
