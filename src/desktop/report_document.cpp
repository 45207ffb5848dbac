#include "desktop/report_document.h"

#include <QTextDocument>
#include <QTextOption>
#include <algorithm>
#include <map>
#include <set>

#include "desktop/model_view.h"
#include "desktop/records_model.h"
#include "kernel/money.h"

namespace brimley::desktop {

namespace {

using store::FieldType;

// The rows of the query as texts, with what is worth printing of them.
struct Rows {
    std::vector<QString> names;
    std::vector<bool> numbers;
    std::vector<bool> money;
    std::vector<double> sums;  // of the money columns
    std::vector<std::vector<QString>> rows;
};

// Keys that tie tables together and traces of who saved when mean nothing to the reader of the paper, nor do
// the slots of single taxes, whose sum each line has.
bool is_internal(const QString& name) {
    static const std::set<QString> kInternal{"fkey",         "glfkey",
                                             "company",      "doctype",
                                             "computer_id",  "date_created",
                                             "time_created", "user_created",
                                             "user_updated", "date_lastmodified",
                                             "recno",        "time_lastmodified",
                                             "source_form",  "payment_term",
                                             "recurno",      "ap_doctype",
                                             "item_no",      "month",
                                             "year",         "invoiced"};
    return kInternal.contains(name.toLower()) || name.back().isDigit();
}

// What a field is called on paper, where its name does not say it well.
QString heading(const QString& name) {
    static const std::map<QString, QString> kHeadings{{"docno", "Document no."},
                                                      {"invoice_no", "Invoice no."},
                                                      {"vendor_no", "Vendor no."},
                                                      {"exchange_rate", "Exchange rate"},
                                                      {"duedays", "Net days"},
                                                      {"early_days", "Discount days"},
                                                      {"early_discount", "Discount percent"},
                                                      {"fyear", "Fiscal year"},
                                                      {"source_docno", "Source no."},
                                                      {"pay_item", "Item"},
                                                      {"po_accno", "Account"},
                                                      {"ap_accno", "Payable account"},
                                                      {"ap_docno", "AP document no."},
                                                      {"payby", "Paid by"},
                                                      {"cash_accno", "Cash account"},
                                                      {"bank_accno", "Bank account"},
                                                      {"check_no", "Check no."},
                                                      {"writeoff", "Write-off"},
                                                      {"discount_accno", "Discount account"},
                                                      {"writeoff_accno", "Write-off account"},
                                                      {"prepay_accno", "Prepayment account"},
                                                      {"gldate", "G/L date"}};
    const QString lower = name.toLower();
    if (const auto known = kHeadings.find(lower); known != kHeadings.end()) return known->second;
    QString words = QString(lower).replace('_', ' ');
    if (!words.isEmpty()) words[0] = words[0].toUpper();
    return words;
}

bool is_money(const QString& name) {
    static constexpr const char* kMoney[] = {"amount", "balance", "payment",  "tax_",
                                             "gross",  "total",   "discount", "writeoff"};
    const QString lower = name.toLower();
    return !lower.contains("code") && !lower.contains("authority") && !lower.contains("percent") &&
           !lower.contains("rate") &&
           std::any_of(std::begin(kMoney), std::end(kMoney),
                       [&](const char* word) { return lower.contains(word); });
}

Rows read(store::Recordset& query, const std::string& date_format) {
    Rows result;
    std::vector<int> columns;
    std::set<QString> names;
    for (int column = 0; column < query.column_count(); ++column) {
        const QString name = shown(query.column_name(column));
        if (is_internal(name) || !names.insert(name.toLower()).second) continue;
        columns.push_back(column);
        result.names.push_back(name);
        result.numbers.push_back(query.column_type(column) == FieldType::number);
        result.money.push_back(result.numbers.back() && is_money(name));
    }
    result.sums.assign(columns.size(), 0);
    for (; !query.at_eof(); query.MoveNext()) {
        auto& row = result.rows.emplace_back();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const store::Value value = query.column(columns[i]);
            row.push_back(value_shown(value, result.money[i], date_format));
            if (result.money[i]) result.sums[i] += value.number();
        }
    }
    return result;
}

bool same_in_all_rows(const Rows& rows, std::size_t column) {
    return std::all_of(rows.rows.begin(), rows.rows.end(),
                       [&](const auto& row) { return row[column] == rows.rows.front()[column]; });
}

bool says_nothing(const QString& text) { return text.isEmpty() || text == "0" || text == "0.00"; }

// What belongs to the document as a whole: in pairs, two beside each other.
QString header_html(const Rows& rows, const std::set<std::size_t>& of_document) {
    QString html = "<table width='100%' cellpadding='2'>";
    int at = 0;
    for (const std::size_t column : of_document) {
        const QString& text = rows.rows.front()[column];
        if (says_nothing(text)) continue;
        if (at % 2 == 0) html += "<tr>";
        html += "<td width='18%'><i>" + heading(rows.names[column]) + "</i></td><td width='32%'>" +
                text.toHtmlEscaped() + "</td>";
        if (at++ % 2 == 1) html += "</tr>";
    }
    if (at % 2 == 1) html += "</tr>";
    return html + "</table>";
}

// The amounts of the lines together, below them.
QString sums_html(const Rows& rows, const std::vector<std::size_t>& of_lines) {
    QString html = "<tr>";
    bool told = false;
    for (const std::size_t column : of_lines) {
        const QString sum = rows.money[column] ? shown(kernel::format_money(rows.sums[column])) : QString();
        html +=
            sum.isEmpty() && !told ? "<td><b>Total</b></td>" : "<td align='right'><b>" + sum + "</b></td>";
        told = true;
    }
    return html + "</tr>";
}

QString lines_html(const Rows& rows, const std::vector<std::size_t>& of_lines) {
    QString html = "<table width='100%' border='1' style='border-collapse:collapse' cellpadding='3'><tr>";
    for (const std::size_t column : of_lines)
        html += "<th>" + heading(rows.names[column]) + "</th>";
    html += "</tr>";
    for (const auto& row : rows.rows) {
        html += "<tr>";
        for (const std::size_t column : of_lines)
            html += QString(rows.numbers[column] ? "<td align='right'>" : "<td>") +
                    row[column].toHtmlEscaped() + "</td>";
        html += "</tr>";
    }
    return html + sums_html(rows, of_lines) + "</table>";
}

// The fields before the line number are the document's, those after it the line's.
std::size_t first_of_lines(const Rows& rows) {
    for (std::size_t column = 0; column < rows.names.size(); ++column)
        if (rows.names[column].compare("pay_item", Qt::CaseInsensitive) == 0) return column;
    return rows.names.size();
}

QString html_of(const Rows& rows) {
    if (rows.rows.empty()) return "<p>There is nothing to print.</p>";
    std::set<std::size_t> of_document;
    std::vector<std::size_t> of_lines;
    const std::size_t lines_from = first_of_lines(rows);
    for (std::size_t column = 0; column < rows.names.size(); ++column) {
        const bool of_line = column >= lines_from && rows.names[column].toUpper() != "VENDOR_NAME";
        if (!of_line) {
            of_document.insert(column);
        } else if (rows.names[column].toLower() == "tax_amount" || !same_in_all_rows(rows, column) ||
                   !says_nothing(rows.rows.front()[column])) {
            of_lines.push_back(column);
        }
    }
    QString html = header_html(rows, of_document);
    if (!of_lines.empty()) html += "<p></p>" + lines_html(rows, of_lines);
    return html;
}

// Of the vendor whose document it is, as on an envelope; empty when it has none, or several.
QString address_html(store::Database& database, const Rows& rows) {
    const auto vendor = std::ranges::find_if(
        rows.names, [](const QString& name) { return name.compare("vendor_no", Qt::CaseInsensitive) == 0; });
    const auto column = static_cast<std::size_t>(vendor - rows.names.begin());
    if (vendor == rows.names.end() || rows.rows.empty() || !same_in_all_rows(rows, column)) return {};
    const std::string vendor_no = typed(rows.rows.front()[column]);
    const auto row = database.OpenRecordset(
        "SELECT VENDOR_NAME, address FROM Vendor_table WHERE " + store::all_equal({{"vendor_no", vendor_no}}),
        store::RecordsetKind::snapshot);
    if (row.at_eof()) return {};
    QString lines = shown(row.text("VENDOR_NAME") + "\n" + row.text("address")).trimmed().toHtmlEscaped();
    return "<p>" + lines.replace("\r", "").replace('\n', "<br>") + "</p>";
}

QTextOption whole_words() {
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    return option;
}

}  // namespace

QTextDocument* report_document(store::Database& database, const std::string& query, const QString& what,
                               const QString& company_name, const std::string& date_format) {
    auto records = database.OpenRecordset(query, store::RecordsetKind::snapshot);
    const Rows rows = read(records, date_format);
    auto* const document = new QTextDocument;
    document->setDefaultFont(QFont("Arial", 9));
    document->setDefaultTextOption(whole_words());
    const QString company = company_name.isEmpty() ? "" : "<p>" + company_name.toHtmlEscaped() + "</p>";
    document->setHtml(company + "<h2>" + what.section(',', 0, 0).toHtmlEscaped() + " " +
                      what.section(',', 1, -2).toHtmlEscaped() + "</h2>" + address_html(database, rows) +
                      html_of(rows));
    return document;
}

}  // namespace brimley::desktop
