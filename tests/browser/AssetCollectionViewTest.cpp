#include <QGraphicsDropShadowEffect>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <functional>

#include "TestRegistry.h"
#include "browser/AssetCollectionView.h"
#include "browser/AssetCollectionViewNode.h"
#include "browser/SlideCarrierView.h"
#include "catalog/AssetCollection.h"
#include "catalog/ImageAsset.h"
#include "common/TestImages.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "tools/ExifJpegWriter.h"

namespace {

using Step = std::function<void(AssetCollection&, AssetCollectionView&)>;

AssetPtr photo(const QString& name) {
    return std::make_shared<Asset>(QUrl::fromLocalFile("/photos/" + name));
}

// Browser over a catalog of the named photos, 600 × 400 like the wrapped examples.
struct Browser {
    AssetCollection catalog{QUrl()};
    AssetCollectionView view;
    explicit Browser(const QStringList& names) {
        view.resize(600, 400);
        for (const QString& name : names) {
            catalog.addAsset(photo(name));
        }
        view.setAssetCollection(&catalog);
    }
    // File names in the catalog's order, or left to right along the first wrapped row.
    QStringList shown(bool byPosition = false) const {
        std::vector<AssetCollectionViewNode*> nodes;
        for (const auto& node : view.nodes()) {
            nodes.push_back(node.get());
        }
        if (byPosition) {
            std::ranges::stable_sort(nodes, {},
                                     [](auto* n) { return n->rootView()->targetPos().x(); });
        }
        QStringList names;
        for (auto* node : nodes) {
            names << node->asset()->filename();
        }
        return names;
    }
};

}  // namespace

Q_DECLARE_METATYPE(Step)

class AssetCollectionViewTest : public QObject {
    Q_OBJECT
  private slots:
    // The browser keeps one card per photo, in the catalog's order, through
    // its signals and through the removal commands' own calls.
    void followsCatalog_data() {
        QTest::addColumn<Step>("step");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("insertions append") << Step([](AssetCollection& c, AssetCollectionView&) {
            c.addAsset(photo("f.jpg"));
            c.addAsset(photo("g.jpg"));
        }) << QStringList{"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg", "f.jpg", "g.jpg"};
        QTest::newRow("removal of one") << Step([](AssetCollection& c, AssetCollectionView&) {
            c.removeObjectFromAssetsAtIndex(1);
        }) << QStringList{"a.jpg", "c.jpg", "d.jpg", "e.jpg"};
        QTest::newRow("removed positions in the order given")
            << Step([](AssetCollection&, AssetCollectionView& v) {
                   v.reloadRemovedData({"3", "1"});
               })
            << QStringList{"a.jpg", "c.jpg", "e.jpg"};
        QTest::newRow("a new list rebuilds")
            << Step([](AssetCollection& c, AssetCollectionView&) { c.setAssets({photo("z.jpg")}); })
            << QStringList{"z.jpg"};
    }
    void followsCatalog() {
        QFETCH(Step, step);
        QFETCH(QStringList, expected);
        Browser browser({"a.jpg", "b.jpg", "c.jpg", "d.jpg", "e.jpg"});
        step(browser.catalog, browser.view);
        QCOMPARE(browser.shown(), expected);
        QCOMPARE(browser.view.scene()->items().size(), expected.size());
    }

    // Cards take their places in the sort rules' order, names without regard
    // to letter case; no rules leave the order of adding.
    void sortsCards_data() {
        QTest::addColumn<QList<AssetSort::SortRule>>("rules");
        QTest::addColumn<QStringList>("expected");
        const QString byName = AssetSort::keyPathFor("filename");
        QTest::newRow("none") << QList<AssetSort::SortRule>{}
                              << QStringList{"C.jpg", "b.jpg", "a.jpg"};
        QTest::newRow("name, ascending")
            << QList{AssetSort::SortRule{byName, true}} << QStringList{"a.jpg", "b.jpg", "C.jpg"};
        QTest::newRow("name, descending")
            << QList{AssetSort::SortRule{byName, false}} << QStringList{"C.jpg", "b.jpg", "a.jpg"};
    }
    void sortsCards() {
        QFETCH(QList<AssetSort::SortRule>, rules);
        QFETCH(QStringList, expected);
        Browser browser({"C.jpg", "b.jpg", "a.jpg"});
        browser.view.setSortDescriptors(
            {AssetSort::SortRule{AssetSort::keyPathFor("filename"), true}});
        browser.view.setSortDescriptors(rules);
        QCOMPARE(browser.shown(true), expected);
        // The first card hangs from the top-left corner, 10 points in.
        for (const auto& node : browser.view.nodes()) {
            if (node->asset()->filename() == expected.first()) {
                QCOMPARE(node->rootView()->targetPos(), QPointF(10, 10));
            }
        }
    }

    // A press on the picture tells the controller which photo and shows the
    // click effect until the release fades it; a press on the tick box sets
    // the flag before the controller hears of it.
    void cardPress_data() {
        QTest::addColumn<bool>("onTickBox");
        QTest::addColumn<QStringList>("posted");
        QTest::addColumn<bool>("included");
        QTest::addColumn<qreal>("effect");
        QTest::addColumn<int>("cards");
        QTest::newRow("picture") << false
                                 << QStringList{"selectImageHighlight:",
                                                "selectImageMouseDown:/photos/b.jpg"}
                                 << true << 1.0 << 2;
        QTest::newRow("tick box") << true << QStringList{"clickTitleCheckBox:false"} << false << 0.0
                                  << 2;
        // A crowd at rest is shown from a picture drawn before the press.
        QTest::newRow("tick box, crowd at rest")
            << true << QStringList{"clickTitleCheckBox:false"} << false << 0.0 << 16;
    }
    void cardPress() {
        QFETCH(bool, onTickBox);
        QFETCH(QStringList, posted);
        QFETCH(bool, included);
        QFETCH(qreal, effect);
        QFETCH(int, cards);
        QStringList names;
        for (int i = 1; i < cards; ++i) {
            names << QString("a%1.jpg").arg(i);
        }
        Browser browser(names << "b.jpg");
        if (cards > 2) {
            browser.view.resize(300, 300);
            browser.view.setSubviewsLayoutType(0);
        }
        browser.view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&browser.view));
        const AssetPtr asset = browser.catalog.assets().back();
        SlideCarrierView* card = browser.view.nodes().back()->rootView();
        QTRY_COMPARE(card->opacity(), 1.0);
        QTRY_COMPARE(browser.view.hasRestLayer(), cards > 2);

        QStringList seen;
        QObject observer;
        auto& center = NotificationCenter::defaultCenter();
        for (const char* name :
             {NotificationNames::kSelectImageHighlight, NotificationNames::kSelectImageMouseDown,
              NotificationNames::kClickTitleCheckBox}) {
            center.addObserver(&observer, name, [&](const Notification& n) {
                const QString object = n.name == NotificationNames::kClickTitleCheckBox
                                           ? QVariant(asset->includedInSlideshow()).toString()
                                           : n.object.toString();
                seen << n.name + ":" + object;
            });
        }
        const QPointF inCard = onTickBox
                                   ? SlideCarrierView::checkBoxRect().topLeft() + QPointF(6, 6)
                                   : QPointF(SlideCarrierView::cardSize().width() / 2, 30);
        const QPoint at = browser.view.mapFromScene(card->mapToScene(inCard));
        const QRect box =
            browser.view.mapFromScene(card->mapToScene(SlideCarrierView::checkBoxRect()))
                .boundingRect();
        const QImage before = browser.view.grab(box).toImage();
        // The first press loads the click sound; without audio it stays quiet.
        QTest::failOnWarning(QRegularExpression("."));
        QTest::mousePress(browser.view.viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(card->highlightOpacity(), effect);
        QTest::mouseRelease(browser.view.viewport(), Qt::LeftButton, {}, at);
        // The card keeps its drawing between changes; a press must still show.
        QVERIFY(browser.view.grab(box).toImage() != before);
        QCOMPARE(seen, posted);
        QCOMPARE(asset->includedInSlideshow(), included);
        QCOMPARE(card->isChecked(), included);
        QCOMPARE(card->highlightOpacity(), effect);
        QTRY_COMPARE(card->highlightOpacity(), 0.0);
    }

    // The layout numbers go round 0 to 3; a number without a layout is kept
    // but leaves the cards where they are.
    void cyclesLayouts_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("next");
        QTest::newRow("on from loop") << 1 << 2;
        QTest::newRow("wrapped to circular") << 3 << 0;
        QTest::newRow("no layout to circular") << 7 << 0;
    }
    void cyclesLayouts() {
        QFETCH(int, from);
        QFETCH(int, next);
        Browser browser({"a.jpg", "b.jpg"});
        browser.view.setSubviewsLayoutType(0);
        const QPointF circular = browser.view.nodes().back()->rootView()->targetPos();
        browser.view.setSubviewsLayoutType(from);
        if (from == 7) {
            QCOMPARE(browser.view.subviewsLayoutType(), 7);
            QCOMPARE(browser.view.nodes().back()->rootView()->targetPos(), circular);
        }
        browser.view.cycleLayout();
        QCOMPARE(browser.view.subviewsLayoutType(), next);
        // Turning the cycle on moves on at once.
        browser.view.setAutoCyclesLayout(true);
        QCOMPARE(browser.view.subviewsLayoutType(), (next + 1) % 4);
    }

    // Shadows fade in on every card within half a second, later cards come
    // with the full shadow, and fading out takes the shadows off.
    void shadows() {
        Browser browser({"a.jpg", "b.jpg"});
        const auto shadow = [&browser](std::size_t i) {
            return qobject_cast<QGraphicsDropShadowEffect*>(
                browser.view.nodes().at(i)->rootView()->graphicsEffect());
        };
        const QColor full = QColor::fromRgbF(0, 0, 0, 0.75f);
        browser.view.setSlidesHaveShadows(true);
        QVERIFY(shadow(0) && shadow(0)->color().alpha() < full.alpha());
        QTRY_COMPARE_WITH_TIMEOUT(shadow(1)->color(), full, 1000);
        browser.catalog.addAsset(photo("c.jpg"));
        for (std::size_t i = 0; i < 3; ++i) {
            QVERIFY(shadow(i));
            QCOMPARE(shadow(i)->offset(), QPointF(3, 3));
            QCOMPARE(shadow(i)->blurRadius(), 4.0);
            QCOMPARE(shadow(i)->color(), full);
        }
        browser.view.setSlidesHaveShadows(false);
        QVERIFY(shadow(2));
        QTRY_VERIFY_WITH_TIMEOUT(!shadow(0) && !shadow(1) && !shadow(2), 1000);
    }

    // The cells move behind the cards while on; off leaves the plain gradient.
    void animatedBackground() {
        Browser browser({});
        browser.view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&browser.view));
        const QImage plain = browser.view.grab().toImage();
        browser.view.setUsesQuartzCompositionBackground(true);
        const QImage cells = browser.view.grab().toImage();
        QVERIFY(cells != plain);
        QTRY_VERIFY(browser.view.grab().toImage() != cells);
        browser.view.setUsesQuartzCompositionBackground(false);
        QCOMPARE(browser.view.grab().toImage(), plain);
    }

    // Arrows move between cards in display order, Space ticks, Enter makes the model.
    void keyboard() {
        Browser b({"b.jpg", "a.jpg", "c.jpg"});
        b.view.setSortDescriptors({{"asset.filename", true}});
        QStringList posted;
        NotificationCenter& centre = NotificationCenter::defaultCenter();
        centre.addObserver(this, NotificationNames::kSelectImageMouseDown,
                           [&posted](const Notification& n) { posted << n.object.toString(); });
        QTest::keyClick(&b.view, Qt::Key_Right);
        QTest::keyClick(&b.view, Qt::Key_Space);
        QVERIFY(!b.catalog.assets()[1]->includedInSlideshow());  // a.jpg, first shown
        QTest::keyClick(&b.view, Qt::Key_End);
        QTest::keyClick(&b.view, Qt::Key_Left);
        QTest::keyClick(&b.view, Qt::Key_Return);
        centre.removeObserver(this);
        QCOMPARE(posted, QStringList{"/photos/b.jpg"});
        QVERIFY(b.view.currentSlide()->isCurrent());
    }

    // The preview made in the background reaches the card with the photo's size,
    // upright for one stored on its side, and follows the option; so does the flag.
    void uprightCard() {
        QTemporaryDir dir;
        const QString path = dir.filePath("side.jpg");
        ExifJpegWriter::Fields fields;
        fields.orientation = 6;
        QVERIFY(ExifJpegWriter::write(path, TestImages::solid(QSize(40, 30)), fields));
        Browser browser({});
        browser.view.setUpright(true);
        browser.catalog.addAsset(std::make_shared<ImageAsset>(QUrl::fromLocalFile(path)));
        SlideCarrierView* card = browser.view.nodes().front()->rootView();
        browser.catalog.assets().first()->setIncludedInSlideshow(false);
        QVERIFY(!card->isChecked());
        QTRY_VERIFY(card->hasImage());
        QCOMPARE(card->dimensionsText(), QString("30 \u00d7 40"));
        browser.view.setUpright(false);
        QCOMPARE(card->dimensionsText(), QString("40 \u00d7 30"));
    }
};

SW_TEST_CLASS(AssetCollectionViewTest)

#include "AssetCollectionViewTest.moc"
