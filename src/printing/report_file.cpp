#include "printing/report_file.h"

#include <exception>
#include <filesystem>
#include <utility>

#include "printing/cairo_canvas.h"
#include "printing/page_rotation.h"

namespace brimley::printing {

namespace {

// A file that grows beside its place. It goes away, there and beside it, unless it is to stay.
class GrowingFile {
  public:
    explicit GrowingFile(std::string place) : place_(std::move(place)), path_(place_ + ".part") {}
    ~GrowingFile() {
        std::error_code ignored;
        if (!stays_) std::filesystem::remove(path_, ignored);
    }
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    void move_to_its_place() {
        std::filesystem::rename(path_, place_);
        path_ = place_;
    }
    void stay() { stays_ = true; }

  private:
    std::string place_;
    std::string path_;
    bool stays_ = false;
};

void write_pages(const Report& report, const std::string& path) {
    using enum CairoCanvas::Orientation;
    CairoCanvas canvas(path, report.format.page, report.format.portrait ? portrait : landscape);
    draw_report(report, canvas);
    canvas.finish();
}

// A copy of the pages, not turned yet, that is turned the other way.
void write_other_way(const GrowingFile& file, GrowingFile& other_way) {
    std::filesystem::copy_file(file.path(), other_way.path(),
                               std::filesystem::copy_options::overwrite_existing);
    append_rotation(other_way.path(), -90);
}

void write_files(const Report& report, const std::string& stem) {
    GrowingFile file(stem + ".pdf");
    GrowingFile other_way(stem + "_L.pdf");
    write_pages(report, file.path());
    if (!report.format.portrait) {
        write_other_way(file, other_way);
        append_rotation(file.path(), 90);
        other_way.move_to_its_place();
    }
    file.move_to_its_place();
    file.stay();
    other_way.stay();
}

}  // namespace

ReportFile write_report(const Report& report, const std::string& stem) {
    try {
        write_files(report, stem);
        return {true, {}};
    } catch (const std::runtime_error& failure) {
        return {false, failure.what()};
    }
}

}  // namespace brimley::printing
