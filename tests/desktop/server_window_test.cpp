// The window around the forms while its server goes away.
#include <QDeadlineTimer>
#include <QProcess>
#include <QProgressDialog>
#include <QStatusBar>
#include <QTimer>
#include <fstream>
#include <sstream>

#include "desktop/live_desk.h"
#include "desktop/main_window.h"
#include "desktop/server_watch.h"
#include "invoices/apform_invoice.h"
#include "support/private_cluster.h"
#include "support/test_server.h"

namespace brimley::testing {

class ServerWindow : public ::testing::Test {
  protected:
    ServerWindow() {
        company::create_company_file(uri, company::SampleCompany{"anna"});
        options.user = "anna";
        options.path = "/brimley";
        open_window();
    }
    void open_window() {
        window = std::make_unique<desktop::MainWindow>(options, desktop::MainWindow::Memory::none);
        window->desk().on_box = [this](QMessageBox& box) {
            boxes.push_back(box.text().toStdString());
            details = box.detailedText().toStdString();
            box.button(QMessageBox::Ok)->click();
        };
        window->show();
    }
    void open() {
        window->open_company(QString::fromStdString(uri));
        window->show_form("APform_invoice");
    }
    invoices::APform_invoice& form() { return *window->ap()->frm_invoice; }
    void press(int id) { window->desk().windows().back()->press(id); }
    // The band of the connection; empty while it is hidden.
    std::string state() {
        const auto* const label = window->findChild<QLabel*>("server_state");
        return label->isHidden() ? std::string() : label->text().toStdString();
    }

    PrivateCluster server;
    const std::string uri = server.uri("books");
    opening::HostOptions options;
    std::unique_ptr<desktop::MainWindow> window;
    std::vector<std::string> boxes;
    std::string details;  // of the last one
};

TEST_F(ServerWindow, EntryOfAProgramThatWasKilledIsTakenUpAgain) {
    QProcess typist;
    typist.setProcessChannelMode(QProcess::MergedChannels);
    typist.start(QCoreApplication::applicationDirPath() + "/brimley-typist", {QString::fromStdString(uri)});
    ASSERT_TRUE(typist.waitForFinished(60000));
    ASSERT_EQ(typist.exitStatus(), QProcess::CrashExit) << typist.readAll().toStdString();
    window = std::make_unique<desktop::MainWindow>(options, desktop::MainWindow::Memory::kept);
    open();
    QApplication::processEvents();
    auto* const take_up = window->findChild<QPushButton*>("take_up");
    ASSERT_NE(take_up, nullptr);
    take_up->click();
    QApplication::processEvents();
    EXPECT_EQ(form().mode(), frame::Mode::new_entry);
    EXPECT_EQ(form().txtremark.text(), "before the cut");
    EXPECT_EQ(form().dbgrid1.cell(0, "gross amount"), "81.00");
}

TEST_F(ServerWindow, SaysThatTheConnectionWasLostAndIsBackAndKeepsWhatWasTyped) {
    open();
    EXPECT_TRUE(window->windowTitle().startsWith("books - Brimley AP"));
    EXPECT_EQ(state(), "");
    press(105);
    EXPECT_EQ(form().txtremark.type("stands here still"), controls::Refusal::none);
    server.halt("immediate");
    press(101);
    EXPECT_EQ(state().substr(0, 44), "The connection to the server was lost at " + state().substr(41, 3));
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.back(), frame::kLostForNowMessage);
    server.resume();
    press(208);
    EXPECT_EQ(state(), "");
    EXPECT_TRUE(window->statusBar()->currentMessage().startsWith("The connection to the server is back at "));
    EXPECT_EQ(form().txtremark.text(), "stands here still");
    EXPECT_EQ(form().mode(), frame::Mode::new_entry);
}

TEST_F(ServerWindow, SaysAtOpeningThatTheCompanyCanOnlyBeRead) {
    on_server(uri, "ALTER DATABASE books SET default_transaction_read_only = on");
    open();
    EXPECT_EQ(state(), "postgresql://" + server.folder() +
                           "/books is on a server that takes no changes, and can only be read");
    enter(form(), {.lines = {{"5000", "", "gross amount", "75.00"}}});
    press(101);
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.back(), "Add new Invoice failed");
    EXPECT_NE(details.find("read-only transaction"), std::string::npos) << details;
}

TEST_F(ServerWindow, AsksForThePasswordThatTheServerWants) {
    on_server(uri, "CREATE ROLE carla SUPERUSER LOGIN PASSWORD 'x y:&'");
    {
        const std::string rules = server.folder() + "/data/pg_hba.conf";
        std::stringstream before;
        before << std::ifstream(rules).rdbuf();
        std::ofstream(rules) << "local all carla scram-sha-256\n" << before.str();
    }
    on_server(uri, "SELECT pg_reload_conf()");
    const QString company = QString::fromStdString(server.uri("books")).replace("brimley&", "carla&");
    std::vector<std::string> asked;
    std::optional<std::string> answer;
    options.ask_password = [&](const std::string& name) -> std::optional<company::Secret> {
        asked.push_back(name);
        if (!answer) return std::nullopt;
        return company::Secret(*answer);
    };
    open_window();
    const auto failure = [&]() -> std::string {
        try {
            window->open_company(company);
            return "";
        } catch (const store::Error& error) {
            return error.what();
        }
    };
    EXPECT_NE(failure().find("no password supplied"), std::string::npos);
    answer = "wrong";
    EXPECT_NE(failure().find("password authentication failed for user \"carla\""), std::string::npos);
    answer = "x y:&";
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(asked, std::vector<std::string>(3, "carla"));
    EXPECT_EQ(window->ap()->OPEN_DATABASE.find("password"), std::string::npos);
    window->show_form("APform_invoice");
    press(105);
    server.halt("immediate");
    server.resume();
    press(208);  // connected again, without asking
    EXPECT_EQ(form().mode(), frame::Mode::new_entry);
    EXPECT_EQ(asked.size(), 3U);
}

TEST_F(ServerWindow, OffersAfterAMomentNotToWaitAnyLonger) {
    open();
    on_server(uri,
              "CREATE FUNCTION slow() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN PERFORM pg_sleep(60); "
              "RETURN new; END'");
    on_server(
        uri,
        "CREATE TRIGGER slow BEFORE UPDATE ON brimley.form_property_table FOR EACH ROW EXECUTE FUNCTION "
        "slow()");
    int seen = 0;
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, [&] {
        auto* const box = window->findChild<QProgressDialog*>("server_wait");
        if (box == nullptr || !box->isVisible()) return;
        ++seen;
        EXPECT_TRUE(box->isModal());
        box->findChild<QPushButton*>()->click();
    });
    looking.start(50);
    const QDeadlineTimer patience(20000);
    window->close_company();
    EXPECT_FALSE(patience.hasExpired());
    EXPECT_GT(seen, 0);
    EXPECT_EQ(window->findChild<QProgressDialog*>("server_wait"), nullptr);
}

}  // namespace brimley::testing
