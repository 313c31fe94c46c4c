#include "ExifJpegWriter.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <exiv2/exiv2.hpp>

namespace ExifJpegWriter {

namespace {

QByteArray encodeJpeg(const QImage& image, int quality) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.write(image);
    return bytes;
}

}  // namespace

bool write(const QString& path, QImage image, const Fields& fields, int quality, QString* error) {
    const auto fail = [error](const QString& reason) {
        if (error != nullptr) {
            *error = reason;
        }
        return false;
    };
    const int dotsPerMeter = qRound(fields.dpi / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    const QByteArray bytes = encodeJpeg(image, quality);
    QFile file(path);
    if (bytes.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(bytes) != bytes.size()) {
        return fail(QStringLiteral("cannot write %1").arg(path));
    }
    file.close();
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    try {
        auto exivImage = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        exivImage->readMetadata();
        Exiv2::ExifData& exif = exivImage->exifData();
        if (!fields.make.isEmpty()) {
            exif["Exif.Image.Make"] = fields.make.toStdString();
        }
        if (!fields.model.isEmpty()) {
            exif["Exif.Image.Model"] = fields.model.toStdString();
        }
        exif["Exif.Image.XResolution"] = Exiv2::URational(fields.dpi, 1);
        exif["Exif.Image.YResolution"] = Exiv2::URational(fields.dpi, 1);
        exif["Exif.Image.ResolutionUnit"] = uint16_t(2);  // inches
        if (fields.orientation != 0) {
            exif["Exif.Image.Orientation"] = uint16_t(fields.orientation);
        }
        if (fields.dateTimeOriginal) {
            exif["Exif.Photo.DateTimeOriginal"] = fields.dateTimeOriginal->toStdString();
        }
        if (fields.dateTimeDigitized) {
            exif["Exif.Photo.DateTimeDigitized"] = fields.dateTimeDigitized->toStdString();
        }
        if (!fields.thumbnail.isNull()) {
            const QByteArray thumb = encodeJpeg(fields.thumbnail, 80);
            Exiv2::ExifThumb(exif).setJpegThumbnail(
                reinterpret_cast<const Exiv2::byte*>(thumb.constData()), long(thumb.size()));
        }
        exivImage->writeMetadata();
    } catch (const std::exception& e) {
        return fail(QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(e.what())));
    }
    return true;
}

}  // namespace ExifJpegWriter
