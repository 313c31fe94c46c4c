#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "catalog/Orientation.h"

// What the catalog reads from a photo's embedded metadata (EXIF, JFIF, PNG
// pHYs). Every reader here treats its input as hostile: malformed data gives
// empty fields, never an exception or a crash.
namespace ExifMetadata {

struct Fields {
    std::optional<QString> dateTimeOriginal;
    std::optional<QString> dateTimeDigitized;
    // Stated resolution in dots per inch; nullopt when the file states none.
    std::optional<double> dpiX;
    std::optional<double> dpiY;
    // The orientation tag, 1..8; Orientation::kNormal when absent or unknown.
    int orientation = Orientation::kNormal;
    // The EXIF thumbnail's encoded bytes (JPEG or TIFF), empty when absent.
    QByteArray thumbnail;
};

// Reads the file at path. withThumbnail=false skips copying the thumbnail.
Fields readFile(const QString& path, bool withThumbnail = true);
// Same, from bytes already in memory.
Fields readBuffer(const uchar* data, qint64 size, bool withThumbnail = true);

// The EXIF dates of the last image in a TIFF file (each page has its own
// directory); empty fields for anything else.
Fields readLastTiffPageDates(const QString& path);
// Same over a byte buffer (the whole file).
Fields readLastTiffPageDatesFromBuffer(const QByteArray& data);

// Resolution stated by the container itself, from the first bytes of the file:
// JFIF APP0 density for JPEG, the pHYs chunk for PNG.
std::optional<std::pair<double, double>> containerDpi(const QByteArray& head);

// Mutes the library's console output and initialises its XML parser once;
// called by the readers above, safe from any thread.
void initialise();

}  // namespace ExifMetadata
