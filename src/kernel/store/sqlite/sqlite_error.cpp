#include "kernel/store/sqlite/sqlite_error.h"

#include <new>

#include "kernel/store/error.h"

namespace brimley::store {

namespace {

ErrorKind kind_of(int code) {
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return ErrorKind::locked;
        case SQLITE_CONSTRAINT:
            return ErrorKind::constraint;
        case SQLITE_TOOBIG:
        case SQLITE_MISMATCH:
            return ErrorKind::conversion;
        // What the translator wrote and SQLite refuses: only a query beyond SQLite's limits.
        case SQLITE_ERROR:
            return ErrorKind::syntax;
        case SQLITE_NOTADB:
            return ErrorKind::not_a_company;
        default:
            return ErrorKind::io;
    }
}

}  // namespace

const char* disk_failure(int code) {
    switch (code) {
        case SQLITE_IOERR_READ:
        case SQLITE_IOERR_SHORT_READ:
        case SQLITE_IOERR_CORRUPTFS:
            return kCannotBeRead;
        default:
            break;
    }
    const int family = code & 0xff;
    const bool writing = family == SQLITE_FULL || family == SQLITE_IOERR || family == SQLITE_READONLY ||
                         family == SQLITE_CANTOPEN;
    return writing ? kCannotBeWritten : nullptr;
}

void throw_sqlite_error(sqlite3* connection, int code, const std::string& what) {
    if ((code & 0xff) == SQLITE_NOMEM) throw std::bad_alloc();
    if (kind_of(code) == ErrorKind::locked) throw Error(ErrorKind::locked, kAnotherUserWrites, code);
    if (const char* const failure = disk_failure(code))
        throw Error(ErrorKind::io, "the company file" + std::string(failure), code);
    const char* const reason = connection ? sqlite3_errmsg(connection) : sqlite3_errstr(code);
    throw Error(kind_of(code), what + ": " + reason, code);
}

}  // namespace brimley::store
