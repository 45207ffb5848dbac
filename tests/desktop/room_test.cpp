// Every form has room on every screen: nothing lies over anything else, is squeezed or cannot be reached.
//
// The same cases are run with the screen's scale at one and a half and at two (CMakeLists.txt).
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>

#include "desktop/combo_view.h"
#include "desktop/host_window.h"
#include "desktop/list_popup.h"
#include "desktop/module_forms.h"

namespace brimley::testing {

namespace {

// In pixels of the program: a screen of 3840 x 2160 has half of them at scale 2.
constexpr QSize kSizes[] = {{800, 500}, {910, 512}, {1366, 768}, {1920, 1080}};

std::string text_of(const QRect& rect) {
    return std::to_string(rect.x()) + "," + std::to_string(rect.y()) + " " + std::to_string(rect.width()) +
           "x" + std::to_string(rect.height());
}

QRect place_in(const QWidget& widget, const QWidget& whole) {
    return {widget.mapTo(&whole, QPoint(0, 0)), widget.size()};
}

}  // namespace

class Room : public Host {
  protected:
    void SetUp() override {
        Host::SetUp();
        save_invoice();
        window->desk().windows().back()->press(100);
    }
    // The fields, grids and captions that lie in this scrolled part.
    static std::vector<QWidget*> pieces_of(desktop::FormWindow& form, const QWidget& content) {
        std::vector<QWidget*> pieces;
        for (controls::Control* const control : form.form().controls().all())
            if (QWidget* const widget = form.widget(*control);
                widget != nullptr && content.isAncestorOf(widget) && widget->isVisibleTo(&content))
                pieces.push_back(widget);
        for (QLabel* const label : content.findChildren<QLabel*>())
            if (label->parentWidget() == &content && label->isVisibleTo(&content) &&
                std::find(pieces.begin(), pieces.end(), label) == pieces.end())
                pieces.push_back(label);
        return pieces;
    }
    // In each scrolled part of the form.
    static void expect_room(desktop::FormWindow& form, const std::string& where) {
        int found = 0;
        for (const QScrollArea* const part : form.findChildren<QScrollArea*>()) {
            if (!part->isVisible()) continue;
            const QWidget& content = *part->widget();
            const auto pieces = pieces_of(form, content);
            found += static_cast<int>(pieces.size());
            for (std::size_t i = 0; i < pieces.size(); ++i) {
                const QRect rect = place_in(*pieces[i], content);
                const std::string name =
                    where + ": " + pieces[i]->objectName().toStdString() + " at " + text_of(rect);
                EXPECT_TRUE(content.rect().contains(rect)) << name << " in " << text_of(content.rect());
                EXPECT_GE(rect.width(), pieces[i]->minimumSizeHint().width()) << name;
                EXPECT_GE(rect.height(), pieces[i]->minimumSize().height()) << name;
                for (std::size_t k = i + 1; k < pieces.size(); ++k) {
                    if (pieces[i]->isAncestorOf(pieces[k]) || pieces[k]->isAncestorOf(pieces[i])) continue;
                    EXPECT_FALSE(rect.intersects(place_in(*pieces[k], content)))
                        << name << " lies over " << pieces[k]->objectName().toStdString() << " at "
                        << text_of(place_in(*pieces[k], content));
                }
            }
        }
        EXPECT_GT(found, 3) << where;
    }
    // What stands around the fields does not lie over them either.
    static void expect_panes_apart(desktop::FormWindow& form, const std::string& where) {
        std::vector<QWidget*> parts{form.centralWidget()};
        for (QDockWidget* const pane : form.findChildren<QDockWidget*>())
            if (pane->isVisible() && !pane->isFloating()) parts.push_back(pane);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            EXPECT_TRUE(form.rect().contains(place_in(*parts[i], form)))
                << where << ": " << parts[i]->objectName().toStdString() << " at "
                << text_of(place_in(*parts[i], form));
            for (std::size_t k = i + 1; k < parts.size(); ++k)
                EXPECT_FALSE(place_in(*parts[i], form).intersects(place_in(*parts[k], form)))
                    << where << ": " << parts[i]->objectName().toStdString() << " lies over "
                    << parts[k]->objectName().toStdString();
        }
    }
    void arrange(const QString& how) {
        for (const QAction* const menu : window->menuBar()->actions())
            for (QAction* const entry : menu->menu()->actions())
                if (entry->text().remove('&') == how) return entry->trigger();
        FAIL() << how.toStdString();
    }
    void take_size(const QSize& size) {
        window->resize(size);
        QApplication::processEvents();
        ASSERT_EQ(window->size(), size);
    }
};

TEST_F(Room, NoTwoFieldsOfAFormOverlapAtAnySize) {
    for (const desktop::ModuleForm& listed : desktop::module_forms()) {
        ASSERT_TRUE(window->show_form(listed.class_name));
        desktop::FormWindow& form = *window->desk().windows().back();
        for (const QSize& size : kSizes) {
            take_size(size);
            const std::string where = listed.class_name + " at " + std::to_string(size.width());
            expect_room(form, where);
            expect_panes_apart(form, where);
        }
        wanted_button = "No";
        form.press(100);
    }
}

TEST_F(Room, PanesLeaveTheFieldsInTheirPlaces) {
    const std::pair<const char*, std::vector<int>> panes[] = {{"APform_invoice", {131, 132, 1011, 1014, 116}},
                                                              {"APreport_aging", {102, 124}}};
    for (const auto& [class_name, commands] : panes) {
        ASSERT_TRUE(window->show_form(class_name));
        desktop::FormWindow& form = *window->desk().windows().back();
        for (const int command : commands)
            form.press(command);
        for (const QSize& size : kSizes) {
            take_size(size);
            const std::string where = std::string(class_name) + " at " + std::to_string(size.width());
            expect_room(form, where);
            expect_panes_apart(form, where);
        }
        form.press(100);
    }
}

TEST_F(Room, FormsSideBySideOrInACascadeLieInsideAndKeepTheirFields) {
    const char* const together[] = {"APform_invoice", "APform_payment", "APreport_inquiry"};
    for (const char* class_name : together)
        ASSERT_TRUE(window->show_form(class_name));
    QMdiArea& area = window->area();
    for (const QSize& size : kSizes) {
        take_size(size);
        for (const bool side_by_side : {true, false}) {
            arrange(side_by_side ? "Side by side" : "Cascade");
            QApplication::processEvents();
            const std::string where =
                std::to_string(size.width()) + (side_by_side ? " side by side" : " in a cascade");
            const auto windows = area.subWindowList();
            for (QMdiSubWindow* const at : windows) {
                EXPECT_TRUE(area.viewport()->rect().contains(at->geometry()))
                    << where << ": " << text_of(at->geometry()) << " in " << text_of(area.viewport()->rect());
                for (QMdiSubWindow* const other : windows)
                    EXPECT_TRUE(!side_by_side || at == other || !at->geometry().intersects(other->geometry()))
                        << where;
            }
            for (desktop::FormWindow* const form : window->desk().windows())
                expect_room(*form, where + ": " + form->objectName().toStdString());
        }
    }
}

TEST_F(Room, FieldThatIsGoneToIsScrolledIntoSight) {
    window->show_form("APform_invoice");
    desktop::FormWindow& form = *window->desk().windows().back();
    take_size({800, 500});
    QApplication::setActiveWindow(window.get());
    form.press(105);
    form.settle();
    for (const char* name : {"txttotal", "txtvendor_invoice", "txtdue"}) {
        auto* const field = form.findChild<QWidget*>(name);
        if (field == nullptr) continue;
        field->setFocus(Qt::OtherFocusReason);
        QApplication::processEvents();
        EXPECT_FALSE(field->visibleRegion().isEmpty()) << name;
        EXPECT_EQ(field->visibleRegion().boundingRect().size(), field->size()) << name;
    }
}

TEST_F(Room, ListsOpenInsideTheScreen) {
    window->show_form("APform_invoice");
    desktop::FormWindow& form = *window->desk().windows().back();
    form.press(105);
    form.settle();
    const QRect screen = window->screen()->availableGeometry();
    for (const char* name : {"cmbdoctype", "cmbvendor", "cmbterm", "cmbperiod"}) {
        auto& combo = dynamic_cast<desktop::ComboView&>(*form.findChild<QWidget*>(name));
        // At the top of the screen, in its middle and at its foot.
        for (const int y : {0, screen.height() / 2, screen.height() - combo.height() - 2}) {
            window->move(window->pos() + QPoint(0, y - combo.mapToGlobal(QPoint(0, 0)).y()));
            desktop::ListPopup* const list = combo.open_list();
            ASSERT_NE(list, nullptr) << name;
            EXPECT_TRUE(screen.contains(list->geometry()))
                << name << " at " << y << ": " << text_of(list->geometry()) << " in " << text_of(screen);
            EXPECT_GE(list->height(), 40) << name;
            list->close();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
}

TEST_F(Room, WindowIsNoLargerThanTheScreen) {
    const QSize screen = window->screen()->availableSize();
    EXPECT_LE(window->minimumSizeHint().width(), 800);
    EXPECT_LE(window->minimumSizeHint().height(), 500);
    desktop::MainWindow fresh(options, desktop::MainWindow::Memory::none);
    EXPECT_LE(fresh.width(), screen.width());
    EXPECT_LE(fresh.height(), screen.height());
}

}  // namespace brimley::testing
