#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <mutex>
#include <thread>

#include "CatalogFixtures.h"
#include "TestRegistry.h"
#include "catalog/AssetCollection.h"
#include "catalog/ImageAsset.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"

namespace {

// Records every "gotFileAmount" posted while it lives (from any thread).
class AmountRecorder : public QObject {
  public:
    AmountRecorder() {
        NotificationCenter::defaultCenter().addObserver(this, NotificationNames::kGotFileAmount,
                                                        [this](const Notification& n) {
                                                            std::lock_guard lock(mutex_);
                                                            amounts_.append(n.object.toString());
                                                            if (onPost) {
                                                                onPost();
                                                            }
                                                        });
    }
    ~AmountRecorder() override { NotificationCenter::defaultCenter().removeObserver(this); }
    QStringList amounts() const {
        std::lock_guard lock(mutex_);
        return amounts_;
    }
    std::function<void()> onPost;

  private:
    mutable std::mutex mutex_;
    QStringList amounts_;
};

QStringList filenames(AssetCollection& collection) {
    QStringList names;
    for (const AssetPtr& asset : collection.assets()) {
        names.append(asset->filename());
    }
    return names;
}

void touch(const QString& path) {
    QVERIFY(CatalogFixtures::writeBytes(path, "x"));
}

}  // namespace

class AssetCollectionTest : public QObject {
    Q_OBJECT
  private slots:
    void detectFileType_data() {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<qint64>("kind");
        QTest::newRow("jpg") << "jpg" << qint64(1);
        QTest::newRow("Jpg") << "Jpg" << qint64(1);
        QTest::newRow("JPG") << "JPG" << qint64(1);
        QTest::newRow("tif is not in the table") << "tif" << qint64(-1);
        QTest::newRow("pcx") << "pcx" << qint64(1);
        QTest::newRow("mp3") << "mp3" << qint64(0);
        QTest::newRow("gif") << "gif" << qint64(-1);
        QTest::newRow("empty") << "" << qint64(-1);
        QTest::newRow("jpg with a dot") << ".jpg" << qint64(-1);
    }
    void detectFileType() {
        QFETCH(QString, extension);
        QFETCH(qint64, kind);
        QCOMPARE(AssetCollection::detectFileType(extension), kind);
    }

    void folderListing() {
        QTemporaryDir dir;
        for (const char* name : {"A.JPG", "b.jpeg", "c.tif", "d.Png", "e.gif", "notes.txt",
                                 ".hidden.png", "song.mp3", "noext"}) {
            touch(dir.filePath(name));
        }
        QVERIFY(QDir(dir.path()).mkdir("folder.jpg"));
        QVERIFY(QDir(dir.path()).mkdir("sub"));
        touch(dir.filePath("sub/inner.jpg"));

        AssetCollection collection(QUrl::fromLocalFile(dir.path()));
        QStringList listed = collection.findAssetFilesInRootURL();
        listed.sort();
        QStringList expected;
        for (const char* name : {".hidden.png", "A.JPG", "b.jpeg", "d.Png", "folder.jpg"}) {
            expected.append(dir.filePath(name));
        }
        expected.sort();
        QCOMPARE(listed, expected);
    }

    void folderThatCannotBeRead_data() {
        QTest::addColumn<QString>("folder");
        QTest::newRow("missing") << "/nonexistent/stampwise/folder";
        QTest::newRow("a file") << QString::fromUtf8(STAMPWISE_SOURCE_DIR "/CMakeLists.txt");
        QTest::newRow("empty path") << QString();
    }
    void folderThatCannotBeRead() {
        QFETCH(QString, folder);
        AssetCollection collection(QUrl::fromLocalFile(folder));
        QVERIFY(collection.findAssetFilesInRootURL().isEmpty());
        AmountRecorder recorder;
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QCOMPARE(recorder.amounts(), QStringList{"0"});
        QVERIFY(collection.assets().isEmpty());
    }

    void scanOfChosenFiles() {
        // The scan opens no file, so the paths need not exist.
        const QStringList files = {"/p/b.jpg",     "/p/a.JPG", "/p/c.gif", "/p/d.Jpg",
                                   "/p/notes.txt", "/p/e.pcx", "/q/a.JPG"};
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setFilesArray(files);
        collection.setIsFile(true);
        QCOMPARE(collection.findAssetFiles(), files);
        QSignalSpy inserted(&collection, &AssetCollection::assetsInserted);
        AmountRecorder recorder;
        collection.startRefresh();
        QVERIFY(collection.inRefresh());
        QTRY_VERIFY(!collection.inRefresh());
        QCOMPARE(filenames(collection), QStringList({"b.jpg", "a.JPG", "c.gif", "e.pcx", "a.JPG"}));
        QCOMPARE(collection.assets().at(4)->fullFilename(), "/q/a.JPG");
        QCOMPARE(inserted.count(), 5);
        QCOMPARE(inserted.at(3).at(0).value<QList<qsizetype>>(), QList<qsizetype>{3});
        QCOMPARE(recorder.amounts(), QStringList{"7"});
        // Every asset is ticked and belongs to the main thread.
        for (const AssetPtr& asset : collection.assets()) {
            QVERIFY(asset->includedInSlideshow());
            QCOMPARE(asset->thread(), QThread::currentThread());
        }
    }

    void scanOfFolder() {
        QTemporaryDir dir;
        for (const char* name :
             {"A.JPG", "b.jpeg", "c.tif", "d.Png", "e.gif", "notes.txt", ".hidden.png"}) {
            touch(dir.filePath(name));
        }
        QVERIFY(QDir(dir.path()).mkdir("sub"));
        touch(dir.filePath("sub/inner.jpg"));
        AssetCollection collection(QUrl::fromLocalFile(dir.path()));
        AmountRecorder recorder;
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        // d.Png is listed and counted but its extension is not an exact image type.
        QCOMPARE(recorder.amounts(), QStringList{"4"});
        QStringList names = filenames(collection);
        names.sort();
        QCOMPARE(names, QStringList({".hidden.png", "A.JPG", "b.jpeg"}));
    }

    void sourceIsTakenAtScanStart() {
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setIsFile(true);
        collection.setFilesArray({"/p/1.jpg", "/p/2.jpg", "/p/3.jpg"});
        bool replaced = false;
        connect(&collection, &AssetCollection::assetsInserted, this, [&] {
            if (!replaced) {
                replaced = true;
                collection.setFilesArray({"/other/x.jpg"});
                collection.startRefresh();  // dropped: a scan runs
            }
        });
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QCOMPARE(filenames(collection), QStringList({"1.jpg", "2.jpg", "3.jpg"}));
        // Once the scan has ended a new call scans the new source.
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QCOMPARE(filenames(collection), QStringList({"1.jpg", "2.jpg", "3.jpg", "x.jpg"}));
    }

    void refreshDroppedFromAmountHandler() {
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setIsFile(true);
        collection.setFilesArray({"/p/1.jpg"});
        AmountRecorder recorder;
        // Like the controller: the handler has the main thread do the work, waiting.
        recorder.onPost = [&collection] {
            MainThread::perform([&collection] { collection.startRefresh(); }, true);
        };
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QTest::qWait(50);
        QCOMPARE(recorder.amounts().size(), 1);
        QCOMPARE(collection.assets().size(), 1);
    }

    void destroyedMidScan() {
        QStringList files;
        for (int i = 0; i < 2000; ++i) {
            files.append(QStringLiteral("/p/photo%1.jpg").arg(i));
        }
        auto collection = std::make_unique<AssetCollection>(QUrl::fromLocalFile("/unused"));
        collection->setIsFile(true);
        collection->setFilesArray(files);
        AmountRecorder recorder;
        collection->startRefresh();
        QTRY_VERIFY(collection->assets().size() >= 3);
        collection.reset();  // must neither hang nor crash
        QTest::qWait(50);    // hand-offs queued before the stop find nothing to do
        QVERIFY(recorder.amounts().isEmpty());
    }

    void destroyedWhileAmountObserverWaitsForMainThread() {
        auto collection = std::make_unique<AssetCollection>(QUrl::fromLocalFile("/unused"));
        collection->setIsFile(true);
        AmountRecorder recorder;
        std::atomic_bool inHandler{false};
        std::atomic_int mainThreadCalls{0};
        recorder.onPost = [&] {
            inHandler = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            MainThread::perform([&] { ++mainThreadCalls; }, true);
        };
        collection->startRefresh();
        while (!inHandler) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        collection.reset();  // joins while the observer waits for this thread
        QCOMPARE(mainThreadCalls.load(), 1);
    }

    void listOperations() {
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        auto a = std::make_shared<Asset>(QUrl::fromLocalFile("/x/IMG_1.JPG"));
        auto b = std::make_shared<Asset>(QUrl::fromLocalFile("/y/IMG_1.JPG"));
        auto c = std::make_shared<Asset>(QUrl::fromLocalFile("/y/IMG_2.JPG"));
        QSignalSpy reset(&collection, &AssetCollection::assetsReset);
        QSignalSpy removed(&collection, &AssetCollection::assetsRemoved);
        collection.setAssets({a, b, c});
        QCOMPARE(reset.count(), 1);
        collection.setAssets(collection.assets());  // the same list: nothing happens
        QCOMPARE(reset.count(), 1);

        QCOMPARE(collection.assetForFilename("IMG_1.JPG"), a);
        QCOMPARE(collection.assetForFilename("/y/IMG_1.JPG"), nullptr);
        QCOMPARE(collection.assetForFilename("img_1.jpg"), nullptr);

        collection.removeAsset(std::make_shared<Asset>(QUrl::fromLocalFile("/x/IMG_1.JPG")));
        QCOMPARE(removed.count(), 0);
        collection.removeAsset(b);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(0).value<QList<qsizetype>>(), QList<qsizetype>{1});
        QCOMPARE(collection.assets(), (QList<AssetPtr>{a, c}));
    }
};

SW_TEST_CLASS(AssetCollectionTest)
#include "AssetCollectionTest.moc"
