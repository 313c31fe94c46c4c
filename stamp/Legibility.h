#pragma once

#include <QColor>
#include <QFont>
#include <QtGlobal>

#include "stamp/StampOptions.h"

// The room and colours of the legibility options (outline, shadow, box), all
// in proportion to the stamp's font, so that the label and the photo agree at
// any scale.
namespace Legibility {

// Outline drawn outward from the glyphs, as a share of the font's pixel size.
inline constexpr qreal kOutline = 0.07;
// Shadow offset (right and down) and blur reach, as shares of the pixel size.
inline constexpr qreal kShadowOffset = 0.05;
inline constexpr qreal kShadowBlur = 0.08;
// Box padding on every side, as a share of the text's line height; corner
// radius as a share of the padding.
inline constexpr qreal kBoxPadding = 0.2;
inline constexpr qreal kBoxRadius = 0.6;
// Opacity of the box and the shadow in the contrasting colour.
inline constexpr qreal kBoxAlpha = 0.5;
inline constexpr qreal kShadowAlpha = 0.6;

// Room around the text's measured box on each side, y down, in the font's units.
struct Margins {
    qreal left = 0;
    qreal top = 0;
    qreal right = 0;
    qreal bottom = 0;

    qreal width() const { return left + right; }
    qreal height() const { return top + bottom; }
};

bool any(const StampOptions& options);

// The font's size in pixels at 72 dpi, where a point is a pixel.
qreal fontPixels(const QFont& font);

// What the options on add around the text; none when all are off.
Margins margins(const QFont& font, const StampOptions& options);

// Relative luminance of the colour (0 black to 1 white), from its sRGB channels.
double relativeLuminance(const QColor& colour);

// Black or white, whichever has the higher contrast ratio against the text; black on a tie.
QColor contrastColor(const QColor& text);

}  // namespace Legibility
