#pragma once

#include <QPointF>
#include <QSizeF>

namespace WindowPlacement {
// Origin (lower-left, y up) that centres a frame on a screen of the given size;
// the screen's size is truncated to whole points first.
QPointF centredOrigin(QSizeF screen, QSizeF frame);
}  // namespace WindowPlacement
