#include "stamp/StampRun.h"

#include <sys/stat.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "catalog/ImageSource.h"
#include "catalog/Orientation.h"
#include "datetext/PhotoDate.h"
#include "stamp/ImageWriter.h"
#include "stamp/KeptFormatWriter.h"
#include "stamp/StampPainter.h"

namespace {

// Enough for a 130-megapixel photo in 32 bits; Qt's own default stops at 64.
constexpr int kAllocationLimitMB = 512;

using FileId = std::pair<dev_t, ino_t>;

// The file a path names, links followed; none when there is none (error says why).
std::optional<FileId> fileId(const QString& path, mode_t* mode = nullptr, int* error = nullptr) {
    const QByteArray name = QFile::encodeName(path);
    struct stat info {};
    if (name.isEmpty() || ::stat(name.constData(), &info) != 0) {
        if (error != nullptr) {
            *error = name.isEmpty() ? ENOENT : errno;
        }
        return std::nullopt;
    }
    if (mode != nullptr) {
        *mode = info.st_mode;
    }
    return FileId{info.st_dev, info.st_ino};
}

// The date text and, when a shift leaves the calendar, why there is none.
PhotoDate::Result dateTextOf(ImageSource& source, qint64 channel, qint64 dateType, qint64 timeType,
                             const QString& customText, const StampOptions& options = {}) {
    if (channel == 0) {
        // The dates of the last page, as a multi-page file's last image carries them.
        return PhotoDate::photoDateText(
            source.lastPageDateTimeOriginal(), source.lastPageDateTimeDigitized(),
            PhotoDate::fileModificationDate(source.path()), dateType, timeType,
            {options.names ? source.path() : QString(), options.shiftSeconds});
    }
    if (channel == 1) {
        return PhotoDate::fileDateText(PhotoDate::fileModificationDate(source.path()), dateType,
                                       timeType, options.shiftSeconds);
    }
    PhotoDate::Result typed;
    typed.dateTimeString = customText;
    return typed;
}

// A JPEG cut short (a copy that broke off) decodes without an error, grey from
// the cut on; only a complete one leaves the reader just past its end marker.
// Data after it (a phone's motion clip) is no concern.
bool endsAtJpegEnd(QIODevice* device) {
    const qint64 end = device != nullptr ? device->pos() : 0;
    if (end < 2 || !device->seek(end - 2)) {
        return false;
    }
    return device->read(2) == QByteArrayLiteral("\xFF\xD9");
}

// The first page on a W x H canvas, kept at the bottom-left corner from which
// the stamp's place counts; only files whose pages differ in size need it.
QImage onCanvas(const QImage& page, QSize size) {
    QImage canvas(size, QImage::Format_RGB32);
    if (canvas.isNull()) {
        return canvas;
    }
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    painter.drawImage(QPointF(0, size.height() - page.height()), page);
    return canvas;
}

}  // namespace

StampRun::StampRun(StampJob job) : job_(std::move(job)) {
    folder_ = ImageWriter::expandTilde(job_.outputFolder);
    while (folder_.size() > 1 && folder_.endsWith(QLatin1Char('/'))) {
        folder_.chop(1);
    }
}

QString StampRun::outputPath(qsizetype index) const {
    const QString name = QFileInfo(job_.photos.at(index)).fileName();
    return folder_.endsWith(QLatin1Char('/')) ? folder_ + name : folder_ + QLatin1Char('/') + name;
}

QString StampRun::refusal() const {
    const QString shown = QDir::cleanPath(folder_);
    if (folder_.isEmpty()) {
        return QStringLiteral("No output folder was given.");
    }
    mode_t mode = 0;
    const std::optional<FileId> folder = fileId(folder_, &mode);
    if (!folder) {
        return QStringLiteral("The output folder %1 does not exist.").arg(shown);
    }
    if (!S_ISDIR(mode)) {
        return QStringLiteral("The output folder %1 is not a folder.").arg(shown);
    }
    // An output path that names one of the photos, however the folder is spelled
    // and through whatever links, would replace that original.
    std::set<FileId> photoIds;
    for (const QString& photo : job_.photos) {
        if (const auto id = fileId(photo)) {
            photoIds.insert(*id);
        }
    }
    for (qsizetype i = 0; i < job_.photos.size(); ++i) {
        const std::optional<FileId> id = fileId(outputPath(i));
        if (id && photoIds.count(*id) != 0) {
            return QStringLiteral(
                       "The output folder %1 holds the photo %2 itself: stamping there would "
                       "replace the original with %3. Please choose another folder.")
                .arg(shown, QFileInfo(outputPath(i)).fileName(),
                     job_.options.keepFormat ? QStringLiteral("its stamped copy")
                                             : QStringLiteral("BMP data"));
        }
    }
    return {};
}

StampOutcome StampRun::stampOne(qsizetype index, QImage& buffer) const {
    StampOutcome outcome;
    outcome.index = index;
    outcome.source = job_.photos.at(index);
    outcome.output = outputPath(index);
    mode_t mode = 0;
    int error = 0;
    if (!fileId(outcome.source, &mode, &error)) {
        outcome.reason = QStringLiteral("cannot be opened: %1")
                             .arg(QString::fromLocal8Bit(std::strerror(error)));
        return outcome;
    }
    if (!S_ISREG(mode)) {
        outcome.reason = kNotRegular;
        return outcome;
    }
    ImageSource source(outcome.source);
    const QSize size = source.maxPageSize();
    if (!source.isReadable() || size.isEmpty()) {
        outcome.reason = kUnreadable;
        return outcome;
    }
    const PhotoDate::Result date = dateTextOf(source, job_.selectChannel, job_.gDateType,
                                              job_.gTimeType, job_.customText, job_.options);
    outcome.text = date.dateTimeString;
    outcome.reason = date.problem;
    if (job_.dryRun) {
        outcome.written = true;
        return outcome;
    }
    {
        QImageReader reader(outcome.source, source.format());
        reader.setAllocationLimit(kAllocationLimitMB);
        reader.setAutoTransform(false);
        // Into the worker's buffer of the last photo: a photo of the same size reuses it.
        if (!reader.read(&buffer)) {
            outcome.reason = QStringLiteral("%1: %2").arg(kUnreadable, reader.errorString());
            buffer = QImage();
            return outcome;
        }
        if (source.format() == "jpeg" && !endsAtJpegEnd(reader.device())) {
            outcome.reason = kIncomplete;
            return outcome;
        }
    }
    if (buffer.size() != size) {
        buffer = onCanvas(buffer, size);
        if (buffer.isNull()) {
            outcome.reason = QStringLiteral("too large to stamp");
            return outcome;
        }
    }

    // Turned before it is placed: the stamp goes where the label is on the upright
    // preview. A stated resolution stays with its stored axis.
    const int orientation = job_.options.upright ? source.orientation() : Orientation::kNormal;
    // A quarter turn's target, kept for the worker's next photo like its buffer.
    thread_local QImage quarterTurned;
    QImage& photo = Orientation::upright(buffer, orientation, quarterTurned);
    const bool swapped = Orientation::swapsAxes(orientation);
    const QSize shown = Orientation::uprightSize(size, orientation);

    // Placed and drawn in the photo's points, then scaled to its pixels, so the stamp
    // covers the share of the photo that the label covers of the preview.
    const double dpiX = swapped ? source.dpiY() : source.dpiX();
    const double dpiY = swapped ? source.dpiX() : source.dpiY();
    const float width = static_cast<float>(shown.width());
    const float height = static_cast<float>(shown.height());
    const float pointWidth = static_cast<float>(shown.width() * ImageSource::kDefaultDpi / dpiX);
    const float pointHeight = static_cast<float>(shown.height() * ImageSource::kDefaultDpi / dpiY);
    const StampGeometry::TPosition at = StampGeometry::calculateOutputPosition(
        job_.snapshot, StampGeometry::outputArea(pointWidth, pointHeight, job_.margin),
        static_cast<float>(job_.labelTextSize.width()),
        static_cast<float>(job_.labelTextSize.height()));
    photo = StampPainter::drawStamp(
        std::move(photo), outcome.text, job_.font, job_.color, at,
        QSizeF(dpiX / ImageSource::kDefaultDpi, dpiY / ImageSource::kDefaultDpi), job_.options);

    QString why;
    if (job_.options.keepFormat) {
        const KeptFormatWriter::Result kept = KeptFormatWriter::save(
            photo, outcome.source, source.format(), outcome.output, job_.options.upright);
        if (!kept.written) {
            outcome.reason = QStringLiteral("cannot be written: %1").arg(kept.error);
            return outcome;
        }
        outcome.note = kept.note;
    } else if (!ImageWriter::saveImage(photo, width, height, outcome.output, &why)) {
        outcome.reason = QStringLiteral("cannot be written: %1").arg(why);
        return outcome;
    }
    outcome.written = true;
    return outcome;
}

void StampRun::run(int jobs, const std::function<void(const StampOutcome&)>& onOutcome) {
    if (!refusal().isEmpty()) {
        return;
    }
    // Photos sharing a file name form one group, tried in catalog order by one
    // worker: the first that is written wins, as if the run had gone from the
    // last photo to the first and each had replaced the one before.
    std::vector<std::vector<qsizetype>> groups;
    QHash<QString, size_t> groupOfName;
    for (qsizetype i = 0; i < job_.photos.size(); ++i) {
        const QString name = QFileInfo(job_.photos.at(i)).fileName();
        const auto found = groupOfName.constFind(name);
        if (found == groupOfName.cend()) {
            groupOfName.insert(name, groups.size());
            groups.push_back({i});
        } else {
            groups[*found].push_back(i);
        }
    }

    std::mutex reportMutex;
    const auto report = [&](const StampOutcome& outcome) {
        const std::lock_guard lock(reportMutex);
        if (onOutcome) {
            onOutcome(outcome);
        }
    };
    std::atomic<size_t> next{0};
    const auto work = [&] {
        QImage buffer;  // one decoded photo per worker at a time
        for (;;) {
            const size_t g = next.fetch_add(1);
            if (g >= groups.size()) {
                return;
            }
            std::optional<qsizetype> written;
            for (const qsizetype index : groups[g]) {
                if (written) {
                    StampOutcome skipped;
                    skipped.index = index;
                    skipped.source = job_.photos.at(index);
                    skipped.output = outputPath(index);
                    skipped.reason = QStringLiteral("same name as %1, which is written")
                                         .arg(job_.photos.at(*written));
                    report(skipped);
                    continue;
                }
                if (cancelled()) {
                    return;
                }
                const StampOutcome outcome = stampOne(index, buffer);
                if (outcome.written) {
                    written = index;
                }
                report(outcome);
            }
        }
    };

    const int cores = std::max(1, QThread::idealThreadCount());
    const size_t workers =
        std::clamp<size_t>(jobs > 0 ? static_cast<size_t>(jobs) : static_cast<size_t>(cores), 1,
                           std::max<size_t>(1, groups.size()));
    // Fresh threads only: the caller's may have drawn text that a worker's must not see.
    std::vector<std::thread> threads;
    threads.reserve(workers);
    for (size_t i = 0; i < workers; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
