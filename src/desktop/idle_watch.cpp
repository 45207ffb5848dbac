#include "desktop/idle_watch.h"

#include <QApplication>
#include <QEvent>

namespace brimley::desktop {

IdleWatch::IdleWatch(std::chrono::milliseconds pause, std::function<void()> on_idle) {
    pause_.setSingleShot(true);
    pause_.setInterval(pause);
    QObject::connect(&pause_, &QTimer::timeout, this, [idle = std::move(on_idle)] {
        if (QApplication::activeModalWidget() == nullptr) idle();
    });
    qApp->installEventFilter(this);
    pause_.start();
}

bool IdleWatch::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::MouseButtonRelease) pause_.start();
    return QObject::eventFilter(watched, event);
}

}  // namespace brimley::desktop
