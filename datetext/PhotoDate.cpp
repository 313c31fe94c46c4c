#include "datetext/PhotoDate.h"

#include <QFileInfo>

#include "datetext/DateText.h"

PhotoDate::Result PhotoDate::photoDateText(const std::optional<QString>& dateTimeOriginal,
                                           const std::optional<QString>& dateTimeDigitized,
                                           const std::optional<QDateTime>& fileDate,
                                           qint64 dateType, qint64 timeType) {
    // A present but null Original wins over Digitized and then falls to the file date.
    std::optional<QString> exif = dateTimeOriginal ? dateTimeOriginal : dateTimeDigitized;
    Result result;
    if (!exif || *exif == QStringView(kNullExifDate)) {
        result.sourceText = DateText::stringFromDate(fileDate, dateType, timeType);
    } else {
        result.sourceText = *exif;
    }
    result.date = DateText::dateFromString(result.sourceText);
    result.dateTimeString = DateText::stringFromDate(result.date, dateType, timeType);
    return result;
}

std::optional<QDateTime> PhotoDate::fileModificationDate(const QString& path) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists()) {
        return std::nullopt;
    }
    return info.lastModified();
}
