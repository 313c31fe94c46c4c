// How long the window's event loop waits at most while a stamp run of 100
// 12-megapixel photos goes on beside it on every core (goal: under 100 ms).
#include <unistd.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "app/RunProgress.h"
#include "stamp/StampGeometry.h"
#include "stamp/TextMetrics.h"

namespace {
constexpr int kDistinct = 4;
constexpr int kPhotos = 100;
constexpr qint64 kGoalMs = 100;

// Noise over a gradient: real work for the JPEG decoder.
QImage noisy(quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(4000, 3000, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const quint32 n = random.generate();
            row[x] = qRgb((x / 16 + int(n & 63)) & 255, (y / 12 + int((n >> 8) & 63)) & 255,
                          int((n >> 16) & 255));
        }
    }
    return image;
}
}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("out");
    StampJob job;
    for (int i = 0; i < kDistinct; ++i) {
        const QString first = dir.filePath(QStringLiteral("seed%1.jpg").arg(i));
        noisy(quint32(i) + 1).save(first, "jpeg", 90);
        // Hard links: a hundred names without a hundred files' worth of disk.
        for (int k = i; k < kPhotos; k += kDistinct) {
            const QString name = dir.filePath(QStringLiteral("p%1.jpg").arg(k, 3, 10, QChar('0')));
            if (::link(QFile::encodeName(first).constData(), QFile::encodeName(name).constData()) !=
                0) {
                std::fprintf(stderr, "cannot link %s\n", qPrintable(name));
                return 1;
            }
            job.photos.append(name);
        }
    }
    job.photos.sort();
    job.selectChannel = 2;
    job.customText = QStringLiteral("05-Mar-2014 13:34:56");
    job.font = QFont(QStringLiteral("DejaVu Sans"), 48);
    job.color = Qt::yellow;
    job.labelTextSize = TextMetrics::measureText(job.customText, job.font);
    job.snapshot = StampGeometry::backupPositionAndSize({0, 0, 400, 300}, 0, 0, 120, 20);
    job.outputFolder = dir.filePath("out");

    RunProgress run(job, nullptr);
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longest = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longest = std::max(longest, now - last);
        last = now;
    });
    QEventLoop loop;
    QObject::connect(&run, &RunProgress::finished, &loop, &QEventLoop::quit);
    clock.start();
    tick.start(5);
    run.start();
    loop.exec();
    const double seconds = double(clock.elapsed()) / 1000.0;
    std::printf("Window run, %d photos of 12 MP on every core: %.1f s (%.2f photos/s)\n", kPhotos,
                seconds, kPhotos / seconds);
    std::printf("  longest wait of the event loop: %lld ms (goal: under %lld ms) %s\n",
                static_cast<long long>(longest), static_cast<long long>(kGoalMs),
                longest < kGoalMs ? "ok" : "MISSED");
    return 0;
}
