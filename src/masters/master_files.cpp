// Masters as CSV files: all rows written, and rows of a file added, each by the rules of a row that is typed.
#include <fmt/format.h>

#include <map>
#include <stdexcept>

#include "company/csv_reader.h"
#include "company/csv_values.h"
#include "company/output_file.h"
#include "frame/platform_path.h"
#include "masters/master_form.h"

namespace brimley::masters {

namespace {

const store::Field& field_of_table(const store::Table& table, std::string_view name) {
    const auto found = std::ranges::find_if(table.fields, [&](const store::Field& field) {
        return store::lower_case(field.name) == store::lower_case(name);
    });
    if (found == table.fields.end())
        throw std::logic_error(fmt::format("{} has no field {}", table.name, name));
    return *found;
}

std::string rows_told(int rows) { return fmt::format("{} {}", rows, rows == 1 ? "row" : "rows"); }

}  // namespace

const store::Table& MasterForm::table() { return *kernel().database().catalog().find(master_.table); }

std::filesystem::path MasterForm::file_named() {
    if (txtfile.text().empty()) tell("Please specify the CSV file.");
    return frame::platform_path(txtfile.text());
}

// --- writing ---

int MasterForm::write_rows(company::OutputFile& file) {
    std::string line;
    std::string fields;
    for (const Field& field : master_.fields) {
        line += (line.empty() ? "" : ",") + field_of_table(table(), field.name).name;
        fields += fmt::format("{}[{}]", fields.empty() ? "" : ", ", field.name);
    }
    file.write(line + '\n');
    auto rows =
        kernel().read_long(fmt::format("SELECT {} FROM {}{}", fields, master_.table, order_of_keys()));
    int count = 0;
    for (; !rows.at_eof(); rows.MoveNext(), ++count) {
        line.clear();
        for (int column = 0; column < rows.column_count(); ++column) {
            if (column > 0) line += ',';
            company::append_cell(line, rows.column(column));
        }
        file.write(line + '\n');
    }
    return count;
}

void MasterForm::write_file() {
    const auto path = file_named();
    if (path.empty()) return;
    int count = 0;
    const bool written = step("write a CSV file", [&] {
        company::OutputFile file(path);
        count = write_rows(file);
        file.finish();
        file.publish();
    });
    if (!written) return tell_failure(fmt::format("{} was not written.", path.string()));
    tell(fmt::format("{}: {} written to {}.", identity().caption, rows_told(count), path.string()));
}

// --- reading ---

std::vector<const MasterForm::Place*> MasterForm::columns_of(company::CsvReader& file) {
    std::vector<company::CsvCell> header;
    if (!file.next(header)) file.fail("the line with the names of the fields is missing");
    std::vector<const Place*> columns;
    for (const company::CsvCell& cell : header) {
        const auto found = std::ranges::find_if(places_, [&](const Place& place) {
            return store::lower_case(place.field->name) == store::lower_case(cell.text);
        });
        if (found == places_.end())
            file.fail(fmt::format("a {} has no field \"{}\"", master_.one, cell.text));
        if (std::ranges::find(columns, &*found) != columns.end())
            file.fail(fmt::format("the field {} is there twice", cell.text));
        columns.push_back(&*found);
    }
    return columns;
}

void MasterForm::show_record(const company::CsvReader& file, const std::vector<const Place*>& columns,
                             const std::vector<company::CsvCell>& record) {
    clear_fields();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Place& place = *columns[i];
        if (place.field->computed) continue;
        try {
            put(place, company::cell_value(record[i], field_of_table(table(), place.field->name)));
        } catch (const std::invalid_argument& fault) {
            file.fail(fault.what());
        }
    }
}

int MasterForm::add_rows_of(company::CsvReader& file) {
    const auto columns = columns_of(file);
    int count = 0;
    for (std::vector<company::CsvCell> record; file.next(record); ++count) {
        show_record(file, columns, record);
        if (!is_right() || !add_row()) file.fail("this row cannot be added");
    }
    return count;
}

void MasterForm::read_file() {
    const auto path = file_named();
    if (path.empty()) return;
    int count = 0;
    std::string failure;
    const bool read = in_transaction(
        "read a CSV file",
        [&] {
            company::CsvReader file(path.string());
            count = add_rows_of(file);
            return true;
        },
        &failure);
    if (read) {
        tell(fmt::format("{}: {} added from {}.", identity().caption, rows_told(count), path.string()));
    } else {
        tell_failure(failure.empty() ? "Nothing was added." : fmt::format("{}. Nothing was added.", failure));
    }
    list_rows();
}

}  // namespace brimley::masters
