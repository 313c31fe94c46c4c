#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <atomic>
#include <mutex>
#include <thread>

#include "TestRegistry.h"
#include "catalog/AssetCollection.h"
#include "common/Sandbox.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"

namespace {

// Records every "gotFileAmount" posted while it lives (from any thread).
struct AmountRecorder : QObject {
    AmountRecorder() {
        NotificationCenter::defaultCenter().addObserver(
            this, NotificationNames::kGotFileAmount, [this](const Notification& n) { record(n); });
    }
    ~AmountRecorder() override { NotificationCenter::defaultCenter().removeObserver(this); }
    void record(const Notification& n) {
        {
            std::lock_guard lock(mutex);
            posted.append(n.object.toString());
        }
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

// What one scan of a folder makes of each kind of entry: the folder's photo
// table ignores letter case, the image types then take lower or upper case only.
// Entries are not tested for being files.
struct FolderEntries {
    qint64 kind;  // detectFileType of the extension
    bool listed;
    bool added;
    const char* names;
};
constexpr FolderEntries kFolder[] = {
    {1, true, true, "a.png b.jpeg c.jpg d.tiff e.bmp f.pcx A.PNG .hidden.png folder.jpg"},
    {1, true, false, "g.Jpg"},
    {1, false, false, "sub/inner.jpg"},
    {-1, false, false, "h.tif i.gif notes"},
    {0, false, false, "j.zip k.MP3 l.wav"},
};

class AssetCollectionTest : public QObject {
    Q_OBJECT
  private:
    Sandbox dir_;
    std::unique_ptr<AssetCollection> folder_;
    QStringList listed_;
    QStringList amounts_;

  private slots:
    void initTestCase() {
        QVERIFY(!dir_.mkdir("sub").isEmpty() && !dir_.mkdir("folder.jpg").isEmpty());
        for (const FolderEntries& entries : kFolder) {
            for (const QString& name : QString(entries.names).split(' ')) {
                QVERIFY(QFileInfo::exists(dir_.path(name)) || !dir_.touch(name).isEmpty());
            }
        }
        folder_ = std::make_unique<AssetCollection>(QUrl::fromLocalFile(dir_.path()));
        listed_ = folder_->findAssetFilesInRootURL().replaceInStrings(dir_.path() + "/", "");
        AmountRecorder recorder;
        folder_->startRefresh();
        QTRY_VERIFY(!folder_->inRefresh());
        amounts_ = recorder.amounts();
    }

    void folderEntry_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("kind");
        QTest::addColumn<bool>("listed");
        QTest::addColumn<bool>("added");
        for (const FolderEntries& e : kFolder) {
            for (const QString& name : QString(e.names).split(' ')) {
                QTest::newRow(qPrintable(name)) << name << e.kind << e.listed << e.added;
            }
        }
    }
    void folderEntry() {
        QFETCH(QString, name);
        QFETCH(bool, added);
        QTEST(AssetCollection::detectFileType(QFileInfo(name).suffix()), "kind");
        QTEST(listed_.contains(name), "listed");
        QCOMPARE(filenames(*folder_).contains(name), added);
    }

    // Every listed path counts, also those that gave no asset.
    void folderAmount() { QCOMPARE(amounts_, QStringList{QString::number(listed_.size())}); }

    // Calls to refresh during a scan are dropped: from an insertion, and from the
    // amount handler, which has the main thread do the work and waits, as the
    // controller does.
    void scanOfChosenFiles() {
        // The scan opens no file, so the paths need not exist.
        AssetCollection collection(QUrl::fromLocalFile("/unused"));
        collection.setFilesArray({"/p/b.jpg", "/p/a.JPG", "/p/c.gif", "/p/d.Jpg", "/p/notes.txt",
                                  "/p/e.pcx", "/q/a.JPG"});
        collection.setIsFile(true);
        QSignalSpy inserted(&collection, &AssetCollection::assetsInserted);
        connect(&collection, &AssetCollection::assetsInserted, this, [&collection] {
            collection.setFilesArray({"/other/x.jpg"});
            collection.startRefresh();
        });
        AmountRecorder recorder;
        recorder.onPost = [&collection] {
            MainThread::perform([&collection] { collection.startRefresh(); }, true);
        };
        collection.startRefresh();
        QVERIFY(collection.inRefresh());
        QTRY_VERIFY(!collection.inRefresh());
        QTest::qWait(50);
        QCOMPARE(filenames(collection), QStringList({"b.jpg", "a.JPG", "c.gif", "e.pcx", "a.JPG"}));
        QCOMPARE(inserted.at(3).at(0).value<QList<qsizetype>>(), QList<qsizetype>{3});
        QCOMPARE(recorder.amounts(), QStringList{"7"});
        QCOMPARE(collection.assets().at(2)->thread(), QThread::currentThread());
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
        QCOMPARE(removed.at(0).at(0).value<QList<qsizetype>>(), QList<qsizetype>{1});
    }
};

SW_TEST_CLASS(AssetCollectionTest)
#include "AssetCollectionTest.moc"
