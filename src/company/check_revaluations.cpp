// The rows of revaluations: numbers, selection and items.
#include <fmt/format.h>

#include <cmath>
#include <set>
#include <unordered_set>

#include "company/check.h"
#include "company/revaluations.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;

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

// Items whose amount is no whole number of cents; theirs is stored as it was shown.
std::unordered_set<std::string> uneven_items(const Books& books) {
    std::unordered_set<std::string> items;
    books.each_ap_line([&](const ApLine& line) {
        if (std::abs(line.gross * 100 - std::nearbyint(line.gross * 100)) > 1e-6)
            items.insert(line.docno + "|" + line.pay_item);
    });
    return items;
}

// One run's items.
class ItemJudge {
  public:
    ItemJudge(const Books& books, Findings& findings)
        : findings_(findings), documents_(document_numbers(books)), uneven_(uneven_items(books)) {}

    void judge(const Revaluation& run, const RevaluedItem& item) {
        const std::string name = fmt::format("{}, document {}, pay item {}", name_of(run),
                                             shown_text(item.document_no), shown_text(item.pay_item));
        if (!documents_.contains(item.document_no)) findings_.push_back(name + ": there is no such document");
        const double base = Round(item.amount * item.original_rate.value_or(1));
        if (differ(item.original_base, base) && !uneven_.contains(item.document_no + "|" + item.pay_item))
            report(name, "original_base_amount", item.original_base, base);
        if (differ(item.gain, item.original_base - item.new_base))
            report(name, "unrealized_gain_loss", item.gain, item.original_base - item.new_base);
    }

  private:
    void report(const std::string& name, const char* field, double stored, double expected) {
        findings_.push_back(fmt::format("{}: {} is {:.2f}, expected {:.2f}", name, field, stored, expected));
    }

    Findings& findings_;
    std::unordered_set<std::string> documents_;
    std::unordered_set<std::string> uneven_;
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
