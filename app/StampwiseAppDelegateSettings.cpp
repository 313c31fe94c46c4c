#include <QSettings>

#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "app/StampwiseAppDelegate.h"

namespace {
QString readString(const QSettings& settings, const char* key) {
    const QVariant value = settings.value(QLatin1String(key));
    if (value.typeId() == QMetaType::QByteArray) {
        return QString::fromUtf8(value.toByteArray());
    }
    return value.canConvert<QString>() ? value.toString() : QString();
}
}  // namespace

void StampwiseAppDelegate::defaultLoadAppSetting() {
    QSettings settings;
    StampStyle& style = state_.style;
    const bool hasDefaults =
        SettingValues::boolValue(readString(settings, SettingsKeys::kHasDefaults));
    style.gTimeType = SettingValues::integerValue(readString(settings, SettingsKeys::kTimeType));
    style.gDateType = SettingValues::integerValue(readString(settings, SettingsKeys::kDateType));
    if (hasDefaults) {
        const QVariant color = settings.value(QLatin1String(SettingsKeys::kColor));
        if (color.typeId() == QMetaType::QByteArray) {
            style.aColor =
                SettingValues::decodeColor(color.toByteArray()).value_or(QColor(Qt::red));
        } else if (!style.aColor.isValid()) {
            style.aColor = QColor(Qt::red);
        }
        const QVariant font = settings.value(QLatin1String(SettingsKeys::kFont));
        if (font.typeId() == QMetaType::QByteArray) {
            style.aFont = SettingValues::decodeFont(font.toByteArray())
                              .value_or(SettingValues::defaultStampFont());
        } else if (!style.hasFont) {
            style.aFont = SettingValues::defaultStampFont();
        }
        style.hasFont = true;
        return;
    }
    state_.catalog.isLoadDirectory =
        SettingValues::boolValue(readString(settings, SettingsKeys::kIsLoadDirectory));
    style.standardFontWidth =
        SettingValues::floatValue(readString(settings, SettingsKeys::kStandardFontWidth));
    style.standardFontHeight =
        SettingValues::floatValue(readString(settings, SettingsKeys::kStandardFontHeight));
    state_.catalog.isSafety =
        SettingValues::boolValue(readString(settings, SettingsKeys::kIsSafety));
    if (settings.contains(QLatin1String(SettingsKeys::kDateTimeString))) {
        state_.model.dateTimeString = readString(settings, SettingsKeys::kDateTimeString);
    } else {
        state_.model.dateTimeString.reset();
    }
    style.aColor = QColor(Qt::red);
    style.aFont = SettingValues::defaultStampFont();
    style.hasFont = true;
    defaultSaveAppSetting();
}

void StampwiseAppDelegate::defaultSaveAppSetting() {
    QSettings settings;
    settings.setValue(QLatin1String(SettingsKeys::kHasDefaults),
                      QLatin1String(SettingsKeys::kTrue));
    settings.setValue(QLatin1String(SettingsKeys::kTimeType),
                      QString::number(state_.style.gTimeType));
    settings.setValue(QLatin1String(SettingsKeys::kDateType),
                      QString::number(state_.style.gDateType));
    settings.setValue(QLatin1String(SettingsKeys::kColor),
                      SettingValues::encodeColor(state_.style.aColor));
    settings.setValue(QLatin1String(SettingsKeys::kFont),
                      SettingValues::encodeFont(state_.style.aFont));
    settings.sync();
}
