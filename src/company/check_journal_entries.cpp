// Journal entries: what a person posted to the ledger by hand, and what took it back.
#include <fmt/format.h>

#include <map>
#include <unordered_map>
#include <vector>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/stamps.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

constexpr std::string_view kEntrySource = "GL-ENTRY";
constexpr std::string_view kTakenBackBy = "Reversed by ";
constexpr std::string_view kTakesBack = "Reverse journal entry ";

class JournalEntries {
  public:
    JournalEntries(const Books& books, Findings& findings)
        : books_(books),
          headers_(books.tables().rows("GL_header_table")),
          lines_(books.tables().rows("GL_transaction_table")),
          findings_(findings) {
        for (std::int64_t header = 0; header < headers_.count(); ++header)
            if (headers_.text(header, "Source") == kEntrySource)
                entry_of_[headers_.text(header, "docno")] = header;
        for (std::int64_t line = 0; !entry_of_.empty() && line < lines_.count(); ++line)
            lines_of_[lines_.text(line, "fkey")].push_back(line);
    }

    void check() {
        for (const auto& [docno, header] : entry_of_)
            check_entry(docno, header);
    }

  private:
    using Lines = std::vector<std::int64_t>;

    void check_entry(const std::string& docno, std::int64_t header) {
        header_ = header;
        const Lines& lines = lines_of_[text("fkey")];
        if (text("source_docno") != docno && !text("Description").starts_with(kTakesBack))
            report("it names another document as its source");
        if (text("source_form") != "Ledger_entry") report("it is not of the form of journal entries");
        for (const std::int64_t line : lines)
            check_line(line);
        const std::string said = text("Description");
        const bool reversed = headers_.value(header_, headers_.column("Reverse")).flag();
        if (said.starts_with(kTakesBack))
            check_taking_back(docno, said.substr(kTakesBack.size()), lines);
        else if (reversed != said.starts_with(kTakenBackBy))
            report("it does not say by what it was reversed");
        else if (reversed && !takes_back(said.substr(kTakenBackBy.size()), docno))
            report("what it was reversed by does not say so");
        else if (!reversed && !said.empty())
            report(fmt::format("it says \"{}\"", shown_text(said)));
    }

    void check_line(std::int64_t line) {
        const std::string name = fmt::format("its line {} ", shown_text(lines_.text(line, "lineno")));
        for (const char* field : {"docno", "gldate", "period", "fyear", "Source", "source_form"})
            if (lines_.text(line, field) != text(field)) report(fmt::format("{}has another {}", name, field));
        if (lines_.text(line, "ledgertype") != "A" ||
            lines_.text(line, "Currency") != books_.base_currency() ||
            lines_.text(line, "amount") != lines_.text(line, "base_amount"))
            report(name + "is not in base currency");
        if (!is_nothing(lines_.value(line, lines_.column("vendor_no")))) report(name + "names a vendor");
        if (!made_together(stamp_of(lines_, line), stamp_of(headers_, header_)))
            report(name + "was made at another time, or by another user");
    }

    [[nodiscard]] bool takes_back(const std::string& docno, const std::string& taken_back) const {
        const auto found = entry_of_.find(docno);
        return found != entry_of_.end() &&
               headers_.text(found->second, "Description") == std::string(kTakesBack) + taken_back;
    }

    void check_taking_back(const std::string& docno, const std::string& taken_back, const Lines& lines) {
        const auto found = entry_of_.find(taken_back);
        if (found == entry_of_.end() ||
            headers_.text(found->second, "Description") != std::string(kTakenBackBy) + docno)
            return report("it reverses an entry that does not say so");
        if (text("source_docno") != taken_back) report("it names another document as its source");
        const Lines& others = lines_of_[headers_.text(found->second, "fkey")];
        bool agrees = lines.size() == others.size();
        for (std::size_t i = 0; agrees && i < lines.size(); ++i)
            agrees = lines_.text(lines[i], "accno") == lines_.text(others[i], "accno") &&
                     !differ(amount(lines[i]), -amount(others[i]));
        if (!agrees) report("it does not take back what the reversed entry posted");
    }

    [[nodiscard]] double amount(std::int64_t line) const {
        return lines_.value(line, lines_.column("amount")).number();
    }
    [[nodiscard]] std::string text(const char* field) const { return headers_.text(header_, field); }
    void report(const std::string& what) {
        findings_.push_back(
            fmt::format("Journal entry {}: {}", shown_text(headers_.text(header_, "docno")), what));
    }

    const Books& books_;
    const TableRows& headers_;
    const TableRows& lines_;
    Findings& findings_;
    std::map<std::string, std::int64_t> entry_of_;  // by number
    std::unordered_map<std::string, Lines> lines_of_;
    std::int64_t header_ = 0;
};

}  // namespace

void check_journal_entries(const Books& books, Findings& findings) {
    JournalEntries(books, findings).check();
}

}  // namespace brimley::company
