// Companies on a server: reaching the database that a URI names, telling companies and other databases apart,
// and making them.
//
// One database holds one company, in the schema "brimley". The URI says where the database is, with
// everything that libpq understands: users, service and password files, TLS.
#pragma once

#include <string>
#include <utility>

#include "kernel/store/catalog.h"
#include "kernel/store/postgresql/postgresql_handle.h"

namespace brimley::store {

// Which company a connection has reached, and by which process of the server.
struct ServerPlace {
    // Equal on a server and the standbys that follow it; different when the company was made anew.
    std::string company;
    std::string server;  // since when it runs
    std::string process;
    std::string process_began;
};

struct ReachedCompany {
    PostgresqlHandle connection;
    const Catalog* catalog;  // of its layout
    ServerPlace place;
};

// Advisory locks of the company's database: this number, and what is held.
inline constexpr int kAdvisoryLocks = 0x42724150;
enum class AdvisoryLock {
    end_of_trail = 1,  // by who appends to it, until the end of the transaction
    layout = 2,        // shared by each connection, alone by an upgrade
};

// A connection set up for a company that exists. Throws not_a_company, locked (it is being upgraded), lost,
// io.
[[nodiscard]] ReachedCompany connect_to_company(const std::string& uri, const Catalog& catalog);

// A query that has a row while that process is still there, so that what was sent to it may still be carried
// out.
[[nodiscard]] std::string still_at_work_sql(const ServerPlace& place);

// A company in the making: its database, made where there was none, and a transaction in which its schema has
// been made. What was made is removed again unless keep() is called; a database to which others have
// connected meanwhile is left to them.
class CompanyInTheMaking {
  public:
    // Throws ErrorKind::state when the database holds a company already, or another program is making one.
    CompanyInTheMaking(const std::string& uri, const Catalog& catalog);
    CompanyInTheMaking(const CompanyInTheMaking&) = delete;
    CompanyInTheMaking& operator=(const CompanyInTheMaking&) = delete;
    // The connection must be closed by then.
    ~CompanyInTheMaking();

    // The open transaction goes along.
    [[nodiscard]] PostgresqlHandle take_connection() { return std::move(connection_); }
    void keep() { made_database_.clear(); }

  private:
    void make_database();
    void give_up() noexcept;
    void drop_database() noexcept;

    std::string uri_;
    std::string made_database_;
    PostgresqlHandle connection_;
    int process_ = 0;  // of the connection, at the server
};

// The company as anybody may read it: host and database, without user and password.
[[nodiscard]] std::string shown_company(const std::string& uri);

}  // namespace brimley::store
