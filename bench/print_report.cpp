// What printing a long list costs: a vendor aging list of 14 columns, 9 or 10 of them filled, as PDF.
//
//   bench-print-report [ROWS] [landscape] [grid-fonts] [thai]
//
// With "thai" the vendors' names, one in each row of its own, are in letters that need shaping.
#include <fmt/format.h>

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include "printing/report_file.h"

namespace {

using namespace brimley;

struct Column {
    const char* caption;
    int width;
    controls::Alignment alignment;
};

constexpr auto kLeft = controls::Alignment::left;
constexpr auto kRight = controls::Alignment::right;
constexpr auto kCentre = controls::Alignment::centre;
constexpr std::array kColumns{
    Column{"vendor no", 1100, kLeft},  Column{"vendor name", 2600, kLeft}, Column{"doc no", 1500, kLeft},
    Column{"invoice no", 1500, kLeft}, Column{"date", 1100, kCentre},      Column{"due date", 1100, kCentre},
    Column{"currency", 800, kCentre},  Column{"amount", 1400, kRight},     Column{"current", 1400, kRight},
    Column{"1-30", 1400, kRight},      Column{"31-60", 1400, kRight},      Column{"61-90", 1400, kRight},
    Column{"over 90", 1400, kRight},   Column{"days", 600, kRight},
};

std::string money(int cents) {
    const int units = cents / 100;
    const std::string thousands =
        units >= 1000 ? fmt::format("{},{:03}", units / 1000, units % 1000) : std::to_string(units);
    return fmt::format("{}.{:02}", thousands, cents % 100);
}

// The filled cells are counted.
std::int64_t fill(controls::TextArray& rows, int count, bool thai) {
    std::minstd_rand random(7);
    const auto any = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    std::int64_t cells = 0;
    rows.dimension(count);
    for (int row = 0; row < count; ++row) {
        const int vendor = any(3000);
        const int age = any(5);
        const std::string amount = money(any(10'000'000));
        const auto date = [&] {
            return fmt::format("{:02}/{:02}/20{}", 1 + any(28), 1 + any(12), 24 + any(3));
        };
        std::array<std::string, 10> texts{
            fmt::format("V{:05}", vendor),
            thai ? fmt::format("บริษัทการค้า {}", row) : fmt::format("Vendor of office goods no. {}", vendor),
            fmt::format("IP-26-{:07}", row + 1),
            fmt::format("R-{}", 1'000'000 + any(9'000'000)),
            date(),
            date(),
            "USD",
            amount,
            amount,
            std::to_string(any(200))};
        std::vector<controls::TextArray::CellText> shown;
        for (int i = 0; i < 8; ++i)
            shown.push_back({i, texts[static_cast<std::size_t>(i)]});
        shown.push_back({8 + age, texts[8]});
        if (age > 0) shown.push_back({13, texts[9]});
        rows.set_row(row, shown);
        cells += static_cast<std::int64_t>(shown.size());
    }
    return cells;
}

printing::Report aging_report(const controls::TextArray& rows, bool portrait) {
    printing::Report report;
    report.format.portrait = portrait;
    report.format.page = {595, 842};
    report.format.font_size = 6;
    report.format.row_height = 12;
    report.format.top_margin = report.format.bottom_margin = 60;
    report.format.left_margin = report.format.right_margin = 28;
    report.format.even_row_colour = controls::rgb(230, 240, 250);
    report.company_name = "Brimley Trading Company";
    report.title = "VENDOR AGING REPORT";
    report.print_date = "16/03/2026";
    report.grids.push_back({{}, &rows});
    for (const Column& column : kColumns) {
        printing::PrintedColumn printed;
        printed.column = static_cast<int>(report.grids[0].columns.size());
        printed.caption = column.caption;
        printed.width = column.width;
        printed.alignment = column.alignment;
        report.grids[0].columns.push_back(printed);
    }
    return report;
}

// Draws nothing and counts the pages.
class PageCount : public printing::PdfCanvas {
  public:
    void set_font(const controls::FontStyle&) override {}
    void set_colour(controls::Colour) override {}
    void text(const printing::Rectangle&, double, std::string_view) override {}
    void fill(const printing::Rectangle&) override {}
    void line(double, double, double, double, double) override {}
    void new_page() override { ++pages; }

    int pages = 1;
};

// Megabytes: resident now, and at most since the last look.
double memory(const char* name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word)
        if (word == name) status >> kilobytes;
    return kilobytes / 1024;
}
void forget_peak() { std::ofstream("/proc/self/clear_refs") << "5"; }

double cpu_seconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::stoi(argv[1]) : 1'000'000;
    const auto asked = [&](std::string_view word) {
        return std::find(argv + 1, argv + argc, word) != argv + argc;
    };
    const bool portrait = !asked("landscape");
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    controls::TextArray list;
    const std::int64_t filled = fill(list, rows, asked("thai"));
    printing::Report report = aging_report(list, portrait);
    report.format.use_grid_font = asked("grid-fonts");
    for (printing::PrintedColumn& column : report.grids[0].columns)
        column.font.size = 6;

    forget_peak();
    const double before = memory("VmRSS:");
    const double cpu_before = cpu_seconds();
    const auto start = std::chrono::steady_clock::now();
    const std::string stem = (folder / "bench-print-report").string();
    const printing::ReportFile file = printing::write_report(report, stem);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double cpu = cpu_seconds() - cpu_before;
    if (!file.written) {
        fmt::print(stderr, "not written: {}\n", file.failure);
        return 1;
    }
    fmt::print("{} rows, {}: {:.2f} s, of CPU {:.2f} s\n", rows, portrait ? "portrait" : "landscape", seconds,
               cpu);
    fmt::print("filled cells a second  {:>10.0f}\n", static_cast<double>(filled) / seconds);
    fmt::print("all cells a second     {:>10.0f}\n", 14.0 * rows / seconds);
    fmt::print("list {:.0f} MB, beyond it {:.1f} MB at most\n", before, memory("VmHWM:") - before);
    PageCount counted;
    printing::draw_report(report, counted);
    fmt::print("{} pages, {:.1f} MB of PDF\n", counted.pages,
               static_cast<double>(std::filesystem::file_size(stem + ".pdf")) / 1e6);
    std::filesystem::remove(stem + ".pdf");
    std::filesystem::remove(stem + "_L.pdf");
    return 0;
}
