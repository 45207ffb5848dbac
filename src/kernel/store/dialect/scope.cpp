#include "kernel/store/dialect/scope.h"

#include <fmt/format.h>

#include "kernel/store/error.h"
#include "kernel/store/letter_case.h"

namespace brimley::store::dialect {

namespace {

[[noreturn]] void refuse_name(std::string_view query, const char* what, std::string_view name,
                              std::size_t position) {
    throw Error(ErrorKind::name, fmt::format("no {} \"{}\", at position {}", what, name, position + 1), 0,
                std::string(query));
}

}  // namespace

std::string Scope::next_alias() const { return fmt::format("t{}", sources_.size() + 1); }

std::string Scope::add_table(const Source& source) {
    const Table* const table = catalog_.find(source.table);
    if (!table) refuse_name(query_, "table", source.table, source.position);
    const std::string alias = next_alias();
    ScopeSource added{table, {}, {fmt::format("{}.{}", alias, flavour_.name(kRowKeyColumn))}};
    for (const Field& field : table->fields) {
        const int place = static_cast<int>(added.columns.size());
        added.columns.push_back(
            {field.name, fmt::format("{}.{}", alias, flavour_.name(field.name)), field.type, place});
    }
    sources_.push_back(std::move(added));
    return alias;
}

void Scope::add_name(std::string_view name, int field) {
    if (find("", name)) return;
    ScopeColumn named = sources_.front().columns[static_cast<std::size_t>(field)];
    named.name = name;
    sources_.front().columns.push_back(std::move(named));
}

const ScopeColumn* Scope::find(std::string_view qualifier, std::string_view name) const {
    for (const ScopeSource& source : sources_) {
        if (!qualifier.empty() && (!source.table || !same_name(source.table->name, qualifier))) continue;
        for (const ScopeColumn& column : source.columns)
            if (same_name(column.name, name)) return &column;
    }
    return nullptr;
}

const ScopeColumn& Scope::resolve(const Expression& column) const {
    if (!column.qualifier.empty()) (void)source_of_table(column.qualifier, column.position);
    const ScopeColumn* const found = find(column.qualifier, column.name);
    if (!found) refuse_name(query_, "field", column.name, column.position);
    return *found;
}

const ScopeSource& Scope::source_of_table(std::string_view table, std::size_t position) const {
    for (const ScopeSource& source : sources_)
        if (source.table && same_name(source.table->name, table)) return source;
    refuse_name(query_, "table in this query named", table, position);
}

}  // namespace brimley::store::dialect
