#include "common/Sandbox.h"

#include <sys/stat.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>

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

QString Sandbox::photo(const QString& name, const PhotoRecipe& recipe) const {
    QImage image = TestImages::solid(recipe.size, recipe.colour);
    const QString suffix = QFileInfo(name).suffix().toLower();
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg")) {
        ExifJpegWriter::Fields fields;
        fields.dateTimeOriginal = recipe.dateTimeOriginal;
        fields.dateTimeDigitized = recipe.dateTimeDigitized;
        fields.dpi = recipe.dpi;
        if (recipe.thumbnail.isValid()) {
            fields.thumbnail = TestImages::solid(recipe.thumbnail, Qt::red);
        }
        return ExifJpegWriter::write(path(name), image, fields) ? path(name) : QString();
    }
    const int dotsPerMeter = qRound(recipe.dpi / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    return image.save(path(name)) ? path(name) : QString();
}
