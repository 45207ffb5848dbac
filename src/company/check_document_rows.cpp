// Rows of documents against other documents: templates and what was issued from them, items that nobody has
// paid, and what payments name.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/posted_amounts.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

constexpr double kHalfOfTheCent = 0.0051;
constexpr double kCentOfTaxes = 0.0101;

double number_in(const TableRows& rows, std::int64_t row, const char* field) {
    return rows.value(row, rows.column(field)).number();
}
bool flag_in(const TableRows& rows, std::int64_t row, const char* field) {
    return rows.value(row, rows.column(field)).flag();
}

// An item that was made here.
bool is_of_this_module(const TableRows& items, std::int64_t item) {
    const std::string form = items.text(item, "source_form");
    return form == "APform_invoice" || form == "APform_prepayment" ||
           items.text(item, "form_name") == "APform_invoice";
}

// The numbers of what payments have paid: of all, of those that are void, and of the others.
struct PaidNumbers {
    std::unordered_set<std::string> items;  // docno, pay_item, vendor_no
    std::unordered_set<std::string> documents, by_valid, by_void;

    explicit PaidNumbers(const Books& books) {
        const TableRows& lines = books.tables().rows("Payment_transaction_table");
        for (std::int64_t line = 0; line < lines.count(); ++line) {
            // The line of a prepayment names its own item, and pays nothing.
            if (lines.text(line, "docno") != lines.text(line, "ap_docno"))
                items.insert(lines.key(line, {"ap_docno", "pay_item", "vendor_no"}));
            const std::string docno = lines.text(line, "ap_docno");
            documents.insert(docno);
            (flag_in(lines, line, "void") ? by_void : by_valid).insert(docno);
        }
    }
};

void check_unpaid_items(const Books& books, const PaidNumbers& paid, Findings& findings) {
    const TableRows& items = books.tables().rows("AP_transaction_table");
    for (std::int64_t item = 0; item < items.count(); ++item) {
        if (!is_of_this_module(items, item)) continue;
        // That of a prepayment may be open with less since an edit.
        const bool prepaid = items.text(item, "doctype") == "pp";
        const double gross = number_in(items, item, "gross_amount");
        const double settled = number_in(items, item, "paid_amount");
        const bool named = paid.items.contains(items.key(item, {"docno", "pay_item", "vendor_no"}));
        const bool touched = settled != 0 || number_in(items, item, "discount_taken") != 0 ||
                             number_in(items, item, "writeoff") != 0;
        const bool open_as_gross = std::fabs(number_in(items, item, "open_amount") - gross) < kHalfOfTheCent;
        const bool untouched = !touched && (prepaid || (open_as_gross && !flag_in(items, item, "paid")));
        if (named || untouched) continue;
        findings.push_back(fmt::format("Invoice {}, item {}: no payment names it, and it is not open in full",
                                       shown_text(items.text(item, "fkey")),
                                       shown_text(items.text(item, "pay_item"))));
    }
}

std::unordered_set<std::string> keys_of_paid_items(const Books& books) {
    std::unordered_set<std::string> keys;
    books.each_ap_line([&](const ApLine& line) {
        if (line.paid) keys.insert(line.fkey);
    });
    return keys;
}

// Of several payments the last one to be saved or voided has set the mark.
void check_paid_marks(const Books& books, const PaidNumbers& paid, Findings& findings) {
    const TableRows& invoices = books.tables().rows("AP_header_table");
    const auto with_paid_items = keys_of_paid_items(books);
    for (std::int64_t row = 0; row < invoices.count(); ++row) {
        const std::string docno = invoices.text(row, "docno");
        const bool here = invoices.text(row, "source_form") == "APform_invoice" ||
                          (invoices.text(row, "Source") == "AP" && !invoices.text(row, "Year").empty());
        if (!here) continue;
        const bool marked = flag_in(invoices, row, "paid");
        const bool valid = paid.by_valid.contains(docno);
        const char* const wrong = marked && !paid.documents.contains(docno)
                                      ? "is marked as paid, and no payment names it"
                                  : !marked && valid && !paid.by_void.contains(docno)
                                      ? "is not marked as paid, though a payment names it"
                                  : marked && !valid && !with_paid_items.contains(invoices.text(row, "fkey"))
                                      ? "is marked as paid, and every payment that names it is void"
                                      : nullptr;
        if (wrong != nullptr)
            findings.push_back(fmt::format("Invoice {} {}", shown_text(invoices.text(row, "fkey")), wrong));
    }
}

// --- templates ---

class TemplateLines {
  public:
    TemplateLines(const Books& books, Findings& findings)
        : headers_(books.tables().rows("AP_recur_header_table")),
          lines_(books.tables().rows("AP_recur_transaction_table")),
          header_of_(books.tables().by_key("AP_recur_header_table", "fkey")),
          findings_(findings) {
        for (std::int64_t header = 0; header < headers_.count(); ++header)
            by_number_.emplace(headers_.text(header, "recurno"), headers_.text(header, "fkey"));
        for (std::int64_t line = 0; line < lines_.count(); ++line)
            lines_of_[lines_.text(line, "fkey")].push_back(line);
    }

    void check() {
        std::unordered_set<std::string> numbers;
        for (std::int64_t header = 0; header < headers_.count(); ++header) {
            const std::string fkey = headers_.text(header, "fkey");
            if (!lines_of_.contains(fkey)) report(fkey, "has no lines");
            if (headers_.text(header, "doctype") != "recur") report(fkey, "is of another kind");
            const std::string number = headers_.text(header, "recurno");
            if (!number.empty() && !numbers.insert(number).second)
                report(fkey, "has the number of another one");
        }
        for (const auto& [fkey, lines] : lines_of_)
            check_lines(fkey, lines);
    }

    // Templates are never changed: an invoice has the lines of its own.
    void check_issued(const Books& books) {
        const TableRows& invoices = books.tables().rows("AP_header_table");
        const TableRows& items = books.tables().rows("AP_transaction_table");
        const RowsByKey& invoice_of = books.tables().by_key("AP_header_table", "fkey Year");
        for (std::int64_t item = 0; item < items.count(); ++item) {
            if (items.text(item, "form_name") != "APform_invoice") continue;
            const auto invoice = invoice_of.find(items.key(item, {"fkey", "Year"}));
            if (invoice) check_issued_item(items, item, invoices.text(*invoice, "recurno"));
        }
    }

  private:
    void check_lines(const std::string& fkey, const std::vector<std::int64_t>& lines) {
        if (!header_of_.contains(fkey + '\n')) report(fkey, "has lines but no header");
        std::unordered_set<std::string> items;
        for (const std::int64_t line : lines) {
            const auto number = store::whole_number_text(lines_.text(line, "pay_item"));
            if (!number || *number < 1 || *number != std::floor(*number) ||
                !items.insert(lines_.text(line, "pay_item")).second)
                report(fkey, "has a line of no number of its own");
            const double gross = number_in(lines_, line, "gross_amount");
            if (std::fabs(gross - number_in(lines_, line, "open_amount")) > kHalfOfTheCent)
                report(fkey, "has a line that is not open in full");
            const bool dated = !lines_.text(line, "date_created").empty();
            if (dated &&
                (lines_.text(line, "user_created").empty() || !is_time(lines_.text(line, "time_created"))))
                report(fkey, "has a line that does not say who made it, and when");
            if (lines_.text(line, "user_created") != lines_.text(lines.front(), "user_created"))
                report(fkey, "has lines of two users");
        }
    }

    void check_issued_item(const TableRows& items, std::int64_t item, const std::string& recurno) {
        const auto [from, to] = by_number_.equal_range(recurno);
        bool any = false;
        for (auto each = from; each != to; ++each) {
            const auto lines = lines_of_.find(each->second);
            if (lines == lines_of_.end()) continue;
            for (const std::int64_t line : lines->second) {
                if (lines_.text(line, "pay_item") != items.text(item, "pay_item")) continue;
                any = true;
                for (const char* field : {"gross_amount", "taxable_amount", "tax_amount", "tax_code",
                                          "include_tax", "po_accno"}) {
                    if (lines_.text(line, field) != items.text(item, field))
                        report_item(items, item, fmt::format("{} is not that of its template", field));
                }
            }
        }
        if (from != to && !any) report_item(items, item, "its template has no such line");
        check_dates(items, item);
    }

    void check_dates(const TableRows& items, std::int64_t item) {
        const auto from = items.value(item, items.column("gldate")).date();
        if (!from) return;
        const auto check = [&](const char* field, const char* days, bool may_be_missing) {
            const auto date = items.value(item, items.column(field)).date();
            const int expected =
                static_cast<int>(std::clamp(number_in(items, item, days), -36525.0, 36525.0));
            if (date ? date->day != from->day + expected : !may_be_missing)
                report_item(items, item, fmt::format("{} does not follow from its day and its term", field));
        };
        check("due_date", "duedays", number_in(items, item, "duedays") == 0);
        check("discount_date", "early_days", number_in(items, item, "early_days") == 0);
    }

    static bool is_time(const std::string& text) {
        const auto words = words_of(text, ':');
        return words.size() == 3 && std::ranges::all_of(words, [](const std::string& word) {
                   return store::whole_number_text(word).has_value();
               });
    }

    void report(const std::string& fkey, const char* what) {
        findings_.push_back(fmt::format("Template {} {}", shown_text(fkey), what));
    }
    void report_item(const TableRows& items, std::int64_t item, const std::string& what) {
        findings_.push_back(fmt::format("Generated invoice {}, item {}: {}",
                                        shown_text(items.text(item, "fkey")),
                                        shown_text(items.text(item, "pay_item")), what));
    }

    const TableRows& headers_;
    const TableRows& lines_;
    const RowsByKey& header_of_;
    Findings& findings_;
    std::unordered_multimap<std::string, std::string> by_number_;
    std::unordered_map<std::string, std::vector<std::int64_t>> lines_of_;
};

// --- revaluations ---

// An item may have been edited since; one of its number is still there then, of the same vendor.
void check_revalued_items(const Books& books, Findings& findings) {
    const TableRows& valued = books.tables().rows("AP_Revalue_Result_table");
    const RowsByKey& items = books.tables().by_key("AP_transaction_table", "docno pay_item vendor_no");
    const RowsByKey& documents =
        books.tables().by_key("AP_transaction_table", "docno vendor_no Currency invoice_date");
    for (std::int64_t row = 0; row < valued.count(); ++row) {
        const auto report = [&](const char* what) {
            findings.push_back(fmt::format(
                "Revaluation {}, document {}, pay item {}: {}", shown_text(valued.text(row, "fkey")),
                shown_text(valued.text(row, "document_no")), shown_text(valued.text(row, "pay_item")), what));
        };
        if (!documents.contains(valued.key(row, {"document_no", "vendor_no", "Currency", "document_date"})))
            report("vendor, currency or date is not that of the document");
        else if (!items.contains(valued.key(row, {"document_no", "pay_item", "vendor_no"})))
            report("the document has no such item");
    }
}

// --- purchase accounts ---

// A line posts to its own accounts, unless the account's amounts come to nothing.
void check_accounts_of_lines(const Books& books, Findings& findings) {
    const TableRows& items = books.tables().rows("AP_transaction_table");
    const TableRows& invoices = books.tables().rows("AP_header_table");
    const RowsByKey& invoice_of = books.tables().by_key("AP_header_table", "fkey");
    std::unordered_map<std::string, std::unordered_map<std::string, double>> expected;
    const PostedAmounts posted(books, Reversed::left_out);
    std::unordered_set<std::string> taxed;
    std::unordered_set<std::string> tax_accounts;
    const TableRows& authorities = books.tables().rows("Tax_authority_table");
    for (std::int64_t row = 0; row < authorities.count(); ++row)
        for (const char* field : {"acc_recoverable", "acc_expense"})
            tax_accounts.insert(authorities.text(row, field));
    const TableRows& shares = books.tables().rows("Allocation_Account_table");
    std::unordered_set<std::string> spread;
    for (std::int64_t row = 0; row < shares.count(); ++row)
        for (const char* field : {"allocate_accno", "accno"})
            spread.insert(shares.text(row, field));
    for (const char* parameter : {"GL realized gain account", "GL realized loss account"}) {
        auto rows = books.read(
            fmt::format("SELECT accno FROM Account_Parameters_table WHERE parameter_name = '{}'", parameter));
        for (; !rows.at_eof(); rows.MoveNext())
            spread.insert(rows.column(0).text());
    }
    for (std::int64_t item = 0; item < items.count(); ++item) {
        const auto invoice = invoice_of.find(items.key(item, {"fkey"}));
        if (!invoice || items.text(item, "source_form") != "APform_invoice" ||
            invoices.text(*invoice, "source_form") != "APform_invoice")
            continue;
        const std::string fkey = invoices.text(*invoice, "GLFKEY");
        auto& accounts = expected[fkey];
        accounts[items.text(item, "ap_accno")] += number_in(items, item, "gross_amount");
        double cost = number_in(items, item, "taxable_amount");
        double stored = 0;
        for (const char* element : {"1", "2", "3", "4", "5"}) {
            const bool taken_off = items.text(item, "doctype") == "vcn";
            const double allocated = number_in(items, item, (std::string("tax_allocated") + element).c_str());
            cost += taken_off ? 0 : allocated;  // its tax never exceeds what is refunded of it
            stored += number_in(items, item, (std::string("tax_amount") + element).c_str());
        }
        accounts[items.text(item, "po_accno")] += cost;
        // A sixth tax is posted and not stored, and neither are the taxes of a line below nothing.
        if (std::fabs(stored - number_in(items, item, "tax_amount")) > kHalfOfTheCent) taxed.insert(fkey);
    }
    for (const auto& [fkey, accounts] : expected) {
        if (!posted.any(fkey) || taxed.contains(fkey)) continue;
        for (const auto& [accno, amount] : accounts) {
            if (tax_accounts.contains(accno) || spread.contains(accno)) continue;
            const double is = posted.on(fkey, accno).amount;
            if (std::fabs(is - amount) > kCentOfTaxes * 3)
                findings.push_back(
                    fmt::format("GL document {}: {:.2f} was posted to account {}, by its invoice {:.2f}",
                                shown_text(fkey), is, shown_text(accno), amount));
        }
    }
}

// --- numbers of lines ---

void check_item_numbers(const Books& books, const char* table, const char* noun, const char* and_year,
                        Findings& findings) {
    const TableRows& rows = books.tables().rows(table);
    std::unordered_set<std::string> seen;
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const auto number = store::whole_number_text(rows.text(row, "pay_item"));
        std::vector<std::string> key{"fkey", "pay_item"};
        if (and_year != nullptr) key.emplace_back(and_year);
        if (number && *number >= 1 && *number == std::floor(*number) &&
            seen.insert(rows.key(row, key)).second)
            continue;
        findings.push_back(fmt::format("{} {}: an item has the number \"{}\", which is no number of its own",
                                       noun, shown_text(rows.text(row, "fkey")),
                                       shown_text(rows.text(row, "pay_item"))));
    }
}

// --- ways of paying ---

// On which day each reversed GL document was taken back: by its last line, or in the document that says so.
std::unordered_map<std::string, std::string> days_of_reversal(const Books& books) {
    const TableRows& headers = books.tables().rows("GL_header_table");
    const TableRows& lines = books.tables().rows("GL_transaction_table");
    std::unordered_map<std::string, std::pair<double, std::string>> last;
    for (std::int64_t line = 0; line < lines.count(); ++line) {
        auto& [number, day] = last[lines.text(line, "fkey")];
        if (number_in(lines, line, "lineno") < number) continue;
        number = number_in(lines, line, "lineno");
        day = lines.text(line, "date_created");
    }
    constexpr std::string_view kElsewhere = "Reversed by ";
    std::unordered_map<std::string, std::string> by_number;
    for (std::int64_t header = 0; header < headers.count(); ++header)
        if (headers.text(header, "remark").starts_with("Reverse GL "))
            by_number.emplace(headers.text(header, "docno"), headers.text(header, "fkey"));
    std::unordered_map<std::string, std::string> days;
    for (std::int64_t header = 0; header < headers.count(); ++header) {
        const std::string fkey = headers.text(header, "fkey");
        if (!flag_in(headers, header, "Reverse")) continue;
        const std::string remark = headers.text(header, "remark");
        std::string taken_back = fkey;
        if (remark.starts_with(kElsewhere)) {
            const auto other = by_number.find(remark.substr(kElsewhere.size()));
            if (other == by_number.end()) continue;
            taken_back = other->second;
        }
        if (const auto found = last.find(taken_back); found != last.end()) days[fkey] = found->second.second;
    }
    return days;
}

void check_ways_of_paying(const Books& books, Findings& findings) {
    const TableRows& payments = books.tables().rows("Payment_header_table");
    const TableRows& lines = books.tables().rows("GL_transaction_table");
    std::unordered_map<std::string, std::set<std::string>> accounts;
    for (std::int64_t line = 0; line < lines.count(); ++line)
        accounts[lines.text(line, "fkey")].insert(lines.text(line, "accno"));
    const auto days = days_of_reversal(books);
    std::unordered_map<std::string, double> paid;
    const TableRows& items = books.tables().rows("Payment_transaction_table");
    for (std::int64_t item = 0; item < items.count(); ++item)
        paid[items.text(item, "fkey")] += std::round(number_in(items, item, "pay_amount") * 100);
    std::unordered_set<std::string> cards;
    const TableRows& masters = books.tables().rows("Credit_card_master_table");
    for (std::int64_t card = 0; card < masters.count(); ++card)
        cards.insert(masters.text(card, "card_name"));
    for (std::int64_t row = 0; row < payments.count(); ++row) {
        const std::string form = payments.text(row, "source_form");
        const bool card_payment =
            payments.text(row, "doctype") == "pc" && !payments.text(row, "GLFKEY").empty();
        if (form != "APform_payment" && form != "APform_prepayment" && form != "APform_misc_payment" &&
            !card_payment)
            continue;
        const auto text = [&](const char* field) { return payments.text(row, field); };
        const auto report = [&](const std::string& what) {
            findings.push_back(fmt::format("Payment {}: {}", shown_text(text("fkey")), what));
        };
        const std::string by = text("payby");
        const bool check = by == "Check";
        const bool cash = by == "Cash";
        if (!check && !cash && form != "APform_misc_payment" && by != "Pay Later" && !cards.contains(by))
            report(fmt::format("it was paid by \"{}\", which is no card", shown_text(by)));
        if (!cash && !text("cash_accno").empty()) report("a cash account goes with cash alone");
        if ((check || (cash && text("cash_accno").empty())) == text("bank_code").empty())
            report("its way of paying and its bank do not go together");
        // What is paid of invoices may come to nothing.
        const auto posted = form == "APform_payment" && paid[text("fkey")] == 0
                                ? accounts.end()
                                : accounts.find(text("GLFKEY"));
        if (!text("cash_accno").empty() && posted != accounts.end() &&
            !posted->second.contains(text("cash_accno")))
            report("it has posted nothing to its cash account");
        if (text("Currency") == books.base_currency() &&
            (!text("exchange_rate").empty() || !text("rate_date").empty()))
            report("it is in base currency and has a rate");
        if (text("exchange_rate").empty() && !text("rate_date").empty())
            report("it has the date of a rate and no rate");
        if (const auto day = days.find(text("GLFKEY"));
            day != days.end() && !text("void_date").empty() && day->second != text("void_date"))
            report("it was not voided on the day on which its GL document was reversed");
        if (card_payment && !cards.contains(text("vendor_no"))) report("it pays a card that is not there");
    }
}

void check_payment_rates(const Books& books, Findings& findings) {
    const TableRows& lines = books.tables().rows("Payment_transaction_table");
    for (std::int64_t line = 0; line < lines.count(); ++line) {
        const bool rated = !lines.text(line, "payment_exchange_rate").empty() ||
                           !lines.text(line, "invoice_exchange_rate").empty();
        if (rated && lines.text(line, "Currency") == books.base_currency())
            findings.push_back(fmt::format("Payment {}, item {}: it is in base currency and has a rate",
                                           shown_text(lines.text(line, "fkey")),
                                           shown_text(lines.text(line, "item_no"))));
    }
}

}  // namespace

void check_marks_of_payments(const Books& books, Findings& findings) {
    const PaidNumbers paid(books);
    check_unpaid_items(books, paid, findings);
    check_paid_marks(books, paid, findings);
}

void check_templates(const Books& books, Findings& findings) {
    TemplateLines lines(books, findings);
    lines.check();
    lines.check_issued(books);
}

void check_numbers_of_items(const Books& books, Findings& findings) {
    check_item_numbers(books, "AP_transaction_table", "Invoice", "Year", findings);
    check_item_numbers(books, "Payment_misc_transaction_table", "Payment", nullptr, findings);
}

void check_payment_fields(const Books& books, Findings& findings) {
    check_ways_of_paying(books, findings);
    check_revalued_items(books, findings);
    check_accounts_of_lines(books, findings);
    check_payment_rates(books, findings);
}

}  // namespace brimley::company
