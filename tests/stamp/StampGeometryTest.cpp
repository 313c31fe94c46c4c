#include <QTest>
#include <cmath>

#include "TestRegistry.h"
#include "stamp/StampGeometry.h"

using namespace StampGeometry;

class StampGeometryTest : public QObject {
    Q_OBJECT
  private slots:
    // The label sits at a share (0 = left/bottom, 1 = right/top) of its free travel
    // in a preview area away from the origin; the text lands at the same share of
    // its own free travel in the output area.
    void placesText_data() {
        QTest::addColumn<QPointF>("share");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<QSizeF>("photo");
        QTest::addColumn<QSizeF>("text");
        QTest::addColumn<QPointF>("expected");
        QTest::newRow("centred") << QPointF(0.5, 0.5) << false << QSizeF(4000, 3000)
                                 << QSizeF(300, 40) << QPointF(1850, 1480);
        QTest::newRow("margin, bottom-left")
            << QPointF(0, 0) << true << QSizeF(1000, 800) << QSizeF(150, 30) << QPointF(85, 20);
        QTest::newRow("margin, top-right") << QPointF(1, 1) << true << QSizeF(1000, 800)
                                           << QSizeF(150, 30) << QPointF(915 - 150, 780 - 30);
        QTest::newRow("quarter") << QPointF(0.25, 0.75) << false << QSizeF(4000, 3000)
                                 << QSizeF(400, 100) << QPointF(900, 2175);
        // Not clamped: a text wider than the photo runs over its left edge.
        QTest::newRow("text wider than photo")
            << QPointF(1, 0) << false << QSizeF(200, 100) << QSizeF(260, 20) << QPointF(-60, 0);
    }
    void placesText() {
        QFETCH(QPointF, share);
        QFETCH(bool, margin);
        QFETCH(QSizeF, photo);
        QFETCH(QSizeF, text);
        QFETCH(QPointF, expected);
        const StampArea preview{40, 25, 640, 475};
        const float w = 120;
        const float h = 24;
        const Snapshot s = backupPositionAndSize(preview, 40 + float(share.x()) * (600 - w),
                                                 25 + float(share.y()) * (450 - h), w, h);
        const TPosition at = calculateOutputPosition(
            s, StampGeometry::outputArea(float(photo.width()), float(photo.height()), margin),
            float(text.width()), float(text.height()));
        QCOMPARE(QPointF(at.x, at.y), expected);
    }

    // A label as wide (high) as its area has no travel on that axis: the text is
    // centred there instead of dividing by zero.
    void zeroTravelCentres() {
        const StampArea preview{0, 0, 600, 450};
        const TPosition wide =
            proportionalPlace(backupPositionAndSize(preview, 0, 0, 600, 24),
                              StampGeometry::outputArea(1000, 800, false), 200, 50);
        QCOMPARE(QPointF(wide.x, wide.y), QPointF(400, 0));
        const TPosition high =
            proportionalPlace(backupPositionAndSize(preview, 480, 0, 120, 450),
                              StampGeometry::outputArea(1000, 800, false), 200, 50);
        QCOMPARE(QPointF(high.x, high.y), QPointF(800, 375));
    }
};
SW_TEST_CLASS(StampGeometryTest)

#include "StampGeometryTest.moc"
