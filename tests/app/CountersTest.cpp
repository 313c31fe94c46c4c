#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QThread>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "platform/RadioMatrix.h"
#include "ui_MainWindow.h"

namespace {
std::unique_ptr<AssetCollection> catalogWith(int total, int ticked) {
    auto catalog = std::make_unique<AssetCollection>(QUrl());
    for (int i = 0; i < total; ++i) {
        auto asset =
            std::make_shared<Asset>(QUrl::fromLocalFile(QStringLiteral("/tmp/c%1.jpg").arg(i)));
        asset->setIncludedInSlideshow(i < ticked);
        catalog->addAsset(asset);
    }
    return catalog;
}
}  // namespace

class CountersTest : public QObject {
    Q_OBJECT
  private slots:
    void countsAndEnabledStates_data() {
        QTest::addColumn<int>("total");
        QTest::addColumn<int>("ticked");
        QTest::newRow("five, three ticked") << 5 << 3;
        QTest::newRow("none ticked keeps the commands on") << 4 << 0;
        QTest::newRow("empty catalog") << 0 << 0;
    }
    void countsAndEnabledStates() {
        QFETCH(int, total);
        QFETCH(int, ticked);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(catalogWith(total, ticked));
        d.redrawAmountInfo();
        QCOMPARE(app.control<QLabel>(36005)->text(), QString::number(total));
        QCOMPARE(app.control<QLabel>(36006)->text(), QString::number(ticked));
        QCOMPARE(d.totalAmount(), qint64(total));
        QCOMPARE(d.totalSelectedAmount(), qint64(ticked));
        const bool loaded = total != 0;
        Ui::MainWindow& ui = app.window->ui();
        QCOMPARE(ui.actionStamp->isEnabled(), loaded);
        QCOMPARE(ui.actionStampMenu->isEnabled(), loaded);
        QCOMPARE(ui.actionTickAllMenu->isEnabled(), loaded);
        QCOMPARE(app.control<QWidget>(31031)->isEnabled(), loaded);
        QCOMPARE(app.control<QWidget>(35001)->isEnabled(), loaded);
        QCOMPARE(d.aMatrix()->isEnabled(), loaded);
        QVERIFY(ui.actionAddFiles->isEnabled());
        QVERIFY(ui.actionAddFolder->isEnabled());
    }

    void ownTextSourceThenTickReenablesTypeButton() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(catalogWith(2, 2));
        d.redrawAmountInfo();
        d.aMatrix()->cell(2)->click();
        QVERIFY(!app.control<QWidget>(31007)->isEnabled());
        QVERIFY(app.control<QWidget>(35000)->isEnabled());
        NotificationCenter::defaultCenter().post(NotificationNames::kClickTitleCheckBox);
        QVERIFY(app.control<QWidget>(31007)->isEnabled());
        QVERIFY(app.control<QWidget>(35000)->isEnabled());
    }

    void tickAndUntickAll() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(catalogWith(3, 1));
        d.redrawAmountInfo();
        app.window->ui().actionTickAll->trigger();
        QCOMPARE(d.totalSelectedAmount(), 3);
        app.window->ui().actionUntickAllMenu->trigger();
        QCOMPARE(d.totalSelectedAmount(), 0);
        QCOMPARE(app.control<QLabel>(36006)->text(), QStringLiteral("0"));
        QVERIFY(app.window->ui().actionStamp->isEnabled());
    }

    // The scan thread posts the count and waits while the main thread updates.
    void scanEndHandledOnTheMainThread() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(catalogWith(6, 6));
        d.setIsLoadDirectory(true);
        QThread* ranOn = nullptr;
        qint64 totalSeenByPoster = -1;
        std::unique_ptr<QThread> scan(QThread::create([&] {
            NotificationCenter::defaultCenter().post(NotificationNames::kGotFileAmount,
                                                     QStringLiteral("6"));
            // The handler has finished before post returns.
            totalSeenByPoster = d.totalAmount();
            ranOn = QThread::currentThread();
        }));
        scan->start();
        QTRY_VERIFY(scan->isFinished());
        QVERIFY(ranOn != QThread::currentThread());
        QCOMPARE(totalSeenByPoster, 6);
        QVERIFY(!d.isLoadDirectory());
        QCOMPARE(app.control<QLabel>(36005)->text(), QStringLiteral("6"));
    }
};
SW_TEST_CLASS(CountersTest)

#include "CountersTest.moc"
