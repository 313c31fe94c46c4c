#include "app/StampCommand.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QFontInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <atomic>
#include <csignal>
#include <mutex>

#include "app/CommandArguments.h"
#include "app/InfoCommand.h"
#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "app/StampOptionFlags.h"
#include "catalog/ImageAsset.h"
#include "catalog/ImageSource.h"
#include "catalog/Orientation.h"
#include "datetext/PhotoDate.h"
#include "stamp/PreviewLayout.h"
#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"

namespace {

using CommandArguments::integerIn;
using CommandArguments::kMaxDateType;
using CommandArguments::kMaxTimeType;
// Beyond this a stamp fits no photo; the settings store refuses it too.
constexpr double kMaxFontSize = 4096.0;
// The preset places in PreviewLayout's numbering.
const QStringList kPlaces{QStringLiteral("top-left"), QStringLiteral("top-right"),
                          QStringLiteral("centre"), QStringLiteral("bottom-left"),
                          QStringLiteral("bottom-right")};
constexpr int kBottomLeft = 3;

// Where the label goes: a preset place, or fractions of its free travel.
struct Place {
    int preset = kBottomLeft;
    std::optional<QPointF> fraction;
};

std::optional<Place> parsePlace(const QString& text) {
    const QString name = text == QLatin1String("center") ? QStringLiteral("centre") : text;
    if (kPlaces.contains(name)) {
        return Place{static_cast<int>(kPlaces.indexOf(name)), std::nullopt};
    }
    const QStringList parts = text.split(QLatin1Char(','));
    bool okX = false;
    bool okY = false;
    const double x = parts.size() == 2 ? parts[0].trimmed().toDouble(&okX) : 0;
    const double y = parts.size() == 2 ? parts[1].trimmed().toDouble(&okY) : 0;
    if (!okX || !okY || !(x >= 0 && x <= 1) || !(y >= 0 && y <= 1)) {
        return std::nullopt;
    }
    return Place{kBottomLeft, QPointF(x, y)};
}

QVariant stored(const char* key) {
    return QSettings().value(QLatin1String(key));
}

QString storedText(const char* key) {
    const QVariant value = stored(key);
    return value.typeId() == QMetaType::QByteArray ? QString::fromUtf8(value.toByteArray())
                                                   : value.toString();
}

// The model photo's date text as the window finds it: the photo's own date
// reads the first image's EXIF record, as for the preview.
QString modelText(const QString& model, const StampJob& job) {
    if (job.selectChannel != 0 && job.selectChannel != 1) {
        return job.customText;
    }
    ImageSource source(model);
    const std::optional<QDateTime> fileDate = PhotoDate::fileModificationDate(model);
    if (job.selectChannel == 1) {
        return PhotoDate::fileDateText(fileDate, job.gDateType, job.gTimeType,
                                       job.options.shiftSeconds)
            .dateTimeString;
    }
    return PhotoDate::photoDateText(
               source.dateTimeOriginal(), source.dateTimeDigitized(), fileDate, job.gDateType,
               job.gTimeType, {job.options.names ? model : QString(), job.options.shiftSeconds})
        .dateTimeString;
}

// The label on a preview of the model photo's own pixel size: sized by its
// date text and placed as the window's preset buttons (or a drag) would.
void placeOnModel(const QString& model, const Place& place, StampJob& job) {
    ImageSource source(model);
    // The label is placed on the model as the window shows it, upright or not.
    const int turn = job.options.upright ? source.orientation() : Orientation::kNormal;
    const QSize pixels = Orientation::uprightSize(source.maxPageSize(), turn);
    const QSizeF points = Orientation::uprightSize(source.pointSize(), turn);
    const QSizeF text = TextMetrics::measureStamp(modelText(model, job), job.font, job.options);
    const PreviewLayout::Size shown{static_cast<float>(pixels.width()),
                                    static_cast<float>(pixels.height())};
    const StampGeometry::StampArea area = PreviewLayout::stampArea(shown, shown, job.margin);
    const PreviewLayout::Size label = PreviewLayout::labelSize(
        {static_cast<float>(text.width()), static_cast<float>(text.height())}, shown,
        {static_cast<float>(points.width()), static_cast<float>(points.height())});
    const StampGeometry::TPosition origin =
        place.fraction
            ? PreviewLayout::fractionOrigin(place.fraction->x(), place.fraction->y(), area, label)
            : PreviewLayout::presetOrigin(place.preset, area, label);
    job.snapshot =
        StampGeometry::backupPositionAndSize(area, origin.x, origin.y, label.width, label.height);
    job.labelTextSize = text;
}

// Ctrl-C stops the run between photos, so no half-written file stays behind.
std::atomic<StampRun*> interruptible{nullptr};
extern "C" void interrupt(int) {
    if (StampRun* run = interruptible.load()) {
        run->cancel();
    }
}

}  // namespace

std::optional<QColor> StampCommand::parseColor(const QString& text) {
    static const QRegularExpression pattern(
        QStringLiteral("^#([0-9A-Fa-f]{2})([0-9A-Fa-f]{2})([0-9A-Fa-f]{2})([0-9A-Fa-f]{2})?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto byte = [&](int group) {
        return match.hasCaptured(group) ? match.captured(group).toInt(nullptr, 16) : 255;
    };
    return QColor(byte(1), byte(2), byte(3), byte(4));
}

void StampCommand::printUsage(QTextStream& stream) const {
    stream << "Usage: stampwise stamp [options] PATH... --output DIR\n"
              "\n"
              "Writes a copy of every photo into DIR under its own name, as a BMP image of the\n"
              "photo's pixel size (or in its own format with --keep-format) with its date\n"
              "drawn in, as the Stamp button does. A folder\n"
              "stands for the photo files directly inside it, as when it is opened in the\n"
              "window. The label is placed on the model photo as on its preview and carried\n"
              "over to every photo in proportion. Originals are never changed: a DIR that\n"
              "holds one of the photos is refused. Of photos sharing a file name only the\n"
              "first is written. Options not given take the choices saved by the window.\n"
              "\n"
              "  --output DIR          the folder to write into (must exist)\n"
              "  --source exif|file|text\n"
              "                        the photo's own date (EXIF, else the file date), the\n"
              "                        file's modification date, or --text (default: exif)\n"
              "  --text TEXT           the text to stamp on every photo (implies --source text)\n"
              "  --date-type 0..3      2014:03:05, 05-Mar-2014, 03/05/2014, March 05, 2014\n"
              "  --time-type 0..2      no time, 13:34:56, 01:34:56 PM\n"
              "  --font FAMILY         font family, regular unless --bold or --italic\n"
              "  --size POINTS         font size in points (a point is a pixel at 72 dpi)\n"
              "  --bold, --italic      bold or italic face\n"
              "  --color #RRGGBB[AA]   text colour, with alpha when given\n"
              "  --place PLACE         top-left, top-right, centre, bottom-left, bottom-right,\n"
              "                        or X,Y: fractions 0..1 of the label's free travel from\n"
              "                        the bottom left (default: bottom-left)\n"
              "  --margin              keep the stamp inside the centred 83% x 95% of a photo\n"
              "  --model PATH          the photo the label is placed on (default: the first\n"
              "                        photo that can be read)\n"
              "  --upright             turn photos by their orientation tag first\n"
              "  --keep-format         keep each photo's format and its EXIF, IPTC and XMP\n"
              "                        (JPEG at its own quality; PCX and BMP as BMP)\n"
              "  --outline, --shadow, --box\n"
              "                        a contrasting outline, a soft shadow or a translucent\n"
              "                        box behind the text\n"
              "  --shift [+|-][Nd]HH:MM[:SS]\n"
              "                        add this to every photo's date (a wrong camera clock)\n"
              "  --names               a photo without an EXIF date takes one from its file\n"
              "                        name (IMG_20140305_133456.jpg) before its file date\n"
              "  --plain               none of the options above unless given here (the\n"
              "                        window's saved options apply otherwise)\n"
              "  --jobs N              photos stamped at once (default: one per core)\n"
              "  --dry-run             say what would be written, write nothing\n"
              "  --help                this text\n"
              "\n"
              "Exit status: 0 when every photo was written, 1 when some were not, 2 for\n"
              "usage errors (also a missing output folder or one that holds an original).\n";
}

int StampCommand::usageError(const QString& message) {
    err_ << "stampwise stamp: " << message << "\n";
    err_.flush();
    return kUsageError;
}

int StampCommand::run(const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output("output", "", "DIR");
    const QCommandLineOption source("source", "", "KIND");
    const QCommandLineOption text("text", "", "TEXT");
    const QCommandLineOption dateType("date-type", "", "N");
    const QCommandLineOption timeType("time-type", "", "N");
    const QCommandLineOption fontFamily("font", "", "FAMILY");
    const QCommandLineOption size("size", "", "POINTS");
    const QCommandLineOption bold("bold");
    const QCommandLineOption italic("italic");
    const QCommandLineOption color("color", "", "COLOR");
    const QCommandLineOption place("place", "", "PLACE");
    const QCommandLineOption margin("margin");
    const QCommandLineOption model("model", "", "PATH");
    const QCommandLineOption jobs("jobs", "", "N");
    const QCommandLineOption dryRun("dry-run");
    const QCommandLineOption help("help");
    parser.addOptions({output, source, text, dateType, timeType, fontFamily, size, bold, italic,
                       color, place, margin, model, jobs, dryRun, help});
    const StampOptionFlags optionFlags(true);
    optionFlags.addTo(parser);
    if (!parser.parse(QStringList{QStringLiteral("stampwise-stamp")} + arguments)) {
        printUsage(err_);
        return usageError(parser.errorText());
    }
    if (parser.isSet(help)) {
        printUsage(out_);
        out_.flush();
        return 0;
    }
    if (parser.positionalArguments().isEmpty()) {
        printUsage(err_);
        return usageError(QStringLiteral("no photos named"));
    }

    StampJob job;
    job.gDateType = SettingValues::integerValue(storedText(SettingsKeys::kDateType));
    job.gTimeType = SettingValues::integerValue(storedText(SettingsKeys::kTimeType));
    if (parser.isSet(dateType)) {
        const auto value = integerIn(parser.value(dateType), 0, kMaxDateType);
        if (!value) {
            return usageError(QStringLiteral("--date-type takes 0 to 3"));
        }
        job.gDateType = *value;
    }
    if (parser.isSet(timeType)) {
        const auto value = integerIn(parser.value(timeType), 0, kMaxTimeType);
        if (!value) {
            return usageError(QStringLiteral("--time-type takes 0 to 2"));
        }
        job.gTimeType = *value;
    }

    const QString kind = parser.isSet(source) ? parser.value(source)
                         : parser.isSet(text) ? QStringLiteral("text")
                                              : QStringLiteral("exif");
    const QStringList kinds{QStringLiteral("exif"), QStringLiteral("file"), QStringLiteral("text")};
    if (!kinds.contains(kind)) {
        return usageError(QStringLiteral("--source takes exif, file or text"));
    }
    job.selectChannel = kinds.indexOf(kind);
    if (parser.isSet(text) != (job.selectChannel == 2)) {
        return usageError(QStringLiteral("--text and --source text go together"));
    }
    job.customText = parser.value(text);

    job.font = SettingValues::decodeFont(stored(SettingsKeys::kFont).toByteArray())
                   .value_or(SettingValues::defaultStampFont());
    if (parser.isSet(fontFamily)) {
        const double points = job.font.pointSizeF();
        job.font = QFont(parser.value(fontFamily));
        job.font.setPointSizeF(points);
    }
    if (parser.isSet(size)) {
        bool ok = false;
        const double points = parser.value(size).toDouble(&ok);
        if (!ok || !(points > 0 && points <= kMaxFontSize)) {
            return usageError(QStringLiteral("--size takes a number of points up to 4096"));
        }
        job.font.setPointSizeF(points);
    }
    if (parser.isSet(bold)) {
        job.font.setBold(true);
    }
    if (parser.isSet(italic)) {
        job.font.setItalic(true);
    }
    const QString family = QFontInfo(job.font).family();
    if (family.compare(job.font.family(), Qt::CaseInsensitive) != 0) {
        err_ << "stampwise stamp: font \"" << job.font.family() << "\" is not installed; using \""
             << family << "\" instead\n";
        err_.flush();
    }
    job.color = SettingValues::decodeColor(stored(SettingsKeys::kColor).toByteArray())
                    .value_or(QColor(Qt::red));
    if (parser.isSet(color)) {
        const std::optional<QColor> value = parseColor(parser.value(color));
        if (!value) {
            return usageError(QStringLiteral("--color takes #RRGGBB or #RRGGBBAA"));
        }
        job.color = *value;
    }
    const std::optional<Place> where =
        parser.isSet(place) ? parsePlace(parser.value(place)) : Place{};
    if (!where) {
        return usageError(
            QStringLiteral("--place takes top-left, top-right, centre, bottom-left, "
                           "bottom-right or X,Y with X and Y from 0 to 1"));
    }
    job.margin = parser.isSet(margin);
    const std::optional<StampOptions> options = optionFlags.read(parser);
    if (!options) {
        return usageError(StampOptionFlags::kShiftUsage);
    }
    job.options = *options;
    int workers = 0;
    if (parser.isSet(jobs)) {
        const auto value = integerIn(parser.value(jobs), 0, 4096);
        if (!value) {
            return usageError(QStringLiteral("--jobs takes a number of photos at once"));
        }
        workers = static_cast<int>(*value);
    }
    job.dryRun = parser.isSet(dryRun);

    if (!parser.isSet(output) || parser.value(output).isEmpty()) {
        return usageError(QStringLiteral("no output folder: give --output DIR"));
    }
    job.outputFolder = parser.value(output);
    const QFileInfo folder(job.outputFolder);
    if (!folder.exists()) {
        return usageError(QStringLiteral("output folder %1 does not exist").arg(job.outputFolder));
    }
    if (!folder.isDir()) {
        return usageError(QStringLiteral("output %1 is not a folder").arg(job.outputFolder));
    }

    // Files named one by one that are no photo type are reported, not stamped.
    QStringList leftOut;
    const QStringList types = ImageAsset::fileTypes();
    for (const QString& path : parser.positionalArguments()) {
        const QFileInfo info(path);
        if (info.isDir()) {
            job.photos << InfoCommand::expand(path);
        } else if (types.contains(info.suffix())) {
            job.photos << info.absoluteFilePath();
        } else {
            leftOut << info.absoluteFilePath();
        }
    }

    QString modelPath = parser.value(model);
    if (!modelPath.isEmpty() && !ImageSource(modelPath).isReadable()) {
        return usageError(QStringLiteral("cannot read the model photo %1").arg(modelPath));
    }
    for (qsizetype i = 0; modelPath.isEmpty() && i < job.photos.size(); ++i) {
        if (ImageSource(job.photos[i]).isReadable()) {
            modelPath = job.photos[i];
        }
    }
    if (!modelPath.isEmpty()) {
        placeOnModel(modelPath, *where, job);
    }
    return stamp(job, workers, leftOut);
}

int StampCommand::stamp(const StampJob& job, int jobs, const QStringList& leftOut) {
    StampRun run(job);
    const QString refusal = run.refusal();
    if (!refusal.isEmpty()) {
        return usageError(refusal);
    }
    const qsizetype total = job.photos.size() + leftOut.size();
    qsizetype written = 0;
    qsizetype done = 0;
    const auto print = [&](const StampOutcome& o) {
        if (!o.written) {
            out_ << o.source << ": skipped: " << o.reason << "\n";
            return;
        }
        ++written;
        out_ << o.source << " -> " << o.output;
        if (o.text.isEmpty()) {
            out_ << " (no date text: "
                 << (o.reason.isEmpty() ? QStringLiteral("without a stamp") : o.reason) << ")\n";
        } else {
            out_ << " \"" << o.text << "\"\n";
        }
        if (!o.note.isEmpty()) {
            out_ << "  " << o.note << "\n";
        }
    };
    for (const QString& path : leftOut) {
        out_ << path << ": skipped: not a photo file type\n";
    }
    // Lines in the photos' order, each as soon as those before it are done.
    QMap<qsizetype, StampOutcome> waiting;
    qsizetype nextLine = 0;
    const auto onOutcome = [&](const StampOutcome& outcome) {
        ++done;
        waiting.insert(outcome.index, outcome);
        if (progress_) {
            err_ << "\r\x1b[K";
            err_.flush();
        }
        for (auto it = waiting.find(nextLine); it != waiting.end(); it = waiting.find(nextLine)) {
            print(*it);
            waiting.erase(it);
            ++nextLine;
        }
        out_.flush();
        if (progress_) {
            err_ << "[" << done << "/" << job.photos.size() << "] "
                 << QFileInfo(outcome.source).fileName();
            err_.flush();
        }
    };

    interruptible.store(&run);
    const auto previousInt = std::signal(SIGINT, interrupt);
    const auto previousTerm = std::signal(SIGTERM, interrupt);
    run.run(jobs, onOutcome);
    std::signal(SIGINT, previousInt);
    std::signal(SIGTERM, previousTerm);
    interruptible.store(nullptr);

    if (progress_) {
        err_ << "\r\x1b[K";
        err_.flush();
    }
    for (const StampOutcome& outcome : std::as_const(waiting)) {
        print(outcome);
    }
    const QString folder = job.outputFolder;
    if (run.cancelled() && done < job.photos.size()) {
        out_ << "Cancelled: " << written << " of " << total << " photos written into " << folder
             << "\n";
    } else if (job.dryRun) {
        out_ << "Dry run: " << written << " of " << total << " photos would be written into "
             << folder << "; nothing was written\n";
    } else {
        out_ << written << " of " << total << " photos written into " << folder << "\n";
    }
    out_.flush();
    return written == total ? 0 : kSomeSkipped;
}
