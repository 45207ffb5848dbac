// The taxes of a line by authority, in up to five places.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

constexpr int kTaxElements = 5;
constexpr double kHalfACent = 0.0051;
constexpr double kCent = 0.0101;

struct CodeElement {
    std::string authority;
    bool taxable = false;
};
struct Authority {
    double rate = 0;
    bool limited = false;
};
using Codes = std::map<std::string, std::vector<CodeElement>>;
using Authorities = std::map<std::string, Authority>;

// As they are today, in the order in which a line has them.
Codes purchase_codes(const Books& books) {
    Codes codes;
    auto rows = books.read(
        "SELECT tax_code,tax_authority,taxable FROM Tax_code_details_table WHERE transaction_type = "
        "'purchase' ORDER BY tax_code,item_no");
    for (; !rows.at_eof(); rows.MoveNext())
        codes[rows.column(0).text()].push_back({rows.column(1).text(), rows.column(2).flag()});
    return codes;
}

Authorities authorities_of_today(const Books& books) {
    Authorities authorities;
    auto rows = books.read("SELECT tax_authority,Rate,min_charged,max_charged FROM Tax_authority_table");
    for (; !rows.at_eof(); rows.MoveNext())
        authorities[rows.column(0).text()] = {rows.column(1).number(),
                                              rows.column(2).number() > 0 || rows.column(3).number() > 0};
    return authorities;
}

// What differs between the two tables of lines.
struct TaxedLines {
    const char* table;
    const char* noun;
    const char* net;  // the amount without tax; null where it is not stored
    const char* gross;
    bool no_panel;  // in which a user may tick what is taxed further
};

constexpr TaxedLines kTaxedLines[]{
    {"AP_transaction_table", "Invoice", "taxable_amount", "gross_amount", false},
    {"Payment_misc_transaction_table", "Payment", nullptr, "pay_amount", true},
};

struct ElementColumns {
    int authority, taxable_amount, rate, amount, taxable, allocated, recoverable, expensed;
};

class TaxElements {
  public:
    TaxElements(const Books& books, const TaxedLines& lines, const Codes& codes,
                const Authorities& authorities, Findings& findings)
        : lines_(lines),
          rows_(books.tables().rows(lines.table)),
          codes_(codes),
          authorities_(authorities),
          findings_(findings) {
        for (int element = 1; element <= kTaxElements; ++element) {
            const auto column = [&](const char* field) {
                return rows_.column(field + std::to_string(element));
            };
            columns_[static_cast<std::size_t>(element - 1)] = {
                column("tax_authority"),   column("taxable_amount"), column("tax_rate"),
                column("tax_amount"),      column("taxable"),        column("tax_allocated"),
                column("tax_recoverable"), column("tax_expensed")};
        }
    }

    void check() {
        for (std::int64_t row = 0; row < rows_.count(); ++row)
            check_line(row);
    }

  private:
    void check_line(std::int64_t row) {
        row_ = row;
        const std::string code = rows_.text(row, "tax_code");
        const auto known = codes_.find(code);
        static const std::vector<CodeElement> kNone;
        const std::vector<CodeElement>& elements = known == codes_.end() ? kNone : known->second;
        int stored = 0;
        for (const ElementColumns& at : columns_)
            stored += text(at.authority).empty() ? 0 : 1;
        // A line of another module, or one below nothing, has none.
        if (stored == 0) return check_nothing_from(0);
        if (text(columns_.front().authority).empty()) report(0, "is missing, and a further one is not");
        taxed_further_ = 0;
        for (int element = 0; element < kTaxElements; ++element)
            if (!check_element(element, elements)) return;
        if (stored != std::min<int>(kTaxElements, static_cast<int>(elements.size())) && known != codes_.end())
            report(0, fmt::format("tax code {} has {} elements, and {} are stored", shown_text(code),
                                  elements.size(), stored));
        check_sum(stored, elements.size());
    }

    // Nothing of an element without an authority.
    void check_nothing_from(int element) {
        const ElementColumns& at = columns_[static_cast<std::size_t>(element)];
        for (const int column :
             {at.taxable_amount, at.rate, at.amount, at.taxable, at.allocated, at.recoverable, at.expensed})
            if (!is_nothing(rows_.value(row_, column))) report(element, "has amounts and no authority");
        if (element + 1 < kTaxElements) check_nothing_from(element + 1);
    }

    bool check_element(int element, const std::vector<CodeElement>& elements) {
        const ElementColumns& at = columns_[static_cast<std::size_t>(element)];
        const std::string authority = text(at.authority);
        if (authority.empty()) {
            check_nothing_from(element);
            return element > 0;
        }
        const auto place = static_cast<std::size_t>(element);
        if (place < elements.size()) {
            if (elements[place].authority != authority)
                report(element, fmt::format("is that of {}, and in its code that of {}",
                                            shown_text(authority), shown_text(elements[place].authority)));
            if (lines_.no_panel && elements[place].taxable != rows_.value(row_, at.taxable).flag())
                report(element, "is taxed further in its code and not here, or the other way round");
        } else {
            report(element, "is not in its tax code");
        }
        check_amounts(element, at, authority);
        return true;
    }

    void check_amounts(int element, const ElementColumns& at, const std::string& authority) {
        const double tax = number(at.amount);
        const double taxed = number(at.taxable_amount);
        const double rate = number(at.rate);
        if (!is_base(taxed, tax))
            report(element, fmt::format("taxes {:.2f}, which no amount of the line is", taxed));
        const auto known = authorities_.find(authority);
        const bool limited = known != authorities_.end() && known->second.limited;
        const bool of_today = known != authorities_.end() && std::fabs(known->second.rate - rate) < 1e-9;
        // A tax code that was chosen after the amount has given no tax, and a limit another one.
        if (!of_today && !(tax != 0 && !limited && std::fabs(tax - taxed * rate / 100) < kCent))
            report(element,
                   fmt::format("has rate {}, which is not its authority's and does not make its tax", rate));
        if (rows_.value(row_, at.taxable).flag()) taxed_further_ += tax;
    }

    // The amount of the line, with or without its tax, and the taxes on which this one is levied as well.
    [[nodiscard]] bool is_base(double taxed, double tax) const {
        const double gross = rows_.value(row_, rows_.column(lines_.gross)).number();
        const double line_tax = rows_.value(row_, rows_.column("tax_amount")).number();
        const double net =
            lines_.net != nullptr ? rows_.value(row_, rows_.column(lines_.net)).number() : gross;
        for (const double amount : {net, gross, gross - tax, gross - line_tax, net - tax})
            for (const double further : {0.0, taxed_further_, taxed_further_ + tax})
                if (std::fabs(amount + further - taxed) < kCent) return true;
        return false;
    }

    void check_sum(int stored, std::size_t elements) {
        double sum = 0;
        for (const ElementColumns& at : columns_)
            sum += number(at.amount);
        const double tax = rows_.value(row_, rows_.column("tax_amount")).number();
        if (stored == kTaxElements && elements > kTaxElements) return;  // a sixth has no place here
        if (std::fabs(sum - tax) > kHalfACent)
            report(0, fmt::format("taxes make {:.2f}, and the line says {:.2f}", sum, tax));
    }

    [[nodiscard]] std::string text(int column) const { return rows_.value(row_, column).text(); }
    [[nodiscard]] double number(int column) const { return rows_.value(row_, column).number(); }
    void report(int element, const std::string& what) {
        findings_.push_back(fmt::format("{} {}, pay item {}: tax {} {}", lines_.noun,
                                        shown_text(rows_.text(row_, "fkey")),
                                        shown_text(rows_.text(row_, "pay_item")), element + 1, what));
    }

    const TaxedLines& lines_;
    const TableRows& rows_;
    const Codes& codes_;
    const Authorities& authorities_;
    Findings& findings_;
    std::array<ElementColumns, kTaxElements> columns_{};
    std::int64_t row_ = 0;
    double taxed_further_ = 0;
};

}  // namespace

void check_tax_elements(const Books& books, Findings& findings) {
    const Codes codes = purchase_codes(books);
    const Authorities authorities = authorities_of_today(books);
    for (const TaxedLines& lines : kTaxedLines)
        TaxElements(books, lines, codes, authorities, findings).check();
}

}  // namespace brimley::company
