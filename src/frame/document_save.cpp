#include "frame/document_save.h"

#include <fmt/format.h>

namespace brimley::frame {

bool DocumentSave::insert_new_record() {
    bool valid = false;
    const bool checked = step("validate", [&] { valid = validate(); });
    if (checked && !valid) return false;
    if (!checked || !in_transaction("insert_new_record", [this] { return write(); })) {
        return_to_new();
        return false;
    }
    report_success();
    return true;
}

bool DocumentSave::write() {
    set_doctype();
    if (!draw_number(too_long_message())) return false;
    auto header = kernel().change(fmt::format("SELECT * FROM {} WHERE 1 = 2", documents().tables().header));
    header.AddNew();
    fill_header(header);
    const bool header_first = header_row() == HeaderRow::before_lines;
    if (header_first) header.Update();
    if (!write_lines(header)) return false;
    if (!header_first) header.Update();
    if (!post()) return false;
    header.Bookmark(header.LastModified());
    header.Edit();
    header.set("GLFKEY", form_.txtglfkey.text());
    header.Update();
    return true;
}

void DocumentSave::return_to_new() {
    form_.txtdocno.set(kNewDocno);
    form_.txtfkey.set("");
    form_.txtglfkey.set("");
    tell_failure(failure_message());
}

}  // namespace brimley::frame
