#include "stamp/StampPainter.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "stamp/BoxBlur.h"
#include "stamp/Legibility.h"
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
QPainterPath outline(const QString& text, QFont font, const QPaintDevice* device) {
    constexpr qreal kOutlinePixels = 2048;
    font.setHintingPreference(QFont::PreferNoHinting);
    QTextLayout layout(text, font, const_cast<QPaintDevice*>(device));
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

// The shadow of `shape` drawn into a layer only as large as its blurred reach
// in device pixels, never the whole photo, then laid over the painter's device.
void paintShadow(QPainter& painter, const QPainterPath& shape, const QPen& outlinePen,
                 const QColor& colour, qreal blur) {
    const QTransform world = painter.worldTransform();
    const qreal reachX = blur * std::hypot(world.m11(), world.m12());
    const qreal reachY = blur * std::hypot(world.m21(), world.m22());
    const qreal edge = outlinePen.style() == Qt::NoPen ? 0 : outlinePen.widthF() / 2;
    QRect area = world.mapRect(shape.boundingRect().adjusted(-edge, -edge, edge, edge))
                     .adjusted(-reachX, -reachY, reachX, reachY)
                     .toAlignedRect();
    if (const QPaintDevice* device = painter.device()) {
        // Only what lands on the device, padded so the blur still sees the edges beyond.
        const QRect visible(0, 0, device->width(), device->height());
        const int padX = static_cast<int>(std::ceil(reachX));
        const int padY = static_cast<int>(std::ceil(reachY));
        area &= visible.adjusted(-padX, -padY, padX, padY);
    }
    if (area.isEmpty()) {
        return;
    }
    // A wide blur loses nothing at a coarser grid: the layer is shrunk until the
    // blur reaches a few of its pixels, and stretched back smoothly when drawn.
    constexpr qreal kReachPerCell = 4;
    const int cell = std::max(1, static_cast<int>(std::min(reachX, reachY) / kReachPerCell));
    QImage layer((area.width() + cell - 1) / cell, (area.height() + cell - 1) / cell,
                 QImage::Format_ARGB32_Premultiplied);
    if (layer.isNull()) {
        return;
    }
    layer.fill(Qt::transparent);
    {
        QPainter layerPainter(&layer);
        layerPainter.setRenderHint(QPainter::Antialiasing);
        layerPainter.setTransform(world * QTransform::fromTranslate(-area.x(), -area.y()) *
                                  QTransform::fromScale(1.0 / cell, 1.0 / cell));
        // Opaque here: the fill and the outline overlap, and the alpha comes once, below.
        QColor solid(colour);
        solid.setAlpha(255);
        QPen pen(outlinePen);
        pen.setColor(solid);
        layerPainter.setPen(pen);
        layerPainter.setBrush(solid);
        layerPainter.drawPath(shape);
    }
    BoxBlur::blur(layer, reachX / cell, reachY / cell);
    painter.save();
    painter.resetTransform();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(painter.opacity() * static_cast<qreal>(colour.alphaF()));
    painter.drawImage(QRectF(area.topLeft(), QSizeF(layer.size() * cell)), layer);
    painter.restore();
}
}  // namespace

void StampPainter::paintLegible(QPainter& painter, const QString& text, const QFont& font,
                                const QColor& color, const StampOptions& options,
                                QPointF textBottomLeft) {
    const QFontMetricsF metrics(font, &TextMetrics::device72());
    const QRectF textBox(textBottomLeft.x(), textBottomLeft.y() - metrics.height(),
                         metrics.horizontalAdvance(text), metrics.height());
    const qreal pixels = Legibility::fontPixels(font);
    const QColor contrast = Legibility::contrastColor(color);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (options.box) {
        const qreal pad = Legibility::kBoxPadding * metrics.height();
        const qreal radius = Legibility::kBoxRadius * pad;
        QColor fill(contrast);
        fill.setAlphaF(static_cast<float>(Legibility::kBoxAlpha));
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(textBox.adjusted(-pad, -pad, pad, pad), radius, radius);
    }
    const QPainterPath glyphs =
        outline(text, font, &TextMetrics::device72()).translated(textBox.topLeft());
    // Drawn centred on the glyphs' edges, so twice as wide as it shows outside them.
    QPen outlinePen(Qt::NoPen);
    if (options.outline) {
        outlinePen = QPen(contrast, 2 * Legibility::kOutline * pixels, Qt::SolidLine, Qt::RoundCap,
                          Qt::RoundJoin);
    }
    if (options.shadow) {
        const qreal offset = Legibility::kShadowOffset * pixels;
        QColor shade(contrast);
        shade.setAlphaF(static_cast<float>(Legibility::kShadowAlpha));
        paintShadow(painter, glyphs.translated(offset, offset), outlinePen, shade,
                    Legibility::kShadowBlur * pixels);
    }
    if (options.outline) {
        painter.strokePath(glyphs, outlinePen);
    }
    painter.fillPath(glyphs, color);
    painter.restore();
}

QImage StampPainter::drawStamp(QImage photo, const QString& text, const QFont& font,
                               const QColor& color, StampGeometry::TPosition at,
                               QSizeF pixelsPerPoint, const StampOptions& options) {
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
        if (Legibility::any(options)) {
            painter.scale(sx, sy);
            const Legibility::Margins room = Legibility::margins(font, options);
            const qreal stampBottom = photo.height() / sy - static_cast<qreal>(at.y);
            paintLegible(painter, text, font, color, options,
                         QPointF(static_cast<qreal>(at.x) + room.left, stampBottom - room.bottom));
        } else if (sx == 1.0 && sy == 1.0) {
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
