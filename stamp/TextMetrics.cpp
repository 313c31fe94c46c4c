#include "stamp/TextMetrics.h"

#include <QFontMetricsF>
#include <QImage>

namespace {
// A paint device whose only purpose is its resolution.
const QImage& device72() {
    static const QImage device = [] {
        QImage image(1, 1, QImage::Format_RGB32);
        image.setDotsPerMeterX(TextMetrics::kDotsPerMeter72);
        image.setDotsPerMeterY(TextMetrics::kDotsPerMeter72);
        return image;
    }();
    return device;
}
}  // namespace

QSizeF TextMetrics::measureText(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font, &device72());
    return QSizeF(metrics.horizontalAdvance(text), metrics.height());
}
