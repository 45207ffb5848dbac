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

std::optional<Recordset> DocumentForm::newest_header(const std::string& doctype, std::int64_t last_no,
                                                     const WalkTables& tables) {
    fkey_last_no = last_no;
    doctype_of_last_no_ = doctype;
    for (std::int64_t n = last_no; n > 0; --n) {
        auto header = header_by_fkey(kernel::ModuleG3::make_fkey(kCompany, doctype, n), tables);
        if (!header.at_eof()) return header;
    }
    return std::nullopt;
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
        const std::int64_t last_no =
            doctype == doctype_of_last_no_ ? fkey_last_no : last_number_issued(doctype);
        // Only the way up has a bound; documents saved since then lie above it.
        for (std::int64_t n = *key_number(fkey) + direction; n >= 1 && (direction < 0 || n <= last_no);
             n += direction) {
            auto header = header_by_fkey(prefix + std::to_string(n), walk_tables());
            if (header.at_eof()) continue;
            show_document(header);
            record_stepped();
            return;
        }
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
