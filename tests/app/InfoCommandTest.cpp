#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "TestRegistry.h"
#include "app/InfoCommand.h"

namespace {

struct Run {
    int status = 0;
    QString out;
    QString err;
};

Run runInfo(const QStringList& arguments) {
    Run run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    run.status = InfoCommand(out, err).run(arguments);
    out.flush();
    err.flush();
    return run;
}

}  // namespace

class InfoCommandTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir dir_;
    QString pentax_;

  private slots:
    void initTestCase() {
        const QString photos = TestRegistry::photosDir();
        pentax_ = QDir(photos).filePath("cameras/Pentax_K10D.jpg");
        QDir(dir_.path()).mkdir("folder");
        if (QFileInfo::exists(pentax_)) {
            QVERIFY(QFile::copy(pentax_, dir_.filePath("folder/pentax.jpg")));
        }
        for (const char* name : {"folder/broken.png", "folder/mixed.Jpg", "folder/notes.txt"}) {
            QFile file(dir_.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("not an image\n");
        }
    }

    void usage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("no path") << QStringList{} << 2;
        QTest::newRow("only options") << QStringList{"--json"} << 2;
        QTest::newRow("date type out of range") << QStringList{"--date-type", "4", "x.jpg"} << 2;
        QTest::newRow("time type not a number") << QStringList{"--time-type", "one", "x.jpg"} << 2;
        QTest::newRow("unknown option") << QStringList{"--size", "x.jpg"} << 2;
        QTest::newRow("help") << QStringList{"--help"} << 0;
        QTest::newRow("missing file is no usage error") << QStringList{"/nonexistent/x.jpg"} << 0;
    }
    void usage() {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        const Run run = runInfo(arguments);
        QCOMPARE(run.status, status);
        QCOMPARE(run.err.contains("Usage") || run.err.contains("takes"), status != 0);
    }

    void folderAsJson() {
        if (!QFileInfo::exists(pentax_)) {
            QSKIP("no camera photos beside the repository");
        }
        const Run run =
            runInfo({"--json", "--date-type", "1", "--time-type", "1", dir_.filePath("folder")});
        QCOMPARE(run.status, 0);
        const QJsonArray records = QJsonDocument::fromJson(run.out.toUtf8()).array();
        // mixed.Jpg is listed but its extension is not an exact image type; notes.txt is not
        // listed.
        QCOMPARE(records.size(), 2);
        QJsonObject photo, broken;
        for (const QJsonValue& value : records) {
            const QJsonObject record = value.toObject();
            (record["path"].toString().endsWith("pentax.jpg") ? photo : broken) = record;
        }
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

    void savedTypesAreTheDefault() {
        if (!QFileInfo::exists(pentax_)) {
            QSKIP("no camera photos beside the repository");
        }
        QSettings settings;
        settings.setValue("gDateType", "2");
        settings.setValue("gTimeType", "2");
        settings.sync();
        const Run run = runInfo({pentax_});
        settings.remove("gDateType");
        settings.remove("gTimeType");
        QCOMPARE(run.status, 0);
        QCOMPARE(run.out.count('\n'), 1);
        QVERIFY2(run.out.contains("dateText=\"05/04/2008 04:47:24 PM\""), qPrintable(run.out));
    }
};

SW_TEST_CLASS(InfoCommandTest)
#include "InfoCommandTest.moc"
