#include <set>

#include "company/create.h"
#include "company/forms.h"
#include "company/table_writer.h"

namespace brimley::company {

namespace {

// The forms for which the user has a row.
std::set<std::string> forms_of_user(store::Database& database, const char* query, const std::string& user) {
    std::set<std::string> forms;
    store::Recordset rows = database.OpenRecordset(query, store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (rows.text("userid") == user) forms.insert(rows.text("form"));
    }
    return forms;
}

}  // namespace

void add_full_rights(store::Database& database, const std::string& user) {
    const auto with_rights = forms_of_user(database, "SELECT form,userid FROM User_right_table", user);
    const auto with_properties = forms_of_user(database, "SELECT form,userid FROM Form_property_table", user);
    TableWriter rights(database, "User_right_table");
    TableWriter properties(database, "Form_property_table");
    for (const char* form : kForms) {
        if (!with_rights.contains(form)) {
            rights.add(
                {{"form", form}, {"userid", user}, {"Update", true}, {"Print", true}, {"form_design", true}});
        }
        if (!with_properties.contains(form)) properties.add({{"userid", user}, {"form", form}});
    }
}

}  // namespace brimley::company
