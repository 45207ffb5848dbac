// How a user wants a form's report on paper: one row of Report_format_table, as the print reads it.
//
// Lengths are points here; the table has margins in millimetres and the page in millimetres or inches. What
// the row leaves null, and what it gives in numbers that no paper has, is filled by the rules beside each
// member. Reading never fails: a row that cannot be read counts as none.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "controls/control.h"
#include "kernel/module_g3.h"

namespace brimley::printing {

// The size of the upright page.
struct PageSize {
    double width = 612;
    double height = 792;

    bool operator==(const PageSize&) const = default;
};

inline constexpr double kPointsPerInch = 72;

constexpr double points_of_mm(double mm) { return mm * kPointsPerInch / 25.4; }

struct ReportFormat {
    bool portrait = false;   // only the orientation "1" is; null is landscape
    PageSize page;           // null: the default page, as for an unknown paper
    std::string font_name;   // null: a blank name, for which the report has kDefaultFont
    double font_size = 10;   // null: 10, as the page setup fills it
    double row_height = 20;  // null: 20, as the page setup fills it
    double top_margin = 0;   // null: none; and so below
    double bottom_margin = 0;
    double left_margin = 0;
    double right_margin = 0;
    controls::Colour font_colour = 0;      // null: black
    controls::Colour even_row_colour = 0;  // null: black, as the number 0 that it counts for
    bool bold = false;                     // null is no, here and below
    bool disabled_evenrow_color = false;
    bool use_grid_font = false;
    bool column_divider = false;

    bool operator==(const ReportFormat&) const = default;
};

inline constexpr const char* kDefaultFont = "Arial";

// A paper by its name, with its size as a page setup shows it and in points.
struct NamedPaper {
    const char* entry;
    const char* width;
    const char* height;
    const char* unit;
    PageSize page;
};
inline constexpr std::array kNamedPapers{
    NamedPaper{"A4 (210x297 mm)", "210", "297", "mm", {595, 842}},
    NamedPaper{"A5 (148x210 mm)", "148", "210", "mm", {420, 595}},
    NamedPaper{"LETTER (8.5x11 in.)", "8.5", "11", "inch", {612, 792}},
    NamedPaper{"LEGAL (8.5x14 in.)", "8.5", "14", "inch", {612, 1008}},
    NamedPaper{"B5 (182x257 mm)", "182", "257", "mm", {516, 729}},
};
inline constexpr const char* kUserDefinedPaper = "User defined paper size";

// What stands in the paper fields of the row; empty for null.
struct Paper {
    std::string name;  // "A4 (210x297 mm)"
    std::optional<double> width;
    std::optional<double> height;
    std::string unit;  // "mm" or "inch"
};

// A known paper by its first word, in any case; otherwise width and height in the unit, each to the whole
// point. In inches only the height is taken. A size that no page can have leaves the default page as it is.
[[nodiscard]] PageSize page_size_of(const Paper& paper);

// The row of user and form; empty when there is none.
[[nodiscard]] std::optional<ReportFormat> read_report_format(kernel::ModuleG3& kernel, std::string_view user,
                                                             std::string_view form_name);

}  // namespace brimley::printing
