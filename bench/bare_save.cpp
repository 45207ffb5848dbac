// The row writes of one save with bare prepared statements: what the engine itself needs for them.
#include <sqlite3.h>

#include <stdexcept>
#include <vector>

#include "workload.h"

namespace brimley::bench {

namespace {

// Period 3: its column, the balances from there on, the year to date; in both families.
std::string period_sums() {
    std::string sets;
    for (const char* family : {"", "e_"}) {
        const std::string f = family;
        sets += (sets.empty() ? "" : ", ") + f + "period3 = ifnull(" + f + "period3, 0) + ?1";
        for (int i = 3; i <= 13; ++i) {
            const std::string column = f + "balperiod" + std::to_string(i);
            sets += ", " + column + " = ifnull(" + column + ", 0) + ?1";
        }
        sets += ", " + f + "ytd_balance = ifnull(" + f + "ytd_balance, 0) + ?1";
    }
    return sets;
}

struct GlAmount {
    const char* accno;
    double amount;
    bool income_statement;
};

constexpr GlAmount kGlAmounts[] = {{"1300", 15.00, false},
                                   {"2000", 337.05, false},
                                   {"5000", 107.35, true},
                                   {"5300", 107.35, true},
                                   {"6300", 107.35, true}};

}  // namespace

struct BareSave::Parts {
    sqlite3* db = nullptr;
    std::vector<sqlite3_stmt*> statements;
    std::int64_t next = 1'000'000;  // keys far away from those of the form
    sqlite3_stmt *begin, *commit, *docno, *fkey, *header, *line, *gl_header, *gl_line, *balance, *period,
        *vendor, *glfkey;

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
    static void text(sqlite3_stmt* statement, int at, const std::string& value) {
        sqlite3_bind_text(statement, at, value.c_str(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
    static void number(sqlite3_stmt* statement, int at, double value) {
        sqlite3_bind_double(statement, at, value);
    }

    void count(const char* doctype) {
        text(docno, 1, doctype);
        run(docno);
        text(fkey, 1, doctype);
        run(fkey);
    }
    void post(const std::string& accno, double amount) {
        number(balance, 1, amount);
        text(balance, 2, accno);
        run(balance);
        number(period, 1, amount);
        text(period, 2, accno);
        run(period);
    }
};

BareSave::BareSave(const std::string& company) : parts_(std::make_unique<Parts>()) {
    Parts& p = *parts_;
    if (sqlite3_open_v2(company.c_str(), &p.db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(p.db));
    }
    p.exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA wal_autocheckpoint=10000");
    p.begin = p.prepare("BEGIN IMMEDIATE");
    p.commit = p.prepare("COMMIT");
    p.docno = p.prepare(
        "UPDATE Docno_master_table SET nextdocno = nextdocno + 1 WHERE company = 1 AND doctype = ? AND "
        "fiscalyear = '2026'");
    p.fkey =
        p.prepare("UPDATE Next_number_fkey_table SET fkeyno = fkeyno + 1 WHERE company = 1 AND doctype = ?");
    p.header = p.prepare(
        "INSERT INTO AP_header_table (fkey, docno, company, doctype, invoice_no, invoice_date, vendor_no, "
        "Currency, remark, "
        "payment_term, duedays, early_days, early_discount, due_date, Source, source_form, period, fyear, "
        "user_created, "
        "date_created, time_created) VALUES (?1, ?2, '1', 'ip', 'BENCH-1', 2461115.5, 'V1001', 'USD', '', "
        "'30', 30, 0, 0, "
        "2461145.5, 'AP-INVOICE', 'APform_invoice', 3, '2026', 'anna', 2461115.5, '00:00:00')");
    std::string slots;
    std::string slot_values;
    for (const char* slot : {"1", "2"}) {
        const std::string s = slot;
        slots += ", tax_authority" + s + ", taxable_amount" + s + ", tax_rate" + s + ", tax_amount" + s +
                 ", taxable" + s + ", tax_allocated" + s + ", tax_recoverable" + s + ", tax_expensed" + s;
        slot_values += s == "1" ? ", 'TAXA', 105, 5, 5, 1, 0, 5, 0" : ", 'TAXB', 105, 7, 7.35, 0, 7.35, 0, 0";
    }
    p.line = p.prepare(
        "INSERT INTO AP_transaction_table (fkey, docno, pay_item, Description, gross_amount, open_amount, "
        "taxable_amount, "
        "tax_amount, tax_code, po_accno, period, fyear, computer_id, date_created, time_created, "
        "user_created, Source, "
        "source_form, doctype, company, vendor_no, invoice_no, invoice_date, Currency, payment_term, "
        "duedays, early_days, "
        "early_discount, due_date, ap_accno" +
        slots +
        ") VALUES (?1, ?2, ?3, 'Green coffee, 20 bags', 112.35, 112.35, 100, 12.35, 'STACK', ?4, 3, '2026', "
        "'BENCH', "
        "2461115.5, '00:00:00', 'anna', 'AP-INVOICE', 'APform_invoice', 'ip', '1', 'V1001', 'BENCH-1', "
        "2461115.5, 'USD', "
        "'30', 30, 0, 0, 2461145.5, '2000'" +
        slot_values + ")");
    p.gl_header = p.prepare(
        "INSERT INTO GL_header_table (company, doctype, docno, fkey, gldate, remark, Source, source_docno, "
        "source_form, "
        "Currency, period, fyear, user_created, date_created, time_created) VALUES (1, 'gl', ?1, ?2, "
        "2461115.5, "
        "'Invoice no.', 'AP-INVOICE', ?3, 'APform_invoice', 'USD', '3', '2026', 'anna', 2461115.5, "
        "'00:00:00')");
    p.gl_line = p.prepare(
        "INSERT INTO GL_transaction_table (company, fkey, docno, gldate, period, fyear, lineno, accno, "
        "acccode, amount, "
        "base_amount, Currency, ledgertype, Source, source_form, source_docno, date_created, time_created, "
        "user_created) "
        "VALUES (1, ?1, ?2, 2461115.5, '3', '2026', ?3, ?4, ?4, ?5, ?5, 'USD', 'A', 'AP-INVOICE', "
        "'APform_invoice', ?6, "
        "2461115.5, '00:00:00', 'anna')");
    p.balance = p.prepare(
        "UPDATE Balance_table SET amount = ifnull(amount, 0) + ?1, base_amount = ifnull(base_amount, 0) + ?1 "
        "WHERE company = 1 "
        "AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'");
    p.period = p.prepare(
        "UPDATE Balance_period_table SET " + period_sums() +
        " WHERE fyear = '2026' AND company = 1 AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'");
    p.vendor = p.prepare(
        "UPDATE Vendor_table SET owing_balance = ifnull(owing_balance, 0) + 337.05 WHERE vendor_no = "
        "'V1001'");
    p.glfkey = p.prepare("UPDATE AP_header_table SET GLFKEY = ?1 WHERE fkey = ?2");
}

BareSave::~BareSave() {
    for (sqlite3_stmt* statement : parts_->statements)
        sqlite3_finalize(statement);
    sqlite3_close(parts_->db);
}

void BareSave::save() {
    Parts& p = *parts_;
    const std::string number = std::to_string(p.next++);
    const std::string docno = "IP-26-" + number;
    const std::string fkey = "1ip-" + number;
    const std::string gl_docno = "GL-26-" + number;
    const std::string gl_fkey = "1gl-" + number;
    const char* accounts[] = {"5000", "5300", "6300"};
    p.run(p.begin);
    p.count("ip");
    p.count("gl");
    Parts::text(p.header, 1, fkey);
    Parts::text(p.header, 2, docno);
    p.run(p.header);
    for (int i = 0; i < 3; ++i) {
        Parts::text(p.line, 1, fkey);
        Parts::text(p.line, 2, docno);
        Parts::text(p.line, 3, std::to_string(i + 1));
        Parts::text(p.line, 4, accounts[i]);
        p.run(p.line);
    }
    Parts::text(p.gl_header, 1, gl_docno);
    Parts::text(p.gl_header, 2, gl_fkey);
    Parts::text(p.gl_header, 3, docno);
    p.run(p.gl_header);
    int lineno = 1;
    for (const GlAmount& gl : kGlAmounts) {
        Parts::text(p.gl_line, 1, gl_fkey);
        Parts::text(p.gl_line, 2, gl_docno);
        Parts::number(p.gl_line, 3, lineno++);
        Parts::text(p.gl_line, 4, gl.accno);
        Parts::number(p.gl_line, 5, gl.amount);
        Parts::text(p.gl_line, 6, docno);
        p.run(p.gl_line);
        p.post(gl.accno, gl.amount);
        if (gl.income_statement) p.post("3900", -gl.amount);
    }
    p.run(p.vendor);
    Parts::text(p.glfkey, 1, gl_fkey);
    Parts::text(p.glfkey, 2, fkey);
    p.run(p.glfkey);
    p.run(p.commit);
}

void BareSave::fill_up_to(std::int64_t invoices) {
    Parts& p = *parts_;
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
                values += separator + "'IP-26-' || ?1";
            } else {
                values += separator + "\"" + name + "\"";
            }
        }
        sqlite3_reset(info);
        return p.prepare("INSERT INTO " + table + " (" + columns + ") SELECT " + values + " FROM " + table +
                         " WHERE fkey = '1" + kind + "-1'");
    };
    sqlite3_stmt* copies[] = {
        copy("AP_header_table", "ip", "IP-26-"), copy("AP_transaction_table", "ip", "IP-26-"),
        copy("GL_header_table", "gl", "GL-26-"), copy("GL_transaction_table", "gl", "GL-26-")};
    sqlite3_stmt* stored = p.prepare("SELECT count(*) FROM AP_header_table");
    if (sqlite3_step(stored) != SQLITE_ROW) throw std::runtime_error(sqlite3_errmsg(p.db));
    const std::int64_t present = sqlite3_column_int64(stored, 0);
    sqlite3_reset(stored);
    for (std::int64_t n = present; n < invoices; ++n) {
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
