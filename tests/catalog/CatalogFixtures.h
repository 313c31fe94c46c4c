#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Writes the bytes into path, replacing it.
inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}
