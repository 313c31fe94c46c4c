#include <QTest>
#include <cmath>

#include "TestRegistry.h"
#include "stamp/PreviewLayout.h"

using namespace PreviewLayout;
using StampGeometry::StampArea;
using StampGeometry::TPosition;

namespace {
QRectF rectOf(const StampArea& a) {
    return QRectF(QPointF(a.miniX, a.miniY), QPointF(a.maxX, a.maxY));
}
bool near(const QRectF& a, const QRectF& b) {
    return std::abs(a.left() - b.left()) < 0.01 && std::abs(a.top() - b.top()) < 0.01 &&
           std::abs(a.right() - b.right()) < 0.01 && std::abs(a.bottom() - b.bottom()) < 0.01;
}
}  // namespace

class PreviewLayoutTest : public QObject {
    Q_OBJECT
  private slots:
    // The photo fitted into an 800 x 500 preview, never enlarged, and the stamp
    // area centred on it (y-up: bottom, then top).
    void stampAreaOfPhoto_data() {
        QTest::addColumn<QSizeF>("photo");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<QRectF>("area");
        QTest::newRow("both too large, height limits")
            << QSizeF(4000, 3000) << false << QRectF(QPointF(66.667, 0), QPointF(733.333, 500));
        QTest::newRow("same, with margin")
            << QSizeF(4000, 3000) << true
            << QRectF(QPointF(123.333, 12.5), QPointF(676.667, 487.5));
        QTest::newRow("both too large, width limits")
            << QSizeF(4000, 1000) << false << QRectF(QPointF(0, 150), QPointF(800, 350));
        QTest::newRow("equal ratios: width limits")
            << QSizeF(1600, 1000) << false << QRectF(QPointF(0, 0), QPointF(800, 500));
        QTest::newRow("only wider")
            << QSizeF(1000, 300) << false << QRectF(QPointF(0, 130), QPointF(800, 370));
        QTest::newRow("only higher")
            << QSizeF(400, 1000) << false << QRectF(QPointF(300, 0), QPointF(500, 500));
        QTest::newRow("smaller: a point per pixel")
            << QSizeF(300, 200) << false << QRectF(QPointF(250, 150), QPointF(550, 350));
    }
    void stampAreaOfPhoto() {
        QFETCH(QSizeF, photo);
        QFETCH(bool, margin);
        QFETCH(QRectF, area);
        const Size preview{800, 500};
        const Size shown = fitPhoto(Size{float(photo.width()), float(photo.height())}, preview);
        QVERIFY2(near(rectOf(stampArea(preview, shown, margin)), area),
                 qPrintable(QString("%1 x %2").arg(shown.width).arg(shown.height)));
    }

    // A label dragged out of the area {100, 50, 500, 350} comes back to its edge.
    void clampsIntoArea_data() {
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<QSizeF>("label");
        QTest::addColumn<QPointF>("expected");
        QTest::newRow("inside") << QPointF(200, 100) << QSizeF(80, 20) << QPointF(200, 100);
        QTest::newRow("past left and bottom")
            << QPointF(90, 10) << QSizeF(80, 20) << QPointF(100, 50);
        QTest::newRow("past right and top")
            << QPointF(450, 340) << QSizeF(80, 20) << QPointF(420, 330);
        QTest::newRow("wider than the area")
            << QPointF(150, 100) << QSizeF(500, 20) << QPointF(0, 100);
        QTest::newRow("not a number")
            << QPointF(qQNaN(), qQNaN()) << QSizeF(80, 20) << QPointF(100, 50);
    }
    void clampsIntoArea() {
        QFETCH(QPointF, origin);
        QFETCH(QSizeF, label);
        QFETCH(QPointF, expected);
        const TPosition p = clampIntoArea(StampArea{100, 50, 500, 350},
                                          TPosition{float(origin.x()), float(origin.y())},
                                          Size{float(label.width()), float(label.height())});
        QCOMPARE(QPointF(p.x, p.y), expected);
    }

    void presetPlaces_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<QPointF>("expected");
        QTest::newRow("top left") << 0 << QPointF(100, 330);
        QTest::newRow("top right") << 1 << QPointF(420, 330);
        QTest::newRow("centre") << 2 << QPointF(260, 190);
        QTest::newRow("bottom left") << 3 << QPointF(100, 50);
        QTest::newRow("bottom right") << 4 << QPointF(420, 50);
    }
    void presetPlaces() {
        QFETCH(int, place);
        QFETCH(QPointF, expected);
        const TPosition p = presetOrigin(place, StampArea{100, 50, 500, 350}, Size{80, 20});
        QCOMPARE(QPointF(p.x, p.y), expected);
    }

    void browserHeight_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<int>("count");
        QTest::addColumn<double>("visible");
        QTest::addColumn<double>("expected");
        QTest::newRow("short catalog fills the view") << 400.0 << 10 << 600.0 << 598.0;
        QTest::newRow("taller than the view") << 400.0 << 10 << 300.0 << 524.0;
        QTest::newRow("whole rows") << 400.0 << 9 << 300.0 << 393.0;
        QTest::newRow("narrower than a cell") << 100.0 << 3 << 100.0 << 393.0;
    }
    void browserHeight() {
        QFETCH(double, width);
        QFETCH(int, count);
        QFETCH(double, visible);
        QFETCH(double, expected);
        QCOMPARE(PreviewLayout::browserHeight(width, count, visible), expected);
    }

    void labelScalesWithThePreviewAndDividerStaysInBounds() {
        // A 300-dpi photo of 4000 x 3000 pixels is 960 x 720 points; shown 800 wide.
        const Size label = labelSize(Size{96, 24}, Size{800, 600}, Size{960, 720});
        QCOMPARE(QSizeF(label.width, label.height), QSizeF(80, 20));
        QCOMPARE(constrainDivider(100), 240.0);
        QCOMPARE(constrainDivider(700), 600.0);
        QCOMPARE(constrainDivider(321), 321.0);
    }
};
SW_TEST_CLASS(PreviewLayoutTest)

#include "PreviewLayoutTest.moc"
