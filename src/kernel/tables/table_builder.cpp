#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

std::vector<std::string> list_of(Names names) { return {names.begin(), names.end()}; }

}  // namespace

TableBuilder& TableBuilder::add(Names names, store::FieldType type, bool nullable_flag) {
    for (const char* name : names) {
        table_.fields.push_back({name, type, nullable_flag});
    }
    return *this;
}

TableBuilder& TableBuilder::numbered(std::string_view prefix, int count, store::FieldType type) {
    for (int number = 1; number <= count; ++number) {
        table_.fields.push_back({std::string(prefix) + std::to_string(number), type, false});
    }
    return *this;
}

TableBuilder& TableBuilder::key(Names names) {
    table_.natural_key = list_of(names);
    return ordered_by(names);
}

TableBuilder& TableBuilder::indexed_key(Names names) { return index(names).key(names); }

TableBuilder& TableBuilder::unique_key(Names names) {
    table_.indexes.push_back({list_of(names), true});
    return key(names);
}

TableBuilder& TableBuilder::ordered_by(Names names) {
    table_.export_order = list_of(names);
    return *this;
}

TableBuilder& TableBuilder::single_row() {
    table_.single_row = true;
    return *this;
}

TableBuilder& TableBuilder::index(Names names) {
    table_.indexes.push_back({list_of(names), false});
    return *this;
}

TableBuilder& TableBuilder::index_where_false(Names flags, Names names) {
    table_.indexes.push_back({list_of(names), false, list_of(flags)});
    return *this;
}

TableBuilder& TableBuilder::document(const char* name, const char* number_field) {
    table_.watched = {name, number_field};
    return *this;
}

TableBuilder& TableBuilder::along(const char* name, const char* number_field) {
    document(name, number_field);
    table_.watched->goes_along = true;
    return *this;
}

TableBuilder& TableBuilder::unwatched(Names names) {
    table_.watched->left_out = list_of(names);
    return *this;
}

void add_tax_slots(TableBuilder& table) {
    using store::FieldType;
    constexpr int kSlots = 5;
    table.numbered("tax_authority", kSlots, FieldType::text);
    for (const char* amount : {"taxable_amount", "tax_rate", "tax_amount"}) {
        table.numbered(amount, kSlots, FieldType::number);
    }
    table.numbered("taxable", kSlots, FieldType::yes_no);
    for (const char* split : {"tax_allocated", "tax_recoverable", "tax_expensed"}) {
        table.numbered(split, kSlots, FieldType::number);
    }
}

}  // namespace brimley::kernel
