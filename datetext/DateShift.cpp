#include "datetext/DateShift.h"

#include <QRegularExpression>
#include <cstdlib>

namespace DateShift {

std::optional<qint64> parse(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return 0;
    }
    static const QRegularExpression pattern(
        QStringLiteral(R"(^([+-])?\s*(?:(\d{1,5})\s*[dD]\s*)?(\d{1,3}):(\d{2})(?::(\d{2}))?$)"));
    const QRegularExpressionMatch match = pattern.match(trimmed);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const qint64 days = match.captured(2).toLongLong();
    const qint64 hours = match.captured(3).toLongLong();
    const qint64 minutes = match.captured(4).toLongLong();
    const qint64 seconds = match.captured(5).toLongLong();
    if (minutes > 59 || seconds > 59) {
        return std::nullopt;
    }
    const qint64 total = ((days * 24 + hours) * 60 + minutes) * 60 + seconds;
    return match.captured(1) == QLatin1String("-") ? -total : total;
}

QString format(qint64 seconds) {
    if (seconds == 0) {
        return {};
    }
    const qint64 magnitude = std::llabs(seconds);
    const qint64 days = magnitude / 86400;
    const qint64 hours = magnitude / 3600 % 24;
    const qint64 minutes = magnitude / 60 % 60;
    const qint64 rest = magnitude % 60;
    QString text = QLatin1String(seconds < 0 ? "-" : "+");
    if (days > 0) {
        text += QString::number(days) + QLatin1Char('d');
    }
    text += QStringLiteral("%1:%2")
                .arg(hours, 2, 10, QLatin1Char('0'))
                .arg(minutes, 2, 10, QLatin1Char('0'));
    if (rest > 0) {
        text += QStringLiteral(":%1").arg(rest, 2, 10, QLatin1Char('0'));
    }
    return text;
}

}  // namespace DateShift
