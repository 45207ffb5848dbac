#include "bench_host.h"
#include "payments/misc/apform_misc_payment.h"
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

}  // namespace

struct FormSave::Parts {
    Parts(const std::string& company, BareDocument its_document) : host(company), document(its_document) {
        if (document == BareDocument::misc_payment) host.ap.showform_APform_misc();
    }
    [[nodiscard]] frame::Form& form() {
        if (document == BareDocument::misc_payment) return *host.ap.frm_misc;
        return host.form();
    }

    BenchHost host;
    BareDocument document;
};

FormSave::FormSave(const std::string& company, BareDocument document)
    : parts_(std::make_unique<Parts>(company, document)) {}

FormSave::~FormSave() = default;

void FormSave::enter() {
    if (parts_->document == BareDocument::misc_payment) {
        enter_misc_payment(*parts_->host.ap.frm_misc);
    } else {
        enter_invoice(parts_->host.form());
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
