#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>
#include <QSize>
#include <functional>

// Pictures to feed the code under test, and ways to look at what it drew.
namespace TestImages {

QImage solid(QSize size, QColor colour = Qt::blue);
// A busy picture: diagonal stripes over two gradients, different for each seed.
QImage pattern(QSize size, int seed = 0);
// The image encoded in a Qt image format ("jpeg", "png", "tiff", "bmp").
QByteArray encoded(const QImage& image, const char* format);

// The smallest rectangle (image coordinates, y down) holding every pixel for which
// the predicate holds; null when none does.
QRect boundsWhere(const QImage& image, const std::function<bool(QRgb)>& predicate);
// Every pixel whose colour differs from the background.
QRect inkBounds(const QImage& image, QRgb background);

// The largest and the mean difference of any colour channel, within the rectangle
// when one is given (both images the same size).
struct Difference {
    int worst = 0;
    double mean = 0;
};
Difference difference(const QImage& a, const QImage& b, QRect within = {});

}  // namespace TestImages
