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

using namespace TestImages;
using Transitions::Kind;
using Transitions::render;

namespace {
// Large enough for the page curl's 100-point roll to show its back.
constexpr int kW = 480;
constexpr int kH = 320;
constexpr float kPi = 3.14159265f;
const QSize kSize(kW, kH);
const QPointF kMid(kW / 2.0, kH / 2.0);
const QRectF kAll(0, 0, kW, kH);

// The transition the preview installs for a style at the test's size.
Transitions::Transition installed(int style) {
    SlideshowView view;
    view.setFrameSize(kSize);
    view.setTransitionStyle(style == 0 ? 1 : 0);
    view.setTransitionStyle(style);
    return view.transition();
}

// A kind with its own defaults and the given geometry.
Transitions::Transition with(Kind kind, QPointF center = kMid, QRectF extent = kAll,
                             std::optional<float> angle = {}) {
    Transitions::Inputs in = Transitions::defaultInputs(kind);
    in.center = center;
    in.extent = extent;
    in.angle = angle.value_or(in.angle);
    return {kind, in};
}
}  // namespace

class TransitionsTest : public QObject {
    Q_OBJECT
  private slots:
    // The old frame at 0, the new at 1, neither in between, lit by the shading
    // images; frames of other sizes than the bounds (tiny, thin, larger) render.
    void startsAtTheOldFrameAndEndsAtTheNew_data() {
        QTest::addColumn<Transitions::Transition>("transition");
        QTest::addColumn<int>("lit");  // 1: the shading image matters, 2: the backside image
        for (int style = 0; style <= 12; ++style) {
            QTest::addRow("style %d", style)
                << installed(style) << (style == 9 ? 3 : int(style == 10));
        }
        QTest::newRow("disintegration without a mask") << with(Kind::DisintegrateWithMask) << 0;
    }
    void startsAtTheOldFrameAndEndsAtTheNew() {
        QFETCH(Transitions::Transition, transition);
        QFETCH(int, lit);
        const QImage from = pattern(kSize, 0);
        const QImage to = pattern(kSize, 1);
        QVERIFY(difference(render(transition, from, to, 0.0), from).worst <= 2);
        QVERIFY(difference(render(transition, from, to, 1.0), to).worst <= 2);
        for (double p : {0.25, 0.5, 0.75}) {
            const QImage mid = render(transition, from, to, p);
            QVERIFY2(difference(mid, from).mean > 2.0 && difference(mid, to).mean > 2.0,
                     qPrintable(QString("at %1").arg(p)));
        }
        for (int image : {1, 2}) {
            Transitions::Transition unlit = transition;
            (image == 1 ? unlit.inputs.shadingImage : unlit.inputs.backsideImage) = QImage();
            const QImage shown = render(unlit, from, to, 0.4);
            QVERIFY(!(lit & image) ||
                    difference(render(transition, from, to, 0.4), shown).mean > 1);
        }
        for (const QSize size : {QSize(1, 1), QSize(7, 3), QSize(2, 300), QSize(700, 500)}) {
            const QImage old = solid(size, Qt::darkRed);
            const QImage next = solid(size, Qt::cyan);
            QCOMPARE(render(transition, old, next, 0.3).size(), size);
            QVERIFY(difference(render(transition, old, next, 1.0), next).worst <= 2);
        }
    }

    // Columns coded red in the old frame and green in the new, seen at 50 of 200.
    void slidesComeFromTheLeft_data() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<int>("column");
        QTest::addColumn<uint>("expected");
        QTest::newRow("move-in: new enters") << Kind::MoveIn << 0 << qRgb(0, 150, 0);
        QTest::newRow("move-in: old stays") << Kind::MoveIn << 50 << qRgb(50, 0, 0);
        QTest::newRow("push: old's last") << Kind::Push << 199 << qRgb(149, 0, 0);
        QTest::newRow("reveal: new uncovered") << Kind::Reveal << 49 << qRgb(0, 49, 0);
        QTest::newRow("reveal: old leaves") << Kind::Reveal << 50 << qRgb(0, 0, 0);
    }
    void slidesComeFromTheLeft() {
        QFETCH(Kind, kind);
        QFETCH(int, column);
        QFETCH(uint, expected);
        QImage from(200, 1, QImage::Format_RGB32);
        QImage to(200, 1, QImage::Format_RGB32);
        for (int x = 0; x < 200; ++x) {
            from.setPixel(x, 0, qRgb(x, 0, 0));
            to.setPixel(x, 0, qRgb(0, x, 0));
        }
        QCOMPARE(render(with(kind), from, to, 0.25).pixel(column, 0), expected);
    }

    // Settings are y-up: a low centre or extent, or an angle pointing up, acts on
    // bottom rows first, not the mirrored top rows. A partial extent shows only itself.
    void geometryIsYUp_data() {
        QTest::addColumn<Transitions::Transition>("transition");
        QTest::addColumn<double>("progress");
        QTest::addColumn<QRect>("changes");  // image rows, y down
        const QPointF low(60, 60);
        const QRectF lowerHalf(0, 0, kW, kH / 2.0);
        const QRect lowerLeft(0, kH - 80, 80, 80);
        const QRect belowMid(160, kH / 2 + 10, 160, 40);
        const QRect bottom(0, kH - 80, kW, 80);
        Transitions::Transition mod = with(Kind::Mod, low);
        mod.inputs.radius = 40;  // small holes, so that some lie close to the centre
        mod.inputs.compression = 80;
        Transitions::Transition mask = with(Kind::DisintegrateWithMask);
        mask.inputs.maskImage = QImage(kW, kH / 2, QImage::Format_Grayscale8);
        mask.inputs.maskImage.fill(255);  // along the bottom half, which crumbles last
        QTest::newRow("flash centre") << with(Kind::Flash, low) << 0.15 << lowerLeft;
        QTest::newRow("ripple centre") << with(Kind::Ripple, low) << 0.1 << lowerLeft;
        QTest::newRow("mod centre") << mod << 0.06 << lowerLeft;
        QTest::newRow("flash extent") << with(Kind::Flash, kMid, lowerHalf) << 0.25 << belowMid;
        QTest::newRow("ripple extent") << with(Kind::Ripple, kMid, lowerHalf) << 0.3 << belowMid;
        QTest::newRow("copy machine extent")
            << with(Kind::CopyMachine, kMid, lowerHalf) << 0.4 << belowMid;
        QTest::newRow("page curl extent")
            << with(Kind::PageCurl, kMid, lowerHalf, -kPi / 2) << 0.2 << QRect(0, kH - 30, kW, 30);
        QTest::newRow("copy machine angle")
            << with(Kind::CopyMachine, kMid, kAll, kPi / 2) << 0.3 << bottom;
        QTest::newRow("swipe angle") << with(Kind::Swipe, kMid, kAll, kPi / 2) << 0.3 << bottom;
        QTest::newRow("page curl angle, from the corner it points to")
            << with(Kind::PageCurl, kMid, kAll, -kPi / 4) << 0.2 << QRect(kW - 80, kH - 80, 80, 80);
        QTest::newRow("disintegrate mask") << mask << 0.5 << QRect(0, 0, kW, 120);
    }
    void geometryIsYUp() {
        QFETCH(Transitions::Transition, transition);
        QFETCH(double, progress);
        QFETCH(QRect, changes);
        const QRect keeps = changes.translated(0, kH - 1 - changes.bottom() - changes.top());
        const QImage from = pattern(kSize, 0);
        const QImage to = transition.inputs.extent == kAll ? pattern(kSize, 1) : from;
        const QImage shown = render(transition, from, to, progress);
        const double changed = difference(shown, from, changes).mean;
        const int kept = difference(shown, from, keeps).worst;
        QVERIFY2(changed > 1.0 && kept <= 2, qPrintable(QString("%1 %2").arg(changed).arg(kept)));
    }

    // Mod's holes are slits along its y-up angle: a changed pixel's neighbour
    // along it (rows run down) has changed too more often than one across it.
    void modHolesRunAlongTheAngle() {
        const float angle = 0.3f;  // shallow, so a mirrored or swapped axis shows
        Transitions::Transition t = with(Kind::Mod, kMid, kAll, angle);
        t.inputs.compression = 1500;  // slits ten times longer than wide
        const QImage from = pattern(kSize, 0);
        const QImage shown = render(t, from, pattern(kSize, 1), 0.4);
        auto together = [&](float a) {
            const int dx = qRound(12 * std::cos(a)), dy = -qRound(12 * std::sin(a));
            int changed = 0, both = 0;
            for (int y = 12; y < kH - 12; ++y) {
                for (int x = 12; x < kW - 12; ++x) {
                    const bool at = shown.pixel(x, y) != from.pixel(x, y);
                    changed += at;
                    both += at && shown.pixel(x + dx, y + dy) != from.pixel(x + dx, y + dy);
                }
            }
            return double(both) / changed;
        };
        const double along = together(angle), across = together(angle + kPi / 2);
        QVERIFY2(along > across + 0.3, qPrintable(QString("%1 %2").arg(along).arg(across)));
    }

    // The ripple keeps each photo to its own area, neither pulling in nor lighting
    // the bars, and interpolates: an edge between two greys bends without steps.
    void rippleKeepsTheBarsOutAndBlendsBetweenPixels() {
        const QRect wide(60, 0, kW - 120, kH);
        const QRect tall(0, 40, kW, kH - 80);
        auto onBlack = [](const QRect& photo, int seed) {
            QImage image = solid(kSize, Qt::black);
            QPainter(&image).drawImage(photo.topLeft(), pattern(photo.size(), seed));
            return image;
        };
        auto dark = [](QRgb c) { return qRed(c) < 20 && qGreen(c) < 20 && qBlue(c) < 20; };
        for (double p = 0.1; p < 0.95; p += 0.1) {
            const QImage shown = render(installed(10), onBlack(wide, 0), onBlack(tall, 1), p);
            QVERIFY2(boundsWhere(shown.copy(wide & tall), dark).isNull(),
                     qPrintable(QString("at %1").arg(p)));
            for (const QRect corner : {QRect(0, 0, 60, 40), QRect(kW - 60, kH - 40, 60, 40)}) {
                QVERIFY(inkBounds(shown.copy(corner), qRgb(0, 0, 0)).isNull());
            }
        }
        QImage edge = solid(kSize, QColor(60, 60, 60));
        QPainter(&edge).fillRect(kW / 2, 0, kW / 2, kH, QColor(200, 200, 200));
        auto mixed = [](QRgb c) { return qGreen(c) > 80 && qGreen(c) < 180; };
        const QRect between = boundsWhere(render(with(Kind::Ripple), edge, edge, 0.3), mixed);
        QVERIFY2(between.height() > 100, qPrintable(QString::number(between.height())));
    }

    // No hard steps between neighbours: mod's grown holes merge without seams
    // along the grid, and the page starts to roll as bright as the flat page.
    void noHardSteps() {
        auto worstStep = [](const QImage& image, const QRect& r) {
            return std::max(difference(image.copy(r), image.copy(r.translated(1, 0))).worst,
                            difference(image.copy(r), image.copy(r.translated(0, 1))).worst);
        };
        for (double p : {0.6, 0.7, 0.8}) {
            const QImage shown =
                render(installed(8), solid(kSize, Qt::black), solid(kSize, Qt::white), p);
            const int worst = worstStep(shown, QRect(0, 0, kW - 1, kH - 1));
            QVERIFY2(worst <= 160, qPrintable(QString("%1 at %2").arg(worst).arg(p)));
        }
        // The middle row's left part crosses the fold, but not the roll's far edge.
        const QImage grey = solid(kSize, QColor(128, 128, 128));
        QVERIFY(worstStep(render(installed(9), grey, grey, 0.3), QRect(0, kH / 2, 400, 1)) <= 6);
    }

    // Grey stays grey, shrinking averages fine stripes, an edge stays in place.
    void lanczosResamples() {
        QImage grey(50, 30, QImage::Format_Grayscale8);
        grey.fill(77);
        for (const QSize target : {QSize(150, 90), QSize(17, 10), QSize(200, 12)}) {
            const QImage out = Lanczos::scaled(grey, target);
            QCOMPARE(out.format(), QImage::Format_Grayscale8);
            QCOMPARE(out.convertToFormat(QImage::Format_RGB32), solid(target, QColor(77, 77, 77)));
        }
        QImage stripes(300, 1, QImage::Format_Grayscale8);
        for (int x = 0; x < 300; ++x) {
            stripes.scanLine(0)[x] = (x & 1) ? 255 : 0;
        }
        const QImage average = Lanczos::scaled(stripes, QSize(100, 1)).copy(4, 0, 92, 1);
        auto off = [](QRgb c) { return std::abs(qGray(c) - 128) >= 20; };
        QVERIFY(boundsWhere(average, off).isNull());
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

    // Mostly dots of the local colour, darker gaps, transparent parts kept so.
    void pointillizeDrawsDotsOfTheLocalColour() {
        QImage image(160, 80, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(QRect(0, 0, 60, 80), QColor(200, 40, 40));
        QPainter(&image).fillRect(QRect(60, 0, 60, 80), QColor(40, 40, 200));
        const QImage out = Pointillize::render(image, 4.0f);
        int full = 0, darker = 0;
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
        QVERIFY2(full > 1600 && darker > 200, qPrintable(QString("%1 %2").arg(full).arg(darker)));
        QVERIFY(out != Pointillize::render(image, 8.0f));
    }
};
SW_TEST_CLASS(TransitionsTest)

#include "TransitionsTest.moc"
