// Owning handles of libpq's two kinds of objects, and the calls that are made before a connection speaks in
// pipelines.
#pragma once

#include <libpq-fe.h>

#include <memory>
#include <string>

namespace brimley::store {

struct FinishPostgresql {
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
struct ClearPostgresql {
    void operator()(PGresult* result) const { PQclear(result); }
};
using PostgresqlHandle = std::unique_ptr<PGconn, FinishPostgresql>;
using PostgresqlResult = std::unique_ptr<PGresult, ClearPostgresql>;

// Statements without parameters; the result of the last of them. Throws store::Error.
PostgresqlResult run_sql(PGconn* connection, const std::string& sql);
// The first column of the first row; empty when there is none.
[[nodiscard]] std::string text_of_sql(PGconn* connection, const std::string& sql);

}  // namespace brimley::store
