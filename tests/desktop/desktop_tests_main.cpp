// The tests of the desktop need an application around them, once.
#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/theme.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    brimley::desktop::use_fonts();
    brimley::desktop::use_theme(brimley::desktop::Theme::light);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
