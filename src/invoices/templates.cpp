// The view of recurring templates, and showing one of them on the form.
//
// The view is the pressed state of command 1005: what is walked and looked up follows from it. That the
// entry or the document on screen is a template is another thing, and chkrecur tells it.
#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using store::quoted;
using store::Recordset;

namespace {

// "recuring" is the product's spelling.
constexpr const char* kNoTemplate =
    "There is no Recurring Invoice.\n"
    "To create recurring Invoice, mark recuring box as true when you create normal invoice.";

}  // namespace

frame::DocumentWalk& APform_invoice::walk() { return recurring_view() ? templates : documents; }

void APform_invoice::last_record() {
    if (recurring_view()) {
        last_recurring();
    } else {
        DocumentForm::last_record();
    }
}

void APform_invoice::step_from_new_entry() {
    if (chkrecur.is_set()) {
        last_recurring();
    } else {
        last_record();
    }
}

void APform_invoice::last_recurring() {
    step("last_recurring", [&] {
        const std::int64_t last_no = templates.last_number_issued(kTemplateDoctype);
        if (last_no == 0) {
            tell(kNoTemplate);
            return;
        }
        auto newest = templates.newest(kTemplateDoctype, last_no);
        if (newest) {
            press_recurring_view(true);
            recurring_mode(true);
            show_document(*newest);
            grid_readmode();
            return;
        }
        // Numbers were given out and no template is left: the form goes on with a new entry.
        if (mode() == frame::Mode::read && rights().Update) bars_.set_pressed(frame::command::kNew, true);
        gencode_new();
        grid_newmode();
    });
}

void APform_invoice::view_recurring() {
    last_recurring();
    if (recurring_view()) frame_recur.set_visible(true);
}

void APform_invoice::leave_recurring_view() {
    if (!recurring_view()) return;
    recurring_mode(false);
    press_recurring_view(false);
    frame_recur.set_visible(false);
}

void APform_invoice::recurring_mode(bool on) {
    labeldocno.set_caption(on ? "Recurring no." : "Document no.");
    show_name_in_place_of_date(on);
    if (on) labelinvdate.set_caption("Recurring name");
    for (controls::DateField* date : {&txtinvdate, &txtduedate, &txtdiscdate}) {
        if (on) date->set("");
        set_field(*date, on ? FieldState::read_only : FieldState::open);
    }
    chkrecur.set(on);
    if (on) {
        chkrecur.set_visible(true);
        cmbopendoc.set_visible(false);
        xlabelrecur.set_caption("Recurring");
        for (controls::TextField* field :
             std::initializer_list<controls::TextField*>{&txtrecurdate, &txteffectdate, &txtexpiredate})
            field->set("");
    } else if (recurring_view()) {
        chkrecur.set_visible(false);
        cmbopendoc.set_visible(open_documents.open_only());
        xlabelrecur.set_caption("Open Doc.");
        open_documents.get_list_open_doc();
    }
}

void APform_invoice::show_name_in_place_of_date(bool name) {
    labelinvdate.set_caption(name ? "Recur name" : "Invoice Date");
    txtinvdate.set_visible(!name);
    txtrecurname.set_visible(name);
}

// Outside New a click changes nothing but the box.
void APform_invoice::chkrecur_click() {
    if (mode() == frame::Mode::new_entry) show_name_in_place_of_date(chkrecur.is_set());
}

void APform_invoice::get_recur() {
    if (recur_fkey.empty()) return;
    step("get_recur", [&] {
        auto header = templates.header_by_fkey(recur_fkey);
        if (!header.at_eof()) show_document(header, templates);
    });
}

void APform_invoice::assign_template(Recordset& header) {
    if (txtdoctype.text() != kTemplateDoctype) {
        // A document is on screen now, whatever was there before.
        if (!chkrecur.is_set()) return;
        chkrecur.set(0);
        show_name_in_place_of_date(false);
        return;
    }
    const auto date = [&](const char* field) {
        return kernel::yyyymmdd_to_user_date(header.text(field), {context().BRIMLEY_DATE_FORMAT}, desk());
    };
    chkrecur.set(1);
    txtdocno.set(header.text("recurno"));
    txtrecurname.set(header.text("recur_name"));
    txtnoinvoice.set(header.text("no_invoice"));
    cmbfreq.set(header.text("Frequency"));
    txtrecurdate.set(header.text("recur_date"));
    txteffectdate.set(date("begin_date"));
    txtexpiredate.set(date("end_date"));
}

}  // namespace brimley::invoices
