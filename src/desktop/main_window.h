// The window around all: it opens and makes companies, lists the forms of the module, holds their windows
// side by side, and answers what they ask for.
//
// One company at a time, one APclass on it. When the company is left, each form leaves by its own Exit, which
// asks nothing; the window asks before, where something was entered and not saved.
#pragma once

#include <QMainWindow>
#include <QSize>
#include <memory>

#include "desktop/desktop_desk.h"
#include "desktop/idle_watch.h"
#include "desktop/program_menus.h"
#include "desktop/requests.h"
#include "desktop/settings.h"
#include "host/apclass.h"
#include "opening/host_options.h"

class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QStackedWidget;
class QVBoxLayout;

namespace brimley::desktop {

class EntryKeeper;

class MainWindow : public QMainWindow {
  public:
    // Whether companies and places are remembered for the next time, and recalled from the last.
    enum class Memory { kept, none };
    // What it has at first, in points; smaller where the screen is.
    static constexpr QSize kUsualSize{1366, 740};
    // idle_after: the pause of the user after which the company file is tidied.
    explicit MainWindow(const opening::HostOptions& options, Memory memory = Memory::kept,
                        std::chrono::milliseconds idle_after = std::chrono::seconds(10));
    ~MainWindow() override;

    // Opens the company in place of the one that is open. Throws std::exception when it cannot be opened;
    // then nothing has changed.
    void open_company(const QString& company);
    // For a person: opens the company that was chosen, if one was, on the form that most of the work is done
    // in. What is in the way is told in a box.
    void open_with_form(const std::optional<QString>& company);
    void close_company();
    void open_sample();

    // Null while no company is open.
    [[nodiscard]] host::APclass* ap() { return ap_.get(); }
    [[nodiscard]] DesktopDesk& desk() { return desk_; }
    [[nodiscard]] QMdiArea& area() { return *area_; }
    // Asks about each entry that stands open. False when the user wants to stay.
    [[nodiscard]] bool let_entries_go();
    // Shows a form of the module by the name of its class, such as APform_invoice. False when nothing came to
    // the screen.
    bool show_form(const std::string& class_name);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void make_welcome_page();
    void make_forms_page();
    void list_recent_companies();
    // The same for a person: false, after a box, when it cannot be opened.
    [[nodiscard]] bool open_or_tell(const QString& company);
    // Beside the forms; when it is closed, the window that asked for it comes back.
    void place(QWidget& window);
    void place_form(FormWindow& window);
    [[nodiscard]] QMdiSubWindow* sub_window_of(const QWidget& window) const;
    void refresh_state();
    void refresh_page();
    void refresh_menus();
    void tell(const QString& text);
    void watch_server();
    void keep_entries_of(FormWindow& window);
    [[nodiscard]] EntryKeeper* keeper_of(const FormWindow& window) const;
    // The one whose form is in the middle of an act; null when none is.
    [[nodiscard]] EntryKeeper* acting_keeper() const;
    [[nodiscard]] bool call_again(FormWindow& window, const controls::Act& act);
    void show_state(const QString& text);
    // Brings what was saved into the company file itself, for those who copy it at night.
    void tidy_company();

    opening::HostOptions options_;
    Memory memory_;
    Settings settings_;
    DesktopDesk desk_;
    std::unique_ptr<host::APclass> ap_;
    std::unique_ptr<Requests> requests_;
    QString company_;  // as it may be shown; empty while none is open
    IdleWatch idle_;
    QStackedWidget* pages_;
    QMdiArea* area_;
    ProgramMenus menus_;
    QLabel* server_state_;  // what is wrong with the connection, or that nothing can be changed
    QWidget* welcome_page_ = nullptr;
    QWidget* forms_page_ = nullptr;
    QVBoxLayout* recent_buttons_ = nullptr;
    QObject while_it_lives_;  // gone before the windows inside are: their end is nobody's concern then
};

}  // namespace brimley::desktop
