// Showing documents: the newest, the next, the one that is named.
#include <fmt/format.h>

#include "frame/document_form.h"

namespace brimley::frame {

using store::quoted;
using store::Recordset;

void DocumentForm::show_document(Recordset& header, const DocumentWalk& its_walk) {
    shown_whole_ = false;
    clear_box();
    assign2control(header);
    shown_fkey_ = header.text("fkey");
    auto lines = other_lines();
    if (!lines) lines = its_walk.lines_of(shown_fkey_);
    assign2_dbgrid1(*lines);
    shown_whole_ = true;
}

void DocumentForm::last_record() {
    step("last_record", [&] {
        const std::string doctype = doctype_of_walk();
        if (walk_open_documents(0)) return;
        auto newest = walk().newest(doctype, walk().last_number_issued(doctype));
        if (newest) {
            show_document(*newest);
            grid_readmode();
            record_shown_by_walk();
        } else if (walk().fkey_last_no == 0 || !opens_as_new()) {
            clear_box();
            grid_readmode();
        } else {
            gencode_new();
            grid_newmode();
        }
    });
}

bool DocumentForm::nothing_stored_on_screen() const {
    return txtdocno.empty() || txtdocno.text() == kNewDocno;
}

void DocumentForm::next_record() { step_record(1); }
void DocumentForm::previous_record() { step_record(-1); }

void DocumentForm::step_record(int direction) {
    if (nothing_stored_on_screen()) {
        step_from_new_entry();
        return;
    }
    if (walk_open_documents(direction)) return;
    if (!DocumentWalk::has_number(txtfkey.text())) {
        last_record();
        return;
    }
    step("step_record", [&] {
        auto header = walk().beside(txtfkey.text(), direction);
        if (!header) return;
        show_document(*header);
        record_stepped();
    });
}

bool DocumentForm::show_where(const std::string& criteria) {
    bool found = false;
    step("show a document", [&] {
        auto header = walk().header_where(criteria);
        if (header.at_eof()) return;
        found = true;
        show_document(header);
    });
    return found;
}

// Under its own key; with nothing on screen, the last document. When that cannot be found either, its message
// is enough.
void DocumentForm::return_to_document(const std::string& fkey) {
    txtfkey.set(fkey);
    if (!fkey.empty()) {
        show_where("fkey = " + quoted(fkey));
    } else if (!returning_) {
        returning_ = true;
        last_record();
        returning_ = false;
    }
}

void DocumentForm::show_named(const std::string& text, const std::string& criteria,
                              const std::string& otherwise) {
    if (text.empty()) {
        last_record();
    } else if (!show_where(criteria)) {
        tell(text + " not found.");
        return_to_document(otherwise);
    }
}

void DocumentForm::Recordx() { show_named(txtdocno.text(), walk().named(txtdocno.text()), txtfkey.text()); }

void DocumentForm::Recordx_fkey() {
    show_named(txtfkey.text(), "fkey = " + quoted(txtfkey.text()), shown_fkey_);
}

bool DocumentForm::has_its_number() {
    bool has = true;
    step("number on screen", [&] {
        const auto header = walk().header_by_fkey(txtfkey.text());
        has = header.at_eof() || header.text(walk().tables().number_field) == txtdocno.text();
    });
    return has || refuse(fmt::format("Document no. {} not found", txtdocno.text()));
}

bool DocumentForm::validate_docno() {
    if (txtdocno.empty()) return false;
    bool exists = false;
    bool other = false;
    const std::string number = txtdocno.text();
    step("validate_docno", [&] {
        const auto header = walk().header_by_number(number);
        exists = !header.at_eof();
        other = exists && header.text("fkey") != txtfkey.text();
    });
    if (!exists) return refuse(fmt::format("Document no. {} not found", number));
    if (other) Recordx();
    return true;
}

}  // namespace brimley::frame
