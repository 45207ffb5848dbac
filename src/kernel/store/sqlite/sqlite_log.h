// The log beside a company file (-wal), which holds what was saved until it is brought into the file.
//
// Whoever copies the file alone while somebody works gets none of that work. So the file itself says whether
// it needs its log: needs_log() is written into it before the first transaction that goes into the log, and
// taken out by tidy(), which brings everything into the file. A file that needs a log and has none is then
// known for what it is. Where a reader keeps a checkpoint from reaching the end of the log the mark comes
// late; it never stands in a file that needs no log.
#pragma once

#include <sqlite3.h>

#include <cstdint>

#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

class SqliteLog {
  public:
    // For a connection to a company file of that layout in WAL mode, which must outlive it.
    SqliteLog(sqlite3* connection, int layout);

    // Whether the file says that it needs its log, as the open transaction or a new one sees it. Throws
    // ErrorKind::state when the company has got another layout meanwhile.
    [[nodiscard]] bool is_needed();
    // Says so, in a transaction of its own. False when another workspace writes. Throws store::Error.
    [[nodiscard]] bool mark_as_needed();
    // Brings the log into the file, as far as nobody else is writing or still reading an older state. Outside
    // of transactions. What cannot be done now is left for the next time.
    void tidy() noexcept;

  private:
    // The layout, and whether the log is needed.
    [[nodiscard]] std::uint32_t version();
    // Returns SQLite's code; nothing is open any more then.
    int store_need(bool needed);
    int write_version(bool needed);

    sqlite3* connection_;
    std::uint32_t layout_;
    SqliteStatementHandle version_;
    SqliteStatementHandle begin_;
    SqliteStatementHandle commit_;
};

}  // namespace brimley::store
