#include "common/TestImages.h"

#include <QBuffer>
#include <cstdlib>

namespace TestImages {

QImage solid(QSize size, QColor colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QImage pattern(QSize size, int seed) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int stripe = (((x + 7 * seed) / 24 + y / 24) & 1) * 60;
            row[x] = seed % 2 == 0 ? qRgb((220 - x / 4) & 0xff, 40 + stripe, (30 + y / 2) & 0xff)
                                   : qRgb(30 + stripe, (200 - y / 4) & 0xff, (40 + x / 4) & 0xff);
        }
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QRect boundsWhere(const QImage& image, const std::function<bool(QRgb)>& predicate) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    int left = rgb.width(), top = rgb.height(), right = -1, bottom = -1;
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x) {
            if (predicate(row[x])) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

QRect inkBounds(const QImage& image, QRgb background) {
    return boundsWhere(
        image, [background](QRgb p) { return (p & 0xffffffu) != (background & 0xffffffu); });
}

Difference difference(const QImage& a, const QImage& b, QRect within) {
    const QImage ra = a.convertToFormat(QImage::Format_RGB32);
    const QImage rb = b.convertToFormat(QImage::Format_RGB32);
    const QRect area = within.isNull() ? ra.rect() : within & ra.rect();
    Difference d;
    double sum = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto* pa = reinterpret_cast<const QRgb*>(ra.constScanLine(y));
        const auto* pb = reinterpret_cast<const QRgb*>(rb.constScanLine(y));
        for (int x = area.left(); x <= area.right(); ++x) {
            for (int c : {qRed(pa[x]) - qRed(pb[x]), qGreen(pa[x]) - qGreen(pb[x]),
                          qBlue(pa[x]) - qBlue(pb[x])}) {
                d.worst = std::max(d.worst, std::abs(c));
                sum += std::abs(c);
            }
        }
    }
    const double count = 3.0 * area.width() * area.height();
    d.mean = count > 0 ? sum / count : 0;
    return d;
}

}  // namespace TestImages
