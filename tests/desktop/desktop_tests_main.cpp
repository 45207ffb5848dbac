// The tests of the desktop need an application around them, once.
#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/theme.h"
#include "support/temporary_folder.h"

int main(int argc, char** argv) {
    // No screen, and settings that nobody else has.
    const brimley::testing::TemporaryFolder settings;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* const name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(name, settings.file("").c_str());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    brimley::desktop::use_fonts();
    brimley::desktop::use_theme(brimley::desktop::Theme::light);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
