// What was entered and not saved: asked about when it is closed away, and offered to whoever opens the form
// again.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QProcess>
#include <QTest>

#include "desktop/grid_view.h"
#include "desktop/host_window.h"
#include "invoices/apform_invoice.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class KeptEntries : public Host {
  protected:
    desktop::FormWindow& form_window() { return *window->desk().windows().back(); }
    invoices::APform_invoice& form() { return *window->ap()->frm_invoice; }
    void open_invoice() { ASSERT_TRUE(window->show_form("APform_invoice")); }
    void enter_invoice(const char* account = "5000") {
        open_invoice();
        enter(form(), {.lines = {{account, "", "gross amount", "75.00"}}});
        EXPECT_EQ(form().txtremark.type("as agreed"), controls::Refusal::none);
    }
    // The line above the fields; empty when there is none.
    std::string offered() {
        QApplication::processEvents();
        const auto* const band = form_window().findChild<QWidget*>("entry_band");
        return band == nullptr ? "" : band->findChild<QLabel*>()->text().toStdString();
    }
    void click_band(const char* name) {
        auto* const button = form_window().findChild<QPushButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        button->click();
        QApplication::processEvents();
    }
    void expect_entry() {
        EXPECT_EQ(form().mode(), frame::Mode::new_entry);
        EXPECT_EQ(form().cmbvendor.text(), "V1001");
        EXPECT_EQ(form().txtremark.text(), "as agreed");
        EXPECT_EQ(form().dbgrid1.cell(0, "gross amount"), "75.00");
        EXPECT_EQ(form_window().mode_shown(), "New");
    }
    std::size_t kept() {
        if (!std::filesystem::exists(entries_folder())) return 0;
        const std::filesystem::directory_iterator files(entries_folder());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

TEST_F(KeptEntries, ExitAsksNothingAndTheEntryIsOffered) {
    enter_invoice();
    form_window().press(100);
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_TRUE(window->desk().windows().empty());
    open_invoice();
    EXPECT_THAT(offered(), HasSubstr("A new entry for "));
    EXPECT_THAT(offered(), HasSubstr(" was not saved."));
    click_band("take_up");
    expect_entry();
    EXPECT_EQ(offered(), "");
    EXPECT_THAT(boxes, IsEmpty());
    form_window().press(101);
    EXPECT_THAT(boxes, ElementsAre("Add new Invoice complete"));
    EXPECT_EQ(kept(), 0U);
}

TEST_F(KeptEntries, ClosedWindowIsKeptForLater) {
    enter_invoice();
    wanted_button = "Keep for later";
    window->area().subWindowList().front()->close();
    QApplication::processEvents();
    EXPECT_THAT(boxes, ElementsAre("What you entered here is not saved yet."));
    EXPECT_TRUE(window->desk().windows().empty());
    open_invoice();
    click_band("take_up");
    expect_entry();
}

TEST_F(KeptEntries, ClosedWindowIsDropped) {
    enter_invoice();
    wanted_button = "Drop";
    window->area().subWindowList().front()->close();
    EXPECT_EQ(kept(), 0U);
    open_invoice();
    EXPECT_EQ(offered(), "");
}

TEST_F(KeptEntries, ClosedWindowIsSavedAndStaysWhereTheSaveIsRefused) {
    enter_invoice("9999");
    wanted_button = "Save";
    window->area().subWindowList().front()->close();
    QApplication::processEvents();
    ASSERT_EQ(window->desk().windows().size(), 1U);
    expect_entry();
    edit_line_cell(form(), 0, "purchase account", "5000");
    boxes.clear();
    window->area().subWindowList().front()->close();
    QApplication::processEvents();
    EXPECT_THAT(boxes, ElementsAre("What you entered here is not saved yet.", "Add new Invoice complete"));
    EXPECT_TRUE(window->desk().windows().empty());
    EXPECT_EQ(kept(), 0U);
}

TEST_F(KeptEntries, QuitAndCloseCanBeCalledOff) {
    enter_invoice();
    wanted_button = "Cancel";
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->let_entries_go());
    EXPECT_EQ(boxes.size(), 2U);
    expect_entry();
}

TEST_F(KeptEntries, NothingIsAskedWhereNothingWasEntered) {
    open_invoice();
    form_window().press(105);
    EXPECT_TRUE(window->close());
    EXPECT_THAT(boxes, IsEmpty());
    EXPECT_EQ(kept(), 0U);
}

TEST_F(KeptEntries, OfferIsDroppedAfterAQuestion) {
    enter_invoice();
    form_window().press(100);
    open_invoice();
    wanted_button = "No";
    click_band("drop");
    EXPECT_THAT(offered(), HasSubstr("was not saved."));
    wanted_button = "Yes";
    click_band("drop");
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(kept(), 0U);
    EXPECT_THAT(boxes, ElementsAre("Drop this entry? It cannot be brought back.",
                                   "Drop this entry? It cannot be brought back."));
}

TEST_F(KeptEntries, OneEntryIsOfferedAfterTheOther) {
    for (int entry = 0; entry < 2; ++entry) {
        enter_invoice();
        form_window().press(100);
    }
    open_invoice();
    EXPECT_THAT(offered(), HasSubstr("(1 more after it)"));
    click_band("take_up");
    expect_entry();
    EXPECT_THAT(offered(), HasSubstr("was not saved."));
    click_band("take_up");
    EXPECT_THAT(boxes, ElementsAre("Save or drop the entry that is open first."));
}

TEST_F(KeptEntries, LeafingAwayOffersTheEntryAtOnce) {
    save_invoice();
    enter(form(), {.lines = {{"5000", "", "gross amount", "75.00"}}});
    EXPECT_EQ(form().txtremark.type("as agreed"), controls::Refusal::none);
    form_window().press(107);
    EXPECT_THAT(offered(), HasSubstr("was not saved."));
    click_band("take_up");
    expect_entry();
}

TEST_F(KeptEntries, WhatShowsSomethingElseIsNamed) {
    save_invoice();
    EXPECT_EQ(form().press(106), controls::Refusal::none);
    EXPECT_EQ(form().txtinvno.type("B-17"), controls::Refusal::none);
    form_window().press(100);
    window->ap()->abcdb->Execute("UPDATE AP_header_table SET remark = 'by another desk'");
    open_invoice();
    EXPECT_THAT(offered(), HasSubstr("A change of IP-26-00001"));
    click_band("take_up");
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_THAT(boxes.front(), HasSubstr("but the company has changed since"));
    EXPECT_THAT(boxes.front(), HasSubstr("Remark"));
    EXPECT_EQ(form().txtinvno.text(), "B-17");
}

TEST_F(KeptEntries, TwoWindowsTakeAnEntryUpOnce) {
    enter_invoice();
    form_window().press(100);
    open_invoice();
    desktop::FormWindow& first = form_window();
    open_invoice();
    click_band("take_up");
    expect_entry();
    auto* const late = first.findChild<QPushButton*>("take_up");
    ASSERT_NE(late, nullptr);
    late->click();
    QApplication::processEvents();
    EXPECT_EQ(first.mode_shown(), "Read");
    EXPECT_EQ(first.findChild<QPushButton*>("take_up"), nullptr);
}

// What was offered is saved by now, and what was entered after it has its name.
class StaleOffers : public KeptEntries, public ::testing::WithParamInterface<const char*> {};

TEST_P(StaleOffers, TouchNoOtherEntry) {
    enter_invoice();
    form_window().press(100);
    open_invoice();
    desktop::FormWindow& first = form_window();
    open_invoice();
    click_band("take_up");
    form_window().press(101);
    ASSERT_EQ(kept(), 0U);
    enter(form(), {.lines = {{"5000", "", "gross amount", "20.00"}}});
    form_window().press(100);
    ASSERT_EQ(kept(), 1U);
    auto* const late = first.findChild<QPushButton*>(GetParam());
    ASSERT_NE(late, nullptr);
    late->click();
    QApplication::processEvents();
    EXPECT_EQ(kept(), 1U);
    EXPECT_EQ(first.mode_shown(), "Read");
}

INSTANTIATE_TEST_SUITE_P(Each, StaleOffers, ::testing::Values("take_up", "drop"),
                         [](const auto& each) { return std::string(each.param); });

// The form asked, was told to save, and refused to.
TEST_F(KeptEntries, AnswersAreKeptWheneverAnEntryIsTakenUp) {
    enter_invoice("9999");
    form_window().press(105);
    ASSERT_EQ(boxes.size(), 2U);
    EXPECT_EQ(boxes.front(), "Do you want to save new entry?");
    for (int time = 0; time < 2; ++time) {
        form_window().press(100);
        open_invoice();
        boxes.clear();
        click_band("take_up");
        EXPECT_THAT(boxes, IsEmpty());
        expect_entry();
    }
}

// The document that was being changed is void by now.
TEST_F(KeptEntries, PartOfAnEntryIsKeptBesideTheWholeOne) {
    save_invoice();
    EXPECT_EQ(form().press(106), controls::Refusal::none);
    EXPECT_EQ(form().txtremark.type("first try"), controls::Refusal::none);
    form_window().press(100);
    window->ap()->abcdb->Execute("UPDATE AP_header_table SET void = TRUE");
    open_invoice();
    click_band("take_up");
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_THAT(boxes.front(), HasSubstr("could be restored only in part"));
    EXPECT_THAT(offered(), HasSubstr("A change of IP-26-00001"));
    enter(form(), {.lines = {{"5000", "", "gross amount", "75.00"}}});
    form_window().press(100);
    EXPECT_EQ(kept(), 2U);
    open_invoice();
    EXPECT_THAT(offered(), HasSubstr("(1 more after it)"));
}

// The keys have not left the field yet.
TEST_F(KeptEntries, WhatIsBeingTypedIsKeptAsWell) {
    open_invoice();
    form_window().press(105);
    QApplication::processEvents();
    auto* const remark = dynamic_cast<QLineEdit*>(form_window().widget(form().txtremark));
    ASSERT_NE(remark, nullptr);
    QApplication::setActiveWindow(window.get());
    remark->setFocus();
    QTest::keyClicks(remark, "half a rem");
    QTest::qWait(900);
    EXPECT_EQ(form().txtremark.text(), "");
    EXPECT_EQ(kept(), 1U);
    // As they are at this moment: a window that goes hands over what is typed in it.
    const std::filesystem::path aside = folder.file("aside");
    std::filesystem::copy(entries_folder(), aside);
    window.reset();
    std::filesystem::remove_all(entries_folder());
    std::filesystem::copy(aside, entries_folder());
    open_window();
    QApplication::setActiveWindow(window.get());
    open_invoice();
    click_band("take_up");
    EXPECT_EQ(form().txtremark.text(), "");
    auto* const again = dynamic_cast<QLineEdit*>(form_window().widget(form().txtremark));
    EXPECT_EQ(again->text(), "half a rem");
    EXPECT_EQ(window->focusWidget(), again);
}

TEST_F(KeptEntries, ProgramThatWasKilledHasKeptItsEntry) {
    window.reset();
    QProcess typist;
    typist.setProcessChannelMode(QProcess::MergedChannels);
    typist.start(QCoreApplication::applicationDirPath() + "/brimley-typist", {QString::fromStdString(path)});
    ASSERT_TRUE(typist.waitForFinished(60000));
    ASSERT_EQ(typist.exitStatus(), QProcess::CrashExit) << typist.readAll().toStdString();
    open_window();
    open_invoice();
    EXPECT_THAT(offered(), HasSubstr("was not saved."));
    click_band("take_up");
    EXPECT_EQ(form().txtremark.text(), "before the cut");
    EXPECT_EQ(form().dbgrid1.cell(0, "gross amount"), "81.00");
    EXPECT_THAT(boxes, IsEmpty());
}

// Ctrl+X is Exit, except where it has something to cut.
TEST_F(KeptEntries, SelectedTextIsCutByTheKeyOfExit) {
    enter_invoice();
    auto* const remark = dynamic_cast<QLineEdit*>(form_window().widget(form().txtremark));
    ASSERT_NE(remark, nullptr);
    QApplication::setActiveWindow(window.get());
    remark->setFocus();
    remark->selectAll();
    QTest::keyClick(remark, Qt::Key_X, Qt::ControlModifier);
    ASSERT_EQ(window->desk().windows().size(), 1U);
    EXPECT_EQ(remark->text(), "");
    QTest::keyClick(remark, Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(window->desk().windows().empty());
}

}  // namespace brimley::testing
