#include "stamp/StampPainter.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QTextLayout>

#include "stamp/TextMetrics.h"

namespace {
bool paintable(QImage::Format format) {
    switch (format) {
        case QImage::Format_Invalid:
        case QImage::Format_Mono:
        case QImage::Format_MonoLSB:
        case QImage::Format_Indexed8:
        case QImage::Format_Alpha8:
        case QImage::Format_Grayscale8:
        case QImage::Format_Grayscale16:
            return false;
        default:
            return true;
    }
}
// The text in one line as one path, its line's top-left corner at the origin.
// The glyphs' outlines are taken large and scaled down: at the drawn size
// FreeType hints them differently once the thread has drawn that size before.
QPainterPath outline(const QString& text, QFont font, QPaintDevice* device) {
    constexpr qreal kOutlinePixels = 2048;
    font.setHintingPreference(QFont::PreferNoHinting);
    QTextLayout layout(text, font, device);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setNumColumns(static_cast<int>(text.size()));
    layout.endLayout();
    QPainterPath path;
    for (const QGlyphRun& run : layout.glyphRuns()) {
        QRawFont raw = run.rawFont();
        const qreal scale = raw.pixelSize() / kOutlinePixels;
        raw.setPixelSize(kOutlinePixels);
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size() && i < positions.size(); ++i) {
            const QTransform place(scale, 0, 0, scale, positions[i].x(), positions[i].y());
            path.addPath(place.map(raw.pathForGlyph(glyphs[i])));
        }
    }
    return path;
}
}  // namespace

QImage StampPainter::drawStamp(QImage photo, const QString& text, const QFont& font,
                               const QColor& color, StampGeometry::TPosition at,
                               QSizeF pixelsPerPoint) {
    const qreal sx = pixelsPerPoint.width();
    const qreal sy = pixelsPerPoint.height();
    if (photo.isNull() || text.isEmpty() || !(sx > 0) || !(sy > 0)) {
        return photo;
    }
    if (!paintable(photo.format())) {
        photo = photo.convertToFormat(photo.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                              : QImage::Format_RGB32);
    }
    // The painter takes its font size from the device's resolution; 72 dpi makes a
    // point one pixel, as in the measurement. The photo's own resolution comes back after.
    const int dotsX = photo.dotsPerMeterX();
    const int dotsY = photo.dotsPerMeterY();
    photo.setDotsPerMeterX(TextMetrics::kDotsPerMeter72);
    photo.setDotsPerMeterY(TextMetrics::kDotsPerMeter72);
    {
        QPainter painter(&photo);
        const QFontMetricsF metrics(font, &photo);
        if (sx == 1.0 && sy == 1.0) {
            painter.setRenderHint(QPainter::TextAntialiasing);
            painter.setFont(font);
            painter.setPen(color);
            const qreal boxTop = photo.height() - static_cast<qreal>(at.y) - metrics.height();
            painter.drawText(QPointF(at.x, boxTop + metrics.ascent()), text);
        } else {
            // Scaled, the glyphs' outlines are filled: Qt's own scaled text comes out a
            // shade different on a thread that has drawn the unscaled glyphs before,
            // and a photo must give the same file whichever worker stamps it.
            painter.setRenderHint(QPainter::Antialiasing);
            painter.scale(sx, sy);
            const qreal boxTop = photo.height() / sy - static_cast<qreal>(at.y) - metrics.height();
            painter.fillPath(outline(text, font, &photo).translated(at.x, boxTop), color);
        }
    }
    photo.setDotsPerMeterX(dotsX);
    photo.setDotsPerMeterY(dotsY);
    return photo;
}
