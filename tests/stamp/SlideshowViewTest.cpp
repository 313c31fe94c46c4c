#include <QElapsedTimer>
#include <QPainter>
#include <QTest>

#include "TestRegistry.h"
#include "stamp/SlideshowView.h"

namespace {

QImage solid(QSize size, QColor color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// Shows the image and waits for its transition to end.
void showAndSettle(SlideshowView& view, const QImage& image) {
    view.transitionToImage(image);
    QTRY_VERIFY_WITH_TIMEOUT(!view.isTransitionRunning(), 3000);
}

// The bounding box of the non-black pixels of what the view shows.
QRect litArea(SlideshowView& view) {
    const QImage shot = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    QRect box;
    for (int y = 0; y < shot.height(); ++y) {
        for (int x = 0; x < shot.width(); ++x) {
            if (qGray(shot.pixel(x, y)) > 40) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

}  // namespace

class SlideshowViewTest : public QObject {
    Q_OBJECT
  private slots:
    void createdWithTheFadeAndBothResources() {
        SlideshowView view;
        QCOMPARE(view.transitionStyle(), 0);
        QVERIFY(!view.autoCyclesTransitionStyle());
        QCOMPARE(view.transition().kind, Transitions::Kind::Fade);
        QCOMPARE(view.transition().duration, 0.1);
        QVERIFY(!view.inputShadingImage().isNull());
        QVERIFY(!view.inputMaskImage().isNull());
        QVERIFY(view.image().isNull());
        QVERIFY(view.currentImageView() == nullptr);
    }

    void missingResourceIsEmpty() {
        QVERIFY(SlideshowView::loadResourceImage("nosuchimage", "tiff").isNull());
        QVERIFY(!SlideshowView::loadResourceImage("transitionmask", "jpg").isNull());
    }

    void cyclingAdvancesTheStyle_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("cycles");
        QTest::addColumn<int>("expected");
        QTest::newRow("11 wraps to 0") << 11 << true << 0;
        QTest::newRow("10 gives 11") << 10 << true << 11;
        QTest::newRow("0 gives 1") << 0 << true << 1;
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

    void settingTheSameStyleDoesNotRebuild() {
        SlideshowView view;
        const int built = view.transitionBuildCount();
        view.setTransitionStyle(0);
        QCOMPARE(view.transitionBuildCount(), built);
        view.setTransitionStyle(9);
        QCOMPARE(view.transitionBuildCount(), built + 1);
        QCOMPARE(view.transition().kind, Transitions::Kind::PageCurl);
        view.setTransitionStyle(9);
        QCOMPARE(view.transitionBuildCount(), built + 1);
    }

    void resizeRebuildsOnlyBoundsDependentStyles_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("withImage");
        QTest::addColumn<bool>("rebuilds");
        for (int style = 0; style <= 12; ++style) {
            const bool dependent = style == 4 || style == 5 || (style >= 7 && style <= 10);
            QTest::addRow("style %d", style) << style << true << dependent;
        }
        QTest::newRow("style 7 without a photo") << 7 << false << false;
        QTest::newRow("style 99 plays the ripple") << 99 << true << false;
    }
    void resizeRebuildsOnlyBoundsDependentStyles() {
        QFETCH(int, style);
        QFETCH(bool, withImage);
        QFETCH(bool, rebuilds);
        SlideshowView view;
        view.setFrameSize(QSize(200, 100));
        view.setTransitionStyle(style);
        if (withImage) {
            showAndSettle(view, solid(QSize(50, 20), Qt::green));
        }
        const int built = view.transitionBuildCount();
        const Transitions::Inputs before = view.transition().inputs;
        view.setFrameSize(QSize(300, 240));
        QCOMPARE(view.transitionBuildCount(), built + (rebuilds ? 1 : 0));
        const Transitions::Inputs& after = view.transition().inputs;
        if (style > 11) {
            QCOMPARE(view.transition().kind, Transitions::Kind::Ripple);
        }
        if (style == 7 && withImage) {
            QCOMPARE(after.center, QPointF(150, 120));
            QCOMPARE(after.extent, QRectF(0, 0, 300, 240));
        } else if (!rebuilds) {
            QCOMPARE(after.center, before.center);
            QCOMPARE(after.extent, before.extent);
        }
    }

    void transitionSettingsFollowTheBounds_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<QPointF>("center");
        QTest::addColumn<QRectF>("extent");
        QTest::addColumn<float>("angle");
        const QRectF bounds(0, 0, 320, 200);
        const QRectF unset(0, 0, 300, 300);
        QTest::newRow("copy machine") << 4 << QPointF(150, 150) << bounds << 0.0f;
        QTest::newRow("flash") << 7 << QPointF(160, 100) << bounds << 0.0f;
        QTest::newRow("mod") << 8 << QPointF(160, 100) << unset << 2.0f;
        QTest::newRow("page curl") << 9 << QPointF(150, 150) << bounds << -0.7853982f;
        QTest::newRow("ripple") << 10 << QPointF(160, 100) << bounds << 0.0f;
        QTest::newRow("swipe") << 11 << QPointF(150, 150) << unset << 0.0f;
    }
    void transitionSettingsFollowTheBounds() {
        QFETCH(int, style);
        QFETCH(QPointF, center);
        QFETCH(QRectF, extent);
        QFETCH(float, angle);
        SlideshowView view;
        view.setFrameSize(QSize(320, 200));
        view.setTransitionStyle(style);
        const Transitions::Inputs& in = view.transition().inputs;
        QCOMPARE(in.center, center);
        QCOMPARE(in.extent, extent);
        QCOMPARE(in.angle, angle);
        const bool shaded = style == 9 || style == 10;
        QCOMPARE(!in.shadingImage.isNull(), shaded);
        QCOMPARE(!in.backsideImage.isNull(), style == 9);
    }

    void maskIsStretchedOverTheBounds() {
        SlideshowView view;
        view.setFrameSize(QSize(333, 111));
        view.setTransitionStyle(5);
        QCOMPARE(view.transition().inputs.maskImage.size(), QSize(333, 111));

        // Without a mask the disintegration still plays, as a plain blend.
        SlideshowView bare;
        bare.setInputMaskImage(QImage());
        bare.setFrameSize(QSize(120, 80));
        bare.setTransitionStyle(5);
        QVERIFY(bare.transition().inputs.maskImage.isNull());
        const QImage a = solid(QSize(120, 80), Qt::black);
        const QImage b = solid(QSize(120, 80), Qt::white);
        const QImage mid = Transitions::render(bare.transition(), a, b, 0.5);
        QVERIFY(qAbs(qGray(mid.pixel(60, 40)) - 128) < 4);
    }

    void resizeBeforeAnyPhotoRecordsZero() {
        SlideshowView view;
        view.setTransitionStyle(7);
        const int built = view.transitionBuildCount();
        view.setFrameSize(QSize(400, 300));
        QCOMPARE(view.getSlideshowWidth(), 0.0f);
        QCOMPARE(view.getSlideshowHeight(), 0.0f);
        QCOMPARE(view.transitionBuildCount(), built);
    }

    void resizeRecordsViewAndImageSizes() {
        SlideshowView view;
        view.setFrameSize(QSize(400, 300));
        showAndSettle(view, solid(QSize(640, 480), Qt::blue));
        view.setFrameSize(QSize(500, 350));
        QCOMPARE(view.slideshowWidth(), 500.0f);
        QCOMPARE(view.slideshowHeight(), 350.0f);
        QCOMPARE(view.imageWidth(), 640.0f);
        QCOMPARE(view.imageHeight(), 480.0f);
        QCOMPARE(view.currentImageView()->geometry(), QRect(0, 0, 500, 350));
    }

    void photoIsShrunkToFitAndCentredButNeverEnlarged_data() {
        QTest::addColumn<QSize>("photo");
        QTest::addColumn<QRect>("shown");
        QTest::newRow("small stays small") << QSize(40, 20) << QRect(180, 140, 40, 20);
        QTest::newRow("wide shrinks to the width") << QSize(800, 200) << QRect(0, 100, 400, 100);
        QTest::newRow("tall shrinks to the height") << QSize(300, 600) << QRect(125, 0, 150, 300);
        QTest::newRow("larger than the screen") << QSize(4000, 1000) << QRect(0, 100, 400, 100);
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

    void nullImageRemovesThePhoto() {
        SlideshowView view;
        view.setFrameSize(QSize(200, 150));
        showAndSettle(view, solid(QSize(200, 150), Qt::red));
        QPointer<SlideshowImageView> shown = view.currentImageView();
        view.transitionToImage(QImage());
        QVERIFY(view.currentImageView() == nullptr);
        QVERIFY(view.image().isNull());
        QTRY_VERIFY_WITH_TIMEOUT(shown.isNull(), 3000);
        QVERIFY(litArea(view).isEmpty());
    }

    // The animation runs the frames of the installed transition from the old
    // photo to the new one: half-way through a fade, both show.
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
    }

    void easingIsTheEaseInEaseOutCurve_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        // cubic-bezier(0.42, 0, 0.58, 1): slow at both ends, symmetric.
        QTest::newRow("start") << 0.0 << 0.0 << 0.0;
        QTest::newRow("slow start") << 0.1 << 0.01 << 0.03;
        QTest::newRow("middle") << 0.5 << 0.4999 << 0.5001;
        QTest::newRow("slow end") << 0.9 << 0.97 << 0.99;
        QTest::newRow("end") << 1.0 << 1.0 << 1.0;
    }
    void easingIsTheEaseInEaseOutCurve() {
        QFETCH(double, x);
        QFETCH(double, low);
        QFETCH(double, high);
        const double y = SlideshowImageView::easeInEaseOut().valueForProgress(x);
        QVERIFY2(y >= low && y <= high, qPrintable(QString::number(y)));
    }
};
SW_TEST_CLASS(SlideshowViewTest)

#include "SlideshowViewTest.moc"
