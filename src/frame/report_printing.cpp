#include "frame/report_printing.h"

#include <stdexcept>

#include "frame/platform_path.h"
#include "printing/report_file.h"

namespace brimley::frame {

namespace {

// A name that would lead out of the folder of all users.
bool is_no_folder_name(const std::string& user) {
    return user.empty() || user == "." || user == ".." || user.find_first_of("/\\") != std::string::npos;
}

// "093000".
std::string time_digits(store::DateTime moment) {
    std::string digits = moment.time_text();
    std::erase(digits, ':');
    return digits;
}

}  // namespace

std::optional<printing::Report> ReportPrinting::begin(const ReportNames& names,
                                                      const std::string& format_form) const {
    std::optional<printing::ReportFormat> format;
    step("read Report_format_table",
         [&] { format = printing::read_report_format(kernel(), context().BRIMLEY_USER, format_form); });
    if (!format) return std::nullopt;
    printing::Report report;
    report.format = *std::move(format);
    report.company_name = context().BRIMLEY_COMPANY_NAME;
    report.title = names.title;
    report.print_date = date_text(desk().now());
    return report;
}

// A folder that cannot be made shows when the file is written.
void ReportPrinting::make_user_folder(const std::string& folder) const {
    if (is_no_folder_name(context().BRIMLEY_USER))
        throw std::runtime_error("the user's name is no name of a folder");
    if (!desk().folder_exists(folder)) desk().make_folder(folder);
}

void ReportPrinting::print(const printing::Report& report, const ReportNames& names,
                           const std::string& docno) const {
    const std::string folder = context().BRIMLEY_PATH + "\\User report\\" + context().BRIMLEY_USER;
    const std::string stem = folder + "\\" + names.file_stem + time_digits(desk().now());
    step("write the report", [&] {
        make_user_folder(folder);
        const printing::ReportFile file = printing::write_report(report, platform_path(stem).string());
        if (!file.written) throw std::runtime_error(file.failure);
    });
    notify(report.format.portrait ? "pdf viewer" : "pdf viewer landscape", stem + ".pdf",
           names.window_title + docno);
}

std::vector<printing::PrintedColumn> ReportPrinting::visible_columns(const controls::Grid& grid) {
    std::vector<printing::PrintedColumn> columns;
    for (const int column : grid.column_order())
        if (grid.columns[static_cast<std::size_t>(column)].visible)
            columns.push_back(printing::printed_column(grid, column));
    return columns;
}

void ReportPrinting::print_lines(const ReportNames& names, const controls::Grid& grid,
                                 const std::string& docno) const {
    auto report = begin(names, identity().class_name);
    if (!report) return;
    report->rule_below_head = true;
    report->grids.push_back({visible_columns(grid), &grid.array});
    print(*report, names, docno);
}

}  // namespace brimley::frame
