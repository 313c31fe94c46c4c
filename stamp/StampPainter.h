#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include "stamp/StampGeometry.h"
#include "stamp/StampOptions.h"

class QPainter;

// Draws the date text into a photo at its place from StampGeometry.
namespace StampPainter {

// Draws text in one line, at the font's own size with one point per pixel, with
// the bottom-left corner of its measured box (descent included) at `at`, counted
// from the photo's bottom-left corner. Pass the photo by std::move to draw in
// place without a copy. A photo in a format QPainter cannot draw on is converted.
//
// With pixelsPerPoint other than 1 x 1 (a photo stated at other than 72 dpi:
// dpi / 72 on each axis), `at` and the text are in the photo's points and are
// scaled to its pixels, so the stamp covers the same share of the photo as the
// label did of a preview sized in points.
//
// With any legibility option on, `at` is the corner of the whole stamp as
// TextMetrics::measureStamp measures it, and the text sits inside its margins.
QImage drawStamp(QImage photo, const QString& text, const QFont& font, const QColor& color,
                 StampGeometry::TPosition at, QSizeF pixelsPerPoint = QSizeF(1, 1),
                 const StampOptions& options = {});

// The text with its outline, shadow and box as the options ask, the bottom-left
// corner of the text's measured box at `textBottomLeft` in the painter's
// coordinates (y down). Laid out at 72 dpi and filled as outlines, so the date
// label and the photo get the same shapes at whatever scale the painter has.
void paintLegible(QPainter& painter, const QString& text, const QFont& font, const QColor& color,
                  const StampOptions& options, QPointF textBottomLeft);

}  // namespace StampPainter
