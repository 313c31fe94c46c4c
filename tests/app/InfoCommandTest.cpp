#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTest>

#include "TestRegistry.h"
#include "app/InfoCommand.h"
#include "common/Sandbox.h"

namespace {

// The command's exit status, standard output and standard error.
std::tuple<int, QString, QString> runInfo(const QStringList& arguments) {
    QString out, err;
    QTextStream outStream(&out), errStream(&err);
    const int status = InfoCommand(outStream, errStream).run(arguments);
    outStream.flush();
    errStream.flush();
    return {status, out, err};
}

}  // namespace

class InfoCommandTest : public QObject {
    Q_OBJECT
  private:
    Sandbox dir_;
    QString pentax_;

  private slots:
    void initTestCase() {
        pentax_ = QDir(TestRegistry::photosDir()).filePath("cameras/Pentax_K10D.jpg");
        dir_.mkdir("folder");
        for (const char* name : {"folder/broken.png", "folder/mixed.Jpg", "folder/notes.txt"}) {
            QVERIFY(!dir_.write(name, "not an image\n").isEmpty());
        }
    }

    void usage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("no path") << QStringList{"--json"} << 2;
        QTest::newRow("date type out of range") << QStringList{"--date-type", "4", "x.jpg"} << 2;
        QTest::newRow("time type not a number") << QStringList{"--time-type", "one", "x.jpg"} << 2;
        QTest::newRow("unknown option") << QStringList{"--size", "x.jpg"} << 2;
        QTest::newRow("help") << QStringList{"--help"} << 0;
        QTest::newRow("missing file is no usage error") << QStringList{"/nonexistent/x.jpg"} << 0;
    }
    void usage() {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        const auto [exitStatus, out, err] = runInfo(arguments);
        QCOMPARE(exitStatus, status);
        QCOMPARE(err.contains("Usage") || err.contains("takes"), status != 0);
    }

    void folderAsJson() {
        if (!QFileInfo::exists(pentax_)) {
            QSKIP("no camera photos beside the repository");
        }
        QVERIFY(QFile::copy(pentax_, dir_.path("folder/pentax.jpg")));
        const auto [status, out, err] =
            runInfo({"--json", "--date-type", "1", "--time-type", "1", dir_.path("folder")});
        QCOMPARE(status, 0);
        // mixed.Jpg is listed, but its extension is not an image type as written.
        const QJsonArray records = QJsonDocument::fromJson(out.toUtf8()).array();
        QCOMPARE(records.size(), 2);
        const bool pentaxFirst = records[0]["path"].toString().endsWith("pentax.jpg");
        const QJsonObject photo = records[pentaxFirst ? 0 : 1].toObject();
        const QJsonObject broken = records[pentaxFirst ? 1 : 0].toObject();
        QCOMPARE(photo["readable"].toBool(), true);
        QCOMPARE(photo["pixelWidth"].toInt(), 100);
        QCOMPARE(photo["dpi"].toDouble(), 350.0);
        QCOMPARE(photo["DateTimeOriginal"].toString(), "2008:05:04 16:47:24");
        QCOMPARE(photo["dateText"].toString(), "04-May-2008 16:47:24");
        QVERIFY(photo["fileDate"].isString());
        QCOMPARE(broken["readable"].toBool(), false);
        QCOMPARE(broken["pixelWidth"].toInt(), 0);
        QVERIFY(broken["pointWidth"].isNull());
        QVERIFY(broken["DateTimeOriginal"].isNull());
    }

    // Without options the layout last saved is used; one that writes nothing is no date text.
    void savedTypesAreTheDefault_data() {
        QTest::addColumn<int>("dateType");
        QTest::addColumn<QString>("expected");
        QTest::newRow("month/day/year, 12-hour") << 2 << "dateText=\"05/04/2008 04:47:24 PM\"";
        QTest::newRow("no such layout") << 9 << "dateText=none";
    }
    void savedTypesAreTheDefault() {
        QFETCH(int, dateType);
        QFETCH(QString, expected);
        PhotoRecipe recipe;
        recipe.dateTimeOriginal = "2008:05:04 16:47:24";
        const QString photo = dir_.photo("dated.jpg", recipe);
        QSettings settings;
        settings.setValue("gDateType", dateType);
        settings.setValue("gTimeType", "2");
        settings.sync();
        const auto [status, out, err] = runInfo({photo});
        settings.remove("gDateType");
        settings.remove("gTimeType");
        QCOMPARE(status, 0);
        QCOMPARE(out.count('\n'), 1);
        QVERIFY2(out.trimmed().endsWith(expected), qPrintable(out));
    }

    // The date text follows the names and the shift, and says where its date came from.
    void dateSource_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("expected");
        QTest::newRow("name") << "IMG_20140305_133456.jpg" << QStringList{"--names"}
                              << "dateSource=\"file name\"\tdateText=\"2014:03:05 13:34:56\"";
        QTest::newRow("shifted exif")
            << "dated.jpg" << QStringList{"--names", "--shift", "-1d00:00"}
            << "dateSource=\"DateTimeOriginal\"\tdateText=\"2008:05:03 16:47:24\"";
        QTest::newRow("names off") << "IMG_20140305_133456.jpg" << QStringList{"--plain"}
                                   << "dateSource=\"file date\"\tdateText=";
    }
    void dateSource() {
        QFETCH(QString, name);
        QFETCH(QStringList, options);
        QFETCH(QString, expected);
        PhotoRecipe recipe;
        if (name == "dated.jpg") {
            recipe.dateTimeOriginal = "2008:05:04 16:47:24";
        }
        const QString photo = dir_.photo(name, recipe);
        const auto [status, out, err] =
            runInfo(options + QStringList{"--date-type", "0", "--time-type", "1", photo});
        QCOMPARE(status, 0);
        QVERIFY2(out.contains(expected), qPrintable(out));
    }
};

SW_TEST_CLASS(InfoCommandTest)
#include "InfoCommandTest.moc"
