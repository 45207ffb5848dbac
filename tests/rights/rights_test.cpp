// What brimley-company grant lets a role of the server do: exactly what the forms write on which its user may
// update. Sessions of bookkeepers say what that is.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "company/database_rights.h"
#include "company/import.h"
#include "company/refusal.h"
#include "company/transaction.h"
#include "console/script_run.h"
#include "masters/master.h"
#include "opening/admission.h"
#include "opening/host_options.h"
#include "support/all_tables.h"
#include "support/company_copy.h"
#include "support/faulty_engine.h"
#include "support/sample_company.h"

namespace brimley::testing {
namespace {

namespace fs = std::filesystem;
using company::FormWrites;
using store::TableRights;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const fs::path kSessions = BRIMLEY_SOURCE_DIR "/tests/sessions";

void import_tables(const store::OpenCompany& open, const std::string& session) {
    const fs::path tables = kSessions / (session + ".tables");
    if (!fs::is_directory(tables)) return;
    company::Transaction transaction(open);
    company::import_folder(*open.database, tables, {true});
    transaction.commit();
}

// Plays a session line by line. before: told, before each line, which form is the current one; empty: none.
// Returns what is printed.
std::string play(const std::string& session, const frame::HostContext& context,
                 const std::function<void(const std::string& form)>& before) {
    std::ostringstream printed;
    console::Console console(context, printed);
    console.allow_other_desk();
    static_cast<void>(console::run_to_status(console, printed, "rights_tests", [&] {
        std::ifstream script(kSessions / (session + ".session"));
        int number = 0;
        for (std::string line; std::getline(script, line);) {
            frame::Form* const form = console.desk().current_form();
            const bool opens = line.starts_with("call ") || line.starts_with("form ");
            before(form && !opens ? form->identity().class_name : "");
            console.run(line, fmt::format("{}.session:{}", session, ++number));
        }
    }));
    return printed.str();
}

std::string expected_of(const std::string& session) {
    std::ifstream file(kSessions / (session + ".expected"), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

frame::HostContext context_of_anna(const std::string& company) {
    opening::HostOptions options;
    options.path = "/brimley";
    auto context = opening::open_context(company, options);
    context.BRIMLEY_USER = "anna";
    return context;
}

// --- what forms write, on a file ---
using Written = std::set<std::string>;  // "adds AP_header_table"

std::string word_of(const std::string& sql) {
    static const std::regex kStatement(
        "^(INSERT INTO|UPDATE|DELETE FROM|SELECT .*? FROM) \"([A-Za-z_]+)\".*");
    std::smatch found;
    if (!std::regex_match(sql, found, kStatement)) return "cannot read: " + sql;
    const std::string verb = found[1];
    if (verb.starts_with("INSERT")) return fmt::format("adds to {}", found[2].str());
    return fmt::format("{} {}", verb.starts_with("DELETE") ? "removes from" : "changes", found[2].str());
}

Written words_of(const std::vector<TableRights>& rights) {
    Written words;
    for (const TableRights& table : rights) {
        if (table.adds) words.insert("adds to " + table.table);
        if (table.changes) words.insert("changes " + table.table);
        if (table.removes) words.insert("removes from " + table.table);
    }
    return words;
}

std::vector<std::string> sessions() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(kSessions))
        if (entry.path().extension() == ".session") names.push_back(entry.path().stem());
    std::ranges::sort(names);
    return names;
}

// By form, what all sessions write there.
std::map<std::string, Written> written_in_sessions() {
    std::map<std::string, Written> written;
    for (const std::string& session : sessions()) {
        const ClosedCopy company(sample_original(), CompanyPlace::file);
        import_tables(company.open(), session);
        const auto faults = std::make_shared<Faults>();
        auto context = context_of_anna(company.path());
        const store::OpenCompany recorded = company.open(faulty(faults));
        context.dbe = recorded.workspace;
        context.abcdb = recorded.database;
        std::string form;
        faults->on_write = [&](const std::string& sql) {
            const std::string word = word_of(sql);
            written[form].insert(word);
            // A server holds the rows first.
            if (const std::string removes = "removes from "; word.starts_with(removes))
                written[form].insert("changes " + word.substr(removes.size()));
        };
        static_cast<void>(play(session, context, [&](const std::string& current) { form = current; }));
    }
    return written;
}

Written without(const Written& words, const Written& others) {
    Written left;
    std::ranges::set_difference(words, others, std::inserter(left, left.end()));
    return left;
}

TEST(WritesOfForms, AreWhatTheSessionsWriteAndNothingElse) {
    const auto written = written_in_sessions();
    const Written everybody = words_of(company::writes_of_everybody());
    Written seen_of_everybody;
    for (const auto& [form, words] : written) {
        Written may = everybody;
        for (const FormWrites& known : company::writes_of_forms())
            if (known.form == form) may.merge(words_of(known.tables));
        EXPECT_THAT(without(words, may), IsEmpty()) << form;
        seen_of_everybody.insert(words.begin(), words.end());
    }
    EXPECT_THAT(without(everybody, seen_of_everybody), IsEmpty());
    for (const FormWrites& known : company::writes_of_forms()) {
        const auto found = written.find(known.form);
        const Written does = found == written.end() ? Written{} : found->second;
        EXPECT_THAT(without(words_of(known.tables), does), IsEmpty()) << known.form;
    }
}

TEST(WritesOfForms, NameEachMasterWithItsTable) {
    for (const masters::Master& master : masters::all_masters()) {
        const auto form = std::ranges::find_if(company::writes_of_forms(), [&](const FormWrites& known) {
            return std::string_view(known.form) == master.identity.class_name;
        });
        ASSERT_NE(form, company::writes_of_forms().end()) << master.identity.class_name;
        const bool writes_it = std::ranges::any_of(
            form->tables, [&](const TableRights& table) { return table.table == master.table; });
        EXPECT_EQ(writes_it, !master.shown_only) << master.identity.class_name;
    }
}

TEST(Grant, HasNothingToDoForACompanyInAFile) {
    const ClosedCopy company(sample_original(), CompanyPlace::file);
    const auto open = company.open();
    EXPECT_EQ(company::lack_of_rights(*open.database), "");
    EXPECT_THROW(company::grant_rights(*open.database, "anna", "anna"), company::Refusal);
}

// --- roles of a server ---
class OnAServerRoles : public ::testing::Test {
  protected:
    OnAServerRoles() {
        if (!tests_run_on_server()) return;
        company_ = std::make_unique<ClosedCopy>(sample_original());
        on_server(company_->path(), fmt::format("CREATE ROLE {} LOGIN", role_));
        owner_ = company_->open();
    }
    ~OnAServerRoles() override {
        if (!company_) return;
        on_server(company_->path(), fmt::format("DROP OWNED BY {0}; DROP ROLE {0}", role_));
    }
    [[nodiscard]] std::string uri_of_role() const { return company_->path() + "&user=" + role_; }

    // The user `only` may update on this form; empty: on none.
    void grant_only(const std::string& form) {
        owner_.database->Execute("DELETE FROM User_right_table WHERE userid = 'only'");
        add_right("only", form.empty() ? "APreport_aging" : form, !form.empty());
        grant("only");
    }
    void add_right(const std::string& user, const std::string& form, bool update) {
        auto rows = owner_.database->OpenRecordset("SELECT * FROM User_right_table WHERE 1 = 2",
                                                   store::RecordsetKind::dynaset);
        rows.AddNew();
        rows.set("form", form);
        rows.set("userid", user);
        rows.set("Update", store::Value(update));
        rows.Update();
    }
    void grant(const std::string& user) {
        company::Transaction transaction(owner_);
        company::grant_rights(*owner_.database, role_, user);
        transaction.commit();
    }
    std::string refusal_of_grant(const std::string& user) {
        try {
            grant(user);
            return "granted";
        } catch (const company::Refusal& refusal) {
            return refusal.what();
        }
    }

    std::string role_ = fmt::format("clerk_{}", ::getpid());
    std::unique_ptr<ClosedCopy> company_;
    store::OpenCompany owner_;
};

constexpr const char* kSessionsOfForms[] = {
    "edit_same_period",
    "hold_and_release",
    "template_saved",
    "fonts",
    "pay_edit",
    "prepay_edit",
    "misc_edit",
    "card_payment",
    "check_void",
    "revaluation_saved",
    "recurring_generation",
    "aging_commands",
    "inquiry_commands",
    "payhistory_links",
    "masters_each",
    "masters_accounts",
    "masters_calendar",
    "ledger",
    "euro_on_new_accounts",
    "pay_purchase_bill",
};

class OnAServerSessions : public OnAServerRoles, public ::testing::WithParamInterface<const char*> {
  protected:
    // Anna works on the connection of the role, which may only look so far.
    frame::HostContext begin(const std::string& session) {
        import_tables(owner_, session);
        grant_only("");
        auto context = context_of_anna(company_->path());
        const auto as_role = store::open_company(uri_of_role(), kernel::company_tables());
        context.dbe = as_role.workspace;
        context.abcdb = as_role.database;
        return context;
    }
};

TEST_P(OnAServerSessions, ArePlayedWithTheRightsOfTheFormAtHandAlone) {
    if (!tests_run_on_server()) return;
    const std::string session = GetParam();
    const auto context = begin(session);
    std::string granted;
    const std::string printed = play(session, context, [&](const std::string& form) {
        if (form.empty() || form == granted) return;
        granted = form;
        // Rights are the administrator's alone.
        form == "Master_right" ? grant("anna") : grant_only(form);
    });
    EXPECT_EQ(printed, expected_of(session));
}

TEST_P(OnAServerSessions, StoreNothingWithoutTheRightsOfAForm) {
    if (!tests_run_on_server()) return;
    const std::string session = GetParam();
    const auto context = begin(session);
    AllTables before = all_tables(*owner_.database);
    static_cast<void>(play(session, context, [](const std::string&) {}));
    AllTables after = all_tables(*owner_.database);
    for (const TableRights& layout : company::writes_of_everybody()) {
        before.erase(layout.table);
        after.erase(layout.table);
    }
    EXPECT_EQ(difference(before, after), "");
}

INSTANTIATE_TEST_SUITE_P(Each, OnAServerSessions, ::testing::ValuesIn(kSessionsOfForms),
                         [](const auto& session) { return std::string(session.param); });

TEST_F(OnAServerRoles, RoleWithoutRightsIsToldSoInOneSentence) {
    if (!tests_run_on_server()) return;
    const auto told = [&] {
        try {
            return opening::limit_of_work(*opening::open_context(uri_of_role(), {}).abcdb);
        } catch (const std::exception& failure) {
            return std::string("not opened: ") + failure.what();
        }
    };
    const std::string lack =
        " in the database, which its rights in the company need: the company's owner gives that with "
        "brimley-company grant";
    EXPECT_THAT(told(), ::testing::MatchesRegex(fmt::format(
                            "not opened: postgresql://.* is closed to {}: the company's owner calls "
                            "brimley-company grant",
                            role_)));
    on_server(company_->path(), "GRANT USAGE ON SCHEMA brimley TO " + role_);
    EXPECT_EQ(told(), fmt::format("not opened: {} may not read User_right_table{}", role_, lack));
    grant_only("");
    EXPECT_EQ(told(), "");
    add_right(role_, "APform_void_check", true);
    EXPECT_EQ(told(), fmt::format("{} may not change Vendor_table{}", role_, lack));
    grant(role_);
    EXPECT_EQ(told(), "");
}

TEST_F(OnAServerRoles, GrantIsRefusedWithoutRightsInTheCompanyAndWhereMoreIsAllowedAnyway) {
    if (!tests_run_on_server()) return;
    EXPECT_EQ(refusal_of_grant("nobody"),
              "nobody has no rights in the company: an administrator gives them first");
    const std::string owner_name = owner_.database->role()->name;
    grant_only("");
    const std::string group = role_ + "_group";
    on_server(company_->path(), fmt::format("CREATE ROLE {0}; GRANT DELETE ON brimley.trail_table TO {0}; "
                                            "GRANT {0} TO {1}",
                                            group, role_));
    EXPECT_EQ(
        refusal_of_grant("only"),
        fmt::format("{} may remove from Trail_table anyway, as the owner or as a member of another role: "
                    "nothing is granted",
                    role_));
    on_server(company_->path(), fmt::format("DROP OWNED BY {0}; DROP ROLE {0}", group));
    EXPECT_EQ(refusal_of_grant("only"), "granted");
    try {
        company::Transaction transaction(owner_);
        company::grant_rights(*owner_.database, "nobody_at_all", "only");
        ADD_FAILURE() << "granted";
    } catch (const store::Error& error) {
        EXPECT_STREQ(error.what(), "there is no role nobody_at_all on the server");
    }
}

}  // namespace
}  // namespace brimley::testing
