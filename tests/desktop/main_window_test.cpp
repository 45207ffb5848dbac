// The windows of the forms in the area.
#include <QLabel>

#include "desktop/host_window.h"

namespace brimley::testing {

TEST_F(Host, FormOfAnotherNameIsNotShown) {
    EXPECT_TRUE(window->show_form("APform_revalue"));
    EXPECT_FALSE(window->show_form("APform_nothing"));
    EXPECT_EQ(window->desk().windows().size(), 1U);
}

TEST_F(Host, WindowsThatOpenBesideAFormLeaveItAsItIsAndStandInside) {
    save_invoice();
    QMdiSubWindow* const form = window->area().subWindowList().front();
    ASSERT_TRUE(form->isMaximized());
    ask("Vendor Master");
    const QMdiSubWindow* const list = window->area().subWindowList().back();
    EXPECT_FALSE(list->isMaximized());
    EXPECT_TRUE(window->area().viewport()->rect().contains(list->geometry()));
    EXPECT_EQ(window->area().activeSubWindow(), list);
}

TEST_F(Host, TwoFormsStandSideBySideOnASmallScreen) {
    window->resize(1366, 740);
    window->show_form("APform_invoice");
    window->show_form("APform_payment");
    window->area().tileSubWindows();
    QApplication::processEvents();
    for (const QMdiSubWindow* const at : window->area().subWindowList()) {
        EXPECT_LE(at->width(), 1366 / 2 + 2) << at->windowTitle().toStdString();
        EXPECT_TRUE(window->area().viewport()->rect().contains(at->geometry()));
    }
}

TEST_F(Host, NextFormFillsTheAreaOrStandsInsideAsTheOneBefore) {
    window->show_form("APform_invoice");
    window->show_form("APform_payment");
    EXPECT_TRUE(window->area().currentSubWindow()->isMaximized());
    window->area().tileSubWindows();
    window->show_form("APform_invoice");
    EXPECT_FALSE(window->area().currentSubWindow()->isMaximized());
    EXPECT_TRUE(window->area().viewport()->rect().contains(window->area().currentSubWindow()->geometry()));
}

TEST_F(Host, FormsAreOfferedWhenNoneIsOpen) {
    ASSERT_NE(find_button("Invoices"), nullptr);
    click("Invoices");
    EXPECT_EQ(window->desk().windows().size(), 1U);
    EXPECT_EQ(find_button("Invoices"), nullptr);
    window->desk().windows().back()->press(100);
    EXPECT_NE(find_button("Invoices"), nullptr);
    window->close_company();
    EXPECT_EQ(find_button("Invoices"), nullptr);
    EXPECT_NE(find_button("New company..."), nullptr);
}

TEST_F(Host, TitleOfAFormTellsItsDocument) {
    save_invoice();
    EXPECT_EQ(window->desk().windows().back()->windowTitle(), "A/P Invoice - IP-26-00001");
}

TEST_F(Host, ExitClosesTheWindowOfTheForm) {
    window->show_form("APform_invoice");
    window->desk().windows().back()->press(100);
    EXPECT_TRUE(window->area().subWindowList().isEmpty());
}

}  // namespace brimley::testing
