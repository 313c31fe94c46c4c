#include "app/SettingValues.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {
constexpr const char* kColorMagic = "stampwise-color/1";
constexpr const char* kFontMagic = "stampwise-font/1";
constexpr double kDefaultFontSize = 16.0;

qsizetype skipSpace(const QString& text) {
    qsizetype i = 0;
    while (i < text.size() && text.at(i).isSpace()) {
        ++i;
    }
    return i;
}

// Fields of "magic\nfield\nfield..." data; nullopt when the magic differs.
std::optional<QStringList> fields(const QByteArray& data, const char* magic) {
    const QStringList lines = QString::fromUtf8(data).split(QLatin1Char('\n'));
    if (lines.isEmpty() || lines.first() != QLatin1String(magic)) {
        return std::nullopt;
    }
    return lines.mid(1);
}

std::optional<double> finiteNumber(const QString& text) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}
}  // namespace

qint64 SettingValues::integerValue(const QString& text) {
    const QByteArray bytes = text.mid(skipSpace(text)).toLatin1();
    // strtoll stops at the first non-digit and saturates on overflow.
    return static_cast<qint64>(std::strtoll(bytes.constData(), nullptr, 10));
}

float SettingValues::floatValue(const QString& text) {
    const QByteArray bytes = text.mid(skipSpace(text)).toLatin1();
    const char* begin = bytes.constData();
    // Only plain decimal text counts: no hex, "inf" or "nan" spellings.
    qsizetype i = 0;
    if (i < bytes.size() && (begin[i] == '+' || begin[i] == '-')) {
        ++i;
    }
    qsizetype digits = i;
    while (digits < bytes.size() &&
           ((begin[digits] >= '0' && begin[digits] <= '9') || begin[digits] == '.')) {
        ++digits;
    }
    if (digits == i) {
        return 0.0F;
    }
    QByteArray number = bytes.left(digits);
    // An exponent is part of the number when digits follow it.
    if (digits < bytes.size() && (begin[digits] == 'e' || begin[digits] == 'E')) {
        qsizetype e = digits + 1;
        if (e < bytes.size() && (begin[e] == '+' || begin[e] == '-')) {
            ++e;
        }
        qsizetype expEnd = e;
        while (expEnd < bytes.size() && begin[expEnd] >= '0' && begin[expEnd] <= '9') {
            ++expEnd;
        }
        if (expEnd > e) {
            number = bytes.left(expEnd);
        }
    }
    return std::strtof(number.constData(), nullptr);
}

bool SettingValues::boolValue(const QString& text) {
    qsizetype i = skipSpace(text);
    if (i < text.size() && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-'))) {
        ++i;
    }
    while (i < text.size() && text.at(i) == QLatin1Char('0')) {
        ++i;
    }
    if (i >= text.size()) {
        return false;
    }
    const QChar c = text.at(i);
    return c == QLatin1Char('Y') || c == QLatin1Char('y') || c == QLatin1Char('T') ||
           c == QLatin1Char('t') || (c >= QLatin1Char('1') && c <= QLatin1Char('9'));
}

QByteArray SettingValues::encodeColor(const QColor& color) {
    const QColor rgb = color.toRgb();
    return QStringLiteral("%1\n%2\n%3\n%4\n%5")
        .arg(QLatin1String(kColorMagic))
        .arg(rgb.redF(), 0, 'g', 9)
        .arg(rgb.greenF(), 0, 'g', 9)
        .arg(rgb.blueF(), 0, 'g', 9)
        .arg(rgb.alphaF(), 0, 'g', 9)
        .toUtf8();
}

std::optional<QColor> SettingValues::decodeColor(const QByteArray& data) {
    const std::optional<QStringList> parts = fields(data, kColorMagic);
    if (!parts || parts->size() != 4) {
        return std::nullopt;
    }
    float components[4];
    for (int i = 0; i < 4; ++i) {
        const std::optional<double> value = finiteNumber(parts->at(i));
        if (!value || *value < 0.0 || *value > 1.0) {
            return std::nullopt;
        }
        components[i] = static_cast<float>(*value);
    }
    return QColor::fromRgbF(components[0], components[1], components[2], components[3]);
}

QByteArray SettingValues::encodeFont(const QFont& font) {
    return QStringLiteral("%1\n%2\n%3\n%4\n%5\n%6")
        .arg(QLatin1String(kFontMagic), font.family(), font.styleName())
        .arg(font.pointSizeF(), 0, 'g', 9)
        .arg(font.bold() ? 1 : 0)
        .arg(font.italic() ? 1 : 0)
        .toUtf8();
}

std::optional<QFont> SettingValues::decodeFont(const QByteArray& data) {
    const std::optional<QStringList> parts = fields(data, kFontMagic);
    if (!parts || parts->size() != 5 || parts->at(0).trimmed().isEmpty()) {
        return std::nullopt;
    }
    const std::optional<double> size = finiteNumber(parts->at(2));
    // Beyond this a stamp would not fit any photo; treat it as damage.
    if (!size || *size <= 0.0 || *size > 4096.0) {
        return std::nullopt;
    }
    QFont font(parts->at(0));
    if (!parts->at(1).isEmpty()) {
        font.setStyleName(parts->at(1));
    }
    font.setBold(parts->at(3) == QLatin1String("1"));
    font.setItalic(parts->at(4) == QLatin1String("1"));
    font.setPointSizeF(*size);
    return font;
}

QFont SettingValues::defaultStampFont() {
    const QString family = QFontDatabase::hasFamily(QStringLiteral("Verdana"))
                               ? QStringLiteral("Verdana")
                               : QStringLiteral("DejaVu Sans");
    QFont font(family);
    font.setBold(true);
    font.setItalic(true);
    font.setPointSizeF(kDefaultFontSize);
    return font;
}
