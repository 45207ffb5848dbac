// Prepayments and card payments: header against line, open item, ledger and order.
//
// Where the forms leave two figures apart by design, nothing is found; the notes name it (notes.cpp).
#include <fmt/format.h>

#include <unordered_set>

#include "company/check.h"
#include "company/one_line_payments.h"
#include "company/posted_amounts.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

// One payment; each test adds a line for what does not hold.
class OneLineJudge {
  public:
    OneLineJudge(const OneLinePayment& payment, const PostedAmounts& posted,
                 const std::unordered_set<std::string>& allocated, Findings& findings)
        : payment_(payment), posted_(posted), allocated_(allocated), findings_(findings) {}

    void judge() {
        if (payment_.lines.size() != 1) {
            find(fmt::format("it has {} lines instead of one", payment_.lines.size()));
        } else {
            payment_.is_prepayment() ? judge_prepayment() : judge_card_payment();
        }
        judge_posted("cash account", payment_.cash_accno, 0 - payment_.amount);
    }

  private:
    [[nodiscard]] std::string name() const {
        return fmt::format("{} {}", payment_.is_prepayment() ? "Prepayment" : "Card payment",
                           shown_text(payment_.fkey));
    }
    void find(const std::string& what) { findings_.push_back(name() + ": " + what); }
    void expect(const char* what, double stored, double expected) {
        if (differ(stored, expected))
            find(fmt::format("{} is {:.2f}, expected {:.2f}", what, stored, expected));
    }

    // What the document that its header names has posted, before a void took it back.
    void judge_posted(const char* what, const std::string& accno, double amount) {
        if (payment_.gl_fkey.empty() || accno.empty() || allocated_.contains(accno)) return;
        for (const std::string* other :
             {&payment_.cash_accno, &payment_.prepayment_accno, &payment_.expense_accno})
            if (other != &accno && *other == accno) return;
        const double on_account = posted_.on(payment_.gl_fkey, accno).amount;
        if (differ(on_account, amount))
            find(fmt::format("{:.2f} was posted to its {} {}, expected {:.2f}", on_account, what,
                             shown_text(accno), amount));
    }

    // --- prepayments ---

    void judge_prepayment() {
        judge_item();
        judge_line();
        judge_order();
        judge_applied();
        judge_posted("prepayment account", payment_.prepayment_accno, payment_.amount);
    }

    void judge_item() {
        if (payment_.items.size() != 1) {
            find(fmt::format("it has {} open items instead of one", payment_.items.size()));
            return;
        }
        const PrepaidItem& item = payment_.items.front();
        expect("gross amount of its item", item.gross, 0 - payment_.amount);
        if (item.docno != payment_.docno || item.vendor_no != payment_.vendor_no ||
            item.currency != payment_.currency)
            find("number, vendor or currency of its item is another one");
        if (item.is_void) find("its item is void");
    }

    void judge_line() {
        const PaymentLine& line = payment_.lines.front();
        expect("gross amount of its line", line.gross, line.pay);
        expect("open amount of its line", line.open, line.pay);
        expect("balance of its line", line.balance, 0);
        if (line.ap_docno != payment_.docno || line.pay_item != "1") find("its line names another item");
        const bool edited = !payment_.items.empty() && payment_.items.front().edited;
        if (!edited) expect("amount of its line", line.pay, payment_.amount);
    }

    // An order waits for as long as the prepayment is neither applied nor void.
    void judge_order() {
        const bool waits = !payment_.po_no.empty() && !payment_.is_void && !payment_.invoiced;
        if (payment_.waiting.size() != (waits ? 1U : 0U)) {
            find(fmt::format("{} rows wait for its order instead of {}", payment_.waiting.size(),
                             waits ? "one" : "none"));
            return;
        }
        if (!waits) return;
        const WaitingOrder& order = payment_.waiting.front();
        expect("amount that waits for its order", order.amount, payment_.amount);
        if (order.po_no != payment_.po_no || order.prepayment_no != payment_.docno)
            find("another order waits for it");
    }

    // A void takes the mark off though another payment still applies the prepayment; the list of checks
    // leaves it though none does.
    void judge_applied() {
        const bool applied = payment_.applied > 0;
        if (payment_.invoiced == applied || payment_.applied_void > 0 || payment_.number_repeats) return;
        find(payment_.invoiced ? "it counts as applied, and no payment applies it"
                               : "it does not count as applied, and a payment applies it");
    }

    // --- card payments ---

    void judge_card_payment() {
        const PaymentLine& line = payment_.lines.front();
        expect("amount of its line", line.pay, payment_.amount);
        expect("gross amount of its line", line.gross, payment_.card_balance);
        expect("open amount of its line", line.open, payment_.card_balance);
        expect("balance of its line", line.balance, payment_.card_balance - (payment_.amount - payment_.fee));
        if (payment_.fee < 0) find(fmt::format("its fee is {:.2f}", payment_.fee));
        if (payment_.fee > 0 && payment_.expense_accno.empty()) find("its fee has no account");
        judge_posted("expense account", payment_.expense_accno, payment_.fee);
    }

    const OneLinePayment& payment_;
    const PostedAmounts& posted_;
    const std::unordered_set<std::string>& allocated_;
    Findings& findings_;
};

// Accounts whose amounts are spread over others: what one document has posted to them is not known.
std::unordered_set<std::string> allocated_accounts(const Books& books) {
    std::unordered_set<std::string> accounts;
    for (store::Recordset rows = books.read("SELECT allocate_accno,accno FROM Allocation_Account_table");
         !rows.at_eof(); rows.MoveNext()) {
        accounts.insert(rows.column(0).text());
        accounts.insert(rows.column(1).text());
    }
    return accounts;
}

}  // namespace

void check_one_line_payments(const Books& books, Findings& findings) {
    const PostedAmounts posted(books, Reversed::left_out);
    const auto allocated = allocated_accounts(books);
    for (const OneLinePayment& payment : one_line_payments(books))
        OneLineJudge(payment, posted, allocated, findings).judge();
    for (const WaitingOrder& order : waiting_for_nobody(books))
        findings.push_back(fmt::format("Order {} waits for prepayment {}, which there is not",
                                       shown_text(order.po_no), shown_text(order.prepayment_fkey)));
}

}  // namespace brimley::company
