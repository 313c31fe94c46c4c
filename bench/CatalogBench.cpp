// Thumbnail cost on 12-megapixel camera-like JPEGs written by samplegen:
// with and without an embedded EXIF thumbnail, against a full decode; and the
// peak memory of previewing 500 such photos through the preview pool.
//
// Goals: an embedded-thumbnail preview costs at most 1/20 of a full decode;
// 500 previews stay under 300 MB peak resident memory.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "catalog/ImageAsset.h"
#include "catalog/ImageSource.h"

namespace {

constexpr int kPhotos = 20;
constexpr int kManyPhotos = 500;
constexpr double kMemoryGoalMB = 300;
constexpr double kSpeedGoal = 20;

long vmHwmKB() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').value(0).toLong();
        }
    }
    return -1;
}

QStringList photosIn(const QString& dir) {
    QStringList paths;
    for (const QString& name : QDir(dir).entryList({"*.JPG"}, QDir::Files, QDir::Name)) {
        paths.append(QDir(dir).filePath(name));
    }
    return paths;
}

bool stripThumbnail(const QString& path) {
    try {
        auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        image->readMetadata();
        Exiv2::ExifThumb(image->exifData()).erase();
        image->writeMetadata();
        return true;
    } catch (...) {
        return false;
    }
}

// Milliseconds per photo of fn over every path.
template <typename Fn>
double perPhotoMs(const QStringList& paths, Fn fn) {
    QElapsedTimer timer;
    timer.start();
    for (const QString& path : paths) {
        fn(path);
    }
    return double(timer.nsecsElapsed()) / 1e6 / double(paths.size());
}

// Child process: previews every photo in dir through ImageAsset's pool, as the
// browser would, and prints the peak resident memory in kB.
int measureMemory(const QString& dir) {
    const QStringList paths = photosIn(dir);
    std::vector<std::unique_ptr<ImageAsset>> assets;
    int delivered = 0;
    const long before = vmHwmKB();
    for (const QString& path : paths) {
        assets.push_back(std::make_unique<ImageAsset>(QUrl::fromLocalFile(path)));
        QObject::connect(assets.back().get(), &Asset::previewImageChanged, [&] { ++delivered; });
        assets.back()->requestPreviewImage();
    }
    QElapsedTimer timer;
    timer.start();
    while (delivered < int(paths.size()) && timer.elapsed() < 600000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    std::printf("%d %ld %ld %.0f\n", delivered, before, vmHwmKB(), double(timer.elapsed()));
    return delivered == int(paths.size()) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 3 && args.at(1) == "--memory") {
        return measureMemory(args.at(2));
    }

    QTemporaryDir tmp;
    const QString with = tmp.filePath("with");
    const QString without = tmp.filePath("without");
    const QString many = tmp.filePath("many");
    std::printf("Catalog bench: writing %d photos of 4000x3000 with samplegen...\n", kPhotos);
    std::fflush(stdout);
    if (QProcess::execute(STAMPWISE_SAMPLEGEN, {"--out", with, "--count", QString::number(kPhotos),
                                                "--size", "4000x3000"}) != 0) {
        std::fprintf(stderr, "samplegen failed\n");
        return 1;
    }
    QDir().mkpath(without);
    QDir().mkpath(many);
    for (const QString& path : photosIn(with)) {
        const QString copy = QDir(without).filePath(QFileInfo(path).fileName());
        if (!QFile::copy(path, copy) || !stripThumbnail(copy)) {
            std::fprintf(stderr, "cannot make %s\n", qPrintable(copy));
            return 1;
        }
    }
    // 500 names for each memory run: links to the 20 photos (each is a new asset).
    const QString manyWithout = tmp.filePath("many-without");
    QDir().mkpath(manyWithout);
    for (const auto& [from, to] : {std::pair{with, many}, std::pair{without, manyWithout}}) {
        const QStringList sources = photosIn(from);
        for (int i = 0; i < kManyPhotos; ++i) {
            const QString link =
                QDir(to).filePath(QStringLiteral("P%1.JPG").arg(i, 4, 10, QChar('0')));
            if (!QFile::link(sources.at(i % sources.size()), link)) {
                std::fprintf(stderr, "cannot link %s\n", qPrintable(link));
                return 1;
            }
        }
    }

    const QStringList withPaths = photosIn(with);
    const QStringList withoutPaths = photosIn(without);
    // Warm the file cache so the three runs compare decoding, not the disk.
    perPhotoMs(withPaths, [](const QString& p) { ImageSource(p).pixelSize(); });
    perPhotoMs(withoutPaths, [](const QString& p) { ImageSource(p).pixelSize(); });

    const double embedded = perPhotoMs(withPaths, [](const QString& p) {
        if (ImageSource(p).thumbnail().isNull()) {
            std::fprintf(stderr, "no thumbnail for %s\n", qPrintable(p));
        }
    });
    const double reduced = perPhotoMs(withoutPaths, [](const QString& p) {
        if (ImageSource(p).thumbnail().isNull()) {
            std::fprintf(stderr, "no thumbnail for %s\n", qPrintable(p));
        }
    });
    const double full = perPhotoMs(withPaths, [](const QString& p) {
        if (QImageReader(p).read().isNull()) {
            std::fprintf(stderr, "cannot decode %s\n", qPrintable(p));
        }
    });
    std::printf("  thumbnail from embedded EXIF thumbnail: %8.2f ms/photo\n", embedded);
    std::printf("  thumbnail by reduced decode:            %8.2f ms/photo\n", reduced);
    std::printf("  full decode (QImageReader::read):       %8.2f ms/photo\n", full);
    std::printf("  full / embedded = %.1f (goal >= %.0f): %s\n", full / embedded, kSpeedGoal,
                full / embedded >= kSpeedGoal ? "met" : "MISSED");
    std::fflush(stdout);

    bool memoryMet = true;
    for (const auto& [dir, label] :
         {std::pair{many, "embedded thumbnails"}, std::pair{manyWithout, "reduced decodes"}}) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"--memory", dir});
        child.waitForFinished(-1);
        const QList<QByteArray> fields = child.readAllStandardOutput().trimmed().split(' ');
        if (child.exitCode() != 0 || fields.size() != 4) {
            std::fprintf(stderr, "memory run failed\n");
            return 1;
        }
        const double peakMB = fields.at(2).toDouble() / 1024.0;
        memoryMet = memoryMet && peakMB < kMemoryGoalMB;
        std::printf(
            "  %d previews of %d photos (%s): %.0f ms, peak resident %.1f MB"
            " (at start %.1f MB)\n",
            fields.at(0).toInt(), kManyPhotos, label, fields.at(3).toDouble(), peakMB,
            fields.at(1).toDouble() / 1024.0);
    }
    std::printf("  peak memory goal < %.0f MB: %s\n", kMemoryGoalMB, memoryMet ? "met" : "MISSED");
    return 0;
}
