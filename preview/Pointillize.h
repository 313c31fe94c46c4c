#pragma once

#include <QImage>
#include <QPointF>

// The thumbnails' click effect: the picture redrawn as dots of colour.
namespace Pointillize {

// Dots of the given radius on a jittered grid anchored at center (y-up, in the
// image's pixels). Each dot takes the mean colour of the picture under it;
// the gaps between dots take their nearest dot's colour, darker. Alpha is
// kept, so a card's rounded corners stay rounded. ARGB32_Premultiplied out.
QImage render(const QImage& source, float radius = 4.0f, QPointF center = {150, 150});

}  // namespace Pointillize
