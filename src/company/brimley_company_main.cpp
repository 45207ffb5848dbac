// brimley-company: makes, fills, saves and checks company databases.
//
// Status: 0; 1 when check finds something or what stands in the files or the company is in the way; 2 for
// wrong usage; 3 when the company or a file cannot be opened or written.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "company/add_year.h"
#include "company/backup.h"
#include "company/check.h"
#include "company/command_line_words.h"
#include "company/create.h"
#include "company/database_rights.h"
#include "company/export.h"
#include "company/import.h"
#include "company/journal_export.h"
#include "company/login_name.h"
#include "company/people.h"
#include "company/refusal.h"
#include "company/signature.h"
#include "company/transaction.h"
#include "company/typed_secret.h"
#include "kernel/tables/company_tables.h"
#include "kernel/visible_text.h"

namespace {

using namespace brimley;

constexpr int kDone = 0;
constexpr int kFindings = 1;
constexpr int kWrongUsage = 2;
constexpr int kCannot = 3;

struct Arguments {
    std::string company;
    std::optional<std::string> folder;
    std::optional<std::string> journal;  // the file
    std::string backup;                  // the file of a backup
    std::string year;
    std::string user;
    std::string role;
    std::string base_currency;
    std::string country;
    int first_month = 1;
    std::vector<std::string> tables;
    std::optional<std::string> sealed;  // what seal printed
    bool sample = false;
    bool half_year = false;
    bool starter = false;
    bool replace = false;
    bool unchecked = false;        // an import
    bool repair_balances = false;  // a check
};

int fail(int status, const std::string& reason) {
    fmt::print(stderr, "brimley-company: {}\n", kernel::visible_text(reason));
    return status;
}

// Runs the work in one transaction of the company.
void with_company(const Arguments& arguments, const std::function<void(store::Database&)>& work) {
    const store::OpenCompany company = store::open_company(arguments.company, kernel::company_tables());
    company.workspace->sign(company::signature_in(*company.database));
    company::Transaction transaction(company);
    work(*company.database);
    transaction.commit();
}

// Runs the work on the company as it is at one moment.
void with_books(const Arguments& arguments, const std::function<void(store::Database&)>& work) {
    const store::OpenCompany company = store::open_company(arguments.company, kernel::company_tables());
    const company::ReadingMoment moment(company);
    work(*company.database);
}

void create(const Arguments& arguments) {
    using namespace company;
    CompanyContent content = EmptyCompany{};
    if (arguments.sample) content = SampleCompany{login_name()};
    if (arguments.half_year) content = HalfYearCompany{login_name()};
    if (arguments.starter) {
        StarterCompany starter{arguments.base_currency, arguments.year, login_name()};
        starter.country = arguments.country;
        starter.first_month = arguments.first_month;
        content = std::move(starter);
    }
    create_company_file(arguments.company, content);
}

void require_folder_name(const Arguments& arguments) {
    if (!arguments.folder) throw company::UnusableValue("DIR is required");
    if (arguments.folder->empty()) throw company::UnusableValue("the name of the folder is empty");
}

void import_files(const Arguments& arguments) {
    require_folder_name(arguments);
    if (!std::filesystem::is_directory(*arguments.folder)) {
        throw company::UnusableValue(*arguments.folder + " is not a folder");
    }
    with_company(arguments, [&](store::Database& database) {
        const bool by_administrator = company::is_administrator(database, company::login_name());
        company::import_folder(database, *arguments.folder,
                               {arguments.replace, by_administrator, !arguments.unchecked});
    });
}

void export_files(const Arguments& arguments) {
    if (arguments.journal)
        return with_books(arguments, [&](store::Database& database) {
            company::export_journal(database, *arguments.journal);
        });
    require_folder_name(arguments);
    with_books(arguments, [&](store::Database& database) {
        company::export_tables(database, *arguments.folder, arguments.tables);
    });
}

void print_lines(const char* before, const company::Findings& lines) {
    for (const std::string& line : lines) {
        fmt::print("{}{}\n", before, kernel::visible_text(line));
    }
}

// As seal prints it: number and hash.
store::TrailEntry sealed_entry(const std::string& seal) {
    constexpr std::size_t kHashLength = 64;
    const std::size_t colon = std::min(seal.find(':'), seal.size());
    store::TrailEntry entry;
    const auto read = std::from_chars(seal.data(), seal.data() + colon, entry.number);
    entry.hash = colon == seal.size() ? std::string{} : seal.substr(colon + 1);
    if (colon == seal.size() || read.ec != std::errc() || read.ptr != seal.data() + colon ||
        entry.number < 0 || entry.hash.size() != (entry.number == 0 ? 0 : kHashLength))
        throw company::UnusableValue((seal.empty() ? "an empty text" : seal) +
                                     " is no seal: seal prints one as NUMBER:HASH");
    return entry;
}

// Never where the lines themselves are not to be believed: balances that agree with them would hide it.
void repair_balances(const Arguments& arguments, const store::TrailEntry& sealed) {
    std::vector<std::string> repaired;
    with_company(arguments, [&](store::Database& database) {
        if (!company::is_administrator(database, company::login_name()))
            throw company::Refusal("only an administrator repairs balances, who has all rights on all forms");
        if (!database.faults_of_storage().empty()) return;
        const auto faults = database.faults_of_trail(sealed);
        if (!faults.empty())
            throw company::Refusal("the trail does not hold, so nothing is repaired: " + faults.front());
        repaired = company::repair_balances(database);
    });
    print_lines("repaired: ", repaired);
}

// What is damaged is not read any further.
int check(const Arguments& arguments) {
    const auto sealed = arguments.sealed ? sealed_entry(*arguments.sealed) : store::TrailEntry{};
    if (arguments.repair_balances) repair_balances(arguments, sealed);
    std::vector<std::string> faults;
    company::Findings findings;
    company::Findings notes;
    with_books(arguments, [&](store::Database& database) {
        faults = database.faults_of_storage();
        if (!faults.empty()) return;
        findings = company::check_company(database, sealed);
        notes = company::books_notes(database);
        if (!database.end_of_trail()) notes.emplace_back("the company has no trail: upgrade begins one");
    });
    print_lines("", faults);
    print_lines("note: ", notes);
    print_lines("", findings);
    if (!faults.empty() || !findings.empty()) return kFindings;
    fmt::print("books agree\n");
    return kDone;
}

// What the trail's end is now, so that it can be kept where nobody who changes the company reaches it.
void seal(const Arguments& arguments) {
    with_books(arguments, [&](store::Database& database) {
        const auto end = database.end_of_trail();
        if (!end)
            throw company::Refusal(store::without_password(arguments.company) +
                                   " has no trail: upgrade begins one");
        fmt::print("{}:{}\n", end->number, end->hash);
    });
}

// Of a copy that was made.
int report(const company::Findings& findings) {
    print_lines("", findings);
    return findings.empty() ? kDone : kFindings;
}

int upgrade(const Arguments& arguments) {
    const company::Upgrade done = company::upgrade(arguments.company);
    if (done.backup.empty())
        fmt::print("the company is of this version already\n");
    else
        fmt::print("the company as it was: {}\n", kernel::visible_text(done.backup));
    return report(done.findings);
}

int back_up(const Arguments& arguments) {
    return report(company::back_up(arguments.company, arguments.backup));
}

int restore(const Arguments& arguments) {
    return report(company::restore(arguments.backup, arguments.company));
}

// From a terminal it is typed twice, since nobody sees it.
company::Secret new_password(const std::string& user) {
    company::Secret password =
        company::typed_secret(fmt::format("new password of {} (empty: none any more): ", user));
    if (company::somebody_types() && company::typed_secret("the same again: ").text() != password.text())
        throw company::Refusal("the two passwords differ");
    return password;
}

bool asks_for_old_password(store::Database& database, const std::string& user) {
    return !company::is_administrator(database, company::login_name()) &&
           company::has_password(database, user);
}

// Whoever may not decide for others has to know the password that is there, or to set their own first one.
void require_right_to_change_password(store::Database& database, const std::string& user,
                                      const std::optional<company::Secret>& old_one) {
    if (company::is_administrator(database, company::login_name())) return;
    if (!company::has_password(database, user)) {
        if (user == company::login_name()) return;
        throw company::Refusal(user + " has no password yet: only " + user +
                               " or an administrator sets the first");
    }
    if (!old_one || !company::is_password_of_person(database, user, *old_one))
        throw company::Refusal("that is not the password of " + user);
}

// Nothing is held in the company while somebody types; so the right is looked at once more afterwards.
void change_password(const Arguments& arguments) {
    if (arguments.user.empty()) throw company::UnusableValue("the name of the person is empty");
    std::optional<company::Secret> old_one;
    company::Secret password;
    {
        const store::OpenCompany company = store::open_company(arguments.company, kernel::company_tables());
        company::require_place_for_passwords(*company.database);
        if (asks_for_old_password(*company.database, arguments.user))
            old_one = company::typed_secret("old password of " + arguments.user + ": ");
        require_right_to_change_password(*company.database, arguments.user, old_one);
        password = new_password(arguments.user);
    }
    bool is_known = false;
    with_company(arguments, [&](store::Database& database) {
        require_right_to_change_password(database, arguments.user, old_one);
        company::set_password(database, arguments.user, password);
        is_known = company::has_rights(database, arguments.user);
    });
    if (!is_known && !password.empty())
        fmt::print("note: {} has no rights in the company yet\n", kernel::visible_text(arguments.user));
}

void grant(const Arguments& arguments) {
    with_company(arguments, [&](store::Database& database) {
        company::grant_rights(database, arguments.role, arguments.user);
    });
}

void add_year(const Arguments& arguments) {
    with_company(arguments, [&](store::Database& database) { company::add_year(database, arguments.year); });
}

int status_of(const store::Error& error) {
    switch (error.kind()) {
        case store::ErrorKind::name:
            return kWrongUsage;
        case store::ErrorKind::constraint:
            return kFindings;
        default:
            return kCannot;
    }
}

// Whatever goes wrong ends here, as one line and a status.
int run(const Arguments& arguments, const std::function<int(const Arguments&)>& command) {
    try {
        const int status = command(arguments);
        if (std::fflush(stdout) != 0)
            throw std::system_error(errno, std::generic_category(), "standard output");
        return status;
    } catch (const company::CsvError& error) {
        fmt::print(stderr, "{}\n", kernel::visible_text(error.what()));
        return kFindings;
    } catch (const company::Refusal& error) {
        return fail(kFindings, error.what());
    } catch (const company::UnusableValue& error) {
        return fail(kWrongUsage, error.what());
    } catch (const store::Error& error) {
        return fail(status_of(error), error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        return fail(kCannot, fmt::format("{}: {}", error.path1().string(), error.code().message()));
    } catch (const std::exception& error) {
        return fail(kCannot, error.what());
    }
}

// One subcommand; what it returns runs after the whole command line has been read.
CLI::App* add_subcommand(CLI::App& program, const char* name, const char* description) {
    CLI::App* command = program.add_subcommand(name, description);
    command->fallthrough();
    return command;
}

void add_company(CLI::App& command, Arguments& arguments) {
    command.add_option("COMPANY", arguments.company, "path of the company file, or postgresql:// URI")
        ->required();
}

CLI::App* add_command(CLI::App& program, Arguments& arguments, const char* name, const char* description) {
    CLI::App* command = add_subcommand(program, name, description);
    add_company(*command, arguments);
    return command;
}

CLI::App* add_create(CLI::App& program, Arguments& arguments) {
    CLI::App* create = add_command(program, arguments, "create", "Make a company database");
    CLI::Option* sample = create->add_flag("--sample", arguments.sample, "load the sample company");
    CLI::Option* half_year = create->add_flag("--half-year", arguments.half_year,
                                              "load the sample company with the documents of half a year");
    CLI::Option* starter =
        create->add_flag("--starter", arguments.starter, "load the least that a real new company needs");
    CLI::Option* currency =
        create->add_option("--base-currency", arguments.base_currency, "its base currency");
    CLI::Option* year = create->add_option("--year", arguments.year, "its first fiscal year");
    create
        ->add_option("--country", arguments.country,
                     "a whole chart, and the taxes of this country, such as de")
        ->needs(starter);
    create->add_option("--first-month", arguments.first_month, "of the fiscal year; 1 is January")
        ->check(CLI::Range(1, 12))
        ->needs(starter);
    half_year->excludes(sample);
    starter->excludes(sample)->excludes(half_year)->needs(currency)->needs(year);
    currency->needs(starter);
    year->needs(starter);
    return create;
}

CLI::App* add_import(CLI::App& program, Arguments& arguments) {
    CLI::App* import = add_command(program, arguments, "import", "Load every DIR/TABLE.csv, all or nothing");
    import->add_option("DIR", arguments.folder, "folder of the CSV files")->required();
    import->add_flag("--replace", arguments.replace, "replace rows whose key exists");
    import->add_flag("--unchecked", arguments.unchecked,
                     "take masters that name an account, a currency or another row which is not there");
    return import;
}

CLI::App* add_export(CLI::App& program, Arguments& arguments) {
    CLI::App* exporting = add_command(program, arguments, "export", "Write one CSV file a table into DIR");
    CLI::Option* const folder =
        exporting->add_option("DIR", arguments.folder, "folder for the CSV files, made when absent");
    exporting->add_option("--table", arguments.tables, "only this table; may be repeated")
        ->allow_extra_args(false)
        ->take_all();
    exporting
        ->add_option("--journal", arguments.journal,
                     "the ledger as one plain-text journal instead, as hledger and ledger read it")
        ->excludes(folder)
        ->excludes("--table");
    return exporting;
}

CLI::App* add_check(CLI::App& program, Arguments& arguments) {
    CLI::App* checking = add_command(program, arguments, "check",
                                     "Recompute the books and compare; look whether the trail holds");
    checking->add_flag(
        "--repair-balances", arguments.repair_balances,
        "first write what the ledger's lines come to into balances that differ, and print each");
    checking->add_option("--seal", arguments.sealed,
                         "the trail must go on from what seal printed, NUMBER:HASH");
    return checking;
}

CLI::App* add_backup(CLI::App& program, Arguments& arguments) {
    CLI::App* backup = add_command(program, arguments, "backup",
                                   "Copy a company, which may be in use, to a new file and check the copy");
    backup->add_option("TO", arguments.backup, "path of the new file")->required();
    return backup;
}

CLI::App* add_restore(CLI::App& program, Arguments& arguments) {
    CLI::App* restoring =
        add_subcommand(program, "restore", "Make a company that does not exist yet from a backup");
    restoring->add_option("FROM", arguments.backup, "path of the backup")->required();
    add_company(*restoring, arguments);
    return restoring;
}

// What is wrong with a command line that names no command: the word that stands where one belongs.
std::string fault_without_command(const CLI::App& program) {
    constexpr const char* kCommands =
        "; there are create, import, export, check, seal, backup, restore, upgrade, grant, add-year "
        "and password";
    const std::vector<std::string> words = program.remaining();
    const auto is_option = [](const std::string& word) { return word.starts_with('-'); };
    const auto command = std::find_if_not(words.begin(), words.end(), is_option);
    if (command != words.end()) {
        return fmt::format("there is no command {}{}", command->empty() ? "\"\"" : *command, kCommands);
    }
    if (words.empty()) return fmt::format("a command is missing{}", kCommands);
    return fmt::format("there is no option {}", words.front());
}

std::function<int(const Arguments&)> quietly(void (*command)(const Arguments&)) {
    return [command](const Arguments& arguments) {
        command(arguments);
        return kDone;
    };
}

int main_program(int argc, char** argv) {
    const company::CommandLineWords words(argc, argv);
    Arguments arguments;
    std::function<int(const Arguments&)> chosen;
    CLI::App program(
        "A Brimley company database as a whole: create, import, export, check, back up, upgrade, add a year",
        "brimley-company");
    program.set_version_flag("--version", "brimley-company " BRIMLEY_VERSION);
    program.footer(
        "Status: 0 done; 1 check found something, or what stands in the files or the company is in the way; "
        "2 "
        "the command line is wrong; 3 the company or a file cannot be opened or written.");
    program.require_subcommand(1);
    program.failure_message([&](const CLI::App* app, const CLI::Error& error) {
        const bool no_command = app->get_subcommands().empty();
        const std::string fault = no_command ? fault_without_command(*app) : error.what();
        return fmt::format("brimley-company: {}\n", kernel::visible_text(words.without_passwords(fault)));
    });

    add_create(program, arguments)->callback([&] { chosen = quietly(create); });
    add_import(program, arguments)->callback([&] { chosen = quietly(import_files); });
    add_export(program, arguments)->callback([&] { chosen = quietly(export_files); });
    add_check(program, arguments)->callback([&] { chosen = check; });
    add_command(program, arguments, "seal", "Print the end of the trail, to be kept elsewhere")
        ->callback([&] { chosen = quietly(seal); });
    add_command(program, arguments, "upgrade",
                "Bring a company of an older version to this one, after a backup beside it")
        ->callback([&] { chosen = upgrade; });
    add_backup(program, arguments)->callback([&] { chosen = back_up; });
    add_restore(program, arguments)->callback([&] { chosen = restore; });
    CLI::App* granting = add_command(
        program, arguments, "grant",
        "On a server: let a role do in the database what a user's rights in the company need, and no more");
    granting->add_option("ROLE", arguments.role, "the role of the server")->required();
    granting->add_option("USER", arguments.user, "the user whose rights it gets; mostly the role itself")
        ->required();
    granting->callback([&] { chosen = quietly(grant); });
    CLI::App* year = add_command(program, arguments, "add-year", "Open a fiscal year");
    year->add_option("YEAR", arguments.year, "such as 2028")->required();
    year->callback([&] { chosen = quietly(add_year); });

    CLI::App* password = add_command(program, arguments, "password",
                                     "Set a person's password, typed or read as a line of standard input; an "
                                     "empty one takes it away");
    password->add_option("USER", arguments.user, "the person")->required();
    password->callback([&] { chosen = quietly(change_password); });

    try {
        program.parse(words.count(), words.words());
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? kDone : kWrongUsage;
    }
    return run(arguments, chosen);
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that goes away shows in the failing write, not by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    // A file that may not grow any more looks like a full disk, and is reported the same way.
    std::signal(SIGXFSZ, SIG_IGN);
    return main_program(argc, argv);
}
