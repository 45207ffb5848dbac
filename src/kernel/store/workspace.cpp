#include "kernel/store/connection.h"
#include "kernel/store/database.h"
#include "kernel/store/dialect/lexer.h"
#include "kernel/store/sqlite/sqlite_engine.h"

namespace brimley::store {

namespace {

void refuse_server(std::string_view company) {
    if (company.starts_with("postgresql://") || company.starts_with("postgres://"))
        throw Error(ErrorKind::not_a_company, "server databases are not supported by this build");
}

}  // namespace

Workspace::Workspace(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
// Who goes away in the middle of a transaction takes it along.
Workspace::~Workspace() { connection_->rollback(); }

void Workspace::BeginTrans() { connection_->begin_trans(); }
void Workspace::BeginSnapshot() { connection_->begin_snapshot(); }
void Workspace::CommitTrans() { connection_->commit_trans(); }
void Workspace::Rollback() { connection_->rollback(); }
bool Workspace::in_transaction() const { return connection_->in_trans(); }

OpenCompany open_company(const std::string& company, const Catalog& catalog,
                         const EngineDecorator& decorate) {
    refuse_server(company);
    std::unique_ptr<Engine> engine = open_sqlite_company(company, catalog);
    if (decorate) engine = decorate(std::move(engine));
    auto connection = std::make_shared<Connection>(std::move(engine), catalog, company);
    return {std::make_shared<Workspace>(connection), std::make_shared<Database>(connection)};
}

OpenCompany create_company(const std::string& company, const Catalog& catalog) {
    refuse_server(company);
    create_sqlite_company(company, catalog);
    try {
        return open_company(company, catalog);
    } catch (...) {
        remove_sqlite_company(company);
        throw;
    }
}

std::string quoted(std::string_view value) {
    if (value.find('\'') != std::string_view::npos) return {dialect::kBrokenValue};
    std::string text = "'";
    text += value;
    return text += '\'';
}

std::string date_value(DateTime date) { return "Datevalue('" + date.query_text() + "')"; }

}  // namespace brimley::store
