// brimley-bookkeeper: works at the program's window as a script tells, by keyboard alone or by mouse.
//
//   brimley-bookkeeper COMPANY SCRIPT [--pictures FOLDER] [--prefix NAME] [--dark]
//
// The script's first line says "by keyboard" or "by mouse"; letters and digits are typed either way. A line
// is one act or one look:
//
//   key Ctrl+N                     menu Forms > Payments          expect message Add new *
//   key Return * 3                 tool Save                      expect cmbvendor = V1001
//   go txtinvno                    click txtinvno                 expect mode New
//   type coffee                    list cmbvendor / row V1001     expect stamp PAID
//                                  cell dbgrid1 0 description     expect window Preview*
//                                  edit dbgrid1 0 description     expect focus cmbvendor
//                                  button Yes / close             picture NAME
//
// "*" stands for any text in a message or title. The clock stands at the morning of 1 July 2026. Status: 0,
// or 1 after the line that could not be done or did not see what it expects.
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPdfView>
#include <QRegularExpression>
#include <QTimer>
#include <iostream>

#include "desktop/hands.h"
#include "desktop/theme.h"
#include "frame/form.h"
#include "support/program_options.h"

namespace brimley::testing {
namespace {

struct Options {
    std::string company;
    std::string script;
    std::string pictures;
    std::string prefix;
    bool dark = false;
};

class Bookkeeper {
  public:
    Bookkeeper(desktop::MainWindow& window, const Options& options)
        : hands_(window), window_(window), options_(options) {
        QFile file(QString::fromStdString(options.script));
        if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error(options.script + " cannot be read");
        lines_ = QString::fromUtf8(file.readAll()).split('\n');
        // A box waits for its answer within the act that has opened it.
        window.desk().on_box = [this](QMessageBox& box) {
            while (box.isVisible() && next_ < lines_.size() && faults_ == 0)
                do_next();
            if (box.isVisible()) box.reject();
        };
    }

    int work() {
        while (next_ < lines_.size() && faults_ == 0)
            do_next();
        return faults_ == 0 ? 0 : 1;
    }

  private:
    void do_next() {
        const qsizetype number = ++next_;
        const QString line = lines_[number - 1].section("  #", 0, 0).trimmed();
        if (line.isEmpty() || line.startsWith('#')) return;
        try {
            const QString verb = line.section(' ', 0, 0);
            act(verb, line.mid(verb.size()).trimmed());
            settle();
        } catch (const std::exception& failure) {
            ++faults_;
            std::cerr << options_.script << ':' << number << ": " << line.toStdString() << ": "
                      << failure.what() << '\n';
            take_picture("fault");
        }
    }

    void act(const QString& verb, const QString& rest) {
        if (verb == "by") {
            by_mouse_ = rest == "mouse";
        } else if (verb == "type") {
            Hands::type(rest);
        } else if (verb == "expect") {
            expect(rest);
        } else if (verb == "picture") {
            take_picture(rest);
        } else if (verb == "go") {
            go_to(rest);
        } else if (verb == "key") {
            if (by_mouse_) throw std::runtime_error("a key, by mouse");
            const int times = rest.contains(" * ") ? rest.section(" * ", 1).toInt() : 1;
            for (int i = 0; i < times; ++i) {
                const QPointer<QMessageBox> box = Hands::box();
                Hands::press_key(QKeySequence(rest.section(" * ", 0, 0)));
                settle();
                if (box) let_button_spring_back(*box);
            }
        } else {
            if (!by_mouse_) throw std::runtime_error("a click, by keyboard");
            click(verb, rest);
        }
    }

    // A button that is pressed by its letter is seen to go down first.
    static void let_button_spring_back(const QMessageBox& box) {
        const QDeadlineTimer deadline(250);
        while (box.isVisible() && !deadline.hasExpired())
            QApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    // From field to field, as often as it takes.
    void go_to(const QString& field) {
        if (by_mouse_) throw std::runtime_error("keys, by mouse");
        constexpr int kFieldsMax = 60;
        for (int i = 0; i < kFieldsMax && Hands::name_of_focus() != field.toStdString(); ++i) {
            Hands::press_key(QKeySequence(Qt::Key_Return));
            settle();
        }
        expect_like(field, QString::fromStdString(Hands::name_of_focus()));
    }

    void click(const QString& verb, const QString& what) {
        if (verb == "menu") return hands_.choose(what.section(" > ", 0, 0), what.section(" > ", 1));
        if (verb == "tool") return hands_.click_tool(what);
        if (verb == "click") return hands_.click_control(what);
        if (verb == "list") return hands_.open_list_of(what);
        if (verb == "row") return hands_.click_row(what);
        if (verb == "button") return hands_.click_button(what);
        if (verb == "close") return hands_.close_window_in_front();
        if (verb == "cell" || verb == "edit")
            return hands_.click_cell(what.section(' ', 0, 0), what.section(' ', 1, 1).toInt(),
                                     what.section(' ', 2), verb == "edit");
        throw std::runtime_error("no such act");
    }

    static void expect_like(const QString& wanted, const QString& seen) {
        const QRegularExpression like(
            QRegularExpression::anchoredPattern(QRegularExpression::escape(wanted).replace("\\*", ".*")),
            QRegularExpression::DotMatchesEverythingOption);
        if (!like.match(seen).hasMatch()) throw std::runtime_error("it is \"" + seen.toStdString() + '"');
    }

    void expect(const QString& what) {
        const QString kind = what.section(' ', 0, 0);
        const QString wanted = what.section(' ', 1);
        if (kind == "message") {
            const QMessageBox* const box = Hands::box();
            expect_like(wanted, box == nullptr ? "no message" : box->text());
        } else if (kind == "mode") {
            expect_like(wanted, hands_.form().mode_shown());
        } else if (kind == "stamp") {
            expect_like(wanted, hands_.form().stamp_shown());
        } else if (kind == "window") {
            const QMdiSubWindow* const at = window_.area().currentSubWindow();
            expect_like(wanted, at == nullptr ? "no window" : at->windowTitle());
        } else if (kind == "focus") {
            expect_like(wanted, QString::fromStdString(Hands::name_of_focus()));
        } else if (kind == "closed") {
            if (window_.isVisible()) throw std::runtime_error("the program is open");
        } else {
            expect_like(what.section(" = ", 1), QString::fromStdString(hands_.text_of(kind)));
        }
    }

    // What the program does by itself is over: the queue is empty, and pages are drawn.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        // Where there is no screen, nobody else brings the window up again when a box has gone.
        if (QApplication::activeWindow() == nullptr && window_.isVisible())
            QApplication::setActiveWindow(&window_);
    }

    // The pages of a PDF file are drawn beside the event loop.
    static void let_pages_be_drawn() {
        const QDeadlineTimer deadline(1'000);
        while (!deadline.hasExpired())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    }

    void take_picture(const QString& name) {
        if (options_.pictures.empty()) return;
        if (window_.findChild<QPdfView*>() != nullptr) let_pages_be_drawn();
        const QString file = QDir(QString::fromStdString(options_.pictures))
                                 .filePath(QString::fromStdString(options_.prefix) + name + ".png");
        if (!hands_.picture().save(file)) throw std::runtime_error(file.toStdString() + " cannot be written");
    }

    Hands hands_;
    desktop::MainWindow& window_;
    const Options& options_;
    QStringList lines_;
    qsizetype next_ = 0;
    bool by_mouse_ = false;
    int faults_ = 0;
};

store::DateTime morning() {
    auto moment = store::DateTime::from_ymd(2026, 7, 1).value();
    moment.second_of_day = 9 * 3600;
    return moment;
}

int run(const Options& options) {
    desktop::use_fonts();
    desktop::use_theme(options.dark ? desktop::Theme::dark : desktop::Theme::light);
    opening::HostOptions host;
    host.user = "anna";
    host.company_name = "Pier Street Coffee & Tea";
    desktop::MainWindow window(host);
    window.desk().clock = morning;
    window.resize(1366, 740);
    window.show();
    QApplication::setActiveWindow(&window);
    window.open_company(QString::fromStdString(options.company));
    QApplication::processEvents();
    return Bookkeeper(window, options).work();
}

}  // namespace
}  // namespace brimley::testing

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    brimley::testing::Options options;
    brimley::testing::ProgramOptions program("brimley-bookkeeper", "Works at the program's window");
    program.required("company", options.company, "its path");
    program.required("script", options.script, "what is done");
    program.option("--pictures", options.pictures, "folder of the pictures; none: none are taken");
    program.option("--prefix", options.prefix, "of their names");
    program.flag("--dark", options.dark, "light on dark");
    return program.run(argc, argv, [&] { return brimley::testing::run(options); });
}
