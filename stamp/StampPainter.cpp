#include "stamp/StampPainter.h"

#include <QFontMetricsF>
#include <QPainter>

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
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setFont(font);
        painter.setPen(color);
        // No transform at all at 1 x 1, so a 72-dpi photo is drawn exactly as measured.
        if (sx != 1.0 || sy != 1.0) {
            painter.scale(sx, sy);
        }
        const QFontMetricsF metrics(painter.font(), &photo);
        const qreal boxTop = photo.height() / sy - static_cast<qreal>(at.y) - metrics.height();
        painter.drawText(QPointF(at.x, boxTop + metrics.ascent()), text);
    }
    photo.setDotsPerMeterX(dotsX);
    photo.setDotsPerMeterY(dotsY);
    return photo;
}
