#include "catalog/ExifMetadata.h"

#include <QBuffer>
#include <QFile>
#include <QSet>
#include <cstring>
#include <exiv2/exiv2.hpp>
#include <limits>
#include <mutex>

#include "catalog/RegularFile.h"

namespace ExifMetadata {
namespace {

std::optional<QString> textOf(const Exiv2::ExifData& exif, const char* key) {
    const auto it = exif.findKey(Exiv2::ExifKey(key));
    if (it == exif.end()) {
        return std::nullopt;
    }
    QString text = QString::fromStdString(it->toString());
    // Cameras pad ASCII fields with NULs or spaces.
    while (!text.isEmpty() && (text.back() == QChar(0) || text.back() == QChar(' '))) {
        text.chop(1);
    }
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text;
}

std::optional<double> rationalOf(const Exiv2::ExifData& exif, const char* key) {
    const auto it = exif.findKey(Exiv2::ExifKey(key));
    if (it == exif.end() || it->count() < 1) {
        return std::nullopt;
    }
    const Exiv2::Rational r = it->toRational(0);
    if (r.first <= 0 || r.second <= 0) {
        return std::nullopt;
    }
    return static_cast<double>(r.first) / static_cast<double>(r.second);
}

// XResolution/YResolution with ResolutionUnit (2 inch, the default; 3 cm).
void readResolution(const Exiv2::ExifData& exif, Fields& fields) {
    long unit = 2;
    const auto unitIt = exif.findKey(Exiv2::ExifKey("Exif.Image.ResolutionUnit"));
    if (unitIt != exif.end() && unitIt->count() >= 1) {
        unit = unitIt->toLong(0);
    }
    const double factor = unit == 3 ? 2.54 : (unit == 2 ? 1.0 : 0.0);
    if (factor == 0.0) {
        return;
    }
    const auto x = rationalOf(exif, "Exif.Image.XResolution");
    if (!x) {
        return;
    }
    const auto y = rationalOf(exif, "Exif.Image.YResolution");
    fields.dpiX = *x * factor;
    fields.dpiY = (y ? *y : *x) * factor;
}

Fields readImage(Exiv2::Image* image, bool withThumbnail) {
    Fields fields;
    if (image == nullptr) {
        return fields;
    }
    image->readMetadata();
    const Exiv2::ExifData& exif = image->exifData();
    if (exif.empty()) {
        return fields;
    }
    fields.dateTimeOriginal = textOf(exif, "Exif.Photo.DateTimeOriginal");
    fields.dateTimeDigitized = textOf(exif, "Exif.Photo.DateTimeDigitized");
    readResolution(exif, fields);
    const auto orientation = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (orientation != exif.end() && orientation->count() >= 1) {
        fields.orientation = Orientation::fromTag(orientation->toLong(0));
    }
    if (withThumbnail) {
        Exiv2::ExifThumbC thumb(exif);
        const Exiv2::DataBuf buf = thumb.copy();
        if (buf.size_ > 0 && buf.pData_ != nullptr) {
            fields.thumbnail =
                QByteArray(reinterpret_cast<const char*>(buf.pData_), static_cast<int>(buf.size_));
        }
    }
    return fields;
}

quint32 be32(const uchar* p) {
    return (quint32(p[0]) << 24) | (quint32(p[1]) << 16) | (quint32(p[2]) << 8) | quint32(p[3]);
}
quint16 be16(const uchar* p) {
    return quint16((p[0] << 8) | p[1]);
}

std::optional<std::pair<double, double>> jfifDensity(const uchar* p, qsizetype n) {
    // Walk the marker segments up to the first JFIF APP0 or the start of scan.
    qsizetype pos = 2;
    while (pos + 4 <= n) {
        if (p[pos] != 0xFF) {
            return std::nullopt;
        }
        const uchar marker = p[pos + 1];
        if (marker == 0xFF) {
            ++pos;
            continue;
        }
        if (marker == 0xDA || marker == 0xD9) {
            return std::nullopt;
        }
        const qsizetype length = be16(p + pos + 2);
        if (length < 2) {
            return std::nullopt;
        }
        if (marker == 0xE0 && length >= 16 && pos + 4 + 12 <= n &&
            std::memcmp(p + pos + 4, "JFIF\0", 5) == 0) {
            const uchar* d = p + pos + 4;
            const uchar units = d[7];
            const double x = be16(d + 8);
            const double y = be16(d + 10);
            if ((units != 1 && units != 2) || x <= 0 || y <= 0) {
                return std::nullopt;
            }
            const double f = units == 2 ? 2.54 : 1.0;
            return std::make_pair(x * f, y * f);
        }
        pos += 2 + length;
    }
    return std::nullopt;
}

std::optional<std::pair<double, double>> pngPhys(const uchar* p, qsizetype n) {
    qsizetype pos = 8;
    while (pos + 8 <= n) {
        const quint32 length = be32(p + pos);
        const uchar* type = p + pos + 4;
        if (std::memcmp(type, "IDAT", 4) == 0 || std::memcmp(type, "IEND", 4) == 0) {
            return std::nullopt;
        }
        if (std::memcmp(type, "pHYs", 4) == 0) {
            if (length < 9 || pos + 8 + 9 > n) {
                return std::nullopt;
            }
            const uchar* d = p + pos + 8;
            const double x = be32(d);
            const double y = be32(d + 4);
            if (d[8] != 1 || x <= 0 || y <= 0) {
                return std::nullopt;
            }
            return std::make_pair(x * 0.0254, y * 0.0254);
        }
        if (length > quint32(n)) {
            return std::nullopt;
        }
        pos += 12 + qsizetype(length);
    }
    return std::nullopt;
}

// Random access over a file or a buffer for the TIFF directory walk.
class ByteSource {
  public:
    explicit ByteSource(QIODevice* device) : device_(device) {}
    bool read(quint64 offset, uchar* out, qint64 n) {
        const qint64 size = device_->size();
        if (n < 0 || offset > quint64(size) || quint64(size) - offset < quint64(n) ||
            !device_->seek(qint64(offset))) {
            return false;
        }
        return device_->read(reinterpret_cast<char*>(out), n) == n;
    }

  private:
    QIODevice* device_;
};

class TiffWalker {
  public:
    explicit TiffWalker(ByteSource& src) : src_(src) {}

    Fields lastPageDates() {
        Fields fields;
        uchar head[8];
        if (!src_.read(0, head, 8)) {
            return fields;
        }
        if (std::memcmp(head, "II*\0", 4) == 0) {
            little_ = true;
        } else if (std::memcmp(head, "MM\0*", 4) != 0) {
            return fields;
        }
        // Follow the chain of image directories to the last one.
        quint32 ifd = u32(head + 4);
        quint32 last = 0;
        QSet<quint32> visited;
        for (int guard = 0; ifd != 0 && guard < 1024 && !visited.contains(ifd); ++guard) {
            visited.insert(ifd);
            last = ifd;
            uchar countBytes[2];
            if (!src_.read(ifd, countBytes, 2)) {
                return fields;
            }
            const quint32 next = ifd + 2 + 12u * u16(countBytes);
            uchar nextBytes[4];
            if (!src_.read(next, nextBytes, 4)) {
                break;
            }
            ifd = u32(nextBytes);
        }
        if (last == 0) {
            return fields;
        }
        readDates(last, fields);
        if (!fields.dateTimeOriginal && !fields.dateTimeDigitized) {
            const std::optional<quint32> exif = entryValue(last, 0x8769);
            if (exif && *exif != 0) {
                readDates(*exif, fields);
            }
        }
        return fields;
    }

  private:
    quint16 u16(const uchar* p) const {
        return little_ ? quint16(p[0] | (p[1] << 8)) : quint16((p[0] << 8) | p[1]);
    }
    quint32 u32(const uchar* p) const {
        return little_ ? (quint32(p[0]) | (quint32(p[1]) << 8) | (quint32(p[2]) << 16) |
                          (quint32(p[3]) << 24))
                       : be32(p);
    }

    // Looks the tag up in the directory and gives its raw entry.
    bool findEntry(quint32 ifd, quint16 tag, uchar entry[12]) {
        uchar countBytes[2];
        if (!src_.read(ifd, countBytes, 2)) {
            return false;
        }
        const int count = std::min<int>(u16(countBytes), 4096);
        for (int i = 0; i < count; ++i) {
            if (!src_.read(quint64(ifd) + 2 + 12ull * quint64(i), entry, 12)) {
                return false;
            }
            if (u16(entry) == tag) {
                return true;
            }
        }
        return false;
    }

    std::optional<quint32> entryValue(quint32 ifd, quint16 tag) {
        uchar e[12];
        if (!findEntry(ifd, tag, e)) {
            return std::nullopt;
        }
        const quint16 type = u16(e + 2);
        if (type == 3) {
            return u16(e + 8);
        }
        return u32(e + 8);
    }

    std::optional<QString> asciiEntry(quint32 ifd, quint16 tag) {
        uchar e[12];
        if (!findEntry(ifd, tag, e) || u16(e + 2) != 2) {
            return std::nullopt;
        }
        const quint32 count = u32(e + 4);
        if (count == 0 || count > 256) {
            return std::nullopt;
        }
        QByteArray text(int(count), '\0');
        auto* out = reinterpret_cast<uchar*>(text.data());
        if (count <= 4) {
            std::memcpy(out, e + 8, count);
        } else if (!src_.read(u32(e + 8), out, count)) {
            return std::nullopt;
        }
        const qsizetype nul = text.indexOf('\0');
        if (nul >= 0) {
            text.truncate(nul);
        }
        QString result = QString::fromLatin1(text).trimmed();
        if (result.isEmpty()) {
            return std::nullopt;
        }
        return result;
    }

    void readDates(quint32 ifd, Fields& fields) {
        fields.dateTimeOriginal = asciiEntry(ifd, 0x9003);
        fields.dateTimeDigitized = asciiEntry(ifd, 0x9004);
    }

    ByteSource& src_;
    bool little_ = false;
};

}  // namespace

Fields readLastTiffPageDates(const QString& path) {
    QFile file(path);
    if (!RegularFile::exists(path) || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    ByteSource src(&file);
    return TiffWalker(src).lastPageDates();
}

Fields readLastTiffPageDatesFromBuffer(const QByteArray& data) {
    QBuffer buffer;
    buffer.setData(data);
    if (!buffer.open(QIODevice::ReadOnly)) {
        return {};
    }
    ByteSource src(&buffer);
    return TiffWalker(src).lastPageDates();
}

void initialise() {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    });
}

Fields readFile(const QString& path, bool withThumbnail) {
    initialise();
    if (!RegularFile::exists(path)) {
        return {};
    }
    try {
        auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString(), false);
        return readImage(image.get(), withThumbnail);
    } catch (...) {
        return {};
    }
}

Fields readBuffer(const uchar* data, qint64 size, bool withThumbnail) {
    initialise();
    if (data == nullptr || size <= 0 || size > std::numeric_limits<long>::max()) {
        return {};
    }
    try {
        auto image =
            Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(data), long(size));
        return readImage(image.get(), withThumbnail);
    } catch (...) {
        return {};
    }
}

std::optional<std::pair<double, double>> containerDpi(const QByteArray& head) {
    const auto* p = reinterpret_cast<const uchar*>(head.constData());
    const qsizetype n = head.size();
    if (n >= 4 && p[0] == 0xFF && p[1] == 0xD8) {
        return jfifDensity(p, n);
    }
    if (n >= 8 && std::memcmp(p, "\x89PNG\r\n\x1a\n", 8) == 0) {
        return pngPhys(p, n);
    }
    return std::nullopt;
}

}  // namespace ExifMetadata
