// What looks wrong in revaluations and is intended.
//
// Items and selection are what the form showed at the save, the summary is what the last whole run came to:
// an entry that was changed after the run is stored beside what does not belong to it, and several selection
// rows leave the items of the last one alone.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "company/check.h"
#include "company/revaluations.h"

namespace brimley::company {

namespace {

struct Totals {
    double gains = 0;
    double losses = 0;
};

// A whole run's credits are its gains, and what payable accounts have lost beside them.
bool may_come_from(const std::vector<RevaluedItem>& items, const std::vector<RevaluationSum>& summary) {
    std::map<std::string, Totals> of_items;
    for (const RevaluedItem& item : items) {
        Totals& totals = of_items[item.currency];
        (item.gain > 0 ? totals.gains : totals.losses) += std::abs(item.gain);
    }
    std::map<std::string, Totals> of_summary;
    for (const RevaluationSum& row : summary) {
        Totals& totals = of_summary[row.currency];
        (row.amount < 0 ? totals.gains : totals.losses) += std::abs(row.amount);
    }
    const auto lies_between = [](double sum, double least, double most) {
        return !differ(std::clamp(sum, least, most), sum);
    };
    return std::ranges::all_of(of_summary, [&](const auto& each) {
        const Totals& totals = of_items[each.first];
        const double most = totals.gains + totals.losses;
        return lies_between(each.second.gains, totals.gains, most) &&
               lies_between(each.second.losses, totals.losses, most);
    });
}

bool is_valued_by(const RevaluedItem& item, const std::vector<RevaluationSelection>& selection) {
    return std::ranges::any_of(selection, [&](const RevaluationSelection& row) {
        // An amount of half a cent is stored as it was shown.
        const double slack = 0.01 + std::abs(row.rate) * 0.005;
        return row.currency == item.currency && std::abs(item.amount * row.rate - item.new_base) < slack;
    });
}

}  // namespace

void note_revaluations(const Books& books, Findings& notes) {
    const Revaluations revaluations(books);
    for (const auto& [fkey, run] : revaluations.runs()) {
        const std::string name = name_of(run);
        std::set<std::string> currencies;
        for (const RevaluationSum& row : run.summary)
            currencies.insert(row.currency);
        if (run.selection.size() > 1)
            notes.push_back(fmt::format("{} has {} selection rows, and the items of the last one alone", name,
                                        run.selection.size()));
        if (currencies.size() > 1)
            notes.push_back(
                fmt::format("{} posted what {} currencies came to together", name, currencies.size()));
        if (run.selection.size() <= 1 && !may_come_from(run.items, run.summary))
            notes.push_back(name + ": its G/L summary is not what its items come to");
        const auto other =
            std::ranges::count_if(run.items, [&selection = run.selection](const RevaluedItem& item) {
                return !is_valued_by(item, selection);
            });
        if (other > 0)
            notes.push_back(
                fmt::format("{}: {} of its items are not valued at a rate of its selection", name, other));
    }
}

}  // namespace brimley::company
