#include "desktop/program_menus.h"

#include <QActionGroup>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStyle>
#include <map>

#include "desktop/company_dialogs.h"
#include "desktop/form_window.h"
#include "desktop/main_window.h"
#include "desktop/model_view.h"
#include "desktop/module_forms.h"
#include "desktop/text_menu.h"
#include "desktop/theme.h"

namespace brimley::desktop {

namespace {

constexpr double kShareInCascade = 0.8;  // of the area, for each window

QString name_of(const QAction& menu) { return menu.text().remove('&'); }

// The windows behind each other, so that each one's title can be seen; all of them inside the area, which
// those of the toolkit are not.
void cascade(const QMdiArea& area) {
    const QSize room = area.viewport()->size();
    const QSize size = room * kShareInCascade;
    QPoint at;
    for (QMdiSubWindow* const window : area.subWindowList(QMdiArea::StackingOrder)) {
        if (!window->isVisible() || window->isMinimized()) continue;
        window->showNormal();
        window->setGeometry({at, size});
        const int step = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
        at += QPoint(step, step);
        if (!QRect({}, room).contains(QRect(at, size))) at = {};
    }
}

}  // namespace

ProgramMenus::ProgramMenus(MainWindow& window, Settings& settings, const std::string& user)
    : window_(window), settings_(settings), user_(user) {
    make_company_menu();
    make_forms_menu();
    make_edit_menu();
    make_window_menu();
    make_look_menu();
    make_help_menu();
}

void ProgramMenus::make_company_menu() {
    company_ = window_.menuBar()->addMenu("&Company");
    QMenu* const menu = company_;
    MainWindow* const window = &window_;
    menu->addAction("&Open...", QKeySequence("Ctrl+O"), window,
                    [window] { window->open_with_form(ask_for_company_file(window)); });
    menu->addAction("Open on a s&erver...", window,
                    [window] { window->open_with_form(ask_for_server(window)); });
    menu->addAction("Open the &sample company", window, [window] { window->open_sample(); });
    menu->addAction("&New...", window,
                    [window, user = user_] { window->open_with_form(make_new_company(window, user)); });
    recent_ = menu->addMenu("&Recent");
    menu->addSeparator();
    back_up_ = menu->addAction("&Back up...", window,
                               [window] { back_up_company(window, window->ap()->OPEN_DATABASE); });
    check_ = menu->addAction("Chec&k the books", window, [window] {
        check_company(window, {window->ap()->dbe, window->ap()->abcdb});
    });
    menu->addSeparator();
    close_ = menu->addAction("&Close", window, [window] {
        if (window->let_entries_go()) window->close_company();
    });
    menu->addAction("&Quit", QKeySequence("Ctrl+Q"), window, [window] { window->close(); });
}

void ProgramMenus::make_forms_menu() {
    forms_ = window_.menuBar()->addMenu("Form&s");
    ledger_ = window_.menuBar()->addMenu("Le&dger");
    masters_ = window_.menuBar()->addMenu("M&asters");
    const std::map<ModuleForm::Menu, QMenu*> menus{{ModuleForm::Menu::forms, forms_},
                                                   {ModuleForm::Menu::ledger, ledger_},
                                                   {ModuleForm::Menu::masters, masters_}};
    for (const ModuleForm& form : module_forms())
        menus.at(form.menu)->addAction(shown(form.caption), &window_,
                                       [window = &window_, &form] { window->show_form(form.class_name); });
}

void ProgramMenus::make_edit_menu() {
    edit_ = window_.menuBar()->addMenu("&Edit");
    add_text_acts(*edit_);
}

void ProgramMenus::make_window_menu() {
    windows_ = window_.menuBar()->addMenu("&Window");
    QMdiArea* const area = &window_.area();
    windows_->addAction("&Side by side", area, &QMdiArea::tileSubWindows);
    windows_->addAction("&Cascade", area, [area] { cascade(*area); });
    windows_->addAction("&Next", QKeySequence("Ctrl+F6"), area, &QMdiArea::activateNextSubWindow);
    windows_->addSeparator();
    QObject::connect(windows_, &QMenu::aboutToShow, area, [menu = windows_, area] {
        for (QAction* const action : menu->actions().mid(4))
            delete action;
        for (QMdiSubWindow* const at : area->subWindowList())
            menu->addAction(at->windowTitle(), area, [area, at] { area->setActiveSubWindow(at); });
    });
}

void ProgramMenus::make_look_menu() {
    look_ = window_.menuBar()->addMenu("Loo&k");
    auto* const choices = new QActionGroup(look_);
    const std::pair<const char*, Theme> themes[] = {
        {"&Light", Theme::light}, {"&Dark", Theme::dark}, {"As the s&ystem", Theme::as_system}};
    for (const auto& [caption, theme] : themes) {
        QAction* const action = look_->addAction(caption);
        action->setCheckable(true);
        action->setChecked(settings_.theme() == theme);
        choices->addAction(action);
        QObject::connect(action, &QAction::triggered, &window_, [this, chosen = theme] {
            settings_.set_theme(chosen);
            use_theme(chosen);
        });
    }
}

void ProgramMenus::make_help_menu() {
    help_ = window_.menuBar()->addMenu("&Help");
    help_->addAction("&About Brimley AP", &window_, [window = &window_] {
        QMessageBox::about(window, "About Brimley AP", "Brimley AP " + QApplication::applicationVersion());
    });
}

void ProgramMenus::show_open(bool is_open) {
    forms_->setEnabled(is_open);
    ledger_->setEnabled(is_open);
    masters_->setEnabled(is_open);
    back_up_->setEnabled(is_open);
    check_->setEnabled(is_open);
    close_->setEnabled(is_open);
}

void ProgramMenus::show_recent(const QStringList& companies) {
    recent_->clear();
    for (const QString& company : companies)
        QObject::connect(
            recent_->addAction(company), &QAction::triggered, &window_,
            [window = &window_, company] { window->open_with_form(company); }, Qt::QueuedConnection);
    recent_->setEnabled(!companies.isEmpty());
}

void ProgramMenus::take_over(FormWindow& form) {
    form.menuBar()->hide();
    for (const QAction* const menu : form.menuBar()->actions())
        if (name_of(*menu) == "Edit") add_text_acts(*menu->menu());
}

void ProgramMenus::show_menus_of(const FormWindow* form) {
    const QList<QAction*> of_form = form == nullptr ? QList<QAction*>() : form->menuBar()->actions();
    QAction* edit = edit_->menuAction();
    QAction* help = help_->menuAction();
    QList<QAction*> file;
    QList<QAction*> others;
    for (QAction* const menu : of_form) {
        const QString name = name_of(*menu);
        if (name == "File")
            file.append(menu);
        else if (name == "Edit")
            edit = menu;
        else if (name == "Help")
            help = menu;
        else
            others.append(menu);
    }
    QList<QAction*> wanted{company_->menuAction(), forms_->menuAction(), ledger_->menuAction(),
                           masters_->menuAction()};
    wanted += file;
    wanted += edit;
    wanted += others;
    wanted += {windows_->menuAction(), look_->menuAction(), help};
    QMenuBar* const bar = window_.menuBar();
    if (bar->actions() == wanted) return;
    bar->clear();
    bar->addActions(wanted);
}

}  // namespace brimley::desktop
