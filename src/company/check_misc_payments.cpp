// Miscellaneous payments by themselves: headers, lines, the tax elements of the lines, and what they have
// posted.
//
// The account of a line and the cash account are stored with the payment. Those of taxes, banks and cards are
// not, and may have been changed since; what was posted to them is the rest of a document that balances.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "company/check.h"
#include "company/posted_amounts.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;
using store::Recordset;

constexpr int kElements = 5;
// A line may hold less than a cent; the total is what the sum is shown as, a tie away from zero.
constexpr double kMostBetweenTotalAndLines = 0.005 + 1e-9;

struct MiscLine {
    std::string pay_item;
    std::string account;
    double amount = 0;
    double tax = 0;
    double tax_of_elements = 0;
    double allocated = 0;
    int elements = 0;
    bool tax_included = false;
    bool is_void = false;

    [[nodiscard]] double paid() const { return amount + (tax_included ? 0 : tax); }
    [[nodiscard]] double expense() const { return amount - (tax_included ? tax : 0) + allocated; }
    // A sixth tax has no place in the line, so that a line with five may have had more.
    [[nodiscard]] bool is_whole() const { return elements < kElements; }
};

using MiscLines = std::map<std::string, std::vector<MiscLine>>;  // by fkey

MiscLine misc_line(const Recordset& row) {
    MiscLine line;
    line.pay_item = row.text("pay_item");
    line.account = row.text("account");
    line.amount = row.number("pay_amount");
    line.tax = row.number("tax_amount");
    line.tax_included = row.flag("include_tax");
    line.is_void = row.flag("void");
    for (int element = 1; element <= kElements; ++element) {
        if (row.text(fmt::format("tax_authority{}", element)).empty()) continue;
        ++line.elements;
        line.tax_of_elements += row.number(fmt::format("tax_amount{}", element));
        line.allocated += row.number(fmt::format("tax_allocated{}", element));
    }
    return line;
}

MiscLines misc_lines(const Books& books) {
    MiscLines lines;
    Recordset rows = books.read("SELECT * FROM Payment_misc_transaction_table ORDER BY fkey,pay_item");
    for (; !rows.at_eof(); rows.MoveNext())
        lines[rows.text("fkey")].push_back(misc_line(rows));
    return lines;
}

void check_lines(const PaymentHeader& payment, const std::vector<MiscLine>& lines, Findings& findings) {
    const std::string name = "Payment " + shown_text(payment.fkey);
    if (std::ranges::any_of(lines, [&](const MiscLine& line) { return line.is_void != payment.is_void; }))
        findings.push_back(
            fmt::format("{} is {}void, but not all its lines are", name, payment.is_void ? "" : "not "));
    double paid = 0;
    for (const MiscLine& line : lines) {
        paid += line.paid();
        if (!line.is_whole() || !differ(line.tax, line.tax_of_elements)) continue;
        findings.push_back(fmt::format("{}, pay item {}: tax_amount is {:.2f}, its elements come to {:.2f}",
                                       name, shown_text(line.pay_item), line.tax, line.tax_of_elements));
    }
    if (std::fabs(payment.payment_amount - paid) > kMostBetweenTotalAndLines + std::fabs(paid) * 1e-12)
        findings.push_back(fmt::format("{}: payment_amount is {:.2f}, its lines come to {:.2f}", name,
                                       payment.payment_amount, paid));
}

// Accounts that a document may post to on its own.
class SharedAccounts {
  public:
    explicit SharedAccounts(const Books& books) {
        for (const char* query :
             {"SELECT allocate_accno FROM Allocation_Account_table",
              "SELECT accno FROM Allocation_Account_table", "SELECT acc_recoverable FROM Tax_authority_table",
              "SELECT acc_expense FROM Tax_authority_table", "SELECT account_no FROM Bank_master_table",
              "SELECT accno FROM Account_master_table WHERE accclass = 'Card Liabilities'",
              "SELECT accno FROM Account_Parameters_table WHERE parameter_name = 'GL realized gain account'",
              "SELECT accno FROM Account_Parameters_table WHERE parameter_name = 'GL realized loss "
              "account'"}) {
            for (Recordset rows = books.read(query); !rows.at_eof(); rows.MoveNext())
                accounts_.insert(rows.column(0).text());
        }
    }
    [[nodiscard]] bool contain(const std::string& accno) const { return accounts_.contains(accno); }

  private:
    std::unordered_set<std::string> accounts_;
};

// What a payment must have posted to an account, gathered as the posting does.
struct Expected {
    double amount = 0;
    double base_amount = 0;
    bool judged = true;

    // Without a rate the amounts are those of the base currency, and half a cent stays one.
    void add(double more, std::optional<double> rate_doc_to_base) {
        amount = Round(amount + more);
        base_amount = Round(base_amount + (rate_doc_to_base ? Round(more * *rate_doc_to_base) : more));
    }
    [[nodiscard]] double posted() const { return amount == 0 ? 0 : base_amount; }
};

std::map<std::string, Expected> expected_postings(const PaymentHeader& payment,
                                                  const std::vector<MiscLine>& lines,
                                                  const std::string& base_currency) {
    std::optional<double> rate;
    if (payment.currency != base_currency) rate = payment.rate;
    std::map<std::string, Expected> expected;
    if (!payment.cash_accno.empty()) expected[payment.cash_accno].add(0 - payment.payment_amount, rate);
    for (const MiscLine& line : lines) {
        Expected& account = expected[line.account];
        account.add(line.expense(), rate);
        account.judged = account.judged && line.is_whole();
    }
    return expected;
}

void compare(const PaymentHeader& payment, const std::map<std::string, Expected>& expected,
             const PostedAmounts& posted, const SharedAccounts& shared, Findings& findings) {
    for (const auto& [accno, account] : expected) {
        if (!account.judged || shared.contain(accno)) continue;
        const double amount = posted.on(payment.gl_fkey, accno).base_amount;
        if (!differ(amount, account.posted())) continue;
        findings.push_back(fmt::format("Payment {}: {:.2f} was posted to account {}, expected {:.2f}",
                                       shown_text(payment.fkey), amount, shown_text(accno),
                                       account.posted()));
    }
}

}  // namespace

void check_misc_payments(const Books& books, Findings& findings) {
    MiscLines lines = misc_lines(books);
    books.each_payment([&](const PaymentHeader& payment) {
        const auto own = lines.find(payment.fkey);
        if (own != lines.end()) {
            check_lines(payment, own->second, findings);
            lines.erase(own);
        } else if (payment.of_misc_form()) {
            findings.push_back(fmt::format("Payment {} has no lines", shown_text(payment.fkey)));
        }
    });
    for (const auto& [fkey, orphans] : lines)
        findings.push_back(fmt::format("Payment {} has a line but no header", shown_text(fkey)));
}

void check_misc_postings(const Books& books, Findings& findings) {
    const MiscLines lines = misc_lines(books);
    const SharedAccounts shared(books);
    const PostedAmounts posted(books, Reversed::left_out);
    books.each_payment([&](const PaymentHeader& payment) {
        const auto own = lines.find(payment.fkey);
        if (!payment.of_misc_form() || own == lines.end() || !posted.any(payment.gl_fkey)) return;
        compare(payment, expected_postings(payment, own->second, books.base_currency()), posted, shared,
                findings);
    });
}

}  // namespace brimley::company
