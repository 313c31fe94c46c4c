#include <QRandomGenerator>
#include <QTest>

#include "TestRegistry.h"
#include "stamp/StampGeometry.h"

using StampGeometry::Snapshot;
using StampGeometry::StampArea;
using StampGeometry::TPosition;

namespace {
// A preview area that is not at the origin, so the mapping must subtract it.
const StampArea kPreview{40.0f, 25.0f, 640.0f, 475.0f};
constexpr float kLabelW = 120.0f;
constexpr float kLabelH = 24.0f;

// The label at a share (0 = left/bottom, 1 = right/top) of its free travel.
Snapshot labelAt(const StampArea& area, float shareX, float shareY, float w = kLabelW,
                 float h = kLabelH) {
    const float x = area.miniX + shareX * ((area.maxX - area.miniX) - w);
    const float y = area.miniY + shareY * ((area.maxY - area.miniY) - h);
    return StampGeometry::backupPositionAndSize(area, x, y, w, h);
}
}  // namespace

class StampGeometryTest : public QObject {
    Q_OBJECT
  private slots:
    void snapshotPairsLabelWithArea() {
        const Snapshot s =
            StampGeometry::backupPositionAndSize(kPreview, 100.5f, 60.0f, 80.0f, 20.0f);
        QCOMPARE(s.image.miniX, kPreview.miniX);
        QCOMPARE(s.image.maxY, kPreview.maxY);
        QCOMPARE(s.label.miniX, 100.5f);
        QCOMPARE(s.label.miniY, 60.0f);
        QCOMPARE(s.label.maxX, 180.5f);
        QCOMPARE(s.label.maxY, 80.0f);
    }

    void outputArea_data() {
        QTest::addColumn<float>("W");
        QTest::addColumn<float>("H");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<float>("miniX");
        QTest::addColumn<float>("miniY");
        QTest::addColumn<float>("maxX");
        QTest::addColumn<float>("maxY");
        QTest::newRow("off") << 1000.0f << 800.0f << false << 0.0f << 0.0f << 1000.0f << 800.0f;
        QTest::newRow("on 1000x800")
            << 1000.0f << 800.0f << true << 85.0f << 20.0f << 915.0f << 780.0f;
        QTest::newRow("on 4000x3000")
            << 4000.0f << 3000.0f << true << 340.0f << 75.0f << 3660.0f << 2925.0f;
        QTest::newRow("on 0x0") << 0.0f << 0.0f << true << 0.0f << 0.0f << 0.0f << 0.0f;
    }
    void outputArea() {
        QFETCH(float, W);
        QFETCH(float, H);
        QFETCH(bool, margin);
        const StampArea area = StampGeometry::outputArea(W, H, margin);
        QTEST(area.miniX, "miniX");
        QTEST(area.miniY, "miniY");
        QTEST(area.maxX, "maxX");
        QTEST(area.maxY, "maxY");
    }

    void placesText_data() {
        QTest::addColumn<float>("shareX");
        QTest::addColumn<float>("shareY");
        QTest::addColumn<float>("W");
        QTest::addColumn<float>("H");
        QTest::addColumn<bool>("margin");
        QTest::addColumn<float>("fw");
        QTest::addColumn<float>("fh");
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::newRow("off, bottom-left")
            << 0.0f << 0.0f << 4000.0f << 3000.0f << false << 300.0f << 40.0f << 0.0f << 0.0f;
        QTest::newRow("off, top-right")
            << 1.0f << 1.0f << 4000.0f << 3000.0f << false << 300.0f << 40.0f << 3700.0f << 2960.0f;
        QTest::newRow("off, top-left")
            << 0.0f << 1.0f << 640.0f << 480.0f << false << 100.0f << 20.0f << 0.0f << 460.0f;
        QTest::newRow("off, centred")
            << 0.5f << 0.5f << 4000.0f << 3000.0f << false << 300.0f << 40.0f << 1850.0f << 1480.0f;
        QTest::newRow("on, bottom-left")
            << 0.0f << 0.0f << 1000.0f << 800.0f << true << 150.0f << 30.0f << 85.0f << 20.0f;
        QTest::newRow("on, top-right")
            << 1.0f << 1.0f << 1000.0f << 800.0f << true << 150.0f << 30.0f << 765.0f << 750.0f;
        QTest::newRow("on, centred")
            << 0.5f << 0.5f << 1000.0f << 800.0f << true << 150.0f << 30.0f << 425.0f << 385.0f;
        QTest::newRow("quarter across, 4000")
            << 0.25f << 0.0f << 4000.0f << 3000.0f << false << 400.0f << 40.0f << 900.0f << 0.0f;
        QTest::newRow("quarter across, 1200")
            << 0.25f << 0.0f << 1200.0f << 900.0f << false << 400.0f << 40.0f << 200.0f << 0.0f;
        QTest::newRow("three quarters up")
            << 0.0f << 0.75f << 1200.0f << 900.0f << false << 400.0f << 100.0f << 0.0f << 600.0f;
        // No clamping: a text wider than the photo keeps the label's corner rule
        // and runs over the left edge.
        QTest::newRow("text wider than photo")
            << 1.0f << 0.0f << 200.0f << 100.0f << false << 260.0f << 20.0f << -60.0f << 0.0f;
    }
    void placesText() {
        QFETCH(float, shareX);
        QFETCH(float, shareY);
        QFETCH(float, W);
        QFETCH(float, H);
        QFETCH(bool, margin);
        QFETCH(float, fw);
        QFETCH(float, fh);
        const TPosition at = StampGeometry::calculateOutputPosition(
            labelAt(kPreview, shareX, shareY), StampGeometry::outputArea(W, H, margin), fw, fh);
        QTEST(at.x, "x");
        QTEST(at.y, "y");
    }

    // A label exactly as wide or high as its area has no travel on that axis; the
    // text is centred there instead of dividing by zero.
    void zeroTravelCentres_data() {
        QTest::addColumn<bool>("fullWidth");
        QTest::newRow("full width") << true;
        QTest::newRow("full height") << false;
    }
    void zeroTravelCentres() {
        QFETCH(bool, fullWidth);
        const float w = fullWidth ? kPreview.maxX - kPreview.miniX : kLabelW;
        const float h = fullWidth ? kLabelH : kPreview.maxY - kPreview.miniY;
        const Snapshot s = labelAt(kPreview, 0.0f, 0.0f, w, h);
        const TPosition at = StampGeometry::calculateOutputPosition(
            s, StampGeometry::outputArea(1000.0f, 800.0f, false), 200.0f, 50.0f);
        QVERIFY(std::isfinite(at.x) && std::isfinite(at.y));
        QCOMPARE(at.x, fullWidth ? 400.0f : 0.0f);
        QCOMPARE(at.y, fullWidth ? 0.0f : 375.0f);
    }

    // The centre-based steps agree with the plain share-of-travel form for
    // arbitrary placements, areas and sizes, up to float rounding.
    void matchesShareOfTravel() {
        QRandomGenerator random(20140305);
        for (int i = 0; i < 2000; ++i) {
            const auto real = [&](double lo, double hi) {
                return static_cast<float>(lo + random.generateDouble() * (hi - lo));
            };
            const StampArea preview{real(0, 100), real(0, 100), real(300, 900), real(300, 700)};
            const float w = real(10, 250);
            const float h = real(5, 120);
            const Snapshot s = StampGeometry::backupPositionAndSize(
                preview, real(preview.miniX - 20, preview.maxX - w + 20),
                real(preview.miniY - 20, preview.maxY - h + 20), w, h);
            const StampArea out =
                StampGeometry::outputArea(real(50, 6000), real(50, 6000), random.bounded(2) == 1);
            const float fw = real(5, 800);
            const float fh = real(5, 200);
            const TPosition at = StampGeometry::proportionalPlace(s, out, fw, fh);
            const double fx = double(preview.maxX - preview.miniX) - w;
            const double fy = double(preview.maxY - preview.miniY) - h;
            const double x = out.miniX + double(s.label.miniX - preview.miniX) *
                                             (double(out.maxX - out.miniX) - fw) / fx;
            const double y = out.miniY + double(s.label.miniY - preview.miniY) *
                                             (double(out.maxY - out.miniY) - fh) / fy;
            const double tolerance = 1e-3 * (1.0 + std::abs(out.maxX) + std::abs(out.maxY));
            QVERIFY2(std::abs(at.x - x) < tolerance, qPrintable(QString::number(i)));
            QVERIFY2(std::abs(at.y - y) < tolerance, qPrintable(QString::number(i)));
        }
    }
};
SW_TEST_CLASS(StampGeometryTest)

#include "StampGeometryTest.moc"
