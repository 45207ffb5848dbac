// Light and dark, and the lists that are drawn: swatches and samples.
#include <QTreeView>

#include "desktop/live_desk.h"
#include "desktop/model_view.h"
#include "desktop/theme.h"

namespace brimley::testing {

class Themes : public LiveDesk {
  protected:
    void TearDown() override { use(desktop::Theme::light); }
    static void use(desktop::Theme theme) {
        desktop::use_theme(theme);
        QApplication::processEvents();
    }
    static double lightness(const QColor& colour) { return colour.lightnessF(); }
    // The list of a combo of the font bar.
    QTreeView& list_of(const char* combo) {
        go_to(combo);
        key(Qt::Key_Down, Qt::AltModifier);
        QApplication::processEvents();
        return open_list()->list();
    }
};

TEST_F(Themes, EveryFieldCanBeReadInLightAndDark) {
    show_invoice();
    for (const auto theme : {desktop::Theme::light, desktop::Theme::dark}) {
        use(theme);
        for (const int press : {0, 105}) {
            if (press != 0) trigger(press);
            for (const QLineEdit* const line : window().findChildren<QLineEdit*>()) {
                const QPalette& colours = line->palette();
                const double text = lightness(colours.color(QPalette::Text));
                EXPECT_GT(std::abs(text - lightness(colours.color(QPalette::Base))), 0.5)
                    << line->objectName().toStdString();
            }
        }
        trigger(105);
    }
}

TEST_F(Themes, WindowsThatAreOpenFollowTheTheme) {
    show_invoice();
    const QImage before = window().actions().find(101)->icon().pixmap(20).toImage();
    use(desktop::Theme::dark);
    window().settle();
    EXPECT_TRUE(desktop::is_dark(window().palette()));
    EXPECT_NE(window().actions().find(101)->icon().pixmap(20).toImage(), before);
    const QColor ground = window().grab().toImage().pixelColor(window().width() - 4, window().height() / 4);
    EXPECT_LT(lightness(ground), 0.4);
}

TEST_F(Themes, ArrowAndButtonsOfPanesCanBeSeenInLightAndDark) {
    show_invoice();
    trigger(131);
    for (const auto theme : {desktop::Theme::light, desktop::Theme::dark}) {
        use(theme);
        window().resize(220, 600);  // the toolbar does not fit in
        window().settle();
        QApplication::processEvents();
        int seen = 0;
        for (const char* name :
             {"qt_toolbar_ext_button", "qt_dockwidget_closebutton", "qt_dockwidget_floatbutton"})
            for (QWidget* const button : window().findChildren<QWidget*>(name)) {
                if (!button->isVisible()) continue;
                ++seen;
                const QImage picture = button->grab().toImage();
                double darkest = 1;
                double lightest = 0;
                for (int x = 0; x < picture.width(); ++x)
                    for (int y = 0; y < picture.height(); ++y) {
                        darkest = std::min(darkest, lightness(picture.pixelColor(x, y)));
                        lightest = std::max(lightest, lightness(picture.pixelColor(x, y)));
                    }
                EXPECT_GT(lightest - darkest, 0.4) << name;
            }
        EXPECT_EQ(seen, 3);
    }
}

TEST_F(Themes, WhatCannotBeUsedIsFaintInLightAndDark) {
    show_invoice();
    for (const auto theme : {desktop::Theme::light, desktop::Theme::dark}) {
        use(theme);
        const QPalette& colours = window().palette();
        const auto contrast = [&](QPalette::ColorGroup group) {
            return std::abs(lightness(colours.color(group, QPalette::ButtonText)) -
                            lightness(colours.color(group, QPalette::Button)));
        };
        EXPECT_GT(contrast(QPalette::Active), 2 * contrast(QPalette::Disabled));
        EXPECT_GT(contrast(QPalette::Disabled), 0.1);
    }
}

TEST_F(Themes, CellInAGridStandsOutOnlyWhileTheUserIsThere) {
    show_invoice();
    const auto ground = [this] {
        const QRect cell = lines().visualRect(lines().currentIndex());
        return lines().viewport()->grab().toImage().pixelColor(cell.left() + 3, cell.top() + 3);
    };
    go_to_cell(0, "description");
    const QColor inside = ground();
    go_to("txtdocno");
    EXPECT_NE(ground(), inside);
}

TEST_F(Themes, ColourPickerDrawsASwatchOfEachColour) {
    show_invoice();
    trigger(116);
    QTreeView& list = list_of("cmbitcolor");
    const QImage picture = list.viewport()->grab().toImage();
    for (int row = 1; row < 9; ++row) {  // the first one lies under the frame of the choice
        const QModelIndex index = list.model()->index(row, 0);
        const QRect place = list.visualRect(index);
        EXPECT_EQ(picture.pixelColor(place.left() + 24, place.center().y()),
                  QColor("#" + index.data().toString()))
            << row;
    }
    EXPECT_EQ(list.model()->rowCount(), 510);
    EXPECT_EQ(list.model()->index(1, 1).data().toString(), "blue4");
    open_list()->close();
}

TEST_F(Themes, FontPickerDrawsASampleBehindEachName) {
    show_invoice();
    trigger(116);
    QTreeView& list = list_of("cmbitfont");
    const QImage picture = list.viewport()->grab().toImage();
    for (int row = 0; row < 4; ++row) {
        const QModelIndex index = list.model()->index(row, 0);
        const QRect place = list.visualRect(index);
        const int behind = QFontMetrics(list.font()).horizontalAdvance(index.data().toString()) + 14;
        bool drawn = false;
        for (int x = place.left() + behind; x < place.right(); ++x)
            for (int y = place.top(); y < place.bottom(); ++y)
                drawn = drawn || lightness(picture.pixelColor(x, y)) < 0.4;
        EXPECT_TRUE(drawn) << index.data().toString().toStdString();
    }
    open_list()->close();
}

}  // namespace brimley::testing
