#include "desktop/requests.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "desktop/ledger_window.h"
#include "desktop/model_view.h"
#include "desktop/paper_windows.h"
#include "desktop/review_windows.h"
#include "invoices/apform_invoice.h"
#include "invoices/commands.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/prepayment/apform_prepayment.h"

namespace brimley::desktop {

namespace {

// A form that is being typed in is left alone: another one opens.
template <class FormClass>
bool can_be_led(const std::shared_ptr<FormClass>& form) {
    return form && form->is_open() && form->mode() == frame::Mode::read;
}

std::optional<std::string> if_given(const std::string& document) {
    return document.empty() ? std::nullopt : std::optional(document);
}

// Without a document the form is only opened, or comes to the front.
template <class FormClass>
void show_document(const std::shared_ptr<FormClass>& newest, const std::function<void()>& open,
                   const std::string& docno, const std::function<void(const std::string&)>& go_to) {
    if (can_be_led(newest)) {
        newest->show();
    } else {
        open();
    }
    if (!docno.empty()) go_to(docno);
}

}  // namespace

// In the view of templates numbers and keys are those of templates.
void Requests::show_invoice(const std::string& document, const std::function<void()>& go_to) {
    if (can_be_led(ap_.frm_invoice) && !ap_.frm_invoice->CommandBars1().pressed(invoices::kViewRecurring)) {
        ap_.frm_invoice->show();
    } else {
        ap_.showform_APform_invoice();
    }
    if (!document.empty()) go_to();
}

void Requests::show_payment(const std::string& docno) {
    show_document(
        ap_.frm_payment, [&] { ap_.showform_APform_payment(); }, docno,
        [&](const std::string& wanted) { ap_.APform_payment_goto_docno(wanted); });
}

void Requests::show_prepayment(const std::string& docno) {
    show_document(
        ap_.frm_prepayment, [&] { ap_.showform_APform_prepayment(); }, docno,
        [&](const std::string& wanted) { ap_.APform_prepayment_goto_docno(wanted); });
}

void Requests::show_card_payment(const std::string& docno) {
    show_document(
        ap_.frm_creditcard, [&] { ap_.showform_APform_creditcard_payment(); }, docno,
        [&](const std::string& wanted) { ap_.APform_creditcard_goto_docno(wanted); });
}

// The number of the document may hold a colon, that of a vendor not.
void Requests::pay_invoice(const std::string& docno_and_vendor) {
    const std::size_t colon = docno_and_vendor.rfind(':');
    if (colon == std::string::npos) return;
    ap_.showform_APform_payment();
    const std::string docno = docno_and_vendor.substr(0, colon);
    const std::string vendor = docno_and_vendor.substr(colon + 1);
    ap_.pay_this_invoice(docno, vendor);
    if (payment_begun) payment_begun(docno, vendor);
}

bool Requests::open_form(const std::string& formx, const std::string& docnox) {
    const std::map<std::string, std::function<void()>> forms{
        {"Pay this invoice", [&] { pay_invoice(docnox); }},
        {"Payment History", [&] { ap_.showform_APform_payhistory(if_given(docnox)); }},
        {"Bill Entry : Docno", [&] { show_invoice(docnox, [&] { ap_.APform_invoice_goto_docno(docnox); }); }},
        {"Bill Entry", [&] { show_invoice(docnox, [&] { ap_.APform_invoice_goto_fkey(docnox); }); }},
        {"A/P Prepayment", [&] { show_prepayment(docnox); }},
        {"A/P Payment Entry", [&] { show_payment(docnox); }},
        {"Payment Entry", [&] { show_payment(docnox); }},
        {"Credit Card Payment", [&] { show_card_payment(docnox); }},
        {"Journal", [&] { ap_.showform_Ledger_journal(if_given(docnox)); }},
    };
    const auto found = forms.find(formx);
    if (found == forms.end()) return false;
    found->second();
    return true;
}

ListWindow* Requests::opening_master(ListWindow* list, const std::string& master) {
    list->on_open = [this, master](const QString& key) { ap_.showform_Master(master, if_given(typed(key))); };
    return list;
}

bool Requests::open_window(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    if (!ap_.abcdb) return false;
    const std::string& date_format = ap_.BRIMLEY_DATE_FORMAT;
    QWidget* window = nullptr;
    if (formx == "pdf viewer" || formx == "pdf viewer landscape") {
        window = new PdfWindow(shown(docnox), shown(arg2));
    } else if (formx == "ActiveReport") {
        window =
            new ReportWindow(*ap_.abcdb, docnox, shown(arg2), shown(ap_.BRIMLEY_COMPANY_NAME), date_format);
    } else if (formx == "G/L Ledger Review") {
        window = new LedgerWindow(*ap_.abcdb, date_format, docnox);
    } else if (formx == "Account Master") {
        window = opening_master(account_master(*ap_.abcdb, date_format, shown(docnox)), "Master_account");
    } else if (formx == "Vendor Master") {
        window = opening_master(vendor_master(*ap_.abcdb, date_format, shown(docnox)), "Master_vendor");
    }
    if (window == nullptr) return false;
    show_window(window);
    return true;
}

void Requests::answer(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    static constexpr std::array kOtherModules{"Receipt Entry", "P/O Bill Entry", "Landed Cost Entry"};
    if (formx == "Next App") {
        next_window();
    } else if (std::find(kOtherModules.begin(), kOtherModules.end(), formx) != kOtherModules.end()) {
        tell(shown(formx) + " " + shown(docnox) + " is a document of another module.");
    } else if (!open_form(formx, docnox) && !open_window(formx, docnox, arg2)) {
        tell(shown(formx) + ": nothing in this program answers this request.");
    }
}

}  // namespace brimley::desktop
