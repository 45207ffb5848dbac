// What a host hears of the connection to a server, and what it decides while an answer is awaited.
//
// A company in a file has no connection that could be lost, and never calls it.
#pragma once

#include <chrono>
#include <string>

namespace brimley::store {

// Whom a server takes a connection for.
struct ServerRole {
    std::string name;
    bool owns_company = false;  // or may act as its owner: no table is closed to it
};

// What a role of a server may do with the rows of a table.
struct TableRights {
    std::string table;  // as the catalog has it
    bool reads = false;
    bool adds = false;
    bool changes = false;  // and holds rows, as an Edit does
    bool removes = false;

    bool operator==(const TableRights&) const = default;
};

class ConnectionWatch {
  public:
    virtual ~ConnectionWatch() = default;

    virtual void connection_lost() {}
    // Connected again. reading_only_because: as Database::reading_only_because().
    virtual void connection_back(const std::string& /*reading_only_because*/) {}

    // Called some ten times a second while an answer is awaited. Nothing of the workspace may be used
    // meanwhile. False gives the wait up: a statement is cancelled and fails; a commit is left in doubt,
    // since cancelling it would decide nothing.
    [[nodiscard]] virtual bool go_on_waiting(std::chrono::milliseconds /*so_far*/) { return true; }

    // The answer has come, or the wait was given up, after it was called.
    virtual void wait_is_over() {}

    // After so long the wait is given up by itself. The server has limits of its own for statements
    // (statement_timeout); a commit can wait for ever there, for a standby that is gone.
    [[nodiscard]] virtual std::chrono::milliseconds statement_wait_max() const {
        return std::chrono::minutes(6);
    }
    [[nodiscard]] virtual std::chrono::milliseconds commit_wait_max() const {
        return std::chrono::minutes(1);
    }
};

}  // namespace brimley::store
