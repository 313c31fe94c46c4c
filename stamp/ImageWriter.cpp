#include "stamp/ImageWriter.h"

#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QtEndian>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr qint64 kFileHeaderSize = 14;
constexpr qint64 kInfoHeaderSize = 40;
constexpr qint64 kBytesPerPixel = 3;
// BMP rows are padded to whole 32-bit words.
constexpr qint64 kRowAlignment = 4;
// Rows are gathered into chunks of about this size before each write.
constexpr qint64 kChunkBytes = 1 << 20;
// Stated resolution of the output: 72 dpi, as for a photo that states none.
constexpr qint32 kPixelsPerMeter = 2835;

void put16(char* at, quint16 value) {
    qToLittleEndian(value, at);
}
void put32(char* at, quint32 value) {
    qToLittleEndian(value, at);
}

QByteArray header(qint32 width, qint32 height, quint32 imageBytes) {
    QByteArray bytes(kFileHeaderSize + kInfoHeaderSize, '\0');
    char* h = bytes.data();
    h[0] = 'B';
    h[1] = 'M';
    put32(h + 2, static_cast<quint32>(kFileHeaderSize + kInfoHeaderSize) + imageBytes);
    put32(h + 10, static_cast<quint32>(kFileHeaderSize + kInfoHeaderSize));
    char* info = h + kFileHeaderSize;
    put32(info, kInfoHeaderSize);
    put32(info + 4, static_cast<quint32>(width));
    put32(info + 8, static_cast<quint32>(height));  // positive: rows bottom-up
    put16(info + 12, 1);                            // planes
    put16(info + 14, 24);                           // bits per pixel
    put32(info + 16, 0);                            // BI_RGB, uncompressed
    put32(info + 20, imageBytes);
    put32(info + 24, kPixelsPerMeter);
    put32(info + 28, kPixelsPerMeter);
    return bytes;
}

}  // namespace

QString ImageWriter::expandTilde(const QString& fileName) {
    if (fileName == QLatin1String("~")) {
        return QDir::homePath();
    }
    if (fileName.startsWith(QLatin1String("~/"))) {
        return QDir::homePath() + fileName.mid(1);
    }
    return fileName;
}

bool ImageWriter::saveImage(const QImage& image, float width, float height, const QString& fileName,
                            QString* error) {
    const auto fail = [error](const QString& why) {
        if (error != nullptr) {
            *error = why;
        }
        return false;
    };
    const double w = std::round(static_cast<double>(width));
    const double h = std::round(static_cast<double>(height));
    // Also refuses NaN, and sizes whose pixel data a BMP header cannot state.
    if (image.isNull() || !(w >= 1 && w <= INT32_MAX) || !(h >= 1 && h <= INT32_MAX)) {
        return fail(QStringLiteral("no pixels to write"));
    }
    const qint64 rowBytes = (static_cast<qint64>(w) * kBytesPerPixel + kRowAlignment - 1) /
                            kRowAlignment * kRowAlignment;
    const qint64 maxImageBytes =
        static_cast<qint64>(UINT32_MAX) - kFileHeaderSize - kInfoHeaderSize;
    if (rowBytes > maxImageBytes / static_cast<qint64>(h)) {
        return fail(QStringLiteral("too large for a BMP file"));
    }
    const qint64 imageBytes = rowBytes * static_cast<qint64>(h);
    const qint32 outW = static_cast<qint32>(w);
    const qint32 outH = static_cast<qint32>(h);

    // One conversion at most; a drawn photo is normally RGB32 already.
    const QImage source =
        image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32
            ? image
            : image.convertToFormat(QImage::Format_RGB32);
    if (source.isNull()) {
        return fail(QStringLiteral("out of memory"));
    }

    const QString path = expandTilde(fileName);
    // QSaveFile would write through a link to wherever it points; the link itself
    // is replaced instead, as a rename over the path replaces it.
    const QByteArray encoded = QFile::encodeName(path);
    struct stat entry {};
    if (::lstat(encoded.constData(), &entry) == 0 && S_ISLNK(entry.st_mode) &&
        ::unlink(encoded.constData()) != 0) {
        return fail(QString::fromLocal8Bit(std::strerror(errno)));
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return fail(file.errorString());
    }
    if (file.write(header(outW, outH, static_cast<quint32>(imageBytes))) !=
        kFileHeaderSize + kInfoHeaderSize) {
        const QString why = file.errorString();  // before cancelWriting() replaces it
        file.cancelWriting();
        return fail(why);
    }

    const qint32 copyW = std::min(outW, source.width());
    const qint64 rowsPerChunk = std::max<qint64>(1, kChunkBytes / rowBytes);
    std::vector<char> chunk(static_cast<size_t>(rowsPerChunk * rowBytes), '\0');
    // BMP stores the bottom row first; output row r (from the bottom) is the
    // source row that lies r rows above the source's bottom edge.
    for (qint32 first = 0; first < outH; first += static_cast<qint32>(rowsPerChunk)) {
        const qint32 count = static_cast<qint32>(std::min<qint64>(rowsPerChunk, outH - first));
        for (qint32 i = 0; i < count; ++i) {
            char* out = chunk.data() + static_cast<qint64>(i) * rowBytes;
            const qint32 sourceRow = source.height() - 1 - (first + i);
            qint32 done = 0;
            if (sourceRow >= 0) {
                const auto* in = reinterpret_cast<const QRgb*>(source.constScanLine(sourceRow));
                for (; done < copyW; ++done) {
                    const QRgb pixel = in[done];
                    out[done * 3] = static_cast<char>(qBlue(pixel));
                    out[done * 3 + 1] = static_cast<char>(qGreen(pixel));
                    out[done * 3 + 2] = static_cast<char>(qRed(pixel));
                }
            }
            std::memset(out + done * kBytesPerPixel, 0,
                        static_cast<size_t>(rowBytes - done * kBytesPerPixel));
        }
        const qint64 bytes = count * rowBytes;
        if (file.write(chunk.data(), bytes) != bytes) {
            const QString why = file.errorString();
            file.cancelWriting();
            return fail(why);
        }
    }
    return file.commit() || fail(file.errorString());
}
