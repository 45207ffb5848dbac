// mutations: changes single values of a company that the forms have filled, and counts what the check finds.
//
//   mutations [--acts N] [--seed N] [--rows N] [--every N] [--tables NAME,...] [--missed] [--at-least
//   PERCENT]
//
// With BRIMLEY_TEST_SERVER the company is on that server (tests/support/server-cluster), else a file.
//
// Ends 1 when the company itself has findings, when a change of money, a key, a vendor, a currency, an
// account, a number, a date, a flag or a counter was not found, or fewer than the percentage of all that can
// be proven.
#include <fmt/format.h>

#include <chrono>
#include <iostream>
#include <map>
#include <set>

#include "company/check.h"
#include "field_classes.h"
#include "kernel/tables/company_tables.h"
#include "mutation.h"
#include "random_session.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using namespace brimley;
using namespace brimley::testing;
using store::Recordset;
using store::RecordsetKind;
using store::Value;

struct Options {
    int acts = 600;
    std::uint64_t seed = 20260105;
    int rows = 6;
    int every = 1;
    std::string tables;
    bool missed = false;
    int at_least = 95;
};

struct Count {
    int found = 0;
    int of = 0;
    Count& operator+=(bool is_found) {
        found += is_found ? 1 : 0;
        ++of;
        return *this;
    }
    [[nodiscard]] double percent() const { return of == 0 ? 100 : 100.0 * found / of; }
};

class Harness {
  public:
    Harness(store::OpenCompany company, const Options& options)
        : company_(std::move(company)),
          workspace_(*company_.workspace),
          database_(*company_.database),
          options_(options),
          notes_(company::books_notes(database_)) {}

    void change_tables() {
        for (const store::Table& table : kernel::company_tables().tables())
            if (wanted(table.name)) change_table(table);
    }
    void report() const;
    [[nodiscard]] bool held() const;

  private:
    struct Row {
        std::int64_t position = 0;
        std::vector<Value> values;
    };

    [[nodiscard]] bool wanted(const std::string& table) const {
        return options_.tables.empty() ||
               ("," + options_.tables + ",").find("," + table + ",") != std::string::npos;
    }
    static std::string query_of(const store::Table& table) { return "SELECT * FROM " + table.name; }
    std::vector<Row> all_rows(const store::Table& table);
    std::vector<const Row*> sample(const store::Table& table, const std::vector<Row>& rows);
    std::set<std::string> values_in(std::string_view table_and_field);
    void change_table(const store::Table& table);
    void change_field(const store::Table& table, std::size_t field, const Row& row,
                      const std::vector<Value>& column);
    // Who finds a change. What both miss a note may still tell, which does not count.
    struct Found {
        bool by_books = false;
        bool by_trail = false;
        bool in_note = false;
    };
    Found who_finds(const store::Table& table, const std::string& field, const Row& row, const Change& change,
                    bool ask_books);
    void require_trail(const store::Table& table, std::size_t field, const Change& change, bool found);

    store::OpenCompany company_;
    store::Workspace& workspace_;
    store::Database& database_;
    const Options& options_;
    const company::Findings notes_;          // of the company as the forms have left it
    std::map<FieldClass, Count> by_class_;   // of those that can be proven, by the books alone
    std::map<FieldClass, Count> by_either_;  // of the same, by books or trail
    std::map<FieldClass, Count> by_check_;   // of all, by books or trail
    std::map<std::string, Count> by_table_;
    std::map<std::string, Count> by_field_;
    Count provable_;
    Count all_;
    int number_ = 0;
    int missed_outside_gaps_ = 0;
};

std::vector<Harness::Row> Harness::all_rows(const store::Table& table) {
    std::vector<Row> rows;
    // In the order in which the row to be changed is found later, which is not that of a snapshot.
    Recordset stored = database_.OpenRecordset(query_of(table), RecordsetKind::dynaset);
    for (; !stored.at_eof(); stored.MoveNext()) {
        Row& row = rows.emplace_back(Row{stored.Bookmark().position, {}});
        for (const store::Field& field : table.fields)
            row.values.push_back(stored.field(field.name));
    }
    return rows;
}

std::set<std::string> Harness::values_in(std::string_view table_and_field) {
    const std::size_t dot = table_and_field.find('.');
    std::set<std::string> values;
    Recordset rows = database_.OpenRecordset(
        fmt::format("SELECT {} FROM {}", table_and_field.substr(dot + 1), table_and_field.substr(0, dot)),
        RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext())
        values.insert(rows.column(0).text());
    return values;
}

// The first row of each kind, spread over the table where there are too many; without kinds the first, one in
// the middle and the last.
std::vector<const Harness::Row*> Harness::sample(const store::Table& table, const std::vector<Row>& rows) {
    const SampledTable sampling = sampling_of(table.name);
    std::set<std::string> used;
    const bool counters = sampling.used_in == kUsedCounters;
    if (!sampling.key.empty() && !counters) used = values_in(sampling.used_in);
    const auto text = [&](const Row& row, std::string_view field) {
        return row.values[static_cast<std::size_t>(table.field_index(field))].text();
    };
    std::vector<const Row*> usable;
    for (const Row& row : rows)
        if (sampling.key.empty() ||
            (counters ? text(row, sampling.key) != "1" : used.contains(text(row, sampling.key))))
            usable.push_back(&row);
    if (usable.empty()) return {};
    std::map<std::string, const Row*> kinds;
    for (const Row* row : usable) {
        std::string kind;
        for (const std::string& field : words_of(sampling.kinds))
            kind += text(*row, field) + '|';
        kinds.try_emplace(kind, row);
    }
    std::set<const Row*> chosen{usable.front(), usable[usable.size() / 2], usable.back()};
    std::vector<const Row*> of_kinds;
    for (const auto& [kind, row] : kinds)
        of_kinds.push_back(row);
    const std::size_t most = static_cast<std::size_t>(options_.rows);
    for (std::size_t i = 0; i < std::min(most, of_kinds.size()); ++i)
        chosen.insert(of_kinds[i * of_kinds.size() / std::min(most, of_kinds.size())]);
    std::vector<const Row*> ordered(chosen.begin(), chosen.end());
    std::ranges::sort(ordered, {}, &Row::position);
    return ordered;
}

void Harness::change_table(const store::Table& table) {
    const std::vector<Row> rows = all_rows(table);
    const auto sampled = sample(table, rows);
    for (std::size_t field = 0; field < table.fields.size(); ++field) {
        std::vector<Value> column;
        std::set<std::string> seen;
        for (const Row& row : rows)
            if (seen.insert(row.values[field].text()).second) column.push_back(row.values[field]);
        for (const Row* row : sampled)
            change_field(table, field, *row, column);
    }
}

void Harness::change_field(const store::Table& table, std::size_t field, const Row& row,
                           const std::vector<Value>& column) {
    const std::string& name = table.fields[field].name;
    const ClassOfField held = class_of(table.name, name);
    for (const Change& change : changes_of(table.fields[field], row.values[field], column)) {
        if (number_++ % options_.every != 0) continue;
        const bool provable = held.provable == Provable::every_change ||
                              (held.provable == Provable::names_nothing && change.names_nothing);
        const Found who = who_finds(table, name, row, change, provable || options_.missed);
        require_trail(table, field, change, who.by_trail);
        const bool found = who.by_books;
        all_ += found || who.by_trail;
        by_check_[held.held] += found || who.by_trail;
        if (!provable) continue;
        provable_ += found;
        by_class_[held.held] += found;
        by_either_[held.held] += found || who.by_trail;
        by_table_[table.name] += found;
        by_field_[table.name + "." + name] += found;
        if (!found && must_be_found_always(held.held) &&
            !is_known_gap(table.name + "." + name, who.by_trail)) {
            ++missed_outside_gaps_;
            std::cout << fmt::format("not found{}, and no known gap: {}.{}, {}\n",
                                     who.by_trail ? " by the books" : "", table.name, name, change.kind);
        }
        if (!found && options_.missed)
            std::cout << fmt::format(
                "missed{}: {}.{} of {} {}: \"{}\", {}\n", who.by_trail ? " by the books" : "", table.name,
                name, row.values[0].text(), row.values[1].text(), row.values[field].text(), change.kind);
    }
}

// Whatever is changed in a watched field, or in the trail itself, the trail must show it.
void Harness::require_trail(const store::Table& table, std::size_t field, const Change& change, bool found) {
    const std::string& name = table.fields[field].name;
    const bool watched =
        table.watched && std::ranges::find(table.watched->left_out, name) == table.watched->left_out.end();
    if (found || !(watched || table.is_trail)) return;
    ++missed_outside_gaps_;
    std::cout << fmt::format("not found by the trail: {}.{}, {}\n", table.name, name, change.kind);
}

Harness::Found Harness::who_finds(const store::Table& table, const std::string& field, const Row& row,
                                  const Change& change, bool ask_books) {
    workspace_.BeginTrans();
    Found found;
    try {
        Recordset rows = database_.OpenRecordset(query_of(table), RecordsetKind::dynaset);
        rows.MoveLast();
        rows.Bookmark(store::Bookmark{row.position});
        if (rows.field(field) != row.values[static_cast<std::size_t>(table.field_index(field))])
            throw std::logic_error("another row stands there");
        rows.Edit();
        rows.set(field, change.value);
        rows.Update();
        rows.Close();
        found.by_trail = !database_.faults_of_trail().empty();
        found.by_books = ask_books && !company::check_books(database_).empty();
        if (options_.missed && ask_books && !found.by_books && !found.by_trail)
            found.in_note = company::books_notes(database_) != notes_;
    } catch (const store::Error& error) {
        // A unique index, or a value that the check cannot read, shows the change as well.
        found = {true, true, false};
    }
    workspace_.Rollback();
    return found;
}

void Harness::report() const {
    for (const auto& [table, count] : by_table_)
        std::cout << fmt::format("{:32} {:6} of {:6}  {:6.2f} %\n", table, count.found, count.of,
                                 count.percent());
    for (const auto& [field, count] : by_field_)
        if (count.found < count.of)
            std::cout << fmt::format("  {:44} {:5} of {:5}\n", field, count.found, count.of);
    std::cout << "what can be proven, by the books, and by books or trail:\n";
    for (const auto& [held, count] : by_class_) {
        const Count& either = by_either_.at(held);
        std::cout << fmt::format("{:10} {:6} {:6} of {:6}  {:6.2f} %  {:6.2f} %\n", name_of(held),
                                 count.found, either.found, count.of, count.percent(), either.percent());
    }
    std::cout << "all changes, by books or trail:\n";
    for (const auto& [held, count] : by_check_)
        std::cout << fmt::format("{:10} {:6} of {:6}  {:6.2f} %\n", name_of(held), count.found, count.of,
                                 count.percent());
    std::cout << fmt::format("{} of {} that the books can prove, {:.2f} %\n", provable_.found, provable_.of,
                             provable_.percent());
    std::cout << fmt::format("{} of {} changes by books and trail, {:.2f} %\n", all_.found, all_.of,
                             all_.percent());
}

bool Harness::held() const {
    if (missed_outside_gaps_ > 0) return false;
    return provable_.percent() >= options_.at_least;
}

// Whether the forms alone have left findings.
bool make_company(const std::string& company, const Options& options) {
    RandomSession session(company, options.seed);
    for (int act = 0; act < options.acts; ++act)
        session.act();
    const auto findings = session.findings();
    for (const std::string& finding : findings)
        std::cout << finding << '\n';
    return findings.empty();
}

int run(const Options& options) {
    std::cout << fmt::format("seed {}, {} acts\n", options.seed, options.acts) << std::flush;
    const ClosedCopy company(sample_original());
    if (!make_company(company.path(), options)) return 1;
    const auto start = std::chrono::steady_clock::now();
    Harness harness(company.open(), options);
    harness.change_tables();
    harness.report();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::cout << fmt::format("{:.1f} s\n", seconds.count());
    return harness.held() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    ProgramOptions program("mutations", "Single changed values of a company, and what the check finds");
    program.option("--acts", options.acts, "how many acts of the forms make the company");
    program.option("--seed", options.seed, "which company");
    program.option("--rows", options.rows, "how many kinds of rows of each table are changed");
    program.option("--every", options.every, "only every so manieth change");
    program.option("--tables", options.tables, "only these, parted by commas");
    program.option("--at-least", options.at_least, "percent of all that can be proven");
    program.flag("--missed", options.missed, "prints each change that was not found");
    return program.run(argc, argv, [&] { return run(options); });
}
