#include "company/backup.h"

#include <fmt/format.h>

#include <filesystem>

#include "company/check.h"
#include "company/company_draft.h"
#include "company/refusal.h"
#include "company/signature.h"
#include "company/table_writer.h"
#include "company/transaction.h"
#include "kernel/tables/company_tables.h"

namespace brimley::company {

namespace {

using store::Database;
using store::OpenCompany;

void require_file(const std::string& backup) {
    if (store::is_on_server(backup)) throw UnusableValue("a backup is a file, not a company on a server");
}

// A server that only reads, such as a standby, is as good to copy from as any other.
OpenCompany open_sound(const std::string& company) {
    OpenCompany opened = store::open_company(company, kernel::company_tables());
    if (store::is_on_server(company)) return opened;
    if (const std::string damage = opened.database->reading_only_because(); !damage.empty())
        throw Refusal(damage);
    return opened;
}

// In the order in which they were added. Entries of the trail have their order by their numbers: desks draw
// row keys before they append.
std::string rows_to_copy(const store::Table& table) {
    return table.is_trail ? select_in_export_order(table) : fmt::format("SELECT * FROM [{}]", table.name);
}

void copy_table(Database& from, const store::Table& table, Database& to) {
    store::Recordset rows = from.OpenRecordset(rows_to_copy(table), store::RecordsetKind::snapshot);
    TableWriter writer(to, table.name);
    std::vector<store::Value> row(table.fields.size());
    for (; !rows.at_eof(); rows.MoveNext()) {
        for (std::size_t field = 0; field < row.size(); ++field) {
            row[field] = rows.column(static_cast<int>(field));
        }
        writer.add_row(row);
    }
}

// Row by row, from one engine to another, all of one moment.
store::CompanyFiller rows_of(const OpenCompany& from) {
    return [&from](Database& to) {
        const ReadingMoment moment(from);
        if (from.database->catalog().trail()) to.bring_trail_along();
        for (const store::Table& table : from.database->catalog().tables()) {
            copy_table(*from.database, table, to);
        }
    };
}

void copy_into_file(const OpenCompany& from, const std::string& file) {
    if (from.database->copy_file(file)) return;
    (void)store::create_company(file, from.database->catalog(), rows_of(from));
}

Findings look_through(const std::string& copy, const std::string& original) {
    const OpenCompany opened = open_sound(copy);
    const ReadingMoment moment(opened);
    if (const auto faults = opened.database->faults_of_storage(); !faults.empty())
        throw Refusal(fmt::format("the copy of {} is damaged: {}", original, faults.front()));
    return check_company(*opened.database);
}

Findings copy_to_new_file(const OpenCompany& from, const std::string& to) {
    CompanyDraft draft(to);
    Findings findings;
    draft.make([&](const std::string& file) {
        copy_into_file(from, file);
        findings = look_through(file, from.database->name());
    });
    draft.publish();
    return findings;
}

// "books.brimley.before-layout-2", or "books.before-layout-2" for a database of that name. An upgrade that
// was in doubt may have left one there: then with "-2" behind it, and so on.
std::string place_of_backup(const std::string& company) {
    const std::string place = fmt::format(
        "{}.before-layout-{}", store::is_on_server(company) ? store::database_name(company) : company,
        kernel::company_tables().layout());
    std::string free = place;
    for (int number = 2; std::filesystem::exists(free); ++number)
        free = fmt::format("{}-{}", place, number);
    return free;
}

}  // namespace

Findings back_up(const std::string& company, const std::string& to) {
    require_file(to);
    return copy_to_new_file(open_sound(company), to);
}

Findings restore(const std::string& from, const std::string& company) {
    require_file(from);
    const OpenCompany backup = open_sound(from);
    if (!store::is_on_server(company)) return copy_to_new_file(backup, company);
    Findings findings = look_through(from, from);
    (void)store::create_company(company, backup.database->catalog(), rows_of(backup));
    return findings;
}

Upgrade upgrade(const std::string& company) {
    Upgrade done;
    const auto back_up_first = [&] {
        const std::string backup = place_of_backup(company);
        done.findings = back_up(company, backup);
        done.backup = backup;
    };
    try {
        (void)store::upgrade_company(company, kernel::company_tables(), signature_of_login(), back_up_first);
    } catch (const store::Error& error) {
        if (done.backup.empty()) throw;
        if (error.kind() == store::ErrorKind::commit_in_doubt)
            throw store::Error(error.kind(),
                               fmt::format("{}; the company as it was: {}", error.what(), done.backup),
                               error.native_code());
        std::filesystem::remove(done.backup);  // of a company that stays as it is
        throw;
    }
    return done;
}

}  // namespace brimley::company
