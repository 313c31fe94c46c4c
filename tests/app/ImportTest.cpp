#include <QDir>
#include <QDropEvent>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScopeGuard>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "browser/AssetCollectionView.h"
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
            // Aimed at the browser, where most drops land.
            QWidget* target = app.window->findChild<QGraphicsView*>()->viewport();
            QCoreApplication::sendEvent(target, &enter);
            QCoreApplication::sendEvent(target, &drop);
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

    // The counters and the title follow the photos while the scan still runs;
    // photos removed meanwhile stay gone and the rest keep arriving.
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
            if (d.assetCollection()->assets().size() == 4 && seen.isEmpty()) {
                QTest::qWait(250);
                seen << app.control<QLabel>(36006)->text() << app.window->windowTitle();
                d.assetCollection()->assets().at(1)->setIncludedInSlideshow(false);
                app.window->ui().actionRemoveTicked->trigger();
            }
        });
        QTRY_VERIFY(!d.assetCollection()->inRefresh());
        QCOMPARE(seen, (QStringList{"4", "Stampwise — 4 photos, 4 ticked"}));
        QStringList left;
        for (const AssetPtr& asset : d.assetCollection()->assets()) {
            left << QFileInfo(asset->fullFilename()).fileName();
        }
        QCOMPARE(left, (QStringList{"1.jpg", "4.jpg", "5.jpg", "6.jpg", "7.jpg"}));
        QTRY_COMPARE(app.window->findChild<AssetCollectionView*>()->nodes().size(), size_t(5));
    }

    // Add Files asks for several files, Add Folder for one folder; what they
    // cannot use is reported, and a cancelled panel changes nothing. No names:
    // cancelled.
    void openPanels_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<int>("photos");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("informative");
        QTest::newRow("files, one of three deleted")
            << "actionAddFiles" << QStringList{"a.jpg", "gone.jpg", "c.png"} << 2 << ""
            << "";
        QTest::newRow("files, only a folder")
            << "actionAddFiles" << QStringList{"sub"} << 0 << "Can't load file"
            << "";
        QTest::newRow("folder") << "actionAddFolderMenu" << QStringList{"photos"} << 2 << ""
                                << "";
        QTest::newRow("folder, a file")
            << "actionAddFolderMenu" << QStringList{"a.jpg"} << 0 << "Can't browse path"
            << "Path exists but isn't a directory (%1)";
        QTest::newRow("folder, missing")
            << "actionAddFolderMenu" << QStringList{"nowhere"} << 0 << "Can't browse path"
            << "Path doesn't exist (%1)";
        QTest::newRow("folder, cancelled") << "actionAddFolder" << QStringList{} << 0 << ""
                                           << "";
    }
    void openPanels() {
        QFETCH(QString, action);
        QFETCH(QStringList, names);
        QFETCH(int, photos);
        QFETCH(QString, message);
        QFETCH(QString, informative);
        Sandbox dir;
        for (QString name : {"photos", "sub", "a.jpg", "c.png", "photos/x.jpg", "photos/y.JPG"}) {
            name.contains('.') ? dir.touch(name) : dir.mkdir(name);
        }
        QStringList paths;
        for (const QString& name : names) {
            paths << dir.path(name);
        }
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.openPanel.answers << (names.isEmpty() ? std::nullopt : std::optional(paths));
        qobject_cast<QAction*>(app.named(qPrintable(action)))->trigger();
        const bool folder = action.contains("Folder");
        QCOMPARE(app.openPanel.requests.size(), 1);
        const auto& request = app.openPanel.requests[0];
        QVERIFY(folder ? request.canChooseDirectories && !request.canChooseFiles
                       : request.canChooseFiles && request.allowsMultipleSelection);
        QCOMPARE(app.alerts.shown.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QCOMPARE(app.alerts.shown[0].message, message);
            QCOMPARE(app.alerts.shown[0].informativeText,
                     informative.isEmpty() ? QString() : informative.arg(paths[0]));
            QCOMPARE(app.alerts.shown[0].buttons, QStringList{"OK"});
        }
        QTRY_COMPARE(d.totalAmount(), qint64(photos));
        QCOMPARE(d.assetCollection() == nullptr, photos == 0);
        QCOMPARE(d.isLoadDirectory(), folder && !message.isEmpty());
        if (photos > 0) {
            QCOMPARE(d.sortKey(), QStringLiteral("filename"));
            // The box starts checked; a click sorts the other way.
            app.control<QAbstractButton>(31035)->click();
            const AssetSort::SortRule byName{"asset.filename", false};
            QCOMPARE(app.window->ui().assetCollectionView->sortDescriptors(), QList{byName});
        }
    }

    // The output folder chooser fills its field only when confirmed.
    void outputFolderPanel() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
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
    }
};
SW_TEST_CLASS(ImportTest)

#include "ImportTest.moc"
