#pragma once

#include <QImage>

// A fast approximation of a Gaussian blur: three passes of a box average along
// each axis, for small premultiplied ARGB images such as a stamp's shadow.
namespace BoxBlur {

// Blurs in place so that a sharp edge spreads over about `reachX` and `reachY`
// pixels on each side; pixels beyond the image count as transparent.
void blur(QImage& image, qreal reachX, qreal reachY);

}  // namespace BoxBlur
