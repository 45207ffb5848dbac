// Toolbar and views of the invoice form.
#include <fmt/format.h>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using controls::Command;
using store::quoted;
namespace command = frame::command;

namespace {

constexpr int kTaxDetails = 131;
constexpr int kTaxSummary = 132;
constexpr int kViewInvoice = 1002;
constexpr int kViewCreditNote = 1003;
constexpr int kViewDebitNote = 1004;
constexpr int kViewRecurring = 1005;
constexpr int kPayThisInvoice = 1006;
constexpr int kPaymentHistory = 1007;
constexpr int kVoidInvoice = 1008;
constexpr int kHoldInvoice = 1009;
constexpr int kReleaseHold = 1010;
constexpr int kRecurringConfiguration = 1011;
constexpr int kViewAll = 1012;
constexpr int kOpenInvoiceOnly = 1013;
constexpr int kVendorAddress = 1014;

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
            display_tax_details();
            frame_status.refresh();
            break;
        case kTaxSummary:
            display_tax_summary();
            frame_status.refresh();
            break;
        case kViewInvoice:
            view_kind("Invoice", id);
            break;
        case kViewCreditNote:
            view_kind("Credit Note", id);
            break;
        case kViewDebitNote:
            view_kind("Debit Note", id);
            break;
        case kViewRecurring:
            if (reading) view_recurring();
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
            if (may_write) void_invoice();
            break;
        case kHoldInvoice:
            if (may_write) hold_invoice();
            break;
        case kReleaseHold:
            if (may_write) release_hold();
            break;
        case kViewAll:
            show_open_documents(false);
            break;
        case kOpenInvoiceOnly:
            show_open_documents(true);
            break;
        case kVendorAddress:
            vendor_address();
            break;
        default:
            break;
    }
}

void APform_invoice::view_kind(const char* kind, int id) {
    leave_recurring_view();
    cmbdoctype.set(kind);
    last_record();
    get_list_open_doc();
    press_view(id);
}

void APform_invoice::press_view(int id) {
    for (const int view : {kViewInvoice, kViewCreditNote, kViewDebitNote, kViewRecurring})
        bars_.set_pressed(view, view == id);
}

void APform_invoice::press_recurring_view(bool pressed) {
    if (pressed) press_view(kViewRecurring);
    bars_.set_pressed(kViewRecurring, pressed);
}

bool APform_invoice::recurring_view() const { return bars_.pressed(kViewRecurring); }

bool APform_invoice::open_documents_only() const { return bars_.pressed(kOpenInvoiceOnly); }

void APform_invoice::show_open_documents(bool open_only) {
    bars_.set_pressed(kOpenInvoiceOnly, open_only);
    bars_.set_pressed(kViewAll, !open_only);
    cmbopendoc.set_visible(open_only && !recurring_view());
    if (open_only) get_list_open_doc();
}

// In the "Open Invoice Only" view the list is walked instead of the keys. It is in descending order, and its
// last item is the oldest open document: that is where last_record goes. The list may be long and is fetched
// only when somebody opens it; the next item is looked up.
bool APform_invoice::walk_open_documents(int direction) {
    if (!cmbopendoc.visible()) return false;
    std::string target;
    if (direction == 0) {
        target = open_document("MIN", "");
        if (target.empty()) return false;
    } else {
        // A document that was open when it was shown keeps its place in the list, though it be void by now.
        if (cmbopendoc.empty() || cmbopendoc.text() != txtdocno.text()) return true;
        const std::string shown = quoted(txtdocno.text());
        target = direction > 0 ? open_document("MAX", " AND docno < " + shown)
                               : open_document("MIN", " AND docno > " + shown);
        if (target.empty()) return true;
    }
    cmbopendoc.set_row({target});
    cmbopendoc_itemselect();
    return true;
}

std::string APform_invoice::open_document(const char* function, const std::string& condition) {
    std::string docno;
    step("open document", [&] {
        docno = kernel()
                    .read(fmt::format("SELECT {}(docno) AS found FROM AP_header_table WHERE {}{}", function,
                                      open_documents_, condition))
                    .text("found");
    });
    return docno;
}

void APform_invoice::record_shown_by_walk() {
    const std::string& kind = cmbdoctype.text();
    press_view(kind == "Credit Note"  ? kViewCreditNote
               : kind == "Debit Note" ? kViewDebitNote
                                      : kViewInvoice);
}

void APform_invoice::record_stepped() {
    frame_tax.set_visible(false);
    if (frame_tax_summary.visible()) get_tax_summary();
}

std::string APform_invoice::edit_refusal() {
    if (chkvoid.is_set()) return txtdocno.text() + " was void.";
    if (chkpaid.is_set()) return txtdocno.text() + " was PAID.";
    return {};
}

}  // namespace brimley::invoices
