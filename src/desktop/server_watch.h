// What the windows say of the connection to a server, and how a person ends the wait for its answer.
//
// While an answer is awaited nothing is typed or clicked anywhere: after a moment a box appears, which is all
// that takes anything, with the wish to wait no longer.
#pragma once

#include <QPointer>
#include <QString>
#include <functional>

#include "kernel/store/database.h"

class QProgressDialog;
class QWidget;

namespace brimley::desktop {

class ServerWatch final : public store::ConnectionWatch {
  public:
    // Boxes stand over this window.
    explicit ServerWatch(QWidget& window) : window_(&window) {}
    ~ServerWatch() override;

    // The state of the connection in a few words, to be shown until the next ones; empty: all is well.
    std::function<void(const QString& text)> on_state;
    // What has just happened.
    std::function<void(const QString& text)> on_news;

    void connection_lost() override;
    void connection_back(const std::string& reading_only_because) override;
    [[nodiscard]] bool go_on_waiting(std::chrono::milliseconds so_far) override;
    void wait_is_over() override;

  private:
    void show_box();

    QPointer<QWidget> window_;
    QPointer<QProgressDialog> box_;
};

}  // namespace brimley::desktop
