#pragma once

#include <QImage>
#include <QString>
#include <optional>

// Writes a JPEG carrying what a camera stores beside the picture: EXIF dates,
// a stated resolution (JFIF density and EXIF) and an embedded thumbnail.
namespace ExifJpegWriter {

struct Fields {
    std::optional<QString> dateTimeOriginal;   // "YYYY:MM:DD HH:MM:SS"
    std::optional<QString> dateTimeDigitized;  // as above
    int dpi = 72;
    QImage thumbnail;  // none stored when null
    QString make;      // Exif.Image.Make and Model, left out when empty
    QString model;
    int orientation = 0;  // Exif.Image.Orientation, left out when 0
};

// Replaces path; false, with the reason in *error when given, on failure.
bool write(const QString& path, QImage image, const Fields& fields, int quality = 90,
           QString* error = nullptr);

}  // namespace ExifJpegWriter
