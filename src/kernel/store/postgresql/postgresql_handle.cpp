#include "kernel/store/postgresql/postgresql_handle.h"

#include "kernel/store/postgresql/postgresql_error.h"

namespace brimley::store {

PostgresqlResult run_sql(PGconn* connection, const std::string& sql) {
    PostgresqlResult result(PQexec(connection, sql.c_str()));
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        throw postgresql_error(connection, result.get());
    return result;
}

std::string text_of_sql(PGconn* connection, const std::string& sql) {
    const PostgresqlResult result = run_sql(connection, sql);
    if (PQntuples(result.get()) == 0) return {};
    return PQgetvalue(result.get(), 0, 0);
}

}  // namespace brimley::store
