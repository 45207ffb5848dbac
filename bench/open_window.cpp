// How long a bookkeeper waits for the invoice window: from the start of the show method until the window is
// painted, and from the key that ends a cell until the next one can be typed in. Wall time, without a screen.
//
//   bench-open-window [STORED] [FOLDER]
#include <fmt/format.h>

#include <QApplication>
#include <QTest>
#include <chrono>

#include "bench_company.h"
#include "desktop/desktop_desk.h"
#include "desktop/form_window.h"
#include "desktop/grid_view.h"
#include "host/apclass.h"
#include "invoices/apform_invoice.h"
#include "opening/host_options.h"
#include "workload.h"

namespace {

using namespace brimley;

template <class Act>
double ms_of(const Act& act) {
    const auto before = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - before).count();
}

void fill(const std::string& company, int stored) {
    bench::FormSave form(company);
    form.enter();
    form.save();
    bench::BareSave bare(company);
    bare.fill_up_to(stored);
    bare.count_copies();
}

// A cell typed in and left: once through the window, and the handlers of the same edit alone.
void measure_typing(desktop::FormWindow& window, host::APclass& ap) {
    window.press(105);
    window.settle();
    auto& grid = ap.frm_invoice->dbgrid1;
    auto& view = dynamic_cast<desktop::GridView&>(*window.view(grid));
    const int column = grid.get_column("gross amount");
    const auto type = [&](int row) {
        QApplication::setActiveWindow(&window);
        view.setFocus();
        view.setCurrentIndex(view.model()->index(row, column));
        QTest::keyClick(&view, Qt::Key_F2);
        QTest::keyClicks(view.indexWidget(view.currentIndex()), "125.00");
        return ms_of([&] {
            QTest::keyClick(view.indexWidget(view.currentIndex()), Qt::Key_Return);
            view.grab();
        });
    };
    type(0);
    const double in_window = type(1);
    const double handlers = ms_of([&] { static_cast<void>(grid.edit_cell(2, column, "125.00")); });
    fmt::print("a cell left and painted: {:.1f} ms, its handlers alone: {:.1f} ms\n", in_window, handlers);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const bench::Arguments arguments{argc, argv};
    const int stored = arguments.number(1, 100'000);
    const bench::BenchCompany company(arguments.folder(2), fmt::format("bench-window-{}", stored));
    fill(company.path(), stored);
    opening::HostOptions options;
    options.user = "anna";
    desktop::DesktopDesk desk;
    host::APclass ap(desk);
    static_cast<frame::HostContext&>(ap) = opening::open_context(company.path(), options);
    for (const char* which : {"first", "second"}) {
        const double shown = ms_of([&] {
            ap.showform_APform_invoice();
            desk.windows().back()->grab();
        });
        fmt::print("{} window on {} documents: {:.1f} ms\n", which, stored, shown);
    }
    measure_typing(*desk.windows().back(), ap);
    return 0;
}
