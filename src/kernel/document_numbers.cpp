#include <fmt/format.h>

#include <algorithm>

#include "kernel/module_g3.h"
#include "kernel/money.h"

namespace brimley::kernel {

namespace {

constexpr int kCounterRetries = 10;
// Doubles hold every whole number up to here. A number so long is refused by its length.
constexpr std::int64_t kNumberMax = 9007199254740992;
constexpr std::int64_t kWidthMax = 100;
constexpr std::ptrdiff_t kDocnoLengthMax = 30;

// Characters, not bytes: a prefix may hold letters of any alphabet.
std::ptrdiff_t character_count(std::string_view utf8) {
    return std::count_if(utf8.begin(), utf8.end(),
                         [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; });
}

// "007"; a sign counts as one of the digits.
std::string with_leading_zeros(std::int64_t number, std::size_t width) {
    std::string digits = std::to_string(number);
    if (digits.size() < width) digits.insert(number < 0 ? 1 : 0, width - digits.size(), '0');
    return digits;
}

// "company 1, doctype ip".
std::string shown_fields(store::FieldValues fields) {
    std::string shown;
    for (const auto& [name, value] : fields)
        shown.append(shown.empty() ? "" : ", ").append(name).append(" ").append(value);
    return shown;
}

}  // namespace

RowTaken ModuleG3::take_number(const char* query, store::FieldValues counter, const char* field,
                               std::int64_t& number) {
    auto row = change(query);
    const RowTaken taken = edit_first_with_retry(row, counter, outside_, kCounterRetries);
    if (taken != RowTaken::yes) {
        const bool is_held = taken == RowTaken::somebody_has_it;
        reasons_.refused(fmt::format("{} counter {} of {}",
                                     is_held ? "Another user holds the" : "There is no", field,
                                     shown_fields(counter)));
        return taken;
    }
    const double next = row.number(field);
    row.set(field, next + 1);
    row.Update();
    number = whole_number(next, -kNumberMax, kNumberMax);
    return taken;
}

RowTaken ModuleG3::take_docno(std::string_view company, std::string_view doctype,
                              std::string_view fiscal_year, std::int64_t& number) {
    return take_number("SELECT * FROM [Docno_master_table]",
                       {{"company", company}, {"doctype", doctype}, {"fiscalyear", fiscal_year}}, "nextdocno",
                       number);
}

void ModuleG3::tell_missing_numbers(std::string_view doctype, std::string_view fiscal_year) {
    std::string text =
        fmt::format("Next number of document type {} for fiscal year {} is missing.", doctype, fiscal_year);
    if (!fiscal_year_has_numbers(fiscal_year)) {
        text += "\nCreate new fiscal year with \"Add New Fiscal Year\" in General Ledger system.";
    }
    tell(text);
}

std::optional<NextNumbers> ModuleG3::get_next_number(std::string_view company, std::string_view doctype,
                                                     std::string_view fiscal_year) {
    std::optional<NextNumbers> result;
    carry_on(reasons_, "get_next_number", [&] {
        NextNumbers next;
        const RowTaken taken = take_docno(company, doctype, fiscal_year, next.nextdocno);
        if (taken == RowTaken::there_is_none) tell_missing_numbers(doctype, fiscal_year);
        if (taken == RowTaken::yes && take_number("SELECT * FROM [Next_number_fkey_table]",
                                                  {{"company", company}, {"doctype", doctype}}, "fkeyno",
                                                  next.fkeyno) == RowTaken::yes) {
            result = next;
        }
    });
    return result;
}

std::optional<std::int64_t> ModuleG3::next_docno(std::string_view company, std::string_view doctype,
                                                 std::string_view fiscal_year) {
    std::int64_t number = 0;
    const bool taken = take_docno(company, doctype, fiscal_year, number) == RowTaken::yes;
    return taken ? std::optional(number) : std::nullopt;
}

bool ModuleG3::fiscal_year_has_numbers(std::string_view fiscal_year) {
    return exists("Docno_master_table", {{"fiscalyear", fiscal_year}});
}

std::string ModuleG3::format_docno(std::string_view doctype, std::int64_t number,
                                   std::string_view fiscal_year) {
    const auto config = read("SELECT * FROM [Next_number_config_table]");
    const auto format = find("Next_number_format_table", {{"doctype", doctype}});
    const bool configured = !config.at_eof();
    const store::Value structure_value = configured ? config.field("structure") : store::Value();
    const std::string structure = structure_value.is_null() ? "1" : structure_value.text();
    const bool two_digits = configured && config.number("fyear_digit") == 2;
    const std::string year(two_digits ? fiscal_year.substr(std::min<std::size_t>(2, fiscal_year.size()), 2)
                                      : fiscal_year);
    const std::string separator1 = configured && config.flag("seperator1") ? "-" : "";
    const std::string separator2 = configured && config.flag("seperator2") ? "-" : "";
    const std::string prefix = format.at_eof() ? "" : format.text("prefix");
    const std::int64_t width =
        format.at_eof() ? 0 : whole_number(money_value(format.text("running_no_digit")), 0, kWidthMax);
    const std::string running = with_leading_zeros(number, static_cast<std::size_t>(width));
    if (structure == "1") return prefix + separator1 + year + separator2 + running;
    if (structure == "2") return year + separator1 + prefix + separator2 + running;
    if (structure == "3") return prefix + separator1 + running;
    return {};
}

std::string ModuleG3::make_fkey(std::string_view company, std::string_view doctype, std::int64_t fkeyno) {
    return fmt::format("{}{}-{}", company, doctype, fkeyno);
}

bool ModuleG3::docno_fits(std::string_view docno, TooLongMessage message) {
    if (character_count(docno) <= kDocnoLengthMax) return true;
    static constexpr const char* kText = "Error : document no. is longer than 30 characters. ";
    tell(message == TooLongMessage::text_first ? fmt::format("{}{}", kText, docno)
                                               : fmt::format("{}{}", docno, kText));
    return false;
}

}  // namespace brimley::kernel
