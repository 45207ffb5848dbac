// What shows whether the other tables were tampered with, and who works in the company.
#include "kernel/tables/table_builder.h"

namespace brimley::kernel {

namespace {

store::Table since_layout(int layout, store::Table table) {
    table.since = layout;
    return table;
}

}  // namespace

std::vector<store::Table> trust_tables() {
    return {since_layout(2, TableBuilder("Password_table")
                                .text({"userid", "password_hash"})
                                .unique_key({"userid"})
                                .document("password", "userid")),
            since_layout(2, store::trail_table("Trail_table"))};
}

}  // namespace brimley::kernel
