#include "invoices/document/open_documents.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "invoices/commands.h"

namespace brimley::invoices {

using store::quoted;

OpenDocuments::OpenDocuments(APform_invoice& form) : DocumentPart(form), form_(form) {
    form_.cmbopendoc.on_item_select = [this] { cmbopendoc_itemselect(); };
}

void OpenDocuments::get_list_open_doc() {
    criteria_ = fmt::format("company = 1 AND doctype = {} AND fully_paid = FALSE AND void = FALSE",
                            quoted(form_.txtdoctype.text()));
    form_.cmbopendoc.set_source(
        rows_of(fmt::format("SELECT docno FROM AP_header_table WHERE {} ORDER BY docno DESC", criteria_)));
    form_.cmbopendoc.set(lists_document_on_screen() ? form_.txtdocno.text() : std::string{});
}

bool OpenDocuments::lists_document_on_screen() const {
    return on_saved_document() && doctype_on_screen_ == form_.txtdoctype.text() &&
           doctype_on_screen_ != kTemplateDoctype && form_.chkvoid.value() == 0 && form_.chkpaid.value() != 1;
}

void OpenDocuments::cmbopendoc_itemselect() {
    form_.txtdocno.set(form_.cmbopendoc.text());
    form_.Recordx();
}

bool OpenDocuments::open_only() const { return form_.CommandBars1().pressed(kOpenInvoiceOnly); }

void OpenDocuments::show(bool open_only) {
    form_.CommandBars1().set_pressed(kOpenInvoiceOnly, open_only);
    form_.CommandBars1().set_pressed(kViewAll, !open_only);
    form_.cmbopendoc.set_visible(open_only && !form_.CommandBars1().pressed(kViewRecurring));
    if (open_only) get_list_open_doc();
}

bool OpenDocuments::walk_list(int direction) {
    controls::ComboBox& cmbopendoc = form_.cmbopendoc;
    if (!cmbopendoc.visible()) return false;
    std::string target;
    if (direction == 0) {
        target = find("MIN", "");
        if (target.empty()) return false;
    } else {
        // A document that was open when it was shown keeps its place in the list, even if it is void by now.
        if (cmbopendoc.empty() || cmbopendoc.text() != form_.txtdocno.text()) return true;
        const std::string shown = quoted(form_.txtdocno.text());
        target = direction > 0 ? find("MAX", " AND docno < " + shown) : find("MIN", " AND docno > " + shown);
        if (target.empty()) return true;
    }
    cmbopendoc.set_row({target});
    cmbopendoc_itemselect();
    return true;
}

std::string OpenDocuments::find(const char* function, const std::string& condition) const {
    std::string docno;
    step("open document", [&] {
        docno = kernel()
                    .read(fmt::format("SELECT {}(docno) AS found FROM AP_header_table WHERE {}{}", function,
                                      criteria_, condition))
                    .text("found");
    });
    return docno;
}

}  // namespace brimley::invoices
