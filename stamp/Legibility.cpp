#include "stamp/Legibility.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "stamp/TextMetrics.h"

bool Legibility::any(const StampOptions& options) {
    return options.outline || options.shadow || options.box;
}

qreal Legibility::fontPixels(const QFont& font) {
    return font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF();
}

Legibility::Margins Legibility::margins(const QFont& font, const StampOptions& options) {
    Margins m;
    if (!any(options)) {
        return m;
    }
    const qreal pixels = fontPixels(font);
    const qreal outline = options.outline ? kOutline * pixels : 0;
    const auto grow = [&m](qreal left, qreal top, qreal right, qreal bottom) {
        m.left = std::max(m.left, left);
        m.top = std::max(m.top, top);
        m.right = std::max(m.right, right);
        m.bottom = std::max(m.bottom, bottom);
    };
    grow(outline, outline, outline, outline);
    if (options.shadow) {
        // The shadow is cast by the outlined text, moved right and down, then spread.
        const qreal offset = kShadowOffset * pixels;
        const qreal blur = kShadowBlur * pixels;
        const qreal behind = std::max<qreal>(0, blur - offset) + outline;
        const qreal ahead = offset + blur + outline;
        grow(behind, behind, ahead, ahead);
    }
    if (options.box) {
        const qreal pad = kBoxPadding * QFontMetricsF(font, &TextMetrics::device72()).height();
        grow(pad, pad, pad, pad);
    }
    return m;
}

double Legibility::relativeLuminance(const QColor& colour) {
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = colour.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) +
           0.0722 * linear(rgb.blueF());
}

QColor Legibility::contrastColor(const QColor& text) {
    const double l = relativeLuminance(text);
    const double againstBlack = (l + 0.05) / 0.05;
    const double againstWhite = 1.05 / (l + 0.05);
    return againstBlack >= againstWhite ? QColor(Qt::black) : QColor(Qt::white);
}
