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

bool ImageAsset::createImageSource() {
    std::call_once(sourceOnce_, [this] {
        const QString path = url().isLocalFile() ? fullFilename() : QString();
        imageSource_ = std::make_shared<ImageSource>(path);
    });
    return !imageSource_->path().isEmpty() && imageSource_->isReadable();
}

std::shared_ptr<ImageSource> ImageAsset::imageSource() const {
    // Only read after the once-flag has run, so no lock is needed.
    return imageSource_;
}

bool ImageAsset::loadMetadata() {
    if (!createImageSource()) {
        return false;
    }
    imageSource_->dpiX();  // reads the metadata once
    return true;
}

qint64 ImageAsset::pixelsWide() {
    return createImageSource() ? imageSource_->pixelSize().width() : 0;
}

qint64 ImageAsset::pixelsHigh() {
    return createImageSource() ? imageSource_->pixelSize().height() : 0;
}

QSize ImageAsset::maxPagePixelSize() {
    return createImageSource() ? imageSource_->maxPageSize() : QSize(0, 0);
}

std::optional<QString> ImageAsset::lastPageDateTimeOriginal() {
    return createImageSource() ? imageSource_->lastPageDateTimeOriginal() : std::nullopt;
}

std::optional<QString> ImageAsset::lastPageDateTimeDigitized() {
    return createImageSource() ? imageSource_->lastPageDateTimeDigitized() : std::nullopt;
}

QSizeF ImageAsset::pointSize() {
    return createImageSource() ? imageSource_->pointSize() : QSizeF();
}

double ImageAsset::dpiX() {
    return createImageSource() ? imageSource_->dpiX() : ImageSource::kDefaultDpi;
}

double ImageAsset::dpiY() {
    return createImageSource() ? imageSource_->dpiY() : ImageSource::kDefaultDpi;
}

bool ImageAsset::loadPreviewImage() {
    if (!createImageSource()) {
        return false;
    }
    const QImage image = imageSource_->thumbnail();
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
    createImageSource();
    const std::shared_ptr<ImageSource> source = imageSource_;
    const std::shared_ptr<std::atomic_bool> alive = alive_;
    const QPointer<ImageAsset> self(this);
    pool->start([source, alive, self] {
        if (!alive->load() || previewPoolClosed.load()) {
            return;
        }
        deliverPreview(self, source->isReadable() ? source->thumbnail() : QImage());
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
