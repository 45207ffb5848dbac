// Makes a company database: an empty one, the sample company with or without documents, or the start of a
// real one.
//
// Every new company has all tables and indexes and the Grid_property rows of every form and grid.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "kernel/store/database.h"
#include "kernel/tables/company_tables.h"

namespace brimley::company {

// No row but the grid layouts.
struct EmptyCompany {};

// The sample company, with full rights for `user`.
struct SampleCompany {
    std::string user;
};

// The sample company after half a year of work (data/half_year.session), with full rights for `user`.
struct HalfYearCompany {
    std::string user;
};

struct FirstBank {
    std::string code, name, branch;
};
struct FirstVendor {
    std::string number, name, address;
};

// What a real new company needs, with full rights for `user`.
struct StarterCompany {
    std::string base_currency;
    std::string year;  // the first fiscal year, named by the calendar year in which it begins
    std::string user;
    int first_month = 1;  // of the fiscal year
    // The folder of one of countries(). Empty: the smallest chart, without taxes.
    std::string country = {};
    std::optional<FirstBank> bank = {};
    std::optional<FirstVendor> vendor = {};
};

using CompanyContent = std::variant<EmptyCompany, SampleCompany, HalfYearCompany, StarterCompany>;

// Makes the company and leaves it closed. Nobody sees it before it is whole. A failure leaves nothing behind;
// a program that is killed leaves a hidden folder (company_draft.h) or, on a server, a database without a
// company, which are in nobody's way. Throws store::Error (state: the path exists already, or another program
// is making it), CsvError and std::exception for a broken sample, UnusableValue for a year or a currency that
// is none.
// tables: those of an older layout make a company as older versions did.
void create_company_file(const std::string& company, const CompanyContent& content,
                         const store::Catalog& tables = kernel::company_tables());

// The parts, inside the caller's transaction.
void add_grid_properties(store::Database& database);
void add_starter(store::Database& database, const StarterCompany& starter);
// Full rights on every form, and rows that keep the toolbar settings, where the user has none.
void add_full_rights(store::Database& database, const std::string& user);

}  // namespace brimley::company
