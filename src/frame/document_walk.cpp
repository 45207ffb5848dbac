#include "frame/document_walk.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>

#include "kernel/money.h"

namespace brimley::frame {

using store::quoted;
using store::Recordset;

namespace {

constexpr const char* kCompany = "1";
constexpr std::int64_t kKeyNumberMax = 9007199254740992;
// Up to this many missing numbers in a row are tried one by one.
constexpr int kMissingTriedMax = 1000;

// The number after the first "-" of a key, or empty for a key without one.
std::optional<std::int64_t> key_number(std::string_view fkey) {
    const std::size_t dash = fkey.find('-');
    if (dash == std::string_view::npos) return std::nullopt;
    std::int64_t number = 0;
    const std::string_view digits = fkey.substr(dash + 1);
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (fault != std::errc{} || end == digits.data()) return std::nullopt;
    return number;
}

// "ip" of "1ip-57".
std::string key_doctype(std::string_view fkey) {
    const std::string_view start = fkey.substr(0, fkey.find('-'));
    const std::size_t kind = start.find_first_not_of("0123456789");
    return std::string(kind == std::string_view::npos ? std::string_view() : start.substr(kind));
}

bool is_field_name(std::string_view order) { return order.find_first_of("(,") == std::string_view::npos; }

// By a field that holds numbers; where it holds none comes first. Goes back to the first line.
bool stand_in_order(Recordset& lines, const char* field) {
    const int column = lines.column_of(field);
    if (lines.column_type(column) != store::FieldType::number) return false;
    double last = -std::numeric_limits<double>::infinity();
    for (; !lines.at_eof(); lines.MoveNext()) {
        const store::Value value = lines.column(column);
        const double number = value.is_null() ? -std::numeric_limits<double>::infinity() : value.number();
        if (number < last) return false;
        last = number;
    }
    lines.MoveFirst();
    return true;
}

}  // namespace

Recordset DocumentWalk::header_where(std::string_view criteria) const {
    return kernel().read(fmt::format("SELECT * FROM {} WHERE {}", tables_.header, criteria));
}

Recordset DocumentWalk::header_by_fkey(std::string_view fkey) const {
    return kernel().find(tables_.header, {{"fkey", fkey}});
}

std::string DocumentWalk::named(std::string_view number) const {
    return fmt::format("company = 1 AND {} = {}{}", tables_.number_field, quoted(number), tables_.own_kind);
}

Recordset DocumentWalk::header_by_number(std::string_view number) const {
    return header_where(named(number));
}

// Lines are stored in their order, unless somebody else wrote them. Sorting costs as much as reading them,
// since the rows are wide.
Recordset DocumentWalk::lines_of(std::string_view fkey) const {
    const std::string query = fmt::format("SELECT * FROM {} WHERE fkey = {}", tables_.lines, quoted(fkey));
    if (is_field_name(tables_.line_order)) {
        Recordset lines = kernel().read(query);
        if (stand_in_order(lines, tables_.line_order)) return lines;
    }
    return kernel().read(fmt::format("{} ORDER BY {}", query, tables_.line_order));
}

bool DocumentWalk::has_number(std::string_view fkey) { return key_number(fkey).has_value(); }

std::int64_t DocumentWalk::last_number_issued(const std::string& doctype) const {
    const auto counter = kernel().find("Next_number_fkey_table", {{"company", "1"}, {"doctype", doctype}});
    return counter.at_eof() ? 0 : kernel::whole_number(counter.number("fkeyno"), 1, kKeyNumberMax) - 1;
}

std::optional<Recordset> DocumentWalk::newest(const std::string& doctype, std::int64_t last_no) {
    fkey_last_no = last_no;
    doctype_of_last_no_ = doctype;
    return nearest(kCompany + doctype + "-", last_no, -1, last_no);
}

// A document of another kind, reached by its number, is walked from within its own kind. The key names it,
// not txtdoctype, which an edit leaves at "ip".
std::optional<Recordset> DocumentWalk::beside(const std::string& fkey, int direction) const {
    const auto number = key_number(fkey);
    if (!number) return std::nullopt;
    const std::string doctype = key_doctype(fkey);
    // Only a way up that goes over gaps has a bound; documents saved since then are above it.
    const std::int64_t last_no = direction < 0 || gap_ends_way_up() ? kKeyNumberMax
                                 : doctype == doctype_of_last_no_   ? fkey_last_no
                                                                    : last_number_issued(doctype);
    return nearest(fkey.substr(0, fkey.find('-') + 1), *number + direction, direction, last_no);
}

std::optional<std::int64_t> DocumentWalk::stored_number_beyond(const std::string& prefix, std::int64_t n,
                                                               int direction) const {
    std::optional<std::int64_t> found;
    const std::string own_kind =
        tables_.has_doctype ? " WHERE doctype = " + quoted(key_doctype(prefix)) : std::string{};
    auto keys = kernel().read(fmt::format("SELECT fkey FROM {}{}", tables_.header, own_kind));
    for (; !keys.at_eof(); keys.MoveNext()) {
        const std::string fkey = keys.text("fkey");
        const auto number = fkey.starts_with(prefix) ? key_number(fkey) : std::nullopt;
        if (!number || (*number - n) * direction <= 0) continue;
        if (!found || (*found - *number) * direction > 0) found = number;
    }
    return found;
}

// The first stored header from number n on, up (1) or down (-1), that is not beyond last_no. A long run of
// missing numbers is skipped at once: an import may have moved a counter far ahead.
std::optional<Recordset> DocumentWalk::nearest(const std::string& prefix, std::int64_t n, int direction,
                                               std::int64_t last_no) const {
    const bool gap_ends = direction > 0 && gap_ends_way_up();
    int missing = 0;
    for (; n >= 1 && n <= last_no; n += direction) {
        auto header = header_by_fkey(prefix + std::to_string(n));
        if (!header.at_eof()) return header;
        if (gap_ends) break;
        if (++missing < kMissingTriedMax) continue;
        const auto beyond = stored_number_beyond(prefix, n, direction);
        if (!beyond) break;
        n = *beyond - direction;
    }
    return std::nullopt;
}

}  // namespace brimley::frame
