#include "desktop/ledger_window.h"

#include <fmt/format.h>

#include <QGridLayout>
#include <QLabel>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <cmath>
#include <map>

#include "desktop/model_view.h"
#include "desktop/review_windows.h"
#include "kernel/module_g3.h"
#include "kernel/money.h"

namespace brimley::desktop {

namespace {

struct Account {
    QString name;
    bool debit = true;
};

// The accounts of a document, each looked up once. One that the chart does not have any more has no name and
// counts as one of the debit side.
class Accounts {
  public:
    explicit Accounts(store::Database& database) : database_(database) {}

    const Account& of(const std::string& accno) {
        const auto known = accounts_.find(accno);
        if (known != accounts_.end()) return known->second;
        const auto row = database_.OpenRecordset(
            fmt::format("SELECT accname, debit FROM Account_master_table WHERE accno = {}",
                        store::quoted(accno)),
            store::RecordsetKind::snapshot);
        Account account;
        if (!row.at_eof()) account = {shown(row.text("accname")), row.flag("debit")};
        return accounts_[accno] = account;
    }

    // A line's amount as it moves the debit side: more of a debit account, less of a credit one.
    double debit_of(const store::Recordset& line, const char* field) {
        return kernel::side_of(of(line.text("accno")).debit) * line.number(field);
    }

  private:
    store::Database& database_;
    std::map<std::string, Account> accounts_;
};

enum class Side { debit, credit };

// The amount when it is on the side, else empty.
QString on_side(double debit, Side side) {
    const bool stands_here = side == Side::debit ? debit >= 0 : debit < 0;
    return stands_here ? shown(kernel::format_money(std::abs(debit))) : QString();
}

// The lines, their amounts in a column for each side.
RecordsModel* records_of(store::Recordset& lines, Accounts& accounts, const std::string& date_format) {
    const auto money = [&](const char* heading, const char* field, Side side) {
        return RecordColumn{field, heading, true, [&accounts, field, side](const store::Recordset& line) {
                                return on_side(accounts.debit_of(line, field), side);
                            }};
    };
    const auto name_of = [&](const store::Recordset& line) { return accounts.of(line.text("accno")).name; };
    return new RecordsModel(lines,
                            {{"lineno", "Line"},
                             {"accno", "Account"},
                             {"accno", "Name", false, name_of},
                             money("Debit", "amount", Side::debit),
                             money("Credit", "amount", Side::credit),
                             {"Currency", "Currency"},
                             money("Base debit", "base_amount", Side::debit),
                             money("Base credit", "base_amount", Side::credit),
                             {"ledgertype", "Ledger"},
                             {"source_docno", "Source no."}},
                            date_format);
}

// What the two sides come to in base currency.
QString sums_of(store::Recordset& lines, Accounts& accounts) {
    double debit = 0;
    double credit = 0;
    for (lines.MoveFirst(); !lines.at_eof(); lines.MoveNext()) {
        const double amount = accounts.debit_of(lines, "base_amount");
        (amount >= 0 ? debit : credit) += std::abs(amount);
    }
    const char* const fault = kernel::Round(debit - credit) == 0 ? "" : "   NOT IN BALANCE";
    return shown(fmt::format("Base debit {}   Base credit {}{}", kernel::format_money(debit),
                             kernel::format_money(credit), fault));
}

}  // namespace

LedgerWindow::LedgerWindow(store::Database& database, const std::string& date_format,
                           const std::string& fkey) {
    setWindowTitle("G/L Ledger Review");
    new QVBoxLayout(this);
    add_header(database, date_format, fkey);
    auto lines = database.OpenRecordset(
        fmt::format("SELECT * FROM GL_transaction_table WHERE fkey = {} ORDER BY lineno",
                    store::quoted(fkey)),
        store::RecordsetKind::snapshot);
    Accounts accounts(database);
    RecordsModel* const records = records_of(lines, accounts, date_format);
    records->setParent(this);
    auto* const sorted = new QSortFilterProxyModel(this);
    sorted->setSourceModel(records);
    lines_ = read_only_table(*sorted);
    layout()->addWidget(lines_);
    sums_ = new QLabel(sums_of(lines, accounts));
    sums_->setAlignment(Qt::AlignRight);
    layout()->addWidget(sums_);
    resize(900, 420);
}

void LedgerWindow::add_header(store::Database& database, const std::string& date_format,
                              const std::string& fkey) {
    const auto header = database.OpenRecordset(
        fmt::format("SELECT * FROM GL_header_table WHERE fkey = {}", store::quoted(fkey)),
        store::RecordsetKind::snapshot);
    auto* const fields = new QGridLayout;
    static_cast<QVBoxLayout*>(layout())->addLayout(fields);
    if (header.at_eof()) {
        fields->addWidget(new QLabel("There is no ledger document " + shown(fkey) + "."), 0, 0);
        return;
    }
    setWindowTitle(windowTitle() + " - " + shown(header.text("docno")));
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
