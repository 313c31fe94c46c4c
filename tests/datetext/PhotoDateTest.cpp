#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>
#include <ctime>

#include "TestRegistry.h"
#include "datetext/PhotoDate.h"

namespace {
std::optional<QString> optionalText(const QVariant& value) {
    return value.isValid() ? std::optional<QString>(value.toString()) : std::nullopt;
}
QDateTime local(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::LocalTime);
}
}  // namespace

class PhotoDateTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase() {
        qputenv("TZ", "Europe/Berlin");
        qputenv("LANG", "en_US.UTF-8");
        qputenv("LC_ALL", "en_US.UTF-8");
        tzset();
    }

    void choosesSource_data() {
        QTest::addColumn<QVariant>("original");
        QTest::addColumn<QVariant>("digitized");
        QTest::addColumn<QDateTime>("fileDate");
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("sourceText");
        QTest::addColumn<QString>("dateTimeString");
        const QVariant none;
        const QDateTime afternoon = local(2020, 6, 1, 15, 4, 5);
        const QDateTime morning = local(2020, 6, 1, 9, 4, 5);
        QTest::newRow("original") << QVariant("2014:03:05 13:34:56")
                                  << QVariant("2015:01:01 10:00:00") << afternoon << qint64(1)
                                  << qint64(1) << "2014:03:05 13:34:56"
                                  << "05-Mar-2014 13:34:56";
        QTest::newRow("original, date only") << QVariant("2014:03:05 13:34:56") << none << afternoon
                                             << qint64(2) << qint64(0) << "2014:03:05 13:34:56"
                                             << "03/05/2014";
        QTest::newRow("digitized only") << none << QVariant("2015:01:01 10:00:00") << afternoon
                                        << qint64(0) << qint64(1) << "2015:01:01 10:00:00"
                                        << "2015:01:01 10:00:00";
        QTest::newRow("null original skips digitized")
            << QVariant("0000:00:00 00:00:00") << QVariant("2015:01:01 10:00:00") << afternoon
            << qint64(0) << qint64(1) << "2020:06:01 15:04:05"
            << "2020:06:01 15:04:05";
        QTest::newRow("null digitized") << none << QVariant("0000:00:00 00:00:00") << afternoon
                                        << qint64(3) << qint64(1) << "June 01, 2020 15:04:05"
                                        << "June 01, 2020 15:04:05";
        QTest::newRow("no exif, 12-hour afternoon")
            << none << none << afternoon << qint64(2) << qint64(2) << "06/01/2020 03:04:05 PM"
            << "06/01/2020 03:04:05 PM";
        QTest::newRow("no exif, 12-hour morning")
            << none << none << morning << qint64(2) << qint64(2) << "06/01/2020 09:04:05 AM"
            << "";
        QTest::newRow("no exif, date only")
            << none << none << afternoon << qint64(0) << qint64(0) << "2020:06:01"
            << "";
        QTest::newRow("no exif, no file date")
            << none << none << QDateTime() << qint64(0) << qint64(1) << ""
            << "";
        QTest::newRow("unreadable original is kept")
            << QVariant("sometime in May") << QVariant("2015:01:01 10:00:00") << afternoon
            << qint64(0) << qint64(1) << "sometime in May"
            << "";
        QTest::newRow("type out of range") << QVariant("2014:03:05 13:34:56") << none << afternoon
                                           << qint64(4) << qint64(1) << "2014:03:05 13:34:56"
                                           << "";
    }
    void choosesSource() {
        QFETCH(QVariant, original);
        QFETCH(QVariant, digitized);
        QFETCH(QDateTime, fileDate);
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        QFETCH(QString, sourceText);
        QFETCH(QString, dateTimeString);
        const std::optional<QDateTime> file =
            fileDate.isValid() ? std::optional<QDateTime>(fileDate) : std::nullopt;
        const PhotoDate::Result result = PhotoDate::photoDateText(
            optionalText(original), optionalText(digitized), file, dateType, timeType);
        QCOMPARE(result.sourceText, sourceText);
        QCOMPARE(result.dateTimeString, dateTimeString);
        QCOMPARE(result.date.has_value(), !dateTimeString.isEmpty() || dateType > 3);
    }

    void readsFileModificationDate() {
        QTemporaryDir dir;
        const QString path = dir.filePath("IMG_0001.JPG");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("x");
        file.flush();
        const QDateTime stamp = local(2019, 11, 2, 8, 15, 30);
        QVERIFY(file.setFileTime(stamp, QFileDevice::FileModificationTime));
        file.close();
        const std::optional<QDateTime> date = PhotoDate::fileModificationDate(path);
        QVERIFY(date.has_value());
        QCOMPARE(date->toSecsSinceEpoch(), stamp.toSecsSinceEpoch());
        QVERIFY(!PhotoDate::fileModificationDate(dir.filePath("missing.jpg")));
        QVERIFY(!PhotoDate::fileModificationDate(QString()));
    }
};
SW_TEST_CLASS(PhotoDateTest)

#include "PhotoDateTest.moc"
