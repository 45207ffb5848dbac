// What revaluations have posted, which follows from their summaries, and what takes it back in the next
// period.
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

std::unordered_set<std::string> spread_accounts(const Books& books) {
    std::unordered_set<std::string> accounts;
    for (Recordset rows = books.read("SELECT allocate_accno FROM Allocation_Account_table"); !rows.at_eof();
         rows.MoveNext())
        accounts.insert(rows.column(0).text());
    return accounts;
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
    const auto spread = spread_accounts(books);
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

}  // namespace brimley::company
