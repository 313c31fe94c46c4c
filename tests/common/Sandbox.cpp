#include "common/Sandbox.h"

#include <sys/stat.h>
#include <QDir>
#include <QFile>

#include "common/TestImages.h"
#include "tools/ExifJpegWriter.h"

QString Sandbox::write(const QString& name, const QByteArray& bytes) const {
    QFile file(path(name));
    const bool ok =
        file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
    return ok ? file.fileName() : QString();
}

QString Sandbox::mkdir(const QString& name) const {
    return QDir(path()).mkpath(name) ? path(name) : QString();
}

QString Sandbox::fifo(const QString& name) const {
    return ::mkfifo(QFile::encodeName(path(name)).constData(), 0600) == 0 ? path(name) : QString();
}

QString Sandbox::photo(const QString& name, const PhotoSpec& spec) const {
    ExifJpegWriter::Fields fields;
    fields.dateTimeOriginal = spec.dateTimeOriginal;
    fields.dateTimeDigitized = spec.dateTimeDigitized;
    if (spec.thumbnail.isValid()) {
        fields.thumbnail = TestImages::solid(spec.thumbnail, Qt::red);
    }
    const QImage image = TestImages::solid(spec.size);
    return ExifJpegWriter::write(path(name), image, fields) ? path(name) : QString();
}
