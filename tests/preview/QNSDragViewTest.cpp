#include <QLabel>
#include <QRandomGenerator>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "preview/QNSDragView.h"

namespace {

// A preview-sized parent with the label at a y-up origin.
struct Scene {
    QWidget parent;
    QNSDragView* view;
    QLabel* label;

    explicit Scene(QPoint originYUp, QSize size = QSize(100, 30)) {
        parent.resize(400, 300);
        view = new QNSDragView(&parent);
        view->setGeometry(originYUp.x(), 300 - originYUp.y() - size.height(), size.width(),
                          size.height());
        label = new QLabel(view);
        view->setAtextfield(label);
    }
    QImage render() {
        QImage image(view->size(), QImage::Format_RGB32);
        image.fill(Qt::black);
        view->render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }
};

// The plain upward search the fast one must agree with.
int linearFirstOverflow(const QString& text, QFont font, float w, float h) {
    for (int s = 2; s < 300; ++s) {
        font.setPixelSize(s);
        const QFontMetricsF m(font);
        if (m.horizontalAdvance(text) > static_cast<double>(w) ||
            m.height() > static_cast<double>(h)) {
            return s;
        }
    }
    return 300;
}

// Where the white frame shows.
QRect litArea(const QImage& image) {
    return TestImages::boundsWhere(image, [](QRgb c) { return QColor(c).lightness() > 200; });
}

}  // namespace

class QNSDragViewTest : public QObject {
    Q_OBJECT
  private slots:
    // Each step is truncated toward zero, and its remainder is lost: the next
    // step starts from the exact pointer position.
    void dragStepTruncatesTowardZero_data() {
        QTest::addColumn<QList<QPointF>>("drags");  // from a press at (50, 40)
        QTest::addColumn<QPoint>("expected");       // from the origin (10, 20)
        QTest::newRow("x +0.5 keeps 10") << QList<QPointF>{{50.5, 40}} << QPoint(10, 20);
        QTest::newRow("x -0.5 gives 9") << QList<QPointF>{{49.5, 40}} << QPoint(9, 20);
        QTest::newRow("y -0.5 gives 19") << QList<QPointF>{{50, 39.5}} << QPoint(10, 19);
        QTest::newRow("x to -3.7 gives -3") << QList<QPointF>{{36.3, 40}} << QPoint(-3, 20);
        QTest::newRow("y to -3.7 gives -3") << QList<QPointF>{{50, 16.3}} << QPoint(10, -3);
        QTest::newRow("four +0.5 steps keep 10")
            << QList<QPointF>{{50.5, 40}, {51, 40}, {51.5, 40}, {52, 40}} << QPoint(10, 20);
    }
    void dragStepTruncatesTowardZero() {
        QFETCH(QList<QPointF>, drags);
        QFETCH(QPoint, expected);
        Scene scene(QPoint(10, 20));
        scene.view->mouseDownAt(QPointF(50, 40));
        for (const QPointF& p : drags) {
            scene.view->mouseDraggedTo(p);
        }
        QCOMPARE(scene.view->frameOrigin(), QPointF(expected));
        // The Qt position is the y-up origin flipped once; the size is kept.
        QCOMPARE(scene.view->geometry(), QRect(expected.x(), 300 - expected.y() - 30, 100, 30));
        QCOMPARE(scene.view->lastDragLocation(), drags.last());
    }

    void mouseEventsDragAndPostOncePerStep() {
        Scene scene(QPoint(10, 20));
        QObject observer;
        int posts = 0;
        NotificationCenter::defaultCenter().addObserver(&observer, NotificationNames::kMoveDateTime,
                                                        [&](const Notification&) { ++posts; });
        QTest::mousePress(scene.view, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(posts, 0);
        // Qt's y grows downwards: 8 pixels down is 8 points lower in y-up terms.
        QTest::mouseMove(scene.view, QPoint(25, 13));
        QCOMPARE(posts, 1);
        QCOMPARE(scene.view->frameOrigin(), QPointF(30, 12));
        // Positions are the moved label's own: (1, 1) is now 4 left of and 4
        // above the last pointer position.
        QTest::mouseMove(scene.view, QPoint(1, 1));
        QCOMPARE(posts, 2);
        QCOMPARE(scene.view->frameOrigin(), QPointF(26, 16));
        QTest::mouseRelease(scene.view, Qt::LeftButton, {}, QPoint(1, 1));
        QTest::mouseMove(scene.view, QPoint(30, 30));
        QCOMPARE(posts, 2);
        QCOMPARE(scene.view->frameOrigin(), QPointF(26, 16));
    }

    void dashPhaseStepsOnceAfterATenthOfASecond() {
        Scene scene(QPoint(0, 0));
        QCOMPARE(scene.view->dashPhase(), 0.0f);
        QTRY_COMPARE_WITH_TIMEOUT(scene.view->dashPhase(), -1.0f, 2000);
        QTest::qWait(300);
        QCOMPARE(scene.view->dashPhase(), -1.0f);
    }

    // Dashes of 10 on, 10 off run right along the bottom edge from the
    // lower-left corner, shifted by the phase; the preview shows no frame.
    void dashedFrameOnlyInEditMode_data() {
        QTest::addColumn<bool>("preview");
        QTest::addColumn<float>("phase");
        QTest::addColumn<int>("firstOn");
        QTest::newRow("phase 0") << false << 0.0f << 0;
        QTest::newRow("phase -1") << false << -1.0f << 1;
        QTest::newRow("phase -5") << false << -5.0f << 5;
        QTest::newRow("preview") << true << 0.0f << 0;
    }
    void dashedFrameOnlyInEditMode() {
        QFETCH(bool, preview);
        QFETCH(float, phase);
        QFETCH(int, firstOn);
        Scene scene(QPoint(0, 0), QSize(200, 40));
        scene.view->setDashPhase(phase);
        scene.view->setIsPreview(preview);
        const QImage image = scene.render();
        QString row;
        QString expected;
        for (int x = 0; x < 40; ++x) {
            row += image.pixelColor(x, 39).lightness() > 200 ? '#' : '.';
            expected += !preview && x >= firstOn && (x - firstOn) % 20 < 10 ? '#' : '.';
        }
        QCOMPARE(row, expected);
        QVERIFY(litArea(image.copy(2, 2, 196, 36)).isNull());
        if (preview) {
            QVERIFY(litArea(image).isNull());
            return;
        }
        // Both side edges carry dashes; the line's inner half shows: a full
        // row and a half-covered one.
        QVERIFY(litArea(image.copy(0, 0, 1, 40)).height() > 5);
        QVERIFY(litArea(image.copy(199, 0, 1, 40)).height() > 5);
        const int half = image.pixelColor(firstOn + 4, 38).lightness();
        QVERIFY2(half > 60 && half < 200, qPrintable(QString::number(half)));
        QCOMPARE(image.pixelColor(firstOn + 4, 37).lightness(), 0);
    }

    void fastSearchAgreesWithLinearSearch() {
        const QStringList texts = QString(
                                      "2024:03:05|05-Mar-2024 13:45|03/05/2024 01:45 PM|W|Wg|"
                                      "March 5, 2024 13:45:07|iiiiiii|2019:12:31 23:59:59 typed")
                                      .split('|');
        // Hinting snaps glyphs to the pixel grid, the likeliest spoiler of
        // sizes that grow with the font, on which the fast search relies.
        QFont hinted("DejaVu Sans");
        hinted.setHintingPreference(QFont::PreferFullHinting);
        QFont boldItalic("DejaVu Serif");
        boldItalic.setBold(true);
        boldItalic.setItalic(true);
        QRandomGenerator rng(7);
        for (const QFont& font :
             {QFont("DejaVu Sans"), QFont("DejaVu Serif"), boldItalic, hinted}) {
            for (const QString& text : texts) {
                for (int i = 0; i < 12; ++i) {
                    const float w = static_cast<float>(rng.bounded(1, 1600)) +
                                    static_cast<float>(rng.bounded(4)) * 0.25f;
                    const float h = static_cast<float>(rng.bounded(1, 400));
                    QCOMPARE(QNSDragView::firstOverflowingSize(text, font, w, h),
                             linearFirstOverflow(text, font, w, h));
                }
            }
        }
    }

    // The label gets the first overflowing size less 2: a box the text fills
    // exactly at size 40 still fits it, so the label shows 39.
    void fontFitEdges_data() {
        QTest::addColumn<QString>("tight");  // the side that fits the text at 40 exactly
        QTest::addColumn<float>("shrink");   // taken off that side
        QTest::addColumn<int>("expected");
        QTest::newRow("exact width still fits") << "width" << 0.0f << 39;
        QTest::newRow("a hair narrower overflows") << "width" << 0.015625f << 38;
        QTest::newRow("exact height still fits") << "height" << 0.0f << 39;
        QTest::newRow("a hair lower overflows") << "height" << 0.015625f << 38;
        QTest::newRow("never overflows up to 299") << "none" << 0.0f << 298;
        QTest::newRow("overflows at 2") << "tiny" << 0.0f << 0;
    }
    void fontFitEdges() {
        QFETCH(QString, tight);
        QFETCH(float, shrink);
        QFETCH(int, expected);
        const QString text = "2024:03:05 13:45";
        const QFont font("DejaVu Sans");
        const QSizeF fit = QNSDragView::measure(text, font, 40);
        const QSizeF next = QNSDragView::measure(text, font, 41);
        QVERIFY(next.width() > fit.width() && next.height() > fit.height());
        const float other = tight == "tiny" ? 1.0f : 100000.0f;
        const float w = tight == "width" ? float(fit.width()) - shrink : other;
        const float h = tight == "height" ? float(fit.height()) - shrink : other;
        Scene scene(QPoint(0, 0));
        scene.label->setText(text);
        scene.label->setFont(font);
        scene.view->calcFontSizeToFitRect(QRectF(0, 0, w, h));
        QCOMPARE(scene.label->geometry(), QRectF(0, 0, w, h).toRect());
        QCOMPARE(scene.label->isHidden(), expected == 0);
        if (expected > 0) {
            QCOMPARE(scene.label->font().pixelSize(), expected);
            QCOMPARE(scene.label->font().family(), font.family());
        }
    }

    // Every redraw fits the whole label again, in the face the controller chose.
    void redrawFitsTheWholeLabel() {
        const QString text = "2024:03:05 13:45:07";
        const QFont serif("DejaVu Serif");
        Scene scene(QPoint(0, 0));
        scene.label->setFont(serif);
        scene.label->setText(text);
        for (const QSize size : {QSize(220, 36), QSize(440, 72)}) {
            scene.view->resize(size);
            scene.render();
            QCOMPARE(scene.label->geometry(), QRect(QPoint(0, 0), size));
            QCOMPARE(
                scene.label->font().pixelSize(),
                QNSDragView::firstOverflowingSize(text, serif, size.width(), size.height()) - 2);
        }
    }

    void cursorFollowsThePointerInTheActiveWindow() {
        Scene scene(QPoint(10, 20));
        scene.parent.show();
        scene.parent.activateWindow();
        if (!QTest::qWaitForWindowActive(&scene.parent)) {
            QSKIP("the platform cannot activate windows");
        }
        QEnterEvent enter(QPointF(5, 5), QPointF(15, 255), QPointF(15, 255));
        QCoreApplication::sendEvent(scene.view, &enter);
        QCOMPARE(scene.view->cursor().shape(), Qt::PointingHandCursor);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(scene.view, &leave);
        QCOMPARE(scene.view->cursor().shape(), Qt::ArrowCursor);

        QWidget other;
        other.show();
        other.activateWindow();
        if (!QTest::qWaitForWindowActive(&other)) {
            QSKIP("the platform cannot switch the active window");
        }
        QCoreApplication::sendEvent(scene.view, &enter);
        QCOMPARE(scene.view->cursor().shape(), Qt::ArrowCursor);
    }
};
SW_TEST_CLASS(QNSDragViewTest)

#include "QNSDragViewTest.moc"
