// Fields in their window: dates, combos, what is locked, faces.
#include <QCheckBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QToolBar>
#include <QTreeView>

#include "desktop/live_desk.h"

namespace brimley::testing {

class Fields : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
        trigger(105);
    }
    std::string after_keys(const char* name, const QString& typed) {
        go_to(name);
        line(name).clear();
        keys(typed);
        return line(name).text().toStdString();
    }
};

TEST_F(Fields, SeparatorsOfADateComeByThemselves) {
    EXPECT_EQ(after_keys("txtduedate", "05042026"), "05/04/2026");
    EXPECT_EQ(after_keys("txtduedate", "05/04/2026"), "05/04/2026");
    EXPECT_EQ(after_keys("txtduedate", "5/4/2026"), "5/4/2026");
}

TEST_F(Fields, LetterTInADateIsToday) { EXPECT_EQ(after_keys("txtduedate", "t"), "16/03/2026"); }

TEST_F(Fields, PlusAndMinusMoveADateByADay) {
    EXPECT_EQ(after_keys("txtduedate", "t+"), "17/03/2026");
    EXPECT_EQ(after_keys("txtduedate", "t--"), "14/03/2026");
}

TEST_F(Fields, DateHandedOverRunsItsHandlers) {
    go_to("txtinvdate");
    line("txtinvdate").selectAll();
    keys("05042026");
    key(Qt::Key_Return);
    EXPECT_EQ(line("cmbperiod").text(), "4");
    EXPECT_EQ(line("cmbfyear").text(), "2026");
}

TEST_F(Fields, EnterMovesOnToTheNextField) {
    go_to("cmbdoctype");
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmbvendor");
}

TEST_F(Fields, EnterOnABoxMovesOn) {
    go_to("chkrecur");
    key(Qt::Key_Return);
    EXPECT_NE(focus(), "chkrecur");
    EXPECT_EQ(window().form().controls().find("chkrecur")->shown(), "0");
}

TEST_F(Fields, TabAndEnterPassOverWhatIsLocked) {
    go_to("txtsource_docno");
    std::vector<std::string> visited;
    for (int i = 0; i < 12 && focus() != "dbgrid1"; ++i) {
        key(i % 2 == 0 ? Qt::Key_Return : Qt::Key_Tab);
        visited.push_back(focus());
    }
    EXPECT_EQ(visited, (std::vector<std::string>{"txtapplydoc", "txtprepayment", "chkrecur", "dbgrid1"}));
}

TEST_F(Fields, LettersDoNotComeIntoADate) { EXPECT_EQ(after_keys("txtduedate", "1a2b"), "12/"); }

TEST_F(Fields, ListOpensAtWhatWasTyped) {
    EXPECT_EQ(after_keys("cmbterm", "net"), "net 60 days");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    const QModelIndex chosen = popup->list().currentIndex().siblingAtColumn(0);
    EXPECT_TRUE(popup->list().selectionModel()->isSelected(chosen));
    EXPECT_EQ(chosen.data().toString(), "Net 60 days");
    popup->close();
}

TEST_F(Fields, ListWithoutTheTextHasNothingChosenAndEnterPicksNothing) {
    EXPECT_EQ(after_keys("cmbterm", "zzz"), "zzz");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    EXPECT_FALSE(popup->list().selectionModel()->hasSelection());
    QTest::keyClick(&popup->list(), Qt::Key_Return);
    EXPECT_EQ(line("cmbterm").text(), "zzz");
}

TEST_F(Fields, FirstArrowInAListWithoutAChoiceComesToTheFirstRow) {
    EXPECT_EQ(after_keys("cmbterm", "zzz"), "zzz");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    const QString first = popup->list().model()->index(0, 0).data().toString();
    QTest::keyClick(&popup->list(), Qt::Key_Down);
    QTest::keyClick(&popup->list(), Qt::Key_Return);
    EXPECT_EQ(line("cmbterm").text(), first);
}

TEST_F(Fields, LockedFieldsAndBoxesAreGreyWhateverTheirColour) {
    const auto ground = [this](const char* name) { return field(name).palette().color(QPalette::Base); };
    EXPECT_EQ(ground("txtremark"), QColor(Qt::white));
    EXPECT_NE(ground("txtdocno"), QColor(Qt::white));
    EXPECT_NE(ground("chkvoid"), QColor(Qt::white));
    EXPECT_EQ(ground("chkrecur"), QColor(Qt::white));
}

TEST_F(Fields, TypeAheadCompletesFromTheList) {
    EXPECT_EQ(after_keys("cmbterm", "due"), "due on receipt");
    EXPECT_EQ(line("cmbterm").selectedText(), " on receipt");
    key(Qt::Key_Tab);
    EXPECT_EQ(line("cmbterm").text(), "Due on receipt");
}

TEST_F(Fields, BackspaceTakesTheCompletionAway) {
    EXPECT_EQ(after_keys("cmbterm", "due"), "due on receipt");
    key(Qt::Key_Backspace);
    EXPECT_EQ(line("cmbterm").text(), "due");
}

TEST_F(Fields, AltDownOpensAListOfTheColumnsDescribed) {
    go_to("cmbvendor");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    const QAbstractItemModel& list = *popup->list().model();
    EXPECT_EQ(list.headerData(0, Qt::Horizontal).toString(), "Vendor no");
    EXPECT_EQ(list.headerData(1, Qt::Horizontal).toString(), "Name");
    const auto rows = list.match(list.index(0, 0), Qt::DisplayRole, "V1001");
    ASSERT_EQ(rows.size(), 1);
    popup->list().setCurrentIndex(rows.first());
    QTest::keyClick(&popup->list(), Qt::Key_Return);
    EXPECT_EQ(line("cmbvendor").text(), "V1001");
    EXPECT_EQ(line("cmbvendor_name").text(), "Baywater Coffee Traders");
}

TEST_F(Fields, ShownComboFetchesNoList) {
    auto& combo = dynamic_cast<controls::ComboBox&>(*window().form().controls().find("cmbvendor"));
    int fetches = 0;
    combo.set_source([&] {
        ++fetches;
        return std::vector<controls::ComboBox::Row>{{"V1", "one"}};
    });
    go_to("cmbvendor");
    key(Qt::Key_Tab);
    EXPECT_EQ(fetches, 0);
    go_to("cmbvendor");
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(fetches, 1);
    open_list()->close();
}

TEST_F(Fields, LockedFieldTakesNoKeysAndOpensNoList) {
    trigger(105);  // back to Read
    go_to("cmbvendor");
    keys("V1001");
    EXPECT_EQ(line("cmbvendor").text(), "");
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(open_list(), nullptr);
}

TEST_F(Fields, BoxThatCannotBeClickedStaysAsItIs) {
    auto& box = dynamic_cast<QCheckBox&>(field("chkvoid"));
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_FALSE(box.isChecked());
}

TEST_F(Fields, EscapeTakesBackWhatWasTyped) {
    EXPECT_EQ(after_keys("txtremark", "wrong"), "wrong");
    key(Qt::Key_Escape);
    EXPECT_EQ(line("txtremark").text(), "");
}

TEST_F(Fields, AmountsAreSelectedWhenTheUserComesIn) {
    trigger(105);
    ap.showform_APform_payment();
    QApplication::setActiveWindow(&window());
    trigger(105);
    QTest::mouseClick(&line("txtpayment"), Qt::LeftButton);
    EXPECT_EQ(line("txtpayment").selectedText(), "0.00");
}

TEST_F(Fields, PaneAndItsFieldsFollowTheirFrame) {
    EXPECT_FALSE(field("txtvendor_address").isVisible());
    trigger(1014);
    EXPECT_TRUE(field("txtvendor_address").isVisible());
    trigger(1014);
    EXPECT_FALSE(field("txtvendor_address").isVisible());
}

TEST_F(Fields, PaneIsClosedByItsButtonAndOpenedAgainByItsCommand) {
    struct Pane {
        const char* frame;
        int command;
        const char* inside;
    };
    for (const Pane& pane :
         {Pane{"frame_address", 1014, "txtvendor_address"}, Pane{"frame_tax", 131, "grid_tax"},
          Pane{"frame_tax_summary", 132, "grid_tax_summary"}, Pane{"frame_recur", 1011, "cmbfreq"},
          Pane{"frame_font", 116, "cmbitfont"}}) {
        trigger(pane.command);
        EXPECT_TRUE(field(pane.inside).isVisible()) << pane.frame;
        close_pane(pane.frame);
        EXPECT_FALSE(field(pane.inside).isVisible()) << pane.frame;
        EXPECT_FALSE(window().form().controls().find(pane.frame)->visible()) << pane.frame;
        trigger(pane.command);
        EXPECT_TRUE(field(pane.inside).isVisible()) << pane.frame;
    }
}

TEST_F(Fields, ClosedFontPaneTakesTheFontBarAlong) {
    trigger(116);
    EXPECT_TRUE(window().actions().toolbar("Font")->isVisible());
    close_pane("frame_font");
    EXPECT_FALSE(window().actions().toolbar("Font")->isVisible());
}

// Without fonts every text would be boxes, and a face with serifs would stand in for Arial.
TEST(Faces, ArialResolvesToASansSerifOfItsMeasure) {
    const QString family = QFontInfo(QFont("Arial")).family();
    EXPECT_TRUE(family == "Arial" || family == "Liberation Sans") << family.toStdString();
}

TEST(Faces, ThaiAndChineseCanBeWritten) {
    EXPECT_FALSE(QFontDatabase::families(QFontDatabase::Thai).isEmpty());
    EXPECT_FALSE(QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty());
}

}  // namespace brimley::testing
