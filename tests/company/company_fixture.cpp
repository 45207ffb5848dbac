#include "company/company_fixture.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "company/export.h"
#include "company/transaction.h"
#include "kernel/tables/company_tables.h"
#include "support/company_original.h"

namespace brimley::testing {

using store::Recordset;
using store::RecordsetKind;

std::string lines(std::initializer_list<std::string_view> all) {
    std::string text;
    for (const std::string_view line : all) {
        text += line;
        text += '\n';
    }
    return text;
}

std::string text_of_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::string& path, std::string_view text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

namespace {

std::string key_of(const company::EmptyCompany&) { return "empty"; }
std::string key_of(const company::SampleCompany& sample) { return "sample of " + sample.user; }
std::string key_of(const company::HalfYearCompany& sample) { return "half a year of " + sample.user; }
std::string key_of(const company::StarterCompany& starter) {
    return fmt::format("starter of {} in {} from {}, {}", starter.user, starter.base_currency, starter.year,
                       starter.country);
}

CompanyOriginal& original_of(const company::CompanyContent& content) {
    static std::map<std::string, CompanyOriginal> originals;
    const std::string key = std::visit([](const auto& each) { return key_of(each); }, content);
    const auto make = [content](const std::string& company) {
        company::create_company_file(company, content);
    };
    return originals.try_emplace(key, make).first->second;
}

}  // namespace

void CompanyTest::make(const company::CompanyContent& content) {
    CompanyOriginal& original = original_of(content);
    if (tests_run_on_server()) {
        database_ = original.database();
    } else {
        original.copy_to(path());
    }
    reopen();
}

void CompanyTest::make_anew(const company::CompanyContent& content) {
    company::create_company_file(path(), content);
    reopen();
}

void CompanyTest::reopen() {
    open_ = {};
    open_ = store::open_company(path(), kernel::company_tables());
}

std::vector<std::string> CompanyTest::rows(const std::string& query) {
    std::vector<std::string> all;
    for (Recordset found = db().OpenRecordset(query, RecordsetKind::snapshot); !found.at_eof();
         found.MoveNext()) {
        std::string row;
        for (int column = 0; column < found.column_count(); ++column) {
            if (column > 0) row += '|';
            row += found.column(column).is_null() ? "-" : found.column(column).text();
        }
        all.push_back(row);
    }
    return all;
}

void CompanyTest::change(const std::string& query, company::FieldValues values) {
    Recordset found = db().OpenRecordset(query, RecordsetKind::dynaset);
    ASSERT_FALSE(found.at_eof()) << query;
    found.Edit();
    for (const auto& [field, value] : values) {
        found.set(field, value);
    }
    found.Update();
}

void CompanyTest::raise(const std::string& query, std::string_view field, double amount) {
    Recordset found = db().OpenRecordset(query, RecordsetKind::dynaset);
    ASSERT_FALSE(found.at_eof()) << query;
    found.Edit();
    found.set(field, found.number(field) + amount);
    found.Update();
}

void CompanyTest::add(const std::string& table, company::FieldValues values) {
    company::TableWriter(db(), table).add(values);
}

void CompanyTest::in_transaction(const std::function<void(store::Database&)>& work) {
    company::Transaction transaction(open_);
    work(db());
    transaction.commit();
}

std::string dump_of(const store::OpenCompany& open) {
    const TemporaryFolder folder;
    {
        const company::ReadingMoment moment(open);
        company::export_tables(*open.database, folder.path());
    }
    std::string all;
    for (const store::Table& table : open.database->catalog().tables()) {
        all += table.name + "\n" + text_of_file(folder.file(table.name + ".csv"));
    }
    return all;
}

}  // namespace brimley::testing
