#include <QTest>

#include "TestRegistry.h"
#include "stamp/StampGeometry.h"

using namespace StampGeometry;

class StampGeometryTest : public QObject {
    Q_OBJECT
  private slots:
    // The label sits at a share (0 = left/bottom, 1 = right/top) of its free travel
    // in a preview area away from the origin; the text lands at the same share of
    // its own free travel in the output area. A label as wide (high) as the area has
    // no travel on that axis: the text is centred there instead of dividing by zero.
    void placesText_data() {
        QTest::addColumn<QPointF>("share");
        QTest::addColumn<QSizeF>("label");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<QSizeF>("photo");
        QTest::addColumn<QSizeF>("text");
        QTest::addColumn<QPointF>("expected");
        const QSizeF label(120, 24);
        QTest::newRow("centred") << QPointF(0.5, 0.5) << label << false << QSizeF(4000, 3000)
                                 << QSizeF(300, 40) << QPointF(1850, 1480);
        QTest::newRow("margin, bottom-left") << QPointF(0, 0) << label << true << QSizeF(1000, 800)
                                             << QSizeF(150, 30) << QPointF(85, 20);
        QTest::newRow("margin, top-right") << QPointF(1, 1) << label << true << QSizeF(1000, 800)
                                           << QSizeF(150, 30) << QPointF(915 - 150, 780 - 30);
        QTest::newRow("quarter") << QPointF(0.25, 0.75) << label << false << QSizeF(4000, 3000)
                                 << QSizeF(400, 100) << QPointF(900, 2175);
        // Not clamped: a text wider than the photo runs over its left edge.
        QTest::newRow("text wider than photo")
            << QPointF(1, 0) << label << false << QSizeF(200, 100) << QSizeF(260, 20)
            << QPointF(-60, 0);
        QTest::newRow("label as wide as the area")
            << QPointF(0, 0) << QSizeF(600, 24) << false << QSizeF(1000, 800) << QSizeF(200, 50)
            << QPointF(400, 0);
        QTest::newRow("label as high as the area")
            << QPointF(1, 0) << QSizeF(120, 450) << false << QSizeF(1000, 800) << QSizeF(200, 50)
            << QPointF(800, 375);
    }
    void placesText() {
        QFETCH(QPointF, share);
        QFETCH(QSizeF, label);
        QFETCH(bool, margin);
        QFETCH(QSizeF, photo);
        QFETCH(QSizeF, text);
        QFETCH(QPointF, expected);
        const StampArea preview{40, 25, 640, 475};
        const auto w = float(label.width()), h = float(label.height());
        const Snapshot s = backupPositionAndSize(preview, 40 + float(share.x()) * (600 - w),
                                                 25 + float(share.y()) * (450 - h), w, h);
        const TPosition at = calculateOutputPosition(
            s, StampGeometry::outputArea(float(photo.width()), float(photo.height()), margin),
            float(text.width()), float(text.height()));
        QCOMPARE(QPointF(at.x, at.y), expected);
    }
};
SW_TEST_CLASS(StampGeometryTest)

#include "StampGeometryTest.moc"
