#include "printing/report_file.h"

#include <exception>
#include <filesystem>
#include <utility>

#include "printing/cairo_canvas.h"
#include "printing/page_rotation.h"

namespace brimley::printing {

namespace {

// A file that grows beside its place, and goes away unless it has moved there.
class GrowingFile {
  public:
    explicit GrowingFile(std::string place) : place_(std::move(place)), path_(place_ + ".part") {}
    ~GrowingFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    void move_to_its_place() const { std::filesystem::rename(path_, place_); }

  private:
    std::string place_;
    std::string path_;
};

void write_pages(const Report& report, const std::string& path) {
    using enum CairoCanvas::Orientation;
    CairoCanvas canvas(path, report.format.page, report.format.portrait ? portrait : landscape);
    draw_report(report, canvas);
    canvas.finish();
}

void write_files(const Report& report, const std::string& stem) {
    const GrowingFile file(stem + ".pdf");
    write_pages(report, file.path());
    if (report.format.portrait) return file.move_to_its_place();

    const GrowingFile other_way(stem + "_L.pdf");
    std::filesystem::copy_file(file.path(), other_way.path(),
                               std::filesystem::copy_options::overwrite_existing);
    append_rotation(file.path(), 90);
    append_rotation(other_way.path(), -90);
    other_way.move_to_its_place();
    file.move_to_its_place();
}

}  // namespace

ReportFile write_report(const Report& report, const std::string& stem) noexcept {
    try {
        write_files(report, stem);
        return {true, {}};
    } catch (const std::exception& failure) {
        return {false, failure.what()};
    }
}

}  // namespace brimley::printing
