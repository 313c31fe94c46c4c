#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <utility>

// Runs fn on the main thread. With wait, the caller blocks until fn has run;
// on the main thread itself fn runs at once either way.
namespace MainThread {
template <typename Fn>
void perform(Fn&& fn, bool wait) {
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr || QThread::currentThread() == app->thread()) {
        fn();
        return;
    }
    QMetaObject::invokeMethod(app, std::forward<Fn>(fn),
                              wait ? Qt::BlockingQueuedConnection : Qt::QueuedConnection);
}
}  // namespace MainThread
