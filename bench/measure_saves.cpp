#include "measure_saves.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iostream>
#include <vector>

#include "bench_company.h"

namespace brimley::bench {

namespace {

using Clock = std::chrono::steady_clock;

double cpu_ms() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double wall_ms() {
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
}

struct Samples {
    std::vector<double> cpu;
    std::vector<double> wall;

    template <class Act>
    void take(Act&& act) {
        const double cpu_before = cpu_ms();
        const double wall_before = wall_ms();
        act();
        cpu.push_back(cpu_ms() - cpu_before);
        wall.push_back(wall_ms() - wall_before);
    }
    static double median(std::vector<double> values) {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }
    [[nodiscard]] double mean_cpu() const {
        double sum = 0;
        for (const double value : cpu)
            sum += value;
        return sum / static_cast<double>(cpu.size());
    }
};

// By how much the median of the one lies above that of the other.
double more_in_percent(const std::vector<double>& one, const std::vector<double>& other) {
    return 100 * (Samples::median(one) / Samples::median(other) - 1);
}

// without_trail: a company of the layout before trails.
void measure(const std::string& company, const std::string& without_trail, BareDocument document,
             std::int64_t stored, int saves) {
    BareSave bare(company, document);
    FormSave form(company, document);
    BareSave other_bare(without_trail, document);
    FormSave other_form(without_trail, document);
    for (int i = 0; i < 20; ++i) {  // statements prepared, caches warm
        for (BareSave* each : {&bare, &other_bare})
            each->save();
        for (FormSave* each : {&form, &other_form}) {
            each->enter();
            each->save();
        }
    }
    bare.fill_up_to(stored);
    other_bare.fill_up_to(stored);
    Samples bare_saves;
    Samples reading_saves;
    Samples entries;
    Samples form_saves;
    Samples saves_without_trail;
    // In turns, so that all see the same machine, and a file that somebody else has written to since.
    const auto save_form = [&] {
        entries.take([&] { form.enter(); });
        form_saves.take([&] { form.save(); });
    };
    const auto save_other_form = [&] {
        other_bare.save();
        other_form.enter();
        saves_without_trail.take([&] { other_form.save(); });
    };
    for (int i = 0; i < saves; ++i) {
        bare_saves.take([&] { bare.save(); });
        save_form();
        save_other_form();
        reading_saves.take([&] { bare.save(BareSums::read_first); });
        save_form();
        save_other_form();
    }
    fmt::print(
        "{:>8} {:>9.3f} {:>9.3f} {:>9.3f} {:>9.2f} {:>9.2f} {:>9.3f} {:>9.3f} {:>9.3f} {:>9.1f} {:>9.1f}\n",
        stored, bare_saves.mean_cpu(), reading_saves.mean_cpu(), form_saves.mean_cpu(),
        form_saves.mean_cpu() / bare_saves.mean_cpu(), form_saves.mean_cpu() / reading_saves.mean_cpu(),
        Samples::median(form_saves.wall), entries.mean_cpu(), saves_without_trail.mean_cpu(),
        more_in_percent(form_saves.cpu, saves_without_trail.cpu),
        more_in_percent(form_saves.wall, saves_without_trail.wall));
}

}  // namespace

int measure_saves(int argc, char** argv, BareDocument document) {
    const Arguments arguments{argc, argv};
    const int saves = arguments.number(1, 500);
    fmt::print(
        "milliseconds of CPU a save, {} saves each; bare = prepared statements, reading = the same, each "
        "counter and balance read first, form = Save command\n",
        saves);
    fmt::print("{:>8} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9}\n", "stored", "bare",
               "reading", "form", "to bare", "to read.", "form wall", "entry", "no trail", "trail, %",
               "wall, %");
    for (const int stored : arguments.sizes(3, {100, 10'000, 100'000})) {
        const BenchCompany company(arguments.folder(2), fmt::format("bench-{}", stored));
        const BenchCompany older(arguments.folder(2), fmt::format("bench-{}-older", stored),
                                 kernel::company_tables().of_layout(1));
        measure(company.path(), older.path(), document, stored, saves);
    }
    return 0;
}

}  // namespace brimley::bench
