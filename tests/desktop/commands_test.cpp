// Every command of the invoice form stands in its menus and bars, with its caption, tool tip and key.
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "desktop/live_desk.h"

namespace brimley::testing {

namespace {

struct Expected {
    int id;
    const char* caption;
    std::vector<QString> places;
    const char* key = "";
    const char* tip = nullptr;
};

const std::vector<Expected>& expected_commands() {
    static const std::vector<Expected> kCommands{
        {100, "&Exit", {"File", "Standard"}, "Ctrl+X"},
        {101, "&Save", {"File", "Standard", "Popup"}, "Ctrl+S", "Save as"},
        {103, "&Preview", {"File", "Standard", "Popup"}, "Ctrl+P"},
        {105, "&New", {"Edit", "Standard", "Popup"}, "Ctrl+N"},
        {106, "&Edit mode", {"Edit", "Standard", "Popup"}},
        {107, "&Previous record", {"Record", "Standard"}},
        {108, "&Next record", {"Record", "Standard"}},
        {109, "&Last record", {"Record", "Standard"}},
        {110, "&Insert Line", {"Edit", "Popup"}},
        {111, "&Delete Line", {"Edit", "Popup"}},
        {113, "&G/L Record", {"Link", "Standard"}, "", "G/L Record"},
        {114, "Origin Document", {"Link", "Standard"}, "", "Origin Document"},
        {116, "&Font", {"Popup"}},
        {131, "Tax &Details", {"Tax"}},
        {132, "Tax &Summary", {"Tax"}},
        {136, "&Refresh record", {"Record", "Standard"}, "", "Refresh Order"},
        {201, "Account Master", {"Popup", "Master"}},
        {202, "Item Master", {"Popup", "Master"}},
        {204, "Vendor Master", {"Popup", "Master"}},
        {206, "A/P Invoice Entry Help", {"Help", "Standard"}, "F1"},
        {207, "Account Payable System Help", {"Help"}},
        {208, "About Brimley Works", {"Help"}},
        {209, "&Show Text below Icon", {"Option"}},
        {401, "Save Font", {"Font"}},
        {402, "Restore Font", {"Font"}},
        {403, "Bold", {"Font"}},
        {404, "Italic", {"Font"}},
        {405, "Underline", {"Font"}},
        {406, "Align Left", {"Font"}},
        {407, "Align Center", {"Font"}},
        {408, "Align Right", {"Font"}},
        {1002, "View &Invoice", {"View"}},
        {1003, "View &Credit Note", {"View"}},
        {1004, "View &Debit Note", {"View"}},
        {1005, "View &Recurring", {"View"}},
        {1006, "&Pay this invoice", {"Payment"}},
        {1007, "Payment &History (this invoice)", {"Payment"}},
        {1008, "&Void Invoice", {"Invoice"}},
        {1009, "&Hold Invoice", {"Invoice"}},
        {1010, "&Release Hold Invoice", {"Invoice"}},
        {1011, "Recurring &Configuration", {"Invoice"}},
        {1012, "&View All", {"View"}},
        {1013, "&Open Invoice Only", {"View"}},
        {1014, "&Vendor Address", {"Edit"}},
    };
    return kCommands;
}

}  // namespace

class Commands : public LiveDesk {
  protected:
    // What each menu and bar of the window holds.
    std::map<QString, QList<QAction*>> places() {
        std::map<QString, QList<QAction*>> found;
        for (QAction* const menu : window().menuBar()->actions())
            found[menu->text().remove('&')] = menu->menu()->actions();
        for (const auto* const bar : window().findChildren<QToolBar*>())
            found[bar->windowTitle()] = bar->actions();
        found["Popup"] = window().actions().popup()->actions();
        return found;
    }
};

TEST_F(Commands, EachHasItsCaptionPlacesKeyAndTip) {
    show_invoice();
    const auto found = places();
    for (const Expected& command : expected_commands()) {
        QAction* const action = window().actions().find(command.id);
        ASSERT_NE(action, nullptr) << command.id;
        EXPECT_EQ(action->text(), command.caption);
        EXPECT_EQ(action->shortcut().toString(), command.key) << command.id;
        if (command.tip != nullptr) {
            EXPECT_EQ(action->toolTip(), command.tip);
        }
        std::vector<QString> stands_in;
        for (const auto& [place, actions] : found)
            if (actions.contains(action)) stands_in.push_back(place);
        std::vector<QString> wanted = command.places;
        std::sort(wanted.begin(), wanted.end());
        EXPECT_EQ(stands_in, wanted) << command.id;
    }
    EXPECT_EQ(window().form().CommandBars1().commands().size(), expected_commands().size());
}

TEST_F(Commands, MenusStandInTheirOrder) {
    show_invoice();
    QStringList names;
    for (const QAction* const menu : window().menuBar()->actions())
        names.append(menu->text().remove('&'));
    EXPECT_EQ(names.join(' '), "File Edit Record Link Tax View Payment Invoice Master Option Help");
}

TEST_F(Commands, KeysWorkFromWithinAFieldThatWouldTakeThemItself) {
    show_invoice();
    go_to("txtdocno");
    line("txtdocno").selectAll();
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(desk.windows().empty());
    EXPECT_EQ(requests, std::vector<std::string>{"Next App |  | "});
}

TEST_F(Commands, KeysWorkFromWithinACellAndANote) {
    show_invoice();
    trigger(105);
    go_to_cell(0, "purchase account");
    keys("5000");
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(desk.windows().empty());
    show_invoice();
    trigger(105);
    trigger(1014);
    go_to("txtvendor_address");
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(desk.windows().empty());
}

TEST_F(Commands, KeysWorkInAPaneThatFloats) {
    show_invoice();
    trigger(131);
    auto* const pane = window().findChild<QDockWidget*>("frame_tax");
    pane->setFloating(true);
    QApplication::setActiveWindow(pane);
    field("grid_tax").setFocus();
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(desk.windows().empty());
}

TEST_F(Commands, MenuOpensByItsLetterAndPicksByTheCommandsOwn) {
    show_invoice();
    go_to("txtdocno");
    pick_from_menu(Qt::Key_E, Qt::Key_N);
    EXPECT_EQ(window().mode_shown(), "New");
}

TEST_F(Commands, ViewsShowWhichOfThemIsOn) {
    show_invoice();
    window().settle();
    const auto on = [this](int command) { return window().actions().find(command)->isChecked(); };
    EXPECT_TRUE(on(1012));
    trigger(1003);
    EXPECT_TRUE(on(1003));
    EXPECT_FALSE(on(1002));
    trigger(1004);
    EXPECT_TRUE(on(1004));
    EXPECT_FALSE(on(1003));
    trigger(1013);
    EXPECT_TRUE(on(1013));
    EXPECT_FALSE(on(1012));
}

TEST_F(Commands, FontCommandsShowTheColumnTheUserIsIn) {
    show_invoice();
    trigger(116);
    go_to_cell(0, "description");
    trigger(403);
    EXPECT_TRUE(window().actions().find(403)->isChecked());
    trigger(408);
    EXPECT_TRUE(window().actions().find(408)->isChecked());
    EXPECT_FALSE(window().actions().find(406)->isChecked());
}

TEST_F(Commands, FontBarThatTheUserShowsIsThereTheNextTime) {
    show_invoice();
    EXPECT_FALSE(window().actions().toolbar("Font")->isVisible());
    const std::unique_ptr<QMenu> menu(window().createPopupMenu());
    ASSERT_EQ(menu->actions().size(), 1);
    menu->actions().front()->trigger();
    window().settle();
    EXPECT_TRUE(window().actions().toolbar("Font")->isVisible());
    trigger(100);
    show_invoice();
    EXPECT_TRUE(window().actions().toolbar("Font")->isVisible());
}

TEST_F(Commands, PaymentFormHasItsOwn) {
    ap.showform_APform_payment();
    const auto found = places();
    const auto stands_in = [&](int command) {
        QStringList names;
        for (const auto& [place, actions] : found)
            if (actions.contains(window().actions().find(command))) names.append(place);
        return names.join(' ').toStdString();
    };
    const auto text_of = [this](int command) {
        return window().actions().find(command)->text().toStdString();
    };
    EXPECT_EQ(text_of(133), "&Void Payment");
    EXPECT_EQ(text_of(1001), "&A/P Bill Record");
    EXPECT_EQ(window().actions().find(1001)->iconText(), "Bill");
    EXPECT_EQ(text_of(1002), "&Payment History");
    EXPECT_EQ(stands_in(110), "Popup");
    EXPECT_EQ(stands_in(111), "Popup");
    for (const int absent : {114, 116, 131, 132, 1003, 1008, 1014})
        EXPECT_EQ(window().actions().find(absent), nullptr) << absent;
}

TEST_F(Commands, ToolTextsAreShorterThanCaptionsWhereTheySayTheSame) {
    show_invoice();
    const auto tool = [this](int command) {
        return window().actions().find(command)->iconText().toStdString();
    };
    EXPECT_EQ(tool(101), "Save");
    EXPECT_EQ(tool(113), "G/L");
    EXPECT_EQ(tool(114), "Origin");
    EXPECT_EQ(tool(136), "Refresh");
}

TEST_F(Commands, PressedStateIsSeenOnTheAction) {
    show_invoice();
    trigger(105);
    EXPECT_TRUE(window().actions().find(105)->isChecked());
    EXPECT_FALSE(window().actions().find(106)->isChecked());
    trigger(105);
    EXPECT_FALSE(window().actions().find(105)->isChecked());
}

TEST_F(Commands, ShowTextBelowIconRedrawsTheBars) {
    show_invoice();
    const QToolBar* const bar = window().actions().toolbar("Standard");
    const auto before = bar->toolButtonStyle();
    trigger(209);
    EXPECT_NE(bar->toolButtonStyle(), before);
    trigger(209);
    EXPECT_EQ(bar->toolButtonStyle(), before);
}

TEST_F(Commands, FontOpensTheFontBarAndItsPane) {
    show_invoice();
    EXPECT_FALSE(window().actions().toolbar("Font")->isVisible());
    EXPECT_FALSE(field("cmbitfont").isVisible());
    trigger(116);
    EXPECT_TRUE(window().actions().toolbar("Font")->isVisible());
    EXPECT_TRUE(field("cmbitfont").isVisible());
}

}  // namespace brimley::testing
