#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>

// The EXIF orientation tag: how the stored pixels are turned to be seen
// upright. 1 normal, 2 mirrored left-right, 3 turned 180°, 4 mirrored
// top-bottom, 5 transposed, 6 turned 90° clockwise to view, 7 transversed,
// 8 turned 90° counter-clockwise to view.
namespace Orientation {

constexpr int kNormal = 1;

// The tag's value, or kNormal for a missing or unknown one.
int fromTag(long value);
// True for 5..8: the upright photo is as wide as the stored one is high.
bool swapsAxes(int orientation);
// The upright size of a stored size.
QSize uprightSize(QSize stored, int orientation);
QSizeF uprightSize(QSizeF stored, int orientation);

// The stored pixels turned upright.
QImage upright(QImage image, int orientation);
// The same without allocating for a run of photos: mirrors `stored` in place
// and returns it, or for a quarter turn writes into `turned` (whose pixels are
// reused when its size and format already fit) and returns that.
QImage& upright(QImage& stored, int orientation, QImage& turned);

}  // namespace Orientation
