#include "desktop/review_windows.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QTableView>

#include "desktop/model_view.h"
#include "desktop/settings.h"

namespace brimley::desktop {

namespace {

constexpr int kColumnWidthMax = 320;  // pixels; a long text is read by widening its column

store::Recordset read(store::Database& database, const std::string& query) {
    return database.OpenRecordset(query, store::RecordsetKind::snapshot);
}

}  // namespace

QTableView* read_only_table(QSortFilterProxyModel& model) {
    auto* const table = new QTableView;
    model.setSortRole(RecordsModel::kSortRole);
    model.setSortCaseSensitivity(Qt::CaseInsensitive);
    table->setModel(&model);
    table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table->setSortingEnabled(true);
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

// --- lists ---
ListWindow::ListWindow(const QString& title, store::Database& database, const std::string& query,
                       const std::vector<RecordColumn>& columns, const std::string& date_format,
                       const QString& key)
    : search_(new QLineEdit),
      opener_(new QPushButton("&Open in the master")),
      filter_(new QSortFilterProxyModel(this)) {
    setWindowTitle(title);
    auto rows = read(database, query);
    auto* const records = new RecordsModel(rows, columns, date_format);
    records->setParent(this);
    filter_->setSourceModel(records);
    filter_->setFilterKeyColumn(-1);
    filter_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    table_ = read_only_table(*filter_);
    search_->setPlaceholderText("Search");
    search_->setClearButtonEnabled(true);
    auto* const layout = new QVBoxLayout(this);
    auto* const top = new QHBoxLayout;
    top->addWidget(search_, 1);
    top->addWidget(opener_);
    layout->addLayout(top);
    layout->addWidget(table_, 1);
    connect(opener_, &QPushButton::clicked, this, &ListWindow::open);
    connect(table_, &QTableView::doubleClicked, this, &ListWindow::open);
    connect(search_, &QLineEdit::returnPressed, this, &ListWindow::open);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter_->setFilterFixedString(text.trimmed());
        if (!table_->currentIndex().isValid()) table_->selectRow(0);
    });
    resize(680, 420);
    const QList<int> widths = Settings().column_widths(title);
    for (int column = 0; column < records->columnCount() && column < widths.size(); ++column)
        table_->setColumnWidth(column, widths[column]);
    choose(key);
    setFocusProxy(search_);
    search_->installEventFilter(this);
}

ListWindow::~ListWindow() {
    QList<int> widths;
    for (int column = 0; column < table_->model()->columnCount(); ++column)
        widths << table_->columnWidth(column);
    Settings().set_column_widths(windowTitle(), widths);
}

// Up and down go through the list while the user searches.
bool ListWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == search_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QApplication::sendEvent(table_, event);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ListWindow::choose(const QString& key) {
    const auto found = filter_->match(filter_->index(0, 0), Qt::DisplayRole, key, 1, Qt::MatchFixedString);
    if (key.isEmpty() || found.isEmpty()) return;
    table_->selectRow(found.first().row());
    table_->scrollTo(found.first(), QAbstractItemView::PositionAtCenter);
}

void ListWindow::open() {
    if (on_open) on_open(chosen_key());
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

namespace {

// The lines of an address in one.
QString address_of(const store::Recordset& vendor) {
    const QStringList lines = shown(vendor.text("address")).split(QRegularExpression("\\s*[\r\n]+\\s*"));
    return lines.join(", ");
}

}  // namespace

ListWindow* vendor_master(store::Database& database, const std::string& date_format,
                          const QString& vendor_no) {
    return new ListWindow("Vendor Master", database, "SELECT * FROM Vendor_table ORDER BY vendor_no",
                          {{"vendor_no", "Vendor no"},
                           {"VENDOR_NAME", "Name"},
                           {"Currency", "Currency"},
                           {"ap_accno", "Payable account"},
                           {"owing_balance", "Owing", true},
                           {"vendor_group", "Group"},
                           {"address", "Address", false, address_of}},
                          date_format, vendor_no);
}

}  // namespace brimley::desktop
