// The one menu bar of the program's window: its own menus, and between them those of the form that is worked
// in.
#pragma once

#include <string>

#include "desktop/settings.h"

class QAction;
class QMenu;

namespace brimley::desktop {

class FormWindow;
class MainWindow;

class ProgramMenus {
  public:
    // Builds them into the window, as `user`, for whom new companies are made.
    ProgramMenus(MainWindow& window, Settings& settings, const std::string& user);
    ProgramMenus(const ProgramMenus&) = delete;
    ProgramMenus& operator=(const ProgramMenus&) = delete;

    // What is possible while a company is open, or while none is.
    void show_open(bool is_open);
    void show_recent(const QStringList& companies);
    // A form that has come to the window: its menus stand in the one bar from now on, and its Edit menu has
    // what is done with text below what the form has.
    static void take_over(FormWindow& form);
    // The form that is worked in; null when none is. Where it has no Edit or no Help, the program's are
    // there.
    void show_menus_of(const FormWindow* form);

  private:
    void make_company_menu();
    void make_forms_menu();
    void make_edit_menu();
    void make_window_menu();
    void make_look_menu();
    void make_help_menu();

    MainWindow& window_;
    Settings& settings_;
    std::string user_;
    QAction* back_up_ = nullptr;
    QAction* check_ = nullptr;
    QAction* close_ = nullptr;
    QMenu* company_ = nullptr;
    QMenu* recent_ = nullptr;
    QMenu* forms_ = nullptr;
    QMenu* ledger_ = nullptr;
    QMenu* masters_ = nullptr;
    QMenu* edit_ = nullptr;
    QMenu* windows_ = nullptr;
    QMenu* look_ = nullptr;
    QMenu* help_ = nullptr;
};

}  // namespace brimley::desktop
