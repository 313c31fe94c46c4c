#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <mutex>
#include <optional>

#include "catalog/ExifMetadata.h"

// One photo file opened for reading, shared by the preview workers and the
// main thread. Each piece (header probe, metadata) is read at most once, on
// first use, whichever thread asks first; the file is never decoded in full
// for anything here.
class ImageSource {
  public:
    static constexpr int kThumbnailMaxPixelSize = 160;
    // Largest side and area accepted; beyond these a header is taken as bogus
    // rather than risk allocating gigabytes.
    static constexpr int kMaxSide = 65535;
    static constexpr qint64 kMaxPixels = qint64(400) * 1000 * 1000;
    static constexpr double kDefaultDpi = 72.0;

    explicit ImageSource(const QString& path);

    QString path() const { return path_; }

    // True when an image reader recognises the data and its header gives a
    // sane size.
    bool isReadable();
    // Format name as the image reader reports it ("jpeg", "png", ...), empty when unreadable.
    QByteArray format();
    // Size of the first image; empty when unreadable.
    QSize pixelSize();
    // Size of every image in the file (pages of a TIFF); empty when unreadable.
    QList<QSize> pageSizes();
    // Widest page width and highest page height, each taken separately.
    QSize maxPageSize();

    std::optional<QString> dateTimeOriginal();
    std::optional<QString> dateTimeDigitized();
    // The dates of the file's last image (pages of a TIFF each carry their own).
    std::optional<QString> lastPageDateTimeOriginal();
    std::optional<QString> lastPageDateTimeDigitized();
    // Stated resolution; kDefaultDpi when the file states none.
    double dpiX();
    double dpiY();
    // The first image's size at its stated resolution, in points.
    QSizeF pointSize();
    // The EXIF orientation tag, 1..8 (Orientation::kNormal when none).
    int orientation();

    // A preview at most maxSide pixels on its longer side: the embedded EXIF
    // thumbnail when there is one, else a reduced decode. Orientation tags are
    // not applied. Null when nothing can be made.
    QImage thumbnail(int maxSide = kThumbnailMaxPixelSize);
    // The first image decoded at most maxSide pixels on its longer side (the
    // decoder reduces as it reads, so a large photo is never held whole).
    QImage reducedImage(int maxSide);

  private:
    struct Header {
        bool readable = false;
        QByteArray format;
        QList<QSize> pages;
    };
    const Header& header();
    const ExifMetadata::Fields& metadata();
    const ExifMetadata::Fields& lastPage();
    QByteArray takeEmbeddedThumbnail();
    QImage decodeEmbedded(const QByteArray& data, int maxSide) const;
    QImage decodeReduced(int maxSide);

    const QString path_;
    std::once_flag headerOnce_;
    Header header_;
    std::once_flag metadataOnce_;
    ExifMetadata::Fields metadata_;
    std::once_flag lastPageOnce_;
    ExifMetadata::Fields lastPage_;
    std::mutex thumbnailMutex_;
    bool hasEmbeddedThumbnail_ = false;
};
