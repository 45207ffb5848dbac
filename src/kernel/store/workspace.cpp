#include "kernel/store/connection.h"
#include "kernel/store/database.h"
#include "kernel/store/dialect/lexer.h"
#include "kernel/store/postgresql/postgresql_engine.h"
#include "kernel/store/sqlite/sqlite_engine.h"

namespace brimley::store {

namespace {

OpenedEngine open_engine(const std::string& company, const Catalog& catalog) {
    return is_on_server(company) ? open_postgresql_company(company, catalog)
                                 : open_sqlite_company(company, catalog);
}

OpenCompany opened(const std::shared_ptr<Connection>& connection) {
    return {std::make_shared<Workspace>(connection), std::make_shared<Database>(connection)};
}

OpenCompany filled(std::unique_ptr<Engine> engine, const Catalog& catalog, const std::string& company,
                   const CompanyFiller& fill) {
    const auto connection = std::make_shared<Connection>(std::move(engine), catalog, company);
    OpenCompany made = opened(connection);
    made.workspace->begin_alone();
    if (fill) fill(*made.database);
    made.workspace->CommitTrans();
    return made;
}

OpenCompany create_on_server(const std::string& company, const Catalog& catalog, const CompanyFiller& fill) {
    CompanyInTheMaking making(company, catalog);
    try {
        OpenCompany made = filled(engine_of(making, catalog), catalog, company, fill);
        making.keep();
        return made;
    } catch (const Error& error) {
        if (error.kind() == ErrorKind::commit_in_doubt) making.keep();
        throw;
    }
}

OpenCompany create_file(const std::string& company, const Catalog& catalog, const CompanyFiller& fill) {
    create_sqlite_company(company, catalog);
    try {
        return filled(open_sqlite_company(company, catalog).engine, catalog, company, fill);
    } catch (...) {
        remove_sqlite_company(company);
        throw;
    }
}

}  // namespace

Workspace::Workspace(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
// A workspace that goes away in the middle of a transaction rolls it back.
Workspace::~Workspace() { connection_->rollback(); }

void Workspace::BeginTrans() { connection_->begin_trans(); }
void Workspace::begin_alone() { connection_->begin_alone(); }
void Workspace::begin_snapshot() { connection_->begin_snapshot(); }
void Workspace::CommitTrans() { connection_->commit_trans(); }
void Workspace::Rollback() { connection_->rollback(); }
void Workspace::sign(Signature signature) { connection_->sign(std::move(signature)); }
void Workspace::let_write(bool may_write) { connection_->let_write(may_write); }
void Workspace::tidy() { connection_->tidy(); }
bool Workspace::in_transaction() const { return connection_->in_trans(); }
ConnectionState Workspace::connection_state() const { return connection_->state(); }
void Workspace::watch(std::shared_ptr<ConnectionWatch> watch) { connection_->watch(std::move(watch)); }
bool Workspace::can_reconnect() const { return connection_->can_reconnect(); }
bool Workspace::reconnect() { return connection_->reconnect(); }
std::int64_t Workspace::lost_calls() const { return connection_->lost_calls(); }
void Workspace::forgive_lost_calls(std::int64_t calls) { connection_->forgive_lost_calls(calls); }
int Workspace::doubts() const { return connection_->doubts(); }
Doubt Workspace::doubt(int number) const { return connection_->doubt(number); }

OpenCompany open_company(const std::string& company, const Catalog& catalog,
                         const EngineDecorator& decorate) {
    OpenedEngine reached = open_engine(company, catalog);
    if (decorate) reached.engine = decorate(std::move(reached.engine));
    return opened(std::make_shared<Connection>(std::move(reached.engine), *reached.catalog, company));
}

bool upgrade_company(const std::string& company, const Catalog& catalog, const Signature& signature,
                     const std::function<void()>& first) {
    OpenedEngine reached = open_engine(company, catalog);
    if (reached.catalog == &catalog) return false;
    Connection connection(std::move(reached.engine), catalog, company);
    connection.sign(signature);
    connection.begin_alone();
    if (first) first();
    connection.upgrade();
    connection.commit_trans();
    return true;
}

OpenCompany create_company(const std::string& company, const Catalog& catalog, const CompanyFiller& fill) {
    return is_on_server(company) ? create_on_server(company, catalog, fill)
                                 : create_file(company, catalog, fill);
}

namespace {

void append_quoted(std::string& text, std::string_view value) {
    if (value.find('\'') != std::string_view::npos) {
        text += dialect::kBrokenValue;
        return;
    }
    text += '\'';
    text += value;
    text += '\'';
}

}  // namespace

std::string quoted(std::string_view value) {
    std::string text;
    append_quoted(text, value);
    return text;
}

std::string all_equal(FieldValues fields) {
    constexpr std::size_t kUsualLength = 128;
    std::string text;
    text.reserve(kUsualLength);
    for (const auto& [field, value] : fields) {
        if (!text.empty()) text += " and ";
        text += '[';
        text += field;
        text += "] = ";
        append_quoted(text, value);
    }
    return text;
}

std::string date_value(DateTime date) { return "Datevalue('" + date.query_text() + "')"; }

}  // namespace brimley::store
