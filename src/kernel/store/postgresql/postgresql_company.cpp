#include "kernel/store/postgresql/postgresql_company.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>
#include <vector>

#include "kernel/store/database.h"
#include "kernel/store/error.h"
#include "kernel/store/postgresql/postgresql_error.h"
#include "kernel/store/postgresql/postgresql_flavour.h"
#include "kernel/store/postgresql/postgresql_layout.h"

namespace brimley::store {

namespace {

constexpr int kServerVersionMin = 150000;
// Where to ask for a database that does not exist yet.
constexpr const char* kMaintenanceDatabase = "postgres";
// Unless the URI says something else. A host that has vanished is noticed within a minute when nothing is
// asked of it, and within half of one when something is.
constexpr std::pair<const char*, const char*> kConnectionDefaults[] = {
    {"connect_timeout", "10"}, {"fallback_application_name", "brimley"},
    {"keepalives_idle", "30"}, {"keepalives_interval", "10"},
    {"keepalives_count", "3"}, {"tcp_user_timeout", "30000"},  // milliseconds
};
// For a statement, unless the server, the role or the URI has a limit of its own.
constexpr const char* kStatementMax = "5min";

struct FreeOptions {
    void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

[[noreturn]] void refuse(const std::string& uri, std::string_view why) {
    throw Error(ErrorKind::not_a_company, fmt::format("{} {}", shown_company(uri), why));
}

using Options = std::map<std::string, std::string>;

// What libpq reads in the URI, by its keywords. Throws not_a_company for a URI that is none.
Options parsed(const std::string& uri) {
    char* reason = nullptr;
    const std::unique_ptr<PQconninfoOption, FreeOptions> options(PQconninfoParse(uri.c_str(), &reason));
    const std::unique_ptr<char, decltype(&PQfreemem)> owned(reason, &PQfreemem);
    Options given;
    if (!options || uri.find('\0') != std::string::npos)
        throw Error(ErrorKind::not_a_company, "the URI of the company cannot be read");
    for (const PQconninfoOption* option = options.get(); option->keyword; ++option)
        if (option->val) given[option->keyword] = option->val;
    return given;
}

Options without_passwords(Options given) {
    given.erase("password");
    given.erase("sslpassword");
    return given;
}

// What the URI itself says. A password whose @ or / was not written in percent form would be read as part of
// the host or of the database, and named in messages.
Options options_of(const std::string& uri) {
    Options given = parsed(uri);
    if (without_passwords(given) != without_passwords(parsed(without_password(uri))))
        throw Error(ErrorKind::not_a_company,
                    "the URI of the company cannot be read: an @ or / of its password must be written as %40 "
                    "or %2F");
    return given;
}

// A connection that may have failed. database: instead of the one that the URI names, when not null.
PostgresqlHandle try_connect(const std::string& uri, const char* database) {
    (void)options_of(uri);
    std::vector<const char*> keywords;
    std::vector<const char*> values;
    const auto add = [&](const char* keyword, const char* value) {
        keywords.push_back(keyword);
        values.push_back(value);
    };
    for (const auto& [keyword, value] : kConnectionDefaults)
        add(keyword, value);
    add("dbname", uri.c_str());
    add("client_encoding", "UTF8");
    if (database) add("dbname", database);
    add(nullptr, nullptr);
    PostgresqlHandle connection(PQconnectdbParams(keywords.data(), values.data(), 1));
    PQsetNoticeReceiver(
        connection.get(), [](void*, const PGresult*) {}, nullptr);
    return connection;
}

bool is_connected(const PostgresqlHandle& connection) { return PQstatus(connection.get()) == CONNECTION_OK; }

[[noreturn]] void tell_unreachable(const std::string& uri, PGconn* connection) {
    const bool no_password = PQconnectionNeedsPassword(connection) == 1;
    throw Error(no_password ? ErrorKind::no_password : ErrorKind::io,
                fmt::format("{} cannot be opened: {}", shown_company(uri), connection_message(connection)));
}

// What was reported as saved must be there after a power failure.
void require_durable(PGconn* connection, const std::string& uri) {
    for (const char* const setting : {"fsync", "full_page_writes"})
        if (text_of_sql(connection, fmt::format("SHOW {}", setting)) != "on")
            throw Error(ErrorKind::io,
                        fmt::format("{} is on a server that does not keep what is saved: {} is off",
                                    shown_company(uri), setting));
    if (text_of_sql(connection, "SHOW synchronous_commit") == "off")
        run_sql(connection, "SET synchronous_commit = on");
}

void set_up(PGconn* connection, const std::string& uri) {
    if (PQserverVersion(connection) < kServerVersionMin) refuse(uri, "is on a server older than 15");
    if (std::string_view(PQparameterStatus(connection, "server_encoding")) != "UTF8")
        refuse(uri, "is a database whose encoding is not UTF8");
    require_durable(connection, uri);
    // A lock of another user is an error at once, and not waited for; only one of an instant, such as that
    // for a new page, is.
    // What the server itself has comes first, so that nothing in the company can take its place.
    // A statement sees what others have committed until then, whatever the role or the URI prefers.
    run_sql(connection, fmt::format("SET search_path = pg_catalog, {}, pg_temp; SET lock_timeout = '200ms'; "
                                    "SET default_transaction_isolation = 'read committed'; "
                                    "SET standard_conforming_strings = on; SET jit = off",
                                    kCompanySchema));
    if (text_of_sql(connection, "SHOW statement_timeout") == "0")
        run_sql(connection, fmt::format("SET statement_timeout = '{}'", kStatementMax));
}

std::string cell(const PostgresqlResult& result, int column) { return PQgetvalue(result.get(), 0, column); }

ServerPlace place_of(PGconn* connection) {
    const PostgresqlResult found = run_sql(
        connection,
        fmt::format("SELECT c.system_identifier || '/' || d.oid || '/' || '{}'::regnamespace::oid, "
                    "pg_postmaster_start_time(), pg_backend_pid(), a.backend_start, "
                    "current_setting('transaction_read_only') "
                    "FROM pg_control_system() c, pg_database d, pg_stat_get_activity(pg_backend_pid()) a "
                    "WHERE d.datname = current_database()",
                    kCompanySchema));
    return {cell(found, 0), cell(found, 1), cell(found, 2), cell(found, 3)};
}

std::string mark_of_schema(PGconn* connection) {
    return text_of_sql(connection,
                       fmt::format("SELECT coalesce(obj_description(oid, 'pg_namespace'), 'none') FROM "
                                   "pg_namespace WHERE nspname = '{}'",
                                   kCompanySchema));
}

// Without that the names in it are written in another way.
bool may_use_schema(PGconn* connection) {
    return text_of_sql(connection, fmt::format("SELECT has_schema_privilege('{}', 'USAGE')::text",
                                               kCompanySchema)) == "true";
}

// Until the connection ends: the layout that is read now stays what the company has.
void hold_layout(PGconn* connection, const std::string& uri) {
    try {
        run_sql(connection, fmt::format("SELECT pg_advisory_lock_shared({}, {})", kAdvisoryLocks,
                                        static_cast<int>(AdvisoryLock::layout)));
    } catch (const Error& error) {
        if (error.kind() != ErrorKind::locked) throw;
        throw Error(ErrorKind::locked, shown_company(uri) + " is being upgraded", error.native_code());
    }
}

// The catalog as companies of the schema's layout have it. Throws not_a_company.
const Catalog& catalog_of_schema(PGconn* connection, const std::string& uri, const Catalog& catalog) {
    const std::string mark = mark_of_schema(connection);
    if (mark.empty()) refuse(uri, "holds no company");
    if (!mark.starts_with(kCompanyMark)) refuse(uri, "holds no company, but something of that name");
    const std::string_view digits = std::string_view(mark).substr(kCompanyMark.size());
    int layout = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), layout);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size() || layout < 1)
        refuse(uri, "was made by another version of this program");
    if (layout > catalog.layout()) refuse(uri, "was made by a newer version of this program");
    return catalog.of_layout(layout);
}

[[noreturn]] void refuse_existing(const std::string& uri) {
    throw Error(ErrorKind::state, shown_company(uri) + " already exists");
}

// The schema or the database that was to be made; or its name, when somebody else makes it in that moment.
bool says_it_exists(const Error& error) {
    return std::ranges::any_of(
        std::initializer_list<const char*>{"42P06", "42P04", "23505"},
        [&](const char* state) { return error.native_code() == native_code_of(state); });
}

void make_schema(PGconn* connection, const std::string& uri, const Catalog& catalog) {
    if (!mark_of_schema(connection).empty()) refuse_existing(uri);
    run_sql(connection, "BEGIN");
    try {
        for (const std::string& statement : postgresql_layout(catalog))
            run_sql(connection, statement);
    } catch (const Error& error) {
        if (says_it_exists(error)) refuse_existing(uri);
        if (error.kind() != ErrorKind::locked) throw;
        throw Error(ErrorKind::state, shown_company(uri) + " is being made by another program");
    }
}

// False when somebody else has made it in that moment.
bool create_database(PGconn* server, const std::string& name) {
    try {
        run_sql(server, fmt::format("CREATE DATABASE {} TEMPLATE template0 ENCODING 'UTF8' LC_COLLATE 'C' "
                                    "LC_CTYPE 'C'",
                                    postgresql_quoted(name)));
        return true;
    } catch (const Error& error) {
        if (!says_it_exists(error)) throw;
        return false;
    }
}

bool succeeds(PGconn* connection, const std::string& statement) {
    return PQresultStatus(PostgresqlResult(PQexec(connection, statement.c_str())).get()) == PGRES_COMMAND_OK;
}

// True only when the server said so.
bool holds_no_company(const std::string& uri, const std::string& database) {
    const PostgresqlHandle connection = try_connect(uri, database.c_str());
    const PostgresqlResult found(
        PQexec(connection.get(),
               fmt::format("SELECT FROM pg_namespace WHERE nspname = '{}'", kCompanySchema).c_str()));
    return PQresultStatus(found.get()) == PGRES_TUPLES_OK && PQntuples(found.get()) == 0;
}

}  // namespace

std::string shown_company(const std::string& uri) {
    auto given = options_of(uri);
    if (given.contains("service")) return "postgresql service " + given["service"];
    return fmt::format("postgresql://{}/{}", given["host"], given["dbname"]);
}

std::string database_name(const std::string& uri) {
    const Options given = options_of(uri);
    // Without one libpq takes the name of the service or of the user.
    for (const char* const option : {"dbname", "service", "user"})
        if (const auto found = given.find(option); found != given.end() && !found->second.empty()) {
            std::string name = found->second;
            std::ranges::replace(name, '/', '-');
            return name;
        }
    return "company";
}

std::string role_name(const std::string& uri) {
    (void)options_of(uri);
    const std::unique_ptr<PQconninfoOption, FreeOptions> defaults(PQconndefaults());
    Options given = parsed(uri);
    for (const PQconninfoOption* option = defaults.get(); option && option->keyword; ++option)
        if (option->val) given.try_emplace(option->keyword, option->val);
    return given["user"];
}

ReachedCompany connect_to_company(const std::string& uri, const Catalog& catalog) {
    PostgresqlHandle connection = try_connect(uri, nullptr);
    if (!is_connected(connection)) tell_unreachable(uri, connection.get());
    set_up(connection.get(), uri);
    hold_layout(connection.get(), uri);
    const Catalog& its_own = catalog_of_schema(connection.get(), uri, catalog);
    const std::string difference = difference_from_layout(connection.get(), its_own);
    if (!difference.empty() && !may_use_schema(connection.get()))
        throw Error(ErrorKind::io,
                    fmt::format("{} is closed to {}: the company's owner calls brimley-company grant",
                                shown_company(uri), PQuser(connection.get())));
    if (!difference.empty())
        refuse(uri, fmt::format("is not laid out as a company of this version: {}", difference));
    ServerPlace place = place_of(connection.get());
    return {std::move(connection), &its_own, std::move(place)};
}

std::string still_at_work_sql(const ServerPlace& place) {
    return fmt::format(
        "SELECT 1 FROM pg_stat_get_activity({}) WHERE pg_postmaster_start_time() = '{}' AND "
        "coalesce(backend_start = '{}', TRUE)",
        place.process, place.server, place.process_began);
}

CompanyInTheMaking::CompanyInTheMaking(const std::string& uri, const Catalog& catalog) : uri_(uri) {
    connection_ = try_connect(uri, nullptr);
    try {
        if (!is_connected(connection_)) make_database();
        process_ = PQbackendPID(connection_.get());
        set_up(connection_.get(), uri);
        hold_layout(connection_.get(), uri);
        make_schema(connection_.get(), uri, catalog);
    } catch (const Error& error) {
        if (error.kind() == ErrorKind::state) keep();  // for the company that somebody else has made there
        give_up();
        throw;
    } catch (...) {
        give_up();
        throw;
    }
}

CompanyInTheMaking::~CompanyInTheMaking() { drop_database(); }

void CompanyInTheMaking::make_database() {
    const PostgresqlHandle server = try_connect(uri_, kMaintenanceDatabase);
    const std::string database = PQdb(connection_.get()) ? PQdb(connection_.get()) : "";
    if (!is_connected(server) || database.empty()) tell_unreachable(uri_, connection_.get());
    const std::string found = "SELECT 1 FROM pg_database WHERE datname = " + postgresql_text(database);
    if (text_of_sql(server.get(), found).empty() && create_database(server.get(), database))
        made_database_ = database;
    connection_ = try_connect(uri_, nullptr);
    if (!is_connected(connection_)) tell_unreachable(uri_, connection_.get());
}

void CompanyInTheMaking::give_up() noexcept {
    connection_.reset();
    drop_database();
}

// Somebody else may have made a company there meanwhile, or may be about to: it must not go with the
// database. Whoever is connected is left alone. After that the database is put out of reach, under another
// name, before it is looked into for the last time.
void CompanyInTheMaking::drop_database() noexcept {
    if (made_database_.empty()) return;
    const PostgresqlHandle server = try_connect(uri_, kMaintenanceDatabase);
    const auto rename = [&](const std::string& from, const std::string& to) {
        return succeeds(server.get(), fmt::format("ALTER DATABASE {} RENAME TO {}", postgresql_quoted(from),
                                                  postgresql_quoted(to)));
    };
    const std::string others = fmt::format(
        "SELECT 1 FROM pg_stat_activity WHERE datname = {} AND pid <> {} AND backend_type IS "
        "DISTINCT FROM 'autovacuum worker'",
        postgresql_text(made_database_), process_);
    if (PQntuples(PostgresqlResult(PQexec(server.get(), others.c_str())).get()) > 0) return;
    if (!holds_no_company(uri_, made_database_)) return;
    const std::string out_of_reach = fmt::format("brimley_being_removed_{}", PQbackendPID(server.get()));
    if (!rename(made_database_, out_of_reach)) return;
    if (holds_no_company(uri_, out_of_reach))
        (void)succeeds(server.get(), "DROP DATABASE " + postgresql_quoted(out_of_reach));
    else
        (void)rename(out_of_reach, made_database_);
}

}  // namespace brimley::store
