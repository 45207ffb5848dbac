// Generated invoices against their GL documents.
//
// A generated GL document has no base amounts, need not balance in its amounts, and computes taxes anew. Its
// first line is that of the payable account. What taxes post goes to accounts that are not stored: accounts
// that may have taken a tax are judged only where no line of the invoice has one.
#include <fmt/format.h>

#include <map>
#include <set>
#include <unordered_set>

#include "company/check.h"
#include "company/generated_invoices.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;
using store::Recordset;

using AccountSums = std::map<std::string, double>;

AccountSums posted_sums(const GeneratedPosting& posting) {
    AccountSums sums;
    for (const GlLine& line : posting.lines)
        sums[line.accno] += line.amount;
    return sums;
}

// Accounts that authorities name.
std::unordered_set<std::string> tax_accounts(const Books& books) {
    std::unordered_set<std::string> accounts;
    for (Recordset rows = books.read("SELECT acc_recoverable,acc_expense FROM Tax_authority_table");
         !rows.at_eof(); rows.MoveNext()) {
        accounts.insert(rows.column(0).text());
        accounts.insert(rows.column(1).text());
    }
    return accounts;
}

// One generated invoice and its GL document.
class PostingJudge {
  public:
    PostingJudge(const GeneratedInvoice& invoice, const GeneratedPosting& posting,
                 const std::unordered_set<std::string>& tax_accounts, Findings& findings)
        : invoice_(invoice), posting_(posting), tax_accounts_(tax_accounts), findings_(findings) {}

    void judge() {
        for (const GlLine& line : posting_.lines)
            judge_line(line);
        if (posting_.lines.empty() && differ(invoice_.gross(), 0)) return report_no_lines();
        expect_amounts();
        AccountSums posted = posted_sums(posting_);
        for (const auto& [accno, expected] : expected_) {
            const double found = posted[accno];
            const bool may_hold_tax =
                taxed_ && (tax_accounts_.contains(accno) || taxed_accounts_.contains(accno));
            if (!may_hold_tax && differ(found, expected)) report(accno, found, expected);
            posted.erase(accno);
        }
        for (const auto& [accno, amount] : posted)
            if (!taxed_ && differ(amount, 0)) report(accno, amount, 0);
    }

  private:
    void judge_line(const GlLine& line) {
        const auto compare = [&](const char* field, const std::string& own, const std::string& expected) {
            if (own == expected) return;
            findings_.push_back(fmt::format("GL document {}, line {}: {} is {}, expected {}",
                                            shown_text(posting_.fkey), line.line_number, field,
                                            shown_text(own), shown_text(expected)));
        };
        compare("period", line.period, posting_.period);
        compare("Currency", line.currency, invoice_.currency);
        compare("ledgertype", line.ledgertype, "A");
        if (differ(line.base_amount, 0))
            findings_.push_back(fmt::format(
                "GL document {}, line {}: base_amount is {:.2f}, though generated lines have none",
                shown_text(posting_.fkey), line.line_number, line.base_amount));
    }

    // As posting gathers them. A tax that goes to the item's cost joins the purchase account.
    void expect_amounts() {
        const std::string payable = payable_account(invoice_, posting_);
        for (const GeneratedLine& line : invoice_.lines) {
            if (!payable.empty()) add(payable, line.gross);
            add(line.po_accno, line.taxable);
            if (line.tax == 0) continue;
            taxed_ = true;
            taxed_accounts_.insert(line.po_accno);
        }
    }
    void add(const std::string& accno, double amount) { expected_[accno] = Round(expected_[accno] + amount); }

    void report_no_lines() {
        findings_.push_back(fmt::format("GL document {} has no lines, but its invoice comes to {:.2f}",
                                        shown_text(posting_.fkey), invoice_.gross()));
    }
    void report(const std::string& accno, double posted, double expected) {
        findings_.push_back(fmt::format("Invoice {}: {:.2f} was posted to account {}, by its lines {:.2f}",
                                        shown_text(invoice_.fkey), posted, shown_text(accno), expected));
    }

    const GeneratedInvoice& invoice_;
    const GeneratedPosting& posting_;
    const std::unordered_set<std::string>& tax_accounts_;
    Findings& findings_;
    AccountSums expected_;
    std::set<std::string> taxed_accounts_;
    bool taxed_ = false;
};

}  // namespace

void check_generated_postings(const Books& books, Findings& findings) {
    const GeneratedInvoices& generated = books.generated();
    const auto accounts = tax_accounts(books);
    std::unordered_set<const GeneratedPosting*> named;
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        if (invoice.postings.size() != 1)
            findings.push_back(
                fmt::format("{} has {} GL documents", name_of(invoice),
                            invoice.postings.empty() ? "no" : std::to_string(invoice.postings.size())));
        for (const GeneratedPosting* posting : invoice.postings)
            named.insert(posting);
        if (invoice.postings.size() == 1)
            PostingJudge(invoice, *invoice.postings.front(), accounts, findings).judge();
    }
    for (const GeneratedPosting& posting : generated.postings())
        if (!named.contains(&posting))
            findings.push_back(
                fmt::format("GL document {} belongs to no generated invoice", shown_text(posting.fkey)));
}

}  // namespace brimley::company
