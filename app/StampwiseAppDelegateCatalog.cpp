#include <QFileInfo>

#include "app/Messages.h"
#include "app/StampwiseAppDelegate.h"
#include "platform/AlertPanel.h"
#include "platform/ButtonTitles.h"
#include "platform/OpenPanel.h"
#include "platform/OpenPanelRequest.h"

using namespace ControlRegistry;

namespace {
constexpr const char* kDefaultSortKey = "filename";
}  // namespace

void StampwiseAppDelegate::setAssetCollection(std::unique_ptr<AssetCollection> collection) {
    // The browser lets go of the old catalog before it goes.
    if (assetCollectionView_) {
        assetCollectionView_->setAssetCollection(nullptr);
    }
    assetCollection_ = std::move(collection);
    if (assetCollection_) {
        watchCatalog(*assetCollection_);
    }
    if (assetCollectionView_) {
        assetCollectionView_->setAssetCollection(assetCollection_.get());
    }
}

void StampwiseAppDelegate::openBrowserWindowFile() {
    const std::optional<QStringList> chosen = openPanel_.run({true, false, true});
    if (chosen) {
        openFile(*chosen);
    }
}

void StampwiseAppDelegate::openBrowserWindowDirectory() {
    const std::optional<QStringList> chosen = openPanel_.run({false, true, false});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    state_.catalog.isLoadDirectory = true;
    openDirectory(chosen->first());
}

bool StampwiseAppDelegate::openFile(QStringList paths) {
    for (qsizetype i = paths.size() - 1; i >= 0; --i) {
        const QFileInfo info(paths.at(i));
        if (!info.exists() || info.isDir()) {
            paths.removeAt(i);
        }
    }
    if (paths.isEmpty()) {
        alerts_.inform(QString(), QLatin1String(Messages::kCantLoadFile),
                       QLatin1String(ButtonTitles::kOK));
        return false;
    }
    newInitAssetWindowFiles(paths);
    return true;
}

bool StampwiseAppDelegate::openDirectory(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && info.isDir()) {
        newInitAssetWindow(path);
        return true;
    }
    const QString why =
        QString::fromLatin1(info.exists() ? Messages::kNotADirectory : Messages::kPathDoesNotExist)
            .arg(path);
    alerts_.inform(QString(), QLatin1String(Messages::kCantBrowsePath),
                   QLatin1String(ButtonTitles::kOK), why);
    return false;
}

AssetCollection& StampwiseAppDelegate::catalogFor(const QUrl& rootURL) {
    state_.catalog.sortKey = QLatin1String(kDefaultSortKey);
    state_.catalog.sortsAscending = true;
    if (!assetCollection_) {
        setAssetCollection(std::make_unique<AssetCollection>(rootURL));
    }
    return *assetCollection_;
}

void StampwiseAppDelegate::newInitAssetWindowFiles(const QStringList& paths) {
    AssetCollection& catalog = catalogFor(QUrl::fromLocalFile(QString()));
    catalog.setFilesArray(paths);
    catalog.setIsFile(true);
    updateSortDescriptors();
    catalog.startRefresh();
}

void StampwiseAppDelegate::newInitAssetWindow(const QString& folder) {
    AssetCollection& catalog = catalogFor(QUrl::fromLocalFile(folder));
    catalog.setRootURL(QUrl::fromLocalFile(folder));
    catalog.setIsFile(false);
    updateSortDescriptors();
    catalog.startRefresh();
}

void StampwiseAppDelegate::openSaveWindow() {
    const std::optional<QStringList> chosen = openPanel_.run({false, true, false});
    if (chosen && !chosen->isEmpty()) {
        setControlText(Tag::kOutputFolderField, chosen->first());
    }
}

void StampwiseAppDelegate::refresh() {
    if (assetCollection_) {
        assetCollection_->startRefresh();
    }
}

// Hides the preview and the label once the model photo has left the catalog.
void StampwiseAppDelegate::clearModelPhoto() {
    if (slideshowView_) {
        slideshowView_->clearImage();
    }
    if (aQNSDragView_) {
        aQNSDragView_->hide();
    }
    state_.model.hasImage = false;
}

void StampwiseAppDelegate::removeSelectedImage() {
    bool shownPhotoRemoved = false;
    QStringList removed;  // positions, last first
    if (assetCollection_) {
        QList<AssetPtr>& assets = assetCollection_->assets();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            if (!assets.at(i)->includedInSlideshow()) {
                continue;
            }
            shownPhotoRemoved =
                shownPhotoRemoved || assets.at(i)->fullFilename() == state_.model.selectImageFile;
            assets.removeAt(i);
            removed.append(QString::number(i));
        }
    }
    if (assetCollectionView_) {
        assetCollectionView_->reloadRemovedData(removed);
    }
    resizeAssetCollectionView();
    if (assetCollectionView_) {
        const int width = assetCollectionView_->width();
        const qsizetype left = assetCollection_ ? assetCollection_->assets().size() : 0;
        const double visible = aNSScrollView_ ? aNSScrollView_->height() : 0.0;
        assetCollectionView_->resize(
            width, static_cast<int>(PreviewLayout::heightAfterRemoval(width, left, visible)));
        if (PreviewLayout::rebuildsAfterRemoval(removed.size(), width)) {
            assetCollectionView_->reloadData();
        }
    }
    redrawAmountInfo();
    if (shownPhotoRemoved) {
        clearModelPhoto();
    }
}

void StampwiseAppDelegate::removeTickedAndUpdateState() {
    removeSelectedImage();
    if (!assetCollection_ || assetCollection_->assets().isEmpty()) {
        setToolbarStatus(false);
    }
}

void StampwiseAppDelegate::removeAllImage() {
    if (assetCollection_) {
        QList<AssetPtr>& assets = assetCollection_->assets();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            assets.removeAt(i);
        }
    }
    if (assetCollectionView_ && aNSScrollView_) {
        assetCollectionView_->setGeometry(QRect(QPoint(0, 0), aNSScrollView_->size()));
    }
    if (assetCollectionView_) {
        assetCollectionView_->reloadData();
    }
    redrawAmountInfo();
    clearModelPhoto();
}

void StampwiseAppDelegate::selectAllImage() {
    if (assetCollection_) {
        for (const AssetPtr& asset : assetCollection_->assets()) {
            asset->setIncludedInSlideshow(true);
        }
    }
    if (assetCollectionView_) {
        assetCollectionView_->selectAllNodes();
    }
    redrawAmountInfo();
}

void StampwiseAppDelegate::deSelectAllImage() {
    if (assetCollection_) {
        for (const AssetPtr& asset : assetCollection_->assets()) {
            asset->setIncludedInSlideshow(false);
        }
    }
    if (assetCollectionView_) {
        assetCollectionView_->deselectAllNodes();
    }
    redrawAmountInfo();
}

void StampwiseAppDelegate::setSortKey(const QString& key) {
    if (key == state_.catalog.sortKey) {
        return;
    }
    state_.catalog.sortKey = key;
    updateSortDescriptors();
}

void StampwiseAppDelegate::setSortsAscending(bool ascending) {
    if (ascending == state_.catalog.sortsAscending) {
        return;
    }
    state_.catalog.sortsAscending = ascending;
    updateSortDescriptors();
}

void StampwiseAppDelegate::updateSortDescriptors() {
    if (assetCollectionView_) {
        assetCollectionView_->setSortDescriptors({AssetSort::SortRule{
            AssetSort::keyPathFor(state_.catalog.sortKey), state_.catalog.sortsAscending}});
    }
}
