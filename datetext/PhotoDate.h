#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

// The photo's own date: EXIF DateTimeOriginal, else DateTimeDigitized, else the
// file's modification date.
namespace PhotoDate {

struct Result {
    // The text the rule started from: an EXIF value or the written file date.
    QString sourceText;
    // That text read back; none when it cannot be read.
    std::optional<QDateTime> date;
    // The date written with the current types; empty when there is no date.
    QString dateTimeString;
};

// The EXIF value cameras write when their clock was never set.
inline constexpr char16_t kNullExifDate[] = u"0000:00:00 00:00:00";

Result photoDateText(const std::optional<QString>& dateTimeOriginal,
                     const std::optional<QString>& dateTimeDigitized,
                     const std::optional<QDateTime>& fileDate, qint64 dateType, qint64 timeType);

// None when the file does not exist.
std::optional<QDateTime> fileModificationDate(const QString& path);

}  // namespace PhotoDate
