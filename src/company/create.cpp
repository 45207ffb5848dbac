#include "company/create.h"

#include <filesystem>

#include "company/company_draft.h"
#include "company/data_folder.h"
#include "company/import.h"
#include "company/table_writer.h"
#include "kernel/tables/company_tables.h"
#include "presentation/grid_defaults.h"

namespace brimley::company {

namespace {

using presentation::ColumnKind;
using store::Value;

// The values of Alignment.
constexpr int kRight = 1;
constexpr int kCentre = 2;

Value alignment_of(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::amount:
            return kRight;
        case ColumnKind::centred:
        case ColumnKind::check_box:
            return kCentre;
        case ColumnKind::text:
            break;
    }
    return {};
}

struct Filler {
    store::Database& database;

    void operator()(const EmptyCompany&) const {}
    void operator()(const SampleCompany& sample) const { add_sample("sample_company", sample.user); }
    void operator()(const HalfYearCompany& sample) const { add_sample("half_year", sample.user); }
    void operator()(const StarterCompany& starter) const { add_starter(database, starter); }

    void add_sample(const char* folder, const std::string& user) const {
        import_folder(database, data_folder(folder), {});
        add_full_rights(database, user);
    }
};

void make_and_fill(const std::string& place, const CompanyContent& content, const store::Catalog& tables) {
    const auto fill = [&](store::Database& database) {
        add_grid_properties(database);
        std::visit(Filler{database}, content);
    };
    (void)store::create_company(place, tables, fill);
}

// The store refuses anything else in its own words.
bool is_path_of_a_file(const std::string& company) {
    return !store::is_on_server(company) && company.find('\0') == std::string::npos &&
           std::filesystem::path(company).has_filename();
}

}  // namespace

void add_grid_properties(store::Database& database) {
    TableWriter rows(database, "Grid_property");
    for (const presentation::GridDefault& grid : presentation::grid_defaults()) {
        int order = 0;
        for (const presentation::GridColumnDefault& column : grid.columns) {
            const bool check_box = column.kind == ColumnKind::check_box;
            rows.add({{"form_name", grid.form_name},
                      {"grid_name", grid.grid_name},
                      {"col_order", order++},
                      {"Caption", column.caption},
                      {"Visible", !(column.flags & presentation::kHidden)},
                      {"Locked", !(column.flags & presentation::kEntered)},
                      {"col_width", column.width},
                      {"row_height", presentation::kRowHeight},
                      {"Alignment", alignment_of(column.kind)},
                      {"cell_type", check_box ? Value(presentation::kCheckBoxCell) : Value()},
                      {"col_fetchstyle", (column.flags & presentation::kRowStyle) != 0},
                      {"AutoCompletion", (column.flags & presentation::kCompleted) != 0},
                      {"Print", true}});
        }
    }
}

void create_company_file(const std::string& company, const CompanyContent& content,
                         const store::Catalog& tables) {
    if (!is_path_of_a_file(company)) return make_and_fill(company, content, tables);
    CompanyDraft draft(company);
    draft.make([&](const std::string& file) { make_and_fill(file, content, tables); });
    draft.publish();
}

}  // namespace brimley::company
