#include <QAbstractButton>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScopeGuard>
#include <QTest>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "ui_MainWindow.h"

class ImportTest : public QObject {
    Q_OBJECT
  private slots:
    // Paths named on the command line or dropped: runs of files import as Add Files, each
    // folder as Add Folder, in turn; drops take local paths only, copied, never moved.
    void namedPaths_data() {
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<bool>("dropped");
        QTest::addColumn<QStringList>("expected");
        const QStringList photos{"photos/p1.jpg", "photos/p2.JPG"};
        QTest::newRow("missing") << QStringList{"gone.jpg"} << false << QStringList{};
        QTest::newRow("mixed") << QStringList{"c.png", "gone.jpg", "photos",
                                              "empty", "a.jpg",    "odd"}
                               << false
                               << QStringList{"c.png"} + photos +
                                      QStringList{"a.jpg", "odd/pipe.jpg"};
        QTest::newRow("drop") << QStringList{"file:c.png", "file:photos"} << true
                              << QStringList{"c.png"} + photos;
        QTest::newRow("drop web") << QStringList{"https://x.org/a.jpg"} << true << QStringList{};
    }
    void namedPaths() {
        QFETCH(QStringList, paths);
        QFETCH(bool, dropped);
        QFETCH(QStringList, expected);
        Sandbox dir;
        for (QString name :
             {"photos", "odd", "empty", "a.jpg", "c.png", "photos/p1.jpg", "photos/p2.JPG"}) {
            name.contains('.') ? dir.touch(name) : dir.mkdir(name);
        }
        dir.fifo("odd/pipe.jpg");
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        // Relative paths start from the current folder.
        const auto restore = qScopeGuard([cwd = QDir::currentPath()] { QDir::setCurrent(cwd); });
        QDir::setCurrent(dir.path());
        if (dropped) {
            QMimeData data;
            data.setUrls(QUrl::fromStringList(paths));
            const auto actions = Qt::CopyAction | Qt::MoveAction;
            QDragEnterEvent enter({5, 5}, actions, &data, Qt::LeftButton, {});
            QDropEvent drop({5, 5}, actions, &data, Qt::LeftButton, {});
            drop.setDropAction(Qt::MoveAction);
            QCoreApplication::sendEvent(app.window.get(), &enter);
            QCoreApplication::sendEvent(app.window.get(), &drop);
            QCOMPARE(enter.isAccepted(), !expected.isEmpty());
            QCOMPARE(drop.dropAction(), expected.isEmpty() ? Qt::MoveAction : Qt::CopyAction);
        } else {
            d.importPaths(paths);
        }
        QCOMPARE(app.alerts.shown.size(), expected.isEmpty() && !dropped ? 1 : 0);
        QTRY_COMPARE(d.totalAmount(), qint64(expected.size()));
        QStringList loaded;
        for (const AssetPtr& asset :
             d.assetCollection() ? d.assetCollection()->assets() : QList<AssetPtr>{}) {
            loaded << asset->fullFilename().mid(dir.path().size() + 1);  // full paths
        }
        QCOMPARE(loaded, expected);
    }

    // The counters and the title follow the photos while the scan still runs.
    void countersDuringAScan() {
        Sandbox dir;
        for (int i = 0; i < 8; ++i) {
            dir.touch(QStringLiteral("%1.jpg").arg(i));
        }
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.importPaths({dir.path()});
        QStringList seen;
        connect(d.assetCollection(), &AssetCollection::assetsInserted, this, [&] {
            if (d.assetCollection()->assets().size() == 4) {
                QTest::qWait(250);
                seen << app.control<QLabel>(36006)->text() << app.window->windowTitle();
            }
        });
        QTRY_COMPARE(d.totalAmount(), qint64(8));
        QCOMPARE(seen, (QStringList{"4", "Stampwise — 4 photos, 4 ticked"}));
    }

    void openFileChecks_data() {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<int>("expectedPhotos");
        QTest::newRow("one of three deleted") << QStringList{"a.jpg", "gone.jpg", "c.png"} << 2;
        QTest::newRow("only a folder") << QStringList{"sub"} << 0;
    }
    void openFileChecks() {
        QFETCH(QStringList, names);
        QFETCH(int, expectedPhotos);
        Sandbox dir;
        dir.touch("a.jpg");
        dir.touch("c.png");
        dir.mkdir("sub");
        QStringList paths;
        for (const QString& name : names) {
            paths << dir.path(name);
        }
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.openPanel.answers << paths;
        app.window->ui().actionAddFiles->trigger();
        QCOMPARE(app.openPanel.requests.size(), 1);
        QVERIFY(app.openPanel.requests[0].canChooseFiles &&
                app.openPanel.requests[0].allowsMultipleSelection);
        if (expectedPhotos == 0) {
            QCOMPARE(app.alerts.shown.size(), 1);
            QCOMPARE(app.alerts.shown[0].message, QStringLiteral("Can't load file"));
            QCOMPARE(app.alerts.shown[0].buttons, QStringList{"OK"});
            QVERIFY(d.assetCollection() == nullptr);
            return;
        }
        QTRY_COMPARE(d.totalAmount(), qint64(expectedPhotos));
        QVERIFY(app.alerts.shown.isEmpty());
        QCOMPARE(app.control<QLabel>(36005)->text(), QString::number(expectedPhotos));
        QVERIFY(app.window->ui().actionStamp->isEnabled());
        QCOMPARE(d.sortKey(), QStringLiteral("filename"));
        // The box starts checked; a click sorts the other way.
        app.control<QAbstractButton>(31035)->click();
        const AssetSort::SortRule byName{"asset.filename", false};
        QCOMPARE(app.window->ui().assetCollectionView->sortDescriptors(), QList{byName});
    }

    void openDirectoryChecks_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("informative");
        QTest::newRow("folder") << QString("photos") << QString();
        QTest::newRow("a file") << QString("photos/a.jpg")
                                << "Path exists but isn't a directory (%1)";
        QTest::newRow("missing") << QString("nowhere") << "Path doesn't exist (%1)";
    }
    void openDirectoryChecks() {
        QFETCH(QString, name);
        QFETCH(QString, informative);
        Sandbox dir;
        dir.mkdir("photos");
        dir.touch("photos/a.jpg");
        dir.touch("photos/b.JPG");
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.openPanel.answers << QStringList{dir.path(name)};
        app.window->ui().actionAddFolderMenu->trigger();
        QVERIFY(app.openPanel.requests[0].canChooseDirectories &&
                !app.openPanel.requests[0].canChooseFiles);
        if (informative.isEmpty()) {
            QTRY_COMPARE(d.totalAmount(), qint64(2));
            QVERIFY(!d.isLoadDirectory());
            return;
        }
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].message, QStringLiteral("Can't browse path"));
        QCOMPARE(app.alerts.shown[0].informativeText, informative.arg(dir.path(name)));
        QVERIFY(d.isLoadDirectory());
    }

    void cancelledPanelsChangeNothing() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.openPanel.answers << std::nullopt;
        app.window->ui().actionAddFolder->trigger();
        QVERIFY(!d.isLoadDirectory());
        QVERIFY(d.assetCollection() == nullptr);
        QVERIFY(app.alerts.shown.isEmpty());
        // The output folder chooser fills its field only when confirmed.
        d.setToolbarStatus(true);
        auto* output = app.control<QLineEdit>(35001);
        output->setText("/kept");
        app.openPanel.answers << std::nullopt;
        app.control<QAbstractButton>(31010)->click();
        QCOMPARE(output->text(), QStringLiteral("/kept"));
        app.openPanel.answers << QStringList{"/chosen/folder"};
        app.control<QAbstractButton>(31010)->click();
        QCOMPARE(output->text(), QStringLiteral("/chosen/folder"));
    }

    void removingTheLastTickedPhotosEmptiesTheState() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(3);
        d.assetCollection()->assets().at(1)->setIncludedInSlideshow(false);
        d.setHasImage(true);
        app.window->ui().actionRemoveTicked->trigger();
        QCOMPARE(d.totalAmount(), qint64(1));
        QCOMPARE(d.assetCollection()->assets().at(0)->filename(), QStringLiteral("p1.jpg"));
        QVERIFY(d.hasImage());
        d.assetCollection()->assets().at(0)->setIncludedInSlideshow(true);
        app.window->ui().actionRemoveTickedMenu->trigger();
        QCOMPARE(d.totalAmount(), qint64(0));
        QCOMPARE(app.control<QLabel>(36005)->text(), QStringLiteral("0"));
        QVERIFY(!app.window->ui().actionStamp->isEnabled());
        QVERIFY(app.window->ui().actionAddFiles->isEnabled());
    }
};
SW_TEST_CLASS(ImportTest)

#include "ImportTest.moc"
