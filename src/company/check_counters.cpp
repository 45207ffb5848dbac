// Keys and numbers of documents against the counters that they are drawn from.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_set>

#include "company/check.h"
#include "company/generated_invoices.h"
#include "company/shown_text.h"
#include "kernel/money.h"

namespace brimley::company {

namespace {

using store::Recordset;

// A table of documents. Revaluations have no field for their kind; templates are numbered under another name,
// and have no year.
struct DocumentTable {
    const char* query;    // fkey, company, and what else there is of doctype, docno, fyear
    const char* doctype;  // for a table without the field
};

constexpr DocumentTable kDocumentTables[] = {
    {"SELECT fkey,company,doctype,docno,fyear FROM AP_header_table ORDER BY fkey", nullptr},
    {"SELECT fkey,company,doctype FROM AP_recur_header_table ORDER BY fkey", nullptr},
    {"SELECT fkey,company,doctype,docno,fyear FROM Payment_header_table ORDER BY fkey", nullptr},
    {"SELECT fkey,company,docno,fyear FROM AP_Revalue_header_table ORDER BY fkey", "apre"},
    {"SELECT fkey,company,doctype,docno,fyear FROM GL_header_table ORDER BY fkey", nullptr},
};

struct Document {
    std::string fkey;
    std::string company;
    std::string doctype;
    std::string docno;
    std::string fyear;
};

void each_document(const Books& books, const std::function<void(const Document&)>& visit) {
    for (const DocumentTable& table : kDocumentTables) {
        Recordset rows = books.read(table.query);
        const auto text = [&](const char* field) {
            return rows.has_field(field) ? rows.text(field) : std::string();
        };
        for (; !rows.at_eof(); rows.MoveNext()) {
            visit({rows.text("fkey"), rows.text("company"), table.doctype ? table.doctype : text("doctype"),
                   text("docno"), text("fyear")});
        }
    }
}

// A company is one and the same whether it is written "1" or "01".
std::string company_by_value(const std::string& company) {
    const std::optional<double> number = store::whole_number_text(company);
    return number ? fmt::format("{}", *number) : company;
}

// The counter of a key's part before the "-": the company and the kind.
std::string key_counter(std::string_view prefix) {
    const std::size_t kind = std::min(prefix.find_first_not_of("0123456789"), prefix.size());
    return fmt::format("Next_number_fkey_table {}{}", company_by_value(std::string(prefix.substr(0, kind))),
                       prefix.substr(kind));
}

// The number that the whole text is, written in digits only.
std::optional<double> running_number(std::string_view digits) {
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), is_digit)) return std::nullopt;
    double number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

// The highest number used by each counter, with the document that has it.
struct HighestUse {
    double number = 0;
    std::string document;
    std::set<double> numbers{};
    bool all_are_read = true;  // none is written in another format
};
using Uses = std::map<std::string, HighestUse>;

void note_use(Uses& uses, const std::string& counter, double number, const std::string& document) {
    HighestUse& use = uses[counter];
    use.numbers.insert(number);
    if (!use.document.empty() && number <= use.number) return;
    use.number = number;
    use.document = document;
}

// Numbers are drawn one after the other, and given back when a save fails.
void report_gaps(const std::string& counter, double next, const HighestUse& use, Findings& findings) {
    double expected = *use.numbers.begin();
    for (const double number : use.numbers) {
        if (number != expected) {
            findings.push_back(fmt::format("{}: {} numbers from {} on are not used", shown_text(counter),
                                           number - expected, expected));
            return;
        }
        ++expected;
    }
    if (next > expected)
        findings.push_back(fmt::format("{} is at {}, and the last number that is used is {}",
                                       shown_text(counter), next, use.number));
}

enum class Gaps { are_found, are_ignored };

void compare(const Uses& uses, const std::map<std::string, double>& counters, Gaps gaps, Findings& findings) {
    for (const auto& [name, use] : uses) {
        const auto counter = counters.find(name);
        if (counter == counters.end()) {
            findings.push_back(
                fmt::format("{} is missing, though {} is used", shown_text(name), shown_text(use.document)));
        } else if (counter->second <= use.number) {
            findings.push_back(fmt::format("{} is at {}, but {} is used", shown_text(name), counter->second,
                                           shown_text(use.document)));
        } else if (gaps == Gaps::are_found && use.all_are_read) {
            report_gaps(name, counter->second, use, findings);
        }
    }
}

}  // namespace

void check_document_keys(const Books& books, Findings& findings) {
    std::set<std::string> keys;
    each_document(books, [&](const Document& document) {
        const bool never_restarts = document.fkey.find('-') != std::string::npos;
        if (never_restarts && !keys.insert(document.fkey).second) {
            findings.push_back(fmt::format("Two documents have the key {}", shown_text(document.fkey)));
        }
    });
}

namespace {

void compare_keys(const Books& books, Gaps gaps, Findings& findings) {
    Uses uses;
    each_document(books, [&](const Document& document) {
        const std::size_t dash = document.fkey.find('-');
        if (dash == std::string::npos) return;
        const auto number = running_number(std::string_view(document.fkey).substr(dash + 1));
        if (number) note_use(uses, key_counter(document.fkey.substr(0, dash)), *number, document.fkey);
    });
    std::map<std::string, double> counters;
    Recordset rows = books.read("SELECT company,doctype,fkeyno FROM Next_number_fkey_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        counters[key_counter(rows.text("company") + rows.text("doctype"))] = rows.number("fkeyno");
    }
    compare(uses, counters, gaps, findings);
}

}  // namespace

void check_key_counters(const Books& books, Findings& findings) {
    compare_keys(books, Gaps::are_ignored, findings);
}

namespace {

// How numbers are written now. A number that would now be written otherwise was drawn before the format was
// changed, and is not judged.
class NumberFormat {
  public:
    explicit NumberFormat(const Books& books) {
        Recordset config = books.read("SELECT * FROM Next_number_config_table");
        if (!config.at_eof()) {
            if (!config.field("structure").is_null()) structure_ = config.text("structure");
            short_year_ = config.number("fyear_digit") == 2;
            first_ = config.flag("seperator1") ? "-" : "";
            second_ = config.flag("seperator2") ? "-" : "";
        }
        Recordset formats =
            books.read("SELECT doctype,prefix,running_no_digit FROM Next_number_format_table");
        for (; !formats.at_eof(); formats.MoveNext()) {
            kinds_[formats.text("doctype")] = {formats.text("prefix"),
                                               kernel::money_value(formats.text("running_no_digit"))};
        }
    }

    // Otherwise numbers come again each year.
    [[nodiscard]] bool has_year() const { return structure_ != "3"; }
    // The running number in a document's number; nothing when it is written in another way.
    [[nodiscard]] std::optional<double> number_in(const Document& document) const {
        const auto found = kinds_.find(document.doctype);
        const Kind kind = found == kinds_.end() ? Kind() : found->second;
        const std::string start = start_of(kind.prefix, document.fyear);
        if (document.docno.compare(0, start.size(), start) != 0) return std::nullopt;
        const std::string digits = document.docno.substr(start.size());
        const std::optional<double> number = running_number(digits);
        return number && written(*number, kind.width) == digits ? number : std::nullopt;
    }

  private:
    struct Kind {
        std::string prefix;
        double width = 0;  // digits at least
    };

    [[nodiscard]] std::string start_of(const std::string& prefix, const std::string& fyear) const {
        const std::string year =
            short_year_ ? fyear.substr(std::min<std::size_t>(2, fyear.size()), 2) : fyear;
        if (structure_ == "2") return year + first_ + prefix + second_;
        if (structure_ == "3") return prefix + first_;
        return prefix + first_ + year + second_;
    }

    static std::string written(double number, double width) {
        return fmt::format("{:0{}.0f}", number, static_cast<int>(std::clamp(width, 0.0, kDigitsMax)));
    }

    static constexpr double kDigitsMax = 100;
    std::string structure_ = "1";
    bool short_year_ = false;
    std::string first_;
    std::string second_;
    std::map<std::string, Kind> kinds_;
};

std::string number_counter(const std::string& company, const std::string& doctype, const std::string& fyear) {
    return fmt::format("Docno_master_table {} {} {}", company_by_value(company), doctype, fyear);
}

// The numbers that generation has drawn, by counter: they are the counter's own, whatever the format.
class GeneratedNumbers {
  public:
    GeneratedNumbers(const Books& books, Uses& uses, Findings& findings) : uses_(uses), findings_(findings) {
        const GeneratedInvoices& generated = books.generated();
        for (const GeneratedPosting& posting : generated.postings())
            add(number_counter(fmt::format("{}", kOnlyCompany), "gl", posting.fyear), posting.docno, "gl");
        for (const GeneratedInvoice& invoice : generated.invoices()) {
            // The invoice does not name its fiscal year; its GL document does.
            if (invoice.postings.size() != 1) continue;
            const std::string& fyear = invoice.postings.front()->fyear;
            add(number_counter(invoice.company, invoice.doctype, fyear), invoice.docno, invoice.doctype);
        }
    }

    // The number of a document that was not generated.
    void compare(const std::string& counter, double number, const std::string& docno) {
        const auto found = docnos_.find({counter, number});
        if (found != docnos_.end()) report(counter, found->second, docno);
    }

  private:
    void add(const std::string& counter, const std::string& docno, const std::string& doctype) {
        const auto number = generated_number(docno, doctype);
        if (!number) return;
        note_use(uses_, counter, *number, docno);
        if (!docnos_.try_emplace({counter, *number}, docno).second) report(counter, docno, docno);
    }
    void report(const std::string& counter, const std::string& docno, const std::string& other) {
        findings_.push_back(fmt::format("{} gave the same number to {} and to {}", shown_text(counter),
                                        shown_text(docno), shown_text(other)));
    }

    static constexpr int kOnlyCompany = 1;
    std::map<std::pair<std::string, double>, std::string> docnos_;
    Uses& uses_;
    Findings& findings_;
};

}  // namespace

namespace {

void compare_numbers(const Books& books, Gaps gaps, Findings& findings) {
    const NumberFormat format(books);
    std::unordered_set<std::string> docnos;
    Uses uses;
    GeneratedNumbers generated(books, uses, findings);
    each_document(books, [&](const Document& document) {
        const bool never_restarts = document.fkey.find('-') != std::string::npos;
        if (document.fyear.empty() || !never_restarts) return;
        if (gaps == Gaps::are_found && format.has_year() && !document.docno.empty() &&
            !docnos.insert(document.doctype + ' ' + document.docno).second)
            findings.push_back(fmt::format("Two documents have the number {}", shown_text(document.docno)));
        if (const auto number = format.number_in(document)) {
            const std::string counter = number_counter(document.company, document.doctype, document.fyear);
            note_use(uses, counter, *number, document.docno);
            generated.compare(counter, *number, document.docno);
        } else {
            uses[number_counter(document.company, document.doctype, document.fyear)].all_are_read = false;
        }
    });
    std::map<std::string, double> counters;
    Recordset rows = books.read("SELECT company,doctype,fiscalyear,nextdocno FROM Docno_master_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        counters[number_counter(rows.text("company"), rows.text("doctype"), rows.text("fiscalyear"))] =
            rows.number("nextdocno");
    }
    std::erase_if(uses, [](const auto& use) { return use.second.document.empty(); });
    compare(uses, counters, gaps, findings);
}

}  // namespace

void check_number_counters(const Books& books, Findings& findings) {
    compare_numbers(books, Gaps::are_ignored, findings);
}

void check_gaps(const Books& books, Findings& findings) {
    Findings all;
    compare_keys(books, Gaps::are_found, all);
    compare_numbers(books, Gaps::are_found, all);
    Findings known;
    compare_keys(books, Gaps::are_ignored, known);
    compare_numbers(books, Gaps::are_ignored, known);
    std::erase_if(
        all, [&](const std::string& finding) { return std::ranges::find(known, finding) != known.end(); });
    findings.insert(findings.end(), all.begin(), all.end());
}

}  // namespace brimley::company
