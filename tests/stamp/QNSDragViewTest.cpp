#include <QFontDatabase>
#include <QLabel>
#include <QRandomGenerator>
#include <QTest>

#include "TestRegistry.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "stamp/QNSDragView.h"

namespace {

// A preview-sized parent with the label at a y-up origin.
struct Scene {
    QWidget parent;
    QNSDragView* view;
    QLabel* label;

    Scene(QPoint originYUp, QSize size = QSize(100, 30)) {
        parent.resize(400, 300);
        view = new QNSDragView(&parent);
        view->setGeometry(originYUp.x(), 300 - originYUp.y() - size.height(), size.width(),
                          size.height());
        label = new QLabel(view);
        view->setAtextfield(label);
    }
};

// The plain upward search the fast one must agree with.
int linearFirstOverflow(const QString& text, const QFont& font, float w, float h) {
    for (int s = 2; s <= 299; ++s) {
        QFont f = font;
        f.setPixelSize(s);
        const QFontMetricsF m(f);
        if (m.horizontalAdvance(text) > w || m.height() > h) {
            return s;
        }
    }
    return 300;
}

int countWhite(const QImage& image, int row) {
    int n = 0;
    for (int x = 0; x < image.width(); ++x) {
        n += image.pixelColor(x, row).lightness() > 200 ? 1 : 0;
    }
    return n;
}

}  // namespace

class QNSDragViewTest : public QObject {
    Q_OBJECT
  private slots:
    void dragStepTruncatesTowardZero_data() {
        QTest::addColumn<QPoint>("start");
        QTest::addColumn<QPointF>("down");
        QTest::addColumn<QPointF>("drag");
        QTest::addColumn<QPoint>("expected");
        QTest::newRow("x +0.5 keeps 10")
            << QPoint(10, 20) << QPointF(50, 40) << QPointF(50.5, 40) << QPoint(10, 20);
        QTest::newRow("x -0.5 gives 9")
            << QPoint(10, 20) << QPointF(50, 40) << QPointF(49.5, 40) << QPoint(9, 20);
        QTest::newRow("y +0.5 keeps 20")
            << QPoint(10, 20) << QPointF(50, 40) << QPointF(50, 40.5) << QPoint(10, 20);
        QTest::newRow("y -0.5 gives 19")
            << QPoint(10, 20) << QPointF(50, 40) << QPointF(50, 39.5) << QPoint(10, 19);
        QTest::newRow("x to -3.7 gives -3")
            << QPoint(0, 20) << QPointF(5, 40) << QPointF(1.3, 40) << QPoint(-3, 20);
        QTest::newRow("y to -3.7 gives -3")
            << QPoint(10, 0) << QPointF(50, 5) << QPointF(50, 1.3) << QPoint(10, -3);
        QTest::newRow("whole step")
            << QPoint(10, 20) << QPointF(50, 40) << QPointF(80.25, 28.75) << QPoint(40, 8);
    }
    void dragStepTruncatesTowardZero() {
        QFETCH(QPoint, start);
        QFETCH(QPointF, down);
        QFETCH(QPointF, drag);
        QFETCH(QPoint, expected);
        Scene scene(start);
        scene.view->mouseDownAt(down);
        QCOMPARE(scene.view->lastDragLocation(), down);
        scene.view->mouseDraggedTo(drag);
        QCOMPARE(scene.view->frameOrigin(), QPointF(expected));
        // The Qt position is the y-up origin flipped once; the size is kept.
        QCOMPARE(scene.view->geometry(), QRect(expected.x(), 300 - expected.y() - 30, 100, 30));
        QCOMPARE(scene.view->lastDragLocation(), drag);
    }

    // The pointer is kept exactly, so a step's lost fraction never comes back.
    void remaindersOfStepsAreLost() {
        Scene scene(QPoint(10, 20));
        scene.view->mouseDownAt(QPointF(50, 40));
        for (int i = 1; i <= 4; ++i) {
            scene.view->mouseDraggedTo(QPointF(50 + 0.5 * i, 40));
        }
        QCOMPARE(scene.view->frameOrigin(), QPointF(10, 20));
        QCOMPARE(scene.view->lastDragLocation(), QPointF(52, 40));
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

    void frameOnlyInEditMode() {
        Scene scene(QPoint(0, 0), QSize(200, 40));
        QImage image(200, 40, QImage::Format_RGB32);
        image.fill(Qt::black);
        scene.view->render(&image, {}, {}, QWidget::DrawChildren);
        // The inner half of the 3-point line shows along the bottom edge, half
        // of it painted by the 10-on, 10-off dashes.
        const int painted = countWhite(image, 39);
        QVERIFY2(painted > 80 && painted < 120, qPrintable(QString::number(painted)));
        // Both side edges carry dashes too, and the inside stays clear.
        const QImage columns = image.transformed(QTransform().rotate(90));
        QVERIFY(countWhite(columns, 0) > 5);
        QVERIFY(countWhite(columns, 199) > 5);
        QCOMPARE(countWhite(image.copy(2, 2, 196, 36), 18), 0);
        scene.view->setIsPreview(true);
        image.fill(Qt::black);
        scene.view->render(&image, {}, {}, QWidget::DrawChildren);
        QCOMPARE(countWhite(image, 39), 0);
        scene.view->setIsPreview(false);
        image.fill(Qt::black);
        scene.view->render(&image, {}, {}, QWidget::DrawChildren);
        QCOMPARE(countWhite(image, 39), painted);
    }

    // Dashes of 10 on, 10 off run right along the bottom edge from the
    // lower-left corner, shifted by the phase.
    void dashesStartAtThePhase_data() {
        QTest::addColumn<float>("phase");
        QTest::addColumn<int>("firstOn");
        QTest::newRow("phase 0") << 0.0f << 0;
        QTest::newRow("phase -1") << -1.0f << 1;
        QTest::newRow("phase -5") << -5.0f << 5;
    }
    void dashesStartAtThePhase() {
        QFETCH(float, phase);
        QFETCH(int, firstOn);
        Scene scene(QPoint(0, 0), QSize(200, 40));
        scene.view->setDashPhase(phase);
        QImage image(200, 40, QImage::Format_RGB32);
        image.fill(Qt::black);
        scene.view->render(&image, {}, {}, QWidget::DrawChildren);
        QString row;
        for (int x = 0; x < 40; ++x) {
            row += image.pixelColor(x, 39).lightness() > 200 ? '#' : '.';
        }
        QString expected;
        for (int x = 0; x < 40; ++x) {
            expected += (x >= firstOn && (x - firstOn) % 20 < 10) ? '#' : '.';
        }
        QCOMPARE(row, expected);
        // The line's inner half shows: a full row and a half-covered one.
        const int half = image.pixelColor(firstOn + 4, 38).lightness();
        QVERIFY2(half > 60 && half < 200, qPrintable(QString::number(half)));
        QCOMPARE(image.pixelColor(firstOn + 4, 37).lightness(), 0);
    }

    void fastSearchAgreesWithLinearSearch() {
        const QStringList texts = {"2024:03:05",
                                   "05-Mar-2024 13:45",
                                   "03/05/2024 01:45 PM",
                                   "March 5, 2024 13:45:07",
                                   "W",
                                   "iiiiiii",
                                   "Wg",
                                   "2019:12:31 23:59:59 some typed text"};
        QList<QFont> fonts;
        for (const QString& family : {QString("DejaVu Sans"), QString("DejaVu Serif")}) {
            QFont f(family);
            fonts << f;
            f.setBold(true);
            f.setItalic(true);
            fonts << f;
        }
        // Hinting snaps glyphs to the pixel grid, the likeliest spoiler of
        // sizes that grow with the font.
        QFont hinted("DejaVu Sans");
        hinted.setHintingPreference(QFont::PreferFullHinting);
        fonts << hinted;
        QRandomGenerator rng(7);
        int checked = 0;
        for (const QFont& font : fonts) {
            for (const QString& text : texts) {
                for (int i = 0; i < 12; ++i) {
                    const float w = static_cast<float>(rng.bounded(1, 1600)) +
                                    static_cast<float>(rng.bounded(4)) * 0.25f;
                    const float h = static_cast<float>(rng.bounded(1, 400));
                    QCOMPARE(QNSDragView::firstOverflowingSize(text, font, w, h),
                             linearFirstOverflow(text, font, w, h));
                    ++checked;
                }
            }
        }
        QCOMPARE(checked, 480);
    }

    // The fast search relies on measured sizes that never shrink as the font grows.
    void measuredSizeGrowsWithFontSize_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("hinting");
        for (const QString& text : {QString("2024:03:05 13:45"), QString("l"), QString("WWW")}) {
            QTest::addRow("%s, default hinting", qPrintable(text))
                << text << int(QFont::PreferDefaultHinting);
            QTest::addRow("%s, full hinting", qPrintable(text))
                << text << int(QFont::PreferFullHinting);
        }
    }
    void measuredSizeGrowsWithFontSize() {
        QFETCH(QString, text);
        QFETCH(int, hinting);
        QFont font("DejaVu Sans");
        font.setHintingPreference(QFont::HintingPreference(hinting));
        QSizeF last = QNSDragView::measure(text, font, 2);
        for (int s = 3; s <= 300; ++s) {
            const QSizeF m = QNSDragView::measure(text, font, s);
            QVERIFY2(m.width() >= last.width() && m.height() >= last.height(),
                     qPrintable(QString("at size %1").arg(s)));
            last = m;
        }
    }

    void fontFitEdges_data() {
        QTest::addColumn<int>("boxSize");    // > 0: box fits the text at this size exactly
        QTest::addColumn<QString>("which");  // which side is tight
        QTest::addColumn<float>("shrink");   // taken off the tight side
        QTest::addColumn<int>("expected");
        QTest::newRow("exact width still fits") << 40 << "width" << 0.0f << 39;
        QTest::newRow("a hair narrower overflows") << 40 << "width" << 0.015625f << 38;
        QTest::newRow("exact height still fits") << 30 << "height" << 0.0f << 29;
        QTest::newRow("a hair lower overflows") << 30 << "height" << 0.015625f << 28;
        QTest::newRow("never overflows up to 299") << 0 << "huge" << 0.0f << 298;
        QTest::newRow("overflows at 2") << 0 << "tiny" << 0.0f << 0;
    }
    void fontFitEdges() {
        QFETCH(int, boxSize);
        QFETCH(QString, which);
        QFETCH(float, shrink);
        QFETCH(int, expected);
        const QString text = "2024:03:05 13:45";
        const QFont font("DejaVu Sans");
        float w = 100000.0f;
        float h = 100000.0f;
        if (which == "tiny") {
            w = h = 1.0f;
        } else if (boxSize > 0) {
            const QSizeF fit = QNSDragView::measure(text, font, boxSize);
            const QSizeF next = QNSDragView::measure(text, font, boxSize + 1);
            if (which == "width") {
                QVERIFY(next.width() > fit.width());
                w = static_cast<float>(fit.width()) - shrink;
            } else {
                QVERIFY(next.height() > fit.height());
                h = static_cast<float>(fit.height()) - shrink;
            }
        }
        Scene scene(QPoint(0, 0));
        scene.label->setText(text);
        scene.label->setFont(font);
        scene.view->calcFontSizeToFitRect(QRectF(0, 0, w, h));
        QCOMPARE(scene.label->geometry(), QRectF(0, 0, w, h).toRect());
        if (expected == 0) {
            QVERIFY(scene.label->isHidden());
        } else {
            QVERIFY(!scene.label->isHidden());
            QCOMPARE(scene.label->font().pixelSize(), expected);
            QCOMPARE(scene.label->font().family(), font.family());
        }
    }

    // Every redraw fits again: a new text or size shows its best size, in the
    // face the controller chose.
    void redrawFitsTheWholeLabel() {
        Scene scene(QPoint(0, 0), QSize(220, 36));
        QFont serif("DejaVu Serif");
        serif.setPointSize(16);
        scene.label->setFont(serif);
        scene.label->setText("2024:03:05");
        QImage image(scene.view->size(), QImage::Format_RGB32);
        scene.view->render(&image);
        const int first = scene.label->font().pixelSize();
        QCOMPARE(first, QNSDragView::firstOverflowingSize("2024:03:05", serif, 220, 36) - 2);
        QCOMPARE(scene.label->geometry(), QRect(0, 0, 220, 36));
        QCOMPARE(scene.label->font().family(), serif.family());

        scene.label->setText("2024:03:05 13:45:07");
        scene.view->render(&image);
        QVERIFY(scene.label->font().pixelSize() < first);

        scene.view->resize(440, 72);
        image = QImage(scene.view->size(), QImage::Format_RGB32);
        scene.view->render(&image);
        QCOMPARE(scene.label->geometry(), QRect(0, 0, 440, 72));
        QCOMPARE(scene.label->font().pixelSize(),
                 QNSDragView::firstOverflowingSize("2024:03:05 13:45:07", serif, 440, 72) - 2);
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
