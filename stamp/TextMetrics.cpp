#include "stamp/TextMetrics.h"

#include <QFontMetricsF>
#include <QImage>

#include "stamp/Legibility.h"

const QPaintDevice& TextMetrics::device72() {
    static const QImage device = [] {
        QImage image(1, 1, QImage::Format_RGB32);
        image.setDotsPerMeterX(TextMetrics::kDotsPerMeter72);
        image.setDotsPerMeterY(TextMetrics::kDotsPerMeter72);
        return image;
    }();
    return device;
}

QSizeF TextMetrics::measureText(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font, &device72());
    return QSizeF(metrics.horizontalAdvance(text), metrics.height());
}

QSizeF TextMetrics::measureStamp(const QString& text, const QFont& font,
                                 const StampOptions& options) {
    const QSizeF size = measureText(text, font);
    if (!Legibility::any(options)) {
        return size;
    }
    const Legibility::Margins room = Legibility::margins(font, options);
    return QSizeF(size.width() + room.width(), size.height() + room.height());
}
