#include <fmt/format.h>

#include "kernel/module_g3.h"

namespace brimley::kernel {

using store::quoted;

void ModuleG3::get_user_rights(std::string_view form, std::string_view userid, UserRights& rights) {
    // Denied first: a look-up that fails must not leave rights from before.
    rights.Update = false;
    rights.Print = false;
    const auto row = find("User_right_table", {{"form", form}, {"userid", userid}});
    if (row.at_eof()) return;
    rights.Update = row.flag("Update");
    rights.Print = row.flag("Print");
    rights.form_design = row.flag("form_design");
}

std::string ModuleG3::parameter_account(std::string_view module, std::string_view parameter_name) {
    const auto row =
        read(fmt::format("SELECT * FROM Account_Parameters_table WHERE module = {} AND parameter_name = {} "
                         "AND [default] = TRUE",
                         quoted(module), quoted(parameter_name)));
    return row.at_eof() ? std::string{} : row.text("accno");
}

}  // namespace brimley::kernel
