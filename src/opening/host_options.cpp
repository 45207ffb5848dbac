#include "opening/host_options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <stdexcept>

#include "company/database_rights.h"
#include "kernel/tables/company_tables.h"
#include "kernel/user_dates.h"
#include "opening/this_machine.h"

namespace brimley::opening {

namespace {

constexpr int kPeriodsMax = 99;

// The text describes the fault; empty: there is none.
std::string fault_of_periods(const std::string& text) {
    int periods = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, periods);
    if (error == std::errc{} && stopped == end && periods >= 1 && periods <= kPeriodsMax) return {};
    return '"' + text + "\" is no number from 1 to " + std::to_string(kPeriodsMax);
}

// A date that is written in the format must be the same date when it is read.
std::string fault_of_date_format(const std::string& format) {
    const auto day = store::DateTime::from_ymd(2026, 12, 25);
    if (kernel::try_user_date(kernel::user_date_text(*day, format), format) == day) return {};
    return '"' + format + "\" is no order of dd, mm and yyyy parted by /, such as dd/mm/yyyy";
}

std::string chart_currency(store::Database& database) {
    const auto config =
        database.OpenRecordset("SELECT Currency FROM COA_config_table", store::RecordsetKind::snapshot);
    return config.at_eof() ? std::string{} : config.text("Currency");
}

// A company on a server has no folder of its own.
std::string folder_of(const std::string& company) {
    if (store::is_on_server(company)) return std::filesystem::current_path().string();
    return std::filesystem::absolute(company).parent_path().string();
}

// Reports are stored in a folder of each user in here. Who names an install folder has made it ready.
void make_report_folder(const std::string& install_folder) {
    const std::string reports = install_folder + "\\User report";
    if (!folder_exists(reports)) make_folder(reports);
}

}  // namespace

void describe_host_options(CLI::App& app, HostOptions& options) {
    app.add_option("--user", options.user, "user id; else the login name")->type_name("NAME");
    app.add_option("--base-currency", options.base_currency,
                   "base currency; else that of the company's chart")
        ->type_name("CODE");
    app.add_option("--date-format", options.date_format, "date format of the user")
        ->type_name("F")
        ->check(fault_of_date_format)
        ->capture_default_str();
    app.add_option("--periods", options.periods, "fiscal periods of a year")
        ->type_name("N")
        ->check(fault_of_periods)
        ->capture_default_str();
    app.add_option("--company-name", options.company_name, "company name shown on reports")
        ->type_name("TEXT");
    app.add_option("--password-file", options.password_file,
                   "file with a line NAME:PASSWORD for each user who has one, closed to others")
        ->type_name("FILE");
    app.add_option("--path", options.path,
                   "install folder; else that of the company file, or the current one")
        ->type_name("DIR");
}

PasswordSource password_source(const HostOptions& options) {
    if (options.password_file.empty()) return options.ask_password;
    return passwords_of_file(options.password_file, options.ask_password);
}

namespace {

// On a server a login name that was not chosen says nothing: the role is who works there.
std::string admitted_user(const store::OpenCompany& open, const HostOptions& options) {
    Admission admission(open.database, password_source(options));
    const std::string user = options.user == company::login_name() ? admission.default_user() : options.user;
    admission.require(user);
    return user;
}

// A server's password is asked for when the server wants one that libpq does not find by itself.
store::OpenCompany open_with_password(const std::string& company, const HostOptions& options) {
    try {
        return store::open_company(company, kernel::company_tables());
    } catch (const store::Error& error) {
        if (error.kind() != store::ErrorKind::no_password) throw;
        const PasswordSource ask = password_source(options);
        const auto password = ask ? ask(store::role_name(company)) : std::nullopt;
        if (!password || password->empty()) throw;
        return store::open_company(store::with_password(company, password->text()), kernel::company_tables());
    }
}

frame::HostContext context_of(const store::OpenCompany& open, const std::string& company,
                              const HostOptions& options) {
    frame::HostContext context;
    context.dbe = open.workspace;
    context.abcdb = open.database;
    context.OPEN_DATABASE = company;
    context.BASE_CURRENCY =
        options.base_currency.empty() ? chart_currency(*open.database) : options.base_currency;
    context.BRIMLEY_COMPANY_NAME = options.company_name;
    context.BRIMLEY_PATH = options.path.empty() ? folder_of(company) : options.path;
    context.BRIMLEY_USER = admitted_user(open, options);
    context.BRIMLEY_DATE_FORMAT = options.date_format;
    context.BRIMLEY_NO_PERIODS = options.periods;
    context.BRIMLEY_FONT_NAME = "Arial";
    context.BRIMLEY_FONT_SIZE = 9.0;
    if (options.path.empty()) make_report_folder(context.BRIMLEY_PATH);
    return context;
}

}  // namespace

// A role that lacks rights in the database is told so at the first table that it may not read.
frame::HostContext open_context(const std::string& company, const HostOptions& options) {
    const auto open = open_with_password(company, options);
    try {
        return context_of(open, company, options);
    } catch (const store::Error&) {
        const std::string lack = company::lack_of_rights(*open.database);
        if (lack.empty()) throw;
        throw std::runtime_error(lack);
    }
}

}  // namespace brimley::opening
