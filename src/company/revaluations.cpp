#include "company/revaluations.h"

#include <fmt/format.h>

#include <set>

#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

constexpr const char* kSelection =
    "SELECT fkey,docno,Currency,Rate,every_vendor,vendor_group,vendor_no FROM AP_Revalue_transaction_table "
    "ORDER BY fkey";
constexpr const char* kItems =
    "SELECT fkey,docno,document_no,pay_item,Currency,invoice_amount,original_rate,original_base_amount,"
    "unrealized_gain_loss,new_base_amount FROM AP_Revalue_Result_table ORDER BY fkey,document_no,pay_item";
constexpr const char* kSummary =
    "SELECT fkey,docno,accno,Currency,amount FROM AP_Revalue_GL_summary_table ORDER BY fkey,accno,Currency";

RevaluationSelection selection_row(const Recordset& row) {
    return {row.text("docno"),        row.text("Currency"),     kernel::money_value(row.text("Rate")),
            row.flag("every_vendor"), row.text("vendor_group"), row.text("vendor_no")};
}

RevaluedItem item_row(const Recordset& row) {
    const store::Value rate = row.field("original_rate");
    return {row.text("docno"),
            row.text("document_no"),
            row.text("pay_item"),
            row.text("Currency"),
            row.number("invoice_amount"),
            rate.is_null() ? std::nullopt : std::optional(rate.number()),
            row.number("original_base_amount"),
            row.number("unrealized_gain_loss"),
            row.number("new_base_amount")};
}

RevaluationSum summary_row(const Recordset& row) {
    return {row.text("docno"), row.text("accno"), row.text("Currency"), row.number("amount")};
}

}  // namespace

std::string name_of(const Revaluation& run) { return "Revaluation " + shown_text(run.fkey); }

Revaluations::Revaluations(const Books& books) {
    read_headers(books);
    read_rows(books, kSelection, "selection rows", &Revaluation::selection, selection_row);
    read_rows(books, kItems, "items", &Revaluation::items, item_row);
    read_rows(books, kSummary, "sums", &Revaluation::summary, summary_row);
    read_postings(books);
    connect_postings();
}

void Revaluations::read_headers(const Books& books) {
    Recordset rows =
        books.read("SELECT fkey,docno,[Date],period,fyear,GLFKEY FROM AP_Revalue_header_table ORDER BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        Revaluation& run = runs_[rows.text("fkey")];
        run.fkey = rows.text("fkey");
        run.docno = rows.text("docno");
        run.day = day_of(rows, "Date");
        run.period = rows.text("period");
        run.fyear = rows.text("fyear");
        run.gl_fkey = rows.text("GLFKEY");
    }
}

template <class Row>
void Revaluations::read_rows(const Books& books, const char* query, const char* what,
                             std::vector<Row> Revaluation::*rows, Row (*read)(const Recordset&)) {
    std::set<std::string> reported;
    for (Recordset found = books.read(query); !found.at_eof(); found.MoveNext()) {
        const std::string fkey = found.text("fkey");
        const auto run = runs_.find(fkey);
        if (run != runs_.end()) {
            (run->second.*rows).push_back(read(found));
        } else if (reported.insert(fkey).second) {
            strays_.push_back(fmt::format("Revaluation {} has {} but no header", shown_text(fkey), what));
        }
    }
}

void Revaluations::read_postings(const Books& books) {
    Recordset rows = books.read(
        "SELECT fkey,docno,source_docno,remark,gldate,date_created,period,fyear FROM GL_header_table WHERE "
        "Source = 'AP-REVALUE' ORDER BY fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        postings_[rows.text("fkey")] = {
            rows.text("fkey"),   rows.text("docno"),     rows.text("source_docno"),
            rows.text("remark"), day_of(rows, "gldate"), day_of(rows, "date_created"),
            rows.text("period"), rows.text("fyear"),     {}};
    }
    if (postings_.empty()) return;
    books.each_gl_line([&](const GlLine& line) {
        const auto posting = postings_.find(line.fkey);
        if (posting != postings_.end()) posting->second.lines.push_back(line);
    });
}

// Numbers may repeat in another year. A run draws both keys while nobody else can: the reversal has the
// next key of those that fit.
void Revaluations::connect_postings() {
    std::map<std::pair<std::string, std::string>, std::map<double, const RevaluationPosting*>> reversals;
    for (const auto& [fkey, posting] : postings_)
        reversals[{posting.remark, posting.source_docno}].emplace(running_number_of(fkey).value_or(0),
                                                                  &posting);
    for (auto& [fkey, run] : runs_) {
        const auto posting = postings_.find(run.gl_fkey);
        if (posting == postings_.end()) continue;
        run.posting = &posting->second;
        const auto fitting = reversals.find({"Reverse A/P Revaluation " + run.posting->docno, run.docno});
        if (fitting == reversals.end()) continue;
        const auto next = fitting->second.upper_bound(running_number_of(run.gl_fkey).value_or(0));
        if (next != fitting->second.end()) run.reversal = next->second;
    }
}

}  // namespace brimley::company
