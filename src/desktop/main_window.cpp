#include "desktop/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "desktop/command_icons.h"
#include "desktop/company_dialogs.h"
#include "desktop/form_window.h"

namespace brimley::desktop {

namespace {

constexpr int kToldFor = 8000;  // milliseconds

// A form in the menu. What a version does not have yet shows nothing, and that is told.
struct FormEntry {
    const char* class_name;
    const char* caption;
    void (*show)(host::APclass&);
};

constexpr FormEntry kForms[] = {
    {"APform_invoice", "&Invoices", [](host::APclass& ap) { ap.showform_APform_invoice(); }},
    {"APform_payment", "&Payments", [](host::APclass& ap) { ap.showform_APform_payment(); }},
    {"APform_prepayment", "P&repayments", [](host::APclass& ap) { ap.showform_APform_prepayment(); }},
    {"APform_misc_payment", "&Miscellaneous payments", [](host::APclass& ap) { ap.showform_APform_misc(); }},
    {"APform_creditcard_payment", "&Credit card payments",
     [](host::APclass& ap) { ap.showform_APform_creditcard_payment(); }},
    {"APform_void_check", "&Void check", [](host::APclass& ap) { ap.showform_APform_void_check(); }},
    {"APreport_recur_inquiry", "Recurring invoices &due",
     [](host::APclass& ap) { ap.showform_APreport_recur_inquiry(); }},
    {"APform_revalue", "Reva&luation", [](host::APclass& ap) { ap.showform_APform_revalue(); }},
    {"APreport_aging", "Vendor &aging", [](host::APclass& ap) { ap.showform_APform_aging(); }},
    {"APreport_inquiry", "Invoice in&quiry", [](host::APclass& ap) { ap.showform_APform_inquiry(); }},
    {"APreport_payhistory", "Payment &history", [](host::APclass& ap) { ap.showform_APform_payhistory(); }},
};

}  // namespace

MainWindow::MainWindow(const opening::HostOptions& options)
    : options_(options), pages_(new QStackedWidget), area_(new QMdiArea) {
    setWindowTitle("Brimley AP");
    QApplication::setWindowIcon(command_icon(0, "B", QApplication::palette()));
    setCentralWidget(pages_);
    make_welcome_page();
    pages_->addWidget(area_);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    make_company_menu();
    make_forms_menu();
    make_window_menu();
    make_view_menu();
    desk_.place = [this](FormWindow& window) { place_form(window); };
    desk_.raise = [this](FormWindow& window) {
        if (QMdiSubWindow* const at = sub_window_of(window)) area_->setActiveSubWindow(at);
    };
    desk_.take_away = [this](FormWindow& window) {
        QMdiSubWindow* const at = sub_window_of(window);
        if (at == nullptr) return;
        at->setWidget(nullptr);  // the window sees to its own end
        window.setParent(nullptr);
        area_->removeSubWindow(at);
        at->deleteLater();
    };
    resize(1366, 740);
    restoreGeometry(settings_.geometry());
    refresh_state();
}

MainWindow::~MainWindow() { close_company(); }

// --- the company ---
void MainWindow::open_company(const QString& company) {
    const frame::HostContext context = opening::open_context(typed(company), options_);
    close_company();
    ap_ = std::make_unique<host::APclass>(desk_);
    static_cast<frame::HostContext&>(*ap_) = context;
    requests_ = std::make_unique<Requests>(*ap_);
    requests_->show_window = [this](QWidget* window) { place(*window); };
    requests_->tell = [this](const QString& text) { tell(text); };
    requests_->forms_shown = [this] { return forms_shown_; };
    requests_->next_window = [this] { area_->activateNextSubWindow(); };
    ap_->NotifyClients = [this](const std::string& formx, const std::string& docnox,
                                const std::string& arg2) { requests_->answer(formx, docnox, arg2); };
    settings_.company_opened(company);
    setWindowTitle(QFileInfo(company).completeBaseName() + " - Brimley AP");
    refresh_state();
}

bool MainWindow::open_or_tell(const QString& company) {
    try {
        open_company(company);
        return true;
    } catch (const std::exception& failure) {
        QMessageBox::warning(this, "Open company", company + "\n\n" + shown(std::string(failure.what())));
    }
    settings_.company_gone(company);
    refresh_state();
    return false;
}

void MainWindow::close_company() {
    if (!ap_) return;
    ap_->NotifyClients = nullptr;
    const std::vector<FormWindow*> open = desk_.windows();
    for (FormWindow* const window : open)
        window->press(frame::command::kExit);
    area_->closeAllSubWindows();
    ap_->class_terminate();
    requests_.reset();
    ap_.reset();
    setWindowTitle("Brimley AP");
    refresh_state();
}

void MainWindow::open_sample() {
    QString company;
    try {
        company = sample_company(options_.user);
    } catch (const std::exception& failure) {
        QMessageBox::warning(this, "Sample company", shown(std::string(failure.what())));
        return;
    }
    try_open(company);
}

void MainWindow::try_open(const std::optional<QString>& company) {
    if (company && open_or_tell(*company)) show_form("APform_invoice");
}

bool MainWindow::show_form(const QString& class_name) {
    for (const FormEntry& entry : kForms) {
        if (class_name != entry.class_name || !ap_) continue;
        const int before = forms_shown_;
        entry.show(*ap_);
        if (forms_shown_ != before) return true;
        tell(QString(entry.caption).remove('&') + ": this version does not have that form yet.");
    }
    return false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    settings_.set_geometry(saveGeometry());
    close_company();
    QMainWindow::closeEvent(event);
}

// --- windows inside ---
void MainWindow::place(QWidget& window) {
    QMdiSubWindow* const at = area_->addSubWindow(&window);
    at->setAttribute(Qt::WA_DeleteOnClose);
    at->resize(window.size() + QSize(12, 36));
    at->show();
    window.setFocus();
}

// The first form fills the area; with more of them the user arranges.
void MainWindow::place_form(FormWindow& window) {
    ++forms_shown_;
    const bool first = area_->subWindowList().isEmpty();
    QMdiSubWindow* const at = area_->addSubWindow(&window);
    at->setSystemMenu(nullptr);  // its keys are the forms' own
    if (first) {
        at->showMaximized();
    } else {
        at->resize(area_->size() * 0.9);
        at->show();
    }
}

QMdiSubWindow* MainWindow::sub_window_of(const QWidget& window) const {
    for (QMdiSubWindow* const at : area_->subWindowList())
        if (at->widget() == &window) return at;
    return nullptr;
}

void MainWindow::refresh_state() {
    pages_->setCurrentWidget(ap_ ? static_cast<QWidget*>(area_) : pages_->widget(0));
    forms_menu_->setEnabled(ap_ != nullptr);
    list_recent_companies();
}

void MainWindow::tell(const QString& text) { statusBar()->showMessage(text, kToldFor); }

// --- the first page ---
void MainWindow::make_welcome_page() {
    auto* const page = new QWidget;
    auto* const middle = new QVBoxLayout(page);
    auto* const title = new QLabel("<h1>Brimley AP</h1>Open a company to begin.");
    const auto add_button = [&](const char* caption, auto&& act) {
        auto* const button = new QPushButton(caption);
        button->setFixedWidth(340);
        connect(button, &QPushButton::clicked, this, act);
        middle->addWidget(button, 0, Qt::AlignHCenter);
        return button;
    };
    middle->addStretch(2);
    middle->addWidget(title, 0, Qt::AlignHCenter);
    middle->addSpacing(16);
    add_button("Open the &sample company", [this] { open_sample(); })->setDefault(true);
    add_button("&Open a company...", [this] { try_open(ask_for_company_file(this)); });
    add_button("&New company...", [this] { try_open(make_new_company(this, options_.user)); });
    middle->addSpacing(16);
    recent_buttons_ = new QVBoxLayout;
    middle->addLayout(recent_buttons_);
    middle->addStretch(3);
    pages_->addWidget(page);
}

void MainWindow::list_recent_companies() {
    recent_menu_->clear();
    while (QLayoutItem* const item = recent_buttons_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString& company : settings_.recent_companies()) {
        const auto open = [this, company] { try_open(company); };
        connect(recent_menu_->addAction(company), &QAction::triggered, this, open, Qt::QueuedConnection);
        auto* const button = new QPushButton(company);
        button->setFlat(true);
        // Opening lists the companies anew, so it waits until the click is over.
        connect(button, &QPushButton::clicked, this, open, Qt::QueuedConnection);
        recent_buttons_->addWidget(button, 0, Qt::AlignHCenter);
    }
}

// --- menus ---
void MainWindow::make_company_menu() {
    QMenu* const menu = menuBar()->addMenu("&Company");
    menu->addAction("&Open...", this, [this] { try_open(ask_for_company_file(this)); });
    menu->addAction("Open on a s&erver...", this, [this] { try_open(ask_for_server(this)); });
    menu->addAction("Open the &sample company", this, [this] { open_sample(); });
    menu->addAction("&New...", this, [this] { try_open(make_new_company(this, options_.user)); });
    recent_menu_ = menu->addMenu("&Recent");
    menu->addSeparator();
    menu->addAction("&Close", this, [this] { close_company(); });
    menu->addAction("&Quit", this, [this] { close(); });
}

void MainWindow::make_forms_menu() {
    forms_menu_ = menuBar()->addMenu("&Forms");
    for (const FormEntry& entry : kForms) {
        const QString class_name = entry.class_name;
        forms_menu_->addAction(entry.caption, this, [this, class_name] { show_form(class_name); });
    }
}

void MainWindow::make_window_menu() {
    QMenu* const menu = menuBar()->addMenu("&Window");
    menu->addAction("&Side by side", this, [this] { area_->tileSubWindows(); });
    menu->addAction("&Cascade", this, [this] { area_->cascadeSubWindows(); });
    menu->addAction("&Next", QKeySequence("Ctrl+F6"), area_, &QMdiArea::activateNextSubWindow);
    menu->addSeparator();
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        const auto fixed = menu->actions().mid(0, 4);
        for (QAction* const action : menu->actions().mid(4))
            delete action;
        for (QMdiSubWindow* const at : area_->subWindowList())
            menu->addAction(at->windowTitle(), this, [this, at] { area_->setActiveSubWindow(at); });
    });
}

void MainWindow::make_view_menu() {
    QMenu* const menu = menuBar()->addMenu("&Look");
    auto* const choices = new QActionGroup(menu);
    const std::pair<const char*, Theme> themes[] = {
        {"&Light", Theme::light}, {"&Dark", Theme::dark}, {"As the s&ystem", Theme::as_system}};
    for (const auto& [caption, theme] : themes) {
        QAction* const action = menu->addAction(caption);
        action->setCheckable(true);
        action->setChecked(settings_.theme() == theme);
        choices->addAction(action);
        const Theme chosen = theme;
        connect(action, &QAction::triggered, this, [this, chosen] {
            settings_.set_theme(chosen);
            use_theme(chosen);
        });
    }
}

}  // namespace brimley::desktop
