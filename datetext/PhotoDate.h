#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

// The photo's own date: EXIF DateTimeOriginal, else DateTimeDigitized, else
// (when asked) a date in the file name, else the file's modification date; then
// moved by the user's shift.
namespace PhotoDate {

// Where a photo's date came from, as `stampwise info` names it.
inline constexpr char16_t kFromOriginal[] = u"DateTimeOriginal";
inline constexpr char16_t kFromDigitized[] = u"DateTimeDigitized";
inline constexpr char16_t kFromFileName[] = u"file name";
inline constexpr char16_t kFromFileDate[] = u"file date";

// Why a photo that had a date gets no date text.
inline constexpr char16_t kOutOfRange[] = u"the shifted date is out of range";

// What the user asked for beyond the plain rule.
struct Adjustment {
    // The photo's path or name to read a date from when it has no EXIF date;
    // empty: names are not consulted.
    QString fileName;
    qint64 shiftSeconds = 0;
};

struct Result {
    // The text the rule started from: an EXIF value, the file name's date as
    // EXIF writes it, or the written file date.
    QString sourceText;
    // That text read back and shifted; none when it cannot be read or the shift
    // leaves the calendar.
    std::optional<QDateTime> date;
    // The date written with the current types (without a time when the source
    // has none); empty when there is no date.
    QString dateTimeString;
    // One of the kFrom… names; empty when there was nothing to start from.
    QString source;
    // False for a date-only file name: its text is written without a time.
    bool hasTime = true;
    // Why there is no date although the source had one (kOutOfRange), else empty.
    QString problem;
};

// The EXIF value cameras write when their clock was never set.
inline constexpr char16_t kNullExifDate[] = u"0000:00:00 00:00:00";

Result photoDateText(const std::optional<QString>& dateTimeOriginal,
                     const std::optional<QString>& dateTimeDigitized,
                     const std::optional<QDateTime>& fileDate, qint64 dateType, qint64 timeType,
                     const Adjustment& adjustment = {});

// The file-date channel: the modification date, shifted, written with the types.
Result fileDateText(const std::optional<QDateTime>& fileDate, qint64 dateType, qint64 timeType,
                    qint64 shiftSeconds);

// date moved by seconds; none when it leaves the years 1 to 9999.
std::optional<QDateTime> shifted(const QDateTime& date, qint64 seconds);

// date in the types, without its time when hasTime is false.
QString writtenDate(const std::optional<QDateTime>& date, bool hasTime, qint64 dateType,
                    qint64 timeType);

// None when the file does not exist.
std::optional<QDateTime> fileModificationDate(const QString& path);

}  // namespace PhotoDate
