// Times the per-photo work of a stamp run on 12-megapixel JPEGs against
// `djpeg -bmp`, which does the same decode and BMP write and nothing else.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>

#include "stamp/ImageWriter.h"
#include "stamp/StampGeometry.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;
constexpr int kPhotos = 3;
constexpr int kRepeats = 3;
constexpr double kGoal = 1.5;
const QString kText = QStringLiteral("05-Mar-2014 01:34:56 PM");

// Smooth shading, fine texture and sensor-like noise, so the JPEG decoder has
// camera-like work to do rather than flat blocks.
QImage cameraLike(quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    const double phase = random.generateDouble() * 6.28;
    for (int y = 0; y < kHeight; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const double shade = 0.5 + 0.3 * std::sin(x * 0.0021 + phase) * std::cos(y * 0.0017);
            const double texture = 0.12 * std::sin(x * 0.31 + y * 0.07) * std::sin(y * 0.23);
            const quint32 noise = random.generate();
            auto channel = [&](double tint, int shift) {
                const int n = static_cast<int>((noise >> shift) & 31) - 16;
                return std::clamp(static_cast<int>(255 * (shade * tint + texture)) + n, 0, 255);
            };
            row[x] = qRgb(channel(1.0, 0), channel(0.85, 5), channel(0.7, 10));
        }
    }
    return image;
}

double bestMs(int repeats, const std::function<void()>& work) {
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

// Decode, place, draw and write: one photo of a run. A run that keeps its
// pixel buffer from photo to photo (reader.read into the same QImage) saves the
// first-touch page faults of a fresh 48 MB buffer, about half of the decode.
bool stampOne(const QString& in, const QString& out, const QFont& font,
              const StampGeometry::Snapshot& snapshot, const QSizeF& label, QImage& buffer) {
    QImageReader reader(in);
    QImage photo = std::move(buffer);
    if (!reader.read(&photo)) {
        return false;
    }
    const float w = static_cast<float>(photo.width());
    const float h = static_cast<float>(photo.height());
    const StampGeometry::TPosition at = StampGeometry::calculateOutputPosition(
        snapshot, StampGeometry::outputArea(w, h, true), static_cast<float>(label.width()),
        static_cast<float>(label.height()));
    buffer = StampPainter::drawStamp(std::move(photo), kText, font, Qt::yellow, at);
    return ImageWriter::saveImage(buffer, w, h, out);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    const QString djpeg = QStandardPaths::findExecutable(QStringLiteral("djpeg"));
    QTemporaryDir dir;
    if (!dir.isValid()) {
        std::fprintf(stderr, "no temporary folder\n");
        return 1;
    }

    std::printf("generating %d photos of %dx%d (JPEG quality 90)...\n", kPhotos, kWidth, kHeight);
    QStringList photos;
    for (int i = 0; i < kPhotos; ++i) {
        const QString path =
            dir.filePath(QStringLiteral("IMG_%1.JPG").arg(i + 1, 4, 10, QChar('0')));
        QImageWriter writer(path, "jpeg");
        writer.setQuality(90);
        if (!writer.write(cameraLike(static_cast<quint32>(i + 1)))) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return 1;
        }
        photos << path;
    }

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(96);
    const QSizeF label = TextMetrics::measureText(kText, font);
    // A label in the lower-right quarter of a 1000x750 preview.
    const StampGeometry::Snapshot snapshot = StampGeometry::backupPositionAndSize(
        StampGeometry::outputArea(1000, 750, true), 600, 100, 240, 24);

    std::printf("\nbest of %d, milliseconds\n", kRepeats);
    std::printf("%-14s %8s %8s %8s %8s %8s %10s %8s\n", "photo", "decode", "draw", "write", "total",
                "kept", "djpeg-bmp", "ratio");
    double sumTotal = 0;
    double sumKept = 0;
    double sumDjpeg = 0;
    bool ok = true;
    for (const QString& in : photos) {
        const QString name = QFileInfo(in).fileName();
        const QString out = dir.filePath(QStringLiteral("out-") + name);
        QImage decoded;
        const double decode = bestMs(kRepeats, [&] { decoded = QImage(in); });
        double draw = std::numeric_limits<double>::max();
        QImage drawn;
        for (int i = 0; i < kRepeats; ++i) {
            QImage copy = decoded.copy();  // deep copy outside the timer
            QElapsedTimer timer;
            timer.start();
            drawn = StampPainter::drawStamp(std::move(copy), kText, font, Qt::yellow, {400, 80});
            draw = std::min(draw, timer.nsecsElapsed() / 1e6);
        }
        const double write = bestMs(
            kRepeats, [&] { ok = ImageWriter::saveImage(drawn, kWidth, kHeight, out) && ok; });
        const double total = bestMs(kRepeats, [&] {
            QImage fresh;
            ok = stampOne(in, out, font, snapshot, label, fresh) && ok;
        });
        QImage kept;
        const double keptTotal =
            bestMs(kRepeats, [&] { ok = stampOne(in, out, font, snapshot, label, kept) && ok; });
        double baseline = std::nan("");
        if (!djpeg.isEmpty()) {
            baseline = bestMs(kRepeats, [&] {
                const int code =
                    QProcess::execute(djpeg, {"-bmp", "-outfile", dir.filePath("djpeg.bmp"), in});
                ok = code == 0 && ok;
            });
        }
        sumTotal += total;
        sumKept += keptTotal;
        sumDjpeg += baseline;
        std::printf("%-14s %8.1f %8.1f %8.1f %8.1f %8.1f %10.1f %8.2f\n", qPrintable(name), decode,
                    draw, write, total, keptTotal, baseline, total / baseline);
    }
    const double ratio = sumTotal / sumDjpeg;
    std::printf("\ndecode+draw+write / djpeg -bmp: %.2f (goal %.1f or less)%s\n", ratio, kGoal,
                djpeg.isEmpty() ? " - djpeg not found (package libjpeg-turbo-progs)" : "");
    std::printf("the same with the pixel buffer kept between photos: %.2f\n", sumKept / sumDjpeg);
    if (!ok) {
        std::fprintf(stderr, "a step failed\n");
        return 1;
    }
    return 0;
}
