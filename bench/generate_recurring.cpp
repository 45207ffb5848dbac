// What it costs to list recurring templates that are due and to turn them into invoices with their GL
// documents, against bare prepared statements that read and write the same on the same file; each has
// templates of its own. A template has one taxed line, its GL document three.
//
//   bench-generate-recurring [TEMPLATES] [FOLDER] [STORED...]
//
// STORED: as many generated invoices of the years before are in the company.
#include <fmt/format.h>

#include "bare_statements.h"
#include "bench_company.h"
#include "bench_host.h"
#include "bind_values.h"
#include "by_turns.h"
#include "invoices/recurring_run/apreport_recur_inquiry.h"

namespace {

using brimley::bench::BareSums;
using brimley::bench::BareValue;
using brimley::bench::BenchHost;
using brimley::bench::bind_values;
using brimley::bench::cpu_ms;
using brimley::bench::kRounds;
using brimley::bench::must;
namespace bench = brimley::bench;

constexpr const char* kFormTemplates = "recur";
// They begin and end years later, so that the form does not list them.
constexpr const char* kBareTemplates = "bare";

class Bare : public bench::BareConnection, private bench::BareRunner {
  public:
    explicit Bare(const std::string& company) : BareConnection(company) {
        const auto texts = bench::bare_statements();
        for (const bench::Bare shared : {bench::balance_read, bench::balance_set, bench::period_read,
                                         bench::period_set, bench::docno_read, bench::docno_set})
            shared_[shared] = prepare(texts[shared]);
    }

    void fill(int stored) {
        const auto numbers = [&](const std::string& select) {
            return fmt::format(
                "WITH RECURSIVE n(i) AS (SELECT 1 WHERE {0} > 0 UNION ALL SELECT i + 1 FROM n WHERE i < {0}) "
                "{1} FROM n",
                stored, select);
        };
        exec("BEGIN");
        exec(
            "INSERT INTO AP_header_table (fkey, docno, company, doctype, vendor_no, Currency, Source, "
            "recurno, Month, Year, paid, fully_paid, void, hold, printed) " +
            numbers("SELECT '1ip' || i, 'ip' || i, '1', 'ip', 'V1001', 'USD', 'AP', 'recur' || (i % 1000), "
                    "printf('%02d', 1 + i / 1000 % 12), 1990 + i / 12000, 0, 0, 0, 0, 0"));
        exec(
            "INSERT INTO AP_transaction_table (fkey, docno, company, vendor_no, pay_item, gross_amount, "
            "open_amount, paid, void, hold) " +
            numbers("SELECT '1ip' || i, 'ip' || i, '1', 'V1001', '1', 105, 105, 0, 0, 0"));
        exec("INSERT INTO GL_header_table (company, doctype, docno, fkey, Source) " +
             numbers("SELECT 1, 'gl', 'gl' || i, '1gl' || i, 'AP'"));
        exec("INSERT INTO GL_transaction_table (company, fkey, docno, lineno, accno, amount) " +
             numbers("SELECT 1, '1gl' || i, 'gl' || i, 1, '2000', 105"));
        exec("COMMIT");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }
    // Templates that nothing has been issued of, in place of those before.
    void new_templates(int count, int round) {
        exec("BEGIN; DELETE FROM AP_recur_header_table; DELETE FROM AP_recur_transaction_table");
        for (const auto& [name, begin] : {std::pair(kFormTemplates, 2026), std::pair(kBareTemplates, 2040)}) {
            const std::string numbers = fmt::format(
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {}) ", count);
            exec(fmt::format(
                "INSERT INTO AP_recur_header_table (recurno, recur_name, fkey, company, doctype, vendor_no, "
                "Currency, payment_term, recur_date, Frequency, begin_date, end_date, inactive, "
                "date_created) "
                "{0} SELECT '{1}{2}-' || i, 'Rent ' || i, '1{1}-' || i, '1', 'recur', 'V10' || "
                "printf('%02d', 6 + i % 15), 'USD', '10', 5, 'monthly', '{3}0101', '{3}1231', 0, 2461041.5 "
                "FROM n",
                numbers, name, round, begin));
            exec(fmt::format(
                "INSERT INTO AP_recur_transaction_table (fkey, company, vendor_no, Currency, payment_term, "
                "pay_item, gross_amount, open_amount, taxable_amount, tax_amount, tax_code, po_accno, "
                "include_tax) {0} SELECT '1{1}-' || i, '1', 'V1001', 'USD', '10', '1', 105, 105, 100, 5, "
                "'GST5', '6100', 0 FROM n",
                numbers, name));
        }
        exec("COMMIT");
    }

    // The keys of the templates that are due.
    std::vector<std::string> list() {
        drain(bind(expired_, {"20400306"}));
        bind(due_, {"20400306"});
        std::vector<std::string> keys;
        std::vector<std::string> named;
        while (sqlite3_step(due_) == SQLITE_ROW) {
            const auto text = [&](int column) {
                return std::string(reinterpret_cast<const char*>(sqlite3_column_text(due_, column)));
            };
            for (int column = 5; column < sqlite3_column_count(due_); ++column)
                read_ += static_cast<std::size_t>(sqlite3_column_bytes(due_, column));
            if (drain(bind(issued_, {text(0)})) > 0) continue;
            if (std::find(named.begin(), named.end(), text(2)) == named.end()) {
                named.push_back(text(2));
                drain(bind(vendor_name_, {text(2)}));
            }
            keys.push_back(text(1));
        }
        sqlite3_reset(due_);
        return keys;
    }

    void generate(const std::vector<std::string>& keys) {
        exec("BEGIN IMMEDIATE");
        drain(bind(vendor_account_, {"V1006"}));
        for (const std::string& key : keys)
            generate(key);
        exec("COMMIT");
    }

  private:
    // Binds texts that live until the statement has run.
    sqlite3_stmt* bind(sqlite3_stmt* statement, std::initializer_list<std::string_view> texts) {
        int at = 0;
        for (const std::string_view text : texts)
            sqlite3_bind_text(statement, ++at, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        return statement;
    }
    void run(bench::Bare statement, std::span<const BareValue> values) override {
        drain(bind_values(shared_[statement], values));
    }
    std::vector<double> read(bench::Bare statement, std::span<const BareValue> values) override {
        sqlite3_stmt* const query = bind_values(shared_[statement], values);
        if (sqlite3_step(query) != SQLITE_ROW) throw std::runtime_error("no row to read");
        std::vector<double> row(static_cast<std::size_t>(sqlite3_column_count(query)));
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = sqlite3_column_double(query, static_cast<int>(i));
        sqlite3_reset(query);
        return row;
    }

    std::string next_number(const char* doctype) {
        const BareValue kind = doctype;
        std::vector<double> row = read(bench::docno_read, {&kind, 1});
        const std::string number = fmt::format("{}{:.0f}", doctype, row.at(1));
        row.at(1) += 1;
        const std::vector<BareValue> values(row.begin(), row.end());
        run(bench::docno_set, values);
        return number;
    }
    void write(sqlite3_stmt* statement, std::initializer_list<BareValue> values) {
        drain(bind_values(statement, {values.begin(), values.size()}));
    }
    void generate(const std::string& key);
    void post_line(const std::string& gl, const std::string& docno, double lineno, const char* accno,
                   double amount, bool income_statement);

    std::array<sqlite3_stmt*, bench::kBareStatements> shared_{};
    std::size_t read_ = 0;
    sqlite3_stmt* expired_ =
        prepare("SELECT fkey FROM AP_recur_header_table WHERE end_date < ?1 AND inactive = 0");
    sqlite3_stmt* due_ = prepare(
        "SELECT recurno, fkey, vendor_no, Frequency, recur_date, recur_name, company, doctype, Currency, "
        "payment_term, remark, begin_date, end_date, no_invoice, no_issue, inactive, date_created FROM "
        "AP_recur_header_table WHERE begin_date <= ?1 AND end_date >= ?1");
    sqlite3_stmt* issued_ = prepare(
        "SELECT recurno FROM AP_header_table WHERE recurno = ?1 AND Year = '2026' AND Month >= '03' AND "
        "Month <= '03'");
    sqlite3_stmt* vendor_name_ = prepare("SELECT VENDOR_NAME FROM Vendor_table WHERE vendor_no = ?1");
    sqlite3_stmt* vendor_account_ = prepare("SELECT ap_accno FROM Vendor_table WHERE vendor_no = ?1");
    sqlite3_stmt* template_ = prepare("SELECT * FROM AP_recur_header_table WHERE fkey = ?1");
    sqlite3_stmt* template_lines_ = prepare("SELECT * FROM AP_recur_transaction_table WHERE fkey = ?1");
    sqlite3_stmt* periods_ = prepare("SELECT * FROM Period_table");
    sqlite3_stmt* term_ = prepare("SELECT * FROM Payment_term_table WHERE term_no = ?1");
    sqlite3_stmt* account_ = prepare(
        "SELECT accno, accname, type, accclass, acctype, debit, inactive, acccode, subacc, subacc2, subacc3, "
        "subacc4, subacc5 FROM Account_master_table WHERE accno = ?1");
    sqlite3_stmt* header_ = prepare(
        "INSERT INTO AP_header_table (docno, gldate, vendor_no, doctype, company, fkey, Currency, "
        "payment_term, recurno, Source, date_created, time_created, Month, Year, fully_paid, paid, printed, "
        "void, hold) VALUES (?1, ?2, ?3, 'ip', '1', ?4, 'USD', '10', ?5, 'AP', ?6, ?7, '03', '2026', 0, 0, "
        "0, 0, 0)");
    sqlite3_stmt* line_ = prepare(
        "INSERT INTO AP_transaction_table (docno, gldate, vendor_no, company, fkey, Currency, payment_term, "
        "date_created, time_created, Month, Year, pay_item, gross_amount, open_amount, taxable_amount, "
        "tax_amount, tax_code, include_tax, po_accno, duedays, early_days, early_discount, due_date, "
        "discount_date, ap_accno, userid, form_name, paid, void, hold, taxable1, taxable2, taxable3, "
        "taxable4, taxable5) VALUES (?1, ?2, ?3, '1', ?4, 'USD', '10', ?5, ?6, '03', '2026', '1', ?7, ?7, "
        "?8, ?9, ?10, 0, ?11, 30, 10, 2, ?12, ?13, ?14, 'anna', 'APform_invoice', 0, 0, 0, 0, 0, 0, 0, 0)");
    sqlite3_stmt* gl_header_ = prepare(
        "INSERT INTO GL_header_table (company, doctype, docno, gldate, fkey, remark, Source, source_docno, "
        "Currency, period, fyear, ledgertype, Reverse) VALUES (1, 'gl', ?1, ?2, ?3, ?4, 'AP', ?5, 'USD', "
        "'3', "
        "'2026', 'A', 0)");
    sqlite3_stmt* gl_line_ = prepare(
        "INSERT INTO GL_transaction_table (company, fkey, docno, gldate, period, lineno, accno, amount, "
        "Currency, ledgertype, Source, source_form, source_docno, date_created, time_created, userid, "
        "fiscalyear, Month, Year) VALUES (1, ?1, ?2, ?3, '3', ?4, ?5, ?6, 'USD', 'A', 'AP', "
        "'APform_invoice', ?7, ?8, ?9, 'anna', '2026', '03', '2026')");
};

const brimley::store::DateTime kToday = *brimley::store::DateTime::from_ymd(2026, 3, 16);
const brimley::store::DateTime kDue = *brimley::store::DateTime::from_ymd(2026, 3, 5);

void Bare::generate(const std::string& key) {
    bind(template_, {key});
    if (sqlite3_step(template_) != SQLITE_ROW) throw std::runtime_error("no template");
    const auto text = [&](int column) {
        return std::string(reinterpret_cast<const char*>(sqlite3_column_text(template_, column)));
    };
    const std::string recurno = text(1);
    const std::string vendor_no = text(6);
    sqlite3_reset(template_);
    drain(periods_);
    const std::string docno = next_number("ip");
    const std::string fkey = "1" + docno;
    write(header_, {docno, kDue, vendor_no, fkey, recurno, kToday, "09:30:00"});
    drain(bind(term_, {"10"}));
    drain(bind(template_lines_, {key}));
    write(line_, {docno, kDue, vendor_no, fkey, kToday, "09:30:00", 105.0, 100.0, 5.0, "GST5", "6100",
                  kDue.plus_days(30), kDue.plus_days(10), "2000"});
    const std::string gl = next_number("gl");
    drain(bind(vendor_account_, {vendor_no}));
    post_line(gl, docno, 1, "2000", 105, false);
    post_line(gl, docno, 2, "6100", 100, true);
    post_line(gl, docno, 3, "1300", 5, false);
    write(gl_header_, {gl, kDue, "1" + gl, "Invoice no. " + docno, docno});
}

void Bare::post_line(const std::string& gl, const std::string& docno, double lineno, const char* accno,
                     double amount, bool income_statement) {
    drain(bind(account_, {accno}));
    write(gl_line_, {"1" + gl, gl, kDue, lineno, accno, amount, docno, kToday, "09:30:00"});
    bench::post(*this, BareSums::read_first, accno, amount);
    if (income_statement) bench::post(*this, BareSums::read_first, "3900", -amount);
}

struct Cost {
    std::vector<double> bare, form;
    void print(const char* what, int templates) {
        for (std::vector<double>* side : {&bare, &form})
            std::sort(side->begin(), side->end());
        const double bare_us = bare[kRounds / 2] * 1000 / templates;
        const double form_us = form[kRounds / 2] * 1000 / templates;
        fmt::print("  {}: bare {:.1f} us a template, form {:.1f} us, ratio {:.2f}\n", what, bare_us, form_us,
                   form_us / bare_us);
    }
};

void measure(const std::string& company, int templates, int stored) {
    Bare bare(company);
    bare.fill(stored);
    BenchHost host(company);
    host.ap.showform_APreport_recur_inquiry();
    auto& form = *host.ap.frm_recur_inquiry;
    Cost listing;
    Cost generation;
    const auto timed = [](std::vector<double>& into, const auto& work) {
        const double before = cpu_ms();
        work();
        into.push_back(cpu_ms() - before);
    };
    for (int round = -1; round < kRounds; ++round) {
        bare.new_templates(templates, round + 1);
        std::vector<std::string> keys;
        Cost unused;
        Cost& list_cost = round < 0 ? unused : listing;  // statements prepared, caches warm
        Cost& run_cost = round < 0 ? unused : generation;
        timed(list_cost.bare, [&] { keys = bare.list(); });
        timed(list_cost.form, [&] { must(form.press(brimley::invoices::kListDue)); });
        if (static_cast<int>(keys.size()) != templates || form.dbgrid1.array.used_rows() != templates)
            throw std::runtime_error("not all templates are due");
        timed(run_cost.bare, [&] {
            bare.generate(keys);
            keys = bare.list();
        });
        timed(run_cost.form, [&] { must(form.press(brimley::invoices::kGenerate)); });
        if (!keys.empty() || form.dbgrid1.array.used_rows() != 0)
            throw std::runtime_error("not all are issued");
    }
    fmt::print("{} templates, {} stored invoices\n", templates, stored);
    listing.print("list", templates);
    generation.print("generate", templates);
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    for (const int stored : arguments.sizes(3, {0, 10'000, 100'000})) {
        const brimley::bench::BenchCompany company(arguments.folder(2), "bench-generate-recurring");
        measure(company.path(), arguments.number(1, 1'000), stored);
    }
    return 0;
}
