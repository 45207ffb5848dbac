#include "bench_host.h"
#include "workload.h"

namespace brimley::bench {

struct FormSave::Parts {
    explicit Parts(const std::string& company) : host(company) {}
    BenchHost host;
};

FormSave::FormSave(const std::string& company) : parts_(std::make_unique<Parts>(company)) {}

FormSave::~FormSave() = default;

void FormSave::enter() {
    invoices::APform_invoice& form = parts_->host.form();
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
    std::vector<std::string>& messages = parts_->host.desk.messages;
    messages.clear();
    must(parts_->host.form().press(101));
    if (messages.size() != 1 || messages[0] != "Add new Invoice complete")
        throw std::runtime_error("the save failed: " + (messages.empty() ? "" : messages[0]));
}

}  // namespace brimley::bench
