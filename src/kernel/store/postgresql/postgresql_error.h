// PostgreSQL's failures as the store's errors.
#pragma once

#include <libpq-fe.h>

#include <string>

#include "kernel/store/error.h"

namespace brimley::store {

// The error of a result, or of the connection when it is gone. The native code is the SQLSTATE read as a
// number to the base of 36.
[[nodiscard]] Error postgresql_error(PGconn* connection, const PGresult* result);

// Of a connection that has been lost, or was never made: one line, without the password.
[[nodiscard]] std::string connection_message(PGconn* connection);

// A SQLSTATE as it stands in native_code().
[[nodiscard]] int native_code_of(const char* sql_state);

}  // namespace brimley::store
