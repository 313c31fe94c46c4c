#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <functional>
#include <vector>

#include "platform/Notification.h"

// Named notifications delivered synchronously, on the posting thread, to every
// observer registered for that name.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    static NotificationCenter& defaultCenter();

    // The registration ends with removeObserver(observer) or when observer is destroyed.
    void addObserver(QObject* observer, const QString& name, Handler handler);
    void removeObserver(QObject* observer);
    void post(const QString& name, const QVariant& object = {});

    int observerCount(const QString& name) const;

  private:
    struct Entry {
        QObject* observer;
        QString name;
        Handler handler;
        quint64 id;
    };
    mutable QMutex mutex_;
    std::vector<Entry> entries_;
    quint64 nextId_ = 1;
};
