#pragma once

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QString>
#include <optional>

// How stored strings are read and how colour and font are encoded in the store.
namespace SettingValues {
// Leading decimal text after leading white space; 0 when there is none.
qint64 integerValue(const QString& text);
float floatValue(const QString& text);
// True when, after white space, a sign and leading zeros, the text begins with
// Y, y, T, t or a digit 1 to 9.
bool boolValue(const QString& text);

QByteArray encodeColor(const QColor& color);
std::optional<QColor> decodeColor(const QByteArray& data);
QByteArray encodeFont(const QFont& font);
std::optional<QFont> decodeFont(const QByteArray& data);

// Bold italic 16 points in Verdana where installed, else a face that resolves.
QFont defaultStampFont();
}  // namespace SettingValues
