#include "kernel/store/postgresql/postgresql_error.h"

#include <string_view>

namespace brimley::store {

namespace {

constexpr int kBase = 36;

struct StateKind {
    std::string_view state;  // whole, or the two characters of its class
    ErrorKind kind;
};

// What is not listed here has to do with the machine. The first entry that fits holds.
constexpr StateKind kKinds[] = {
    {"55P03", ErrorKind::locked},         // lock not available
    {"40P01", ErrorKind::locked},         // deadlock
    {"40001", ErrorKind::locked},         // serialization failure
    {"25P02", ErrorKind::state},          // the transaction has failed already
    {"25006", ErrorKind::io},             // the server only reads
    {"42501", ErrorKind::io},             // no right to do it
    {"3D000", ErrorKind::not_a_company},  // no such database
    {"57P01", ErrorKind::lost},           // the server is shut down
    {"57P02", ErrorKind::lost},           // the server has crashed
    {"57P03", ErrorKind::lost},           // the server is starting
    {"57P05", ErrorKind::lost},           // idle for too long
    {"25P03", ErrorKind::lost},           // idle within a transaction for too long
    {"08", ErrorKind::lost},
    {"22", ErrorKind::conversion},
    {"23", ErrorKind::constraint},
    {"42", ErrorKind::syntax},
    {"54", ErrorKind::syntax},  // beyond the server's limits
};

ErrorKind kind_of(std::string_view state) {
    for (const StateKind& known : kKinds)
        if (state.starts_with(known.state)) return known.kind;
    return ErrorKind::io;
}

std::string one_line(std::string_view text) {
    std::string line;
    for (const char letter : text.substr(0, text.find_last_not_of(" \n") + 1)) {
        const bool blank = letter == '\n' || letter == '\t';
        if (!blank || !line.ends_with(' ')) line += blank ? ' ' : letter;
    }
    return line;
}

std::string message_of(ErrorKind kind, const std::string& reason) {
    switch (kind) {
        case ErrorKind::locked:
            return kAnotherUserWrites;
        case ErrorKind::lost:
            return "the connection to the company is gone: " + reason;
        case ErrorKind::state:
            return "the transaction has failed and can only be rolled back";
        default:
            return "the company on the server: " + reason;
    }
}

}  // namespace

int native_code_of(const char* sql_state) {
    int code = 0;
    for (; sql_state && *sql_state; ++sql_state) {
        const bool digit = *sql_state >= '0' && *sql_state <= '9';
        code = code * kBase + (digit ? *sql_state - '0' : *sql_state - 'A' + 10);
    }
    return code;
}

std::string connection_message(PGconn* connection) {
    const std::string line = one_line(connection ? PQerrorMessage(connection) : "out of memory");
    return line.empty() ? "the server has closed it" : line;
}

Error postgresql_error(PGconn* connection, const PGresult* result) {
    const char* const state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    if (!state || PQstatus(connection) == CONNECTION_BAD) {
        return {ErrorKind::lost, message_of(ErrorKind::lost, connection_message(connection)),
                native_code_of(state)};
    }
    const char* const reason = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    const ErrorKind kind = kind_of(state);
    return {kind, message_of(kind, one_line(reason ? reason : "")), native_code_of(state)};
}

}  // namespace brimley::store
