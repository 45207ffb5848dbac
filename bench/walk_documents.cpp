// What leafing through documents costs, on companies of different sizes: the commands Previous, Next and
// Last, each showing a three-line invoice, by key and in "Open Invoice Only" with every document open.
//
//   bench-walk-documents [STEPS] [FOLDER] [STORED...]
#include <fmt/format.h>

#include <ctime>
#include <stdexcept>

#include "bench_company.h"
#include "bench_host.h"
#include "workload.h"

namespace {

using brimley::bench::BareSave;
using brimley::bench::BenchHost;
using brimley::bench::FormSave;
using brimley::bench::must;

double cpu_us() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

// Microseconds a step. Every step must show another document, unless it goes to the last one.
double per_step(BenchHost& host, int command, int steps) {
    const auto& shown = host.form().txtdocno;
    std::string before_step = shown.text();
    const double before = cpu_us();
    for (int i = 0; i < steps; ++i) {
        must(host.form().press(command));
        if (command != 109 && shown.text() == before_step) throw std::runtime_error("the walk stands still");
        before_step = shown.text();
    }
    return (cpu_us() - before) / steps;
}

void measure(const std::string& company, int stored, int steps) {
    BenchHost host(company);
    for (const bool open_only : {false, true}) {
        // By key the walk begins at the newest document, in the list at the oldest, to which "next" leads.
        must(host.form().press(open_only ? 1013 : 1012));
        must(host.form().press(109));
        (void)per_step(host, 107, 5);  // statements prepared
        (void)per_step(host, 108, 5);
        const double previous = per_step(host, 107, steps);
        const double next = per_step(host, 108, steps);
        const double last = per_step(host, 109, steps);
        fmt::print("{:>8} {:>10} {:>10.1f} {:>10.1f} {:>10.1f}\n", stored, open_only ? "open only" : "all",
                   previous, next, last);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    const int steps = arguments.number(1, 60);
    fmt::print("microseconds of CPU a step, {} steps each\n", steps);
    fmt::print("{:>8} {:>10} {:>10} {:>10} {:>10}\n", "stored", "view", "previous", "next", "last");
    for (const int stored : arguments.sizes(3, {100, 10'000, 100'000})) {
        const brimley::bench::BenchCompany company(arguments.folder(2), fmt::format("bench-walk-{}", stored));
        {
            FormSave form(company.path());
            form.enter();
            form.save();
            BareSave bare(company.path());
            bare.fill_up_to(stored);
            bare.count_copies();
        }
        measure(company.path(), stored, steps);
    }
    return 0;
}
