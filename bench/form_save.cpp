#include <stdexcept>

#include "host/apclass.h"
#include "kernel/tables/company_tables.h"
#include "quiet_desk.h"
#include "workload.h"

namespace brimley::bench {

namespace {

void must(controls::Refusal refusal) {
    if (refusal != controls::Refusal::none) throw std::runtime_error("the form refused an act");
}

}  // namespace

struct FormSave::Parts {
    QuietDesk desk;
    host::APclass ap{desk};
};

FormSave::FormSave(const std::string& company) : parts_(std::make_unique<Parts>()) {
    const auto open = store::open_company(company, kernel::company_tables());
    host::APclass& ap = parts_->ap;
    ap.dbe = open.workspace;
    ap.abcdb = open.database;
    ap.BASE_CURRENCY = "USD";
    ap.BRIMLEY_USER = "anna";
    ap.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    ap.BRIMLEY_NO_PERIODS = "12";
    ap.showform_APform_invoice();
}

FormSave::~FormSave() = default;

void FormSave::enter() {
    invoices::APform_invoice& form = *parts_->ap.frm_invoice;
    must(form.press(105));
    must(form.cmbdoctype.type("Invoice"));
    must(form.cmbvendor.type("V1001"));
    must(form.txtinvno.type("BENCH-1"));
    const char* accounts[] = {"5000", "5300", "6300"};
    for (int row = 0; row < 3; ++row) {
        const auto cell = [&](const char* caption, const char* text) {
            must(form.dbgrid1.edit_cell(row, form.dbgrid1.get_column(caption), text));
        };
        cell("description", "Green coffee, 20 bags");
        cell("purchase account", accounts[row]);
        cell("tax code", "STACK");
        cell("taxable amount", "100.00");
    }
}

void FormSave::save() {
    parts_->desk.messages.clear();
    must(parts_->ap.frm_invoice->press(101));
    if (parts_->desk.messages.size() != 1 || parts_->desk.messages[0] != "Add new Invoice complete") {
        throw std::runtime_error("the save failed: " +
                                 (parts_->desk.messages.empty() ? "" : parts_->desk.messages[0]));
    }
}

}  // namespace brimley::bench
