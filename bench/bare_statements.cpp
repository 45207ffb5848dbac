#include "bare_statements.h"

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

std::string line_statement() {
    std::string slots;
    std::string slot_values;
    for (const char* slot : {"1", "2"}) {
        const std::string s = slot;
        slots += ", tax_authority" + s + ", taxable_amount" + s + ", tax_rate" + s + ", tax_amount" + s +
                 ", taxable" + s + ", tax_allocated" + s + ", tax_recoverable" + s + ", tax_expensed" + s;
        slot_values +=
            s == "1" ? ", 'TAXA', 105, 5, 5, TRUE, 0, 5, 0" : ", 'TAXB', 105, 7, 7.35, FALSE, 7.35, 0, 0";
    }
    return "INSERT INTO AP_transaction_table (fkey, docno, pay_item, Description, gross_amount, open_amount, "
           "taxable_amount, "
           "tax_amount, tax_code, po_accno, period, fyear, computer_id, date_created, time_created, "
           "user_created, Source, "
           "source_form, doctype, company, vendor_no, invoice_no, invoice_date, Currency, payment_term, "
           "duedays, early_days, "
           "early_discount, due_date, ap_accno" +
           slots +
           ") VALUES (?1, ?2, ?3, 'Green coffee, 20 bags', 112.35, 112.35, 100, 12.35, 'STACK', ?4, 3, "
           "'2026', "
           "'BENCH', "
           "2461115.5, '00:00:00', 'anna', 'AP-INVOICE', 'APform_invoice', 'ip', '1', 'V1001', 'BENCH-1', "
           "2461115.5, 'USD', "
           "'30', 30, 0, 0, 2461145.5, '2000'" +
           slot_values + ")";
}

void post(BareRunner& runner, const std::string& accno, double amount) {
    const std::array<BareValue, 2> values{amount, accno};
    runner.run(balance, values);
    runner.run(period, values);
}

void count(BareRunner& runner, const char* doctype) {
    const std::array<BareValue, 1> values{std::string(doctype)};
    runner.run(docno, values);
    runner.run(fkey, values);
}

}  // namespace

std::array<std::string, kBareStatements> bare_statements() {
    std::array<std::string, kBareStatements> texts;
    texts[docno] =
        "UPDATE Docno_master_table SET nextdocno = nextdocno + 1 WHERE company = 1 AND doctype = ?1 AND "
        "fiscalyear = '2026'";
    texts[fkey] = "UPDATE Next_number_fkey_table SET fkeyno = fkeyno + 1 WHERE company = 1 AND doctype = ?1";
    texts[header] =
        "INSERT INTO AP_header_table (fkey, docno, company, doctype, invoice_no, invoice_date, vendor_no, "
        "Currency, remark, "
        "payment_term, duedays, early_days, early_discount, due_date, Source, source_form, period, fyear, "
        "user_created, "
        "date_created, time_created) VALUES (?1, ?2, '1', 'ip', 'BENCH-1', 2461115.5, 'V1001', 'USD', '', "
        "'30', 30, 0, 0, "
        "2461145.5, 'AP-INVOICE', 'APform_invoice', 3, '2026', 'anna', 2461115.5, '00:00:00')";
    texts[line] = line_statement();
    texts[gl_header] =
        "INSERT INTO GL_header_table (company, doctype, docno, fkey, gldate, remark, Source, source_docno, "
        "source_form, "
        "Currency, period, fyear, user_created, date_created, time_created) VALUES (1, 'gl', ?1, ?2, "
        "2461115.5, "
        "'Invoice no.', 'AP-INVOICE', ?3, 'APform_invoice', 'USD', '3', '2026', 'anna', 2461115.5, "
        "'00:00:00')";
    texts[gl_line] =
        "INSERT INTO GL_transaction_table (company, fkey, docno, gldate, period, fyear, lineno, accno, "
        "acccode, amount, "
        "base_amount, Currency, ledgertype, Source, source_form, source_docno, date_created, time_created, "
        "user_created) "
        "VALUES (1, ?1, ?2, 2461115.5, '3', '2026', ?3, ?4, ?4, ?5, ?5, 'USD', 'A', 'AP-INVOICE', "
        "'APform_invoice', ?6, "
        "2461115.5, '00:00:00', 'anna')";
    texts[balance] =
        "UPDATE Balance_table SET amount = ifnull(amount, 0) + ?1, base_amount = ifnull(base_amount, 0) + ?1 "
        "WHERE company = 1 "
        "AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'";
    texts[period] =
        "UPDATE Balance_period_table SET " + period_sums() +
        " WHERE fyear = '2026' AND company = 1 AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'";
    texts[vendor] =
        "UPDATE Vendor_table SET owing_balance = ifnull(owing_balance, 0) + 337.05 WHERE vendor_no = "
        "'V1001'";
    texts[glfkey] = "UPDATE AP_header_table SET GLFKEY = ?1 WHERE fkey = ?2";
    return texts;
}

void run_bare_save(BareRunner& runner, std::int64_t number) {
    const std::string digits = std::to_string(number);
    const std::string invoice = "IP-26-" + digits;
    const std::string key = "1ip-" + digits;
    const std::string gl_number = "GL-26-" + digits;
    const std::string gl_key = "1gl-" + digits;
    const auto run = [&](Bare statement, std::initializer_list<BareValue> values) {
        runner.run(statement, {values.begin(), values.size()});
    };
    count(runner, "ip");
    count(runner, "gl");
    run(header, {key, invoice});
    int item = 1;
    for (const char* const account : {"5000", "5300", "6300"})
        run(line, {key, invoice, std::to_string(item++), std::string(account)});
    run(gl_header, {gl_number, gl_key, invoice});
    double lineno = 1;
    for (const GlAmount& gl : kGlAmounts) {
        run(gl_line, {gl_key, gl_number, lineno++, std::string(gl.accno), gl.amount, invoice});
        post(runner, gl.accno, gl.amount);
        if (gl.income_statement) post(runner, "3900", -gl.amount);
    }
    run(vendor, {});
    run(glfkey, {gl_key, key});
}

}  // namespace brimley::bench
