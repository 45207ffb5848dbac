// The program's window with a company open in it, and the boxes that it shows.
#pragma once

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <chrono>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktop/live_desk.h"
#include "desktop/main_window.h"

namespace brimley::testing {

class Host : public ::testing::Test {
  protected:
    void SetUp() override {
        QSettings("Brimley", "Brimley AP").clear();
        std::filesystem::remove_all(entries_folder());
        sample_original().copy_to(path);
        options.user = "anna";
        open_window();
    }
    static std::filesystem::path entries_folder() {
        return desktop::Settings().entries_folder().toStdString();
    }
    void open_window(std::chrono::milliseconds idle_after = std::chrono::hours(1)) {
        window =
            std::make_unique<desktop::MainWindow>(options, desktop::MainWindow::Memory::kept, idle_after);
        window->desk().on_box = [this](QMessageBox& box) {
            boxes.push_back(box.text().toStdString());
            answer(box);
        };
        window->show();
        window->open_company(QString::fromStdString(path));
    }
    // By the button that the test wants, if the box has it; else OK or Yes.
    void answer(QMessageBox& box) {
        for (QAbstractButton* const button : box.buttons())
            if (button->text().remove('&') == wanted_button) return button->click();
        QAbstractButton* const usual =
            box.button(box.standardButtons().testFlag(QMessageBox::Ok) ? QMessageBox::Ok : QMessageBox::Yes);
        if (usual == nullptr) {
            ADD_FAILURE() << "no answer to: " << box.text().toStdString();
            return box.reject();
        }
        usual->click();
    }
    // The newest window in the area that is of this kind; null when there is none.
    template <class Kind>
    Kind* newest() {
        Kind* found = nullptr;
        for (QMdiSubWindow* const at : window->area().subWindowList())
            if (auto* const kind = dynamic_cast<Kind*>(at->widget())) found = kind;
        return found;
    }
    // A button on the page that is shown.
    QPushButton* find_button(const QString& text) {
        QApplication::processEvents();
        for (QPushButton* const found : window->findChildren<QPushButton*>())
            if (found->isVisible() && found->text().remove('&') == text) return found;
        return nullptr;
    }
    void click(const QString& text) {
        QPushButton* const found = find_button(text);
        if (found == nullptr) throw std::logic_error("no button " + text.toStdString());
        found->click();
    }
    void ask(const char* formx, const char* docnox = "", const char* arg2 = "") {
        window->ap()->NotifyClients(formx, docnox, arg2);
    }
    // One invoice and its ledger document.
    void save_invoice() {
        ASSERT_TRUE(window->show_form("APform_invoice"));
        auto& form = *window->ap()->frm_invoice;
        enter(form, {.lines = {{"5000", "", "gross amount", "100.00"}}});
        ASSERT_EQ(form.press(101), controls::Refusal::none);
        boxes.clear();
    }

    void save_another_invoice() {
        auto& form = *window->ap()->frm_invoice;
        enter(form, {.lines = {{"5000", "", "gross amount", "40.00"}}});
        ASSERT_EQ(form.press(101), controls::Refusal::none);
        boxes.clear();
    }

    TemporaryFolder folder;
    std::string path = folder.file("company.brimley");
    opening::HostOptions options;
    std::unique_ptr<desktop::MainWindow> window;
    std::vector<std::string> boxes;
    QString wanted_button;
};

}  // namespace brimley::testing
