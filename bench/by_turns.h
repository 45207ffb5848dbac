// Two ways of doing the same, measured by turns.
#pragma once

#include <fmt/format.h>
#include <sys/resource.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bare_connection.h"

namespace brimley::bench {

// The medians of the rounds, in which both are run by turns.
struct Medians {
    double bare = 0;
    double form = 0;
};
template <class BareWork, class FormWork>
Medians medians_of(int rounds, const BareWork& bare_work, const FormWork& form_work) {
    std::vector<double> bare;
    std::vector<double> form;
    for (int i = 0; i < rounds; ++i) {
        const double start = cpu_ms();
        bare_work();
        const double between = cpu_ms();
        form_work();
        bare.push_back(between - start);
        form.push_back(cpu_ms() - between);
    }
    std::sort(bare.begin(), bare.end());
    std::sort(form.begin(), form.end());
    return {bare[bare.size() / 2], form[form.size() / 2]};
}

// The most memory that the program has had so far.
inline double peak_megabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

// Long lists are measured in fewer rounds.
inline int rounds_for(int rows) { return rows > 100'000 ? 3 : kRounds; }

inline void print_medians(const std::string& what, const Medians& ms) {
    fmt::print("{}: bare {:.1f} ms, form {:.1f} ms, ratio {:.2f}, peak {:.0f} MB\n", what, ms.bare, ms.form,
               ms.form / ms.bare, peak_megabytes());
}

}  // namespace brimley::bench
