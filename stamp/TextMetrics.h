#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

#include "stamp/StampOptions.h"

class QPaintDevice;

// Stamp text measured at 72 dpi, so that one point is one pixel on the photo.
namespace TextMetrics {

// Dots per metre of a 72-dpi device.
inline constexpr int kDotsPerMeter72 = 2835;

// Advance width and line height (ascent + descent) of the text in one line.
QSizeF measureText(const QString& text, const QFont& font);

// The text's measured size plus the room its legibility options take around it:
// the size of the whole stamp, as the label and the placement use it.
QSizeF measureStamp(const QString& text, const QFont& font, const StampOptions& options);

// A paint device whose only purpose is its resolution of 72 dpi.
const QPaintDevice& device72();

}  // namespace TextMetrics
