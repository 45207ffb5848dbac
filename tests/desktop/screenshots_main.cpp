// brimley-screenshots COMPANY FOLDER: the pictures of the papers, from a copy of the sample company. Each is
// reached by acts on the window, as a bookkeeper would.
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QMessageBox>
#include <QPainter>
#include <QWizard>

#include <iostream>
#include <sstream>

#include "controls/grid.h"
#include "desktop/combo_view.h"
#include "desktop/form_window.h"
#include "desktop/main_window.h"
#include "desktop/new_company.h"
#include "desktop/theme.h"
#include "frame/form.h"

namespace {

using namespace brimley;
using controls::Refusal;

constexpr QSize kSmallScreen(1366, 740);

// What the window shows, with the list that stands open over it.
QPixmap picture_of(QWidget& window, QWidget* popup) {
    QPixmap picture = window.grab();
    if (popup == nullptr) return picture;
    QPainter painter(&picture);
    painter.drawPixmap(window.mapFromGlobal(popup->mapToGlobal(QPoint(0, 0))), popup->grab());
    return picture;
}

class Photographer {
  public:
    Photographer(const QString& company, const QString& folder) : folder_(folder), window_(options()) {
        window_.resize(kSmallScreen);
        window_.show();
        window_.desk().on_box = [](QMessageBox& box) {
            box.button(box.standardButtons().testFlag(QMessageBox::Ok) ? QMessageBox::Ok : QMessageBox::No)
                ->click();
        };
        window_.open_company(company);
    }

    void invoices() {
        window_.show_form("APform_invoice");
        press(105);
        enter_invoice("BCT-20417", "V1001");
        press(101);
        take("invoice-read");
        press(106);
        take("invoice-edit");
        press(131);
        press(132);
        visit(0, "description");
        take("invoice-tax-panes");
        press(131);
        press(132);
        press(106);
        press(105);
        enter_invoice("BCT-20433", "V1019");
        take("invoice-new");
        press(105);
    }

    void pickers() {
        press(116);
        take_list("colour-picker", "cmbitcolor");
        take_list("font-picker", "cmbitfont");
        must(control<controls::Frame>("frame_font").close(), "frame_font");
    }

    void payment() {
        window_.show_form("APform_payment");
        press(105);
        type("cmbvendor", "V1001");
        type("cmbpayby", "Check");
        take("payment-new");
        press(105);
    }

    // Saved by card, so that the card has a balance to pay.
    void prepayment() {
        window_.show_form("APform_prepayment");
        press(105);
        type("cmbvendor", "V1012");
        must(control<controls::TextField>("txtprepay").type("400.00"), "txtprepay");
        type("cmbpayby", "VISA");
        type("cmbpono", "PO-26-00031");
        press(101);
        take("prepayment-read");
    }

    void card_payment() {
        window_.show_form("APform_creditcard_payment");
        press(105);
        type("cmbcard", "VISA");
        must(control<controls::TextField>("txtfee").type("12.50"), "txtfee");
        type("cmbexpacc", "6520");
        must(control<controls::TextField>("txtpayment").type("412.50"), "txtpayment");
        type("cmbpayby", "Check");
        type("cmbbank", "MAIN");
        take("card-payment-new");
        press(105);
    }

    void misc_payment() {
        window_.show_form("APform_misc_payment");
        press(105);
        must(control<controls::TextField>("txtremit").type("Harbour Stationers"), "txtremit");
        type("cmbpayby", "Cash");
        type("cmbcash", "1000");
        cell(0, "tax included", "True");
        cell(0, "tax code", "GST5");
        cell(0, "amount", "105.00");
        cell(0, "account", "6300");
        cell(0, "reference", "receipt 71");
        cell(1, "tax code", "HALF10");
        cell(1, "amount", "40.00");
        cell(1, "account", "6400");
        take("misc-payment-new");
        press(105);
    }

    void void_check() {
        window_.show_form("APform_payment");
        press(105);
        type("cmbvendor", "V1001");
        type("cmbpayby", "Check");
        type("cmbbank", "MAIN");
        must(control<controls::TextField>("txtcheck").type("70001"), "txtcheck");
        auto& date = control<controls::TextField>("txtcheckdate");
        must(date.type(control<controls::TextField>("txtpaydate").text()), "txtcheckdate");
        visit(0, "pay amount");
        auto& payment = control<controls::TextField>("txtpayment");
        must(payment.type(control<controls::TextField>("txttotal").text()), "txtpayment");
        press(101);
        window_.show_form("APform_void_check");
        press(104);
        must(control<controls::Grid>("dbgrid1").double_click(0), "dbgrid1");
        take("void-check");
    }

    // What the acts before have left: invoices paid in part, and payments of every kind.
    void inquiries() {
        window_.show_form("APreport_inquiry");
        press(104);
        take("invoice-inquiry");
        window_.show_form("APreport_payhistory");
        press(104);
        take("payment-history");
    }

    // Due at different times, so that in three months they have different ages.
    void aging() {
        window_.show_form("APform_invoice");
        const char* const invoices[][3] = {{"CGB-7711", "V1002", "Net 60 days"},
                                           {"CGB-7725", "V1002", "Due on receipt"},
                                           {"TP-3304", "V1004", "Net 30 days"}};
        for (const auto& [number, vendor, term] : invoices) {
            press(105);
            enter_invoice(number, vendor, term);
            press(101);
        }
        window_.show_form("APreport_aging");
        auto& as_of = control<controls::DateField>("txtdate");
        must(as_of.type(in_days(75)), "txtdate");
        press(104);
        take("vendor-aging");
        press(124);
        take("print-columns");
        press(124);
    }

    void aging_report() {
        desktop::FormWindow& list = form();
        list.press(102);
        set_up_page(*list.form().child());
        take("page-setup");
        must(list.form().close_child(), "Form_report_format");
        list.press(103);
        let_pages_be_drawn();
        take("vendor-aging-report");
    }

    // The rent of a warehouse and the bill for the electricity, both due this month.
    void recurring() {
        window_.show_form("APform_invoice");
        for (const auto& [vendor, name, day, account, amount] :
             {std::tuple("V1014", "Warehouse rent", "1", "6100", "1,050.00"),
              std::tuple("V1008", "Electricity", "31", "6120", "88.25")}) {
            press(105);
            type("cmbvendor", vendor);
            type("cmbterm", "Net 30 days");
            auto& is_template = control<controls::CheckBox>("chkrecur");
            if (!is_template.is_set()) must(is_template.click(true), "chkrecur");
            if (!control<controls::Frame>("frame_recur").visible()) press(1011);
            const auto text = [&](const char* field, const QString& typed) {
                must(control<controls::TextField>(field).type(typed.toStdString()), field);
            };
            text("txtrecurname", name);
            text("txtrecurdate", day);
            type("cmbfreq", "monthly");
            text("txteffectdate", QString::fromStdString(in_days(-31)));
            text("txtexpiredate", QString::fromStdString(in_days(334)));
            cell(0, "purchase account", account);
            cell(0, "gross amount", amount);
            press(101);
        }
        must(control<controls::Frame>("frame_recur").close(), "frame_recur");
        window_.show_form("APreport_recur_inquiry");
        press(1001);
        take("recurring-due");
    }

    // What is owed in Hamburg, at the rate of the month's end.
    void revaluation() {
        window_.show_form("APform_invoice");
        for (const auto& [rate, amount] : {std::pair("1.1658", "2,400.00"), std::pair("1.1921", "815.50")}) {
            press(105);
            type("cmbvendor", "V2001");
            type("cmbcurrency", "EUR");
            type("cmbexrate", rate);
            cell(0, "purchase account", "5000");
            cell(0, "gross amount", amount);
            press(101);
        }
        window_.show_form("APform_revalue");
        press(105);
        auto& selection = control<controls::Grid>("dbgridcmd");
        for (const auto& [caption, typed] :
             {std::pair("currency", "EUR"), std::pair("rate", "1.1790"), std::pair("every vendor", "True")})
            must(selection.edit_cell(0, selection.get_column(caption), typed), caption);
        press(104);
        take("revaluation");
        must(control<controls::TabControl>("TabControl").choose(1), "TabControl");
        take("revaluation-ledger");
    }

    void ledger() {
        window_.ap()->showform_Ledger_trial_balance();
        press(frame::command::kFind);
        take("ledger-trial-balance");
        window_.ap()->showform_Ledger_journal("1050");
        take("ledger-journal");
    }
    void new_company() {
        desktop::NewCompanyAssistant assistant(&window_, "anna");
        assistant.show();
        assistant.button(QWizard::NextButton)->click();
        assistant.findChild<QComboBox*>("country")->setCurrentText("Germany");
        QApplication::processEvents();
        if (!assistant.grab().save(folder_.filePath("new-company.png")))
            throw std::runtime_error("a picture cannot be written");
    }
    void masters() {
        window_.show_form("Master_vendor");
        press(106);
        take("master-vendor");
        press(106);
        window_.show_form("Master_account");
        take("master-account");
    }

    void dark() {
        desktop::use_theme(desktop::Theme::dark);
        window_.show_form("APform_invoice");
        take("invoice-dark");
    }

  private:
    static opening::HostOptions options() {
        opening::HostOptions options;
        options.user = "anna";
        options.company_name = "Pier Street Coffee & Tea";
        return options;
    }
    desktop::FormWindow& form() { return *window_.desk().windows().back(); }
    // The pages of a PDF file are drawn beside the event loop.
    static void let_pages_be_drawn() {
        const QDeadlineTimer deadline(1'000);
        while (!deadline.hasExpired())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    }
    void press(int command) {
        form().press(command);
        QApplication::processEvents();
    }
    void must(Refusal refusal, const char* what) {
        if (refusal != Refusal::none) throw std::runtime_error(std::string("refused: ") + what);
    }
    static std::string in_days(int days) {
        return QDate::currentDate().addDays(days).toString("dd/MM/yyyy").toStdString();
    }
    template <class Kind = controls::ComboBox>
    Kind& control(const char* name) {
        return dynamic_cast<Kind&>(*form().form().controls().find(name));
    }
    void type(const char* name, const char* text) { must(control(name).type(text), name); }
    void cell(int row, const char* caption, const char* text) {
        auto& grid = control<controls::Grid>("dbgrid1");
        must(grid.edit_cell(row, grid.get_column(caption), text), caption);
    }
    void visit(int row, const char* caption) {
        auto& grid = control<controls::Grid>("dbgrid1");
        must(grid.visit_cell(row, grid.get_column(caption)), caption);
    }
    void set_up_page(frame::Form& page_setup) {
        const auto setup = [&](const char* name, const char* text) {
            controls::Control& field = *page_setup.controls().find(name);
            if (auto* const combo = dynamic_cast<controls::ComboBox*>(&field))
                must(combo->type(text), name);
            else
                must(dynamic_cast<controls::TextField&>(field).type(text), name);
        };
        setup("cmbpaper", "A4 (210x297 mm)");
        setup("cmborient", "Landscape");
        setup("cmbfont_size_print", "8");
        setup("cmbrow_hi", "12");
        for (const char* const margin : {"txttop", "txtbottom", "txtleft", "txtright"})
            setup(margin, "15");
        setup("cmbback_color", "f0f8ff");
        must(dynamic_cast<controls::PushButton&>(*page_setup.controls().find("cmdsave")).click(), "cmdsave");
    }
    void enter_invoice(const char* number, const char* vendor, const char* term = "2% 10 days, net 30") {
        type("cmbdoctype", "Invoice");
        auto& is_template = control<controls::CheckBox>("chkrecur");
        if (is_template.is_set()) must(is_template.click(false), "chkrecur");
        type("cmbvendor", vendor);
        must(control<controls::TextField>("txtinvno").type(number), "txtinvno");
        type("cmbterm", term);
        cell(0, "description", "Green coffee, 20 bags");
        cell(0, "purchase account", "5000");
        cell(0, "tax code", "STACK");
        cell(0, "taxable amount", "100.00");
        cell(1, "description", "Import duty on it");
        cell(1, "purchase account", "5310");
        cell(1, "taxable amount", "24.50");
    }
    void take(const QString& name, QWidget* popup = nullptr) {
        form().settle();
        QApplication::processEvents();
        form().settle();
        if (!picture_of(window_, popup).save(folder_.filePath(name + ".png")))
            throw std::runtime_error("a picture cannot be written");
    }
    void take_list(const QString& name, const char* combo) {
        auto& view = dynamic_cast<desktop::ComboView&>(*form().view(control(combo)));
        desktop::ListPopup* const list = view.open_list();
        if (list == nullptr) throw std::runtime_error("the list does not open");
        QApplication::processEvents();
        take(name, list);
        list->close();
    }

    QDir folder_;
    desktop::MainWindow window_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) {
        std::cerr << "brimley-screenshots: COMPANY FOLDER\n";
        return 2;
    }
    desktop::use_fonts();
    desktop::use_theme(desktop::Theme::light);
    try {
        Photographer photographer(argv[1], argv[2]);
        photographer.invoices();
        photographer.pickers();
        photographer.payment();
        photographer.prepayment();
        photographer.card_payment();
        photographer.misc_payment();
        photographer.void_check();
        photographer.inquiries();
        photographer.recurring();
        photographer.revaluation();
        photographer.aging();
        photographer.aging_report();
        photographer.masters();
        photographer.ledger();
        photographer.new_company();
        photographer.dark();
    } catch (const std::exception& failure) {
        std::cerr << "brimley-screenshots: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
