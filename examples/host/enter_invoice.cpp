// A host of one's own: opens a company, enters an invoice in its form, saves it and prints its number.
// enter-invoice COMPANY USER
#include <unistd.h>

#include <iostream>
#include <stdexcept>

#include "host/apclass.h"
#include "invoices/apform_invoice.h"
#include "kernel/tables/company_tables.h"

using namespace brimley;

// What the forms ask the world for. Here nobody looks on: messages are printed, questions are answered with
// no.
class Desk : public frame::Desk {
  public:
    void message(const std::string& text) override { std::cerr << text << '\n'; }
    bool question(const std::string&, const std::string&) override { return false; }
    store::DateTime now() override { return store::DateTime::from_ymd(2026, 3, 16).value(); }
    void wait(std::chrono::milliseconds duration) override { ::usleep(duration.count() * 1000); }
    void pump() override {}
    std::string computer_name() override { return "EXAMPLE"; }
    std::vector<std::string> font_families() override { return {}; }
    void form_shown(std::shared_ptr<frame::Form> form) override { shown_ = std::move(form); }
    void child_shown(frame::Form&, std::shared_ptr<frame::Form>) override {}
    void form_raised(frame::Form&) override {}
    void form_closed(frame::Form&) override { shown_.reset(); }
    bool folder_exists(const std::string&) override { return false; }
    bool make_folder(const std::string&) override { return false; }

  private:
    std::shared_ptr<frame::Form> shown_;  // the desk keeps it alive
};

// An act of a user may be refused, such as typing into a locked field.
static void must(controls::Refusal refusal) {
    if (refusal != controls::Refusal::none) throw std::runtime_error("the form refused an act");
}

static void enter_invoice(invoices::APform_invoice& form) {
    must(form.press(frame::command::kNew));
    must(form.cmbdoctype.type("Invoice"));
    must(form.cmbvendor.type("V1001"));
    must(form.txtinvno.type("EXAMPLE-1"));
    const auto cell = [&](const char* caption, const char* text) {
        must(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column(caption), text));
    };
    cell("description", "Green coffee, 20 bags");
    cell("purchase account", "5000");
    cell("taxable amount", "100.00");
    must(form.press(frame::command::kSave));
}

int main(int argc, char** argv) try {
    if (argc != 3) throw std::runtime_error("usage: enter-invoice COMPANY USER");
    const auto company = store::open_company(argv[1], kernel::company_tables());
    Desk desk;
    host::APclass ap(desk);
    ap.dbwkspace(company.workspace);
    ap.db(company.database);
    ap.BRuser(argv[2]);
    ap.basecurrency("USD");
    ap.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    ap.BRIMLEY_NO_PERIODS = "12";
    ap.showform_APform_invoice();
    enter_invoice(*ap.frm_invoice);
    std::cout << ap.frm_invoice->txtdocno.text() << '\n';
    ap.frm_invoice_Exit();
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
