// Walking documents by the number in their key.
#include <fmt/format.h>

#include <charconv>

#include "frame/document_form.h"
#include "kernel/money.h"

namespace brimley::frame {

using store::quoted;
using store::Recordset;

namespace {

constexpr const char* kCompany = "1";
constexpr std::int64_t kKeyNumberMax = 9007199254740992;
// So many missing numbers in a row are tried one by one.
constexpr int kMissingTriedMax = 1000;

// The number behind the first "-" of a key, or nothing for a key without one.
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

}  // namespace

Recordset DocumentForm::header_by_fkey(std::string_view fkey, const WalkTables& tables) {
    return kernel().read(fmt::format("SELECT * FROM {} WHERE fkey = {}", tables.header, quoted(fkey)));
}

void DocumentForm::show_document(Recordset& header, const WalkTables& tables) {
    shown_whole_ = false;
    clear_box();
    assign2control(header);
    shown_fkey_ = header.text("fkey");
    auto lines = kernel().read(fmt::format("SELECT * FROM {} WHERE fkey = {} ORDER BY {}", tables.lines,
                                           quoted(header.text("fkey")), tables.line_order));
    assign2_dbgrid1(lines);
    shown_whole_ = true;
}

// No counter row is as good as a counter that has issued nothing.
std::int64_t DocumentForm::last_number_issued(const std::string& doctype) {
    const auto counter = kernel().read(fmt::format(
        "SELECT * FROM Next_number_fkey_table WHERE company = 1 AND doctype = {}", quoted(doctype)));
    return counter.at_eof() ? 0 : kernel::whole_number(counter.number("fkeyno"), 1, kKeyNumberMax) - 1;
}

std::optional<std::int64_t> DocumentForm::stored_number_beyond(const std::string& prefix, std::int64_t n,
                                                               int direction, const WalkTables& tables) {
    std::optional<std::int64_t> nearest;
    auto keys = kernel().read(
        fmt::format("SELECT fkey FROM {} WHERE doctype = {}", tables.header, quoted(key_doctype(prefix))));
    for (; !keys.at_eof(); keys.MoveNext()) {
        const std::string fkey = keys.text("fkey");
        const auto number = fkey.starts_with(prefix) ? key_number(fkey) : std::nullopt;
        if (!number || (*number - n) * direction <= 0) continue;
        if (!nearest || (*nearest - *number) * direction > 0) nearest = number;
    }
    return nearest;
}

std::optional<Recordset> DocumentForm::nearest_header(const std::string& prefix, std::int64_t n,
                                                      int direction, std::int64_t last_no,
                                                      const WalkTables& tables) {
    int missing = 0;
    for (; n >= 1 && n <= last_no; n += direction) {
        auto header = header_by_fkey(prefix + std::to_string(n), tables);
        if (!header.at_eof()) return header;
        if (++missing < kMissingTriedMax) continue;
        const auto beyond = stored_number_beyond(prefix, n, direction, tables);
        if (!beyond) break;
        n = *beyond - direction;
    }
    return std::nullopt;
}

std::optional<Recordset> DocumentForm::newest_header(const std::string& doctype, std::int64_t last_no,
                                                     const WalkTables& tables) {
    fkey_last_no = last_no;
    doctype_of_last_no_ = doctype;
    return nearest_header(kCompany + doctype + "-", last_no, -1, last_no, tables);
}

void DocumentForm::last_record() {
    step("last_record", [&] {
        const std::string doctype = doctype_of_walk();
        if (walk_open_documents(0)) return;
        auto newest = newest_header(doctype, last_number_issued(doctype), walk_tables());
        if (newest) {
            show_document(*newest);
            grid_readmode();
            record_shown_by_walk();
        } else if (fkey_last_no == 0) {
            clear_box();
            grid_readmode();
        } else {
            gencode_new();
            grid_newmode();
        }
    });
}

void DocumentForm::next_record() { step_record(1); }
void DocumentForm::previous_record() { step_record(-1); }

void DocumentForm::step_record(int direction) {
    if (txtdocno.empty() || txtdocno.text() == kNewDocno) {
        step_from_new_entry();
        return;
    }
    if (walk_open_documents(direction)) return;
    if (!key_number(txtfkey.text())) {
        last_record();
        return;
    }
    step("step_record", [&] {
        const std::string fkey = txtfkey.text();
        const std::string prefix = fkey.substr(0, fkey.find('-') + 1);
        // A document of another kind, reached by its number, is walked from within its own kind. The key
        // tells it, not txtdoctype, which an edit leaves at "ip".
        const std::string doctype = key_doctype(fkey);
        // Only the way up has a bound; documents saved since then lie above it.
        const std::int64_t last_no = direction < 0                    ? kKeyNumberMax
                                     : doctype == doctype_of_last_no_ ? fkey_last_no
                                                                      : last_number_issued(doctype);
        auto header =
            nearest_header(prefix, *key_number(fkey) + direction, direction, last_no, walk_tables());
        if (!header) return;
        show_document(*header);
        record_stepped();
    });
}

bool DocumentForm::show_where(const std::string& criteria) {
    bool found = false;
    step("show a document", [&] {
        auto header = kernel().read(fmt::format("SELECT * FROM {} WHERE {}", walk_tables().header, criteria));
        if (header.at_eof()) return;
        found = true;
        show_document(header);
    });
    return found;
}

void DocumentForm::show_named(const std::string& text, const std::string& criteria) {
    if (text.empty()) {
        last_record();
    } else if (!show_where(criteria)) {
        tell(text + " not found.");
        // Back to the document that is on screen, under its own key.
        txtfkey.set(shown_fkey_);
        if (!shown_fkey_.empty()) show_where("fkey = " + quoted(shown_fkey_));
    }
}

void DocumentForm::Recordx() {
    const std::string number = txtdocno.text();
    const WalkTables tables = walk_tables();
    show_named(number, fmt::format("company = 1 AND {} = {}{}", tables.number_field, quoted(number),
                                   tables.own_kind));
}

void DocumentForm::Recordx_fkey() { show_named(txtfkey.text(), "fkey = " + quoted(txtfkey.text())); }

bool DocumentForm::bears_its_number() {
    bool bears = true;
    step("number on screen", [&] {
        const WalkTables tables = walk_tables();
        const auto header = header_by_fkey(txtfkey.text(), tables);
        bears = header.at_eof() || header.text(tables.number_field) == txtdocno.text();
    });
    if (!bears) tell(fmt::format("Document no. {} not found", txtdocno.text()));
    return bears;
}

bool DocumentForm::validate_docno() {
    if (txtdocno.empty()) return false;
    bool exists = false;
    bool other = false;
    const std::string number = txtdocno.text();
    step("validate_docno", [&] {
        const auto tables = walk_tables();
        const auto header =
            kernel().read(fmt::format("SELECT * FROM {} WHERE company = 1 AND {} = {}{}", tables.header,
                                      tables.number_field, quoted(number), tables.own_kind));
        exists = !header.at_eof();
        other = exists && header.text("fkey") != txtfkey.text();
    });
    if (!exists) {
        tell(fmt::format("Document no. {} not found", number));
        return false;
    }
    if (other) Recordx();
    return true;
}

}  // namespace brimley::frame
