#include <QPainter>
#include <QTest>
#include <cmath>
#include <optional>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "preview/Lanczos.h"
#include "preview/Pointillize.h"
#include "preview/SlideshowView.h"
#include "preview/Transitions.h"

using TestImages::difference;
using Transitions::Kind;

namespace {

// Large enough for the page curl's 100-point roll to show its back.
constexpr int kW = 480;
constexpr int kH = 320;
constexpr float kPi = 3.14159265f;

// Two busy, clearly different frames.
QImage frame(bool second) {
    return TestImages::pattern(QSize(kW, kH), second ? 1 : 0);
}

// A photo on black, as the preview shows it, letterboxed at `photo`.
QImage onBlack(const QRect& photo, int seed) {
    QImage image = TestImages::solid(QSize(kW, kH), Qt::black);
    QPainter(&image).drawImage(photo.topLeft(), TestImages::pattern(photo.size(), seed));
    return image;
}

// The transition the preview installs for a style at the test's size.
Transitions::Transition installed(int style) {
    SlideshowView view;
    view.setFrameSize(QSize(kW, kH));
    view.setTransitionStyle(style == 0 ? 1 : 0);
    view.setTransitionStyle(style);
    return view.transition();
}

const QPointF kMid(kW / 2.0, kH / 2.0);
const QRectF kAll(0, 0, kW, kH);

// A kind with its own defaults and the given geometry.
Transitions::Transition with(Kind kind, QPointF center = kMid, QRectF extent = kAll,
                             std::optional<float> angle = {}) {
    Transitions::Transition t;
    t.kind = kind;
    t.inputs = Transitions::defaultInputs(kind);
    t.inputs.center = center;
    t.inputs.extent = extent;
    t.inputs.angle = angle.value_or(t.inputs.angle);
    return t;
}

}  // namespace

class TransitionsTest : public QObject {
    Q_OBJECT
  private slots:
    // At 0 the old frame, at 1 the new one, neither in between. Frames of other
    // sizes than the bounds the transition was built for (tiny, thin, or larger
    // after a resize that rebuilt nothing) still render.
    void startsAtTheOldFrameAndEndsAtTheNew_data() {
        QTest::addColumn<int>("style");
        for (int style = 0; style <= 12; ++style) {
            QTest::addRow("style %d", style) << style;
        }
    }
    void startsAtTheOldFrameAndEndsAtTheNew() {
        QFETCH(int, style);
        const Transitions::Transition t = installed(style);
        const QImage from = frame(false);
        const QImage to = frame(true);
        QVERIFY(difference(Transitions::render(t, from, to, 0.0), from).worst <= 2);
        QVERIFY(difference(Transitions::render(t, from, to, 1.0), to).worst <= 2);
        for (double p : {0.25, 0.5, 0.75}) {
            const QImage mid = Transitions::render(t, from, to, p);
            QVERIFY2(difference(mid, from).mean > 2.0 && difference(mid, to).mean > 2.0,
                     qPrintable(QString("at %1").arg(p)));
        }
        for (const QSize size : {QSize(1, 1), QSize(7, 3), QSize(2, 300), QSize(700, 500)}) {
            const QImage old = TestImages::solid(size, Qt::darkRed);
            const QImage next = TestImages::solid(size, Qt::cyan);
            for (double p : {0.0, 0.3, 0.6}) {
                QCOMPARE(Transitions::render(t, old, next, p).size(), size);
            }
            QVERIFY(difference(Transitions::render(t, old, next, 1.0), next).worst <= 2);
        }
    }

    // Columns coded by colour, red in the old frame and green in the new,
    // show where each part of the slides comes from.
    void slidesComeFromTheLeft_data() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<int>("column");
        QTest::addColumn<uint>("expected");
        // A quarter of the way: the moving frame has travelled 50 of 200.
        QTest::newRow("move-in: new enters") << Kind::MoveIn << 0 << qRgb(0, 150, 0);
        QTest::newRow("move-in: old stays") << Kind::MoveIn << 50 << qRgb(50, 0, 0);
        QTest::newRow("push: new enters") << Kind::Push << 10 << qRgb(0, 160, 0);
        QTest::newRow("push: old pushed") << Kind::Push << 50 << qRgb(0, 0, 0);
        QTest::newRow("push: old's last") << Kind::Push << 199 << qRgb(149, 0, 0);
        QTest::newRow("reveal: new uncovered") << Kind::Reveal << 49 << qRgb(0, 49, 0);
        QTest::newRow("reveal: old leaves") << Kind::Reveal << 50 << qRgb(0, 0, 0);
    }
    void slidesComeFromTheLeft() {
        QFETCH(Kind, kind);
        QFETCH(int, column);
        QFETCH(uint, expected);
        QImage from(200, 4, QImage::Format_RGB32);
        QImage to(200, 4, QImage::Format_RGB32);
        for (int x = 0; x < 200; ++x) {
            for (int y = 0; y < 4; ++y) {
                from.setPixel(x, y, qRgb(x, 0, 0));
                to.setPixel(x, y, qRgb(0, x, 0));
            }
        }
        QCOMPARE(Transitions::render(with(kind), from, to, 0.25).pixel(column, 2), expected);
    }

    // Settings are y-up: a centre or an extent low in the view, or an angle
    // pointing up, acts first on the frame's bottom rows (image rows run down).
    // With a partial extent the new frame is the old one, so only the effect
    // itself shows.
    void geometryIsYUp_data() {
        QTest::addColumn<Transitions::Transition>("transition");
        QTest::addColumn<double>("progress");
        QTest::addColumn<QRect>("changes");  // image rows, y down
        QTest::addColumn<QRect>("keeps");
        const QPointF low(60, 60);
        const QRectF lowerHalf(0, 0, kW, kH / 2.0);
        const QRect lowerLeft(0, kH - 80, 80, 80);
        const QRect upperLeft(0, 0, 80, 80);
        const QRect bottom(0, kH - 80, kW, 80);
        const QRect top(0, 0, kW, 120);
        const QRect belowMid(160, kH / 2 + 10, 160, 40);
        const QRect aboveMid(160, kH / 2 - 50, 160, 40);
        Transitions::Transition mod = with(Kind::Mod, low);
        mod.inputs.radius = 40;  // small holes, so that some lie close to the centre
        mod.inputs.compression = 80;
        // A white mask half the view's height lies along its bottom edge and
        // crumbles last; the unmasked part goes first.
        Transitions::Transition mask = with(Kind::DisintegrateWithMask);
        mask.inputs.maskImage = QImage(kW, kH / 2, QImage::Format_Grayscale8);
        mask.inputs.maskImage.fill(255);
        QTest::newRow("flash centre") << with(Kind::Flash, low) << 0.15 << lowerLeft << upperLeft;
        QTest::newRow("ripple centre") << with(Kind::Ripple, low) << 0.1 << lowerLeft << upperLeft;
        QTest::newRow("mod centre") << mod << 0.06 << lowerLeft << upperLeft;
        QTest::newRow("flash extent")
            << with(Kind::Flash, kMid, lowerHalf) << 0.25 << belowMid << aboveMid;
        QTest::newRow("ripple extent")
            << with(Kind::Ripple, kMid, lowerHalf) << 0.3 << belowMid << aboveMid;
        QTest::newRow("copy machine extent")
            << with(Kind::CopyMachine, kMid, lowerHalf) << 0.4 << belowMid << aboveMid;
        QTest::newRow("page curl extent") << with(Kind::PageCurl, kMid, lowerHalf, -kPi / 2) << 0.2
                                          << QRect(0, kH - 30, kW, 30) << top;
        QTest::newRow("copy machine angle")
            << with(Kind::CopyMachine, kMid, kAll, kPi / 2) << 0.3 << bottom << top;
        QTest::newRow("swipe angle")
            << with(Kind::Swipe, kMid, kAll, kPi / 2) << 0.3 << bottom << top;
        // Rolls up from the corner the angle points to.
        QTest::newRow("page curl angle")
            << with(Kind::PageCurl, kMid, kAll, -kPi / 4) << 0.2 << QRect(kW - 80, kH - 80, 80, 80)
            << QRect(kW - 80, 0, 80, 80);
        QTest::newRow("disintegrate mask") << mask << 0.5 << top << bottom;
    }
    void geometryIsYUp() {
        QFETCH(Transitions::Transition, transition);
        QFETCH(double, progress);
        QFETCH(QRect, changes);
        QFETCH(QRect, keeps);
        const QImage from = frame(false);
        const QImage to = transition.inputs.extent == kAll ? frame(true) : from;
        const QImage shown = Transitions::render(transition, from, to, progress);
        const double changed = difference(shown, from, changes).mean;
        const int kept = difference(shown, from, keeps).worst;
        QVERIFY2(changed > 1.0 && kept <= 2, qPrintable(QString("%1 %2").arg(changed).arg(kept)));
    }

    // Mod's holes are slits along its angle (y-up): a changed pixel's
    // neighbour along the angle has changed too, more often than one across
    // it. A shallow angle tells a mirrored or swapped axis from the right one.
    void modHolesRunAlongTheAngle() {
        const float angle = 0.3f;
        Transitions::Transition t = with(Kind::Mod, kMid, kAll, angle);
        t.inputs.compression = 1500;  // slits ten times longer than wide
        const QImage from = frame(false);
        const QImage shown = Transitions::render(t, from, frame(true), 0.4);
        auto together = [&](float a) {
            const int dx = qRound(12 * std::cos(a));
            const int dy = -qRound(12 * std::sin(a));  // image rows run down
            int changed = 0;
            int both = 0;
            for (int y = 12; y < kH - 12; ++y) {
                for (int x = 12; x < kW - 12; ++x) {
                    if (shown.pixel(x, y) != from.pixel(x, y)) {
                        ++changed;
                        both += shown.pixel(x + dx, y + dy) != from.pixel(x + dx, y + dy);
                    }
                }
            }
            return double(both) / changed;
        };
        const double along = together(angle);
        const double across = together(angle + kPi / 2);
        QVERIFY2(along > across + 0.3, qPrintable(QString("%1 %2").arg(along).arg(across)));
    }

    // The ripple moves each photo within its own area: the black bars beside
    // one photo and above the other are neither pulled into the photos nor
    // lit, and where both photos are no black shows.
    void rippleKeepsTheBarsOut() {
        const QRect wide(60, 0, kW - 120, kH);
        const QRect tall(0, 40, kW, kH - 80);
        const QImage from = onBlack(wide, 0);
        const QImage to = onBlack(tall, 1);
        const Transitions::Transition t = installed(10);
        auto dark = [](QRgb c) { return qRed(c) < 20 && qGreen(c) < 20 && qBlue(c) < 20; };
        for (double p = 0.1; p < 0.95; p += 0.1) {
            const QImage shown = Transitions::render(t, from, to, p);
            QVERIFY2(TestImages::boundsWhere(shown.copy(wide & tall), dark).isNull(),
                     qPrintable(QString("at %1").arg(p)));
            for (const QRect corner : {QRect(0, 0, 60, 40), QRect(kW - 60, kH - 40, 60, 40)}) {
                QVERIFY(TestImages::inkBounds(shown.copy(corner), qRgb(0, 0, 0)).isNull());
            }
        }
    }

    // Ripple interpolates its displaced samples: a straight edge between two
    // greys bends into a curve with in-between greys, not a staircase.
    void rippleBlendsBetweenPixels() {
        QImage edge = TestImages::solid(QSize(kW, kH), QColor(60, 60, 60));
        QPainter(&edge).fillRect(kW / 2, 0, kW / 2, kH, QColor(200, 200, 200));
        const QImage shown = Transitions::render(with(Kind::Ripple), edge, edge, 0.3);
        const QRect between = TestImages::boundsWhere(
            shown, [](QRgb c) { return qGreen(c) > 80 && qGreen(c) < 180; });
        QVERIFY2(between.height() > 100, qPrintable(QString::number(between.height())));
    }

    // No hard steps where none belong: where the page starts to roll its
    // front is as bright as the flat page, and mod's holes, grown past their
    // cells late on, merge instead of ending in straight seams along the grid.
    void noHardSteps_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<QColor>("old");
        QTest::addColumn<QColor>("next");
        QTest::addColumn<double>("progress");
        QTest::addColumn<QRect>("within");
        QTest::addColumn<int>("limit");  // the largest step between neighbours
        const QColor grey(128, 128, 128);
        for (double p : {0.6, 0.7, 0.8}) {
            QTest::addRow("mod at %g", p)
                << 8 << QColor(Qt::black) << QColor(Qt::white) << p << QRect(0, 0, kW, kH) << 160;
        }
        // The middle row's left part crosses the fold, but not the roll's far edge.
        QTest::newRow("page curl fold")
            << 9 << grey << grey << 0.3 << QRect(0, kH / 2, 400, 1) << 6;
    }
    void noHardSteps() {
        QFETCH(int, style);
        QFETCH(QColor, old);
        QFETCH(QColor, next);
        QFETCH(double, progress);
        QFETCH(QRect, within);
        QFETCH(int, limit);
        const QImage shown =
            Transitions::render(installed(style), TestImages::solid(QSize(kW, kH), old),
                                TestImages::solid(QSize(kW, kH), next), progress);
        int worst = 0;
        for (int y = within.top(); y <= within.bottom(); ++y) {
            for (int x = within.left(); x < within.right(); ++x) {
                const int g = qGreen(shown.pixel(x, y));
                worst = std::max(worst, std::abs(g - qGreen(shown.pixel(x + 1, y))));
                if (y < within.bottom()) {
                    worst = std::max(worst, std::abs(g - qGreen(shown.pixel(x, y + 1))));
                }
            }
        }
        QVERIFY2(worst <= limit, qPrintable(QString::number(worst)));
    }

    // The shading and backside images light what the transition shows.
    void shadingMatters_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("backside");  // or the shading image
        QTest::newRow("page curl shading") << 9 << false;
        QTest::newRow("page curl backside") << 9 << true;
        QTest::newRow("ripple shading") << 10 << false;
    }
    void shadingMatters() {
        QFETCH(int, style);
        QFETCH(bool, backside);
        const Transitions::Transition base = installed(style);
        Transitions::Transition changed = base;
        (backside ? changed.inputs.backsideImage : changed.inputs.shadingImage) = QImage();
        const QImage from = frame(false);
        const QImage to = frame(true);
        const double d = difference(Transitions::render(base, from, to, 0.4),
                                    Transitions::render(changed, from, to, 0.4))
                             .mean;
        QVERIFY2(d > 1.0, qPrintable(QString::number(d)));
    }

    void lanczosKeepsFlatGreyFlat_data() {
        QTest::addColumn<QSize>("target");
        QTest::newRow("up three times") << QSize(150, 90);
        QTest::newRow("down three times") << QSize(17, 10);
        QTest::newRow("stretched one way") << QSize(200, 12);
    }
    void lanczosKeepsFlatGreyFlat() {
        QFETCH(QSize, target);
        QImage grey(50, 30, QImage::Format_Grayscale8);
        grey.fill(77);
        const QImage out = Lanczos::scaled(grey, target);
        QCOMPARE(out.format(), QImage::Format_Grayscale8);
        QCOMPARE(out.convertToFormat(QImage::Format_RGB32),
                 TestImages::solid(target, QColor(77, 77, 77)));
    }

    // Shrinking filters: fine stripes become their average, not a new pattern.
    void lanczosShrinkingDoesNotAlias() {
        QImage stripes(300, 8, QImage::Format_Grayscale8);
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 300; ++x) {
                stripes.scanLine(y)[x] = (x & 1) ? 255 : 0;
            }
        }
        const QImage out = Lanczos::scaled(stripes, QSize(100, 8));
        for (int x = 4; x < 96; ++x) {
            QVERIFY2(std::abs(int(out.constScanLine(4)[x]) - 128) < 20,
                     qPrintable(QString::number(out.constScanLine(4)[x])));
        }
    }

    void lanczosKeepsAnEdgeInPlace() {
        QImage step(40, 4, QImage::Format_ARGB32);
        step.fill(Qt::white);
        QPainter(&step).fillRect(0, 0, 20, 4, Qt::black);
        const QImage out = Lanczos::scaled(step, QSize(80, 4));
        QCOMPARE(out.format(), QImage::Format_ARGB32_Premultiplied);
        QVERIFY(qGray(out.pixel(30, 2)) < 10);
        QVERIFY(qGray(out.pixel(49, 2)) > 245);
        QVERIFY(qGray(out.pixel(39, 2)) < qGray(out.pixel(40, 2)));
        QVERIFY(std::abs(qGray(out.pixel(39, 2)) + qGray(out.pixel(40, 2)) - 255) < 12);
    }

    // Dots of the local colour with gaps between them; transparent parts stay
    // transparent.
    void pointillizeDrawsDotsOfTheLocalColour() {
        QImage image(160, 80, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter p(&image);
        p.fillRect(QRect(0, 0, 60, 80), QColor(200, 40, 40));
        p.fillRect(QRect(60, 0, 60, 80), QColor(40, 40, 200));
        p.end();
        const QImage out = Pointillize::render(image, 4.0f);
        QCOMPARE(out.size(), image.size());
        int full = 0;
        int darker = 0;
        for (int y = 0; y < 80; ++y) {
            for (int x = 0; x < 40; ++x) {
                const QColor left = out.pixelColor(x, y);
                const QColor right = out.pixelColor(x + 70, y);
                QVERIFY(left.red() > 3 * left.blue() && right.blue() > 3 * right.red());
                QVERIFY(left.red() >= 130 && left.red() <= 200 && left.alpha() == 255);
                (left.red() == 200 ? full : darker)++;
            }
            QCOMPARE(qAlpha(out.pixel(150, y)) + qAlpha(out.pixel(159, y)), 0);
        }
        // Mostly dots.
        QVERIFY2(full > 1600 && darker > 200, qPrintable(QString("%1 %2").arg(full).arg(darker)));
        QVERIFY(out != Pointillize::render(image, 8.0f));
    }
};
SW_TEST_CLASS(TransitionsTest)

#include "TransitionsTest.moc"
