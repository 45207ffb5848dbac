// GL documents of this module's forms: where they come from, what they say of themselves, and that header and
// lines were made together.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/stamps.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

// "{}" stands for the number of the document that was posted.
struct DocumentOrigin {
    const char* source;
    const char* source_form;
    const char* line_source;
    const char* remark;
    const char* voided;  // in the document itself
    const char* edited;  // in the document itself
    const char* in_new;  // in a document of its own
    bool rate_from_amounts;
};

constexpr DocumentOrigin kOrigins[]{
    {"AP-INVOICE", "APform_invoice", "AP-INVOICE", "Invoice no. {}", "Void invoice {}", "Edit invoice {}",
     "void invoice {}", false},
    {"AP-PAYMENT", "Payment Entry", "AP-PAYMENT", "payment no. {}", "{}Void payment ", "{}Edit payment ",
     "{}void payment ", true},
    {"AP", "A/P Prepayment", "AP-PREPAY", "prepayment no. {}", "{}Void payment ", "{}Edit payment ",
     "{}void payment ", true},
    {"AP-MISCPAY", "APform_misc_payment", "AP-MISCPAY", "payment no. {}", "{}Void payment ",
     "{}Edit payment ", "{}void payment ", true},
    {"AP-CARD", "Credit Card Payment", "AP-CARD", "Payment no. {}", "{}Void payment ", "{}Edit payment ",
     "{}void payment ", true},
};

constexpr std::string_view kReverseOfDocument = "Reverse GL ";
constexpr std::string_view kReversedByDocument = "Reversed by ";

bool has_dash(const std::string& fkey) { return fkey.find('-') != std::string::npos; }

class LedgerDocuments {
  public:
    LedgerDocuments(const Books& books, Findings& findings)
        : books_(books),
          headers_(books.tables().rows("GL_header_table")),
          lines_(books.tables().rows("GL_transaction_table")),
          findings_(findings) {
        for (std::int64_t line = 0; line < lines_.count(); ++line)
            lines_of_[lines_.text(line, "fkey")].push_back(line);
        for (auto& [fkey, lines] : lines_of_)
            std::ranges::sort(lines, {}, [&](std::int64_t line) { return line_number(line, "lineno"); });
        for (std::int64_t header = 0; header < headers_.count(); ++header) {
            remarks_.emplace(headers_.text(header, "docno"), headers_.text(header, "remark"));
            currencies_.emplace(headers_.text(header, "docno"), headers_.text(header, "Currency"));
        }
        for (const char* table : {"AP_header_table", "Payment_header_table"}) {
            const TableRows& owners = books.tables().rows(table);
            for (std::int64_t owner = 0; owner < owners.count(); ++owner)
                vendors_.emplace(owners.text(owner, "GLFKEY"), owners.text(owner, "vendor_no"));
        }
    }

    void check() {
        for (std::int64_t header = 0; header < headers_.count(); ++header)
            if (has_dash(headers_.text(header, "fkey"))) check_document(header);
    }

  private:
    void check_document(std::int64_t header) {
        header_ = header;
        const auto found = lines_of_.find(text("fkey"));
        lines_here_ = found == lines_of_.end() ? std::vector<std::int64_t>() : found->second;
        const DocumentOrigin* const origin = origin_of();
        if (origin == nullptr) return;
        const std::string number = text("source_docno");
        const std::string remark = text("remark");
        if (remark.starts_with(kReverseOfDocument))
            check_reverse(*origin, number, remark.substr(kReverseOfDocument.size()));
        else
            check_posted(*origin, number, remark);
        check_rates(*origin);
    }

    // Null for a document of another module. A finding when source, form and lines do not go together.
    const DocumentOrigin* origin_of() {
        const std::string source = text("Source");
        const std::string form = text("source_form");
        const std::string line_source =
            lines_here_.empty() ? std::string() : lines_.text(lines_here_.front(), "Source");
        for (const DocumentOrigin& origin : kOrigins) {
            const bool is_source = source == origin.source && source != "AP";
            if (!is_source && form != origin.source_form && line_source != origin.line_source) continue;
            if (source == origin.source && form == origin.source_form &&
                (line_source.empty() || line_source == origin.line_source))
                return &origin;
            report(fmt::format("its source \"{}\", its form \"{}\" and its lines do not go together",
                               shown_text(source), shown_text(form)));
            return nullptr;
        }
        return nullptr;
    }

    void check_posted(const DocumentOrigin& origin, const std::string& number, const std::string& remark) {
        const bool elsewhere = remark.starts_with(kReversedByDocument);
        if (elsewhere) {
            const auto other = remarks_.equal_range(remark.substr(kReversedByDocument.size()));
            const bool agrees = std::any_of(other.first, other.second, [&](const auto& each) {
                return each.second == std::string(kReverseOfDocument) + text("docno");
            });
            if (!agrees) report("it is reversed by a document that does not say so");
        } else if (remark != fmt::format(fmt::runtime(origin.remark), number)) {
            report(fmt::format("its remark is \"{}\"", shown_text(remark)));
        }
        if (elsewhere && !is_reversed()) report("it is reversed by another document and not marked so");
        const std::string said = text("Description");
        const bool in_itself = is_reversed_in_itself();
        const bool may_say = in_itself && (said == fmt::format(fmt::runtime(origin.voided), number) ||
                                           said == fmt::format(fmt::runtime(origin.edited), number));
        const bool silent = !in_itself || voided_as_check();
        if (!may_say && !(said.empty() && silent)) report(fmt::format("it says \"{}\"", shown_text(said)));
        check_made_together(in_itself);
    }

    void check_reverse(const DocumentOrigin& origin, const std::string& number, const std::string& reversed) {
        const auto other = remarks_.equal_range(reversed);
        const bool agrees = std::any_of(other.first, other.second, [&](const auto& each) {
            return each.second == std::string(kReversedByDocument) + text("docno");
        });
        if (!agrees) report("it reverses a document that does not say so");
        const auto currencies = currencies_.equal_range(reversed);
        if (agrees && std::none_of(currencies.first, currencies.second,
                                   [&](const auto& each) { return each.second == text("Currency"); }))
            report("it is in another currency than the document that it reverses");
        const std::string said = text("Description");
        if (said != fmt::format(fmt::runtime(origin.in_new), number) && !(said.empty() && voided_as_check()))
            report(fmt::format("it says \"{}\"", shown_text(said)));
        if (lines_here_.empty()) return;
        check_cluster(0, lines_here_.size(), stamp_of(lines_, lines_here_.front()));
        const auto day = headers_.value(header_, headers_.column("gldate")).date();
        const auto made = lines_.value(lines_here_.front(), lines_.column("date_created")).date();
        if (!day || !made || day->date_only() != made->date_only())
            report("it is not of the day on which it was made");
    }

    [[nodiscard]] bool voided_as_check() const {
        return !lines_here_.empty() && lines_.text(lines_here_.back(), "source_form") == "APform_void_check";
    }

    [[nodiscard]] bool is_reversed() const {
        return headers_.value(header_, headers_.column("Reverse")).flag();
    }
    [[nodiscard]] bool is_reversed_in_itself() const {
        return is_reversed() && !text("remark").starts_with(kReversedByDocument);
    }

    // The lines of a reverse are the second half of a document that was reversed in itself.
    [[nodiscard]] std::size_t posted_lines(bool reversed_in_itself) const {
        return reversed_in_itself ? lines_here_.size() / 2 : lines_here_.size();
    }

    void check_made_together(bool reversed_in_itself) {
        const std::size_t posted = posted_lines(reversed_in_itself);
        check_cluster(0, posted, stamp_of(headers_, header_));
        if (posted < lines_here_.size())
            check_cluster(posted, lines_here_.size(), stamp_of(lines_, lines_here_[posted]));
    }

    void check_cluster(std::size_t from, std::size_t to, const Stamp& stamp) {
        for (std::size_t i = from; i < to; ++i)
            if (!made_together(stamp_of(lines_, lines_here_[i]), stamp))
                report(fmt::format("its line {} was made at another time, or by another user", i + 1));
    }

    void check_rates(const DocumentOrigin& origin) {
        const bool foreign = text("Currency") != books_.base_currency();
        const double rate = headers_.value(header_, headers_.column("exchange_rate")).number();
        if (!foreign && rate != 0) report("it is in base currency and has a rate");
        const std::size_t posted = posted_lines(is_reversed_in_itself());
        for (std::size_t i = 0; i < lines_here_.size(); ++i) {
            const std::int64_t line = lines_here_[i];
            const std::string name = fmt::format("its line {}", lines_.text(line, "lineno"));
            const bool last = i + 1 == posted;
            const bool may_round = foreign && last && lines_.text(line, "ledgertype") == "A";
            const std::string vendor = lines_.text(line, "vendor_no");
            if (!vendor.empty() && !(may_round && vendor == vendor_of(text("fkey"))))
                report(name + " names a vendor");
            if (!is_rate(origin, line, rate, may_round)) report(name + " has another rate");
        }
    }

    [[nodiscard]] bool is_rate(const DocumentOrigin& origin, std::int64_t line, double rate,
                               bool may_round) const {
        const double here = line_number(line, "exchange_rate");
        if (lines_.text(line, "ledgertype") == "A")
            return here == 0 || (may_round && origin.rate_from_amounts && here == rate);
        if (!origin.rate_from_amounts) return here == rate;
        const double amount = line_number(line, "amount");
        return amount == 0 || std::fabs(here - line_number(line, "base_amount") / amount) < 0.005;
    }

    [[nodiscard]] std::string vendor_of(const std::string& fkey) const {
        const auto found = vendors_.find(fkey);
        return found == vendors_.end() ? std::string() : found->second;
    }
    [[nodiscard]] double line_number(std::int64_t line, const char* field) const {
        return lines_.value(line, lines_.column(field)).number();
    }
    [[nodiscard]] std::string text(const char* field) const { return headers_.text(header_, field); }
    void report(const std::string& what) {
        findings_.push_back(fmt::format("GL document {}: {}", shown_text(text("fkey")), what));
    }

    const Books& books_;
    const TableRows& headers_;
    const TableRows& lines_;
    Findings& findings_;
    std::unordered_map<std::string, std::vector<std::int64_t>> lines_of_;
    std::unordered_multimap<std::string, std::string> remarks_;
    std::unordered_multimap<std::string, std::string> currencies_;
    std::unordered_map<std::string, std::string> vendors_;
    std::vector<std::int64_t> lines_here_;
    std::int64_t header_ = 0;
};

// The GL documents of a document, the first and the last one posted.
struct Posted {
    double first_number = 0;
    std::int64_t first = -1;
    int postings = 0;
};

class DocumentStamps {
  public:
    DocumentStamps(const Books& books, Findings& findings)
        : books_(books), headers_(books.tables().rows("GL_header_table")), findings_(findings) {
        for (std::int64_t header = 0; header < headers_.count(); ++header) {
            const auto number = running_number_of(headers_.text(header, "fkey"));
            if (!number || headers_.text(header, "remark").starts_with(kReverseOfDocument)) continue;
            Posted& posted = posted_[headers_.key(header, {"Source", "source_docno"})];
            ++posted.postings;
            if (posted.first < 0 || *number < posted.first_number)
                posted = {*number, header, posted.postings};
        }
    }

    void check() {
        check_headers("AP_header_table", "Invoice", [](const TableRows& rows, std::int64_t row) {
            return rows.text(row, "Source") == "AP-INVOICE" &&
                           rows.text(row, "source_form") == "APform_invoice"
                       ? "AP-INVOICE"
                       : "";
        });
        check_headers("Payment_header_table", "Payment", [](const TableRows& rows, std::int64_t row) {
            const std::string form = rows.text(row, "source_form");
            return form == "APform_payment"                                                 ? "AP-PAYMENT"
                   : form == "APform_prepayment"                                            ? "AP"
                   : form == "APform_misc_payment"                                          ? "AP-MISCPAY"
                   : rows.text(row, "doctype") == "pc" && !rows.text(row, "GLFKEY").empty() ? "AP-CARD"
                                                                                            : "";
        });
        check_invoice_lines();
    }

  private:
    template <class SourceOf>
    void check_headers(const char* table, const char* noun, const SourceOf& source_of) {
        const TableRows& rows = books_.tables().rows(table);
        std::unordered_map<std::string, int> numbers;
        for (std::int64_t row = 0; row < rows.count(); ++row)
            ++numbers[rows.text(row, "docno")];
        for (std::int64_t row = 0; row < rows.count(); ++row) {
            const std::string source = source_of(rows, row);
            const std::string docno = rows.text(row, "docno");
            const auto posted = posted_.find(source + '\n' + docno + '\n');
            if (source.empty() || numbers[docno] > 1 || posted == posted_.end()) continue;
            if (!made_together(stamp_of(rows, row), stamp_of(headers_, posted->second.first)))
                findings_.push_back(fmt::format("{} {} was not made with GL document {}, its first one", noun,
                                                shown_text(rows.text(row, "fkey")),
                                                shown_text(headers_.text(posted->second.first, "fkey"))));
        }
    }

    // They are those of the last save, whose document the header names. An edit loses the hold of the lines.
    void check_invoice_lines() {
        const TableRows& invoices = books_.tables().rows("AP_header_table");
        const TableRows& lines = books_.tables().rows("AP_transaction_table");
        const RowsByKey& invoice_of = books_.tables().by_key("AP_header_table", "fkey");
        const RowsByKey& document_of = books_.tables().by_key("GL_header_table", "fkey");
        for (std::int64_t line = 0; line < lines.count(); ++line) {
            const auto invoice = invoice_of.find(lines.key(line, {"fkey"}));
            if (!invoice) continue;
            const auto report = [&](const char* what) {
                findings_.push_back(fmt::format("Invoice {}, item {}: {}",
                                                shown_text(lines.text(line, "fkey")),
                                                shown_text(lines.text(line, "pay_item")), what));
            };
            const bool held = invoices.text(*invoice, "hold") == "TRUE";
            const bool line_held = lines.text(line, "hold") == "TRUE";
            const auto posted = posted_.find(invoices.key(*invoice, {"Source", "docno"}));
            const bool edited = posted != posted_.end() && posted->second.postings > 1;
            if (line_held && !held) report("is on hold, and its invoice is not");
            if (held && !line_held && !edited) report("is not on hold, and its invoice is");
            const auto document = document_of.find(invoices.key(*invoice, {"GLFKEY"}));
            if (!document || invoices.text(*invoice, "source_form") != "APform_invoice") continue;
            if (!made_together(stamp_of(lines, line), stamp_of(headers_, *document)))
                report("was not made with the GL document of its invoice");
        }
    }

    const Books& books_;
    const TableRows& headers_;
    Findings& findings_;
    std::unordered_map<std::string, Posted> posted_;
};

}  // namespace

void check_ledger_documents(const Books& books, Findings& findings) {
    LedgerDocuments(books, findings).check();
}

void check_stamps(const Books& books, Findings& findings) { DocumentStamps(books, findings).check(); }

}  // namespace brimley::company
