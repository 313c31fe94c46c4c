#pragma once

#include <QString>
#include <QVariant>

// One posted notification: its name and the object that came with it.
struct Notification {
    QString name;
    QVariant object;
};
