// The host context: what a host hands to the module, and what each form holds a copy of.
#pragma once

#include <any>
#include <memory>
#include <string>

#include "kernel/store/database.h"

namespace brimley::frame {

// In the order in which the members are copied into a form. All are plain members without validation; a
// change reaches only forms that are made after it.
struct HostContext {
    std::any cnx;                            // a connection of the host's, only passed on
    std::shared_ptr<store::Workspace> dbe;   // every save runs its transaction here
    std::shared_ptr<store::Database> abcdb;  // the open company database
    std::string OPEN_DATABASE;               // its path
    std::string BASE_CURRENCY;
    std::string BRIMLEY_COMPANY_NAME;
    std::string BRIMLEY_PATH;  // the install folder; help files lie in its Help folder
    std::string BRIMLEY_USER;
    std::any BRIMLEY_THEME;           // a number or an object
    std::string BRIMLEY_DATE_FORMAT;  // such as dd/mm/yyyy
    std::string BRIMLEY_NO_PERIODS;   // fiscal periods of a year, as text
    std::string BRIMLEY_FONT_NAME;
    std::any BRIMLEY_FONT_SIZE;
    // Text below the icons of a user who has not chosen yet (command 209).
    bool text_below_icons = false;
};

}  // namespace brimley::frame
