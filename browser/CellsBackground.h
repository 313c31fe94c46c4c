#pragma once

#include <QImage>
#include <QSize>

// The browser's optional moving backdrop: faintly lit cell walls that drift
// slowly over the dark gradient. Drawn small and scaled up by the view, which
// keeps a frame to a fraction of a millisecond and makes the walls soft.
namespace CellsBackground {

// One frame, transparent between the walls, at the given moment in seconds.
QImage frame(QSize size, double seconds);

}  // namespace CellsBackground
