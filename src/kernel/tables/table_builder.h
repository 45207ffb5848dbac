// How the table definitions of this folder are written: one chained call per table, which reads like the
// table itself.
//
//   TableBuilder("Vendor_table").text({"vendor_no",
//   "VENDOR_NAME"}).number({"owing_balance"}).indexed_key({"vendor_no"})
//
// Fields stand in the order of the calls. Private to kernel/tables.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kernel/store/catalog.h"

namespace brimley::kernel {

using Names = std::initializer_list<const char*>;

class TableBuilder {
  public:
    explicit TableBuilder(std::string name) { table_.name = std::move(name); }

    TableBuilder& text(Names names) { return add(names, store::FieldType::text); }
    TableBuilder& number(Names names) { return add(names, store::FieldType::number); }
    TableBuilder& integer(Names names) { return add(names, store::FieldType::integer); }
    TableBuilder& date(Names names) { return add(names, store::FieldType::date); }
    TableBuilder& datetime(Names names) { return add(names, store::FieldType::datetime); }
    TableBuilder& yes_no(Names names) { return add(names, store::FieldType::yes_no); }
    // Yes/no fields whose null is a state of its own ("leave it as it is").
    TableBuilder& nullable_yes_no(Names names) { return add(names, store::FieldType::yes_no, true); }
    // `prefix`1 to `prefix``count`.
    TableBuilder& numbered(std::string_view prefix, int count, store::FieldType type);
    // `account` and the five analysis segments that ledger rows copy from the chart.
    TableBuilder& account_segments() {
        return text({"acccode", "subacc", "subacc2", "subacc3", "subacc4", "subacc5"});
    }

    // What rows are looked up by, and the order of export. Only import holds rows to it.
    TableBuilder& key(Names names);
    // The same with an index.
    TableBuilder& indexed_key(Names names);
    // The same with an index that the database itself keeps unique: counters and parameters.
    TableBuilder& unique_key(Names names);
    // The order of export of a table without a key.
    TableBuilder& ordered_by(Names names);
    TableBuilder& single_row();
    TableBuilder& index(Names names);
    // An index of the rows in which the flags are FALSE.
    TableBuilder& index_where_false(Names flags, Names names);

    // Its rows are watched by the company's trail, as part of such a document, whose number is in that field.
    TableBuilder& document(const char* name, const char* number_field);
    // The same, and they go along with another document.
    TableBuilder& along(const char* name, const char* number_field);
    // But not these fields of them, which later acts on other documents change.
    TableBuilder& unwatched(Names names);

    operator store::Table() const { return table_; }

  private:
    TableBuilder& add(Names names, store::FieldType type, bool nullable_flag = false);

    store::Table table_;
};

// The five slots in which a line keeps its taxes by authority.
void add_tax_slots(TableBuilder& table);

// The tables by subject, each in the order of the catalog.
std::vector<store::Table> user_tables();
std::vector<store::Table> master_tables();
std::vector<store::Table> calendar_tables();
std::vector<store::Table> tax_tables();
std::vector<store::Table> counter_tables();
std::vector<store::Table> ledger_tables();
std::vector<store::Table> sister_module_tables();
std::vector<store::Table> invoice_tables();
std::vector<store::Table> payment_tables();
std::vector<store::Table> revaluation_tables();
std::vector<store::Table> presentation_tables();
std::vector<store::Table> trust_tables();

}  // namespace brimley::kernel
