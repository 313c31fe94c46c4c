#include <QTest>

#include "TestRegistry.h"
#include "browser/ViewLayout.h"

using BrowserLayout::Placement;
using BrowserLayout::Rect;
using BrowserLayout::Size;

class ViewLayoutTest : public QObject {
    Q_OBJECT
  private slots:
    // One card's frame origin (y-up) and turn after a pass of the browser's
    // layout number over cards turned 45 degrees by an earlier pass. Circular
    // and loop rows give the centre less half the card; no view size, no view.
    // Numbers outside 0 to 3 have no layout.
    void placesCard_data() {
        QTest::addColumn<int>("layout");
        QTest::addColumn<QSizeF>("view");
        QTest::addColumn<QList<QSizeF>>("cards");
        QTest::addColumn<int>("index");
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<double>("rotation");
        const QList<QSizeF> four(4, QSizeF(100, 80));
        const QList<QSizeF> one(1, QSizeF(100, 80));
        const QPointF half(50, 40);
        const QSizeF square(500, 500);
        const QSizeF wide(600, 400);
        QTest::newRow("circle: first") << 0 << square << four << 0 << QPointF(375.97, 210) << 270.0;
        QTest::newRow("circle: top")
            << 0 << square << four << 1 << QPointF(250, 425.97) - half << 0.0;
        QTest::newRow("circle: one card, radius from the lesser side")
            << 0 << wide << one << 0 << QPointF(425.97, 200) - half << 270.0;
        QTest::newRow("circle: no view, mirrored")
            << 0 << QSizeF() << one << 0 << QPointF(-74.03, 0) - half << 270.0;
        QTest::newRow("loop: a quarter on, centre")
            << 1 << square << four << 1 << QPointF(250, 250) - half << 0.0;
        QTest::newRow("loop: an eighth on, top, wide view")
            << 1 << wide << QList<QSizeF>(8, QSizeF(100, 80)) << 1 << QPointF(459.78, 325.97) - half
            << 0.0;
        const QList<QSizeF> cards121(6, QSizeF(121, 121));
        QTest::newRow("wrapped: first row's last")
            << 3 << wide << cards121 << 3 << QPointF(403, 269) << 0.0;
        QList<QSizeF> lowLast = cards121.mid(1);
        lowLast[3] = QSizeF(121, 60);
        QTest::newRow("wrapped: low card hangs from the top")
            << 3 << wide << lowLast << 3 << QPointF(403, 330) << 0.0;
        QTest::newRow("wrapped: row as high as its highest")
            << 3 << wide << lowLast << 4 << QPointF(10, 138) << 0.0;
        QTest::newRow("wrapped: a card ending on the right edge stays")
            << 3 << wide << QList<QSizeF>(4, QSizeF(137.5, 100)) << 3 << QPointF(452.5, 290) << 0.0;
        QTest::newRow("wrapped: wider than the area, first")
            << 3 << wide << QList<QSizeF>{QSizeF(700, 100)} << 0 << QPointF(10, 280) << 0.0;
    }
    void placesCard() {
        QFETCH(int, layout);
        QFETCH(QSizeF, view);
        QFETCH(QList<QSizeF>, cards);
        QFETCH(int, index);
        QFETCH(QPointF, origin);
        QFETCH(double, rotation);
        QVERIFY(!ViewLayout::viewLayout(4) && !ViewLayout::viewLayout(-1));
        std::vector<LayoutSlide> slides;
        for (const QSizeF& card : cards) {
            slides.push_back(LayoutSlide{Size{card.width(), card.height()}, Placement{0, 0, 45}});
        }
        const std::optional<Rect> bounds =
            view.isValid() ? std::optional(Rect{0, 0, view.width(), view.height()}) : std::nullopt;
        ViewLayout::viewLayout(layout)->layoutSubviews(slides, bounds);
        const Placement& p = slides[std::size_t(index)].placement;
        QVERIFY2(qAbs(p.x - origin.x()) < 0.01 && qAbs(p.y - origin.y()) < 0.01 &&
                     qAbs(p.rotation - rotation) < 1e-9,
                 qPrintable(QString("(%1, %2) turned %3").arg(p.x).arg(p.y).arg(p.rotation)));
    }

    // The draws go to x, y and tilt in that order, over the card's free travel.
    void scatterTakesDrawsInOrder() {
        static const double draws[] = {0, 0, 0, 0.5, 0.25, 0.75};
        static int next = 0;
        const auto p = BrowserLayout::scatter(std::vector<Size>(2, Size{100, 80}),
                                              Rect{0, 0, 500, 500}, [] { return draws[next++]; });
        QCOMPARE((QList<double>{p[0].x, p[0].y, p[0].rotation, p[1].x, p[1].y, p[1].rotation}),
                 (QList<double>{10, 10, -30, 200, 110, 15}));
    }

    // With the process's generator, in a view away from the origin: every card
    // inside the area, tilts in [-30, 30), and each pass a new arrangement.
    void scatterStaysInArea() {
        std::vector<LayoutSlide> slides;
        for (int i = 0; i < 40; ++i) {
            slides.push_back(LayoutSlide{Size{60.0 + i, 121.0 - i}, Placement{}});
        }
        const auto layout = ViewLayout::viewLayout(2);
        layout->layoutSubviews(slides, Rect{50, 20, 600, 400});
        const Placement first = slides[0].placement;
        for (const LayoutSlide& slide : slides) {
            const Placement& p = slide.placement;
            QVERIFY(p.x >= 60 && p.x <= 640 - slide.size.width);
            QVERIFY(p.y >= 30 && p.y <= 410 - slide.size.height);
            QVERIFY(p.rotation >= -30 && p.rotation < 30);
        }
        layout->layoutSubviews(slides, Rect{50, 20, 600, 400});
        QVERIFY(slides[0].placement.x != first.x);
    }
};
SW_TEST_CLASS(ViewLayoutTest)
#include "ViewLayoutTest.moc"
