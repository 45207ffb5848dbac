#include "company/database_rights.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "company/people.h"
#include "company/refusal.h"

namespace brimley::company {

namespace {

using store::TableRights;
using Rights = std::vector<TableRights>;

TableRights adds(const char* table) { return {.table = table, .adds = true}; }
TableRights changes(const char* table) { return {.table = table, .changes = true}; }
TableRights removes(const char* table) { return {.table = table, .removes = true}; }
TableRights adds_and_changes(const char* table) { return {.table = table, .adds = true, .changes = true}; }
TableRights keeps(const char* table) {
    return {.table = table, .adds = true, .changes = true, .removes = true};
}

Rights operator+(Rights rights, const Rights& others) {
    rights.insert(rights.end(), others.begin(), others.end());
    return rights;
}

// --- what forms have in common ---
Rights trail() { return {adds("Trail_table")}; }

// A posting to balances that are there, under the next number of the ledger.
Rights posting_of_numbered() {
    return {changes("Docno_master_table"), adds("GL_header_table"), adds("GL_transaction_table"),
            changes("Balance_table"), changes("Balance_period_table")};
}

// The same of a document that gets a number itself.
Rights posting() { return posting_of_numbered() + Rights{changes("Next_number_fkey_table")}; }

// One that opens an account in another currency.
Rights posting_to_new_balances() {
    return posting() +
           Rights{adds("Balance_table"), adds("Balance_period_table"), adds("Account_currency_table")};
}

Rights voiding() { return {changes("GL_header_table")}; }

Rights paying() {
    return posting_to_new_balances() + voiding() + trail() + Rights{adds_and_changes("Payment_header_table")};
}

// Rows of a master, which looks at the company's configuration one writer at a time.
Rights master(const char* table) { return {keeps(table), changes("COA_config_table")}; }

// Its rows have balances.
Rights master_with_balances(const char* table) {
    return master(table) + Rights{{.table = "Balance_table", .adds = true, .removes = true},
                                  {.table = "Balance_period_table", .adds = true, .removes = true}};
}

// One after the other, each table once. What is removed is held before, for the trail.
Rights together(const Rights& rights) {
    Rights merged;
    for (const TableRights& table : rights) {
        auto found = std::ranges::find(merged, table.table, &TableRights::table);
        if (found == merged.end()) found = merged.insert(merged.end(), {.table = table.table});
        found->reads |= table.reads;
        found->adds |= table.adds;
        found->changes |= table.changes || table.removes;
        found->removes |= table.removes;
    }
    return merged;
}

std::vector<FormWrites> all_forms() {
    std::vector<FormWrites> forms{
        {"APform_invoice", posting_to_new_balances() + voiding() + trail() +
                               Rights{adds_and_changes("AP_header_table"), keeps("AP_transaction_table"),
                                      adds("AP_recur_header_table"), adds("AP_recur_transaction_table"),
                                      changes("Vendor_table")}},
        {"APform_payment",
         paying() + Rights{adds_and_changes("Payment_transaction_table"), changes("AP_header_table"),
                           changes("AP_transaction_table"), changes("PO_invoice_header_table"),
                           removes("Prepayment_waiting_PO_table"), changes("Vendor_table")}},
        {"APform_prepayment",
         paying() + Rights{adds_and_changes("Payment_transaction_table"),
                           adds_and_changes("AP_transaction_table"),
                           {.table = "Prepayment_waiting_PO_table", .adds = true, .removes = true},
                           changes("Vendor_table")}},
        {"APform_misc_payment", paying() + Rights{adds_and_changes("Payment_misc_transaction_table")}},
        {"APform_creditcard_payment", paying() + Rights{adds_and_changes("Payment_transaction_table")}},
        {"APform_void_check",
         posting() + voiding() + trail() +
             Rights{changes("Payment_header_table"), changes("Payment_transaction_table"),
                    changes("Payment_misc_transaction_table"), changes("AP_header_table"),
                    changes("AP_transaction_table"), removes("Prepayment_waiting_PO_table"),
                    changes("Vendor_table")}},
        {"APreport_recur_inquiry",
         posting_of_numbered() + trail() +
             Rights{adds("AP_header_table"), adds("AP_transaction_table"), changes("AP_recur_header_table")}},
        {"APform_revalue",
         posting() + trail() +
             Rights{adds_and_changes("AP_Revalue_header_table"), adds("AP_Revalue_transaction_table"),
                    adds("AP_Revalue_Result_table"), adds("AP_Revalue_GL_summary_table")}},
        {"APreport_aging", {}},
        {"APreport_inquiry", {}},
        {"APreport_payhistory", {}},
        {"Ledger_entry", posting() + voiding() + trail()},
        {"Master_vendor", master("Vendor_table")},
        {"Master_payment_term", master("Payment_term_table")},
        {"Master_tax_authority", master("Tax_authority_table")},
        {"Master_tax_code", master("Tax_code_table")},
        {"Master_tax_detail", master("Tax_code_details_table")},
        {"Master_currency", master("Working_currency_table")},
        {"Master_exchange_rate", master("Exchange_rate_table")},
        {"Master_bank", master("Bank_master_table")},
        {"Master_card", master("Credit_card_master_table")},
        {"Master_account_class", master("Account_class_table")},
        {"Master_account", master_with_balances("Account_master_table")},
        {"Master_account_currency", master_with_balances("Account_currency_table")},
        {"Master_allocation", master("Allocation_Account_table")},
        {"Master_parameter", {changes("Account_Parameters_table")}},
        {"Master_right", master("User_right_table")},
        {"Master_fiscal_year",
         {adds_and_changes("Fiscalyear_table"), adds("Period_table"), adds("Docno_master_table"),
          adds("Balance_period_table"), changes("COA_config_table")}},
        {"Master_period", {}},
        {"Master_working_period", {changes("COA_config_table")}},
        {"Master_number", {changes("Next_number_config_table")}},
        {"Master_number_format", {changes("Next_number_format_table")}},
        {"Master_counter", {changes("Docno_master_table")}},
        {"Master_purchase_order", master("PO_header_table")},
    };
    for (FormWrites& form : forms)
        form.tables = together(form.tables);
    return forms;
}

// --- a person ---
// The forms on which the person may update. Whoever has every right keeps the masters and the ledger, too.
struct Person {
    bool is_known = false;  // has a row of rights
    std::set<std::string> updates;
};

Person person_of(store::Database& database, const std::string& user) {
    Person person;
    auto rows = database.OpenRecordset("SELECT form, userid, Update FROM User_right_table",
                                       store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (rows.text("userid") != user) continue;
        person.is_known = true;
        if (rows.flag("Update") && rows.text("form") != "Master_right")
            person.updates.insert(rows.text("form"));
    }
    if (person.is_known && has_every_right(database, user))
        for (const FormWrites& form : writes_of_forms())
            if (!std::string_view(form.form).starts_with("AP")) person.updates.insert(form.form);
    return person;
}

// What `wanted` has and `held` has not; in the order of the catalog, as both are.
Rights beyond(const Rights& wanted, const Rights& held) {
    Rights more;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const TableRights& a = wanted[i];
        const TableRights& b = held[i];
        const TableRights left{a.table, a.reads && !b.reads, a.adds && !b.adds, a.changes && !b.changes,
                               a.removes && !b.removes};
        if (left.reads || left.adds || left.changes || left.removes) more.push_back(left);
    }
    return more;
}

const char* verb_of(const TableRights& rights) {
    if (rights.reads) return "read";
    if (rights.adds) return "add to";
    return rights.changes ? "change" : "remove from";
}

}  // namespace

const std::vector<TableRights>& writes_of_everybody() {
    static const Rights rights{changes("Form_property_table"), changes("Grid_property"),
                               changes("Recent_value_table"), adds_and_changes("Report_format_table")};
    return rights;
}

const std::vector<FormWrites>& writes_of_forms() {
    static const std::vector<FormWrites> forms = all_forms();
    return forms;
}

std::vector<TableRights> rights_needed(store::Database& database, const std::string& user) {
    const Person person = person_of(database, user);
    if (!person.is_known)
        throw Refusal(
            fmt::format("{} has no rights in the company: an administrator gives them first", user));
    Rights wanted = writes_of_everybody();
    for (const FormWrites& form : writes_of_forms())
        if (person.updates.contains(form.form)) wanted = wanted + form.tables;
    wanted = together(wanted);
    Rights needed;
    for (const store::Table& table : database.catalog().tables()) {
        const auto found = std::ranges::find(wanted, table.name, &TableRights::table);
        needed.push_back(found == wanted.end() ? TableRights{.table = table.name} : *found);
        needed.back().reads = !keeps_secrets(table);
    }
    return needed;
}

void grant_rights(store::Database& database, const std::string& role, const std::string& user) {
    if (!database.role())
        throw Refusal("a company in a file has no roles: the permissions of the file say who may open it");
    const Rights needed = rights_needed(database, user);
    database.give_rights(role, needed);
    const Rights more = beyond(database.rights_of_role(role), needed);
    if (!more.empty())
        throw Refusal(fmt::format(
            "{} may {} {} anyway, as the owner or as a member of another role: nothing is granted", role,
            verb_of(more.front()), more.front().table));
}

std::string lack_of_rights(store::Database& database) {
    const auto role = database.role();
    if (!role || role->owns_company) return {};
    const Rights held = database.rights_of_role(role->name);
    const auto told = [&](const TableRights& lack) {
        return fmt::format(
            "{} may not {} {} in the database, which its rights in the company need: the company's owner "
            "gives that with brimley-company grant",
            role->name, verb_of(lack), lack.table);
    };
    const auto rights = std::ranges::find(held, "User_right_table", &TableRights::table);
    if (!rights->reads) return told({.table = rights->table, .reads = true});
    try {
        const Rights lacking = beyond(rights_needed(database, role->name), held);
        return lacking.empty() ? std::string{} : told(lacking.front());
    } catch (const Refusal&) {
        return {};  // the forms say that there are no rights
    }
}

}  // namespace brimley::company
