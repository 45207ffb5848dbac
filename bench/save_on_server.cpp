// What saving one three-line taxed invoice costs on a server, in wall time: through the form, beside bare
// prepared statements doing the same row writes in the same run, waited for one by one and in a pipeline, and
// once more with each counter and balance read before it is written; and through the form into a company that
// has no trail.
//
//   bench-save-on-server URI [SAVES [OTHER]]      URI: of a sample company, which is filled
//                                                 OTHER: where one without a trail is made
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <vector>

#include "bare_server_save.h"
#include "company/create.h"
#include "kernel/tables/company_tables.h"
#include "workload.h"

namespace {

using brimley::bench::BareSums;
using Clock = std::chrono::steady_clock;

template <class Act>
void take(std::vector<double>& samples, Act&& act) {
    const auto before = Clock::now();
    act();
    samples.push_back(std::chrono::duration<double, std::milli>(Clock::now() - before).count());
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const int saves = argc > 2 ? std::atoi(argv[2]) : 300;
    brimley::bench::BareServerSave bare(argv[1]);
    brimley::bench::FormSave form(argv[1]);
    std::vector<double> plain;
    std::vector<double> reading;
    std::vector<double> pipelined;
    std::vector<double> through_form;
    std::optional<brimley::bench::FormSave> form_without_trail;
    std::vector<double> without_trail;
    if (argc > 3) {
        brimley::company::create_company_file(argv[3], brimley::company::SampleCompany{"bench"},
                                              brimley::kernel::company_tables().of_layout(1));
        form_without_trail.emplace(argv[3]);
    }
    // In turns, so that all see the same machine; the first ones warm it.
    for (int i = -20; i < saves; ++i) {
        if (i == 0) {
            plain.clear();
            reading.clear();
            pipelined.clear();
            through_form.clear();
            without_trail.clear();
        }
        take(plain, [&] { bare.save(BareSums::in_the_engine); });
        take(reading, [&] { bare.save(BareSums::read_first); });
        take(pipelined, [&] { bare.save_in_a_pipeline(); });
        form.enter();
        take(through_form, [&] { form.save(); });
        if (!form_without_trail) continue;
        form_without_trail->enter();
        take(without_trail, [&] { form_without_trail->save(); });
    }
    fmt::print("wall milliseconds a save, medians of {}\n", saves);
    fmt::print("bare {:.3f}, bare that reads first {:.3f}, bare in a pipeline {:.3f}, form {:.3f}\n",
               median(plain), median(reading), median(pipelined), median(through_form));
    fmt::print("form to bare {:.2f}, to the bare one that reads first {:.2f}\n",
               median(through_form) / median(plain), median(through_form) / median(reading));
    if (form_without_trail)
        fmt::print("form without a trail {:.3f}, the trail costs {:.1f} %\n", median(without_trail),
                   100 * (median(through_form) / median(without_trail) - 1));
    return 0;
}
