#include <QDateTime>
#include <QFile>
#include <QTest>
#include <ctime>

#include <unicode/locid.h>

#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "datetext/DateShift.h"
#include "datetext/DateText.h"
#include "datetext/PhotoDate.h"

class DateTextTest : public QObject {
    Q_OBJECT
  private slots:
    // ICU caches the zone on first use, so it is pinned before any call. ICU's
    // own default locale is made German, as LC_MESSAGES=de_DE would make it, so
    // that English texts show the time locale is the one used.
    void initTestCase() {
        qputenv("TZ", "Europe/Berlin");
        tzset();
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale::getGermany(), status);
        cleanup();
    }
    void cleanup() {
        qputenv("LANG", "en_US.UTF-8");
        qputenv("LC_ALL", "en_US.UTF-8");
        qunsetenv("LC_TIME");
    }

    // The first of LC_ALL, LC_TIME and LANG that is set.
    void followsTimeLocale_data() {
        QTest::addColumn<QByteArray>("lcAll");  // null: unset
        QTest::addColumn<QByteArray>("lcTime");
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<QString>("expected");
        const QByteArray unset, de = "de_DE.UTF-8", en = "en_US.UTF-8";
        const QString german = "05-März-2014 01:34:56 PM", english = "05-Mar-2014 01:34:56 PM";
        QTest::newRow("LC_TIME over LANG") << unset << de << en << german;
        QTest::newRow("LC_ALL over LC_TIME") << en << de << de << english;
        QTest::newRow("LANG alone") << unset << unset << de << german;
        QTest::newRow("C.UTF-8") << unset << QByteArray("C.UTF-8") << de << english;
        QTest::newRow("POSIX") << QByteArray("POSIX") << de << de << english;
        QTest::newRow("none") << unset << unset << unset << english;
    }
    void followsTimeLocale() {
        QFETCH(QByteArray, lcAll);
        QFETCH(QByteArray, lcTime);
        QFETCH(QByteArray, lang);
        for (const auto& [name, value] :
             {std::pair{"LC_ALL", lcAll}, {"LC_TIME", lcTime}, {"LANG", lang}}) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
        const QDateTime t(QDate(2014, 3, 5), QTime(13, 34, 56));
        const QString text = DateText::stringFromDate(t, 1, 2);
        QTEST(text, "expected");
        QCOMPARE(DateText::dateFromString(text), t);
    }

    void writes_data() {
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("expected");
        const char* const expected[4][3] = {
            {"2014:03:05", "2014:03:05 13:34:56", "2014:03:05 01:34:56 PM"},
            {"05-Mar-2014", "05-Mar-2014 13:34:56", "05-Mar-2014 01:34:56 PM"},
            {"03/05/2014", "03/05/2014 13:34:56", "03/05/2014 01:34:56 PM"},
            {"March 05, 2014", "March 05, 2014 13:34:56", "March 05, 2014 01:34:56 PM"}};
        for (qint64 d = 0; d < 4; ++d) {
            for (qint64 t = 0; t < 3; ++t) {
                QTest::addRow("%lld/%lld", d, t) << d << t << QString(expected[d][t]);
            }
        }
        QTest::newRow("time type 3") << qint64(0) << qint64(3) << "";
        QTest::newRow("date type -1") << qint64(-1) << qint64(0) << "";
    }
    void writes() {
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        const QDateTime t(QDate(2014, 3, 5), QTime(13, 34, 56));
        QTEST(DateText::stringFromDate(t, dateType, timeType), "expected");
        QVERIFY(DateText::stringFromDate(std::nullopt, dateType, timeType).isEmpty());
    }

    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected");
        QTest::newRow("PM, hour 13 kept")
            << "03/05/2014 13:34:56 PM" << QDateTime(QDate(2014, 3, 5), QTime(13, 34, 56));
        QTest::newRow("pm is case-sensitive") << "03/05/2014 01:34:56 pm" << QDateTime();
        QTest::newRow("hour skipped by summer time") << "2021:03:28 02:30:00" << QDateTime();
    }
    void reads() {
        QFETCH(QString, text);
        QTEST(DateText::dateFromString(text).value_or(QDateTime()), "expected");
    }

    // Every layout with a time reads back what it wrote, at every hour of days that
    // include both summer-time changes, except morning 12-hour texts and long month names.
    void readsBackWhatItWrote() {
        for (int layout = 0; layout < 8; ++layout) {
            const qint64 dateType = layout / 2, timeType = 1 + layout % 2;
            for (int month = 1; month <= 12; ++month) {
                for (int hour = 0; hour < 24; ++hour) {
                    const QDateTime written(QDate(2021, month, 28), QTime(hour, 7, 9));
                    if (!written.isValid()) {
                        continue;  // the hour skipped in March
                    }
                    const QString text = DateText::stringFromDate(written, dateType, timeType);
                    const bool refused =
                        (timeType == 2 && hour < 12) ||
                        (dateType == 3 && QLocale::c().monthName(month).size() >= 9);
                    const std::optional<QDateTime> read = DateText::dateFromString(text);
                    QVERIFY2(read.has_value() != refused, qPrintable(text));
                    QVERIFY2(!read || *read == written, qPrintable(text));
                }
            }
        }
    }
};
SW_TEST_CLASS(DateTextTest)

class PhotoDateTest : public QObject {
    Q_OBJECT
  private slots:
    // EXIF DateTimeOriginal, else DateTimeDigitized, else the name, else the file
    // date; and where the shifted date lands.
    void adjusts_data() {
        QTest::addColumn<QString>("original");
        QTest::addColumn<QString>("digitized");
        QTest::addColumn<QString>("name");  // empty: names off
        QTest::addColumn<QString>("shift");
        QTest::addColumn<QString>("dateTimeString");
        QTest::addColumn<QString>("source");
        const QString none, name = "/p/IMG_20140305_133456.jpg", file = "file date";
        QTest::newRow("midnight, month end") << "2014:02:28 23:30:00" << none << none << "+01:00"
                                             << "2014:03:01 00:30:00"
                                             << "DateTimeOriginal";
        QTest::newRow("leap year") << "2016:02:28 23:30:00" << none << none << "+01:00"
                                   << "2016:02:29 00:30:00"
                                   << "DateTimeOriginal";
        QTest::newRow("back across a year") << none << "2015:01:01 00:15:00" << none << "-00:30"
                                            << "2014:12:31 23:45:00"
                                            << "DateTimeDigitized";
        QTest::newRow("null original skips digitized") << "0000:00:00 00:00:00"
                                                       << "2015:01:01 10:00:00" << none << ""
                                                       << "2020:06:01 15:04:05" << file;
        QTest::newRow("exif before name") << "2015:01:01 10:00:00" << none << name << ""
                                          << "2015:01:01 10:00:00"
                                          << "DateTimeOriginal";
        QTest::newRow("name before file date") << none << none << name << ""
                                               << "2014:03:05 13:34:56"
                                               << "file name";
        QTest::newRow("null exif, name") << "0000:00:00 00:00:00" << none << name << "+1d00:00"
                                         << "2014:03:06 13:34:56"
                                         << "file name";
        QTest::newRow("date-only name keeps its day") << none << none << "IMG-20140305-WA0001.jpg"
                                                      << "-11:00"
                                                      << "2014:03:05"
                                                      << "file name";
        QTest::newRow("name the clock skipped") << none << none << "IMG_20140330_023000.jpg"
                                                << ""
                                                << "2020:06:01 15:04:05" << file;
        QTest::newRow("name without date") << none << none << "IMG_0001.jpg"
                                           << ""
                                           << "2020:06:01 15:04:05" << file;
        QTest::newRow("shifted file date") << none << none << none << "-2d00:00"
                                           << "2020:05:30 15:04:05" << file;
        QTest::newRow("past 9999") << "9999:12:31 23:00:00" << none << none << "+02:00"
                                   << ""
                                   << "DateTimeOriginal";
    }
    void adjusts() {
        QFETCH(QString, original);
        QFETCH(QString, digitized);
        QFETCH(QString, name);
        QFETCH(QString, shift);
        QFETCH(QString, dateTimeString);
        const auto text = [](const QString& s) {
            return s.isNull() ? std::nullopt : std::optional<QString>(s);
        };
        const QDateTime fileDate(QDate(2020, 6, 1), QTime(15, 4, 5));
        const PhotoDate::Result result =
            PhotoDate::photoDateText(text(original), text(digitized), fileDate, 0, 1,
                                     {name, DateShift::parse(shift).value()});
        QCOMPARE(result.dateTimeString, dateTimeString);
        QTEST(result.source, "source");
        QCOMPARE(result.problem.isEmpty(), !dateTimeString.isEmpty());
    }

    // The file-date channel takes the shift as well, and leaves the calendar the same way.
    void shiftsFileDateChannel() {
        const QDateTime fileDate(QDate(2020, 6, 1), QTime(15, 4, 5));
        QCOMPARE(PhotoDate::fileDateText(fileDate, 1, 1, 3600).dateTimeString,
                 "01-Jun-2020 16:04:05");
        const QDateTime late(QDate(9999, 12, 31), QTime(23, 0));
        const PhotoDate::Result out = PhotoDate::fileDateText(late, 1, 1, 7200);
        QVERIFY(out.dateTimeString.isEmpty() && !out.problem.isEmpty());
    }

    void readsFileModificationDate() {
        Sandbox dir;
        QFile file(dir.touch("IMG_0001.JPG"));
        const QDateTime stamp(QDate(2019, 11, 2), QTime(8, 15, 30));
        QVERIFY(file.open(QIODevice::ReadOnly) &&
                file.setFileTime(stamp, QFileDevice::FileModificationTime));
        QCOMPARE(PhotoDate::fileModificationDate(file.fileName()), stamp);
        QVERIFY(!PhotoDate::fileModificationDate(dir.path("missing.jpg")));
    }
};
SW_TEST_CLASS(PhotoDateTest)

#include "DateTextTest.moc"
