#include "app/InfoCommand.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>

#include "app/CommandArguments.h"
#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "app/StampOptionFlags.h"
#include "catalog/AssetCollection.h"
#include "catalog/ImageAsset.h"
#include "catalog/Orientation.h"
#include "datetext/DateText.h"
#include "datetext/PhotoDate.h"

namespace {

using CommandArguments::kMaxDateType;
using CommandArguments::kMaxTimeType;

QJsonValue textOrNull(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

// The date with its offset, so that a reader elsewhere sees the same instant.
QString isoDate(const QDateTime& date) {
    return date.toOffsetFromUtc(date.offsetFromUtc()).toString(Qt::ISODate);
}

QString plainValue(const QJsonValue& value) {
    if (value.isNull() || value.isUndefined()) {
        return QStringLiteral("none");
    }
    if (value.isString()) {
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    }
    if (value.isBool()) {
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    }
    return QString::number(value.toDouble(), 'g', 10);
}

}  // namespace

QStringList InfoCommand::expand(const QString& path) {
    const QFileInfo info(path);
    const QString absolute = info.absoluteFilePath();
    const QStringList candidates =
        info.isDir() ? AssetCollection(QUrl::fromLocalFile(absolute)).findAssetFilesInRootURL()
                     : QStringList{absolute};
    QStringList photos;
    const QStringList types = ImageAsset::fileTypes();
    for (const QString& candidate : candidates) {
        if (types.contains(QFileInfo(candidate).suffix(), Qt::CaseSensitive)) {
            photos.append(candidate);
        }
    }
    return photos;
}

QJsonObject InfoCommand::describe(const QString& path, qint64 dateType, qint64 timeType,
                                  const StampOptions& options) {
    ImageAsset asset(QUrl::fromLocalFile(path));
    const bool readable = asset.createImageSource();
    QJsonObject record;
    record["path"] = path;
    record["readable"] = readable;
    // Upright, the sizes are those of the turned photo; the width's resolution
    // is then the one stated for the stored height.
    const int turn =
        options.upright && readable ? asset.imageSource()->orientation() : Orientation::kNormal;
    const QSize pixels =
        Orientation::uprightSize(QSize(int(asset.pixelsWide()), int(asset.pixelsHigh())), turn);
    const QSizeF points = Orientation::uprightSize(asset.pointSize(), turn);
    record["pixelWidth"] = pixels.width();
    record["pixelHeight"] = pixels.height();
    const QJsonValue none(QJsonValue::Null);
    record["pointWidth"] = readable ? QJsonValue(points.width()) : none;
    record["pointHeight"] = readable ? QJsonValue(points.height()) : none;
    const double dpi = Orientation::swapsAxes(turn) ? asset.dpiY() : asset.dpiX();
    record["dpi"] = readable ? QJsonValue(dpi) : none;
    if (options.upright) {
        record["orientation"] = readable ? QJsonValue(turn) : none;
    }
    // The dates the stamp run would use: those of the file's last image.
    const std::optional<QString> original = asset.lastPageDateTimeOriginal();
    const std::optional<QString> digitized = asset.lastPageDateTimeDigitized();
    record["DateTimeOriginal"] = textOrNull(original);
    record["DateTimeDigitized"] = textOrNull(digitized);
    const std::optional<QDateTime> fileDate = PhotoDate::fileModificationDate(path);
    record["fileDate"] = fileDate ? QJsonValue(isoDate(*fileDate)) : none;
    const PhotoDate::Result rule =
        PhotoDate::photoDateText(original, digitized, fileDate, dateType, timeType,
                                 {options.names ? path : QString(), options.shiftSeconds});
    // An empty text is no date text either: nothing would be drawn.
    const bool hasText = rule.date && !rule.dateTimeString.isEmpty();
    record["dateText"] = hasText ? QJsonValue(rule.dateTimeString) : none;
    record["dateSource"] = hasText ? QJsonValue(rule.source) : none;
    return record;
}

void InfoCommand::printUsage(QTextStream& stream) const {
    stream << "Usage: stampwise info [--date-type N] [--time-type N] [--json] PATH...\n"
              "\n"
              "Shows what Stampwise reads from each photo: whether it can be read, its size in\n"
              "pixels and in points with the stated resolution (72 dpi when none), the EXIF\n"
              "DateTimeOriginal and DateTimeDigitized, the file's modification date, and the\n"
              "date text the photo's own date gives in the chosen layout, with where that date\n"
              "came from (DateTimeOriginal, DateTimeDigitized, file name or file date).\n"
              "\n"
              "A folder stands for the photo files directly inside it, as when a folder is\n"
              "opened in the program; a file is taken when its extension is an image type.\n"
              "\n"
              "  --date-type N  date layout 0-3 (default: the saved choice)\n"
              "  --time-type N  time layout 0-2 (default: the saved choice)\n"
              "  --upright      sizes of the photo turned by its orientation tag, and the tag\n"
              "  --shift SHIFT  add [+|-][Nd]HH:MM[:SS] to the photo's date\n"
              "  --names        a photo without an EXIF date takes one from its file name\n"
              "  --plain        none of these three unless given (default: the saved choices)\n"
              "  --json         one JSON array of objects instead of lines\n"
              "  --help         this text\n";
}

int InfoCommand::run(const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption dateOption("date-type", "", "N");
    const QCommandLineOption timeOption("time-type", "", "N");
    const QCommandLineOption jsonOption("json");
    const QCommandLineOption helpOption("help");
    parser.addOptions({dateOption, timeOption, jsonOption, helpOption});
    const StampOptionFlags optionFlags(false);
    optionFlags.addTo(parser);
    if (!parser.parse(QStringList{QStringLiteral("stampwise-info")} + arguments)) {
        err_ << "stampwise info: " << parser.errorText() << "\n";
        printUsage(err_);
        return kUsageError;
    }
    if (parser.isSet(helpOption)) {
        printUsage(out_);
        return 0;
    }
    const QSettings settings;
    qint64 dateType = SettingValues::integerValue(
        settings.value(QLatin1String(SettingsKeys::kDateType)).toString());
    qint64 timeType = SettingValues::integerValue(
        settings.value(QLatin1String(SettingsKeys::kTimeType)).toString());
    if (parser.isSet(dateOption)) {
        const auto value = CommandArguments::integerIn(parser.value(dateOption), 0, kMaxDateType);
        if (!value) {
            err_ << "stampwise info: --date-type takes 0 to 3\n";
            return kUsageError;
        }
        dateType = *value;
    }
    if (parser.isSet(timeOption)) {
        const auto value = CommandArguments::integerIn(parser.value(timeOption), 0, kMaxTimeType);
        if (!value) {
            err_ << "stampwise info: --time-type takes 0 to 2\n";
            return kUsageError;
        }
        timeType = *value;
    }
    const std::optional<StampOptions> options = optionFlags.read(parser);
    if (!options) {
        err_ << "stampwise info: " << StampOptionFlags::kShiftUsage << "\n";
        return kUsageError;
    }
    if (parser.positionalArguments().isEmpty()) {
        printUsage(err_);
        return kUsageError;
    }

    QJsonArray records;
    for (const QString& argument : parser.positionalArguments()) {
        for (const QString& photo : expand(argument)) {
            const QJsonObject record = describe(photo, dateType, timeType, *options);
            if (parser.isSet(jsonOption)) {
                records.append(record);
                continue;
            }
            out_ << record["path"].toString();
            for (const char* key :
                 {"readable", "pixelWidth", "pixelHeight", "pointWidth", "pointHeight", "dpi",
                  "DateTimeOriginal", "DateTimeDigitized", "fileDate", "dateSource", "dateText"}) {
                out_ << '\t' << key << '=' << plainValue(record[QLatin1String(key)]);
            }
            if (record.contains(QLatin1String("orientation"))) {
                out_ << "\torientation=" << plainValue(record[QLatin1String("orientation")]);
            }
            out_ << '\n';
            out_.flush();
        }
    }
    if (parser.isSet(jsonOption)) {
        out_ << QJsonDocument(records).toJson(QJsonDocument::Indented);
    }
    out_.flush();
    return 0;
}
