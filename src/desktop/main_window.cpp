#include "desktop/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/command_icons.h"
#include "desktop/company_dialogs.h"
#include "desktop/entry_keeper.h"
#include "desktop/form_window.h"
#include "desktop/module_forms.h"
#include "desktop/server_watch.h"
#include "frame/form.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::desktop {

namespace {

constexpr int kToldFor = 8000;        // milliseconds
constexpr int kWhyFor = 60000;        // why something was not stored
constexpr double kShareOfArea = 0.9;  // of a form among others
constexpr std::string_view kPayThisInvoice = "pay_this_invoice";

}  // namespace

MainWindow::MainWindow(const opening::HostOptions& options, Memory memory,
                       std::chrono::milliseconds idle_after)
    : options_(options),
      memory_(memory),
      idle_(idle_after, [this] { tidy_company(); }),
      pages_(new QStackedWidget),
      area_(new QMdiArea),
      menus_(*this, settings_, options_.user),
      server_state_(new QLabel) {
    setWindowTitle("Brimley AP");
    // From the beginning, so that no line of it moves the forms later.
    statusBar()->addPermanentWidget(server_state_);
    server_state_->setObjectName("server_state");
    server_state_->hide();
    QApplication::setWindowIcon(program_icon());
    setCentralWidget(pages_);
    make_welcome_page();
    pages_->addWidget(area_);
    make_forms_page();
    // What opens beside a form that fills the area does not cover it.
    area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
    connect(area_, &QMdiArea::subWindowActivated, &while_it_lives_, [this] {
        refresh_page();
        refresh_menus();
    });
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    desk_.place = [this](FormWindow& window) {
        place_form(window);
        keep_entries_of(window);
    };
    desk_.on_failure = [this](const QString& reason) {
        if (!reason.isEmpty()) return statusBar()->showMessage("Not stored: " + reason, kWhyFor);
        if (statusBar()->currentMessage().startsWith("Not stored: ")) statusBar()->clearMessage();
    };
    desk_.on_answer = [this](bool yes) {
        if (EntryKeeper* const keeper = acting_keeper()) keeper->recorder().answered(yes);
    };
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
        refresh_page();
    };
    resize(kUsualSize.boundedTo(screen()->availableSize()));
    if (memory_ == Memory::kept) restoreGeometry(settings_.geometry());
    refresh_state();
}

MainWindow::~MainWindow() { close_company(); }

// --- the company ---
namespace {

// The name of its file, or of its database.
QString short_name(const QString& company) {
    if (store::is_on_server(typed(company))) return shown(store::database_name(typed(company)));
    return QFileInfo(company).completeBaseName();
}

}  // namespace

void MainWindow::open_company(const QString& company) {
    const frame::HostContext context = opening::open_context(typed(company), options_);
    close_company();
    ap_ = std::make_unique<host::APclass>(desk_);
    static_cast<frame::HostContext&>(*ap_) = context;
    ap_->text_below_icons = true;
    // On papers and reports; better this than none.
    if (ap_->BRIMLEY_COMPANY_NAME.empty())
        ap_->BRIMLEY_COMPANY_NAME = typed(short_name(company_shown(company)));
    watch_server();
    requests_ = std::make_unique<Requests>(*ap_);
    requests_->show_window = [this](QWidget* window) { place(*window); };
    requests_->tell = [this](const QString& text) { tell(text); };
    requests_->next_window = [this] { area_->activateNextSubWindow(); };
    requests_->payment_begun = [this](const std::string& docno, const std::string& vendor) {
        if (desk_.windows().empty()) return;
        if (EntryKeeper* const keeper = keeper_of(*desk_.windows().back()))
            keeper->recorder().acted(
                {controls::Act::Kind::host_call, std::string(kPayThisInvoice), 0, 0, docno, vendor});
    };
    company_ = company_shown(company);
    ap_->NotifyClients = [this](const std::string& formx, const std::string& docnox,
                                const std::string& arg2) { requests_->answer(formx, docnox, arg2); };
    if (memory_ == Memory::kept) settings_.company_opened(company_);
    setWindowTitle(short_name(company_) + " - Brimley AP");
    refresh_state();
}

// --- entries ---
void MainWindow::keep_entries_of(FormWindow& window) {
    const auto& commands = window.form().CommandBars1();
    const bool has_entries =
        commands.find(frame::command::kNew) != nullptr || commands.find(frame::command::kEditMode) != nullptr;
    if (!has_entries || company_.isEmpty() || memory_ == Memory::none) return;
    auto* const keeper =
        new EntryKeeper(window, desk_, {typed(settings_.entries_folder()), typed(company_)},
                        [this, &window](const controls::Act& act) { return call_again(window, act); });
    keeper->tell = [this](const QString& text) { tell(text); };
    keeper->offer();
}

EntryKeeper* MainWindow::keeper_of(const FormWindow& window) const {
    for (QObject* const child : window.children())
        if (auto* const keeper = dynamic_cast<EntryKeeper*>(child)) return keeper;
    return nullptr;
}

EntryKeeper* MainWindow::acting_keeper() const {
    EntryKeeper* newest = nullptr;
    for (FormWindow* const window : desk_.windows()) {
        EntryKeeper* const keeper = keeper_of(*window);
        if (keeper == nullptr || !window->gate().is_running()) continue;
        if (newest == nullptr || window->gate().order_of_begin() > newest->window().gate().order_of_begin())
            newest = keeper;
    }
    return newest;
}

bool MainWindow::call_again(FormWindow& window, const controls::Act& act) {
    if (act.control != kPayThisInvoice || !ap_ || ap_->frm_payment.get() != &window.form()) return false;
    ap_->pay_this_invoice(act.text, act.other_text);
    return true;
}

bool MainWindow::let_entries_go() {
    const std::vector<FormWindow*> open = desk_.windows();
    return std::ranges::all_of(open, [&](const FormWindow* window) {
        EntryKeeper* const keeper = keeper_of(*window);
        return keeper == nullptr || keeper->let_go();
    });
}

void MainWindow::watch_server() {
    const auto watch = std::make_shared<ServerWatch>(*this);
    watch->on_state = [this](const QString& text) { show_state(text); };
    watch->on_news = [this](const QString& text) { tell(text); };
    ap_->dbe->watch(watch);
    show_state(shown(opening::limit_of_work(*ap_->abcdb)));
}

void MainWindow::show_state(const QString& text) {
    server_state_->setText(text);
    server_state_->setVisible(!text.isEmpty());
}

bool MainWindow::open_or_tell(const QString& company) {
    try {
        open_company(company);
        if (const QString limit = server_state_->text(); !limit.isEmpty())
            QMessageBox::warning(this, "Open company", limit);
        return true;
    } catch (const std::exception& failure) {
        QMessageBox::warning(this, "Open company",
                             company_shown(company) + "\n\n" + shown(std::string(failure.what())));
    }
    // A server may be back in a minute; a file that was deleted is not.
    const bool is_file = !store::is_on_server(typed(company));
    if (is_file && !QFileInfo::exists(company)) settings_.company_gone(company_shown(company));
    refresh_state();
    return false;
}

void MainWindow::tidy_company() {
    if (ap_ && ap_->dbe) ap_->dbe->tidy();
}

void MainWindow::close_company() {
    if (!ap_) return;
    ap_->NotifyClients = nullptr;
    show_state({});
    const std::vector<FormWindow*> open = desk_.windows();
    for (FormWindow* const window : open) {
        const auto& still_open = desk_.windows();  // a child leaves with its form
        if (std::find(still_open.begin(), still_open.end(), window) != still_open.end())
            window->press(frame::command::kExit);
    }
    area_->closeAllSubWindows();
    const auto workspace = ap_->dbe;
    ap_->class_terminate();
    if (workspace) workspace->watch(nullptr);
    requests_.reset();
    ap_.reset();
    company_.clear();
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
    open_with_form(company);
}

void MainWindow::open_with_form(const std::optional<QString>& company) {
    if (company && let_entries_go() && open_or_tell(*company)) show_form("APform_invoice");
}

bool MainWindow::show_form(const std::string& class_name) {
    for (const ModuleForm& form : module_forms()) {
        if (class_name != form.class_name || !ap_) continue;
        if (ap_->dbe) ap_->dbe->reconnect();
        form.show(*ap_);
        return true;
    }
    return false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!let_entries_go()) return event->ignore();
    if (memory_ == Memory::kept) settings_.set_geometry(saveGeometry());
    close_company();
    QMainWindow::closeEvent(event);
}

// --- windows inside ---
namespace {

void keep_inside(QMdiSubWindow& window, const QSize& room) {
    window.move(std::clamp(window.x(), 0, std::max(0, room.width() - window.width())),
                std::clamp(window.y(), 0, std::max(0, room.height() - window.height())));
}

}  // namespace

void MainWindow::place(QWidget& window) {
    const QPointer<QMdiSubWindow> asked_from = area_->currentSubWindow();
    connect(&window, &QObject::destroyed, &while_it_lives_, [this, asked_from] {
        if (area_->subWindowList().contains(asked_from)) area_->setActiveSubWindow(asked_from);
    });
    QMdiSubWindow* const at = area_->addSubWindow(&window);
    at->setAttribute(Qt::WA_DeleteOnClose);
    const QSize room = area_->viewport()->size();
    at->resize((window.size() + QSize(12, 36)).boundedTo(room));
    at->show();
    keep_inside(*at, room);
    area_->setActiveSubWindow(at);
    window.setFocus();
    refresh_page();
}

// The first form fills the area, and so does the next as long as the user has not arranged them.
void MainWindow::place_form(FormWindow& window) {
    const QMdiSubWindow* const before = area_->currentSubWindow();
    const bool fills = before == nullptr || before->isMaximized();
    QMdiSubWindow* const at = area_->addSubWindow(&window);
    at->setSystemMenu(nullptr);  // its keys are the forms' own
    ProgramMenus::take_over(window);
    if (fills) {
        at->showMaximized();
    } else {
        at->resize(area_->viewport()->size() * kShareOfArea);
        at->show();
        keep_inside(*at, area_->viewport()->size());
    }
    refresh_page();
}

QMdiSubWindow* MainWindow::sub_window_of(const QWidget& window) const {
    for (QMdiSubWindow* const at : area_->subWindowList())
        if (at->widget() == &window) return at;
    return nullptr;
}

void MainWindow::refresh_state() {
    refresh_page();
    menus_.show_open(ap_ != nullptr);
    list_recent_companies();
}

// The windows of the company; without one, what can be opened.
void MainWindow::refresh_page() {
    QWidget* const wanted = ap_ == nullptr                     ? welcome_page_
                            : area_->subWindowList().isEmpty() ? forms_page_
                                                               : static_cast<QWidget*>(area_);
    if (pages_->currentWidget() != wanted) pages_->setCurrentWidget(wanted);
}

void MainWindow::refresh_menus() {
    const QMdiSubWindow* const at = area_->currentSubWindow();
    menus_.show_menus_of(at == nullptr ? nullptr : dynamic_cast<FormWindow*>(at->widget()));
}

void MainWindow::tell(const QString& text) { statusBar()->showMessage(text, kToldFor); }

// --- the first page ---
namespace {

constexpr int kPageButtonWidth = 340;

// A page with a heading and buttons below each other, in the middle.
class ButtonPage : public QWidget {
  public:
    explicit ButtonPage(const QString& heading) : middle_(new QVBoxLayout(this)) {
        middle_->addStretch(2);
        middle_->addWidget(new QLabel(heading), 0, Qt::AlignHCenter);
        middle_->addSpacing(16);
    }
    template <class Act>
    void add_button(const QString& caption, const Act& act) {
        auto* const button = new QPushButton(caption);
        button->setFixedWidth(kPageButtonWidth);
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this, act);
        middle_->addWidget(button, 0, Qt::AlignHCenter);
    }
    void add_end() { middle_->addStretch(3); }
    [[nodiscard]] QVBoxLayout& middle() { return *middle_; }

  private:
    QVBoxLayout* middle_;
};

}  // namespace

void MainWindow::make_welcome_page() {
    auto* const page = new ButtonPage("<h1>Brimley AP</h1>Open a company to begin.");
    page->add_button("Open the &sample company", [this] { open_sample(); });
    page->add_button("&Open a company...", [this] { open_with_form(ask_for_company_file(this)); });
    page->add_button("Open on a s&erver...", [this] { open_with_form(ask_for_server(this)); });
    page->add_button("&New company...", [this] { open_with_form(make_new_company(this, options_.user)); });
    page->middle().addSpacing(16);
    recent_buttons_ = new QVBoxLayout;
    page->middle().addLayout(recent_buttons_);
    page->add_end();
    welcome_page_ = page;
    pages_->addWidget(page);
}

void MainWindow::make_forms_page() {
    auto* const page = new ButtonPage("<h2>Forms</h2>");
    for (const ModuleForm& form : module_forms())
        if (form.menu == ModuleForm::Menu::forms)
            page->add_button(shown(form.caption), [this, &form] { show_form(form.class_name); });
    page->add_end();
    forms_page_ = page;
    pages_->addWidget(page);
}

void MainWindow::list_recent_companies() {
    menus_.show_recent(settings_.recent_companies());
    while (QLayoutItem* const item = recent_buttons_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString& company : settings_.recent_companies()) {
        const auto open = [this, company] { open_with_form(company); };
        auto* const button = new QPushButton(company);
        button->setFlat(true);
        // Opening lists the companies again, so it waits until the click is over.
        connect(button, &QPushButton::clicked, this, open, Qt::QueuedConnection);
        recent_buttons_->addWidget(button, 0, Qt::AlignHCenter);
    }
}

}  // namespace brimley::desktop
