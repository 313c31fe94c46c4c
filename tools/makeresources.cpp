// Makes the built-in resources into a folder:
//   restrictedshine.tiff  the shine that lights the page curl and the ripple
//   transitionmask.jpg    the grey mask the disintegrate transition follows
//   click.wav             the short signal a browser card gives when pressed
// Usage: makeresources <output folder>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace {

// Brightness across the shine: dark at the roll's foot, a sharp highlight,
// a soft second one, then the even grey of the flat back.
double shine(double u) {
    const double base = 0.25 + 0.3 * u;
    const double peak = 0.75 * std::exp(-std::pow((u - 0.32) / 0.06, 2.0));
    const double soft = 0.3 * std::exp(-std::pow((u - 0.7) / 0.12, 2.0));
    return std::clamp(base + peak + soft, 0.0, 1.0);
}

QImage makeShine() {
    QImage image(512, 64, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        // A faint cool tint and a slight fall-off towards the top and bottom.
        const double v = 1.0 - 0.15 * std::pow((y - 31.5) / 31.5, 2.0);
        for (int x = 0; x < image.width(); ++x) {
            const double s = shine((x + 0.5) / image.width()) * v;
            line[x] = qRgba(qRound(255 * s * 0.96), qRound(255 * s * 0.98), qRound(255 * s), 255);
        }
    }
    return image;
}

double hash01(int x, int y, int seed) {
    quint32 h = static_cast<quint32>(x) * 374761393u + static_cast<quint32>(y) * 668265263u +
                static_cast<quint32>(seed) * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return static_cast<double>((h ^ (h >> 16)) & 0xffffff) / 16777215.0;
}

// Smoothly interpolated lattice noise in 0..1.
double valueNoise(double x, double y, int seed) {
    const int ix = static_cast<int>(std::floor(x));
    const int iy = static_cast<int>(std::floor(y));
    const double fx = x - ix;
    const double fy = y - iy;
    const double sx = fx * fx * (3 - 2 * fx);
    const double sy = fy * fy * (3 - 2 * fy);
    const double a = hash01(ix, iy, seed);
    const double b = hash01(ix + 1, iy, seed);
    const double c = hash01(ix, iy + 1, seed);
    const double d = hash01(ix + 1, iy + 1, seed);
    return (a + (b - a) * sx) + ((c + (d - c) * sx) - (a + (b - a) * sx)) * sy;
}

// Crumbling blotches: several octaves of noise, each grey level used equally
// often (values replaced by their rank) so the transition moves evenly.
QImage makeMask() {
    constexpr int kSize = 512;
    std::vector<std::pair<double, int>> values(kSize * kSize);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            double v = 0.0;
            double amplitude = 0.5;
            double frequency = 6.0 / kSize;
            for (int octave = 0; octave < 5; ++octave) {
                v += amplitude * valueNoise(x * frequency, y * frequency, octave + 1);
                amplitude *= 0.5;
                frequency *= 2.0;
            }
            values[static_cast<size_t>(y * kSize + x)] = {v, y * kSize + x};
        }
    }
    std::sort(values.begin(), values.end());
    QImage image(kSize, kSize, QImage::Format_Grayscale8);
    for (size_t rank = 0; rank < values.size(); ++rank) {
        const int at = values[rank].second;
        image.scanLine(at / kSize)[at % kSize] = static_cast<uchar>(rank * 256 / values.size());
    }
    return image;
}

// Two short beeps, dit-dit, as mono 16-bit PCM in a WAV file: soft edges so
// they do not crackle, and quiet enough to repeat on every press.
QByteArray makeClick() {
    constexpr int kRate = 22050;
    constexpr double kPitch = 880.0;
    constexpr double kDit = 0.04;
    constexpr double kGap = 0.03;
    constexpr double kRamp = 0.004;
    const int frames = static_cast<int>((2 * kDit + kGap) * kRate);
    QByteArray pcm;
    pcm.reserve(frames * 2);
    for (int i = 0; i < frames; ++i) {
        const double t = double(i) / kRate;
        const double local = t < kDit ? t : t - kDit - kGap;
        double level = 0.0;
        if (local >= 0.0 && local < kDit) {
            level = std::min({1.0, local / kRamp, (kDit - local) / kRamp});
        }
        const auto sample = static_cast<qint16>(
            std::lround(0.35 * 32767 * level * std::sin(2 * std::numbers::pi * kPitch * t)));
        pcm.append(static_cast<char>(sample & 0xff));
        pcm.append(static_cast<char>((sample >> 8) & 0xff));
    }
    const auto le32 = [](quint32 v) {
        QByteArray b(4, 0);
        for (int k = 0; k < 4; ++k) {
            b[k] = static_cast<char>((v >> (8 * k)) & 0xff);
        }
        return b;
    };
    const auto le16 = [&le32](quint16 v) { return le32(v).left(2); };
    QByteArray wav = "RIFF" + le32(36 + quint32(pcm.size())) + "WAVEfmt " + le32(16) + le16(1) +
                     le16(1) + le32(kRate) + le32(kRate * 2) + le16(2) + le16(16) + "data" +
                     le32(quint32(pcm.size()));
    return wav + pcm;
}

bool writeBytes(const QByteArray& bytes, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        QTextStream(stderr) << path << ": " << file.errorString() << "\n";
        return false;
    }
    return true;
}

bool write(const QImage& image, const QString& path, const char* format, int quality) {
    QImageWriter writer(path, format);
    if (quality >= 0) {
        writer.setQuality(quality);
    }
    if (!writer.write(image)) {
        QTextStream(stderr) << path << ": " << writer.errorString() << "\n";
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: makeresources <output folder>\n";
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    if (!out.exists() && !QDir().mkpath(out.path())) {
        QTextStream(stderr) << "cannot create " << out.path() << "\n";
        return 1;
    }
    const bool ok = write(makeShine(), out.filePath("restrictedshine.tiff"), "tiff", -1) &&
                    write(makeMask(), out.filePath("transitionmask.jpg"), "jpg", 92) &&
                    writeBytes(makeClick(), out.filePath("click.wav"));
    return ok ? 0 : 1;
}
