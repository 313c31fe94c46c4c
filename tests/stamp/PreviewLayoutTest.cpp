#include <QTest>

#include "TestRegistry.h"
#include "stamp/PreviewLayout.h"

using namespace PreviewLayout;
using StampGeometry::StampArea;
using StampGeometry::TPosition;

class PreviewLayoutTest : public QObject {
    Q_OBJECT
  private slots:
    // The photo fitted into an 800 x 500 preview, never enlarged, and the stamp
    // area centred on it (y-up: left, bottom, width, height).
    void stampAreaOfPhoto_data() {
        QTest::addColumn<QSizeF>("photo");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<QRectF>("area");
        QTest::newRow("both too large, height limits")
            << QSizeF(4000, 3000) << false << QRectF(66.667, 0, 666.667, 500);
        QTest::newRow("same, with margin")
            << QSizeF(4000, 3000) << true << QRectF(123.333, 12.5, 553.333, 475);
        QTest::newRow("both too large, width limits")
            << QSizeF(4000, 1000) << false << QRectF(0, 150, 800, 200);
        QTest::newRow("only wider") << QSizeF(1000, 300) << false << QRectF(0, 130, 800, 240);
        QTest::newRow("only higher") << QSizeF(400, 1000) << false << QRectF(300, 0, 200, 500);
        QTest::newRow("smaller: a point per pixel")
            << QSizeF(300, 200) << false << QRectF(250, 150, 300, 200);
    }
    void stampAreaOfPhoto() {
        QFETCH(QSizeF, photo);
        QFETCH(bool, margin);
        QFETCH(QRectF, area);
        const Size preview{800, 500};
        const Size shown = fitPhoto(Size{float(photo.width()), float(photo.height())}, preview);
        const StampArea a = stampArea(preview, shown, margin);
        const QRectF got(QPointF(a.miniX, a.miniY), QPointF(a.maxX, a.maxY));
        QVERIFY2((got.topLeft() - area.topLeft()).manhattanLength() < 0.01 &&
                     (got.bottomRight() - area.bottomRight()).manhattanLength() < 0.01,
                 qPrintable(QString("%1 x %2").arg(shown.width).arg(shown.height)));
    }

    // In the area {100, 50, 500, 350}: a preset place (0 top left to 4 bottom
    // right), or a label dragged out of it (preset -1) back on its edge.
    void placesLabelInArea_data() {
        QTest::addColumn<int>("preset");
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<QSizeF>("label");
        QTest::addColumn<QPointF>("expected");
        const QPointF none;
        const QSizeF label(80, 20);
        QTest::newRow("top left") << 0 << none << label << QPointF(100, 330);
        QTest::newRow("top right") << 1 << none << label << QPointF(420, 330);
        QTest::newRow("centre") << 2 << none << label << QPointF(260, 190);
        QTest::newRow("bottom left") << 3 << none << label << QPointF(100, 50);
        QTest::newRow("bottom right") << 4 << none << label << QPointF(420, 50);
        QTest::newRow("past left and bottom") << -1 << QPointF(90, 10) << label << QPointF(100, 50);
        QTest::newRow("past right and top")
            << -1 << QPointF(450, 340) << label << QPointF(420, 330);
        QTest::newRow("wider than the area")
            << -1 << QPointF(150, 100) << QSizeF(500, 20) << QPointF(0, 100);
        QTest::newRow("not a number")
            << -1 << QPointF(qQNaN(), qQNaN()) << label << QPointF(100, 50);
    }
    void placesLabelInArea() {
        QFETCH(int, preset);
        QFETCH(QPointF, origin);
        QFETCH(QSizeF, label);
        QFETCH(QPointF, expected);
        const StampArea area{100, 50, 500, 350};
        const Size size{float(label.width()), float(label.height())};
        const TPosition p =
            preset >= 0
                ? presetOrigin(preset, area, size)
                : clampIntoArea(area, TPosition{float(origin.x()), float(origin.y())}, size);
        QCOMPARE(QPointF(p.x, p.y), expected);
    }

    void browserHeight_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<int>("count");
        QTest::addColumn<double>("visible");
        QTest::addColumn<double>("expected");
        QTest::addColumn<double>("afterRemoval");  // no frame allowance there
        QTest::newRow("short catalog fills the view") << 400.0 << 10 << 600.0 << 598.0 << 600.0;
        QTest::newRow("taller than the view") << 400.0 << 10 << 300.0 << 524.0 << 524.0;
        QTest::newRow("whole rows") << 400.0 << 9 << 300.0 << 393.0 << 393.0;
        QTest::newRow("narrower than a cell") << 100.0 << 3 << 100.0 << 393.0 << 393.0;
        QTest::newRow("4 columns, 8 left") << 600.0 << 8 << 200.0 << 262.0 << 262.0;
    }
    void browserHeight() {
        QFETCH(double, width);
        QFETCH(int, count);
        QFETCH(double, visible);
        QFETCH(double, expected);
        QFETCH(double, afterRemoval);
        QCOMPARE(PreviewLayout::browserHeight(width, count, visible), expected);
        QCOMPARE(heightAfterRemoval(width, count, visible), afterRemoval);
    }

    void labelScalesWithThePreviewAndDividerStaysInBounds() {
        // A 300-dpi photo of 4000 x 3000 pixels is 960 x 720 points; shown 800 wide.
        const Size label = labelSize(Size{96, 24}, Size{800, 600}, Size{960, 720});
        QCOMPARE(QSizeF(label.width, label.height), QSizeF(80, 20));
        QCOMPARE(constrainDivider(100), 240.0);
        QCOMPARE(constrainDivider(700), 600.0);
        QCOMPARE(constrainDivider(321), 321.0);
        // More than a row's worth removed rebuilds every card (4 columns in 600).
        QVERIFY(rebuildsAfterRemoval(5, 600) && !rebuildsAfterRemoval(4, 600));
        QVERIFY(rebuildsAfterRemoval(2, 100));
    }
};
SW_TEST_CLASS(PreviewLayoutTest)

#include "PreviewLayoutTest.moc"
