#include "printing/grid_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "printing/page_geometry.h"

namespace brimley::printing {

namespace {

using controls::Alignment;
using controls::TextArray;

constexpr double kRuleWidth = 1;
constexpr double kFillInset = 0.5;
constexpr double kPageNumberWidth = 100;
constexpr double kGapBetweenGrids = 2;  // row heights
// From the upper rule of a grid's header down to F, in row heights.
constexpr double kHeaderAboveF = 3;
// The columns that decide whether a row is the last.
constexpr int kLastRowColumns[] = {2, 3};

bool is_blank(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

// A grid with what is computed once for all its pages.
struct LaidOutGrid {
    const ReportGrid* grid;
    int rows;
    std::vector<PrintedColumn> columns;
    std::vector<ColumnPlace> places;
    std::vector<double> caption_places;
};

LaidOutGrid lay_out(const ReportGrid& grid, const PageGeometry& page) {
    LaidOutGrid laid_out{&grid, printed_rows(grid), grid.columns, {}, {}};
    laid_out.columns.resize(std::min(grid.columns.size(), kColumnsMax));
    std::vector<int> widths;
    std::vector<Alignment> alignments;
    for (const PrintedColumn& column : laid_out.columns) {
        widths.push_back(column.width);
        alignments.push_back(column.alignment);
    }
    laid_out.places = calculate_column_visible_width(widths, page.width, page.left);
    laid_out.caption_places = caption_hpos(alignments, laid_out.places);
    return laid_out;
}

// Rows of one grid that stand on one page.
struct Part {
    std::size_t grid;
    int first_row;
    int rows;
    bool on_new_page;
    RowsOnPage place;

    [[nodiscard]] double lower_edge() const { return place.row_y(rows - 1); }
};

class ReportPages {
  public:
    ReportPages(const Report& report, PdfCanvas& canvas)
        : report_(report), canvas_(canvas), page_(report.format) {
        for (const ReportGrid& grid : report.grids)
            grids_.push_back(lay_out(grid, page_));
    }

    void draw() {
        total_pages_ = count_pages();
        begin_page();
        for (std::optional<Part> part = first_part(); part; part = part_after(*part)) {
            if (part->on_new_page) {
                close_page();
                canvas_.new_page();
                begin_page();
            }
            draw_part(*part);
        }
        close_page();
    }

  private:
    // --- which rows stand where ---

    [[nodiscard]] RowsOnPage below_head() const {
        return {page_.top - report_.head_row_heights * page_.row_height, page_.row_height};
    }
    [[nodiscard]] std::optional<Part> first_part() const {
        if (grids_.empty()) return std::nullopt;
        // Page 1 may be so low that it has no row at all.
        return Part{0, 0, below_head().that_fit(grids_[0].rows, page_.bottom), false, below_head()};
    }
    [[nodiscard]] std::optional<Part> part_after(const Part& part) const {
        const int next_row = part.first_row + part.rows;
        if (next_row < grids_[part.grid].rows) return on_new_page(part.grid, next_row);
        if (part.grid + 1 == grids_.size()) return std::nullopt;
        return next_grid_after(part);
    }
    // A new page has one row at least, however low it is.
    [[nodiscard]] Part on_new_page(std::size_t grid, int first_row) const {
        const int left = grids_[grid].rows - first_row;
        const int fit = below_head().that_fit(left, page_.bottom);
        return {grid, first_row, std::max(fit, std::min(left, 1)), true, below_head()};
    }
    [[nodiscard]] Part next_grid_after(const Part& part) const {
        const std::size_t grid = part.grid + 1;
        const double down = (kGapBetweenGrids + kHeaderAboveF) * page_.row_height;
        const RowsOnPage place{part.lower_edge() - down, page_.row_height};
        if (place.row_y(0) < page_.bottom) return on_new_page(grid, 0);
        return {grid, 0, place.that_fit(grids_[grid].rows, page_.bottom), false, place};
    }
    // One and the last row's index by the rows of a page, where there is one grid.
    [[nodiscard]] int count_pages() const {
        int pages = 1;
        for (std::optional<Part> part = first_part(); part; part = part_after(*part))
            pages += part->on_new_page ? 1 : 0;
        return pages;
    }

    // --- drawing ---

    void use_format_font() {
        const ReportFormat& format = report_.format;
        canvas_.set_font({.name = is_blank(format.font_name) ? kDefaultFont : format.font_name,
                          .size = format.font_size,
                          .bold = format.bold});
        canvas_.set_colour(format.font_colour);
    }
    void begin_page() {
        use_format_font();
        acrobat_report_header();
    }

    void pdf_text_in_rect(const HeadLine& texts, int line) {
        const auto slots = line_slots(page_, line, texts.middle_hpos);
        write(slots[0], kLeft, texts.left);
        write(slots[1], texts.middle_hpos, texts.middle);
        write(slots[2], kRight, texts.right);
    }
    void write(const Rectangle& rectangle, double hpos, std::string_view text) {
        if (!is_blank(text)) canvas_.text(rectangle, hpos, text);
    }
    void rule(double y) { canvas_.line(kRuleWidth, page_.left, y, page_.right, y); }

    void acrobat_report_header() {
        pdf_text_in_rect({"", report_.company_name, ""}, 1);
        pdf_text_in_rect({"", report_.title, "print : " + report_.print_date}, 2);
        int line = 2;
        for (const HeadLine& texts : report_.head_lines)
            pdf_text_in_rect(texts, ++line);
        if (report_.rule_below_head) rule(line_slots(page_, line, kCentre)[0].y);
    }

    void draw_column_visible_header(const LaidOutGrid& grid, double header_top) {
        const double y = header_top - page_.row_height;
        rule(header_top);
        rule(y);
        for (std::size_t i = 0; i < grid.columns.size(); ++i)
            write(cell(grid.places[i], y).inset(page_.text_inset), grid.caption_places[i],
                  grid.columns[i].caption);
    }

    [[nodiscard]] Rectangle cell(const ColumnPlace& place, double y) const {
        return {place.x, y, place.width, page_.row_height};
    }

    void draw_part(const Part& part) {
        const LaidOutGrid& grid = grids_[part.grid];
        draw_column_visible_header(grid, part.place.header_top());
        acrobat_report_details(grid, part);
        use_format_font();
        if (report_.format.column_divider) draw_dividers(grid, part);
    }
    void acrobat_report_details(const LaidOutGrid& grid, const Part& part) {
        for (int k = 0; k < part.rows; ++k) {
            const bool even = k % 2 == 1;  // the first row of a page is row 1
            const double y = part.place.row_y(k);
            if (even && !report_.format.disabled_evenrow_color) fill_row(grid, y);
            draw_row(grid, part.first_row + k, y);
        }
    }
    void fill_row(const LaidOutGrid& grid, double y) {
        canvas_.set_colour(report_.format.even_row_colour);
        for (const ColumnPlace& place : grid.places)
            canvas_.fill(cell(place, y).inset(kFillInset));
        canvas_.set_colour(report_.format.font_colour);
    }
    void draw_row(const LaidOutGrid& grid, int row, double y) {
        for (std::size_t i = 0; i < grid.columns.size(); ++i) {
            const PrintedColumn& column = grid.columns[i];
            const std::string_view text = grid.grid->rows->get(row, column.column);
            if (is_blank(text)) continue;
            if (report_.format.use_grid_font) {
                canvas_.set_font(column.font);
                canvas_.set_colour(column.font_colour);
            }
            canvas_.text(cell(grid.places[i], y).inset(page_.text_inset), hpos_of(column.alignment), text);
        }
    }
    void draw_dividers(const LaidOutGrid& grid, const Part& part) {
        if (grid.places.empty()) return;
        const auto divider = [&](double x) {
            canvas_.line(kRuleWidth, x, part.place.header_top(), x, part.lower_edge());
        };
        for (const ColumnPlace& place : grid.places)
            divider(place.x);
        divider(grid.places.back().x + grid.places.back().width);
    }

    void close_page() {
        const Rectangle number{page_.right - kPageNumberWidth, page_.bottom - 2 * page_.row_height,
                               kPageNumberWidth, page_.row_height};
        canvas_.text(number, kRight, fmt::format("{}/{}", ++page_number_, total_pages_));
    }

    const Report& report_;
    PdfCanvas& canvas_;
    PageGeometry page_;
    std::vector<LaidOutGrid> grids_;
    int page_number_ = 0;
    int total_pages_ = 1;
};

}  // namespace

PrintedColumn printed_column(const controls::Grid& grid, int column) {
    const controls::GridColumn& shown = grid.columns.at(column);
    return {column, shown.caption, shown.width, shown.alignment, shown.font, shown.font_colour};
}

int printed_rows(const ReportGrid& grid) {
    if (!grid.rows || grid.columns.empty()) return 0;
    for (int rows = grid.rows->used_rows(); rows > 0; --rows)
        for (const int column : kLastRowColumns)
            if (!is_blank(grid.rows->get(rows - 1, column))) return rows;
    return 0;
}

void draw_report(const Report& report, PdfCanvas& canvas) { ReportPages(report, canvas).draw(); }

}  // namespace brimley::printing
