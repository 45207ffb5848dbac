// The row writes of one save with bare prepared statements: what the engine itself needs for them.
#include <sqlite3.h>

#include <stdexcept>
#include <vector>

#include "bare_statements.h"
#include "bind_values.h"
#include "workload.h"

namespace brimley::bench {

namespace {

// Where the documents of a kind are stored, and how they are called.
struct Stored {
    const char* header;
    const char* lines;
    std::string doctype;
    std::string prefix;
};

Stored stored_as(BareDocument document) {
    switch (document) {
        case BareDocument::invoice:
            return {"AP_header_table", "AP_transaction_table", "ip", "IP-26-"};
        case BareDocument::misc_payment:
            return {"Payment_header_table", "Payment_misc_transaction_table", "mpy", "MPY-26-"};
        case BareDocument::prepayment:
            return {"Payment_header_table", "Payment_transaction_table", "pp", "PP-26-"};
        default:
            return {"Payment_header_table", "Payment_transaction_table", "pc", "PC-26-"};
    }
}

}  // namespace

struct BareSave::Parts : BareRunner {
    sqlite3* db = nullptr;
    std::vector<sqlite3_stmt*> statements;
    BareDocument document = BareDocument::invoice;
    std::int64_t next = 1'000'000;  // keys far away from those of the form
    sqlite3_stmt* begin = nullptr;
    sqlite3_stmt* commit = nullptr;
    std::array<sqlite3_stmt*, kBareStatements> writes{};

    sqlite3_stmt* prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v3(db, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
            SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(db) + (": " + sql));
        }
        statements.push_back(statement);
        return statement;
    }
    void run(sqlite3_stmt* statement) {
        if (const int status = sqlite3_step(statement); status != SQLITE_DONE)
            throw std::runtime_error(sqlite3_errmsg(db));
        sqlite3_reset(statement);
    }
    void exec(const std::string& sql) {
        if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(db) + (": " + sql));
        }
    }
    void run(Bare statement, std::span<const BareValue> values) override { run(bound(statement, values)); }
    std::vector<double> read(Bare statement, std::span<const BareValue> values) override {
        sqlite3_stmt* const query = bound(statement, values);
        if (sqlite3_step(query) != SQLITE_ROW) throw std::runtime_error("no row to read");
        std::vector<double> row(static_cast<std::size_t>(sqlite3_column_count(query)));
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = sqlite3_column_double(query, static_cast<int>(i));
        sqlite3_reset(query);
        return row;
    }
    sqlite3_stmt* bound(Bare statement, std::span<const BareValue> values) {
        return bind_values(writes[statement], values);
    }
};

BareSave::BareSave(const std::string& company, BareDocument document) : parts_(std::make_unique<Parts>()) {
    Parts& p = *parts_;
    p.document = document;
    if (sqlite3_open_v2(company.c_str(), &p.db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) !=
        SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(p.db));
    }
    p.exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA wal_autocheckpoint=10000");
    p.begin = p.prepare("BEGIN IMMEDIATE");
    p.commit = p.prepare("COMMIT");
    const auto texts = bare_statements();
    for (std::size_t i = 0; i < texts.size(); ++i)
        p.writes[i] = p.prepare(texts[i]);
}

BareSave::~BareSave() {
    for (sqlite3_stmt* statement : parts_->statements)
        sqlite3_finalize(statement);
    sqlite3_close(parts_->db);
}

void BareSave::save(BareSums sums) {
    Parts& p = *parts_;
    p.run(p.begin);
    run_bare_save(p, p.next++, sums, p.document);
    p.run(p.commit);
}

void BareSave::fill_up_to(std::int64_t documents) {
    Parts& p = *parts_;
    const Stored kind_of_document = stored_as(p.document);
    p.exec("BEGIN IMMEDIATE");
    // Each statement copies the rows of the document given by its keys under new keys.
    const auto copy = [&](const std::string& table, const std::string& kind,
                          const std::string& number_prefix) {
        std::string columns;
        std::string values;
        sqlite3_stmt* info = p.prepare("SELECT name FROM pragma_table_info('" + table + "') WHERE pk = 0");
        while (sqlite3_step(info) == SQLITE_ROW) {
            const std::string name = reinterpret_cast<const char*>(sqlite3_column_text(info, 0));
            const std::string separator = columns.empty() ? "" : ", ";
            columns += separator + "\"" + name + "\"";
            if (name == "fkey") {
                values += separator + "'1" + kind + "-' || ?1";
            } else if (name == "docno") {
                values += separator + "'" + number_prefix + "' || ?1";
            } else if (name == "GLFKEY") {
                values += separator + "'1gl-' || ?1";
            } else if (name == "source_docno") {
                values += separator + "'" + kind_of_document.prefix + "' || ?1";
            } else {
                values += separator + "\"" + name + "\"";
            }
        }
        sqlite3_reset(info);
        return p.prepare("INSERT INTO " + table + " (" + columns + ") SELECT " + values + " FROM " + table +
                         " WHERE fkey = '1" + kind + "-1'");
    };
    sqlite3_stmt* copies[] = {
        copy(kind_of_document.header, kind_of_document.doctype, kind_of_document.prefix),
        copy(kind_of_document.lines, kind_of_document.doctype, kind_of_document.prefix),
        copy("GL_header_table", "gl", "GL-26-"), copy("GL_transaction_table", "gl", "GL-26-")};
    sqlite3_stmt* stored = p.prepare(std::string("SELECT count(*) FROM ") + kind_of_document.header);
    if (sqlite3_step(stored) != SQLITE_ROW) throw std::runtime_error(sqlite3_errmsg(p.db));
    const std::int64_t present = sqlite3_column_int64(stored, 0);
    sqlite3_reset(stored);
    for (std::int64_t n = present; n < documents; ++n) {
        for (sqlite3_stmt* statement : copies) {
            sqlite3_bind_int64(statement, 1, 2'000'000 + n);
            p.run(statement);
        }
    }
    p.exec("COMMIT");
    p.exec("PRAGMA wal_checkpoint(TRUNCATE)");
}

void BareSave::count_copies() {
    parts_->exec(
        "UPDATE Next_number_fkey_table SET fkeyno = 1 + (SELECT max(CAST(substr(fkey, 5) AS INTEGER)) FROM "
        "AP_header_table WHERE doctype = 'ip') WHERE company = 1 AND doctype = 'ip'");
}

}  // namespace brimley::bench
