#include "support/committed_state.h"

#include <libpq-fe.h>
#include <sqlite3.h>

#include <memory>
#include <stdexcept>

#include "kernel/store/database.h"

namespace brimley::testing {

namespace {

// SQLite counts the commits of other connections.
std::function<std::string()> look_at_file(const std::string& path) {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::shared_ptr<sqlite3> file(opened, sqlite3_close);
    sqlite3_stmt* prepared = nullptr;
    if (status == SQLITE_OK) sqlite3_prepare_v2(opened, "PRAGMA data_version", -1, &prepared, nullptr);
    const std::shared_ptr<sqlite3_stmt> statement(prepared, sqlite3_finalize);
    return [file, statement] {
        if (sqlite3_step(statement.get()) != SQLITE_ROW) throw std::runtime_error(sqlite3_errmsg(file.get()));
        const std::string version = std::to_string(sqlite3_column_int64(statement.get(), 0));
        sqlite3_reset(statement.get());
        return version;
    };
}

using Answer = std::unique_ptr<PGresult, decltype(&PQclear)>;

std::string first_cell(PGconn* server, PGresult* result) {
    const Answer answer(result, &PQclear);
    if (PQresultStatus(result) != PGRES_TUPLES_OK) throw std::runtime_error(PQerrorMessage(server));
    return PQgetvalue(result, 0, 0);
}

// A row that is added or changed has the number of its transaction, which is higher than all before it; rows
// that are gone are missing in the count.
constexpr const char* kCountAndLastTransaction =
    "SELECT string_agg(format('SELECT count(*) || '':'' || coalesce(max(xmin::text::bigint), 0) AS state "
    "FROM "
    "%I.%I', schemaname, tablename), ' UNION ALL ' ORDER BY tablename) FROM pg_tables WHERE schemaname = "
    "'brimley'";

std::function<std::string()> look_at_server(const std::string& uri) {
    const std::shared_ptr<PGconn> server(PQconnectdb(uri.c_str()), PQfinish);
    const std::string tables = first_cell(server.get(), PQexec(server.get(), kCountAndLastTransaction));
    const std::string query = "SELECT string_agg(state, ' ') FROM (" + tables + ") AS states";
    const Answer prepared(PQprepare(server.get(), "look", query.c_str(), 0, nullptr), &PQclear);
    return [server] {
        return first_cell(server.get(),
                          PQexecPrepared(server.get(), "look", 0, nullptr, nullptr, nullptr, 0));
    };
}

}  // namespace

CommittedState::CommittedState(const std::string& company)
    : look_(store::is_on_server(company) ? look_at_server(company) : look_at_file(company)) {
    static_cast<void>(now());
}

}  // namespace brimley::testing
