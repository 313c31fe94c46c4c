// Writes JPEG photos with camera-like content and metadata for trying the
// program and for the benchmarks: noise and texture (so encoders and decoders
// work as on real photos), EXIF DateTimeOriginal/DateTimeDigitized, a stated
// resolution (JFIF and EXIF) and, unless told otherwise, an EXIF thumbnail.
//
//   samplegen --out DIR [--count N] [--size WxH] [--dpi N] [--no-thumbnail]
//             [--prefix NAME] [--first N]
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QRandomGenerator>
#include <cmath>
#include <cstdio>

#include "tools/ExifJpegWriter.h"

namespace {

// Sky-to-ground gradient, a few soft blobs, fine sinusoidal texture and
// per-pixel sensor noise; the seed varies everything from photo to photo.
QImage makePhoto(QSize size, quint32 seed) {
    QRandomGenerator rng(seed);
    QImage image(size, QImage::Format_RGB32);
    const double fx = 0.02 + rng.generateDouble() * 0.05;
    const double fy = 0.015 + rng.generateDouble() * 0.05;
    const double phase = rng.generateDouble() * 6.28;
    struct Blob {
        double x, y, r;
        int red, green, blue;
    };
    std::vector<Blob> blobs;
    for (int i = 0; i < 6; ++i) {
        blobs.push_back({rng.generateDouble() * size.width(), rng.generateDouble() * size.height(),
                         (0.05 + rng.generateDouble() * 0.2) * size.width(), rng.bounded(256),
                         rng.bounded(256), rng.bounded(256)});
    }
    quint32 noise = seed * 2654435761u + 1;
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double t = double(y) / size.height();
        for (int x = 0; x < size.width(); ++x) {
            double r = 90 + 100 * (1 - t), g = 120 + 60 * (1 - t), b = 200 - 120 * t;
            for (const Blob& blob : blobs) {
                const double dx = x - blob.x, dy = y - blob.y;
                const double w = std::exp(-(dx * dx + dy * dy) / (blob.r * blob.r));
                r += (blob.red - r) * w;
                g += (blob.green - g) * w;
                b += (blob.blue - b) * w;
            }
            const double texture = 18 * std::sin(x * fx + phase) * std::sin(y * fy + x * 0.003);
            noise = noise * 1664525u + 1013904223u;  // cheap per-pixel noise
            const double n = (int((noise >> 24) & 0xFF) - 128) / 6.0;
            row[x] = qRgb(std::clamp(int(r + texture + n), 0, 255),
                          std::clamp(int(g + texture + n), 0, 255),
                          std::clamp(int(b + texture * 0.5 + n), 0, 255));
        }
    }
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription("Writes sample JPEG photos with EXIF dates and thumbnails.");
    parser.addHelpOption();
    const QCommandLineOption outOption("out", "Output folder (created).", "dir");
    const QCommandLineOption countOption("count", "Number of photos (6).", "n", "6");
    const QCommandLineOption sizeOption("size", "Pixel size WxH (1600x1200).", "size", "1600x1200");
    const QCommandLineOption dpiOption("dpi", "Stated resolution (72).", "dpi", "72");
    const QCommandLineOption prefixOption("prefix", "File name prefix (IMG_).", "name", "IMG_");
    const QCommandLineOption firstOption("first", "Number of the first photo (1).", "n", "1");
    const QCommandLineOption noThumbOption("no-thumbnail", "Store no EXIF thumbnail.");
    parser.addOptions(
        {outOption, countOption, sizeOption, dpiOption, prefixOption, firstOption, noThumbOption});
    parser.process(app);

    const QStringList wh = parser.value(sizeOption).split('x');
    const int width = wh.value(0).toInt();
    const int height = wh.value(1).toInt();
    const int count = parser.value(countOption).toInt();
    const int dpi = parser.value(dpiOption).toInt();
    const int first = parser.value(firstOption).toInt();
    const QString out = parser.value(outOption);
    if (out.isEmpty() || width <= 0 || height <= 0 || count < 0 || dpi <= 0) {
        parser.showHelp(2);
    }
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "samplegen: cannot create %s\n", qPrintable(out));
        return 1;
    }
    const QDateTime start(QDate(2014, 3, 5), QTime(13, 34, 56));
    for (int i = 0; i < count; ++i) {
        const int number = first + i;
        const QImage photo = makePhoto(QSize(width, height), quint32(number));
        const QString path = QDir(out).filePath(QStringLiteral("%1%2.JPG")
                                                    .arg(parser.value(prefixOption))
                                                    .arg(number, 4, 10, QChar('0')));
        ExifJpegWriter::Fields fields;
        fields.make = "Stampwise";
        fields.model = "Sample Generator";
        fields.dpi = dpi;
        fields.dateTimeOriginal =
            start.addSecs(qint64(i) * 3 * 3600 + i * 61).toString("yyyy:MM:dd HH:mm:ss");
        fields.dateTimeDigitized = fields.dateTimeOriginal;
        if (!parser.isSet(noThumbOption)) {
            fields.thumbnail =
                photo.scaled(160, 160, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        }
        QString error;
        if (!ExifJpegWriter::write(path, photo, fields, 90, &error)) {
            std::fprintf(stderr, "samplegen: %s\n", qPrintable(error));
            return 1;
        }
    }
    return 0;
}
