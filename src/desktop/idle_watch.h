// Notices that the user has stopped working for a while.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

namespace brimley::desktop {

// Watches the keys and clicks of the whole program.
class IdleWatch : public QObject {
  public:
    // on_idle is called once after each pause of this length. Not while a box is open: somebody is asked.
    IdleWatch(std::chrono::milliseconds pause, std::function<void()> on_idle);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QTimer pause_;
};

}  // namespace brimley::desktop
