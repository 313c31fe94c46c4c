#include <QDebug>
#include <QFont>
#include <QImage>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "stamp/Legibility.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

namespace {
// Full blocks put ink on the measured box's edges, where the room is tightest.
const QString kText = QStringLiteral("\u2588 2024:03:05 \u2588");
const QColor kBackground(40, 120, 200);
const QPointF kAt(100, 80);  // the stamp's bottom-left corner, y up

QFont stampFont() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(20);
    return font;
}

QImage stamped(int dpi, const StampOptions& options) {
    const qreal scale = dpi / 72.0;
    QImage photo = TestImages::solid((QSizeF(400, 250) * scale).toSize(), kBackground);
    return StampPainter::drawStamp(std::move(photo), kText, stampFont(), QColor(255, 220, 0),
                                   {float(kAt.x()), float(kAt.y())}, QSizeF(scale, scale), options);
}

// The whole stamp's rectangle in the photo's pixels, y down.
QRectF stampPixels(int dpi, const StampOptions& options, int photoHeight) {
    const QSizeF size = TextMetrics::measureStamp(kText, stampFont(), options);
    const qreal scale = dpi / 72.0;
    return QRectF(kAt.x() * scale, photoHeight - (kAt.y() + size.height()) * scale,
                  size.width() * scale, size.height() * scale);
}
}  // namespace

class LegibilityTest : public QObject {
    Q_OBJECT
  private slots:
    // Black or white by contrast ratio; mid greys fall either side of 117/118, and
    // green weighs most.
    void contrastColour_data() {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("grey 118") << QColor(118, 118, 118) << QColor(Qt::black);
        QTest::newRow("grey 117") << QColor(117, 117, 117) << QColor(Qt::white);
        QTest::newRow("pure green") << QColor(0, 255, 0) << QColor(Qt::black);
    }
    void contrastColour() {
        QFETCH(QColor, text);
        QFETCH(QColor, expected);
        QCOMPARE(Legibility::contrastColor(text), expected);
    }

    // Each option changes the photo, and only within the stamp that the label and
    // the placement measured, at one point per pixel and scaled.
    void drawsOnlyWithinMeasuredStamp_data() {
        QTest::addColumn<StampOptions>("options");
        QTest::addColumn<int>("dpi");
        for (int dpi : {72, 300}) {
            const QByteArray at = " " + QByteArray::number(dpi) + " dpi";
            QTest::newRow("outline" + at) << StampOptions{.outline = true} << dpi;
            QTest::newRow("shadow" + at) << StampOptions{.shadow = true} << dpi;
            QTest::newRow("box" + at) << StampOptions{.box = true} << dpi;
            QTest::newRow("outline, shadow" + at)
                << StampOptions{.outline = true, .shadow = true} << dpi;
            QTest::newRow("all" + at)
                << StampOptions{.outline = true, .shadow = true, .box = true} << dpi;
        }
    }
    void drawsOnlyWithinMeasuredStamp() {
        QFETCH(StampOptions, options);
        QFETCH(int, dpi);
        const QImage plain = stamped(dpi, {});
        const QImage legible = stamped(dpi, options);
        // Both texts sit in the stamp, so every changed pixel must be in it.
        QRect diff;
        for (int y = 0; y < plain.height(); ++y) {
            for (int x = 0; x < plain.width(); ++x) {
                if (plain.pixel(x, y) != legible.pixel(x, y)) {
                    diff |= QRect(x, y, 1, 1);
                }
            }
        }
        QVERIFY(!diff.isEmpty());
        const QRect room =
            stampPixels(dpi, options, plain.height()).toAlignedRect().adjusted(-1, -1, 1, 1);
        QVERIFY2(room.contains(diff),
                 qPrintable(QDebug::toString(diff) + " outside " + QDebug::toString(room)));
    }

    // The box is the whole stamp: half-black over the photo in the middle of each
    // padding strip, the photo itself just beyond.
    void boxCoversTextAndPadding() {
        const StampOptions options{.box = true};
        const QImage photo = stamped(72, options);
        const QRectF stamp = stampPixels(72, options, photo.height());
        const qreal pad =
            (stamp.width() - TextMetrics::measureText(kText, stampFont()).width()) / 2;
        const QPointF mid = stamp.center();
        const QRgb half =
            qRgb(kBackground.red() / 2, kBackground.green() / 2, kBackground.blue() / 2);
        for (const QPointF p :
             {QPointF(stamp.left() + pad / 2, mid.y()), QPointF(stamp.right() - pad / 2, mid.y()),
              QPointF(mid.x(), stamp.top() + pad / 2),
              QPointF(mid.x(), stamp.bottom() - pad / 2)}) {
            const QRgb got = photo.pixel(p.toPoint());
            QVERIFY2(
                qAbs(qRed(got) - qRed(half)) <= 2 && qAbs(qBlue(got) - qBlue(half)) <= 2,
                qPrintable(QStringLiteral("%1 at %2,%3").arg(got, 0, 16).arg(p.x()).arg(p.y())));
        }
        for (const QPointF p :
             {QPointF(stamp.left() - 2, mid.y()), QPointF(stamp.right() + 2, mid.y()),
              QPointF(mid.x(), stamp.top() - 2), QPointF(mid.x(), stamp.bottom() + 2)}) {
            QCOMPARE(photo.pixel(p.toPoint()), kBackground.rgb());
        }
    }
};
SW_TEST_CLASS(LegibilityTest)

#include "LegibilityTest.moc"
