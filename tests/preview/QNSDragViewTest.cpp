#include <QLabel>
#include <QRandomGenerator>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "preview/QNSDragView.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

namespace {
const QString kText = "2024:03:05 13:45:07";

// The date label, 200 by 40 at a y-up origin in a 400 by 300 preview, in a serif face.
struct Scene {
    QWidget parent;
    QNSDragView* view = new QNSDragView(&parent);
    QLabel* label = new QLabel(kText, view);

    explicit Scene(QPoint origin = {}) {
        parent.resize(400, 300);
        view->setGeometry(origin.x(), 260 - origin.y(), 200, 40);
        label->setFont(QFont("DejaVu Serif"));
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
int linearFirstOverflow(const QString& text, QFont font, double w, double h) {
    for (int s = 2; s < 300; ++s) {
        font.setPixelSize(s);
        const QFontMetricsF m(font);
        if (m.horizontalAdvance(text) > w || m.height() > h) {
            return s;
        }
    }
    return 300;
}
}  // namespace

class QNSDragViewTest : public QObject {
    Q_OBJECT
  private slots:
    // Each step is truncated toward zero and its remainder lost.
    void dragStepTruncatesTowardZero_data() {
        QTest::addColumn<QList<QPointF>>("drags");  // from a press at (50, 40)
        QTest::addColumn<QPointF>("expected");      // from the origin (10, 20)
        QTest::newRow("x -13.7, y +0.5") << QList<QPointF>{{36.3, 40.5}} << QPointF(-3, 20);
        QTest::newRow("x -0.5, y -23.7") << QList<QPointF>{{49.5, 16.3}} << QPointF(9, -3);
        QTest::newRow("x +0.5 four times")
            << QList<QPointF>{{50.5, 40}, {51, 40}, {51.5, 40}, {52, 40}} << QPointF(10, 20);
    }
    void dragStepTruncatesTowardZero() {
        QFETCH(QList<QPointF>, drags);
        QFETCH(QPointF, expected);
        Scene scene(QPoint(10, 20));
        scene.view->mouseDownAt(QPointF(50, 40));
        for (const QPointF& p : drags) {
            scene.view->mouseDraggedTo(p);
        }
        QCOMPARE(scene.view->frameOrigin(), expected);
    }

    // Event positions are the moved label's own, y down; each drag step posts
    // once. The pointing hand shows over the label only in the active window.
    void mouseDragsAndPointsInTheActiveWindow() {
        Scene scene(QPoint(10, 20));
        QObject observer;
        int posts = 0;
        NotificationCenter::defaultCenter().addObserver(&observer, NotificationNames::kMoveDateTime,
                                                        [&](const Notification&) { ++posts; });
        QTest::mousePress(scene.view, Qt::LeftButton, {}, QPoint(5, 5));
        QTest::mouseMove(scene.view, QPoint(25, 13));  // 20 right, 8 down: to (30, 12)
        QTest::mouseMove(scene.view, QPoint(1, 1));    // 4 left and 4 up of the pointer
        QTest::mouseRelease(scene.view, Qt::LeftButton, {}, QPoint(1, 1));
        QCOMPARE(posts, 2);
        QCOMPARE(scene.view->frameOrigin(), QPointF(26, 16));
        QEnterEvent enter(QPointF(5, 5), QPointF(31, 269), QPointF(31, 269));
        QCoreApplication::sendEvent(scene.view, &enter);
        QCOMPARE(scene.view->cursor().shape(), Qt::ArrowCursor);
        scene.parent.show();
        scene.parent.activateWindow();
        if (!QTest::qWaitForWindowActive(&scene.parent)) {
            QSKIP("the platform cannot activate windows");
        }
        QCoreApplication::sendEvent(scene.view, &enter);
        QCOMPARE(scene.view->cursor().shape(), Qt::PointingHandCursor);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(scene.view, &leave);
        QCOMPARE(scene.view->cursor().shape(), Qt::ArrowCursor);
    }

    // Soon after creation the dashes, 10 on and 10 off from the lower-left corner,
    // shift once by a point; the line's inner half shows. The preview has no frame.
    void dashedFrameOnlyInEditMode() {
        Scene scene;
        QTRY_COMPARE_WITH_TIMEOUT(scene.view->dashPhase(), -1.0f, 2000);
        QTest::qWait(300);
        const QImage image = scene.render();
        const int fitted = linearFirstOverflow(kText, QFont("DejaVu Serif"), 200, 40) - 2;
        QCOMPARE(scene.label->font().pixelSize(), fitted);  // every redraw fits the text
        auto lit = [](const QImage& i) {
            return TestImages::boundsWhere(i, [](QRgb c) { return qGray(c) > 200; });
        };
        for (int x : {0, 20}) {  // the phase of -1 shifts the dashes right by 1
            QCOMPARE(lit(image.copy(x, 39, 20, 1)), QRect(1, 0, 10, 1));
        }
        QVERIFY(qAbs(qGray(image.pixel(5, 38)) - 130) < 70);  // the row above, half covered
        QVERIFY(lit(image.copy(2, 2, 196, 36)).isNull());
        QVERIFY(lit(image.copy(0, 0, 1, 40)).height() > 5);
        QVERIFY(lit(image.copy(199, 0, 1, 40)).height() > 5);
        scene.view->setIsPreview(true);
        QVERIFY(lit(scene.render()).isNull());
    }

    // Hinting snaps glyphs to pixels, the likeliest spoiler of sizes growing with the font.
    void fastSearchAgreesWithLinearSearch() {
        const QFont sans("DejaVu Sans"), boldItalic("DejaVu Serif", -1, QFont::Bold, true);
        QFont hinted = sans;
        hinted.setHintingPreference(QFont::PreferFullHinting);
        QRandomGenerator rng(7);
        for (const QFont& font : {sans, QFont("DejaVu Serif"), boldItalic, hinted}) {
            for (const QString& text :
                 QString("2024:03:05|05-Mar-2024 13:45|03/05/2024 01:45 PM|W|Wg|"
                         "March 5, 2024 13:45:07|iiiiiii|2019:12:31 23:59:59 typed")
                     .split('|')) {
                for (int i = 0; i < 12; ++i) {
                    const float w = float(rng.bounded(1, 1600)) + float(rng.bounded(4)) / 4;
                    const float h = float(rng.bounded(1, 400));
                    QCOMPARE(QNSDragView::firstOverflowingSize(text, font, w, h),
                             linearFirstOverflow(text, font, w, h));
                }
            }
        }
    }

    // The label gets the frame and, in its own face, the first overflowing size
    // less 2; a text too large even at size 2 is hidden.
    void fontFit_data() {
        QTest::addColumn<QSizeF>("box");
        QTest::addColumn<int>("expected");
        const QSizeF at40 = QNSDragView::measure(kText, QFont("DejaVu Serif"), 40);
        QTest::newRow("fits at 40 exactly") << at40 << 39;
        QTest::newRow("a hair narrower") << at40 - QSizeF(1 / 64.0, 0) << 38;
        QTest::newRow("fits at 299")
            << QNSDragView::measure(kText, QFont("DejaVu Serif"), 299) << 298;
        QTest::newRow("nothing fits") << QSizeF(1, 1) << 0;
    }
    void fontFit() {
        QFETCH(QSizeF, box);
        QFETCH(int, expected);
        Scene scene;
        scene.view->calcFontSizeToFitRect(QRectF(QPointF(), box));
        QCOMPARE(scene.label->geometry(), QRectF(QPointF(), box).toRect());
        QCOMPARE(scene.label->isHidden(), expected == 0);
        QCOMPARE(scene.label->font().pixelSize(), expected > 0 ? expected : -1);  // -1: unset
        QCOMPARE(scene.label->font().family(), QString("DejaVu Serif"));
    }

    // With a legibility option on, the label shows what the photo gets: the same
    // stamp, drawn over a photo whose points map onto the label's pixels.
    void legibleLabelMatchesPhoto_data() {
        QTest::addColumn<StampOptions>("options");
        QTest::newRow("outline") << StampOptions{.outline = true};
        QTest::newRow("shadow") << StampOptions{.shadow = true};
        QTest::newRow("box") << StampOptions{.box = true};
        QTest::newRow("all") << StampOptions{.outline = true, .shadow = true, .box = true};
    }
    void legibleLabelMatchesPhoto() {
        QFETCH(StampOptions, options);
        const QColor background(30, 90, 60);
        const QColor ink(250, 240, 200);
        QFont font("DejaVu Sans");
        font.setPointSize(30);
        const QSizeF stamp = TextMetrics::measureStamp(kText, font, options);
        const QSize frame = stamp.toSize();

        QWidget parent;
        parent.resize(frame);
        auto* view = new QNSDragView(&parent);
        view->setIsPreview(true);  // no dashed frame
        view->setGeometry(QRect(QPoint(), frame));
        QPalette palette = view->palette();
        palette.setColor(QPalette::Window, background);
        palette.setColor(QPalette::WindowText, ink);
        view->setPalette(palette);
        view->setAutoFillBackground(true);
        auto* label = new QLabel(kText, view);
        label->setFont(font);
        view->setAtextfield(label);
        view->setLegibility(options, font);
        const QImage shown = view->grab().toImage();

        const QImage photo = StampPainter::drawStamp(
            TestImages::solid(frame, background), kText, font, ink, {0, 0},
            QSizeF(frame.width() / stamp.width(), frame.height() / stamp.height()), options);
        const TestImages::Difference d = TestImages::difference(shown, photo);
        QVERIFY2(d.worst <= 8 && d.mean < 0.5,
                 qPrintable(QString("worst %1, mean %2").arg(d.worst).arg(d.mean)));
        QVERIFY(TestImages::difference(photo, TestImages::solid(frame, background)).mean > 10);
    }
};
SW_TEST_CLASS(QNSDragViewTest)

#include "QNSDragViewTest.moc"
