#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

// Conversion between instants and stamp texts. Both directions use the user's
// time locale (month names, AM/PM symbols: the first of LC_ALL, LC_TIME and LANG
// that is set, English for none, "C" or "POSIX") and the system time zone, so a
// wall-clock time read from EXIF is written back unchanged.
namespace DateText {

// Date types 0..3 (yyyy:MM:dd, dd-MMM-yyyy, MM/dd/yyyy, MMMM dd, yyyy) and time
// types 0..2 (none, 24-hour, 12-hour with marker). Empty text for no date or a
// type out of range.
QString stringFromDate(const std::optional<QDateTime>& date, qint64 dateType, qint64 timeType);

// Reads an EXIF text or a text written by stringFromDate with a time. The layout
// is told by the separators in characters 1 to 11; the whole text must match.
// A text holding "PM" must end in the locale's marker: PM moves a 24-hour field
// of 0..11 into the afternoon and keeps 12..23 as written. None for texts shorter
// than 12 characters, fields out of range and times skipped by summer time.
std::optional<QDateTime> dateFromString(const QString& text);

}  // namespace DateText
