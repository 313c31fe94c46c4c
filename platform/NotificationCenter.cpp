#include "platform/NotificationCenter.h"

#include <QMutexLocker>
#include <algorithm>

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

void NotificationCenter::addObserver(QObject* observer, const QString& name, Handler handler) {
    {
        QMutexLocker lock(&mutex_);
        const bool known =
            std::any_of(entries_.begin(), entries_.end(),
                        [observer](const Entry& e) { return e.observer == observer; });
        entries_.push_back({observer, name, std::move(handler), nextId_++});
        if (known) {
            return;
        }
    }
    QObject::connect(
        observer, &QObject::destroyed, observer, [this, observer] { removeObserver(observer); },
        Qt::DirectConnection);
}

void NotificationCenter::removeObserver(QObject* observer) {
    QMutexLocker lock(&mutex_);
    std::erase_if(entries_, [observer](const Entry& e) { return e.observer == observer; });
}

void NotificationCenter::post(const QString& name, const QVariant& object) {
    // Copy the matching handlers first: a handler may add or remove observers,
    // and handlers of other threads' posts must not wait on this one.
    std::vector<std::pair<quint64, Handler>> matching;
    {
        QMutexLocker lock(&mutex_);
        for (const Entry& e : entries_) {
            if (e.name == name) {
                matching.emplace_back(e.id, e.handler);
            }
        }
    }
    const Notification notification{name, object};
    for (const auto& [id, handler] : matching) {
        bool stillRegistered = false;
        {
            QMutexLocker lock(&mutex_);
            stillRegistered = std::any_of(entries_.begin(), entries_.end(),
                                          [id = id](const Entry& e) { return e.id == id; });
        }
        if (stillRegistered) {
            handler(notification);
        }
    }
}

int NotificationCenter::observerCount(const QString& name) const {
    QMutexLocker lock(&mutex_);
    return static_cast<int>(std::count_if(entries_.begin(), entries_.end(),
                                          [&](const Entry& e) { return e.name == name; }));
}
