#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

// Stamp text measured at 72 dpi, so that one point is one pixel on the photo.
namespace TextMetrics {

// Dots per metre of a 72-dpi device.
inline constexpr int kDotsPerMeter72 = 2835;

// Advance width and line height (ascent + descent) of the text in one line.
QSizeF measureText(const QString& text, const QFont& font);

}  // namespace TextMetrics
