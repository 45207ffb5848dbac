// A report of a small list, for tests to change: A4 upright, rows of 20 points, letters of 10.
//
// top is 742 and F 612, so that the rows of a page have their lower edges at 632, 612, 592 ... and 142, 25 of
// them; the captions stand between 652 and 672.
#pragma once

#include <fmt/format.h>

#include "printing/grid_report.h"

namespace brimley::testing {

struct SmallReport {
    // Of four columns, 50, 100, 150 and 200 points wide.
    explicit SmallReport(int rows) {
        printing::ReportFormat& format = report.format;
        format.portrait = true;
        format.page = {600, 842};
        format.top_margin = 100;
        format.bottom_margin = 142;
        format.left_margin = format.right_margin = 50;
        format.font_name = "Arial";
        format.font_colour = controls::rgb(1, 2, 3);
        format.even_row_colour = controls::rgb(200, 220, 240);
        report.company_name = "Brimley Trading";
        report.title = "VENDOR AGING REPORT";
        report.print_date = "16/03/2026";
        report.grids.push_back({{}, &list});
        for (const char* caption : {"no", "name", "doc no", "amount"})
            add_column(caption);
        columns()[3].alignment = controls::Alignment::right;
        fill(list, rows, "");
    }
    SmallReport(const SmallReport&) = delete;
    SmallReport& operator=(const SmallReport&) = delete;

    [[nodiscard]] std::vector<printing::PrintedColumn>& columns() { return report.grids[0].columns; }
    void add_column(const char* caption) {
        printing::PrintedColumn column;
        column.column = static_cast<int>(columns().size());
        column.caption = caption;
        column.width = 500 * (column.column + 1);
        columns().push_back(column);
    }
    static void fill(controls::TextArray& list, int rows, const std::string& mark) {
        list.dimension(rows);
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < 4; ++column)
                list.set(row, column, fmt::format("{}r{}c{}", mark, row, column));
    }

    controls::TextArray list;
    controls::TextArray second_list;
    printing::Report report;
};

}  // namespace brimley::testing
