#include "store/small_company.h"

#include "kernel/store/postgresql/postgresql_engine.h"
#include "kernel/store/sqlite/sqlite_engine.h"

namespace brimley::testing {

using store::Field;
using store::FieldType;
using store::RecordsetKind;
using store::Table;

namespace {

Table header_table() {
    return Table{"Header_table",
                 {{"fkey", FieldType::text},
                  {"company", FieldType::text},
                  {"docno", FieldType::text},
                  {"vendor_no", FieldType::text},
                  {"invoice_date", FieldType::date},
                  {"paid", FieldType::yes_no},
                  {"hold", FieldType::yes_no},
                  {"amount", FieldType::number}},
                 {},
                 false,
                 {},
                 {{{"fkey"}}, {{"docno", "company"}}}};
}

Table line_table() {
    return Table{"Line_table",
                 {{"fkey", FieldType::text},
                  {"docno", FieldType::text},
                  {"pay_item", FieldType::text},
                  {"lineno", FieldType::integer},
                  {"due_date", FieldType::date},
                  {"created", FieldType::datetime},
                  {"Currency", FieldType::text},
                  {"hold", FieldType::yes_no},
                  {"open_amount", FieldType::number}},
                 {},
                 false,
                 {},
                 {{{"fkey", "pay_item"}}}};
}

Table counter_table() {
    return Table{
        "Counter_table",
        {{"company", FieldType::number}, {"doctype", FieldType::text}, {"nextdocno", FieldType::number}},
        {"company", "doctype"},
        false,
        {"company", "doctype"},
        {{{"company", "doctype"}, true}}};
}

Table word_table() {
    return Table{"Word_table",
                 {{"default", FieldType::yes_no},
                  {"Month", FieldType::number},
                  {"Year", FieldType::number},
                  {"Date", FieldType::date},
                  {"Value", FieldType::text},
                  {"Percent", FieldType::number},
                  {"type", FieldType::text},
                  {"user", FieldType::text},
                  {"Print", FieldType::yes_no},
                  {"Update", FieldType::yes_no},
                  {"Reverse", FieldType::yes_no},
                  {"Order", FieldType::number},
                  {"unit", FieldType::text},
                  {"module", FieldType::text},
                  {"maybe", FieldType::yes_no, true}},
                 {},
                 false,
                 {},
                 {}};
}

CompanyOriginal& small_original() {
    static CompanyOriginal original(
        [](const std::string& company) { (void)store::create_company(company, small_catalog()); });
    return original;
}

}  // namespace

const store::Catalog& small_catalog() {
    static const store::Catalog catalog({header_table(), line_table(), counter_table(), word_table()});
    return catalog;
}

SmallCompany::SmallCompany() : StoreCompany(small_catalog(), small_original()) {}

StoreCompany::StoreCompany(const store::Catalog& catalog, CompanyOriginal& original)
    : catalog_(catalog),
      database_(tests_run_on_server() ? original.database() : nullptr),
      path_(database_ ? database_->uri() : folder_.file("small.brimley")) {
    if (!database_) original.copy_to(path_);
    reopen({});
}

store::OpenCompany StoreCompany::second_user(const store::EngineDecorator& decorate) const {
    return store::open_company(path_, catalog_, decorate);
}

void StoreCompany::reopen(const store::EngineDecorator& decorate) {
    open_ = {};
    open_ = store::open_company(path_, catalog_, decorate);
}

void add_row(store::Database& db, const std::string& table, FieldValues values) {
    store::Recordset rows =
        db.OpenRecordset("SELECT * FROM " + table + " WHERE 1 = 2", RecordsetKind::dynaset);
    rows.AddNew();
    for (const auto& [name, value] : values)
        rows.set(name, value);
    rows.Update();
}

store::Recordset StoreCompany::snapshot(const std::string& query) {
    return db().OpenRecordset(query, RecordsetKind::snapshot);
}

store::Recordset StoreCompany::dynaset(const std::string& query) {
    return db().OpenRecordset(query, RecordsetKind::dynaset);
}

std::string StoreCompany::list(const std::string& query) {
    store::Recordset rows = snapshot(query);
    return first_column(rows);
}

std::int64_t StoreCompany::count(const std::string& from) {
    return snapshot("SELECT * FROM " + from).RecordCount();
}

std::unique_ptr<store::Engine> engine_of(const std::string& company) {
    if (store::is_on_server(company)) return store::open_postgresql_company(company, small_catalog()).engine;
    return store::open_sqlite_company(company, small_catalog()).engine;
}

std::string first_column(store::Recordset& rows) {
    std::string listed;
    for (rows.MoveFirst(); !rows.at_eof(); rows.MoveNext()) {
        if (!listed.empty()) listed += ' ';
        listed += rows.column(0).is_null() ? "-" : rows.column(0).text();
    }
    return listed;
}

}  // namespace brimley::testing
