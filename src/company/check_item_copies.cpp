// What the lines of payments repeat of the items that they pay.
//
// An edit writes an item anew; what was paid before it is not compared. The keys of the GL documents say
// which came first.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/table_rows.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

struct Copy {
    const char* line;
    const char* item;
};

constexpr Copy kCopies[]{
    {"gross_amount", "gross_amount"}, {"invoice_no", "invoice_no"},
    {"invoice_date", "invoice_date"}, {"ap_doctype", "doctype"},
    {"Currency", "Currency"},         {"invoice_exchange_rate", "exchange_rate"},
};

// A line shows an item of parts of a cent as it is rounded.
constexpr double kHalfOfACent = 0.0051;

bool equal(const store::Value& one, const store::Value& other) {
    if (is_nothing(one) && is_nothing(other)) return true;
    if (one.is_number() && other.is_number())
        return std::fabs(one.number_ref() - other.number_ref()) < kHalfOfACent;
    return one.text() == other.text();
}

class ItemCopies {
  public:
    ItemCopies(const Books& books, Findings& findings)
        : lines_(books.tables().rows("Payment_transaction_table")),
          items_(books.tables().rows("AP_transaction_table")),
          payments_(books.tables().rows("Payment_header_table")),
          invoices_(books.tables().rows("AP_header_table")),
          payment_of_(books.tables().by_key("Payment_header_table", "fkey")),
          invoice_of_(books.tables().by_key("AP_header_table", "fkey")),
          findings_(findings) {
        for (std::int64_t item = 0; item < items_.count(); ++item)
            by_number_[items_.key(item, {"docno", "pay_item", "vendor_no"})].push_back(item);
    }

    void check() {
        for (std::int64_t line = 0; line < lines_.count(); ++line) {
            const auto payment = payment_of_.find(lines_.key(line, {"fkey"}));
            if (payment && payments_.text(*payment, "source_form") == "APform_payment")
                check_line(line, *payment);
        }
    }

  private:
    void check_line(std::int64_t line, std::int64_t payment) {
        const auto found = by_number_.find(lines_.key(line, {"ap_docno", "pay_item", "vendor_no"}));
        if (found == by_number_.end()) return;
        // Numbers may repeat: one of the items must be as the line says.
        std::string why;
        for (const std::int64_t item : found->second) {
            why = difference(line, item);
            if (why.empty() || edited_since(item, payment)) return;
        }
        findings_.push_back(fmt::format("Payment {}, item {}: {}", shown_text(lines_.text(line, "fkey")),
                                        shown_text(lines_.text(line, "item_no")), why));
    }

    [[nodiscard]] std::string difference(std::int64_t line, std::int64_t item) const {
        for (const Copy& copy : kCopies) {
            const store::Value here = lines_.value(line, lines_.column(copy.line));
            const store::Value there = items_.value(item, items_.column(copy.item));
            if (!equal(here, there))
                return fmt::format("{} is \"{}\", and \"{}\" in the item that it pays", copy.line,
                                   shown_text(here.text()), shown_text(there.text()));
        }
        return offer_difference(line, item);
    }

    [[nodiscard]] std::string offer_difference(std::int64_t line, std::int64_t item) const {
        const auto number = [&](const char* field) {
            return lines_.value(line, lines_.column(field)).number();
        };
        const auto until = items_.value(item, items_.column("discount_date")).date();
        const auto today = lines_.value(line, lines_.column("date_created")).date();
        const double percent = items_.value(item, items_.column("early_discount")).number();
        const bool offered = until && today && percent > 0 && *today <= until->date_only();
        const double offer = offered ? kernel::Round(number("open_amount") * percent / 100) : 0;
        const double said = number("discount_available");
        // Whoever came from the invoice is offered nothing where a discount was taken before.
        const bool withheld = said == 0 && differ(number("open_amount"), number("gross_amount"));
        if (!differ(said, offer) || withheld) return {};
        return fmt::format("a discount of {:.2f} was available, by its term {:.2f}", said, offer);
    }

    [[nodiscard]] bool edited_since(std::int64_t item, std::int64_t payment) const {
        const std::string key = items_.key(item, {"fkey"});
        const auto invoice = invoice_of_.find(key);
        const auto prepayment = payment_of_.find(key);
        if (!invoice && !prepayment) return false;
        const auto posted = running_number_of(invoice ? invoices_.text(*invoice, "GLFKEY")
                                                      : payments_.text(*prepayment, "GLFKEY"));
        const auto paid = running_number_of(payments_.text(payment, "GLFKEY"));
        return posted && paid && *posted > *paid;
    }

    const TableRows& lines_;
    const TableRows& items_;
    const TableRows& payments_;
    const TableRows& invoices_;
    const RowsByKey& payment_of_;
    const RowsByKey& invoice_of_;
    Findings& findings_;
    std::unordered_map<std::string, std::vector<std::int64_t>> by_number_;
};

// The lines of a payment of invoices are numbered 1 to n; one names the account of a discount or a write-off
// when it has one.
void check_line_of_items(const TableRows& lines, std::int64_t line, int expected, Findings& findings) {
    const auto number = [&](const char* field) { return lines.value(line, lines.column(field)).number(); };
    const auto report = [&](const std::string& what) {
        findings.push_back(fmt::format("Payment {}, item {}: {}", shown_text(lines.text(line, "fkey")),
                                       shown_text(lines.text(line, "item_no")), what));
    };
    if (number("item_no") != expected) report(fmt::format("stands in the place of item {}", expected));
    if ((number("discount_taken") > 0) == lines.text(line, "discount_accno").empty())
        report("a discount and its account do not go together");
    if ((number("writeoff") > 0) == lines.text(line, "writeoff_accno").empty())
        report("a write-off and its account do not go together");
    if ((lines.text(line, "ap_doctype") == "pp") == lines.text(line, "prepay_accno").empty())
        report("a prepayment and its account do not go together");
}

}  // namespace

void check_item_copies(const Books& books, Findings& findings) { ItemCopies(books, findings).check(); }

void check_numbered_items(const Books& books, Findings& findings) {
    const TableRows& lines = books.tables().rows("Payment_transaction_table");
    const TableRows& payments = books.tables().rows("Payment_header_table");
    const RowsByKey& payment_of = books.tables().by_key("Payment_header_table", "fkey");
    std::unordered_map<std::string, std::vector<std::int64_t>> by_payment;
    for (std::int64_t line = 0; line < lines.count(); ++line) {
        const auto payment = payment_of.find(lines.key(line, {"fkey"}));
        if (payment && payments.text(*payment, "source_form") == "APform_payment")
            by_payment[lines.text(line, "fkey")].push_back(line);
    }
    for (auto& [fkey, rows] : by_payment) {
        std::ranges::sort(
            rows, {}, [&](std::int64_t line) { return lines.value(line, lines.column("item_no")).number(); });
        int expected = 0;
        for (const std::int64_t line : rows)
            check_line_of_items(lines, line, ++expected, findings);
    }
}

}  // namespace brimley::company
