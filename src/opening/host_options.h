// The options that every program with forms has, and the host context that follows from them.
#pragma once

#include <string>

#include "company/login_name.h"
#include "frame/host_context.h"
#include "opening/admission.h"

namespace CLI {
class App;
}

namespace brimley::opening {

struct HostOptions {
    std::string user = company::login_name();
    std::string base_currency;  // empty: that of the company's chart
    std::string date_format = "dd/mm/yyyy";
    std::string periods = "12";
    std::string company_name;
    std::string password_file;
    PasswordSource ask_password;  // for whom the file does not name; none: there is nobody to ask
    std::string path;             // BRIMLEY_PATH; empty: the folder of the company file, or the current one
};

// Adds them to a program's command line. `options` must outlive the parsing.
void describe_host_options(CLI::App& app, HostOptions& options);

// Where passwords come from by these options.
[[nodiscard]] PasswordSource password_source(const HostOptions& options);

// Opens the company (a file, or a server's URI). Throws store::Error when it cannot be opened, and
// std::runtime_error when one may not work in it as that user (opening/admission.h). Without a path
// among the options the folder for reports is made where it is missing; one that cannot be made is no error.
[[nodiscard]] frame::HostContext open_context(const std::string& company, const HostOptions& options);

}  // namespace brimley::opening
