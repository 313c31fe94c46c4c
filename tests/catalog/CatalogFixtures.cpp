#include "CatalogFixtures.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryFile>
#include <exiv2/exiv2.hpp>
#include <vector>

namespace CatalogFixtures {

namespace {

QByteArray encodeJpeg(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "jpeg", 90);
    return bytes;
}

void put16(QByteArray& out, int offset, int value) {
    out[offset] = char(value & 0xFF);
    out[offset + 1] = char((value >> 8) & 0xFF);
}

// Straightforward RLE of one plane line: runs of up to 63, literals >= 0xC0 escaped.
void rleLine(const std::vector<uchar>& line, QByteArray& out) {
    size_t i = 0;
    while (i < line.size()) {
        size_t run = 1;
        while (i + run < line.size() && line[i + run] == line[i] && run < 63) {
            ++run;
        }
        if (run > 1 || line[i] >= 0xC0) {
            out.append(char(0xC0 | run));
        }
        out.append(char(line[i]));
        i += run;
    }
}

}  // namespace

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

bool writeJpeg(const QString& path, const JpegOptions& options) {
    QImage image(options.size, QImage::Format_RGB32);
    image.fill(options.imageColour);
    const int dotsPerMeter = qRound(options.dpi / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    if (!writeBytes(path, encodeJpeg(image))) {
        return false;
    }
    try {
        auto exivImage = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        exivImage->readMetadata();
        Exiv2::ExifData& exif = exivImage->exifData();
        exif["Exif.Image.XResolution"] = Exiv2::URational(options.dpi, 1);
        exif["Exif.Image.YResolution"] = Exiv2::URational(options.dpi, 1);
        exif["Exif.Image.ResolutionUnit"] = uint16_t(2);
        if (options.dateTimeOriginal) {
            exif["Exif.Photo.DateTimeOriginal"] = options.dateTimeOriginal->toStdString();
        }
        if (options.dateTimeDigitized) {
            exif["Exif.Photo.DateTimeDigitized"] = options.dateTimeDigitized->toStdString();
        }
        if (options.thumbnailSize) {
            QImage thumb(*options.thumbnailSize, QImage::Format_RGB32);
            thumb.fill(options.thumbnailColour);
            const QByteArray data = encodeJpeg(thumb);
            Exiv2::ExifThumb(exif).setJpegThumbnail(
                reinterpret_cast<const Exiv2::byte*>(data.constData()), long(data.size()));
        }
        exivImage->writeMetadata();
    } catch (...) {
        return false;
    }
    return true;
}

QByteArray encodePcx(const QImage& source, int bitsPerPixel, int planes) {
    const bool rgb = planes == 3;
    const QImage image =
        rgb ? source.convertToFormat(QImage::Format_RGB32) : source;  // indexed stays indexed
    const int width = image.width();
    const int height = image.height();
    int bytesPerLine = (width * bitsPerPixel + 7) / 8;
    bytesPerLine += bytesPerLine % 2;  // even, as writers do

    QByteArray out(128, '\0');
    out[0] = 0x0A;
    out[1] = 5;
    out[2] = 1;
    out[3] = char(bitsPerPixel);
    put16(out, 8, width - 1);
    put16(out, 10, height - 1);
    put16(out, 12, 72);
    put16(out, 14, 72);
    const QList<QRgb> table = image.colorTable();
    for (int i = 0; i < 16 && i < table.size(); ++i) {
        out[16 + 3 * i] = char(qRed(table[i]));
        out[17 + 3 * i] = char(qGreen(table[i]));
        out[18 + 3 * i] = char(qBlue(table[i]));
    }
    out[65] = char(planes);
    put16(out, 66, bytesPerLine);
    put16(out, 68, 1);

    for (int y = 0; y < height; ++y) {
        for (int plane = 0; plane < planes; ++plane) {
            std::vector<uchar> line(size_t(bytesPerLine), 0);
            for (int x = 0; x < width; ++x) {
                if (rgb) {
                    const QRgb px = image.pixel(x, y);
                    line[size_t(x)] = uchar(plane == 0   ? qRed(px)
                                            : plane == 1 ? qGreen(px)
                                                         : qBlue(px));
                } else if (planes == 1) {
                    const int index = image.pixelIndex(x, y);
                    const int bit = x * bitsPerPixel;
                    line[size_t(bit / 8)] |= uchar(index << (8 - bitsPerPixel - bit % 8));
                } else {
                    const int index = image.pixelIndex(x, y);
                    if ((index >> plane) & 1) {
                        line[size_t(x / 8)] |= uchar(0x80 >> (x % 8));
                    }
                }
            }
            rleLine(line, out);
        }
    }
    if (bitsPerPixel == 8 && planes == 1) {
        out.append(char(0x0C));
        for (int i = 0; i < 256; ++i) {
            const QRgb c = i < table.size() ? table[i] : qRgb(0, 0, 0);
            out.append(char(qRed(c)));
            out.append(char(qGreen(c)));
            out.append(char(qBlue(c)));
        }
    }
    return out;
}

}  // namespace CatalogFixtures

namespace CatalogFixtures {

namespace {

quint32 crc32(const QByteArray& data) {
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : data) {
        crc ^= uchar(c);
        for (int k = 0; k < 8; ++k) {
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
        }
    }
    return ~crc;
}

void appendBE32(QByteArray& out, quint32 v) {
    out.append(char(v >> 24));
    out.append(char(v >> 16));
    out.append(char(v >> 8));
    out.append(char(v));
}

void appendLE(QByteArray& out, quint32 v, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.append(char((v >> (8 * i)) & 0xFF));
    }
}

}  // namespace

QByteArray pngHeader(quint32 width, quint32 height) {
    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    QByteArray chunk("IHDR");
    appendBE32(chunk, width);
    appendBE32(chunk, height);
    chunk.append(char(8));  // bit depth
    chunk.append(char(2));  // RGB
    chunk.append(QByteArray(3, '\0'));
    appendBE32(out, 13);
    out.append(chunk);
    appendBE32(out, crc32(chunk));
    return out;
}

QByteArray bmpHeader(qint32 width, qint32 height) {
    QByteArray out("BM");
    appendLE(out, 54 + 16, 4);  // file size, as if
    appendLE(out, 0, 4);
    appendLE(out, 54, 4);  // offset of the pixels
    appendLE(out, 40, 4);
    appendLE(out, quint32(width), 4);
    appendLE(out, quint32(height), 4);
    appendLE(out, 1, 2);
    appendLE(out, 24, 2);
    appendLE(out, 0, 4);
    appendLE(out, 0, 4);
    appendLE(out, 2835, 4);
    appendLE(out, 2835, 4);
    appendLE(out, 0, 4);
    appendLE(out, 0, 4);
    out.append(QByteArray(16, '\x40'));
    return out;
}

QByteArray multiPageTiff(const QList<QSize>& pages, const QByteArray& lastPageDate) {
    // Layout: header, then per page its pixels followed by its directory.
    QByteArray out("II*\0", 4);
    appendLE(out, 0, 4);  // patched with the first directory's offset
    qsizetype previousNextField = 4;
    for (qsizetype p = 0; p < pages.size(); ++p) {
        const QSize size = pages.at(p);
        const bool last = p == pages.size() - 1;
        const quint32 pixels = quint32(out.size());
        out.append(QByteArray(size.width() * size.height(), char(0x80 + p * 20)));
        if (out.size() % 2) {
            out.append('\0');
        }
        quint32 dateOffset = 0;
        if (last) {
            dateOffset = quint32(out.size());
            out.append(lastPageDate);
            out.append('\0');
            if (out.size() % 2) {
                out.append('\0');
            }
        }
        quint32 exifIfd = 0;
        if (last) {
            exifIfd = quint32(out.size());
            appendLE(out, 1, 2);
            appendLE(out, 0x9003, 2);
            appendLE(out, 2, 2);
            appendLE(out, quint32(lastPageDate.size() + 1), 4);
            appendLE(out, dateOffset, 4);
            appendLE(out, 0, 4);
        }
        const quint32 ifd = quint32(out.size());
        const quint32 v = ifd;
        out[previousNextField] = char(v & 0xFF);
        out[previousNextField + 1] = char((v >> 8) & 0xFF);
        out[previousNextField + 2] = char((v >> 16) & 0xFF);
        out[previousNextField + 3] = char((v >> 24) & 0xFF);
        struct Entry {
            quint16 tag, type;
            quint32 count, value;
        };
        QList<Entry> entries = {
            {256, 4, 1, quint32(size.width())},
            {257, 4, 1, quint32(size.height())},
            {258, 3, 1, 8},
            {259, 3, 1, 1},
            {262, 3, 1, 1},
            {273, 4, 1, pixels},
            {277, 3, 1, 1},
            {278, 4, 1, quint32(size.height())},
            {279, 4, 1, quint32(size.width() * size.height())},
        };
        if (last) {
            entries.append({0x8769, 4, 1, exifIfd});
        }
        appendLE(out, quint32(entries.size()), 2);
        for (const Entry& e : entries) {
            appendLE(out, e.tag, 2);
            appendLE(out, e.type, 2);
            appendLE(out, e.count, 4);
            appendLE(out, e.value, 4);
        }
        previousNextField = out.size();
        appendLE(out, 0, 4);
    }
    return out;
}

}  // namespace CatalogFixtures
