#include "store/trailed_company.h"

#include "support/company_original.h"

namespace brimley::testing {

using store::Catalog;
using store::Database;
using store::DateTime;
using store::FieldType;
using store::Table;
using store::Watched;

namespace {

std::vector<Table> trailed_tables(bool watched) {
    Table invoices{"Invoice_table",
                   {{"docno", FieldType::text},
                    {"amount", FieldType::number},
                    {"created", FieldType::datetime},
                    {"open_amount", FieldType::number},
                    {"void", FieldType::yes_no},
                    {"lineno", FieldType::integer}},
                   {},
                   false,
                   {"docno"},
                   {{{"docno"}}}};
    Table postings{
        "Posting_table", {{"entry", FieldType::text}, {"amount", FieldType::number}}, {}, false, {}, {}};
    const Table vendors{"Owner_table", {{"vendor_no", FieldType::text}}, {}, false, {}, {}};
    if (watched) {
        invoices.watched = Watched{"invoice", "docno", false, {"open_amount"}};
        postings.watched = Watched{"posting", "entry", true, {}};
    }
    Table trail = store::trail_table("Trail_table");
    trail.since = 2;
    return {invoices, postings, vendors, trail};
}

CompanyOriginal& trailed_original() {
    static CompanyOriginal original(
        [](const std::string& company) { (void)store::create_company(company, trailed_catalog()); });
    return original;
}

}  // namespace

const Catalog& trailed_catalog() {
    static const Catalog catalog(trailed_tables(true));
    return catalog;
}

const Catalog& unwatched_catalog() {
    static const Catalog catalog(trailed_tables(false));
    return catalog;
}

Trail::Trail() : company_(trailed_catalog(), trailed_original()) { sign("anna"); }

void Trail::sign(store::Workspace& workspace, const std::string& user) {
    workspace.sign({user, "desk 3", *DateTime::from_iso("2026-01-15 09:30:00")});
}

std::shared_ptr<Faults> Trail::reopen_with_faults(store::ErrorKind kind,
                                                  const std::string& only_statements_with) {
    auto faults = std::make_shared<Faults>();
    faults->kind = kind;
    faults->only_statements_with = only_statements_with;
    company_.reopen(faulty(faults));
    sign("anna");
    return faults;
}

void Trail::add_invoice(Database& db, const std::string& docno, double amount) {
    add_row(db, "Invoice_table",
            {{"docno", docno},
             {"amount", amount},
             {"open_amount", amount},
             {"created", *DateTime::from_iso("2026-01-15 09:29:59")},
             {"lineno", 1}});
}

void Trail::tamper(const std::string& statement) {
    (void)store::open_company(company_.path(), unwatched_catalog()).database->Execute(statement);
}

std::vector<std::string> Trail::column(const std::string& query) {
    std::vector<std::string> texts;
    for (store::Recordset rows = company_.snapshot(query); !rows.at_eof(); rows.MoveNext())
        texts.push_back(rows.column(0).text());
    return texts;
}

}  // namespace brimley::testing
