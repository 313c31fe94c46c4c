#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QTest>

#include "TestRegistry.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

namespace {
QFont stampFont(qreal points) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(points);
    return font;
}

// The smallest rectangle holding every pixel that is not the background.
QRect inkBounds(const QImage& image, QRgb background) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if ((image.pixel(x, y) & 0xffffff) != (background & 0xffffff)) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}
}  // namespace

class StampPainterTest : public QObject {
    Q_OBJECT
  private slots:
    // One point is one pixel: the same as a font sized in pixels, not the
    // 4/3 larger size a 96-dpi screen would give.
    void measuresAt72Dpi_data() {
        QTest::addColumn<int>("points");
        QTest::newRow("12") << 12;
        QTest::newRow("16") << 16;
        QTest::newRow("48") << 48;
    }
    void measuresAt72Dpi() {
        QFETCH(int, points);
        const QString text = QStringLiteral("05-Mar-2014 13:34:56");
        const QSizeF size = TextMetrics::measureText(text, stampFont(points));
        QFont pixelFont(QStringLiteral("DejaVu Sans"));
        pixelFont.setPixelSize(points);
        const QFontMetricsF pixels(pixelFont);
        QVERIFY2(qAbs(size.height() - pixels.height()) <= 1.0,
                 qPrintable(QString::number(size.height())));
        QVERIFY2(qAbs(size.width() - pixels.horizontalAdvance(text)) <= text.size() * 0.1,
                 qPrintable(QString::number(size.width())));
        QVERIFY(size.height() > points);
        QVERIFY(size.height() < points * 1.3);
    }

    void measuresLongerTextWider() {
        const QFont font = stampFont(16);
        QVERIFY(TextMetrics::measureText("September 05, 2014", font).width() >
                TextMetrics::measureText("March 05, 2014", font).width());
        QCOMPARE(TextMetrics::measureText("", font).width(), 0.0);
    }

    // The ink stays inside the measured box whose bottom-left corner is the
    // given point, counted from the photo's bottom edge; descenders reach below
    // the baseline into that box.
    void drawsInsideMeasuredBox_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("points");
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::newRow("corner") << "gypsy 05-Mar" << 24 << 0.0f << 0.0f;
        QTest::newRow("inside") << "gypsy 05-Mar" << 40 << 37.0f << 61.0f;
        QTest::newRow("small") << "March 05, 2014" << 10 << 120.0f << 200.0f;
    }
    void drawsInsideMeasuredBox() {
        QFETCH(QString, text);
        QFETCH(int, points);
        QFETCH(float, x);
        QFETCH(float, y);
        const QFont font = stampFont(points);
        QImage photo(400, 300, QImage::Format_RGB32);
        photo.fill(Qt::white);
        const QImage drawn =
            StampPainter::drawStamp(std::move(photo), text, font, Qt::black, {x, y});
        const QSizeF box = TextMetrics::measureText(text, font);
        const QRect ink = inkBounds(drawn, qRgb(255, 255, 255));
        QVERIFY(!ink.isNull());
        const double boxBottom = drawn.height() - y;  // Qt rows grow downward
        const double boxTop = boxBottom - box.height();
        QVERIFY2(ink.left() >= x - 1 && ink.right() <= x + box.width() + 1,
                 qPrintable(QString("%1..%2").arg(ink.left()).arg(ink.right())));
        QVERIFY2(ink.top() >= boxTop - 1 && ink.bottom() <= boxBottom,
                 qPrintable(QString("%1..%2").arg(ink.top()).arg(ink.bottom())));
        // Descenders: below the baseline, near the box's bottom.
        QVERIFY(ink.bottom() > boxBottom - box.height() * 0.25);
        // Drawn at the measured size, not a smaller one.
        QVERIFY(ink.height() > box.height() * 0.7);
    }

    void drawsInColourAndKeepsResolution() {
        QImage photo(200, 100, QImage::Format_RGB32);
        photo.fill(Qt::black);
        photo.setDotsPerMeterX(11811);  // 300 dpi
        photo.setDotsPerMeterY(11811);
        const QImage drawn =
            StampPainter::drawStamp(std::move(photo), "HHHH", stampFont(30), Qt::red, {10, 10});
        QCOMPARE(drawn.dotsPerMeterX(), 11811);
        QCOMPARE(drawn.dotsPerMeterY(), 11811);
        bool red = false;
        for (int y = 0; y < drawn.height() && !red; ++y) {
            for (int x = 0; x < drawn.width() && !red; ++x) {
                red = drawn.pixel(x, y) == qRgb(255, 0, 0);
            }
        }
        QVERIFY(red);
        // A 300-dpi photo still gets the 72-dpi size: 30 points, not 125 pixels.
        QVERIFY(inkBounds(drawn, qRgb(0, 0, 0)).height() < 30);
    }

    void drawsOnGreyPhoto() {
        QImage photo(120, 60, QImage::Format_Grayscale8);
        photo.fill(200);
        const QImage drawn =
            StampPainter::drawStamp(std::move(photo), "Hi", stampFont(20), Qt::black, {5, 5});
        QCOMPARE(drawn.size(), QSize(120, 60));
        QVERIFY(!inkBounds(drawn, qRgb(200, 200, 200)).isNull());
    }

    void leavesPhotoAloneWithoutText() {
        QImage photo(50, 40, QImage::Format_RGB32);
        photo.fill(Qt::white);
        const QImage drawn =
            StampPainter::drawStamp(photo, QString(), stampFont(20), Qt::black, {});
        QCOMPARE(drawn, photo);
    }
};
SW_TEST_CLASS(StampPainterTest)

#include "StampPainterTest.moc"
