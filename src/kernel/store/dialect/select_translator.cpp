#include "kernel/store/dialect/select_translator.h"

#include <fmt/format.h>

#include "kernel/store/letter_case.h"

namespace brimley::store::dialect {

namespace {

bool is_plain_literal(const Expression& expression) {
    return expression.kind == ExpressionKind::text_literal ||
           expression.kind == ExpressionKind::number_literal;
}

// Not every engine takes a constant for an order, and none would order anything by it.
bool orders_nothing(const Expression& by) {
    return by.kind == ExpressionKind::null_literal || by.kind == ExpressionKind::flag_literal;
}

bool is_constant_test(const Expression& expression) {
    return expression.kind == ExpressionKind::comparison && is_plain_literal(*expression.operands[0]) &&
           is_plain_literal(*expression.operands[1]);
}

// All parts that must hold for the condition to hold.
void flatten(const Expression& condition, std::vector<const Expression*>& parts) {
    if (condition.kind != ExpressionKind::conjunction) {
        parts.push_back(&condition);
        return;
    }
    for (const ExpressionPtr& part : condition.operands)
        flatten(*part, parts);
}

std::string with_clause(std::string_view keyword, std::string_view clause) {
    return clause.empty() ? std::string() : fmt::format(" {} {}", keyword, clause);
}

std::vector<std::string> keys_of_all(const Scope& scope) {
    std::vector<std::string> keys;
    for (const ScopeSource& source : scope.sources())
        keys.insert(keys.end(), source.row_keys.begin(), source.row_keys.end());
    return keys;
}

}  // namespace

void SelectTranslator::add_sources(const Select& select, Scope& scope, std::string& from) {
    for (const Source& source : select.sources) {
        if (!from.empty()) from += ", ";
        if (source.nested) {
            from += add_nested(*source.nested, scope);
            continue;
        }
        const std::string alias = scope.add_table(source);
        from += fmt::format("{} AS {}", flavour_.name(scope.sources().back().table->name), alias);
    }
}

// The columns of a nested SELECT are c1, c2, ... to the SELECT around it, since their own names may occur
// twice, and the keys that give insertion order are k1, k2, ...
std::string SelectTranslator::add_nested(const Select& nested, Scope& scope) {
    const std::string alias = scope.next_alias();
    Scope inner(query_, catalog_, flavour_);
    std::string from;
    add_sources(nested, inner, from);
    const WrittenSelect written = write_items(nested, inner);
    const std::string conditions = write_conditions(nested, inner, nullptr);

    ScopeSource source;
    std::string list;
    for (const WrittenColumn& column : written.columns) {
        const std::string name = fmt::format("c{}", source.columns.size() + 1);
        list += fmt::format("{}{} AS {}", list.empty() ? "" : ", ", column.sql, name);
        source.columns.push_back(
            {column.shown.name, fmt::format("{}.{}", alias, name), column.shown.type, -1});
    }
    if (!written.aggregate) {
        for (const std::string& key : keys_of_all(inner)) {
            const std::string name = fmt::format("k{}", source.row_keys.size() + 1);
            list += fmt::format(", {} AS {}", key, name);
            source.row_keys.push_back(fmt::format("{}.{}", alias, name));
        }
    }
    scope.add(std::move(source));
    return fmt::format("(SELECT {} FROM {}{}) AS {}", list, from, with_clause("WHERE", conditions), alias);
}

void SelectTranslator::write_fields(const ScopeSource& source, std::vector<WrittenColumn>& columns) const {
    for (const ScopeColumn& column : source.columns)
        columns.push_back({{column.name, column.type, column.field}, column.sql});
}

SelectTranslator::WrittenColumn SelectTranslator::write_item(const SelectItem& item,
                                                             ExpressionWriter& writer) const {
    const Operand operand = writer.settled(*item.expression);
    WrittenColumn column{{item.alias, result_type(operand.type), -1}, operand.sql};
    if (operand.column) {
        column.shown.type = operand.column->type;
        column.shown.field = operand.column->field;
        if (item.alias.empty()) column.shown.name = item.expression->name;
    }
    return column;
}

SelectTranslator::WrittenSelect SelectTranslator::write_items(const Select& select, const Scope& scope) {
    WrittenSelect written;
    ExpressionWriter writer(scope, parameters_, flavour_);
    writer.allow_aggregates(true);
    bool whole_rows = false;
    for (const SelectItem& item : select.items) {
        if (item.kind == SelectItem::Kind::everything) {
            for (const ScopeSource& source : scope.sources())
                write_fields(source, written.columns);
        } else if (item.kind == SelectItem::Kind::everything_of_table) {
            write_fields(scope.source_of_table(item.table, item.position), written.columns);
        } else {
            written.columns.push_back(write_item(item, writer));
            std::string& name = written.columns.back().shown.name;
            if (name.empty()) name = fmt::format("expression{}", written.columns.size());
            continue;
        }
        whole_rows = true;
    }
    written.aggregate = writer.aggregates_written() > 0;
    if (written.aggregate && (whole_rows || writer.single_fields_written() > 0))
        refuse_syntax_at(query_, select.items.front().position, "a field beside an aggregate");
    return written;
}

std::string SelectTranslator::write_conditions(const Select& select, const Scope& scope,
                                               std::vector<ConstantTest>* constants) {
    std::vector<const Expression*> parts;
    for (const ExpressionPtr& condition : select.conditions)
        flatten(*condition, parts);
    ExpressionWriter writer(scope, parameters_, flavour_);
    std::string sql;
    for (const Expression* part : parts) {
        if (constants && is_constant_test(*part)) {
            constants->push_back({part->operands[0]->literal, part->operands[1]->literal, part->name});
            continue;
        }
        if (!sql.empty()) sql += " AND ";
        sql += writer.condition(*part);
    }
    return sql;
}

std::string SelectTranslator::order_term(const OrderTerm& term, ExpressionWriter& writer, const Scope& scope,
                                         const std::vector<WrittenColumn>& columns) const {
    const Expression& by = *term.expression;
    if (is_plain_literal(by)) refuse_syntax_at(query_, by.position, "a field to order by expected");
    // What is no field may be the name of a computed column.
    if (by.kind == ExpressionKind::column && by.qualifier.empty() && !scope.find("", by.name)) {
        for (const WrittenColumn& column : columns)
            if (same_name(column.shown.name, by.name)) return column.sql;
    }
    return writer.settled(by).sql;
}

std::string SelectTranslator::write_order(const Select& select, const Scope& scope,
                                          const std::vector<WrittenColumn>& columns) {
    ExpressionWriter writer(scope, parameters_, flavour_);
    std::string sql;
    for (const OrderTerm& term : select.order) {
        if (orders_nothing(*term.expression)) continue;
        if (!sql.empty()) sql += ", ";
        sql += order_term(term, writer, scope, columns);
        if (term.descending) sql += " DESC";
        sql += flavour_.nulls_first(term.descending);
    }
    // Rows that tie, and rows without any order, come as they were added.
    const bool looked_up = select.order.empty() && !select.conditions.empty();
    for (const std::string& key : keys_of_all(scope))
        sql += (sql.empty() ? "" : ", ") + (looked_up ? flavour_.key_order(key) : key);
    return sql;
}

SelectTranslation SelectTranslator::translate(const Select& select) {
    SelectTranslation result;
    Scope scope(query_, catalog_, flavour_);
    // Nested SELECTs have literals too. They count as the select list's, being written first; only queries of
    // a single table ever use the two parts apart.
    add_sources(select, scope, result.from);
    const WrittenSelect written = write_items(select, scope);
    if (written.aggregate && !select.order.empty())
        refuse_syntax_at(query_, select.order.front().expression->position, "an aggregate has one row");
    if (!written.aggregate) result.order = write_order(select, scope, written.columns);
    result.outer = parameters_.literals();
    result.outer_kinds = parameters_.kinds();
    const std::string conditions = write_conditions(select, scope, &result.constants);
    const auto first_condition = static_cast<std::ptrdiff_t>(result.outer.size());
    result.condition.assign(parameters_.literals().begin() + first_condition, parameters_.literals().end());

    result.has_condition = !select.conditions.empty();
    result.ordered = !select.order.empty();
    for (const WrittenColumn& column : written.columns) {
        result.select_list += (result.select_list.empty() ? "" : ", ") + column.sql;
        result.rows.columns.push_back(column.shown.type);
        result.columns.push_back(column.shown);
    }
    result.rows.parameters = parameters_.kinds();
    const std::string rest = fmt::format(" FROM {}{}{}", result.from, with_clause("WHERE", conditions),
                                         with_clause("ORDER BY", result.order));
    result.rows.sql = fmt::format("SELECT {}{}", result.select_list, rest);
    const ScopeSource& first = scope.sources().front();
    if (scope.sources().size() == 1 && first.table && !written.aggregate) {
        result.table = first.table;
        write_keyed(result, first.row_keys.front(), rest);
    }
    return result;
}

void SelectTranslator::write_keyed(SelectTranslation& result, std::string_view key,
                                   std::string_view rest) const {
    StatementText keyed = result.rows;
    keyed.keyed = true;
    keyed.sql = fmt::format("SELECT {}, {}{}", key, result.select_list, rest);
    if (!result.ordered) result.rows = keyed;
    result.keys = {fmt::format("SELECT {}{}", key, rest), keyed.parameters, true, {}};
    result.first_row = keyed;
    result.first_row.sql += " LIMIT 1";
    result.head = keyed;
    if (!flavour_.rows_come_singly()) result.head.sql += fmt::format(" LIMIT {}", kHeadRows);
    result.by_key = keyed;
    result.by_key.parameters = result.outer_kinds;
    result.by_key.parameters.push_back(ParameterKind::row_key);
    result.by_key.sql =
        fmt::format("SELECT {}, {} FROM {} WHERE {} = {}", key, result.select_list, result.from, key,
                    flavour_.parameter(result.by_key.parameters.size(), ParameterKind::row_key));
    result.held_row = result.by_key;
    result.held_row.sql += flavour_.row_lock();
    result.held_row.holds_row = true;
}

}  // namespace brimley::store::dialect
