#include <QDir>
#include <QFile>
#include <QTest>

#include "TestRegistry.h"
#include "app/StampCommand.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "stamp/PreviewLayout.h"
#include "stamp/TextMetrics.h"

class StampCommandTest : public QObject {
    Q_OBJECT
    Sandbox dir_;

    // "@name" stands for the sandbox's file of that name.
    QStringList resolved(const QStringList& arguments) const {
        QStringList result;
        for (const QString& argument : arguments) {
            result << (argument.startsWith('@') ? dir_.path(argument.mid(1)) : argument);
        }
        return result;
    }

    // The command's exit status and everything it printed.
    std::pair<int, QString> stamp(const QStringList& arguments) const {
        QString printed;
        QTextStream stream(&printed);
        const int status = StampCommand(stream, stream).run(resolved(arguments));
        stream.flush();
        return {status, printed};
    }

  private slots:
    void initTestCase() {
        dir_.mkdir("in");
        QFile a(dir_.photo("in/a.jpg", StampRuns::whitePhoto({400, 300})));
        QVERIFY(a.open(QIODevice::ReadWrite) &&
                a.setFileTime(QDateTime(QDate(2011, 7, 9), QTime(8, 7, 6)),
                              QFileDevice::FileModificationTime));
        dir_.photo("in/b.jpg", StampRuns::whitePhoto({1200, 900}, 300));
        PhotoRecipe undated = StampRuns::whitePhoto({400, 300});
        undated.dateTimeOriginal.reset();
        dir_.photo("IMG_20140305_133456.jpg", undated);
        PhotoRecipe late = StampRuns::whitePhoto({400, 300});
        late.dateTimeOriginal = "9999:12:31 23:00:00";
        dir_.photo("late.jpg", late);
        dir_.write("broken.png", "not a photo");
        dir_.write("notes.txt", "not a photo");
    }
    void init() {
        for (const char* folder : {"out", "engine"}) {
            QDir(dir_.path(folder)).removeRecursively();
            dir_.mkdir(folder);
        }
    }

    // Exit 0 only when every photo is written, 1 when some are not, 2 for usage
    // errors, which write nothing.
    void exitStatus_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("files");
        QTest::addColumn<QString>("says");
        const QStringList out{"--output", "@out"};
        QTest::newRow("folder, all written") << QStringList{"@in"} + out << 0 << 2 << "b.jpg";
        QTest::newRow("unreadable photo")
            << QStringList{"@in", "@broken.png"} + out << 1 << 2 << "cannot be read";
        QTest::newRow("no photo type")
            << QStringList{"@in/a.jpg", "@notes.txt"} + out << 1 << 1 << "not a photo file type";
        // The photo's own date, the file date, or the text as typed, whatever its
        // script or length.
        const QStringList dated{"@in/a.jpg", "--date-type", "1", "--time-type", "1"};
        const QString mixed = QStringLiteral("📷 שלום 2014 ") + QString(1990, QChar(0x0645));
        QTest::newRow("photo date") << dated + out << 0 << 1 << "\"05-Mar-2014 13:34:56\"";
        QTest::newRow("file date") << dated + QStringList{"--source", "file"} + out << 0 << 1
                                   << "\"09-Jul-2011 08:07:06\"";
        QTest::newRow("shifted photo date") << dated + QStringList{"--shift", "+10:30"} + out << 0
                                            << 1 << "\"06-Mar-2014 00:04:56\"";
        const QStringList named{"@IMG_20140305_133456.jpg", "--date-type", "1", "--time-type", "1"};
        QTest::newRow("date from the name")
            << named + QStringList{"--names"} + out << 0 << 1 << "\"05-Mar-2014 13:34:56\"";
        QTest::newRow("shifted past 9999")
            << QStringList{"@late.jpg", "--shift", "+02:00"} + out << 0 << 1 << "out of range";
        QTest::newRow("typed, 2000 characters")
            << QStringList{"@in/a.jpg", "--text", mixed} + out << 0 << 1 << '"' + mixed + '"';
        QTest::newRow("dry run") << QStringList{"@in", "--dry-run"} + out << 0 << 0
                                 << "nothing was written";
        QTest::newRow("missing font")
            << QStringList{"@in/a.jpg", "--font", "No Such Face"} + out << 0 << 1 << "instead";
        QTest::newRow("help") << QStringList{"--help"} << 0 << 0 << "--dry-run";
        QTest::newRow("no output folder") << QStringList{"@in"} << 2 << 0 << "--output";
        QTest::newRow("not a shift")
            << QStringList{"@in", "--shift", "+1:75"} + out << 2 << 0 << "--shift takes";
        QTest::newRow("output folder missing")
            << QStringList{"@in", "--output", "@gone"} << 2 << 0 << "does not exist";
        QTest::newRow("output is a file")
            << QStringList{"@in", "--output", "@notes.txt"} << 2 << 0 << "not a folder";
        QTest::newRow("output holds the originals")
            << QStringList{"@in/a.jpg", "--output", "@out/../in/"} << 2 << 0 << "original";
        QTest::newRow("bad place")
            << QStringList{"@in", "--place", "1.5,0"} + out << 2 << 0 << "--place";
        QTest::newRow("bad colour")
            << QStringList{"@in", "--color", "#12345"} + out << 2 << 0 << "--color";
        QTest::newRow("text without its source")
            << QStringList{"@in", "--source", "exif", "--text", "x"} + out << 2 << 0 << "--text";
        QTest::newRow("no photos") << out << 2 << 0 << "no photos";
    }
    void exitStatus() {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(int, files);
        QFETCH(QString, says);
        const auto [exitStatus, printed] = stamp(arguments);
        QVERIFY2(printed.contains(says), qPrintable(printed));
        QCOMPARE(exitStatus, status);
        QCOMPARE(QDir(dir_.path("out")).entryList(QDir::Files | QDir::Hidden).size(), files);
    }

    // Every option reaches the engine: with them the command writes the very files
    // the engine writes for the label at those fractions on a 400 x 300 model, a
    // label that holds the room of the legibility options too.
    void sameFilesAsEngine_data() {
        QTest::addColumn<QStringList>("legibility");
        QTest::addColumn<StampOptions>("stampOptions");
        QTest::newRow("plain") << QStringList{} << StampOptions{};
        QTest::newRow("outline, shadow, box")
            << QStringList{"--outline", "--shadow", "--box"}
            << StampOptions{.outline = true, .shadow = true, .box = true};
    }
    void sameFilesAsEngine() {
        QFETCH(QStringList, legibility);
        QFETCH(StampOptions, stampOptions);
        const QStringList options{"--text",  "Stamp 2014", "--font",  "DejaVu Sans",
                                  "--size",  "20",         "--color", "#10204080",
                                  "--place", "0.25,0.75",  "--margin"};
        QCOMPARE(
            stamp(QStringList{"@in/a.jpg", "@in/b.jpg", "--output", "@out"} + options + legibility)
                .first,
            0);
        StampJob job = StampRuns::job({dir_.path("in/a.jpg"), dir_.path("in/b.jpg")},
                                      dir_.path("engine"), {}, true);
        job.color = QColor(0x10, 0x20, 0x40, 0x80);
        job.options = stampOptions;
        job.labelTextSize = TextMetrics::measureStamp(job.customText, job.font, stampOptions);
        const PreviewLayout::Size shown{400, 300};
        const StampGeometry::StampArea area = PreviewLayout::stampArea(shown, shown, true);
        const PreviewLayout::Size label = PreviewLayout::labelSize(
            {float(job.labelTextSize.width()), float(job.labelTextSize.height())}, shown, shown);
        const StampGeometry::TPosition at = PreviewLayout::fractionOrigin(0.25, 0.75, area, label);
        job.snapshot =
            StampGeometry::backupPositionAndSize(area, at.x, at.y, label.width, label.height);
        QCOMPARE(StampRuns::run(job).size(), 2);
        for (const char* name : {"a.jpg", "b.jpg"}) {
            const QByteArray written = StampRuns::fileBytes(dir_.path("out/") + name);
            QVERIFY(written.startsWith("BM"));
            QVERIFY2(written == StampRuns::fileBytes(dir_.path("engine/") + name), name);
        }
    }
};
SW_TEST_CLASS(StampCommandTest)

#include "StampCommandTest.moc"
