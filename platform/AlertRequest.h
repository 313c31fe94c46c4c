#pragma once

#include <QString>
#include <QStringList>

// A modal alert: title, message, optional informative text and its buttons,
// the default button first.
struct AlertRequest {
    QString title;
    QString message;
    QString informativeText;
    QStringList buttons;
};
