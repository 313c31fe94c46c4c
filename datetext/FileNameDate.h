#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <optional>

// Dates that phones, messengers and screenshot tools write into file names
// (IMG_20140305_133456.jpg, IMG-20140305-WA0001.jpg, 2014-03-05 13.34.56.jpg).
// Only names of a known pattern count; a number that merely looks like a date
// is never taken for one.
namespace FileNameDate {

struct Found {
    QDate date;
    // Invalid when the name holds a date only.
    QTime time;

    bool hasTime() const { return time.isValid(); }
    // As EXIF writes it; a date-only name reads as noon, so that a time-zone
    // shift of up to twelve hours keeps it on its day.
    QString exifText() const;
};

// From the file name of path (its folders are ignored). None unless the name
// matches a pattern with a real date and time in 1970..2100.
std::optional<Found> find(const QString& path);

}  // namespace FileNameDate
