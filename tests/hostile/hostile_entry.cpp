#include "hostile_entry.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "typed_fields.h"

namespace brimley::testing {

namespace {

using Row = std::vector<store::Value>;
using Tables = std::map<std::string, std::vector<Row>>;

// All but the trail, whose digests follow from everything else.
Tables read_tables(store::Database& database) {
    Tables tables;
    for (const store::Table& table : database.catalog().tables()) {
        if (table.is_trail) continue;
        std::vector<Row>& rows = tables[table.name];
        auto read = database.OpenRecordset("SELECT * FROM " + table.name, store::RecordsetKind::snapshot);
        for (; !read.at_eof(); read.MoveNext()) {
            rows.emplace_back();
            for (int column = 0; column < read.column_count(); ++column)
                rows.back().push_back(read.column(column));
        }
    }
    return tables;
}

// What a run of the entry with one text typed left behind.
struct Outcome {
    Tables tables;
    bool typed = false;
    std::string shown;
    std::vector<std::string> messages;
    bool still_entering = false;
};

Outcome act(const HostileEntry& entry, HostileSession& session, const TypedField& field,
            const std::string& text) {
    Outcome outcome;
    session.user.desk.answers.assign(20, true);
    outcome.typed = field.type(session.form(), text);
    if (!outcome.typed) return outcome;
    outcome.shown = field.shown(session.form());
    for (const int command : entry.commands)
        static_cast<void>(session.form().press(command));
    session.user.desk.answers.clear();
    outcome.messages = session.user.messages();
    outcome.still_entering = session.form().mode() != frame::Mode::read;
    outcome.tables = read_tables(session.company.db());
    return outcome;
}

// Compares a company with what stood there before and with what the harmless act left.
class Comparison {
  public:
    Comparison(const Tables& before, const Tables& harmless, const Outcome& outcome, const std::string& typed)
        : before_(before), harmless_(harmless), outcome_(outcome), typed_(typed) {}

    void check() const {
        for (const auto& [name, rows] : outcome_.tables) {
            SCOPED_TRACE(name);
            check_count(name, rows.size());
            for (std::size_t row = 0; row < rows.size(); ++row)
                for (std::size_t column = 0; column < rows[row].size(); ++column)
                    check_cell(name, row, column, rows[row][column]);
        }
    }
    // Whether some row holds the text as it was typed.
    [[nodiscard]] bool holds_typed_text() const {
        for (const auto& [name, rows] : outcome_.tables)
            for (const Row& row : rows)
                if (std::any_of(row.begin(), row.end(), [this](const auto& cell) { return is_typed(cell); }))
                    return true;
        return false;
    }

  private:
    [[nodiscard]] bool is_typed(const store::Value& cell) const {
        return cell.is_text() && cell.text() == typed_;
    }
    // No row goes but those of the document, and no more come than of a harmless one.
    void check_count(const std::string& name, std::size_t count) const {
        const auto [least, most] = std::minmax({before_.at(name).size(), harmless_.at(name).size()});
        EXPECT_GE(count, least);
        EXPECT_LE(count, most);
    }
    void check_cell(const std::string& name, std::size_t row, std::size_t column,
                    const store::Value& cell) const {
        const auto stands_in = [&](const Tables& tables) {
            const auto& rows = tables.at(name);
            return row < rows.size() && rows[row][column] == cell;
        };
        if (stands_in(before_) || stands_in(harmless_) || cell.is_null()) return;
        // Amounts, rates and dates follow from what was typed, where the act writes any at all.
        if (!cell.is_text()) {
            EXPECT_NE(before_.at(name), harmless_.at(name)) << "column " << column;
            return;
        }
        const std::string text = cell.text();
        const bool known = text.empty() || is_typed(cell) || text == outcome_.shown ||
                           in_column(harmless_.at(name), column, cell);
        EXPECT_TRUE(known) << "row " << row << " column " << column << ": " << text.substr(0, 200);
    }
    // A line may have gone, and those below it moved up.
    static bool in_column(const std::vector<Row>& rows, std::size_t column, const store::Value& cell) {
        return std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return row[column] == cell; });
    }

    const Tables& before_;
    const Tables& harmless_;
    const Outcome& outcome_;
    const std::string& typed_;
};

// The entry as it is when nothing hostile is typed.
struct Undisturbed {
    Tables before;
    Tables after;
    frame::Mode mode;
    std::vector<std::string> messages;
};

Undisturbed carried_out(const HostileEntry& entry) {
    const auto session = entry.begin();
    Undisturbed done{.before = read_tables(session->company.db()), .after = {}, .mode = {}, .messages = {}};
    for (const int command : entry.commands)
        static_cast<void>(session->form().press(command));
    done.after = read_tables(session->company.db());
    done.mode = session->form().mode();
    done.messages = session->user.messages();
    return done;
}

// Once for all texts, whose cases follow each other.
const Undisturbed& undisturbed_of(const HostileEntry& entry) {
    static std::map<std::string, Undisturbed> known;
    const auto found = known.find(entry.name);
    return found == known.end() ? known.emplace(entry.name, carried_out(entry)).first->second : found->second;
}

// How many fields are passed by after one that was typed: none on files and in the night.
int fields_between() {
    const bool in_the_night =
        std::string(::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name())
            .starts_with("Night/");
    return tests_run_on_server() && !in_the_night ? 2 : 0;
}

}  // namespace

void type_everywhere(const HostileEntry& entry, const HostileText& hostile) {
    const Undisturbed& undisturbed = undisturbed_of(entry);
    ASSERT_EQ(undisturbed.mode, frame::Mode::read) << ::testing::PrintToString(undisturbed.messages);
    auto session = entry.begin();
    const auto fields = typed_fields(session->form());
    int passed_by = fields_between();
    std::set<std::string> kept;
    int typed = 0;
    for (const TypedField& field : fields) {
        const bool keeps_text = std::ranges::count(entry.keeping_fields, field.name()) > 0;
        if (!keeps_text && passed_by++ < fields_between()) continue;
        SCOPED_TRACE(fmt::format("{}: {} in {}", entry.name, hostile.name, field.name()));
        const Outcome outcome = act(entry, *session, field, hostile.text);
        if (!outcome.typed) continue;
        ++typed;
        passed_by = 0;
        const Comparison comparison(undisturbed.before, undisturbed.after, outcome, hostile.text);
        comparison.check();
        EXPECT_THAT(session->company.db().faults_of_trail(), ::testing::IsEmpty());
        if (outcome.still_entering && !entry.commands.empty()) {
            EXPECT_THAT(outcome.messages, ::testing::Not(::testing::IsEmpty()));
        }
        if (comparison.holds_typed_text()) kept.insert(field.name());
        session = entry.begin();
    }
    EXPECT_GT(typed, 0);
    ::testing::Test::RecordProperty("fields", typed);
    ::testing::Test::RecordProperty("kept", static_cast<int>(kept.size()));
    if (tests_run_on_server() && !hostile.server_can_keep) {
        EXPECT_THAT(kept, ::testing::IsEmpty());
        return;
    }
    // Longer than a page of its index lets a field of a server be.
    const auto is_refused = [&](const std::string& name) {
        return tests_run_on_server() && !hostile.server_can_index &&
               std::ranges::count(entry.indexed_fields, name) > 0;
    };
    for (const std::string& name : entry.keeping_fields)
        EXPECT_EQ(kept.contains(name), !is_refused(name)) << name;
}

}  // namespace brimley::testing
