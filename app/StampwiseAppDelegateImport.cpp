#include <QFileInfo>
#include <QTimer>

#include "app/StampwiseAppDelegate.h"

namespace {
constexpr const char* kAppTitle = "Stampwise";
constexpr const char* kTitleOnePhoto = "Stampwise — 1 photo, %1 ticked";
constexpr const char* kTitlePhotos = "Stampwise — %1 photos, %2 ticked";
// Counters and title are redrawn at most this often while photos arrive.
constexpr int kAmountInfoIntervalMs = 100;
}  // namespace

void StampwiseAppDelegate::connectImports(MainWindow* window) {
    // Queued: the drop finishes before an alert can hold up the file manager.
    connect(window, &MainWindow::pathsDropped, this, &StampwiseAppDelegate::importPaths,
            Qt::QueuedConnection);
}

// Runs of files become one Add Files import and each folder an Add Folder
// import, in the order given. A scan takes one source at a time, so each
// waits for the scan before it; a path that is no folder counts as a file,
// so missing paths meet Add Files' checks.
void StampwiseAppDelegate::importPaths(const QStringList& paths) {
    for (const QString& path : paths) {
        const QFileInfo info(path);
        const QString absolute = info.absoluteFilePath();
        const bool folder = info.isDir();
        if (!folder && !pendingImports_.isEmpty() && !pendingImports_.last().folder) {
            pendingImports_.last().paths.append(absolute);
        } else {
            pendingImports_.append({folder, {absolute}});
        }
    }
    runPendingImports();
}

void StampwiseAppDelegate::runPendingImports() {
    while (!pendingImports_.isEmpty() && !(assetCollection_ && assetCollection_->inRefresh())) {
        const PendingImport next = pendingImports_.takeFirst();
        if (next.folder) {
            state_.catalog.isLoadDirectory = true;
            openDirectory(next.paths.first());
        } else {
            openFile(next.paths);
        }
    }
}

void StampwiseAppDelegate::watchCatalog(AssetCollection& catalog) {
    connect(&catalog, &AssetCollection::assetsInserted, this,
            &StampwiseAppDelegate::scheduleAmountInfo);
    connect(&catalog, &AssetCollection::assetsRemoved, this,
            &StampwiseAppDelegate::scheduleAmountInfo);
    connect(&catalog, &AssetCollection::assetsReset, this,
            &StampwiseAppDelegate::scheduleAmountInfo);
    connect(&catalog, &AssetCollection::refreshEnded, this,
            &StampwiseAppDelegate::runPendingImports);
}

// One redraw for however many photos arrive within the interval.
void StampwiseAppDelegate::scheduleAmountInfo() {
    if (amountTimer_ == nullptr) {
        amountTimer_ = new QTimer(this);
        amountTimer_->setSingleShot(true);
        amountTimer_->setInterval(kAmountInfoIntervalMs);
        connect(amountTimer_, &QTimer::timeout, this, &StampwiseAppDelegate::redrawAmountInfo);
    }
    if (!amountTimer_->isActive()) {
        amountTimer_->start();
    }
}

void StampwiseAppDelegate::updateWindowTitle() {
    if (!window_) {
        return;
    }
    const qint64 total = state_.catalog.totalAmount;
    const qint64 ticked = state_.catalog.totalSelectedAmount;
    if (total == 0) {
        window_->setWindowTitle(QString::fromUtf8(kAppTitle));
    } else if (total == 1) {
        window_->setWindowTitle(QString::fromUtf8(kTitleOnePhoto).arg(ticked));
    } else {
        window_->setWindowTitle(QString::fromUtf8(kTitlePhotos).arg(total).arg(ticked));
    }
}
