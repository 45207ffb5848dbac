#include "printing/report_format.h"

#include <cmath>

namespace brimley::printing {

namespace {

// What a page of the file format may measure.
constexpr double kSizeMin = 3;
constexpr double kSizeMax = 14400;

std::string_view first_word(std::string_view text) { return text.substr(0, text.find(' ')); }

PageSize named_paper(std::string_view entry) {
    for (const NamedPaper& paper : kNamedPapers)
        if (controls::same_ignoring_case(first_word(entry), first_word(paper.entry))) return paper.page;
    return {};
}

void take_size(double& side, double points) {
    const double whole = std::nearbyint(points);
    if (whole >= kSizeMin && whole <= kSizeMax) side = whole;
}

PageSize typed_paper(double width, double height, std::string_view unit) {
    PageSize page;
    if (unit == "inch") {
        // The width of a page in inches has never reached the page: see docs/oddities.md.
        take_size(page.height, height * kPointsPerInch);
        return page;
    }
    take_size(page.width, points_of_mm(width));
    take_size(page.height, points_of_mm(height));
    return page;
}

// Empty also for a number that is longer than any paper.
std::optional<double> length_of(const store::Recordset& row, const char* field) {
    const store::Value value = row.field(field);
    if (value.is_null() || !(std::abs(value.number()) <= kSizeMax)) return std::nullopt;
    return value.number();
}

double margin(const store::Recordset& row, const char* field) {
    return points_of_mm(length_of(row, field).value_or(0));
}

// Letters and rows have at least a point.
double height_or(const store::Recordset& row, const char* field, double otherwise) {
    const double height = length_of(row, field).value_or(otherwise);
    return height >= 1 ? height : otherwise;
}

// Numbers outside what a colour can be keep their low 24 bits, as those of system colours do.
controls::Colour colour_of(const store::Recordset& row, const char* field) {
    const store::Value value = row.field(field);
    if (value.is_null() || !(std::abs(value.number()) < 1e15)) return 0;
    return static_cast<controls::Colour>(static_cast<std::int64_t>(value.number()) & 0xffffff);
}

ReportFormat format_of(const store::Recordset& row) {
    ReportFormat format;
    format.portrait = row.text("Orientation") == "1";
    format.page = page_size_of(
        {row.text("PaperSize"), length_of(row, "Width"), length_of(row, "Height"), row.text("unit")});
    format.font_name = row.text("font_name");
    format.font_size = height_or(row, "font_size", format.font_size);
    format.row_height = height_or(row, "row_height", format.row_height);
    format.top_margin = margin(row, "top_margin");
    format.bottom_margin = margin(row, "bottom_margin");
    format.left_margin = margin(row, "left_margin");
    format.right_margin = margin(row, "right_margin");
    format.font_colour = colour_of(row, "font_color");
    format.even_row_colour = colour_of(row, "evenrow_color");
    format.bold = row.flag("Bold");
    format.disabled_evenrow_color = row.flag("disabled_evenrow_color");
    format.use_grid_font = row.flag("use_grid_font");
    format.column_divider = row.flag("column_divider");
    return format;
}

}  // namespace

PageSize page_size_of(const Paper& paper) {
    if (!paper.name.empty() && paper.name != kUserDefinedPaper) return named_paper(paper.name);
    if (paper.width && paper.height && !paper.unit.empty())
        return typed_paper(*paper.width, *paper.height, paper.unit);
    return {};
}

std::optional<ReportFormat> read_report_format(kernel::ModuleG3& kernel, std::string_view user,
                                               std::string_view form_name) {
    std::optional<ReportFormat> format;
    kernel::carry_on(kernel.reasons(), "read the report's format", [&] {
        const store::Recordset row =
            kernel.find("Report_format_table", {{"user", user}, {"form_name", form_name}});
        if (!row.at_eof()) format = format_of(row);
    });
    return format;
}

}  // namespace brimley::printing
