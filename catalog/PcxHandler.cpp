#include "catalog/PcxHandler.h"

#include <QIODevice>
#include <cstring>
#include <optional>
#include <vector>

namespace {

constexpr int kHeaderSize = 128;
constexpr uchar kManufacturer = 0x0A;
constexpr uchar kPaletteMarker = 0x0C;

struct Header {
    int bitsPerPixel = 0;
    int planes = 0;
    int bytesPerLine = 0;
    int width = 0;
    int height = 0;
    uchar egaPalette[48] = {};
};

quint16 le16(const uchar* p) {
    return quint16(p[0] | (p[1] << 8));
}

std::optional<Header> parseHeader(const QByteArray& bytes) {
    if (bytes.size() < kHeaderSize) {
        return std::nullopt;
    }
    const auto* p = reinterpret_cast<const uchar*>(bytes.constData());
    const uchar version = p[1];
    if (p[0] != kManufacturer || (version != 0 && (version < 2 || version > 5)) || p[2] != 1) {
        return std::nullopt;
    }
    Header h;
    h.bitsPerPixel = p[3];
    h.planes = p[65];
    h.bytesPerLine = le16(p + 66);
    const int xmin = le16(p + 4);
    const int ymin = le16(p + 6);
    const int xmax = le16(p + 8);
    const int ymax = le16(p + 10);
    if (xmax < xmin || ymax < ymin) {
        return std::nullopt;
    }
    h.width = xmax - xmin + 1;
    h.height = ymax - ymin + 1;
    if (h.width > PcxHandler::kMaxSide || h.height > PcxHandler::kMaxSide) {
        return std::nullopt;
    }
    const bool packed = h.planes == 1 && (h.bitsPerPixel == 1 || h.bitsPerPixel == 2 ||
                                          h.bitsPerPixel == 4 || h.bitsPerPixel == 8);
    const bool planar = h.bitsPerPixel == 1 && h.planes >= 2 && h.planes <= 4;
    const bool rgb = h.bitsPerPixel == 8 && h.planes == 3;
    if (!packed && !planar && !rgb) {
        return std::nullopt;
    }
    // Each plane's line must hold the whole row.
    if (qint64(h.bytesPerLine) * 8 < qint64(h.width) * h.bitsPerPixel) {
        return std::nullopt;
    }
    std::memcpy(h.egaPalette, p + 16, sizeof h.egaPalette);
    return h;
}

// Run-length decoder that keeps its state across scanlines, since some
// writers let a run continue into the next line.
class RleReader {
  public:
    RleReader(const uchar* data, qsizetype size) : p_(data), end_(data + size) {}

    bool fill(uchar* out, qsizetype count) {
        while (count > 0) {
            if (runLeft_ == 0) {
                if (p_ >= end_) {
                    return false;
                }
                const uchar b = *p_++;
                if ((b & 0xC0) == 0xC0) {
                    if (p_ >= end_) {
                        return false;
                    }
                    runLeft_ = b & 0x3F;
                    runValue_ = *p_++;
                    continue;
                }
                runLeft_ = 1;
                runValue_ = b;
            }
            const qsizetype n = std::min<qsizetype>(count, runLeft_);
            std::memset(out, runValue_, size_t(n));
            out += n;
            count -= n;
            runLeft_ -= int(n);
        }
        return true;
    }

    const uchar* position() const { return p_; }

  private:
    const uchar* p_;
    const uchar* end_;
    int runLeft_ = 0;
    uchar runValue_ = 0;
};

QList<QRgb> egaColours(const Header& h, int count) {
    QList<QRgb> colours;
    for (int i = 0; i < count; ++i) {
        const uchar* c = h.egaPalette + 3 * (i % 16);
        colours.append(qRgb(c[0], c[1], c[2]));
    }
    return colours;
}

}  // namespace

bool PcxHandler::canRead(QIODevice* device) {
    if (device == nullptr) {
        return false;
    }
    return parseHeader(device->peek(kHeaderSize)).has_value();
}

bool PcxHandler::canRead() const {
    if (canRead(device())) {
        setFormat("pcx");
        return true;
    }
    return false;
}

bool PcxHandler::supportsOption(ImageOption opt) const {
    return opt == Size || opt == ImageFormat;
}

QVariant PcxHandler::option(ImageOption opt) const {
    if (device() == nullptr) {
        return {};
    }
    const auto h = parseHeader(device()->peek(kHeaderSize));
    if (!h) {
        return {};
    }
    if (opt == Size) {
        return QSize(h->width, h->height);
    }
    if (opt == ImageFormat) {
        return h->planes == 3 ? QImage::Format_RGB32 : QImage::Format_Indexed8;
    }
    return {};
}

bool PcxHandler::read(QImage* image) {
    if (device() == nullptr || image == nullptr) {
        return false;
    }
    const auto h = parseHeader(device()->read(kHeaderSize));
    if (!h) {
        return false;
    }
    const bool rgb = h->planes == 3 && h->bitsPerPixel == 8;
    const qsizetype lineBytes = qsizetype(h->bytesPerLine) * h->planes;
    const QByteArray body = device()->readAll();
    // One run of two bytes covers at most 63 bytes: a body too short for the
    // claimed size is refused before anything is allocated for it.
    if (qint64(body.size()) * 63 / 2 < qint64(lineBytes) * h->height) {
        return false;
    }
    QImage out;
    if (!allocateImage(QSize(h->width, h->height),
                       rgb ? QImage::Format_RGB32 : QImage::Format_Indexed8, &out)) {
        return false;
    }
    const auto* data = reinterpret_cast<const uchar*>(body.constData());
    RleReader rle(data, body.size());

    std::vector<uchar> line(size_t(lineBytes), 0);
    for (int y = 0; y < h->height; ++y) {
        if (!rle.fill(line.data(), lineBytes)) {
            return false;
        }
        uchar* row = out.scanLine(y);
        if (rgb) {
            auto* px = reinterpret_cast<QRgb*>(row);
            const uchar* r = line.data();
            const uchar* g = r + h->bytesPerLine;
            const uchar* b = g + h->bytesPerLine;
            for (int x = 0; x < h->width; ++x) {
                px[x] = qRgb(r[x], g[x], b[x]);
            }
        } else if (h->planes == 1) {
            const int bpp = h->bitsPerPixel;
            const int mask = (1 << bpp) - 1;
            for (int x = 0; x < h->width; ++x) {
                const int bit = x * bpp;
                const int shift = 8 - bpp - (bit % 8);
                row[x] = uchar((line[size_t(bit / 8)] >> shift) & mask);
            }
        } else {
            for (int x = 0; x < h->width; ++x) {
                int index = 0;
                for (int plane = 0; plane < h->planes; ++plane) {
                    const uchar byte = line[size_t(plane * h->bytesPerLine + x / 8)];
                    index |= ((byte >> (7 - x % 8)) & 1) << plane;
                }
                row[x] = uchar(index);
            }
        }
    }

    if (!rgb) {
        const int colours = 1 << (h->bitsPerPixel * h->planes);
        if (h->bitsPerPixel == 1 && h->planes == 1) {
            out.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        } else if (colours <= 16) {
            out.setColorTable(egaColours(*h, colours));
        } else {
            // The 256-colour palette sits in the last 769 bytes, after the image data.
            const qsizetype used = rle.position() - data;
            QList<QRgb> table;
            if (body.size() - used >= 769 && uchar(body.at(body.size() - 769)) == kPaletteMarker) {
                const uchar* pal = data + body.size() - 768;
                for (int i = 0; i < 256; ++i) {
                    table.append(qRgb(pal[3 * i], pal[3 * i + 1], pal[3 * i + 2]));
                }
            } else {
                for (int i = 0; i < 256; ++i) {
                    table.append(qRgb(i, i, i));
                }
            }
            out.setColorTable(table);
        }
    }
    *image = out;
    return true;
}
