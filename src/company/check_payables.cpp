// Payable accounts: what each invoice and each payment has posted to them, against its lines.
//
// An invoice posts the gross amounts of its lines at its rate, a payment takes off what it settles at the
// rates of the invoices. The ledger holds the sum of the postings and an item what its payments leave of it,
// which other checks hold; so payable accounts and open items agree when every document agrees here.
//
// The account itself is not stored with a payment and may have been changed in the vendor since. Therefore
// all payable accounts are taken together, and a document that uses one of them for something else as well is
// not judged.
#include <fmt/format.h>

#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/unstored_rows.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using kernel::Round;
using store::Recordset;

class PayableAccounts {
  public:
    explicit PayableAccounts(const Books& books) {
        books.each_ap_line([&](const ApLine& line) { add(line.ap_accno); });
        read(books, "SELECT ap_accno FROM Vendor_table", &PayableAccounts::add);
        for (const char* query :
             {"SELECT allocate_accno FROM Allocation_Account_table",
              "SELECT accno FROM Allocation_Account_table", "SELECT acc_recoverable FROM Tax_authority_table",
              "SELECT acc_expense FROM Tax_authority_table", "SELECT account_no FROM Bank_master_table",
              "SELECT payable_accno FROM Credit_card_master_table",
              "SELECT accno FROM Account_Parameters_table WHERE parameter_name = 'GL realized gain account'",
              "SELECT accno FROM Account_Parameters_table WHERE parameter_name = 'GL realized loss account'"})
            read(books, query, &PayableAccounts::leave_out);
    }
    // Used for payables and for nothing else that every document may post.
    [[nodiscard]] bool judged(const std::string& accno) const {
        return accounts_.contains(accno) && !left_out_.contains(accno);
    }
    [[nodiscard]] bool any(const std::string& accno) const { return accounts_.contains(accno); }

  private:
    void read(const Books& books, const char* query, void (PayableAccounts::*take)(const std::string&)) {
        for (Recordset rows = books.read(query); !rows.at_eof(); rows.MoveNext())
            (this->*take)(rows.column(0).text());
    }
    void add(const std::string& accno) {
        if (!accno.empty()) accounts_.insert(accno);
    }
    void leave_out(const std::string& accno) { left_out_.insert(accno); }

    std::unordered_set<std::string> accounts_;
    std::unordered_set<std::string> left_out_;
};

// What one document must post, gathered as the posting does: by currency, and nothing where a currency comes
// to 0.
class Posting {
  public:
    void add(const std::string& currency, double amount, double base_amount) {
        auto& [sum, base_sum] = by_currency_[currency];
        sum = Round(sum + amount);
        base_sum = Round(base_sum + base_amount);
    }
    [[nodiscard]] double base_amount() const {
        double base = 0;
        for (const auto& [currency, sums] : by_currency_)
            base += sums.first == 0 ? 0 : sums.second;
        return base;
    }
    bool judged = true;

  private:
    std::map<std::string, std::pair<double, double>> by_currency_;
};

using Postings = std::unordered_map<std::string, Posting>;   // by document
using PostedSums = std::unordered_map<std::string, double>;  // by GL document

PostedSums posted_to_payables(const Books& books, const PayableAccounts& payables) {
    PostedSums posted;
    for (Recordset rows = books.read("SELECT fkey FROM GL_header_table"); !rows.at_eof(); rows.MoveNext())
        posted[rows.text("fkey")] = 0;
    books.each_gl_line(
        [&](const GlLine& line) { posted[line.fkey] += payables.judged(line.accno) ? line.base_amount : 0; });
    return posted;
}

// What a document has posted, where that is not what it must have.
struct Difference {
    double posted = 0;
    double by_lines = 0;

    [[nodiscard]] double extra() const { return posted - by_lines; }
    [[nodiscard]] std::string of(const char* what, const std::string& fkey) const {
        return fmt::format("{} {}: {:.2f} was posted to payable accounts, by its lines {:.2f}", what,
                           shown_text(fkey), posted, by_lines);
    }
};

std::optional<Difference> difference(const std::string& fkey, const std::string& gl_fkey,
                                     const Postings& expected, const PostedSums& posted) {
    const auto document = expected.find(fkey);
    const auto found = posted.find(gl_fkey);
    if (document == expected.end() || found == posted.end() || !document->second.judged) return std::nullopt;
    const Difference both{found->second, document->second.base_amount()};
    return differ(both.posted, both.by_lines) ? std::optional(both) : std::nullopt;
}

Postings invoice_postings(const Books& books, const PayableAccounts& payables) {
    std::unordered_map<std::string, ApHeader> headers;
    books.each_ap_header([&](const ApHeader& header) { headers.emplace(header.fkey, header); });
    Postings postings;
    books.each_ap_line([&](const ApLine& line) {
        const auto header = headers.find(line.fkey);
        if (header == headers.end()) return;
        const bool foreign = header->second.currency != books.base_currency();
        Posting& posting = postings[line.fkey];
        posting.add(header->second.currency, line.gross,
                    foreign ? Round(line.gross * header->second.rate) : line.gross);
        posting.judged = posting.judged && payables.judged(line.ap_accno) && !payables.any(line.po_accno);
    });
    return postings;
}

// A prepayment's line gives the payable back what it takes off the items.
Postings payment_postings(const Books& books, const PayableAccounts& payables) {
    Postings postings;
    books.each_payment_line([&](const PaymentLine& line) {
        Posting& posting = postings[line.fkey];
        const bool foreign = line.currency != books.base_currency();
        const auto add = [&](double amount, double rate) {
            posting.add(line.currency, amount, foreign ? Round(amount * rate) : amount);
        };
        add(0 - line.sum(), line.invoice_rate);
        if (line.ap_doctype == "pp") add(line.pay, line.payment_rate);
        for (const std::string* accno : {&line.discount_accno, &line.writeoff_accno, &line.prepay_accno})
            posting.judged = posting.judged && !payables.any(*accno);
    });
    return postings;
}

std::unordered_map<std::string, std::string> vendor_accounts(const Books& books) {
    std::unordered_map<std::string, std::string> accounts;
    Recordset rows = books.read("SELECT vendor_no,ap_accno FROM Vendor_table");
    for (; !rows.at_eof(); rows.MoveNext())
        accounts[rows.text("vendor_no")] = rows.text("ap_accno");
    return accounts;
}

// Those that have posted something else.
template <class Visit>
void each_invoice(const Books& books, const PayableAccounts& payables, const PostedSums& posted,
                  const Visit& visit) {
    const Postings invoices = invoice_postings(books, payables);
    books.each_ap_header([&](const ApHeader& header) {
        if (header.source != "AP-INVOICE" || header.is_void || header.gl_fkey.empty()) return;
        if (const auto found = difference(header.fkey, header.gl_fkey, invoices, posted))
            visit(header, *found);
    });
}

}  // namespace

void check_payable_postings(const Books& books, Findings& findings) {
    const PayableAccounts payables(books);
    const PostedSums posted = posted_to_payables(books, payables);
    each_invoice(books, payables, posted, [&](const ApHeader& header, const Difference& found) {
        if (!unstored_rows_make(found.extra(), header, books))
            findings.push_back(found.of("Invoice", header.fkey));
    });
    const Postings payments = payment_postings(books, payables);
    const auto accounts = vendor_accounts(books);
    books.each_payment([&](const PaymentHeader& payment) {
        if (!payment.of_payment_form() || payment.is_void || payment.gl_fkey.empty()) return;
        const auto accno = accounts.find(payment.vendor_no);
        if (accno == accounts.end() || !payables.judged(accno->second) || payables.any(payment.cash_accno))
            return;
        if (const auto found = difference(payment.fkey, payment.gl_fkey, payments, posted))
            findings.push_back(found->of("Payment", payment.fkey));
    });
}

void note_unstored_rows(const Books& books, Findings& notes) {
    const PayableAccounts payables(books);
    const PostedSums posted = posted_to_payables(books, payables);
    each_invoice(books, payables, posted, [&](const ApHeader& header, const Difference& found) {
        if (unstored_rows_make(found.extra(), header, books))
            notes.push_back(found.of("Invoice", header.fkey) +
                            "; a row that came to 0.00 was posted and is not stored");
    });
}

}  // namespace brimley::company
