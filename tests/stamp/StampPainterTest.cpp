#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

class StampPainterTest : public QObject {
    Q_OBJECT
  private slots:
    // One point is one pixel, whatever the photo states: the text is measured and
    // drawn like a font of that many pixels, and the ink fills the measured box
    // whose bottom-left corner (descent included) is the y-up point. Colour photos
    // at other resolutions are stamped end to end in the run's tests.
    void drawsIntoMeasuredBoxOnGreyPhoto() {
        const int points = 10;
        const int dpi = 96;
        const QPointF at(120, 200);
        const QString text = QStringLiteral("gypsy 05-Mar");
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSize(points);
        QFont pixelFont(font);
        pixelFont.setPixelSize(points);
        const QSizeF box = TextMetrics::measureText(text, font);
        QVERIFY(qAbs(box.height() - QFontMetricsF(pixelFont).height()) <= 1);

        QImage photo(400, 300, QImage::Format_Grayscale8);
        photo.fill(Qt::white);
        photo.setDotsPerMeterX(qRound(dpi / 0.0254));
        const QImage drawn = StampPainter::drawStamp(std::move(photo), text, font, Qt::black,
                                                     {float(at.x()), float(at.y())});
        QCOMPARE(drawn.dotsPerMeterX(), qRound(dpi / 0.0254));
        const QRect ink = TestImages::inkBounds(drawn, qRgb(255, 255, 255));
        const double bottom = drawn.height() - at.y();  // Qt rows grow downward
        QVERIFY2(ink.left() >= at.x() - 1 && ink.right() <= at.x() + box.width() + 1,
                 qPrintable(QString("%1..%2").arg(ink.left()).arg(ink.right())));
        QVERIFY2(ink.top() >= bottom - box.height() - 1 && ink.bottom() < bottom,
                 qPrintable(QString("%1..%2").arg(ink.top()).arg(ink.bottom())));
        QVERIFY(ink.height() > box.height() * 0.7);  // descenders reach into the box
    }
};
SW_TEST_CLASS(StampPainterTest)

#include "StampPainterTest.moc"
