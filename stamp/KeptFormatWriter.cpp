#include "stamp/KeptFormatWriter.h"

#include <sys/stat.h>
#include <unistd.h>
#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <exiv2/exiv2.hpp>
#include <memory>
#include <mutex>

#include "stamp/ImageWriter.h"
#include "stamp/JpegQuality.h"

namespace {

// DQT tables come before the image data, well inside this.
constexpr qint64 kJpegHeaderBytes = 1 << 20;
constexpr int kThumbnailQuality = 75;

void initialiseExiv2() {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    });
}

QByteArray encode(const QImage& image, const QByteArray& format, int quality, int compression = 0) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (quality > 0) {
        writer.setQuality(quality);
    }
    writer.setCompression(compression);
    return writer.write(image) ? bytes : QByteArray();
}

QImage thumbnailOf(const QImage& image) {
    const QSize box(KeptFormatWriter::kThumbnailSide, KeptFormatWriter::kThumbnailSide);
    // A fast step to four times the size first, so that the smoothing reads a
    // few hundred thousand pixels rather than all of a camera's.
    const QImage near = image.width() > box.width() * 4 || image.height() > box.height() * 4
                            ? image.scaled(box * 4, Qt::KeepAspectRatio, Qt::FastTransformation)
                            : image;
    return near.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

// The source's EXIF made true of the stamped copy.
// (A TIFF's layout tags need no care: Exiv2 keeps those of the file it writes into.)
Exiv2::ExifData adaptedExif(Exiv2::ExifData exif, const QImage& image, bool upright) {
    if (upright) {
        const auto orientation = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
        if (orientation != exif.end()) {
            *orientation = static_cast<uint16_t>(1);
        }
    }
    for (const auto& [key, value] : {std::pair{"Exif.Photo.PixelXDimension", image.width()},
                                     std::pair{"Exif.Photo.PixelYDimension", image.height()}}) {
        const auto found = exif.findKey(Exiv2::ExifKey(key));
        if (found != exif.end()) {
            *found = static_cast<uint32_t>(value);
        }
    }
    Exiv2::ExifThumb thumb(exif);
    if (std::strlen(thumb.mimeType()) != 0) {
        thumb.erase();
        const QByteArray small = encode(thumbnailOf(image), "jpeg", kThumbnailQuality);
        if (!small.isEmpty()) {
            thumb.setJpegThumbnail(reinterpret_cast<const Exiv2::byte*>(small.constData()),
                                   static_cast<long>(small.size()));
        }
    }
    return exif;
}

// The encoded image with the source's metadata; empty (and why in *failure) when
// Exiv2 could not write it into the bytes.
QByteArray withMetadata(const QByteArray& encoded, Exiv2::Image& source,
                        const Exiv2::ExifData& exif, bool withExif, QString* failure) {
    try {
        auto target =
            Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(encoded.constData()),
                                      static_cast<long>(encoded.size()));
        target->setExifData(withExif ? exif : Exiv2::ExifData());
        target->setIptcData(source.iptcData());
        target->setXmpData(source.xmpData());
        if (!source.comment().empty()) {
            target->setComment(source.comment());
        }
        if (source.iccProfileDefined()) {
            // DataBuf hands its bytes over on copy; the source keeps its own.
            Exiv2::DataBuf profile(source.iccProfile()->pData_, source.iccProfile()->size_);
            target->setIccProfile(profile, false);
        }
        target->writeMetadata();
        Exiv2::BasicIo& io = target->io();
        if (io.open() != 0) {
            *failure = QStringLiteral("cannot read the result back");
            return {};
        }
        QByteArray bytes(static_cast<qsizetype>(io.size()), Qt::Uninitialized);
        const long read =
            io.read(reinterpret_cast<Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()));
        io.close();
        if (read != static_cast<long>(bytes.size())) {
            *failure = QStringLiteral("cannot read the result back");
            return {};
        }
        return bytes;
    } catch (const std::exception& error) {
        *failure = QString::fromStdString(error.what());
        return {};
    }
}

// As ImageWriter does for BMP: all or nothing, a link at the path replaced.
bool writeAtomically(const QByteArray& bytes, const QString& fileName, QString* error) {
    const QString path = ImageWriter::expandTilde(fileName);
    const QByteArray encoded = QFile::encodeName(path);
    struct stat entry {};
    if (::lstat(encoded.constData(), &entry) == 0 && S_ISLNK(entry.st_mode) &&
        ::unlink(encoded.constData()) != 0) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = file.errorString();
        return false;
    }
    for (qsizetype done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            *error = file.errorString();  // before cancelWriting() replaces it
            file.cancelWriting();
            return false;
        }
        done += written;
    }
    if (!file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

}  // namespace

QByteArray KeptFormatWriter::outputFormat(const QByteArray& sourceFormat) {
    if (sourceFormat == "jpeg" || sourceFormat == "png" || sourceFormat == "tiff") {
        return sourceFormat;
    }
    return QByteArrayLiteral("bmp");
}

KeptFormatWriter::Result KeptFormatWriter::save(const QImage& image, const QString& sourcePath,
                                                const QByteArray& sourceFormat,
                                                const QString& fileName, bool upright) {
    Result result;
    const QByteArray format = outputFormat(sourceFormat);
    if (format == "bmp") {
        result.written = ImageWriter::saveImage(image, float(image.width()), float(image.height()),
                                                fileName, &result.error);
        return result;
    }
    initialiseExiv2();
    std::unique_ptr<Exiv2::Image> source;
    try {
        source.reset(Exiv2::ImageFactory::open(QFile::encodeName(sourcePath).toStdString(), false)
                         .release());
        source->readMetadata();
    } catch (const std::exception&) {
        source.reset();  // a source whose metadata cannot be read has none to keep
    }
    int quality = -1;
    int compression = 0;
    if (format == "tiff" && source) {
        // Qt writes TIFFs plain or LZW: a compressed source stays compressed.
        const auto found = source->exifData().findKey(Exiv2::ExifKey("Exif.Image.Compression"));
        compression = found != source->exifData().end() && found->toLong() != 1 ? 1 : 0;
    }
    if (format == "jpeg") {
        QFile file(sourcePath);
        quality = file.open(QIODevice::ReadOnly)
                      ? JpegQuality::estimate(file.read(kJpegHeaderBytes))
                      : JpegQuality::kUnknown;
    }
    const QByteArray encoded = encode(image, format, quality, compression);
    if (encoded.isEmpty()) {
        result.error = QStringLiteral("cannot be encoded as %1").arg(QString::fromLatin1(format));
        return result;
    }

    QByteArray bytes = encoded;
    if (!source) {
        result.note = QStringLiteral("written without its metadata (it cannot be read)");
    } else {
        QString failure;
        Exiv2::ExifData exif;
        try {
            exif = adaptedExif(source->exifData(), image, upright);
        } catch (const std::exception& error) {
            result.note = QStringLiteral("written without its EXIF data (%1)").arg(error.what());
        }
        const bool nothingToKeep = exif.empty() && source->iptcData().empty() &&
                                   source->xmpData().empty() && source->comment().empty() &&
                                   !source->iccProfileDefined();
        bytes = nothingToKeep ? encoded : withMetadata(encoded, *source, exif, true, &failure);
        if (bytes.isEmpty() && !exif.empty()) {
            result.note = QStringLiteral("written without its EXIF data (%1)").arg(failure);
            bytes = withMetadata(encoded, *source, exif, false, &failure);
        }
        if (bytes.isEmpty()) {
            result.note = QStringLiteral("written without its metadata (%1)").arg(failure);
            bytes = encoded;
        }
    }
    result.written = writeAtomically(bytes, fileName, &result.error);
    if (!result.written) {
        result.note.clear();
    }
    return result;
}
