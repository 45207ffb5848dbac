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

constexpr int kPeriods = 13;
constexpr int kPosted = 3;

// All sums of a period row, family after family: the opening balance, the periods, adjustments, closing, the
// balance after each period, the year to date.
constexpr std::size_t kFamily = 2 * kPeriods + 4;

std::vector<std::string> all_period_sums() {
    std::vector<std::string> names;
    for (const char* family : {"", "e_"}) {
        const std::string f = family;
        names.push_back(f + "opening_balance");
        for (int i = 1; i <= kPeriods; ++i)
            names.push_back(f + "period" + std::to_string(i));
        names.push_back(f + "adjust");
        names.push_back(f + "closing");
        for (int i = 1; i <= kPeriods; ++i)
            names.push_back(f + "balperiod" + std::to_string(i));
        names.push_back(f + "ytd_balance");
    }
    return names;
}

// row: the key, then the sums.
void add_to_period(std::vector<double>& row, double amount) {
    for (std::size_t family = 1; family < row.size(); family += kFamily) {
        double* const sum = &row[family];
        sum[kPosted] += amount;
        double balance = sum[0];
        for (int i = 1; i <= kPeriods; ++i)
            sum[kPeriods + 2 + i] = balance += sum[i];
        sum[kFamily - 1] = balance + sum[kPeriods + 1] + sum[kPeriods + 2];
    }
}

std::string select_sums(const std::string& table, const std::vector<std::string>& fields,
                        const std::string& condition) {
    std::string names = "row_id";
    for (const std::string& field : fields)
        names += ", " + field;
    return "SELECT " + names + " FROM " + table + " WHERE " + condition;
}

std::string set_sums(const std::string& table, const std::vector<std::string>& fields) {
    std::string sets;
    for (std::size_t i = 0; i < fields.size(); ++i)
        sets += (i == 0 ? "" : ", ") + fields[i] + " = ?" + std::to_string(i + 2);
    return "UPDATE " + table + " SET " + sets + " WHERE row_id = ?1";
}

struct GlAmount {
    const char* accno;
    double amount;
    bool income_statement;
};

constexpr GlAmount kInvoiceAmounts[] = {{"1300", 15.00, false},
                                        {"2000", 337.05, false},
                                        {"5000", 107.35, true},
                                        {"5300", 107.35, true},
                                        {"6300", 107.35, true}};
constexpr GlAmount kMiscAmounts[] = {{"1000", -337.05, false},
                                     {"1300", 15.00, false},
                                     {"5000", 107.35, true},
                                     {"5300", 107.35, true},
                                     {"6300", 107.35, true}};

constexpr GlAmount kPrepaidAmounts[] = {{"1000", -250, false}, {"1400", 250, false}};
constexpr GlAmount kCardAmounts[] = {{"1000", -260, false}, {"2220", 250, false}, {"6520", 10, true}};

// How the ledger names the documents of a kind.
struct LedgerNames {
    const char* Source;
    const char* source_form;
    const char* remark;
};
constexpr LedgerNames kInvoiceNames{"AP-INVOICE", "APform_invoice", "Invoice no. "};
constexpr LedgerNames kPrepaidNames{"AP", "A/P Prepayment", "prepayment no. "};
constexpr LedgerNames kCardNames{"AP-CARD", "Credit Card Payment", "Payment no. "};
constexpr LedgerNames kMiscNames{"AP-MISCPAY", "APform_misc_payment", "payment no. "};

const store::DateTime kToday = *store::DateTime::from_ymd(2026, 3, 16);
const store::DateTime kDue = *store::DateTime::from_ymd(2026, 4, 15);

std::string insert(const std::string& table, std::initializer_list<const char*> fields) {
    std::string names;
    std::string values;
    int count = 0;
    for (const char* const field : fields) {
        names += (count == 0 ? "" : ", ") + std::string(field);
        values += (count == 0 ? "?" : ", ?") + std::to_string(count + 1);
        ++count;
    }
    return "INSERT INTO " + table + " (" + names + ") VALUES (" + values + ")";
}

void run(BareRunner& runner, Bare statement, std::initializer_list<BareValue> values) {
    runner.run(statement, {values.begin(), values.size()});
}

void set(BareRunner& runner, Bare statement, const std::vector<double>& row) {
    const std::vector<BareValue> values(row.begin(), row.end());
    runner.run(statement, values);
}

}  // namespace

void post(BareRunner& runner, BareSums sums, const char* accno, double amount) {
    if (sums == BareSums::in_the_engine) {
        run(runner, balance, {amount, accno});
        run(runner, period, {amount, accno});
        return;
    }
    const BareValue account = accno;
    std::vector<double> row = runner.read(balance_read, {&account, 1});
    row.at(1) += amount;
    row.at(2) += amount;
    set(runner, balance_set, row);
    row = runner.read(period_read, {&account, 1});
    add_to_period(row, amount);
    set(runner, period_set, row);
}

namespace {

void count(BareRunner& runner, BareSums sums, const char* doctype) {
    if (sums == BareSums::in_the_engine) {
        run(runner, docno, {doctype});
        run(runner, fkey, {doctype});
        return;
    }
    const BareValue kind = doctype;
    std::vector<double> row = runner.read(docno_read, {&kind, 1});
    row.at(1) += 1;
    set(runner, docno_set, row);
    row = runner.read(fkey_read, {&kind, 1});
    row.at(1) += 1;
    set(runner, fkey_set, row);
}

struct Keys {
    Keys(const std::string& prefix, const std::string& doctype, const std::string& number)
        : docno(prefix + "-26-" + number),
          key("1" + doctype + "-" + number),
          gl_number("GL-26-" + number),
          gl_key("1gl-" + number) {}
    std::string docno, key, gl_number, gl_key;
};

void write_header(BareRunner& runner, const Keys& keys) {
    run(runner, header,
        {keys.key, keys.docno, "1",    "ip",   "BENCH-1", kToday, "V1001",      "USD",
         "",       "30",       30.0,   0.0,    0.0,       kDue,   "AP-INVOICE", "APform_invoice",
         3.0,      "2026",     "anna", kToday, "00:00:00"});
}

void write_line(BareRunner& runner, const Keys& keys, const char* item, const char* accno) {
    run(runner, line, {keys.key,     keys.docno,
                       item,         "Green coffee, 20 bags",
                       112.35,       112.35,
                       100.0,        12.35,
                       "STACK",      accno,
                       3.0,          "2026",
                       "BENCH",      kToday,
                       "00:00:00",   "anna",
                       "AP-INVOICE", "APform_invoice",
                       "ip",         "1",
                       "V1001",      "BENCH-1",
                       kToday,       "USD",
                       "30",         30.0,
                       0.0,          0.0,
                       kDue,         "2000",
                       "TAXA",       105.0,
                       5.0,          5.0,
                       true,         0.0,
                       5.0,          0.0,
                       "TAXB",       105.0,
                       7.0,          7.35,
                       false,        7.35,
                       0.0,          0.0});
}

void write_misc_header(BareRunner& runner, const Keys& keys) {
    run(runner, misc_header,
        {1.0, keys.docno, keys.key, "mpy", kToday, "USD", "Cash", "1000", "", 3.0, "2026",
         "APform_misc_payment", kToday, "00:00:00", "anna", "Harbour Stationers", 337.05});
}

void write_misc_line(BareRunner& runner, const Keys& keys, double item, const char* accno) {
    run(runner, misc_line,
        {keys.key, keys.docno, 1.0,          kToday,  kToday, "00:00:00", item,  100.0, accno, false,
         "STACK",  12.35,      "receipt 71", "BENCH", "TAXA", 105.0,      5.0,   5.0,   true,  0.0,
         5.0,      0.0,        "TAXB",       105.0,   7.0,    7.35,       false, 7.35,  0.0,   0.0});
}

void write_gl_header(BareRunner& runner, const Keys& keys, const LedgerNames& names) {
    const std::string remark = names.remark + keys.docno;
    run(runner, gl_header,
        {1.0, "gl", keys.gl_number, keys.gl_key, kToday, remark, names.Source, keys.docno, names.source_form,
         "USD", "3", "2026", "anna", kToday, "00:00:00"});
}

void write_gl_line(BareRunner& runner, const Keys& keys, const LedgerNames& names, double lineno,
                   const GlAmount& gl) {
    run(runner, gl_line,
        {1.0, keys.gl_key, keys.gl_number, kToday, "3", "2026", lineno, gl.accno, gl.accno, gl.amount,
         gl.amount, "USD", "A", names.Source, names.source_form, keys.docno, kToday, "00:00:00", "anna"});
}

void write_ledger(BareRunner& runner, BareSums sums, const Keys& keys, const LedgerNames& names,
                  std::span<const GlAmount> amounts) {
    write_gl_header(runner, keys, names);
    double lineno = 1;
    for (const GlAmount& gl : amounts) {
        write_gl_line(runner, keys, names, lineno++, gl);
        post(runner, sums, gl.accno, gl.amount);
        if (gl.income_statement) post(runner, sums, "3900", -gl.amount);
    }
}

void run_bare_invoice(BareRunner& runner, const std::string& number, BareSums sums) {
    const Keys keys("IP", "ip", number);
    count(runner, sums, "ip");
    count(runner, sums, "gl");
    write_header(runner, keys);
    write_line(runner, keys, "1", "5000");
    write_line(runner, keys, "2", "5300");
    write_line(runner, keys, "3", "6300");
    write_ledger(runner, sums, keys, kInvoiceNames, kInvoiceAmounts);
    run(runner, vendor, {337.05, "V1001"});
    run(runner, glfkey, {keys.gl_key, keys.key});
}

void run_bare_misc_payment(BareRunner& runner, const std::string& number, BareSums sums) {
    const Keys keys("MPY", "mpy", number);
    count(runner, sums, "mpy");
    count(runner, sums, "gl");
    write_misc_header(runner, keys);
    write_misc_line(runner, keys, 1, "5000");
    write_misc_line(runner, keys, 2, "5300");
    write_misc_line(runner, keys, 3, "6300");
    write_ledger(runner, sums, keys, kMiscNames, kMiscAmounts);
    run(runner, payment_glfkey, {keys.gl_key, keys.key});
}

void write_payment(BareRunner& runner, const Keys& keys, const char* doctype, const char* vendor_no,
                   double amount, double balance) {
    run(runner, payment_header, {1.0,     keys.docno, keys.key,   doctype,
                                 kToday,  "USD",      "Cash",     "1000",
                                 "",      3.0,        "2026",     "APform_prepayment",
                                 kToday,  "00:00:00", "anna",     "Baywater Beans",
                                 amount,  vendor_no,  "PO-BENCH", "1400",
                                 balance, 0.0});
    run(runner, payment_line,
        {keys.docno, kToday, 1.0, keys.key, vendor_no, "USD", keys.docno, 1.0, amount, amount, amount, 0.0,
         kToday, "00:00:00", "anna", "BENCH"});
}

void run_bare_prepayment(BareRunner& runner, const std::string& number, BareSums sums) {
    const Keys keys("PP", "pp", number);
    count(runner, sums, "pp");
    count(runner, sums, "gl");
    write_payment(runner, keys, "pp", "V1001", 250, 0);
    run(runner, prepaid_item,
        {keys.docno, "pp", 1.0, keys.key, "V1001", kToday, "USD", 1.0, -250.0, -250.0, 3.0, "2026",
         "AP-PREPAY", "APform_prepayment", kToday, "00:00:00", "anna"});
    run(runner, waiting_order_gone, {keys.docno});
    run(runner, waiting_order, {"PO-BENCH", keys.docno, keys.key, 250.0});
    write_ledger(runner, sums, keys, kPrepaidNames, kPrepaidAmounts);
    run(runner, vendor, {-250.0, "V1001"});
    run(runner, payment_glfkey, {keys.gl_key, keys.key});
}

void run_bare_card_payment(BareRunner& runner, const std::string& number, BareSums sums) {
    const Keys keys("PC", "pc", number);
    count(runner, sums, "pc");
    count(runner, sums, "gl");
    write_payment(runner, keys, "pc", "VISA", 260, 1000);
    write_ledger(runner, sums, keys, kCardNames, kCardAmounts);
    run(runner, payment_glfkey, {keys.gl_key, keys.key});
}

}  // namespace

std::array<std::string, kBareStatements> bare_statements() {
    std::array<std::string, kBareStatements> texts;
    texts[docno] =
        "UPDATE Docno_master_table SET nextdocno = nextdocno + 1 WHERE company = 1 AND doctype = ?1 AND "
        "fiscalyear = '2026'";
    texts[fkey] = "UPDATE Next_number_fkey_table SET fkeyno = fkeyno + 1 WHERE company = 1 AND doctype = ?1";
    texts[header] =
        insert("AP_header_table",
               {"fkey",           "docno",        "company",     "doctype",      "invoice_no", "invoice_date",
                "vendor_no",      "Currency",     "remark",      "payment_term", "duedays",    "early_days",
                "early_discount", "due_date",     "Source",      "source_form",  "period",     "fyear",
                "user_created",   "date_created", "time_created"});
    texts[line] = insert("AP_transaction_table", {"fkey",
                                                  "docno",
                                                  "pay_item",
                                                  "Description",
                                                  "gross_amount",
                                                  "open_amount",
                                                  "taxable_amount",
                                                  "tax_amount",
                                                  "tax_code",
                                                  "po_accno",
                                                  "period",
                                                  "fyear",
                                                  "computer_id",
                                                  "date_created",
                                                  "time_created",
                                                  "user_created",
                                                  "Source",
                                                  "source_form",
                                                  "doctype",
                                                  "company",
                                                  "vendor_no",
                                                  "invoice_no",
                                                  "invoice_date",
                                                  "Currency",
                                                  "payment_term",
                                                  "duedays",
                                                  "early_days",
                                                  "early_discount",
                                                  "due_date",
                                                  "ap_accno",
                                                  "tax_authority1",
                                                  "taxable_amount1",
                                                  "tax_rate1",
                                                  "tax_amount1",
                                                  "taxable1",
                                                  "tax_allocated1",
                                                  "tax_recoverable1",
                                                  "tax_expensed1",
                                                  "tax_authority2",
                                                  "taxable_amount2",
                                                  "tax_rate2",
                                                  "tax_amount2",
                                                  "taxable2",
                                                  "tax_allocated2",
                                                  "tax_recoverable2",
                                                  "tax_expensed2"});
    texts[gl_header] =
        insert("GL_header_table", {"company", "doctype", "docno", "fkey", "gldate", "remark", "Source",
                                   "source_docno", "source_form", "Currency", "period", "fyear",
                                   "user_created", "date_created", "time_created"});
    texts[gl_line] = insert("GL_transaction_table",
                            {"company", "fkey", "docno", "gldate", "period", "fyear", "lineno", "accno",
                             "acccode", "amount", "base_amount", "Currency", "ledgertype", "Source",
                             "source_form", "source_docno", "date_created", "time_created", "user_created"});
    texts[balance] =
        "UPDATE Balance_table SET amount = ifnull(amount, 0) + ?1, base_amount = ifnull(base_amount, 0) + ?1 "
        "WHERE company = 1 "
        "AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'";
    texts[period] =
        "UPDATE Balance_period_table SET " + period_sums() +
        " WHERE fyear = '2026' AND company = 1 AND accno = ?2 AND ledgertype = 'A' AND Currency = 'USD'";
    texts[vendor] =
        "UPDATE Vendor_table SET owing_balance = ifnull(owing_balance, 0) + ?1 WHERE vendor_no = ?2";
    texts[docno_read] = select_sums("Docno_master_table", {"nextdocno"},
                                    "company = 1 AND doctype = ?1 AND fiscalyear = '2026'");
    texts[docno_set] = set_sums("Docno_master_table", {"nextdocno"});
    texts[fkey_read] = select_sums("Next_number_fkey_table", {"fkeyno"}, "company = 1 AND doctype = ?1");
    texts[fkey_set] = set_sums("Next_number_fkey_table", {"fkeyno"});
    const std::string account = "company = 1 AND accno = ?1 AND ledgertype = 'A' AND Currency = 'USD'";
    texts[balance_read] = select_sums("Balance_table", {"amount", "base_amount"}, account);
    texts[balance_set] = set_sums("Balance_table", {"amount", "base_amount"});
    texts[period_read] =
        select_sums("Balance_period_table", all_period_sums(), "fyear = '2026' AND " + account);
    texts[period_set] = set_sums("Balance_period_table", all_period_sums());
    texts[misc_header] = insert("Payment_header_table",
                                {"company", "docno", "fkey", "doctype", "payment_date", "Currency", "payby",
                                 "cash_accno", "remark", "period", "fyear", "source_form", "date_created",
                                 "time_created", "user_created", "remit_to", "payment_amount"});
    texts[misc_line] = insert("Payment_misc_transaction_table", {"fkey",
                                                                 "docno",
                                                                 "company",
                                                                 "payment_date",
                                                                 "date_created",
                                                                 "time_created",
                                                                 "pay_item",
                                                                 "pay_amount",
                                                                 "account",
                                                                 "include_tax",
                                                                 "tax_code",
                                                                 "tax_amount",
                                                                 "Reference",
                                                                 "computer_id",
                                                                 "tax_authority1",
                                                                 "taxable_amount1",
                                                                 "tax_rate1",
                                                                 "tax_amount1",
                                                                 "taxable1",
                                                                 "tax_allocated1",
                                                                 "tax_recoverable1",
                                                                 "tax_expensed1",
                                                                 "tax_authority2",
                                                                 "taxable_amount2",
                                                                 "tax_rate2",
                                                                 "tax_amount2",
                                                                 "taxable2",
                                                                 "tax_allocated2",
                                                                 "tax_recoverable2",
                                                                 "tax_expensed2"});
    texts[payment_header] =
        insert("Payment_header_table",
               {"company",      "docno",          "fkey",         "doctype",      "payment_date",
                "Currency",     "payby",          "cash_accno",   "remark",       "period",
                "fyear",        "source_form",    "date_created", "time_created", "user_created",
                "remit_to",     "payment_amount", "vendor_no",    "po_no",        "prepayment_accno",
                "card_balance", "fee_amount"});
    texts[payment_line] = insert("Payment_transaction_table",
                                 {"docno", "payment_date", "company", "fkey", "vendor_no", "Currency",
                                  "ap_docno", "pay_item", "gross_amount", "open_amount", "pay_amount",
                                  "balance", "date_created", "time_created", "user_created", "computer_id"});
    texts[prepaid_item] = insert("AP_transaction_table",
                                 {"docno", "doctype", "company", "fkey", "vendor_no", "invoice_date",
                                  "Currency", "pay_item", "gross_amount", "open_amount", "period", "fyear",
                                  "Source", "source_form", "date_created", "time_created", "user_created"});
    texts[waiting_order_gone] = "DELETE FROM Prepayment_waiting_PO_table WHERE prepayment_no = ?1";
    texts[waiting_order] =
        insert("Prepayment_waiting_PO_table", {"po_no", "prepayment_no", "prepayment_fkey", "amount"});
    texts[payment_glfkey] = "UPDATE Payment_header_table SET GLFKEY = ?1 WHERE fkey = ?2";
    texts[glfkey] = "UPDATE AP_header_table SET GLFKEY = ?1 WHERE fkey = ?2";
    return texts;
}

void run_bare_save(BareRunner& runner, std::int64_t number, BareSums sums, BareDocument document) {
    using enum BareDocument;
    const auto save = document == invoice        ? run_bare_invoice
                      : document == misc_payment ? run_bare_misc_payment
                      : document == prepayment   ? run_bare_prepayment
                                                 : run_bare_card_payment;
    save(runner, std::to_string(number), sums);
}

}  // namespace brimley::bench
