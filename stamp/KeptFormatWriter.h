#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// Writes a stamped photo in its source's format with the source's metadata, for
// people who keep the stamped copies in place of the originals.
namespace KeptFormatWriter {

// Longer side of the EXIF thumbnail that replaces the source's, as cameras make it.
constexpr int kThumbnailSide = 160;

// The format the stamped copy of a photo read as sourceFormat ("jpeg", "png",
// ...) is written in: JPEG, PNG and TIFF stay themselves, anything else is BMP.
QByteArray outputFormat(const QByteArray& sourceFormat);

struct Result {
    bool written = false;
    QString error;  // why nothing was written
    QString note;   // what the written file lacks, e.g. EXIF that could not be written back
};

// Writes image as fileName in outputFormat(sourceFormat); a JPEG at the source's
// quality. EXIF, IPTC, XMP, the comment and the colour profile of sourcePath
// are copied; its EXIF thumbnail is replaced by one of image, and with upright
// the orientation tag says 1. The file is replaced atomically, a symbolic link
// at the path replaced rather than written through.
Result save(const QImage& image, const QString& sourcePath, const QByteArray& sourceFormat,
            const QString& fileName, bool upright);

}  // namespace KeptFormatWriter
