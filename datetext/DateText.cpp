#include "datetext/DateText.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <array>
#include <memory>

namespace {

constexpr qint64 kDateTypeCount = 4;
constexpr qint64 kTimeTypeCount = 3;

// Writing layouts, by date type (row) and time type (column).
constexpr std::array<std::array<const char*, kTimeTypeCount>, kDateTypeCount> kWritePatterns = {{
    {"yyyy:MM:dd", "yyyy:MM:dd HH:mm:ss", "yyyy:MM:dd hh:mm:ss a"},
    {"dd-MMM-yyyy", "dd-MMM-yyyy HH:mm:ss", "dd-MMM-yyyy hh:mm:ss a"},
    {"MM/dd/yyyy", "MM/dd/yyyy HH:mm:ss", "MM/dd/yyyy hh:mm:ss a"},
    {"MMMM dd, yyyy", "MMMM dd, yyyy HH:mm:ss", "MMMM dd, yyyy hh:mm:ss a"},
}};

// Reading layouts, by layout key. A text holding "PM" is read with the same
// pattern followed by the marker; the hour stays "HH" either way, and the marker
// is combined with it by hand below.
constexpr std::array<const char*, 4> kReadPatterns = {
    "yyyy:MM:dd HH:mm:ss",
    "dd-MMM-yyyy HH:mm:ss",
    "MM/dd/yyyy HH:mm:ss",
    "MMMM dd, yyyy HH:mm:ss",
};
constexpr const char* kMarkerPattern = " a";

// Separators searched in this order in the span; each names a layout key.
struct SeparatorKey {
    QChar separator;
    int key;
};
constexpr std::array<SeparatorKey, 4> kSeparatorKeys = {{
    {QChar(u':'), 0},
    {QChar(u'-'), 1},
    {QChar(u','), 3},
    {QChar(u'/'), 2},
}};

constexpr qsizetype kSpanStart = 1;
constexpr qsizetype kSpanLength = 11;
constexpr qsizetype kMinimumLength = kSpanStart + kSpanLength;
constexpr QStringView kAfternoon = u"PM";

icu::UnicodeString toUnicode(const QString& text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t*>(text.utf16()),
                              static_cast<int32_t>(text.size()));
}

QString fromUnicode(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

// The user's time locale as desktop programs read it, looked up on every call:
// ICU's own default follows LC_MESSAGES and is fixed at its first use.
icu::Locale timeLocale() {
    QByteArray name;
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        name = qgetenv(variable);
        if (!name.isEmpty()) {
            break;
        }
    }
    // The code set is no part of the language ("C.UTF-8" is "C").
    const qsizetype codeSet = name.indexOf('.');
    if (codeSet >= 0) {
        name.truncate(codeSet);
    }
    // English, as the C library writes; ICU would take the empty name for its
    // root locale (months "M03") and the others for unknown languages.
    if (name.isEmpty() || name == "C" || name == "POSIX") {
        return icu::Locale("en_US_POSIX");
    }
    return icu::Locale(name.constData());
}

std::unique_ptr<icu::SimpleDateFormat> makeFormat(const char* pattern, icu::TimeZone* zone) {
    std::unique_ptr<icu::TimeZone> owned(zone);
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern, -1, US_INV),
                                                          timeLocale(), status);
    if (U_FAILURE(status) || !owned) {
        return nullptr;
    }
    format->adoptTimeZone(owned.release());
    format->setLenient(false);
    return format;
}

// Parses at the position; the fields land in a cleared copy of the format's calendar.
std::unique_ptr<icu::Calendar> parseFields(const icu::SimpleDateFormat& format,
                                           const icu::UnicodeString& input,
                                           icu::ParsePosition& position) {
    std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
    calendar->clear();
    const int32_t start = position.getIndex();
    format.parse(input, *calendar, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() == start) {
        return nullptr;
    }
    return calendar;
}

std::optional<int> layoutKey(const QString& text) {
    const QStringView span = QStringView(text).mid(kSpanStart, kSpanLength);
    for (const SeparatorKey& entry : kSeparatorKeys) {
        if (span.contains(entry.separator)) {
            return entry.key;
        }
    }
    return std::nullopt;
}

}  // namespace

QString DateText::stringFromDate(const std::optional<QDateTime>& date, qint64 dateType,
                                 qint64 timeType) {
    if (!date || !date->isValid() || dateType < 0 || dateType >= kDateTypeCount || timeType < 0 ||
        timeType >= kTimeTypeCount) {
        return QString();
    }
    const auto format =
        makeFormat(kWritePatterns[dateType][timeType], icu::TimeZone::createDefault());
    if (!format) {
        return QString();
    }
    icu::UnicodeString out;
    format->format(static_cast<UDate>(date->toMSecsSinceEpoch()), out);
    return fromUnicode(out);
}

std::optional<QDateTime> DateText::dateFromString(const QString& text) {
    if (text.size() < kMinimumLength) {
        return std::nullopt;
    }
    const std::optional<int> key = layoutKey(text);
    if (!key) {
        return std::nullopt;
    }
    const bool marked = text.contains(kAfternoon, Qt::CaseSensitive);
    const icu::UnicodeString input = toUnicode(text);

    // The fields are read as wall-clock time in UTC, which has no gaps, so that an
    // afternoon text on the day summer time begins is not refused for its 12-hour
    // hour; the local zone judges the final wall-clock time.
    icu::ParsePosition position(0);
    const auto format = makeFormat(kReadPatterns[*key], icu::TimeZone::getGMT()->clone());
    if (!format) {
        return std::nullopt;
    }
    const std::unique_ptr<icu::Calendar> wall = parseFields(*format, input, position);
    if (!wall) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    int32_t hour = wall->get(UCAL_HOUR_OF_DAY, status);
    if (marked) {
        // ICU resolves "HH" followed by "a" differently between versions (often to
        // 12 o'clock), so the marker is read on its own: PM moves an hour of 0..11
        // into the afternoon, an hour of 12..23 stays as written.
        const auto markerFormat = makeFormat(kMarkerPattern, icu::TimeZone::getGMT()->clone());
        if (!markerFormat) {
            return std::nullopt;
        }
        const std::unique_ptr<icu::Calendar> marker = parseFields(*markerFormat, input, position);
        if (!marker || position.getIndex() != input.length()) {
            return std::nullopt;
        }
        if (marker->get(UCAL_AM_PM, status) == UCAL_PM && hour < 12) {
            hour += 12;
        }
    } else if (position.getIndex() != input.length()) {
        return std::nullopt;
    }

    // The calendar the text was read in (strict, like the format), in the local zone.
    std::unique_ptr<icu::Calendar> local(wall->clone());
    local->adoptTimeZone(icu::TimeZone::createDefault());
    local->clear();
    for (const UCalendarDateFields field :
         {UCAL_ERA, UCAL_YEAR, UCAL_MONTH, UCAL_DATE, UCAL_MINUTE, UCAL_SECOND}) {
        local->set(field, wall->get(field, status));
    }
    local->set(UCAL_HOUR_OF_DAY, hour);
    // A wall-clock time skipped by the change to summer time fails here.
    const UDate instant = local->getTime(status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(instant));
}
