#include "company/books.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brimley::company {

namespace {

using store::Recordset;

// The columns of the three snapshots, in the order of their queries.
constexpr const char* kGlLines =
    "SELECT fkey,fyear,fiscalyear,period,accno,Currency,ledgertype,company,lineno,amount,base_amount "
    "FROM GL_transaction_table ORDER BY fkey,lineno";
constexpr const char* kApHeaders =
    "SELECT fkey,Source,GLFKEY,fully_paid,paid,void FROM AP_header_table ORDER BY fkey";
constexpr const char* kApLines =
    "SELECT fkey,doctype,pay_item,gross_amount,open_amount,paid_amount,discount_taken,writeoff,paid,void,"
    "docno FROM AP_transaction_table ORDER BY fkey,pay_item";

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

ApHeader ap_header(const Recordset& row) {
    return {row.column(0).text(), row.column(1).text(), row.column(2).text(),
            row.column(3).flag(), row.column(4).flag(), row.column(5).flag()};
}

ApLine ap_line(const Recordset& row) {
    ApLine line;
    line.fkey = row.column(0).text();
    line.doctype = row.column(1).text();
    line.pay_item = row.column(2).text();
    line.gross = row.column(3).number();
    line.open = row.column(4).number();
    line.settled = std::abs(row.column(5).number()) + std::abs(row.column(6).number()) +
                   std::abs(row.column(7).number());
    line.paid = row.column(8).flag();
    line.is_void = row.column(9).flag();
    line.docno = row.column(10).text();
    return line;
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

bool differ(double a, double b) { return std::nearbyint((a - b) * 100) != 0; }

Books::Books(store::Database& database)
    : database_(database),
      gl_lines_(read(kGlLines)),
      ap_headers_(read(kApHeaders)),
      ap_lines_(read(kApLines)) {
    Recordset accounts = read("SELECT accno,debit,acctype,type FROM Account_master_table");
    for (; !accounts.at_eof(); accounts.MoveNext()) {
        const std::string accno = accounts.text("accno");
        chart_.emplace(accno,
                       ChartAccount{accounts.flag("debit"), accounts.text("acctype") == "Income Statement"});
        if (accounts.text("type") == "X" && !earnings_accno_) earnings_accno_ = accno;
    }
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

}  // namespace brimley::company
