// Toolbar and views of the invoice form.
#include "invoices/commands.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using controls::Command;
namespace command = frame::command;

namespace {

std::vector<Command> own_commands() {
    using Bars = std::vector<std::string>;
    return {
        {command::kInsertLine, "&Insert Line", "", "", Bars{"Edit", "Popup"}},
        {command::kDeleteLine, "&Delete Line", "", "", Bars{"Edit", "Popup"}},
        {command::kOrigin, "Origin Document", "Origin", "Origin Document", Bars{"Link", "Standard"}},
        {command::kFont, "&Font", "", "", Bars{"Popup"}},
        {kTaxDetails, "Tax &Details", "", "", Bars{"Tax"}},
        {kTaxSummary, "Tax &Summary", "", "", Bars{"Tax"}},
        {command::kFormHelp, "A/P Invoice Entry Help", "Help", "A/P Invoice Entry Help",
         Bars{"Help", "Standard"}},
        {kViewInvoice, "View &Invoice", "", "", Bars{"View"}},
        {kViewCreditNote, "View &Credit Note", "", "", Bars{"View"}},
        {kViewDebitNote, "View &Debit Note", "", "", Bars{"View"}},
        {kViewRecurring, "View &Recurring", "", "", Bars{"View"}},
        {kPayThisInvoice, "&Pay this invoice", "", "", Bars{"Payment"}},
        {kPaymentHistory, "Payment &History (this invoice)", "", "", Bars{"Payment"}},
        {kVoidInvoice, "&Void Invoice", "", "", Bars{"Invoice"}},
        {kHoldInvoice, "&Hold Invoice", "", "", Bars{"Invoice"}},
        {kReleaseHold, "&Release Hold Invoice", "", "", Bars{"Invoice"}},
        {kRecurringConfiguration, "Recurring &Configuration", "", "", Bars{"Invoice"}},
        {kViewAll, "&View All", "", "", Bars{"View"}},
        {kOpenInvoiceOnly, "&Open Invoice Only", "", "", Bars{"View"}},
        {kVendorAddress, "&Vendor Address", "", "", Bars{"Edit"}},
    };
}

}  // namespace

void APform_invoice::init_toolbar() { add_commands(own_commands()); }

void APform_invoice::execute_own(int id) {
    const bool reading = mode() == frame::Mode::read;
    const bool may_write = reading && rights().Update;
    switch (id) {
        case command::kOrigin:
            origin_doc();
            break;
        case kTaxDetails:
            taxes.display_tax_details();
            frame_status.refresh();
            break;
        case kTaxSummary:
            taxes.mnutax_summary_click();
            frame_status.refresh();
            break;
        case kViewInvoice:
            view_kind(kInvoice.caption, id);
            break;
        case kViewCreditNote:
            view_kind(kCreditNote.caption, id);
            break;
        case kViewDebitNote:
            view_kind(kDebitNote.caption, id);
            break;
        case kViewRecurring:
            if (reading) recurring.open();
            break;
        case kRecurringConfiguration:
            frame_recur.set_visible(!frame_recur.visible());
            break;
        case kPayThisInvoice:
            if (reading) pay_this_invoice();
            break;
        case kPaymentHistory:
            payment_history();
            break;
        case kVoidInvoice:
            if (may_write) void_hold.void_invoice();
            break;
        case kHoldInvoice:
            if (may_write) void_hold.hold_invoice();
            break;
        case kReleaseHold:
            if (may_write) void_hold.release_hold();
            break;
        case kViewAll:
            open_documents.show(false);
            break;
        case kOpenInvoiceOnly:
            open_documents.show(true);
            break;
        case kVendorAddress:
            address.vendor_address();
            break;
        default:
            break;
    }
}

bool APform_invoice::can_do(int id) const {
    const bool reading = mode() == frame::Mode::read;
    const bool has_document = !txtdocno.empty() && !txtfkey.empty();
    switch (id) {
        case kViewRecurring:
            return reading;
        case kPayThisInvoice:
            return reading && on_posted_document();
        case kPaymentHistory:
            return on_posted_document();
        case kVoidInvoice:
            return reading && rights().Update && has_document && shown_whole();
        case kHoldInvoice:
            return reading && rights().Update && has_document;
        case kReleaseHold:
            return reading && rights().Update && has_document && chkhold.is_set();
        default:
            return DocumentForm::can_do(id);
    }
}

void APform_invoice::view_kind(const char* kind, int id) {
    recurring.leave();
    cmbdoctype.set(kind);
    last_record();
    open_documents.get_list_open_doc();
    press_view(id);
}

void APform_invoice::press_view(int id) {
    for (const int view : {kViewInvoice, kViewCreditNote, kViewDebitNote, kViewRecurring})
        bars_.set_pressed(view, view == id);
}

void APform_invoice::record_shown_by_walk() {
    const std::string& kind = cmbdoctype.text();
    press_view(kind == kCreditNote.caption  ? kViewCreditNote
               : kind == kDebitNote.caption ? kViewDebitNote
                                            : kViewInvoice);
}

}  // namespace brimley::invoices
