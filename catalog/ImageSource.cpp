#include "catalog/ImageSource.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include "catalog/PcxFormat.h"
#include "catalog/RegularFile.h"

namespace {

// Image readers refuse to allocate more than this for one decode.
constexpr int kAllocationLimitMB = 256;
// More pages than this in one file is not a photo.
constexpr int kMaxPages = 1024;
// Enough of the file to find a JFIF density or a PNG pHYs chunk.
constexpr qint64 kHeadBytes = 64 * 1024;

bool saneSize(const QSize& size) {
    return size.width() > 0 && size.height() > 0 && size.width() <= ImageSource::kMaxSide &&
           size.height() <= ImageSource::kMaxSide &&
           qint64(size.width()) * size.height() <= ImageSource::kMaxPixels;
}

QSize fitWithin(const QSize& size, int maxSide) {
    if (size.width() <= maxSide && size.height() <= maxSide) {
        return size;
    }
    QSize fitted = size.scaled(maxSide, maxSide, Qt::KeepAspectRatio);
    return fitted.expandedTo(QSize(1, 1));
}

// Reads the reader's current image at most maxSide on its longer side,
// asking the decoder to scale while decoding where it can.
QImage readScaled(QImageReader& reader, int maxSide) {
    reader.setAllocationLimit(kAllocationLimitMB);
    const QSize size = reader.size();
    if (size.isValid() && !saneSize(size)) {
        return {};
    }
    if (size.isValid()) {
        const QSize target = fitWithin(size, maxSide);
        if (target != size) {
            reader.setScaledSize(target);
        }
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return {};
    }
    if (image.width() > maxSide || image.height() > maxSide) {
        image = image.scaled(fitWithin(image.size(), maxSide), Qt::KeepAspectRatio,
                             Qt::SmoothTransformation);
    }
    return image;
}

}  // namespace

ImageSource::ImageSource(const QString& path) : path_(path) {
    PcxFormat::registerFormat();
}

const ImageSource::Header& ImageSource::header() {
    std::call_once(headerOnce_, [this] {
        if (!RegularFile::exists(path_)) {
            return;
        }
        QImageReader reader(path_);
        reader.setAllocationLimit(kAllocationLimitMB);
        if (!reader.canRead()) {
            return;
        }
        // Asked before anything else: the TIFF reader miscounts (and complains
        // on the console) once it has read a header.
        const int count = std::min(reader.imageCount(), kMaxPages);
        QSize first = reader.size();
        if (!first.isValid()) {
            // A reader that cannot tell the size without decoding.
            first = reader.read().size();
        }
        if (!saneSize(first)) {
            return;
        }
        header_.readable = true;
        header_.format = reader.format();
        header_.pages.append(first);
        for (int i = 1; i < count; ++i) {
            if (!reader.jumpToImage(i)) {
                break;
            }
            const QSize page = reader.size();
            if (saneSize(page)) {
                header_.pages.append(page);
            }
        }
    });
    return header_;
}

const ExifMetadata::Fields& ImageSource::metadata() {
    std::call_once(metadataOnce_, [this] {
        if (!header().readable) {
            return;
        }
        metadata_ = ExifMetadata::readFile(path_, true);
        hasEmbeddedThumbnail_ = !metadata_.thumbnail.isEmpty();
        QFile file(path_);
        if (file.open(QIODevice::ReadOnly)) {
            const auto dpi = ExifMetadata::containerDpi(file.read(kHeadBytes));
            // The container's own statement (JFIF, pHYs) wins over the EXIF copy.
            if (dpi) {
                metadata_.dpiX = dpi->first;
                metadata_.dpiY = dpi->second;
            }
        }
    });
    return metadata_;
}

const ExifMetadata::Fields& ImageSource::lastPage() {
    std::call_once(lastPageOnce_, [this] {
        const Header& h = header();
        if (h.pages.size() > 1 && h.format == "tiff") {
            lastPage_ = ExifMetadata::readLastTiffPageDates(path_);
        } else {
            lastPage_.dateTimeOriginal = metadata().dateTimeOriginal;
            lastPage_.dateTimeDigitized = metadata().dateTimeDigitized;
        }
    });
    return lastPage_;
}

bool ImageSource::isReadable() {
    return header().readable;
}

QByteArray ImageSource::format() {
    return header().format;
}

QSize ImageSource::pixelSize() {
    const Header& h = header();
    return h.pages.isEmpty() ? QSize() : h.pages.first();
}

QList<QSize> ImageSource::pageSizes() {
    return header().pages;
}

QSize ImageSource::maxPageSize() {
    QSize result(0, 0);
    for (const QSize& page : header().pages) {
        result = result.expandedTo(page);
    }
    return result;
}

std::optional<QString> ImageSource::dateTimeOriginal() {
    return metadata().dateTimeOriginal;
}

std::optional<QString> ImageSource::dateTimeDigitized() {
    return metadata().dateTimeDigitized;
}

std::optional<QString> ImageSource::lastPageDateTimeOriginal() {
    return lastPage().dateTimeOriginal;
}

std::optional<QString> ImageSource::lastPageDateTimeDigitized() {
    return lastPage().dateTimeDigitized;
}

double ImageSource::dpiX() {
    return metadata().dpiX.value_or(kDefaultDpi);
}

double ImageSource::dpiY() {
    return metadata().dpiY.value_or(kDefaultDpi);
}

QSizeF ImageSource::pointSize() {
    const QSize pixels = pixelSize();
    if (pixels.isEmpty()) {
        return {};
    }
    return {pixels.width() * 72.0 / dpiX(), pixels.height() * 72.0 / dpiY()};
}

int ImageSource::orientation() {
    return metadata().orientation;
}

QByteArray ImageSource::takeEmbeddedThumbnail() {
    metadata();
    std::lock_guard lock(thumbnailMutex_);
    if (!hasEmbeddedThumbnail_) {
        return {};
    }
    // Kept only until the first preview is made; a later one reads it again.
    if (metadata_.thumbnail.isEmpty()) {
        return ExifMetadata::readFile(path_, true).thumbnail;
    }
    QByteArray data;
    data.swap(metadata_.thumbnail);
    return data;
}

QImage ImageSource::decodeEmbedded(const QByteArray& data, int maxSide) const {
    QBuffer buffer;
    buffer.setData(data);
    if (!buffer.open(QIODevice::ReadOnly)) {
        return {};
    }
    // Name the format from the data: probing every reader makes some of them
    // print complaints about data that is not theirs.
    QByteArray format;
    if (data.startsWith("\xFF\xD8")) {
        format = "jpeg";
    } else if (data.startsWith("II") || data.startsWith("MM")) {
        format = "tiff";
    } else {
        return {};
    }
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    return readScaled(reader, maxSide);
}

QImage ImageSource::decodeReduced(int maxSide) {
    QImageReader reader(path_);
    if (!reader.canRead()) {
        return {};
    }
    return readScaled(reader, maxSide);
}

QImage ImageSource::reducedImage(int maxSide) {
    if (maxSide <= 0 || !header().readable) {
        return {};
    }
    return decodeReduced(maxSide);
}

QImage ImageSource::thumbnail(int maxSide) {
    if (maxSide <= 0 || !header().readable) {
        return {};
    }
    const QByteArray embedded = takeEmbeddedThumbnail();
    QImage image = embedded.isEmpty() ? QImage() : decodeEmbedded(embedded, maxSide);
    if (image.isNull()) {
        image = decodeReduced(maxSide);
    }
    // A browser holds thousands of these: three bytes a pixel where there is no alpha.
    if (!image.isNull() && !image.hasAlphaChannel()) {
        image.convertTo(QImage::Format_RGB888);
    }
    return image;
}
