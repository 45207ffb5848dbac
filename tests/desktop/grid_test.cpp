// The line grid in its window: moving with the keys, typing, lists, arranging columns.
#include <QHeaderView>
#include <QTreeView>

#include "desktop/live_desk.h"

namespace brimley::testing {

class LineGrid : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
    }
    std::string here() {
        const QModelIndex at = lines().currentIndex();
        return std::to_string(at.row()) + " " +
               lines().grid().columns.at(static_cast<std::size_t>(at.column())).caption;
    }
    std::string cell(int row, const char* caption) { return lines().grid().cell(row, caption); }
    int place_of(const char* caption) {
        return lines().horizontalHeader()->visualIndex(lines().grid().get_column(caption));
    }
};

TEST_F(LineGrid, EnterGoesFromCellToCellThatMayBeTypedIn) {
    trigger(105);
    go_to_cell(0, "description");
    key(Qt::Key_Return);
    EXPECT_EQ(here(), "0 gross amount");
    key(Qt::Key_Return);
    EXPECT_EQ(here(), "0 taxable amount");
}

TEST_F(LineGrid, EnterInTheLastCellOpensTheNextRow) {
    trigger(105);
    go_to_cell(0, "purchase account");
    key(Qt::Key_Return);
    EXPECT_EQ(here(), "1 description");
}

TEST_F(LineGrid, LockedCellsTakeNoTyping) {
    trigger(105);
    go_to_cell(0, "open amount");
    keys("5");
    EXPECT_EQ(lines().indexWidget(lines().currentIndex()), nullptr);
    EXPECT_EQ(cell(0, "open amount"), "");
}

TEST_F(LineGrid, NothingCanBeTypedInReadMode) {
    go_to_cell(0, "description");
    keys("x");
    EXPECT_EQ(lines().indexWidget(lines().currentIndex()), nullptr);
}

TEST_F(LineGrid, RefusedAmountTellsWhyAndKeepsTheOldText) {
    trigger(105);
    type_cell(0, "gross amount", "100");
    EXPECT_EQ(cell(0, "gross amount"), "100.00");
    type_cell(0, "gross amount", "many");
    EXPECT_EQ(boxes, std::vector<std::string>{"please input numeric data"});
    EXPECT_EQ(lines().model()->index(0, lines().grid().get_column("gross amount")).data().toString(),
              "100.00");
}

TEST_F(LineGrid, EscapeInACellKeepsTheOldText) {
    trigger(105);
    type_cell(0, "description", "Coffee");
    go_to_cell(0, "description");
    key(Qt::Key_F2);
    keys("Tea");
    key(Qt::Key_Escape);
    EXPECT_EQ(cell(0, "description"), "Coffee");
}

TEST_F(LineGrid, AltDownOpensTheListOfTheCellAndEnterPicks) {
    trigger(105);
    go_to_cell(0, "tax code");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    const QString second = popup->list().model()->index(1, 0).data().toString();
    EXPECT_FALSE(second.isEmpty());
    popup->list().setCurrentIndex(popup->list().model()->index(1, 0));
    QTest::keyClick(&popup->list(), Qt::Key_Return);
    window().settle();
    EXPECT_EQ(cell(0, "tax code"), second.toStdString());
}

TEST_F(LineGrid, ListIsAsWideAtItsFirstOpeningAsTheColumnsThatItFills) {
    trigger(105);
    go_to_cell(0, "purchase account");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    const auto width_of = [&](const char* caption) {
        return lines().columnWidth(lines().grid().get_column(caption));
    };
    EXPECT_EQ(popup->list().columnWidth(0), width_of("purchase account"));
    EXPECT_EQ(popup->list().columnWidth(1), width_of("account name"));
    popup->close();
}

TEST_F(LineGrid, FormIsToldWhenTheEditorOpensAndNotAgainWhenItIsLeft) {
    trigger(105);
    std::string events;
    lines().grid().on_before_edit = [&](controls::CellEdit&) { events += "opens "; };
    const auto before_update = lines().grid().on_before_update;
    lines().grid().on_before_update = [&](controls::CellEdit&) { events += "takes "; };
    go_to_cell(0, "description");
    key(Qt::Key_F2);
    EXPECT_EQ(events, "opens ");
    keys("Tea");
    key(Qt::Key_Return);
    EXPECT_EQ(events, "opens takes ");
    EXPECT_EQ(cell(0, "description"), "Tea");
    lines().grid().on_before_update = before_update;
}

TEST_F(LineGrid, EditorThatTheFormRefusesStaysClosed) {
    trigger(105);
    lines().grid().on_before_edit = [](controls::CellEdit& edit) { edit.cancel = true; };
    go_to_cell(0, "description");
    key(Qt::Key_F2);
    EXPECT_EQ(lines().indexWidget(lines().currentIndex()), nullptr);
    keys("Tea");
    key(Qt::Key_Return);
    EXPECT_EQ(cell(0, "description"), "");
}

TEST_F(LineGrid, MovedColumnStandsThereAfterReopening) {
    lines().horizontalHeader()->moveSection(place_of("purchase account"), 1);
    window().settle();
    EXPECT_EQ(place_of("purchase account"), 1);
    trigger(100);
    show_invoice();
    window().settle();
    EXPECT_EQ(place_of("purchase account"), 1);
    EXPECT_EQ(place_of("pay item"), 0);
}

TEST_F(LineGrid, ColumnIsMovedByDraggingItsHeader) {
    window().settle();
    QHeaderView* const header = lines().horizontalHeader();
    const auto middle_of = [&](const char* caption) {
        const int section = lines().grid().get_column(caption);
        return QPoint(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, 8);
    };
    const QPoint from = middle_of("tax code");
    const QPoint to = middle_of("description") - QPoint(60, 0);
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, from);
    for (int step = 1; step <= 10; ++step)
        QTest::mouseMove(header->viewport(), from + (to - from) * step / 10);
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, to);
    window().settle();
    EXPECT_EQ(place_of("tax code"), 1);
    EXPECT_EQ(lines().grid().columns[static_cast<std::size_t>(lines().grid().get_column("tax code"))].order,
              1);
}

TEST_F(LineGrid, WidthAndRowHeightDraggedAreKept) {
    const int column = lines().grid().get_column("description");
    lines().horizontalHeader()->resizeSection(column, 300);
    lines().verticalHeader()->resizeSection(0, 32);
    window().settle();
    trigger(100);
    show_invoice();
    window().settle();
    EXPECT_EQ(lines().columnWidth(lines().grid().get_column("description")), 300);
    EXPECT_EQ(lines().rowHeight(3), 32);
}

TEST_F(LineGrid, ClickedHeadersAreTheSelectedColumns) {
    QHeaderView* const header = lines().horizontalHeader();
    const auto click = [&](const char* caption, Qt::KeyboardModifiers modifiers) {
        const int section = lines().grid().get_column(caption);
        const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, 8);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, modifiers, at);
    };
    click("description", {});
    ASSERT_TRUE(lines().grid().selected_columns());
    EXPECT_EQ(lines().grid().selected_columns()->from, 1);
    EXPECT_EQ(lines().grid().selected_columns()->to, 1);
    go_to("dbgrid1");
    key(Qt::Key_Escape);
    EXPECT_FALSE(lines().grid().selected_columns());
}

TEST_F(LineGrid, EvenRowsAndFontsAreThoseOfTheModel) {
    controls::Grid& grid = lines().grid();
    grid.even_row_colour = controls::rgb(200, 220, 240);
    grid.columns[1].font.bold = true;
    grid.columns[1].font_colour = controls::rgb(255, 0, 0);
    grid.rebind();
    window().settle();
    const auto odd = lines().model()->index(0, 1);
    const auto even = lines().model()->index(1, 1);
    EXPECT_FALSE(odd.data(Qt::BackgroundRole).isValid());
    EXPECT_EQ(even.data(Qt::BackgroundRole).value<QColor>(), QColor(200, 220, 240));
    EXPECT_TRUE(odd.data(Qt::FontRole).value<QFont>().bold());
    EXPECT_EQ(odd.data(Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));
}

// The company's choice, which the sample has on.
TEST_F(LineGrid, EvenRowsArePaintedOnThePaymentGridAsOnTheInvoiceGrid) {
    const auto ground = [this](int row) {
        window().settle();
        const QRect cell = lines().visualRect(lines().model()->index(row, 1));
        return lines().viewport()->grab().toImage().pixelColor(cell.center());
    };
    const QColor of_invoices = ground(1);
    EXPECT_NE(of_invoices, ground(0));
    ap.showform_APform_payment();
    EXPECT_EQ(ground(1), of_invoices);
    EXPECT_NE(ground(0), of_invoices);
    EXPECT_NE(ground(2), of_invoices);
}

TEST_F(LineGrid, TypingInACellIsCompletedFromItsList) {
    trigger(105);
    go_to_cell(0, "tax code");
    keys("sta");
    auto* const editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), "staCK");
    EXPECT_EQ(editor->selectedText(), "CK");
}

TEST_F(LineGrid, ListOpensAtWhatWasTyped) {
    trigger(105);
    go_to_cell(0, "purchase account");
    keys("50");
    key(Qt::Key_Down, Qt::AltModifier);
    auto* const popup = open_list();
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->list().currentIndex().siblingAtColumn(0).data().toString(), "5000");
    popup->close();
}

TEST_F(LineGrid, CaptionsAreWhiteOnNavyAndGoIntoFurtherLines) {
    window().settle();
    QHeaderView& header = *lines().horizontalHeader();
    EXPECT_EQ(header.palette().color(QPalette::Button), QColor(0, 0, 128));
    EXPECT_EQ(header.palette().color(QPalette::ButtonText), QColor(Qt::white));
    const int high = header.height();
    for (controls::GridColumn& column : lines().grid().columns)
        column.width = 4000;
    lines().grid().rebind();
    window().settle();
    EXPECT_LT(header.height(), high);
}

TEST_F(LineGrid, LinesBetweenColumnsAreThoseThatTheLayoutWants) {
    lines().grid().columns[1].divider = false;
    lines().grid().columns[1].header_divider = false;
    lines().grid().rebind();
    window().settle();
    const QImage cells = lines().viewport()->grab().toImage();
    const QImage header = lines().horizontalHeader()->viewport()->grab().toImage();
    const auto right_of = [this](int column) {
        return lines().visualRect(lines().model()->index(0, column)).right();
    };
    const auto is_line = [](const QImage& image, int x) {
        return image.pixelColor(x, 6) != image.pixelColor(x - 2, 6);
    };
    EXPECT_TRUE(is_line(cells, right_of(0)));
    EXPECT_FALSE(is_line(cells, right_of(1)));
    EXPECT_TRUE(is_line(header, right_of(0)));
    EXPECT_FALSE(is_line(header, right_of(1)));
    const int below = lines().visualRect(lines().model()->index(0, 1)).bottom();
    EXPECT_NE(cells.pixelColor(right_of(1) - 4, below), cells.pixelColor(right_of(1) - 4, below - 3));
}

TEST_F(LineGrid, EditorOfACellIsLeftWithoutAWordWhenNothingWasTyped) {
    trigger(105);
    type_cell(0, "gross amount", "100");
    int updates = 0;
    const auto before = lines().grid().on_before_update;
    lines().grid().on_before_update = [&](controls::CellEdit&) { ++updates; };
    go_to_cell(0, "gross amount");
    key(Qt::Key_F2);
    key(Qt::Key_Return);
    EXPECT_EQ(updates, 0);
    lines().grid().on_before_update = before;
}

}  // namespace brimley::testing
