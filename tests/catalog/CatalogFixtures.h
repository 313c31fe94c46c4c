#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <optional>

// Files the catalog tests write into their temporary folders.
namespace CatalogFixtures {

struct JpegOptions {
    QSize size{64, 48};
    std::optional<QString> dateTimeOriginal;
    std::optional<QString> dateTimeDigitized;
    // Written both as JFIF density and as EXIF XResolution/YResolution.
    int dpi = 72;
    // An EXIF thumbnail of this size, filled with thumbnailColour.
    std::optional<QSize> thumbnailSize;
    QColor thumbnailColour = Qt::red;
    QColor imageColour = Qt::blue;
};

// A JPEG of one flat colour with the given metadata; false on failure.
bool writeJpeg(const QString& path, const JpegOptions& options);

// Writes bytes to path, replacing it.
bool writeBytes(const QString& path, const QByteArray& bytes);

// A PCX file of the image, run-length encoded with the given layout:
// bitsPerPixel 1/2/4/8 with planes 1, bitsPerPixel 1 with planes 4, or 8 with
// planes 3. Indexed images give their colour table to the 16-colour header or
// the 256-colour trailer.
QByteArray encodePcx(const QImage& image, int bitsPerPixel, int planes);

}  // namespace CatalogFixtures

namespace CatalogFixtures {
// A PNG whose header claims the size; the image data is missing.
QByteArray pngHeader(quint32 width, quint32 height);
// A 24-bit BMP whose header claims the size; the pixel data is missing.
QByteArray bmpHeader(qint32 width, qint32 height);
// An uncompressed 8-bit grey TIFF with one page per size; only the last page
// carries an EXIF directory with DateTimeOriginal = lastPageDate.
QByteArray multiPageTiff(const QList<QSize>& pages, const QByteArray& lastPageDate);
}  // namespace CatalogFixtures
