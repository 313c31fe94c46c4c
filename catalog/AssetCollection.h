#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <atomic>
#include <memory>
#include <thread>

#include "catalog/Asset.h"

using AssetPtr = std::shared_ptr<Asset>;

// The ordered catalog of loaded photos, in the order they were added.
class AssetCollection : public QObject {
    Q_OBJECT
  public:
    explicit AssetCollection(const QUrl& rootURL);  // initWithRootURL
    // Stops a running scan first (see stopScan()).
    ~AssetCollection() override;

    QUrl rootURL() const { return rootURL_; }
    void setRootURL(const QUrl& url) { rootURL_ = url; }
    QStringList filesArray() const { return filesArray_; }
    void setFilesArray(const QStringList& files) { filesArray_ = files; }
    bool isFile() const { return isFile_; }
    void setIsFile(bool isFile) { isFile_ = isFile; }
    // True from startRefresh() until the scan thread's last step.
    bool inRefresh() const { return inRefresh_.load(); }

    // The catalog's own list; callers that change it directly bypass the
    // change signals and must rebuild the browser themselves.
    QList<AssetPtr>& assets() { return assets_; }
    // Replaces the whole list (observers see a reset) unless it is the same list.
    void setAssets(const QList<AssetPtr>& assets);

    void insertObject(const AssetPtr& asset, qsizetype index);
    void removeObjectFromAssetsAtIndex(qsizetype index);
    void addAsset(const AssetPtr& asset);
    // Removes the asset (found by identity) if it is in the list.
    void removeAsset(const AssetPtr& asset);
    // The first asset whose file name (last path component) equals name exactly.
    AssetPtr assetForFilename(const QString& name) const;

    // 1 photo, 0 a known other kind, -1 unknown; by extension, any letter case.
    static qint64 detectFileType(const QString& extension);
    // A copy of filesArray.
    QStringList findAssetFiles() const;
    // Photo-named entries directly inside rootURL's folder (hidden ones
    // included, subfolders not entered, entries not tested for being files).
    QStringList findAssetFilesInRootURL() const;

    // Starts a scan of the current source on a worker thread unless one runs.
    void startRefresh();
    // Asks a running scan to stop and waits for its thread; no more assets
    // arrive and "gotFileAmount" is not posted for it. Main thread only.
    void stopScan();

  signals:
    void assetsInserted(const QList<qsizetype>& indexes);
    void assetsRemoved(const QList<qsizetype>& indexes);
    void assetsReset();
    // A scan has ended and a new one may start; sent from the scan thread after
    // its last step, so receivers on the main thread get it queued. Not sent
    // for a scan that stopScan() ended.
    void refreshEnded();

  private:
    struct ScanShared;
    static QStringList listFolder(const QString& folder);
    static void refreshInBackgroundThread(AssetCollection* collection,
                                          std::shared_ptr<ScanShared> shared, bool isFile,
                                          QStringList files, QString folder);

    QUrl rootURL_;
    QList<AssetPtr> assets_;
    std::atomic_bool inRefresh_{false};
    QStringList filesArray_;
    bool isFile_ = false;

    std::thread scanThread_;
    std::shared_ptr<ScanShared> scanShared_;
};
