#pragma once

#include <QPointer>
#include <QSize>
#include <QSizeF>
#include <atomic>
#include <memory>
#include <mutex>

#include "catalog/Asset.h"
#include "catalog/ImageSource.h"

class QThreadPool;

// An asset read through the image readers: pixel size, EXIF dates, stated
// resolution and a thumbnail made on a bounded pool of worker threads.
class ImageAsset : public Asset {
    Q_OBJECT
  public:
    explicit ImageAsset(const QUrl& url);
    ~ImageAsset() override;

    // Every extension the image readers accept, in lower and in upper case.
    static QStringList fileTypes();

    // Opens the image source; false when the file is not a readable image yet.
    // A source that opened is kept and shared; after a failure the next call
    // tries again, since the file may still be arriving. Safe from any thread.
    bool createImageSource();
    bool loadMetadata() override;
    bool loadPreviewImage() override;
    void requestPreviewImage() override;

    // First image's size in pixels; 0 when unknown.
    qint64 pixelsWide();
    qint64 pixelsHigh();

    // What the stamp run needs of each photo: the widest and the highest of
    // all its pages (each taken separately), and the EXIF dates of its last page.
    QSize maxPagePixelSize();
    std::optional<QString> lastPageDateTimeOriginal();
    std::optional<QString> lastPageDateTimeDigitized();
    // First image's size at its stated resolution (72 dpi when none is stated).
    QSizeF pointSize();
    double dpiX();
    double dpiY();

    // The opened source, or null until createImageSource() has succeeded;
    // shared so that a preview worker can keep using it if the asset goes away.
    std::shared_ptr<ImageSource> imageSource() const;

    // Waits for the preview workers and drops work not yet started. Runs at
    // application exit; with reopen, later requests start a new pool.
    static void shutDownPreviewPool(bool reopen = true);
    static QThreadPool* previewPool();

  private:
    // Holds the source once it opened; shared with preview workers, which may
    // outlive the asset.
    struct SourceSlot {
        std::mutex mutex;
        std::shared_ptr<ImageSource> source;
        // The kept source, else a new attempt on path; null when unreadable.
        std::shared_ptr<ImageSource> open(const QString& path);
    };

    static void deliverPreview(QPointer<ImageAsset> asset, const QImage& image);
    QString localPath() const;
    std::shared_ptr<ImageSource> openSource() { return slot_->open(localPath()); }

    const std::shared_ptr<SourceSlot> slot_ = std::make_shared<SourceSlot>();
    // Cleared when the asset goes away so queued preview work can be skipped.
    std::shared_ptr<std::atomic_bool> alive_ = std::make_shared<std::atomic_bool>(true);
    // Set while a preview request waits in the pool (main thread only).
    bool previewInFlight_ = false;
    quint64 inFlightGeneration_ = 0;
};
