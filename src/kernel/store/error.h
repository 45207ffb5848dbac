// Every failure of the store, as one flat exception type that answers a caller's questions.
//
// Expected outcomes are values, not errors: the end of a recordset, no match, a row that somebody else holds
// (Recordset::try_edit). What is thrown is what the caller could not foresee.
#pragma once

#include <stdexcept>
#include <string>

namespace brimley::store {

enum class ErrorKind {
    locked,           // another workspace holds the row, or the file; may be tried again
    constraint,       // a rule of the table refused the row
    syntax,           // the query text is not of the dialect; the message names the place
    name,             // no such table or field
    conversion,       // a value that the field cannot hold
    state,            // a call out of order: no current record, Update without Edit, a transaction within one
    io,               // the disk is full, the file cannot be read or written
    not_a_company,    // the file or database is something else, or absent
    no_password,      // the server wants a password, and none was given
    lost,             // the connection to the engine is gone; everything open on it with it
    commit_in_doubt,  // the outcome of a commit is unknown: never repeat it, reload and look
};

// What has become of a connection. Workspace::reconnect() mends that to a server; otherwise only opening the
// company again does.
enum class ConnectionState {
    good,
    lost,      // and what was not committed with it
    in_doubt,  // lost while something was being committed, and it is not known whether that is stored
};

// What became of the last change that was in doubt, as far as was found out after connecting again.
enum class Doubt {
    none,
    stored,
    not_stored,
    undecided,  // the server still works on it; reconnect() looks again
    unknown,    // nothing of it can be recognised: look for it by hand
};

class Error : public std::runtime_error {
  public:
    Error(ErrorKind kind, const std::string& message, int native_code = 0, std::string statement = {})
        : std::runtime_error(message),
          kind_(kind),
          native_code_(native_code),
          statement_(std::move(statement)) {}

    [[nodiscard]] ErrorKind kind() const { return kind_; }
    [[nodiscard]] int native_code() const { return native_code_; }
    // The query text as the caller gave it, or empty.
    [[nodiscard]] const std::string& statement() const { return statement_; }
    // After this error only a Rollback helps the open transaction.
    [[nodiscard]] bool spoils_transaction() const {
        return kind_ == ErrorKind::io || kind_ == ErrorKind::lost || kind_ == ErrorKind::commit_in_doubt;
    }
    [[nodiscard]] bool spoils_connection() const {
        return kind_ == ErrorKind::lost || kind_ == ErrorKind::commit_in_doubt;
    }

  private:
    ErrorKind kind_;
    int native_code_;
    std::string statement_;
};

// Messages of ErrorKind::locked.
inline constexpr const char* kAnotherUserWrites = "another user is writing to the company";
inline constexpr const char* kAnotherUserChanges = "another user is changing the company";

}  // namespace brimley::store
