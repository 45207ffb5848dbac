#include "kernel/store/dialect/translator.h"

#include <fmt/format.h>

#include <algorithm>

#include "kernel/store/dialect/parser.h"
#include "kernel/store/dialect/select_translator.h"

namespace brimley::store::dialect {

namespace {

// UPDATE and DELETE of one statement.
class ChangeTranslator {
  public:
    ChangeTranslator(std::string_view statement, const Catalog& catalog, const Flavour& flavour)
        : catalog_(catalog),
          flavour_(flavour),
          scope_(statement, catalog, flavour),
          parameters_(flavour),
          writer_(scope_, parameters_, flavour) {}

    ChangeTranslation operator()(const Update& update) {
        const std::string target = add_table(update.table);
        const Table& table = *scope_.sources().front().table;
        std::string list;
        for (const Assignment& assignment : update.assignments) {
            Expression field;
            field.position = assignment.position;
            field.name = assignment.field;
            const int place = scope_.resolve(field).field;
            const Field& assigned = table.fields[static_cast<std::size_t>(place)];
            assigned_.add(static_cast<std::size_t>(place));
            list += fmt::format("{}{} = {}", list.empty() ? "" : ", ", flavour_.name(assigned.name),
                                writer_.assigned(*assignment.value, assigned));
        }
        return finish(fmt::format("UPDATE {} SET {}", target, list), update.where.get());
    }

    ChangeTranslation operator()(const Delete& remove) {
        return finish("DELETE FROM " + add_table(remove.table), remove.where.get());
    }

  private:
    std::string add_table(const Source& source) {
        const std::string alias = scope_.add_table(source);
        return fmt::format("{} AS {}", flavour_.name(scope_.sources().front().table->name), alias);
    }

    // Its condition once more, with parameters of its own.
    void add_rows(const Expression* where, ChangeTranslation& change) {
        const SelectTranslation all =
            SelectTranslator("", catalog_, flavour_)
                .translate(parse_select(fmt::format("SELECT * FROM [{}]", change.table->name)));
        ParameterList parameters(flavour_);
        change.rows.sql = fmt::format("SELECT {}, {} FROM {}", scope_.sources().front().row_keys.front(),
                                      all.select_list, all.from);
        if (where)
            change.rows.sql += " WHERE " + ExpressionWriter(scope_, parameters, flavour_).condition(*where);
        change.rows.sql += flavour_.lock_to_change();
        change.rows.may_be_refused = true;
        change.rows.parameters = parameters.kinds();
        change.rows.keyed = true;
        change.rows.columns = all.rows.columns;
        change.literals_of_rows = parameters.literals();
    }

    ChangeTranslation finish(std::string sql, const Expression* where) {
        if (where) sql += " WHERE " + writer_.condition(*where);
        StatementText text{std::move(sql), parameters_.kinds()};
        text.effect = StatementEffect::changes_rows;
        text.may_be_refused = true;
        ChangeTranslation change;
        change.text = std::move(text);
        change.literals = parameters_.literals();
        change.table = scope_.sources().front().table;
        change.assigned = assigned_;
        if (change.table->watched) add_rows(where, change);
        return change;
    }

    const Catalog& catalog_;
    const Flavour& flavour_;
    Scope scope_;
    ParameterList parameters_;
    ExpressionWriter writer_;
    PlaceSet assigned_;
};

// Whether a field at one of these places belongs to a unique index.
bool touches_unique_index(const Table& table, const std::vector<int>& places) {
    return std::ranges::any_of(table.indexes, [&](const Index& index) {
        return index.unique && std::ranges::any_of(index.fields, [&](const std::string& field) {
                   return std::ranges::find(places, table.field_index(field)) != places.end();
               });
    });
}

bool has_unique_index(const Table& table) {
    return std::ranges::any_of(table.indexes, [](const Index& index) { return index.unique; });
}

}  // namespace

SelectTranslation Translator::select(std::string_view query) const {
    return SelectTranslator(query, catalog_, flavour_).translate(parse_select(query));
}

ChangeTranslation Translator::change(std::string_view statement) const {
    const Change change = parse_change(statement);
    return std::visit(ChangeTranslator(statement, catalog_, flavour_), change);
}

FindTranslation Translator::find(const SelectTranslation& select, std::string_view criteria) const {
    Scope scope(criteria, catalog_, flavour_);
    scope.add_table({0, select.table->name});
    for (const ResultColumn& column : select.columns)
        if (column.field >= 0) scope.add_name(column.name, column.field);
    ParameterList parameters(flavour_, select.outer_kinds);
    const ExpressionPtr condition_tree = parse_criteria(criteria);
    const std::string condition = ExpressionWriter(scope, parameters, flavour_).condition(*condition_tree);
    FindTranslation find;
    find.literals = parameters.literals();
    const std::vector<ParameterKind> without_key = parameters.kinds();
    const std::string key_parameter = parameters.add_row_key();

    const std::string& key = scope.sources().front().row_keys.front();
    const std::string rows =
        fmt::format("SELECT {}, {} FROM {} WHERE {}", key, select.select_list, select.from, condition);
    const std::string order = select.ordered ? select.order : flavour_.key_order(key);
    const std::vector<FieldType>& columns = select.rows.columns;
    find.first = {fmt::format("{} ORDER BY {} LIMIT 1", rows, order), without_key, true, columns};
    find.held_first = find.first;
    // Which row it is, is found out before it is held: a row that is skipped must not make room for the
    // next one.
    if (const std::string lock = flavour_.row_lock(); !lock.empty()) {
        find.held_first.holds_row = true;
        find.held_first.sql = fmt::format(
            "SELECT {0}, {1} FROM {2} WHERE {0} = (SELECT {0} FROM {2} WHERE {3} ORDER BY {4} LIMIT 1){5}",
            key, select.select_list, select.from, condition, order, lock);
    }
    find.first_after = {fmt::format("{} AND {} > {} ORDER BY {} LIMIT 1", rows, key, key_parameter, order),
                        parameters.kinds(), true, columns};
    find.keys = {
        fmt::format("SELECT {} FROM {} WHERE {}", key, select.from, condition), without_key, true, {}};
    find.at_key = {fmt::format("{} AND {} = {}", rows, key, key_parameter), parameters.kinds(), true,
                   columns};
    return find;
}

ExpressionPtr Translator::filter(const SelectTranslation& select, std::string_view criteria) const {
    ScopeSource columns{select.table, {}, {}};
    for (const ResultColumn& column : select.columns)
        columns.columns.push_back({column.name, column.name, column.type, column.field});
    Scope scope(criteria, catalog_, flavour_);
    scope.add(std::move(columns));
    ParameterList parameters(flavour_, {});
    ExpressionPtr condition = parse_criteria(criteria);
    // Written only to find out whether it makes sense: the rows are not the engine's any more.
    (void)ExpressionWriter(scope, parameters, flavour_).condition(*condition);
    return condition;
}

StatementText Translator::last_entry() const {
    const SelectTranslation entries =
        select(fmt::format("SELECT entry_no, hash FROM [{}] ORDER BY entry_no DESC", catalog_.trail()->name));
    StatementText last = entries.first_row;
    // Where keys grow with each row added the last one stands at the end of the table.
    if (!flavour_.draws_keys())
        last.sql = fmt::format("SELECT {0}, {1} FROM {2} ORDER BY {0} DESC LIMIT 1",
                               flavour_.name(kRowKeyColumn), entries.select_list, entries.from);
    return last;
}

std::optional<StatementText> Translator::next_entry() const {
    const Table& trail = *catalog_.trail();
    StatementText text;
    std::string names;
    std::string values = "next.number";
    for (const Field& field : trail.fields)
        names += flavour_.name(field.name) + ", ";
    const auto add = [&](ParameterKind kind) {
        text.parameters.push_back(kind);
        return flavour_.parameter(text.parameters.size(), kind);
    };
    for (std::size_t field = 1; field + 1 < trail.fields.size(); ++field)
        values += ", " + add(kind_of_field(trail.fields[field]));
    const std::string hash =
        flavour_.chained_hash(trail.name, "next.hash_before", "next.number", add(ParameterKind::text));
    if (hash.empty()) return std::nullopt;
    values += fmt::format(", {}, {}", hash, flavour_.next_key());
    text.sql = fmt::format(
        "INSERT INTO {} ({}{}) SELECT {} FROM (SELECT coalesce(last.number, 0) + 1 AS number, "
        "coalesce(last.hash, '') AS hash_before FROM (SELECT 1) AS one LEFT JOIN ({}) AS last (key, number, "
        "hash) ON TRUE) AS next",
        flavour_.name(trail.name), names, flavour_.name(kRowKeyColumn), values, last_entry().sql);
    text.effect = StatementEffect::inserts_row;
    return text;
}

StatementText Translator::insert(const Table& table, const std::vector<int>& fields) const {
    StatementText text;
    text.keyed = true;
    text.effect = StatementEffect::inserts_row;
    // Whoever appends to the trail holds its end: nobody else can take that number.
    text.may_be_refused = has_unique_index(table) && !table.is_trail;
    std::string names;
    std::string values;
    const auto add = [&](ParameterKind kind, std::string_view name) {
        text.parameters.push_back(kind);
        const char* const comma = names.empty() ? "" : ", ";
        names += comma + flavour_.name(name);
        values += comma + flavour_.parameter(text.parameters.size(), kind);
    };
    for (const int place : fields) {
        const Field& field = table.fields[static_cast<std::size_t>(place)];
        add(kind_of_field(field), field.name);
    }
    if (flavour_.draws_keys()) add(ParameterKind::row_key, kRowKeyColumn);
    if (names.empty())
        text.sql = fmt::format("INSERT INTO {} DEFAULT VALUES", flavour_.name(table.name));
    else
        text.sql = fmt::format("INSERT INTO {} ({}) VALUES ({})", flavour_.name(table.name), names, values);
    return text;
}

StatementText Translator::update(const Table& table, const std::vector<int>& fields) const {
    StatementText text;
    text.effect = StatementEffect::updates_row;
    text.may_be_refused = touches_unique_index(table, fields);
    std::string list;
    for (const int place : fields) {
        const Field& field = table.fields[static_cast<std::size_t>(place)];
        text.parameters.push_back(kind_of_field(field));
        list += fmt::format("{}{} = {}", list.empty() ? "" : ", ", flavour_.name(field.name),
                            flavour_.parameter(text.parameters.size(), text.parameters.back()));
    }
    text.parameters.push_back(ParameterKind::row_key);
    text.sql = fmt::format("UPDATE {} SET {} WHERE {} = {}", flavour_.name(table.name), list,
                           flavour_.name(kRowKeyColumn),
                           flavour_.parameter(text.parameters.size(), ParameterKind::row_key));
    return text;
}

}  // namespace brimley::store::dialect
