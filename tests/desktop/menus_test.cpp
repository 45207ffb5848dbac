// The one menu bar: whose menus stand in it, what their keys do, and which commands are grey.
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <set>

#include "controls/fields.h"
#include "desktop/host_window.h"
#include "desktop/ledger_window.h"
#include "desktop/module_forms.h"
#include "desktop/paper_windows.h"
#include "desktop/review_windows.h"

namespace brimley::testing {

class Menus : public Host {
  protected:
    void SetUp() override {
        Host::SetUp();
        QApplication::setActiveWindow(window.get());
    }
    [[nodiscard]] std::string menus_shown() const {
        QStringList names;
        for (const QAction* const menu : window->menuBar()->actions())
            if (menu->isVisible()) names << menu->text().remove('&');
        return names.join(' ').toStdString();
    }
    [[nodiscard]] QMenu& menu(const QString& name) const {
        for (const QAction* const menu : window->menuBar()->actions())
            if (menu->isVisible() && menu->text().remove('&') == name) return *menu->menu();
        throw std::logic_error("no menu " + name.toStdString());
    }
    // As it is when the menu has opened.
    [[nodiscard]] QAction& entry(const QString& menu_name, const QString& caption) const {
        QMenu& opened = menu(menu_name);
        Q_EMIT opened.aboutToShow();
        for (QAction* const action : opened.actions())
            if (action->text().section('\t', 0, 0).remove('&') == caption) return *action;
        throw std::logic_error("no entry " + caption.toStdString());
    }
    [[nodiscard]] desktop::FormWindow& form() const { return *window->desk().windows().back(); }
    [[nodiscard]] QLineEdit& line(const char* name) const {
        auto* const found = form().findChild<QLineEdit*>(name);
        if (found == nullptr) throw std::logic_error(std::string("no field ") + name);
        return *found;
    }
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QApplication::processEvents();
    }
};

TEST_F(Menus, ThoseOfTheFormStandBetweenTheProgramsOwn) {
    EXPECT_EQ(menus_shown(), "Company Forms Ledger Masters Edit Window Look Help");
    window->show_form("APform_invoice");
    EXPECT_EQ(
        menus_shown(),
        "Company Forms Ledger Masters File Edit Record Link Tax View Payment Invoice Master Option Window "
        "Look Help");
    EXPECT_FALSE(form().menuBar()->isVisible());
    window->show_form("APreport_aging");
    EXPECT_EQ(menus_shown(), "Company Forms Ledger Masters File Edit Run Option Window Look Help");
    form().press(100);
    EXPECT_EQ(
        menus_shown(),
        "Company Forms Ledger Masters File Edit Record Link Tax View Payment Invoice Master Option Window "
        "Look Help");
    ask("Vendor Master");
    EXPECT_EQ(menus_shown(), "Company Forms Ledger Masters Edit Window Look Help");
    window->close_company();
    EXPECT_EQ(menus_shown(), "Company Forms Ledger Masters Edit Window Look Help");
}

TEST_F(Menus, EachOpensWithALetterOfItsOwn) {
    for (const desktop::ModuleForm& listed : desktop::module_forms()) {
        window->show_form(listed.class_name);
        QString letters;
        for (const QAction* const menu : window->menuBar()->actions()) {
            if (!menu->isVisible()) continue;
            const qsizetype mark = menu->text().indexOf('&');
            ASSERT_GE(mark, 0) << menu->text().toStdString();
            letters += menu->text().at(mark + 1).toUpper();
        }
        EXPECT_EQ(std::set<QChar>(letters.begin(), letters.end()).size(),
                  static_cast<std::size_t>(letters.size()))
            << listed.class_name << ": " << letters.toStdString();
    }
}

TEST_F(Menus, EntriesOfOneHaveLettersOfTheirOwn) {
    window->show_form("APform_invoice");
    for (const char* name : {"Company", "Edit"}) {
        QString letters;
        for (const QAction* const action : menu(name).actions()) {
            const qsizetype mark = action->text().indexOf('&');
            if (mark >= 0) letters += action->text().at(mark + 1).toUpper();
        }
        EXPECT_EQ(std::set<QChar>(letters.begin(), letters.end()).size(),
                  static_cast<std::size_t>(letters.size()))
            << name << ": " << letters.toStdString();
    }
}

TEST_F(Menus, FormsMenuOpensFromWithinAField) {
    window->show_form("APform_invoice");
    line("txtdocno").setFocus();
    key(Qt::Key_E, Qt::AltModifier);
    QWidget* const open = QApplication::activePopupWidget();
    ASSERT_NE(open, nullptr);
    QTest::keyClick(open, Qt::Key_N);
    form().settle();
    EXPECT_EQ(form().mode_shown(), "New");
}

TEST_F(Menus, CtrlNBeginsANewEntryAndF1OpensTheFormsHelp) {
    window->show_form("APform_invoice");
    line("txtdocno").setFocus();
    key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(form().mode_shown(), "New");
    key(Qt::Key_F1);
    ASSERT_NE(newest<desktop::PdfWindow>(), nullptr);
    EXPECT_EQ(newest<desktop::PdfWindow>()->windowTitle(), "A/P Invoice Help");
}

TEST_F(Menus, CtrlQEndsTheProgram) {
    window->show_form("APform_invoice");
    line("txtdocno").setFocus();
    ASSERT_TRUE(window->isVisible());
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Menus, EditWorksOnTheFieldThatIsTypedIn) {
    window->show_form("APform_invoice");
    form().press(105);
    QLineEdit& remark = line("txtremark");
    remark.setFocus();
    QTest::keyClicks(&remark, "twelve sacks");
    EXPECT_FALSE(entry("Edit", "Cut").isEnabled());
    EXPECT_FALSE(entry("Edit", "Copy").isEnabled());
    entry("Edit", "Select all").trigger();
    EXPECT_EQ(remark.selectedText(), "twelve sacks");
    entry("Edit", "Cut").trigger();
    EXPECT_EQ(remark.text(), "");
    EXPECT_EQ(QApplication::clipboard()->text(), "twelve sacks");
    entry("Edit", "Paste").trigger();
    entry("Edit", "Paste").trigger();
    EXPECT_EQ(remark.text(), "twelve sackstwelve sacks");
    entry("Edit", "Undo").trigger();
    EXPECT_EQ(remark.text(), "twelve sacks");
    key(Qt::Key_Return);
    EXPECT_EQ(window->ap()->frm_invoice->txtremark.text(), "twelve sacks");
}

TEST_F(Menus, EditLeavesALockedFieldAsItIs) {
    save_invoice();
    QApplication::clipboard()->setText("other");
    QLineEdit& number = line("txtdocno");
    number.setFocus();
    number.selectAll();
    form().press(106);
    number.setFocus();
    number.selectAll();
    EXPECT_TRUE(entry("Edit", "Copy").isEnabled());
    EXPECT_FALSE(entry("Edit", "Cut").isEnabled());
    EXPECT_FALSE(entry("Edit", "Paste").isEnabled());
}

TEST_F(Menus, EditIsThereOnAListAndGreyWithoutText) {
    ask("Vendor Master");
    const auto& search = *newest<desktop::ListWindow>()->findChild<QLineEdit*>();
    ASSERT_TRUE(search.hasFocus());
    EXPECT_FALSE(entry("Edit", "Copy").isEnabled());
    window->close_company();
    for (const char* caption : {"Undo", "Cut", "Copy", "Paste", "Select all"})
        EXPECT_FALSE(entry("Edit", caption).isEnabled()) << caption;
}

TEST_F(Menus, TextStandsUnderTheIconsUntilTheUserChoosesOtherwise) {
    window->show_form("APform_invoice");
    const auto style = [this] { return form().actions().toolbar("Standard")->toolButtonStyle(); };
    form().settle();
    EXPECT_EQ(style(), Qt::ToolButtonTextUnderIcon);
    EXPECT_TRUE(form().actions().find(209)->isChecked());
    form().press(209);
    form().press(100);
    window->show_form("APform_invoice");
    form().settle();
    EXPECT_EQ(style(), Qt::ToolButtonIconOnly);
    EXPECT_FALSE(form().actions().find(209)->isChecked());
}

// --- grey commands ---
class GreyCommands : public Menus {
  protected:
    std::vector<int> grey() {
        form().settle();
        std::vector<int> ids;
        for (const controls::Command& command : form().form().CommandBars1().commands())
            if (!form().actions().find(command.id)->isEnabled()) ids.push_back(command.id);
        return ids;
    }
    // Everything that a user could notice.
    std::string seen() {
        std::string all;
        for (controls::Control* const control : form().form().controls().all()) {
            all += control->name() + '=' + control->shown() + (control->visible() ? "+" : "-");
            if (auto* const grid = dynamic_cast<controls::Grid*>(control))
                for (int row = 0; row < grid->array.used_rows(); ++row)
                    for (int column = 0; column < static_cast<int>(grid->columns.size()); ++column)
                        all.append(grid->array.get(row, column)) += '|';
        }
        for (const controls::Command& command : form().form().CommandBars1().commands())
            all += command.pressed ? '1' : '0';
        return all + std::to_string(boxes.size()) + '/' +
               std::to_string(window->area().subWindowList().size()) +
               window->desk().windows().back()->windowTitle().toStdString();
    }
    // Past the window, which would not let them through.
    void expect_that_grey_ones_do_nothing(const std::string& where) {
        for (const int id : grey()) {
            const std::string before = seen();
            EXPECT_EQ(form().form().press(id), controls::Refusal::none);
            EXPECT_EQ(seen(), before) << where << ": " << id;
        }
    }
};

TEST_F(GreyCommands, DoNothingOnAnyFormInAnyState) {
    save_invoice();
    form().press(100);
    for (const desktop::ModuleForm& listed : desktop::module_forms()) {
        const std::string name = listed.class_name;
        ASSERT_TRUE(window->show_form(listed.class_name));
        expect_that_grey_ones_do_nothing(name);
        if (form().form().CommandBars1().find(105) == nullptr) continue;
        wanted_button = "No";
        if (form().form().mode() == frame::Mode::read) form().press(105);
        expect_that_grey_ones_do_nothing(name + " in New");
        form().press(105);
        expect_that_grey_ones_do_nothing(name + " after New");
        form().press(106);
        expect_that_grey_ones_do_nothing(name + " in Edit");
        form().press(106);
        wanted_button.clear();
    }
}

TEST_F(GreyCommands, FollowTheModeAndTheDocument) {
    window->show_form("APform_invoice");
    EXPECT_THAT(grey(), ::testing::IsSupersetOf({101, 103, 110, 111, 113, 1006, 1008}));
    form().press(105);
    EXPECT_THAT(grey(), ::testing::IsSupersetOf({103, 106, 113, 136, 1008}));
    EXPECT_THAT(grey(), ::testing::Not(::testing::Contains(::testing::AnyOf(101, 105, 110, 111))));
    wanted_button = "No";
    form().press(105);
    wanted_button.clear();
    enter(*window->ap()->frm_invoice, {.lines = {{"5000", "", "gross amount", "100.00"}}});
    form().press(101);
    EXPECT_THAT(grey(), ::testing::UnorderedElementsAre(101, 110, 111, 114, 1010));
    form().press(1009);
    EXPECT_THAT(grey(), ::testing::Not(::testing::Contains(1010)));
}

TEST_F(GreyCommands, AreNoneBecauseOfWhatTheHostDoes) {
    save_invoice();
    form().press(105);
    ASSERT_THAT(grey(), ::testing::Contains(106));
    form().press(100);
    window->show_form("APform_invoice");
    window->ap()->APform_invoice_goto_docno("IP-26-00001");
    QApplication::processEvents();
    EXPECT_TRUE(form().actions().find(113)->isEnabled());
    EXPECT_TRUE(form().actions().find(106)->isEnabled());
}

// --- back to who asked ---
TEST_F(Menus, ClosedReviewGivesBackTheWindowThatAskedForIt) {
    save_invoice();
    form().settle();
    QMdiSubWindow* const invoice = window->area().currentSubWindow();
    window->show_form("APform_payment");
    form().settle();
    window->area().setActiveSubWindow(invoice);
    window->desk().windows().front()->press(113);
    ASSERT_NE(window->area().currentSubWindow(), invoice);
    ask("Vendor Master");
    QMdiSubWindow* const list = window->area().currentSubWindow();
    list->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_NE(dynamic_cast<desktop::LedgerWindow*>(window->area().currentSubWindow()->widget()), nullptr);
    window->area().currentSubWindow()->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->area().currentSubWindow(), invoice);
}

TEST_F(Menus, ReviewWhoseAskerHasGoneIsClosedAsAnyOther) {
    save_invoice();
    form().settle();
    form().press(113);
    QMdiSubWindow* const review = window->area().currentSubWindow();
    form().press(100);
    review->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window->area().subWindowList().isEmpty());
}

}  // namespace brimley::testing
