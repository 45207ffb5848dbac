#include "invoices/templates/recurring_view.h"

#include "invoices/apform_invoice.h"
#include "invoices/commands.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using store::Recordset;

namespace {

constexpr frame::WalkTables kTemplateTables{"AP_recur_header_table", "AP_recur_transaction_table", "recurno"};

// "recuring" is the product's spelling.
constexpr const char* kNoTemplate =
    "There is no Recurring Invoice.\n"
    "To create recurring Invoice, mark recuring box as true when you create normal invoice.";

}  // namespace

RecurringView::RecurringView(APform_invoice& form)
    : DocumentPart(form), templates(form, kTemplateTables), form_(form) {
    form_.chkrecur.on_click = [this] { chkrecur_click(); };
}

bool RecurringView::pressed() const { return form_.CommandBars1().pressed(kViewRecurring); }

void RecurringView::press(bool pressed) {
    if (pressed) form_.press_view(kViewRecurring);
    form_.CommandBars1().set_pressed(kViewRecurring, pressed);
}

void RecurringView::last_recurring() {
    step("last_recurring", [&] {
        const std::int64_t last_no = templates.last_number_issued(kTemplateDoctype);
        if (last_no == 0) {
            tell(kNoTemplate);
            return;
        }
        auto newest = templates.newest(kTemplateDoctype, last_no);
        if (newest) {
            press(true);
            recurring_mode(true);
            show_document(*newest);
            form_.grid_readmode();
            return;
        }
        // Numbers were given out and no template is left: the form goes on with a new entry.
        if (mode() == frame::Mode::read && rights().Update)
            form_.CommandBars1().set_pressed(frame::command::kNew, true);
        form_.gencode_new();
        form_.grid_newmode();
    });
}

void RecurringView::open() {
    last_recurring();
    if (pressed()) form_.frame_recur.set_visible(true);
}

void RecurringView::leave() {
    if (!pressed()) return;
    recurring_mode(false);
    press(false);
    form_.frame_recur.set_visible(false);
}

void RecurringView::recurring_mode(bool on) {
    form_.labeldocno.set_caption(on ? "Recurring no." : "Document no.");
    show_name_in_place_of_date(on);
    if (on) form_.labelinvdate.set_caption("Recurring name");
    for (controls::DateField* date : {&form_.txtinvdate, &form_.txtduedate, &form_.txtdiscdate}) {
        if (on) date->set("");
        set_field(*date, on ? FieldState::read_only : FieldState::open);
    }
    form_.chkrecur.set(on);
    if (on) {
        form_.chkrecur.set_visible(true);
        form_.cmbopendoc.set_visible(false);
        form_.xlabelrecur.set_caption("Recurring");
        for (controls::TextField* field : std::initializer_list<controls::TextField*>{
                 &form_.txtrecurdate, &form_.txteffectdate, &form_.txtexpiredate})
            field->set("");
    } else if (pressed()) {
        form_.chkrecur.set_visible(false);
        form_.cmbopendoc.set_visible(form_.open_documents.open_only());
        form_.xlabelrecur.set_caption("Open Doc.");
        form_.open_documents.get_list_open_doc();
    }
}

void RecurringView::show_name_in_place_of_date(bool name) {
    form_.labelinvdate.set_caption(name ? "Recur name" : "Invoice Date");
    form_.txtinvdate.set_visible(!name);
    form_.txtrecurname.set_visible(name);
}

void RecurringView::catch_up_with_chkrecur() {
    if (form_.chkrecur.is_set() == form_.txtinvdate.visible()) chkrecur_click();
}

// Outside New a click changes nothing but the box.
void RecurringView::chkrecur_click() {
    if (mode() == frame::Mode::new_entry) show_name_in_place_of_date(form_.chkrecur.is_set());
}

void RecurringView::get_recur() {
    if (recur_fkey.empty()) return;
    step("get_recur", [&] {
        auto header = templates.header_by_fkey(recur_fkey);
        if (!header.at_eof()) show_document(header, templates);
    });
}

void RecurringView::assign_template(Recordset& header) {
    if (form_.txtdoctype.text() != kTemplateDoctype) {
        // A document is on screen now, whatever was there before.
        if (!form_.chkrecur.is_set()) return;
        form_.chkrecur.set(0);
        show_name_in_place_of_date(false);
        return;
    }
    const auto date = [&](const char* field) {
        return kernel::yyyymmdd_to_user_date(header.text(field), {context().BRIMLEY_DATE_FORMAT}, desk());
    };
    form_.chkrecur.set(1);
    form_.txtdocno.set(header.text("recurno"));
    form_.txtrecurname.set(header.text("recur_name"));
    form_.txtnoinvoice.set(header.text("no_invoice"));
    form_.cmbfreq.set(header.text("Frequency"));
    form_.txtrecurdate.set(header.text("recur_date"));
    form_.txteffectdate.set(date("begin_date"));
    form_.txtexpiredate.set(date("end_date"));
}

}  // namespace brimley::invoices
