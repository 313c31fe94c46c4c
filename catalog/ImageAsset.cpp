#include "catalog/ImageAsset.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QPointer>
#include <QThread>
#include <QThreadPool>
#include <atomic>

#include "catalog/PcxFormat.h"
#include "platform/MainThread.h"

namespace {

std::atomic_bool previewPoolClosed{false};
// Counts pool shutdowns: a request made before one may never have run.
std::atomic<quint64> poolGeneration{0};
QThreadPool* thePool = nullptr;
std::mutex poolMutex;

void closePoolAtExit() {
    ImageAsset::shutDownPreviewPool(false);
}

}  // namespace

ImageAsset::ImageAsset(const QUrl& url) : Asset(url) {}

ImageAsset::~ImageAsset() {
    alive_->store(false);
}

QStringList ImageAsset::fileTypes() {
    static const QStringList types = [] {
        PcxFormat::registerFormat();
        QStringList list;
        for (const QByteArray& format : QImageReader::supportedImageFormats()) {
            const QString lower = QString::fromLatin1(format).toLower();
            list << lower << lower.toUpper();
        }
        list.removeDuplicates();
        return list;
    }();
    return types;
}

std::shared_ptr<ImageSource> ImageAsset::SourceSlot::open(const QString& path) {
    // Held while opening, so that threads asking at once share one open.
    std::lock_guard lock(mutex);
    if (!source) {
        auto attempt = std::make_shared<ImageSource>(path);
        if (attempt->isReadable()) {
            source = std::move(attempt);
        }
    }
    return source;
}

QString ImageAsset::localPath() const {
    return url().isLocalFile() ? fullFilename() : QString();
}

bool ImageAsset::createImageSource() {
    return openSource() != nullptr;
}

std::shared_ptr<ImageSource> ImageAsset::imageSource() const {
    std::lock_guard lock(slot_->mutex);
    return slot_->source;
}

bool ImageAsset::loadMetadata() {
    const std::shared_ptr<ImageSource> source = openSource();
    if (!source) {
        return false;
    }
    source->dpiX();  // reads the metadata once
    return true;
}

qint64 ImageAsset::pixelsWide() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->pixelSize().width() : 0;
}

qint64 ImageAsset::pixelsHigh() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->pixelSize().height() : 0;
}

QSize ImageAsset::maxPagePixelSize() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->maxPageSize() : QSize(0, 0);
}

std::optional<QString> ImageAsset::lastPageDateTimeOriginal() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->lastPageDateTimeOriginal() : std::nullopt;
}

std::optional<QString> ImageAsset::lastPageDateTimeDigitized() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->lastPageDateTimeDigitized() : std::nullopt;
}

QSizeF ImageAsset::pointSize() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->pointSize() : QSizeF();
}

double ImageAsset::dpiX() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->dpiX() : ImageSource::kDefaultDpi;
}

double ImageAsset::dpiY() {
    const std::shared_ptr<ImageSource> source = openSource();
    return source ? source->dpiY() : ImageSource::kDefaultDpi;
}

bool ImageAsset::loadPreviewImage() {
    const std::shared_ptr<ImageSource> source = openSource();
    if (!source) {
        return false;
    }
    const QImage image = source->thumbnail();
    deliverPreview(QPointer<ImageAsset>(this), image);
    return !image.isNull();
}

void ImageAsset::deliverPreview(QPointer<ImageAsset> asset, const QImage& image) {
    MainThread::perform(
        [asset, image] {
            if (previewPoolClosed.load() || asset.isNull()) {
                return;
            }
            asset->previewInFlight_ = false;
            asset->setPreviewImage(image);
        },
        false);
}

void ImageAsset::requestPreviewImage() {
    const bool inFlight = previewInFlight_ && inFlightGeneration_ == poolGeneration.load();
    if (!previewImage().isNull() || inFlight || previewPoolClosed.load()) {
        return;
    }
    QThreadPool* pool = previewPool();
    if (pool == nullptr) {
        return;
    }
    previewInFlight_ = true;
    inFlightGeneration_ = poolGeneration.load();
    // Opened by the worker: probing the file is I/O, kept off the main thread.
    const std::shared_ptr<SourceSlot> slot = slot_;
    const std::shared_ptr<std::atomic_bool> alive = alive_;
    const QPointer<ImageAsset> self(this);
    pool->start([slot, path = localPath(), alive, self] {
        if (!alive->load() || previewPoolClosed.load()) {
            return;
        }
        const std::shared_ptr<ImageSource> source = slot->open(path);
        deliverPreview(self, source ? source->thumbnail() : QImage());
    });
}

QThreadPool* ImageAsset::previewPool() {
    std::lock_guard lock(poolMutex);
    if (thePool == nullptr && !previewPoolClosed.load()) {
        thePool = new QThreadPool;
        // Decoding is I/O and CPU bound; a few threads keep the machine responsive.
        thePool->setMaxThreadCount(std::clamp(QThread::idealThreadCount(), 2, 4));
        thePool->setExpiryTimeout(5000);
        qAddPostRoutine(closePoolAtExit);
    }
    return thePool;
}

void ImageAsset::shutDownPreviewPool(bool reopen) {
    QThreadPool* pool = nullptr;
    {
        std::lock_guard lock(poolMutex);
        previewPoolClosed.store(true);
        ++poolGeneration;
        pool = std::exchange(thePool, nullptr);
    }
    if (pool != nullptr) {
        pool->clear();
        pool->waitForDone();
        delete pool;
    }
    if (reopen) {
        previewPoolClosed.store(false);
    }
}
