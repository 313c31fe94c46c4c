#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "browser/AssetCollectionView.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "platform/RadioMatrix.h"
#include "ui_MainWindow.h"

namespace {
std::unique_ptr<AssetCollection> catalogOf(int count) {
    auto catalog = std::make_unique<AssetCollection>(QUrl());
    for (int i = 0; i < count; ++i) {
        catalog->addAsset(
            std::make_shared<Asset>(QUrl::fromLocalFile(QStringLiteral("/tmp/p%1.jpg").arg(i))));
    }
    return catalog;
}
}  // namespace

class DispatchTest : public QObject {
    Q_OBJECT
  private slots:
    void getGUIObjectRanges_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<bool>("inToolbar");
        QTest::addColumn<QString>("expectedName");
        QTest::newRow("toolbar item in the toolbar") << qint64(30027) << true << "actionStamp";
        QTest::newRow("toolbar item without toolbar") << qint64(30027) << false << "";
        QTest::newRow("absent toolbar tag") << qint64(30999) << true << "";
        QTest::newRow("button") << qint64(31007) << false << "typeButton";
        QTest::newRow("button searched in the toolbar") << qint64(31007) << true << "";
        QTest::newRow("matrix is reached by outlet only") << qint64(32400) << false << "";
        QTest::newRow("menu range") << qint64(32505) << false << "";
        QTest::newRow("unserved 32000 range") << qint64(32100) << false << "";
        QTest::newRow("label text") << qint64(36007) << false << "atextfield";
        QTest::newRow("counter") << qint64(36005) << false << "totalAmountField";
        QTest::newRow("combo box") << qint64(40101) << false << "sortComboBox";
        QTest::newRow("outside every range") << qint64(99999) << false << "";
        QTest::newRow("negative") << qint64(-31007) << false << "";
    }
    void getGUIObjectRanges() {
        QFETCH(qint64, tag);
        QFETCH(bool, inToolbar);
        QFETCH(QString, expectedName);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        QObject* found = d.getGUIObject(tag, inToolbar ? d.aToolbar() : nullptr);
        QCOMPARE(found != nullptr ? found->objectName() : QString(), expectedName);
    }

    // Every control the controller names by tag exists in the window, of its kind.
    void registryIsComplete_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<QString>("kind");
        const std::pair<const char*, std::vector<qint64>> kinds[] = {
            {"toolbar", {30008, 30108, 30023, 30024, 30025, 30026, 30027}},
            {"menu", {32500, 32502, 32504, 32505, 32506, 32507, 32508, 32509, 32510}},
            {"QPushButton",
             {31002, 31007, 31010, 31031, 31036, 31039, 31080, 31081, 31082, 31083, 31084}},
            {"QCheckBox", {31034, 31035, 31037}},
            {"QComboBox", {31200, 31201, 40100, 40101}},
            {"QLineEdit", {35000, 35001}},
            {"QLabel", {36005, 36006, 36007, 31202}},
        };
        for (const auto& [kind, tags] : kinds) {
            for (qint64 tag : tags) {
                QTest::addRow("%lld", tag) << tag << QString::fromLatin1(kind);
            }
        }
    }
    void registryIsComplete() {
        QFETCH(qint64, tag);
        QFETCH(QString, kind);
        AppFixture app;
        StampwiseAppDelegate& d = app.start(false);
        if (kind == QLatin1String("menu")) {
            bool found = false;
            for (QAction* top : app.window->ui().mainMenu->actions()) {
                for (QAction* item : top->menu()->actions()) {
                    found = found || item->property("tag").toLongLong() == tag;
                }
            }
            QVERIFY(found);
            return;
        }
        QObject* control =
            d.getGUIObject(tag, kind == QLatin1String("toolbar") ? d.aToolbar() : nullptr);
        QVERIFY(control != nullptr);
        if (kind != QLatin1String("toolbar")) {
            QCOMPARE(QString::fromLatin1(control->metaObject()->className()), kind);
        }
    }

    void dateSourceMatrix_data() {
        QTest::addColumn<int>("row");
        QTest::newRow("photo date") << 0;
        QTest::newRow("file date") << 1;
        QTest::newRow("own text") << 2;
    }
    void dateSourceMatrix() {
        QFETCH(int, row);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setToolbarStatus(true);
        // Start from the opposite state so both directions are seen.
        app.control<QWidget>(35000)->setEnabled(row != 2);
        app.control<QWidget>(31007)->setEnabled(row == 2);
        d.aMatrix()->setEnabled(true);
        d.aMatrix()->cell(row)->click();
        QCOMPARE(d.selectChannel(), qint64(row));
        QCOMPARE(app.control<QWidget>(35000)->isEnabled(), row == 2);
        QCOMPARE(app.control<QWidget>(31007)->isEnabled(), row != 2);
    }

    void presetButtonsActAsOneRadioGroup() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setToolbarStatus(true);
        app.control<QAbstractButton>(31080)->click();
        app.control<QAbstractButton>(31082)->click();
        for (qint64 tag = 31080; tag <= 31084; ++tag) {
            QCOMPARE(app.control<QAbstractButton>(tag)->isChecked(), tag == 31082);
        }
        // Pressing the pressed one keeps it on.
        app.control<QAbstractButton>(31082)->click();
        QVERIFY(app.control<QAbstractButton>(31082)->isChecked());
        // A drag step turns them all off.
        NotificationCenter::defaultCenter().post(NotificationNames::kMoveDateTime);
        for (qint64 tag = 31080; tag <= 31084; ++tag) {
            QVERIFY(!app.control<QAbstractButton>(tag)->isChecked());
        }
    }

    void clearAllAsksFirst_data() {
        QTest::addColumn<bool>("fromMenu");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("remaining");
        QTest::newRow("toolbar, Ok") << false << 0 << 0;
        QTest::newRow("toolbar, Cancel") << false << 1 << 3;
        QTest::newRow("menu, Ok") << true << 0 << 0;
        QTest::newRow("menu, Cancel") << true << 1 << 3;
    }
    void clearAllAsksFirst() {
        QFETCH(bool, fromMenu);
        QFETCH(int, answer);
        QFETCH(int, remaining);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(catalogOf(3));
        d.redrawAmountInfo();
        d.setHasImage(true);
        app.alerts.answerNext(answer);
        Ui::MainWindow& ui = app.window->ui();
        (fromMenu ? ui.actionClearAllMenu : ui.actionClearAll)->trigger();
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].title, QStringLiteral("Reminder"));
        QCOMPARE(app.alerts.shown[0].message, QStringLiteral("Are you sure to clear all images?"));
        QCOMPARE(app.alerts.shown[0].buttons, (QStringList{"Ok", "Cancel"}));
        QCOMPARE(d.assetCollection()->assets().size(), remaining);
        QCOMPARE(d.totalAmount(), qint64(remaining));
        QCOMPARE(d.hasImage(), remaining != 0);
        QCOMPARE(ui.actionStamp->isEnabled(), remaining != 0);
    }

    void quitAsksFirst_data() {
        QTest::addColumn<bool>("fromMenu");
        QTest::addColumn<int>("answer");
        QTest::newRow("menu, Ok") << true << 0;
        QTest::newRow("menu, Cancel") << true << 1;
        QTest::newRow("window close, Ok") << false << 0;
        QTest::newRow("window close, Cancel") << false << 1;
    }
    void quitAsksFirst() {
        QFETCH(bool, fromMenu);
        QFETCH(int, answer);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.window->show();
        QSignalSpy terminating(&d, &StampwiseAppDelegate::applicationWillTerminate);
        app.alerts.answerNext(answer);
        if (fromMenu) {
            app.window->ui().actionQuit->trigger();
        } else {
            app.window->close();
        }
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].title, QStringLiteral("Quit Stampwise"));
        QCOMPARE(app.alerts.shown[0].message, QStringLiteral("Are you sure to quit Stampwise?"));
        QCOMPARE(terminating.size(), answer == 0 ? 1 : 0);
        if (!fromMenu) {
            QCOMPARE(app.window->isVisible(), answer != 0);
        } else {
            QVERIFY(app.window->isVisible());
        }
    }

    void secondaryWindowIsMadeOnceAndCentred() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.window->ui().actionAbout->trigger();
        QWidget* about = d.secondaryWindow(QStringLiteral("About"));
        QVERIFY(about != nullptr);
        QVERIFY(about->isVisible());
        about->move(0, 0);
        app.window->ui().actionAbout->trigger();
        QCOMPARE(d.secondaryWindow(QStringLiteral("About")), about);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(qAbs(about->frameGeometry().center().x() - screen.width() / 2) <= 1);
        // Its close button (31018) hides it; the next opening shows the same window.
        auto* close = about->findChild<QAbstractButton*>(QStringLiteral("closeButton"));
        QVERIFY(close != nullptr);
        close->click();
        QVERIFY(!about->isVisible());
        d.setToolbarStatus(true);
        app.control<QAbstractButton>(31002)->click();
        QVERIFY(d.secondaryWindow(QStringLiteral("Safety"))->isVisible());
    }

    void previewCheckBoxSetsLabelMode() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setToolbarStatus(true);
        auto* box = app.control<QAbstractButton>(31034);
        box->click();
        QVERIFY(app.window->ui().aQNSDragView->isPreview());
        box->click();
        QVERIFY(!app.window->ui().aQNSDragView->isPreview());
    }

    void layoutPopUpAndComboSetTheBrowserLayout_data() {
        QTest::addColumn<qint64>("tag");
        QTest::newRow("pop-up") << qint64(31200);
        QTest::newRow("combo box") << qint64(40100);
    }
    void layoutPopUpAndComboSetTheBrowserLayout() {
        QFETCH(qint64, tag);
        AppFixture app;
        app.start();
        auto* combo = app.control<QComboBox>(tag);
        QCOMPARE(combo->isEditable(), tag == 40100);
        for (int i = 0; i < combo->count(); ++i) {
            combo->setCurrentIndex(i);
            emit combo->activated(i);
            QCOMPARE(app.window->ui().assetCollectionView->subviewsLayoutType(), i);
        }
    }
};
SW_TEST_CLASS(DispatchTest)

#include "DispatchTest.moc"
