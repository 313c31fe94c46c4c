#include "catalog/AssetCollection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <condition_variable>
#include <mutex>

#include "catalog/ImageAsset.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"

// What the scan thread and the main thread share: the stop request, and the
// signal that a hand-off has run.
struct AssetCollection::ScanShared {
    std::mutex mutex;
    std::condition_variable handedOff;
    bool aborted = false;  // written on the main thread only
    bool finished = false;
    quint64 handOffsDone = 0;
};

namespace {

QString localPath(const QUrl& url) {
    return url.isLocalFile() ? url.toLocalFile() : url.path();
}

}  // namespace

AssetCollection::AssetCollection(const QUrl& rootURL) : rootURL_(rootURL) {}

AssetCollection::~AssetCollection() {
    stopScan();
}

void AssetCollection::setAssets(const QList<AssetPtr>& assets) {
    if (&assets == &assets_) {
        return;
    }
    assets_ = assets;
    emit assetsReset();
}

void AssetCollection::insertObject(const AssetPtr& asset, qsizetype index) {
    assets_.insert(index, asset);
    emit assetsInserted({index});
}

void AssetCollection::removeObjectFromAssetsAtIndex(qsizetype index) {
    assets_.removeAt(index);
    emit assetsRemoved({index});
}

void AssetCollection::addAsset(const AssetPtr& asset) {
    insertObject(asset, assets_.size());
}

void AssetCollection::removeAsset(const AssetPtr& asset) {
    const qsizetype index = assets_.indexOf(asset);
    if (index >= 0) {
        removeObjectFromAssetsAtIndex(index);
    }
}

AssetPtr AssetCollection::assetForFilename(const QString& name) const {
    for (const AssetPtr& asset : assets_) {
        if (asset->filename() == name) {
            return asset;
        }
    }
    return nullptr;
}

qint64 AssetCollection::detectFileType(const QString& extension) {
    static const QStringList photos = {"PNG", "JPEG", "JPG", "TIFF", "BMP", "PCX"};
    static const QStringList others = {"ZIP", "MP3", "WAV"};
    const QString upper = extension.toUpper();
    if (photos.contains(upper)) {
        return 1;
    }
    if (others.contains(upper)) {
        return 0;
    }
    return -1;
}

QStringList AssetCollection::findAssetFiles() const {
    return filesArray_;
}

QStringList AssetCollection::listFolder(const QString& folder) {
    QStringList found;
    if (folder.isEmpty()) {
        return found;
    }
    const QDir dir(folder);
    // Sorted by name so that a folder loads in the same order on every file system.
    const QStringList names = dir.entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        const QString extension = dot >= 0 ? name.mid(dot + 1) : QString();
        if (detectFileType(extension) == 1) {
            found.append(dir.filePath(name));
        }
    }
    return found;
}

QStringList AssetCollection::findAssetFilesInRootURL() const {
    return listFolder(localPath(rootURL_));
}

void AssetCollection::startRefresh() {
    if (inRefresh_.load()) {
        return;
    }
    if (scanThread_.joinable()) {
        scanThread_.join();  // the previous scan has done its last step
    }
    inRefresh_.store(true);
    scanShared_ = std::make_shared<ScanShared>();
    // The scan takes its source now; later changes wait for the next scan.
    scanThread_ = std::thread(&AssetCollection::refreshInBackgroundThread, this, scanShared_,
                              isFile_, filesArray_, localPath(rootURL_));
}

void AssetCollection::refreshInBackgroundThread(AssetCollection* collection,
                                                std::shared_ptr<ScanShared> shared, bool isFile,
                                                QStringList files, QString folder) {
    const QStringList found = isFile ? files : listFolder(folder);
    const QStringList types = ImageAsset::fileTypes();
    QThread* mainThread =
        QCoreApplication::instance() != nullptr ? QCoreApplication::instance()->thread() : nullptr;

    bool aborted = false;
    for (const QString& path : found) {
        const QString extension = QFileInfo(path).suffix();
        if (!types.contains(extension, Qt::CaseSensitive)) {
            continue;
        }
        auto asset = std::make_shared<ImageAsset>(QUrl::fromLocalFile(path));
        if (mainThread != nullptr) {
            asset->moveToThread(mainThread);  // it lives on the main thread from now on
        }
        quint64 ticket = 0;
        {
            std::lock_guard lock(shared->mutex);
            if (shared->aborted) {
                aborted = true;
                break;
            }
            ticket = shared->handOffsDone + 1;
        }
        // A blocking hand-off that gives up when the collection is stopping,
        // so stopScan() never waits for a main thread that is waiting for it.
        MainThread::perform(
            [collection, shared, asset] {
                std::lock_guard lock(shared->mutex);
                if (!shared->aborted) {
                    collection->addAsset(asset);
                }
                ++shared->handOffsDone;
                shared->handedOff.notify_all();
            },
            false);
        std::unique_lock lock(shared->mutex);
        shared->handedOff.wait(lock,
                               [&] { return shared->handOffsDone >= ticket || shared->aborted; });
        if (shared->aborted) {
            aborted = true;
            break;
        }
    }
    if (!aborted) {
        NotificationCenter::defaultCenter().post(
            QString::fromLatin1(NotificationNames::kGotFileAmount), QString::number(found.size()));
    }
    collection->inRefresh_.store(false);
    std::lock_guard lock(shared->mutex);
    if (!shared->aborted) {
        emit collection->refreshEnded();
    }
    shared->finished = true;
    shared->handedOff.notify_all();
}

void AssetCollection::stopScan() {
    if (!scanThread_.joinable()) {
        return;
    }
    const std::shared_ptr<ScanShared> shared = scanShared_;
    {
        std::lock_guard lock(shared->mutex);
        shared->aborted = true;
        shared->handedOff.notify_all();
    }
    QCoreApplication* app = QCoreApplication::instance();
    const bool onMainThread = app != nullptr && QThread::currentThread() == app->thread();
    for (;;) {
        {
            std::unique_lock lock(shared->mutex);
            if (shared->handedOff.wait_for(lock, std::chrono::milliseconds(5),
                                           [&] { return shared->finished; })) {
                break;
            }
        }
        // An observer of "gotFileAmount" may be waiting for the main thread.
        if (onMainThread) {
            QCoreApplication::sendPostedEvents(app, QEvent::MetaCall);
        }
    }
    scanThread_.join();
}
