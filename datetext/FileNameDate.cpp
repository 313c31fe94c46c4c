#include "datetext/FileNameDate.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <array>

namespace {

constexpr int kFirstYear = 1970;
constexpr int kLastYear = 2100;
const QTime kNoon(12, 0);

// Each pattern starts at the beginning of the name and names its fields; a date
// or time glued to a further digit is some other number.
struct Pattern {
    QRegularExpression expression;
    bool hasTime;
};

Pattern pattern(const char* text, bool hasTime) {
    return {QRegularExpression(QLatin1String(text), QRegularExpression::CaseInsensitiveOption),
            hasTime};
}

const std::array<Pattern, 6>& patterns() {
    static const std::array<Pattern, 6> table = {{
        // Camera apps and Pixel phones (milliseconds after the seconds): IMG_20140305_133456,
        // PXL_20140305_133456789, Screenshot_20140305-133456, 20140305_133456.
        pattern(
            R"(^(?:(?:IMG|VID|PANO|MVIMG|PXL|Screenshot)_)?(?<y>\d{4})(?<M>\d{2})(?<d>\d{2})[_-])"
            R"((?<h>\d{2})(?<m>\d{2})(?<s>\d{2})(?:\d{3})?(?!\d))",
            true),
        // WhatsApp: IMG-20140305-WA0001, a date and a counter.
        pattern(R"(^(?:IMG|VID|AUD|PTT|STK)-(?<y>\d{4})(?<M>\d{2})(?<d>\d{2})-WA\d)", false),
        // Android screenshots: Screenshot_2014-03-05-13-34-56.
        pattern(R"(^Screenshot_(?<y>\d{4})-(?<M>\d{2})-(?<d>\d{2})-)"
                R"((?<h>\d{2})-(?<m>\d{2})-(?<s>\d{2})(?!\d))",
                true),
        // Dropbox camera uploads: 2014-03-05 13.34.56.
        pattern(
            R"(^(?<y>\d{4})-(?<M>\d{2})-(?<d>\d{2}) (?<h>\d{2})\.(?<m>\d{2})\.(?<s>\d{2})(?!\d))",
            true),
        // Signal: signal-2014-03-05-133456, newer versions signal-2014-03-05-13-34-56-123.
        pattern(R"(^signal-(?<y>\d{4})-(?<M>\d{2})-(?<d>\d{2})-)"
                R"((?<h>\d{2})-?(?<m>\d{2})-?(?<s>\d{2})(?:-\d{3})?(?!\d))",
                true),
        // Desktop screenshot tools: "Screenshot from 2014-03-05 13-34-56".
        pattern(R"(^Screenshot from (?<y>\d{4})-(?<M>\d{2})-(?<d>\d{2}) )"
                R"((?<h>\d{2})-(?<m>\d{2})-(?<s>\d{2})(?!\d))",
                true),
    }};
    return table;
}

int field(const QRegularExpressionMatch& match, const char* name) {
    return match.captured(QLatin1String(name)).toInt();
}

}  // namespace

QString FileNameDate::Found::exifText() const {
    return QDateTime(date, hasTime() ? time : kNoon)
        .toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
}

std::optional<FileNameDate::Found> FileNameDate::find(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    for (const Pattern& entry : patterns()) {
        const QRegularExpressionMatch match = entry.expression.match(name);
        if (!match.hasMatch()) {
            continue;
        }
        Found found;
        const int year = field(match, "y");
        found.date = QDate(year, field(match, "M"), field(match, "d"));
        if (entry.hasTime) {
            found.time = QTime(field(match, "h"), field(match, "m"), field(match, "s"));
        }
        if (year < kFirstYear || year > kLastYear || !found.date.isValid() ||
            (entry.hasTime && !found.time.isValid())) {
            return std::nullopt;
        }
        return found;
    }
    return std::nullopt;
}
