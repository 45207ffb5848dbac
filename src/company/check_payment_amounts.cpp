// The amounts of payments by themselves: headers against lines, base currency against rates.
//
// The form keeps the base value of a row where a discount or a write-off cuts the payment, and where an
// amount was refused. Of such a row it is only known between which values its base amount lies: those of 0,
// of what was paid, and of all that was open.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <unordered_map>
#include <vector>

#include "company/check.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

// Where an amount must lie; one value when both are the same.
struct Range {
    double least = 0;
    double most = 0;
};

// Whether it may have been rounded from the range, a tie in either direction.
bool lies_in(double amount, const Range& range) {
    const double slack = kHalfCent + std::fabs(amount) * 1e-12 + 1e-9;
    return amount >= range.least - slack && amount <= range.most + slack;
}

// Whether its payment may have been cut, or emptied by a refusal, after its base value was computed. A
// discount or write-off may have been changed again since it cut the payment; and where the sign of what is
// open differs from that of the item, even one of 0 sets the payment.
bool may_be_older(const PaymentLine& line) {
    return line.pay == 0 || line.discount != 0 || line.writeoff != 0 || line.gross * line.open < 0;
}

// Of the base value that the row had on the screen, in the row's currency.
Range base_value_of(const PaymentLine& line, bool older) {
    if (!older) return {line.pay, line.pay};
    return {std::min({0.0, line.pay, line.open}), std::max({0.0, line.pay, line.open})};
}

std::string shown(const Range& range) {
    if (!differ(range.least, range.most)) return fmt::format("expected {:.2f}", range.least);
    return fmt::format("expected {:.2f} to {:.2f}", range.least, range.most);
}

using LinesOfPayments = std::unordered_map<std::string, std::vector<PaymentLine>>;

LinesOfPayments lines_of_payments(const Books& books) {
    LinesOfPayments lines;
    books.each_payment_line([&](const PaymentLine& line) { lines[line.fkey].push_back(line); });
    return lines;
}

// One payment of the form with its lines.
class Judge {
  public:
    Judge(const PaymentHeader& payment, const std::vector<PaymentLine>& lines,
          const std::string& base_currency, Findings& findings)
        : payment_(payment), lines_(lines), base_currency_(base_currency), findings_(findings) {}

    void judge() {
        for (const PaymentLine& line : lines_)
            judge_line(line);
        judge_payment_base();
        judge_total();
        judge_total_base();
        const double total = payment_.total_amount.value_or(0);
        const double least = payment_.total_base_amount;
        if (total > 0 && differ(std::max(least, payment_.payment_base_amount), payment_.payment_base_amount))
            report("payment_base_amount", payment_.payment_base_amount,
                   fmt::format("its lines come to {:.2f}", least));
    }

  private:
    void report(const std::string& what, double stored, const std::string& expected) {
        findings_.push_back(
            fmt::format("Payment {}: {} is {:.2f}, {}", shown_text(payment_.fkey), what, stored, expected));
    }

    void judge_line(const PaymentLine& line) {
        const std::string name = fmt::format("line {}, ", shown_text(line.item_no));
        const double left = line.open - line.discount - line.writeoff - line.pay;
        if (differ(line.balance, left))
            report(name + "balance", line.balance, fmt::format("expected {:.2f}", left));
        const bool foreign = line.currency != base_currency_;
        Range base = base_value_of(line, foreign && may_be_older(line));
        if (foreign) {
            const auto [least, most] =
                std::minmax({base.least * line.payment_rate, base.most * line.payment_rate});
            base = {least, most};
        }
        if (!lies_in(line.pay_base, base)) report(name + "pay_base_amount", line.pay_base, shown(base));
    }

    void judge_payment_base() {
        const bool foreign = payment_.currency != base_currency_;
        const double base = payment_.payment_amount * (foreign ? payment_.rate : 1);
        if (!lies_in(payment_.payment_base_amount, {base, base}))
            report("payment_base_amount", payment_.payment_base_amount, shown({base, base}));
    }

    // Lines of one currency have a total in it. A currency counts when a row in it has a base value.
    void judge_total() {
        std::set<std::string> certain;
        std::set<std::string> possible;
        double pay = 0;
        for (const PaymentLine& line : lines_) {
            pay += line.pay;
            const bool older = line.currency == base_currency_ && may_be_older(line);
            if (older || line.pay_base != 0) possible.insert(line.currency);
            if (!older && line.pay_base != 0) certain.insert(line.currency);
        }
        const std::string name = "Payment " + shown_text(payment_.fkey);
        if (payment_.total_amount && certain.size() > 1) {
            findings_.push_back(name + " has a total_amount, though its lines are in several currencies");
        } else if (!payment_.total_amount && possible.size() <= 1) {
            findings_.push_back(name + " has no total_amount, though its lines are in one currency");
        } else if (payment_.total_amount && differ(*payment_.total_amount, pay)) {
            report("total_amount", *payment_.total_amount, fmt::format("its lines come to {:.2f}", pay));
        }
        if (certain.size() == 1 && possible.size() == 1 && payment_.total_currency != *certain.begin())
            findings_.push_back(fmt::format("{}: total_currency is \"{}\", its lines are in {}", name,
                                            shown_text(payment_.total_currency),
                                            shown_text(*certain.begin())));
    }

    void judge_total_base() {
        Range base;
        for (const PaymentLine& line : lines_) {
            const bool foreign = line.currency != base_currency_;
            const Range own =
                foreign ? Range{line.pay_base, line.pay_base} : base_value_of(line, may_be_older(line));
            base = {base.least + own.least, base.most + own.most};
        }
        if (payment_.total_amount && payment_.total_currency == base_currency_)
            base = {*payment_.total_amount, *payment_.total_amount};
        if (!lies_in(payment_.total_base_amount, base))
            report("total_base_amount", payment_.total_base_amount, shown(base));
    }

    const PaymentHeader& payment_;
    const std::vector<PaymentLine>& lines_;
    const std::string& base_currency_;
    Findings& findings_;
};

}  // namespace

void check_payment_amounts(const Books& books, Findings& findings) {
    const LinesOfPayments lines = lines_of_payments(books);
    static const std::vector<PaymentLine> kNone;
    books.each_payment([&](const PaymentHeader& payment) {
        if (!payment.of_payment_form()) return;
        const auto own = lines.find(payment.fkey);
        Judge(payment, own == lines.end() ? kNone : own->second, books.base_currency(), findings).judge();
    });
}

}  // namespace brimley::company
