// The PostgreSQL server that the tests run on, when they are told to: companies for tests, each a database of
// its own.
//
// BRIMLEY_TEST_SERVER names the file that tests/support/server-cluster has written. Without it the tests run
// on files.
#pragma once

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <libpq-fe.h>

namespace brimley::testing {

[[nodiscard]] inline bool tests_run_on_server() { return std::getenv("BRIMLEY_TEST_SERVER") != nullptr; }

// The URI of a database of the server.
[[nodiscard]] inline std::string server_uri(const std::string& database) {
    std::ifstream file(std::getenv("BRIMLEY_TEST_SERVER"));
    std::string options;
    if (!std::getline(file, options)) throw std::runtime_error("the tests' server has not been started");
    return "postgresql:///" + database + "?" + options;
}

using ServerResult = std::unique_ptr<PGresult, decltype(&PQclear)>;

// Throws when the server refuses the statement.
inline ServerResult result_of(PGconn* server, const std::string& sql) {
    ServerResult result(PQexec(server, sql.c_str()), &PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        throw std::runtime_error(sql + ": " + PQerrorMessage(server));
    return result;
}

// Runs a statement past the store, as somebody who looks after the server would. The first cell of what it
// gives, or nothing.
inline std::string on_server(const std::string& uri, const std::string& sql) {
    const std::unique_ptr<PGconn, decltype(&PQfinish)> server(PQconnectdb(uri.c_str()), &PQfinish);
    const ServerResult result = result_of(server.get(), sql);
    return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

// Whether the statement has a row within ten seconds.
[[nodiscard]] inline bool comes_true_on_server(const std::string& uri, const std::string& sql) {
    for (int looks = 0; looks < 500; ++looks) {
        if (!on_server(uri, sql).empty()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

// Makes and drops databases. A new connection costs the server five milliseconds, so a process keeps one
// until it ends, or until the server has been restarted.
inline ServerResult on_maintenance_database(const std::string& sql) {
    static PGconn* const server = PQconnectdb(server_uri("postgres").c_str());
    const ServerResult answer(PQexec(server, ""), &PQclear);
    if (PQresultStatus(answer.get()) != PGRES_EMPTY_QUERY) PQreset(server);
    return result_of(server, sql);
}

// DROP DATABASE sleeps for a tenth of a second when it meets a connection, even one that is just ending.
inline void drop_test_database(const std::string& name) {
    const std::string end_the_others =
        "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = '" + name + "'";
    for (int looks = 0; looks < 500; ++looks) {
        if (PQntuples(on_maintenance_database(end_the_others).get()) == 0) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    on_maintenance_database("DROP DATABASE IF EXISTS " + name + " WITH (FORCE)");
}

// A name for a database that no other test uses.
[[nodiscard]] inline std::string free_database_name() {
    static int number = 0;
    return "test_" + std::to_string(::getpid()) + "_" + std::to_string(++number);
}

// A database that goes with the test. Declare it before what is open on it.
class ServerDatabase {
  public:
    // None yet: a company makes it.
    ServerDatabase() : name_(free_database_name()) {}
    // A copy of another, on which nobody may be connected.
    explicit ServerDatabase(const ServerDatabase* original) : ServerDatabase() {
        on_maintenance_database("CREATE DATABASE " + name_ + " STRATEGY file_copy TEMPLATE " +
                                original->name_);
    }
    ~ServerDatabase() { drop_test_database(name_); }
    ServerDatabase(const ServerDatabase&) = delete;
    ServerDatabase& operator=(const ServerDatabase&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] std::string uri() const { return server_uri(name_); }

  private:
    std::string name_;
};

}  // namespace brimley::testing
