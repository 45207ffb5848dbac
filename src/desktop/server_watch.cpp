#include "desktop/server_watch.h"

#include <QApplication>
#include <QProgressDialog>
#include <QTime>

#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

// Whoever is answered earlier sees no box.
constexpr std::chrono::milliseconds kBoxAfter{1500};

QString time_of_day() { return QTime::currentTime().toString("HH:mm"); }

}  // namespace

ServerWatch::~ServerWatch() { delete box_; }

void ServerWatch::connection_lost() {
    if (on_state) on_state("The connection to the server was lost at " + time_of_day());
}

void ServerWatch::connection_back(const std::string& reading_only_because) {
    if (on_state) on_state(shown(reading_only_because));
    if (on_news) on_news("The connection to the server is back at " + time_of_day());
}

void ServerWatch::show_box() {
    box_ = new QProgressDialog("Waiting for the server...", "Do not wait", 0, 0, window_);
    box_->setObjectName("server_wait");
    box_->setWindowModality(Qt::ApplicationModal);
    box_->setWindowTitle("Brimley AP");
    box_->setMinimumDuration(0);
    box_->show();
}

// Until the box is there people's keys and clicks wait; then it alone takes them.
bool ServerWatch::go_on_waiting(std::chrono::milliseconds so_far) {
    if (!box_ && so_far >= kBoxAfter) show_box();
    QApplication::processEvents(box_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    return !box_ || !box_->wasCanceled();
}

void ServerWatch::wait_is_over() { delete box_; }

}  // namespace brimley::desktop
