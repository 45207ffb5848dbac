#include "desktop/review_windows.h"

#include <fmt/format.h>

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableView>

#include "desktop/model_view.h"
#include "kernel/store/convert.h"

namespace brimley::desktop {

namespace {

constexpr int kColumnWidthMax = 320;  // pixels; a long text is read by widening its column

store::Recordset read(store::Database& database, const std::string& query) {
    return database.OpenRecordset(query, store::RecordsetKind::snapshot);
}

QTableView* make_table(QAbstractItemModel& model) {
    auto* const table = new QTableView;
    table->setModel(&model);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setAlternatingRowColors(true);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(24);
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setHighlightSections(false);
    table->resizeColumnsToContents();
    for (int column = 0; column < model.columnCount(); ++column)
        table->setColumnWidth(column, std::min(table->columnWidth(column) + 12, kColumnWidthMax));
    return table;
}

}  // namespace

// --- lists ---
ListWindow::ListWindow(const QString& title, store::Database& database, const std::string& query,
                       const std::vector<RecordColumn>& columns, const std::string& date_format,
                       const QString& key)
    : search_(new QLineEdit), filter_(new QSortFilterProxyModel(this)) {
    setWindowTitle(title);
    auto rows = read(database, query);
    auto* const records = new RecordsModel(rows, columns, date_format);
    records->setParent(this);
    filter_->setSourceModel(records);
    filter_->setFilterKeyColumn(-1);
    filter_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    table_ = make_table(*filter_);
    search_->setPlaceholderText("Search");
    search_->setClearButtonEnabled(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(search_);
    layout->addWidget(table_, 1);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter_->setFilterFixedString(text.trimmed());
        if (!table_->currentIndex().isValid()) table_->selectRow(0);
    });
    resize(680, 420);
    choose(key);
    search_->setFocus();
}

void ListWindow::choose(const QString& key) {
    const auto found = filter_->match(filter_->index(0, 0), Qt::DisplayRole, key, 1, Qt::MatchFixedString);
    if (key.isEmpty() || found.isEmpty()) return;
    table_->selectRow(found.first().row());
    table_->scrollTo(found.first(), QAbstractItemView::PositionAtCenter);
}

QString ListWindow::chosen_key() const {
    const QModelIndex current = table_->currentIndex();
    return current.isValid() ? filter_->index(current.row(), 0).data().toString() : QString();
}

ListWindow* account_master(store::Database& database, const std::string& date_format, const QString& accno) {
    return new ListWindow("Account Master", database, "SELECT * FROM Account_master_table ORDER BY accno",
                          {{"accno", "Account"},
                           {"accname", "Name"},
                           {"type", "Type"},
                           {"accclass", "Class"},
                           {"acctype", "Statement"},
                           {"debit", "Debit"},
                           {"inactive", "Inactive"}},
                          date_format, accno);
}

ListWindow* vendor_master(store::Database& database, const std::string& date_format,
                          const QString& vendor_no) {
    return new ListWindow("Vendor Master", database, "SELECT * FROM Vendor_table ORDER BY vendor_no",
                          {{"vendor_no", "Vendor no"},
                           {"VENDOR_NAME", "Name"},
                           {"Currency", "Currency"},
                           {"ap_accno", "Payable account"},
                           {"owing_balance", "Owing", true},
                           {"vendor_group", "Group"},
                           {"address", "Address"}},
                          date_format, vendor_no);
}

// --- the ledger ---
namespace {

// An account that the chart does not have any more has no name.
QString account_name(store::Database& database, const std::string& accno) {
    const auto account =
        read(database,
             fmt::format("SELECT accname FROM Account_master_table WHERE accno = {}", store::quoted(accno)));
    return account.at_eof() ? QString() : shown(account.text("accname"));
}

}  // namespace

LedgerWindow::LedgerWindow(store::Database& database, const std::string& date_format,
                           const std::string& fkey) {
    setWindowTitle("G/L Ledger Review");
    const auto name_of = [&](const std::string& accno) { return account_name(database, accno); };
    auto* const layout = new QVBoxLayout(this);
    auto rows =
        read(database, fmt::format("SELECT * FROM GL_transaction_table WHERE fkey = {} ORDER BY lineno",
                                   store::quoted(fkey)));
    auto* const records = new RecordsModel(rows,
                                           {{"lineno", "Line"},
                                            {"accno", "Account"},
                                            {"accno", "Name", false, name_of},
                                            {"amount", "Amount", true},
                                            {"Currency", "Currency"},
                                            {"base_amount", "Base amount", true},
                                            {"ledgertype", "Ledger"},
                                            {"period", "Period"},
                                            {"fyear", "Year"},
                                            {"source_docno", "Source no."}},
                                           date_format);
    records->setParent(this);
    lines_ = make_table(*records);
    add_header(database, date_format, fkey);
    layout->addWidget(lines_, 1);
    resize(820, 420);
}

void LedgerWindow::add_header(store::Database& database, const std::string& date_format,
                              const std::string& fkey) {
    const auto header =
        read(database, fmt::format("SELECT * FROM GL_header_table WHERE fkey = {}", store::quoted(fkey)));
    auto* const fields = new QGridLayout;
    static_cast<QVBoxLayout*>(layout())->addLayout(fields);
    if (header.at_eof()) {
        fields->addWidget(new QLabel("There is no ledger document " + shown(fkey) + "."), 0, 0);
        return;
    }
    static const std::vector<RecordColumn> kFields{
        {"docno", "Document no."},      {"gldate", "Date"},
        {"period", "Period"},           {"fyear", "Fiscal year"},
        {"Currency", "Currency"},       {"exchange_rate", "Ex. rate"},
        {"Source", "Source"},           {"source_docno", "Source no."},
        {"Description", "Description"}, {"remark", "Remark"},
        {"Reverse", "Reversed"},        {"user_created", "User"}};
    constexpr int kPairsInRow = 3;
    int at = 0;
    for (const RecordColumn& field : kFields) {
        auto* const caption = new QLabel(field.heading);
        caption->setEnabled(false);
        auto* const value = new QLabel(value_shown(header.field(field.field), field.money, date_format));
        value->setTextFormat(Qt::PlainText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        fields->addWidget(caption, at / kPairsInRow, at % kPairsInRow * 2);
        fields->addWidget(value, at / kPairsInRow, at % kPairsInRow * 2 + 1);
        fields->setColumnStretch(at % kPairsInRow * 2 + 1, 1);
        ++at;
    }
}

}  // namespace brimley::desktop
