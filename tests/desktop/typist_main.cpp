// brimley-typist COMPANY: opens the program's window, enters an invoice into it, and is gone from one moment
// to the next, as after a power cut.
#include <QApplication>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "desktop/main_window.h"
#include "invoices/apform_invoice.h"

namespace {

using namespace brimley;

void require(bool done, const char* what) {
    if (done) return;
    std::cerr << "brimley-typist: " << what << '\n';
    std::exit(1);
}

void type_cell(invoices::APform_invoice& form, const char* caption, const char* text) {
    require(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column(caption), text) == controls::Refusal::none,
            caption);
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    require(argc == 2, "usage: brimley-typist COMPANY");
    opening::HostOptions options;
    options.user = "anna";
    desktop::MainWindow window(options);
    window.show();
    window.open_company(QString::fromLocal8Bit(argv[1]));
    require(window.show_form("APform_invoice"), "no form");
    auto& form = *window.ap()->frm_invoice;
    require(form.press(105) == controls::Refusal::none, "New");
    require(form.cmbvendor.type("V1001") == controls::Refusal::none, "vendor");
    require(form.txtremark.type("before the cut") == controls::Refusal::none, "remark");
    type_cell(form, "purchase account", "5000");
    type_cell(form, "gross amount", "81.00");
    std::raise(SIGKILL);
}
