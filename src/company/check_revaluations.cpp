// The rows of revaluations: numbers, selection and items.
#include <fmt/format.h>

#include <cmath>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/revaluations.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;

constexpr double kSlack = 1e-9;  // of what doubles do not hold exactly

// Those of invoices and of prepayments, whose items are valued too.
std::unordered_set<std::string> document_numbers(const Books& books) {
    std::unordered_set<std::string> numbers;
    books.each_ap_header([&](const ApHeader& header) { numbers.insert(header.docno); });
    books.each_payment([&](const PaymentHeader& payment) {
        if (payment.doctype == "pp") numbers.insert(payment.docno);
    });
    return numbers;
}

template <class Row>
void judge_numbers(const Revaluation& run, const std::vector<Row>& rows, const char* what,
                   Findings& findings) {
    for (const Row& row : rows)
        if (row.docno != run.docno)
            findings.push_back(fmt::format("{}: one of its {} is of {}, not of {}", name_of(run), what,
                                           shown_text(row.docno), shown_text(run.docno)));
}

void judge_selection(const Revaluation& run, Findings& findings) {
    for (const RevaluationSelection& row : run.selection) {
        const int chosen =
            (row.every_vendor ? 1 : 0) + (row.vendor_group.empty() ? 0 : 1) + (row.vendor_no.empty() ? 0 : 1);
        if (row.currency.empty())
            findings.push_back(name_of(run) + " has a selection row without a currency");
        if (chosen != 1)
            findings.push_back(
                fmt::format("{}: a selection row in {} names {} every vendor, a group and one vendor",
                            name_of(run), shown_text(row.currency), chosen == 0 ? "none of" : "several of"));
    }
}

// What is stored of an item's amount is what was shown, so that its base value may be that of half a cent
// more or less. This is known not to be where the item has been an even number of cents all along.
class EvenItems {
  public:
    explicit EvenItems(const Books& books) {
        books.each_ap_line([&](const ApLine& line) {
            const double cents = line.gross * 100;
            const bool even = std::abs(cents - std::nearbyint(cents)) <= 1e-6;
            if (even && line.written) written_.emplace(key(line.docno, line.pay_item), line.written->iso());
        });
    }
    // Since before this day: an edit writes the items of its document anew, and keeps nothing of the former.
    [[nodiscard]] bool contain(const RevaluedItem& item, const std::string& day) const {
        const auto found = written_.find(key(item.document_no, item.pay_item));
        return found != written_.end() && found->second < day;
    }

  private:
    static std::string key(const std::string& docno, const std::string& pay_item) {
        return docno + "|" + pay_item;
    }
    std::unordered_map<std::string, std::string> written_;  // the days
};

// One run's items.
class ItemJudge {
  public:
    ItemJudge(const Books& books, Findings& findings)
        : findings_(findings), documents_(document_numbers(books)), even_(books) {}

    void judge(const Revaluation& run, const RevaluedItem& item) {
        const std::string name = fmt::format("{}, document {}, pay item {}", name_of(run),
                                             shown_text(item.document_no), shown_text(item.pay_item));
        if (!documents_.contains(item.document_no)) findings_.push_back(name + ": there is no such document");
        const bool even = run.posting != nullptr && even_.contain(item, run.posting->made_on);
        judge_base(name, item, even);
        if (differ(item.gain, item.original_base - item.new_base))
            report(name, "unrealized_gain_loss", item.gain, item.original_base - item.new_base);
    }

  private:
    void judge_base(const std::string& name, const RevaluedItem& item, bool even) {
        const double rate = item.original_rate.value_or(1);
        const double base = item.amount * rate;
        const bool agrees =
            even ? !differ(item.original_base, Round(base))
                 : std::abs(item.original_base - base) <= kHalfCent * rate + kHalfCent + kSlack;
        if (!agrees) report(name, "original_base_amount", item.original_base, Round(base));
    }
    void report(const std::string& name, const char* field, double stored, double expected) {
        findings_.push_back(fmt::format("{}: {} is {:.2f}, expected {:.2f}", name, field, stored, expected));
    }

    Findings& findings_;
    std::unordered_set<std::string> documents_;
    EvenItems even_;
};

}  // namespace

void check_revaluations(const Books& books, Findings& findings) {
    const Revaluations revaluations(books);
    if (revaluations.runs().empty() && revaluations.strays().empty()) return;
    std::set<std::pair<std::string, std::string>> numbers;
    ItemJudge items(books, findings);
    for (const auto& [fkey, run] : revaluations.runs()) {
        if (!run.docno.empty() && !numbers.insert({run.fyear, run.docno}).second)
            findings.push_back(fmt::format("Two revaluations of fiscal year {} have the number {}",
                                           shown_text(run.fyear), shown_text(run.docno)));
        judge_numbers(run, run.selection, "selection rows", findings);
        judge_numbers(run, run.items, "items", findings);
        judge_numbers(run, run.summary, "sums", findings);
        judge_selection(run, findings);
        for (const RevaluedItem& item : run.items)
            items.judge(run, item);
    }
    findings.insert(findings.end(), revaluations.strays().begin(), revaluations.strays().end());
}

}  // namespace brimley::company
