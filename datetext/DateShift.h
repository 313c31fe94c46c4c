#pragma once

#include <QString>
#include <optional>

// A fixed correction for a camera clock or time zone that was wrong, written
// [+|-][Nd]HH:MM[:SS]: "+01:00", "-00:30", "+2d03:00:15". No sign means later.
namespace DateShift {

// Seconds, or none when the text is not a shift (minutes and seconds above 59,
// stray characters). An empty text is no shift: zero.
std::optional<qint64> parse(const QString& text);

// The shortest text parse() reads back as the same seconds; "" for zero.
QString format(qint64 seconds);

}  // namespace DateShift
