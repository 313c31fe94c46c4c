#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <mutex>
#include <thread>

#include "TestRegistry.h"
#include "catalog/AssetCollection.h"
#include "catalog/ImageAsset.h"
#include "common/Sandbox.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"

namespace {

// Records every "gotFileAmount" posted while it lives (from any thread).
struct AmountRecorder : QObject {
    AmountRecorder() {
        NotificationCenter::defaultCenter().addObserver(this, NotificationNames::kGotFileAmount,
                                                        [this](const Notification& n) { got(n); });
    }
    ~AmountRecorder() override { NotificationCenter::defaultCenter().removeObserver(this); }
    void got(const Notification& n) {
        std::unique_lock lock(mutex);
        posted.append(n.object.toString());
        lock.unlock();
        if (onPost) {
            onPost();
        }
    }
    QStringList amounts() const {
        std::lock_guard lock(mutex);
        return posted;
    }
    std::function<void()> onPost;  // runs on the posting thread
    mutable std::mutex mutex;
    QStringList posted;
};

QStringList filenames(AssetCollection& collection) {
    QStringList names;
    for (const AssetPtr& asset : collection.assets()) {
        names.append(asset->filename());
    }
    return names;
}

}  // namespace

class AssetCollectionTest : public QObject {
    Q_OBJECT
  private:
    Sandbox dir_;

  private slots:
    // The folder listing's own table ignores case; the scan then keeps only
    // extensions that the image library lists exactly as written.
    void extensions_data() {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<qint64>("kind");
        QTest::addColumn<bool>("imageType");
        QTest::newRow("jpg") << "jpg" << qint64(1) << true;
        QTest::newRow("JPG, as cameras write it") << "JPG" << qint64(1) << true;
        QTest::newRow("Jpg") << "Jpg" << qint64(1) << false;
        QTest::newRow("pcx, our own reader") << "pcx" << qint64(1) << true;
        QTest::newRow("tif is not in the table") << "tif" << qint64(-1) << true;
        QTest::newRow("mp3") << "mp3" << qint64(0) << false;
        QTest::newRow("empty") << "" << qint64(-1) << false;
    }
    void extensions() {
        QFETCH(QString, extension);
        QFETCH(qint64, kind);
        QFETCH(bool, imageType);
        QCOMPARE(AssetCollection::detectFileType(extension), kind);
        QCOMPARE(ImageAsset::fileTypes().contains(extension, Qt::CaseSensitive), imageType);
    }

    void folder_data() {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QStringList>("assets");
        QVERIFY(QDir(dir_.path()).mkdir("sub") && QDir(dir_.path()).mkdir("folder.jpg"));
        for (const char* name :
             {"A.JPG", "b.jpeg", "c.tif", "d.Png", "notes.txt", ".hidden.png", "sub/inner.jpg"}) {
            QVERIFY(!dir_.touch(name).isEmpty());
        }
        // d.Png is listed and counted, but its extension is not an image type as written.
        QTest::newRow("photos") << dir_.path()
                                << QStringList{".hidden.png", "A.JPG", "b.jpeg", "d.Png",
                                               "folder.jpg"}
                                << QStringList{".hidden.png", "A.JPG", "b.jpeg", "folder.jpg"};
        QTest::newRow("missing") << "/nonexistent/stampwise" << QStringList() << QStringList();
        QTest::newRow("a file") << QString::fromUtf8(STAMPWISE_SOURCE_DIR "/CMakeLists.txt")
                                << QStringList() << QStringList();
        QTest::newRow("empty path") << QString() << QStringList() << QStringList();
    }
    void folder() {
        QFETCH(QString, folder);
        QFETCH(QStringList, listed);
        QFETCH(QStringList, assets);
        AssetCollection collection(QUrl::fromLocalFile(folder));
        QStringList found = collection.findAssetFilesInRootURL().replaceInStrings(folder + "/", "");
        found.sort();
        QCOMPARE(found, listed);
        AmountRecorder recorder;
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QCOMPARE(recorder.amounts(), QStringList{QString::number(listed.size())});
        QStringList names = filenames(collection);
        names.sort();
        QCOMPARE(names, assets);
    }

    void scanOfChosenFiles() {
        // The scan opens no file, so the paths need not exist.
        const QStringList files = {"/p/b.jpg",     "/p/a.JPG", "/p/c.gif", "/p/d.Jpg",
                                   "/p/notes.txt", "/p/e.pcx", "/q/a.JPG"};
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setFilesArray(files);
        collection.setIsFile(true);
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
        QCOMPARE(collection.assets().at(2)->thread(), QThread::currentThread());
    }

    void refreshDroppedWhileScanning() {
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setIsFile(true);
        collection.setFilesArray({"/p/1.jpg", "/p/2.jpg", "/p/3.jpg"});
        // Both calls are dropped: from an insertion, and from the amount handler,
        // which has the main thread do the work and waits, as the controller does.
        connect(&collection, &AssetCollection::assetsInserted, this, [&collection] {
            collection.setFilesArray({"/other/x.jpg"});
            collection.startRefresh();
        });
        AmountRecorder recorder;
        recorder.onPost = [&collection] {
            MainThread::perform([&collection] { collection.startRefresh(); }, true);
        };
        collection.startRefresh();
        QTRY_VERIFY(!collection.inRefresh());
        QTest::qWait(50);
        QCOMPARE(recorder.amounts().size(), 1);
        QCOMPARE(filenames(collection), QStringList({"1.jpg", "2.jpg", "3.jpg"}));
        // Once the scan thread has ended a new call scans the source as it is now.
        collection.startRefresh();
        QTRY_COMPARE(recorder.amounts().size(), 2);
        QCOMPARE(filenames(collection).last(), "x.jpg");
    }

    void destroyedMidScan() {
        auto collection = std::make_unique<AssetCollection>(QUrl::fromLocalFile("/unused"));
        collection->setIsFile(true);
        collection->setFilesArray(QStringList(2000, "/p/photo.jpg"));
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
        std::atomic_int stage{0};
        recorder.onPost = [&stage] {
            stage = 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            MainThread::perform([&stage] { stage = 2; }, true);
        };
        collection->startRefresh();
        while (stage == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        collection.reset();  // joins while the observer waits for this thread
        QCOMPARE(stage.load(), 2);
    }

    void listOperations() {
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        auto a = std::make_shared<Asset>(QUrl::fromLocalFile("/x/IMG_1.JPG"));
        auto b = std::make_shared<Asset>(QUrl::fromLocalFile("/y/IMG_1.JPG"));
        collection.setAssets({a, b, a});
        // Found by file name alone, exactly as written; removed by identity, not by path.
        QCOMPARE(collection.assetForFilename("IMG_1.JPG"), a);
        QCOMPARE(collection.assetForFilename("img_1.jpg"), nullptr);
        QSignalSpy removed(&collection, &AssetCollection::assetsRemoved);
        collection.removeAsset(std::make_shared<Asset>(QUrl::fromLocalFile("/x/IMG_1.JPG")));
        collection.removeAsset(b);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(0).value<QList<qsizetype>>(), QList<qsizetype>{1});
    }
};

SW_TEST_CLASS(AssetCollectionTest)
#include "AssetCollectionTest.moc"
