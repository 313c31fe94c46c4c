// The stamp run over 24 camera-like 12-megapixel JPEGs, against `djpeg -bmp`
// (the same decode and BMP write and nothing else) and ImageMagick's convert
// with -annotate, each on one core and on every core, and the run's peak memory;
// the run keeping the JPEG format against vips copy and convert writing JPEG.
#include <sys/resource.h>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <thread>
#include <vector>

#include "stamp/PreviewLayout.h"
#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"
#include "tools/ExifJpegWriter.h"

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;
constexpr int kPhotos = 24;
constexpr int kRounds = 3;
constexpr double kImageMagickGoal = 5.0;  // at least this many times convert's throughput
constexpr double kDjpegGoal = 1.2;        // at most this many times djpeg's time
constexpr double kScalingGoal = 1.7;      // all cores against one
constexpr double kMemoryGoalMB = 400;     // peak with two workers
constexpr double kOptionCostGoal = 0.10;  // an option's share of a run's time
// Keeping the JPEG format on every core: at least vips copy's throughput on the
// same files one after another, and this many times convert's on every core.
constexpr double kKeepMagickGoal = 4.0;
const QString kText = QStringLiteral("05-Mar-2014 13:34:56");

// Smooth shading, fine texture and sensor-like noise, so the decoder has a
// camera's work to do rather than flat blocks. Tables keep it quick.
QImage cameraLike(quint32 seed) {
    QRandomGenerator random(seed);
    const double phase = random.generateDouble() * 6.28;
    std::vector<double> shadeX(kWidth), sinX(kWidth), cosX(kWidth);
    for (int x = 0; x < kWidth; ++x) {
        shadeX[size_t(x)] = std::sin(x * 0.0021 + phase);
        sinX[size_t(x)] = std::sin(x * 0.31);
        cosX[size_t(x)] = std::cos(x * 0.31);
    }
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for (int y = 0; y < kHeight; ++y) {
        const double shadeY = 0.3 * std::cos(y * 0.0017);
        const double sinY = std::sin(y * 0.07);
        const double cosY = std::cos(y * 0.07);
        const double ripple = 0.12 * std::sin(y * 0.23);
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const size_t i = size_t(x);
            const double shade = 0.5 + shadeX[i] * shadeY;
            const double texture = ripple * (sinX[i] * cosY + cosX[i] * sinY);
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

// CPU seconds (user and system) of this process's threads and its finished children.
double cpuSeconds() {
    double total = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        total += double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                 double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    }
    return total;
}

struct Timing {
    double wall = std::nan("");  // seconds, the best run
    double cpu = std::nan("");   // CPU seconds of that run
};

// Keeps the faster of two timings of the same work.
void keepBest(Timing& kept, const std::function<bool()>& work, bool& ok) {
    const double cpuBefore = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    if (!work()) {
        ok = false;
        return;
    }
    const double wall = timer.nsecsElapsed() / 1e9;
    if (std::isnan(kept.wall) || wall < kept.wall) {
        kept = Timing{wall, cpuSeconds() - cpuBefore};
    }
}

QByteArray loadAverage() {
    QFile file(QStringLiteral("/proc/loadavg"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').first() : QByteArray("?");
}

// The run as the window would start it: the photos' own dates, a label in the
// lower right of the margin on a 1000 x 750 preview.
StampJob benchJob(const QStringList& photos, const QString& out, const StampOptions& options = {}) {
    StampJob job;
    job.options = options;
    job.photos = photos;
    job.gDateType = 1;
    job.gTimeType = 1;
    job.font = QFont(QStringLiteral("DejaVu Sans"));
    job.font.setPointSize(96);
    job.color = QColor(255, 200, 0);
    job.margin = true;
    job.outputFolder = out;
    job.labelTextSize = TextMetrics::measureStamp(kText, job.font, options);
    const PreviewLayout::Size preview{1000, 750};
    const StampGeometry::StampArea area = PreviewLayout::stampArea(preview, preview, true);
    const PreviewLayout::Size label{240, 24};
    const StampGeometry::TPosition at = PreviewLayout::presetOrigin(4, area, label);
    job.snapshot =
        StampGeometry::backupPositionAndSize(area, at.x, at.y, label.width, label.height);
    return job;
}

bool runStamp(const QStringList& photos, const QString& out, int jobs,
              const StampOptions& options = {}) {
    QDir(out).removeRecursively();
    QDir().mkpath(out);
    int written = 0;
    StampRun(benchJob(photos, out, options)).run(jobs, [&](const StampOutcome& o) {
        written += o.written ? 1 : 0;
    });
    return written == photos.size();
}

bool runXargs(const QString& list, int jobs, const QStringList& command) {
    QProcess xargs;
    // One thread per convert (it would use every core by itself), as for the others.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MAGICK_THREAD_LIMIT"), QStringLiteral("1"));
    xargs.setProcessEnvironment(environment);
    xargs.start(QStringLiteral("xargs"),
                QStringList{"-a", list, "-P", QString::number(jobs), "-I{}"} + command);
    return xargs.waitForFinished(-1) && xargs.exitStatus() == QProcess::NormalExit &&
           xargs.exitCode() == 0;
}

long statusKB(const char* field) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(field)) {
            return line.mid(qsizetype(std::strlen(field))).trimmed().split(' ').first().toLong();
        }
    }
    return -1;
}

// In a child of its own, so nothing of the generator counts: the run with two
// workers, printing the peak resident size after photos 4 and 24.
int childRun(const QStringList& arguments) {
    const QString out = arguments.at(0);
    const QStringList photos = arguments.mid(1);
    long afterFour = -1;
    int done = 0;
    QDir().mkpath(out);
    StampRun(benchJob(photos, out)).run(2, [&](const StampOutcome&) {
        if (++done == 4) {
            afterFour = statusKB("VmHWM:");
        }
    });
    std::printf("%ld %ld\n", afterFour, statusKB("VmHWM:"));
    return done == photos.size() ? 0 : 1;
}

QString verdict(bool met) {
    return met ? QStringLiteral("met") : QStringLiteral("MISSED");
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 2 && arguments.at(1) == QLatin1String("--child")) {
        return childRun(arguments.mid(2));
    }
    // The temporary folder, on a disk as a real run's output folder would be (the
    // run syncs every output before renaming it into place, the other tools do
    // not); STAMPBENCH_DIR names another place, /dev/shm to leave the disk out.
    const QString chosen = qEnvironmentVariable("STAMPBENCH_DIR");
    const QString parent = chosen.isEmpty() ? QDir::tempPath() : chosen;
    const QString base = parent + QStringLiteral("/stampbench-XXXXXX");
    QTemporaryDir dir(base);
    if (!dir.isValid()) {
        std::fprintf(stderr, "no temporary folder\n");
        return 1;
    }
    const int cores = std::max(1, QThread::idealThreadCount());

    std::printf(
        "generating %d photos of %dx%d (JPEG quality 90, EXIF date, thumbnail) and "
        "copies dated by name only...\n",
        kPhotos, kWidth, kHeight);
    std::fflush(stdout);
    QStringList photos;
    for (int i = 0; i < kPhotos; ++i) {
        photos << dir.filePath(QStringLiteral("in/IMG_%1.JPG").arg(i + 1, 4, 10, QChar('0')));
    }
    // The same pixels without an EXIF date, the date in a phone's file name instead:
    // the photos the names option reads.
    QStringList named;
    for (int i = 0; i < kPhotos; ++i) {
        named << dir.filePath(
            QStringLiteral("named/IMG_201403%1_133456.jpg").arg(i + 1, 2, 10, QChar('0')));
    }
    QDir().mkpath(dir.filePath(QStringLiteral("in")));
    QDir().mkpath(dir.filePath(QStringLiteral("named")));
    std::atomic<int> next{0};
    std::atomic<bool> generated{true};
    std::vector<std::thread> generators;
    for (int t = 0; t < cores; ++t) {
        generators.emplace_back([&] {
            for (int i = next++; i < kPhotos; i = next++) {
                ExifJpegWriter::Fields fields;
                fields.dateTimeOriginal =
                    QStringLiteral("2014:03:%1 13:34:56").arg(i + 1, 2, 10, QChar('0'));
                fields.thumbnail = QImage(160, 120, QImage::Format_RGB32);
                fields.thumbnail.fill(Qt::darkGreen);
                // Stored on its side, as a camera held upright stores it: --upright turns it.
                fields.orientation = 6;
                const QImage pixels = cameraLike(quint32(i + 1));
                if (!ExifJpegWriter::write(photos[i], pixels, fields)) {
                    generated = false;
                }
                fields.dateTimeOriginal.reset();
                if (!ExifJpegWriter::write(named[i], pixels, fields)) {
                    generated = false;
                }
            }
        });
    }
    for (std::thread& thread : generators) {
        thread.join();
    }
    if (!generated) {
        std::fprintf(stderr, "cannot write the photos\n");
        return 1;
    }
    const QString list = dir.filePath(QStringLiteral("photos.txt"));
    {
        QFile file(list);
        if (!file.open(QIODevice::WriteOnly)) {
            return 1;
        }
        file.write(photos.join('\n').toLocal8Bit() + '\n');
    }

    const QString djpeg = QStandardPaths::findExecutable(QStringLiteral("djpeg"));
    // Debian's own binary first: a `convert` earlier on the PATH may be a wrapper.
    QString convert = QStandardPaths::findExecutable(QStringLiteral("convert-im6.q16"));
    if (convert.isEmpty()) {
        convert = QStandardPaths::findExecutable(QStringLiteral("convert"));
    }
    const QString fontFile = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    // The baseline of ImageMagick's text at the run's place on a 4000 x 3000 photo.
    const StampJob job = benchJob(photos, QString());
    const StampGeometry::TPosition at = StampGeometry::calculateOutputPosition(
        job.snapshot, StampGeometry::outputArea(kWidth, kHeight, true),
        float(job.labelTextSize.width()), float(job.labelTextSize.height()));
    QImage device72(1, 1, QImage::Format_RGB32);
    device72.setDotsPerMeterX(TextMetrics::kDotsPerMeter72);
    device72.setDotsPerMeterY(TextMetrics::kDotsPerMeter72);
    const QFontMetricsF metrics(job.font, &device72);
    const QString offset =
        QStringLiteral("+%1+%2")
            .arg(qRound(at.x))
            .arg(qRound(kHeight - double(at.y) - metrics.height() + metrics.ascent()));
    const QStringList magick{
        convert,      "{}",
        "-font",      QFile::exists(fontFile) ? fontFile : QStringLiteral("DejaVu-Sans"),
        "-pointsize", "96",
        "-fill",      "#ffc800",
        "-annotate",  offset,
        kText,        "BMP3:{}.im.bmp"};
    // The same stamp kept as a JPEG, at the photos' own quality.
    QStringList magickJpeg = magick;
    magickJpeg.removeLast();
    magickJpeg << "-quality"
               << "90"
               << "{}.im.jpg";
    const QString vips = QStandardPaths::findExecutable(QStringLiteral("vips"));

    struct Tool {
        const char* name;
        std::function<bool(int)> run;
        bool present;
        Timing single;
        Timing all;
        bool oneCoreOnly = false;
    };
    const QString out = dir.filePath(QStringLiteral("out"));
    std::vector<Tool> tools{
        {"stampwise", [&](int jobs) { return runStamp(photos, out, jobs); }, true, {}, {}},
        {"djpeg -bmp",
         [&](int jobs) {
             return runXargs(list, jobs, {djpeg, "-bmp", "-outfile", "{}.djpeg.bmp", "{}"});
         },
         !djpeg.isEmpty(),
         {},
         {}},
        {"convert",
         [&](int jobs) { return runXargs(list, jobs, magick); },
         !convert.isEmpty(),
         {},
         {}},
        {"vips copy",
         [&](int jobs) {
             return runXargs(list, jobs, {vips, "copy", "{}", "{}.vips.jpg[Q=90]"});
         },
         !vips.isEmpty(),
         {},
         {},
         true},
        {"convert jpg",
         [&](int jobs) { return runXargs(list, jobs, magickJpeg); },
         !convert.isEmpty(),
         {},
         {}},
    };
    // Each option against the plain run, on one core: what it costs.
    const std::vector<std::pair<const char*, StampOptions>> options{
        {"upright", {.upright = true}},        {"outline", {.outline = true}},
        {"shadow", {.shadow = true}},          {"box", {.box = true}},
        {"shift", {.shiftSeconds = 3600}},     {"names", {.names = true}},
        {"keep-format", {.keepFormat = true}},
    };
    const size_t firstOption = tools.size();
    for (const auto& [name, option] : options) {
        tools.push_back({name,
                         [&, option = option](int jobs) {
                             return runStamp(option.names ? named : photos, out, jobs, option);
                         },
                         true,
                         {},
                         {},
                         // Kept JPEGs are also measured on every core against vips and convert.
                         !option.keepFormat});
    }
    bool ok = true;
    std::printf("\nfiles in %s; photos per second (best of %d rounds) and CPU per photo\n",
                qPrintable(dir.path()), kRounds);
    std::printf("%-12s %10s %10s %8s %12s\n", "", "one core",
                qPrintable(QStringLiteral("%1 cores").arg(cores)), "scaling", "CPU ms/photo");
    // Rounds of every tool on one core and on all, so that other work on the
    // machine weighs on all of them alike; the best round of each counts.
    const QByteArray loadBefore = loadAverage();
    for (int round = 0; round < kRounds; ++round) {
        for (Tool& tool : tools) {
            if (tool.present) {
                keepBest(
                    tool.single, [&] { return tool.run(1); }, ok);
                if (!tool.oneCoreOnly) {
                    keepBest(
                        tool.all, [&] { return tool.run(cores); }, ok);
                }
            }
        }
    }
    for (const Tool& tool : tools) {
        if (!tool.present) {
            std::printf("%-12s not found\n", tool.name);
            continue;
        }
        if (tool.oneCoreOnly) {
            std::printf("%-12s %10.2f %10s %8s %12.0f\n", tool.name, kPhotos / tool.single.wall, "",
                        "", tool.single.cpu / kPhotos * 1000);
            continue;
        }
        std::printf("%-12s %10.2f %10.2f %8.2f %12.0f\n", tool.name, kPhotos / tool.single.wall,
                    kPhotos / tool.all.wall, tool.single.wall / tool.all.wall,
                    tool.single.cpu / kPhotos * 1000);
    }
    std::printf("load average before and after (other work on the machine): %s, %s\n",
                loadBefore.constData(), loadAverage().constData());
    std::fflush(stdout);

    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                QStringList{"--child", dir.filePath(QStringLiteral("child"))} + photos);
    child.waitForFinished(-1);
    const QList<QByteArray> peaks = child.readAllStandardOutput().trimmed().split(' ');
    const double afterFour = peaks.size() == 2 ? peaks[0].toDouble() / 1024 : std::nan("");
    const double peak = peaks.size() == 2 ? peaks[1].toDouble() / 1024 : std::nan("");
    ok = ok && child.exitCode() == 0;

    const double ours = tools[0].single.wall;
    const double oursAll = tools[0].all.wall;
    const double djpegTime = tools[1].single.wall;
    const double magickTime = tools[2].single.wall;
    const double vipsTime = tools[3].single.wall;
    const double magickJpegAll = tools[4].all.wall;
    const double keptAll = std::find_if(tools.begin(), tools.end(), [](const Tool& tool) {
                               return std::strcmp(tool.name, "keep-format") == 0;
                           })->all.wall;
    std::printf("\ngoals\n");
    std::printf("  one core: %.2f x ImageMagick's throughput (at least %.0f): %s\n",
                magickTime / ours, kImageMagickGoal,
                qPrintable(verdict(magickTime / ours >= kImageMagickGoal)));
    std::printf("  one core: %.2f x djpeg's time (at most %.1f): %s\n", ours / djpegTime,
                kDjpegGoal, qPrintable(verdict(ours / djpegTime <= kDjpegGoal)));
    std::printf("  %d cores: %.2f x one core's throughput (at least %.1f): %s\n", cores,
                ours / oursAll, kScalingGoal, qPrintable(verdict(ours / oursAll >= kScalingGoal)));
    std::printf(
        "  peak memory, two workers: %.0f MB after 4 photos, %.0f MB after %d (under %.0f, "
        "flat): %s\n",
        afterFour, peak, kPhotos, kMemoryGoalMB,
        qPrintable(verdict(peak < kMemoryGoalMB && peak <= afterFour * 1.05)));
    for (size_t i = firstOption; i < tools.size(); ++i) {
        // Keeping the format is no extra on the same output: vips and convert are its yardsticks.
        if (std::strcmp(tools[i].name, "keep-format") == 0) {
            continue;
        }
        const double cost = tools[i].single.wall / ours - 1;
        std::printf("  --%s costs %.1f %% of one core's throughput (at most %.0f %%): %s\n",
                    tools[i].name, cost * 100, kOptionCostGoal * 100,
                    qPrintable(verdict(cost <= kOptionCostGoal)));
    }
    std::printf(
        "  keep-format, %d cores: %.2f x vips copy's throughput, one file after another "
        "(at least 1): %s\n",
        cores, vipsTime / keptAll, qPrintable(verdict(vipsTime / keptAll >= 1)));
    std::printf(
        "  keep-format, %d cores: %.2f x convert's JPEG throughput on %d cores (at least "
        "%.0f): %s\n",
        cores, magickJpegAll / keptAll, cores, kKeepMagickGoal,
        qPrintable(verdict(magickJpegAll / keptAll >= kKeepMagickGoal)));
    if (!ok) {
        std::fprintf(stderr, "a step failed\n");
        return 1;
    }
    return 0;
}
