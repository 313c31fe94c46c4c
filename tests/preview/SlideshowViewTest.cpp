#include <QElapsedTimer>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "preview/SlideshowView.h"

namespace {

using TestImages::solid;

// Shows the image and waits for its transition to end.
void showAndSettle(SlideshowView& view, const QImage& image) {
    view.transitionToImage(image);
    QTRY_VERIFY_WITH_TIMEOUT(!view.isTransitionRunning(), 3000);
}

// The bounding box of what the view shows brighter than black.
QRect litArea(SlideshowView& view) {
    return TestImages::boundsWhere(view.grab().toImage(), [](QRgb c) { return qGray(c) > 40; });
}

}  // namespace

class SlideshowViewTest : public QObject {
    Q_OBJECT
  private slots:
    void cyclingAdvancesTheStyle_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("cycles");
        QTest::addColumn<int>("expected");
        QTest::newRow("11 wraps to 0") << 11 << true << 0;
        QTest::newRow("10 gives 11") << 10 << true << 11;
        QTest::newRow("15 gives 4") << 15 << true << 4;
        QTest::newRow("off keeps 11") << 11 << false << 11;
    }
    void cyclingAdvancesTheStyle() {
        QFETCH(int, style);
        QFETCH(bool, cycles);
        QFETCH(int, expected);
        SlideshowView view;
        view.resize(160, 120);
        view.setTransitionStyle(style);
        view.setAutoCyclesTransitionStyle(cycles);
        view.transitionToImage(solid(QSize(40, 30), Qt::red));
        QCOMPARE(view.transitionStyle(), expected);
    }

    // A new view plays the tenth-of-a-second fade, style 0; setting the style
    // it already has builds nothing.
    void settingTheSameStyleDoesNotRebuild() {
        SlideshowView view;
        QCOMPARE(view.transition().kind, Transitions::Kind::Fade);
        QCOMPARE(view.transition().duration, 0.1);
        const int built = view.transitionBuildCount();
        view.setTransitionStyle(0);
        QCOMPARE(view.transitionBuildCount(), built);
        view.setTransitionStyle(9);
        view.setTransitionStyle(9);
        QCOMPARE(view.transitionBuildCount(), built + 1);
    }

    void resizeRebuildsOnlyBoundsDependentStyles_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("withImage");
        QTest::addColumn<bool>("rebuilds");
        QTest::addColumn<bool>("centred");  // the centre is the bounds' centre
        QTest::addColumn<bool>("bounded");  // the extent is the bounds
        for (int style = 0; style <= 12; ++style) {
            const bool dependent = style == 4 || style == 5 || (style >= 7 && style <= 10);
            const bool centred = style == 7 || style == 8 || style == 10;
            const bool bounded = style == 4 || style == 7 || style == 9 || style == 10;
            QTest::addRow("style %d", style) << style << true << dependent << centred << bounded;
        }
        QTest::newRow("style 7 without a photo") << 7 << false << false << false << false;
        QTest::newRow("style 99 plays the ripple") << 99 << true << false << false << false;
    }
    // The view records its own size and the photo's, but nothing before the first photo.
    void resizeRebuildsOnlyBoundsDependentStyles() {
        QFETCH(int, style);
        QFETCH(bool, withImage);
        QFETCH(bool, rebuilds);
        QFETCH(bool, centred);
        QFETCH(bool, bounded);
        SlideshowView view;
        view.setFrameSize(QSize(200, 100));
        view.setTransitionStyle(style);
        if (withImage) {
            showAndSettle(view, solid(QSize(640, 480), Qt::green));
        }
        const int built = view.transitionBuildCount();
        view.setFrameSize(QSize(300, 240));
        QCOMPARE(view.transitionBuildCount(), built + (rebuilds ? 1 : 0));
        QCOMPARE(QSizeF(view.slideshowWidth(), view.slideshowHeight()),
                 withImage ? QSizeF(300, 240) : QSizeF(0, 0));
        QCOMPARE(QSizeF(view.imageWidth(), view.imageHeight()),
                 withImage ? QSizeF(640, 480) : QSizeF(0, 0));
        if (style > 11) {
            QCOMPARE(view.transition().kind, Transitions::Kind::Ripple);
        }
        if (centred) {
            QCOMPARE(view.transition().inputs.center, QPointF(150, 120));
        }
        if (bounded) {
            QCOMPARE(view.transition().inputs.extent, QRectF(0, 0, 300, 240));
        }
    }

    // The mask is stretched over exactly the bounds; without one the
    // disintegration still plays, as a plain blend.
    void disintegrationMask() {
        SlideshowView view;
        view.setFrameSize(QSize(333, 111));
        view.setTransitionStyle(5);
        QCOMPARE(view.transition().inputs.maskImage.size(), QSize(333, 111));
        view.setInputMaskImage(QImage());
        view.updateSubviewsTransition();
        QVERIFY(view.transition().inputs.maskImage.isNull());
        const QImage mid = Transitions::render(view.transition(), solid(QSize(120, 80), Qt::black),
                                               solid(QSize(120, 80), Qt::white), 0.5);
        QVERIFY(qAbs(qGray(mid.pixel(60, 40)) - 128) < 4);
    }

    void photoIsShrunkToFitAndCentredButNeverEnlarged_data() {
        QTest::addColumn<QSize>("photo");
        QTest::addColumn<QRect>("shown");
        QTest::newRow("small stays small") << QSize(40, 20) << QRect(180, 140, 40, 20);
        QTest::newRow("wide shrinks to the width") << QSize(800, 200) << QRect(0, 100, 400, 100);
        QTest::newRow("tall shrinks to the height") << QSize(300, 600) << QRect(125, 0, 150, 300);
        QTest::newRow("larger than the screen, small view")
            << QSize(6000, 6000) << QRect(50, 0, 300, 300);
    }
    void photoIsShrunkToFitAndCentredButNeverEnlarged() {
        QFETCH(QSize, photo);
        QFETCH(QRect, shown);
        SlideshowView view;
        view.setFrameSize(QSize(400, 300));
        showAndSettle(view, solid(photo, Qt::white));
        QCOMPARE(litArea(view), shown);
    }

    void clearThenNewPhotoReplacesTheHiddenView() {
        SlideshowView view;
        view.setFrameSize(QSize(200, 150));
        showAndSettle(view, solid(QSize(200, 150), Qt::red));
        QPointer<SlideshowImageView> first = view.currentImageView();
        view.clearImage();
        QVERIFY(first->isHidden());
        QVERIFY(litArea(view).isEmpty());
        QCOMPARE(view.image().pixelColor(0, 0), QColor(Qt::red));

        showAndSettle(view, solid(QSize(200, 150), Qt::blue));
        QVERIFY(view.currentImageView() != first);
        QVERIFY(!view.currentImageView()->isHidden());
        QTRY_VERIFY(first.isNull());
        QCOMPARE(view.grab().toImage().pixelColor(100, 75), QColor(Qt::blue));
    }

    // The animation runs the frames of the installed transition from the old
    // photo to the new one: half-way through a fade, both show. A null image
    // plays the photo away.
    void transitionPlaysBetweenThePhotos() {
        SlideshowView view;
        view.setFrameSize(QSize(200, 150));
        showAndSettle(view, solid(QSize(200, 150), Qt::black));
        view.transitionToImage(solid(QSize(200, 150), Qt::white));
        QVERIFY(view.isTransitionRunning());
        bool sawBetween = false;
        QElapsedTimer clock;
        clock.start();
        while (view.isTransitionRunning() && clock.elapsed() < 3000) {
            const int grey = qGray(view.currentImageView()->currentFrame().pixel(100, 75));
            sawBetween = sawBetween || (grey > 20 && grey < 235);
            QTest::qWait(5);
        }
        QVERIFY(sawBetween);
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(qGray(view.grab().toImage().pixel(100, 75)), 255);

        QPointer<SlideshowImageView> shown = view.currentImageView();
        view.transitionToImage(QImage());
        QVERIFY(view.currentImageView() == nullptr);
        QVERIFY(view.image().isNull());
        QTRY_VERIFY_WITH_TIMEOUT(shown.isNull(), 3000);
        QVERIFY(litArea(view).isEmpty());
    }
};
SW_TEST_CLASS(SlideshowViewTest)

#include "SlideshowViewTest.moc"
