// Revaluations: their rows, what they have posted, and the document that takes it back in the next period.
//
// Items and selection are what the form showed at the save, the summary what the last whole run came to: a
// form whose entry was changed after the run stores what does not belong together, and several selection rows
// leave the items of the last one alone. Notes name that; what is posted follows from the summary alone.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <unordered_set>

#include "company/check.h"
#include "company/period_balances.h"
#include "company/revaluations.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;
using store::Recordset;

std::string name_of(const Revaluation& run) { return "Revaluation " + shown_text(run.fkey); }

std::unordered_set<std::string> texts_of(const Books& books, std::initializer_list<const char*> queries) {
    std::unordered_set<std::string> texts;
    for (const char* query : queries)
        for (Recordset rows = books.read(query); !rows.at_eof(); rows.MoveNext())
            texts.insert(rows.column(0).text());
    return texts;
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
        : findings_(findings),
          documents_(texts_of(books, {"SELECT docno FROM AP_header_table",
                                      "SELECT docno FROM Payment_header_table WHERE doctype = 'pp'"})),
          uneven_(uneven_items(books)) {}

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

namespace {

using AccountSums = std::map<std::string, double>;

AccountSums posted_sums(const RevaluationPosting& posting) {
    AccountSums sums;
    for (const GlLine& line : posting.lines)
        sums[line.accno] += line.base_amount;
    return sums;
}

// The sums of one account over all currencies, on its own side.
AccountSums summary_sums(const Books& books, const Revaluation& run) {
    AccountSums sums;
    for (const RevaluationSum& row : run.summary) {
        const ChartAccount* const account = books.account(row.accno);
        double& sum = sums[row.accno];
        sum = Round(sum + (account && account->debit ? row.amount : -row.amount));
    }
    return sums;
}

// What is the same in every line of a GL document of a run.
void judge_lines(const RevaluationPosting& posting, const std::string& base_currency, Findings& findings) {
    for (const GlLine& line : posting.lines) {
        const std::string name =
            fmt::format("GL document {}, line {}", shown_text(posting.fkey), line.line_number);
        if (differ(line.amount, line.base_amount))
            findings.push_back(
                fmt::format("{}: amount is {:.2f}, base_amount {:.2f}", name, line.amount, line.base_amount));
        if (line.ledgertype != "A" || line.currency != base_currency)
            findings.push_back(fmt::format("{} is of ledger {} in {}", name, shown_text(line.ledgertype),
                                           shown_text(line.currency)));
        if (line.period != posting.period || line.fyear != posting.fyear)
            findings.push_back(fmt::format("{} is of period {} of {}, its document of period {} of {}", name,
                                           shown_text(line.period), shown_text(line.fyear),
                                           shown_text(posting.period), shown_text(posting.fyear)));
    }
}

void judge_posting(const Books& books, const Revaluation& run, const std::unordered_set<std::string>& spread,
                   Findings& findings) {
    const RevaluationPosting& posting = *run.posting;
    if (posting.source_docno != run.docno || posting.day != run.day || posting.period != run.period ||
        posting.fyear != run.fyear)
        findings.push_back(fmt::format("{}: its GL document {} has another number, date or period",
                                       name_of(run), shown_text(posting.fkey)));
    judge_lines(posting, books.base_currency(), findings);
    const AccountSums by_summary = summary_sums(books, run);
    // An account that is spread over others has the whole amount in each of its lines.
    if (std::ranges::any_of(by_summary, [&](const auto& sum) { return spread.contains(sum.first); })) return;
    AccountSums posted = posted_sums(posting);
    for (const auto& [accno, expected] : by_summary) {
        const double amount = posted[accno];
        posted.erase(accno);
        if (differ(amount, expected))
            findings.push_back(fmt::format("{}: {:.2f} was posted to account {}, by its summary {:.2f}",
                                           name_of(run), amount, shown_text(accno), expected));
    }
    for (const auto& [accno, amount] : posted)
        findings.push_back(fmt::format("{}: {:.2f} was posted to account {}, which its summary does not have",
                                       name_of(run), amount, shown_text(accno)));
}

void judge_summary(const Revaluation& run, Findings& findings) {
    double debit_less_credit = 0;
    for (const RevaluationSum& row : run.summary)
        debit_less_credit += row.amount;
    if (run.summary.empty()) findings.push_back(name_of(run) + " has no G/L summary");
    if (differ(debit_less_credit, 0))
        findings.push_back(fmt::format("{}: debit less credit of its G/L summary is {:.2f}", name_of(run),
                                       debit_less_credit));
}

// How many periods a fiscal year has.
using Calendar = std::map<std::string, int>;

Calendar periods_of_years(const Books& books) {
    Calendar calendar;
    for (Recordset rows = books.read("SELECT fyear FROM Period_table"); !rows.at_eof(); rows.MoveNext())
        ++calendar[rows.column(0).text()];
    return calendar;
}

constexpr int kUsualPeriods = 12;

// Whether a run of this period may be taken back in that one. A year may have a thirteenth period that the
// calendar does not have: the last one is what the desk says it is.
bool follows(const Calendar& calendar, const RevaluationPosting& posting,
             const RevaluationPosting& reversal) {
    const double period = std::floor(kernel::money_value(posting.period));
    const double year = std::floor(kernel::money_value(posting.fyear));
    const auto known = calendar.find(posting.fyear);
    const int last = known == calendar.end() ? kUsualPeriods : known->second;
    if (period < kPeriodColumns && reversal.fyear == posting.fyear &&
        reversal.period == fmt::format("{}", period + 1))
        return true;
    return period >= last && reversal.period == "1" && reversal.fyear == fmt::format("{}", year + 1);
}

bool is_opposite(const GlLine& line, const GlLine& posted) {
    return line.line_number == posted.line_number && line.accno == posted.accno &&
           !differ(line.amount, -posted.amount) && !differ(line.base_amount, -posted.base_amount);
}

void judge_reversal(const Calendar& calendar, const Revaluation& run, Findings& findings) {
    const RevaluationPosting& reversal = *run.reversal;
    const std::string name = "GL document " + shown_text(reversal.fkey);
    if (!follows(calendar, *run.posting, reversal))
        findings.push_back(fmt::format("{} takes back period {} of {} in period {} of {}", name,
                                       shown_text(run.posting->period), shown_text(run.posting->fyear),
                                       shown_text(reversal.period), shown_text(reversal.fyear)));
    if (reversal.day != reversal.made_on)
        findings.push_back(
            fmt::format("{} is dated {}, but was made on {}", name, reversal.day, reversal.made_on));
    if (!std::ranges::equal(reversal.lines, run.posting->lines, is_opposite))
        findings.push_back(fmt::format("{} does not take back line by line what GL document {} has posted",
                                       name, shown_text(run.gl_fkey)));
}

// A run that came to nothing is not saved.
void judge_documents(const Books& books, const Calendar& calendar, const Revaluation& run,
                     const std::unordered_set<std::string>& spread, Findings& findings) {
    if (!run.posting) {
        findings.push_back(run.gl_fkey.empty() ? name_of(run) + " names no GL document"
                                               : fmt::format("{}: its GL document {} does not exist",
                                                             name_of(run), shown_text(run.gl_fkey)));
        return;
    }
    if (run.posting->lines.empty())
        findings.push_back(
            fmt::format("{}: its GL document {} has no lines", name_of(run), shown_text(run.gl_fkey)));
    judge_posting(books, run, spread, findings);
    if (!run.reversal) {
        findings.push_back(fmt::format("{}: its GL document {} is not taken back by another", name_of(run),
                                       shown_text(run.gl_fkey)));
        return;
    }
    judge_lines(*run.reversal, books.base_currency(), findings);
    judge_reversal(calendar, run, findings);
}

}  // namespace

void check_revaluation_postings(const Books& books, Findings& findings) {
    const Revaluations revaluations(books);
    const Calendar calendar = periods_of_years(books);
    const auto spread = texts_of(books, {"SELECT allocate_accno FROM Allocation_Account_table"});
    std::set<std::string> named;
    for (const auto& [fkey, run] : revaluations.runs()) {
        judge_summary(run, findings);
        judge_documents(books, calendar, run, spread, findings);
        if (run.posting) named.insert(run.posting->fkey);
        if (run.reversal) named.insert(run.reversal->fkey);
    }
    for (const auto& [fkey, posting] : revaluations.postings())
        if (!named.contains(fkey))
            findings.push_back(
                fmt::format("GL document {} is of a revaluation, but none has it", shown_text(fkey)));
}

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
        const auto other = std::ranges::count_if(
            run.items, [&](const RevaluedItem& item) { return !is_valued_by(item, run.selection); });
        if (other > 0)
            notes.push_back(
                fmt::format("{}: {} of its items are not valued at a rate of its selection", name, other));
    }
}

}  // namespace brimley::company
