// A form's commands in its window: menus, toolbars, the grid's menu and keys, all on one action per command.
//
// An action shows whether its command is pressed and enabled; what it does is to press it.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <functional>
#include <map>

#include "controls/command_bars.h"

class QMainWindow;
class QMenu;
class QToolBar;

namespace brimley::desktop {

class CommandActions {
  public:
    // Builds the bars into the window. `menus` is the order of the menus. A command that can do nothing is
    // grey.
    CommandActions(QMainWindow& window, controls::CommandBars& bars, const QStringList& menus,
                   std::function<void(int id)> press, std::function<bool(int id)> can_do);
    CommandActions(const CommandActions&) = delete;
    CommandActions& operator=(const CommandActions&) = delete;

    // Shows the commands as they are now, and the font bar or not.
    void refresh(bool font_bar_shown);
    // The keys of the commands work in this window, too.
    void lend_keys_to(QWidget& window) const;

    // Null when the form has no such command.
    [[nodiscard]] QAction* find(int id) const;
    [[nodiscard]] QMenu* popup() const { return popup_; }
    [[nodiscard]] QToolBar* toolbar(const QString& name) const;
    // Whether a command has this key, so that no field takes it for itself.
    [[nodiscard]] bool takes_key(const QKeySequence& key) const;

  private:
    QAction* make_action(const controls::Command& command);
    void add_to_bar(QAction& action, const QString& bar);
    void add_menu(const QString& title);

    QMainWindow& window_;
    controls::CommandBars& bars_;
    std::function<void(int id)> press_;
    std::function<bool(int id)> can_do_;
    std::map<int, QAction*> actions_;
    std::map<QString, QMenu*> menus_;
    QString menu_letters_;
    std::map<QString, QToolBar*> toolbars_;
    QMenu* popup_;
};

}  // namespace brimley::desktop
