#include <QElapsedTimer>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "preview/SlideshowView.h"

namespace {
using TestImages::solid;

void showAndSettle(SlideshowView& view, const QImage& image) {
    view.transitionToImage(image);
    QTRY_VERIFY_WITH_TIMEOUT(!view.isTransitionRunning(), 3000);
}

QRect litArea(SlideshowView& view) {
    return TestImages::boundsWhere(view.grab().toImage(), [](QRgb c) { return qGray(c) > 40; });
}
}  // namespace

class SlideshowViewTest : public QObject {
    Q_OBJECT
  private slots:
    // Setting the style a view has builds nothing. Once there is a photo, a
    // resize rebuilds the styles whose settings hold the bounds: a centre, an
    // extent or the mask, stretched over them.
    void resizeRebuildsOnlyBoundsDependentStyles_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("withImage");
        for (int style = 0; style <= 12; ++style) {
            QTest::addRow("style %d", style) << style << true;
        }
        QTest::newRow("style 7 without a photo") << 7 << false;
        QTest::newRow("style 99 plays the ripple") << 99 << true;
    }
    void resizeRebuildsOnlyBoundsDependentStyles() {
        QFETCH(int, style);
        QFETCH(bool, withImage);
        const bool rebuilds = withImage && QList{4, 5, 7, 8, 9, 10}.contains(style);
        SlideshowView view;
        const int built = view.transitionBuildCount() + (style == 0 ? 0 : 1);
        view.setTransitionStyle(style);
        QCOMPARE(view.transitionBuildCount(), built);
        if (withImage) {
            showAndSettle(view, solid(QSize(640, 480), Qt::green));
        }
        view.setFrameSize(QSize(300, 240));
        QCOMPARE(view.transitionBuildCount(), built + (rebuilds ? 1 : 0));
        QCOMPARE(view.transition().kind == Transitions::Kind::Ripple, style == 10 || style > 11);
        QCOMPARE(view.transition().duration, 0.1);
        const QList<float> sizes{view.slideshowWidth(), view.slideshowHeight(), view.imageWidth(),
                                 view.imageHeight()};
        QCOMPARE(sizes, withImage ? QList<float>({300, 240, 640, 480}) : QList<float>(4, 0.0f));
        const Transitions::Inputs& in = view.transition().inputs;
        QCOMPARE(in.maskImage.size(), style == 5 ? QSize(300, 240) : QSize(0, 0));
        if (rebuilds && QList{7, 8, 10}.contains(style)) {
            QCOMPARE(in.center, QPointF(150, 120));
        }
        if (rebuilds && QList{4, 7, 9, 10}.contains(style)) {
            QCOMPARE(in.extent, QRectF(0, 0, 300, 240));
        }
    }

    void photoIsShrunkToFitAndCentredButNeverEnlarged_data() {
        QTest::addColumn<QSize>("photo");
        QTest::addColumn<QRect>("shown");
        QTest::newRow("small stays small") << QSize(40, 20) << QRect(180, 140, 40, 20);
        QTest::newRow("larger than the screen") << QSize(6000, 6000) << QRect(50, 0, 300, 300);
    }
    void photoIsShrunkToFitAndCentredButNeverEnlarged() {
        QFETCH(QSize, photo);
        QFETCH(QRect, shown);
        SlideshowView view;
        view.setFrameSize(QSize(400, 300));
        showAndSettle(view, solid(photo, Qt::white));
        QCOMPARE(litArea(view), shown);
    }

    // Each photo advances the cycling style, 11 wrapping to 0. A cleared photo's
    // view is hidden, then replaced by the next photo's, whose fade plays from
    // black: half-way both show. A null image plays the photo away.
    void transitionPlaysBetweenThePhotos() {
        SlideshowView view;
        view.setFrameSize(QSize(200, 150));
        view.setTransitionStyle(10);
        view.setAutoCyclesTransitionStyle(true);
        showAndSettle(view, solid(QSize(200, 150), Qt::red));
        QPointer<SlideshowImageView> first = view.currentImageView();
        view.clearImage();
        QVERIFY(litArea(view).isEmpty());
        view.transitionToImage(solid(QSize(200, 150), Qt::white));
        QCOMPARE(view.transitionStyle(), 0);
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
        QTRY_VERIFY(first.isNull());
        QPointer<SlideshowImageView> shown = view.currentImageView();
        view.transitionToImage(QImage());
        QTRY_VERIFY_WITH_TIMEOUT(shown.isNull(), 3000);
    }
};
SW_TEST_CLASS(SlideshowViewTest)

#include "SlideshowViewTest.moc"
