#include "desktop/command_actions.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "desktop/command_icons.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

using controls::Command;

namespace {

constexpr const char* kStandard = "Standard";
constexpr const char* kFont = "Font";
constexpr const char* kPopup = "Popup";

QString tool_text_of(const Command& command) {
    return command.tool_text.empty() ? shown(command.caption).remove('&') : shown(command.tool_text);
}

}  // namespace

CommandActions::CommandActions(QMainWindow& window, controls::CommandBars& bars, const QStringList& menus,
                               std::function<void(int id)> press)
    : window_(window), bars_(bars), press_(std::move(press)), popup_(new QMenu(&window)) {
    for (const QString& menu : menus)
        menus_[menu] = window_.menuBar()->addMenu(menu);
    for (const char* name : {kStandard, kFont}) {
        auto* const toolbar = new QToolBar(name, &window_);
        toolbar->setObjectName(name);
        toolbar->setIconSize(QSize(20, 20));
        toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
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
    draw_icons();
}

void CommandActions::draw_icons() {
    for (const auto& [name, toolbar] : toolbars_)
        for (QAction* const action : toolbar->actions())
            action->setIcon(command_icon(action->data().toInt(), action->iconText(), window_.palette()));
}

QAction* CommandActions::make_action(const Command& command) {
    auto* const action = new QAction(shown(command.caption), &window_);
    const QString tool_text = tool_text_of(command);
    QString tip = command.tool_tip.empty() ? tool_text : shown(command.tool_tip);
    action->setIconText(tool_text);
    if (command.ctrl_key != 0) {
        action->setShortcut(QKeySequence(QString("Ctrl+") + QChar::fromLatin1(command.ctrl_key)));
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
        QMenu*& menu = menus_[bar];
        if (menu == nullptr) menu = window_.menuBar()->addMenu(bar);
        menu->addAction(&action);
    }
}

void CommandActions::refresh(bool font_pane_open) {
    for (const Command& command : bars_.commands()) {
        QAction* const action = find(command.id);
        if (action == nullptr) continue;
        action->setEnabled(command.enabled);
        action->setCheckable(command.pressed);
        action->setChecked(command.pressed);
    }
    const auto style = bars_.show_text ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly;
    for (const auto& [name, toolbar] : toolbars_)
        toolbar->setToolButtonStyle(style);
    toolbars_[kFont]->setVisible(bars_.font_bar_visible || font_pane_open);
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
