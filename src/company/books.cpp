#include "company/books.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "company/generated_invoices.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

using store::Recordset;

// The columns of the snapshots, in the order of their queries.
constexpr const char* kGlLines =
    "SELECT fkey,fyear,fiscalyear,period,accno,Currency,ledgertype,company,lineno,amount,base_amount "
    "FROM GL_transaction_table ORDER BY fkey,lineno";
constexpr const char* kApHeaders =
    "SELECT fkey,Source,GLFKEY,docno,Currency,exchange_rate,fully_paid,paid,void FROM AP_header_table ORDER "
    "BY fkey";
constexpr const char* kApLines =
    "SELECT fkey,doctype,pay_item,docno,ap_accno,po_accno,gross_amount,open_amount,paid_amount,"
    "discount_taken,writeoff,date_created,paid,void FROM AP_transaction_table ORDER BY fkey,pay_item";
constexpr const char* kPayments =
    "SELECT fkey,doctype,vendor_no,GLFKEY,source_form,cash_accno,Currency,exchange_rate,payment_amount,"
    "payment_base_amount,total_amount,total_base_amount,total_currency,void_date,void,docno,invoiced FROM "
    "Payment_header_table ORDER BY fkey";
constexpr const char* kPaymentLines =
    "SELECT fkey,item_no,ap_docno,ap_doctype,pay_item,Currency,discount_accno,writeoff_accno,prepay_accno,"
    "gross_amount,open_amount,pay_amount,discount_taken,writeoff,balance,invoice_exchange_rate,"
    "payment_exchange_rate,pay_base_amount,void FROM Payment_transaction_table ORDER BY fkey,item_no";

GlLine gl_line(const Recordset& row) {
    GlLine line;
    line.fkey = row.column(0).text();
    line.fyear = row.column(row.column(1).is_null() ? 2 : 1).text();
    line.period = row.column(3).text();
    line.accno = row.column(4).text();
    line.currency = row.column(5).text();
    line.ledgertype = row.column(6).text();
    line.company = row.column(7).number();
    line.line_number = row.column(8).number();
    line.amount = row.column(9).number();
    line.base_amount = row.column(10).number();
    return line;
}

// The columns of a row, one after the other.
class Columns {
  public:
    explicit Columns(const Recordset& row) : row_(row) {}
    std::string text() { return next().text(); }
    double number() { return next().number(); }
    bool flag() { return next().flag(); }
    std::optional<store::DateTime> day() {
        const auto date = next().date();
        return date ? std::optional(date->date_only()) : std::nullopt;
    }
    std::optional<double> number_or_none() {
        const store::Value value = next();
        return value.is_null() ? std::nullopt : std::optional(value.number());
    }

  private:
    store::Value next() { return row_.column(column_++); }
    const Recordset& row_;
    int column_ = 0;
};

// The members stand in the order of the columns: a braced list is read from left to right.
ApHeader ap_header(const Recordset& row) {
    Columns next(row);
    return {next.text(),   next.text(), next.text(), next.text(), next.text(),
            next.number(), next.flag(), next.flag(), next.flag()};
}

ApLine ap_line(const Recordset& row) {
    Columns next(row);
    return {next.text(),   next.text(),   next.text(),   next.text(),   next.text(),
            next.text(),   next.number(), next.number(), next.number(), next.number(),
            next.number(), next.day(),    next.flag(),   next.flag()};
}

PaymentHeader payment_header(const Recordset& row) {
    Columns next(row);
    return {next.text(),           next.text(),   next.text(),   next.text(),   next.text(),
            next.text(),           next.text(),   next.number(), next.number(), next.number(),
            next.number_or_none(), next.number(), next.text(),   next.day(),    next.flag(),
            next.text(),           next.flag()};
}

PaymentLine payment_line(const Recordset& row) {
    Columns next(row);
    return {next.text(),   next.text(),   next.text(),   next.text(),   next.text(),
            next.text(),   next.text(),   next.text(),   next.text(),   next.number(),
            next.number(), next.number(), next.number(), next.number(), next.number(),
            next.number(), next.number(), next.number(), next.flag()};
}

template <class Line, class Visit>
void walk(Recordset& rows, Line (*read)(const Recordset&), const Visit& visit) {
    for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
        visit(read(rows));
    }
}

// Documents of one key; several years share a key without "-".
void visit_key(std::vector<GlLine>& lines, const std::function<void(std::span<const GlLine>)>& visit) {
    if (lines.front().fkey.find('-') == std::string::npos) {
        std::stable_sort(lines.begin(), lines.end(),
                         [](const GlLine& a, const GlLine& b) { return a.fyear < b.fyear; });
        for (auto from = lines.begin(); from != lines.end();) {
            const auto to = std::find_if(from, lines.end(),
                                         [&](const GlLine& line) { return line.fyear != from->fyear; });
            visit({from, to});
            from = to;
        }
    } else {
        visit(lines);
    }
    lines.clear();
}

}  // namespace

bool has_parts_of_a_cent(double amount) {
    return std::abs(amount * 100 - std::nearbyint(amount * 100)) > 1e-4;
}

bool differ(double a, double b) { return std::nearbyint((a - b) * 100) != 0; }

std::optional<double> running_number_of(const std::string& fkey) {
    const std::size_t dash = fkey.find('-');
    if (dash == std::string::npos) return std::nullopt;
    double number = 0;
    const char* const end = fkey.data() + fkey.size();
    const auto [stopped, error] = std::from_chars(fkey.data() + dash + 1, end, number);
    return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

Books::Books(store::Database& database)
    : database_(database),
      gl_lines_(read(kGlLines)),
      ap_headers_(read(kApHeaders)),
      ap_lines_(read(kApLines)),
      payments_(read(kPayments)),
      payment_lines_(read(kPaymentLines)) {
    const Recordset config = read("SELECT Currency FROM COA_config_table");
    if (!config.at_eof()) base_currency_ = config.text("Currency");
    Recordset accounts = read("SELECT accno,debit,acctype,type FROM Account_master_table");
    for (; !accounts.at_eof(); accounts.MoveNext()) {
        const std::string accno = accounts.text("accno");
        chart_.emplace(accno,
                       ChartAccount{accounts.flag("debit"), accounts.text("acctype") == "Income Statement"});
        if (accounts.text("type") == "X" && !earnings_accno_) earnings_accno_ = accno;
    }
}

Books::~Books() = default;

const GeneratedInvoices& Books::generated() const {
    if (!generated_) generated_ = std::make_unique<const GeneratedInvoices>(*this);
    return *generated_;
}

Tables& Books::tables() const {
    if (!tables_) tables_ = std::make_unique<Tables>(*this);
    return *tables_;
}

Recordset Books::read(const std::string& query) const {
    return database_.OpenRecordset(query, store::RecordsetKind::snapshot);
}

const ChartAccount* Books::account(const std::string& accno) const {
    const auto found = chart_.find(accno);
    return found == chart_.end() ? nullptr : &found->second;
}

void Books::each_gl_line(const std::function<void(const GlLine&)>& visit) const {
    walk(gl_lines_, gl_line, visit);
}

void Books::each_gl_document(const std::function<void(std::span<const GlLine>)>& visit) const {
    std::vector<GlLine> lines;
    each_gl_line([&](const GlLine& line) {
        if (!lines.empty() && lines.front().fkey != line.fkey) visit_key(lines, visit);
        lines.push_back(line);
    });
    if (!lines.empty()) visit_key(lines, visit);
}

std::unordered_set<std::string> Books::posted_documents() const {
    std::unordered_set<std::string> keys;
    each_gl_line([&](const GlLine& line) { keys.insert(line.fkey); });
    return keys;
}

void Books::each_ap_header(const std::function<void(const ApHeader&)>& visit) const {
    walk(ap_headers_, ap_header, visit);
}

void Books::each_ap_line(const std::function<void(const ApLine&)>& visit) const {
    walk(ap_lines_, ap_line, visit);
}

void Books::each_payment(const std::function<void(const PaymentHeader&)>& visit) const {
    walk(payments_, payment_header, visit);
}

void Books::each_payment_line(const std::function<void(const PaymentLine&)>& visit) const {
    walk(payment_lines_, payment_line, visit);
}

std::string day_of(const Recordset& rows, const char* field) {
    const auto date = rows.field(field).date();
    return date ? date->date_only().iso() : std::string();
}

}  // namespace brimley::company
