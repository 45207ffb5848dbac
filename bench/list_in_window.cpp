// How long a bookkeeper waits for the vendor aging in its window: from Find until the first rows are painted,
// and until the last row is on the screen after that; and how long the window was silent meanwhile at most.
// Wall time, without a screen.
//
//   bench-list-in-window [ITEMS] [FOLDER]
#include <fmt/format.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>

#include "aging_items.h"
#include "bench_company.h"
#include "desktop/desktop_desk.h"
#include "desktop/form_window.h"
#include "desktop/grid_view.h"
#include "host/apclass.h"
#include "inquiries/apreport_aging.h"
#include "opening/host_options.h"

namespace {

using namespace brimley;
using Clock = std::chrono::steady_clock;

double ms_since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

template <class Act>
double ms_of(const Act& act) {
    const auto start = Clock::now();
    act();
    return ms_since(start);
}

// The longest time between two moments in which the window could do something.
class Silence {
  public:
    Silence() {
        timer_.callOnTimeout([this] { note(); });
        timer_.start(0);
    }
    void note() {
        longest_ = std::max(longest_, ms_since(last_));
        last_ = Clock::now();
    }
    [[nodiscard]] double longest_ms() const { return longest_; }

  private:
    QTimer timer_;
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
};

void measure(host::APclass& ap, desktop::DesktopDesk& desk, int items) {
    ap.showform_APform_aging();
    desktop::FormWindow& window = *desk.windows().back();
    window.grab();
    auto& view = dynamic_cast<desktop::GridView&>(*window.view(ap.frm_aging->dbgrid1));
    for (const char* which : {"first", "second"}) {
        Silence silence;
        const double filled = ms_of([&] {
            window.press(104);
            silence.note();
            window.settle();
            QApplication::processEvents();
            window.grab();
        });
        const double scrolled = ms_of([&] {
            view.scrollToBottom();
            window.grab();
        });
        fmt::print(
            "{} list of {} items: on the screen after {:.1f} ms, at its end {:.1f} ms later, silent "
            "for {:.1f} ms at most\n",
            which, items, filled, scrolled, silence.longest_ms());
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const bench::Arguments arguments{argc, argv};
    const int items = arguments.number(1, 1'000);
    const bench::BenchCompany company(arguments.folder(2), "bench-list-in-window");
    bench::AgingItems(company.path()).fill(items, 0);
    opening::HostOptions options;
    options.user = "anna";
    desktop::DesktopDesk desk;
    host::APclass ap(desk);
    static_cast<frame::HostContext&>(ap) = opening::open_context(company.path(), options);
    measure(ap, desk, items);
    return 0;
}
