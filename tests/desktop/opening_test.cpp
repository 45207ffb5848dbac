// What every host does when it opens a company: the folder that reports are stored in.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "desktop/desktop_desk.h"
#include "desktop/main_window.h"
#include "frame/platform_path.h"
#include "opening/host_options.h"
#include "support/sample_company.h"

namespace brimley::testing {

namespace fs = std::filesystem;

class ReportFolder : public ::testing::Test {
  protected:
    [[nodiscard]] fs::path beside() const { return fs::path(company.path()).parent_path() / "User report"; }

    CompanyCopy company{sample_original()};
    opening::HostOptions options;
};

TEST_F(ReportFolder, IsMadeBesideTheCompanyWhenItIsMissing) {
    const auto context = opening::open_context(company.path(), options);
    EXPECT_TRUE(fs::is_directory(beside()));
    EXPECT_EQ(context.BRIMLEY_PATH, beside().parent_path());
    const auto again = opening::open_context(company.path(), options);
    EXPECT_TRUE(fs::is_directory(beside()));
}

TEST_F(ReportFolder, IsMadeWhenAPersonOpensTheCompany) {
    desktop::MainWindow window(options, desktop::MainWindow::Memory::none);
    EXPECT_FALSE(fs::exists(beside()));
    window.open_company(QString::fromStdString(company.path()));
    EXPECT_TRUE(fs::is_directory(beside()));
}

TEST_F(ReportFolder, IsNotMadeWhenThePathIsGiven) {
    const fs::path given = fs::path(company.path()).parent_path() / "installed";
    fs::create_directory(given);
    options.path = given;
    const auto context = opening::open_context(company.path(), options);
    EXPECT_EQ(context.BRIMLEY_PATH, given);
    EXPECT_TRUE(fs::is_empty(given));
    EXPECT_FALSE(fs::exists(beside()));
}

TEST_F(ReportFolder, ThatCannotBeMadeIsNoError) {
    std::ofstream(beside()) << "a file in its place";
    EXPECT_NO_THROW(static_cast<void>(opening::open_context(company.path(), options)));
    EXPECT_TRUE(fs::is_regular_file(beside()));
}

TEST_F(ReportFolder, IsNotMadeForACompanyThatCannotBeOpened) {
    const fs::path missing = fs::path(company.path()).parent_path() / "empty" / "no.brimley";
    fs::create_directory(missing.parent_path());
    EXPECT_ANY_THROW(static_cast<void>(opening::open_context(missing, options)));
    EXPECT_TRUE(fs::is_empty(missing.parent_path()));
}

TEST_F(ReportFolder, FoldersAreFoundAndMadeByPathsWithBackslashes) {
    desktop::DesktopDesk desk;
    const std::string here = fs::path(company.path()).parent_path();
    EXPECT_FALSE(desk.make_folder(here + "\\User report\\anna"));  // the folder around it is missing
    EXPECT_TRUE(desk.make_folder(here + "\\User report"));
    EXPECT_TRUE(desk.make_folder(here + "\\User report\\anna"));
    EXPECT_FALSE(desk.make_folder(here + "\\User report\\anna"));
    EXPECT_TRUE(desk.folder_exists(here + "\\User report\\anna"));
    EXPECT_TRUE(fs::is_directory(beside() / "anna"));
    EXPECT_FALSE(desk.folder_exists(here + "\\User report\\bob"));
    EXPECT_EQ(frame::platform_path("/b\\Help\\a.pdf"), fs::path("/b/Help/a.pdf"));
}

}  // namespace brimley::testing
