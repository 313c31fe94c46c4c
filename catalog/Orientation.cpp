#include "catalog/Orientation.h"

#include <QTransform>
#include <algorithm>
#include <cstring>
#include <utility>

namespace Orientation {
namespace {

template <int Bytes>
struct Pixel {
    uchar bytes[Bytes];
};

// The quarter turns and transposes in tiles that stay in the cache: a plain
// column walk over a 12-megapixel photo misses on almost every pixel, and
// QImage::transformed allocates a fresh image each time.
template <typename P>
void quarterTurn(const QImage& from, QImage& to, bool flipColumns, bool flipRows) {
    constexpr int kTile = 64;
    const int width = from.width();
    const int height = from.height();
    const qsizetype fromStride = from.bytesPerLine();
    const uchar* const source = from.constBits();
    for (int top = 0; top < width; top += kTile) {
        const int bottom = std::min(top + kTile, width);
        for (int left = 0; left < height; left += kTile) {
            const int right = std::min(left + kTile, height);
            for (int y = top; y < bottom; ++y) {
                // Row y of the upright photo is a column of the stored one.
                const int column = flipColumns ? width - 1 - y : y;
                auto* row = reinterpret_cast<P*>(to.scanLine(y));
                const uchar* const base = source + qsizetype(column) * qsizetype(sizeof(P));
                for (int x = left; x < right; ++x) {
                    const int storedRow = flipRows ? height - 1 - x : x;
                    std::memcpy(&row[x], base + storedRow * fromStride, sizeof(P));
                }
            }
        }
    }
}

bool quarterTurnByDepth(const QImage& from, QImage& to, bool flipColumns, bool flipRows) {
    switch (from.depth()) {
        case 8:
            quarterTurn<Pixel<1>>(from, to, flipColumns, flipRows);
            return true;
        case 16:
            quarterTurn<Pixel<2>>(from, to, flipColumns, flipRows);
            return true;
        case 24:
            quarterTurn<Pixel<3>>(from, to, flipColumns, flipRows);
            return true;
        case 32:
            quarterTurn<Pixel<4>>(from, to, flipColumns, flipRows);
            return true;
        case 64:
            quarterTurn<Pixel<8>>(from, to, flipColumns, flipRows);
            return true;
        default:
            return false;
    }
}

}  // namespace

int fromTag(long value) {
    return value >= 1 && value <= 8 ? static_cast<int>(value) : kNormal;
}

bool swapsAxes(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

QSize uprightSize(QSize stored, int orientation) {
    return swapsAxes(orientation) ? stored.transposed() : stored;
}

QSizeF uprightSize(QSizeF stored, int orientation) {
    return swapsAxes(orientation) ? stored.transposed() : stored;
}

QImage& upright(QImage& stored, int orientation, QImage& turned) {
    switch (orientation) {
        case 2:
            stored.mirror(true, false);
            return stored;
        case 3:
            stored.mirror(true, true);
            return stored;
        case 4:
            stored.mirror(false, true);
            return stored;
        default:
            break;
    }
    if (!swapsAxes(orientation) || stored.isNull()) {
        return stored;
    }
    // Upright row y is stored column y (5, 6) or its mirror (7, 8), read top
    // down (5, 8) or bottom up (6, 7).
    const bool flipColumns = orientation == 7 || orientation == 8;
    const bool flipRows = orientation == 6 || orientation == 7;
    const QSize size = stored.size().transposed();
    if (turned.size() != size || turned.format() != stored.format()) {
        turned = QImage(size, stored.format());
    }
    if (turned.isNull()) {
        return turned;
    }
    if (quarterTurnByDepth(stored, turned, flipColumns, flipRows)) {
        turned.setColorTable(stored.colorTable());
    } else {
        // Bit-packed formats: Qt's general transform.
        turned = stored.transformed(QTransform().rotate(flipRows ? 90 : 270));
        if (orientation == 5 || orientation == 7) {
            turned.mirror(false, true);
        }
    }
    turned.setDotsPerMeterX(stored.dotsPerMeterY());
    turned.setDotsPerMeterY(stored.dotsPerMeterX());
    return turned;
}

QImage upright(QImage image, int orientation) {
    QImage turned;
    return upright(image, orientation, turned);
}

}  // namespace Orientation
