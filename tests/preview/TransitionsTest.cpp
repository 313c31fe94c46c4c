#include <QPainter>
#include <QTest>
#include <cmath>

#include "TestRegistry.h"
#include "preview/Lanczos.h"
#include "preview/Pointillize.h"
#include "preview/SlideshowView.h"
#include "preview/Transitions.h"

using Transitions::Kind;

namespace {

// Large enough for the page curl's 100-point roll to show its back.
constexpr int kW = 480;
constexpr int kH = 320;

// Two busy, clearly different frames.
QImage frame(bool second) {
    QImage image(kW, kH, QImage::Format_RGB32);
    for (int y = 0; y < kH; ++y) {
        for (int x = 0; x < kW; ++x) {
            const int stripe = ((x / 24 + y / 24) & 1) * 60;
            image.setPixel(x, y,
                           second ? qRgb(30 + stripe, 200 - y / 4, 40 + x / 4)
                                  : qRgb(220 - x / 4, 40 + stripe, 30 + y / 2));
        }
    }
    return image;
}

// The largest and the mean difference of any channel between two images.
std::pair<int, double> difference(const QImage& a, const QImage& b) {
    int worst = 0;
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            for (int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                worst = std::max(worst, std::abs(d));
                sum += std::abs(d);
            }
        }
    }
    return {worst, sum / (3.0 * a.width() * a.height())};
}

// The transition the preview installs for a style at the test's size.
Transitions::Transition installed(int style) {
    SlideshowView view;
    view.setFrameSize(QSize(kW, kH));
    view.setTransitionStyle(style == 0 ? 1 : 0);
    view.setTransitionStyle(style);
    return view.transition();
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
        QVERIFY(difference(Transitions::render(t, from, to, 0.0), from).first <= 2);
        QVERIFY(difference(Transitions::render(t, from, to, 1.0), to).first <= 2);
        for (double p : {0.25, 0.5, 0.75}) {
            const QImage mid = Transitions::render(t, from, to, p);
            QCOMPARE(mid.size(), from.size());
            QVERIFY2(difference(mid, from).second > 2.0 && difference(mid, to).second > 2.0,
                     qPrintable(QString("at %1").arg(p)));
        }
        for (const QSize size : {QSize(1, 1), QSize(7, 3), QSize(2, 300), QSize(700, 500)}) {
            QImage old(size, QImage::Format_RGB32);
            QImage next(size, QImage::Format_RGB32);
            old.fill(Qt::darkRed);
            next.fill(Qt::cyan);
            for (double p : {0.0, 0.3, 0.6}) {
                QCOMPARE(Transitions::render(t, old, next, p).size(), size);
            }
            QVERIFY(difference(Transitions::render(t, old, next, 1.0), next).first <= 2);
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
        Transitions::Transition t;
        t.kind = kind;
        QCOMPARE(Transitions::render(t, from, to, 0.25).pixel(column, 2), expected);
    }

    // Each setting the preview passes changes what the transition shows.
    void everySettingMatters_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("setting");
        QTest::addColumn<double>("progress");
        QTest::newRow("copy machine extent") << 4 << "extent" << 0.5;
        QTest::newRow("copy machine angle") << 4 << "angle" << 0.5;
        QTest::newRow("disintegrate mask") << 5 << "mask" << 0.5;
        QTest::newRow("flash centre") << 7 << "center" << 0.25;
        QTest::newRow("flash extent") << 7 << "extent" << 0.25;
        QTest::newRow("mod centre") << 8 << "center" << 0.4;
        QTest::newRow("mod angle") << 8 << "angle" << 0.4;
        QTest::newRow("page curl angle") << 9 << "angle" << 0.4;
        QTest::newRow("page curl extent") << 9 << "extent" << 0.4;
        QTest::newRow("page curl shading") << 9 << "shading" << 0.4;
        QTest::newRow("page curl backside") << 9 << "backside" << 0.4;
        QTest::newRow("ripple centre") << 10 << "center" << 0.4;
        QTest::newRow("ripple extent") << 10 << "extent" << 0.4;
        QTest::newRow("ripple shading") << 10 << "shading" << 0.4;
        QTest::newRow("swipe angle") << 11 << "angle" << 0.5;
    }
    void everySettingMatters() {
        QFETCH(int, style);
        QFETCH(QString, setting);
        QFETCH(double, progress);
        const Transitions::Transition base = installed(style);
        Transitions::Transition changed = base;
        Transitions::Inputs& in = changed.inputs;
        if (setting == "extent") {
            in.extent = QRectF(0, 0, kW / 2.0, kH);
        } else if (setting == "angle") {
            in.angle += 1.2f;
        } else if (setting == "center") {
            in.center = QPointF(20, 20);
        } else if (setting == "shading") {
            in.shadingImage = QImage();
        } else if (setting == "backside") {
            in.backsideImage = QImage();
        } else if (setting == "mask") {
            in.maskImage.invertPixels();
        }
        const QImage from = frame(false);
        const QImage to = frame(true);
        const double d = difference(Transitions::render(base, from, to, progress),
                                    Transitions::render(changed, from, to, progress))
                             .second;
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
        QCOMPARE(out.size(), target);
        QImage expected(target, QImage::Format_Grayscale8);
        expected.fill(77);
        QCOMPARE(out, expected);
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
