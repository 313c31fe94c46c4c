#include "datetext/PhotoDate.h"

#include <QFileInfo>

#include "datetext/DateText.h"
#include "datetext/FileNameDate.h"

namespace {

constexpr int kFirstYear = 1;
constexpr int kLastYear = 9999;

// Moves the date the rule found; a shift that leaves the calendar leaves no date.
void applyShift(PhotoDate::Result& result, qint64 seconds) {
    if (seconds == 0 || !result.date) {
        return;
    }
    result.date = PhotoDate::shifted(*result.date, seconds);
    if (!result.date) {
        result.problem = QString::fromUtf16(PhotoDate::kOutOfRange);
    }
}

}  // namespace

PhotoDate::Result PhotoDate::photoDateText(const std::optional<QString>& dateTimeOriginal,
                                           const std::optional<QString>& dateTimeDigitized,
                                           const std::optional<QDateTime>& fileDate,
                                           qint64 dateType, qint64 timeType,
                                           const Adjustment& adjustment) {
    // A present but null Original wins over Digitized and then falls to the file date.
    std::optional<QString> exif = dateTimeOriginal ? dateTimeOriginal : dateTimeDigitized;
    Result result;
    if (exif && *exif != QStringView(kNullExifDate)) {
        result.sourceText = *exif;
        result.source = QString::fromUtf16(dateTimeOriginal ? kFromOriginal : kFromDigitized);
        result.date = DateText::dateFromString(result.sourceText);
    } else {
        // A name's date that the local clock never showed (summer time) is passed over.
        const std::optional<FileNameDate::Found> named =
            adjustment.fileName.isEmpty() ? std::nullopt : FileNameDate::find(adjustment.fileName);
        const QString namedText = named ? named->exifText() : QString();
        const std::optional<QDateTime> namedDate =
            named ? DateText::dateFromString(namedText) : std::nullopt;
        if (namedDate) {
            result.sourceText = namedText;
            result.source = QString::fromUtf16(kFromFileName);
            result.hasTime = named->hasTime();
            result.date = namedDate;
        } else {
            result.sourceText = DateText::stringFromDate(fileDate, dateType, timeType);
            result.source = fileDate ? QString::fromUtf16(kFromFileDate) : QString();
            result.date = DateText::dateFromString(result.sourceText);
        }
    }
    applyShift(result, adjustment.shiftSeconds);
    result.dateTimeString = writtenDate(result.date, result.hasTime, dateType, timeType);
    return result;
}

PhotoDate::Result PhotoDate::fileDateText(const std::optional<QDateTime>& fileDate, qint64 dateType,
                                          qint64 timeType, qint64 shiftSeconds) {
    Result result;
    result.date = fileDate;
    result.source = fileDate ? QString::fromUtf16(kFromFileDate) : QString();
    applyShift(result, shiftSeconds);
    result.sourceText = DateText::stringFromDate(fileDate, dateType, timeType);
    result.dateTimeString = DateText::stringFromDate(result.date, dateType, timeType);
    return result;
}

std::optional<QDateTime> PhotoDate::shifted(const QDateTime& date, qint64 seconds) {
    const QDateTime moved = date.addSecs(seconds);
    const int year = moved.date().year();
    if (!moved.isValid() || year < kFirstYear || year > kLastYear) {
        return std::nullopt;
    }
    return moved;
}

QString PhotoDate::writtenDate(const std::optional<QDateTime>& date, bool hasTime, qint64 dateType,
                               qint64 timeType) {
    return DateText::stringFromDate(date, dateType, hasTime ? timeType : 0);
}

std::optional<QDateTime> PhotoDate::fileModificationDate(const QString& path) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists()) {
        return std::nullopt;
    }
    return info.lastModified();
}
