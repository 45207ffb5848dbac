#include "desktop/command_actions.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>

#include "desktop/command_icons.h"
#include "desktop/model_view.h"
#include "frame/form.h"

namespace brimley::desktop {

using controls::Command;

namespace {

constexpr const char* kStandard = "Standard";
constexpr const char* kFont = "Font";
constexpr const char* kPopup = "Popup";

QString tool_text_of(const Command& command) {
    return command.tool_text.empty() ? shown(command.caption).remove('&') : shown(command.tool_text);
}

// The form's own key; where it has none, the one that people try.
QKeySequence key_of(const Command& command) {
    if (command.ctrl_key != 0) return {QString("Ctrl+") + QChar::fromLatin1(command.ctrl_key)};
    if (command.id == frame::command::kNew) return {"Ctrl+N"};
    if (command.id == frame::command::kFormHelp) return {"F1"};
    return {};
}

}  // namespace

CommandActions::CommandActions(QMainWindow& window, controls::CommandBars& bars, const QStringList& menus,
                               std::function<void(int id)> press, std::function<bool(int id)> can_do)
    : window_(window),
      bars_(bars),
      press_(std::move(press)),
      can_do_(std::move(can_do)),
      popup_(new QMenu(&window)) {
    for (const QString& menu : menus)
        add_menu(menu);
    for (const char* name : {kStandard, kFont}) {
        auto* const toolbar = new QToolBar(name, &window_);
        toolbar->setObjectName(name);
        toolbar->setIconSize(QSize(20, 20));
        window_.addToolBar(toolbar);
        toolbars_[name] = toolbar;
    }
    for (const Command& command : bars_.commands()) {
        QAction* const action = make_action(command);
        for (const std::string& bar : command.bars)
            add_to_bar(*action, shown(bar));
    }
    for (const auto& [name, menu] : menus_)
        menu->menuAction()->setVisible(!menu->isEmpty());
    if (toolbars_[kStandard]->actions().isEmpty()) toolbars_[kStandard]->hide();  // a dialog may have none
    for (const auto& [name, toolbar] : toolbars_)
        for (QAction* const action : toolbar->actions())
            action->setIcon(command_icon(window_.objectName(), action->data().toInt(), action->iconText()));
}

QAction* CommandActions::make_action(const Command& command) {
    auto* const action = new QAction(shown(command.caption), &window_);
    const QString tool_text = tool_text_of(command);
    QString tip = command.tool_tip.empty() ? tool_text : shown(command.tool_tip);
    action->setIconText(tool_text);
    if (const QKeySequence key = key_of(command); !key.isEmpty()) {
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    action->setToolTip(tip);
    action->setData(command.id);
    action->setIconVisibleInMenu(false);
    const int id = command.id;
    QObject::connect(action, &QAction::triggered, &window_, [this, id] { press_(id); });
    window_.addAction(action);
    actions_[id] = action;
    return action;
}

void CommandActions::add_to_bar(QAction& action, const QString& bar) {
    if (bar == kPopup) {
        popup_->addAction(&action);
    } else if (const auto toolbar = toolbars_.find(bar); toolbar != toolbars_.end()) {
        toolbar->second->addAction(&action);
    } else {
        if (!menus_.contains(bar)) add_menu(bar);
        menus_[bar]->addAction(&action);
    }
}

// Each menu opens with Alt and a letter of its own: the one that its look marks, or the first that is free.
void CommandActions::add_menu(const QString& title) {
    QString shown_title = title;
    if (!title.contains('&')) {
        const auto is_free = [this](QChar letter) { return !menu_letters_.contains(letter.toUpper()); };
        const auto free = std::find_if(title.begin(), title.end(), is_free);
        if (free != title.end()) shown_title.insert(free - title.begin(), '&');
    }
    const qsizetype mark = shown_title.indexOf('&');
    if (mark >= 0) menu_letters_.append(shown_title.at(mark + 1).toUpper());
    menus_[QString(title).remove('&')] = window_.menuBar()->addMenu(shown_title);
}

void CommandActions::refresh(bool font_bar_shown) {
    for (const Command& command : bars_.commands()) {
        QAction* const action = find(command.id);
        if (action == nullptr) continue;
        action->setEnabled(command.enabled && can_do_(command.id));
        action->setCheckable(command.pressed);
        action->setChecked(command.pressed);
    }
    const auto style = bars_.show_text ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly;
    for (const auto& [name, toolbar] : toolbars_)
        toolbar->setToolButtonStyle(style);
    toolbars_[kFont]->setVisible(font_bar_shown);
}

void CommandActions::lend_keys_to(QWidget& window) const {
    for (const auto& [id, action] : actions_)
        if (!action->shortcut().isEmpty()) window.addAction(action);
}

QAction* CommandActions::find(int id) const {
    const auto found = actions_.find(id);
    return found == actions_.end() ? nullptr : found->second;
}

QToolBar* CommandActions::toolbar(const QString& name) const {
    const auto found = toolbars_.find(name);
    return found == toolbars_.end() ? nullptr : found->second;
}

bool CommandActions::takes_key(const QKeySequence& key) const {
    for (const auto& [id, action] : actions_)
        if (action->shortcut() == key) return true;
    return false;
}

}  // namespace brimley::desktop
