// Invoices that were generated from templates, against their templates, their lines and their GL documents.
//
// A generated GL document has no base amounts, need not balance in its amounts, and computes taxes anew. Its
// first line is that of the payable account. What taxes post goes to accounts that are not stored: accounts
// that may have taken a tax are judged only where no line of the invoice has one.
#include <fmt/format.h>

#include <algorithm>
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

std::string name_of(const GeneratedInvoice& invoice) { return "Invoice " + shown_text(invoice.fkey); }

std::unordered_set<std::string> template_numbers(const Books& books) {
    std::unordered_set<std::string> numbers;
    for (Recordset rows = books.read("SELECT recurno FROM AP_recur_header_table"); !rows.at_eof();
         rows.MoveNext())
        numbers.insert(rows.column(0).text());
    return numbers;
}

// The month and the year of a day written as 2026-01-15.
bool same_month(const std::string& day, const std::string& month, const std::string& year) {
    return day.size() >= 7 && day.substr(0, 4) == year && day.substr(5, 2) == month;
}

void judge_header(const GeneratedInvoice& invoice, Findings& findings) {
    const std::string name = name_of(invoice);
    if (invoice.day.empty()) {
        findings.push_back(name + " was generated without a date");
    } else if (!same_month(invoice.day, invoice.month, invoice.year)) {
        findings.push_back(fmt::format("{}: month {} of {} is not that of its date {}", name,
                                       shown_text(invoice.month), shown_text(invoice.year), invoice.day));
    }
    if (!generated_number(invoice.docno, invoice.doctype) || invoice.fkey != invoice.company + invoice.docno)
        findings.push_back(
            fmt::format("{}: its number {} does not make its key", name, shown_text(invoice.docno)));
    if (invoice.lines.empty()) findings.push_back(name + " has no lines");
}

void judge_line(const GeneratedInvoice& invoice, const GeneratedLine& line, Findings& findings) {
    const auto compare = [&](const char* field, const std::string& own, const std::string& expected) {
        if (own == expected) return;
        findings.push_back(fmt::format("{}, pay item {}: {} is {}, that of the invoice {}", name_of(invoice),
                                       shown_text(line.pay_item), field, shown_text(own),
                                       shown_text(expected)));
    };
    compare("docno", line.docno, invoice.docno);
    compare("vendor_no", line.vendor_no, invoice.vendor_no);
    compare("Currency", line.currency, invoice.currency);
    compare("Month", line.month, invoice.month);
    compare("Year", line.year, invoice.year);
    compare("ap_accno", line.ap_accno, invoice.lines.front().ap_accno);
    // A void goes by the key.
    if (!invoice.shares_key && line.is_void != invoice.is_void)
        findings.push_back(fmt::format("{} is {}void, but pay item {} is {}void", name_of(invoice),
                                       invoice.is_void ? "" : "not ", shown_text(line.pay_item),
                                       line.is_void ? "" : "not "));
}

}  // namespace

void check_generated_invoices(const Books& books, Findings& findings) {
    const GeneratedInvoices& generated = books.generated();
    const auto templates = template_numbers(books);
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        judge_header(invoice, findings);
        if (!templates.contains(invoice.recurno))
            findings.push_back(
                fmt::format("{}: there is no template {}", name_of(invoice), shown_text(invoice.recurno)));
        for (const GeneratedLine& line : invoice.lines)
            judge_line(invoice, line, findings);
    }
    findings.insert(findings.end(), generated.strays().begin(), generated.strays().end());
}

namespace {

using AccountSums = std::map<std::string, double>;

AccountSums posted_sums(const GeneratedPosting& posting) {
    AccountSums sums;
    for (const GlLine& line : posting.lines)
        sums[line.accno] += line.amount;
    return sums;
}

// The payable account of the vendor; empty when what it came to is nothing, which posts no line.
std::string payable_account(const GeneratedInvoice& invoice, const GeneratedPosting& posting) {
    if (posting.lines.empty() || !differ(invoice.gross(), 0)) return {};
    return posting.lines.front().accno;
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

namespace {

double debit_less_credit(const Books& books, const GeneratedPosting& posting) {
    double difference = 0;
    for (const GlLine& line : posting.lines) {
        const ChartAccount* const account = books.account(line.accno);
        difference += account && account->debit ? line.amount : -line.amount;
    }
    return difference;
}

void note_posting(const Books& books, const GeneratedInvoice& invoice, const GeneratedPosting& posting,
                  Findings& notes) {
    const std::string name = "GL document " + shown_text(posting.fkey);
    const double difference = debit_less_credit(books, posting);
    if (differ(difference, 0))
        notes.push_back(
            fmt::format("{} does not balance in its amounts, and has no base amounts: debit less "
                        "credit is {:.2f}",
                        name, difference));
    const std::string payable = payable_account(invoice, posting);
    const std::string& of_lines = invoice.lines.front().ap_accno;
    if (!payable.empty() && of_lines != payable)
        notes.push_back(fmt::format("{}: its lines name payable account {}, its GL document posted to {}",
                                    name_of(invoice), shown_text(of_lines), shown_text(payable)));
    if (invoice.is_void)
        notes.push_back(fmt::format("{} is void, but its GL document {} stays as it was posted",
                                    name_of(invoice), shown_text(posting.fkey)));
}

}  // namespace

void note_generated_invoices(const Books& books, Findings& notes) {
    const GeneratedInvoices& generated = books.generated();
    std::map<std::string, double> by_vendor;
    std::set<std::string> shared_keys;
    for (const GeneratedInvoice& invoice : generated.invoices()) {
        if (invoice.shares_key && shared_keys.insert(invoice.fkey).second)
            notes.push_back(
                fmt::format("Invoices of several fiscal years have the key {}: what is done to one of them "
                            "is done to all",
                            shown_text(invoice.fkey)));
        if (invoice.lines.empty()) continue;
        for (const GeneratedPosting* posting : invoice.postings)
            note_posting(books, invoice, *posting, notes);
        by_vendor[invoice.vendor_no] += invoice.gross();
    }
    for (const auto& [vendor_no, gross] : by_vendor)
        notes.push_back(
            fmt::format("What vendor {} is owed was never raised by what was generated, {:.2f} in all",
                        shown_text(vendor_no), gross));
    if (const auto posted = generated.postings().size(); posted > 0)
        notes.push_back(fmt::format(
            "Balances have no base amounts of what was generated: GL documents without them: {}", posted));
}

}  // namespace brimley::company
