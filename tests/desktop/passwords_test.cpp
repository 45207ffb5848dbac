// Persons with a password, whom the desktop asks for it when a company is opened in their name.
#include <gmock/gmock.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QProcess>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <optional>

#include "company/people.h"
#include "company/transaction.h"
#include "desktop/company_dialogs.h"
#include "desktop/host_window.h"

namespace brimley::testing {

// The window has no company open; ben has a password, and is who opens it.
class Passwords : public Host {
  protected:
    void SetUp() override {
        Host::SetUp();
        window->close_company();
        {
            const auto open = store::open_company(path, kernel::company_tables());
            company::Transaction transaction(open);
            company::set_password(*open.database, "ben", company::Secret("s e:cret"));
            transaction.commit();
        }
        options.user = "ben";
        options.ask_password = [](const std::string& user) { return desktop::ask_for_password(user); };
    }
    // What the program says when it opens the company; empty when it does. In the dialog somebody types the
    // text and presses OK, or presses Cancel.
    std::string open(const std::optional<QString>& typed) {
        QTimer person;
        QObject::connect(&person, &QTimer::timeout, [&] {
            auto* const dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr) return;
            auto* const line = dialog->findChild<QLineEdit*>();
            asked.push_back(dialog->labelText().toStdString());
            is_hidden = line->echoMode() == QLineEdit::Password;
            if (typed) line->setText(*typed);
            dialog->findChild<QDialogButtonBox*>()
                ->button(typed ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)
                ->click();
        });
        person.start(1);
        window = std::make_unique<desktop::MainWindow>(options, desktop::MainWindow::Memory::none);
        window->show();
        try {
            window->open_company(QString::fromStdString(path));
            return "";
        } catch (const std::exception& failure) {
            return failure.what();
        }
    }
    // Closed to others.
    std::string password_file(const std::string& text) {
        const std::string file = folder.file("passwords");
        std::ofstream(file) << text;
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }

    std::vector<std::string> asked;
    bool is_hidden = false;
};

TEST_F(Passwords, PersonIsAskedAndWorksUnderTheirName) {
    EXPECT_EQ(open("s e:cret"), "");
    EXPECT_EQ(asked, std::vector<std::string>{"Password of ben"});
    EXPECT_TRUE(is_hidden);
    ASSERT_NE(window->ap(), nullptr);
    EXPECT_EQ(window->ap()->BRIMLEY_USER, "ben");
}

TEST_F(Passwords, WrongPasswordOpensNothing) {
    EXPECT_EQ(open("secret"), "that is not the password of ben");
    EXPECT_EQ(asked.size(), 1U);
    EXPECT_EQ(window->ap(), nullptr);
}

TEST_F(Passwords, EmptyPasswordIsAWrongOne) { EXPECT_EQ(open(""), "that is not the password of ben"); }

TEST_F(Passwords, CancelOpensNothing) {
    EXPECT_EQ(open(std::nullopt), "ben has a password, which is needed to work as ben");
    EXPECT_EQ(asked.size(), 1U);
    EXPECT_EQ(window->ap(), nullptr);
}

TEST_F(Passwords, PersonWithoutAPasswordIsNotAsked) {
    options.user = "carl";
    EXPECT_EQ(open("anything"), "");
    EXPECT_TRUE(asked.empty());
}

// The file answers for whom it names, rightly or not; the others are asked.
TEST_F(Passwords, FileOfPasswordsAnswersForWhomItNames) {
    options.password_file = password_file("anna:x\nben:s e:cret\n");
    EXPECT_EQ(open("wrong"), "");
    static_cast<void>(password_file("ben:wrong\n"));
    EXPECT_EQ(open("s e:cret"), "that is not the password of ben");
    EXPECT_TRUE(asked.empty());
    static_cast<void>(password_file("anna:x\n"));
    EXPECT_EQ(open("s e:cret"), "");
    EXPECT_EQ(asked.size(), 1U);
}

TEST_F(Passwords, OptionOfTheProgramNamesTheFile) {
    std::string errors;  // the toolkit has its own among them
    const auto take_picture = [&](const std::string& text) {
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + "/brimley",
                      {QString::fromStdString(path), "--user", "ben", "--password-file",
                       QString::fromStdString(password_file(text)), "--screenshot", "APform_invoice",
                       QString::fromStdString(folder.file("picture.png"))});
        EXPECT_TRUE(program.waitForFinished());
        errors = program.readAllStandardError().toStdString();
        return program.exitCode();
    };
    EXPECT_EQ(take_picture("ben:wrong\n"), 3);
    EXPECT_THAT(errors, ::testing::HasSubstr("brimley: that is not the password of ben\n"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("picture.png")));
    EXPECT_EQ(take_picture("ben:s e:cret\n"), 0) << errors;
    EXPECT_TRUE(std::filesystem::exists(folder.file("picture.png")));
}

}  // namespace brimley::testing
