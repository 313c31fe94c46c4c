#pragma once

#include <QString>
#include <optional>

// What `stampwise info` and `stampwise stamp` read from their arguments alike.
namespace CommandArguments {

inline constexpr qint64 kMaxDateType = 3;
inline constexpr qint64 kMaxTimeType = 2;

// The whole text as a whole number from min to max; none otherwise.
inline std::optional<qint64> integerIn(const QString& text, qint64 min, qint64 max) {
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || value < min || value > max) {
        return std::nullopt;
    }
    return value;
}

}  // namespace CommandArguments
