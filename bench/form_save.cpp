#include "bench_host.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/misc/apform_misc_payment.h"
#include "payments/prepayment/apform_prepayment.h"
#include "workload.h"

namespace brimley::bench {

namespace {

constexpr const char* kAccounts[] = {"5000", "5300", "6300"};

void cell(controls::Grid& grid, int row, const char* caption, const char* text) {
    must(grid.edit_cell(row, grid.get_column(caption), text));
}

void enter_invoice(invoices::APform_invoice& form) {
    must(form.press(105));
    must(form.cmbdoctype.type("Invoice"));
    must(form.cmbvendor.type("V1001"));
    must(form.txtinvno.type("BENCH-1"));
    for (int row = 0; row < 3; ++row) {
        cell(form.dbgrid1, row, "description", "Green coffee, 20 bags");
        cell(form.dbgrid1, row, "purchase account", kAccounts[row]);
        cell(form.dbgrid1, row, "tax code", "STACK");
        cell(form.dbgrid1, row, "taxable amount", "100.00");
    }
}

void enter_misc_payment(payments::APform_misc_payment& form) {
    must(form.press(105));
    must(form.txtremit.type("Harbour Stationers"));
    must(form.cmbpayby.type("Cash"));
    must(form.cmbcash.type("1000"));
    for (int row = 0; row < 3; ++row) {
        cell(form.dbgrid1, row, "reference", "receipt 71");
        cell(form.dbgrid1, row, "account", kAccounts[row]);
        cell(form.dbgrid1, row, "tax code", "STACK");
        cell(form.dbgrid1, row, "amount", "100.00");
    }
}

void enter_prepayment(payments::APform_prepayment& form) {
    must(form.press(105));
    must(form.cmbvendor.type("V1001"));
    must(form.txtprepay.type("250.00"));
    must(form.cmbpono.type("PO-BENCH"));
    must(form.cmbpayby.type("Cash"));
    must(form.cmbcash.type("1000"));
}

void enter_card_payment(payments::APform_creditcard_payment& form) {
    must(form.press(105));
    must(form.cmbcard.type("VISA"));
    form.txtbalance.set("1,000.00");  // nothing was collected on the card yet
    must(form.txtfee.type("10.00"));
    must(form.cmbexpacc.type("6520"));
    must(form.txtpayment.type("260.00"));
    must(form.cmbpayby.type("Cash"));
    must(form.cmbcash.type("1000"));
}

}  // namespace

struct FormSave::Parts {
    Parts(const std::string& company, BareDocument its_document) : host(company), document(its_document) {
        if (document == BareDocument::misc_payment) host.ap.showform_APform_misc();
        if (document == BareDocument::prepayment) host.ap.showform_APform_prepayment();
        if (document == BareDocument::card_payment) host.ap.showform_APform_creditcard_payment();
    }
    [[nodiscard]] frame::Form& form() {
        switch (document) {
            case BareDocument::misc_payment:
                return *host.ap.frm_misc;
            case BareDocument::prepayment:
                return *host.ap.frm_prepayment;
            case BareDocument::card_payment:
                return *host.ap.frm_creditcard;
            default:
                return host.form();
        }
    }

    BenchHost host;
    BareDocument document;
};

FormSave::FormSave(const std::string& company, BareDocument document)
    : parts_(std::make_unique<Parts>(company, document)) {}

FormSave::~FormSave() = default;

void FormSave::enter() {
    host::APclass& ap = parts_->host.ap;
    switch (parts_->document) {
        case BareDocument::misc_payment:
            return enter_misc_payment(*ap.frm_misc);
        case BareDocument::prepayment:
            return enter_prepayment(*ap.frm_prepayment);
        case BareDocument::card_payment:
            return enter_card_payment(*ap.frm_creditcard);
        default:
            return enter_invoice(parts_->host.form());
    }
}

void FormSave::save() {
    std::vector<std::string>& messages = parts_->host.desk.messages;
    messages.clear();
    must(parts_->form().press(101));
    if (messages.size() != 1 || !messages[0].ends_with(" complete"))
        throw std::runtime_error("the save failed: " + (messages.empty() ? "" : messages[0]));
}

}  // namespace brimley::bench
